#include "PLBkgSummaryInfo.h"

#include "PLConstants.h"
#include "PLKeyHash_p.h"
#include "PLLogging_p.h"
#include "PLPaths.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "PLUtilities.h"
#include "PLValueText_p.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace {

using PLText::decimalText;
using PLText::readNumber;

const QString& clickInfoKey(int position)
{
    return PLConstants::strClickInfoKeys[position];
}

// The keys of an entry, those of an acquisition's image section.
const QString& KEY_DATE = clickInfoKey(0);
const QString& KEY_TIME = clickInfoKey(1);
const QString& KEY_SECONDS = clickInfoKey(2);
const QString& KEY_FIELD_OF_VIEW = clickInfoKey(5);
const QString& KEY_F_NUMBER = clickInfoKey(6);
const QString& KEY_BINNING = clickInfoKey(9);
const QString& KEY_EXPOSURE = clickInfoKey(20);
const QString& KEY_DEMAND_TEMPERATURE = clickInfoKey(22);
const QString& KEY_TEMPERATURE = clickInfoKey(23);
const QString& KEY_SUBTYPE = clickInfoKey(27);
const QString& KEY_FILE_NAME = PLConstants::strBrowseImage_NameKeyPairs[17];
const QString& KEY_PATH_NAME = PLConstants::strBrowseImage_NameKeyPairs[19];

const QString INDEX_SECTION = QStringLiteral("Background Index");
const QString LUMINESCENT_WORD = QStringLiteral("luminescent");
const QString& FLUORESCENT_WORD = PLConstants::FLUORESCENT_LUMINESCENT_TAG;

// Temperatures read from text: a difference at the tolerance itself still fits.
constexpr double TEMPERATURE_SLACK = 1e-9;

QString familyWord(bool fluorescent)
{
    return fluorescent ? FLUORESCENT_WORD : LUMINESCENT_WORD;
}

