#include "PLClickInfo.h"

#include "PLConstants.h"
#include "PLDecodedText_p.h"
#include "PLDicomMetadata_p.h"
#include "PLFileReader_p.h"
#include "PLFileStamp_p.h"
#include "PLFileWriter_p.h"
#include "PLKeyHash_p.h"
#include "PLLimits_p.h"
#include "PLLineGrammar_p.h"
#include "PLLoadCheck_p.h"
#include "PLLogging_p.h"
#include "PLPaths.h"
#include "PLScanner_p.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <QScopeGuard>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>

namespace {

// The load warnings logged for one load at most; the rest are only counted in the log.
constexpr int LOGGED_WARNINGS = 100;

using Span = PLText::Span<QChar>;

// The line at `begin` without its line feed, read up to the end of the text.
Span lineAt(const QChar* data, qint64 length, qint64 begin)
{
    const qint64 end = qMin(PLScan::lineEnd(data, length, begin) - 1, length);
    return { data + begin, data + end };
}

QString toString(Span text)
{
    return QString(text.begin, int(text.size()));
}

// The length of a text read as C text: up to its first NUL.
qint64 textLength(const QChar* data, qint64 size)
{
    const QChar* nul = PLText::findFar(data, data + size, '\0');
    return nul ? nul - data : size;
}

// Where a message about a load points: "FILE:LINE", or "line LINE" for text given as text.
QString location(const QString& source, int line)
{
    return source.isEmpty() ? QStringLiteral("line %1").arg(line)
                            : QStringLiteral("%1:%2").arg(source).arg(line);
}

} // namespace

struct CPLClickInfo::LoadedFile
{
    PLFile::Stamp stamp;
    QStringList losses;
};

CPLClickInfo::CPLClickInfo() = default;

// What clearData() comes to here, where its virtual calls can only reach this class: the
// base deletes every section, without finding each by its key.
CPLClickInfo::~CPLClickInfo() = default;

int CPLClickInfo::loadSectionData(const QString& text, const QString& sectionKey)
{
    if (isSectionPresent(sectionKey))
        return PL_SUCCESS;
    std::unique_ptr<CPLSection> section = parseSection(text, sectionKey);
    return adoptSection(section);
}

std::unique_ptr<CPLSection> CPLClickInfo::parseSection(const QString& text,
                                                       const QString& sectionKey)
{
    auto section = std::make_unique<CPLSection>();

    const QStringView block(text);
    const qsizetype lf = block.indexOf(QLatin1Char('\n'));
    const QStringView header = lf < 0 ? block : block.left(lf);
    Span name;
    // A key and a name read from a header line stand in it: they are taken as they are.
    section->setLoadedHeader(sectionKey,
                             PLGrammar::sectionName(Span { header.begin(), header.end() }, &name)
                                 ? toString(name)
                                 : QString());
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
    m_SectionWarnings = section->getLoadWarnings();
    return section;
}

int CPLClickInfo::addSection(CPLSection* section)
{
    if (!section)
        return PL_NULL_ARGUMENT;
    // The document holds the section only once it stands in the map: until then, and when it
    // is not taken (a key present already, or no memory), the caller keeps it.
    std::unique_ptr<CPLSection> owned(section);
    const int status = PL_GUARDED({
        QString key;
        QString name;
        if (owned->getSectionKey(&key) != PL_SUCCESS || key.isEmpty())
            return PL_NOTHING_TO_WORK_ON;
        owned->getSectionName(&name, true);
        if (CPLSection::breaksFile(key, CPLSection::TextRole::SectionKey)
            || CPLSection::breaksFile(name, CPLSection::TextRole::Value))
            return PL_INVALID_ARGUMENT;
        insertSection(owned);
        return PL_SUCCESS;
    });
    owned.release();
    return status;
}

int CPLClickInfo::removeSection(const QString& sectionKey)
{
    takeSection(sectionKey);
    return PL_SUCCESS;
}

