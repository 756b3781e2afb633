#include "PLFileEditor.h"

#include "PLClickInfo.h"
#include "PLDecodedText_p.h"
#include "PLDicomMetadata_p.h"
#include "PLFileReader_p.h"
#include "PLFileWriter_p.h"
#include "PLKeyHash_p.h"
#include "PLLineGrammar_p.h"
#include "PLLogging_p.h"
#include "PLScanner_p.h"
#include "PLSection.h"

#include <QScopeGuard>

#include <algorithm>

namespace {

using Span = PLText::Span<QChar>;

// The line end that starts at `at` in `bytes`: "\r\n", "\n", "\r", or empty.
QByteArray lineEndAt(const QByteArray& bytes, qint64 at)
{
    if (at >= bytes.size())
        return QByteArray();
    if (bytes.at(int(at)) == '\r')
        return at + 1 < bytes.size() && bytes.at(int(at) + 1) == '\n' ? QByteArrayLiteral("\r\n")
                                                                      : QByteArrayLiteral("\r");
    return bytes.at(int(at)) == '\n' ? QByteArrayLiteral("\n") : QByteArray();
}

// From `at`, past the blanks that end a line, to its line end, or to a NUL byte that ends
// the text there.
qint64 toLineEnd(const QByteArray& bytes, qint64 at)
{
    while (at < bytes.size() && bytes.at(int(at)) != '\n' && bytes.at(int(at)) != '\r'
           && bytes.at(int(at)) != '\0')
        ++at;
    return at;
}

// Whether the line from `at` holds nothing but blanks before its line end (or the end).
bool isBlankLine(const QByteArray& bytes, qint64 at)
{
    while (at < bytes.size() && (bytes.at(int(at)) == ' ' || bytes.at(int(at)) == '\t'))
        ++at;
    return !lineEndAt(bytes, at).isEmpty();
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// One key line of a section, in offsets of the decoded text.
struct KeyLinePlace
{
    qint64 lineBegin = 0; // where the line begins, blanks included
    qint64 lineEnd = 0;   // its line feed, or the text's end
    qint64 colon = 0;
    Span value;
};

} // namespace

class CPLFileEditor::Private
{
public:
    explicit Private(const QString& filePath)
        : path(filePath)
        , dicom(PLFile::isDicomPath(filePath))
    {
    }

    int open(bool lock, int waitMilliseconds);
    // Takes `read` as the file's bytes.
    int take(QByteArray read);
    // Loads `bytes` as the current text; on failure keeps the former one.
    int load(const QByteArray& bytes);
    int fail(int status, const QString& what, qint64 textOffset = -1);
    int usable() const;

    // The first section of `key`: its header line's start, and its body trimmed.
    bool findSection(QStringView key, qint64* header, Span* body) const;
    QVector<KeyLinePlace> findKey(Span body, QStringView key) const;
    // Finds the one line of `key`; a status other than 0 when there is not exactly one.
    int findOneKey(const QString& sectionKey, const QString& key, KeyLinePlace* place);
    int lineOf(qint64 textOffset) const;
    const QChar* text() const { return reinterpret_cast<const QChar*>(decoded->text().utf16()); }
    qint64 textLength() const;
    qint64 bytesAt(const QChar* position) const { return decoded->byteOffset(position - text()); }
    // The line end of the file's first header line, or of its first key line.
    QByteArray fileLineEnd(bool header) const;

    // Replaces [from, to) of the bytes by `with`, loads the result, and keeps it when `check`
    // holds of the document loaded; else puts the bytes back.
    template<typename Check>
    int edit(qint64 from, qint64 to, const QByteArray& with, const QString& what, Check check);

