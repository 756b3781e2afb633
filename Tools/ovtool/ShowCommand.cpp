#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLSection.h"

#include <algorithm>

namespace {

const QLatin1String INDENT("  ");
// Between the widest "key:" of a section and its values.
const QLatin1String GAP("  ");

// The section's header line, then one line per entry: "key:" padded to the widest key of the
// section, then the value; comment lines, when shown, stand in place with the same indent.
void printSection(QTextStream& out, const CPLSection& section, bool raw, bool comments)
{
    QString key;
    section.getSectionKey(&key);
    const QString name = nameOf(section, raw);
    out << QLatin1String("*** ") << key << QLatin1Char(':');
    if (!name.isEmpty())
        out << QLatin1Char(' ') << name;
    out << QLatin1Char('\n');

    const QVector<Entry> entries = entriesOf(section);
    int width = 0;
    for (const Entry& entry : entries)
        width = std::max(width, entry.isComment ? 0 : entry.key.size() + 1);
    for (const Entry& entry : entries) {
        if (entry.isComment) {
            if (comments && !entry.value.isEmpty())
                out << INDENT << entry.value;
            if (comments)
                out << QLatin1Char('\n');
            continue;
        }
        const QString value = raw ? entry.rawValue : entry.value;
        const QString label = entry.key + QLatin1Char(':');
        out << INDENT;
        if (value.isEmpty())
            out << label;
        else
            out << label.leftJustified(width) << GAP << value;
        out << QLatin1Char('\n');
    }
}

} // namespace

int runShow(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("show"),
        QStringLiteral("Prints the lines before the first section of FILE, then every section\n"
                       "in file order: its header line, then its keys with their values aligned."));
    commandLine.addArgument(QStringLiteral("FILE"), readFileArgumentHelp());
    commandLine.addOption(QStringLiteral("raw"),
                          QStringLiteral("Keeps the inline comments (from a \"#\" on) of values "
                                         "and section names."));
    commandLine.addOption(
        QStringLiteral("comments"),
        QStringLiteral("Also prints the comment lines of each section in place."));
    commandLine.setNotes(WARNINGS_NOTE);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    CPLClickInfo document;
    if (const int status = loadDocument(path, &document))
        return status;
    warnOfLoad(document.getLoadWarningList());

    QTextStream& out = standardOutput();
    const QStringList leadingLines = document.getLeadingLines();
    for (const QString& line : leadingLines)
        out << line << QLatin1Char('\n');
    // A blank line stands between the leading lines and the sections, and between sections.
    bool separate = !leadingLines.isEmpty();
    const QStringList sectionKeys = document.getSectionKeys();
    for (const QString& sectionKey : sectionKeys) {
        if (separate)
            out << QLatin1Char('\n');
        separate = true;
        printSection(out, *document[sectionKey], commandLine.isSet(QStringLiteral("raw")),
                     commandLine.isSet(QStringLiteral("comments")));
    }
    return ExitSuccess;
}
