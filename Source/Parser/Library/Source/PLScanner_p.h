#ifndef PLSCANNER_P_H
#define PLSCANNER_P_H

// Internal header, not installed: the scanning rules on buffers of known length, for Latin-1
// bytes and for decoded text alike. The public functions of PLSectionScanner.h wrap these
// with malloc'd copies; the documents use them directly on their own buffers so that
// nothing is copied per line.

#include "PLText_p.h"

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

template<typename Char> const Char* firstToken(const Char* buffer, qint64 begin)
{
    const Char* c = buffer + begin;
    while (PLText::unit(*c) == ' ' || PLText::unit(*c) == '\t')
        ++c;
    return c;
}

// Stops at the first character that is not an asterisk, so never reads past the end.
template<typename Char> bool startsWithPrefix(const Char* text)
{
    return PLText::unit(text[0]) == '*' && PLText::unit(text[1]) == '*'
        && PLText::unit(text[2]) == '*';
}

// Whether the line at `begin` is a section header: its first token, after blanks and tabs,
// begins with "***".
template<typename Char> bool isHeaderLine(const Char* buffer, qint64 begin)
{
    return startsWithPrefix(firstToken(buffer, begin));
}

// Whether the first token of the line at `begin` is exactly "***": the token ends at a
// blank, a tab or the end; a line feed belongs to the token. The ClickInfo loader stops
// collecting leading lines at such a line.
template<typename Char> bool firstTokenIsPrefixOnly(const Char* buffer, qint64 begin)
{
    const Char* token = firstToken(buffer, begin);
    if (!startsWithPrefix(token))
        return false;
    const ushort after = PLText::unit(token[3]);
    return after == ' ' || after == '\t' || after == 0;
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
        if (atEnd || isHeaderLine(buffer, lineStart)) {
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
