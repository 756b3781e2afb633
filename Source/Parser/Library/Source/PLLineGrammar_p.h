#ifndef PLLINEGRAMMAR_P_H
#define PLLINEGRAMMAR_P_H

// Internal header, not installed: the grammar of the lines of a sectioned text file, the one
// place that says what a header line, a key line, a comment line, the separator, an inline
// comment and trimming are. The scanner, the section and document loaders, the one-value
// search, the preference-key loader and the in-place editor all read lines through these
// functions, and the document writers write header and key lines through them.
//
//     *** <key>:<tab><name>        a header line: its first token begins with "***"
//     <key>:<tab><value>           a key line: a colon with no "#" before it
//     # <text>, <text>, or empty   a comment line: any other line
//
// The functions work on Latin-1 bytes (char) and on decoded text (QChar) alike. A line is
// given as a span without its line end. Trimming removes white space as QString::trimmed()
// sees it (PLText::isSpace()).
//
// Two variants of the format are kept on purpose, each in one function here:
// - the shifted cut (splitKeyLine()): a key line that begins with blanks is cut at the
//   colon's offset in the untrimmed line, applied to the trimmed line;
// - the piecewise search (findValue()): the one-value search reads lines in pieces of at
//   most 200 characters and takes the first piece that holds the key and a colon.

#include "PLText_p.h"

#include <QString>
#include <QStringView>

