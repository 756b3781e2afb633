#ifndef PLXMLWRITER_H
#define PLXMLWRITER_H

#include "ovparser_global.h"

#include <QMap>
#include <QString>
#include <QTextStream>

class QIODevice;
class QTextCodec;

// The attributes of one element, name to value. Being an ordered map, it writes its
// attributes in ascending order of the name, whatever order they were inserted in.
using AttrMap = QMap<QString, QString>;

// A small streaming XML writer: writes tags and text straight to a device through a text
// stream, escaping character data and attribute values. It does not validate: element and
// attribute names are written as given, and nesting is the caller's business; whether a text
// can be written at all (isXmlText()) is the caller's to ask.
//
// Escaping: both element text and attribute values go through protect() (the five entities).
// On top of that, where attribute values are written (opening(), and so every tag with
// attributes), a tab, a LF and a CR are written as the character references "&#9;", "&#10;"
// and "&#13;": a reader replaces each of them by a blank when it stands raw in an attribute,
// and keeps it when it is a reference, so they read back as they were. Element text keeps
// tabs and LF raw and writes a CR as "&#13;", which a reader would otherwise turn into a LF.
//
// Tags never end a line by themselves; newLine() does. After a line break the next tag is
// indented by 4 blanks per open element, so a caller that wants one element per line calls
// newLine() after each tag. Without newLine() everything is written on one line.
//
// The writer neither closes nor (apart from newLine() and flush()) flushes the device: the
// text stream is flushed when the writer is destroyed, and the caller closes the device
// after that. The first failed write to the device is kept: hasError() reports it.
class OVPARSER_EXPORT CPLXMLWriter
{
public:
    // Writes to `device`, which must be open for writing. With a codec the text is encoded
    // with it and the XML declaration naming it is written first, ending with LF:
    //   <?xml version="1.0" encoding="UTF-8"?>
    // Without one (null) the text is UTF-8 and no declaration is written.
    CPLXMLWriter(QIODevice* device, QTextCodec* codec);
    virtual ~CPLXMLWriter();
    CPLXMLWriter(const CPLXMLWriter&) = delete;
    CPLXMLWriter& operator=(const CPLXMLWriter&) = delete;

    // `text` with "&", ">", "<", '"' and "'" replaced by their entities, the ampersand first
    // so that no entity is escaped twice. Nothing else changes: line breaks, tabs and
    // non-ASCII characters are left to the codec.
    QString protect(const QString& text) const;
    // The start tag: "<", the tag, then for each attribute in name order a blank, the name,
    // "=\"", the protected value (tabs and line breaks as character references) and "\"",
    // then ">". Names are not escaped.
    QString opening(const QString& tag, const AttrMap& attrs) const;
    // Whether XML 1.0 can carry `text` in element text or an attribute value, as itself or as
    // a character reference: false for a NUL, any other control character below 0x20 but tab,
    // LF and CR, U+FFFE, U+FFFF, and a surrogate that is not half of a pair.
    static bool isXmlText(const QString& text);
    // The position of the first character of `text` that XML cannot carry; -1 when none.
    static int nonXmlCharacter(const QString& text);

    // Writes the indentation when a line break came before, once.
    void writePendingIndent();
    // Writes LF and flushes the stream; the next tag is indented.
    void newLine();
    // Writes `text` as it is (no escaping, no indentation).
    void writeRaw(const QString& text);
    // Writes `text` escaped, a CR as "&#13;" (no indentation).
    void writeString(const QString& text);
    // A start tag; what follows is one level deeper.
    void writeOpenTag(const QString& tag, const AttrMap& attrs = AttrMap());
    // Back one level (never below none), then the end tag, so that after a line break it
    // lines up with its start tag. No check that `tag` is the element open.
    void writeCloseTag(const QString& tag);
    // An empty element, "<tag a=\"1\"/>": no blank before the slash.
    void writeAtomTag(const QString& tag, const AttrMap& attrs = AttrMap());
    // Start tag, escaped text, end tag. An empty text still gives both tags ("<a></a>").
    void writeTaggedString(const QString& tag, const QString& text,
                           const AttrMap& attrs = AttrMap());

    // Hands everything written so far to the device. Returns false when a write to the
    // device has failed, now or before (a full disk, a device that takes no more).
    bool flush();
    // Whether a write to the device has failed; the text after the failure is lost.
    bool hasError() const;

private:
    // After a tag: a line break when lines end automatically (they never do; see newLine()).
    void endTag();

    QTextStream m_stream;
    QString m_strIndent;
    const int m_nIndentWidth = 4;
    const bool m_bAutoNewLine = false;
    bool m_bIndentPending = true;
};

#endif // PLXMLWRITER_H
