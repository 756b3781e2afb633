#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLLoadWarning.h"
#include "PLSection.h"

#include <algorithm>

int runGet(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("get"),
                            QStringLiteral("Prints the value of KEY in SECTION alone on a line,\n"
                                           "without its inline comment (from a \"#\" on).\n"
                                           "When a DICOM file's last metadata copy was cut off,\n"
                                           "the value comes from the last complete copy, and\n"
                                           "a warning on stderr says so (unless --quiet)."));
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
    // The value may come from an older copy than the last: a script is told.
    QList<CPLLoadWarning> cut = document.getLoadWarningList();
    cut.erase(
        std::remove_if(cut.begin(), cut.end(),
                       [](const CPLLoadWarning& w) { return w.kind() != CPLLoadWarning::CutCopy; }),
        cut.end());
    warnOfLoad(cut);
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
