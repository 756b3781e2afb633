#include "FuzzChecks.h"

#include "PLAnalyzedClickInfo.h"
#include "PLBkgSummaryInfo.h"
#include "PLCameraInfo.h"
#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLFileEditor.h"
#include "PLLabelDataSet.h"
#include "PLOptPropInfo.h"
#include "PLPaths.h"
#include "PLPreferenceKeyList.h"
#include "PLSection.h"
#include "PLSectionScanner.h"
#include "PLSequenceInfo.h"
#include "PLSettingsFileWrapper.h"
#include "PLSpectralWrapper.h"
#include "PLStatus.h"

#include <QBuffer>
#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>

namespace OvFuzz {

namespace {

using Block = std::unique_ptr<char, decltype(&std::free)>;

Block own(char* block)
{
    return Block(block, &std::free);
}

// A header line: its first token, after blanks and tabs, begins with "***".
bool isHeaderLine(const char* line)
{
    while (*line == ' ' || *line == '\t')
        ++line;
    return line[0] == '*' && line[1] == '*' && line[2] == '*';
}

std::string at(const char* what, long offset)
{
    return std::string(what) + " (at offset " + std::to_string(offset) + ")";
}

// The offset of the first header line of a text, or -1.
long firstHeaderOffset(const std::string& text)
{
    for (size_t start = 0; start < text.size();) {
        if (isHeaderLine(text.c_str() + start))
            return long(start);
        const size_t lf = text.find('\n', start);
        if (lf == std::string::npos)
            break;
        start = lf + 1;
    }
    return -1;
}

std::string checkLines(const char* buffer, const std::string& content)
{
    const long length = long(content.size());
    std::string joined;
    std::string firstLine;
    bool previousHadLineFeed = true;
    long position = 0;
    for (;;) {
        const long before = position;
        const Block line = own(readLine(buffer, &position));
        if (!line) {
            if (position != before)
                return at("readLine() moved the position without returning a line", before);
            break;
        }
        if (!previousHadLineFeed)
            return at("readLine() returned a line after a line without a line feed", before);
        if (position <= before || position > length + 1)
            return at("readLine() left the position outside (previous, length + 1]", before);
        const size_t size = std::strlen(line.get());
        const char* lf = static_cast<const char*>(std::memchr(line.get(), '\n', size));
        if (lf && lf != line.get() + size - 1)
            return at("readLine() returned a line feed inside a line", before);
        previousHadLineFeed = lf != nullptr;
        // A last line without a line feed moves the position past the terminating NUL too.
        if (position - before != long(size) + (lf ? 0 : 1))
            return at("readLine() moved the position by other than the line's size", before);
        if (before == 0)
            firstLine = line.get();
        joined += line.get();
    }
    if (joined != content)
        return "the lines of readLine() do not make up the buffer";

    const Block unpositioned = own(readLine(buffer, nullptr));
    if ((unpositioned ? std::string(unpositioned.get()) : std::string()) != firstLine
        || (!unpositioned && !content.empty()))
        return "readLine() without a position did not return the first line";
    return std::string();
}

std::string checkSections(const char* buffer, const std::string& content)
{
    const long length = long(content.size());
    std::string joined;
    std::string firstSection;
    long position = 0;
    for (;;) {
        const long before = position;
        const Block section = own(getNextSection(buffer, &position));
        if (!section) {
            const bool unchanged = position == before;
            const bool atEnd = position == length || position == length + 1;
            if (before >= length ? !unchanged : !atEnd)
                return at("getNextSection() returned null and left the position off the end",
                          before);
            break;
        }
        if (position <= before || position > length + 1)
            return at("getNextSection() left the position outside (previous, length + 1]", before);
        if (!isHeaderLine(section.get()))
            return at("a section does not begin with a header line", before);
        for (const char* lf = std::strchr(section.get(), '\n'); lf && lf[1];
             lf = std::strchr(lf + 1, '\n')) {
            if (isHeaderLine(lf + 1))
                return at("a section holds a second header line", before);
        }
        if (joined.empty())
            firstSection = section.get();
        joined += section.get();
    }
    const long firstHeader = firstHeaderOffset(content);
    if (joined != (firstHeader < 0 ? std::string() : content.substr(size_t(firstHeader))))
        return "the sections do not make up the buffer from its first header line on";

    const Block unpositioned = own(getNextSection(buffer, nullptr));
    if ((unpositioned ? std::string(unpositioned.get()) : std::string()) != firstSection
        || (!unpositioned && firstHeader >= 0))
        return "getNextSection() without a position did not return the first section";
    return std::string();
}

// The offset of the first difference of two texts, for messages.
int firstDifference(const QString& a, const QString& b)
{
    const int common = std::min(a.size(), b.size());
    int i = 0;
    while (i < common && a.at(i) == b.at(i))
        ++i;
    return i;
}

// The bytes writeSpectralDocument() writes for `document`; empty when it fails.
QByteArray spectralBytes(const _tagSSpectralDocument& document)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CPLSpectralWrapper writer;
    if (writer.createSpectralXMLDocument(&buffer) != PL_SUCCESS
        || writer.writeSpectralDocument(document) != PL_SUCCESS)
        return QByteArray();
    return buffer.data();
}

// Reads `bytes` whole: the status of the load, or of getSpectralDocument() after it.
int readSpectral(const QByteArray& bytes, _tagSSpectralDocument* document)
{
    CPLSpectralWrapper reader;
    const int status = reader.loadSpectralXMLData(bytes);
    return status == PL_SUCCESS ? reader.getSpectralDocument(document) : status;
}

// Whether QXmlStreamReader reads `bytes` to the end without an error.
bool wellFormed(const QByteArray& bytes)
{
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

void dropMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    // Fatal messages stop the program right after the handler; say why first.
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}

} // namespace

std::string checkScanner(const uint8_t* data, size_t size)
{
    // std::string keeps a NUL after its content; bytes after an inner NUL are never read.
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::string content(input.c_str());
    std::string failure = checkLines(input.c_str(), content);
    if (failure.empty())
        failure = checkSections(input.c_str(), content);
    return failure;
}

