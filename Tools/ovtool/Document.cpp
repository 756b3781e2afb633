#include "Document.h"

#include "Diff.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLFileEditor.h"
#include "PLLoadWarning.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString NO_SECTIONS
    = QStringLiteral("the file holds no sections (no line begins with \"***\")");

// Standard input, read once, as a file is: at most PL_MAX_FILE_SIZE bytes.
struct StandardInput
{
    QByteArray bytes;
    int status = PL_SUCCESS;
    QString reason; // why it cannot be read
};

StandardInput tooLarge()
{
    StandardInput input;
    input.status = PL_FILE_TOO_LARGE;
    input.reason = QStringLiteral("more than %1 MiB, larger than a file that is read")
                       .arg(PL_MAX_FILE_SIZE / (1024 * 1024));
    return input;
}

StandardInput readStandardInput()
{
    // A file given as standard input tells its size before it is read.
    struct stat status;
    if (::fstat(STDIN_FILENO, &status) == 0 && S_ISREG(status.st_mode)
        && status.st_size > PL_MAX_FILE_SIZE)
        return tooLarge();
    StandardInput input;
    char buffer[65536];
    for (;;) {
        const ssize_t size = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (size == 0)
            break;
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0) {
            input.status = PL_FILE_OPEN_FAILED;
            input.reason = QLatin1String("cannot read it: ") + QString::fromLocal8Bit(std::strerror(errno));
            break;
        }
        if (input.bytes.size() + size > PL_MAX_FILE_SIZE)
            return tooLarge();
        input.bytes.append(buffer, int(size));
    }
    return input;
}

const StandardInput& standardInput()
{
    static const StandardInput input = readStandardInput();
    return input;
}

// The bytes of the file, or of standard input, as they stand.
QByteArray rawBytes(const QString& path)
{
    if (isStandardInput(path))
        return standardInput().bytes;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int loadStatus(const QString& path, CPLClickInfo* document)
{
    if (!isStandardInput(path))
        return document->loadClickInfo(path);
    const StandardInput& input = standardInput();
    if (input.status != PL_SUCCESS)
        return input.status;
    return document->loadClickInfoBytes(input.bytes.constData(), input.bytes.size(),
                                        sourceName(path));
}

// The report of a load that failed with `status`.
int loadFailure(const QString& path, const CPLClickInfo& document, int status)
{
    const int exitStatus = exitStatusOf(status, Step::Read);
    const int line = document.getLastErrorLine();
    if (line > 0)
        return fail(exitStatus, QStringLiteral("%1:%2").arg(sourceName(path)).arg(line),
                    getStatusText(status));
    if (isStandardInput(path) && !standardInput().reason.isEmpty())
        return fail(exitStatus, sourceName(path), standardInput().reason);
    return fail(exitStatus, sourceName(path), statusReason(status));
}

// What failed when the file could not be opened for an edit: reading it, or, when it reads,
// opening it for writing.
Step openStep(const QString& path, int status)
{
    const QFileInfo file(path);
    // PL_SHORT_WRITE: the old content of a DICOM file could not be copied for the save.
    if (status == PL_SHORT_WRITE)
        return Step::Write;
    return status == PL_FILE_OPEN_FAILED && file.isFile() && file.isReadable() ? Step::Write
                                                                                : Step::Read;
}

// The editor's report names the file, or for a lock the lock file that another editor holds.
int editorFailure(const CPLFileEditor& editor, int status, Step step)
{
    if (status == PL_FILE_LOCKED)
        return failWith(ExitLocked,
                        editor.errorString()
                            + QStringLiteral(" (waited %1 s for it)").arg(PL_LOCK_WAIT_MS / 1000));
    return failWith(exitStatusOf(status, step), withSystemReason(editor.errorString()));
}

} // namespace

bool isStandardInput(const QString& path)
{
    return path == QLatin1String("-");
}

QString sourceName(const QString& path)
{
    return isStandardInput(path) ? QStringLiteral("standard input") : path;
}

