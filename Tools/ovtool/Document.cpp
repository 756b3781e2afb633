#include "Document.h"

#include "Tool.h"

#include "PLClickInfo.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QFile>

#include <algorithm>

namespace {

const QString NO_SECTIONS
    = QStringLiteral("the file holds no sections (no line begins with \"***\")");

// Where a load stopped: the line of the file, or of the last metadata copy of a DICOM file.
QString lineLocation(const QString& path, int line)
{
    return isDicomPath(path)
        ? QStringLiteral("%1 (last metadata copy, line %2)").arg(path).arg(line)
        : QStringLiteral("%1:%2").arg(path).arg(line);
}

bool readFile(const QString& path, QByteArray* bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    *bytes = file.readAll();
    return file.error() == QFileDevice::NoError;
}

int loadStatus(const QString& path, CPLClickInfo* document)
{
    if (!isDicomPath(path))
        return document->loadClickInfo(path, false);
    QByteArray bytes;
    if (!readFile(path, &bytes))
        return PL_FILE_OPEN_FAILED;
    return document->loadClickInfoDcm(bytes.constData(), bytes.size());
}

} // namespace

QString loadFailure(int status)
{
    switch (status) {
    case PL_FILE_OPEN_FAILED:
        return QStringLiteral("cannot open the file");
    case PL_MALFORMED_SECTION_HEADER:
        return QStringLiteral("malformed section header (a header is \"*** \", a key, a colon, "
                              "and no \"#\" before the colon)");
    case PL_NOTHING_TO_WORK_ON:
        return QStringLiteral("section header without a key, or a \"ClickNumber\" section "
                              "without a click number");
    default:
        return QStringLiteral("cannot load the file (library status %1)").arg(status);
    }
}

bool isDicomPath(const QString& path)
{
    return path.endsWith(QLatin1String(".dcm"));
}

bool loadDocument(const QString& path, CPLClickInfo* document)
{
    const int status = loadStatus(path, document);
    int sections = 0;
    document->getSectionCount(&sections);
    if (status == PL_SUCCESS && sections > 0)
        return true;
    const int line = document->getLastErrorLine();
    if (line > 0)
        fail(lineLocation(path, line), loadFailure(status));
    else if (status == PL_SUCCESS || status == PL_NOTHING_TO_WORK_ON)
        fail(path, NO_SECTIONS);
    else
        fail(path, loadFailure(status));
    return false;
}

bool loadDocumentForEditing(const QString& path, CPLClickInfo* document)
{
    if (!loadDocument(path, document))
        return false;
    // Saving would change what the load could not keep as it stood: refuse to rewrite.
    const QStringList warnings = document->getLoadWarnings();
    if (warnings.isEmpty())
        return true;
    fail(path, warnings.first() + QLatin1String("; the file is left as it was"));
    return false;
}

int saveDocument(const CPLClickInfo& document, const QString& path)
{
    switch (document.saveClickInfo(path)) {
    case PL_SUCCESS:
        return ExitSuccess;
    case PL_FILE_OPEN_FAILED:
        return fail(path, QStringLiteral("cannot open the file for writing; it is left as it was"));
    default:
        return fail(path, QStringLiteral("cannot write the file; it is left as it was"));
    }
}

QString missingEntry(const CPLClickInfo& document, const QString& sectionKey, const QString& key)
{
    const CPLSection* section = document[sectionKey];
    if (!section)
        return QLatin1String("no section ") + quoted(sectionKey);
    if (!section->isKeyPresent(key) || CPLSection::isCommentKey(key))
        return QLatin1String("section ") + quoted(sectionKey) + QLatin1String(" has no key ")
            + quoted(key);
    return QString();
}

QString unwritableText(const QString& text, TextRole role)
{
    const QString what = role == TextRole::Value ? QStringLiteral("the value")
        : role == TextRole::Key                  ? QStringLiteral("the key")
                                                 : QStringLiteral("the section key");
    const QString named = what + QLatin1Char(' ') + quoted(text);
    switch (CPLSection::textFault(text, role)) {
    case CPLSection::TextFault::None:
        return QString();
    case CPLSection::TextFault::LineBreak:
        // Not quoted: a line break cannot be shown in a one-line report.
        return what + QLatin1String(" holds a line break");
    case CPLSection::TextFault::NotLatin1:
        return named + QLatin1String(" holds characters outside Latin-1");
    case CPLSection::TextFault::OuterWhiteSpace:
        return named + QLatin1String(" begins or ends with white space, which reading drops");
    case CPLSection::TextFault::Empty:
        return what + QLatin1String(" is empty");
    case CPLSection::TextFault::Colon:
        return named + QLatin1String(" holds a colon, which ends a key");
    case CPLSection::TextFault::Hash:
        return named + QLatin1String(" holds a \"#\", which starts a comment");
    case CPLSection::TextFault::HeaderStart:
        return named + QLatin1String(" begins with \"***\", which starts a section header");
    case CPLSection::TextFault::CommentKey:
        return named + QLatin1String(" names a comment line");
    }
    return QString();
}

QVector<Entry> entriesOf(const CPLSection& section)
{
    QVector<Entry> entries;
    const QStringList keys = section.getEntryKeys();
    for (const QString& key : keys) {
        Entry entry;
        entry.isComment = CPLSection::isCommentKey(key);
        section.getRawValue(key, &entry.rawValue);
        if (entry.isComment) {
            entry.value = entry.rawValue;
        } else {
            entry.key = key;
            section.getValue(key, &entry.value);
        }
        entries.append(entry);
    }
    return entries;
}

QString nameOf(const CPLSection& section, bool raw)
{
    QString name;
    section.getSectionName(&name, raw);
    return name;
}