int CPLClickInfo::adoptSection(std::unique_ptr<CPLSection>& section)
{
    const int status = addSection(section.get());
    if (holdsSection(section.get()))
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

int CPLClickInfo::emptiedUnlessLoaded(int status)
{
    if (status == PL_OUT_OF_MEMORY) {
        // Nothing of this allocates: what a load built so far is dropped, and with it
        // whatever the document held before.
        deleteSections();
        m_strClickNumber.clear();
        m_LeadingLines.clear();
        m_iFileSectionCount = 0;
        setLoadWarnings(QList<CPLLoadWarning>());
        m_pLoadedFile.reset();
    }
    return status;
}

int CPLClickInfo::loadTextBuffer(const QString& text)
{
    return emptiedUnlessLoaded(PL_GUARDED({
        // The sections share the text, and each block handed to loadSectionData() refers to
        // it. utf16() ends it with the 0 the scanner stops at, copying a string that only
        // refers to memory of the caller's (QString::fromRawData()), so the sections never
        // depend on that.
        m_strTextBeingLoaded = text;
        const auto textLoaded = qScopeGuard([this] { m_strTextBeingLoaded.clear(); });
        const auto* data = reinterpret_cast<const QChar*>(m_strTextBeingLoaded.utf16());
        // A load of bytes (loadClickInfoBytes()) has begun the check with the leading lines,
        // and knows the length of the text.
        if (m_pLoadCheck && m_pLoadCheck->text() == data)
            return loadSections(data, m_pLoadCheck->length(), *m_pLoadCheck);
        const qint64 length = textLength(data, m_strTextBeingLoaded.size());
        if (const int refused = PLLimits::checkDocument(data, length, QString())) {
            m_iLastErrorLine = 0;
            return refused;
        }
        CPLLoadCheck check(data, length, m_strTextBeingLoaded.size(), nullptr);
        const int status = loadSections(data, length, check);
        setLoadWarnings(check.finish(QString(), 0));
        logLoadWarnings();
        return status;
    }));
}

int CPLClickInfo::loadSections(const QChar* data, qint64 length, CPLLoadCheck& check)
{
    m_iLastErrorLine = 0;
    qint64 position = 0;
    PLScan::SectionRange range;
    while (position < length && PLScan::nextSection(data, length, position, range)) {
        const Span header = lineAt(data, length, range.begin);
        const qint64 headerEnd = header.end - data;
        PLGrammar::Header<QChar> parts;
        int status
            = PLGrammar::parseHeader(header, &parts) ? PL_SUCCESS : PL_MALFORMED_SECTION_HEADER;
        const QString key = status == PL_SUCCESS ? toString(parts.key) : QString();
        if (status == PL_SUCCESS && key.isEmpty())
            status = PL_NOTHING_TO_WORK_ON;
        if (status == PL_SUCCESS) {
            const QString block = QString::fromRawData(
                data + range.begin, static_cast<int>(qMin(range.end, length) - range.begin));
            m_iBodyLines = range.lines - 1;
            if (PLKeyHash::equal(key, PLConstants::CLICKNUMBER_KEY))
                status = loadClickNumber(block);
            const int line = status == PL_SUCCESS ? check.lineAt(range.begin) : 0;
            const bool apart = repeatedSectionRule() == KeepApart && isSectionPresent(key);
            if (status == PL_SUCCESS && !apart && isSectionPresent(key)) {
                if (repeatedSectionRule() == KeepFirst) {
                    check.repeatedSection(range.begin, key, false);
                } else {
                    // Sections merged from another file (a camera configuration's
                    // extensions) are what the document is made of, not a fault of a file.
                    if (locationOf(line).file == getSectionOrigin(key).file)
                        check.repeatedSection(range.begin, key, true);
                    mergeSection(*parseSection(block, key), repeatedSectionRule(),
                                 locationOf(line));
                }
            } else if (status == PL_SUCCESS) {
                m_SectionWarnings.clear();
                const QString mapKey = apart
                    ? key + QLatin1Char('\n') + QString::number(locationOf(line).line)
                    : key;
                if (apart) {
                    std::unique_ptr<CPLSection> section = parseSection(block, key);
                    insertSection(section, mapKey);
                } else {
                    status = loadSectionData(block, key);
                }
                if (status == PL_SUCCESS)
                    setSectionOrigin(mapKey, locationOf(line));
                check.section(range.begin, headerEnd, range.end, parts, key, m_SectionWarnings);
                check.knownLine(range.end, line + range.lines);
            }
        }
        if (status != PL_SUCCESS) {
            m_iLastErrorLine = check.lineAt(range.begin);
            qCWarning(lcOvLoad, "%s: loading stopped: %s (section header \"%s\")",
                      qUtf8Printable(location(m_strLoadSource, m_iLastErrorLine + m_iLinesBefore)),
                      qUtf8Printable(getStatusText(status)),
                      qUtf8Printable(toString(PLText::trimmed(header))));
            return status;
        }
    }
    return PL_SUCCESS;
}

CPLTextLocation CPLClickInfo::locationOf(int textLine) const
{
    if (hasTextSources())
        return textLocation(textLine);
    return { m_strLoadSource, textLine + m_iLinesBefore };
}

void CPLClickInfo::logLoadWarnings() const
{
    const QList<CPLLoadWarning>& warnings = loadWarnings();
    for (int i = 0; i < warnings.size() && i < LOGGED_WARNINGS; ++i)
        qCWarning(lcOvLoad).noquote() << warnings.at(i).toString();
    if (warnings.size() > LOGGED_WARNINGS)
        qCWarning(lcOvLoad, "%s: %d more load warnings", qUtf8Printable(m_strLoadSource),
                  int(warnings.size() - LOGGED_WARNINGS));
}

void CPLClickInfo::clearData()
{
    const QStringList keys = getSectionKeys();
    for (const QString& key : keys)
        removeSection(key);
    deleteSections(); // none are left unless a derived removeSection() kept some
    m_strClickNumber.clear();
    m_LeadingLines.clear();
    // A document emptied on purpose loses nothing of its file by a save.
    if (m_pLoadedFile)
        m_pLoadedFile->losses.clear();
}

int CPLClickInfo::loadClickInfo(const QString& filePath, bool appendUserSections)
{
    QByteArray bytes;
    const int status = loadFile(filePath, &bytes);
    if (status != PL_SUCCESS)
        return status;
    return appendUserSections ? appendUserSpecificSections(false) : PL_SUCCESS;
}

int CPLClickInfo::loadFile(const QString& filePath, QByteArray* bytes)
{
    return emptiedUnlessLoaded(PL_GUARDED({
        PLFile::FileStatus read {};
        int status = PL_SUCCESS;
        if (!PLFile::isDicomPath(filePath)) {
            status = PLFile::readFile(filePath, bytes, PL_MAX_FILE_SIZE, &read);
            if (status == PL_SUCCESS)
                status = loadClickInfoBytes(bytes->constData(), bytes->size(), filePath);
        } else {
            qint64 offset = 0;
            status = PLFile::readDicomMetadata(filePath, bytes, &offset, &read);
            if (status == PL_SUCCESS)
                status = loadDicomMetadata(bytes->constData(), bytes->size(), filePath);
        }
        // A file that could not be read was not loaded: what was known of another stays.
        if (read.st_ino != 0 && status != PL_FILE_OPEN_FAILED && status != PL_FILE_TOO_LARGE
            && status != PL_NOT_REGULAR_FILE)
            rememberLoadedFile(filePath, read, *bytes, status);
        return status;
    }));
}

void CPLClickInfo::rememberLoadedFile(const QString& filePath, const struct stat& status,
                                      const QByteArray& bytes, int loadStatus)
{
    auto loaded = std::make_unique<LoadedFile>();
    loaded->stamp = PLFile::Stamp::ofRead(filePath, status, bytes);
    loaded->losses = lossesOfLoad(loadStatus, filePath);
    m_pLoadedFile = std::move(loaded);
}

QStringList CPLClickInfo::lossesOfLoad(int loadStatus, const QString& filePath) const
{
    QStringList losses;
    if (loadStatus != PL_SUCCESS)
        losses.append(m_iLastErrorLine > 0
                          ? QStringLiteral("%1:%2: the load stopped here (%3); the sections from "
                                           "here on were not loaded")
                                .arg(filePath)
                                .arg(m_iLastErrorLine)
                                .arg(getStatusText(loadStatus))
                          : QStringLiteral("%1: the load failed (%2)")
                                .arg(filePath, getStatusText(loadStatus)));
    for (const CPLLoadWarning& warning : loadWarnings()) {
        switch (warning.kind()) {
        case CPLLoadWarning::NulByte:
        case CPLLoadWarning::CutCopy:
        case CPLLoadWarning::RepeatedSection:
        case CPLLoadWarning::MergedSection:
            losses.append(warning.toString());
            break;
        case CPLLoadWarning::RepeatedKey:
            // Lines that repeat a key with the same value lose nothing when both are written
            // with it.
            if (const CPLSection* section = (*this)[warning.section()]) {
                const QStringList values = section->getEntryValues(true);
                QHash<QString, QString> seen;
                const QStringList keys = section->getEntryKeys();
                for (int i = 0; i < keys.size(); ++i) {
                    const QString key = keys.at(i).toLower();
                    const auto earlier = seen.constFind(key);
                    if (earlier != seen.constEnd() && *earlier != values.value(i)) {
                        losses.append(warning.toString());
                        break;
                    }
                    seen.insert(key, values.value(i));
                }
            }
            break;
        default:
            break;
        }
    }
    return losses;
}

QStringList CPLClickInfo::getLoadIncompleteReason() const
{
    return m_pLoadedFile ? m_pLoadedFile->losses : QStringList();
}

int CPLClickInfo::loadClickInfoBytes(const char* data, qint64 size, const QString& sourceName)
{
    if (!data && size > 0)
        return PL_NULL_ARGUMENT;
    if (size < 0)
        return PL_INVALID_ARGUMENT;
    if (size > PL_MAX_FILE_SIZE) {
        qCWarning(lcOvLoad, "%s: %s", qUtf8Printable(sourceName),
                  qUtf8Printable(getStatusText(PL_FILE_TOO_LARGE)));
        return PL_FILE_TOO_LARGE;
    }
    return emptiedUnlessLoaded(PL_GUARDED({
        const CPLDecodedText decoded(data, size);
        return loadDecoded(decoded, sourceName);
    }));
}

int CPLClickInfo::loadDecoded(const CPLDecodedText& decoded, const QString& sourceName)
{
    const QString& text = decoded.text();
    const auto* data = reinterpret_cast<const QChar*>(text.utf16());
    const qint64 length = textLength(data, text.size());
    // The decoder counted the lines of the text; past a NUL, which ends what is loaded, they
    // are counted again.
    const qint64 lines = length == text.size() ? decoded.lineCount() : -1;
    if (const int refused = PLLimits::checkDocument(data, length, sourceName, lines)) {
        m_iLastErrorLine = 0;
        return refused;
    }
    CPLLoadCheck check(data, length, text.size(), &decoded);
    m_strLoadSource = sourceName;
    m_iLinesBefore = decoded.linesBefore();
    const auto loaded = qScopeGuard([this] {
        m_strLoadSource.clear();
        m_iLinesBefore = 0;
    });

    // Lines up to the first line whose first token is exactly "***" are kept as they are. A
    // header with no blank after its asterisks stands among them, and is a section too.
    m_LeadingLines.clear();
    for (qint64 position = 0;
         position < length && !PLGrammar::firstTokenIsHeaderMarkOnly(data + position);) {
        const Span line = lineAt(data, length, position);
        m_LeadingLines.append(toString(PLText::trimmed(line)));
        check.leadingLine(position, line.end - data, PLGrammar::isHeaderLine(data + position));
        position = PLScan::lineEnd(data, length, position);
    }

    m_pLoadCheck = &check;
    const auto checked = qScopeGuard([this] { m_pLoadCheck = nullptr; });
    const int status = loadTextBuffer(text);
    if (m_iLastErrorLine > 0)
        m_iLastErrorLine += m_iLinesBefore;
    setLoadWarnings(check.finish(sourceName, m_iLinesBefore));
    logLoadWarnings();
    if (status == PL_SUCCESS)
        m_iFileSectionCount = sectionCount();
    return status;
}

int CPLClickInfo::loadDicomMetadata(const char* data, qint64 size, const QString& filePath)
{
    const PLDicom::Copy copy = PLDicom::lastCopy(data, size);
    if (copy.text.size() == 0)
        return PL_NOTHING_TO_WORK_ON;
    const QString source
        = filePath.isEmpty() ? QString() : QStringLiteral("%1 (last metadata copy)").arg(filePath);
    const int status = loadClickInfoBytes(copy.text.begin, copy.text.size(), source);
    if (copy.cut) {
        const int line = 1 + int(std::count(copy.text.begin, copy.cut, '\n'));
        CPLLoadWarning warning(CPLLoadWarning::CutCopy, line, 1, QString(), QString());
        warning.setFile(source);
        qCWarning(lcOvLoad).noquote() << warning.toString();
        appendLoadWarning(warning);
    }
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
    const QString filePath = getFilePathInFolder(path, PLConstants::ANALYZED_CLICKINFO_FILENAME);
    CPLClickInfo analysis;
    const int status = analysis.loadClickInfo(filePath, false);
    if (status != PL_SUCCESS)
        return status;
    if (!m_strClickNumber.isEmpty() && !analysis.m_strClickNumber.isEmpty()
        && m_strClickNumber != analysis.m_strClickNumber)
        return PL_INVALID_ARGUMENT;
    const QStringList keys = analysis.getSectionKeys();
    for (const QString& key : keys) {
        if (isSectionPresent(key))
            continue;
        const CPLTextLocation origin = analysis.getSectionOrigin(key);
        std::unique_ptr<CPLSection> section = analysis.takeSection(key);
        if (adoptSection(section) == PL_SUCCESS)
            setSectionOrigin(key, origin);
    }
    if (m_strClickNumber.isEmpty())
        m_strClickNumber = analysis.m_strClickNumber;
    return PL_SUCCESS;
}

int CPLClickInfo::loadClickInfoDcm(const char* buffer, qint64 length)
{
    if (!buffer)
        return PL_NULL_ARGUMENT;
    if (length < 0)
        return PL_INVALID_ARGUMENT;
    return loadDicomMetadata(buffer, length, QString());
}

QString CPLClickInfo::getClickInfoData() const
{
    QString text;
    for (const QString& line : m_LeadingLines)
        text += line + QLatin1Char('\n');
    QString sectionText;
    const QStringList keys = getSectionKeys();
    for (const QString& key : keys) {
        if (const CPLSection* section = (*this)[key]) {
            section->saveSectionData(sectionText);
            text += sectionText;
        }
    }
    text += QLatin1String("\n\n");
    return text;
}

int CPLClickInfo::saveClickInfo(const QString& filePath) const
{
    return saveClickInfoWith(filePath, {});
}

int CPLClickInfo::saveClickInfoWith(const QString& filePath,
                                    const QList<QPair<QString, QByteArray>>& others) const
{
    return PL_GUARDED({
        const QString unwritable = unwritableEntry();
        if (!unwritable.isEmpty()) {
            qCWarning(lcOvSave, "%s: %s; nothing written", qUtf8Printable(filePath),
                      qUtf8Printable(unwritable));
            return PL_INVALID_ARGUMENT;
        }
        return saveFileBytes(filePath, getClickInfoData().toLatin1(), false, others);
    });
}

int CPLClickInfo::saveFileBytes(const QString& filePath, const QByteArray& bytes, bool wholeFile,
                                const QList<QPair<QString, QByteArray>>& others) const
{
    return PL_GUARDED({
        const bool overLoaded = m_pLoadedFile && m_pLoadedFile->stamp.names(filePath);
        if (overLoaded && !wholeFile && !m_pLoadedFile->losses.isEmpty()) {
            qCWarning(lcOvSave,
                      "%s: not saved over the file it was loaded from, which holds what the load "
                      "did not take in (save it elsewhere): %s",
                      qUtf8Printable(filePath),
                      qUtf8Printable(m_pLoadedFile->losses.join(QLatin1String("; "))));
            return PL_LOAD_INCOMPLETE;
        }
        PLFile::Precondition unchanged;
        if (overLoaded)
            unchanged = [&](CPLFileWriter& writer) { return m_pLoadedFile->stamp.check(writer); };
        const bool dicom = PLFile::isDicomPath(filePath);
        int status = PL_SUCCESS;
        if (!others.isEmpty()) {
            QVector<PLFile::FileSave> saves { { filePath, bytes, unchanged } };
            for (const auto& other : others)
                saves.append({ other.first, other.second, {} });
            status = PLFile::saveFiles(saves);
        } else {
            status = dicom ? PLFile::appendDicomCopy(filePath, bytes, unchanged)
                           : PLFile::saveFile(filePath, bytes, unchanged);
        }
        if (status == PL_FILE_CHANGED)
            qCWarning(lcOvSave,
                      "%s: changed by someone else since it was loaded; nothing written (load it "
                      "again and repeat the edit)",
                      qUtf8Printable(filePath));
        // The file as saved is what the next save over it checks.
        if (status == PL_SUCCESS && overLoaded)
            m_pLoadedFile->stamp = PLFile::Stamp::ofWritten(filePath, dicom ? QByteArray() : bytes);
        return status;
    });
}

void CPLClickInfo::adoptSections(const CPLClickInfo& from, const QList<CPLLoadWarning>& warnings)
{
    deleteSections();
    for (const QString& key : from.getSectionKeys()) {
        auto copy = std::make_unique<CPLSection>(*from[key]);
        insertSection(copy, key);
    }
    setLoadWarnings(warnings);
}

QString CPLClickInfo::unwritableEntry() const
{
    using Role = CPLSection::TextRole;
    const QStringList sectionKeys = getSectionKeys();
    for (const QString& sectionKey : sectionKeys) {
        const CPLSection* section = (*this)[sectionKey];
        if (!section)
            continue;
        const QString inSection = QStringLiteral("section \"%1\": ").arg(sectionKey);
        // A document may keep a section under a key of its own (the label sets do): the
        // section's own key is what its header holds.
        QString key;
        QString name;
        section->getSectionKey(&key);
        section->getSectionName(&name, true);
        for (const auto& [text, role] : { std::pair<QString, Role>(key, Role::SectionKey),
                                          std::pair<QString, Role>(name, Role::Value) })
            if (CPLSection::breaksFile(text, role))
                return inSection + CPLSection::textFaultText(text, role);
        const QStringList keys = section->getEntryKeys();
        const QStringList values = section->getEntryValues(true);
        for (int i = 0; i < keys.size(); ++i) {
            const bool comment = CPLSection::isCommentKey(keys.at(i));
            const QString& value = values.at(i);
            const Role valueRole = comment ? Role::Comment : Role::Value;
            if (CPLSection::breaksFile(value, valueRole))
                return inSection + CPLSection::textFaultText(value, valueRole);
            if (!comment && CPLSection::breaksFile(keys.at(i), Role::Key))
                return inSection + CPLSection::textFaultText(keys.at(i), Role::Key);
        }
    }
    return QString();
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

int CPLClickInfo::getFileSectionCount() const
{
    return m_iFileSectionCount;
}

QStringList CPLClickInfo::getLeadingLines() const
{
    return m_LeadingLines;
}

int CPLClickInfo::getLastErrorLine() const
{
    return m_iLastErrorLine;
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
    const qint64 length = qint64(std::strlen(buffer));
    if (length > PL_MAX_FILE_SIZE)
        return PL_FILE_TOO_LARGE;
    return PL_GUARDED({
        value->clear();
        return PLGrammar::findValue(buffer, length, key, value) ? PL_SUCCESS : PL_KEY_NOT_FOUND;
    });
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
