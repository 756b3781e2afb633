#include "PLXMLReader.h"

#include "PLFileReader_p.h"
#include "PLLogging_p.h"
#include "PLStatus.h"

#include <QByteArray>
#include <QXmlStreamReader>

CPLXMLReader::CPLXMLReader() = default;

CPLXMLReader::~CPLXMLReader() = default;

int CPLXMLReader::loadXMLFile(const QString& fileName)
{
    QByteArray data;
    const int status = PLFile::readFile(fileName, &data);
    if (status != PL_SUCCESS) {
        m_document.clear();
        return status;
    }
    return parse(data, fileName);
}

int CPLXMLReader::loadXMLData(const QByteArray& data)
{
    return parse(data, QStringLiteral("XML text"));
}

namespace {

// Where a start tag ends: 1-based line and column.
struct TextPosition
{
    int line = 0;
    int column = 0;
};

// Reads `data` once, counting how deep elements nest, and stops at the first start tag that
// lies deeper than `maxDepth`. True, with the place where that tag ends, when there is one;
// false when there is none or the text turns out malformed first (the DOM parse then reports
// that). At most maxDepth + 1 tags are ever open, so the time is in proportion to the text
// read, which ends at that tag.
bool findTooDeepElement(const QByteArray& data, int maxDepth, TextPosition* position)
{
    QXmlStreamReader xml(data);
    xml.setNamespaceProcessing(false);
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            --depth;
        } else if (token == QXmlStreamReader::StartElement && ++depth > maxDepth) {
            // The reader's column counts from 0 and stands after the tag's last character:
            // as a 1-based column, it is that of the tag's ">".
            position->line = int(xml.lineNumber());
            position->column = int(xml.columnNumber());
            return true;
        }
    }
    return false;
}

} // namespace

int CPLXMLReader::parse(const QByteArray& data, const QString& source)
{
    m_nErrorLine = 0;
    m_nErrorColumn = 0;
    m_strErrorMessage.clear();
    // Building the DOM of deep nesting takes time growing with the square of the depth, so
    // the depth is checked first, in one pass that stops at the first element too deep.
    TextPosition tooDeep;
    if (findTooDeepElement(data, MAX_ELEMENT_DEPTH, &tooDeep)) {
        m_nErrorLine = tooDeep.line;
        m_nErrorColumn = tooDeep.column;
        m_strErrorMessage
            = QStringLiteral("elements nested deeper than %1 levels").arg(MAX_ELEMENT_DEPTH);
        return refuse(source);
    }
    // QXmlStreamReader holds the text to XML's rules (no control characters, encoding
    // checked, a limit on entity expansion); the DOM is built from what it reads.
    QXmlStreamReader xml(data);
    if (m_document.setContent(&xml, false, &m_strErrorMessage, &m_nErrorLine, &m_nErrorColumn))
        return PL_SUCCESS;
    return refuse(source);
}

int CPLXMLReader::refuse(const QString& source)
{
    m_document.clear();
    qCWarning(lcOvXml, "%s:%d:%d: malformed XML: %s", qUtf8Printable(source), m_nErrorLine,
              m_nErrorColumn, qUtf8Printable(m_strErrorMessage));
    return PL_MALFORMED_XML;
}

QDomElement CPLXMLReader::getRootElement() const
{
    return m_document.documentElement();
}

int CPLXMLReader::getChildElement(const QDomElement& parent, const QString& name,
                                  QDomElement* child)
{
    if (!child)
        return PL_NULL_ARGUMENT;
    const QDomElement found = parent.firstChildElement(name);
    if (found.isNull())
        return PL_KEY_NOT_FOUND;
    *child = found;
    return PL_SUCCESS;
}

QList<QDomElement> CPLXMLReader::getChildElements(const QDomElement& parent, const QString& name)
{
    QList<QDomElement> elements;
    for (QDomElement element = parent.firstChildElement(name); !element.isNull();
         element = element.nextSiblingElement(name))
        elements.append(element);
    return elements;
}
