#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLBkgSummaryInfo.h"
#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLPaths.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <vector>

namespace {

const QString NOTES = QStringLiteral(
    "FOLDER is a background library (the instrument's \"Background\" folder): its\n"
    "\"BkgSummary.txt\" lists every stored background, one section per entry, keyed by\n"
    "the entry ID that also names the entry's folder (holding \"BkgInfo.txt\" and\n"
    "\"background.tif\"); \"SLindex.txt\" and \"FLindex.txt\" list the luminescent and the\n"
    "fluorescent entries. An index that disagrees with the summary, and a section that is\n"
    "not a usable entry, are reported on stderr.\n"
    "\n"
    "--for CLICKINFO (a \"ClickInfo.txt\" or its acquisition folder) picks the background\n"
    "for the acquisition's \"luminescent image\": same family (\"Image Subtype\"\n"
    "fluorescent, else luminescent), same binning and field of view, an exposure not\n"
    "shorter than the acquisition's, a CCD temperature within the tolerance of the\n"
    "acquisition's \"Measured Temperature\" (not checked when it has none); of those the\n"
    "shortest exposure, then the newest. When none fits, the reason names the test that\n"
    "failed last (\"no exposure >= 120 s for binning 4 field of view C ...\"), exit status 8.\n"
    "\n"
    "--days N lists the entries taken more than N whole days before --date (UTC midnight\n"
    "of that day; now when not given), and entries without a date, oldest first.\n"
    "Exposures are in seconds, temperatures in degrees Celsius, dates in UTC.\n");

const QStringList COLUMNS
    = { QStringLiteral("ID"),          QStringLiteral("Family"),   QStringLiteral("Binning"),
        QStringLiteral("Exposure"),    QStringLiteral("f"),        QStringLiteral("FOV"),
        QStringLiteral("Temperature"), QStringLiteral("Acquired"), QStringLiteral("Image") };

QString family(const sBkgEntry& entry)
{
    return entry.m_bFluorescent ? QStringLiteral("fluorescent") : QStringLiteral("luminescent");
}

QString acquired(const sBkgEntry& entry)
{
    return entry.m_Acquired.isValid() ? entry.m_Acquired.toUTC().toString(Qt::ISODate) : QString();
}

QString image(const sBkgEntry& entry)
{
    return entry.m_strPathName + QLatin1Char('/') + entry.m_strFileName;
}

QStringList cells(const sBkgEntry& entry)
{
    return { entry.m_strId,
             family(entry),
             QString::number(entry.m_iBinning),
             QString::number(entry.m_dExposure),
             QString::number(entry.m_dFNumber),
             entry.m_strFieldOfView,
             QString::number(entry.m_dTemperature),
             entry.m_Acquired.isValid() ? acquired(entry) : QStringLiteral("-"),
             image(entry) };
}

void printTable(const QList<sBkgEntry>& entries)
{
    std::vector<QStringList> rows { COLUMNS };
    for (const sBkgEntry& entry : entries)
        rows.push_back(cells(entry));
    QVector<int> widths(COLUMNS.size(), 0);
    for (const QStringList& row : rows) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    }
    QTextStream& out = standardOutput();
    for (const QStringList& row : rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column)
            line += column + 1 < row.size() ? row[column].leftJustified(widths[column] + 2)
                                            : row[column];
        out << line << QLatin1Char('\n');
    }
}

QJsonObject entryObject(const sBkgEntry& entry)
{
    return { { QStringLiteral("id"), entry.m_strId },
             { QStringLiteral("family"), family(entry) },
             { QStringLiteral("binning"), entry.m_iBinning },
             { QStringLiteral("exposure"), entry.m_dExposure },
             { QStringLiteral("fNumber"), entry.m_dFNumber },
             { QStringLiteral("fieldOfView"), entry.m_strFieldOfView },
             { QStringLiteral("temperature"), entry.m_dTemperature },
             { QStringLiteral("acquired"),
               entry.m_Acquired.isValid() ? QJsonValue(acquired(entry)) : QJsonValue() },
             { QStringLiteral("image"), image(entry) } };
}

void printJson(const QString& folder, const QList<sBkgEntry>& entries)
{
    QJsonArray list;
    for (const sBkgEntry& entry : entries)
        list.append(entryObject(entry));
    const QJsonObject root { { QStringLiteral("folder"), folder },
                             { QStringLiteral("entries"), list } };
    writeOutputBytes(QJsonDocument(root).toJson(QJsonDocument::Indented));
}

// The ClickInfo file an argument names: the argument, or "ClickInfo.txt" in that folder.
QString clickInfoPath(const QString& argument)
{
    return getFilePathInFolder(argument, PLConstants::CLICKINFO_FILENAME);
}

