#ifndef PLFILELOCK_P_H
#define PLFILELOCK_P_H

// Internal header, not installed: the locks of the save policy (PLFileWriter_p.h), one try
// at a time, and the record of the lock files this process holds, which a signal handler
// removes (releaseLocksOnSignal(), PLFileEditor.h).
//
// Two kinds of writer exclude each other:
// - one that can create "<file>.lock" holds that lock file with flock(2), and also holds
//   flock(2) on the file itself (opened read-only) until it is done, a rename included;
// - one that cannot (a folder it may not write) holds flock(2) on the file itself only.
// Each checks, once its flock is held, that the path still names the file it locked (stat
// against fstat): a rename may have put another file there meanwhile, and it then tries
// again. A lock file that no process holds with flock(2) was left by a writer that ended:
// it is removed and taken over at once. A writer that created a lock file but finds it
// locked, or gone, by the time it locks it has lost it to such a taker and waits again,
// without removing it.

#include <QByteArray>

#include <sys/types.h>

namespace PLFile {

// The outcome of one try at a lock.
enum class LockTry {
    Held, // *fd is the locked descriptor
    Busy, // another writer holds it: wait and try again
    Retry, // the path changed meanwhile (a stale lock was removed, a file replaced): again now
    Failed // the system refused: errno says why
};

// Tries once to take the lock file `name`, created with `mode`. *tookOver is set when a
// lock file that no process held was removed first (the caller reports it).
LockTry tryLockFile(const QByteArray& name, mode_t mode, int* fd, bool* tookOver);

// Tries once to open the file `name` with `flags` (O_CREAT creates it with `mode`) and lock
// it with flock(2).
LockTry tryLockItself(const QByteArray& name, int flags, mode_t mode, int* fd);

// Whether the path `name` still names the file open as `fd`.
bool namesFile(const QByteArray& name, int fd);

// Records the lock file `name`, open as `fd`, as this process's: the signal handler removes
// it while the path names that file. Returns the record's number, or -1 when every record is
// taken (the lock is then not removed by a signal).
int rememberLock(const QByteArray& name, int fd);
// The lock's name now names another file (the old content after an exchange of names).
void lockNowNames(int record, dev_t device, ino_t inode);
void forgetLock(int record);

} // namespace PLFile

#endif // PLFILELOCK_P_H
