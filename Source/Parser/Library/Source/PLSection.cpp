#include "PLSection.h"

#include "PLConstants.h"
#include "PLKeyHash_p.h"
#include "PLLineGrammar_p.h"
#include "PLLoadWarning.h"
#include "PLStatus.h"
#include "PLText_p.h"

#include <QSharedData>
#include <QStringBuilder>
#include <QVector>

#include <algorithm>

namespace {

// The older key of the rotating animal holder's angle, read when "MVI-2 Angle" is absent.
const QString OLD_MOUSE_SPINNER_ANGLE = QStringLiteral("MuVI Angle");

using PLGrammar::withoutInlineComment;

// Conversions of the typed getters: Qt's own decimal parsing, which gives 0 for text that is
// not a number of the type.
template<typename T> T numberFromText(const QString& text);
template<> int numberFromText<int>(const QString& text)
{
    return text.toInt();
}
template<> long numberFromText<long>(const QString& text)
{
    return text.toLong();
}
template<> short numberFromText<short>(const QString& text)
{
    return text.toShort();
}
template<> float numberFromText<float>(const QString& text)
{
    return text.toFloat();
}
template<> double numberFromText<double>(const QString& text)
{
    return text.toDouble();
}

// Formats of the typed setters: decimal integers, and "%f" (six decimals) for both floating
// point types, a float being widened to double first.
QString textFromNumber(long value)
{
    return QString::number(value);
}
QString textFromNumber(double value)
{
    return QString::asprintf("%f", value);
}

ushort asciiLower(ushort c)
{
    return c >= 'A' && c <= 'Z' ? ushort(c + ('a' - 'A')) : c;
}

// Whether a key contains "CommentLine " in any case. It is asked for every key, so it does
// not go through a general case-insensitive search: no character outside ASCII folds to a
// letter of this text, so comparing ASCII letters in lower case gives the same answer.
bool isCommentEntryKey(QStringView key)
{
    const QString& marker = PLConstants::COMMENTLINE_KEY;
    const qsizetype size = marker.size();
    const ushort last = marker.at(size - 1).unicode(); // a blank, which has no case
    for (qsizetype i = 0; i + size <= key.size(); ++i) {
        if (key.at(i + size - 1).unicode() != last)
            continue;
        qsizetype j = 0;
        while (j < marker.size()
               && asciiLower(key.at(i + j).unicode()) == asciiLower(marker.at(j).unicode()))
            ++j;
        if (j == marker.size())
            return true;
    }
    return false;
}

// Where a text stands: in the loaded text from `offset` on, or, for a negative offset, in the
// added text from ~offset on.
struct TextRef
{
    int offset = 0;
    int length = 0;

    bool isAdded() const { return offset < 0; }
};

} // namespace

// The entries of a section. Every key and value is a range of text: of the loaded text, the
// text a load was given, which the sections of one document share; or of the added text,
// this section's own, which holds what loading generates and what is set later. Values with
// the same key in lower case share one slot. A small section finds a slot by comparing the
// hashes of its slots; a larger one keeps an open-addressing index.
class CPLSectionData : public QSharedData
{
public:
    struct Slot
    {
        TextRef key; // the first spelling
        TextRef value; // the value the getters read and saving writes
        uint hash;
        bool changed; // set or added since the section was loaded
    };
    struct Entry
    {
        TextRef key; // this entry's spelling
        TextRef value; // the value on this entry's own line, while its slot is unchanged
        int slot;
    };
    // One kind of line that saving will not write back as it stood, in the last load.
    struct Irregularity
    {
        CPLLoadWarning::Kind kind;
        int firstLine;
        int count;
        QString detail;
        int relatedLine;
    };

    QStringView view(TextRef ref) const
    {
        return ref.isAdded() ? QStringView(added).mid(~ref.offset, ref.length)
                             : QStringView(loaded).mid(ref.offset, ref.length);
    }
    QStringView keyOf(int entry) const { return view(entries.at(entry).key); }
    QStringView valueOf(int entry) const { return view(slots.at(entries.at(entry).slot).value); }
    // The value of an entry's own line: for a key that a body repeats, each line's own value
    // until the key is set again.
    QStringView ownValueOf(int entry) const
    {
        const Entry& e = entries.at(entry);
        return slots.at(e.slot).changed ? view(slots.at(e.slot).value) : view(e.value);
    }

