#include "PLXMLWriter.h"

#include <QIODevice>
#include <QTextCodec>

namespace {

const QLatin1String DECLARATION_OPENING("<?xml version=\"1.0\" encoding=\"");
const QLatin1String DECLARATION_CLOSING("\"?>\n");

} // namespace

CPLXMLWriter::CPLXMLWriter(QIODevice* device, QTextCodec* codec)
    : m_stream(device)
{
    if (codec) {
        m_stream.setCodec(codec);
        m_stream << DECLARATION_OPENING << protect(QString::fromLatin1(codec->name()))
                 << DECLARATION_CLOSING;
    } else {
        m_stream.setCodec("UTF-8");
        m_stream.setAutoDetectUnicode(true);
    }
}

CPLXMLWriter::~CPLXMLWriter()
{
    if (m_bAutoNewLine && !m_bIndentPending)
        newLine();
}

QString CPLXMLWriter::protect(const QString& text) const
{
    QString result = text;
    result.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    result.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    result.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    result.replace(QLatin1Char('"'), QLatin1String("&quot;"));
    result.replace(QLatin1Char('\''), QLatin1String("&apos;"));
    return result;
}

QString CPLXMLWriter::opening(const QString& tag, const AttrMap& attrs) const
{
    QString text = QLatin1Char('<') + tag;
    for (auto attr = attrs.cbegin(); attr != attrs.cend(); ++attr)
        text += QLatin1Char(' ') + attr.key() + QLatin1String("=\"") + protect(attr.value())
            + QLatin1Char('"');
    return text + QLatin1Char('>');
}

void CPLXMLWriter::writePendingIndent()
{
    if (m_bIndentPending)
        m_stream << m_strIndent;
    m_bIndentPending = false;
}

void CPLXMLWriter::newLine()
{
    m_stream << QLatin1Char('\n');
    m_stream.flush();
    m_bIndentPending = true;
}

void CPLXMLWriter::writeRaw(const QString& text)
{
    m_stream << text;
    m_bIndentPending = false;
}

void CPLXMLWriter::writeString(const QString& text)
{
    writeRaw(protect(text));
}

void CPLXMLWriter::writeOpenTag(const QString& tag, const AttrMap& attrs)
{
    writePendingIndent();
    m_stream << opening(tag, attrs);
    m_strIndent += QString(m_nIndentWidth, QLatin1Char(' '));
    endTag();
}

void CPLXMLWriter::writeCloseTag(const QString& tag)
{
    m_strIndent.remove(0, m_nIndentWidth);
    writePendingIndent();
    m_stream << opening(QLatin1Char('/') + tag, AttrMap());
    endTag();
}

void CPLXMLWriter::writeAtomTag(const QString& tag, const AttrMap& attrs)
{
    writePendingIndent();
    QString text = opening(tag, attrs);
    text.insert(text.size() - 1, QLatin1Char('/'));
    m_stream << text;
    endTag();
}

void CPLXMLWriter::writeTaggedString(const QString& tag, const QString& text, const AttrMap& attrs)
{
    writePendingIndent();
    m_stream << opening(tag, attrs);
    writeString(text);
    m_stream << opening(QLatin1Char('/') + tag, AttrMap());
    endTag();
}

bool CPLXMLWriter::flush()
{
    m_stream.flush();
    return !hasError();
}

bool CPLXMLWriter::hasError() const
{
    return m_stream.status() != QTextStream::Ok;
}

void CPLXMLWriter::endTag()
{
    if (m_bAutoNewLine)
        newLine();
}
