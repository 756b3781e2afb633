#include "Browse.h"
#include "Commands.h"
#include "Tool.h"

#include "PLConstants.h"
#include "PLSequenceInfo.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString LAYOUT_NOTES = QStringLiteral(
    "A sequence folder holds \"SequenceInfo.txt\" and one folder per acquisition, named\n"
    "after its click number, with its ClickInfo.txt:\n"
    "  SQ20261106101500/SequenceInfo.txt\n"
    "  SQ20261106101500/SQ20261106101500_001/ClickInfo.txt ...\n"
    "\"SequenceInfo.txt\" holds the section \"Sequence\", named with the sequence ID, with\n"
    "the lines \"ClickNumbers in Sequence\" (the count) and \"ClickNumber 1\", \"ClickNumber\n"
    "2\"... (the clicks in order; \"ClickNumbers: Empty Sequence\" when there are none), then\n"
    "\"User Input\" (named after its label set), \"User Label Name Set\" and \"Restore\n"
    "Results\".\n");

const QString SHOW_NOTES = QStringLiteral(
    "FOLDER is the sequence folder, or its SequenceInfo.txt; \"ovtool sequence create\n"
    "--help\" tells how to make one.\n"
    "Prints the sequence ID, the user input, one row per click in order with the columns of\n"
    "\"ovtool browse\", then the check of the folder: clicks whose folder or ClickInfo.txt is\n"
    "missing, and acquisition folders the sequence does not list. With --csv only the rows\n"
    "are printed and each finding of the check is one line on stderr; with --json one\n"
    "object: \"Sequence ID\", \"User Label Name Set\", \"User Input\", \"clicks\" (the rows)\n"
    "and \"check\". The exit status is 9 when the check finds anything, 3 when a listed\n"
    "acquisition cannot be read (reported on stderr, its row left out), 4 when the file\n"
    "has no \"Sequence\" section.\n\n");

const QString CREATE_NOTES = QStringLiteral(
    "Writes FOLDER/SequenceInfo.txt listing the acquisitions in the order given. Each\n"
    "ACQUISITION is an acquisition folder with its ClickInfo.txt, named after its click\n"
    "number (usually a subfolder of FOLDER). The user input is that of the first\n"
    "acquisition's \"User Input\" section, the label set named after it. The sequence ID is\n"
    "--id, or the first click number up to its last \"_\".\n"
    "An existing SequenceInfo.txt is not replaced without --force (exit status 7).\n"
    "Exit status 7 also when an acquisition folder is not named after its click number or\n"
    "is given twice; 3 or 4 when its ClickInfo.txt cannot be read or does not load.\n\n");

const QString CREATE = QStringLiteral("sequence create");
const QString SHOW = QStringLiteral("sequence");

// The check's findings, each with the path it is about and what is wrong.
QVector<QPair<QString, QString>> findings(const QString& folder, const CPLSequenceCheck& check)
{
    QVector<QPair<QString, QString>> lines;
    const QDir dir(folder);
    for (const QString& click : check.missingFolders)
        lines.append({ dir.filePath(click), QStringLiteral("listed in the sequence; no folder") });
    for (const QString& click : check.missingClickInfo)
        lines.append(
            { dir.filePath(click),
              QStringLiteral("listed in the sequence; no ") + PLConstants::CLICKINFO_FILENAME });
    for (const QString& click : check.unlisted)
        lines.append(
            { dir.filePath(click), QStringLiteral("an acquisition the sequence does not list") });
    return lines;
}

QJsonObject userInputObject(const QList<QPair<QString, QString>>& input)
{
    QJsonObject object;
    for (const auto& entry : input)
        object.insert(entry.first, entry.second);
    return object;
}

QJsonObject checkObject(const CPLSequenceCheck& check)
{
    return {
        { QStringLiteral("missing folders"), QJsonArray::fromStringList(check.missingFolders) },
        { QStringLiteral("missing ClickInfo"), QJsonArray::fromStringList(check.missingClickInfo) },
        { QStringLiteral("not listed"), QJsonArray::fromStringList(check.unlisted) }
    };
}

QString userInputText(const QString& labelSet, const QList<QPair<QString, QString>>& input)
{
    if (input.isEmpty())
        return QStringLiteral("User Input: none\n");
    QString text = QStringLiteral("User Input (%1):\n").arg(labelSet);
    for (const auto& entry : input)
        text += QLatin1String("  ") + entry.first + QLatin1String(": ") + entry.second
            + QLatin1Char('\n');
    return text;
}

// The rows of the listed clicks that can be read; the others are reported on stderr (those
// whose ClickInfo.txt is missing are the check's to report). False when one was left out.
bool readRows(const QString& folder, const QString& id, const QStringList& clickNumbers,
              QVector<OvBrowse::Row>* rows)
{
    bool complete = true;
    for (const QString& click : clickNumbers) {
        const QString file
            = QDir(folder).filePath(click + QLatin1Char('/') + PLConstants::CLICKINFO_FILENAME);
        if (!QFileInfo(file).isFile())
            continue;
        OvBrowse::Row row;
        OvBrowse::Skipped why;
        if (!OvBrowse::readRow(file, &row, &why)) {
            fail(ExitCannotRead, why.where(), why.reason + QLatin1String("; left out"));
            complete = false;
            continue;
        }
        row.values[OvBrowse::sequenceIdValue()] = id;
        rows->append(row);
    }
    return complete;
}

