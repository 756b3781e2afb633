#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLStatus.h"

int runSet(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("set"),
                            QStringLiteral("Changes the value of KEY, which SECTION must hold, to "
                                           "VALUE, and saves FILE."));
    addEntryArguments(commandLine);
    commandLine.addArgument(QStringLiteral("VALUE"), QStringLiteral("The new value."));
    commandLine.setNotes(QStringLiteral(
        "An inline comment of the old value (from a \"#\" on) is kept after the new value,\n"
        "unless VALUE holds a \"#\" of its own. A key or section the file lacks is not\n"
        "added: use \"ovtool add\" for that. A text file is replaced as a whole (a failed\n"
        "save leaves it as it was); a DICOM file gets a new metadata copy appended.\n"));
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    const QString sectionKey = commandLine.argument(1);
    const QString key = commandLine.argument(2);
    const QString value = commandLine.argument(3);
    const QString unwritable = unwritableText(value, TextRole::Value);
    if (!unwritable.isEmpty())
        return fail(path, unwritable);

    CPLClickInfo document;
    if (!loadDocumentForEditing(path, &document))
        return ExitFailure;
    const QString missing = missingEntry(document, sectionKey, key);
    if (!missing.isEmpty())
        return fail(path, missing + QLatin1String(" (use \"ovtool add\" to add it)"));
    if (document.setValue(sectionKey, key, value) != PL_SUCCESS)
        return fail(path, QLatin1String("cannot change the value of ") + quoted(key));
    return saveDocument(document, path);
}
