#ifndef PLDECODEDTEXT_P_H
#define PLDECODEDTEXT_P_H

// Internal header, not installed.

#include "PLText_p.h"

#include <QString>
#include <QVector>

// The text that a document loads from the bytes of a file, and how those bytes stood. The
// bytes are decoded as Latin-1 with the loader's rules: a UTF-8 byte order mark at the start
// is skipped, white space is trimmed from both ends, and CR LF and lone CR become LF. What
// the rules changed is kept, so that a load can tell where saving would write other bytes,
// and an editor can find in the bytes the place of any offset of the text.
class CPLDecodedText
{
public:
    // How a line ended in the bytes.
    enum class LineEnd { LF, CRLF, CR };

    // Decodes `size` bytes at `data` (size below 2^31). Throws std::bad_alloc when memory
    // runs out; the loaders guard their calls.
    CPLDecodedText(const char* data, qint64 size);

    // The text the loader reads.
    const QString& text() const { return m_text; }
    // Whether the bytes began with a UTF-8 byte order mark.
    bool hasByteOrderMark() const { return m_bomSize != 0; }
    // The bytes trimmed off the front (after a byte order mark) and off the end.
    PLText::Span<char> leadingSpace() const { return m_leading; }
    PLText::Span<char> trailingSpace() const { return m_trailing; }
    // The line breaks trimmed off the front: the text's first line is line linesBefore() + 1
    // of the bytes.
    int linesBefore() const { return m_linesBefore; }

    // The number of lines of the text.
    qint64 lineCount() const { return m_lines; }

    // How the line whose line feed stands at `lfOffset` of the text ended in the bytes.
    LineEnd lineEndAt(qint64 lfOffset) const;
    // The offsets in the text of the line feeds that were CR LF, and that were a lone CR,
    // in ascending order.
    const QVector<qint64>& crLfEnds() const { return m_crLf; }
    const QVector<qint64>& crEnds() const { return m_cr; }
    // The offset in the bytes of an offset in the text (up to the text's size).
    qint64 byteOffset(qint64 textOffset) const;

private:
    QString m_text;
    qint64 m_bomSize = 0;
    PLText::Span<char> m_leading {};
    PLText::Span<char> m_trailing {};
    int m_linesBefore = 0;
    qint64 m_lines = 0;
    QVector<qint64> m_crLf;
    QVector<qint64> m_cr;
};

#endif // PLDECODEDTEXT_P_H
