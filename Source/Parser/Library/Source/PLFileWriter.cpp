#include "PLFileWriter_p.h"

#include "PLDicomMetadata_p.h"

#include "PLFileLock_p.h"
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
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using PLFile::Descriptor;
using PLFile::FileStatus;
using PLFile::flushAsClose;
using PLFile::injected;
using PLFile::putContent;
using PLFile::StepFailure;
using Clock = std::chrono::steady_clock;

// A waiting writer looks at a held lock again after this many milliseconds.
constexpr int LOCK_POLL_MS = 20;
// A chain of symbolic links longer than this does not end (the system's own limit).
constexpr int MAX_LINK_HOPS = 40;
// The mode bits a replacing file must keep: permissions, set-user-ID, set-group-ID, sticky.
constexpr mode_t MODE_BITS = 07777;

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
    // Whether what was written may be committed: 0, or the status that stops the commit.
    int readyToCommit();
    int commitOne();
    // The steps of commit(), which a save of several files takes for each file in turn:
    // everything up to the rename; the rename (or the write in place); the sync of the
    // folder; and the removal of the old content. revert() undoes place().
    int prepare();
    int place();
    int syncFolder();
    void finish();
    void revert();
    // Closes everything and removes the lock file, if this writer made it.
    void release();
    // The file as it is locked, for reading: the descriptor's name in /proc where there is
    // one, else the file's path.
    QString lockedFileName() const;

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
    bool lockCreated = false; // the lock's name names something of ours to remove
    int lockRecord = -1; // for the signal handler (PLFileLock_p.h)
    Descriptor held; // the file itself, locked: read-only beside a lock file, else read-write
    Descriptor file; // the file opened for writing in place beside a lock file
    bool createdInPlace = false; // a new file this writer created in place
    bool byRename = false;
    bool exchanged = false; // the rename exchanged the names: the old file is the lock's
    bool placed = false; // place() succeeded
    bool committed = false;
    bool keepOld = false; // keep the old bytes for revert() even where a rename replaces them
    qint64 appendStart = 0; // Append mode: where the new content begins
    QByteArray oldBytes; // what revert() writes back, at oldSize (Replace: 0)
    qint64 oldSize = 0;
    QByteArray inPlaceBytes; // what device() gathers for an in-place write
    std::unique_ptr<QIODevice> device;

private:
    int examineTarget();
    int checkKind();
    int takeLock(const Deadline& deadline);
    int lockTargetBesideLockFile(const Deadline& deadline);
    int lockTargetItself(const Deadline& deadline);
    int waitForLock(const Deadline& deadline, const QString& name,
                    const std::function<PLFile::LockTry(int*)>& attempt, Descriptor* into);
    int giveOldIdentity();
    bool newFileCanTakeItsPlace(QString* why);
    int choosePath();
    int openForWritingInPlace();
    int openDevice();
    int cloneIntoLockFile(qint64* size);
    int keepOldContent();
    int putIntoPlace();
    int placeInPlaceInstead();
    int writeInPlace();
    int restoreInPlace(int fd, const StepFailure& cause);
    int writeFd() const { return file.isValid() ? file.get() : held.get(); }
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
    if (status == PL_SUCCESS && lockCreated)
        status = choosePath();
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

// Tries `attempt` until it holds the lock or the time to wait ends; the descriptor goes to
// *into. `name` is the lock named when the time ends.
int CPLFileWriter::Private::waitForLock(const Deadline& deadline, const QString& name,
                                        const std::function<PLFile::LockTry(int*)>& attempt,
                                        Descriptor* into)
{
    for (;;) {
        int fd = -1;
        switch (attempt(&fd)) {
        case PLFile::LockTry::Held:
            into->reset(fd);
            return PL_SUCCESS;
        case PLFile::LockTry::Retry:
            continue;
        case PLFile::LockTry::Busy:
            if (deadline.passed())
                return fail(PL_FILE_LOCKED,
                            QStringLiteral("%1: the file is locked by another editor").arg(name));
            deadline.pause();
            continue;
        case PLFile::LockTry::Failed:
            return -errno;
        }
    }
}

