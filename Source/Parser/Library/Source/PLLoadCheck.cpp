#include "PLLoadCheck_p.h"

#include "PLDecodedText_p.h"
#include "PLLineGrammar_p.h"

#include <algorithm>

namespace {

using Span = PLText::Span<QChar>;

// What saving writes after a document's last section: the line end of its last line, the
// empty line that ends a section, and the two line feeds that end the document.
const char SECTION_END[] = "\n\n\n";

} // namespace

CPLLoadCheck::CPLLoadCheck(const QChar* text, qint64 length, qint64 size,
                           const CPLDecodedText* decoded)
    : m_text(text)
    , m_length(length)
    , m_size(size)
    , m_decoded(decoded)
{
}

int CPLLoadCheck::lineAt(qint64 offset)
{
    if (offset < m_lineOffset) {
        m_lineOffset = 0;
        m_line = 1;
    }
    m_line += int(PLText::count(m_text + m_lineOffset, m_text + offset, '\n'));
    m_lineOffset = offset;
    return m_line;
}

void CPLLoadCheck::knownLine(qint64 offset, int line)
{
    if (offset >= m_lineOffset) {
        m_lineOffset = offset;
        m_line = line;
    }
}

void CPLLoadCheck::note(CPLLoadWarning::Kind kind, int line, const QString& section,
                        const QString& detail)
{
    for (int i = m_sectionWarnings; i < m_warnings.size(); ++i) {
        CPLLoadWarning& known = m_warnings[i];
        if (known.m_eKind == kind && known.m_strSection == section) {
            ++known.m_iCount;
            return;
        }
    }
    m_warnings.append(CPLLoadWarning(kind, line, 1, section, detail));
}

void CPLLoadCheck::leadingLine(qint64 begin, qint64 end, bool isAlsoHeader)
{
    const Span line { m_text + begin, m_text + end };
    const Span trimmed = PLText::trimmed(line);
    const int number = lineAt(begin);
    if (isAlsoHeader)
        note(CPLLoadWarning::HeaderInLeadingLines, number, QString(),
             QString(trimmed.begin, int(trimmed.size())));
    // The last line of the text lost its trailing white space with the text's end.
    const bool atTextEnd = end >= m_length;
    if (trimmed.begin != line.begin || (!atTextEnd && trimmed.end != line.end))
        note(CPLLoadWarning::Blanks, number, QString());
}

void CPLLoadCheck::section(qint64 begin, qint64 headerEnd, qint64 end,
                           const PLGrammar::Header<QChar>& header, const QString& key,
                           const QList<CPLLoadWarning>& bodyWarnings)
{
    m_sectionWarnings = m_warnings.size();
    const int headerLine = lineAt(begin);
    const Span line { m_text + begin, m_text + qMin(headerEnd, m_length) };
    if (!PLGrammar::isWrittenForm(line, header, headerEnd >= m_length))
        note(CPLLoadWarning::HeaderForm, headerLine, key);
    for (const CPLLoadWarning& warning : bodyWarnings) {
        const int first = m_warnings.size();
        note(warning.kind(), headerLine + warning.line(), key, warning.m_strDetail);
        if (m_warnings.size() > first) {
            m_warnings.last().m_iCount = warning.count();
            if (warning.relatedLine() > 0)
                m_warnings.last().m_iRelatedLine = headerLine + warning.relatedLine();
        }
    }
    checkBlock(headerEnd, end, headerLine, key);
    m_sections.append(Place { begin, headerEnd, key });
}

void CPLLoadCheck::checkBlock(qint64 headerEnd, qint64 end, int headerLine, const QString& key)
{
    if (headerEnd >= m_length)
        return;
    const qint64 bodyStart = headerEnd + 1;
    const Span body = PLText::trimmed(Span { m_text + bodyStart, m_text + qMin(end, m_length) });
    if (body.size() > 0 && body.begin != m_text + bodyStart)
        note(CPLLoadWarning::BlankLines, headerLine + 1, key);
    // The last section's end is judged with the end of the file.
    if (end >= m_length)
        return;
    // One empty line ends a section: the line end of its last line, then one line feed.
    const QChar* lastLineEnd
        = body.size() > 0 ? PLText::findFar(body.end, m_text + end, '\n') : m_text + headerEnd;
    if (lastLineEnd + 2 != m_text + end || lastLineEnd[1] != QLatin1Char('\n'))
        note(CPLLoadWarning::BlankLines, lineAt(lastLineEnd - m_text) + 1, key);
}

void CPLLoadCheck::repeatedSection(qint64 begin, const QString& key, bool merged)
{
    m_sectionWarnings = m_warnings.size();
    note(merged ? CPLLoadWarning::MergedSection : CPLLoadWarning::RepeatedSection, lineAt(begin),
         key, key);
}

