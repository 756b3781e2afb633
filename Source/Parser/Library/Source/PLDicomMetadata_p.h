#ifndef PLDICOMMETADATA_P_H
#define PLDICOMMETADATA_P_H

// Internal header, not installed: the metadata that saving appends to a DICOM file.

#include "PLText_p.h"

#include <QByteArray>
#include <QtGlobal>

namespace PLDicom {

// The last metadata copy in the bytes of a DICOM file. The metadata is the text after the
// last NUL byte (the image data before it always holds NULs, the metadata never does), from
// its first "*** " on: the bytes before that end the image data, and may be glued to the
// first header, since the metadata is appended as it is. Each save appends a copy; the last
// one begins at the last header line that repeats the first header's key.
//
// A save ends every copy with four LF (the last line's, the section's empty line, and the
// document's two). A copy whose bytes do not end so, blanks aside, was cut off (a crash in
// the middle of an append in place); so was a copy that never got its first header line's
// LF, which shows as text without LF after a complete copy's ending. The copy loaded is then
// the last complete one, and `cut` tells where the cut copy begins; when no copy is complete,
// the last copy is loaded as it stands, and `cut` is its start. One cut cannot be told from
// an ending: a copy cut right after three empty lines inside a section (which a save writes
// only for a section that holds them).
struct Copy {
    PLText::Span<char> text; // empty, at the end, when the bytes hold no "*** " after their last NUL
    const char* cut = nullptr; // the start of a copy that was cut off; null when none was
};
// May throw std::bad_alloc.
Copy lastCopy(const char* data, qint64 size);

// What to write before a new copy appended after `metadata` (the bytes after the file's last
// NUL): a LF when they hold a copy cut off within a line, so that the new copy's first
// header begins a line of its own and is found; else nothing, and the copy is appended as
// it is (glued to the image data, when there is no copy yet).
QByteArray copySeparator(const QByteArray& metadata);

} // namespace PLDicom

#endif // PLDICOMMETADATA_P_H
