#ifndef PLFILEEDITOR_H
#define PLFILEEDITOR_H

#include "ovparser_global.h"

#include "PLLoadWarning.h"
#include "PLStatus.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

class CPLClickInfo;

// Edits a sectioned text file in its own bytes: a set, an add or a removal changes only the
// lines it edits, and every other byte of the file stays as it stood, whoever wrote the file
// (CR LF, CR or LF line ends, blanks, comments and free text, leading lines, a byte order
// mark, repeated keys elsewhere). Saving a document (CPLClickInfo::saveClickInfo()) writes
// the whole file in the form the format rules give; the editor is for changing one thing in
// a file that must otherwise stay what it is.
//
//     CPLFileEditor editor(path);
//     int status = editor.open();                  // lock, read, load
//     if (status == PL_SUCCESS)
//         status = editor.setValue("User Input", "Comment1", "Lot 5");
//     if (status == PL_SUCCESS)
//         status = editor.commit();                // write, release the lock
//
// The lock: open() takes the file's lock ("<file>.lock", or flock(2) on the file where the
// folder cannot hold one) and holds it until commit() or cancel() (or the editor's end), and
// the file is read under it, so that two editors never lose an update: the second waits up
// to the time given, then fails with PL_FILE_LOCKED. openWithoutLock() reads without a lock,
// for a preview that is never committed.
//
// Each edit works on the bytes as the previous edits left them, and the result is loaded
// again at once: an edit whose result would not load back, or would not read back the value
// asked for, is refused (PL_INVALID_ARGUMENT) and leaves the bytes as they were. Sections
// and keys are found as a load finds them: section keys and keys in any case, the first
// section of a key (a later one with the same key is ignored by loads, and never edited),
// nothing after a NUL byte.
//
// How lines are edited:
// - setValue() replaces the value's text on its line, between the separator and the end of
//   the value; the key, the separator, blanks after the value and the line end stay. An
//   inline comment of the old value (from its "#" on) is kept after the new value, unless
//   the new value holds a "#" of its own. An empty value is written after the separator's
//   tab, or after the colon with a tab in front when the line has none.
// - addKeyValue() writes "<key>:<tab><value>" after the section's last line, with that
//   line's line end (a section without lines: after its header, with the line end the
//   file's key lines have, LF when it has none). A section the file lacks is added after
//   the file's last section, one empty line after its last line, as
//   "*** <key>:<tab>" with the line end of the file's header lines (CR LF when it has none)
//   and the key line; the blank lines that end the file stay after it.
// - removeKey() removes the key's line with its line end.
// - rewriteCanonical() replaces the whole text by what saving the loaded document writes;
//   it refuses with PL_LOAD_INCOMPLETE, naming each cause, a file that holds what a load does
//   not take in (CPLClickInfo::getLoadIncompleteReason(): text after a NUL byte, a repeated
//   section, a key repeated with another value, a cut DICOM copy), which that form would drop.
//
// A key that the section holds on more than one line is never edited: the edit returns
// PL_KEY_REPEATED and errorString() names both lines. Text that cannot stand in the file
// (CPLSection::breaksFile(): a line break, a NUL, a character outside Latin-1, a colon, a
// "#" or white space at either end in a key or a section key, a key that reads as a section
// header) returns PL_INVALID_ARGUMENT; a value is written trimmed, as a load reads it.
//
// A DICOM file (a path ending in ".dcm", in any case) is edited in its last complete
// metadata copy, and commit() appends the edited copy, as saveClickInfo() does; the image
// data and the earlier copies stay. A text file is replaced by the edited bytes through the
// save policy of every file the library writes (links, owner, group, mode and extended
// attributes kept; a failed write leaves the old file intact; only a regular file is
// written). The lock is the one every writer of the library honours: "<file>.lock" together
// with a lock on the file itself, or the file alone where no lock file can be created; a lock
// file that no process holds any more is taken over. The file is read under the lock, from
// the file that is locked, so that an edit loses no other writer's update.
class OVPARSER_EXPORT CPLFileEditor
{
public:
    explicit CPLFileEditor(const QString& path);
    // Releases the lock, writing nothing, unless commit() succeeded.
    ~CPLFileEditor();
    CPLFileEditor(const CPLFileEditor&) = delete;
    CPLFileEditor& operator=(const CPLFileEditor&) = delete;

    // Takes the lock, waiting up to `waitMilliseconds`, reads the file under it and loads
    // it. Returns 0; PL_FILE_LOCKED, with errorString() naming the lock that is held; the
    // statuses of reading a file (11, 63, 64, 65; 11 too for a file that may not be
    // written); or the status of the load (5, 33...), with errorString() naming the file and
    // line.
    int open(int waitMilliseconds = PL_LOCK_WAIT_MS);
    // Reads and loads the file without a lock; commit() then refuses (PL_INVALID_ARGUMENT).
    int openWithoutLock();
    // Loads `bytes` as the file's bytes (a DICOM path: as its metadata), for edits of text
    // held in memory: editedBytes() gives the result; commit() refuses.
    int openBytes(const QByteArray& bytes);

    // The document the current bytes load as, and what that load warns of.
    const CPLClickInfo& document() const;
    QList<CPLLoadWarning> loadWarnings() const;

    // The edits. Each returns 0, or PL_SECTION_NOT_PRESENT, PL_KEY_NOT_FOUND,
    // PL_KEY_REPEATED, PL_INVALID_ARGUMENT (see above; also for a key that addKeyValue()
    // finds present already), PL_EMPTY_KEY for an empty key or section key, or
    // PL_NOTHING_TO_WORK_ON before a successful open().
    int setValue(const QString& sectionKey, const QString& key, const QString& value);
    // Adds the section (with an empty name) when the file lacks it.
    int addKeyValue(const QString& sectionKey, const QString& key, const QString& value);
    int removeKey(const QString& sectionKey, const QString& key);
    int rewriteCanonical();

    // The bytes as read (for a DICOM file, its last complete metadata copy), and as edited.
    QByteArray originalBytes() const;
    QByteArray editedBytes() const;
    bool isEdited() const;

    // Writes the edited bytes (a DICOM file: appends them) and releases the lock. Nothing is
    // written when nothing was edited. Returns 0, or the status of the first failure, after
    // which the file is as it was (PLFileWriter rules; getLastSystemError() says why).
    int commit();
    // Releases the lock, writing nothing.
    void cancel();

    // The last failure, as one line that names the file ("FILE:LINE: ..." where a line is
    // concerned); empty when nothing failed.
    QString errorString() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

// Removes the lock files this process holds (the editor's, and those of any save under
// way), each only while its path still names this process's lock; for a handler of SIGINT,
// SIGTERM or SIGHUP, which then ends the process. Async-signal-safe: it allocates nothing
// and calls only lstat(2) and unlink(2). A file written in place at that moment may be
// left part old, part new.
OVPARSER_EXPORT void releaseLocksOnSignal() noexcept;

#endif // PLFILEEDITOR_H
