#include "PLFileReader_p.h"

#include "PLFileSystem_p.h"
#include "PLLogging_p.h"
#include "PLStatus_p.h"

#include <QIODevice>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using PLFile::Descriptor;
using PLFile::FileStatus;

// A DICOM file is searched backwards for its last NUL in blocks of this size.
constexpr qint64 DICOM_BLOCK = 64 * 1024;
// A device is read in pieces of this size.
constexpr qint64 DEVICE_PIECE = 64 * 1024;
// The most bytes one QByteArray holds (its size is an int), less room for its header and the
// byte of the end test.
constexpr qint64 LARGEST_BUFFER = std::numeric_limits<int>::max() - 1024;

// Logs why a file is refused and returns `status`.
int refuse(int status, const QString& message)
{
    qCWarning(lcOvFile, "%s", qUtf8Printable(message));
    return status;
}

// A system call on `path` refused with `error`: recorded and logged; PL_FILE_OPEN_FAILED.
int systemRefusal(const QString& path, const char* action, int error)
{
    return refuse(PL_FILE_OPEN_FAILED, PLFile::systemFailure(path, action, error));
}

int tooLarge(const QString& path, qint64 size, qint64 limit)
{
    return refuse(PL_FILE_TOO_LARGE,
                  QStringLiteral("%1: %2 bytes or more, above the %3 bytes read at most")
                      .arg(path)
                      .arg(size)
                      .arg(limit));
}

// 0 for a regular file of at most `limit` bytes; a directory, another kind of file or a
// larger file is refused.
int checkFile(const QString& path, const FileStatus& status, qint64 limit)
{
    if (S_ISDIR(status.st_mode))
        return systemRefusal(path, "cannot read", EISDIR);
    if (!S_ISREG(status.st_mode))
        return refuse(PL_NOT_REGULAR_FILE,
                      QStringLiteral("%1: not a regular file (a FIFO, device or socket); not read")
                          .arg(path));
    return status.st_size > limit ? tooLarge(path, status.st_size, limit) : PL_SUCCESS;
}

// Opens a regular file of at most `limit` bytes for reading. It is looked at before it is
// opened, so that a FIFO is never opened (which would wait for a writer) nor a device read;
// it is opened without waiting, and looked at again, since the file opened may not be the
// one looked at.
int openRegular(const QString& path, qint64 limit, Descriptor* fd, FileStatus* status)
{
    const QByteArray name = PLFile::nativePath(path);
    if (::stat(name.constData(), status) != 0)
        return systemRefusal(path, "cannot open", errno);
    const int kind = checkFile(path, *status, limit);
    if (kind != PL_SUCCESS)
        return kind;
    fd->reset(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!fd->isValid() || ::fstat(fd->get(), status) != 0)
        return systemRefusal(path, "cannot open", errno);
    return checkFile(path, *status, limit);
}

// Reads up to `size` bytes at `offset` with one read: fewer bytes than asked mean that the
// end of the file is reached. The count, or -1 with errno set.
qint64 readAt(int fd, char* data, qint64 size, qint64 offset)
{
    for (;;) {
        const ssize_t n = ::pread(fd, data, size_t(size), offset);
        if (n >= 0 || errno != EINTR)
            return n;
    }
}

// Reads the open file from `offset` to its end into *bytes, expecting `expected` bytes: into
// one buffer one byte larger, so that a read that does not fill it has met the end. A file
// that has grown meanwhile is read on, up to `limit` bytes.
int readToEnd(int fd, const QString& path, qint64 offset, qint64 expected, qint64 limit,
              QByteArray* bytes)
{
    qint64 capacity = qMin(expected, limit) + 1;
    QByteArray buffer(int(capacity), Qt::Uninitialized);
    qint64 got = 0;
    for (;;) {
        const qint64 n = readAt(fd, buffer.data() + got, capacity - got, offset + got);
        if (n < 0)
            return systemRefusal(path, "cannot read", errno);
        got += n;
        if (got < capacity)
            break;
        if (got > limit)
            return tooLarge(path, got, limit);
        capacity = qMin(capacity * 2, limit + 1);
        buffer.resize(int(capacity));
    }
    buffer.resize(int(got));
    *bytes = std::move(buffer);
    return PL_SUCCESS;
}

