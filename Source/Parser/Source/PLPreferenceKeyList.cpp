#include "PLPreferenceKeyList.h"

#include "PLAssert_p.h"
#include "PLConstants.h"
#include "PLLabelDataSet.h"
#include "PLLineGrammar_p.h"
#include "PLLogging_p.h"
#include "PLStatus.h"

#include <QFile>
#include <QLoggingCategory>

#include <new>

namespace {

// Where allocation failures are reported from, as the application's log readers know it.
const char* const SOURCE_NAME = "Source/Parser/Source/PLPreferenceKeyList";
const char* const COUNT_CONSTRUCTOR = "CPLPreferenceKeyList::CPLPreferenceKeyList(int)";
const char* const COPY_CONSTRUCTOR
    = "CPLPreferenceKeyList::CPLPreferenceKeyList(CPLPreferenceKeyList *)";

} // namespace

// CPLPreferenceKey

CPLPreferenceKey::CPLPreferenceKey() = default;

CPLPreferenceKey::CPLPreferenceKey(CPLPreferenceKey* other)
{
    if (other)
        m_Values = other->m_Values;
}

CPLPreferenceKey::~CPLPreferenceKey() = default;

CPLPreferenceKey& CPLPreferenceKey::operator=(CPLPreferenceKey* other)
{
    if (!other)
        m_Values.clear();
    else if (!m_Values.isSharedWith(other->m_Values))
        m_Values = other->m_Values;
    return *this;
}

int CPLPreferenceKey::addValue(const QString& value)
{
    if (value.isEmpty())
        return PL_OUT_OF_RANGE;
    m_Values.append(value);
    return PL_SUCCESS;
}

int CPLPreferenceKey::deleteValue(const QString& value)
{
    return m_Values.removeAll(value) > 0 ? PL_SUCCESS : PL_OUT_OF_RANGE;
}

void CPLPreferenceKey::clearValues()
{
    m_Values.clear();
}

int CPLPreferenceKey::getCompleteData(QStringList** values)
{
    if (!values)
        return PL_NULL_ARGUMENT;
    *values = &m_Values;
    return PL_SUCCESS;
}

int CPLPreferenceKey::getValue(unsigned int index, QString* value) const
{
    if (!value || index >= unsigned(m_Values.size()))
        return PL_OUT_OF_RANGE;
    *value = m_Values.at(int(index));
    return PL_SUCCESS;
}

int CPLPreferenceKey::setValue(const QString& value, unsigned int index)
{
    if (index >= unsigned(m_Values.size()))
        return PL_OUT_OF_RANGE;
    m_Values[int(index)] = value;
    return PL_SUCCESS;
}

QString CPLPreferenceKey::operator[](unsigned int index) const
{
    return index < unsigned(m_Values.size()) ? m_Values.at(int(index)) : QString();
}

int CPLPreferenceKey::getCount(int* count) const
{
    if (!count)
        return PL_NULL_ARGUMENT;
    *count = m_Values.size();
    return PL_SUCCESS;
}

int CPLPreferenceKey::moveUp(unsigned int index)
{
    if (index == 0 || index >= unsigned(m_Values.size()))
        return PL_OUT_OF_RANGE;
    m_Values.swapItemsAt(int(index), int(index) - 1);
    return PL_SUCCESS;
}

int CPLPreferenceKey::moveDown(unsigned int index)
{
    // In 64 bits, so that the largest index does not wrap around to 0.
    if (quint64(index) + 1 >= quint64(m_Values.size()))
        return PL_OUT_OF_RANGE;
    m_Values.swapItemsAt(int(index), int(index) + 1);
    return PL_SUCCESS;
}

int CPLPreferenceKey::getSaveBuffer(QString* text) const
{
    if (!text)
        return PL_NULL_ARGUMENT;
    text->clear();
    for (const QString& value : m_Values)
        *text += value + QLatin1Char(';');
    return PL_SUCCESS;
}

int CPLPreferenceKey::loadData(const QString& data)
{
    m_Values.clear();
    int start = 0;
    for (int end = data.indexOf(QLatin1Char(';')); end >= 0;
         end = data.indexOf(QLatin1Char(';'), start)) {
        m_Values.append(data.mid(start, end - start));
        start = end + 1;
    }
    return PL_SUCCESS;
}

// CPLPreferenceKeyList

CPLPreferenceKeyList::CPLPreferenceKeyList(int count)
{
    allocate(count, __LINE__, COUNT_CONSTRUCTOR);
}

CPLPreferenceKeyList::CPLPreferenceKeyList(CPLPreferenceKeyList* other)
{
    if (!other)
        return;
    allocate(other->m_iCount, __LINE__, COPY_CONSTRUCTOR);
    for (int i = 0; i < m_iCount; ++i) {
        if (m_ppKeys[i])
            *m_ppKeys[i] = other->m_ppKeys[i];
    }
}

