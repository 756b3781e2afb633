#ifndef OVTOOL_DOCUMENT_H
#define OVTOOL_DOCUMENT_H

// Loading the document a command reads, and editing a file in its own bytes, with one-line
// reports of what fails, the load warnings, and the checks that keep an edit from losing or
// garbling text.

#include "PLSection.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

class CPLClickInfo;
class CPLFileEditor;
class CPLLoadWarning;

// "-", which names standard input for the commands that read.
bool isStandardInput(const QString& path);
// How messages name the file: its path as given, or "standard input".
QString sourceName(const QString& path);

// Loads the document at `path` (CPLClickInfo::loadClickInfo(): a DICOM path from its last
// metadata copy), or standard input for "-", up to PL_MAX_FILE_SIZE bytes. On failure, also
// when the file holds no section at all, reports it; returns the exit status.
int loadDocument(const QString& path, CPLClickInfo* document);
// Prints each load warning as a line on stderr (unless --quiet).
void warnOfLoad(const QList<CPLLoadWarning>& warnings);
// Why `key`, which the document lacks, is not read: the file holds it after a NUL byte,
// which ends the text; an empty string otherwise.
QString keyAfterNul(const CPLClickInfo& document, const QString& path, const QString& key);

// Edits the file at `path` with `edit` through CPLFileEditor: opens it with its lock, edits,
// commits. With `dryRun`, opens it without the lock and prints the change as a unified diff
// instead of writing. Failures are reported; returns the exit status.
int editFile(const QString& path, bool dryRun, const std::function<int(CPLFileEditor&)>& edit);

// The report for a section or key (not a comment line) that `document` lacks; an empty
// string when both are present.
QString missingEntry(const CPLClickInfo& document, const QString& sectionKey, const QString& key);

using TextRole = CPLSection::TextRole;
// Why `text` cannot be written in the file as a `role` and read back the same, in words for
// the user; an empty string when it can. The verdict is the library's (CPLSection::breaksFile()):
// white space around a value is dropped as the editor writes it, an empty text is judged by
// the edit.
inline QString unwritableText(const QString& text, TextRole role)
{
    return CPLSection::breaksFile(text, role) ? CPLSection::textFaultText(text, role) : QString();
}
// Warns, when `value` holds a "#", of what it reads back as (unless --quiet).
void warnOfComment(const QString& path, const QString& value);

// One entry of a section as shown: a key and its value, or a comment line (key empty, the
// line's text in `value` and `rawValue`).
struct Entry
{
    QString key;
    QString value;
    QString rawValue;
    bool isComment = false;
};
// The entry at `index` of the section's entries in file order, comment lines included
// (CPLSection::getEntryCount() of them); a key written on several lines gives each line with
// its own value. One at a time, so that a large section is never copied whole.
Entry entryAt(const CPLSection& section, int index);
// The section's name, without its inline comment unless `raw`.
QString nameOf(const CPLSection& section, bool raw);

#endif // OVTOOL_DOCUMENT_H
