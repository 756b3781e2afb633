#include "PLDecodedText_p.h"

#include <algorithm>

namespace {

const char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";
constexpr qint64 BYTE_ORDER_MARK_SIZE = 3;

bool contains(const QVector<qint64>& sorted, qint64 offset)
{
    return std::binary_search(sorted.begin(), sorted.end(), offset);
}

} // namespace

CPLDecodedText::CPLDecodedText(const char* data, qint64 size)
{
    const char* const end = data + size;
    if (size >= BYTE_ORDER_MARK_SIZE && std::equal(data, data + BYTE_ORDER_MARK_SIZE, BYTE_ORDER_MARK))
        m_bomSize = BYTE_ORDER_MARK_SIZE;
    const PLText::Span<char> bytes = PLText::trimmed(PLText::Span<char> { data + m_bomSize, end });
    m_leading = { data + m_bomSize, bytes.begin };
    m_trailing = { bytes.end, end };
    for (const char* p = m_leading.begin; p != m_leading.end; ++p)
        m_linesBefore += *p == '\n' || (*p == '\r' && (p + 1 == m_leading.end || p[1] != '\n'));

    // One pass decodes the bytes and turns the line ends, run by run between CRs.
    m_text = QString(static_cast<int>(bytes.size()), Qt::Uninitialized);
    ushort* out = reinterpret_cast<ushort*>(m_text.data());
    const ushort* const begin = out;
    for (const char* in = bytes.begin; in != bytes.end;) {
        const char* cr = PLText::find(in, bytes.end, '\r');
        for (const char* runEnd = cr ? cr : bytes.end; in != runEnd; ++in)
            *out++ = static_cast<uchar>(*in);
        if (!cr)
            break;
        const qint64 lf = out - begin;
        *out++ = '\n';
        if (++in != bytes.end && *in == '\n') {
            ++in;
            m_crLf.append(lf);
        } else {
            m_cr.append(lf);
        }
    }
    m_text.truncate(static_cast<int>(out - begin));
    // The lines, for the limit on them, counted in the bytes (half the size of the text): a
    // CR LF holds a line feed, a lone CR does not. The text is trimmed: it never ends with a
    // line feed.
    m_lines = m_text.isEmpty() ? 0 : PLText::count(bytes.begin, bytes.end, '\n') + m_cr.size() + 1;
}

CPLDecodedText::LineEnd CPLDecodedText::lineEndAt(qint64 lfOffset) const
{
    if (contains(m_crLf, lfOffset))
        return LineEnd::CRLF;
    return contains(m_cr, lfOffset) ? LineEnd::CR : LineEnd::LF;
}

qint64 CPLDecodedText::byteOffset(qint64 textOffset) const
{
    const auto crLfBefore = std::lower_bound(m_crLf.begin(), m_crLf.end(), textOffset) - m_crLf.begin();
    return m_bomSize + m_leading.size() + textOffset + crLfBefore;
}