    // Appends `s`, which must not refer to the added text itself, to the added text.
    TextRef store(QStringView s)
    {
        const TextRef ref { ~added.size(), int(s.size()) };
        added.append(s);
        return ref;
    }

    int find(QStringView key) const { return find(key, PLKeyHash::hash(key)); }
    int find(QStringView key, uint hash) const;
    int findOrAddSlot(QStringView key, TextRef keyRef, bool* added);
    // Appends an entry; false when its key was present already (a repeated key).
    bool appendEntry(QStringView key, TextRef keyRef, TextRef valueRef, bool keyValue);
    void clearEntries();
    void setValue(int slot, const QString& value);
    void replaceValue(int slot, TextRef valueRef, bool changed);
    // Notes a line of `kind` at `line`: the first of a kind keeps its line and detail, later
    // ones are counted.
    void noteIrregular(CPLLoadWarning::Kind kind, int line, const QString& detail = QString(),
                       int relatedLine = 0);
    // Makes room for this many more entries at once.
    void reserve(int moreEntries);

    // A text of each key/value entry, in order: `text` maps an index of `entries` to it.
    template<typename Text> QStringList keyValueTexts(Text text) const
    {
        QStringList result;
        result.reserve(keyValueCount());
        for (int position = 0; position < keyValueCount(); ++position)
            result.append(text(keyValueEntry(position)).toString());
        return result;
    }

    // The key/value entries, by their position among them.
    int keyValueCount() const { return keyOrder.isEmpty() ? keyValueEntries : keyOrder.size(); }
    int keyValueEntry(int position) const
    {
        return keyOrder.isEmpty() ? position : keyOrder.at(position);
    }

    QString key;
    QString name;
    QString loaded;
    QString added;
    QVector<Slot> slots;
    QVector<Entry> entries; // every entry, comment entries included, in order of addition
    int lineCount = 0; // how many entries saveSectionData() writes
    QVector<Irregularity> irregular; // of the last load
    int unused = 0; // characters of the added text that no range refers to any more

private:
    // Sections up to this many slots find them without an index.
    static constexpr int SMALL = 8;
    void insertInIndex(int slot);
    void rebuildIndex(int slotCount);
    void compact();

    // The index in `entries` of each key/value entry, by its position. Left empty while every
    // entry is a key/value entry, when positions and indexes are the same.
    QVector<int> keyOrder;
    int keyValueEntries = 0; // while keyOrder is empty
    QVector<int> index; // slot + 1 by hash position; 0 for none; a power of two long
};

int CPLSectionData::find(QStringView key, uint hash) const
{
    const auto matches = [&](int slot) {
        const Slot& candidate = slots.at(slot);
        return candidate.hash == hash && PLKeyHash::equal(view(candidate.key), key);
    };
    if (index.isEmpty()) {
        for (int slot = 0; slot < slots.size(); ++slot) {
            if (matches(slot))
                return slot;
        }
        return -1;
    }
    const int mask = index.size() - 1;
    for (int i = int(hash) & mask;; i = (i + 1) & mask) {
        const int slot = index.at(i) - 1;
        if (slot < 0 || matches(slot))
            return slot;
    }
}

void CPLSectionData::insertInIndex(int slot)
{
    const int mask = index.size() - 1;
    int i = int(slots.at(slot).hash) & mask;
    while (index.at(i) != 0)
        i = (i + 1) & mask;
    index[i] = slot + 1;
}

int CPLSectionData::findOrAddSlot(QStringView key, TextRef keyRef, bool* added)
{
    const uint hash = PLKeyHash::hash(key);
    const int found = find(key, hash);
    *added = found < 0;
    if (found >= 0)
        return found;
    slots.append(Slot { keyRef, TextRef {}, hash, false });
    if (index.isEmpty() && slots.size() <= SMALL)
        return slots.size() - 1;
    if (slots.size() * 2 > index.size())
        rebuildIndex(slots.size());
    else
        insertInIndex(slots.size() - 1);
    return slots.size() - 1;
}

