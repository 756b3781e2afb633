#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLSettingsFileWrapper.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

const QString NOTES = QStringLiteral(
    "A settings file holds one section per entry; the entry's menu name is the value\n"
    "of its \"MenuName\" key (or, with --section-names, the section's name) and its\n"
    "file the value of its \"FileName\" key:\n"
    "  *** ROI File 1:<tab>\n"
    "  MenuName:<tab>Kidney left\n"
    "  FileName:<tab>kidney-left.xml\n"
    "Sections without a menu name are not listed. In a folder every file whose\n"
    "extension is \"txt\", in any case, is an entry; its menu name is the file name\n"
    "without the extension and, with --filter, without the filter at its front.\n"
    "The output has one line per entry: the menu name, then the file, aligned.\n"
    "With --json it is one JSON object:\n"
    "  { \"path\": \"PATH as given\", \"mode\": \"file\" or \"folder\",\n"
    "    \"entries\": [ { \"menuName\": \"Kidney left\", \"fileName\": \"kidney-left.xml\" } ] "
    "}\n");

using Entries = QList<QPair<QString, QString>>;

void printEntries(const Entries& entries)
{
    int width = 0;
    for (const auto& entry : entries)
        width = std::max(width, entry.first.size());
    QTextStream& out = standardOutput();
    for (const auto& entry : entries) {
        if (entry.second.isEmpty())
            out << entry.first << QLatin1Char('\n');
        else
            out << entry.first.leftJustified(width) << QLatin1String("  ") << entry.second
                << QLatin1Char('\n');
    }
}

void printJson(const QString& path, bool folder, const Entries& entries)
{
    QJsonArray array;
    for (const auto& entry : entries)
        array.append(QJsonObject { { QStringLiteral("menuName"), entry.first },
                                   { QStringLiteral("fileName"), entry.second } });
    const QJsonObject root { { QStringLiteral("path"), path },
                             { QStringLiteral("mode"),
                               folder ? QStringLiteral("folder") : QStringLiteral("file") },
                             { QStringLiteral("entries"), array } };
    writeOutputBytes(QJsonDocument(root).toJson(QJsonDocument::Indented));
}

} // namespace

int runSettings(const QStringList& arguments)
{
    const QString command = QStringLiteral("settings");
    CommandLine commandLine(
        command,
        QStringLiteral("Lists the menu entries of a settings file, or of a folder of settings\n"
                       "files: each entry's menu name and the file it points to."));
    commandLine.addArgument(QStringLiteral("PATH"),
                            QStringLiteral("A settings file, or a folder of \"txt\" files."));
    commandLine.addValueOption(QStringLiteral("tag"), QStringLiteral("TAG"),
                          QStringLiteral("File only: lists only the sections whose key contains "
                                         "TAG (case matters), e.g. \"ROI File\"."));
    commandLine.addValueOption(QStringLiteral("filter"), QStringLiteral("TEXT"),
                          QStringLiteral("File: only sections whose key also contains TEXT. "
                                         "Folder: only files whose name begins with TEXT (case "
                                         "matters)."));
    commandLine.addOption(QStringLiteral("section-names"),
                          QStringLiteral("File only: the section's name is the menu name."));
    commandLine.addOption(QStringLiteral("json"), QStringLiteral("Prints JSON (see below)."));
    commandLine.setNotes(NOTES);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    const bool folder = QFileInfo(path).isDir();
    CPLSettingsFileWrapper settings(commandLine.value(QStringLiteral("tag")));
    if (folder) {
        for (const char* fileOnly : { "tag", "section-names" }) {
            if (commandLine.isSet(QLatin1String(fileOnly)))
                return usageError(QStringLiteral("settings: --%1 applies to a settings file, "
                                                 "not to a folder")
                                      .arg(QLatin1String(fileOnly)),
                                  command);
        }
        settings.setLoadMode(CPLSettingsFileWrapper::LM_FOLDER);
        settings.setFolderPath(path);
    } else if (const int status = loadDocument(path, &settings)) {
        return status;
    }
    settings.setUseSectionNameForMenuName(commandLine.isSet(QStringLiteral("section-names")));

    const Entries entries = settings.getMenuEntries(commandLine.value(QStringLiteral("filter")));
    if (commandLine.isSet(QStringLiteral("json")))
        printJson(path, folder, entries);
    else
        printEntries(entries);
    return ExitSuccess;
}
