#ifndef PLFILESYSTEM_P_H
#define PLFILESYSTEM_P_H

// Internal header, not installed: what the file reader and the save policy share about the
// system's files: an owned file descriptor, file names in the system's encoding, the report
// of a refused system call; and the save policy's writing of content (PLFileContent.cpp).

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <sys/stat.h>
#include <utility>

class QIODevice;

namespace PLFile {

// What stat(2) tells of a file.
using FileStatus = struct stat;

// Owns a file descriptor and closes it once, when it is destroyed or closed.
class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept
        : m_fd(other.release())
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return m_fd; }
    bool isValid() const { return m_fd >= 0; }
    int release() { return std::exchange(m_fd, -1); }
    void reset(int fd)
    {
        close();
        m_fd = fd;
    }
    // Closes the descriptor: 0, or -1 with errno set. The descriptor is given up either way,
    // since a close that failed must not be tried again.
    int close();

private:
    int m_fd = -1;
};

// The path in the encoding of the system's file names.
QByteArray nativePath(const QString& path);

// Records `error` (an errno value) for getLastSystemError() and returns the message that
// names the file: "PATH: ACTION: REASON", as in "ClickInfo.txt: cannot write: No space left
// on device".
QString systemFailure(const QString& path, const char* action, int error);

// The test seam of the save policy (PLFileWriter_p.h): whether OVPARSER_FAIL_SYSCALL names
// `operation`, alone or for the file `file` ("rename@SLindex.txt"); if so, errno is EIO.
bool injected(const char* operation, const QString& file = QString());

// Writes all `size` bytes of `data` at `offset`. False with errno set when the system
// refuses; a write that makes no progress counts as a full disk.
bool writeAt(int fd, const char* data, qint64 size, qint64 offset);

// Copies the whole of `from`, `size` bytes, into the empty file `to`: as a reflink where the
// file system shares blocks between files, else inside the kernel, else with read and
// write. False with errno set when the system refuses; the test seam's "write" (for the file
// `seam`) fails it.
bool copyContent(int from, int to, qint64 size, const QString& seam);

// Flushes what was written through `fd` as a close would, keeping `fd` (and so its locks)
// open: on a network file system it is the close that reports a failed write. The test seam
// applies, for the file *seam, when `seam` is set.
bool flushAsClose(int fd, const QString* seam);

// How a failure of a step of putContent() is reported.
struct StepFailure
{
    const char* action = nullptr;
    int error = 0;
};

// Writes `size` bytes at `offset` of `fd`, makes `offset + size` the file's end, syncs it and
// flushes it as a close would. The test seam applies, for the file *seam, when `seam` is set
// (not to writing old content back). True, or false with *failure telling which step failed.
bool putContent(int fd, const char* data, qint64 size, qint64 offset, const QString* seam,
                StepFailure* failure);

// A device that writes each write at once into `fd` from `offset` on (the XML writer's text
// stream gathers its text first); the test seam applies for `file`. After the first failure,
// reported through `onFailure` with its errno value, every write is refused.
std::unique_ptr<QIODevice> fileDevice(int fd, qint64 offset, const QString& file,
                                      std::function<void(int)> onFailure);

// Gives `to` every extended attribute of `from` (user.*, and the POSIX ACL as
// "system.posix_acl_access"); one that `to` holds already with the same value (a security
// label given at its creation) is left as it is. False with errno set when one cannot be
// read or given (EPERM, ENOTSUP...); a file system without extended attributes has none.
bool copyExtendedAttributes(int from, int to);

} // namespace PLFile

#endif // PLFILESYSTEM_P_H
