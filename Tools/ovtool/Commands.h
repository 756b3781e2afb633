#ifndef OVTOOL_COMMANDS_H
#define OVTOOL_COMMANDS_H

#include "Tool.h"

#include <QStringList>

// Each command runs on its own arguments, its name first, and returns the exit status.
int runShow(const QStringList& arguments);
int runGet(const QStringList& arguments);
int runSet(const QStringList& arguments);
int runAdd(const QStringList& arguments);
int runUnset(const QStringList& arguments);
int runFormat(const QStringList& arguments);
int runJson(const QStringList& arguments);
int runSettings(const QStringList& arguments);
int runLabels(const QStringList& arguments);
int runBrowse(const QStringList& arguments);
int runSpectral(const QStringList& arguments);
int runCamera(const QStringList& arguments);
int runBkg(const QStringList& arguments);
int runSequence(const QStringList& arguments);

// The argument descriptions that several commands share.
inline QString fileArgumentHelp()
{
    return QStringLiteral("A ClickInfo.txt file, or a DICOM file (.dcm) with metadata appended.");
}
inline QString readFileArgumentHelp()
{
    return fileArgumentHelp() + QStringLiteral(" \"-\" reads standard input.");
}
inline QString sectionArgumentHelp()
{
    return QStringLiteral("The section key, the text between \"*** \" and the colon of its "
                          "header line; matched in any case.");
}
inline QString keyArgumentHelp()
{
    return QStringLiteral("The key, the text before the colon of its line; matched in any case.");
}

// What show and json say of the load warnings.
const QString WARNINGS_NOTE = QStringLiteral(
    "A key written on several lines of a section is shown on each, with that line's value.\n"
    "Whatever the file holds that a save would write otherwise (blank lines, other line\n"
    "ends, a repeated key, a NUL byte...) is reported on stderr, one warning a line\n"
    "\"FILE:LINE: section \"KEY\": ...\"; --quiet silences them.\n");

// What the editing commands (set, add, unset, format) say of how they write.
inline QString editNotes()
{
    return QStringLiteral(
        "Only the edited line changes: every other byte of the file stays as it stands (line\n"
        "ends, blanks, comments, free text). The file is locked meanwhile (\"FILE.lock\"); a\n"
        "second editor waits for it. A text file is replaced as a whole (a failed write leaves\n"
        "it as it was); a DICOM file gets its edited metadata copy appended.\n");
}

// The arguments FILE SECTION KEY of the commands that work on one entry; `file` describes
// FILE.
inline void addEntryArguments(CommandLine& commandLine, const QString& file = fileArgumentHelp())
{
    commandLine.addArgument(QStringLiteral("FILE"), file);
    commandLine.addArgument(QStringLiteral("SECTION"), sectionArgumentHelp());
    commandLine.addArgument(QStringLiteral("KEY"), keyArgumentHelp());
}

#endif // OVTOOL_COMMANDS_H
