#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLFileEditor.h"

int runFormat(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("format"),
        QStringLiteral("Lists on stderr what FILE holds that the library's save writes\n"
                       "otherwise (its load warnings), and rewrites FILE in the form a save\n"
                       "writes: \"*** KEY:<tab>NAME\" headers ending in CR LF, \"KEY:<tab>VALUE\"\n"
                       "lines ending in LF, one empty line after each section."));
    commandLine.addArgument(QStringLiteral("FILE"), fileArgumentHelp());
    commandLine.addDryRunOption();
    commandLine.setNotes(
        QStringLiteral(
            "What the warnings name changes: a text line becomes a comment, a key held on\n"
            "two lines keeps the last value on both, a section that repeats an earlier\n"
            "section's key and the text after a NUL byte are dropped. \"--dry-run\" shows it\n"
            "first. A file that gives no warning is left as it is.\n")
        + editNotes());
    if (const auto done = commandLine.parse(arguments))
        return *done;

    return editFile(commandLine.argument(0), commandLine.isSet(QStringLiteral("dry-run")),
                    [](CPLFileEditor& editor) {
                        warnOfLoad(editor.loadWarnings());
                        return editor.rewriteCanonical();
                    });
}
