#include "PLClickInfo.h"

#include "PLConstants.h"
#include "PLFileReader_p.h"
#include "PLFileWriter_p.h"
#include "PLKeyHash_p.h"
#include "PLLogging_p.h"
#include "PLScanner_p.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>

#include <QScopeGuard>
#include <QTextStream>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

namespace {

// obtainValueFromClickInfoFile() reads lines in pieces of at most this many characters.
constexpr qint64 LOOKUP_LINE_PIECE = 200;

// Latin-1 text as the loaders read it: decoded, trimmed, with CR LF and lone CR turned into
// LF. *linesBefore receives the number of line breaks trimmed off the front, so that line
// numbers in the result can be told as lines of the original text.
QString normalisedText(const char* data, qsizetype size, int* linesBefore)
{
    const PLText::Span<char> bytes = PLText::trimmed(PLText::Span<char> { data, data + size });
    int breaks = 0;
    for (const char* p = data; p != bytes.begin; ++p)
        breaks += *p == '\n' || (*p == '\r' && (p + 1 == bytes.begin || p[1] != '\n'));
    *linesBefore = breaks;

    // One pass decodes the bytes and turns the line ends, run by run between CRs.
    QString text(static_cast<int>(bytes.size()), Qt::Uninitialized);
    ushort* out = reinterpret_cast<ushort*>(text.data());
    const ushort* const begin = out;
    for (const char* in = bytes.begin; in != bytes.end;) {
        const char* cr = PLText::find(in, bytes.end, '\r');
        for (const char* runEnd = cr ? cr : bytes.end; in != runEnd; ++in)
            *out++ = static_cast<uchar>(*in);
        if (!cr)
            break;
        *out++ = '\n';
        if (++in != bytes.end && *in == '\n')
            ++in;
    }
    text.truncate(static_cast<int>(out - begin));
    return text;
}

// Splits a section header line into its key: the trimmed text between the "*** " prefix
// (or "***" when no blank follows) and the first colon. 5 when there is no prefix, no
// colon after it, or a "#" at or before the colon.
int parseHeaderKey(QStringView header, QString* key)
{
    const QStringView fullPrefix(PLConstants::SECTIONKEY_PREFIX);
    QStringView prefix = fullPrefix;
    qsizetype start = header.indexOf(prefix);
    if (start < 0) {
        prefix = fullPrefix.left(3);
        start = header.indexOf(prefix);
    }
    const qsizetype colon = header.indexOf(QLatin1Char(':'));
    const qsizetype hash = header.indexOf(QLatin1Char('#'));
    const qsizetype keyStart = start + prefix.size();
    if (start < 0 || colon < keyStart || (hash >= 0 && hash <= colon))
        return PL_MALFORMED_SECTION_HEADER;
    *key = header.mid(keyStart, colon - keyStart).trimmed().toString();
    return PL_SUCCESS;
}

// The line at `begin` without its line feed, read up to the end of the text.
QStringView lineAt(const QChar* data, qint64 length, qint64 begin)
{
    const qint64 end = qMin(PLScan::lineEnd(data, length, begin), length);
    return QStringView(data + begin, end - begin);
}

// The length of a text read as C text: up to its first NUL.
template<typename Char> qint64 textLength(const Char* data, qint64 size)
{
    const Char* nul = PLText::findFar(data, data + size, '\0');
    return nul ? nul - data : size;
}

// Tells the 1-based line of offsets that only grow, counting each line feed once.
template<typename Char> class LineCounter
{
public:
    explicit LineCounter(const Char* data)
        : m_data(data)
    {
    }
    int lineAt(qint64 offset)
    {
        m_line += static_cast<int>(std::count_if(m_data + m_offset, m_data + offset,
                                                 [](Char c) { return PLText::unit(c) == '\n'; }));
        m_offset = offset;
        return m_line;
    }

private:
    const Char* m_data;
    qint64 m_offset = 0;
    int m_line = 1;
};

} // namespace

CPLClickInfo::CPLClickInfo() = default;

CPLClickInfo::~CPLClickInfo()
{
    // What clearData() comes to here, where its virtual calls can only reach this class:
    // every section is deleted, without finding each by its key.
    qDeleteAll(m_Sections);
}

