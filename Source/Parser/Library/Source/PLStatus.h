#ifndef PLSTATUS_H
#define PLSTATUS_H

#include "ovparser_global.h"

#include <QString>
#include <QtGlobal>

// Status codes shared by every operation of the library. Operations return an int status,
// PL_SUCCESS (0) on success, and write their results through pointer parameters only on
// success. The numbers are part of the interface: callers and other programs compare them.

constexpr int PL_SUCCESS = 0;
// A section header line is malformed: no "***" prefix, no colon after it, or a "#" at or
// before the colon.
constexpr int PL_MALFORMED_SECTION_HEADER = 5;
// A file cannot be opened (or read), or a file to be written cannot be created or opened.
constexpr int PL_FILE_OPEN_FAILED = 11;
// A required result pointer or argument is null, or a required key is null or empty.
constexpr int PL_NULL_ARGUMENT = 16;
// A key or name that must not be empty is empty.
constexpr int PL_EMPTY_KEY = 19;
// A key or section is not present.
constexpr int PL_KEY_NOT_FOUND = 24;
// An argument is invalid (text that cannot stand in a file as given, say), or a write to a
// file failed: short, or a sync, close or rename that the system refused.
constexpr int PL_INVALID_ARGUMENT = 31;
constexpr int PL_SHORT_WRITE = PL_INVALID_ARGUMENT;
// Nothing to work on: an empty section key, an empty click number, no section to use.
constexpr int PL_NOTHING_TO_WORK_ON = 33;
// An index or value is out of range.
constexpr int PL_OUT_OF_RANGE = 48;
// The section named in a typed get or set is not present in the document.
constexpr int PL_SECTION_NOT_PRESENT = 49;
// An XML document is not well-formed, or nested deeper than the library reads.
constexpr int PL_MALFORMED_XML = 50;
// A folder that a document is to read does not exist.
constexpr int PL_FOLDER_MISSING = 62;
// A file is larger than the library loads (PL_MAX_FILE_SIZE).
constexpr int PL_FILE_TOO_LARGE = 63;
// A path names a FIFO, a device or a socket where a regular file is needed: such files are
// never read as documents nor replaced by a save.
constexpr int PL_NOT_REGULAR_FILE = 64;
// Memory for the operation could not be allocated; the critical message "Unable To Allocate
// Memory for Operation " is logged with the source, line and function.
constexpr int PL_OUT_OF_MEMORY = 65;
// Another editor holds the file's lock ("<file>.lock", or a lock on the file itself), or a
// lock was left behind by an editor that ended.
constexpr int PL_FILE_LOCKED = 66;
// An edit names a key that its section holds on more than one line: which line is meant is
// not clear, so nothing is changed.
constexpr int PL_KEY_REPEATED = 67;
// No background of the library fits the acquisition (CPLBkgSummaryInfo::findBackground()).
constexpr int PL_NO_BACKGROUND_FITS = 73;
// A sequence lists the click number already: an acquisition stands once in a sequence.
constexpr int PL_CLICK_ALREADY_LISTED = 70;
// An acquisition folder is not named after the click number its "ClickInfo.txt" holds, so a
// sequence that lists the click number would not find the folder.
constexpr int PL_FOLDER_NOT_CLICK_NUMBER = 71;
// The file was changed by someone else since it was read: a save would lose that change, so
// it is refused and the file left as it stands (CPLOptPropInfo::save()).
constexpr int PL_FILE_CHANGED = 76;
// The document did not take in everything the file it was loaded from holds (a NUL byte ends
// the text, a section repeats an earlier one's key, a key stands on two lines with different
// values, a DICOM metadata copy was cut off, the load stopped at a malformed line): a save over
// that file would drop what was not loaded, so it is refused and the file left as it stands.
// Saving to another file is allowed.
constexpr int PL_LOAD_INCOMPLETE = 77;
// The file holds more than the library loads: more sections or lines than a document may
// hold (PL_MAX_SECTIONS, PL_MAX_LINES), or more elements than an XML file may hold
// (PL_MAX_XML_ELEMENTS). Refused after a count of the text, before anything is built from it;
// the message names the limit and the count found.
constexpr int PL_LIMIT_EXCEEDED = 78;

// The largest file the library loads as a document or XML file, 64 MiB: far above any
// metadata or configuration file (a typical one holds 10 KB), and low enough that a load of
// the largest file, whose bytes are read whole and then held as text of two bytes per
// character, stays far below 1 GB of memory at its peak. Larger files give
// PL_FILE_TOO_LARGE before anything is allocated for them. For a DICOM file the limit
// applies to its metadata, the text after the image data, not to the image.
constexpr qint64 PL_MAX_FILE_SIZE = qint64(64) * 1024 * 1024;

// The most sections a document loads, 100,000 (a typical file holds about 15): each section
// costs some hundred bytes beyond its text, so a file of the smallest sections would otherwise
// need gigabytes. A file of more section header lines gives PL_LIMIT_EXCEEDED, counted before
// any section is built.
constexpr int PL_MAX_SECTIONS = 100000;

// The most lines a document loads, 3,000,000 (a typical file holds about 500): each line is
// an entry of its section, of some tens of bytes beyond its text, and an edit holds the file
// loaded twice. A file of more lines gives PL_LIMIT_EXCEEDED, counted before any section is
// built.
constexpr int PL_MAX_LINES = 3000000;

// The most elements an XML file loads, 1,000,000: the document tree costs some hundred bytes
// per element. A file of more start tags gives PL_LIMIT_EXCEEDED, counted in a pass over the
// text before the tree is built.
constexpr int PL_MAX_XML_ELEMENTS = 1000000;

// How long an edit or a save waits for another editor's lock before it gives up with
// PL_FILE_LOCKED, in milliseconds.
constexpr int PL_LOCK_WAIT_MS = 5000;

// What a status means, as a short phrase a person reads ("the file cannot be opened"); the
// library's messages and ovtool use the same words. An unknown status gives "status N".
OVPARSER_EXPORT QString getStatusText(int status);

// The operating system's reason ("Permission denied", "No space left on device") for the
// last file operation of the library on this thread that the system refused; empty when
// the last such operation failed for a reason of its own (a file too large, say) or did not
// fail. Each operation that reads or writes a file clears it when it starts.
OVPARSER_EXPORT QString getLastSystemError();

// What the last load on this thread that gave PL_LIMIT_EXCEEDED found, with the limit:
// "1,000,001 sections, more than the 100,000 a document may hold". Empty when the last load
// was not refused so. Each load clears it when it starts.
OVPARSER_EXPORT QString getLastLimitText();

#endif // PLSTATUS_H
