#include "PLFileStamp_p.h"

#include "PLFileWriter_p.h"
#include "PLStatus.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <ctime>

namespace {

qint64 nanoseconds(const timespec& time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

QByteArray digestOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

// The path with its symbolic links followed, or as given, made absolute, when it does not
// resolve (a file that does not exist yet).
QString canonicalPath(const QString& path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

} // namespace

namespace PLFile {

Stamp Stamp::ofRead(const QString& path, const FileStatus& status, const QByteArray& bytes)
{
    Stamp stamp;
    stamp.m_strPath = QFileInfo(path).absoluteFilePath();
    stamp.m_device = status.st_dev;
    stamp.m_inode = status.st_ino;
    stamp.m_size = status.st_size;
    stamp.m_modifiedNs = nanoseconds(status.st_mtim);
    timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (nanoseconds(now) - stamp.m_modifiedNs < qint64(RACY_SECONDS) * 1000000000)
        stamp.keepContent(bytes);
    return stamp;
}

Stamp Stamp::ofWritten(const QString& path, const QByteArray& content)
{
    FileStatus status {};
    if (::stat(nativePath(path).constData(), &status) != 0)
        return Stamp();
    Stamp stamp = ofRead(path, status, QByteArray());
    // Whoever writes the file between the save and this look would pass for the save: what
    // the save wrote tells them apart.
    stamp.m_Content.clear();
    stamp.m_Digest.clear();
    if (!content.isEmpty())
        stamp.keepContent(content);
    return stamp;
}

void Stamp::keepContent(const QByteArray& bytes)
{
    if (bytes.size() <= KEPT_BYTES)
        m_Content = bytes.isNull() ? QByteArray("") : bytes;
    else
        m_Digest = digestOf(bytes);
}

bool Stamp::names(const QString& path) const
{
    if (!isValid())
        return false;
    if (canonicalPath(path) == canonicalPath(m_strPath))
        return true;
    FileStatus status {};
    return ::stat(nativePath(path).constData(), &status) == 0 && status.st_dev == m_device
        && status.st_ino == m_inode;
}

int Stamp::check(CPLFileWriter& writer) const
{
    FileStatus now {};
    if (::stat(nativePath(writer.targetPath()).constData(), &now) != 0 || now.st_dev != m_device
        || now.st_ino != m_inode || now.st_size != m_size
        || nanoseconds(now.st_mtim) != m_modifiedNs)
        return PL_FILE_CHANGED;
    if (m_Content.isNull() && m_Digest.isEmpty())
        return PL_SUCCESS;
    QByteArray current;
    const int status = writer.readCurrent(&current);
    if (status != PL_SUCCESS)
        return status;
    const bool same = m_Content.isNull() ? digestOf(current) == m_Digest : current == m_Content;
    return same ? PL_SUCCESS : PL_FILE_CHANGED;
}

} // namespace PLFile
