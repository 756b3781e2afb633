#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLSection.h"

#include <QByteArray>
#include <QVector>

#include <cstring>

namespace {

const QString SHAPE_HELP = QStringLiteral(
    "The output is one JSON object, UTF-8; arrays keep the order of the file:\n"
    "  {\n"
    "    \"file\": \"FILE as given\",\n"
    "    \"clickNumber\": \"the name of the ClickNumber section\",\n"
    "    \"leadingLines\": [ \"each line before the first section\" ],\n"
    "    \"sections\": [\n"
    "      { \"key\": \"User Input\", \"name\": \"Orvane Universal\",\n"
    "        \"rawName\": \"the name with its inline comment, only when it has one\",\n"
    "        \"entries\": [\n"
    "          { \"key\": \"Treatment\", \"value\": \"Vehicle\",\n"
    "            \"rawValue\": \"the value with its inline comment, only when it has one\" },\n"
    "          { \"comment\": \"# a comment line, only with --comments\" } ] } ]\n"
    "  }\n");

// Writes JSON as it goes, in the form of QJsonDocument::toJson(Indented) (members sorted by
// name, four blanks a level, strings escaped as Qt escapes them), so that the output of a
// large document is never held whole: what is written waits in a small buffer.
class JsonWriter
{
public:
    ~JsonWriter() { flush(); }

    // Opens an object or array as the next item: a member's value when `name` is given.
    void open(char bracket, const char* name = nullptr)
    {
        item(name);
        m_buffer += bracket;
        m_buffer += '\n';
        m_first.append(true);
    }
    void close(char bracket)
    {
        // An empty object or array closes on the line after its bracket.
        if (!m_first.takeLast())
            m_buffer += '\n';
        indent();
        m_buffer += bracket;
        if (m_first.isEmpty())
            m_buffer += '\n';
        if (m_buffer.size() >= FLUSH_SIZE)
            flush();
    }
    void string(const QString& text, const char* name = nullptr)
    {
        item(name);
        quote(text);
    }

private:
    static constexpr int FLUSH_SIZE = 64 * 1024;

    void flush()
    {
        writeOutputBytes(m_buffer);
        m_buffer.truncate(0);
    }
    void indent() { m_buffer.append(4 * m_first.size(), ' '); }
    // Separates the item from the one before it and writes its name.
    void item(const char* name)
    {
        if (!m_first.isEmpty()) {
            if (!m_first.last())
                m_buffer += ",\n";
            m_first.last() = false;
        }
        indent();
        if (name) {
            m_buffer += '"';
            m_buffer += name;
            m_buffer += "\": ";
        }
    }
    void quote(const QString& text)
    {
        static const char HEX[] = "0123456789abcdef";
        m_buffer += '"';
        for (const QChar c : text) {
            const ushort u = c.unicode();
            if (u >= 0x800) {
                m_buffer += QString(c).toUtf8();
                continue;
            }
            if (u >= 0x80) {
                m_buffer += char(0xc0 | (u >> 6));
                m_buffer += char(0x80 | (u & 0x3f));
                continue;
            }
            if (u >= 0x20 && u != '"' && u != '\\') {
                m_buffer += char(u);
                continue;
            }
            // The short escapes JSON has, else the code in four hexadecimal digits.
            static const char SHORT[] = "\"\"\\\\\bb\ff\nn\rr\tt";
            const char* known = u == 0 ? nullptr : std::strchr(SHORT, char(u));
            m_buffer += '\\';
            if (known && (known - SHORT) % 2 == 0) {
                m_buffer += known[1];
            } else {
                m_buffer += "u00";
                m_buffer += HEX[u >> 4];
                m_buffer += HEX[u & 0xf];
            }
        }
        m_buffer += '"';
    }

    QByteArray m_buffer;
    // For each open object or array, whether no item has been written in it yet.
    QVector<bool> m_first;
};

// A plain text, and its raw form under `rawField` only when it differs: the members in the
// order of their names.
void writeText(JsonWriter& json, const char* field, const QString& text, const char* rawField,
               const QString& rawText)
{
    const bool rawFirst = rawText != text && qstrcmp(rawField, field) < 0;
    if (rawFirst)
        json.string(rawText, rawField);
    json.string(text, field);
    if (rawText != text && !rawFirst)
        json.string(rawText, rawField);
}

void writeSection(JsonWriter& json, const CPLSection& section, bool comments)
{
    json.open('{');
    json.open('[', "entries");
    const int count = section.getEntryCount();
    for (int i = 0; i < count; ++i) {
        const Entry entry = entryAt(section, i);
        if (entry.isComment && !comments)
            continue;
        json.open('{');
        if (entry.isComment) {
            json.string(entry.value, "comment");
        } else {
            json.string(entry.key, "key");
            writeText(json, "value", entry.value, "rawValue", entry.rawValue);
        }
        json.close('}');
    }
    json.close(']');
    QString key;
    section.getSectionKey(&key);
    json.string(key, "key");
    writeText(json, "name", nameOf(section, false), "rawName", nameOf(section, true));
    json.close('}');
}

} // namespace

int runJson(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("json"),
                            QStringLiteral("Prints the document in FILE as JSON."));
    commandLine.addArgument(QStringLiteral("FILE"), readFileArgumentHelp());
    commandLine.addOption(QStringLiteral("comments"),
                          QStringLiteral("Also lists the comment lines of each section in place."));
    commandLine.setNotes(SHAPE_HELP + WARNINGS_NOTE);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    CPLClickInfo document;
    if (const int status = loadDocument(path, &document))
        return status;
    warnOfLoad(document.getLoadWarningList());

    QString clickNumber;
    document.getClickNumber(&clickNumber);
    JsonWriter json;
    json.open('{');
    json.string(clickNumber, "clickNumber");
    json.string(sourceName(path), "file");
    json.open('[', "leadingLines");
    const QStringList leadingLines = document.getLeadingLines();
    for (const QString& line : leadingLines)
        json.string(line);
    json.close(']');
    json.open('[', "sections");
    const bool comments = commandLine.isSet(QStringLiteral("comments"));
    const QStringList sectionKeys = document.getSectionKeys();
    for (const QString& sectionKey : sectionKeys)
        writeSection(json, *document[sectionKey], comments);
    json.close(']');
    json.close('}');
    return ExitSuccess;
}
