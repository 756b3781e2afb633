#ifndef PLLOADWARNING_H
#define PLLOADWARNING_H

#include "ovparser_global.h"

#include <QString>

// One way in which what a load read differs from what saving the document writes back, so
// that nothing a file holds is changed unseen: a load that gives no warning saves back
// exactly the bytes it read. Warnings are given once per kind and section, at the first line
// of that kind, with the number of lines of that kind in the section.
class OVPARSER_EXPORT CPLLoadWarning
{
public:
    enum Kind {
        // A UTF-8 byte order mark begins the file; it is skipped and not written back.
        ByteOrderMark,
        // Blank lines or white space that saving drops or adds: at the start or the end of
        // the file, at the start of a section's body, or more or fewer than one empty line
        // at the end of a section.
        BlankLines,
        // Line ends other than saving writes: CR LF after a section header, LF after every
        // other line.
        LineEnds,
        // A section header not in the form "*** <key>:<tab><name>".
        HeaderForm,
        // A key and value not separated by exactly a colon and a tab.
        Separator,
        // Blanks before a key's colon, after a value, or around a comment line's text, or
        // around a line before the first section.
        Blanks,
        // A key line that begins with blanks: its key is cut at a shifted place.
        ShiftedKey,
        // A line of text that is not a comment: saving writes it with a "#" in front.
        TextLine,
        // A key that the section holds on more than one line: every line is written back
        // with the value of the last one, and an edit of the key is refused.
        RepeatedKey,
        // A key that begins with "***": its line would read back as a section header.
        KeyLikeHeader,
        // A key that contains "CommentLine ": the entry is written back as its value alone.
        CommentKey,
        // A section whose key repeats an earlier section's key: it is left out.
        RepeatedSection,
        // A section header with no blank after "***" before the first section: it is kept
        // both as a line before the sections and as a section, and written twice.
        HeaderInLeadingLines,
        // A NUL byte: the text ends there, and what follows it is not read.
        NulByte,
        // A DICOM file's metadata copy that does not end as a save ends it: it was cut off
        // (a crash in the middle of an append). The complete copy before it is loaded, or,
        // when there is none, the cut copy as it stands; the next save appends a whole copy.
        CutCopy,
        // A section whose key repeats an earlier section's key in the same file, in a document
        // whose repeated sections merge (a camera configuration): its keys are merged into the
        // earlier section, and saving writes one section.
        MergedSection,
    };

    CPLLoadWarning() = default;
    CPLLoadWarning(Kind kind, int line, int count, const QString& section, const QString& detail);

    Kind kind() const { return m_eKind; }
    // The file the load read; empty for text loaded directly (loadTextBuffer()).
    QString file() const { return m_strFile; }
    void setFile(const QString& file) { m_strFile = file; }
    // The 1-based line of the first place of this kind.
    int line() const { return m_iLine; }
    void setLine(int line) { m_iLine = line; }
    // The number of lines of this kind in the section.
    int count() const { return m_iCount; }
    // Another line the first place relates to: for RepeatedKey, the key's earlier line; 0
    // for none.
    int relatedLine() const { return m_iRelatedLine; }
    void setRelatedLine(int line) { m_iRelatedLine = line; }
    // The key of the section the lines stand in; empty before the first section.
    QString section() const { return m_strSection; }
    void setSection(const QString& section) { m_strSection = section; }
    // What the lines hold that saving changes, and how, as a sentence.
    QString message() const;
    // "FILE:LINE: section "KEY": MESSAGE" ("line LINE: ..." without a file; without the
    // section part before the first section).
    QString toString() const;

private:
    friend class CPLLoadCheck; // counts the lines of a kind as it finds them

    Kind m_eKind = BlankLines;
    QString m_strFile;
    int m_iLine = 0;
    int m_iCount = 0;
    int m_iRelatedLine = 0;
    QString m_strSection;
    // A key or text that the message names.
    QString m_strDetail;
};

#endif // PLLOADWARNING_H
