#include "PLSettingsFileWrapper.h"

#include "PLAssert_p.h"
#include "PLConstants.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QDir>

#include <algorithm>
#include <memory>

namespace {

const QString DEFAULT_MENU_NAME_TAG = QStringLiteral("MenuName");
const QString DEFAULT_FILE_NAME_TAG = QStringLiteral("FileName");

// A file name without its extension.
QString baseNameOf(const QString& fileName)
{
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? fileName : fileName.left(dot);
}

// The numbers that stand in `texts` right after `tag` (the first occurrence, case matters),
// `skip` characters further on, read in decimal; texts without the tag or a number give none.
// Sorted ascending, in 64 bits, so that the next number after the largest int does not wrap.
QList<qint64> numbersAfterTag(const QStringList& texts, const QString& tag, int skip)
{
    QList<qint64> numbers;
    for (const QString& text : texts) {
        const int found = text.indexOf(tag);
        if (found < 0)
            continue;
        bool ok = false;
        const int number = text.mid(found + tag.size() + skip).toInt(&ok, 10);
        if (ok)
            numbers.append(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

QString formatNumber(const char* format, qint64 number)
{
    return QString::asprintf(format, static_cast<long long>(number));
}

} // namespace

CPLSettingsFileWrapper::CPLSettingsFileWrapper()
    : m_strMenuNameTag(DEFAULT_MENU_NAME_TAG)
    , m_strFileNameTag(DEFAULT_FILE_NAME_TAG)
{
}

CPLSettingsFileWrapper::CPLSettingsFileWrapper(const QString& sectionNameTag)
    : CPLSettingsFileWrapper()
{
    m_strSectionNameTag = sectionNameTag;
}

CPLSettingsFileWrapper::CPLSettingsFileWrapper(const QString& sectionNameTag,
                                               const QString& autoMenuNameTag)
    : CPLSettingsFileWrapper(sectionNameTag)
{
    m_strAutoMenuNameTag = autoMenuNameTag;
}

CPLSettingsFileWrapper::~CPLSettingsFileWrapper() = default;

void CPLSettingsFileWrapper::setSectionNameTag(const QString& tag)
{
    m_strSectionNameTag = tag;
}

void CPLSettingsFileWrapper::setSettingsFileName(const QString& fileName)
{
    if (!fileName.isEmpty())
        m_strSettingsFileName = fileName;
}

void CPLSettingsFileWrapper::setMenuNameTag(const QString& tag)
{
    if (!tag.isEmpty())
        m_strMenuNameTag = tag;
}

void CPLSettingsFileWrapper::setFileNameTag(const QString& tag)
{
    if (!tag.isEmpty())
        m_strFileNameTag = tag;
}

void CPLSettingsFileWrapper::setAutoMenuNameTag(const QString& tag)
{
    if (!tag.isEmpty())
        m_strAutoMenuNameTag = tag;
}

void CPLSettingsFileWrapper::setUseSectionNameForMenuName(bool use)
{
    m_bUseSectionNameForMenuName = use;
}

void CPLSettingsFileWrapper::setFolderPath(const QString& folderPath)
{
    m_strFolderPath = folderPath;
}

void CPLSettingsFileWrapper::setLoadMode(LOAD_MODE mode)
{
    m_eLoadMode = mode;
}

const QString& CPLSettingsFileWrapper::getSectionNameTag() const
{
    return m_strSectionNameTag;
}

const QString& CPLSettingsFileWrapper::getMenuNameTag() const
{
    return m_strMenuNameTag;
}

const QString& CPLSettingsFileWrapper::getFileNameTag() const
{
    return m_strFileNameTag;
}

const QString& CPLSettingsFileWrapper::getAutoMenuNameTag() const
{
    return m_strAutoMenuNameTag;
}

const QString& CPLSettingsFileWrapper::getSettingsFileName() const
{
    return m_strSettingsFileName;
}

bool CPLSettingsFileWrapper::isUsingSectionNameForMenuName() const
{
    return m_bUseSectionNameForMenuName;
}

QString CPLSettingsFileWrapper::getFolderPath() const
{
    return m_strFolderPath;
}

CPLSettingsFileWrapper::LOAD_MODE CPLSettingsFileWrapper::getLoadMode() const
{
    return m_eLoadMode;
}

int CPLSettingsFileWrapper::load()
{
    return load(m_strSettingsFileName);
}

int CPLSettingsFileWrapper::load(const QString& fileName)
{
    switch (m_eLoadMode) {
    case LM_FILE: {
        if (fileName.isEmpty())
            return PL_EMPTY_KEY;
        const int status = loadClickInfo(fileName, false);
        if (status == PL_SUCCESS)
            m_strSettingsFileName = fileName;
        return status;
    }
    case LM_FOLDER:
        if (m_strFolderPath.isEmpty())
            return PL_EMPTY_KEY;
        return QDir(m_strFolderPath).exists() ? PL_SUCCESS : PL_FOLDER_MISSING;
    }
    return PL_SUCCESS;
}

int CPLSettingsFileWrapper::save()
{
    return save(m_strSettingsFileName);
}

int CPLSettingsFileWrapper::save(const QString& fileName)
{
    return fileName.isEmpty() ? PL_EMPTY_KEY : saveClickInfo(fileName);
}

QList<CPLSection*> CPLSettingsFileWrapper::getSections()
{
    return getSections(QString());
}

QList<CPLSection*> CPLSettingsFileWrapper::getSections(const QString& filter)
{
    PL_ASSERT(m_strMenuNameTag.isEmpty() == false);
    PL_ASSERT(m_strFileNameTag.isEmpty() == false);
    QList<CPLSection*> sections;
    for (int i = 0; i < sectionCount(); ++i) {
        CPLSection* section = (*this)[i];
        QString key;
        if (!section || section->getSectionKey(&key) != PL_SUCCESS)
            continue;
        if ((m_strSectionNameTag.isEmpty() || key.contains(m_strSectionNameTag))
            && (filter.isEmpty() || key.contains(filter)))
            sections.append(section);
    }
    return sections;
}

bool CPLSettingsFileWrapper::menuNameOf(const CPLSection* section, bool rawName,
                                        QString* menuName) const
{
    if (m_bUseSectionNameForMenuName)
        return section->getSectionName(menuName, rawName) == PL_SUCCESS;
    return section->getRawValue(m_strMenuNameTag, menuName) == PL_SUCCESS;
}

QStringList CPLSettingsFileWrapper::getMenuNames()
{
    return menuNamesOf(sectionEntries(QString()));
}

QStringList CPLSettingsFileWrapper::getMenuNames(const QString& filter)
{
    return menuNamesOf(getMenuEntries(filter));
}

QList<QPair<QString, QString>> CPLSettingsFileWrapper::getMenuEntries(const QString& filter)
{
    switch (m_eLoadMode) {
    case LM_FOLDER:
        return folderEntries(filter);
    case LM_FILE:
        return sectionEntries(filter);
    }
    return {};
}

QList<QPair<QString, QString>> CPLSettingsFileWrapper::folderEntries(const QString& filter) const
{
    QList<QPair<QString, QString>> entries;
    const QStringList files = textFilesOfFolder();
    for (const QString& file : files) {
        if (file.startsWith(filter) && !file.trimmed().isEmpty())
            entries.append({ baseNameOf(file).mid(filter.size()), file });
    }
    return entries;
}

QList<QPair<QString, QString>> CPLSettingsFileWrapper::sectionEntries(const QString& filter)
{
    QList<QPair<QString, QString>> entries;
    const QList<CPLSection*> sections = getSections(filter);
    for (const CPLSection* section : sections) {
        QString menuName;
        QString fileName;
        if (menuNameOf(section, true, &menuName) && !menuName.trimmed().isEmpty()) {
            section->getValue(m_strFileNameTag, &fileName);
            entries.append({ menuName, fileName });
        }
    }
    return entries;
}

QStringList CPLSettingsFileWrapper::menuNamesOf(const QList<QPair<QString, QString>>& entries)
{
    QStringList names;
    for (const auto& entry : entries)
        names.append(entry.first);
    return names;
}

QStringList CPLSettingsFileWrapper::textFilesOfFolder() const
{
    const QDir folder(m_strFolderPath);
    if (m_strFolderPath.isEmpty() || !folder.exists())
        return QStringList();
    QStringList files = folder.entryList(QDir::Files, QDir::Name);
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const QString& file) {
                                   return !file.endsWith(PLConstants::TEXTFILE_EXTENSION,
                                                         Qt::CaseInsensitive);
                               }),
                files.end());
    return files;
}

