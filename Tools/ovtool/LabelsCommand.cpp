#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLLabelDataSet.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString NOTES = QStringLiteral(
    "Each set is a section of the file whose header names the set, and whose lines\n"
    "are its labels, in order:\n"
    "  *** User Label Name Set:<tab>Experiment\n"
    "  Subject:<tab>\n"
    "  View:<tab>\n"
    "A set named \"Morvex Universal\" is shown as \"Orvane Universal\", its current\n"
    "name. When two sets have the same name, in any case, the first is listed.\n"
    "The output is each set's name, then its labels indented, a blank line between\n"
    "sets. With --json it is one JSON object:\n"
    "  { \"file\": \"FILE as given\",\n"
    "    \"sets\": [ { \"name\": \"Experiment\", \"labels\": [ \"Subject\", \"View\" ] } ] }\n");

QStringList labelsOfSet(CPLLabelDataSet& labels, const QString& setName)
{
    QStringList list;
    labels.selectLabelSet(setName);
    labels.getLabelData(&list);
    return list;
}

} // namespace

int runLabels(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("labels"),
        QStringLiteral("Lists the label-name sets of FILE, a UserLabelNames.txt, with their\n"
                       "labels in order."));
    commandLine.addArgument(QStringLiteral("FILE"),
                            QStringLiteral("A file of label-name sets (UserLabelNames.txt)."));
    commandLine.addOption(QStringLiteral("json"), QStringLiteral("Prints JSON (see below)."));
    commandLine.setNotes(NOTES);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    CPLLabelDataSet labels;
    if (const int status = loadDocument(path, &labels))
        return status;
    const QStringList setNames = labels.getLabelSetNames();
    if (setNames.isEmpty())
        return fail(ExitNotFound, path,
                    QStringLiteral("the file holds no label-name sets (no \"*** User Label "
                                   "Name Set:\" section)"));

    if (commandLine.isSet(QStringLiteral("json"))) {
        QJsonArray sets;
        for (const QString& setName : setNames)
            sets.append(
                QJsonObject { { QStringLiteral("name"), setName },
                              { QStringLiteral("labels"),
                                QJsonArray::fromStringList(labelsOfSet(labels, setName)) } });
        const QJsonObject root { { QStringLiteral("file"), path },
                                 { QStringLiteral("sets"), sets } };
        writeOutputBytes(QJsonDocument(root).toJson(QJsonDocument::Indented));
        return ExitSuccess;
    }
    QTextStream& out = standardOutput();
    bool separate = false;
    for (const QString& setName : setNames) {
        if (separate)
            out << QLatin1Char('\n');
        separate = true;
        out << setName << QLatin1Char('\n');
        const QStringList setLabels = labelsOfSet(labels, setName);
        for (const QString& label : setLabels)
            out << QLatin1String("  ") << label << QLatin1Char('\n');
    }
    return ExitSuccess;
}