// The background for the acquisition at `argument`, printed; or why there is none.
int printMatch(const CPLBkgSummaryInfo& library, const QString& argument, double tolerance,
               bool json)
{
    const QString path = clickInfoPath(argument);
    CPLClickInfo acquisition;
    if (const int status = loadDocument(path, &acquisition); status != ExitSuccess)
        return status;
    warnOfLoad(acquisition.getLoadWarningList());
    sBkgEntry entry;
    QString reason;
    const int status = library.findBackground(acquisition, &entry, &reason, tolerance);
    if (status == PL_NO_BACKGROUND_FITS)
        return fail(ExitNoBackground, path, getStatusText(status) + QStringLiteral(": ") + reason);
    if (status != PL_SUCCESS)
        return fail(exitStatusOf(status, Step::Read), path, reason);
    if (json)
        writeOutputBytes(QJsonDocument(entryObject(entry)).toJson(QJsonDocument::Indented));
    else
        printTable({ entry });
    return ExitSuccess;
}

// The moment --date names (UTC midnight of that day), or now.
std::optional<QDateTime> referenceDate(const CommandLine& commandLine)
{
    const QString text = commandLine.value(QStringLiteral("date"));
    if (text.isEmpty())
        return QDateTime::currentDateTimeUtc();
    const QDate date = QDate::fromString(text, Qt::ISODate);
    if (!date.isValid())
        return std::nullopt;
    return QDateTime(date, QTime(0, 0), Qt::UTC);
}

} // namespace

int runBkg(const QStringList& arguments)
{
    const QString command = QStringLiteral("bkg");
    CommandLine commandLine(
        command,
        QStringLiteral("Lists a library of dark backgrounds, one row per entry with the\n"
                       "settings it fits; or finds the background for an acquisition; or\n"
                       "lists the entries due for renewal."));
    commandLine.addArgument(QStringLiteral("FOLDER"),
                            QStringLiteral("The library folder, or its \"BkgSummary.txt\"."));
    commandLine.addOption(QStringLiteral("json"), QStringLiteral("Prints JSON."));
    commandLine.addValueOption(QStringLiteral("for"), QStringLiteral("CLICKINFO"),
                               QStringLiteral("Prints the background that fits this acquisition."));
    commandLine.addValueOption(
        QStringLiteral("tolerance"), QStringLiteral("C"),
        QStringLiteral("With --for: how far the temperatures may differ (default %1 C).")
            .arg(PL_BKG_TEMPERATURE_TOLERANCE, 0, 'f', 1));
    commandLine.addValueOption(QStringLiteral("days"), QStringLiteral("N"),
                               QStringLiteral("Lists the entries older than N days."));
    commandLine.addValueOption(QStringLiteral("date"), QStringLiteral("YYYY-MM-DD"),
                               QStringLiteral("With --days: the day to count from (today)."));
    commandLine.setNotes(NOTES);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    QString folder = commandLine.argument(0);
    if (QFileInfo(folder).isFile())
        folder = QFileInfo(folder).path();
    CPLBkgSummaryInfo library;
    const int status = library.load(folder);
    const QString summary = folder + QLatin1Char('/') + PLConstants::BKGSUMMARY_TXT_FILENAME;
    if (status == PL_FOLDER_MISSING)
        return fail(ExitCannotRead, folder, getStatusText(status));
    if (status != PL_SUCCESS)
        return fail(exitStatusOf(status, Step::Read), summary,
                    withSystemReason(getStatusText(status)));
    warnOfLoad(library.getLoadWarningList());
    for (const QString& warning : library.getLibraryWarnings())
        warn(warning);

    const bool json = commandLine.isSet(QStringLiteral("json"));
    if (commandLine.isSet(QStringLiteral("for"))) {
        bool ok = true;
        const double tolerance = commandLine.isSet(QStringLiteral("tolerance"))
            ? commandLine.value(QStringLiteral("tolerance")).toDouble(&ok)
            : PL_BKG_TEMPERATURE_TOLERANCE;
        if (!ok || tolerance < 0)
            return usageError(QStringLiteral("--tolerance needs a number of degrees, 0 or more"),
                              command);
        return printMatch(library, commandLine.value(QStringLiteral("for")), tolerance, json);
    }

    QList<sBkgEntry> entries;
    if (commandLine.isSet(QStringLiteral("days"))) {
        bool ok = false;
        const int days = commandLine.value(QStringLiteral("days")).toInt(&ok);
        const std::optional<QDateTime> reference = referenceDate(commandLine);
        if (!ok || days < 0)
            return usageError(QStringLiteral("--days needs a whole number, 0 or more"), command);
        if (!reference)
            return usageError(QStringLiteral("--date needs a day as YYYY-MM-DD"), command);
        library.getEntriesOlderThan(days, *reference, &entries);
    } else {
        library.getEntries(&entries);
    }
    if (json)
        printJson(folder, entries);
    else
        printTable(entries);
    return ExitSuccess;
}