void CPLSectionData::rebuildIndex(int slotCount)
{
    // At most half full, so that probes stay short; it at least doubles each time.
    int size = qMax(4 * SMALL, index.size() * 2);
    while (size < 2 * slotCount)
        size *= 2;
    index.fill(0, size);
    for (int slot = 0; slot < slots.size(); ++slot)
        insertInIndex(slot);
}

void CPLSectionData::reserve(int moreEntries)
{
    slots.reserve(slots.size() + moreEntries);
    entries.reserve(entries.size() + moreEntries);
    const int slotCount = slots.size() + moreEntries;
    if (slotCount > SMALL && slotCount * 2 > index.size())
        rebuildIndex(slotCount);
}

bool CPLSectionData::appendEntry(QStringView key, TextRef keyRef, TextRef valueRef, bool keyValue)
{
    const bool positionsAreIndexes = keyOrder.isEmpty() && keyValueEntries == entries.size();
    if (keyValue && positionsAreIndexes) {
        ++keyValueEntries;
    } else if (keyValue) {
        keyOrder.append(entries.size());
    } else if (positionsAreIndexes) {
        // The first entry that is not a key/value entry: positions and indexes part ways.
        for (int entry = 0; entry < keyValueEntries; ++entry)
            keyOrder.append(entry);
    }
    bool added = false;
    const int slot = findOrAddSlot(key, keyRef, &added);
    replaceValue(slot, valueRef, false);
    entries.append(Entry { keyRef, valueRef, slot });
    return added;
}

void CPLSectionData::replaceValue(int slot, TextRef valueRef, bool changed)
{
    Slot& s = slots[slot];
    // An estimate, for compact(): a replaced value of the added text is used no more, unless
    // it is also an entry's own value that is read while the slot stays unchanged.
    if (s.value.isAdded() && changed)
        unused += s.value.length;
    s.value = valueRef;
    s.changed = changed;
}

void CPLSectionData::noteIrregular(CPLLoadWarning::Kind kind, int line, const QString& detail,
                                   int relatedLine)
{
    for (Irregularity& known : irregular) {
        if (known.kind == kind) {
            ++known.count;
            return;
        }
    }
    irregular.append(Irregularity { kind, line, 1, detail, relatedLine });
}

void CPLSectionData::setValue(int slot, const QString& value)
{
    replaceValue(slot, store(value), true);
    // Values set again and again would let the added text grow without bound: once most of
    // it is unused, copy what is used into a new one.
    if (unused > 4096 && unused > added.size() / 2)
        compact();
}

void CPLSectionData::compact()
{
    const QString old = added;
    added.clear();
    const auto move = [&](TextRef& ref) {
        if (ref.isAdded())
            ref = store(QStringView(old).mid(~ref.offset, ref.length));
    };
    for (Slot& slot : slots) {
        move(slot.key);
        move(slot.value);
    }
    for (Entry& entry : entries) {
        move(entry.key);
        move(entry.value);
    }
    unused = 0;
}

void CPLSectionData::clearEntries()
{
    loaded.clear();
    added.clear();
    slots.clear();
    entries.clear();
    keyOrder.clear();
    keyValueEntries = 0;
    index.clear();
    lineCount = 0;
    unused = 0;
    irregular.clear();
}

namespace {

// Puts `text` into *target, in the memory *target holds when it has room: a caller that reads
// value after value into one string does not allocate for each.
void assignText(QString* target, QStringView text)
{
    target->setUnicode(text.data(), int(text.size()));
}

} // namespace

CPLSection::CPLSection()
    : d(new CPLSectionData)
{
}

CPLSection::CPLSection(const QString& sectionKey, const QString& sectionName)
    : d(new CPLSectionData)
{
    d->key = sectionKey;
    d->name = sectionName;
}

