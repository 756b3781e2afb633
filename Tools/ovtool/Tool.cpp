#include "Tool.h"

#include <QFile>

#include <cstdio>

namespace {

bool g_verbose = false;

void messageHandler(QtMsgType, const QMessageLogContext&, const QString& message)
{
    if (g_verbose)
        std::fprintf(stderr, "ovtool: ovparser: %s\n", message.toLocal8Bit().constData());
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
    "  1  the command failed on a file: it cannot be opened, read or written, it is\n"
    "     malformed or empty, it lacks the section, key or element asked for, or it\n"
    "     cannot hold the text given (browse: an acquisition was left out)\n"
    "  2  usage error: unknown command or option, wrong number of arguments\n"
    "A failure is reported as one line on stderr that names the file.\n");

} // namespace

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

void installMessageHandler(bool verbose)
{
    g_verbose = verbose;
    qInstallMessageHandler(messageHandler);
}

int fail(const QString& where, const QString& what)
{
    printErrorLine(where + QLatin1String(": ") + what);
    return ExitFailure;
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
}

void CommandLine::addArgument(const QString& name, const QString& description)
{
    m_parser.addPositionalArgument(name, description);
    m_argumentNames.append(name);
}

void CommandLine::addOption(const QString& name, const QString& description)
{
    m_parser.addOption({ name, description });
}

void CommandLine::addValueOption(const QString& name, const QString& valueName,
                                 const QString& description)
{
    m_parser.addOption({ name, description, valueName });
}

std::optional<int> CommandLine::parse(const QStringList& arguments)
{
    if (!m_parser.parse(arguments))
        return usageError(m_command + QLatin1String(": ") + parseError(m_parser), m_command);
    if (m_parser.isSet(QStringLiteral("help"))) {
        const QString usage
            = m_command + QLatin1String(" [options] ") + m_argumentNames.join(QLatin1Char(' '));
        standardOutput() << helpText(m_parser, usage, m_notes);
        return ExitSuccess;
    }
    const int given = m_parser.positionalArguments().size();
    if (given != m_argumentNames.size()) {
        return usageError(QStringLiteral("%1: expected %2 (%3), got %4")
                              .arg(m_command,
                                   m_argumentNames.size() == 1
                                       ? QStringLiteral("1 argument")
                                       : QStringLiteral("%1 arguments").arg(m_argumentNames.size()),
                                   m_argumentNames.join(QLatin1Char(' ')))
                              .arg(given),
                          m_command);
    }
    return std::nullopt;
}
