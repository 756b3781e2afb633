#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLSection.h"
#include "PLStatus.h"

int runAdd(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("add"),
        QStringLiteral("Adds KEY with VALUE at the end of SECTION, and the section at\n"
                       "the end of the file when it is absent, and saves FILE."));
    addEntryArguments(commandLine);
    commandLine.addArgument(QStringLiteral("VALUE"),
                            QStringLiteral("The value; a \"#\" in it starts an inline comment."));
    commandLine.setNotes(QStringLiteral(
        "A key the section holds already is not changed: use \"ovtool set\" for that.\n"
        "A new section gets an empty name. Keys and section keys hold no colon and no\n"
        "\"#\". A text file is replaced as a whole (a failed save leaves it as it was);\n"
        "a DICOM file gets a new metadata copy appended.\n"));
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    const QString sectionKey = commandLine.argument(1);
    const QString key = commandLine.argument(2);
    const QString value = commandLine.argument(3);
    for (const QString& unwritable :
         { unwritableText(key, TextRole::Key), unwritableText(value, TextRole::Value) }) {
        if (!unwritable.isEmpty())
            return fail(path, unwritable);
    }

    CPLClickInfo document;
    if (!loadDocumentForEditing(path, &document))
        return ExitFailure;
    CPLSection* section = document[sectionKey];
    if (section && section->isKeyPresent(key)) {
        return fail(path,
                    QLatin1String("section ") + quoted(sectionKey)
                        + QLatin1String(" already has key ") + quoted(key)
                        + QLatin1String(" (use \"ovtool set\" to change it)"));
    }
    if (!section) {
        const QString unwritable = unwritableText(sectionKey, TextRole::SectionKey);
        if (!unwritable.isEmpty())
            return fail(path, unwritable);
        section = document.addNewSection(sectionKey, QString());
        if (!section)
            return fail(path, QLatin1String("cannot add section ") + quoted(sectionKey));
    }
    if (section->addKeyValue(key, value) != PL_SUCCESS)
        return fail(path, QLatin1String("cannot add key ") + quoted(key));
    return saveDocument(document, path);
}
