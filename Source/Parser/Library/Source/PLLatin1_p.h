#ifndef PLLATIN1_P_H
#define PLLATIN1_P_H

// Internal header, not installed: byte-level helpers for Latin-1 section text.

#include <QtCore/qglobal.h>

namespace PLLatin1 {

// White space exactly as QString::trimmed() sees it on text decoded from Latin-1: tab, line
// feed, vertical tab, form feed, carriage return, blank, NEL (0x85) and no-break space (0xA0).
// Trimming bytes with this rule gives the same text as decoding first and trimming after.
inline bool isSpace(char c)
{
    const auto u = static_cast<unsigned char>(c);
    return u == 0x20 || (u >= 0x09 && u <= 0x0d) || u == 0x85 || u == 0xa0;
}

// A half-open byte range [begin, end) of a buffer.
struct Span
{
    const char* begin;
    const char* end;

    qsizetype size() const { return end - begin; }
    bool isEmpty() const { return begin == end; }
};

inline Span trimmed(Span s)
{
    while (s.begin != s.end && isSpace(*s.begin))
        ++s.begin;
    while (s.end != s.begin && isSpace(s.end[-1]))
        --s.end;
    return s;
}

} // namespace PLLatin1

#endif // PLLATIN1_P_H
