#ifndef PLFILESTAMP_P_H
#define PLFILESTAMP_P_H

// Internal header, not installed: what a document knows of the file it was loaded from, so
// that a save over that file can tell whether someone else changed the file since.
//
// The file is known by its identity (device and inode), its size and its modification time,
// as they stood when it was opened to be read. A change made since shows in one of them: a
// save by rename gives the file a new inode, a write in place a new modification time and
// mostly a new size. Two writes can share a modification time when they fall in the same
// tick of the file system's clock (a few milliseconds, whole seconds on some file systems),
// so when the file had been modified less than RACY_SECONDS before it was read, the bytes read
// are kept too (shared with the reader's buffer, not copied; a digest of them for a file over
// KEPT_BYTES) and compared with the file's bytes under the lock. Owner, mode and access time
// are not compared: a chmod changes nothing a save would overwrite. Nothing but a clock read
// is spent at a load of a file modified earlier.

#include "PLFileSystem_p.h"

#include <QByteArray>
#include <QString>

class CPLFileWriter;

namespace PLFile {

class Stamp
{
public:
    // A file modified less than this many seconds before it was read may be changed again
    // within the same tick of its modification time.
    static constexpr int RACY_SECONDS = 2;
    // The largest file whose bytes are kept as they are rather than as a digest.
    static constexpr qint64 KEPT_BYTES = 1024 * 1024;

    Stamp() = default;
    // The stamp of the file at `path` that was read as `bytes`; `status` is what fstat(2)
    // told of it before the read.
    static Stamp ofRead(const QString& path, const FileStatus& status, const QByteArray& bytes);
    // The stamp of the file at `path` right after a save wrote `content` as its bytes (for
    // an append, which does not make the file's bytes, an empty `content`: then the stamp
    // has no digest).
    static Stamp ofWritten(const QString& path, const QByteArray& content);

    bool isValid() const { return !m_strPath.isEmpty(); }
    // The path as given when the file was read.
    QString path() const { return m_strPath; }
    // Whether `path` names the stamped file: the same file by its canonical path (symbolic
    // links followed), or the same device and inode (another hard link).
    bool names(const QString& path) const;
    // Under the lock `writer` holds on the file: 0 when the file is as stamped;
    // PL_FILE_CHANGED when it was changed, replaced or removed since; the status of reading it
    // when its bytes are to be compared and it cannot be read.
    int check(CPLFileWriter& writer) const;

private:
    // Keeps `bytes`, or their digest when they are large, for check().
    void keepContent(const QByteArray& bytes);

    QString m_strPath; // absolute
    dev_t m_device = 0;
    ino_t m_inode = 0;
    qint64 m_size = -1;
    qint64 m_modifiedNs = 0;
    // Unless the modification time tells: the bytes, or their digest.
    QByteArray m_Content;
    QByteArray m_Digest;
};

} // namespace PLFile

#endif // PLFILESTAMP_P_H