namespace {

// A load of `bytes` that gives no warning must save them back exactly.
std::string checkSavesBack(const QByteArray& bytes, const char* what)
{
    CPLClickInfo document;
    if (document.loadClickInfoBytes(bytes.constData(), bytes.size(), QStringLiteral("fuzz"))
            != PL_SUCCESS
        || !document.getLoadWarnings().isEmpty())
        return std::string();
    const QByteArray saved = document.getClickInfoData().toLatin1();
    if (saved == bytes)
        return std::string();
    return std::string("a load of ") + what
        + " without warnings did not save back the bytes it read: they differ at offset "
        + std::to_string(firstDifference(QString::fromLatin1(bytes), QString::fromLatin1(saved)));
}

// The bytes that make a file differ from the written form in one place.
const char MUTATION_BYTES[]
    = { ' ', '\t', '\r', '\n', ':', '#', '*', '\v', '\x85', '\xa0', 'x', '\0' };

// `text` with one byte inserted, replaced or removed, as `choice` picks.
QByteArray mutated(QByteArray text, quint64 choice)
{
    const int position = int(choice % quint64(text.size() + 1));
    choice /= quint64(text.size() + 1);
    const char byte = MUTATION_BYTES[choice % sizeof MUTATION_BYTES];
    switch ((choice / sizeof MUTATION_BYTES) % 3) {
    case 0:
        return text.insert(position, byte);
    case 1:
        return position < text.size() ? text.replace(position, 1, &byte, 1) : text;
    default:
        return position < text.size() ? text.remove(position, 1) : text;
    }
}

} // namespace

std::string checkClickInfo(const uint8_t* data, size_t size)
{
    const QByteArray input
        = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    std::string failure = checkSavesBack(input, "the input");
    if (!failure.empty())
        return failure;

    // Arbitrary bytes are seldom free of warnings; the written form of what they hold is, and
    // so is a file written by hand that differs from it in one place only unless that place
    // is warned of. So the written form is changed in a few places picked from the input.
    CPLClickInfo document;
    document.loadClickInfoBytes(input.constData(), input.size(), QStringLiteral("fuzz"));
    const QByteArray written = document.getClickInfoData().toLatin1();
    quint64 seed = 1469598103934665603ull;
    for (const char c : input)
        seed = (seed ^ uchar(c)) * 1099511628211ull;
    for (int round = 0; round < 8 && failure.empty(); ++round) {
        seed = seed * 6364136223846793005ull + 1442695040888963407ull;
        failure
            = checkSavesBack(mutated(written, seed >> 16), "the written form changed in one place");
    }
    return failure;
}

