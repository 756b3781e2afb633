#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLFileEditor.h"

int runSet(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("set"),
                            QStringLiteral("Changes the value of KEY, which SECTION must hold, to "
                                           "VALUE, and saves FILE."));
    addEntryArguments(commandLine);
    commandLine.addArgument(QStringLiteral("VALUE"),
                            QStringLiteral("The new value; a negative number is a value."));
    commandLine.addDryRunOption();
    commandLine.setNotes(
        QStringLiteral(
            "An inline comment of the old value (from a \"#\" on) is kept after the new value,\n"
            "unless VALUE holds a \"#\" of its own. A key or section the file lacks is not\n"
            "added: use \"ovtool add\" for that. A key the section holds on two lines is not\n"
            "changed.\n")
        + editNotes());
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    const QString sectionKey = commandLine.argument(1);
    const QString key = commandLine.argument(2);
    const QString value = commandLine.argument(3);
    const QString unwritable = unwritableText(value, TextRole::Value);
    if (!unwritable.isEmpty())
        return fail(ExitRefused, path, unwritable);

    const int status
        = editFile(path, commandLine.isSet(QStringLiteral("dry-run")),
                   [&](CPLFileEditor& editor) { return editor.setValue(sectionKey, key, value); });
    if (status == ExitSuccess)
        warnOfComment(path, value);
    return status;
}
