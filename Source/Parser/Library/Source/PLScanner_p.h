#ifndef PLSCANNER_P_H
#define PLSCANNER_P_H

// Internal header, not installed: the scanning rules on buffers of known length. The public
// functions of PLSectionScanner.h wrap these with malloc'd copies; the documents use them
// directly on their own buffers so that nothing is copied per section or per line.

#include <QtCore/qglobal.h>

namespace PLScan {

// Offsets are byte offsets into a buffer of `length` bytes whose byte at `length` is NUL.
// A line that starts at `begin` ends (exclusive) just past its line feed, or at length + 1
// when it has none: the line then includes the terminating NUL, as readLine() copies it.
// Requires begin < length.
qint64 lineEnd(const char* buffer, qint64 length, qint64 begin);

// Whether the line starting at `begin` is a section header: its first token, after blanks
// and tabs, begins with "***". Reads at most up to the terminating NUL.
bool isHeaderLine(const char* buffer, qint64 begin);

// Whether the first token of the line at `begin` is exactly "***" (the token ends at a blank,
// a tab or the NUL; a line feed belongs to the token). The ClickInfo loader stops collecting
// leading lines at such a line.
bool firstTokenIsPrefixOnly(const char* buffer, qint64 begin);

// One section found by nextSection(): the bytes [begin, end). `end` may be length + 1 when the
// buffer's last line has no line feed, so the range then includes the terminating NUL.
struct SectionRange
{
    qint64 begin = 0;
    qint64 end = 0;
};

// Finds the next section at or after `position` (which must be below `length`). Returns true
// and the section's range when one is found; `position` is moved to the next header or to
// the end. Returns false when no header follows; `position` is then moved to the end.
bool nextSection(const char* buffer, qint64 length, qint64& position, SectionRange& section);

} // namespace PLScan

#endif // PLSCANNER_P_H
