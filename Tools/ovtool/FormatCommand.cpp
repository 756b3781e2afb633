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
            "What the warnings name changes: a text line becomes a comment, blanks and line\n"
            "ends take the written form. A file that holds what a load does not take in (the\n"
            "text after a NUL byte, a section that repeats an earlier section's key, a key\n"
            "held on two lines with two values, a cut DICOM copy) is not rewritten (exit 7).\n"
            "\"--dry-run\" shows the change first. A file that gives no warning is left as\n"
            "it is.\n")
        + editNotes());
    if (const auto done = commandLine.parse(arguments))
        return *done;

    return editFile(commandLine.argument(0), commandLine.isSet(QStringLiteral("dry-run")),
                    [](CPLFileEditor& editor) {
                        warnOfLoad(editor.loadWarnings());
                        return editor.rewriteCanonical();
                    });
}
