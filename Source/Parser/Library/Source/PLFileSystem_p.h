#ifndef PLFILESYSTEM_P_H
#define PLFILESYSTEM_P_H

// Internal header, not installed: what the file reader and the save policy share about the
// system's files: an owned file descriptor, file names in the system's encoding, and the
// report of a refused system call.

#include <QByteArray>
#include <QString>

#include <sys/stat.h>
#include <utility>

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

} // namespace PLFile

#endif // PLFILESYSTEM_P_H
