#include "PLFileSystem_p.h"

#include <QFileInfo>
#include <QIODevice>
#include <QList>

#include <cerrno>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

// The largest piece one write or copy call is given.
constexpr qint64 LARGEST_CALL = qint64(1) << 30;

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
        if (!PLFile::writeAt(to, buffer.constData(), n, done))
            return false;
        done += n;
    }
    return true;
}

// What `get` gives of extended attributes (their names, or a value): asked with no buffer for
// its size, then with one, and again when it grew meanwhile. False with errno set.
bool readAttributes(const std::function<ssize_t(char*, size_t)>& get, QByteArray* bytes)
{
    for (;;) {
        const ssize_t size = get(nullptr, 0);
        if (size < 0)
            return false;
        bytes->resize(int(size));
        const ssize_t got = size == 0 ? 0 : get(bytes->data(), size_t(size));
        if (got >= 0) {
            bytes->resize(int(got));
            return true;
        }
        if (errno != ERANGE)
            return false;
    }
}

// The names of the extended attributes of `fd`, each ended by a NUL: none where the file
// system has none.
bool attributeNames(int fd, QByteArray* names)
{
    names->clear();
    return readAttributes([fd](char* to, size_t size) { return ::flistxattr(fd, to, size); }, names)
        || errno == ENOTSUP;
}

bool attributeValue(int fd, const QByteArray& name, QByteArray* value)
{
    return readAttributes(
        [&](char* to, size_t size) { return ::fgetxattr(fd, name.constData(), to, size); }, value);
}

// The lock file writes into the file as a device: each write goes to the file at once (the
// XML writer's text stream gathers its text first). After the first failure, which is
// reported through `onFailure`, every write is refused.
class FileDevice : public QIODevice
{
public:
    FileDevice(int fd, qint64 offset, const QString& file, std::function<void(int)> onFailure)
        : m_fd(fd)
        , m_file(file)
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
        if (PLFile::injected("write", m_file) || !PLFile::writeAt(m_fd, data, size, m_offset)) {
            m_failed = true;
            m_onFailure(errno);
            return -1;
        }
        m_offset += size;
        return size;
    }

private:
    int m_fd;
    QString m_file; // for the test seam
    qint64 m_offset;
    std::function<void(int)> m_onFailure;
    bool m_failed = false;
};

} // namespace

namespace PLFile {

bool injected(const char* operation, const QString& file)
{
    if (qEnvironmentVariableIsEmpty("OVPARSER_FAIL_SYSCALL"))
        return false;
    const QByteArray forFile
        = QByteArray(operation) + '@' + QFileInfo(file).fileName().toLocal8Bit();
    const QList<QByteArray> names = qgetenv("OVPARSER_FAIL_SYSCALL").split(',');
    for (const QByteArray& name : names) {
        if (name.trimmed() == operation || (!file.isEmpty() && name.trimmed() == forFile)) {
            errno = EIO;
            return true;
        }
    }
    return false;
}

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

bool copyContent(int from, int to, qint64 size, const QString& seam)
{
    if (injected("write", seam)) // the copy is the first write into the new file
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

bool flushAsClose(int fd, const QString* seam)
{
    Descriptor copy(::dup(fd));
    const int closed = copy.isValid() ? copy.close() : -1;
    return !(seam && injected("close", *seam)) && closed == 0;
}

bool putContent(int fd, const char* data, qint64 size, qint64 offset, const QString* seam,
                StepFailure* failure)
{
    const auto failed = [failure](const char* action) {
        *failure = { action, errno };
        return false;
    };
    if ((seam && injected("write", *seam)) || !writeAt(fd, data, size, offset))
        return failed("cannot write");
    if (::ftruncate(fd, offset + size) != 0)
        return failed("cannot set the file's size");
    if ((seam && injected("fsync", *seam)) || ::fsync(fd) != 0)
        return failed("cannot sync");
    if (!flushAsClose(fd, seam))
        return failed("cannot close");
    return true;
}

bool copyExtendedAttributes(int from, int to)
{
    QByteArray names;
    if (!attributeNames(from, &names))
        return false;
    for (const QByteArray& name : names.split('\0')) {
        QByteArray value;
        if (!name.isEmpty() && !attributeValue(from, name, &value))
            return false;
        // One the new file has already (a security label given at its creation) is not set
        // again, which its writer may not be allowed to do.
        QByteArray given;
        if (name.isEmpty() || (attributeValue(to, name, &given) && given == value))
            continue;
        if (::fsetxattr(to, name.constData(), value.constData(), size_t(value.size()), 0) != 0)
            return false;
    }
    return true;
}

std::unique_ptr<QIODevice> fileDevice(int fd, qint64 offset, const QString& file,
                                      std::function<void(int)> onFailure)
{
    return std::make_unique<FileDevice>(fd, offset, file, std::move(onFailure));
}

} // namespace PLFile
