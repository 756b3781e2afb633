#include "Browse.h"
#include "Commands.h"
#include "Tool.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

const QString NOTES = QStringLiteral(
    "Every file named ClickInfo.txt in FOLDER and its subfolders is one acquisition, and so\n"
    "is every DICOM file (a name ending in \".dcm\") with the metadata appended to its\n"
    "image; names match in any case. They are listed in path order: the click number, then\n"
    "the browse columns, read from the \"luminescent image\" section, or from the\n"
    "\"photographic image\" section when there is no luminescent image. A column whose key\n"
    "the section lacks is empty. \"Date and Time\" is the \"Acquisition Seconds\" value\n"
    "shown as a local date and time (yyyy-MM-dd HH:mm:ss).\n"
    "\n"
    "An acquisition that cannot be read (the file cannot be opened, a section header is\n"
    "malformed, there is no click number, or neither image section), and a folder that\n"
    "cannot be read, are each reported as one line on stderr and left out; the others are\n"
    "still listed, and the exit status is 1.\n"
    "While a long walk runs, its progress is shown on stderr when that is a terminal.\n"
    "\n"
    "Columns, for --sort (in any case):\n%1"
    "Numbers sort first, by value, then text in any case, then empty cells; --reverse\n"
    "turns that round. Rows with equal values keep the path order.\n");

// Shows on stderr, on a terminal, once the walk has taken a second, how many acquisitions
// have been found, then how many of them read; erased at the end.
class Progress
{
public:
    Progress()
        : m_enabled(isatty(STDERR_FILENO))
    {
        m_clock.start();
    }
    ~Progress()
    {
        if (m_shown)
            std::fprintf(stderr, "\r%*s\r", m_width, "");
    }
    // `done` is -1 while the files are found.
    void update(int done, int total)
    {
        if (!m_enabled || m_clock.elapsed() < 1000 || (m_shown && m_last.elapsed() < 100))
            return;
        const int width = done < 0
            ? std::fprintf(stderr, "\rovtool: browse: %d acquisitions found", total)
            : std::fprintf(stderr, "\rovtool: browse: %d of %d acquisitions read", done, total);
        // Blanks over the rest of a longer line before.
        std::fprintf(stderr, "%*s", std::max(0, m_width - width), "");
        m_width = std::max(m_width, width);
        std::fflush(stderr);
        m_shown = true;
        m_last.start();
    }

private:
    bool m_enabled;
    bool m_shown = false;
    int m_width = 0;
    QElapsedTimer m_clock;
    QElapsedTimer m_last;
};

} // namespace

int runBrowse(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("browse"),
        QStringLiteral("Lists every acquisition in a folder tree, one row each, as a table."));
    commandLine.addArgument(QStringLiteral("FOLDER"),
                            QStringLiteral("The folder to search, with its subfolders."));
    commandLine.addOption(QStringLiteral("csv"),
                          QStringLiteral("Prints CSV (comma-separated, CR LF line ends)."));
    commandLine.addOption(
        QStringLiteral("json"),
        QStringLiteral("Prints a JSON array with one object per acquisition: \"file\" and one "
                       "member per column."));
    commandLine.addValueOption(QStringLiteral("sort"), QStringLiteral("COLUMN"),
                               QStringLiteral("Sorts the rows by this column."));
    commandLine.addOption(QStringLiteral("reverse"),
                          QStringLiteral("Sorts in descending order (with --sort)."));
    const QStringList titles = OvBrowse::columnTitles();
    commandLine.setNotes(NOTES.arg(QLatin1String("  ") + titles.mid(0, 7).join(QLatin1String(", "))
                                   + QLatin1String(",\n  ")
                                   + titles.mid(7).join(QLatin1String(", ")) + QLatin1Char('\n')));
    if (const auto done = commandLine.parse(arguments))
        return *done;

    if (commandLine.isSet(QStringLiteral("csv")) && commandLine.isSet(QStringLiteral("json")))
        return usageError(QStringLiteral("browse: --csv and --json exclude each other"),
                          QStringLiteral("browse"));
    if (commandLine.isSet(QStringLiteral("reverse")) && !commandLine.isSet(QStringLiteral("sort")))
        return usageError(QStringLiteral("browse: --reverse needs --sort"),
                          QStringLiteral("browse"));
    int sortColumn = -1;
    if (commandLine.isSet(QStringLiteral("sort"))) {
        sortColumn = OvBrowse::columnIndex(commandLine.value(QStringLiteral("sort")));
        if (sortColumn < 0)
            return usageError(QLatin1String("browse: no column ")
                                  + quoted(commandLine.value(QStringLiteral("sort"))),
                              QStringLiteral("browse"));
    }
    const QString folder = commandLine.argument(0);
    if (!QFileInfo(folder).isDir())
        return fail(ExitCannotRead, folder, QStringLiteral("not a folder"));

    OvBrowse::Result result;
    {
        Progress progress;
        result
            = OvBrowse::browse(folder, [&](int done, int total) { progress.update(done, total); });
    }
    for (const OvBrowse::Skipped& skipped : qAsConst(result.skipped))
        fail(ExitCannotRead, skipped.where(), skipped.reason + QLatin1String("; left out"));
    if (sortColumn >= 0)
        OvBrowse::sortRows(result.rows, sortColumn, commandLine.isSet(QStringLiteral("reverse")));

    if (commandLine.isSet(QStringLiteral("json")))
        writeOutputBytes(OvBrowse::jsonText(result.rows));
    else if (commandLine.isSet(QStringLiteral("csv")))
        standardOutput() << OvBrowse::csvText(result.rows);
    else
        standardOutput() << OvBrowse::tableText(result.rows);
    return result.skipped.isEmpty() ? ExitSuccess : ExitCannotRead;
}
