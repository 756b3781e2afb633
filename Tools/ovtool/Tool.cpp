#include "Tool.h"

#include "PLStatus.h"

#include <QFile>
#include <QRegularExpression>

#include <cstdio>

namespace {

bool g_verbose = false;
bool g_quiet = false;

void messageHandler(QtMsgType, const QMessageLogContext& context, const QString& message)
{
    if (g_verbose)
        std::fprintf(stderr, "ovtool: %s: %s\n", context.category ? context.category : "ovparser",
                     message.toLocal8Bit().constData());
}

QFile& standardOutputFile()
{
    static QFile file;
    if (!file.isOpen())
        file.open(stdout, QIODevice::WriteOnly);
    return file;
}

void printErrorLine(const QString& line)
{
    standardOutput().flush();
    std::fprintf(stderr, "ovtool: %s\n", line.toLocal8Bit().constData());
    std::fflush(stderr);
}

const QString EXIT_STATUS_HELP = QStringLiteral(
    "Exit status:\n"
    "  0  success\n"
    "  1  the section, key or entry asked for is not in the file\n"
    "  2  usage error: unknown command or option, wrong number of arguments\n"
    "  3  the file cannot be read: missing, unreadable, not a regular file, too large,\n"
    "     holding more than is loaded; or not enough memory (\"ovtool: not enough\n"
    "     memory\")\n"
    "     (browse: an acquisition or folder was left out)\n"
    "  4  the file is malformed: it does not load, or holds nothing to work on\n"
    "  5  the file cannot be written (a write, sync or rename failed); it is left as it was\n"
    "  6  the file is locked by another editor, still after waiting %1 s\n"
    "  7  refused: a key held on two lines, text that cannot stand in the file, a key\n"
    "     present already\n"
    "  8  bkg --for: no background of the library fits the acquisition\n"
    "  9  sequence: an acquisition the sequence lists is missing, or one is not listed\n"
    "A failure is reported as one line on stderr that names the file (\"FILE:LINE:\" where a\n"
    "line is concerned), with the system's reason where there is one. Warnings go to\n"
    "stderr too; --quiet silences them.\n").arg(PL_LOCK_WAIT_MS / 1000);

// "-85", "-0.5", "-.5": a value, not an option.
bool isNegativeNumber(const QString& argument)
{
    static const QRegularExpression number(QStringLiteral("^-\\.?[0-9]"));
    return number.match(argument).hasMatch();
}

bool isOption(const QString& argument)
{
    return argument.size() > 1 && argument.startsWith(QLatin1Char('-'))
        && !isNegativeNumber(argument);
}

} // namespace

int exitStatusOf(int status, Step step)
{
    if (status == PL_SUCCESS)
        return ExitSuccess;
    if (status == PL_FILE_LOCKED)
        return ExitLocked;
    if (step == Step::Write)
        return ExitCannotWrite;
    switch (status) {
    case PL_KEY_NOT_FOUND:
    case PL_SECTION_NOT_PRESENT:
        return ExitNotFound;
    case PL_FILE_OPEN_FAILED:
    case PL_FILE_TOO_LARGE:
    case PL_NOT_REGULAR_FILE:
    case PL_OUT_OF_MEMORY:
    case PL_LIMIT_EXCEEDED:
        return ExitCannotRead;
    case PL_MALFORMED_SECTION_HEADER:
    case PL_NOTHING_TO_WORK_ON:
        return ExitMalformed;
    default:
        // A repeated key, text the file cannot hold, a key present already.
        return step == Step::Read ? ExitMalformed : ExitRefused;
    }
}

QTextStream& standardOutput()
{
    static QTextStream stream(&standardOutputFile());
    return stream;
}

void writeOutputBytes(const QByteArray& bytes)
{
    standardOutput().flush();
    standardOutputFile().write(bytes);
}

bool flushOutput()
{
    standardOutput().flush();
    return standardOutput().status() == QTextStream::Ok && standardOutputFile().flush()
        && standardOutputFile().error() == QFileDevice::NoError;
}

void installMessageHandler()
{
    qInstallMessageHandler(messageHandler);
}

void setVerbose()
{
    g_verbose = true;
}

void setQuiet()
{
    g_quiet = true;
}

int fail(int status, const QString& where, const QString& what)
{
    return failWith(status, where + QLatin1String(": ") + what);
}

int failWith(int status, const QString& message)
{
    printErrorLine(message);
    return status;
}

QString withSystemReason(const QString& message)
{
    const QString reason = getLastSystemError();
    if (reason.isEmpty() || message.endsWith(reason))
        return message;
    return message + QLatin1String(": ") + reason;
}

QString statusReason(int status)
{
    const QString limit = status == PL_LIMIT_EXCEEDED ? getLastLimitText() : QString();
    return limit.isEmpty() ? withSystemReason(getStatusText(status)) : limit;
}

void warn(const QString& message)
{
    if (!g_quiet)
        printErrorLine(message);
}