// Finds where the metadata of a DICOM file of `size` bytes begins: after its last NUL, found
// by reading backwards from the end in blocks, or at 0 when it holds none. A metadata tail
// longer than `limit` is refused as soon as that many bytes are read without a NUL.
int findMetadata(int fd, const QString& path, qint64 size, qint64 limit, qint64* start)
{
    QByteArray block(int(DICOM_BLOCK), Qt::Uninitialized);
    for (qint64 end = size; end > 0;) {
        const qint64 begin = qMax<qint64>(0, end - DICOM_BLOCK);
        const qint64 n = readAt(fd, block.data(), end - begin, begin);
        if (n < 0)
            return systemRefusal(path, "cannot read", errno);
        if (const void* nul = ::memrchr(block.constData(), '\0', size_t(n))) {
            *start = begin + (static_cast<const char*>(nul) - block.constData()) + 1;
            return size - *start > limit ? tooLarge(path, size - *start, limit) : PL_SUCCESS;
        }
        if (size - begin > limit)
            return tooLarge(path, size - begin, limit);
        end = begin;
    }
    *start = 0;
    return PL_SUCCESS;
}

qint64 effectiveLimit(qint64 limit)
{
    return qBound<qint64>(0, limit, LARGEST_BUFFER);
}

} // namespace

namespace PLFile {

bool isDicomPath(const QString& path)
{
    return path.endsWith(QLatin1String(".dcm"), Qt::CaseInsensitive);
}

int readFile(const QString& path, QByteArray* bytes, qint64 limit, FileStatus* read)
{
    PLStatusPrivate::clearLastSystemError();
    if (!bytes)
        return PL_NULL_ARGUMENT;
    return PL_GUARDED({
        limit = effectiveLimit(limit);
        Descriptor fd;
        FileStatus status {};
        const int opened = openRegular(path, limit, &fd, &status);
        if (opened == PL_SUCCESS && read)
            *read = status;
        return opened == PL_SUCCESS ? readToEnd(fd.get(), path, 0, status.st_size, limit, bytes)
                                    : opened;
    });
}

int readFile(const QString& path, QByteArray* bytes)
{
    return readFile(path, bytes, PL_MAX_FILE_SIZE);
}

int readDicomMetadata(const QString& path, QByteArray* metadata, qint64* offset,
                      FileStatus* read)
{
    PLStatusPrivate::clearLastSystemError();
    if (!metadata || !offset)
        return PL_NULL_ARGUMENT;
    return PL_GUARDED({
        Descriptor fd;
        FileStatus status {};
        int result = openRegular(path, std::numeric_limits<qint64>::max(), &fd, &status);
        if (result == PL_SUCCESS && read)
            *read = status;
        qint64 start = 0;
        if (result == PL_SUCCESS)
            result = findMetadata(fd.get(), path, status.st_size, PL_MAX_FILE_SIZE, &start);
        if (result == PL_SUCCESS)
            result = readToEnd(fd.get(), path, start, status.st_size - start, PL_MAX_FILE_SIZE,
                               metadata);
        if (result == PL_SUCCESS)
            *offset = start;
        return result;
    });
}

int readDevice(QIODevice& device, const QString& name, QByteArray* bytes, qint64 limit)
{
    PLStatusPrivate::clearLastSystemError();
    if (!bytes)
        return PL_NULL_ARGUMENT;
    return PL_GUARDED({
        limit = effectiveLimit(limit);
        QByteArray buffer;
        for (;;) {
            const qint64 room = qMin(DEVICE_PIECE, limit + 1 - buffer.size());
            const int filled = buffer.size();
            buffer.resize(int(filled + room));
            const qint64 n = device.read(buffer.data() + filled, room);
            if (n < 0)
                return refuse(
                    PL_FILE_OPEN_FAILED,
                    QStringLiteral("%1: cannot read: %2").arg(name, device.errorString()));
            buffer.resize(int(filled + n));
            if (buffer.size() > limit)
                return tooLarge(name, buffer.size(), limit);
            // Nothing more now: the end, unless the device says more is on its way.
            if (n == 0 && !device.waitForReadyRead(-1))
                break;
        }
        *bytes = std::move(buffer);
        return PL_SUCCESS;
    });
}

} // namespace PLFile
