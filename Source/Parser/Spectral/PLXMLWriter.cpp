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
    for (auto attr = attrs.cbegin(); attr != attrs.cend(); ++attr) {
        // A reader turns a raw tab or line break in an attribute into a blank.
        QString value = protect(attr.value());
        value.replace(QLatin1Char('\t'), QLatin1String("&#9;"));
        value.replace(QLatin1Char('\n'), QLatin1String("&#10;"));
        value.replace(QLatin1Char('\r'), QLatin1String("&#13;"));
        text += QLatin1Char(' ') + attr.key() + QLatin1String("=\"") + value + QLatin1Char('"');
    }
    return text + QLatin1Char('>');
}

bool CPLXMLWriter::isXmlText(const QString& text)
{
    return nonXmlCharacter(text) < 0;
}

int CPLXMLWriter::nonXmlCharacter(const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const ushort c = text.at(i).unicode();
        if ((c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c == 0xfffe || c == 0xffff
            || QChar::isLowSurrogate(c))
            return i;
        if (QChar::isHighSurrogate(c)) {
            if (i + 1 == text.size() || !text.at(i + 1).isLowSurrogate())
                return i;
            ++i; // the pair is one character
        }
    }
    return -1;
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
    // A reader turns a raw CR (and CR LF) in element text into a LF.
    writeRaw(protect(text).replace(QLatin1Char('\r'), QLatin1String("&#13;")));
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
