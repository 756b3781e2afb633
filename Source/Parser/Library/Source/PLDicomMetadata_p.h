#ifndef PLDICOMMETADATA_P_H
#define PLDICOMMETADATA_P_H

// Internal header, not installed: the metadata that saving appends to a DICOM file.

#include "PLText_p.h"

#include <QtGlobal>

namespace PLDicom {

// The last metadata copy in the bytes of a DICOM file. The metadata is the text after the
// last NUL byte (the image data before it always holds NULs, the metadata never does), from
// its first "*** " on: the bytes before that end the image data, and may be glued to the
// first header, since the metadata is appended as it is. Each save appends a copy; the last
// one begins at the last header line that repeats the first header's key. An empty span at
// the end when the bytes hold no "*** " after their last NUL. May throw std::bad_alloc.
PLText::Span<char> lastCopy(const char* data, qint64 size);

} // namespace PLDicom

#endif // PLDICOMMETADATA_P_H
