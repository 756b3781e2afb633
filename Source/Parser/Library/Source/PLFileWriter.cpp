#include "PLFileWriter_p.h"

#include "PLDicomMetadata_p.h"

#include "PLFileReader_p.h"
#include "PLFileSystem_p.h"
#include "PLLogging_p.h"
#include "PLStatus_p.h"

#include <QBuffer>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using PLFile::Descriptor;
using PLFile::FileStatus;
using Clock = std::chrono::steady_clock;

// A waiting writer looks at a held lock again after this many milliseconds.
constexpr int LOCK_POLL_MS = 20;
// A chain of symbolic links longer than this does not end (the system's own limit).
constexpr int MAX_LINK_HOPS = 40;
// The mode bits a replacing file must keep: permissions, set-user-ID, set-group-ID, sticky.
constexpr mode_t MODE_BITS = 07777;
// The largest piece one write or copy call is given.
constexpr qint64 LARGEST_CALL = qint64(1) << 30;

// The test seam: whether OVPARSER_FAIL_SYSCALL names `operation`; if so, errno is EIO and
// the caller fails as if the system had refused it. Read at every call, so that a test can
// change it between saves; empty costs no allocation.
bool injected(const char* operation)
{
    if (qEnvironmentVariableIsEmpty("OVPARSER_FAIL_SYSCALL"))
        return false;
    const QList<QByteArray> names = qgetenv("OVPARSER_FAIL_SYSCALL").split(',');
    for (const QByteArray& name : names) {
        if (name.trimmed() == operation) {
            errno = EIO;
            return true;
        }
    }
    return false;
}

// When the time to wait for a lock ends.
class Deadline
{
public:
    explicit Deadline(int milliseconds)
        : m_end(Clock::now() + std::chrono::milliseconds(qMax(0, milliseconds)))
    {
    }
    bool passed() const { return Clock::now() >= m_end; }
    // Sleeps one polling step, or less when the time ends sooner.
    void pause() const
    {
        const auto step = std::chrono::milliseconds(LOCK_POLL_MS);
        std::this_thread::sleep_for(std::min<Clock::duration>(step, m_end - Clock::now()));
    }

private:
    Clock::time_point m_end;
};

// Writes all `size` bytes of `data` at `offset`. False with errno set when the system
// refuses; a write that makes no progress counts as a full disk.
bool writeAt(int fd, const char* data, qint64 size, qint64 offset)
{
    while (size > 0) {
        const ssize_t n = ::pwrite(fd, data, size_t(qMin(size, LARGEST_CALL)), offset);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = ENOSPC;
            return false;
        }
        data += n;
        size -= n;
        offset += n;
    }
    return true;
}

