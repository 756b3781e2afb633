#ifndef PLFILEWRITER_P_H
#define PLFILEWRITER_P_H

// Internal header, not installed: the save policy, the one way every file the library writes
// is written (documents, settings, label sets, spectral XML, the in-place editor).
//
// A save must never harm what it replaces. So:
// - The file's lock is taken first: "<file>.lock", created exclusively in the file's folder
//   and held with flock(2) while it exists (git's lock files: the lock is the new file). A
//   second writer waits up to the time given, then fails with PL_FILE_LOCKED and a message
//   that names the lock; a lock file that no process holds (its editor ended) is reported as
//   stale, with how to clear it, and never broken silently. Where the folder cannot hold a
//   lock file (a read-only folder), the file itself is locked with flock(2) instead.
// - The new content replaces the file through the lock file and a rename only when that
//   keeps the file what it was: a regular file with one link, in a folder where a file can be
//   created, whose owner, group and mode (set-id bits included) the new file can be given
//   (checked on the new file after it was given them). The new file is synced, closed,
//   renamed into place, and the folder synced. Where the file system can exchange two names
//   (renameat2 RENAME_EXCHANGE), the rename is an exchange: the old file stays under the
//   lock's name until the folder is synced, so that even a failed sync of the folder puts
//   the old file back; it is removed afterwards.
// - Otherwise the file is written in place: a writable file in a read-only folder is saved,
//   a hard link stays one file shared by its names, owner and group stay. The old bytes are
//   kept in memory until the new ones are written and synced in full, and are written back
//   on any failure, so a failure the process survives never leaves a cut file. A power cut
//   or a kill in the middle of an in-place write can still leave the file part old, part
//   new: only the rename path is atomic.
// - A symbolic link is followed: its target is written, by the rules above, and the link
//   stays a link.
// - A path that names anything but a regular file (FIFO, device, socket) is never replaced
//   nor written: PL_NOT_REGULAR_FILE. A directory gives PL_FILE_OPEN_FAILED.
// - Every failure of a write, a sync, a close or a rename is reported: PL_FILE_OPEN_FAILED
//   when the file or the lock cannot be created or opened, PL_SHORT_WRITE (31) for the rest;
//   the system's reason is recorded for getLastSystemError(), and errorString() says what
//   failed, naming the file. No lock or temporary file is left behind by a failure the
//   process survives.
//
// Appending (a DICOM file's new metadata copy) follows the same rules: the appended copy is
// all or nothing where the file can be replaced (the old bytes are copied into the lock file,
// by reflink where the file system offers one, the copy appended, the whole renamed into
// place); where it cannot, the copy is appended in place and cut off again on failure.
//
// Test seam: the environment variable OVPARSER_FAIL_SYSCALL, a comma-separated list of
// operations among "write", "fsync", "close", "rename" and "fsyncdir", makes each of those
// operations fail with EIO, so that tests (and ovtool's tests, in a child process) can prove
// that every failure is reported and harms nothing. It fails the writing of the new content
// (in Append mode the copy of the old content into the lock file is such a write), never
// the writing back of the old content after a failed in-place write.

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <QVector>

#include <functional>
#include <memory>
#include <vector>

class QIODevice;

class CPLFileWriter
{
public:
    enum class Mode {
        Replace, // the new content replaces the file's
        Append // the new content is added after the file's (DICOM metadata copies)
    };

    CPLFileWriter(const QString& path, Mode mode);
    // Releases the lock and removes anything written, unless commit() succeeded.
    ~CPLFileWriter();
    CPLFileWriter(const CPLFileWriter&) = delete;
    CPLFileWriter& operator=(const CPLFileWriter&) = delete;

    // Takes the lock (waiting up to `waitMilliseconds`) and chooses how the file will be
    // written. A file that does not exist yet is created (through the lock file). Returns 0,
    // PL_FILE_LOCKED, PL_NOT_REGULAR_FILE, PL_FILE_OPEN_FAILED or PL_OUT_OF_MEMORY; in Append
    // mode also PL_SHORT_WRITE, when the old content cannot be copied into the lock file.
    // Called once; a failed open() releases everything it took.
    int open(int waitMilliseconds);

    // The file's bytes as they stand now, read under the lock (so an edit made of them loses
    // no other writer's update): the whole file in Replace mode, or in Append mode the
    // DICOM metadata (PLFile::readDicomMetadata()). Empty for a file that does not exist
    // yet. The statuses of PLFile::readFile().
    int readCurrent(QByteArray* bytes);

    // Where the new content is streamed after open(): the lock file itself, or a buffer in
    // memory when the file is to be written in place. Null before open().
    QIODevice* device();
    // Writes `bytes` to device(); 0, or 31 when the write fails.
    int write(const QByteArray& bytes);

    // Puts what was written in place of the file (or after it, in Append mode), synced, and
    // releases the lock. Returns 0 or the status of the first failure, after which the file
    // is as it was before.
    int commit();
    // Drops what was written and releases the lock; the file is left as it was.
    void cancel();
    // Commits several opened writers all or nothing (Replace mode): every new file is
    // written and synced, then each is put in place; a failure puts back the files put in
    // place before it (their names exchanged back, or their old bytes written back), so that
    // every file is as it was. Releases every writer. 0 or the first failure's status.
    static int commitTogether(const std::vector<CPLFileWriter*>& writers);

    // Whether the file will be (or was) replaced through a rename, not written in place.
    bool replacesByRename() const;
    // The file that is written: the path made absolute, its symbolic links followed.
    QString targetPath() const;
    // The path of the lock file, "<file>.lock" beside the file the path resolves to.
    QString lockPath() const;
    // The last failure in words, naming the file: "ClickInfo.txt: cannot write: No space
    // left on device". Empty when nothing failed.
    QString errorString() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

namespace PLFile {

// Called once the file's lock is held and before anything is written: 0 lets the save go
// on; any other status stops it and is returned, the file untouched.
using Precondition = std::function<int(CPLFileWriter& writer)>;

// Writes `bytes` as the whole new content of `path` (CPLFileWriter, Replace), waiting up to
// PL_LOCK_WAIT_MS for a lock. Returns 0 or the status of the first failure.
int saveFile(const QString& path, const QByteArray& bytes, const Precondition& precondition = {});
// saveFile(), but only while the file still holds `expected` (read under the lock, empty for a
// file that does not exist): PL_FILE_CHANGED, the file untouched, when someone else changed
// it since the caller read it, so that an edit made of what was read loses no other update.
int saveFileIfUnchanged(const QString& path, const QByteArray& bytes, const QByteArray& expected);
// Appends a DICOM metadata copy to `path` (CPLFileWriter, Append), likewise; after a copy cut
// off within a line, a LF first (PLDicom::copySeparator()), so that the new copy is found.
int appendDicomCopy(const QString& path, const QByteArray& copy,
                    const Precondition& precondition = {});

// One file of saveFiles().
struct FileSave
{
    QString path;
    QByteArray bytes; // its whole new content
    Precondition precondition; // checked under its lock, as saveFile() does
};
// Saves several files all or nothing: each file's lock is taken (in the order of the files'
// resolved paths, so that two such saves never wait for each other), each precondition
// checked, each new content written and synced, and only then are they put in place
// (CPLFileWriter::commitTogether()). On any failure every file is left as it was. 0 or the
// first failure's status.
int saveFiles(const QVector<FileSave>& saves);

} // namespace PLFile

#endif // PLFILEWRITER_P_H