int CPLFileWriter::Private::takeLock(const Deadline& deadline)
{
    const QByteArray name = PLFile::nativePath(lock);
    // The lock file becomes the file: it is created with the file's permissions (or those of
    // a new file), so that the content is never more open than the file's.
    const mode_t creationMode = exists ? old.st_mode & 0777 : 0666;
    const int status = waitForLock(
        deadline, lock,
        [&](int* fd) {
            bool tookOver = false;
            const PLFile::LockTry result = PLFile::tryLockFile(name, creationMode, fd, &tookOver);
            if (tookOver)
                qCWarning(lcOvSave,
                          "%s: a lock left by an editor that ended (no process holds "
                          "it); taken over",
                          qUtf8Printable(lock));
            return result;
        },
        &lockFile);
    if (status == PL_SUCCESS) {
        lockCreated = true;
        lockRecord = PLFile::rememberLock(name, lockFile.get());
        return lockTargetBesideLockFile(deadline);
    }
    if (status > 0)
        return status;
    const int error = -status;
    // A folder where no file can be created (read-only, or a read-only file system), or a
    // name too long for ".lock" to be added: the file itself is locked and written in place.
    if (error == ENAMETOOLONG
        || (exists && (error == EACCES || error == EROFS || error == EPERM))) {
        qCDebug(lcOvSave,
                "%s: no lock file can be created beside it (%s); the file itself "
                "is locked and written in place",
                qUtf8Printable(path), std::strerror(error));
        return lockTargetItself(deadline);
    }
    return systemFailure(PL_FILE_OPEN_FAILED, exists ? lock : path,
                         exists ? "cannot create the lock file" : "cannot create", error);
}

