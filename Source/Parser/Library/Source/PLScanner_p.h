#ifndef PLSCANNER_P_H
#define PLSCANNER_P_H

// Internal header, not installed: the walk over lines and sections of a buffer of known
// length, for Latin-1 bytes and for decoded text alike; what a header line is, is the line
// grammar's (PLLineGrammar_p.h). The public functions of PLSectionScanner.h wrap these
// with malloc'd copies; the documents use them directly on their own buffers so that
// nothing is copied per line.

#include "PLLineGrammar_p.h"

#include <QtGlobal>

#include <algorithm>

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

// Where a walk over the lines from `from` (a line start) ends: `length` when the text ends
// with a line feed (or `from` is at its end), else length + 1, past the terminating 0.
template<typename Char> qint64 endOfLines(const Char* buffer, qint64 length, qint64 from)
{
    return from < length && PLText::unit(buffer[length - 1]) != '\n' ? length + 1 : length;
}

// The start of the first header line at or after `from` (a line start), or `length` when
// there is none. A header line's first token begins with "*", so only the lines that hold a
// "*" are looked at, found by the vectorised search; each line is looked at once.
template<typename Char> qint64 nextHeaderLine(const Char* buffer, qint64 length, qint64 from)
{
    const Char* const end = buffer + length;
    for (const Char* lineStart = buffer + from; lineStart < end;) {
        const Char* star = PLText::findFar(lineStart, end, '*');
        if (!star)
            break;
        const Char* begin = star;
        while (begin != lineStart && PLText::unit(begin[-1]) != '\n')
            --begin;
        if (PLGrammar::isHeaderLine(begin))
            return begin - buffer;
        lineStart = buffer + lineEnd(buffer, length, star - buffer);
    }
    return length;
}

// Finds the next section at or after `position` (< length, a line start). A boundary is a
// header line or the end of the buffer; the section runs from the first boundary met to the
// second, and text ahead of the first is passed over. Returns true and the section's range
// when two boundaries are met, with `position` moved to the second; returns false when the
// end comes first, with `position` moved to the end (endOfLines()).
template<typename Char>
bool nextSection(const Char* buffer, qint64 length, qint64& position, SectionRange& section)
{
    const qint64 first = nextHeaderLine(buffer, length, position);
    if (first >= length) {
        position = endOfLines(buffer, length, position);
        return false;
    }
    const qint64 afterHeader = lineEnd(buffer, length, first);
    const qint64 second = afterHeader < length ? nextHeaderLine(buffer, length, afterHeader) : length;
    section.begin = first;
    section.end = second < length ? second : endOfLines(buffer, length, first);
    const Char* const counted = buffer + qMin(section.end, length);
    section.lines = int(PLText::count(buffer + first, counted, '\n')) + (section.end > length ? 1 : 0);
    position = section.end;
    return true;
}

} // namespace PLScan

#endif // PLSCANNER_P_H