int usageError(const QString& what, const QString& command)
{
    const QString help = command.isEmpty()
        ? QStringLiteral("ovtool --help")
        : QLatin1String("ovtool ") + command + QLatin1String(" --help");
    printErrorLine(what + QLatin1String("; see ") + quoted(help));
    return ExitUsage;
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QCommandLineOption helpOption()
{
    return { { QStringLiteral("h"), QStringLiteral("help") }, QStringLiteral("Shows this help.") };
}

QString parseError(const QCommandLineParser& parser)
{
    QString error = parser.errorText();
    if (error.endsWith(QLatin1Char('.')))
        error.chop(1);
    return error;
}

QString helpText(const QCommandLineParser& parser, const QString& usage, const QString& notes)
{
    // Qt's first line shows the program's path; ours names the command.
    const QString listed = parser.helpText();
    QString text = QLatin1String("Usage: ovtool ") + usage + QLatin1Char('\n')
        + listed.mid(listed.indexOf(QLatin1Char('\n')) + 1);
    if (!notes.isEmpty())
        text += QLatin1Char('\n') + notes;
    return text + QLatin1Char('\n') + EXIT_STATUS_HELP;
}

CommandLine::CommandLine(const QString& command, const QString& description)
    : m_command(command)
{
    m_parser.setApplicationDescription(description);
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    m_parser.addOption(helpOption());
    m_parser.addOption(
        { QStringLiteral("quiet"),
          QStringLiteral("Does not print warnings on stderr (failures still are).") });
    m_parser.addOption({ QStringLiteral("verbose"),
                         QStringLiteral("Also prints the library's diagnostics on stderr.") });
}

void CommandLine::addArgument(const QString& name, const QString& description)
{
    m_parser.addPositionalArgument(name, description);
    m_argumentNames.append(name);
}

void CommandLine::addRepeatedArgument(const QString& name, const QString& description)
{
    addArgument(name + QLatin1String("..."), description);
    m_lastRepeats = true;
}

void CommandLine::addOption(const QString& name, const QString& description)
{
    m_parser.addOption({ name, description });
}

void CommandLine::addValueOption(const QString& name, const QString& valueName,
                                 const QString& description)
{
    m_parser.addOption({ name, description, valueName });
    m_valueOptions.append(name);
}

void CommandLine::addDryRunOption()
{
    addOption(QStringLiteral("dry-run"),
              QStringLiteral("Prints what would change as a unified diff and writes nothing; the "
                             "file is not locked."));
}

bool CommandLine::takesValue(const QString& option) const
{
    QString name = option;
    while (name.startsWith(QLatin1Char('-')))
        name.remove(0, 1);
    return !name.contains(QLatin1Char('=')) && m_valueOptions.contains(name);
}

QStringList CommandLine::withNumbersAsArguments(const QStringList& arguments) const
{
    int first = 1;
    while (first < arguments.size() && arguments.at(first) != QLatin1String("--")
           && !isNegativeNumber(arguments.at(first)))
        ++first;
    if (first == arguments.size() || arguments.at(first) == QLatin1String("--"))
        return arguments;
    QStringList options = arguments.mid(0, first);
    QStringList positional;
    for (int i = first; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--")) {
            positional += arguments.mid(i + 1);
            break;
        }
        if (!isOption(argument)) {
            positional.append(argument);
            continue;
        }
        options.append(argument);
        if (takesValue(argument) && i + 1 < arguments.size())
            options.append(arguments.at(++i));
    }
    return options + QStringList(QStringLiteral("--")) + positional;
}

std::optional<int> CommandLine::parse(const QStringList& arguments)
{
    if (!m_parser.parse(withNumbersAsArguments(arguments)))
        return usageError(m_command + QLatin1String(": ") + parseError(m_parser), m_command);
    if (m_parser.isSet(QStringLiteral("verbose")))
        setVerbose();
    if (m_parser.isSet(QStringLiteral("quiet")))
        setQuiet();
    if (m_parser.isSet(QStringLiteral("help"))) {
        const QString usage
            = m_command + QLatin1String(" [options] ") + m_argumentNames.join(QLatin1Char(' '));
        standardOutput() << helpText(m_parser, usage, m_notes);
        return ExitSuccess;
    }
    const int given = m_parser.positionalArguments().size();
    if (given != m_argumentNames.size() && !(m_lastRepeats && given > m_argumentNames.size())) {
        return usageError(QStringLiteral("%1: expected %2%3 (%4), got %5")
                              .arg(m_command,
                                   m_lastRepeats ? QStringLiteral("at least ") : QString(),
                                   m_argumentNames.size() == 1
                                       ? QStringLiteral("1 argument")
                                       : QStringLiteral("%1 arguments").arg(m_argumentNames.size()),
                                   m_argumentNames.join(QLatin1Char(' ')))
                              .arg(given),
                          m_command);
    }
    return std::nullopt;
}
