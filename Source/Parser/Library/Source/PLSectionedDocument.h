#ifndef PLSECTIONEDDOCUMENT_H
#define PLSECTIONEDDOCUMENT_H

#include "PLCaseInsensitiveKey.h"
#include "PLLoadWarning.h"
#include "ovparser_global.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

class CPLSection;

// Where a section, or a key of a merged section, was read from: a file (empty for text given
// as text, or for a section made in memory) and the 1-based line of its section header in
// that file (0 for a section made in memory).
struct OVPARSER_EXPORT CPLTextLocation
{
    QString file;
    int line = 0;

    bool isKnown() const { return line > 0; }
    // "FILE:LINE", "line LINE" without a file, empty when unknown.
    QString toString() const;
};

// The sections of a sectioned text document, kept in one place: every section under its key
// in any case, the keys in their own spelling in the order of saving, their number, where
// each was read from, and the warnings of the last load with the files they name.
//
// The document owns its sections. Every change goes through the member functions below, which
// keep the map, the order and the count consistent; documents built on this one
// (CPLClickInfo and the documents derived from it) never reach into them. The class is the
// base of CPLClickInfo, which adds loading, saving and the acquisition's own knowledge; it is
// not used on its own.
//
// Merging sections: a section read while one with its key is present is, by the rule a
// document chooses (setRepeatedSectionRule()), left out (the first section of a key wins),
// or merged into the present one. A merge adds the keys the present section lacks, in their
// order, and with ReplaceValues also gives the present keys the new values; keys only in the
// present section stay. Each key a merge adds or replaces remembers where it was read from
// (getKeyOrigin()); every other key comes from where its section came from.
class OVPARSER_EXPORT CPLSectionedDocument
{
public:
    // What a load does with a section whose key is already present.
    enum RepeatedSectionRule {
        // The first section of a key wins; the later one is left out, with a warning.
        KeepFirst,
        // The later section's keys that the present one lacks are added; present values stand.
        AddMissingKeys,
        // The later section's keys are added, and its values replace the present ones.
        ReplaceValues,
        // The later section is kept apart, in its place: under the key "<key>\n<line>" (its
        // section key, a LF and the line of its header in its file), which no section key can
        // hold, so that saving writes it back where it stood and lookups by its key find the
        // first section of the key.
        KeepApart,
    };

    CPLSectionedDocument(const CPLSectionedDocument&) = delete;
    CPLSectionedDocument& operator=(const CPLSectionedDocument&) = delete;
    virtual ~CPLSectionedDocument();

    // Whether a section with this key is present, in any case.
    bool isSectionPresent(const QString& sectionKey) const;
    // The section with this key, in any case, or null. The document keeps ownership.
    CPLSection* operator[](const QString& sectionKey) const;
    // The section at this position of the section order, or null outside it.
    CPLSection* operator[](int position) const;
    // The number of sections. 16 for a null pointer.
    int getSectionCount(int* count) const;
    // The section keys in their own spelling, in the order of saving.
    QStringList getSectionKeys() const;

    // Where the section with this key was read from (file and header line); unknown for a
    // section made in memory or absent.
    CPLTextLocation getSectionOrigin(const QString& sectionKey) const;
    // Where a key of a section was read from: for a key that a merge added or replaced, the
    // file and header line of the section it came with; for every other key of the section,
    // getSectionOrigin(). Unknown when the section is absent or was made in memory.
    CPLTextLocation getKeyOrigin(const QString& sectionKey, const QString& key) const;

    // Every way in which what the last load read differs from what saving writes (see
    // CPLClickInfo::getLoadWarnings()). getLoadWarnings() gives each as its text
    // ("FILE:LINE: section "KEY": ..."), getLoadWarningList() the warnings themselves; each
    // names the file its line stands in.
    QStringList getLoadWarnings() const;
    QList<CPLLoadWarning> getLoadWarningList() const;

protected:
    CPLSectionedDocument();

