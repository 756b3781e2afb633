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
// first header, since the metadata is appended as it is.
//
// Each save appends a copy, and copies are found by what a save writes around them, whatever
// their first section is. A save ends every copy with four LF (the last line's, the section's
// empty line, and the document's two; the first may follow a header's CR), and the next copy
// follows at once. After a copy that was cut off (a crash in the middle of an append in place)
// a save first writes LFs up to three in a row (copySeparator()). So a copy begins at a header
// line that follows exactly four LF (after a complete copy) or exactly three (after a cut
// one); a save parts its own sections by two. A header line that repeats the key of the
// metadata's first header, after anything but two LF, begins a copy too: so files written
// before were told apart, and so is a copy that begins with lines before its first header.
//
// A copy whose bytes do not end in four LF, blanks aside, was cut off; so was a copy that
// never got its first header line's LF, which shows as text without LF after a complete
// copy's ending. The copy loaded is then the last complete one, and `cut` tells where the cut
// copy after it begins; when no copy is complete, the last copy is loaded as it stands, and
// `cut` is its start. What cannot be told apart: a copy cut right after three empty lines
// inside a section (which a save writes only for a section that holds them) looks complete,
// and sections that a copy parts by two or three empty lines (a save never does) look like
// the start of another copy.
struct Copy {
    PLText::Span<char> text; // empty, at the end, when the bytes hold no "*** " after their last NUL
    const char* cut = nullptr; // the start of a copy that was cut off; null when none was
};
// May throw std::bad_alloc.
Copy lastCopy(const char* data, qint64 size);

// What to write before a new copy appended after `metadata` (the bytes of the file, or those
// after its last NUL): after a copy that was cut off, as many LF as make three in a row at
// the end, so that the new copy's first header begins a line of its own and is found as a
// copy (three LF in a row stand nowhere else before a header a save writes); else nothing,
// and the copy is appended as it is (glued to the image data, when there is no copy yet).
QByteArray copySeparator(const QByteArray& metadata);

} // namespace PLDicom

#endif // PLDICOMMETADATA_P_H
