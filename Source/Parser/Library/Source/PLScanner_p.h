#ifndef PLSCANNER_P_H
#define PLSCANNER_P_H

// Internal header, not installed: the walk over lines and sections of a buffer of known
// length, for Latin-1 bytes and for decoded text alike; what a header line is, is the line
// grammar's (PLLineGrammar_p.h). The public functions of PLSectionScanner.h wrap these
// with malloc'd copies; the documents use them directly on their own buffers so that
// nothing is copied per line.

#include "PLLineGrammar_p.h"

#include <QtGlobal>

namespace PLScan {

// Offsets index a buffer of `length` characters whose character at `length` is 0.

// The end (exclusive) of the line that starts at `begin` (< length): just past its line
// feed, or length + 1 when it has none, so that the line then includes the terminating 0,
// as readLine() copies it.
template<typename Char> qint64 lineEnd(const Char* buffer, qint64 length, qint64 begin)
{
    const Char* lf = PLText::findFar(buffer + begin, buffer + length, '\n');
    return lf ? (lf - buffer) + 1 : length + 1;
}

// One section found by nextSection(): [begin, end). `end` is length + 1 when the last line
// has no line feed: the range then includes the terminating 0.
struct SectionRange
{
    qint64 begin = 0;
    qint64 end = 0;
    int lines = 0; // the lines of the section, its header line included
};

// Finds the next section at or after `position` (< length). A boundary is a header line or
// the end of the buffer; the section runs from the first boundary met to the second, and
// text ahead of the first is passed over. Returns true and the section's range when two
// boundaries are met, with `position` moved to the second; returns false when the end comes
// first, with `position` moved to the end.
template<typename Char>
bool nextSection(const Char* buffer, qint64 length, qint64& position, SectionRange& section)
{
    int boundaries = 0;
    qint64 lastBoundary = position;
    qint64 sectionLength = 0;
    qint64 cursor = position;
    int linesSinceBoundary = 0;
    for (;;) {
        const qint64 lineStart = cursor;
        const bool atEnd = cursor >= length;
        if (!atEnd)
            cursor = lineEnd(buffer, length, cursor);
        if (atEnd || PLGrammar::isHeaderLine(buffer + lineStart)) {
            section.lines = linesSinceBoundary;
            linesSinceBoundary = 0;
            ++boundaries;
            const qint64 distance = lineStart - lastBoundary;
            lastBoundary = lineStart;
            if (distance != 0)
                sectionLength = distance;
        }
        if (boundaries == 2) {
            section.begin = lineStart - sectionLength;
            section.end = lineStart;
            position = lineStart;
            return true;
        }
        if (atEnd) {
            position = lineStart;
            return false;
        }
        ++linesSinceBoundary;
    }
}

} // namespace PLScan

#endif // PLSCANNER_P_H
