#include "PLSequenceInfo.h"

#include "PLConstants.h"
#include "PLFileEditor.h"
#include "PLFileReader_p.h"
#include "PLLabelDataSet.h"
#include "PLLogging_p.h"
#include "PLPaths.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <memory>

namespace {

using LabelValues = QList<QPair<QString, QString>>;

const QString CLICK_LINE_PREFIX = PLConstants::SEQUENCEINFO_CLICKNUMBERKEY + QLatin1Char(' ');

// The n of a "ClickNumber <n>" key (in any case), a whole number from 1; 0 for any other key.
int clickLineNumber(const QString& key)
{
    if (!key.startsWith(CLICK_LINE_PREFIX, Qt::CaseInsensitive))
        return 0;
    const QStringRef digits = key.midRef(CLICK_LINE_PREFIX.size());
    bool ok = false;
    const int number = digits.toInt(&ok);
    const bool allDigits = std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
    return ok && allDigits && number > 0 ? number : 0;
}

bool isSameKey(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// The lines of the sequence section that an edit of the click numbers writes anew.
bool isClickListLine(const QString& key)
{
    return clickLineNumber(key) > 0 || isSameKey(key, PLConstants::CLICKNUMBER_IN_SEQUENCE_KEY)
        || isSameKey(key, PLConstants::SEQUENCEINFO_CLICK_NUMBERS_KEY);
}

// 19 for empty text, 31 for text that cannot stand in the file as `role`, else 0.
int checkText(const QString& text, CPLSection::TextRole role)
{
    if (text.isEmpty())
        return PL_EMPTY_KEY;
    return CPLSection::breaksFile(text, role) ? PL_INVALID_ARGUMENT : PL_SUCCESS;
}

// A click number is written as a value and names a folder: it must read back as a key does
// (no colon, "#", line break or outer blanks) and hold no "/".
int checkClickNumber(const QString& clickNumber)
{
    if (clickNumber.isEmpty())
        return PL_EMPTY_KEY;
    const bool fault = CPLSection::textFault(clickNumber, CPLSection::TextRole::Key)
            != CPLSection::TextFault::None
        || clickNumber.contains(QLatin1Char('/'));
    return fault ? PL_INVALID_ARGUMENT : PL_SUCCESS;
}

// A label set name with its labels and values, as setUserInput() writes them.
int checkUserInput(const QString& labelSetName, const LabelValues& labelsAndValues)
{
    if (const int status = checkText(labelSetName, CPLSection::TextRole::SectionName))
        return status;
    QSet<QString> seen;
    for (const auto& entry : labelsAndValues) {
        if (entry.first.isEmpty())
            return PL_EMPTY_KEY;
        if (CPLSection::textFault(entry.first, CPLSection::TextRole::Key)
                != CPLSection::TextFault::None
            || CPLSection::breaksFile(entry.second, CPLSection::TextRole::Value))
            return PL_INVALID_ARGUMENT;
        const QString folded = entry.first.toLower();
        if (seen.contains(folded))
            return PL_INVALID_ARGUMENT;
        seen.insert(folded);
    }
    return PL_SUCCESS;
}

QString lineText(const QString& key, const QString& value)
{
    return key + QLatin1String(":\t") + value + QLatin1Char('\n');
}

// A copy of `section` (key, name as stored) whose body is `firstLines` followed by the
// section's lines, each as it stood, except the key/value lines whose key `dropped` names; a
// line whose key cannot be written back as read becomes a comment.
template<typename Predicate>
std::unique_ptr<CPLSection> sectionWith(const CPLSection& section, const QString& firstLines,
                                        Predicate dropped)
{
    QString key;
    QString name;
    section.getSectionKey(&key);
    section.getSectionName(&name, true);
    QString body = firstLines;
    const QStringList keys = section.getEntryKeys();
    const QStringList values = section.getEntryValues(true);
    for (int i = 0; i < keys.size(); ++i) {
        if (CPLSection::isCommentKey(keys.at(i)))
            body += values.at(i) + QLatin1Char('\n');
        else if (CPLSection::breaksFile(keys.at(i), CPLSection::TextRole::Key))
            // A line that would read back as something else (its key begins with "***", say)
            // is kept as a comment.
            body += QLatin1Char('#') + lineText(keys.at(i), values.at(i));
        else if (!dropped(keys.at(i)))
            body += lineText(keys.at(i), values.at(i));
    }
    auto copy = std::make_unique<CPLSection>(key, name);
    copy->loadSectionData(body);
    return copy;
}

// A section's labels and values as stored, inline comments included.
LabelValues entriesOf(const CPLSection& section)
{
    QStringList keys;
    QStringList values;
    section.getKeyList(&keys);
    section.getRawValueList(&values);
    LabelValues entries;
    for (int i = 0; i < keys.size(); ++i)
        entries.append({ keys.at(i), values.value(i) });
    return entries;
}

// What createFromAcquisitions() reads of the acquisitions before it changes the document.
struct Acquisitions
{
    QStringList clickNumbers;
    bool hasUserInput = false;
    QString labelSetName;
    LabelValues userInput;
};

int readAcquisition(const QString& folder, Acquisitions* read)
{
    CPLClickInfo document;
    if (const int status
        = document.loadClickInfo(QDir(folder).filePath(PLConstants::CLICKINFO_FILENAME)))
        return status;
    QString clickNumber;
    document.getClickNumber(&clickNumber);
    if (clickNumber.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    if (const int status = checkClickNumber(clickNumber))
        return status;
    if (QFileInfo(QDir::cleanPath(folder)).fileName() != clickNumber)
        return PL_FOLDER_NOT_CLICK_NUMBER;
    if (read->clickNumbers.contains(clickNumber))
        return PL_CLICK_ALREADY_LISTED;
    const CPLSection* userInput = document[PLConstants::USERINPUT_SECTION_KEY];
    if (read->clickNumbers.isEmpty() && userInput) {
        read->hasUserInput = true;
        userInput->getSectionName(&read->labelSetName);
        read->labelSetName = read->labelSetName.isEmpty()
            ? PLConstants::USERLABELSET_DEFAULT_SECTIONNAME
            : updateLabelSetName(read->labelSetName);
        read->userInput = entriesOf(*userInput);
    }
    read->clickNumbers.append(clickNumber);
    return PL_SUCCESS;
}

} // namespace

CPLSequenceInfo::CPLSequenceInfo() = default;

CPLSequenceInfo::~CPLSequenceInfo() = default;

QString CPLSequenceInfo::sequenceFilePath(const QString& path)
{
    return getFilePathInFolder(path, PLConstants::SEQUENCEINFO_FILENAME);
}

int CPLSequenceInfo::load(const QString& path)
{
    clearData();
    const QString file = sequenceFilePath(path);
    QByteArray bytes;
    const int status = loadFile(file, &bytes);
    if (status == PL_SUCCESS && !PLFile::isDicomPath(file)) {
        m_KeptBytes = bytes;
        m_strKeptText = getClickInfoData();
        m_strKeptPath = file;
        m_bKeepsBytes = true;
    }
    return status;
}

int CPLSequenceInfo::save(const QString& path) const
{
    const QString file = sequenceFilePath(path);
    if (m_bKeepsBytes && getClickInfoData() == m_strKeptText)
        return saveFileBytes(file, m_KeptBytes, true);
    return saveClickInfo(file);
}

void CPLSequenceInfo::clearData()
{
    CPLClickInfo::clearData();
    dropKeptBytes();
}

void CPLSequenceInfo::dropKeptBytes()
{
    m_bKeepsBytes = false;
    m_KeptBytes.clear();
    m_strKeptText.clear();
}

int CPLSequenceInfo::editKeptBytes(const std::function<int(CPLFileEditor&)>& edit)
{
    if (!m_bKeepsBytes)
        return PL_NOTHING_TO_WORK_ON;
    // Sections changed through CPLClickInfo's own functions are no longer what the bytes hold.
    if (getClickInfoData() != m_strKeptText) {
        dropKeptBytes();
        return PL_NOTHING_TO_WORK_ON;
    }
    CPLFileEditor editor(m_strKeptPath);
    int status = editor.openBytes(m_KeptBytes);
    if (status == PL_SUCCESS)
        status = edit(editor);
    if (status != PL_SUCCESS)
        return status;
    m_KeptBytes = editor.editedBytes();
    adoptSections(editor.document(), editor.loadWarnings());
    m_strKeptText = getClickInfoData();
    return PL_SUCCESS;
}

bool CPLSequenceInfo::canEditSectionsInstead(int editStatus)
{
    return editStatus == PL_NOTHING_TO_WORK_ON || editStatus == PL_KEY_REPEATED
        || editStatus == PL_INVALID_ARGUMENT;
}

int CPLSequenceInfo::getSequenceID(QString* sequenceID) const
{
    if (!sequenceID)
        return PL_NULL_ARGUMENT;
    const CPLSection* section = (*this)[PLConstants::SEQUENCEINFO_KEY];
    if (!section)
        return PL_SECTION_NOT_PRESENT;
    return section->getSectionName(sequenceID);
}

int CPLSequenceInfo::setSequenceID(const QString& sequenceID)
{
    if (const int status = checkText(sequenceID, CPLSection::TextRole::SectionName))
        return status;
    dropKeptBytes(); // a header line is not edited in place
    if (CPLSection* section = (*this)[PLConstants::SEQUENCEINFO_KEY])
        return section->setSectionName(sequenceID);
    addNewSection(PLConstants::SEQUENCEINFO_KEY, sequenceID);
    rewriteClickNumbers(QStringList());
    return PL_SUCCESS;
}

int CPLSequenceInfo::getClickNumbers(QStringList* clickNumbers) const
{
    if (!clickNumbers)
        return PL_NULL_ARGUMENT;
    const CPLSection* section = (*this)[PLConstants::SEQUENCEINFO_KEY];
    if (!section)
        return PL_SECTION_NOT_PRESENT;
    struct Line
    {
        int number;
        QString key;
    };
    QVector<Line> lines;
    QSet<QString> seen;
    QStringList keys;
    section->getKeyList(&keys);
    for (const QString& key : qAsConst(keys)) {
        const int number = clickLineNumber(key);
        if (number > 0 && !seen.contains(key.toLower())) {
            seen.insert(key.toLower());
            lines.append({ number, key });
        }
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const Line& a, const Line& b) { return a.number < b.number; });
    QStringList result;
    for (const Line& line : qAsConst(lines)) {
        const QString value = (*section)[line.key];
        if (!value.isEmpty())
            result.append(value);
    }
    *clickNumbers = result;
    return PL_SUCCESS;
}

int CPLSequenceInfo::getClickNumberCount() const
{
    QStringList clickNumbers;
    getClickNumbers(&clickNumbers);
    return clickNumbers.size();
}

int CPLSequenceInfo::findClickNumber(const QString& clickNumber, int* position) const
{
    if (!position)
        return PL_NULL_ARGUMENT;
    if (clickNumber.isEmpty())
        return PL_EMPTY_KEY;
    QStringList clickNumbers;
    if (const int status = getClickNumbers(&clickNumbers))
        return status;
    const int found = clickNumbers.indexOf(clickNumber);
    if (found < 0)
        return PL_KEY_NOT_FOUND;
    *position = found;
    return PL_SUCCESS;
}

int CPLSequenceInfo::addClickNumber(const QString& clickNumber, int position)
{
    QStringList clickNumbers;
    if (const int status = getClickNumbers(&clickNumbers))
        return status;
    if (const int status = checkClickNumber(clickNumber))
        return status;
    if (clickNumbers.contains(clickNumber))
        return PL_CLICK_ALREADY_LISTED;
    if (position < -1 || position > clickNumbers.size())
        return PL_OUT_OF_RANGE;
    clickNumbers.insert(position < 0 ? clickNumbers.size() : position, clickNumber);
    return setClickNumbers(clickNumbers);
}

int CPLSequenceInfo::removeClickNumber(const QString& clickNumber)
{
    int position = 0;
    if (const int status = findClickNumber(clickNumber, &position))
        return status;
    QStringList clickNumbers;
    getClickNumbers(&clickNumbers);
    clickNumbers.removeAt(position);
    return setClickNumbers(clickNumbers);
}

int CPLSequenceInfo::moveClickNumber(int from, int to)
{
    QStringList clickNumbers;
    if (const int status = getClickNumbers(&clickNumbers))
        return status;
    const int count = clickNumbers.size();
    if (from < 0 || from >= count || to < 0 || to >= count)
        return PL_OUT_OF_RANGE;
    clickNumbers.move(from, to);
    return setClickNumbers(clickNumbers);
}

QString CPLSequenceInfo::repeatedClickLine() const
{
    const CPLSection* section = (*this)[PLConstants::SEQUENCEINFO_KEY];
    if (!section)
        return QString();
    QSet<QString> seen;
    for (const QString& key : section->getEntryKeys()) {
        if (CPLSection::isCommentKey(key) || !isClickListLine(key))
            continue;
        if (!seen.contains(key.toLower())) {
            seen.insert(key.toLower());
            continue;
        }
        // The load named the lines of the first key its section repeats.
        for (const CPLLoadWarning& warning : getLoadWarningList()) {
            if (warning.kind() == CPLLoadWarning::RepeatedKey
                && isSameKey(warning.section(), PLConstants::SEQUENCEINFO_KEY)
                && warning.message().contains(QLatin1Char('"') + key + QLatin1Char('"'),
                                              Qt::CaseInsensitive))
                return warning.toString();
        }
        return QStringLiteral("section \"%1\" holds \"%2\" on more than one line")
            .arg(PLConstants::SEQUENCEINFO_KEY, key);
    }
    return QString();
}

int CPLSequenceInfo::setClickNumbers(const QStringList& clickNumbers)
{
    // Rewriting a click line held twice would keep one of them: refused, so that no edit
    // loses a click line.
    const QString repeated = repeatedClickLine();
    if (!repeated.isEmpty()) {
        qCWarning(lcOvSave,
                  "%s; the click numbers are not edited until one of the lines is removed by hand",
                  qUtf8Printable(repeated));
        return PL_KEY_REPEATED;
    }
    const int count = clickNumbers.size();
    const int edited = editKeptBytes([&](CPLFileEditor& editor) {
        const CPLSection* section = editor.document()[PLConstants::SEQUENCEINFO_KEY];
        if (!section)
            return PL_SECTION_NOT_PRESENT;
        // Each edit loads the bytes again: the section is read before the first.
        QStringList keys;
        QStringList values;
        section->getKeyList(&keys);
        section->getValueList(&values);
        QSet<QString> seen;
        QSet<int> written;
        int status = PL_SUCCESS;
        const auto set = [&](const QString& key, const QString& value) {
            if (status == PL_SUCCESS)
                status = editor.setValue(PLConstants::SEQUENCEINFO_KEY, key, value);
        };
        const auto remove = [&](const QString& key) {
            if (status == PL_SUCCESS)
                status = editor.removeKey(PLConstants::SEQUENCEINFO_KEY, key);
        };
        const auto add = [&](const QString& key, const QString& value) {
            if (status == PL_SUCCESS)
                status = editor.addKeyValue(PLConstants::SEQUENCEINFO_KEY, key, value);
        };
        for (int i = 0; i < keys.size(); ++i) {
            const QString& key = keys.at(i);
            if (seen.contains(key.toLower()))
                continue;
            seen.insert(key.toLower());
            const int number = clickLineNumber(key);
            if (number > 0 && number <= count
                && isSameKey(key, CLICK_LINE_PREFIX + QString::number(number))) {
                // A line that holds its click already stays as it is, blanks and all.
                if (values.at(i) != clickNumbers.at(number - 1))
                    set(key, clickNumbers.at(number - 1));
                written.insert(number);
            } else if (number > 0) {
                remove(key);
            } else if (isSameKey(key, PLConstants::CLICKNUMBER_IN_SEQUENCE_KEY)) {
                if (count == 0)
                    remove(key);
                else if (values.at(i) != QString::number(count))
                    set(key, QString::number(count));
            } else if (isSameKey(key, PLConstants::SEQUENCEINFO_CLICK_NUMBERS_KEY)) {
                count > 0 ? remove(key) : set(key, PLConstants::EMPTY_SEQUENCE_KEY);
            }
        }
        if (count > 0 && !seen.contains(PLConstants::CLICKNUMBER_IN_SEQUENCE_KEY.toLower()))
            add(PLConstants::CLICKNUMBER_IN_SEQUENCE_KEY, QString::number(count));
        for (int number = 1; number <= count; ++number)
            if (!written.contains(number))
                add(CLICK_LINE_PREFIX + QString::number(number), clickNumbers.at(number - 1));
        if (count == 0 && !seen.contains(PLConstants::SEQUENCEINFO_CLICK_NUMBERS_KEY.toLower()))
            add(PLConstants::SEQUENCEINFO_CLICK_NUMBERS_KEY, PLConstants::EMPTY_SEQUENCE_KEY);
        return status;
    });
    if (edited == PL_SUCCESS)
        return PL_SUCCESS;
    rewriteClickNumbers(clickNumbers);
    dropKeptBytes();
    return PL_SUCCESS;
}

void CPLSequenceInfo::rewriteClickNumbers(const QStringList& clickNumbers)
{
    const CPLSection* old = (*this)[PLConstants::SEQUENCEINFO_KEY];
    QString body
        = lineText(PLConstants::CLICKNUMBER_IN_SEQUENCE_KEY, QString::number(clickNumbers.size()));
    for (int i = 0; i < clickNumbers.size(); ++i)
        body += lineText(CLICK_LINE_PREFIX + QString::number(i + 1), clickNumbers.at(i));
    if (clickNumbers.isEmpty())
        body += lineText(PLConstants::SEQUENCEINFO_CLICK_NUMBERS_KEY,
                         PLConstants::EMPTY_SEQUENCE_KEY);
    // The section's other lines follow as they stood: comments and keys of one's own.
    replaceSection(sectionWith(*old, body, isClickListLine));
}

int CPLSequenceInfo::getUserInput(LabelValues* labelsAndValues) const
{
    if (!labelsAndValues)
        return PL_NULL_ARGUMENT;
    const CPLSection* section = (*this)[PLConstants::SEQUENCEINFO_USERINPUT_KEY];
    if (!section)
        return PL_SECTION_NOT_PRESENT;
    QStringList keys;
    QStringList values;
    section->getKeyList(&keys);
    section->getValueList(&values);
    LabelValues entries;
    for (int i = 0; i < keys.size(); ++i)
        entries.append({ keys.at(i), values.value(i) });
    *labelsAndValues = entries;
    return PL_SUCCESS;
}

int CPLSequenceInfo::getUserInputValue(const QString& label, QString* value) const
{
    return getValue(PLConstants::SEQUENCEINFO_USERINPUT_KEY, label, value);
}

int CPLSequenceInfo::setUserInputValue(const QString& label, const QString& value)
{
    if (CPLSection::breaksFile(value, CPLSection::TextRole::Value))
        return PL_INVALID_ARGUMENT;
    const int edited = editKeptBytes([&](CPLFileEditor& editor) {
        return editor.setValue(PLConstants::SEQUENCEINFO_USERINPUT_KEY, label, value);
    });
    if (!canEditSectionsInstead(edited))
        return edited;
    const int status = setValue(PLConstants::SEQUENCEINFO_USERINPUT_KEY, label, value);
    if (status == PL_SUCCESS)
        dropKeptBytes();
    return status;
}

int CPLSequenceInfo::setUserInput(const QString& labelSetName, const LabelValues& labelsAndValues)
{
    if (const int status = checkUserInput(labelSetName, labelsAndValues))
        return status;
    dropKeptBytes();
    auto userInput
        = std::make_unique<CPLSection>(PLConstants::SEQUENCEINFO_USERINPUT_KEY, labelSetName);
    auto labelSet = std::make_unique<CPLSection>(PLConstants::SEQUENCEINFO_USER_LABEL_NAME_SET_KEY,
                                                 labelSetName);
    for (const auto& entry : labelsAndValues) {
        userInput->addKeyValue(entry.first, entry.second);
        labelSet->addKeyValue(entry.first, QString());
    }
    replaceSection(std::move(userInput));
    replaceSection(std::move(labelSet));
    return PL_SUCCESS;
}

int CPLSequenceInfo::getLabelSetName(QString* labelSetName) const
{
    if (!labelSetName)
        return PL_NULL_ARGUMENT;
    const CPLSection* section = (*this)[PLConstants::SEQUENCEINFO_USER_LABEL_NAME_SET_KEY];
    if (!section)
        section = (*this)[PLConstants::SEQUENCEINFO_USERINPUT_KEY];
    return section ? section->getSectionName(labelSetName) : PL_SECTION_NOT_PRESENT;
}

int CPLSequenceInfo::getLabelSetLabels(QStringList* labels) const
{
    if (!labels)
        return PL_NULL_ARGUMENT;
    const CPLSection* section = (*this)[PLConstants::SEQUENCEINFO_USER_LABEL_NAME_SET_KEY];
    return section ? section->getKeyList(labels) : PL_SECTION_NOT_PRESENT;
}

QStringList CPLSequenceInfo::getRestoreResultKeys() const
{
    QStringList keys;
    if (const CPLSection* section = (*this)[PLConstants::RESTORE_RESULTS_SECTION_KEY])
        section->getKeyList(&keys);
    return keys;
}

int CPLSequenceInfo::getRestoreResult(const QString& key, QString* value) const
{
    return getValue(PLConstants::RESTORE_RESULTS_SECTION_KEY, key, value);
}

int CPLSequenceInfo::setRestoreResult(const QString& key, const QString& value)
{
    if (key.isEmpty())
        return PL_EMPTY_KEY;
    if (CPLSection::textFault(key, CPLSection::TextRole::Key) != CPLSection::TextFault::None
        || CPLSection::breaksFile(value, CPLSection::TextRole::Value))
        return PL_INVALID_ARGUMENT;
    const int edited = editKeptBytes([&](CPLFileEditor& editor) {
        const int status = editor.setValue(PLConstants::RESTORE_RESULTS_SECTION_KEY, key, value);
        return status == PL_SECTION_NOT_PRESENT || status == PL_KEY_NOT_FOUND
            ? editor.addKeyValue(PLConstants::RESTORE_RESULTS_SECTION_KEY, key, value)
            : status;
    });
    if (!canEditSectionsInstead(edited))
        return edited;
    CPLSection* section = (*this)[PLConstants::RESTORE_RESULTS_SECTION_KEY];
    if (!section)
        section = addNewSection(PLConstants::RESTORE_RESULTS_SECTION_KEY,
                                PLConstants::RESTORE_RESULTS_SECTION_VALUE);
    const int status = section->addKeyValue(key, value);
    if (status == PL_SUCCESS)
        dropKeptBytes();
    return status;
}

int CPLSequenceInfo::removeRestoreResult(const QString& key)
{
    CPLSection* section = (*this)[PLConstants::RESTORE_RESULTS_SECTION_KEY];
    if (!section)
        return PL_SECTION_NOT_PRESENT;
    QString value;
    if (key.isEmpty() || CPLSection::isCommentKey(key)
        || section->getRawValue(key, &value) != PL_SUCCESS)
        return PL_KEY_NOT_FOUND;
    const int edited = editKeptBytes([&](CPLFileEditor& editor) {
        return editor.removeKey(PLConstants::RESTORE_RESULTS_SECTION_KEY, key);
    });
    if (!canEditSectionsInstead(edited))
        return edited;
    dropKeptBytes();
    replaceSection(sectionWith(*section, QString(),
                               [&](const QString& entryKey) { return isSameKey(entryKey, key); }));
    return PL_SUCCESS;
}

int CPLSequenceInfo::verify(const QString& folder, CPLSequenceCheck* check) const
{
    if (!check)
        return PL_NULL_ARGUMENT;
    const QDir dir(folder);
    if (folder.isEmpty() || !dir.exists())
        return PL_FOLDER_MISSING;
    QStringList clickNumbers;
    if (const int status = getClickNumbers(&clickNumbers))
        return status;
    CPLSequenceCheck result;
    for (const QString& clickNumber : qAsConst(clickNumbers)) {
        if (!QFileInfo(dir.filePath(clickNumber)).isDir())
            result.missingFolders.append(clickNumber);
        else if (!QFileInfo(dir.filePath(clickNumber + QLatin1Char('/')
                                         + PLConstants::CLICKINFO_FILENAME))
                      .isFile())
            result.missingClickInfo.append(clickNumber);
    }
    const QSet<QString> listed(clickNumbers.begin(), clickNumbers.end());
    const QStringList subfolders = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& subfolder : subfolders) {
        if (!listed.contains(subfolder)
            && QFileInfo(
                   dir.filePath(subfolder + QLatin1Char('/') + PLConstants::CLICKINFO_FILENAME))
                   .isFile())
            result.unlisted.append(subfolder);
    }
    *check = result;
    return PL_SUCCESS;
}

