#include "PLCaseInsensitiveKey.h"

#include <array>
#include <cstring>

namespace {

// The lower case of each Latin-1 character, as QString::toLower() gives it: A to Z and
// the accented capitals 0xC0 to 0xDE (but the multiplication sign 0xD7) move down by 0x20.
constexpr std::array<ushort, 256> makeLowerLatin1()
{
    std::array<ushort, 256> table {};
    for (ushort c = 0; c < 256; ++c) {
        const bool upper = (c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7);
        table[c] = upper ? ushort(c + 0x20) : c;
    }
    return table;
}
constexpr std::array<ushort, 256> LOWER_LATIN1 = makeLowerLatin1();

// The hash folds case by setting bit 0x20 of every character of the lower-case form, so
// that a Latin-1 text can be hashed without lowering it: for Latin-1, c | 0x20 equals
// lower(c) | 0x20. Four characters are mixed at a time. Equal keys hash alike whichever
// way they were lowered; texts that differ in other ways than case may hash alike too,
// which only costs a comparison.
constexpr quint64 CASE_BITS = 0x0020002000200020ull;
constexpr quint64 WIDE_BITS = 0xff00ff00ff00ff00ull;
constexpr quint64 MIX = 0x9e3779b97f4a7c15ull;

// Returns the hash of the folded text and whether any character was above 0xff.
uint hashFolded(const QString& text, uint seed, bool* wide)
{
    const auto* c = reinterpret_cast<const uchar*>(text.constData());
    const int size = text.size();
    quint64 hash = (quint64(seed) ^ quint64(size)) * MIX;
    quint64 wideBits = 0;
    int i = 0;
    for (; i + 4 <= size; i += 4, c += 8) {
        quint64 word;
        std::memcpy(&word, c, sizeof word);
        wideBits |= word;
        hash = (hash ^ (word | CASE_BITS)) * MIX;
        hash ^= hash >> 29;
    }
    for (; i < size; ++i, c += 2) {
        ushort unit;
        std::memcpy(&unit, c, sizeof unit);
        wideBits |= unit;
        hash = (hash ^ (unit | 0x20u)) * MIX;
        hash ^= hash >> 29;
    }
    *wide = (wideBits & WIDE_BITS) != 0;
    return uint(hash ^ (hash >> 32));
}

} // namespace

namespace {

const ushort* units(const QString& text)
{
    return reinterpret_cast<const ushort*>(text.constData());
}

// Whether both texts are Latin-1 and equal in lower case; `known` is cleared when either
// holds other characters, for which the answer needs QString::toLower().
bool equalLatin1LowerCase(const QString& a, const QString& b, bool* known)
{
    const ushort* x = units(a);
    const ushort* y = units(b);
    const int common = qMin(a.size(), b.size());
    bool equal = a.size() == b.size();
    ushort wide = 0; // any unit above 0xff sets a bit above 0xff
    for (int i = 0; i < common; ++i) {
        wide |= x[i] | y[i];
        equal = equal && LOWER_LATIN1[x[i] & 0xff] == LOWER_LATIN1[y[i] & 0xff];
    }
    const QString& longer = a.size() > common ? a : b;
    for (int i = common; i < longer.size(); ++i)
        wide |= units(longer)[i];
    *known = wide <= 0xff;
    return equal;
}

} // namespace

bool CPLCaseInsensitiveKey::operator==(const CPLCaseInsensitiveKey& other) const
{
    const QString& a = m_strText;
    const QString& b = other.m_strText;
    // Keys are usually asked for in the spelling they were stored in.
    if (a.size() == b.size() && std::memcmp(a.constData(), b.constData(), size_t(a.size()) * 2) == 0)
        return true;
    bool known = false;
    const bool equal = equalLatin1LowerCase(a, b, &known);
    return known ? equal : a.toLower() == b.toLower();
}

uint qHash(const CPLCaseInsensitiveKey& key, uint seed)
{
    bool wide = false;
    const uint hash = hashFolded(key.text(), seed, &wide);
    return wide ? hashFolded(key.text().toLower(), seed, &wide) : hash;
}
