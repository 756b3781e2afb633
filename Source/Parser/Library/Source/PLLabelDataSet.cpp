#include "PLLabelDataSet.h"

#include "PLConstants.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <iterator>
#include <memory>

namespace {

// The key under which the document holds the set of this name: the section key, a colon and
// the name. No section header can give a key with a colon, so these never meet file keys.
QString setMapKey(const QString& setName)
{
    return PLConstants::USERLABELSET_SECTION_KEY + QLatin1Char(':') + setName;
}

bool isSetSectionKey(const QString& sectionKey)
{
    return sectionKey.compare(PLConstants::USERLABELSET_SECTION_KEY, Qt::CaseInsensitive) == 0;
}

bool isDefaultSet(const QString& setName)
{
    return setName.compare(PLConstants::USERLABELSET_DEFAULT_SECTIONNAME, Qt::CaseInsensitive) == 0;
}

// The status for a set name or label that is to be written into the file: 19 when empty, 31
// when it would not read back as given (CPLSection::textFault()).
int checkWritable(const QString& text, CPLSection::TextRole role)
{
    if (text.isEmpty())
        return PL_EMPTY_KEY;
    return CPLSection::textFault(text, role) == CPLSection::TextFault::None ? PL_SUCCESS
                                                                            : PL_INVALID_ARGUMENT;
}

} // namespace

QString updateLabelSetName(const QString& setName)
{
    return setName == PLConstants::OLD_USERLABELSET_DEFAULT_SECTIONNAME
        ? PLConstants::USERLABELSET_DEFAULT_SECTIONNAME
        : setName;
}

CPLLabelDataSet::CPLLabelDataSet()
    : m_strChosenSet(PLConstants::USERLABELSET_DEFAULT_SECTIONNAME)
{
}

CPLLabelDataSet::~CPLLabelDataSet() = default;

int CPLLabelDataSet::load(const QString& filePath)
{
    return loadClickInfo(filePath, false);
}

int CPLLabelDataSet::save(const QString& filePath) const
{
    return saveClickInfo(filePath);
}

int CPLLabelDataSet::loadSectionData(const QString& text, const QString& sectionKey)
{
    if (!isSetSectionKey(sectionKey))
        return CPLClickInfo::loadSectionData(text, sectionKey);
    std::unique_ptr<CPLSection> section = parseSection(text, sectionKey);
    QString name;
    section->getSectionName(&name);
    const QString current = updateLabelSetName(name);
    if (current != name)
        section->setSectionName(current);
    // The first set of a name wins, as the first section of a key does.
    if (!setSection(current))
        insertSet(std::move(section), current);
    return PL_SUCCESS;
}

CPLSection* CPLLabelDataSet::setSection(const QString& setName) const
{
    return (*this)[setMapKey(updateLabelSetName(setName))];
}

CPLSection* CPLLabelDataSet::insertSet(std::unique_ptr<CPLSection> section, const QString& setName)
{
    CPLSection* inserted = section.get();
    insertSection(section, setMapKey(setName));
    return inserted;
}

QStringList CPLLabelDataSet::getLabelSetNames() const
{
    const QString prefix = setMapKey(QString());
    QStringList names;
    const QStringList keys = getSectionKeys();
    for (const QString& key : keys) {
        if (key.startsWith(prefix, Qt::CaseInsensitive))
            names.append(key.mid(prefix.size()));
    }
    return names;
}

bool CPLLabelDataSet::hasLabelSet(const QString& setName) const
{
    return setSection(setName) || isDefaultSet(updateLabelSetName(setName));
}

int CPLLabelDataSet::selectLabelSet(const QString& setName)
{
    if (setName.isEmpty())
        return PL_EMPTY_KEY;
    if (!hasLabelSet(setName))
        return PL_KEY_NOT_FOUND;
    // The name as the document holds it, not as asked.
    QString held = PLConstants::USERLABELSET_DEFAULT_SECTIONNAME;
    if (const CPLSection* section = setSection(setName))
        section->getSectionName(&held);
    m_strChosenSet = held;
    return PL_SUCCESS;
}

int CPLLabelDataSet::addLabelSet(const QString& setName, const QStringList& labels)
{
    int status = checkWritable(setName, CPLSection::TextRole::SectionName);
    QStringList seen;
    for (const QString& label : labels) {
        if (status == PL_SUCCESS)
            status = checkWritable(label, CPLSection::TextRole::Key);
        if (status == PL_SUCCESS && seen.contains(label, Qt::CaseInsensitive))
            status = PL_INVALID_ARGUMENT;
        seen.append(label);
    }
    if (status != PL_SUCCESS)
        return status;
    CPLSection* section = setSection(setName);
    if (section) {
        section->clearKeyValuePairs();
    } else {
        const QString name = updateLabelSetName(setName);
        section = insertSet(
            std::make_unique<CPLSection>(PLConstants::USERLABELSET_SECTION_KEY, name), name);
    }
    for (const QString& label : labels)
        section->addKeyValue(label, QString());
    return PL_SUCCESS;
}

int CPLLabelDataSet::removeLabelSet(const QString& setName)
{
    if (!setSection(setName))
        return PL_KEY_NOT_FOUND;
    return removeSection(setMapKey(updateLabelSetName(setName)));
}

int CPLLabelDataSet::getLabelName(QString* setName) const
{
    if (!setName)
        return PL_NULL_ARGUMENT;
    *setName = m_strChosenSet;
    return PL_SUCCESS;
}

int CPLLabelDataSet::getLabelData(QStringList* labels) const
{
    if (!labels)
        return PL_NULL_ARGUMENT;
    if (const CPLSection* section = setSection(m_strChosenSet))
        return section->getKeyList(labels);
    if (!isDefaultSet(m_strChosenSet))
        return PL_KEY_NOT_FOUND;
    *labels = QStringList(std::begin(PLConstants::strUserLabelSetKeys),
                          std::end(PLConstants::strUserLabelSetKeys));
    return PL_SUCCESS;
}

int CPLLabelDataSet::getCount() const
{
    if (const CPLSection* section = setSection(m_strChosenSet))
        return section->count();
    return isDefaultSet(m_strChosenSet) ? int(std::size(PLConstants::strUserLabelSetKeys)) : 0;
}

QString CPLLabelDataSet::operator[](int position) const
{
    if (position < 0 || position >= getCount())
        return QString();
    if (const CPLSection* section = setSection(m_strChosenSet)) {
        QString label;
        section->getKey(position, &label);
        return label;
    }
    return PLConstants::strUserLabelSetKeys[position];
}
