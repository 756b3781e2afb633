// ovtool: shows and edits the metadata of an optical imaging acquisition from the command
// line, one command per source file.

#include "Commands.h"
#include "Tool.h"

#include "PLFileEditor.h"
#include "ParserLibrary.h"

#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <new>

namespace {

struct Command
{
    QLatin1String name;
    QLatin1String summary;
    int (*run)(const QStringList& arguments);
};

const Command COMMANDS[] = {
    { QLatin1String("show"), QLatin1String("Prints every section with its keys and values."),
      runShow },
    { QLatin1String("get"), QLatin1String("Prints one value, for scripts."), runGet },
    { QLatin1String("set"), QLatin1String("Changes the value of a key the file holds."), runSet },
    { QLatin1String("add"), QLatin1String("Adds a key, and its section when absent."), runAdd },
    { QLatin1String("unset"), QLatin1String("Removes a key's line."), runUnset },
    { QLatin1String("format"),
      QLatin1String("Lists the load warnings and rewrites the file as a save writes it."),
      runFormat },
    { QLatin1String("json"), QLatin1String("Prints the document as JSON."), runJson },
    { QLatin1String("browse"), QLatin1String("Lists the acquisitions in a folder tree."),
      runBrowse },
    { QLatin1String("settings"),
      QLatin1String("Lists the menu entries of a settings file or folder."), runSettings },
    { QLatin1String("labels"), QLatin1String("Lists the label-name sets and their labels."),
      runLabels },
    { QLatin1String("spectral"),
      QLatin1String("Summarises a spectral-analysis XML file (--json for JSON)."), runSpectral },
    { QLatin1String("camera"),
      QLatin1String("Shows an instrument configuration with its extensions and accessories."),
      runCamera },
    { QLatin1String("bkg"),
      QLatin1String("Lists a background library, or the background for an acquisition."), runBkg },
    { QLatin1String("sequence"),
      QLatin1String("Shows and checks a sequence; \"sequence create\" writes one."), runSequence },
};

// Ends the program on SIGINT, SIGTERM or SIGHUP as the signal would, without leaving a lock
// file that later edits would have to take over.
extern "C" void endOnSignal(int signal)
{
    releaseLocksOnSignal();
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

void releaseLocksOnSignals()
{
    struct sigaction action = {};
    action.sa_handler = endOnSignal;
    sigemptyset(&action.sa_mask);
    for (const int signal : { SIGINT, SIGTERM, SIGHUP })
        ::sigaction(signal, &action, nullptr);
}

QString commandsHelp()
{
    QString text = QStringLiteral("Commands:\n");
    int width = 0;
    for (const Command& command : COMMANDS)
        width = std::max(width, int(command.name.size()));
    for (const Command& command : COMMANDS)
        text += QLatin1String("  ") + QString(command.name).leftJustified(width + 2)
            + command.summary + QLatin1Char('\n');
    return text
        + QLatin1String(
               "\"ovtool COMMAND --help\" describes a command. Section keys and keys are\n"
               "matched in any case. Text is shown in the locale's encoding. set, add,\n"
               "unset and format change only what they edit, and take --dry-run to\n"
               "show the change as a diff instead; show, get and json read standard\n"
               "input for FILE \"-\". --quiet and --verbose may also follow the command.\n"
               "QT_LOGGING_RULES=\"ovparser.*=false\" silences the library's diagnostics.\n");
}

int run(int argc, char** argv)
{
    // A command-line tool needs no GLib event loop, and GLib ends the program on an allocation
    // failure (g_error()) instead of reporting it.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ovtool"));
    // Past a file size limit a write fails, and is reported, instead of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    releaseLocksOnSignals();

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows and edits the metadata of an optical imaging acquisition: its\n"
                       "ClickInfo.txt, or the metadata appended to a DICOM file (a path ending\n"
                       "in \".dcm\"); summarises spectral-analysis results."));
    // Everything after the command belongs to the command.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.addOption(helpOption());
    parser.addOption(
        { QStringLiteral("version"),
          QStringLiteral("Shows the versions of ovtool and of the ovparser library.") });
    parser.addOption({ QStringLiteral("verbose"),
                       QStringLiteral("Also prints the library's diagnostics on stderr.") });
    parser.addOption({ QStringLiteral("quiet"),
                       QStringLiteral("Does not print warnings on stderr (failures still are).") });
    parser.addPositionalArgument(QStringLiteral("COMMAND"),
                                 QStringLiteral("One of the commands below."));
    parser.addPositionalArgument(QStringLiteral("ARGUMENTS"),
                                 QStringLiteral("The command's options and arguments."),
                                 QStringLiteral("[ARGUMENTS...]"));
    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parseError(parser));
    installMessageHandler();
    if (parser.isSet(QStringLiteral("verbose")))
        setVerbose();
    if (parser.isSet(QStringLiteral("quiet")))
        setQuiet();

    int status = ExitSuccess;
    const QStringList arguments = parser.positionalArguments();
    if (parser.isSet(QStringLiteral("help"))) {
        standardOutput() << helpText(
            parser, QStringLiteral("[--verbose] [--quiet] COMMAND [ARGUMENTS...]"), commandsHelp());
    } else if (parser.isSet(QStringLiteral("version"))) {
        standardOutput() << QLatin1String("ovtool " OVPARSER_VERSION_STRING "\novparser library ")
                         << CParserLibrary::version() << QLatin1Char('\n');
    } else if (arguments.isEmpty()) {
        return usageError(QStringLiteral("no command given"));
    } else {
        const auto command
            = std::find_if(std::begin(COMMANDS), std::end(COMMANDS),
                           [&](const Command& c) { return c.name == arguments.first(); });
        if (command == std::end(COMMANDS))
            return usageError(QLatin1String("unknown command ") + quoted(arguments.first()));
        status = command->run(arguments);
    }
    if (!flushOutput())
        return fail(ExitCannotWrite, QStringLiteral("standard output"),
                    QStringLiteral("cannot write"));
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    // The library reports an allocation failure as a status; one in ovtool's own code (or in
    // Qt's, on its behalf) ends the run here, with one line and the status of a file that
    // cannot be read. Nothing that may allocate runs after it: the buffered output is not
    // flushed, static objects are not destroyed.
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        std::fputs("ovtool: not enough memory\n", stderr);
        std::_Exit(ExitCannotRead);
    }
}