// Beside its lock file, a writer also locks the file itself (read-only), so that a writer
// that locks only the file (one that cannot create the lock file) waits for it, and it for
// that writer. A writer that may not write the file is refused, as an open for writing
// would be, though a rename could replace the file.
int CPLFileWriter::Private::lockTargetBesideLockFile(const Deadline& deadline)
{
    // The file may have been created or replaced while the lock was awaited.
    const int examined = examineTarget();
    if (examined != PL_SUCCESS || !exists)
        return examined;
    const QByteArray name = PLFile::nativePath(target);
    const int status = waitForLock(
        deadline, path,
        [&](int* fd) {
            PLFile::LockTry result = PLFile::tryLockItself(name, O_RDONLY | O_NONBLOCK, 0, fd);
            // A file the writer may write but not read; a network file system whose locks
            // need a descriptor open for writing (EBADF).
            if (result == PLFile::LockTry::Failed && (errno == EACCES || errno == EBADF))
                result = PLFile::tryLockItself(
                    name, (errno == EACCES ? O_WRONLY : O_RDWR) | O_NONBLOCK, 0, fd);
            return result;
        },
        &held);
    if (status == -ENOENT) { // removed meanwhile: a new file
        exists = false;
        return PL_SUCCESS;
    }
    if (status < 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open", -status);
    if (status != PL_SUCCESS)
        return status;
    if (::fstat(held.get(), &old) != 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open", errno);
    if (::faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open for writing", errno);
    return checkKind();
}

// Without a lock file: the file is opened for writing and locked itself; a new file (whose
// name is too long for a lock file's) is created first.
int CPLFileWriter::Private::lockTargetItself(const Deadline& deadline)
{
    const QByteArray name = PLFile::nativePath(target);
    if (!exists) {
        Descriptor created(
            ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
        if (!created.isValid() && errno != EEXIST)
            return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot create", errno);
        createdInPlace = created.isValid();
    }
    const int status = waitForLock(
        deadline, path,
        [&](int* fd) { return PLFile::tryLockItself(name, O_RDWR | O_NONBLOCK, 0, fd); }, &held);
    if (status < 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open for writing", -status);
    if (status != PL_SUCCESS)
        return status;
    if (::fstat(held.get(), &old) != 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open for writing", errno);
    exists = true;
    return checkKind();
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
// one link, whose owner, group, mode and extended attributes (its ACL among them) the new
// file can take.
bool CPLFileWriter::Private::newFileCanTakeItsPlace(QString* why)
{
    if (old.st_nlink != 1) {
        *why = QStringLiteral("it has %1 links").arg(old.st_nlink);
        return false;
    }
    int error = giveOldIdentity();
    if (error == 0 && !PLFile::copyExtendedAttributes(held.get(), lockFile.get()))
        error = errno;
    if (error != 0)
        *why = QStringLiteral("a new file cannot be given its owner, group, mode and extended "
                              "attributes: %1")
                   .arg(QString::fromLocal8Bit(std::strerror(error)));
    return error == 0;
}

int CPLFileWriter::Private::choosePath()
{
    QString why;
    byRename = !exists || newFileCanTakeItsPlace(&why);
    if (byRename)
        return PL_SUCCESS;
    qCDebug(lcOvSave, "%s: written in place: %s", qUtf8Printable(path), qUtf8Printable(why));
    return openForWritingInPlace();
}

// The locked file, opened again for writing beside its read-only lock.
int CPLFileWriter::Private::openForWritingInPlace()
{
    file.reset(
        ::open(PLFile::nativePath(target).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    FileStatus status {};
    if (!file.isValid() || ::fstat(file.get(), &status) != 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open for writing", errno);
    if (status.st_dev != old.st_dev || status.st_ino != old.st_ino)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "replaced while it was opened", EAGAIN);
    return PL_SUCCESS;
}

int CPLFileWriter::Private::openDevice()
{
    if (!byRename) {
        auto buffer = std::make_unique<QBuffer>(&inPlaceBytes);
        buffer->open(QIODevice::WriteOnly);
        device = std::move(buffer);
        return PL_SUCCESS;
    }
    if (mode == Mode::Append && exists) {
        const int status = cloneIntoLockFile(&appendStart);
        if (status != PL_SUCCESS)
            return status;
    }
    device = PLFile::fileDevice(lockFile.get(), appendStart, target, [this](int error) {
        systemFailure(PL_SHORT_WRITE, path, "cannot write", error);
    });
    return PL_SUCCESS;
}

int CPLFileWriter::Private::cloneIntoLockFile(qint64* size)
{
    FileStatus status {};
    if (::fstat(held.get(), &status) != 0)
        return systemFailure(PL_FILE_OPEN_FAILED, path, "cannot open", errno);
    // What was copied is measured, since the file may have changed size meanwhile.
    if (!PLFile::copyContent(held.get(), lockFile.get(), status.st_size, target)
        || ::fstat(lockFile.get(), &status) != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot copy", errno);
    *size = status.st_size;
    return PL_SUCCESS;
}

QString CPLFileWriter::Private::lockedFileName() const
{
    const QString name = QStringLiteral("/proc/self/fd/%1").arg(held.get());
    return QFileInfo::exists(name) ? name : target;
}

// Before anything is put in place: the new file synced and flushed (its descriptor kept, so
// that its lock stays held across the rename), or the old bytes kept for an in-place write.
int CPLFileWriter::Private::prepare()
{
    if (!byRename || keepOld) {
        const int status = keepOldContent();
        if (status != PL_SUCCESS)
            return status;
    }
    if (!byRename)
        return PL_SUCCESS;
    // Writing clears the set-id bits of a file for a writer without the right to keep them:
    // they are given again now that the content is written.
    const int lost = exists ? giveOldIdentity() : 0;
    if (lost != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot keep the file's owner, group and mode",
                             lost);
    if (injected("fsync", target) || ::fsync(lockFile.get()) != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot sync", errno);
    if (!flushAsClose(lockFile.get(), &target))
        return systemFailure(PL_SHORT_WRITE, path, "cannot close", errno);
    return PL_SUCCESS;
}

// The old content, as revert() or a failed in-place write puts it back: the whole file in
// Replace mode; in Append mode its size, the new content going after it.
int CPLFileWriter::Private::keepOldContent()
{
    if (!exists || createdInPlace)
        return PL_SUCCESS;
    if (mode == Mode::Append) {
        FileStatus status {};
        if (::fstat(held.get(), &status) != 0)
            return systemFailure(PL_SHORT_WRITE, path, "cannot write", errno);
        oldSize = status.st_size;
        return PL_SUCCESS;
    }
    const int status = PLFile::readFile(lockedFileName(), &oldBytes);
    if (status != PL_SUCCESS)
        return fail(status,
                    QStringLiteral("%1: %2; nothing written").arg(path, getStatusText(status)));
    return PL_SUCCESS;
}

int CPLFileWriter::Private::place()
{
    const int status = byRename ? putIntoPlace() : writeInPlace();
    placed = status == PL_SUCCESS;
    return status;
}

// Renames the lock file over the file: by exchanging the two names where the file exists and
// the file system can, by a plain rename otherwise. Where the file cannot be renamed over
// (a file that is itself a mount point, or one across file systems), it is written in place.
int CPLFileWriter::Private::putIntoPlace()
{
    const QByteArray from = PLFile::nativePath(lock);
    const QByteArray to = PLFile::nativePath(target);
    if (injected("rename", target))
        return systemFailure(PL_SHORT_WRITE, path, "cannot rename the new file into place", errno);
    if (exists) {
        exchanged
            = ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE)
            == 0;
        if (exchanged) {
            PLFile::lockNowNames(lockRecord, old.st_dev, old.st_ino);
            return PL_SUCCESS;
        }
    }
    if ((!exists || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)
        && ::rename(from.constData(), to.constData()) == 0) {
        lockCreated = false;
        PLFile::forgetLock(lockRecord);
        return PL_SUCCESS;
    }
    if (exists && (errno == EBUSY || errno == EXDEV))
        return placeInPlaceInstead();
    return systemFailure(PL_SHORT_WRITE, path, "cannot rename the new file into place", errno);
}

// The new content, written into the lock file, is written in place instead.
int CPLFileWriter::Private::placeInPlaceInstead()
{
    qCDebug(lcOvSave, "%s: cannot be renamed over (%s); written in place", qUtf8Printable(path),
            std::strerror(errno));
    FileStatus status {};
    if (::fstat(lockFile.get(), &status) != 0)
        return systemFailure(PL_SHORT_WRITE, path, "cannot write", errno);
    inPlaceBytes.resize(int(status.st_size - appendStart));
    const ssize_t got
        = ::pread(lockFile.get(), inPlaceBytes.data(), size_t(inPlaceBytes.size()), appendStart);
    if (got != inPlaceBytes.size())
        return systemFailure(PL_SHORT_WRITE, path, "cannot write", got < 0 ? errno : EIO);
    int result = openForWritingInPlace();
    byRename = false;
    if (result == PL_SUCCESS && !keepOld)
        result = keepOldContent();
    return result == PL_SUCCESS ? writeInPlace() : result;
}

int CPLFileWriter::Private::writeInPlace()
{
    StepFailure failure;
    if (putContent(writeFd(), inPlaceBytes.constData(), inPlaceBytes.size(), oldSize, &target,
                   &failure))
        return PL_SUCCESS;
    return restoreInPlace(writeFd(), failure);
}

// Writes the old content back after a failed in-place write (in Append mode: cuts the file
// back to its old end), then reports the failure.
int CPLFileWriter::Private::restoreInPlace(int fd, const StepFailure& cause)
{
    const int status = systemFailure(PL_SHORT_WRITE, path, cause.action, cause.error);
    StepFailure failure;
    if (!putContent(fd, oldBytes.constData(), oldBytes.size(), oldSize, nullptr, &failure))
        qCCritical(lcOvSave,
                   "%s: the old content cannot be written back (%s: %s); the file may "
                   "be cut",
                   qUtf8Printable(path), failure.action, std::strerror(failure.error));
    PLStatusPrivate::setLastSystemError(cause.error);
    return status;
}

// The folder synced, so that the rename lasts; on failure the file is put back.
int CPLFileWriter::Private::syncFolder()
{
    if (!byRename)
        return PL_SUCCESS;
    const QByteArray folderName = PLFile::nativePath(QFileInfo(target).absolutePath());
    const Descriptor folder(::open(folderName.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isValid() || injected("fsyncdir", target) || ::fsync(folder.get()) != 0) {
        const int error = errno;
        revert();
        return systemFailure(PL_SHORT_WRITE, path, "cannot sync its folder", error);
    }
    return PL_SUCCESS;
}

// The old content kept under the lock's name by an exchange is removed.
void CPLFileWriter::Private::finish()
{
    committed = true;
    if (!exchanged)
        return;
    if (::unlink(PLFile::nativePath(lock).constData()) != 0)
        qCWarning(lcOvSave, "%s: cannot remove the old content: %s", qUtf8Printable(lock),
                  std::strerror(errno));
    PLFile::forgetLock(lockRecord);
    lockCreated = false;
}

// Undoes place(): the names exchanged back, a new file taken away again, or the old bytes
// written back (kept where a rename replaced the file, or written in place). The new
// content is left under the lock's name, to be removed.
void CPLFileWriter::Private::revert()
{
    if (!placed)
        return;
    placed = false;
    const QByteArray from = PLFile::nativePath(target);
    const QByteArray to = PLFile::nativePath(lock);
    bool back = false;
    if (byRename && exchanged) {
        back = ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE)
            == 0;
    } else if (byRename && !exists) {
        back = ::rename(from.constData(), to.constData()) == 0;
    } else if (!byRename || keepOld) {
        StepFailure failure;
        back = putContent(byRename ? lockFile.get() : writeFd(), oldBytes.constData(),
                          oldBytes.size(), byRename ? appendStart : oldSize, nullptr, &failure);
    }
    if (!back) {
        qCCritical(lcOvSave, "%s: the new content is in place, but may not outlast a power cut",
                   qUtf8Printable(path));
        return;
    }
    if (byRename && (exchanged || !exists)) {
        lockCreated = true;
        exchanged = false;
        FileStatus status {};
        if (::fstat(lockFile.get(), &status) == 0)
            PLFile::lockNowNames(lockRecord, status.st_dev, status.st_ino);
        const Descriptor folder(
            ::open(PLFile::nativePath(QFileInfo(target).absolutePath()).constData(),
                   O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (folder.isValid())
            ::fsync(folder.get());
    }
}

void CPLFileWriter::Private::release()
{
    device.reset();
    const QByteArray name = PLFile::nativePath(lock);
    // lockCreated: the lock's name names this writer's file (its lock, or the old content).
    if (lockCreated && ::unlink(name.constData()) != 0)
        qCWarning(lcOvSave, "%s: cannot remove the lock file: %s", qUtf8Printable(lock),
                  std::strerror(errno));
    PLFile::forgetLock(lockRecord);
    lockRecord = -1;
    lockCreated = false;
    if (createdInPlace && !committed && PLFile::namesFile(PLFile::nativePath(target), held.get()))
        ::unlink(PLFile::nativePath(target).constData());
    lockFile.close();
    file.close();
    held.close();
    inPlaceBytes.clear();
    oldBytes.clear();
    state = State::Done;
}

int CPLFileWriter::Private::commitOne()
{
    int status = prepare();
    if (status == PL_SUCCESS)
        status = place();
    if (status == PL_SUCCESS)
        status = syncFolder();
    if (status == PL_SUCCESS)
        finish();
    return status;
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
    if (!d->exists || d->createdInPlace) {
        bytes->clear();
        return PL_SUCCESS;
    }
    qint64 offset = 0;
    const QString locked = d->lockedFileName();
    return d->mode == Mode::Append ? PLFile::readDicomMetadata(locked, bytes, &offset)
                                   : PLFile::readFile(locked, bytes);
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

int CPLFileWriter::Private::readyToCommit()
{
    if (state != State::Open || !device)
        return firstStatus != PL_SUCCESS ? firstStatus : PL_NOTHING_TO_WORK_ON;
    device.reset();
    return firstStatus; // a write to device() failed
}

int CPLFileWriter::commit()
{
    return PL_GUARDED({
        int status = d->readyToCommit();
        if (status == PL_SUCCESS)
            status = d->commitOne();
        d->release();
        return status;
    });
}

int CPLFileWriter::commitTogether(const std::vector<CPLFileWriter*>& writers)
{
    return PL_GUARDED({
        int status = PL_SUCCESS;
        for (CPLFileWriter* writer : writers) {
            writer->d->keepOld = true;
            if (status == PL_SUCCESS)
                status = writer->d->readyToCommit();
            if (status == PL_SUCCESS)
                status = writer->d->prepare();
        }
        // Every new file is ready: each is put in place, and all are put back on a failure.
        for (size_t i = 0; i < writers.size() && status == PL_SUCCESS; ++i)
            status = writers[i]->d->place();
        for (size_t i = 0; i < writers.size() && status == PL_SUCCESS; ++i)
            status = writers[i]->d->syncFolder();
        for (auto writer = writers.rbegin(); writer != writers.rend(); ++writer) {
            if (status == PL_SUCCESS)
                (*writer)->d->finish();
            else
                (*writer)->d->revert();
            (*writer)->d->release();
        }
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

QString CPLFileWriter::targetPath() const
{
    return d->target;
}

QString CPLFileWriter::lockPath() const
{
    return d->lock;
}

QString CPLFileWriter::errorString() const
{
    return d->message;
}
