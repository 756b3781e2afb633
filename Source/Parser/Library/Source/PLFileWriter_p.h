#ifndef PLFILEWRITER_P_H
#define PLFILEWRITER_P_H

// Internal header, not installed: the save policy, the one way every file the library writes
// is written (documents, settings, label sets, spectral XML, the in-place editor).
//
// A save must never harm what it replaces. So:
// - The file's lock is taken first. A writer that can create "<file>.lock" in the file's
//   folder creates it exclusively and holds it with flock(2) while it exists (git's lock
//   files: the lock is the new file), and also holds flock(2) on the file itself, opened
//   read-only, until it is done: across the rename, and until the old content that an
//   exchange of names leaves under the lock's name is removed. A writer that cannot create
//   the lock file (a folder it may not write, a read-only file system, or a name of 251 to
//   255 bytes, too long for ".lock" to be added) holds flock(2) on the file itself only, and
//   writes in place (a new file of such a name is created first). So the two kinds exclude
//   each other. Once its flock is held, each checks that the path still names the file it
//   locked, and locks again when a rename put another file there meanwhile; the file's
//   current bytes (readCurrent()) are read from the file that is locked.
// - A second writer waits up to the time given, then fails with PL_FILE_LOCKED and a message
//   that names the lock. A lock file that no process holds with flock(2) was left by a
//   writer that ended (a kill, a crash): it is taken over at once, with a warning in
//   lcOvSave that names it. A taker locks it, checks that the path still names it, and
//   removes it while it holds it; a writer that created a lock file and then finds it
//   locked or gone has lost it to a taker, and waits again without removing it. A process
//   that ends on a signal removes the lock files it holds, when its handler calls
//   releaseLocksOnSignal() (PLFileEditor.h; ovtool does, for SIGINT, SIGTERM and SIGHUP).
// - The new content replaces the file through the lock file and a rename only when that
//   keeps the file what it was: a regular file with one link, in a folder where a file can be
//   created, whose owner, group, mode (set-id bits included) and extended attributes (user.*
//   attributes, the POSIX ACL in "system.posix_acl_access"...) the new file can be given
//   (checked on the new file after it was given them). The new file is synced, flushed as a
//   close would (its descriptor, and so its lock, kept), renamed into place, and the folder
//   synced. Where the file system can exchange two names (renameat2 RENAME_EXCHANGE), the
//   rename is an exchange: the old file stays under the lock's name until the folder is
//   synced, so that even a failed sync of the folder puts the old file back; it is removed
//   afterwards.
// - Otherwise the file is written in place: a writable file in a read-only folder is saved,
//   a hard link stays one file shared by its names, owner, group and attributes stay. So is
//   a file that cannot be renamed over (EBUSY: a file that is itself a mount point, a bind
//   mount in a container; EXDEV): the new content, written into the lock file already, is
//   written in place instead. The old bytes are kept in memory until the new ones are
//   written and synced in full, and are written back on any failure, so a failure the
//   process survives never leaves a cut file. A power cut or a kill in the middle of an
//   in-place write can still leave the file part old, part new: only the rename path is
//   atomic.
// - A file the writer may not write (mode 0444, say) is refused as an open for writing
//   would refuse it, with PL_FILE_OPEN_FAILED and the system's reason, though a rename in
//   its folder could replace it. Root may write any file.
// - A symbolic link is followed: its target is written, by the rules above, and the link
//   stays a link.
// - A path that names anything but a regular file (FIFO, device or socket) is never replaced
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
// Several files are saved all or nothing by PLFile::saveFiles() (the background library's
// summary and its indexes): every file is locked (in the order of their resolved paths, so
// that two such saves never wait for each other), every new file written and synced, and
// only then is each put in place; a failure before that leaves every file as it was, and a
// failure of a later rename or of a folder's sync puts back the files already in place
// (their names exchanged back, or their old bytes, kept in memory, written back). Files
// written in place take part too, their old bytes kept until all are done.
//
// Test seam: the environment variable OVPARSER_FAIL_SYSCALL, a comma-separated list of
// operations among "write", "fsync", "close", "rename" and "fsyncdir", makes each of those
// operations fail with EIO, so that tests (and ovtool's tests, in a child process) can prove
// that every failure is reported and harms nothing. "OPERATION@NAME" fails it for the file
// named NAME only (the name without its folder, of the file written: "rename@SLindex.txt").
// It fails the writing of the new content (in Append mode the copy of the old content into
// the lock file is such a write), never the writing back of the old content after a failure.

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
    // written. A file that does not exist yet is created (through the lock file, or in place
    // when no lock file can be made). Returns 0, PL_FILE_LOCKED, PL_NOT_REGULAR_FILE,
    // PL_FILE_OPEN_FAILED (also for a file the writer may not write) or PL_OUT_OF_MEMORY; in
    // Append mode also PL_SHORT_WRITE, when the old content cannot be copied into the lock
    // file.
    // Called once; a failed open() releases everything it took.
    int open(int waitMilliseconds);

    // The file's bytes as they stand now, read under the lock from the file that is locked
    // (so an edit made of them loses no other writer's update): the whole file in Replace mode, or in Append mode the
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
// A precondition of saveFile().
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