int CPLLoadCheck::sectionIndexAt(qint64 offset) const
{
    const auto after
        = std::upper_bound(m_sections.begin(), m_sections.end(), offset,
                           [](qint64 o, const Place& place) { return o < place.begin; });
    return int(after - m_sections.begin()) - 1;
}

void CPLLoadCheck::checkLineEnds()
{
    // Saving ends a header line with CR LF and every other line with LF. The offsets of
    // the line feeds that differ, found by walking the header ends beside the CR LF ends.
    QVector<qint64> wrong;
    const QVector<qint64>& crLf = m_decoded->crLfEnds();
    auto crLfEnd = crLf.begin();
    for (const Place& place : qAsConst(m_sections)) {
        if (place.headerEnd >= m_length)
            break;
        for (; crLfEnd != crLf.end() && *crLfEnd < place.headerEnd; ++crLfEnd)
            wrong.append(*crLfEnd);
        if (crLfEnd != crLf.end() && *crLfEnd == place.headerEnd)
            ++crLfEnd;
        else
            wrong.append(place.headerEnd);
    }
    wrong += QVector<qint64>(crLfEnd, crLf.end());
    wrong += m_decoded->crEnds();
    std::sort(wrong.begin(), wrong.end());

    m_sectionWarnings = m_warnings.size();
    int warningSection = -2;
    for (const qint64 offset : qAsConst(wrong)) {
        if (offset >= m_length)
            break;
        const int index = sectionIndexAt(offset);
        const int line = lineAt(offset);
        if (index == warningSection) {
            ++m_warnings.last().m_iCount;
            continue;
        }
        warningSection = index;
        m_warnings.append(CPLLoadWarning(CPLLoadWarning::LineEnds, line, 1,
                                         index < 0 ? QString() : m_sections.at(index).key,
                                         QString()));
    }
}

QByteArray CPLLoadCheck::writtenTail() const
{
    const QChar* const end = m_text + m_length;
    const QChar* lastLine = end;
    while (lastLine != m_text && lastLine[-1] != QLatin1Char('\n'))
        --lastLine;
    if (m_sections.isEmpty())
        return QByteArrayLiteral("\n\n\n");
    // A header or key line that ends the text with its colon had the tab after the colon
    // trimmed off with the text's end: saving writes it.
    const Span line { lastLine, end };
    const bool isHeader = lastLine - m_text == m_sections.last().begin;
    const QChar* colon = PLGrammar::separatorColon(line);
    const QByteArray tab = colon && colon + 1 == end ? QByteArrayLiteral("\t") : QByteArray();
    return tab + (isHeader ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n")) + SECTION_END;
}

void CPLLoadCheck::checkEnds(bool withTail, int firstLine)
{
    const PLText::Span<char> leading = m_decoded->leadingSpace();
    const PLText::Span<char> trailing = m_decoded->trailingSpace();
    if (m_decoded->hasByteOrderMark())
        note(CPLLoadWarning::ByteOrderMark, firstLine, QString());
    if (m_length == 0 && withTail) {
        // An empty document is written as two line feeds.
        if (QByteArray(leading.begin, int(leading.size())) != "\n\n")
            note(CPLLoadWarning::BlankLines, firstLine, QString());
        return;
    }
    if (leading.size() > 0)
        note(CPLLoadWarning::BlankLines, firstLine, QString());
    if (!withTail)
        return;
    const QByteArray tail = writtenTail();
    if (QByteArray::fromRawData(trailing.begin, int(trailing.size())) != tail) {
        const qint64 lastLine = std::find(std::make_reverse_iterator(m_text + m_length),
                                          std::make_reverse_iterator(m_text), QLatin1Char('\n'))
                                    .base()
            - m_text;
        m_sectionWarnings = m_warnings.size();
        const int index = sectionIndexAt(lastLine);
        note(CPLLoadWarning::BlankLines, lineAt(lastLine),
             index < 0 ? QString() : m_sections.at(index).key);
    }
}

QList<CPLLoadWarning> CPLLoadCheck::finish(const QString& file, int linesBefore)
{
    m_sectionWarnings = m_warnings.size();
    // After a NUL byte nothing is read: the end of the file is not compared, its start is.
    if (m_decoded)
        checkEnds(m_length == m_size, 1 - linesBefore);
    if (m_length < m_size)
        note(CPLLoadWarning::NulByte, lineAt(m_length), QString());
    if (m_decoded)
        checkLineEnds();
    for (CPLLoadWarning& warning : m_warnings) {
        warning.setFile(file);
        warning.setLine(warning.line() + linesBefore);
    }
    std::stable_sort(
        m_warnings.begin(), m_warnings.end(),
        [](const CPLLoadWarning& a, const CPLLoadWarning& b) { return a.line() < b.line(); });
    return m_warnings;
}
