#ifndef OVTOOL_TOOL_H
#define OVTOOL_TOOL_H

// What every ovtool command shares: exit statuses, output streams, the message log, one-line
// error reports and warnings, and the parsing of a command line with its --help.

#include <QByteArray>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <optional>

enum ExitStatus {
    ExitSuccess = 0,
    // The section, key or entry asked for is not in the file.
    ExitNotFound = 1,
    // The command line is wrong: unknown command or option, wrong number of arguments.
    ExitUsage = 2,
    // The file cannot be read: missing, unreadable, not a regular file, too large.
    ExitCannotRead = 3,
    // The file does not load: a malformed section header, no sections...
    ExitMalformed = 4,
    // The file cannot be written: a write, sync or rename failed; it is left as it was.
    ExitCannotWrite = 5,
    // Another editor holds the file's lock.
    ExitLocked = 6,
    // The edit is refused: a key held on two lines, text that cannot stand in the file, a
    // key present already.
    ExitRefused = 7,
    // bkg --for: no background of the library fits the acquisition.
    ExitNoBackground = 8,
    // A sequence is incomplete: an acquisition it lists is missing, or an acquisition in its
    // folder is not listed.
    ExitIncomplete = 9,
};

// What the library was doing when it returned a status: the same status means another
// failure when reading, editing or writing (PL_FILE_OPEN_FAILED is "cannot read" or
// "cannot write").
enum class Step { Read, Edit, Write };
// The exit status for a library status.
int exitStatusOf(int status, Step step);

// Standard output as text in the locale's encoding (file text is Latin-1 once decoded, and
// shows correctly on a UTF-8 terminal).
QTextStream& standardOutput();
// Writes bytes as they are (JSON, which is UTF-8 whatever the locale) after any text.
void writeOutputBytes(const QByteArray& bytes);
// Flushes standard output; false when it could not be written.
bool flushOutput();

// The library reports diagnostics through the Qt message log. They are dropped, so that a
// failure stays one line, unless --verbose is given: then each goes to stderr as its own line,
// "ovtool: <category>: <message>".
void installMessageHandler();
// --verbose and --quiet, given before or after the command.
void setVerbose();
void setQuiet();

// Prints "ovtool: <where>: <what>" as one line on stderr; returns `status`. `where` is
// "FILE" or "FILE:LINE".
int fail(int status, const QString& where, const QString& what);
// Prints "ovtool: <message>", a message that names its place itself; returns `status`.
int failWith(int status, const QString& message);
// `message` followed by the operating system's reason for the library's last failed file
// operation (getLastSystemError()), unless it is empty or the message ends with it already.
QString withSystemReason(const QString& message);
// What a failed read with `status` says: for PL_LIMIT_EXCEEDED the count and the limit
// ("1,000,001 sections, more than the 100,000 a document may hold"), else the status text
// with the system's reason.
QString statusReason(int status);
// Prints "ovtool: <message>" as one line on stderr, unless --quiet was given.
void warn(const QString& message);
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
    // The last argument may be given more than once (shown as NAME... in --help).
    void addRepeatedArgument(const QString& name, const QString& description);
    void addOption(const QString& name, const QString& description);
    // An option that takes a value, shown as `valueName` in --help.
    void addValueOption(const QString& name, const QString& valueName, const QString& description);
    // The --dry-run option of the editing commands.
    void addDryRunOption();
    // Text shown after the arguments in --help.
    void setNotes(const QString& notes) { m_notes = notes; }

    // Parses the command's arguments, its name first. Returns nothing when the command is to
    // run; otherwise the exit status to end with, after printing the help (ExitSuccess) or
    // reporting a usage error (ExitUsage).
    // A negative number ("-85", "-0.5") is an argument, not an option.
    std::optional<int> parse(const QStringList& arguments);

    QString argument(int index) const { return m_parser.positionalArguments().value(index); }
    // The arguments from `index` on.
    QStringList arguments(int index) const { return m_parser.positionalArguments().mid(index); }
    bool isSet(const QString& option) const { return m_parser.isSet(option); }
    QString value(const QString& option) const { return m_parser.value(option); }

private:
    // The arguments with "--" before the first negative number, and the options that follow
    // it (with their values) moved before the "--".
    QStringList withNumbersAsArguments(const QStringList& arguments) const;
    bool takesValue(const QString& option) const;

    QCommandLineParser m_parser;
    QString m_command;
    QStringList m_argumentNames;
    bool m_lastRepeats = false;
    QStringList m_valueOptions;
    QString m_notes;
};

#endif // OVTOOL_TOOL_H
