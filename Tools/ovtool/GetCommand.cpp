#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLSection.h"

int runGet(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("get"),
                            QStringLiteral("Prints the value of KEY in SECTION alone on a line,\n"
                                           "without its inline comment (from a \"#\" on)."));
    addEntryArguments(commandLine, readFileArgumentHelp());
    commandLine.addOption(QStringLiteral("raw"),
                          QStringLiteral("Prints the value as stored, inline comment included."));
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    const QString sectionKey = commandLine.argument(1);
    const QString key = commandLine.argument(2);
    CPLClickInfo document;
    if (const int status = loadDocument(path, &document))
        return status;
    const QString missing = missingEntry(document, sectionKey, key);
    if (!missing.isEmpty()) {
        const QString afterNul = keyAfterNul(document, path, key);
        return afterNul.isEmpty() ? fail(ExitNotFound, sourceName(path), missing)
                                  : failWith(ExitNotFound, afterNul);
    }

    const CPLSection* section = document[sectionKey];
    QString value;
    if (commandLine.isSet(QStringLiteral("raw")))
        section->getRawValue(key, &value);
    else
        section->getValue(key, &value);
    standardOutput() << value << QLatin1Char('\n');
    return ExitSuccess;
}
