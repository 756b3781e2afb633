#include "PLFileLock_p.h"

#include "PLFileEditor.h"
#include "PLFileSystem_p.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using PLFile::Descriptor;
using PLFile::LockTry;

// One lock file of this process, for the signal handler. `state` is claimed with an atomic
// exchange (lock-free, so safe in a handler): free, being written, or in use.
struct LockRecord
{
    enum : int { Free, Writing, InUse };
    std::atomic<int> state { Free };
    dev_t device = 0;
    ino_t inode = 0;
    char name[PATH_MAX] = {};
};

// Fixed storage: the handler allocates nothing. A process holds one lock per file it saves
// at once; past this many, a lock is still held, only not removed by a signal.
LockRecord g_records[64];

bool sameFile(const PLFile::FileStatus& a, const PLFile::FileStatus& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Locks `fd` without waiting and checks that `name` still names it; gives it up otherwise.
LockTry lockAndCheck(const QByteArray& name, Descriptor fd, int* out, LockTry otherwise)
{
    if (::flock(fd.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return LockTry::Failed;
        return LockTry::Busy;
    }
    if (!PLFile::namesFile(name, fd.get()))
        return otherwise;
    *out = fd.release();
    return LockTry::Held;
}

} // namespace

namespace PLFile {

bool namesFile(const QByteArray& name, int fd)
{
    PLFile::FileStatus path {};
    PLFile::FileStatus opened {};
    return ::stat(name.constData(), &path) == 0 && ::fstat(fd, &opened) == 0
        && sameFile(path, opened);
}

LockTry tryLockFile(const QByteArray& name, mode_t mode, int* fd, bool* tookOver)
{
    Descriptor created(
        ::open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    if (created.isValid()) {
        // Locked or removed by a taker between the create and the flock: lost, not ours
        // to remove; wait for it like any held lock.
        return lockAndCheck(name, std::move(created), fd, LockTry::Busy);
    }
    if (errno != EEXIST)
        return errno == EINTR ? LockTry::Retry : LockTry::Failed;
    // A lock file is there: held, or left by a writer that ended if nothing holds it. Open
    // for writing where it may be, as a network file system's locks need.
    const int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    Descriptor probe(::open(name.constData(), O_RDWR | flags));
    if (!probe.isValid() && errno == EACCES)
        probe.reset(::open(name.constData(), O_RDONLY | flags));
    if (!probe.isValid())
        return errno == ENOENT ? LockTry::Retry : LockTry::Busy;
    int stale = -1;
    const LockTry probed = lockAndCheck(name, std::move(probe), &stale, LockTry::Retry);
    if (probed != LockTry::Held)
        return probed == LockTry::Failed ? LockTry::Busy : probed;
    // No process holds it, and the path names it: removed while locked, so that no other
    // taker removes a newer one, then created anew.
    const Descriptor left(stale);
    if (::unlink(name.constData()) != 0)
        return LockTry::Busy;
    *tookOver = true;
    return LockTry::Retry;
}

LockTry tryLockItself(const QByteArray& name, int flags, mode_t mode, int* fd)
{
    Descriptor file(::open(name.constData(), flags | O_CLOEXEC | O_NOCTTY, mode));
    if (!file.isValid())
        return LockTry::Failed;
    return lockAndCheck(name, std::move(file), fd, LockTry::Retry);
}

int rememberLock(const QByteArray& name, int fd)
{
    PLFile::FileStatus status {};
    if (name.size() >= PATH_MAX || ::fstat(fd, &status) != 0)
        return -1;
    for (int i = 0; i < int(std::size(g_records)); ++i) {
        LockRecord& record = g_records[i];
        int expected = LockRecord::Free;
        if (!record.state.compare_exchange_strong(expected, LockRecord::Writing))
            continue;
        std::memcpy(record.name, name.constData(), size_t(name.size()) + 1);
        record.device = status.st_dev;
        record.inode = status.st_ino;
        record.state.store(LockRecord::InUse);
        return i;
    }
    return -1;
}

void lockNowNames(int record, dev_t device, ino_t inode)
{
    if (record < 0)
        return;
    g_records[record].state.store(LockRecord::Writing);
    g_records[record].device = device;
    g_records[record].inode = inode;
    g_records[record].state.store(LockRecord::InUse);
}

void forgetLock(int record)
{
    if (record >= 0)
        g_records[record].state.store(LockRecord::Free);
}

} // namespace PLFile

void releaseLocksOnSignal() noexcept
{
    for (LockRecord& record : g_records) {
        if (record.state.load() != LockRecord::InUse)
            continue;
        PLFile::FileStatus status {};
        if (::lstat(record.name, &status) == 0 && status.st_dev == record.device
            && status.st_ino == record.inode)
            ::unlink(record.name);
    }
}