CPLSection::CPLSection(const CPLSection& other) = default;
CPLSection& CPLSection::operator=(const CPLSection& other) = default;
CPLSection::~CPLSection() = default;

void CPLSection::clearKeyValuePairs()
{
    d->clearEntries();
}

void CPLSection::loadSectionData(const QString& text)
{
    loadBody(text, 0, text.size(), 0, true);
}

void CPLSection::loadSectionData(QStringView text)
{
    const QString copy = text.toString();
    loadBody(copy, 0, copy.size(), 0, true);
}

void CPLSection::loadBody(const QString& text, int from, int to, int expectedLines, bool mayHoldNul)
{
    using Span = PLText::Span<QChar>;
    const QStringView given = QStringView(text).mid(from, to - from);
    const QChar* textEnd = given.data() + given.size();
    Span body = PLText::trimmed(Span { given.data(), textEnd });

    CPLSectionData& data = *d;
    data.irregular.clear();
    if (expectedLines > 0)
        data.reserve(expectedLines);
    // Line numbers count from the text given, before its leading blank lines were trimmed.
    const int linesTrimmed = int(
        PLText::count(given.data(), body.begin, '\n'));
    // The body is read as C text: it ends at its first NUL (a document's text is cut there
    // already).
    if (const QChar* nul = mayHoldNul ? PLText::findFar(body.begin, body.end, '\0') : nullptr) {
        data.noteIrregular(CPLLoadWarning::NulByte,
                           linesTrimmed + 1 + int(PLText::count(body.begin, nul, '\n')));
        body.end = textEnd = nul;
    }
    // The entries refer to the body where it stands. A section that has loaded no text yet
    // shares the text given (Qt's implicit sharing) instead of copying it; a second load
    // copies its body into the added text.
    const bool shared = data.loaded.isEmpty();
    int addedStart = 0;
    if (shared)
        data.loaded = text;
    else
        addedStart = ~data.store(QStringView(body.begin, body.end)).offset;
    const auto refTo = [&](Span s) {
        const int length = int(s.size());
        return shared ? TextRef { int(s.begin - text.constData()), length }
                      : TextRef { ~(addedStart + int(s.begin - body.begin)), length };
    };

    const int firstEntry = data.entries.size();
    int commentNumber = 0;
    int lines = 0;
    for (const QChar* lineBegin = body.begin; lineBegin < body.end; ++lines) {
        // One pass finds a key line's colon (PLGrammar::separatorColon()) and the line end.
        const QChar* c = lineBegin;
        while (c != body.end && *c != QLatin1Char(':') && *c != QLatin1Char('#')
               && *c != QLatin1Char('\n'))
            ++c;
        const QChar* colon = c != body.end && *c == QLatin1Char(':') ? c : nullptr;
        // The rest of a line is short (a value): a plain loop finds its end.
        const QChar* lf
            = c != body.end && *c == QLatin1Char('\n') ? c : PLText::find(c, body.end, '\n');
        const Span line { lineBegin, lf ? lf : body.end };
        lineBegin = lf ? lf + 1 : body.end;
        // The line as it stands in the text: the body's last line goes on to its line end.
        Span written = line;
        if (!lf) {
            const QChar* end = PLText::findFar(body.end, textEnd, '\n');
            written.end = end ? end : textEnd;
        }
        const bool atTextEnd = written.end == textEnd;
        const int lineNumber = linesTrimmed + lines + 1;

        if (colon) {
            const auto parts = PLGrammar::splitKeyLine(line, colon);
            const QStringView keyText(parts.key.begin, parts.key.end);
            noteLineFault(int(PLGrammar::keyLineFault(written, colon, parts, atTextEnd)), lineNumber,
                          keyText);
            if (parts.key.size() >= PLGrammar::HEADER_MARK_SIZE
                && PLGrammar::startsWithHeaderMark(parts.key.begin))
                data.noteIrregular(CPLLoadWarning::KeyLikeHeader, lineNumber, keyText.toString());
            if (isCommentEntryKey(keyText))
                data.noteIrregular(CPLLoadWarning::CommentKey, lineNumber, keyText.toString());
            if (!data.appendEntry(keyText, refTo(parts.key), refTo(parts.value), true))
                noteRepeatedKey(firstEntry, linesTrimmed, lineNumber);
        } else {
            // A comment entry holds the line's text, made to start with "#".
            bool needsMark = false;
            const Span comment = PLGrammar::commentText(line, &needsMark);
            noteLineFault(int(PLGrammar::commentLineFault(written, comment, needsMark)), lineNumber,
                          QStringView());
            const QString commentKey
                = PLConstants::COMMENTLINE_KEY + QString::number(commentNumber++);
            const TextRef commentRef = needsMark
                ? data.store(QString(QLatin1Char('#') + QStringView(comment.begin, comment.end)))
                : refTo(comment);
            data.appendEntry(commentKey, data.store(commentKey), commentRef, false);
        }
    }
    data.lineCount = lines;
}