namespace {

// The line ends in `bytes`: LF, CR LF and lone CR count one each.
int lineEnds(const QByteArray& bytes)
{
    int count = 0;
    for (int i = 0; i < bytes.size(); ++i)
        count += bytes[i] == '\n'
            || (bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n'));
    return count;
}

// The parts of `a` and `b` that differ, once their common start and end are taken off.
std::pair<QByteArray, QByteArray> differingParts(const QByteArray& a, const QByteArray& b)
{
    int start = 0;
    while (start < a.size() && start < b.size() && a[start] == b[start])
        ++start;
    int end = 0;
    while (end < a.size() - start && end < b.size() - start
           && a[a.size() - 1 - end] == b[b.size() - 1 - end])
        ++end;
    return { a.mid(start, a.size() - start - end), b.mid(start, b.size() - start - end) };
}

// Whether every section of `before` but `edited` holds in `after` the same lines, and the
// section `edited` the same lines but those of `key`; empty lines aside.
std::string checkOthersKept(const CPLClickInfo& before, const CPLClickInfo& after,
                            const QString& edited, const QString& key)
{
    for (const QString& sectionKey : before.getSectionKeys()) {
        const CPLSection* old = before[sectionKey];
        const CPLSection* now = after[sectionKey];
        if (!now)
            return "the edit lost section \"" + sectionKey.toStdString() + "\"";
        const bool isEdited = sectionKey.compare(edited, Qt::CaseInsensitive) == 0;
        const auto kept = [&](const CPLSection* section) {
            QStringList lines;
            const QStringList keys = section->getEntryKeys();
            const QStringList values = section->getEntryValues(true);
            for (int i = 0; i < keys.size(); ++i) {
                // Empty lines are layout: one before a removed last line ends the body then.
                const bool emptyLine = CPLSection::isCommentKey(keys[i]) && values[i].isEmpty();
                if (!emptyLine && (!isEdited || keys[i].compare(key, Qt::CaseInsensitive) != 0))
                    lines.append((CPLSection::isCommentKey(keys[i]) ? QString() : keys[i])
                                 + QLatin1Char('=') + values[i]);
            }
            return lines;
        };
        if (kept(old) != kept(now))
            return "the edit changed other lines of section \"" + sectionKey.toStdString() + "\"";
    }
    return std::string();
}

} // namespace

// The in-place editor: the first byte picks the edit, the second the section and key, the
// next line (at most 40 bytes) is the value, the rest the file's bytes.
std::string checkEditor(const uint8_t* data, size_t size)
{
    if (size < 2)
        return std::string();
    const int edit = data[0] % 4;
    const int pick = data[1];
    const QByteArray rest(reinterpret_cast<const char*>(data) + 2, int(size - 2));
    const int lf = rest.indexOf('\n');
    const QString value = QString::fromLatin1(rest.left(lf < 0 ? 0 : qMin(lf, 40)));
    const QByteArray bytes = lf < 0 ? rest : rest.mid(lf + 1);

    CPLFileEditor editor(QStringLiteral("fuzz.txt"));
    if (editor.openBytes(bytes) != PL_SUCCESS)
        return std::string();
    const CPLClickInfo& before = editor.document();
    const QStringList sections = before.getSectionKeys();
    if (sections.isEmpty() && edit != 3)
        return std::string();
    const QString sectionKey
        = edit == 3 ? QStringLiteral("New Section") : sections[pick % sections.size()];
    QStringList keys;
    if (const CPLSection* section = before[sectionKey]) {
        for (const QString& key : section->getEntryKeys())
            if (!CPLSection::isCommentKey(key))
                keys.append(key);
    }
    if (keys.isEmpty() && (edit == 0 || edit == 2))
        return std::string();
    const QString key
        = edit == 1 || edit == 3 ? QStringLiteral("New Key") : keys[pick % keys.size()];

    CPLClickInfo old;
    old.loadClickInfoBytes(bytes.constData(), bytes.size(), QString());
    int status = PL_SUCCESS;
    switch (edit) {
    case 0:
        status = editor.setValue(sectionKey, key, value);
        break;
    case 2:
        status = editor.removeKey(sectionKey, key);
        break;
    default:
        status = editor.addKeyValue(sectionKey, key, value);
        break;
    }
    const QByteArray edited = editor.editedBytes();
    if (status != PL_SUCCESS)
        return edited == bytes ? std::string() : "a refused edit changed the bytes";

    CPLClickInfo after;
    if (after.loadClickInfoBytes(edited.constData(), edited.size(), QString()) != PL_SUCCESS)
        return "the edited bytes do not load";
    // The values of the key's lines, found through the entries: a key may be empty.
    QStringList read;
    if (const CPLSection* section = after[sectionKey]) {
        const QStringList keys = section->getEntryKeys();
        const QStringList values = section->getEntryValues(false);
        for (int i = 0; i < keys.size(); ++i)
            if (keys[i].compare(key, Qt::CaseInsensitive) == 0)
                read.append(values[i]);
    }
    const QString plain = value.trimmed().section(QLatin1Char('#'), 0, 0).trimmed();
    if (edit != 2 && read != QStringList { plain })
        return "the edited key does not read back the new value";
    if (edit == 2 && !read.isEmpty())
        return "a removed key is still read";
    if (edit != 3) {
        const auto parts = differingParts(bytes, edited);
        const int allowed = edit == 0 ? 0 : 1;
        if (lineEnds(parts.first) > allowed || lineEnds(parts.second) > allowed)
            return "the edit changed more than its line";
    }
    return checkOthersKept(old, after, sectionKey, key);
}

std::string checkObtainValue(const uint8_t* data, size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    const char* lf = static_cast<const char*>(std::memchr(bytes, '\n', size));
    const size_t lineSize = lf ? size_t(lf - bytes) : size;
    const QString key = QString::fromLatin1(bytes, int(std::min<size_t>(lineSize, 64)));
    const std::string buffer = lf ? std::string(lf + 1, bytes + size) : std::string();

    QString value = QStringLiteral("unchanged");
    const int status = CPLClickInfo::obtainValueFromClickInfoFile(buffer.c_str(), key, &value);
    const bool holdsKey
        = QString::fromLatin1(buffer.c_str()).contains(key + QLatin1Char(':'), Qt::CaseInsensitive);
    switch (status) {
    case PL_SUCCESS:
        if (value.contains(QLatin1Char('\n')))
            return "the value found holds a line feed";
        if (value != value.trimmed())
            return "the value found is not trimmed";
        if (!holdsKey)
            return "a value was found although the text does not hold the key and a colon";
        return std::string();
    case PL_KEY_NOT_FOUND:
        if (!value.isEmpty())
            return "the result was not emptied when the key was not found";
        if (key.isEmpty())
            return "an empty key was searched for";
        return std::string();
    case PL_NULL_ARGUMENT:
        if (!key.isEmpty())
            return "a non-empty key was refused as missing";
        return std::string();
    default:
        return "unexpected status " + std::to_string(status);
    }
}

namespace {

// The input as Latin-1 text, split at its first line feed.
QPair<QString, QString> firstLineAndRest(const uint8_t* data, size_t size)
{
    const QString text = QString::fromLatin1(reinterpret_cast<const char*>(data),
                                             int(std::min<size_t>(size, 1 << 20)));
    const int lf = text.indexOf(QLatin1Char('\n'));
    return lf < 0 ? qMakePair(text, QString()) : qMakePair(text.left(lf), text.mid(lf + 1));
}

std::string checkLoadedKey(CPLPreferenceKey& key, const QString& loadedFrom)
{
    QString saved;
    key.getSaveBuffer(&saved);
    if (!saved.isEmpty() && (!saved.endsWith(QLatin1Char(';')) || !loadedFrom.contains(saved)))
        return "a loaded key does not save to a part of its text that ends with \";\"";
    if (saved.contains(QLatin1Char('\n')))
        return "a loaded key holds a line feed";
    CPLPreferenceKey again;
    again.loadData(saved);
    QString savedAgain;
    again.getSaveBuffer(&savedAgain);
    if (savedAgain != saved)
        return "a key's saved text does not load back to the same key";
    return std::string();
}

// The section text of a list whose slots all hold keys: a header, one line per slot, an empty
// line, all ended by CR LF.
std::string checkSavedList(const CPLPreferenceKeyList& list, const QStringList& names)
{
    CPLLabelDataSet labels;
    if (labels.addLabelSet(QStringLiteral("Fuzz"), names) != PL_SUCCESS)
        return std::string();
    labels.selectLabelSet(QStringLiteral("Fuzz"));
    QString text;
    if (list.saveData(&labels, &text) != PL_SUCCESS)
        return "a list with a valid label set was not saved";
    if (!text.startsWith(QStringLiteral("*** User Label Name Set:\tFuzz\r\n"))
        || !text.endsWith(QStringLiteral("\r\n\r\n")))
        return "the saved list does not begin with its header or end with an empty line";
    if (text.count(QStringLiteral("\r\n")) != list.getCount() + 2)
        return "the saved list does not have one line per slot";
    return std::string();
}

} // namespace

std::string checkPreferenceKeys(const uint8_t* data, size_t size)
{
    const auto input = firstLineAndRest(data, size);
    QStringList names = input.first.split(QLatin1Char(';')).mid(0, 16);
    CPLPreferenceKeyList list(names.size());
    QList<CPLPreferenceKey*> before;
    for (int i = 0; i < list.getCount(); ++i)
        before.append(list[i]);
    if (list.loadData(input.second, &names) != PL_SUCCESS)
        return "loadData() failed";
    int replaced = 0;
    for (int i = 0; i < list.getCount(); ++i) {
        if (list[i] == before[i])
            continue;
        ++replaced;
        const std::string failure = checkLoadedKey(*list[i], input.second);
        if (!failure.empty())
            return failure;
    }
    if (replaced != list.getLoadedKeyCount())
        return "the loaded-key count is not the number of keys replaced";
    return checkSavedList(list, names);
}

namespace {

std::string checkMenuNames(CPLSettingsFileWrapper& settings, const QString& filter)
{
    const QStringList menuNames = settings.getMenuNames();
    if (menuNames.size() > settings.getSections().size())
        return "more menu names than sections";
    if (settings.getSections(filter).size() > settings.getSections().size())
        return "a filter gave more sections than none";
    for (const QString& menuName : menuNames) {
        if (!settings.getSectionByMenuName(menuName))
            return "a listed menu name is not found by getSectionByMenuName()";
        if (settings.isUnique(menuName))
            return "a listed menu name is unique";
        settings.getFileNameForMenuName(menuName, filter);
    }
    if (!settings.isUsingSectionNameForMenuName()
        && menuNames.contains(settings.getNextAutoMenuName()))
        return "the next automatic menu name is taken";
    settings.getNextAutoMenuName(filter);
    return std::string();
}

} // namespace

std::string checkSettings(const uint8_t* data, size_t size)
{
    const auto input = firstLineAndRest(data, size);
    CPLSettingsFileWrapper settings(QStringLiteral("ROI File"), QStringLiteral("Setting"));
    settings.loadTextBuffer(input.second);
    for (const bool sectionNames : { false, true }) {
        settings.setUseSectionNameForMenuName(sectionNames);
        const std::string failure = checkMenuNames(settings, input.first);
        if (!failure.empty())
            return failure;
    }
    static const QRegularExpression nextName(QStringLiteral("^ROI File [1-9][0-9]*$"));
    const QString next = settings.getNextAvailableSectionName();
    if (!nextName.match(next).hasMatch())
        return "the next section name is not the tag, a blank and a positive number";
    if (settings.addSection(QStringLiteral("ROI File"), QStringLiteral("m"), QStringLiteral("f"))
            != PL_SUCCESS
        || !settings.isSectionPresent(next))
        return "a section named by getNextAvailableSectionName() cannot be added";
    // The added section may not be the wrapper's: a key that differs from the new name only in
    // case ("ROi File 1") keeps it out, and does not hold the tag, whose case matters.
    const int status = settings.setFileNameForMenuName(QStringLiteral("m"), QStringLiteral("g"));
    const bool none = settings.getSections().isEmpty();
    if (status != (none ? PL_NOTHING_TO_WORK_ON : PL_SUCCESS) && status != PL_KEY_NOT_FOUND)
        return "setFileNameForMenuName() failed with " + std::to_string(status);
    return std::string();
}

std::string checkSpectral(const uint8_t* data, size_t size)
{
    if (size > size_t(std::numeric_limits<int>::max()))
        return std::string();
    _tagSSpectralDocument document;
    const int status
        = readSpectral(QByteArray(reinterpret_cast<const char*>(data), int(size)), &document);
    if (status != PL_SUCCESS && status != PL_MALFORMED_XML && status != PL_KEY_NOT_FOUND)
        return "unexpected status " + std::to_string(status) + " reading the input";
    if (status != PL_SUCCESS)
        return std::string();

    // What was read is written so that it reads back the same (tabs and line breaks in
    // attributes as character references, NaN and the infinities in their own forms): the
    // writes agree from the first on.
    QByteArray previous;
    for (int round = 0; round < 3; ++round) {
        const QByteArray written = spectralBytes(document);
        if (written.isEmpty())
            return "a document read could not be written";
        if (!wellFormed(written))
            return "the document written is not well-formed XML";
        if (round > 0 && written != previous)
            return "a document read back is written differently: the writes differ at offset "
                + std::to_string(firstDifference(QString::fromLatin1(previous),
                                                 QString::fromLatin1(written)));
        const int again = readSpectral(written, &document);
        if (again != PL_SUCCESS)
            return "the document written does not read again, status " + std::to_string(again);
        previous = written;
    }
    return std::string();
}

namespace {

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
}

// Whether extension text merges where it cannot cut into the base file's lines: the text as
// the loader reads it has no "*** ", or its first one begins a line and a main section header
// is present (otherwise the place of insertion is the one of the text before a main header
// was put in front of it, which may lie inside a line).
bool mergesBetweenLines(const QByteArray& base)
{
    QString text = QString::fromLatin1(base.constData(), base.size()); // NULs included
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    text = text.trimmed();
    if (text.startsWith(QChar(0xef)))
        return false; // a byte order mark is skipped; leave such texts out
    const int first = text.indexOf(QLatin1String("*** "));
    return first < 0
        || ((first == 0 || text.at(first - 1) == QLatin1Char('\n'))
            && text.contains(QLatin1String("*** Camera System Info:"), Qt::CaseInsensitive));
}

// The first key of `alone` that `merged` lacks, as "section/key"; empty when none.
std::string lostKey(const CPLCameraInfo& alone, const CPLCameraInfo& merged)
{
    for (const QString& sectionKey : alone.getSectionKeys()) {
        const CPLSection* section = alone[sectionKey];
        const CPLSection* into = merged[sectionKey];
        QStringList keys;
        section->getKeyList(&keys);
        for (const QString& key : qAsConst(keys)) {
            if (!into || !into->isKeyPresent(key))
                return QString(sectionKey + QLatin1Char('/') + key).toStdString();
        }
    }
    return std::string();
}

} // namespace