// Copies `size` bytes from the start of `from` into `to` with read and write, the way that
// works on every file system.
bool copyByReading(int from, int to, qint64 size)
{
    QByteArray buffer(int(qMin<qint64>(size, 1024 * 1024)), Qt::Uninitialized);
    for (qint64 done = 0; done < size;) {
        const ssize_t n
            = ::pread(from, buffer.data(), size_t(qMin<qint64>(buffer.size(), size - done)), done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            break; // the file was cut meanwhile: what is left is copied
        if (!writeAt(to, buffer.constData(), n, done))
            return false;
        done += n;
    }
    return true;
}

// Copies the whole of `from`, `size` bytes, into the empty file `to`: as a reflink where
// the file system shares blocks between files (nothing is copied), else inside the kernel,
// else with read and write. False with errno set when the system refuses.
bool copyContent(int from, int to, qint64 size)
{
    if (injected("write")) // the copy is the first write into the new file
        return false;
    if (::ioctl(to, FICLONE, from) == 0)
        return true;
    loff_t in = 0;
    loff_t out = 0;
    while (in < size) {
        const ssize_t n
            = ::copy_file_range(from, &in, to, &out, size_t(qMin(size - in, LARGEST_CALL)), 0);
        if (n < 0 && errno == EINTR)
            continue;
        // No copy inside the kernel between these files: copy them by reading.
        if (n < 0 && in == 0
            && (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP))
            return copyByReading(from, to, size);
        if (n < 0)
            return false;
        if (n == 0)
            break;
    }
    return true;
}

// Flushes what was written through `fd` as a close would, keeping `fd` open (on a network
// file system it is the close that reports a failed write).
bool flushAsClose(int fd, bool seam)
{
    Descriptor copy(::dup(fd));
    const int closed = copy.isValid() ? copy.close() : -1;
    return !(seam && injected("close")) && closed == 0;
}

// How a failure of a step of putContent() is reported.
struct StepFailure
{
    const char* action = nullptr;
    int error = 0;
};

// Writes `size` bytes at `offset` of `fd`, makes `offset + size` the file's end, syncs it and
// flushes it as a close would. The test seam applies when `seam` is set (not to writing old
// content back). True, or false with *failure telling which step failed.
bool putContent(int fd, const char* data, qint64 size, qint64 offset, bool seam,
                StepFailure* failure)
{
    const auto failed = [failure](const char* action) {
        *failure = { action, errno };
        return false;
    };
    if ((seam && injected("write")) || !writeAt(fd, data, size, offset))
        return failed("cannot write");
    if (::ftruncate(fd, offset + size) != 0)
        return failed("cannot set the file's size");
    if ((seam && injected("fsync")) || ::fsync(fd) != 0)
        return failed("cannot sync");
    if (!flushAsClose(fd, seam))
        return failed("cannot close");
    return true;
}

// `path` quoted for a POSIX shell.
QString shellQuoted(const QString& path)
{
    QString quoted = path;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

// The file a path leads to: the path itself (made absolute), or the end of its chain of
// symbolic links, which need not exist yet. Empty for a chain that does not end.
QString resolvedTarget(const QString& path)
{
    QString current = QFileInfo(path).absoluteFilePath();
    for (int hop = 0; hop <= MAX_LINK_HOPS; ++hop) {
        const QFileInfo info(current);
        if (!info.isSymLink())
            return current;
        current = info.symLinkTarget();
    }
    return QString();
}

// The lock file writes into the file as a device: each write goes to the file at once (the
// XML writer's text stream gathers its text first). After the first failure, which is
// reported through `onFailure`, every write is refused.
class LockFileDevice : public QIODevice
{
public:
    LockFileDevice(int fd, qint64 offset, std::function<void(int)> onFailure)
        : m_fd(fd)
        , m_offset(offset)
        , m_onFailure(std::move(onFailure))
    {
        QIODevice::open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override
    {
        if (m_failed)
            return -1;
        if (injected("write") || !writeAt(m_fd, data, size, m_offset)) {
            m_failed = true;
            m_onFailure(errno);
            return -1;
        }
        m_offset += size;
        return size;
    }

private:
    int m_fd;
    qint64 m_offset;
    std::function<void(int)> m_onFailure;
    bool m_failed = false;
};

} // namespace

class CPLFileWriter::Private
{
public:
    Private(const QString& path, Mode mode)
        : path(path)
        , target(resolvedTarget(path))
        , lock(target.isEmpty() ? path + QLatin1String(".lock") : target + QLatin1String(".lock"))
        , mode(mode)
    {
    }

    int open(int waitMilliseconds);
    int commit();
    // Closes everything and removes the lock file, if this writer made it.
    void release();

    // Keeps the first failure for errorString() and logs each; returns `status`.
    int fail(int status, const QString& message);
    int systemFailure(int status, const QString& name, const char* action, int error)
    {
        return fail(status, PLFile::systemFailure(name, action, error));
    }

    const QString path; // as given: messages about the content name it
    const QString target; // the file it resolves to, which is written
    const QString lock; // "<target>.lock"
    const Mode mode;

    enum class State { New, Open, Done } state = State::New;
    int firstStatus = PL_SUCCESS;
    QString message;

    bool exists = false;
    FileStatus old {};
    Descriptor lockFile; // the lock file, and the new file when it replaces the file
    bool lockCreated = false; // the lock file is ours to remove
    Descriptor file; // the file itself, open for writing in place
    bool byRename = false;
    QByteArray inPlaceBytes; // what device() gathers for an in-place write
    std::unique_ptr<QIODevice> device;

private:
    int examineTarget();
    int checkKind();
    int takeLock(const Deadline& deadline);
    int lockBusy();
    int lockTargetItself(const Deadline& deadline);
    int giveOldIdentity();
    bool newFileCanTakeItsPlace(QString* why);
    int choosePath(const Deadline& deadline);
    int openDevice();
    int cloneIntoLockFile(qint64* size);
    int commitByRename();
    int putIntoPlace(bool* exchanged);
    void takeBack(int folder, bool exchanged);
    int commitInPlace();
    int restoreInPlace(int fd, const QByteArray& oldBytes, qint64 oldSize,
                       const StepFailure& cause);
};

int CPLFileWriter::Private::fail(int status, const QString& text)
{
    qCWarning(lcOvSave, "%s", qUtf8Printable(text));
    if (firstStatus == PL_SUCCESS) {
        firstStatus = status;
        message = text;
    }
    return status;
}

int CPLFileWriter::Private::open(int waitMilliseconds)
{
    if (state != State::New)
        return PL_INVALID_ARGUMENT;
    state = State::Open;
    if (target.isEmpty())
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot follow the symbolic link", ELOOP);
    int status = examineTarget();
    const Deadline deadline(waitMilliseconds);
    if (status == PL_SUCCESS)
        status = takeLock(deadline);
    // The file may have been replaced while the lock was awaited: look at it again.
    if (status == PL_SUCCESS)
        status = examineTarget();
    if (status == PL_SUCCESS && lockCreated)
        status = choosePath(deadline);
    if (status == PL_SUCCESS)
        status = openDevice();
    return status;
}

int CPLFileWriter::Private::examineTarget()
{
    exists = ::stat(PLFile::nativePath(target).constData(), &old) == 0;
    if (!exists && errno != ENOENT)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open", errno);
    return exists ? checkKind() : PL_SUCCESS;
}

// Only a regular file is written: a directory cannot be, and a FIFO, device or socket is
// never replaced nor written to.
int CPLFileWriter::Private::checkKind()
{
    if (S_ISDIR(old.st_mode))
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot write", EISDIR);
    if (!S_ISREG(old.st_mode))
        return fail(PL_NOT_REGULAR_FILE,
                    QStringLiteral("%1: not a regular file (a FIFO, device or socket); nothing "
                                   "written")
                        .arg(path));
    return PL_SUCCESS;
}

int CPLFileWriter::Private::takeLock(const Deadline& deadline)
{
    const QByteArray name = PLFile::nativePath(lock);
    // The lock file becomes the file: it is created with the file's permissions (or those of
    // a new file), so that the content is never more open than the file's.
    const mode_t creationMode = exists ? old.st_mode & 0777 : 0666;
    for (;;) {
        lockFile.reset(::open(name.constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, creationMode));
        if (lockFile.isValid()) {
            lockCreated = true;
            if (::flock(lockFile.get(), LOCK_EX | LOCK_NB) != 0)
                return systemFailure(PL_FILE_OPEN_FAILED, lock, "cannot lock", errno);
            return PL_SUCCESS;
        }
        const int error = errno;
        if (error == EEXIST && deadline.passed())
            return lockBusy();
        if (error == EEXIST || error == EINTR) {
            deadline.pause();
            continue;
        }
        // A folder where no file can be created (read-only, or a read-only file system):
        // the file itself is locked and written in place.
        if (exists && (error == EACCES || error == EROFS || error == EPERM)) {
            qCDebug(lcOvSave,
                    "%s: no lock file can be created beside it (%s); the file itself "
                    "is locked and written in place",
                    qUtf8Printable(path), std::strerror(error));
            return lockTargetItself(deadline);
        }
        return systemFailure(PL_FILE_OPEN_FAILED, exists ? lock : path,
                             exists ? "cannot create the lock file" : "cannot create", error);
    }
}

// The lock file is still there when the time to wait ends: held by another editor, or left
// by one that ended, when nothing holds it. A lock left behind is reported, never broken:
// only a person can tell that no editor is still at work on the file.
int CPLFileWriter::Private::lockBusy()
{
    const Descriptor probe(::open(PLFile::nativePath(lock).constData(),
                                  O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (probe.isValid() && ::flock(probe.get(), LOCK_EX | LOCK_NB) == 0)
        return fail(PL_FILE_LOCKED,
                    QStringLiteral("%1: a lock left by an editor that ended; if no editor is "
                                   "running, remove it: rm %2")
                        .arg(lock, shellQuoted(lock)));
    return fail(PL_FILE_LOCKED,
                QStringLiteral("%1: the file is locked by another editor").arg(lock));
}

int CPLFileWriter::Private::lockTargetItself(const Deadline& deadline)
{
    file.reset(
        ::open(PLFile::nativePath(target).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.isValid() || ::fstat(file.get(), &old) != 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open for writing", errno);
    const int kind = checkKind();
    if (kind != PL_SUCCESS)
        return kind;
    while (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot lock", errno);
        if (deadline.passed())
            return fail(PL_FILE_LOCKED,
                        QStringLiteral("%1: the file is locked by another editor").arg(path));
        deadline.pause();
    }
    return PL_SUCCESS;
}

// Gives the lock file the old file's owner, group and mode (set-id bits too), and confirms
// them from its status, since the system may drop a set-group-ID bit, say. The owner first,
// as changing it clears set-id bits. 0, or an errno value (EPERM when a bit was dropped).
int CPLFileWriter::Private::giveOldIdentity()
{
    const int fd = lockFile.get();
    FileStatus given {};
    if (::fchown(fd, old.st_uid, old.st_gid) != 0 || ::fchmod(fd, old.st_mode & MODE_BITS) != 0
        || ::fstat(fd, &given) != 0)
        return errno;
    const bool kept = given.st_uid == old.st_uid && given.st_gid == old.st_gid
        && (given.st_mode & MODE_BITS) == (old.st_mode & MODE_BITS);
    return kept ? 0 : EPERM;
}

// Whether the lock file, renamed over the file, would be the file it replaces: a file with
// one link, whose owner, group and mode the new file can take.
bool CPLFileWriter::Private::newFileCanTakeItsPlace(QString* why)
{
    if (old.st_nlink != 1) {
        *why = QStringLiteral("it has %1 links").arg(old.st_nlink);
        return false;
    }
    const int error = giveOldIdentity();
    if (error != 0)
        *why = QStringLiteral("a new file cannot be given its owner, group and mode: %1")
                   .arg(QString::fromLocal8Bit(std::strerror(error)));
    return error == 0;
}

int CPLFileWriter::Private::choosePath(const Deadline& deadline)
{
    QString why;
    byRename = !exists || newFileCanTakeItsPlace(&why);
    if (byRename)
        return PL_SUCCESS;
    qCDebug(lcOvSave, "%s: written in place: %s", qUtf8Printable(path), qUtf8Printable(why));
    return lockTargetItself(deadline);
}

int CPLFileWriter::Private::openDevice()
{
    if (!byRename) {
        auto buffer = std::make_unique<QBuffer>(&inPlaceBytes);
        buffer->open(QIODevice::WriteOnly);
        device = std::move(buffer);
        return PL_SUCCESS;
    }
    qint64 start = 0;
    if (mode == Mode::Append && exists) {
        const int status = cloneIntoLockFile(&start);
        if (status != PL_SUCCESS)
            return status;
    }
    device = std::make_unique<LockFileDevice>(lockFile.get(), start, [this](int error) {
        systemFailure(PL_SHORT_WRITE, path, "cannot write", error);
    });
    return PL_SUCCESS;
}

int CPLFileWriter::Private::cloneIntoLockFile(qint64* size)
{
    const Descriptor from(::open(PLFile::nativePath(target).constData(),
                                 O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    FileStatus status {};
    if (!from.isValid() || ::fstat(from.get(), &status) != 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open", errno);
    // What was copied is measured, since the file may have changed size meanwhile.
    if (!copyContent(from.get(), lockFile.get(), status.st_size)
        || ::fstat(lockFile.get(), &status) != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot copy", errno);
    *size = status.st_size;
    return PL_SUCCESS;
}

int CPLFileWriter::Private::commit()
{
    if (state != State::Open || !device)
        return firstStatus != PL_SUCCESS ? firstStatus : PL_NOTHING_TO_WORK_ON;
    device.reset();
    if (firstStatus != PL_SUCCESS) // a write to device() failed
        return firstStatus;
    return byRename ? commitByRename() : commitInPlace();
}

// The new file is synced and closed, then takes the file's place, and the folder is synced
// so that the rename lasts. Where the file system can exchange two names, the old file is
// kept under the lock's name until the folder is synced, so that even that failure leaves
// the file as it was; elsewhere the rename replaces it at once.
int CPLFileWriter::Private::commitByRename()
{
    // Writing clears the set-id bits of a file for a writer without the right to keep them:
    // they are given again now that the content is written.
    const int lost = exists ? giveOldIdentity() : 0;
    if (lost != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot keep the file's owner, group and mode",
                             lost);
    if (injected("fsync") || ::fsync(lockFile.get()) != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot sync", errno);
    const int closed = lockFile.close();
    if (injected("close") || closed != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot close", errno);

    const QByteArray folderName = PLFile::nativePath(QFileInfo(target).absolutePath());
    const Descriptor folder(::open(folderName.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isValid())
        return systemFailure(PL_SHORT_WRITE, path, "cannot open its folder", errno);
    bool exchanged = false;
    const int status = putIntoPlace(&exchanged);
    if (status != PL_SUCCESS)
        return status;
    if (injected("fsyncdir") || ::fsync(folder.get()) != 0) {
        const int error = errno;
        takeBack(folder.get(), exchanged);
        return systemFailure(PL_SHORT_WRITE, path, "cannot sync its folder", error);
    }
    if (exchanged && ::unlink(PLFile::nativePath(lock).constData()) != 0)
        qCWarning(lcOvSave, "%s: cannot remove the old content: %s", qUtf8Printable(lock),
                  std::strerror(errno));
    lockCreated = false;
    return PL_SUCCESS;
}

// Renames the lock file over the file: by exchanging the two names where the file exists and
// the file system can, by a plain rename otherwise.
int CPLFileWriter::Private::putIntoPlace(bool* exchanged)
{
    const QByteArray from = PLFile::nativePath(lock);
    const QByteArray to = PLFile::nativePath(target);
    if (injected("rename"))
        return systemFailure(PL_SHORT_WRITE, path, "cannot rename the new file into place", errno);
    if (exists) {
        *exchanged
            = ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE)
            == 0;
        if (*exchanged)
            return PL_SUCCESS;
        if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
            return systemFailure(PL_SHORT_WRITE, path, "cannot rename the new file into place",
                                 errno);
    }
    if (::rename(from.constData(), to.constData()) != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot rename the new file into place", errno);
    lockCreated = false;
    return PL_SUCCESS;
}

// After a failed sync of the folder: the old file back in its place (exchanged back, or a
// new file taken away again), and the new content under the lock's name, to be removed.
// Where the old file was replaced by a plain rename, the new content stays.
void CPLFileWriter::Private::takeBack(int folder, bool exchanged)
{
    const QByteArray from = PLFile::nativePath(target);
    const QByteArray to = PLFile::nativePath(lock);
    const bool back = exchanged
        ? ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) == 0
        : !exists && ::rename(from.constData(), to.constData()) == 0;
    if (!back) {
        qCCritical(lcOvSave, "%s: the new content is in place, but may not outlast a power cut",
                   qUtf8Printable(path));
        return;
    }
    lockCreated = true;
    ::fsync(folder);
}

int CPLFileWriter::Private::commitInPlace()
{
    QByteArray oldBytes;
    qint64 oldSize = 0;
    if (mode == Mode::Replace) {
        const int status = PLFile::readFile(target, &oldBytes);
        if (status != PL_SUCCESS)
            return fail(status,
                        QStringLiteral("%1: %2; nothing written").arg(path, getStatusText(status)));
    } else {
        FileStatus status {};
        if (::fstat(file.get(), &status) != 0)
            return systemFailure(PL_SHORT_WRITE, path, "cannot write", errno);
        oldSize = status.st_size;
    }
    StepFailure failure;
    if (putContent(file.get(), inPlaceBytes.constData(), inPlaceBytes.size(), oldSize, true,
                   &failure))
        return PL_SUCCESS;
    return restoreInPlace(file.get(), oldBytes, oldSize, failure);
}

// Writes the old content back after a failed in-place write (in Append mode: cuts the file
// back to its old end), then reports the failure.
int CPLFileWriter::Private::restoreInPlace(int fd, const QByteArray& oldBytes, qint64 oldSize,
                                           const StepFailure& cause)
{
    const int status = systemFailure(PL_SHORT_WRITE, path, cause.action, cause.error);
    StepFailure failure;
    if (!putContent(fd, oldBytes.constData(), oldBytes.size(), oldSize, false, &failure))
        qCCritical(lcOvSave,
                   "%s: the old content cannot be written back (%s: %s); the file may "
                   "be cut",
                   qUtf8Printable(path), failure.action, std::strerror(failure.error));
    PLStatusPrivate::setLastSystemError(cause.error);
    return status;
}

void CPLFileWriter::Private::release()
{
    device.reset();
    if (lockCreated && ::unlink(PLFile::nativePath(lock).constData()) != 0)
        qCWarning(lcOvSave, "%s: cannot remove the lock file: %s", qUtf8Printable(lock),
                  std::strerror(errno));
    lockCreated = false;
    lockFile.close();
    file.close();
    inPlaceBytes.clear();
    state = State::Done;
}

CPLFileWriter::CPLFileWriter(const QString& path, Mode mode)
    : d(std::make_unique<Private>(path, mode))
{
}

CPLFileWriter::~CPLFileWriter()
{
    d->release();
}

int CPLFileWriter::open(int waitMilliseconds)
{
    PLStatusPrivate::clearLastSystemError();
    return PL_GUARDED({
        const int status = d->open(waitMilliseconds);
        if (status != PL_SUCCESS)
            d->release();
        return status;
    });
}

int CPLFileWriter::readCurrent(QByteArray* bytes)
{
    if (!bytes)
        return PL_NULL_ARGUMENT;
    if (!d->exists) {
        bytes->clear();
        return PL_SUCCESS;
    }
    qint64 offset = 0;
    return d->mode == Mode::Append ? PLFile::readDicomMetadata(d->target, bytes, &offset)
                                   : PLFile::readFile(d->target, bytes);
}

QIODevice* CPLFileWriter::device()
{
    return d->device.get();
}

int CPLFileWriter::write(const QByteArray& bytes)
{
    return PL_GUARDED({
        QIODevice* const out = device();
        return out && out->write(bytes) == bytes.size() ? PL_SUCCESS : PL_SHORT_WRITE;
    });
}

int CPLFileWriter::commit()
{
    return PL_GUARDED({
        const int status = d->commit();
        d->release();
        return status;
    });
}

void CPLFileWriter::cancel()
{
    d->release();
}

bool CPLFileWriter::replacesByRename() const
{
    return d->byRename;
}

QString CPLFileWriter::lockPath() const
{
    return d->lock;
}

QString CPLFileWriter::errorString() const
{
    return d->message;
}

namespace {

// Writes what `content` makes of the file's current bytes (read under the lock).
template<typename Content>
int writeWhole(const QString& path, CPLFileWriter::Mode mode, Content content,
               const PLFile::Precondition& precondition)
{
    return PL_GUARDED({
        CPLFileWriter writer(path, mode);
        int status = writer.open(PL_LOCK_WAIT_MS);
        if (status == PL_SUCCESS && precondition)
            status = precondition(writer);
        if (status == PL_SUCCESS)
            status = writer.write(content(writer));
        return status == PL_SUCCESS ? writer.commit() : status;
    });
}

} // namespace

namespace PLFile {

int saveFile(const QString& path, const QByteArray& bytes, const Precondition& precondition)
{
    return writeWhole(
        path, CPLFileWriter::Mode::Replace,
        [&](CPLFileWriter&) -> const QByteArray& { return bytes; }, precondition);
}

int saveFileIfUnchanged(const QString& path, const QByteArray& bytes, const QByteArray& expected)
{
    return PL_GUARDED({
        CPLFileWriter writer(path, CPLFileWriter::Mode::Replace);
        QByteArray current;
        int status = writer.open(PL_LOCK_WAIT_MS);
        if (status == PL_SUCCESS)
            status = writer.readCurrent(&current);
        if (status == PL_SUCCESS && current != expected)
            status = PL_FILE_CHANGED;
        if (status == PL_SUCCESS)
            status = writer.write(bytes);
        return status == PL_SUCCESS ? writer.commit() : status;
    });
}

int appendDicomCopy(const QString& path, const QByteArray& copy, const Precondition& precondition)
{
    // The return type is written out: with the string builder, "+" would return a builder
    // that refers to the lambda's locals.
    return writeWhole(path, CPLFileWriter::Mode::Append, [&](CPLFileWriter& writer) -> QByteArray {
        QByteArray metadata;
        writer.readCurrent(&metadata); // unreadable: no separator, as for a new file
        return PLDicom::copySeparator(metadata) + copy;
    }, precondition);
}

} // namespace PLFile
