#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLSection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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

// A plain text, and its raw form under `rawField` only when it differs.
void addText(QJsonObject& object, const QString& field, const QString& text,
             const QString& rawField, const QString& rawText)
{
    object.insert(field, text);
    if (rawText != text)
        object.insert(rawField, rawText);
}

QJsonObject sectionObject(const CPLSection& section, bool comments)
{
    QJsonArray entries;
    const QVector<Entry> sectionEntries = entriesOf(section);
    for (const Entry& entry : sectionEntries) {
        if (entry.isComment) {
            if (comments)
                entries.append(QJsonObject { { QStringLiteral("comment"), entry.value } });
            continue;
        }
        QJsonObject object { { QStringLiteral("key"), entry.key } };
        addText(object, QStringLiteral("value"), entry.value, QStringLiteral("rawValue"),
                entry.rawValue);
        entries.append(object);
    }
    QString key;
    section.getSectionKey(&key);
    QJsonObject object { { QStringLiteral("key"), key }, { QStringLiteral("entries"), entries } };
    addText(object, QStringLiteral("name"), nameOf(section, false), QStringLiteral("rawName"),
            nameOf(section, true));
    return object;
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

    QJsonArray sections;
    const QStringList sectionKeys = document.getSectionKeys();
    for (const QString& sectionKey : sectionKeys)
        sections.append(
            sectionObject(*document[sectionKey], commandLine.isSet(QStringLiteral("comments"))));
    QString clickNumber;
    document.getClickNumber(&clickNumber);
    const QJsonObject root { { QStringLiteral("file"), sourceName(path) },
                             { QStringLiteral("clickNumber"), clickNumber },
                             { QStringLiteral("leadingLines"),
                               QJsonArray::fromStringList(document.getLeadingLines()) },
                             { QStringLiteral("sections"), sections } };
    writeOutputBytes(QJsonDocument(root).toJson(QJsonDocument::Indented));
    return ExitSuccess;
}