std::string checkCamera(const uint8_t* data, size_t size)
{
    static QTemporaryDir scratch;
    if (!scratch.isValid() || size > 1 << 20)
        return std::string();
    qputenv(OV_DATA_DIR_VARIABLE, scratch.filePath(QStringLiteral("data")).toLocal8Bit());
    const QList<QByteArray> parts
        = QByteArray(reinterpret_cast<const char*>(data), int(size)).split('\n');
    QList<QByteArray> files { QByteArray() };
    for (const QByteArray& line : parts) {
        if (line == "%%" && files.size() < 4)
            files.append(QByteArray());
        else
            files.last() += line + '\n';
    }
    QDir(scratch.path()).removeRecursively();
    QDir().mkpath(scratch.filePath(QStringLiteral("inst/config")));
    QDir().mkpath(scratch.filePath(QStringLiteral("alone")));
    writeFile(scratch.filePath(QStringLiteral("inst/CameraInfo.txt")), files.at(0));
    writeFile(scratch.filePath(QStringLiteral("alone/CameraInfo.txt")), files.at(0));
    for (int i = 1; i < files.size(); ++i) {
        QByteArray text = files.at(i);
        if (text.startsWith('+'))
            text = "*** Extension Info:\tE" + QByteArray::number(i) + "\nExtension name:\tE"
                + QByteArray::number(i)
                + "\nSystem Configuration:\tKORA 200\nConflicts with extensions:\t\n" + text.mid(1);
        writeFile(scratch.filePath(QStringLiteral("inst/config/e%1.cfg").arg(i)), text);
    }
    CPLCameraInfo alone;
    CPLCameraInfo merged;
    const int aloneStatus = alone.load(scratch.filePath(QStringLiteral("alone/CameraInfo.txt")));
    const int mergedStatus = merged.load(scratch.filePath(QStringLiteral("inst/CameraInfo.txt")));
    merged.loadCameraInfo(scratch.filePath(QStringLiteral("inst/CameraInfo.txt")));
    if (aloneStatus != PL_SUCCESS || !mergesBetweenLines(files.at(0)))
        return std::string();
    if (mergedStatus != PL_SUCCESS)
        return "the base file loads alone but not with its extensions: status "
            + std::to_string(mergedStatus);
    const std::string lost = lostKey(alone, merged);
    return lost.empty() ? std::string() : "the extensions lost the base key " + lost;
}

