#include "PLXMLReader.h"

#include "PLStatus.h"

#include <QByteArray>
#include <QFile>
#include <QXmlStreamReader>
#include <QtDebug>

CPLXMLReader::CPLXMLReader() = default;

CPLXMLReader::~CPLXMLReader() = default;

int CPLXMLReader::loadXMLFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_document.clear();
        return PL_FILE_OPEN_FAILED;
    }
    const QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        m_document.clear();
        return PL_FILE_OPEN_FAILED;
    }
    return parse(data, fileName);
}

int CPLXMLReader::loadXMLData(const QByteArray& data)
{
    return parse(data, QStringLiteral("XML text"));
}

int CPLXMLReader::parse(const QByteArray& data, const QString& source)
{
    m_nErrorLine = 0;
    m_nErrorColumn = 0;
    m_strErrorMessage.clear();
    // QXmlStreamReader holds the text to XML's rules (no control characters, encoding
    // checked, a limit on entity expansion); the DOM is built from what it reads.
    QXmlStreamReader xml(data);
    if (m_document.setContent(&xml, false, &m_strErrorMessage, &m_nErrorLine, &m_nErrorColumn))
        return PL_SUCCESS;
    m_document.clear();
    qWarning("%s:%d:%d: malformed XML: %s", qUtf8Printable(source), m_nErrorLine, m_nErrorColumn,
             qUtf8Printable(m_strErrorMessage));
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
