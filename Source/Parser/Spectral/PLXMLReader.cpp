#include "PLXMLReader.h"

#include "PLFileReader_p.h"
#include "PLLimits_p.h"
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

// What one pass over the text found: the first start tag that lies deeper than the depth
// limit (its line at 0 when there is none), and the number of elements read up to there.
struct ElementCount
{
    TextPosition tooDeep;
    qint64 elements = 0;
};

// Reads `data` once, counting the elements and how deep they nest, and stops at the first
// start tag that lies deeper than `maxDepth`, or at the end or the first fault (the DOM parse
// then reports it). At most maxDepth + 1 tags are ever open and nothing is kept, so the time is
// in proportion to the text read and the memory does not grow with it.
ElementCount countElements(const QByteArray& data, int maxDepth)
{
    QXmlStreamReader xml(data);
    xml.setNamespaceProcessing(false);
    ElementCount count;
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            --depth;
        } else if (token == QXmlStreamReader::StartElement) {
            ++count.elements;
            if (++depth > maxDepth) {
                // The reader's column counts from 0 and stands after the tag's last character:
                // as a 1-based column, it is that of the tag's ">".
                count.tooDeep.line = int(xml.lineNumber());
                count.tooDeep.column = int(xml.columnNumber());
                break;
            }
        }
    }
    return count;
}

} // namespace

int CPLXMLReader::parse(const QByteArray& data, const QString& source)
{
    const int status = PL_GUARDED({ return parseGuarded(data, source); });
    if (status == PL_OUT_OF_MEMORY)
        m_document.clear();
    return status;
}

int CPLXMLReader::parseGuarded(const QByteArray& data, const QString& source)
{
    m_nErrorLine = 0;
    m_nErrorColumn = 0;
    m_strErrorMessage.clear();
    // Building the DOM of deep nesting takes time growing with the square of the depth, and
    // its memory grows with the number of elements, so both are checked first, in one pass
    // that stops at the first element too deep.
    PLLimits::clearLastLimitText();
    const ElementCount count = countElements(data, MAX_ELEMENT_DEPTH);
    if (count.tooDeep.line > 0) {
        m_nErrorLine = count.tooDeep.line;
        m_nErrorColumn = count.tooDeep.column;
        m_strErrorMessage
            = QStringLiteral("elements nested deeper than %1 levels").arg(MAX_ELEMENT_DEPTH);
        return refuse(source);
    }
    if (count.elements > PL_MAX_XML_ELEMENTS) {
        m_document.clear();
        const int status = PLLimits::refuse(source, count.elements, PL_MAX_XML_ELEMENTS, "elements",
                                            "an XML file");
        m_strErrorMessage = getLastLimitText();
        return status;
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