CPLPreferenceKeyList::~CPLPreferenceKeyList()
{
    for (int i = m_iCapacity - 1; i >= 0; --i)
        delete m_ppKeys[i];
    delete[] m_ppKeys;
}

void CPLPreferenceKeyList::allocate(int count, int line, const char* function)
{
    if (count < 1)
        return;
    m_ppKeys = new (std::nothrow) CPLPreferenceKey*[size_t(count)];
    if (!m_ppKeys) {
        logAllocationFailure(line, function);
        return;
    }
    m_iCount = m_iCapacity = count;
    for (int i = 0; i < count; ++i)
        m_ppKeys[i] = newKey(line, function);
}

CPLPreferenceKey* CPLPreferenceKeyList::newKey(int line, const char* function)
{
    CPLPreferenceKey* key = new (std::nothrow) CPLPreferenceKey;
    if (!key)
        logAllocationFailure(line, function);
    return key;
}

void CPLPreferenceKeyList::logAllocationFailure(int line, const char* function)
{
    PLLog::allocationFailure(SOURCE_NAME, line, function);
}

CPLPreferenceKeyList& CPLPreferenceKeyList::operator=(CPLPreferenceKeyList* other)
{
    if (!other || other == this)
        return *this;
    PL_ASSERT(other->m_iCount <= m_iCapacity);
    for (int i = other->m_iCount; i < m_iCapacity; ++i) {
        delete m_ppKeys[i];
        m_ppKeys[i] = nullptr;
    }
    m_iCount = other->m_iCount;
    m_iLoadedKeyCount = 0;
    for (int i = 0; i < m_iCount; ++i) {
        if (!m_ppKeys[i])
            m_ppKeys[i] = newKey(__LINE__, Q_FUNC_INFO);
        if (m_ppKeys[i])
            *m_ppKeys[i] = other->m_ppKeys[i];
    }
    return *this;
}

CPLPreferenceKey* CPLPreferenceKeyList::operator[](int index) const
{
    return index >= 0 && index < m_iCount ? m_ppKeys[index] : nullptr;
}

int CPLPreferenceKeyList::getKey(int index, CPLPreferenceKey** key) const
{
    if (index < 0 || index >= m_iCount || !key)
        return PL_OUT_OF_RANGE;
    *key = m_ppKeys[index];
    return PL_SUCCESS;
}

int CPLPreferenceKeyList::setKey(int index, CPLPreferenceKey* key)
{
    if (index < 0 || index >= m_iCount || !key)
        return PL_OUT_OF_RANGE;
    if (m_ppKeys[index] != key)
        delete m_ppKeys[index];
    m_ppKeys[index] = key;
    return PL_SUCCESS;
}

int CPLPreferenceKeyList::getCount() const
{
    return m_iCount;
}

int CPLPreferenceKeyList::getLoadedKeyCount() const
{
    return m_iLoadedKeyCount;
}

int CPLPreferenceKeyList::loadData(const QString& data, QStringList* keyNames)
{
    if (!keyNames)
        return PL_EMPTY_KEY;
    const int loadable = qMin(m_iCount, keyNames->size());
    for (int i = 0; i < loadable; ++i) {
        const int found = data.indexOf(keyNames->at(i) + QLatin1Char(':'));
        if (found < 0)
            continue;
        const int colon = data.indexOf(QLatin1Char(':'), found);
        const QString value = PLGrammar::restOfLine(data, colon + 1).toString();
        if (value.isEmpty())
            continue;
        CPLPreferenceKey* key = newKey(__LINE__, Q_FUNC_INFO);
        if (!key)
            continue;
        key->loadData(value);
        delete m_ppKeys[i];
        m_ppKeys[i] = key;
        ++m_iLoadedKeyCount;
    }
    return PL_SUCCESS;
}

int CPLPreferenceKeyList::saveData(CPLLabelDataSet* labels, QString* text) const
{
    if (!labels || !text)
        return PL_EMPTY_KEY;
    QStringList labelNames;
    const int status = labels->getLabelData(&labelNames);
    if (status != PL_SUCCESS)
        return status;
    QString setName;
    labels->getLabelName(&setName);
    QString result
        = PLGrammar::headerLine(PLConstants::USERLABELSET_SECTION_KEY, updateLabelSetName(setName));
    QString values;
    for (int i = 0; i < m_iCount; ++i) {
        if (!m_ppKeys[i])
            continue;
        m_ppKeys[i]->getSaveBuffer(&values);
        PLGrammar::appendKeyValueLine(result, labelNames.value(i), values);
        result += PLConstants::STR_NEWLINE;
    }
    *text = result + PLConstants::STR_NEWLINE;
    return PL_SUCCESS;
}

int CPLPreferenceKeyList::saveData(QFile& file, CPLLabelDataSet* labels) const
{
    QString text;
    const int status = saveData(labels, &text);
    if (status != PL_SUCCESS)
        return status;
    const QByteArray bytes = text.toLatin1();
    return file.write(bytes) == bytes.size() ? PL_SUCCESS : PL_SHORT_WRITE;
}
