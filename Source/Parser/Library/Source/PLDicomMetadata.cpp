#include "PLDicomMetadata_p.h"

#include "PLDecodedText_p.h"
#include "PLKeyHash_p.h"
#include "PLLineGrammar_p.h"
#include "PLScanner_p.h"

#include <algorithm>
#include <iterator>

namespace PLDicom {

namespace {

// The key of the header line at `begin` of the text; false when it is no well-formed header.
bool headerKey(const QChar* text, qint64 length, qint64 begin, QStringView* key)
{
    const qint64 end = qMin(PLScan::lineEnd(text, length, begin), length);
    PLGrammar::Header<QChar> header;
    if (!PLGrammar::isHeaderLine(text + begin)
        || !PLGrammar::parseHeader(PLText::Span<QChar> { text + begin, text + end }, &header))
        return false;
    *key = QStringView(header.key.begin, header.key.end);
    return true;
}

// A save's ending of a copy.
constexpr char COPY_END[] = "\n\n\n\n";

// The end of the complete copy that begins at `begin`: after its first COPY_END before
// `limit`; null when there is none.
const char* completeEnd(const char* begin, const char* limit)
{
    const char* end = std::search(begin, limit, COPY_END, COPY_END + sizeof COPY_END - 1);
    return end == limit ? nullptr : end + sizeof COPY_END - 1;
}

// The first byte at or after `begin` that is not white space.
const char* firstText(const char* begin, const char* end)
{
    return std::find_if_not(begin, end, [](char c) { return PLText::isSpace(c); });
}

} // namespace

Copy lastCopy(const char* data, qint64 size)
{
    const char* const end = data + size;
    const char* tail
        = std::find(std::make_reverse_iterator(end), std::make_reverse_iterator(data), '\0').base();
    const char* start = std::search(tail, end, PLGrammar::HEADER_PREFIX,
                                    PLGrammar::HEADER_PREFIX + sizeof PLGrammar::HEADER_PREFIX - 1);
    if (start == end)
        return { { end, end } };

    const CPLDecodedText decoded(start, end - start);
    const auto* text = reinterpret_cast<const QChar*>(decoded.text().utf16());
    const qint64 length = decoded.text().size();
    QStringView firstKey;
    headerKey(text, length, 0, &firstKey);
    QVector<const char*> copies;
    for (qint64 position = 0; position < length;
         position = PLScan::lineEnd(text, length, position)) {
        QStringView key;
        if (headerKey(text, length, position, &key) && PLKeyHash::equal(key, firstKey))
            copies.append(start + decoded.byteOffset(position));
    }
    if (copies.isEmpty())
        copies.append(start);

    // From the last copy back to the first complete one.
    const char* limit = end;
    for (int i = copies.size() - 1; i >= 0; --i) {
        if (const char* copyEnd = completeEnd(copies.at(i), limit)) {
            const char* cut = firstText(copyEnd, end);
            if (cut == end)
                return { { copies.at(i), end } };
            return { { copies.at(i), copyEnd }, cut };
        }
        limit = copies.at(i);
    }
    return { { copies.last(), end }, copies.last() };
}

} // namespace PLDicom
