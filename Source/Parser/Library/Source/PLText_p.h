#ifndef PLTEXT_P_H
#define PLTEXT_P_H

// Internal header, not installed: helpers shared by the scanners of Latin-1 bytes and of
// text already decoded into QChars.

#include <QChar>
#include <QStringView>
#include <QtCore/qstringalgorithms.h>

#include <algorithm>
#include <cstring>

namespace PLText {

// White space exactly as QString::trimmed() sees it. For bytes, read as Latin-1: tab, line
// feed, vertical tab, form feed, carriage return, blank, NEL (0x85) and no-break space
// (0xA0); trimming bytes with this rule gives the same text as decoding first and trimming
// after.
inline bool isSpace(char c)
{
    const auto u = static_cast<unsigned char>(c);
    return u == 0x20 || (u >= 0x09 && u <= 0x0d) || u == 0x85 || u == 0xa0;
}

inline bool isSpace(QChar c)
{
    return c.isSpace();
}

// The code of a character: bytes are Latin-1.
inline ushort unit(char c)
{
    return static_cast<unsigned char>(c);
}

inline ushort unit(QChar c)
{
    return c.unicode();
}

// A half-open range [begin, end) of characters.
template<typename Char> struct Span
{
    const Char* begin;
    const Char* end;

    qsizetype size() const { return end - begin; }
};

// Inlined: it runs several times on every line a document loads.
template<typename Char> Q_ALWAYS_INLINE Span<Char> trimmed(Span<Char> s)
{
    while (s.begin != s.end && isSpace(*s.begin))
        ++s.begin;
    while (s.end != s.begin && isSpace(s.end[-1]))
        --s.end;
    return s;
}

// The first `c` in [begin, end), or null.
inline const char* find(const char* begin, const char* end, char c)
{
    return static_cast<const char*>(std::memchr(begin, c, static_cast<size_t>(end - begin)));
}

// For short texts such as values, a plain loop beats a library call.
inline const QChar* find(const QChar* begin, const QChar* end, char c)
{
    for (const ushort u = static_cast<unsigned char>(c); begin != end; ++begin) {
        if (begin->unicode() == u)
            return begin;
    }
    return nullptr;
}

// The number of units equal to `wanted` from `unit` to `last`: a 32-bit count per block,
// which the compiler keeps in vector lanes.
template<typename Unit> qint64 countUnits(const Unit* unit, const Unit* last, Unit wanted)
{
    qint64 total = 0;
    while (unit != last) {
        const Unit* blockEnd = unit + qMin<qint64>(last - unit, 1 << 20);
        uint found = 0;
        for (; unit != blockEnd; ++unit)
            found += *unit == wanted;
        total += found;
    }
    return total;
}

// How many `c` stand in [begin, end), counted over the character codes so that the compiler
// can vectorise the loop.
inline qint64 count(const char* begin, const char* end, char c)
{
    return countUnits(reinterpret_cast<const uchar*>(begin), reinterpret_cast<const uchar*>(end),
                      static_cast<uchar>(c));
}

inline qint64 count(const QChar* begin, const QChar* end, char c)
{
    return countUnits(reinterpret_cast<const ushort*>(begin), reinterpret_cast<const ushort*>(end),
                      ushort(static_cast<unsigned char>(c)));
}

// For long texts, the library's vectorised search.
inline const char* findFar(const char* begin, const char* end, char c)
{
    return find(begin, end, c);
}

// The vectorised search behind QStringView::indexOf(), without the layers above it that
// cost more than the search itself on lines of a few dozen characters.
inline const QChar* findFar(const QChar* begin, const QChar* end, char c)
{
    const auto* found = reinterpret_cast<const QChar*>(
        QtPrivate::qustrchr(QStringView(begin, end), static_cast<unsigned char>(c)));
    return found == end ? nullptr : found;
}

} // namespace PLText

#endif // PLTEXT_P_H
