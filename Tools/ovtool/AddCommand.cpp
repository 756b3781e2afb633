#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLFileEditor.h"

int runAdd(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("add"),
        QStringLiteral("Adds KEY with VALUE after the last line of SECTION, and the section\n"
                       "after the last section of the file when it is absent, and saves FILE."));
    addEntryArguments(commandLine);
    commandLine.addArgument(QStringLiteral("VALUE"),
                            QStringLiteral("The value; a \"#\" in it starts an inline comment."));
    commandLine.addDryRunOption();
    commandLine.setNotes(
        QStringLiteral(
            "A key the section holds already is not changed: use \"ovtool set\" for that.\n"
            "A new section gets an empty name. Keys and section keys hold no colon and no\n"
            "\"#\".\n")
        + editNotes());
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    const QString sectionKey = commandLine.argument(1);
    const QString key = commandLine.argument(2);
    const QString value = commandLine.argument(3);
    for (const QString& unwritable : { unwritableText(sectionKey, TextRole::SectionKey),
                                       unwritableText(key, TextRole::Key),
                                       unwritableText(value, TextRole::Value) }) {
        if (!unwritable.isEmpty())
            return fail(ExitRefused, path, unwritable);
    }

    const int status = editFile(
        path, commandLine.isSet(QStringLiteral("dry-run")),
        [&](CPLFileEditor& editor) { return editor.addKeyValue(sectionKey, key, value); });
    if (status == ExitSuccess)
        warnOfComment(path, value);
    return status;
}