QString familyWord(CPLBkgSummaryInfo::Family family)
{
    return familyWord(family == CPLBkgSummaryInfo::Fluorescent);
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// Whether two fields of view are the same: as numbers when both read as numbers ("12.5" and
// "12.50"), else as text in any case ("C" and "c").
bool sameFieldOfView(const QString& a, const QString& b)
{
    double x = 0;
    double y = 0;
    if (readNumber(a, &x) && readNumber(b, &y))
        return x == y;
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// Whether a path from the library folder stays inside it: relative, no ".." part.
bool staysInside(const QString& path)
{
    if (path.isEmpty() || QDir::isAbsolutePath(path) || path.startsWith(QLatin1Char('\\')))
        return false;
    const QStringList parts = path.split(QLatin1Char('/'));
    return !parts.contains(QStringLiteral("..")) && !parts.contains(QString());
}

// Why an ID cannot name an entry (its section, its index line and its folder); empty when it
// can.
QString idFault(const QString& id)
{
    for (const CPLSection::TextRole role :
         { CPLSection::TextRole::SectionKey, CPLSection::TextRole::Key }) {
        const QString fault = CPLSection::textFaultText(id, role);
        if (!fault.isEmpty())
            return fault;
    }
    if (id.contains(QLatin1Char('/')) || id.contains(QLatin1Char('\\')) || id == QLatin1String(".")
        || id == QLatin1String(".."))
        return QStringLiteral("the ID ") + quoted(id) + QStringLiteral(" cannot name a folder");
    return QString();
}

// Where an entry's image lies when the entry does not say: its own folder, named after its
// ID, and the image "background.tif" in it.
void placeInItsFolder(sBkgEntry* entry)
{
    if (entry->m_strPathName.isEmpty())
        entry->m_strPathName = entry->m_strId;
    if (entry->m_strFileName.isEmpty())
        entry->m_strFileName = PLConstants::BACKGROUND_TIF_FILENAME;
}

// Reads a section as an entry. Returns why it is not a usable one, empty when it is.
QString readEntry(const CPLSection& section, sBkgEntry* entry)
{
    sBkgEntry read;
    section.getSectionKey(&read.m_strId);
    const auto value = [&section](const QString& key) { return section[key]; };
    const auto missing = [](const QString& key) -> QString { return QStringLiteral("no ") + key; };
    const auto notNumber = [](const QString& key, const QString& text) -> QString {
        return key + QLatin1Char(' ') + quoted(text) + QStringLiteral(" is not a number");
    };

    if (const QString fault = idFault(read.m_strId); !fault.isEmpty())
        return fault;
    const QString subtype = value(KEY_SUBTYPE);
    if (subtype.compare(FLUORESCENT_WORD, Qt::CaseInsensitive) == 0)
        read.m_bFluorescent = true;
    else if (subtype.compare(LUMINESCENT_WORD, Qt::CaseInsensitive) != 0)
        return subtype.isNull() ? missing(KEY_SUBTYPE)
                                : KEY_SUBTYPE + QLatin1Char(' ') + quoted(subtype)
                + QStringLiteral(" is neither luminescent nor fluorescent");

    const QString binning = value(KEY_BINNING);
    if (binning.isNull())
        return missing(KEY_BINNING);
    bool ok = false;
    read.m_iBinning = binning.toInt(&ok);
    if (!ok || read.m_iBinning < 1)
        return KEY_BINNING + QLatin1Char(' ') + quoted(binning)
            + QStringLiteral(" is not a whole number above 0");

    const QString exposure = value(KEY_EXPOSURE);
    if (exposure.isNull())
        return missing(KEY_EXPOSURE);
    if (!readNumber(exposure, &read.m_dExposure) || read.m_dExposure < 0)
        return notNumber(KEY_EXPOSURE, exposure);

    read.m_strFieldOfView = value(KEY_FIELD_OF_VIEW);
    if (read.m_strFieldOfView.isEmpty())
        return missing(KEY_FIELD_OF_VIEW);

    const QString temperature = value(KEY_TEMPERATURE);
    if (temperature.isNull())
        return missing(KEY_TEMPERATURE);
    if (!readNumber(temperature, &read.m_dTemperature))
        return notNumber(KEY_TEMPERATURE, temperature);

    const QString fNumber = value(KEY_F_NUMBER);
    if (!fNumber.isEmpty() && !readNumber(fNumber, &read.m_dFNumber))
        return notNumber(KEY_F_NUMBER, fNumber);

    const QString seconds = value(KEY_SECONDS);
    if (!seconds.isEmpty()) {
        const qlonglong since1904 = seconds.toLongLong(&ok);
        if (!ok)
            return notNumber(KEY_SECONDS, seconds);
        read.m_Acquired = QDateTime::fromSecsSinceEpoch(
            since1904 - qlonglong(PL_SECONDS_1904_TO_1970), Qt::UTC);
    }

    read.m_strPathName = value(KEY_PATH_NAME);
    read.m_strFileName = value(KEY_FILE_NAME);
    placeInItsFolder(&read);
    if (!staysInside(read.m_strPathName))
        return KEY_PATH_NAME + QLatin1Char(' ') + quoted(read.m_strPathName)
            + QStringLiteral(" leaves the library folder");
    if (!staysInside(read.m_strFileName))
        return KEY_FILE_NAME + QLatin1Char(' ') + quoted(read.m_strFileName)
            + QStringLiteral(" leaves the background's folder");
    *entry = read;
    return QString();
}

// The image of an entry from the library folder, as its index line gives it.
QString imagePath(const sBkgEntry& entry)
{
    return entry.m_strPathName + QLatin1Char('/') + entry.m_strFileName;
}

// The date and time keys of an acquisition moment, as the moment shows them in its own zone.
QString dateText(const QDateTime& moment)
{
    const QDate date = moment.date();
    std::tm time {};
    time.tm_year = date.year() - 1900;
    time.tm_mon = date.month() - 1;
    time.tm_mday = date.day();
    time.tm_wday = date.dayOfWeek() % 7;
    return getDateOVSFormat(&time);
}

QString timeText(const QDateTime& moment)
{
    const QTime clock = moment.time();
    std::tm time {};
    time.tm_hour = clock.hour();
    time.tm_min = clock.minute();
    time.tm_sec = clock.second();
    return getTimeOVSFormat(&time);
}

// The section of an entry whose fields have been checked.
std::unique_ptr<CPLSection> entrySection(const sBkgEntry& entry)
{
    auto section = std::make_unique<CPLSection>(entry.m_strId, entry.m_strId);
    section->addKeyValue(KEY_SUBTYPE, familyWord(entry.m_bFluorescent));
    section->addKeyValue(KEY_BINNING, QString::number(entry.m_iBinning));
    section->addKeyValue(KEY_EXPOSURE, decimalText(entry.m_dExposure));
    section->addKeyValue(KEY_F_NUMBER, decimalText(entry.m_dFNumber));
    section->addKeyValue(KEY_FIELD_OF_VIEW, entry.m_strFieldOfView);
    section->addKeyValue(KEY_TEMPERATURE, decimalText(entry.m_dTemperature));
    if (entry.m_Acquired.isValid()) {
        section->addKeyValue(KEY_DATE, dateText(entry.m_Acquired));
        section->addKeyValue(KEY_TIME, timeText(entry.m_Acquired));
        section->addKeyValue(KEY_SECONDS,
                             QString::number(entry.m_Acquired.toSecsSinceEpoch()
                                             + qlonglong(PL_SECONDS_1904_TO_1970)));
    }
    section->addKeyValue(KEY_PATH_NAME, entry.m_strPathName);
    section->addKeyValue(KEY_FILE_NAME, entry.m_strFileName);
    return section;
}

// The status for an entry to be added: 0, or what is wrong with it.
int checkNewEntry(const sBkgEntry& entry)
{
    if (entry.m_strFieldOfView.isEmpty())
        return PL_EMPTY_KEY;
    if (entry.m_iBinning < 1 || !std::isfinite(entry.m_dExposure) || entry.m_dExposure < 0
        || !std::isfinite(entry.m_dFNumber) || entry.m_dFNumber < 0
        || !std::isfinite(entry.m_dTemperature))
        return PL_OUT_OF_RANGE;
    const auto breaks = [](const QString& text) {
        return CPLSection::textFault(text, CPLSection::TextRole::Value)
            != CPLSection::TextFault::None
            || text.contains(QLatin1Char('#'));
    };
    if (breaks(entry.m_strFieldOfView) || breaks(entry.m_strPathName) || breaks(entry.m_strFileName)
        || !staysInside(entry.m_strPathName) || !staysInside(entry.m_strFileName))
        return PL_INVALID_ARGUMENT;
    return idFault(entry.m_strId).isEmpty() ? PL_SUCCESS : PL_INVALID_ARGUMENT;
}

// The acquisition's settings that matching compares.
struct Acquisition
{
    bool fluorescent = false;
    int binning = 0;
    double exposure = 0;
    QString fieldOfView;
    bool hasTemperature = false;
    double temperature = 0;
};

// Reads the acquisition from its image section; returns 0 or the status, with the reason.
int readAcquisition(const CPLSection& section, Acquisition* acquisition, QString* reason)
{
    const auto fail = [reason](int status, const QString& why) {
        if (reason)
            *reason = why;
        return status;
    };
    Acquisition read;
    read.fluorescent = section[KEY_SUBTYPE].compare(FLUORESCENT_WORD, Qt::CaseInsensitive) == 0;
    for (const QString* key : { &KEY_BINNING, &KEY_EXPOSURE, &KEY_FIELD_OF_VIEW }) {
        if (section[*key].isEmpty())
            return fail(PL_KEY_NOT_FOUND, QStringLiteral("the image section has no ") + *key);
    }
    bool ok = false;
    read.binning = section[KEY_BINNING].toInt(&ok);
    if (!ok || read.binning < 1)
        return fail(PL_INVALID_ARGUMENT,
                    KEY_BINNING + QLatin1Char(' ') + quoted(section[KEY_BINNING])
                        + QStringLiteral(" is not a whole number above 0"));
    if (!readNumber(section[KEY_EXPOSURE], &read.exposure))
        return fail(PL_INVALID_ARGUMENT,
                    KEY_EXPOSURE + QLatin1Char(' ') + quoted(section[KEY_EXPOSURE])
                        + QStringLiteral(" is not a number"));
    read.fieldOfView = section[KEY_FIELD_OF_VIEW];
    for (const QString* key : { &KEY_TEMPERATURE, &KEY_DEMAND_TEMPERATURE }) {
        if (!read.hasTemperature)
            read.hasTemperature = readNumber(section[*key], &read.temperature);
    }
    *acquisition = read;
    return PL_SUCCESS;
}

// How far an entry got through the tests of matching, in their order.
enum Stage { NoStage, FamilyPassed, BinningPassed, FieldOfViewPassed, ExposurePassed, Fits };

// One pass over the entries: the best that fits, and what the nearest misses were.
struct Matcher
{
    Matcher(const Acquisition& acquisition, double tolerance)
        : acquisition(acquisition)
        , tolerance(tolerance)
    {
    }

    const Acquisition& acquisition;
    double tolerance;
    Stage deepest = NoStage;
    double longestExposure = -1;
    double closestTemperature = 0;
    double closestDifference = std::numeric_limits<double>::infinity();
    bool found = false;
    sBkgEntry best;

    Stage stageOf(const sBkgEntry& entry) const
    {
        if (entry.m_bFluorescent != acquisition.fluorescent)
            return NoStage;
        if (entry.m_iBinning != acquisition.binning)
            return FamilyPassed;
        if (!sameFieldOfView(entry.m_strFieldOfView, acquisition.fieldOfView))
            return BinningPassed;
        if (entry.m_dExposure < acquisition.exposure)
            return FieldOfViewPassed;
        if (acquisition.hasTemperature
            && std::fabs(entry.m_dTemperature - acquisition.temperature)
                > tolerance + TEMPERATURE_SLACK)
            return ExposurePassed;
        return Fits;
    }

    // Whether `entry` is to be preferred to `best`: shorter exposure, then newer; an entry
    // without a date is older than any with one; the first of the summary wins a full tie.
    bool better(const sBkgEntry& entry) const
    {
        if (!found || entry.m_dExposure != best.m_dExposure)
            return !found || entry.m_dExposure < best.m_dExposure;
        if (!entry.m_Acquired.isValid())
            return false;
        return !best.m_Acquired.isValid() || entry.m_Acquired > best.m_Acquired;
    }

    void consider(const sBkgEntry& entry)
    {
        const Stage stage = stageOf(entry);
        deepest = std::max(deepest, stage);
        if (stage == FieldOfViewPassed)
            longestExposure = std::max(longestExposure, entry.m_dExposure);
        if (stage == ExposurePassed) {
            const double difference = std::fabs(entry.m_dTemperature - acquisition.temperature);
            if (difference < closestDifference) {
                closestDifference = difference;
                closestTemperature = entry.m_dTemperature;
            }
        }
        if (stage == Fits && better(entry)) {
            best = entry;
            found = true;
        }
    }

    QString reason() const
    {
        const QString family = familyWord(acquisition.fluorescent);
        const QString binning = QString::number(acquisition.binning);
        const auto celsius
            = [](double t) -> QString { return QString::number(t, 'f', 1) + QStringLiteral(" C"); };
        switch (deepest) {
        case NoStage:
            return QStringLiteral("no ") + family + QStringLiteral(" background in the library");
        case FamilyPassed:
            return QStringLiteral("no ") + family + QStringLiteral(" background with binning ")
                + binning;
        case BinningPassed:
            return QStringLiteral("no ") + family + QStringLiteral(" background with binning ")
                + binning + QStringLiteral(" and field of view ") + acquisition.fieldOfView;
        case FieldOfViewPassed:
            return QStringLiteral("no exposure >= ") + decimalText(acquisition.exposure)
                + QStringLiteral(" s for binning ") + binning + QStringLiteral(" field of view ")
                + acquisition.fieldOfView + QStringLiteral(" (the longest is ")
                + decimalText(longestExposure) + QStringLiteral(" s)");
        case ExposurePassed:
        case Fits:
            break;
        }
        return QStringLiteral("temperature ") + celsius(acquisition.temperature)
            + QStringLiteral(" differs by more than ") + celsius(tolerance)
            + QStringLiteral(" from every candidate (closest ") + celsius(closestTemperature)
            + QLatin1Char(')');
    }
};

// The largest number after `prefix` among the IDs, 0 when none has the form.
int highestNumber(const QStringList& ids, const QString& prefix)
{
    int highest = 0;
    for (const QString& id : ids) {
        if (!id.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        bool ok = false;
        const int number = id.mid(prefix.size()).toInt(&ok);
        if (ok)
            highest = std::max(highest, number);
    }
    return highest;
}

} // namespace

bool sBkgEntry::operator==(const sBkgEntry& other) const
{
    return m_strId == other.m_strId && m_bFluorescent == other.m_bFluorescent
        && m_iBinning == other.m_iBinning && m_dExposure == other.m_dExposure
        && m_dFNumber == other.m_dFNumber && m_strFieldOfView == other.m_strFieldOfView
        && m_dTemperature == other.m_dTemperature && m_Acquired == other.m_Acquired
        && m_strPathName == other.m_strPathName && m_strFileName == other.m_strFileName;
}

CPLBkgSummaryInfo::CPLBkgSummaryInfo()
{
    // A second section under an entry's ID (a note about it) is kept where it stood.
    setRepeatedSectionRule(KeepApart);
}

CPLBkgSummaryInfo::~CPLBkgSummaryInfo() = default;

void CPLBkgSummaryInfo::clearData()
{
    CPLClickInfo::clearData();
    m_LibraryWarnings.clear();
}

int CPLBkgSummaryInfo::load(const QString& folder)
{
    if (folder.isEmpty())
        return PL_NULL_ARGUMENT;
    if (!QFileInfo(folder).isDir())
        return PL_FOLDER_MISSING;
    clearData();
    const QString summary = folder + QLatin1Char('/') + PLConstants::BKGSUMMARY_TXT_FILENAME;
    const int status = loadClickInfo(summary);
    if (status != PL_SUCCESS)
        return status;
    noteRepeatedSections();
    const QList<sBkgEntry> entries = checkSections();
    for (const Family family : { Luminescent, Fluorescent })
        compareIndex(family, indexPath(folder, family), entries, &m_LibraryWarnings);
    return PL_SUCCESS;
}

int CPLBkgSummaryInfo::save(const QString& folder) const
{
    if (folder.isEmpty())
        return PL_NULL_ARGUMENT;
    if (!QFileInfo(folder).isDir())
        return PL_FOLDER_MISSING;
    return PL_GUARDED({
        // The summary and its two indexes are saved together: all of them, or none; the
        // summary with the checks of every document's save over the file it was loaded from.
        QList<QPair<QString, QByteArray>> indexes;
        QList<sBkgEntry> entries;
        getEntries(&entries);
        for (const Family family : { Luminescent, Fluorescent }) {
            CPLClickInfo index;
            buildIndex(family, entries, &index);
            indexes.append({ indexPath(folder, family), index.getClickInfoData().toLatin1() });
        }
        return saveClickInfoWith(folder + QLatin1Char('/') + PLConstants::BKGSUMMARY_TXT_FILENAME,
                                 indexes);
    });
}

QString CPLBkgSummaryInfo::indexPath(const QString& folder, Family family) const
{
    return folder + QLatin1Char('/')
        + (family == Fluorescent ? PLConstants::FLINDEX_TXT_FILENAME
                                 : PLConstants::SLINDEX_TXT_FILENAME);
}

int CPLBkgSummaryInfo::loadSummary(const QString& filePath)
{
    clearData();
    const int status = loadClickInfo(filePath);
    if (status == PL_SUCCESS) {
        noteRepeatedSections();
        checkSections();
    }
    return status;
}

template<typename Take> void CPLBkgSummaryInfo::forEachEntry(Take take) const
{
    const QStringList keys = getSectionKeys();
    for (int position = 0; position < keys.size(); ++position) {
        const CPLSection& section = *(*this)[position];
        sBkgEntry entry;
        if (!isRepeat(keys.at(position), section) && readEntry(section, &entry).isEmpty())
            take(entry);
    }
}

bool CPLBkgSummaryInfo::isRepeat(const QString& mapKey, const CPLSection& section)
{
    QString key;
    section.getSectionKey(&key);
    return key != mapKey;
}

void CPLBkgSummaryInfo::noteRepeatedSections()
{
    const QStringList keys = getSectionKeys();
    for (const QString& mapKey : keys) {
        const CPLSection& section = *(*this)[mapKey];
        if (!isRepeat(mapKey, section))
            continue;
        QString key;
        section.getSectionKey(&key);
        m_LibraryWarnings.append(
            QStringLiteral("%1: section %2 repeats the ID of the entry on line %3; kept as it "
                           "stands and saved back there, not read as an entry")
                .arg(getSectionOrigin(mapKey).toString(), quoted(key))
                .arg(getSectionOrigin(key).line));
    }
}

int CPLBkgSummaryInfo::saveSummary(const QString& filePath) const
{
    return saveClickInfo(filePath);
}

QList<sBkgEntry> CPLBkgSummaryInfo::checkSections()
{
    QList<sBkgEntry> entries;
    const QStringList keys = getSectionKeys();
    for (const QString& key : keys) {
        if (isRepeat(key, *(*this)[key]))
            continue; // told by noteRepeatedSections()
        sBkgEntry entry;
        const QString fault = readEntry(*(*this)[key], &entry);
        if (fault.isEmpty()) {
            entries.append(entry);
            continue;
        }
        const CPLTextLocation origin = getSectionOrigin(key);
        const QString where
            = origin.isKnown() ? origin.toString() + QStringLiteral(": ") : QString();
        m_LibraryWarnings.append(where + QStringLiteral("section ") + quoted(key)
                                 + QStringLiteral(": not a background entry: ") + fault);
    }
    return entries;
}

QStringList CPLBkgSummaryInfo::getLibraryWarnings() const
{
    return m_LibraryWarnings;
}

int CPLBkgSummaryInfo::getEntries(QList<sBkgEntry>* entries) const
{
    if (!entries)
        return PL_NULL_ARGUMENT;
    QList<sBkgEntry> list;
    list.reserve(sectionCount());
    forEachEntry([&](const sBkgEntry& entry) { list.append(entry); });
    *entries = list;
    return PL_SUCCESS;
}

int CPLBkgSummaryInfo::getEntry(const QString& id, sBkgEntry* entry) const
{
    if (!entry)
        return PL_NULL_ARGUMENT;
    const CPLSection* section = id.isEmpty() ? nullptr : (*this)[id];
    if (!section)
        return PL_KEY_NOT_FOUND;
    return readEntry(*section, entry).isEmpty() ? PL_SUCCESS : PL_INVALID_ARGUMENT;
}

void CPLBkgSummaryInfo::buildIndex(Family family, const QList<sBkgEntry>& entries,
                                   CPLClickInfo* index)
{
    CPLSection* section = index->addNewSection(INDEX_SECTION, familyWord(family));
    for (const sBkgEntry& entry : qAsConst(entries)) {
        if (entry.m_bFluorescent == (family == Fluorescent))
            section->addKeyValue(entry.m_strId, imagePath(entry));
    }
}

QString CPLBkgSummaryInfo::getIndexData(Family family) const
{
    QList<sBkgEntry> entries;
    getEntries(&entries);
    CPLClickInfo index;
    buildIndex(family, entries, &index);
    return index.getClickInfoData();
}

int CPLBkgSummaryInfo::saveIndex(Family family, const QString& filePath) const
{
    QList<sBkgEntry> entries;
    getEntries(&entries);
    CPLClickInfo index;
    buildIndex(family, entries, &index);
    return index.saveClickInfo(filePath);
}

int CPLBkgSummaryInfo::checkIndex(Family family, const QString& filePath,
                                  QStringList* disagreements) const
{
    if (!disagreements)
        return PL_NULL_ARGUMENT;
    QList<sBkgEntry> entries;
    getEntries(&entries);
    compareIndex(family, filePath, entries, disagreements);
    return PL_SUCCESS;
}

void CPLBkgSummaryInfo::compareIndex(Family family, const QString& filePath,
                                     const QList<sBkgEntry>& entries,
                                     QStringList* disagreements) const
{
    const auto disagree = [disagreements, &filePath](const QString& what) {
        disagreements->append(filePath + QStringLiteral(": ") + what);
    };
    if (!QFileInfo::exists(filePath)) {
        disagree(QStringLiteral("the index is missing"));
        return;
    }
    CPLClickInfo index;
    const int status = index.loadClickInfo(filePath);
    if (status != PL_SUCCESS) {
        disagree(QStringLiteral("the index does not load: ") + getStatusText(status));
        return;
    }
    const CPLSection* listed = index[INDEX_SECTION];
    QStringList ids;
    QStringList images;
    if (listed) {
        listed->getKeyList(&ids);
        listed->getValueList(&images);
    } else {
        disagree(QStringLiteral("no section ") + quoted(INDEX_SECTION));
    }

    // Hashes keep the comparison linear in the number of entries.
    QHash<QString, int> listedAt;
    for (int position = ids.size() - 1; position >= 0; --position)
        listedAt.insert(ids.at(position), position);
    QSet<QString> expected;
    QStringList expectedCommon; // the summary's entries that the index lists, summary order
    for (const sBkgEntry& entry : qAsConst(entries)) {
        if (entry.m_bFluorescent != (family == Fluorescent))
            continue;
        expected.insert(entry.m_strId);
        const int at = listedAt.value(entry.m_strId, -1);
        if (at >= 0)
            expectedCommon.append(entry.m_strId);
        if (at < 0 && listed)
            disagree(QStringLiteral("lacks the ") + familyWord(family) + QStringLiteral(" entry ")
                     + entry.m_strId);
        else if (at >= 0 && images.at(at) != imagePath(entry))
            disagree(QStringLiteral("gives ") + entry.m_strId + QStringLiteral(" the image ")
                     + quoted(images.at(at)) + QStringLiteral(", the summary ")
                     + quoted(imagePath(entry)));
    }
    QStringList common; // the same, in the index's order
    for (const QString& id : qAsConst(ids)) {
        if (expected.contains(id))
            common.append(id);
        else
            disagree(QStringLiteral("lists ") + id
                     + QStringLiteral(", which the summary does not hold as a ")
                     + familyWord(family) + QStringLiteral(" entry"));
    }
    if (common != expectedCommon)
        disagree(QStringLiteral("lists the entries in another order than the summary"));
}

int CPLBkgSummaryInfo::addEntry(const sBkgEntry& entry, QString* id)
{
    sBkgEntry added = entry;
    if (added.m_strId.isEmpty()) {
        const QString prefix = added.m_bFluorescent ? QStringLiteral("FL") : QStringLiteral("SL");
        added.m_strId = prefix
            + QStringLiteral("%1").arg(highestNumber(getSectionKeys(), prefix) + 1, 4, 10,
                                       QLatin1Char('0'));
    }
    placeInItsFolder(&added);
    const int status = checkNewEntry(added);
    if (status != PL_SUCCESS)
        return status;
    if (isSectionPresent(added.m_strId))
        return PL_INVALID_ARGUMENT;
    std::unique_ptr<CPLSection> section = entrySection(added);
    if (adoptSection(section) != PL_SUCCESS || section)
        return PL_INVALID_ARGUMENT;
    if (id)
        *id = added.m_strId;
    return PL_SUCCESS;
}

int CPLBkgSummaryInfo::removeEntry(const QString& id)
{
    if (id.isEmpty())
        return PL_EMPTY_KEY;
    if (!isSectionPresent(id))
        return PL_KEY_NOT_FOUND;
    // The sections that repeat the ID go with it: the first of them would be the entry after
    // the next load.
    const QStringList keys = getSectionKeys();
    for (const QString& key : keys) {
        if (isRepeat(key, *(*this)[key])
            && PLKeyHash::equal(key.section(QLatin1Char('\n'), 0, 0), id))
            removeSection(key);
    }
    return removeSection(id);
}

int CPLBkgSummaryInfo::findBackground(const CPLClickInfo& acquisition, sBkgEntry* entry,
                                      QString* reason, double tolerance) const
{
    const CPLSection* section = acquisition[PLConstants::LUMINESCENT_IMAGE_SECTION];
    if (!section) {
        if (reason)
            *reason = QStringLiteral("the acquisition has no ")
                + quoted(PLConstants::LUMINESCENT_IMAGE_SECTION) + QStringLiteral(" section");
        return PL_SECTION_NOT_PRESENT;
    }
    return findBackground(*section, entry, reason, tolerance);
}

int CPLBkgSummaryInfo::findBackground(const CPLSection& imageSection, sBkgEntry* entry,
                                      QString* reason, double tolerance) const
{
    if (!entry)
        return PL_NULL_ARGUMENT;
    if (!std::isfinite(tolerance) || tolerance < 0)
        return PL_OUT_OF_RANGE;
    Acquisition acquisition;
    const int status = readAcquisition(imageSection, &acquisition, reason);
    if (status != PL_SUCCESS)
        return status;
    Matcher matcher(acquisition, tolerance);
    forEachEntry([&](const sBkgEntry& candidate) { matcher.consider(candidate); });
    if (!matcher.found) {
        if (reason)
            *reason = matcher.reason();
        return PL_NO_BACKGROUND_FITS;
    }
    *entry = matcher.best;
    return PL_SUCCESS;
}

int CPLBkgSummaryInfo::getEntriesOlderThan(int days, const QDateTime& reference,
                                           QList<sBkgEntry>* entries) const
{
    if (!entries)
        return PL_NULL_ARGUMENT;
    if (days < 0)
        return PL_OUT_OF_RANGE;
    if (!reference.isValid())
        return PL_INVALID_ARGUMENT;
    QList<sBkgEntry> all;
    getEntries(&all);
    const qint64 limit = qint64(days) * 24 * 60 * 60;
    QList<sBkgEntry> old;
    for (const sBkgEntry& entry : qAsConst(all)) {
        if (!entry.m_Acquired.isValid() || entry.m_Acquired.secsTo(reference) > limit)
            old.append(entry);
    }
    std::stable_sort(old.begin(), old.end(), [](const sBkgEntry& a, const sBkgEntry& b) {
        if (!a.m_Acquired.isValid() || !b.m_Acquired.isValid())
            return !a.m_Acquired.isValid() && b.m_Acquired.isValid();
        return a.m_Acquired < b.m_Acquired;
    });
    *entries = old;
    return PL_SUCCESS;
}

int CPLBkgSummaryInfo::saveBkgInfo(const QString& libraryFolder, const QString& id) const
{
    sBkgEntry entry;
    if (getEntry(id, &entry) != PL_SUCCESS)
        return PL_KEY_NOT_FOUND;
    const QString folder = libraryFolder + QLatin1Char('/') + entry.m_strPathName;
    if (createFolder(folder) != PL_SUCCESS)
        return PL_FILE_OPEN_FAILED;
    CPLClickInfo info;
    // The copy is the only section of an empty document: it is always taken.
    auto section = std::make_unique<CPLSection>(*(*this)[id]);
    if (info.addSection(section.get()) == PL_SUCCESS && info[id] == section.get())
        section.release();
    return info.saveClickInfo(folder + QLatin1Char('/') + PLConstants::BKGINFO_TXT_FILENAME);
}

int CPLBkgSummaryInfo::loadBkgInfo(const QString& filePath, sBkgEntry* entry)
{
    if (!entry)
        return PL_NULL_ARGUMENT;
    CPLClickInfo info;
    const int status = info.loadClickInfo(filePath);
    if (status != PL_SUCCESS)
        return status;
    const CPLSection* section = info[0];
    if (!section)
        return PL_NOTHING_TO_WORK_ON;
    return readEntry(*section, entry).isEmpty() ? PL_SUCCESS : PL_INVALID_ARGUMENT;
}