void CPLSection::noteLineFault(int fault, int line, QStringView key)
{
    using Fault = PLGrammar::LineFault;
    if (Q_LIKELY(Fault(fault) == Fault::None))
        return;
    switch (Fault(fault)) {
    case Fault::None:
        return;
    case Fault::Shifted:
        d->noteIrregular(CPLLoadWarning::ShiftedKey, line, key.toString());
        return;
    case Fault::Separator:
        d->noteIrregular(CPLLoadWarning::Separator, line);
        return;
    case Fault::Blanks:
        d->noteIrregular(CPLLoadWarning::Blanks, line);
        return;
    case Fault::TextLine:
        d->noteIrregular(CPLLoadWarning::TextLine, line);
        return;
    }
}

void CPLSection::noteRepeatedKey(int firstEntry, int linesTrimmed, int line)
{
    // Each line of a load is one entry: the earlier line of the key is found among the
    // entries of this load.
    const CPLSectionData& data = *d;
    const int entry = data.entries.size() - 1;
    const int slot = data.entries.at(entry).slot;
    int earlier = entry - 1;
    while (earlier >= firstEntry && data.entries.at(earlier).slot != slot)
        --earlier;
    const int earlierLine = earlier >= firstEntry ? linesTrimmed + earlier - firstEntry + 1 : 0;
    d->noteIrregular(CPLLoadWarning::RepeatedKey, line, data.keyOf(entry).toString(), earlierLine);
}

void CPLSection::saveSectionData(QString& text) const
{
    text = PLGrammar::headerLine(d->key, d->name);
    const int lines = qMin(d->lineCount, d->entries.size());
    for (int i = 0; i < lines; ++i) {
        const QStringView key = d->keyOf(i);
        if (isCommentEntryKey(key))
            text.append(d->valueOf(i));
        else
            PLGrammar::appendKeyValueLine(text, key, d->valueOf(i));
        text.append(QLatin1Char('\n'));
    }
    text += QLatin1Char('\n');
}

int CPLSection::getSectionName(QString* name, bool raw) const
{
    if (!name)
        return PL_INVALID_ARGUMENT;
    *name = raw ? d->name : withoutInlineComment(d->name).toString();
    return PL_SUCCESS;
}

int CPLSection::setSectionName(const QString& name)
{
    // A name is stored raw, its comment included: a value's rules.
    if (breaksFile(name, TextRole::Value))
        return PL_INVALID_ARGUMENT;
    d->name = name;
    return PL_SUCCESS;
}

int CPLSection::getSectionKey(QString* key) const
{
    if (!key)
        return PL_INVALID_ARGUMENT;
    *key = d->key;
    return PL_SUCCESS;
}

void CPLSection::setLoadedHeader(const QString& key, const QString& name)
{
    d->key = key;
    d->name = name;
}

int CPLSection::setSectionKey(const QString& key)
{
    if (key.isNull() || breaksFile(key, TextRole::SectionKey))
        return PL_INVALID_ARGUMENT;
    d->key = key;
    return PL_SUCCESS;
}