void silenceMessages()
{
    qInstallMessageHandler(dropMessage);
}

int runTarget(const char* target, Check check, const uint8_t* data, size_t size)
{
    const std::string failure = check(data, size);
    if (!failure.empty()) {
        std::fprintf(stderr, "%s: %s\n", target, failure.c_str());
        std::abort();
    }
    return 0;
}

namespace {

// Whether two fields of view are the same: as numbers when both read as numbers, else as
// text in any case.
bool sameField(const QString& a, const QString& b)
{
    bool aNumber = false;
    bool bNumber = false;
    const double x = a.toDouble(&aNumber);
    const double y = b.toDouble(&bNumber);
    return aNumber && bNumber ? x == y : a.compare(b, Qt::CaseInsensitive) == 0;
}

// Whether `entry` fits the acquisition `section` describes, by the rule of findBackground().
bool fits(const sBkgEntry& entry, const CPLSection& section, double tolerance)
{
    const bool fluorescent
        = section[QStringLiteral("Image Subtype")] == QLatin1String("fluorescent");
    return entry.m_bFluorescent == fluorescent
        && entry.m_iBinning == section[QStringLiteral("Binning Factor")].toInt()
        && sameField(entry.m_strFieldOfView, section[QStringLiteral("Field of View")])
        && entry.m_dExposure >= section[QStringLiteral("Luminescent Exposure (Seconds)")].toDouble()
        && std::fabs(entry.m_dTemperature
                     - section[QStringLiteral("Measured Temperature")].toDouble())
        <= tolerance + 1e-9;
}

CPLSection acquisitionSection(bool fluorescent)
{
    CPLSection section(QStringLiteral("luminescent image"), QStringLiteral("luminescent image"));
    section.addKeyValue(QStringLiteral("Image Subtype"),
                        fluorescent ? QStringLiteral("fluorescent") : QString());
    section.addKeyValue(QStringLiteral("Binning Factor"), QStringLiteral("4"));
    section.addKeyValue(QStringLiteral("Luminescent Exposure (Seconds)"), QStringLiteral("60"));
    section.addKeyValue(QStringLiteral("Field of View"), QStringLiteral("C"));
    section.addKeyValue(QStringLiteral("Measured Temperature"), QStringLiteral("-90"));
    return section;
}

std::string checkFind(const CPLBkgSummaryInfo& library, const QList<sBkgEntry>& entries)
{
    for (const bool fluorescent : { false, true }) {
        const CPLSection section = acquisitionSection(fluorescent);
        sBkgEntry found;
        QString reason;
        const int status = library.findBackground(section, &found, &reason);
        const auto fitting = std::find_if(entries.begin(), entries.end(), [&](const sBkgEntry& e) {
            return fits(e, section, PL_BKG_TEMPERATURE_TOLERANCE);
        });
        if (status == PL_NO_BACKGROUND_FITS) {
            if (fitting != entries.end())
                return "no background found, but " + fitting->m_strId.toStdString() + " fits";
            if (reason.isEmpty())
                return "no background found, and no reason given";
            continue;
        }
        if (status != PL_SUCCESS)
            return "findBackground() failed with " + std::to_string(status);
        if (!fits(found, section, PL_BKG_TEMPERATURE_TOLERANCE) || !entries.contains(found))
            return "the background found does not fit, or is not listed";
        for (const sBkgEntry& entry : entries) {
            if (fits(entry, section, PL_BKG_TEMPERATURE_TOLERANCE)
                && entry.m_dExposure < found.m_dExposure)
                return "a listed entry fits with a shorter exposure than the one found";
        }
    }
    return std::string();
}

std::string checkAddRemove(CPLBkgSummaryInfo& library)
{
    sBkgEntry entry;
    entry.m_bFluorescent = true;
    entry.m_iBinning = 2;
    entry.m_dExposure = 0.5;
    entry.m_strFieldOfView = QStringLiteral("B");
    entry.m_dTemperature = -90;
    entry.m_Acquired = QDateTime::fromSecsSinceEpoch(1790000000, Qt::UTC);
    QString id;
    int status = library.addEntry(entry, &id);
    // Only an ID beyond FL9999 may leave no free number: then the ID is taken.
    if (status == PL_INVALID_ARGUMENT && library.isSectionPresent(id))
        return std::string();
    if (status != PL_SUCCESS)
        return "addEntry() failed with " + std::to_string(status);
    sBkgEntry read;
    entry.m_strId = entry.m_strPathName = id;
    entry.m_strFileName = PLConstants::BACKGROUND_TIF_FILENAME;
    if (library.getEntry(id, &read) != PL_SUCCESS || read != entry)
        return "an added entry does not read back as given";
    status = library.removeEntry(id);
    if (status != PL_SUCCESS || library.isSectionPresent(id))
        return "an added entry cannot be removed";
    return std::string();
}

} // namespace