QString CPLSettingsFileWrapper::getFileNameForMenuName(const QString& menuName, QString filter)
{
    if (m_eLoadMode == LM_FOLDER) {
        const QStringList files = textFilesOfFolder();
        for (const QString& file : files) {
            const QString base = baseNameOf(file);
            if (file.contains(filter)
                && base.mid(base.indexOf(QLatin1Char('-')) + 1)
                        .compare(menuName, Qt::CaseInsensitive)
                    == 0) {
                const QString folder = QDir::cleanPath(m_strFolderPath);
                return folder.mid(folder.lastIndexOf(QLatin1Char('/')) + 1) + QLatin1Char('/')
                    + file;
            }
        }
        return QString();
    }
    const QList<CPLSection*> sections = sectionsWithMenuName(menuName);
    for (const CPLSection* section : sections) {
        QString fileName;
        if (section->getValue(m_strFileNameTag, &fileName) == PL_SUCCESS)
            return fileName;
    }
    return QString();
}

QList<CPLSection*> CPLSettingsFileWrapper::sectionsWithMenuName(const QString& menuName)
{
    return sectionsWithMenuName(getSections(), menuName);
}

QList<CPLSection*> CPLSettingsFileWrapper::sectionsWithMenuName(QList<CPLSection*> sections,
                                                                const QString& menuName) const
{
    sections.erase(std::remove_if(sections.begin(), sections.end(),
                                  [&](const CPLSection* section) {
                                      QString name;
                                      return !menuNameOf(section, true, &name)
                                          || name.compare(menuName, Qt::CaseInsensitive) != 0;
                                  }),
                   sections.end());
    return sections;
}