int CPLSection::addKeyValue(const QString& key, const QString& value)
{
    if (key.isEmpty())
        return PL_EMPTY_KEY;
    if (breaksFile(key, TextRole::Key) || breaksFile(value, TextRole::Value))
        return PL_INVALID_ARGUMENT;
    const int slot = d->find(key);
    if (slot >= 0) {
        d->setValue(slot, value);
        return PL_SUCCESS;
    }
    CPLSectionData& data = *d;
    data.appendEntry(key, data.store(key), data.store(value), true);
    ++data.lineCount;
    return PL_SUCCESS;
}

void CPLSection::appendLoadedEntry(const QString& key, const QString& value)
{
    CPLSectionData& data = *d;
    data.appendEntry(key, data.store(key), data.store(value), true);
    ++data.lineCount;
}

int CPLSection::getValue(const QString& key, QString* value) const
{
    if (!value || key.isEmpty())
        return PL_NULL_ARGUMENT;
    const int slot = d->find(key);
    if (slot < 0)
        return PL_KEY_NOT_FOUND;
    assignText(value, withoutInlineComment(d->view(d->slots.at(slot).value)));
    return PL_SUCCESS;
}

int CPLSection::getRawValue(const QString& key, QString* value) const
{
    if (!value)
        return PL_NULL_ARGUMENT;
    const int slot = d->find(key);
    if (slot < 0)
        return PL_KEY_NOT_FOUND;
    assignText(value, d->view(d->slots.at(slot).value));
    return PL_SUCCESS;
}

int CPLSection::setValue(const QString& key, const QString& value)
{
    if (breaksFile(value, TextRole::Value))
        return PL_INVALID_ARGUMENT;
    const int slot = d->find(key);
    if (slot < 0)
        return PL_KEY_NOT_FOUND;
    return setStored(key, slot,
                     PLGrammar::valueKeepingComment(d->view(d->slots.at(slot).value), value));
}

int CPLSection::setRawValue(const QString& key, const QString& value)
{
    if (breaksFile(value, TextRole::Value))
        return PL_INVALID_ARGUMENT;
    const int slot = d->find(key);
    if (slot < 0)
        return PL_KEY_NOT_FOUND;
    return setStored(key, slot, value);
}

int CPLSection::setStored(const QString& key, int slot, const QString& stored)
{
    // A comment entry's text is written as a line of its own.
    if (isCommentEntryKey(key) && breaksFile(stored, TextRole::Comment))
        return PL_INVALID_ARGUMENT;
    d->setValue(slot, stored);
    return PL_SUCCESS;
}

bool CPLSection::isKeyPresent(const QString& key) const
{
    return d->find(key) >= 0;
}

QString CPLSection::operator[](const QString& key) const
{
    QString value;
    return getValue(key, &value) == PL_SUCCESS ? value : QString();
}

QString CPLSection::operator[](int position) const
{
    QString key;
    return getKey(position, &key) == PL_SUCCESS ? (*this)[key] : QString();
}

int CPLSection::getKey(int position, QString* key) const
{
    if (position < 0 || position >= d->entries.size())
        return PL_INVALID_ARGUMENT;
    if (!key)
        return PL_NULL_ARGUMENT;
    // Past the key/value entries, a position names the entry at that index of all entries.
    const int entry = position < d->keyValueCount() ? d->keyValueEntry(position) : position;
    *key = d->keyOf(entry).toString();
    return PL_SUCCESS;
}

int CPLSection::getKeyValuePairCount(int* count) const
{
    if (!count)
        return PL_NULL_ARGUMENT;
    *count = d->keyValueCount();
    return PL_SUCCESS;
}

int CPLSection::count() const
{
    return d->keyValueCount();
}

int CPLSection::getKeyList(QStringList* keys) const
{
    if (!keys)
        return PL_NULL_ARGUMENT;
    *keys = d->keyValueTexts([this](int entry) { return d->keyOf(entry); });
    return PL_SUCCESS;
}

int CPLSection::getValueList(QStringList* values) const
{
    if (!values)
        return PL_NULL_ARGUMENT;
    *values
        = d->keyValueTexts([this](int entry) { return withoutInlineComment(d->valueOf(entry)); });
    return PL_SUCCESS;
}