// Whether a key of the document cannot be written back as it was read (a line that begins
// with white space is cut at a shifted place, so its key may take the colon): such a document
// is not held to round trips, and a save refuses it.
bool holdsUnwritableKey(const CPLClickInfo& document)
{
    for (const QString& sectionKey : document.getSectionKeys()) {
        QStringList keys;
        document[sectionKey]->getKeyList(&keys);
        for (const QString& key : qAsConst(keys)) {
            if (CPLSection::breaksFile(key, CPLSection::TextRole::Key))
                return true;
        }
    }
    return false;
}

std::string checkBkg(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data),
                           int(std::min(size, size_t(1) << 20)));
    QTemporaryDir scratch;
    const QString first = scratch.filePath(QStringLiteral("first"));
    const QString second = scratch.filePath(QStringLiteral("second"));
    QDir().mkpath(first);
    QDir().mkpath(second);
    writeFile(first + QStringLiteral("/BkgSummary.txt"), input);
    writeFile(first + QStringLiteral("/SLindex.txt"), input);

    CPLBkgSummaryInfo library;
    if (library.load(first) != PL_SUCCESS)
        return std::string();
    if (library.getLoadWarnings().isEmpty() && library.getClickInfoData().toLatin1() != input)
        return "a summary loaded without warnings did not save back the bytes it read";
    QList<sBkgEntry> entries;
    library.getEntries(&entries);
    std::string failure = checkFind(library, entries);
    if (failure.empty())
        failure = checkAddRemove(library);
    if (!failure.empty())
        return failure;
    const int saved = library.save(second);
    // A save writes nothing of a document holding a key that would not read back as it stands
    // (cut at a shifted place, or read as a header or a comment line).
    if (holdsUnwritableKey(library))
        return saved == PL_INVALID_ARGUMENT && QDir(second).isEmpty()
            ? std::string()
            : "a library holding a key that cannot be written back was saved";
    if (saved != PL_SUCCESS)
        return "the library loaded cannot be saved";
    CPLBkgSummaryInfo reloaded;
    if (reloaded.load(second) != PL_SUCCESS)
        return "the library saved does not load";
    QList<sBkgEntry> again;
    reloaded.getEntries(&again);
    if (again != entries)
        return "the library saved lists other entries than it held";
    for (const QString& warning : reloaded.getLibraryWarnings()) {
        if (warning.contains(QLatin1String("index.txt")))
            return "the indexes saved disagree with the summary: " + warning.toStdString();
    }
    return std::string();
}

namespace {

// Whether `after` is `before` with one line changed, or with lines inserted in one place (an
// added key, an added section), lines split at LF.
bool changesOnePlace(const QByteArray& before, const QByteArray& after)
{
    const QList<QByteArray> a = before.split('\n');
    const QList<QByteArray> b = after.split('\n');
    int head = 0;
    while (head < a.size() && head < b.size() && a.at(head) == b.at(head))
        ++head;
    int tail = 0;
    while (tail < a.size() - head && tail < b.size() - head
           && a.at(a.size() - 1 - tail) == b.at(b.size() - 1 - tail))
        ++tail;
    // What is left of the old lines between the common head and tail: at most one line, or
    // blank lines only (a file of nothing but blanks becomes the new section).
    if (a.size() - head - tail <= 1)
        return true;
    for (int i = head; i < a.size() - tail; ++i) {
        if (!QString::fromLatin1(a.at(i)).trimmed().isEmpty())
            return false;
    }
    return true;
}

// The value `choice` makes for a setting of `type`: text that reads as that type.
QString settingText(CPLOptPropInfo::ValueType type, uint8_t choice)
{
    switch (type) {
    case CPLOptPropInfo::ValueType::Flag:
        return QString::number(choice % 2);
    case CPLOptPropInfo::ValueType::Real:
        return QString::number(choice / 8.0);
    case CPLOptPropInfo::ValueType::Integer:
        return QString::number(int(choice) - 100);
    case CPLOptPropInfo::ValueType::Text:
        break;
    }
    return QStringLiteral("Value ") + QString::number(choice);
}

void queryOptProp(const CPLOptPropInfo& info)
{
    for (int r = CPLOptPropInfo::Shared; r <= CPLOptPropInfo::Spim; ++r) {
        const auto reconstruction = static_cast<CPLOptPropInfo::Reconstruction>(r);
        info.getReconstructionParameters(reconstruction);
        for (int s = 0; s < CPLOptPropInfo::SettingCount; ++s)
            info.getSetting<QString>(static_cast<CPLOptPropInfo::Setting>(s), reconstruction);
    }
    info.getOpticalProperties();
    info.getMeasurementAutoRoi();
    info.getSubjectAutoRoi();
    info.getPlotSettings();
}

QTemporaryDir& scratchFolder()
{
    static QTemporaryDir scratch;
    return scratch;
}

} // namespace

