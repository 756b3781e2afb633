#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLFileEditor.h"

int runUnset(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("unset"),
                            QStringLiteral("Removes the line of KEY, which SECTION must hold, "
                                           "and saves FILE."));
    addEntryArguments(commandLine);
    commandLine.addDryRunOption();
    commandLine.setNotes(
        QStringLiteral("The section stays, also when it is left without keys. A key the\n"
                       "section holds on two lines is not removed.\n")
        + editNotes());
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString sectionKey = commandLine.argument(1);
    const QString key = commandLine.argument(2);
    return editFile(commandLine.argument(0), commandLine.isSet(QStringLiteral("dry-run")),
                    [&](CPLFileEditor& editor) { return editor.removeKey(sectionKey, key); });
}