int loadDocument(const QString& path, CPLClickInfo* document)
{
    const int status = loadStatus(path, document);
    if (status != PL_SUCCESS && status != PL_NOTHING_TO_WORK_ON)
        return loadFailure(path, *document, status);
    int sections = 0;
    document->getSectionCount(&sections);
    if (status == PL_SUCCESS && sections > 0)
        return ExitSuccess;
    if (document->getLastErrorLine() > 0)
        return loadFailure(path, *document, status);
    return fail(ExitMalformed, sourceName(path), NO_SECTIONS);
}

void warnOfLoad(const QList<CPLLoadWarning>& warnings)
{
    for (const CPLLoadWarning& warning : warnings)
        warn(warning.toString());
}

QString keyAfterNul(const CPLClickInfo& document, const QString& path, const QString& key)
{
    const QList<CPLLoadWarning> warnings = document.getLoadWarningList();
    for (const CPLLoadWarning& warning : warnings) {
        if (warning.kind() != CPLLoadWarning::NulByte)
            continue;
        const QByteArray bytes = rawBytes(path);
        const int nul = bytes.indexOf('\0');
        const QByteArray keyLine = key.toLatin1().toLower() + ':';
        if (nul < 0 || !bytes.mid(nul + 1).toLower().contains(keyLine))
            return QString();
        return QStringLiteral("%1:%2: a NUL byte ends the text here; %3 stands after it and is "
                              "not read")
            .arg(sourceName(path))
            .arg(warning.line())
            .arg(quoted(key));
    }
    return QString();
}

int editFile(const QString& path, bool dryRun, const std::function<int(CPLFileEditor&)>& edit)
{
    // An edit changes a file that is there; it does not make one.
    if (!QFileInfo::exists(path))
        return fail(ExitCannotRead, path,
                    getStatusText(PL_FILE_OPEN_FAILED) + QLatin1String(": ")
                        + QString::fromLocal8Bit(std::strerror(ENOENT)));
    CPLFileEditor editor(path);
    int status = dryRun ? editor.openWithoutLock() : editor.open();
    if (status != PL_SUCCESS)
        return editorFailure(editor, status, openStep(path, status));
    status = edit(editor);
    if (status != PL_SUCCESS)
        return editorFailure(editor, status, Step::Edit);
    if (dryRun) {
        writeOutputBytes(unifiedDiff(editor.originalBytes(), editor.editedBytes(), path));
        return ExitSuccess;
    }
    status = editor.commit();
    return status == PL_SUCCESS ? ExitSuccess : editorFailure(editor, status, Step::Write);
}

QString missingEntry(const CPLClickInfo& document, const QString& sectionKey, const QString& key)
{
    const CPLSection* section = document[sectionKey];
    if (!section)
        return QLatin1String("no section ") + quoted(sectionKey);
    if (!section->isKeyPresent(key) || CPLSection::isCommentKey(key))
        return QLatin1String("section ") + quoted(sectionKey) + QLatin1String(" has no key ")
            + quoted(key);
    return QString();
}

void warnOfComment(const QString& path, const QString& value)
{
    const int hash = value.indexOf(QLatin1Char('#'));
    if (hash >= 0)
        warn(path + QLatin1String(": a \"#\" starts a comment in these files: get will read ")
             + quoted(value.left(hash).trimmed())
             + QLatin1String("; get --raw reads the whole text"));
}

Entry entryAt(const CPLSection& section, int index)
{
    Entry entry;
    const QString key = section.getEntryKey(index);
    entry.isComment = CPLSection::isCommentKey(key);
    entry.rawValue = section.getEntryValue(index, true);
    entry.value = entry.isComment ? entry.rawValue : section.getEntryValue(index, false);
    if (!entry.isComment)
        entry.key = key;
    return entry;
}

QString nameOf(const CPLSection& section, bool raw)
{
    QString name;
    section.getSectionName(&name, raw);
    return name;
}
