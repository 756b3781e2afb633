#ifndef OVTOOL_COMMANDS_H
#define OVTOOL_COMMANDS_H

#include "Tool.h"

#include <QStringList>

// Each command runs on its own arguments, its name first, and returns the exit status.
int runShow(const QStringList& arguments);
int runGet(const QStringList& arguments);
int runSet(const QStringList& arguments);
int runAdd(const QStringList& arguments);
int runJson(const QStringList& arguments);
int runSettings(const QStringList& arguments);
int runLabels(const QStringList& arguments);
int runBrowse(const QStringList& arguments);
int runSpectral(const QStringList& arguments);

// The argument descriptions that several commands share.
inline QString fileArgumentHelp()
{
    return QStringLiteral("A ClickInfo.txt file, or a DICOM file (.dcm) with metadata appended.");
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

// The arguments FILE SECTION KEY of the commands that work on one entry.
inline void addEntryArguments(CommandLine& commandLine)
{
    commandLine.addArgument(QStringLiteral("FILE"), fileArgumentHelp());
    commandLine.addArgument(QStringLiteral("SECTION"), sectionArgumentHelp());
    commandLine.addArgument(QStringLiteral("KEY"), keyArgumentHelp());
}

#endif // OVTOOL_COMMANDS_H
