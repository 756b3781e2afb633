#include "PLLineGrammar_p.h"

#include <QStringBuilder>

namespace PLGrammar {

namespace {

// The one-value search reads lines in pieces of at most this many characters.
constexpr qint64 VALUE_SEARCH_PIECE = 200;

// The next piece of a line from `position`: at most VALUE_SEARCH_PIECE characters, a line
// feed included, the piece being the characters before the line feed (and before a carriage
// return right in front of it). A carriage return that ends the buffer is dropped too.
// `position` moves past the piece and its line feed.
Span<char> nextPiece(const char* buffer, qint64 length, qint64& position)
{
    const qint64 begin = position;
    const qint64 end = qMin(begin + VALUE_SEARCH_PIECE, length);
    const char* lf = PLText::find(buffer + begin, buffer + end, '\n');
    const char* pieceEnd = lf ? lf : buffer + end;
    position = lf ? lf - buffer + 1 : end;
    const bool carriageReturnEnds = lf || end == length;
    if (carriageReturnEnds && pieceEnd > buffer + begin && pieceEnd[-1] == '\r')
        --pieceEnd;
    return { buffer + begin, pieceEnd };
}

} // namespace

QString headerLine(QStringView key, QStringView name)
{
    // Appended piece by piece: a string builder would copy an empty name from a null pointer.
    QString line;
    line.reserve(int(key.size() + name.size()) + 8);
    line.append(QLatin1String(HEADER_PREFIX)).append(key).append(QLatin1String(":\t"));
    return line.append(name).append(QLatin1String("\r\n"));
}

void appendKeyValueLine(QString& text, QStringView key, QStringView value)
{
    text.append(key).append(QLatin1String(":\t")).append(value);
}

QStringView withoutInlineComment(QStringView text)
{
    const Span<QChar> plain = withoutInlineComment(Span<QChar> { text.begin(), text.end() });
    return QStringView(plain.begin, plain.end);
}

QString valueKeepingComment(QStringView old, const QString& value)
{
    const qsizetype comment = old.indexOf(QLatin1Char('#'));
    if (comment < 0 || value.contains(QLatin1Char('#')))
        return value;
    return value % QLatin1Char('\t') % old.mid(comment);
}

bool findValue(const char* buffer, qint64 length, QStringView key, QString* value)
{
    const QString needle = key % QLatin1Char(':');
    for (qint64 position = 0; position < length;) {
        const Span<char> piece = nextPiece(buffer, length, position);
        QString line = QString::fromLatin1(piece.begin, int(piece.size()));
        line.replace(QLatin1Char('\r'), QLatin1Char('\n'));
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const int found = line.indexOf(needle, 0, Qt::CaseInsensitive);
        if (found < 0)
            continue;
        const int start = found + needle.size();
        const int lf = line.indexOf(QLatin1Char('\n'), start);
        *value = line.mid(start, lf < 0 ? -1 : lf - start).trimmed();
        return true;
    }
    return false;
}

QStringView restOfLine(QStringView text, qsizetype from)
{
    const qsizetype lineEnd = text.indexOf(QLatin1Char('\n'), from);
    return text.mid(from, lineEnd < 0 ? -1 : lineEnd - from).trimmed();
}

} // namespace PLGrammar
