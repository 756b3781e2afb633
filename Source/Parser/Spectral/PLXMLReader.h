#ifndef PLXMLREADER_H
#define PLXMLREADER_H

#include "ovparser_global.h"

#include <QDomDocument>
#include <QDomElement>
#include <QList>
#include <QString>

class QByteArray;

// Reads an XML file whole into a DOM (QDomDocument) and finds elements and attributes in it.
// The text must be well-formed XML 1.0 as QXmlStreamReader checks it: a character XML does
// not allow (a control character other than tab, LF and CR), a byte sequence that is not
// valid in the document's encoding, or an entity expanding beyond Qt's limit make it
// malformed.
// Elements may nest at most MAX_ELEMENT_DEPTH (256) levels deep, the document element being
// the first level; deeper nesting is refused as malformed ("elements nested deeper than 256
// levels") before the DOM is built, since building it takes time growing with the square of
// the depth: a file of 1.4 MB nested 200,000 levels deep would keep the reader busy for over
// a minute. The spectral-analysis files nest about 5 levels deep.
// Only the parsing reports a status; the lookups answer on a null element with nothing.
// Status codes from PLStatus.h.
class OVPARSER_EXPORT CPLXMLReader
{
public:
    // The deepest nesting of elements read; see above.
    static constexpr int MAX_ELEMENT_DEPTH = 256;

    CPLXMLReader();
    virtual ~CPLXMLReader();

    // Reads and parses a file, by the rules every file of the library is read by: only a
    // regular file (64 for a FIFO, device or socket, never opened), at most PL_MAX_FILE_SIZE
    // bytes (63), 65 when memory runs out. Returns 11 when it cannot be opened or read
    // (getLastSystemError() says why), 50 when it is not
    // well-formed XML (then getErrorLine(), getErrorColumn() and getErrorMessage() say where
    // and why, and a warning is logged), 78 for more than PL_MAX_XML_ELEMENTS elements
    // (getErrorMessage() and getLastLimitText() give the count), else 0. A failed load leaves
    // an empty document.
    int loadXMLFile(const QString& fileName);
    // Parses XML held in memory; 50, 65, 78 or 0 as loadXMLFile().
    int loadXMLData(const QByteArray& data);

    // The document element; a null element before a successful load.
    QDomElement getRootElement() const;
    // Where and why the last load found the text malformed: 1-based line and column, and
    // the parser's message; 0, 0 and empty after a successful load.
    int getErrorLine() const { return m_nErrorLine; }
    int getErrorColumn() const { return m_nErrorColumn; }
    QString getErrorMessage() const { return m_strErrorMessage; }

    // The first child element of `parent` named `name`. Returns 24 when there is none, 16
    // for a null result pointer.
    static int getChildElement(const QDomElement& parent, const QString& name, QDomElement* child);
    // Every child element of `parent` named `name`, in document order.
    static QList<QDomElement> getChildElements(const QDomElement& parent, const QString& name);

private:
    // Parses `data`; a failure is logged with `source` (a file name) and its place.
    int parse(const QByteArray& data, const QString& source);
    // parse() without its guard against an allocation failure.
    int parseGuarded(const QByteArray& data, const QString& source);
    // Ends a failed parse: empties the document, logs the error set before with `source`,
    // and returns 50.
    int refuse(const QString& source);

    QDomDocument m_document;
    int m_nErrorLine = 0;
    int m_nErrorColumn = 0;
    QString m_strErrorMessage;
};

#endif // PLXMLREADER_H