int CPLClickInfo::loadSectionData(const QString& text, const QString& sectionKey)
{
    if (isSectionPresent(sectionKey))
        return PL_SUCCESS;
    auto section = std::make_unique<CPLSection>();
    section->setSectionKey(sectionKey);

    const QStringView block(text);
    const qsizetype lf = block.indexOf(QLatin1Char('\n'));
    const QStringView header = lf < 0 ? block : block.left(lf + 1);
    const qsizetype colon = header.indexOf(QLatin1Char(':'));
    const qsizetype hash = header.indexOf(QLatin1Char('#'));
    if (colon >= 0 && (hash < 0 || hash > colon))
        section->setSectionName(header.mid(colon + 1).trimmed().toString());
    if (lf >= 0) {
        // A block of the text being loaded refers to it: the section shares that text.
        const QString& loading = m_strTextBeingLoaded;
        const qsizetype offset = text.constData() - loading.constData();
        if (!loading.isEmpty() && offset >= 0 && offset + text.size() <= loading.size())
            section->loadBody(loading, int(offset + lf + 1), int(offset + text.size()),
                              m_iBodyLines, false);
        else
            section->loadBody(text, int(lf + 1), text.size(), 0, true);
    }
    return adoptSection(section);
}

int CPLClickInfo::addSection(CPLSection* section)
{
    if (!section)
        return PL_NULL_ARGUMENT;
    QString key;
    if (section->getSectionKey(&key) != PL_SUCCESS || key.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    if (m_Sections.value(CPLCaseInsensitiveKey::lookup(key)))
        return PL_SUCCESS;
    m_Sections.insert(key, section);
    m_SectionKeys.append(key);
    ++m_iSectionCount;
    return PL_SUCCESS;
}

int CPLClickInfo::removeSection(const QString& sectionKey)
{
    delete takeSection(sectionKey);
    return PL_SUCCESS;
}

CPLSection* CPLClickInfo::takeSection(const QString& sectionKey)
{
    const auto it = m_Sections.find(CPLCaseInsensitiveKey::lookup(sectionKey));
    if (it == m_Sections.end())
        return nullptr;
    CPLSection* section = it.value();
    m_Sections.erase(it);
    m_pLastSection = nullptr;
    // Sections are usually taken in order (clearData()), so the key is found at the front.
    const int position = sectionPosition(sectionKey);
    if (position >= 0)
        m_SectionKeys.removeAt(position);
    --m_iSectionCount;
    return section;
}

int CPLClickInfo::sectionPosition(const QString& sectionKey) const
{
    for (int i = 0; i < m_SectionKeys.size(); ++i) {
        if (m_SectionKeys.at(i).compare(sectionKey, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

int CPLClickInfo::adoptSection(std::unique_ptr<CPLSection>& section)
{
    const int status = addSection(section.get());
    QString key;
    section->getSectionKey(&key);
    if (m_Sections.value(CPLCaseInsensitiveKey::lookup(key)) == section.get())
        section.release();
    return status;
}

CPLSection* CPLClickInfo::addNewSection(const QString& sectionKey, const QString& sectionName)
{
    auto section = std::make_unique<CPLSection>(sectionKey, sectionName);
    CPLSection* added = section.get();
    adoptSection(section);
    return section ? nullptr : added;
}

int CPLClickInfo::loadTextBuffer(const QString& text)
{
    m_iLastErrorLine = 0;
    m_LoadWarnings.clear();
    // The sections share the text, and each block handed to loadSectionData() refers to it.
    // utf16() ends it with the 0 the scanner stops at, copying a string that only refers to
    // memory of the caller's (QString::fromRawData()), so the sections never depend on that.
    m_strTextBeingLoaded = text;
    const auto textLoaded = qScopeGuard([this] { m_strTextBeingLoaded.clear(); });
    const auto* data = reinterpret_cast<const QChar*>(m_strTextBeingLoaded.utf16());
    const qint64 length = textLength(data, m_strTextBeingLoaded.size());
    LineCounter<QChar> lines(data);

    qint64 position = 0;
    PLScan::SectionRange range;
    while (position < length && PLScan::nextSection(data, length, position, range)) {
        // Lines are counted only for the rare message that needs one.
        const auto headerLine = [&] { return lines.lineAt(range.begin); };
        const QStringView header = lineAt(data, length, range.begin);
        QString key;
        int status = parseHeaderKey(header, &key);
        if (status == PL_SUCCESS) {
            const QString block = QString::fromRawData(
                data + range.begin, static_cast<int>(qMin(range.end, length) - range.begin));
            m_iBodyLines = range.lines - 1;
            if (PLKeyHash::equal(key, PLConstants::CLICKNUMBER_KEY))
                status = loadClickNumber(block);
            if (status == PL_SUCCESS && isSectionPresent(key)) {
                addLoadWarning(
                    headerLine(),
                    QStringLiteral(
                        "section \"%1\" repeats the key of a section before it and is left out")
                        .arg(key));
            } else if (status == PL_SUCCESS) {
                status = loadSectionData(block, key);
                const CPLSection* section = status == PL_SUCCESS ? (*this)[key] : nullptr;
                if (section && !section->getIrregularLines().isEmpty())
                    addIrregularLineWarnings(*section, headerLine());
            }
        }
        if (status != PL_SUCCESS) {
            m_iLastErrorLine = headerLine();
            qWarning("Loading stopped with status %d at line %d, section header \"%s\"", status,
                     m_iLastErrorLine, qPrintable(header.trimmed().toString()));
            return status;
        }
    }
    if (length < m_strTextBeingLoaded.size())
        addLoadWarning(lines.lineAt(length),
                       QStringLiteral("a NUL byte ends the text; what follows it is not read"));
    return PL_SUCCESS;
}

void CPLClickInfo::addIrregularLineWarnings(const CPLSection& section, int headerLine)
{
    const auto irregularLines = section.getIrregularLines();
    for (const auto& line : irregularLines)
        addLoadWarning(headerLine + line.first, line.second);
}

void CPLClickInfo::addLoadWarning(int line, const QString& message)
{
    qWarning("Line %d: %s", line, qPrintable(message));
    m_LoadWarnings.append({ line, message });
}

void CPLClickInfo::clearData()
{
    const QStringList keys = m_SectionKeys;
    for (const QString& key : keys)
        removeSection(key);
    qDeleteAll(m_Sections); // none are left unless a derived removeSection() kept some
    m_Sections.clear();
    m_SectionKeys.clear();
    m_iSectionCount = 0;
    m_strClickNumber.clear();
    m_LeadingLines.clear();
}

int CPLClickInfo::loadClickInfo(const QString& filePath, bool appendUserSections)
{
    QString text;
    int linesBefore = 0;
    QByteArray bytes;
    int status = PLFile::readFile(filePath, &bytes);
    if (status == PL_SUCCESS) {
        text = normalisedText(bytes.constData(), bytes.size(), &linesBefore);
        bytes = QByteArray(); // the text holds it now
        status = loadNormalisedText(text, linesBefore);
    }
    if (status != PL_SUCCESS)
        return status;
    m_iFileSectionCount = m_iSectionCount;
    return appendUserSections ? appendUserSpecificSections(false) : PL_SUCCESS;
}

int CPLClickInfo::loadNormalisedText(const QString& text, int linesBefore)
{
    // Lines up to the first line whose first token is exactly "***" are kept as they are. A
    // header with no blank after its asterisks stands among them, and is a section too.
    const auto* data = reinterpret_cast<const QChar*>(text.utf16());
    const qint64 length = textLength(data, text.size());
    m_LeadingLines.clear();
    QList<QPair<int, QString>> leadingWarnings;
    for (qint64 position = 0;
         position < length && !PLScan::firstTokenIsPrefixOnly(data, position);) {
        m_LeadingLines.append(lineAt(data, length, position).trimmed().toString());
        if (PLScan::isHeaderLine(data, position))
            leadingWarnings.append(
                { m_LeadingLines.size(),
                  QStringLiteral("the section header \"%1\" has no blank after \"***\", so it is "
                                 "also kept as a line before the first section and written twice")
                      .arg(m_LeadingLines.last()) });
        position = PLScan::lineEnd(data, length, position);
    }
    const int status = loadTextBuffer(text);
    m_LoadWarnings = leadingWarnings + m_LoadWarnings;
    for (auto& warning : m_LoadWarnings)
        warning.first += linesBefore;
    if (m_iLastErrorLine > 0)
        m_iLastErrorLine += linesBefore;
    return status;
}

int CPLClickInfo::loadClickInfo(const QString& folder, const QString& fileName, int imageType,
                                int index)
{
    const auto& imageSections = OVSGlobalConstants::g_strImageSections;
    if (imageType < 0 || imageType >= int(std::size(imageSections)) || index < 0)
        return PL_OUT_OF_RANGE;
    const QString name = fileName.isEmpty() ? PLConstants::CLICKINFO_FILENAME : fileName;
    const QDir top(folder);
    QStringList candidates { top.filePath(name) };
    const QStringList subfolders = top.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& subfolder : subfolders)
        candidates.append(QDir(top.filePath(subfolder)).filePath(name));

    int matches = 0;
    for (const QString& candidate : qAsConst(candidates)) {
        CPLClickInfo probe;
        if (probe.loadClickInfo(candidate, false) == PL_SUCCESS
            && probe.isSectionPresent(imageSections[imageType]) && matches++ == index)
            return loadClickInfo(candidate, false);
    }
    return PL_KEY_NOT_FOUND;
}

int CPLClickInfo::loadAnalyzedClickInfo(const QString& path)
{
    const QString filePath = QFileInfo(path).isDir()
        ? QDir(path).filePath(PLConstants::ANALYZED_CLICKINFO_FILENAME)
        : path;
    CPLClickInfo analysis;
    const int status = analysis.loadClickInfo(filePath, false);
    if (status != PL_SUCCESS)
        return status;
    if (!m_strClickNumber.isEmpty() && !analysis.m_strClickNumber.isEmpty()
        && m_strClickNumber != analysis.m_strClickNumber)
        return PL_INVALID_ARGUMENT;
    const QStringList keys = analysis.m_SectionKeys;
    for (const QString& key : keys) {
        if (isSectionPresent(key))
            continue;
        std::unique_ptr<CPLSection> section(analysis.takeSection(key));
        adoptSection(section);
    }
    if (m_strClickNumber.isEmpty())
        m_strClickNumber = analysis.m_strClickNumber;
    return PL_SUCCESS;
}

int CPLClickInfo::loadClickInfoDcm(const char* buffer, int length)
{
    if (!buffer)
        return PL_NULL_ARGUMENT;
    if (length < 0)
        return PL_INVALID_ARGUMENT;
    // The metadata follows the last NUL of the image data and begins at its first "*** ",
    // which may be glued to the last image bytes, since the metadata is appended as it is.
    const char* end = buffer + length;
    const char* tail
        = std::find(std::make_reverse_iterator(end), std::make_reverse_iterator(buffer), '\0')
              .base();
    const QByteArray prefix = PLConstants::SECTIONKEY_PREFIX.toLatin1();
    const char* start = std::search(tail, end, prefix.cbegin(), prefix.cend());
    if (start == end)
        return PL_NOTHING_TO_WORK_ON;
    int linesBefore = 0;
    const QString text = normalisedText(start, end - start, &linesBefore);

    // Each save appended a copy; the last one starts at the last header line that repeats
    // the first header's key.
    const auto* data = reinterpret_cast<const QChar*>(text.utf16());
    const qint64 size = text.size();
    QString firstKey;
    parseHeaderKey(lineAt(data, size, 0), &firstKey);
    qint64 lastCopy = 0;
    for (qint64 position = 0; position < size; position = PLScan::lineEnd(data, size, position)) {
        QString key;
        if (PLScan::isHeaderLine(data, position)
            && parseHeaderKey(lineAt(data, size, position), &key) == PL_SUCCESS
            && PLKeyHash::equal(key, firstKey))
            lastCopy = position;
    }
    return loadNormalisedText(text.mid(static_cast<int>(lastCopy)), 0);
}

QString CPLClickInfo::getClickInfoData() const
{
    QString text;
    for (const QString& line : m_LeadingLines)
        text += line + QLatin1Char('\n');
    QString sectionText;
    for (const QString& key : m_SectionKeys) {
        if (const CPLSection* section = m_Sections.value(CPLCaseInsensitiveKey::lookup(key))) {
            section->saveSectionData(sectionText);
            text += sectionText;
        }
    }
    text += QLatin1String("\n\n");
    return text;
}

int CPLClickInfo::saveClickInfo(const QString& filePath) const
{
    return PL_GUARDED({
        const QByteArray bytes = getClickInfoData().toLatin1();
        return PLFile::isDicomPath(filePath) ? PLFile::appendFile(filePath, bytes)
                                             : PLFile::saveFile(filePath, bytes);
    });
}

int CPLClickInfo::appendUserSpecificSections(bool withAnalysisSection)
{
    const int status = addDefaultUserInputSection();
    if (status != PL_SUCCESS)
        return status;
    CPLSection* graph = (*this)[PLConstants::GRAPHCONTROLS_SECTION_KEY];
    if (!graph)
        graph = addNewSection(PLConstants::GRAPHCONTROLS_SECTION_KEY,
                              PLConstants::GRAPHCONTROLS_SECTION_VALUE);
    if (!graph)
        return PL_NOTHING_TO_WORK_ON;
    for (size_t i = 0; i < std::size(PLConstants::strGraphSectionKeys); ++i) {
        if (!graph->isKeyPresent(PLConstants::strGraphSectionKeys[i]))
            graph->addKeyValue(PLConstants::strGraphSectionKeys[i],
                               PLConstants::strGraphSectionValues[i]);
    }
    return withAnalysisSection ? appendAnalysisUserInputSection() : PL_SUCCESS;
}

int CPLClickInfo::addDefaultUserInputSection()
{
    if (isSectionPresent(PLConstants::USERINPUT_SECTION_KEY))
        return PL_SUCCESS;
    CPLSection* userInput = addNewSection(PLConstants::USERINPUT_SECTION_KEY,
                                          PLConstants::USERLABELSET_DEFAULT_SECTIONNAME);
    if (!userInput)
        return PL_NOTHING_TO_WORK_ON;
    for (const QString& label : PLConstants::strUserLabelSetKeys)
        userInput->addKeyValue(label, QString());
    return PL_SUCCESS;
}

int CPLClickInfo::appendAnalysisUserInputSection()
{
    if (isSectionPresent(PLConstants::ANALYSISUSERINPUT_SECTION_KEY))
        return PL_SUCCESS;
    const CPLSection* userInput = (*this)[PLConstants::USERINPUT_SECTION_KEY];
    QString name = PLConstants::USERLABELSET_DEFAULT_SECTIONNAME;
    QStringList keys(std::begin(PLConstants::strUserLabelSetKeys),
                     std::end(PLConstants::strUserLabelSetKeys));
    QStringList values;
    if (userInput) {
        userInput->getSectionName(&name, true);
        userInput->getKeyList(&keys);
        userInput->getRawValueList(&values);
    }
    CPLSection* analysis = addNewSection(PLConstants::ANALYSISUSERINPUT_SECTION_KEY, name);
    if (!analysis)
        return PL_NOTHING_TO_WORK_ON;
    for (int i = 0; i < keys.size(); ++i)
        analysis->addKeyValue(keys.at(i), values.value(i));
    return PL_SUCCESS;
}

bool CPLClickInfo::isSectionPresent(const QString& sectionKey) const
{
    return m_Sections.value(CPLCaseInsensitiveKey::lookup(sectionKey)) != nullptr;
}

CPLSection* CPLClickInfo::operator[](const QString& sectionKey) const
{
    // Reads come in runs from one section, and callers ask with the same string each time.
    if (m_pLastSection && sectionKey.constData() == m_strLastSectionKey.constData()
        && sectionKey.size() == m_strLastSectionKey.size())
        return m_pLastSection;
    CPLSection* section = m_Sections.value(CPLCaseInsensitiveKey::lookup(sectionKey));
    if (section) {
        m_strLastSectionKey = sectionKey;
        m_pLastSection = section;
    }
    return section;
}

CPLSection* CPLClickInfo::operator[](int position) const
{
    if (position < 0 || position >= m_SectionKeys.size())
        return nullptr;
    return (*this)[m_SectionKeys.at(position)];
}

int CPLClickInfo::getSectionCount(int* count) const
{
    if (!count)
        return PL_NULL_ARGUMENT;
    *count = m_iSectionCount;
    return PL_SUCCESS;
}

int CPLClickInfo::getFileSectionCount() const
{
    return m_iFileSectionCount;
}

QStringList CPLClickInfo::getSectionKeys() const
{
    return m_SectionKeys;
}

QStringList CPLClickInfo::getLeadingLines() const
{
    return m_LeadingLines;
}

int CPLClickInfo::getLastErrorLine() const
{
    return m_iLastErrorLine;
}

QStringList CPLClickInfo::getLoadWarnings() const
{
    QStringList messages;
    for (const auto& warning : m_LoadWarnings)
        messages.append(QStringLiteral("line %1: %2").arg(warning.first).arg(warning.second));
    return messages;
}

int CPLClickInfo::getClickNumber(QString* clickNumber) const
{
    if (!clickNumber)
        return PL_NULL_ARGUMENT;
    *clickNumber = m_strClickNumber;
    return PL_SUCCESS;
}

int CPLClickInfo::setClickNumber(const QString& clickNumber)
{
    m_strClickNumber = clickNumber;
    return PL_SUCCESS;
}

int CPLClickInfo::loadClickNumber(const QString& sectionText)
{
    const int colon = sectionText.indexOf(QLatin1Char(':'));
    const int lf = sectionText.indexOf(QLatin1Char('\n'));
    m_strClickNumber.clear();
    if (colon >= 0 && (lf < 0 || lf > colon))
        m_strClickNumber = sectionText.mid(colon + 1, lf < 0 ? -1 : lf - colon - 1).trimmed();
    return m_strClickNumber.isEmpty() ? PL_NOTHING_TO_WORK_ON : PL_SUCCESS;
}

int CPLClickInfo::obtainValueFromClickInfoFile(const char* buffer, const QString& key,
                                               QString* value)
{
    if (!buffer || !value || key.isEmpty())
        return PL_NULL_ARGUMENT;
    value->clear();
    QString text = QString::fromLatin1(buffer);
    QTextStream stream(&text, QIODevice::ReadOnly);
    const QString needle = key + QLatin1Char(':');
    while (!stream.atEnd()) {
        QString line = stream.readLine(LOOKUP_LINE_PIECE);
        line.replace(PLConstants::STR_NEWLINE, QLatin1String("\n"));
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
        return PL_SUCCESS;
    }
    return PL_KEY_NOT_FOUND;
}

int CPLClickInfo::obtainValueFromClickInfoFile(const QString& filePath, const QString& key,
                                               QString* value)
{
    if (!value || key.isEmpty())
        return PL_NULL_ARGUMENT;
    QByteArray bytes;
    const int status = PLFile::readFile(filePath, &bytes);
    return status == PL_SUCCESS ? obtainValueFromClickInfoFile(bytes.constData(), key, value)
                                : status;
}

template<typename T>
int CPLClickInfo::getTyped(const QString& sectionKey, const QString& key, T* value) const
{
    const CPLSection* section = (*this)[sectionKey];
    return section ? section->getValue(key, value) : PL_SECTION_NOT_PRESENT;
}

template<typename T>
int CPLClickInfo::setTyped(const QString& sectionKey, const QString& key, const T& value)
{
    CPLSection* section = (*this)[sectionKey];
    return section ? section->setValue(key, value) : PL_SECTION_NOT_PRESENT;
}

int CPLClickInfo::getValue(const QString& s, const QString& k, QString* v) const
{
    return getTyped(s, k, v);
}
int CPLClickInfo::getValue(const QString& s, const QString& k, int* v) const
{
    return getTyped(s, k, v);
}
int CPLClickInfo::getValue(const QString& s, const QString& k, long* v) const
{
    return getTyped(s, k, v);
}
int CPLClickInfo::getValue(const QString& s, const QString& k, short* v) const
{
    return getTyped(s, k, v);
}
int CPLClickInfo::getValue(const QString& s, const QString& k, float* v) const
{
    return getTyped(s, k, v);
}
int CPLClickInfo::getValue(const QString& s, const QString& k, double* v) const
{
    return getTyped(s, k, v);
}
int CPLClickInfo::setValue(const QString& s, const QString& k, const QString& v)
{
    return setTyped(s, k, v);
}
int CPLClickInfo::setValue(const QString& s, const QString& k, int v)
{
    return setTyped(s, k, v);
}
int CPLClickInfo::setValue(const QString& s, const QString& k, long v)
{
    return setTyped(s, k, v);
}
int CPLClickInfo::setValue(const QString& s, const QString& k, short v)
{
    return setTyped(s, k, v);
}
int CPLClickInfo::setValue(const QString& s, const QString& k, float v)
{
    return setTyped(s, k, v);
}
int CPLClickInfo::setValue(const QString& s, const QString& k, double v)
{
    return setTyped(s, k, v);
}