int CPLSection::getRawValueList(QStringList* values) const
{
    if (!values)
        return PL_NULL_ARGUMENT;
    *values = d->keyValueTexts([this](int entry) { return d->valueOf(entry); });
    return PL_SUCCESS;
}

int CPLSection::getKeylistFromKeyAndSubkey(const QString& key, const QString& subkey,
                                           QStringList* keys) const
{
    if (key.isEmpty() || !keys)
        return PL_NULL_ARGUMENT;
    for (int position = 0; position < d->keyValueCount(); ++position) {
        const QStringView candidate = d->keyOf(d->keyValueEntry(position));
        if (candidate.startsWith(key, Qt::CaseInsensitive)
            && (subkey.isNull() || candidate.contains(subkey, Qt::CaseInsensitive)))
            keys->append(candidate.toString());
    }
    return PL_SUCCESS;
}

int CPLSection::getMVIAngle(double* angle) const
{
    const QString& key = isKeyPresent(PLConstants::MOUSE_SPINNER_ANGLE)
        ? PLConstants::MOUSE_SPINNER_ANGLE
        : OLD_MOUSE_SPINNER_ANGLE;
    return getValue(key, angle);
}

template<typename T> int CPLSection::getNumber(const QString& key, T* value) const
{
    if (!value)
        return PL_NULL_ARGUMENT;
    QString text;
    const int status = getValue(key, &text);
    if (status == PL_SUCCESS)
        *value = numberFromText<T>(text);
    return status;
}

int CPLSection::getValue(const QString& key, int* value) const
{
    return getNumber(key, value);
}
int CPLSection::getValue(const QString& key, long* value) const
{
    return getNumber(key, value);
}
int CPLSection::getValue(const QString& key, short* value) const
{
    return getNumber(key, value);
}
int CPLSection::getValue(const QString& key, float* value) const
{
    return getNumber(key, value);
}
int CPLSection::getValue(const QString& key, double* value) const
{
    return getNumber(key, value);
}

int CPLSection::setValue(const QString& key, int value)
{
    return setValue(key, textFromNumber(long(value)));
}
int CPLSection::setValue(const QString& key, long value)
{
    return setValue(key, textFromNumber(value));
}
int CPLSection::setValue(const QString& key, short value)
{
    return setValue(key, textFromNumber(long(value)));
}
int CPLSection::setValue(const QString& key, float value)
{
    return setValue(key, textFromNumber(double(value)));
}
int CPLSection::setValue(const QString& key, double value)
{
    return setValue(key, textFromNumber(value));
}

QStringList CPLSection::getEntryKeys() const
{
    QStringList keys;
    keys.reserve(d->entries.size());
    for (int entry = 0; entry < d->entries.size(); ++entry)
        keys.append(getEntryKey(entry));
    return keys;
}

int CPLSection::getEntryCount() const
{
    return d->entries.size();
}

QString CPLSection::getEntryKey(int index) const
{
    return index < 0 || index >= d->entries.size() ? QString() : d->keyOf(index).toString();
}

QString CPLSection::getEntryValue(int index, bool raw) const
{
    if (index < 0 || index >= d->entries.size())
        return QString();
    const QStringView value = d->ownValueOf(index);
    return (raw ? value : withoutInlineComment(value)).toString();
}

bool CPLSection::isCommentKey(const QString& key)
{
    return isCommentEntryKey(key);
}