int CPLSettingsFileWrapper::setFileNameForMenuName(const QString& menuName, const QString& fileName)
{
    const QList<CPLSection*> sections = getSections();
    if (sections.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    int status = PL_KEY_NOT_FOUND;
    const QList<CPLSection*> named = sectionsWithMenuName(sections, menuName);
    for (CPLSection* section : named)
        status = section->setValue(m_strFileNameTag, fileName);
    return status;
}

bool CPLSettingsFileWrapper::isUnique(const QString& menuName)
{
    return sectionsWithMenuName(menuName).isEmpty();
}

CPLSection* CPLSettingsFileWrapper::getSectionByMenuName(const QString& menuName)
{
    const Qt::CaseSensitivity sensitivity
        = m_bUseSectionNameForMenuName ? Qt::CaseInsensitive : Qt::CaseSensitive;
    const QList<CPLSection*> sections = getSections();
    for (CPLSection* section : sections) {
        QString name;
        if (menuNameOf(section, true, &name) && name.compare(menuName, sensitivity) == 0)
            return section;
    }
    return nullptr;
}

QString CPLSettingsFileWrapper::getNextAvailableSectionName()
{
    PL_ASSERT(m_strSectionNameTag.isEmpty() == false);
    QList<CPLSection*> sections = getSections();
    return getNextAvailableSectionName_core(sections, m_strSectionNameTag);
}

QString CPLSettingsFileWrapper::getNextAvailableSectionName(const QString& base)
{
    QList<CPLSection*> sections = getSections(base);
    return getNextAvailableSectionName_core(sections, base);
}

QString CPLSettingsFileWrapper::getNextAvailableSectionName_core(QList<CPLSection*>& sections,
                                                                 const QString& base)
{
    QStringList keys;
    for (const CPLSection* section : qAsConst(sections)) {
        QString key;
        if (section && section->getSectionKey(&key) == PL_SUCCESS)
            keys.append(key);
    }
    // After the base comes one blank, then the number.
    const QList<qint64> numbers = numbersAfterTag(keys, base, 1);
    qint64 next = numbers.isEmpty() ? 1 : numbers.last() + 1;
    qint64 previous = 0;
    for (const qint64 number : numbers) {
        if (number != previous + 1) {
            next = previous + 1;
            break;
        }
        previous = number;
    }
    return base + formatNumber(" %lld", next);
}

QString CPLSettingsFileWrapper::getNextAutoMenuName()
{
    QList<CPLSection*> sections = getSections();
    return getNextAutoMenuName_core(sections);
}

QString CPLSettingsFileWrapper::getNextAutoMenuName(const QString& filter)
{
    QList<CPLSection*> sections = getSections(filter);
    return getNextAutoMenuName_core(sections);
}

QString CPLSettingsFileWrapper::getNextAutoMenuName_core(QList<CPLSection*>& sections)
{
    PL_ASSERT(m_strMenuNameTag.isEmpty() == false);
    PL_ASSERT(m_strAutoMenuNameTag.isEmpty() == false);
    QStringList menuNames;
    for (const CPLSection* section : qAsConst(sections)) {
        QString menuName;
        if (section && menuNameOf(section, false, &menuName))
            menuNames.append(menuName);
    }
    QList<qint64> numbers = numbersAfterTag(menuNames, m_strAutoMenuNameTag, 0);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    qint64 next = 1;
    if (numbers.contains(1)) {
        next = numbers.last() + 1;
        for (int i = 0; i + 1 < numbers.size(); ++i) {
            if (numbers.at(i + 1) != numbers.at(i) + 1) {
                next = numbers.at(i) + 1;
                break;
            }
        }
    }
    return m_strAutoMenuNameTag + formatNumber("%lld", next);
}

int CPLSettingsFileWrapper::addSection(const QString& menuName)
{
    PL_ASSERT(m_strSectionNameTag.isEmpty() == false);
    PL_ASSERT(m_strMenuNameTag.isEmpty() == false);
    auto section = std::make_unique<CPLSection>();
    section->addKeyValue(m_strMenuNameTag, menuName);
    return adoptSection(section);
}

int CPLSettingsFileWrapper::addSection(const QString& sectionNameBase, const QString& menuName)
{
    const QString name = getNextAvailableSectionName(sectionNameBase);
    if (name.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    auto section = std::make_unique<CPLSection>(name, QString());
    PL_ASSERT(m_strMenuNameTag.isEmpty() == false);
    if (m_bUseSectionNameForMenuName)
        section->setSectionName(menuName);
    else
        section->addKeyValue(m_strMenuNameTag, menuName);
    return adoptSection(section);
}

int CPLSettingsFileWrapper::addSection(const QString& sectionNameBase, const QString& menuName,
                                       const QString& fileName)
{
    const QString name = getNextAvailableSectionName(sectionNameBase);
    if (name.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    auto section = std::make_unique<CPLSection>(name, QString());
    PL_ASSERT(m_strMenuNameTag.isEmpty() == false);
    PL_ASSERT(m_strFileNameTag.isEmpty() == false);
    section->addKeyValue(m_strMenuNameTag, menuName);
    section->addKeyValue(m_strFileNameTag, fileName);
    return adoptSection(section);
}

int CPLSettingsFileWrapper::addSection(CPLSection* section)
{
    QString key;
    if (section && section->getSectionKey(&key) == PL_SUCCESS && key.isEmpty()
        && !m_strSectionNameTag.isEmpty())
        section->setSectionKey(getNextAvailableSectionName());
    return CPLClickInfo::addSection(section);
}

int CPLSettingsFileWrapper::deleteSection(const QString&)
{
    return PL_INVALID_ARGUMENT;
}

int CPLSettingsFileWrapper::deleteSection(int)
{
    return PL_INVALID_ARGUMENT;
}

int CPLSettingsFileWrapper::initFromSections(QList<CPLSection*>& sections)
{
    return copySections(sections, false);
}

int CPLSettingsFileWrapper::initFromROISections(QList<CPLSection*>& sections)
{
    return copySections(sections, true);
}

int CPLSettingsFileWrapper::copySections(const QList<CPLSection*>& sections, bool roiOnly)
{
    const QString roiTag = PLConstants::ROIFILESECTIONTAGINUSERFILE.trimmed();
    for (const CPLSection* source : sections) {
        if (!source)
            return PL_NULL_ARGUMENT;
        QString key;
        if (roiOnly
            && (source->getSectionKey(&key) != PL_SUCCESS
                || !key.contains(roiTag, Qt::CaseInsensitive)))
            continue;
        auto copy = std::make_unique<CPLSection>(*source);
        const int status = adoptSection(copy);
        if (status != PL_SUCCESS)
            return status;
    }
    return PL_SUCCESS;
}
