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
constexpr qint64 COPY_END_SIZE = sizeof COPY_END - 1;

// Where the complete copy that spans [begin, end) ends, and *cut where a copy cut off after
// it begins (else null); null when the copy itself is cut. The copy ends with a save's
// ending, maybe followed by blanks; or its ending is followed by the start of a copy that
// was cut within its first header line, which holds no LF yet.
const char* completeEnd(const char* begin, const char* end, const char** cut)
{
    const char* lastLf
        = std::find(std::make_reverse_iterator(end), std::make_reverse_iterator(begin), '\n').base();
    if (lastLf - begin < COPY_END_SIZE || !std::equal(lastLf - COPY_END_SIZE, lastLf, COPY_END))
        return nullptr;
    const char* rest
        = std::find_if_not(lastLf, end, [](char c) { return PLText::isSpace(c); });
    if (rest == end) { // only blanks after the ending
        *cut = nullptr;
        return end;
    }
    *cut = rest;
    return *rest == '*' ? lastLf : nullptr;
}

// How many LF stand in a row right before `end`.
template<typename Char> qsizetype trailingLineFeeds(const Char* begin, qint64 end)
{
    qsizetype count = 0;
    while (count < end && PLText::unit(begin[end - 1 - count]) == '\n')
        ++count;
    return count;
}

// The LF in a row before a copy: four after a complete copy, three after a cut one (what
// copySeparator() makes of its end).
constexpr qsizetype COPY_END_LINE_FEEDS = COPY_END_SIZE;
constexpr qsizetype CUT_COPY_END = COPY_END_LINE_FEEDS - 1;

// Whether the header line at `position` of the text, whose key is `key`, begins a copy: it
// follows what a save writes before a copy, or it repeats the first key and does not follow
// the one empty line with which a save parts sections.
bool beginsCopy(const QChar* text, qint64 position, QStringView key, QStringView firstKey)
{
    const qsizetype lineFeeds = trailingLineFeeds(text, position);
    return lineFeeds == COPY_END_LINE_FEEDS || lineFeeds == CUT_COPY_END
        || (lineFeeds != 2 && PLKeyHash::equal(key, firstKey));
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
    QVector<const char*> copies { start };
    for (qint64 position = PLScan::lineEnd(text, length, 0); position < length;
         position = PLScan::lineEnd(text, length, position)) {
        QStringView key;
        if (headerKey(text, length, position, &key) && beginsCopy(text, position, key, firstKey))
            copies.append(start + decoded.byteOffset(position));
    }

    // From the last copy back to the first complete one.
    const char* limit = end;
    for (int i = copies.size() - 1; i >= 0; --i) {
        const char* cut = nullptr;
        if (const char* copyEnd = completeEnd(copies.at(i), limit, &cut)) {
            if (limit != end)
                cut = limit; // a later copy is cut
            return { { copies.at(i), copyEnd }, cut };
        }
        limit = copies.at(i);
    }
    return { { copies.last(), end }, copies.last() };
}

QByteArray copySeparator(const QByteArray& metadata)
{
    if (!lastCopy(metadata.constData(), metadata.size()).cut)
        return QByteArray();
    const qsizetype lineFeeds = trailingLineFeeds(metadata.constData(), metadata.size());
    return QByteArray(int(qMax<qsizetype>(0, CUT_COPY_END - lineFeeds)), '\n');
}

} // namespace PLDicom