CPLSection::TextFault CPLSection::textFault(const QString& text, TextRole role)
{
    // One pass finds the characters that matter; the faults are then told in their order.
    bool lineBreak = false, nul = false, notLatin1 = false, colon = false, hash = false;
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\n':
        case '\r': lineBreak = true; break;
        case 0: nul = true; break;
        case ':': colon = true; break;
        case '#': hash = true; break;
        default: notLatin1 = notLatin1 || c.unicode() > 0xff;
        }
    }
    if (lineBreak)
        return TextFault::LineBreak;
    if (nul)
        return TextFault::Nul;
    if (notLatin1)
        return TextFault::NotLatin1;
    const bool isKey = role == TextRole::Key || role == TextRole::SectionKey;
    if (isKey && text.isEmpty())
        return TextFault::Empty;
    if (isKey && colon)
        return TextFault::Colon;
    if (hash && (isKey || role == TextRole::SectionName))
        return TextFault::Hash;
    const bool startsWithSpace = !text.isEmpty() && text.front().isSpace();
    if (role == TextRole::Key) {
        // A key begins its line: the line must read as the key line it is.
        const QChar* begin = text.constData();
        if (PLGrammar::isHeaderLine(PLText::Span<QChar> { begin, begin + text.size() }))
            return TextFault::HeaderStart;
        if (isCommentKey(text))
            return TextFault::CommentKey;
        if (startsWithSpace)
            return TextFault::ShiftedKey;
    }
    if (role == TextRole::Comment) {
        const QString trimmed = text.trimmed();
        if (!trimmed.isEmpty() && trimmed.front() != QLatin1Char('#'))
            return TextFault::NotComment;
    }
    if (startsWithSpace || (!text.isEmpty() && text.back().isSpace()))
        return TextFault::OuterWhiteSpace;
    return TextFault::None;
}

QString CPLSection::textFaultText(const QString& text, TextRole role)
{
    const QString what = role == TextRole::Value ? QStringLiteral("the value")
        : role == TextRole::Key                  ? QStringLiteral("the key")
        : role == TextRole::SectionName          ? QStringLiteral("the section name")
        : role == TextRole::Comment              ? QStringLiteral("the comment")
                                                 : QStringLiteral("the section key");
    const QString named = what + QLatin1String(" \"") + text + QLatin1Char('"');
    switch (textFault(text, role)) {
    case TextFault::None:
        return QString();
    case TextFault::LineBreak:
        // Not quoted: a line break cannot be shown in a one-line report.
        return what + QLatin1String(" holds a line break");
    case TextFault::Nul:
        return what + QLatin1String(" holds a NUL character, which ends the text of a file");
    case TextFault::NotLatin1:
        return named + QLatin1String(" holds characters outside Latin-1");
    case TextFault::OuterWhiteSpace:
        return named + QLatin1String(" begins or ends with white space, which reading drops");
    case TextFault::Empty:
        return what + QLatin1String(" is empty");
    case TextFault::Colon:
        return named + QLatin1String(" holds a colon, which ends a key");
    case TextFault::Hash:
        return named + QLatin1String(" holds a \"#\", which starts a comment");
    case TextFault::HeaderStart:
        return named
            + QLatin1String(" begins with \"***\" (after any blanks), which starts a section "
                            "header");
    case TextFault::CommentKey:
        return named + QLatin1String(" names a comment line");
    case TextFault::ShiftedKey:
        return named
            + QLatin1String(" begins with white space, which moves the cut between key and value");
    case TextFault::NotComment:
        return named + QLatin1String(" does not begin with \"#\", which a comment line does");
    }
    return QString();
}

bool CPLSection::breaksFile(const QString& text, TextRole role)
{
    switch (textFault(text, role)) {
    case TextFault::None:
    case TextFault::Empty:
        return false;
    case TextFault::OuterWhiteSpace:
        // A key or section key is looked up as given, and read back trimmed.
        return role == TextRole::Key || role == TextRole::SectionKey;
    default:
        return true;
    }
}

QList<CPLLoadWarning> CPLSection::getLoadWarnings() const
{
    QList<CPLLoadWarning> warnings;
    for (const CPLSectionData::Irregularity& irregular : qAsConst(d->irregular))
    {
        warnings.append(CPLLoadWarning(irregular.kind, irregular.firstLine, irregular.count, d->key,
                                       irregular.detail));
        warnings.last().setRelatedLine(irregular.relatedLine);
    }
    return warnings;
}

QStringList CPLSection::getEntryValues(bool raw) const
{
    QStringList values;
    values.reserve(d->entries.size());
    for (int entry = 0; entry < d->entries.size(); ++entry)
        values.append(getEntryValue(entry, raw));
    return values;
}