QString CPLSequenceInfo::defaultSequenceID(const QString& firstClickNumber)
{
    const int cut = firstClickNumber.lastIndexOf(QLatin1Char('_'));
    return cut > 0 ? firstClickNumber.left(cut) : firstClickNumber;
}

int CPLSequenceInfo::createFromAcquisitions(const QStringList& acquisitionFolders,
                                            const QString& sequenceID, QString* failedFolder)
{
    if (acquisitionFolders.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    Acquisitions read;
    for (const QString& folder : acquisitionFolders) {
        if (const int status = readAcquisition(folder, &read)) {
            if (failedFolder)
                *failedFolder = folder;
            return status;
        }
    }
    const QString id
        = sequenceID.isEmpty() ? defaultSequenceID(read.clickNumbers.first()) : sequenceID;
    if (const int status = checkText(id, CPLSection::TextRole::SectionName))
        return status;
    if (read.hasUserInput && checkUserInput(read.labelSetName, read.userInput) != PL_SUCCESS) {
        if (failedFolder)
            *failedFolder = acquisitionFolders.first();
        return PL_INVALID_ARGUMENT;
    }
    clearData();
    setSequenceID(id);
    rewriteClickNumbers(read.clickNumbers);
    if (read.hasUserInput)
        setUserInput(read.labelSetName, read.userInput);
    addNewSection(PLConstants::RESTORE_RESULTS_SECTION_KEY,
                  PLConstants::RESTORE_RESULTS_SECTION_VALUE);
    return PL_SUCCESS;
}
