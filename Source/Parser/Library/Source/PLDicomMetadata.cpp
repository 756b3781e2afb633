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

} // namespace

PLText::Span<char> lastCopy(const char* data, qint64 size)
{
    const char* const end = data + size;
    const char* tail
        = std::find(std::make_reverse_iterator(end), std::make_reverse_iterator(data), '\0').base();
    const char* start = std::search(tail, end, PLGrammar::HEADER_PREFIX,
                                    PLGrammar::HEADER_PREFIX + sizeof PLGrammar::HEADER_PREFIX - 1);
    if (start == end)
        return { end, end };

    const CPLDecodedText decoded(start, end - start);
    const auto* text = reinterpret_cast<const QChar*>(decoded.text().utf16());
    const qint64 length = decoded.text().size();
    QStringView firstKey;
    headerKey(text, length, 0, &firstKey);
    qint64 last = 0;
    for (qint64 position = 0; position < length;
         position = PLScan::lineEnd(text, length, position)) {
        QStringView key;
        if (headerKey(text, length, position, &key) && PLKeyHash::equal(key, firstKey))
            last = position;
    }
    return { start + decoded.byteOffset(last), end };
}

} // namespace PLDicom
