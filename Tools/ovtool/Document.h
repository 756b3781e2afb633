#ifndef OVTOOL_DOCUMENT_H
#define OVTOOL_DOCUMENT_H

// Loading and saving the document a command works on, with one-line reports of what fails,
// and the checks that keep an edit from losing or garbling text.

#include "PLSection.h"

#include <QString>
#include <QVector>

class CPLClickInfo;
class CPLSection;

// Whether `path` names a DICOM file whose metadata is appended to its image data: the rule
// saveClickInfo() follows, a path ending in ".dcm" in that case.
bool isDicomPath(const QString& path);

// What a load status other than success means, in words.
QString loadFailure(int status);

// Loads the document at `path`, from the last metadata copy for a DICOM path. On failure,
// also when the file holds no section at all, reports it and returns false.
bool loadDocument(const QString& path, CPLClickInfo* document);
// loadDocument(), refusing a file that saving would not write back as it was read (a NUL
// byte, a repeated section key, a header without a blank after its asterisks...): the
// library's first load warning is reported.
bool loadDocumentForEditing(const QString& path, CPLClickInfo* document);
// Saves the document to `path` (appending for a DICOM path); returns the exit status.
int saveDocument(const CPLClickInfo& document, const QString& path);

// The report for a section or key (not a comment line) that `document` lacks; an empty
// string when both are present.
QString missingEntry(const CPLClickInfo& document, const QString& sectionKey, const QString& key);

using TextRole = CPLSection::TextRole;
// Why `text` cannot be written in the file as a `role` and read back the same, in words for
// the user (CPLSection::textFault()); an empty string when it can.
QString unwritableText(const QString& text, TextRole role);

// One entry of a section as shown: a key and its value, or a comment line (key empty, the
// line's text in `value` and `rawValue`).
struct Entry
{
    QString key;
    QString value;
    QString rawValue;
    bool isComment = false;
};
// The section's entries in file order, comment lines included.
QVector<Entry> entriesOf(const CPLSection& section);
// The section's name, without its inline comment unless `raw`.
QString nameOf(const CPLSection& section, bool raw);

#endif // OVTOOL_DOCUMENT_H