namespace PLGrammar {

template<typename Char> using Span = PLText::Span<Char>;

// The three characters that begin a section header, and the prefix of a written header.
constexpr char HEADER_PREFIX[] = "*** ";
constexpr qsizetype HEADER_MARK_SIZE = 3; // "***"

// Whether a character separates tokens: blanks and tabs only.
template<typename Char> bool separatesTokens(Char c)
{
    return PLText::unit(c) == ' ' || PLText::unit(c) == '\t';
}

// The start of a line's first token.
template<typename Char> const Char* firstToken(const Char* line)
{
    while (separatesTokens(*line))
        ++line;
    return line;
}

// Whether a text begins with "***". Stops at the first character that is not an asterisk,
// so it never reads past the end of a NUL-terminated text.
template<typename Char> bool startsWithHeaderMark(const Char* text)
{
    return PLText::unit(text[0]) == '*' && PLText::unit(text[1]) == '*'
        && PLText::unit(text[2]) == '*';
}

// Whether the line at `line` is a section header: its first token begins with "***". The
// text must be NUL-terminated (or go on past the line).
template<typename Char> bool isHeaderLine(const Char* line)
{
    return startsWithHeaderMark(firstToken(line));
}

// The same for a line given as a span, which need not be NUL-terminated (a text that is to
// stand at the start of a line, say).
template<typename Char> bool isHeaderLine(Span<Char> line)
{
    const Char* token = line.begin;
    while (token != line.end && separatesTokens(*token))
        ++token;
    return line.end - token >= HEADER_MARK_SIZE && startsWithHeaderMark(token);
}

// Whether the first token of the line is exactly "***": the token ends at a blank, a tab or
// the end of the text (a line feed belongs to the token). The document loader keeps the
// lines before the first such line as its leading lines.
template<typename Char> bool firstTokenIsHeaderMarkOnly(const Char* line)
{
    const Char* token = firstToken(line);
    if (!startsWithHeaderMark(token))
        return false;
    const ushort after = PLText::unit(token[HEADER_MARK_SIZE]);
    return after == ' ' || after == '\t' || after == 0;
}

// The separator of a header line or a key line: the first colon, when no "#" stands before
// it (a "#" starts a comment). Null when there is none: a body line without one is a comment
// line, a header line without one is malformed.
template<typename Char> const Char* separatorColon(Span<Char> line)
{
    for (const Char* c = line.begin; c != line.end; ++c) {
        const ushort u = PLText::unit(*c);
        if (u == ':')
            return c;
        if (u == '#')
            return nullptr;
    }
    return nullptr;
}

// The section name of a header line: the trimmed text after its separator colon. False when
// the line has no separator.
template<typename Char> bool sectionName(Span<Char> line, Span<Char>* name)
{
    const Char* colon = separatorColon(line);
    if (colon)
        *name = PLText::trimmed(Span<Char> { colon + 1, line.end });
    return colon != nullptr;
}

// The parts of a header line: the section key, the trimmed text between the prefix ("*** ",
// or "***" when no such prefix stands in the line) and the first colon; the section name,
// the trimmed text after that colon. `colon` is the colon itself.
template<typename Char> struct Header
{
    Span<Char> key;
    Span<Char> name;
    const Char* colon = nullptr;
};

// Splits a header line. False when it is malformed: no "***" in it, no colon after the
// prefix, or a "#" at or before the colon.
template<typename Char> bool parseHeader(Span<Char> line, Header<Char>* header)
{
    // The prefix is the first "*** " of the line, or its first "***" when it has none.
    const Char* prefix = nullptr;
    qsizetype prefixSize = 0;
    for (const qsizetype size : { HEADER_MARK_SIZE + 1, HEADER_MARK_SIZE }) {
        for (const Char* c = line.begin; !prefix && c + size <= line.end; ++c) {
            if (startsWithHeaderMark(c) && (size == HEADER_MARK_SIZE || PLText::unit(c[3]) == ' '))
                prefix = c;
        }
        prefixSize = size;
        if (prefix)
            break;
    }
    const Char* colon = separatorColon(line);
    if (!prefix || !colon || colon < prefix + prefixSize)
        return false;
    header->key = PLText::trimmed(Span<Char> { prefix + prefixSize, colon });
    sectionName(line, &header->name);
    header->colon = colon;
    return true;
}

// Whether a header line stands exactly as a document writes it: "*** ", the key, a colon, a
// tab and the name, nothing before or after. `atTextEnd` says that the line ends the text
// that was trimmed, so that a tab after the colon of a header without a name may have been
// trimmed off with the end of the text.
template<typename Char>
bool isWrittenForm(Span<Char> line, const Header<Char>& header, bool atTextEnd)
{
    if (line.size() < 4 || !startsWithHeaderMark(line.begin) || PLText::unit(line.begin[3]) != ' '
        || header.key.begin != line.begin + 4 || header.key.end != header.colon)
        return false;
    const Char* afterColon = header.colon + 1;
    if (afterColon == line.end)
        return atTextEnd && header.name.size() == 0;
    if (PLText::unit(*afterColon) != '\t')
        return false;
    return header.name.size() == 0 ? afterColon + 1 == line.end
                                   : header.name.begin == afterColon + 1 && header.name.end == line.end;
}

// The header line a document writes, with its line end: "*** <key>:<tab><name>" and CR LF.
QString headerLine(QStringView key, QStringView name);

// The key and value of a key line. The line is trimmed; the key is the trimmed text before
// the cut, the value the trimmed text after it. The cut is the colon's offset in the
// untrimmed line, applied to the trimmed line: for a line that begins with blanks it falls
// at a shifted place (`shifted`). The files are written without leading blanks, and this
// reading of lines that have them is kept as it is.
template<typename Char> struct KeyLine
{
    Span<Char> key;
    Span<Char> value;
    bool shifted = false;
};

template<typename Char> KeyLine<Char> splitKeyLine(Span<Char> line, const Char* colon)
{
    if (line.begin != colon && !PLText::isSpace(*line.begin)) {
        // The usual line, which begins with its key: the cut is the colon itself.
        KeyLine<Char> parts;
        parts.key = { line.begin, colon };
        while (parts.key.end != parts.key.begin && PLText::isSpace(parts.key.end[-1]))
            --parts.key.end;
        parts.value = PLText::trimmed(Span<Char> { colon + 1, line.end });
        return parts;
    }
    const Span<Char> trimmedLine = PLText::trimmed(line);
    const qsizetype cut = colon - line.begin;
    const qsizetype size = trimmedLine.size();
    const Char* start = trimmedLine.begin;
    KeyLine<Char> parts;
    parts.key = PLText::trimmed(Span<Char> { start, start + qMin(cut, size) });
    parts.value = PLText::trimmed(Span<Char> { start + qMin(cut + 1, size), trimmedLine.end });
    parts.shifted = trimmedLine.begin != line.begin;
    return parts;
}

// How a line differs from the form a document writes it in; None when it stands as written.
enum class LineFault {
    None,
    Shifted, // a key line that begins with blanks (its key is cut at a shifted place)
    Separator, // key and value not separated by exactly a colon and a tab
    Blanks, // blanks around the key, after the value, or around a comment's text
    TextLine, // a line of text that is not a comment: it is written with a "#" in front
};

// How a key line differs from "<key>:<tab><value>". `atTextEnd` as for isWrittenForm().
template<typename Char>
LineFault keyLineFault(Span<Char> line, const Char* colon, const KeyLine<Char>& parts,
                       bool atTextEnd)
{
    if (parts.shifted)
        return LineFault::Shifted;
    if (parts.key.end != colon)
        return LineFault::Blanks;
    const Char* afterColon = colon + 1;
    if (afterColon == line.end)
        return atTextEnd && parts.value.size() == 0 ? LineFault::None : LineFault::Separator;
    if (PLText::unit(*afterColon) != '\t')
        return LineFault::Separator;
    if (parts.value.size() == 0)
        return afterColon + 1 == line.end ? LineFault::None : LineFault::Blanks;
    if (parts.value.begin != afterColon + 1)
        return LineFault::Separator;
    return parts.value.end == line.end ? LineFault::None : LineFault::Blanks;
}

// The text a comment line is kept as: the line trimmed, with a "#" put in front of text
// that lacks one (an empty line stays empty). `needsMark` tells whether the "#" is to be
// added.
template<typename Char> Span<Char> commentText(Span<Char> line, bool* needsMark)
{
    const Span<Char> text = PLText::trimmed(line);
    *needsMark = text.size() > 0 && PLText::unit(*text.begin) != '#';
    return text;
}

// How a comment line differs from the written form. A line that is both text and has blanks
// counts as text.
template<typename Char> LineFault commentLineFault(Span<Char> line, Span<Char> text, bool needsMark)
{
    if (needsMark)
        return LineFault::TextLine;
    return text.size() == line.size() ? LineFault::None : LineFault::Blanks;
}

// The key line a document writes, without its line end: "<key>:<tab><value>", appended to
// `text`.
void appendKeyValueLine(QString& text, QStringView key, QStringView value);

// The inline-comment rule: a "#" in a value or a section name starts a comment; the plain
// text is what stands before the first "#", trimmed. A text without "#" is returned whole.
template<typename Char> Span<Char> withoutInlineComment(Span<Char> text)
{
    const Char* hash = PLText::find(text.begin, text.end, '#');
    return hash ? PLText::trimmed(Span<Char> { text.begin, hash }) : text;
}
QStringView withoutInlineComment(QStringView text);

// The value to store when `value` is set over `old`: an inline comment of the old value
// survives the change, so the result is the new value, a tab and the old value from its "#"
// on; a new value that holds a "#" of its own is taken as it is, and so is any value over an
// old one without a comment.
QString valueKeepingComment(QStringView old, const QString& value);

// The one-value search over a NUL-terminated buffer of `length` bytes, without building
// sections: lines (at line feeds) are read in pieces of at most 200 characters, each piece
// tested as a line of its own; CR LF and CR in a piece become LF and the piece is trimmed;
// empty pieces and pieces that begin with "#" are skipped. The first piece that holds `key`
// followed by a colon, in any case and anywhere in it, ends the search: the value is the
// trimmed text after that colon up to the piece's next line feed. Whatever section the piece
// stands in. Returns false when no piece holds the key.
bool findValue(const char* buffer, qint64 length, QStringView key, QString* value);

// The text after position `from` of `text` up to the end of its line (a line feed) or of
// the text, trimmed: the value of a preference-key line.
QStringView restOfLine(QStringView text, qsizetype from);

} // namespace PLGrammar

#endif // PLLINEGRAMMAR_P_H