    // Stores `section` under `mapKey` (its section key when empty) at `position` of the order
    // (at the end for -1 or a position past it), taking ownership: `section` is then null.
    // False, leaving `section` with the caller, when a section with that key is present.
    // When an allocation fails, throws std::bad_alloc with the document and `section` as
    // they were.
    bool insertSection(std::unique_ptr<CPLSection>& section, const QString& mapKey = QString(),
                       int position = -1);
    // Whether the document holds this very section (under its key). Allocates nothing, so
    // that a caller can tell after an allocation failure who owns a section.
    bool holdsSection(const CPLSection* section) const;
    // Removes the section with this key and hands it to the caller; null when absent.
    std::unique_ptr<CPLSection> takeSection(const QString& sectionKey);
    // Puts `section` in the place of the section with its key, which is deleted; appends it
    // when there is none. The new section's origin is unknown until set.
    void replaceSection(std::unique_ptr<CPLSection> section);
    // Moves the section with this key to `position` of the order. False when it is absent or
    // the position lies outside the order.
    bool moveSection(const QString& sectionKey, int position);
    // Merges `from` into the present section with the same key (see the class comment;
    // `rule` is AddMissingKeys or ReplaceValues): each key of `from`, in its order, is added
    // as its line was read (raw value, inline comment kept; even an empty key or one that
    // addKeyValue() refuses) when the present section lacks it, or, with
    // ReplaceValues, given that value. Comment lines of `from` are not taken. `origin` is
    // where `from` was read from. False when no section with that key is present.
    bool mergeSection(const CPLSection& from, RepeatedSectionRule rule,
                      const CPLTextLocation& origin);
    // Deletes every section.
    void deleteSections();
    // The position of a section key in the order of sections, in any case; -1 when absent.
    int sectionPosition(const QString& sectionKey) const;
    // The number of sections.
    int sectionCount() const { return m_iSectionCount; }

    RepeatedSectionRule repeatedSectionRule() const { return m_eRepeatedSectionRule; }
    void setRepeatedSectionRule(RepeatedSectionRule rule) { m_eRepeatedSectionRule = rule; }

    // Where the text about to be loaded comes from, when it was put together from several
    // files: its lines from `textLine` on are lines of `file` from `fileLine` on, up to the
    // next source. Lines before the first source, or with no sources, are lines of the text.
    void addTextSource(int textLine, const QString& file, int fileLine);
    void clearTextSources();
    bool hasTextSources() const { return !m_TextSources.isEmpty(); }
    // Line `textLine` of the text being loaded, told as a line of the file it came from.
    CPLTextLocation textLocation(int textLine) const;
    void setSectionOrigin(const QString& sectionKey, const CPLTextLocation& origin);

    // The warnings of the last load. setLoadWarnings() tells each line of the text loaded as
    // a line of the file it came from, when the text has sources.
    void setLoadWarnings(QList<CPLLoadWarning> warnings);
    void appendLoadWarning(const CPLLoadWarning& warning) { m_LoadWarnings.append(warning); }
    const QList<CPLLoadWarning>& loadWarnings() const { return m_LoadWarnings; }

private:
    struct TextSource
    {
        int textLine;
        QString file;
        int fileLine;
    };

    // Every section under its key, in any case; the document owns them.
    QHash<CPLCaseInsensitiveKey, CPLSection*> m_Sections;
    // The section keys in their own spelling, in order of addition (the order of saving).
    QStringList m_SectionKeys;
    int m_iSectionCount = 0;
    // Where each section was read from, and the keys that merges brought from elsewhere.
    QHash<CPLCaseInsensitiveKey, CPLTextLocation> m_Origins;
    QHash<CPLCaseInsensitiveKey, QHash<CPLCaseInsensitiveKey, CPLTextLocation>> m_KeyOrigins;
    QVector<TextSource> m_TextSources;
    RepeatedSectionRule m_eRepeatedSectionRule = KeepFirst;
    QList<CPLLoadWarning> m_LoadWarnings;
    // The section that operator[] found last, and a copy of the key text it was asked with.
    mutable QString m_LastSectionKey;
    mutable CPLSection* m_pLastSection = nullptr;
};

#endif // PLSECTIONEDDOCUMENT_H