    QString path;
    bool dicom = false;
    std::unique_ptr<CPLFileWriter> writer;
    QByteArray original;
    QByteArray bytes;
    std::unique_ptr<CPLDecodedText> decoded;
    std::unique_ptr<CPLClickInfo> document = std::make_unique<CPLClickInfo>();
    QList<CPLLoadWarning> openWarnings; // those of open(), which a reload may not repeat
    QByteArray appendPrefix; // for a DICOM file whose metadata ends in a cut copy
    QString error;
    bool opened = false;
};

int CPLFileEditor::Private::fail(int status, const QString& what, qint64 textOffset)
{
    error = textOffset < 0 ? QStringLiteral("%1: %2").arg(path, what)
                           : QStringLiteral("%1:%2: %3").arg(path).arg(lineOf(textOffset)).arg(what);
    return status;
}

int CPLFileEditor::Private::usable() const
{
    return opened ? PL_SUCCESS : PL_NOTHING_TO_WORK_ON;
}

qint64 CPLFileEditor::Private::textLength() const
{
    const QString& t = decoded->text();
    const qint64 nul = t.indexOf(QChar(0));
    return nul < 0 ? t.size() : nul;
}

int CPLFileEditor::Private::lineOf(qint64 textOffset) const
{
    const QChar* begin = text();
    return decoded->linesBefore() + 1
        + int(PLText::count(begin, begin + textOffset, '\n'));
}

int CPLFileEditor::Private::open(bool lock, int waitMilliseconds)
{
    error.clear();
    QByteArray read;
    int status = PL_SUCCESS;
    if (lock) {
        writer = std::make_unique<CPLFileWriter>(
            path, dicom ? CPLFileWriter::Mode::Append : CPLFileWriter::Mode::Replace);
        status = writer->open(waitMilliseconds);
        if (status == PL_SUCCESS)
            status = writer->readCurrent(&read);
        if (status != PL_SUCCESS) {
            error = writer->errorString();
            writer.reset();
        }
    } else if (dicom) {
        qint64 offset = 0;
        status = PLFile::readDicomMetadata(path, &read, &offset);
    } else {
        status = PLFile::readFile(path, &read);
    }
    if (status != PL_SUCCESS)
        return error.isEmpty() ? fail(status, getStatusText(status)) : status;
    return take(read);
}

int CPLFileEditor::Private::take(QByteArray read)
{
    error.clear();
    const int status = PL_GUARDED({
        if (!dicom) {
            original = read;
            return load(read);
        }
        const PLDicom::Copy copy = PLDicom::lastCopy(read.constData(), read.size());
        appendPrefix = PLDicom::copySeparator(read);
        original = QByteArray(copy.text.begin, int(copy.text.size()));
        const int loaded = load(original);
        if (loaded == PL_SUCCESS) {
            // The warnings of the whole metadata, a cut copy's too.
            CPLClickInfo whole;
            whole.loadDicomMetadata(read.constData(), read.size(), path);
            openWarnings = whole.getLoadWarningList();
        }
        return loaded;
    });
    opened = status == PL_SUCCESS;
    if (!opened && error.isEmpty())
        fail(status, getStatusText(status));
    if (!opened && writer) {
        writer->cancel();
        writer.reset();
    }
    return status;
}

int CPLFileEditor::Private::load(const QByteArray& newBytes)
{
    auto newDecoded = std::make_unique<CPLDecodedText>(newBytes.constData(), newBytes.size());
    auto loaded = std::make_unique<CPLClickInfo>();
    const QString source = dicom ? QStringLiteral("%1 (last metadata copy)").arg(path) : path;
    // The text is decoded once, for the editor's byte map and for the load.
    const int status = loaded->loadDecoded(*newDecoded, source);
    if (status != PL_SUCCESS) {
        error = QStringLiteral("%1:%2: cannot be loaded: %3")
                    .arg(source)
                    .arg(loaded->getLastErrorLine())
                    .arg(getStatusText(status));
        return status;
    }
    bytes = newBytes;
    decoded = std::move(newDecoded);
    document = std::move(loaded);
    return PL_SUCCESS;
}

bool CPLFileEditor::Private::findSection(QStringView key, qint64* header, Span* body) const
{
    const QChar* data = text();
    const qint64 length = textLength();
    qint64 position = 0;
    PLScan::SectionRange range;
    while (position < length && PLScan::nextSection(data, length, position, range)) {
        const qint64 headerEnd = qMin(PLScan::lineEnd(data, length, range.begin), length);
        PLGrammar::Header<QChar> parts;
        if (!PLGrammar::parseHeader(Span { data + range.begin, data + headerEnd }, &parts))
            return false;
        if (PLKeyHash::equal(QStringView(parts.key.begin, parts.key.end), key)) {
            *header = range.begin;
            *body = PLText::trimmed(Span { data + headerEnd, data + qMin(range.end, length) });
            return true;
        }
    }
    return false;
}

QVector<KeyLinePlace> CPLFileEditor::Private::findKey(Span body, QStringView key) const
{
    QVector<KeyLinePlace> found;
    const QChar* data = text();
    for (const QChar* lineBegin = body.begin; lineBegin < body.end;) {
        const QChar* lf = PLText::find(lineBegin, body.end, '\n');
        const Span line { lineBegin, lf ? lf : body.end };
        if (const QChar* colon = PLGrammar::separatorColon(line)) {
            const auto parts = PLGrammar::splitKeyLine(line, colon);
            if (PLKeyHash::equal(QStringView(parts.key.begin, parts.key.end), key)) {
                // The line begins after the line feed before it (the body's trimming may have
                // taken blanks off its first line).
                const QChar* start = lineBegin;
                while (start > data && start[-1] != QLatin1Char('\n'))
                    --start;
                // The body's last line goes on past the body's trimmed end, to its line feed.
                const QChar* textEnd = data + textLength();
                const QChar* lineFeed = lf ? lf : PLText::find(body.end, textEnd, '\n');
                const qint64 end = (lineFeed ? lineFeed : textEnd) - data;
                found.append({ start - data, end, colon - data, parts.value });
            }
        }
        lineBegin = lf ? lf + 1 : body.end;
    }
    return found;
}

int CPLFileEditor::Private::findOneKey(const QString& sectionKey, const QString& key,
                                       KeyLinePlace* place)
{
    qint64 header = 0;
    Span body;
    if (!findSection(sectionKey, &header, &body))
        return fail(PL_SECTION_NOT_PRESENT, QStringLiteral("no section %1").arg(quoted(sectionKey)));
    const QVector<KeyLinePlace> lines = findKey(body, key);
    if (lines.isEmpty())
        return fail(PL_KEY_NOT_FOUND, QStringLiteral("section %1 has no key %2")
                                          .arg(quoted(sectionKey), quoted(key)),
                    header);
    if (lines.size() > 1)
        return fail(PL_KEY_REPEATED,
                    QStringLiteral("section %1 holds key %2 on lines %3 and %4; it is not edited "
                                   "until one of them is removed by hand")
                        .arg(quoted(sectionKey), quoted(key))
                        .arg(lineOf(lines.at(0).lineBegin))
                        .arg(lineOf(lines.at(1).lineBegin)),
                    lines.at(1).lineBegin);
    *place = lines.first();
    return PL_SUCCESS;
}

QByteArray CPLFileEditor::Private::fileLineEnd(bool header) const
{
    const QChar* data = text();
    const qint64 length = textLength();
    bool afterHeader = false;
    for (qint64 position = 0; position < length;) {
        const qint64 next = PLScan::lineEnd(data, length, position);
        const bool isHeader = PLGrammar::isHeaderLine(data + position);
        const bool isKeyLine = afterHeader && !isHeader
            && PLGrammar::separatorColon(Span { data + position, data + qMin(next, length) });
        if (next <= length && (header ? isHeader : isKeyLine)) {
            const QByteArray end = lineEndAt(bytes, decoded->byteOffset(next - 1));
            if (!end.isEmpty())
                return end;
        }
        afterHeader = afterHeader || isHeader;
        position = next;
    }
    return header ? QByteArrayLiteral("\r\n") : QByteArrayLiteral("\n");
}

template<typename Check>
int CPLFileEditor::Private::edit(qint64 from, qint64 to, const QByteArray& with,
                                 const QString& what, Check check)
{
    return PL_GUARDED({
        QByteArray edited = bytes;
        edited.replace(int(from), int(to - from), with);
        // The state before the edit comes back unless the edit is kept.
        const QByteArray oldBytes = bytes;
        std::unique_ptr<CPLDecodedText> oldDecoded = std::move(decoded);
        std::unique_ptr<CPLClickInfo> oldDocument = std::move(document);
        bool kept = false;
        const auto restore = qScopeGuard([&] {
            if (kept)
                return;
            bytes = oldBytes;
            decoded = std::move(oldDecoded);
            document = std::move(oldDocument);
        });
        if (load(edited) != PL_SUCCESS)
            return fail(PL_INVALID_ARGUMENT,
                        what + QLatin1String(" would leave a file that does not load: ") + error);
        const QString why = check(*oldDocument, *document);
        if (!why.isEmpty())
            return fail(PL_INVALID_ARGUMENT, what + QLatin1Char(' ') + why);
        kept = true;
        return PL_SUCCESS;
    });
}

namespace {

// Why `text` cannot be written as `role` by an edit; empty when it can. Emptiness is judged
// by each edit.
QString refusal(const QString& text, CPLSection::TextRole role)
{
    return CPLSection::breaksFile(text, role) ? CPLSection::textFaultText(text, role) : QString();
}

// Whether entry `index` of a section is one of the lines that an edit of `key` leaves alone:
// not a line of `key`, nor an empty line.
bool isOtherLine(const CPLSection& section, int index, const QString& key)
{
    const QString entryKey = section.getEntryKey(index);
    if (CPLSection::isCommentKey(entryKey))
        return !section.getEntryValue(index, true).isEmpty();
    return !PLKeyHash::equal(entryKey, key);
}

// The entry of a section that follows `index` and is one of its other lines (isOtherLine()),
// or the number of entries when none is.
int nextOtherLine(const CPLSection& section, int index, const QString& key)
{
    const int count = section.getEntryCount();
    while (++index < count && !isOtherLine(section, index, key)) { }
    return index;
}

// Whether two sections read alike as a load reads them (key and raw value, or a comment's
// text), but for the lines of `key` and empty lines. One line at a time, so that a large
// section is never copied.
bool sameOtherLines(const CPLSection& a, const CPLSection& b, const QString& key)
{
    int i = nextOtherLine(a, -1, key);
    int j = nextOtherLine(b, -1, key);
    for (; i < a.getEntryCount() && j < b.getEntryCount();
         i = nextOtherLine(a, i, key), j = nextOtherLine(b, j, key)) {
        const QString keyA = a.getEntryKey(i);
        const QString keyB = b.getEntryKey(j);
        const bool commentA = CPLSection::isCommentKey(keyA);
        if (commentA != CPLSection::isCommentKey(keyB) || (!commentA && keyA != keyB)
            || a.getEntryValue(i, true) != b.getEntryValue(j, true))
            return false;
    }
    return i >= a.getEntryCount() && j >= b.getEntryCount();
}

// Whether `after` reads every section of `before` as it did, but the lines of `key` in the
// section `edited`: what it changes besides, in words, or a null string. An edit can change how a
// line it does not touch reads: removing a section's first line makes the next one first,
// and a first line loses its leading blanks. It cannot change another section: its lines
// and the headers around it stay as they were, and no edit writes a line that reads as a
// header. So the other sections are compared by their keys, the edited one line by line.
QString changedElsewhere(const CPLClickInfo& before, const CPLClickInfo& after,
                         const QString& edited, const QString& key)
{
    const QStringList keys = before.getSectionKeys();
    if (after.getSectionKeys().mid(0, keys.size()) != keys)
        return QStringLiteral("would change the sections of the file");
    const CPLSection* old = before[edited];
    const CPLSection* now = after[edited];
    if (old && (!now || !sameOtherLines(*old, *now, key)))
        return QStringLiteral("would change how other lines of section %1 read").arg(quoted(edited));
    return QString();
}

// Why an edit of `key` in section `edited` is not what it should be: `after` must read every
// other line of `before` as it did, and `holds` must hold of the section after.
template<typename Holds>
QString editFault(const CPLClickInfo& before, const CPLClickInfo& after, const QString& edited,
                  const QString& key, Holds holds)
{
    if (!holds(after[edited]))
        return QStringLiteral("would not read back as written");
    return changedElsewhere(before, after, edited, key);
}

// Whether the section holds `key` on one line, with `rawValue` as a load reads it raw. The
// entries are searched, since a key may be empty.
bool holdsOnce(const CPLClickInfo& document, const QString& sectionKey, const QString& key,
               const QString& rawValue)
{
    const CPLSection* section = document[sectionKey];
    if (!section)
        return false;
    int found = 0;
    for (int i = 0; i < section->getEntryCount(); ++i) {
        const QString entryKey = section->getEntryKey(i);
        if (!CPLSection::isCommentKey(entryKey) && PLKeyHash::equal(entryKey, key)
            && (++found > 1 || section->getEntryValue(i, true) != rawValue))
            return false;
    }
    return found == 1;
}

} // namespace

CPLFileEditor::CPLFileEditor(const QString& path)
    : d(std::make_unique<Private>(path))
{
}

CPLFileEditor::~CPLFileEditor() = default;

int CPLFileEditor::open(int waitMilliseconds)
{
    return d->open(true, waitMilliseconds);
}

int CPLFileEditor::openWithoutLock()
{
    return d->open(false, 0);
}

int CPLFileEditor::openBytes(const QByteArray& bytes)
{
    cancel();
    if (bytes.size() > PL_MAX_FILE_SIZE)
        return d->fail(PL_FILE_TOO_LARGE, getStatusText(PL_FILE_TOO_LARGE));
    return d->take(bytes);
}

const CPLClickInfo& CPLFileEditor::document() const
{
    return *d->document;
}

QList<CPLLoadWarning> CPLFileEditor::loadWarnings() const
{
    return d->dicom && !isEdited() ? d->openWarnings : d->document->getLoadWarningList();
}

int CPLFileEditor::setValue(const QString& sectionKey, const QString& key, const QString& value)
{
    if (const int status = d->usable())
        return status;
    const QString why = refusal(value, CPLSection::TextRole::Value);
    if (!why.isEmpty())
        return d->fail(PL_INVALID_ARGUMENT, why);
    KeyLinePlace place;
    if (const int status = d->findOneKey(sectionKey, key, &place))
        return status;

    const QString stored
        = PLGrammar::valueKeepingComment(QStringView(place.value.begin, place.value.end),
                                         value.trimmed());
    const QChar* data = d->text();
    qint64 from = d->bytesAt(place.value.begin);
    qint64 to = d->bytesAt(place.value.end);
    QByteArray with = stored.toLatin1();
    if (place.value.size() == 0) {
        // No value: after the separator's tab, or after the colon with a tab. The bytes tell,
        // since the text lost the blanks that end the file.
        const qint64 afterColon = d->bytesAt(data + place.colon) + 1;
        const bool tab = afterColon < d->bytes.size() && d->bytes.at(int(afterColon)) == '\t';
        from = to = tab ? afterColon + 1 : afterColon;
        if (!tab)
            with.prepend('\t');
    }
    return d->edit(from, to, with, QStringLiteral("setting %1").arg(quoted(key)),
                   [&](const CPLClickInfo& before, const CPLClickInfo& after) {
                       return editFault(before, after, sectionKey, key, [&](const CPLSection*) {
                           return holdsOnce(after, sectionKey, key, stored);
                       });
                   });
}

int CPLFileEditor::addKeyValue(const QString& sectionKey, const QString& key, const QString& value)
{
    if (const int status = d->usable())
        return status;
    if (key.isEmpty() || sectionKey.isEmpty())
        return d->fail(PL_EMPTY_KEY, QStringLiteral("an empty key or section key cannot be added"));
    for (const QString& why : { refusal(key, CPLSection::TextRole::Key),
                                refusal(value, CPLSection::TextRole::Value),
                                refusal(sectionKey, CPLSection::TextRole::SectionKey) }) {
        if (!why.isEmpty())
            return d->fail(PL_INVALID_ARGUMENT, why);
    }
    const QByteArray keyLine = (key + QLatin1String(":\t") + value.trimmed()).toLatin1();
    const QByteArray keyEnd = d->fileLineEnd(false);
    const QString what = QStringLiteral("adding %1").arg(quoted(key));
    const auto check = [&](const CPLClickInfo& before, const CPLClickInfo& after) {
        return editFault(before, after, sectionKey, key, [&](const CPLSection*) {
            return holdsOnce(after, sectionKey, key, value.trimmed());
        });
    };

    qint64 header = 0;
    Span body;
    if (d->findSection(sectionKey, &header, &body)) {
        if (!d->findKey(body, key).isEmpty())
            return d->fail(PL_INVALID_ARGUMENT, QStringLiteral("section %1 already has key %2")
                                                    .arg(quoted(sectionKey), quoted(key)),
                           header);
        // After the section's last line (its header when it has none), with its line end.
        const QChar* textEnd = d->text() + d->textLength();
        const QChar* headerLf = PLText::find(d->text() + header, textEnd, '\n');
        const QChar* lastLine = body.size() > 0 ? body.end : headerLf ? headerLf : textEnd;
        const qint64 end = toLineEnd(d->bytes, d->bytesAt(lastLine));
        const QByteArray lineEnd = lineEndAt(d->bytes, end);
        if (lineEnd.isEmpty()) // the file's last line, without a line end
            return d->edit(end, end, keyEnd + keyLine, what, check);
        const qint64 at = end + lineEnd.size();
        return d->edit(at, at, keyLine + (body.size() > 0 ? lineEnd : keyEnd), what, check);
    }

    // A new section after the last line of the text, one empty line after it.
    const QByteArray headerLine = QByteArrayLiteral("*** ") + sectionKey.toLatin1() + ":\t";
    const QByteArray headerEnd = d->fileLineEnd(true);
    const QByteArray section = headerLine + headerEnd + keyLine;
    if (d->textLength() == 0) {
        // Nothing but blanks: they become the section. A NUL ends the text that loads read,
        // so the bytes from it on stay, as every other edit keeps them.
        const int nul = d->bytes.indexOf('\0');
        return d->edit(0, nul < 0 ? d->bytes.size() : nul,
                       section + keyEnd + keyEnd + keyEnd + keyEnd, what, check);
    }
    const qint64 end = toLineEnd(d->bytes, d->bytesAt(d->text() + d->textLength()));
    const QByteArray lineEnd = lineEndAt(d->bytes, end);
    if (lineEnd.isEmpty())
        return d->edit(end, end, keyEnd + keyEnd + section, what, check);
    qint64 at = end + lineEnd.size();
    if (isBlankLine(d->bytes, at)) {
        const qint64 blankEnd = toLineEnd(d->bytes, at);
        at = blankEnd + lineEndAt(d->bytes, blankEnd).size();
        return d->edit(at, at, section + keyEnd + keyEnd, what, check);
    }
    return d->edit(at, at, keyEnd + section + keyEnd, what, check);
}

int CPLFileEditor::removeKey(const QString& sectionKey, const QString& key)
{
    if (const int status = d->usable())
        return status;
    KeyLinePlace place;
    if (const int status = d->findOneKey(sectionKey, key, &place))
        return status;
    qint64 from = d->bytesAt(d->text() + place.lineBegin);
    const qint64 end = toLineEnd(d->bytes, d->bytesAt(d->text() + place.lineEnd));
    qint64 to = end + lineEndAt(d->bytes, end).size();
    if (to == end && from > 0) {
        // The file's last line, without a line end: the line end before it goes with it.
        from -= (from >= 2 && d->bytes.mid(int(from) - 2, 2) == "\r\n") ? 2 : 1;
    }
    return d->edit(from, to, QByteArray(), QStringLiteral("removing %1").arg(quoted(key)),
                   [&](const CPLClickInfo& before, const CPLClickInfo& after) {
                       return editFault(before, after, sectionKey, key,
                                        [&](const CPLSection* section) {
                                            return section && !section->isKeyPresent(key);
                                        });
                   });
}

int CPLFileEditor::rewriteCanonical()
{
    if (const int status = d->usable())
        return status;
    const int status = PL_GUARDED({
        // The form a save writes holds only what the load took in: a file that holds more
        // (text after a NUL, a repeated section, a cut DICOM copy...) is not rewritten.
        QStringList losses = d->document->lossesOfLoad(PL_SUCCESS, d->path);
        for (const CPLLoadWarning& warning : qAsConst(d->openWarnings))
            if (warning.kind() == CPLLoadWarning::CutCopy)
                losses.append(warning.toString());
        if (!losses.isEmpty())
            return d->fail(PL_LOAD_INCOMPLETE,
                           QStringLiteral("not rewritten, since the form a save writes would "
                                          "lose what a load does not take in: %1")
                               .arg(losses.join(QLatin1String("; "))));
        const QByteArray canonical = d->document->getClickInfoData().toLatin1();
        return d->edit(0, d->bytes.size(), canonical, QStringLiteral("rewriting"),
                       [](const CPLClickInfo&, const CPLClickInfo&) { return QString(); });
    });
    return status;
}

QByteArray CPLFileEditor::originalBytes() const
{
    return d->original;
}

QByteArray CPLFileEditor::editedBytes() const
{
    return d->bytes;
}

bool CPLFileEditor::isEdited() const
{
    return d->bytes != d->original;
}

int CPLFileEditor::commit()
{
    if (!d->writer)
        return d->fail(PL_INVALID_ARGUMENT, QStringLiteral("not opened for writing"));
    if (!isEdited()) {
        d->writer->cancel();
        d->writer.reset();
        return PL_SUCCESS;
    }
    int status = d->writer->write(d->dicom ? QByteArray(d->appendPrefix + d->bytes) : d->bytes);
    if (status == PL_SUCCESS)
        status = d->writer->commit();
    if (status != PL_SUCCESS)
        d->error = d->writer->errorString();
    d->writer.reset();
    return status;
}

void CPLFileEditor::cancel()
{
    if (d->writer)
        d->writer->cancel();
    d->writer.reset();
}

QString CPLFileEditor::errorString() const
{
    return d->error;
}