int runCreate(const QStringList& arguments)
{
    CommandLine commandLine(CREATE,
                            QStringLiteral("Writes a new SequenceInfo.txt for acquisitions."));
    commandLine.addArgument(QStringLiteral("FOLDER"),
                            QStringLiteral("The sequence folder, where SequenceInfo.txt goes."));
    commandLine.addRepeatedArgument(QStringLiteral("ACQUISITION"),
                                    QStringLiteral("The acquisition folders, in sequence order."));
    commandLine.addValueOption(QStringLiteral("id"), QStringLiteral("ID"),
                               QStringLiteral("The sequence ID."));
    commandLine.addOption(QStringLiteral("force"),
                          QStringLiteral("Replaces an existing SequenceInfo.txt."));
    commandLine.setNotes(CREATE_NOTES + LAYOUT_NOTES);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString folder = commandLine.argument(0);
    if (!QFileInfo(folder).isDir())
        return fail(ExitCannotRead, folder, QStringLiteral("not a folder"));
    const QString file = CPLSequenceInfo::sequenceFilePath(folder);
    if (QFileInfo::exists(file) && !commandLine.isSet(QStringLiteral("force")))
        return fail(ExitRefused, file, QStringLiteral("exists already; --force replaces it"));
    CPLSequenceInfo sequence;
    QString failed;
    const int status = sequence.createFromAcquisitions(
        commandLine.arguments(1), commandLine.value(QStringLiteral("id")), &failed);
    if (status != PL_SUCCESS)
        return fail(exitStatusOf(status, Step::Edit), failed.isEmpty() ? file : failed,
                    withSystemReason(getStatusText(status)));
    if (const int saved = sequence.save(file))
        return fail(exitStatusOf(saved, Step::Write), file, withSystemReason(getStatusText(saved)));
    return ExitSuccess;
}

} // namespace

int runSequence(const QStringList& arguments)
{
    if (arguments.value(1) == QLatin1String("create"))
        return runCreate(arguments.mid(1));
    CommandLine commandLine(
        SHOW,
        QStringLiteral("Shows a sequence: its ID, user input and acquisitions, and checks "
                       "its folder. \"sequence create\" makes one."));
    commandLine.addArgument(QStringLiteral("FOLDER"),
                            QStringLiteral("The sequence folder, or its SequenceInfo.txt."));
    commandLine.addOption(QStringLiteral("csv"), QStringLiteral("Prints the rows as CSV."));
    commandLine.addOption(QStringLiteral("json"), QStringLiteral("Prints one JSON object."));
    commandLine.setNotes(SHOW_NOTES + LAYOUT_NOTES);
    if (const auto done = commandLine.parse(arguments))
        return *done;
    if (commandLine.isSet(QStringLiteral("csv")) && commandLine.isSet(QStringLiteral("json")))
        return usageError(QStringLiteral("sequence: --csv and --json exclude each other"), SHOW);

    const QString file = CPLSequenceInfo::sequenceFilePath(commandLine.argument(0));
    const QString folder = QFileInfo(file).path();
    CPLSequenceInfo sequence;
    if (const int status = sequence.load(file)) {
        const int line = sequence.getLastErrorLine();
        return fail(exitStatusOf(status, Step::Read),
                    line > 0 ? QStringLiteral("%1:%2").arg(file).arg(line) : file,
                    line > 0 ? getStatusText(status) : withSystemReason(getStatusText(status)));
    }
    for (const QString& warning : sequence.getLoadWarnings())
        warn(warning);
    QString id;
    QStringList clickNumbers;
    CPLSequenceCheck check;
    if (sequence.getSequenceID(&id) != PL_SUCCESS || sequence.getClickNumbers(&clickNumbers)
        || sequence.verify(folder, &check))
        return fail(ExitMalformed, file,
                    QStringLiteral("no \"%1\" section").arg(PLConstants::SEQUENCEINFO_KEY));
    QList<QPair<QString, QString>> input;
    sequence.getUserInput(&input);
    QString labelSet;
    sequence.getLabelSetName(&labelSet);
    QVector<OvBrowse::Row> rows;
    const bool allRead = readRows(folder, id, clickNumbers, &rows);

    const auto problems = findings(folder, check);
    if (commandLine.isSet(QStringLiteral("json"))) {
        const QJsonObject root {
            { PLConstants::SEQUENCEINFO_BROWSEKEY, id },
            { PLConstants::SEQUENCEINFO_USER_LABEL_NAME_SET_KEY, labelSet },
            { PLConstants::SEQUENCEINFO_USERINPUT_KEY, userInputObject(input) },
            { QStringLiteral("clicks"), QJsonDocument::fromJson(OvBrowse::jsonText(rows)).array() },
            { QStringLiteral("check"), checkObject(check) },
        };
        writeOutputBytes(QJsonDocument(root).toJson(QJsonDocument::Indented));
    } else if (commandLine.isSet(QStringLiteral("csv"))) {
        standardOutput() << OvBrowse::csvText(rows);
        for (const auto& problem : problems)
            fail(ExitIncomplete, problem.first, problem.second);
    } else {
        QString text = PLConstants::SEQUENCEINFO_BROWSEKEY + QLatin1String(": ") + id
            + QLatin1Char('\n') + userInputText(labelSet, input) + QLatin1Char('\n')
            + OvBrowse::tableText(rows) + QLatin1Char('\n');
        if (problems.isEmpty())
            text += QStringLiteral("Check: every listed acquisition is there, and no other\n");
        for (const auto& problem : problems)
            text += QLatin1String("Check: ") + problem.first + QLatin1String(": ") + problem.second
                + QLatin1Char('\n');
        standardOutput() << text;
    }
    if (!check.isComplete())
        return ExitIncomplete;
    return allRead ? ExitSuccess : ExitCannotRead;
}