std::string checkOptProp(const uint8_t* data, size_t size)
{
    if (size < 2 || size > 1 << 20 || !scratchFolder().isValid())
        return std::string();
    const auto setting
        = static_cast<CPLOptPropInfo::Setting>(data[0] % CPLOptPropInfo::SettingCount);
    const auto reconstruction
        = static_cast<CPLOptPropInfo::Reconstruction>((data[0] / CPLOptPropInfo::SettingCount) % 3);
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 2, int(size - 2));
    CPLOptPropInfo info;
    if (info.loadBytes(bytes, QStringLiteral("fuzz.txt")) != PL_SUCCESS)
        return std::string();
    queryOptProp(info);
    if (info.getLoadWarnings().isEmpty() && info.getClickInfoData().toLatin1() != bytes)
        return "a load without warnings did not save back the bytes it read";

    const QString text = settingText(CPLOptPropInfo::settingInfo(setting).type, data[1]);
    const int status = info.setSetting(setting, text, reconstruction);
    if (status != PL_SUCCESS) {
        if (status != PL_KEY_REPEATED && status != PL_INVALID_ARGUMENT)
            return "a setter failed with status " + std::to_string(status);
        return info.fileBytes() == bytes ? std::string() : "a refused setter changed the bytes";
    }
    const CPLOptPropValue<QString> read = info.getSetting<QString>(setting, reconstruction);
    if (!read.present || read.value != text)
        return "the value set does not read back: \"" + read.value.toStdString() + "\"";
    const QByteArray edited = info.fileBytes();
    if (!changesOnePlace(bytes, edited))
        return "the setter changed more than its line";
    const QString path = scratchFolder().filePath(QStringLiteral("UserPreferences.txt"));
    if (info.save(path) != PL_SUCCESS)
        return "the edited file cannot be saved";
    CPLOptPropInfo reread;
    if (reread.load(path) != PL_SUCCESS || reread.fileBytes() != edited)
        return "the saved file does not load back to the bytes saved";
    if (reread.getSetting<QString>(setting, reconstruction).value != text)
        return "the value set does not read back from the saved file";
    return std::string();
}

namespace {

void queryAnalysis(const CPLAnalyzedClickInfo& info)
{
    CPLAnalyzedClickInfo::Kind kind;
    CPLAnalyzedClickInfo::ImageMath math;
    CPLAnalyzedClickInfo::KineticOperation operation;
    QString a;
    QString b;
    bool flag;
    info.getKind(&kind);
    info.getImageMath(&math);
    info.getKinetic(&operation, &a);
    info.getSpectralUnmixing(&a, &b);
    info.getBackgroundClick(&a);
    info.getFolderOnDisk(&a);
    for (int c = 0; c <= int(CPLAnalyzedClickInfo::Correction::Rotated); ++c)
        info.getCorrection(static_cast<CPLAnalyzedClickInfo::Correction>(c), &flag);
}

// Sets the group `choice` picks and reads it back; an empty string when it reads back.
std::string setAndReadBack(CPLAnalyzedClickInfo& info, uint8_t choice)
{
    const QString value = QStringLiteral("C") + QString::number(choice);
    QString a;
    QString b;
    switch (choice % 5) {
    case 0: {
        CPLAnalyzedClickInfo::ImageMath math;
        math.operation = QStringLiteral("A-k*B");
        math.k = choice / 4.0;
        math.aClickNumber = value;
        CPLAnalyzedClickInfo::ImageMath read;
        return info.setImageMath(math) == PL_SUCCESS && info.getImageMath(&read) == PL_SUCCESS
                && read.k == math.k && read.aClickNumber == value
            ? std::string()
            : "image math does not read back";
    }
    case 1: {
        CPLAnalyzedClickInfo::KineticOperation operation;
        return info.setKinetic(CPLAnalyzedClickInfo::KineticOperation::Accumulated, value)
                    == PL_SUCCESS
                && info.getKinetic(&operation, &a) == PL_SUCCESS && a == value
            ? std::string()
            : "the kinetic operation does not read back";
    }
    case 2:
        return info.setSpectralUnmixing(value, value) == PL_SUCCESS
                && info.getSpectralUnmixing(&a, &b) == PL_SUCCESS && a == value && b == value
            ? std::string()
            : "the unmixing does not read back";
    case 3:
        return info.setBackgroundClick(value) == PL_SUCCESS
                && info.getBackgroundClick(&a) == PL_SUCCESS && a == value
            ? std::string()
            : "the background click does not read back";
    default: {
        bool flag = false;
        const auto correction = static_cast<CPLAnalyzedClickInfo::Correction>(choice % 5);
        return info.setCorrection(correction, true) == PL_SUCCESS
                && info.getCorrection(correction, &flag) == PL_SUCCESS && flag
            ? std::string()
            : "a correction flag does not read back";
    }
    }
}

} // namespace

std::string checkAnalysis(const uint8_t* data, size_t size)
{
    if (size < 1 || size > 1 << 20)
        return std::string();
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, int(size - 1));
    CPLAnalyzedClickInfo info;
    if (info.loadClickInfoBytes(bytes.constData(), bytes.size(), QStringLiteral("fuzz"))
        != PL_SUCCESS)
        return std::string();
    queryAnalysis(info);
    if (info.getLoadWarnings().isEmpty() && info.getClickInfoData().toLatin1() != bytes)
        return "a load without warnings did not save back the bytes it read";
    // A section whose key the file repeats, or a key it repeats, is set in its first place;
    // the value then reads back from there.
    std::string failure = setAndReadBack(info, data[0]);
    if (!failure.empty())
        return failure;
    // Text loaded with warnings is not written back as it was read, and may not load back
    // to what it writes (a line that begins with blanks is cut at a shifted place): the
    // round trip is the library's own text's.
    if (!info.getLoadWarnings().isEmpty())
        return std::string();
    const QByteArray written = info.getClickInfoData().toLatin1();
    CPLAnalyzedClickInfo reread;
    if (reread.loadClickInfoBytes(written.constData(), written.size(), QStringLiteral("fuzz"))
        != PL_SUCCESS)
        return "the text the document writes does not load";
    queryAnalysis(reread);
    if (reread.getClickInfoData().toLatin1() != written)
        return "the text the document writes does not load back to itself";
    return std::string();
}

