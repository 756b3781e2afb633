#ifndef OVTOOL_TOOL_H
#define OVTOOL_TOOL_H

// What every ovtool command shares: exit statuses, output streams, the message log, one-line
// error reports, and the parsing of a command line with its --help.

#include <QByteArray>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <optional>

enum ExitStatus {
    ExitSuccess = 0,
    // The command failed on its file: it cannot be read or written, is malformed, lacks the
    // section or key, or cannot hold the text given.
    ExitFailure = 1,
    // The command line is wrong: unknown command or option, wrong number of arguments.
    ExitUsage = 2,
};

// Standard output as text in the locale's encoding (file text is Latin-1 once decoded, and
// shows correctly on a UTF-8 terminal).
QTextStream& standardOutput();
// Writes bytes as they are (JSON, which is UTF-8 whatever the locale) after any text.
void writeOutputBytes(const QByteArray& bytes);
// Flushes standard output; false when it could not be written.
bool flushOutput();

// The library reports diagnostics through the Qt message log. They are dropped, so that a
// failure stays one line, unless `verbose` is set: then each goes to stderr as its own line.
void installMessageHandler(bool verbose);

// Prints "ovtool: <where>: <what>" as one line on stderr; returns ExitFailure.
int fail(const QString& where, const QString& what);
// Prints "ovtool: <what>; see "ovtool <command> --help"" as one line; returns ExitUsage.
int usageError(const QString& what, const QString& command = QString());

// The text between double quotes, as messages name sections and keys.
QString quoted(const QString& text);

// The -h/--help option, the same for the tool and every command.
QCommandLineOption helpOption();
// The parser's error text as part of a one-line report.
QString parseError(const QCommandLineParser& parser);

// The --help text: `usage` (after "Usage: ovtool "), then what the parser lists (description,
// options, arguments), then `notes`, then the exit statuses.
QString helpText(const QCommandLineParser& parser, const QString& usage, const QString& notes);

// The command line of one command: named arguments, all required, and flag options.
class CommandLine
{
public:
    CommandLine(const QString& command, const QString& description);
    void addArgument(const QString& name, const QString& description);
    void addOption(const QString& name, const QString& description);
    // An option that takes a value, shown as `valueName` in --help.
    void addValueOption(const QString& name, const QString& valueName, const QString& description);
    // Text shown after the arguments in --help.
    void setNotes(const QString& notes) { m_notes = notes; }

    // Parses the command's arguments, its name first. Returns nothing when the command is to
    // run; otherwise the exit status to end with, after printing the help (ExitSuccess) or
    // reporting a usage error (ExitUsage).
    std::optional<int> parse(const QStringList& arguments);

    QString argument(int index) const { return m_parser.positionalArguments().value(index); }
    bool isSet(const QString& option) const { return m_parser.isSet(option); }
    QString value(const QString& option) const { return m_parser.value(option); }

private:
    QCommandLineParser m_parser;
    QString m_command;
    QStringList m_argumentNames;
    QString m_notes;
};

#endif // OVTOOL_TOOL_H
