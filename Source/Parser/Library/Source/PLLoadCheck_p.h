#ifndef PLLOADCHECK_P_H
#define PLLOADCHECK_P_H

// Internal header, not installed.

#include "PLLineGrammar_p.h"
#include "PLLoadWarning.h"
#include "PLText_p.h"

#include <QList>
#include <QString>
#include <QVector>

class CPLDecodedText;

// Tells, while a document loads, every way in which what saving writes would differ from
// what was read, as load warnings: one per kind and section, with the first line and the
// number of lines of that kind. The document loader hands it the places it finds in order
// (leading lines, then each section); the sections report their own body lines. When the
// text came from bytes (a CPLDecodedText), the bytes are judged too: line ends, a byte order
// mark, white space trimmed off both ends. The aim, which the fuzz tests hold the loader to:
// a load without warnings saves back exactly the bytes it read.
//
// The checks cost a few comparisons per line and allocate nothing for a file that saving
// writes back as it stands.
class CPLLoadCheck
{
public:
    // `text` holds `length` characters (up to its first NUL) followed by a 0; `size` is the
    // text's size, beyond a NUL. `decoded` is null for text that was given as text.
    CPLLoadCheck(const QChar* text, qint64 length, qint64 size, const CPLDecodedText* decoded);

    // A line before the first section, from `begin` to its line feed or the end.
    void leadingLine(qint64 begin, qint64 end, bool isAlsoHeader);
    // A section: its header line from `begin` to `headerEnd` (the header's line feed, or the
    // end of the text), its parts, its block up to `end` (the next header, or past the end of the
    // text), its key, and the warnings its body gave (lines counted from the line after the
    // header).
    void section(qint64 begin, qint64 headerEnd, qint64 end, const PLGrammar::Header<QChar>& header,
                 const QString& key, const QList<CPLLoadWarning>& bodyWarnings);
    // A section whose key repeats an earlier one's: left out, or `merged` into it.
    void repeatedSection(qint64 begin, const QString& key, bool merged);
    // The warnings of the whole load, each with `file`, in the order of their lines, the
    // lines told as lines of the bytes (the text's first line being line `linesBefore` + 1).
    QList<CPLLoadWarning> finish(const QString& file, int linesBefore);

    // The text being checked.
    const QChar* text() const { return m_text; }
    // Its length, up to a NUL.
    qint64 length() const { return m_length; }
    // The 1-based line of the text at `offset`; offsets are asked in ascending order.
    int lineAt(qint64 offset);
    // Tells that the line at `offset` is `line` (the scanner counted the lines of a section),
    // so that lineAt() need not count them again.
    void knownLine(qint64 offset, int line);

private:
    void note(CPLLoadWarning::Kind kind, int line, const QString& section,
              const QString& detail = QString());
    void checkBlock(qint64 headerEnd, qint64 end, int headerLine, const QString& key);
    void checkLineEnds();
    // The start and, `withTail`, the end of the file against what saving writes; `firstLine`
    // is the file's first line in the numbering of the text.
    void checkEnds(bool withTail, int firstLine);
    // What saving writes after the last character of the text.
    QByteArray writtenTail() const;
    int sectionIndexAt(qint64 offset) const;

    struct Place
    {
        qint64 begin;
        qint64 headerEnd;
        QString key;
    };

    const QChar* m_text;
    qint64 m_length;
    qint64 m_size;
    const CPLDecodedText* m_decoded;
    QVector<Place> m_sections;
    QList<CPLLoadWarning> m_warnings;
    // Where the warnings of the section being checked begin, so that a kind is looked for
    // among those alone.
    int m_sectionWarnings = 0;
    qint64 m_lineOffset = 0;
    int m_line = 1;
};

#endif // PLLOADCHECK_P_H