namespace {

// What a sequence reads: "ID|click,click|", and with `withUserInput` then
// "label=value;label=value;", to compare documents.
std::string sequenceText(const CPLSequenceInfo& sequence, bool withUserInput)
{
    QString id;
    QStringList clicks;
    QList<QPair<QString, QString>> input;
    sequence.getSequenceID(&id);
    sequence.getClickNumbers(&clicks);
    sequence.getUserInput(&input);
    QString text = id + QLatin1Char('|') + clicks.join(QLatin1Char(',')) + QLatin1Char('|');
    for (const auto& entry : withUserInput ? input : QList<QPair<QString, QString>>())
        text += entry.first + QLatin1Char('=') + entry.second + QLatin1Char(';');
    return text.toStdString();
}

// Adds a click, moves it to the front and removes the second click of the list, checking
// each status and the list after it.
// Whether the sequence section holds a click line ("ClickNumber <n>" with n from 1, the count
// or the empty line) on more than one line, in any case.
bool holdsRepeatedClickLine(const CPLSequenceInfo& sequence)
{
    const QRegularExpression clickLine(QStringLiteral("^(clicknumber 0*[1-9][0-9]*|clicknumbers in "
                                                      "sequence|clicknumbers)$"));
    QSet<QString> seen;
    for (const QString& key : sequence[PLConstants::SEQUENCEINFO_KEY]->getEntryKeys()) {
        const QString lower = key.toLower();
        if (CPLSection::isCommentKey(key) || !clickLine.match(lower).hasMatch())
            continue;
        if (seen.contains(lower))
            return true;
        seen.insert(lower);
    }
    return false;
}

std::string editClicks(CPLSequenceInfo& sequence, QStringList expected)
{
    // A click line held twice is never edited: every edit is refused and changes nothing.
    if (holdsRepeatedClickLine(sequence)) {
        const int statuses[]
            = { sequence.addClickNumber(QStringLiteral("FZ_added")), sequence.moveClickNumber(0, 0),
                sequence.removeClickNumber(expected.value(0)) };
        QStringList clicks;
        sequence.getClickNumbers(&clicks);
        if (clicks != expected)
            return "a refused edit of a repeated click line changed the clicks";
        for (const int status : statuses)
            if (status != PL_KEY_REPEATED && status != PL_INVALID_ARGUMENT && status != PL_EMPTY_KEY
                && status != PL_OUT_OF_RANGE)
                return "an edit of a sequence with a repeated click line gave status "
                    + std::to_string(status);
        return std::string();
    }
    const QString added = QStringLiteral("FZ_added");
    const int addStatus = sequence.addClickNumber(added);
    if (addStatus != (expected.contains(added) ? PL_CLICK_ALREADY_LISTED : PL_SUCCESS))
        return "adding a click gave status " + std::to_string(addStatus);
    if (!expected.contains(added))
        expected.append(added);
    int position = -1;
    if (sequence.findClickNumber(added, &position) != PL_SUCCESS
        || position != expected.indexOf(added))
        return "the added click is not found where it stands";
    if (sequence.moveClickNumber(position, 0) != PL_SUCCESS)
        return "moving a listed click failed";
    expected.move(position, 0);
    if (expected.size() > 1) {
        const QString second = expected.at(1);
        if (sequence.removeClickNumber(second) != PL_SUCCESS)
            return "removing a listed click failed";
        expected.removeAt(1);
    }
    QStringList clicks;
    sequence.getClickNumbers(&clicks);
    if (clicks != expected)
        return "after the edits the clicks are \"" + clicks.join(QLatin1Char(',')).toStdString()
            + "\", expected \"" + expected.join(QLatin1Char(',')).toStdString() + "\"";
    return std::string();
}

} // namespace

std::string checkSequence(const uint8_t* data, size_t size)
{
    const QByteArray input
        = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    CPLSequenceInfo sequence;
    if (sequence.loadClickInfoBytes(input.constData(), input.size(), QStringLiteral("fuzz"))
        != PL_SUCCESS)
        return std::string();
    const bool warningFree = sequence.getLoadWarnings().isEmpty();
    if (warningFree && sequence.getClickInfoData().toLatin1() != input)
        return "a load without warnings did not save back the bytes it read";
    QStringList clicks;
    if (sequence.getClickNumbers(&clicks) != PL_SUCCESS)
        return std::string();
    for (const QString& click : clicks) {
        int position = -1;
        if (click.isEmpty() || sequence.findClickNumber(click, &position) != PL_SUCCESS
            || position != clicks.indexOf(click))
            return "a listed click is not found at its first position";
    }
    if (sequence.getClickNumberCount() != clicks.size())
        return "the count differs from the list";
    const std::string failure = editClicks(sequence, clicks);
    if (!failure.empty())
        return failure;
    // A document holding a key that would not read back as it stands is not saved at all.
    if (holdsUnwritableKey(sequence))
        return std::string();

    // A line before the first section that is itself a section header ("**** Sequence:") is
    // written back before the sections, with a load warning, and its section is the one a
    // reload reads first: the edited copy after it is then left out.
    const QStringList leading = sequence.getLeadingLines();
    if (std::any_of(leading.begin(), leading.end(),
                    [](const QString& line) { return line.startsWith(QLatin1String("***")); }))
        return std::string();
    const QByteArray written = sequence.getClickInfoData().toLatin1();
    CPLSequenceInfo reloaded;
    if (reloaded.loadClickInfoBytes(written.constData(), written.size(), QStringLiteral("saved"))
        != PL_SUCCESS)
        return "the saved document does not load";
    // The user input, which the edits leave alone, reads back as loaded only when it was
    // loaded without warnings.
    if (sequenceText(reloaded, warningFree) != sequenceText(sequence, warningFree))
        return "the reloaded document reads \"" + sequenceText(reloaded, warningFree)
            + "\", saved \"" + sequenceText(sequence, warningFree) + "\"";
    // The sequence section, which the edits wrote, reads back as written; the whole document
    // does when the input had nothing to warn of (sections the edits left alone are saved as
    // loaded, and the loader's own warnings are fuzz_clickinfo's to judge).
    QString editedSection;
    QString reloadedSection;
    sequence[PLConstants::SEQUENCEINFO_KEY]->saveSectionData(editedSection);
    reloaded[PLConstants::SEQUENCEINFO_KEY]->saveSectionData(reloadedSection);
    if (editedSection != reloadedSection)
        return "the reloaded sequence section does not save the text it read";
    if (warningFree && reloaded.getClickInfoData().toLatin1() != written)
        return "the reloaded document does not save the bytes it read";
    return std::string();
}

} // namespace OvFuzz
