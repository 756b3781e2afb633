#include "PLCaseInsensitiveKey.h"

#include "PLKeyHash_p.h"

#include <algorithm>
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
// lower(c) | 0x20. Four characters are mixed at a time. Texts that differ in more than
// case may hash alike too, which only costs a comparison.
constexpr quint64 CASE_BITS = 0x0020002000200020ull;
constexpr quint64 WIDE_BITS = 0xff00ff00ff00ff00ull;
constexpr quint64 MIX = 0x9e3779b97f4a7c15ull;

// The hash of the folded text; *wide tells whether a character was above 0xff.
uint hashFolded(QStringView text, uint seed, bool* wide)
{
    const auto* c = reinterpret_cast<const uchar*>(text.data());
    const qsizetype size = text.size();
    quint64 hash = (quint64(seed) ^ quint64(size)) * MIX;
    quint64 wideBits = 0;
    qsizetype i = 0;
    for (; i + 4 <= size; i += 4, c += 8) {
        quint64 word;
        std::memcpy(&word, c, sizeof word);
        wideBits |= word;
        hash = (hash ^ (word | CASE_BITS)) * MIX;
    }
    for (; i < size; ++i, c += 2) {
        ushort unit;
        std::memcpy(&unit, c, sizeof unit);
        wideBits |= unit;
        hash = (hash ^ (unit | 0x20u)) * MIX;
    }
    *wide = (wideBits & WIDE_BITS) != 0;
    hash ^= hash >> 29; // the multiplications leave the best bits high; the index uses low ones
    return uint(hash ^ (hash >> 32));
}

} // namespace

namespace PLKeyHash {

bool equal(QStringView a, QStringView b)
{
    const auto* x = reinterpret_cast<const ushort*>(a.data());
    const auto* y = reinterpret_cast<const ushort*>(b.data());
    // Keys are mostly asked for as the file writes them.
    if (a.size() == b.size() && std::memcmp(x, y, size_t(a.size()) * sizeof(ushort)) == 0)
        return true;
    if (a.size() == b.size()) {
        qsizetype i = 0;
        for (; i < a.size(); ++i) {
            if (x[i] == y[i])
                continue;
            if ((x[i] | y[i]) > 0xff)
                break; // lowering this character may change the length: the full rule decides
            // What stands before lowers alike in both, so a difference here stays one.
            if (LOWER_LATIN1[x[i]] != LOWER_LATIN1[y[i]])
                return false;
        }
        if (i == a.size())
            return true;
    } else {
        // Latin-1 lower case keeps the length: texts of different lengths can only be equal
        // when one of them holds other characters.
        const auto wide = [](QStringView text) {
            return std::any_of(text.begin(), text.end(),
                               [](QChar c) { return c.unicode() > 0xff; });
        };
        if (!wide(a) && !wide(b))
            return false;
    }
    return a.toString().toLower() == b.toString().toLower();
}

uint hash(QStringView text, uint seed)
{
    bool wide = false;
    const uint latin1Hash = hashFolded(text, seed, &wide);
    return wide ? hashFolded(text.toString().toLower(), seed, &wide) : latin1Hash;
}

} // namespace PLKeyHash

bool CPLCaseInsensitiveKey::operator==(const CPLCaseInsensitiveKey& other) const
{
    return PLKeyHash::equal(text(), other.text());
}

uint qHash(const CPLCaseInsensitiveKey& key, uint seed)
{
    return PLKeyHash::hash(key.text(), seed);
}
