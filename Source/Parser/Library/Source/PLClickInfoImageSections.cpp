// The image section builder of CPLClickInfo: the sections that describe a newly acquired
// image. Each image type writes a fixed sequence of keys; the sequences are made of the row
// tables below, and rowsOf() says which tables a type uses, in order.

#include "PLClickInfo.h"

#include "PLConstants.h"
#include "PLValueText_p.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "PLUtilities.h"

#include <QStringList>

#include <iterator>
#include <memory>
#include <optional>
#include <vector>

namespace {

using Setup = sIASetupInfo;
using Value = std::optional<QString>;

// Positions in PLConstants::strClickInfoKeys of the keys written here.
enum ClickInfoKey {
    AcquisitionDate = 0,
    AcquisitionTime = 1,
    AcquisitionSeconds = 2,
    ImageUnits = 3,
    ReadBiasLevel = 4,
    FieldOfView = 5,
    FNumber = 6,
    PixelWidth = 7,
    PixelHeight = 8,
    BinningFactor = 9,
    Cosmic = 10,
    DataMultiplier = 11,
    ImagingAngle = 12,
    ErrorWave = 13,
    FilterPosition = 14,
    ExposureTimeSec = 16,
    EmissionFilter = 17,
    ExcitationFilter = 18,
    SubjectSize = 19,
    LuminescentExposure = 20,
    LuminescentExposureUnits = 21,
    DemandTemperature = 22,
    MeasuredTemperature = 23,
    BackgroundExposure = 24,
    BackgroundCorrected = 25,
    FlatFieldCorrected = 26,
    ImageSubtype = 27,
    FluorescenceLevel = 28,
    FluorescenceLevelString = 29,
    MVStageDistance = 30,
    StructuredLightLittleL = 31,
    StructureFrequency = 32,
    ObjectRadius = 33,
    HeightReference = 34,
    HeightReferencePixelX = 35,
    HeightReferencePixelY = 36,
    FLGridName = 37,
    FLGridPosition = 38,
    FLXMotorPosition = 39,
    FLYMotorPosition = 40,
    FLXSpot = 41,
    FLYSpot = 42,
    EMGain = 47,
    XrayTubeVoltage = 48,
    XrayTubePlateCurrent = 49,
    XrayTubeFilter = 50,
};

const QString& key(ClickInfoKey position)
{
    return PLConstants::strClickInfoKeys[position];
}

// Keys and fixed values that the vocabulary has no constant for.
const QString SIDE_VIEW_MIRROR_KEY = QStringLiteral("Side View Mirror Enabled");
const QString COUNTS = QStringLiteral("counts");
const QString NO_ERROR = QStringLiteral("No Error");
const QString OPEN = QStringLiteral("Open");
const QString ZERO = QStringLiteral("0");
const QString ONE = QStringLiteral("1");
const QString ZERO_SECONDS = QStringLiteral("0.0");
// The reference stamp that an IMAGETYPE_FIXED_STAMP section carries after its own.
const QString FIXED_DATE = QStringLiteral("13/12/2022");
const QString FIXED_TIME = QStringLiteral("12:40");
const QString FIXED_SECONDS = QStringLiteral("23");

using PLText::decimalText;

std::tm localTime(const Setup& setup)
{
    std::tm time {};
    localtime_r(&setup.m_tTimeStamp, &time);
    return time;
}

// The value of a row, or nothing when the row is not written for this setup and type.
using ValueOf = Value (*)(const Setup&, tag_eimagetype);

struct Row
{
    const QString& key;
    ValueOf value;
};

template<const QString& fixed> Value constant(const Setup&, tag_eimagetype)
{
    return fixed;
}
template<QString Setup::*field> Value text(const Setup& setup, tag_eimagetype)
{
    return setup.*field;
}
template<typename T, T Setup::*field> Value number(const Setup& setup, tag_eimagetype)
{
    return decimalText(double(setup.*field));
}
// The x (`isX`) or y coordinate of a pair.
template<QPoint Setup::*field, bool isX> Value coordinate(const Setup& setup, tag_eimagetype)
{
    const QPoint& pair = setup.*field;
    return QString::number(isX ? pair.x() : pair.y());
}
// `value` when the setup's flag is set, else nothing.
template<bool Setup::*flag, ValueOf value> Value when(const Setup& setup, tag_eimagetype type)
{
    return setup.*flag ? value(setup, type) : std::nullopt;
}

Value date(const Setup& setup, tag_eimagetype)
{
    const std::tm time = localTime(setup);
    return getDateOVSFormat(&time);
}
Value timeOfDay(const Setup& setup, tag_eimagetype)
{
    const std::tm time = localTime(setup);
    return getTimeOVSFormat(&time);
}
Value seconds(const Setup& setup, tag_eimagetype)
{
    return getTimefrom1904(double(setup.m_tTimeStamp));
}
Value angle(const Setup& setup, tag_eimagetype)
{
    return setup.m_iViewMode == PL_VIEWMODE_ANGLED ? Value(decimalText(setup.m_dImagingAngle))
                                                   : std::nullopt;
}
Value gridPosition(const Setup& setup, tag_eimagetype)
{
    return QStringLiteral("%1, %2").arg(setup.m_ptGridPosition.x()).arg(setup.m_ptGridPosition.y());
}
Value imagingMode(const Setup& setup, tag_eimagetype)
{
    switch (setup.m_iImagingMode) {
    case PL_IMAGINGMODE_LARGEANIMAL:
        return PLConstants::IM_LARGEANIMAL;
    case PL_IMAGINGMODE_HIGHRESOLUTION:
        return PLConstants::IM_HIGHRESOLUTION;
    default:
        return PLConstants::IM_MOUSE;
    }
}
// "1" for an image already corrected, "0" for one that is not.
Value corrected(const Setup&, tag_eimagetype type)
{
    return type == IMAGETYPE_LUMINESCENT_CORRECTED ? ONE : ZERO;
}
template<ValueOf value> Value onlyForFLReference(const Setup& setup, tag_eimagetype type)
{
    return type == IMAGETYPE_FLUORESCENT_REFERENCE ? value(setup, type) : std::nullopt;
}

constexpr auto MIRROR = &when<&Setup::m_bSideViewMirror, constant<PLConstants::STRING_YES>>;
constexpr auto BINNING = &text<&Setup::m_strBinningFactor>;
constexpr auto F_NUMBER = &text<&Setup::m_strFNumber>;
constexpr auto FIELD_OF_VIEW = &text<&Setup::m_strFieldOfView>;
constexpr auto READ_BIAS = &text<&Setup::m_strReadBiasLevel>;
constexpr auto DEMAND_TEMPERATURE = &text<&Setup::m_strDemandTemperature>;
constexpr auto MEASURED_TEMPERATURE = &text<&Setup::m_strMeasuredTemperature>;
constexpr auto SUBJECT_SIZE = &number<double, &Setup::m_dSubjectSize>;

const Row COMMON_ROWS[] = {
    { key(AcquisitionDate), date },       { key(AcquisitionTime), timeOfDay },
    { key(AcquisitionSeconds), seconds }, { key(PixelWidth), constant<ONE> },
    { key(PixelHeight), constant<ONE> },
};

const Row FIXED_STAMP_ROWS[] = {
    { key(AcquisitionDate), constant<FIXED_DATE> },
    { key(AcquisitionTime), constant<FIXED_TIME> },
    { key(AcquisitionSeconds), constant<FIXED_SECONDS> },
    { key(PixelWidth), constant<ONE> },
    { key(PixelHeight), constant<ONE> },
};

const Row ANGLE_ROWS[] = { { key(ImagingAngle), angle } };

const Row MIRROR_ROWS[] = { { SIDE_VIEW_MIRROR_KEY, MIRROR } };

const Row LUMINESCENT_ROWS[] = {
    { key(ImageUnits), constant<COUNTS> },
    { key(BinningFactor), BINNING },
    { SIDE_VIEW_MIRROR_KEY, MIRROR },
    { key(LuminescentExposure), text<&Setup::m_strExposure> },
    { key(LuminescentExposureUnits), text<&Setup::m_strExposureUnits> },
    { key(EMGain), text<&Setup::m_strEMGain> },
    { key(FNumber), F_NUMBER },
    { key(FieldOfView), FIELD_OF_VIEW },
    { key(ReadBiasLevel), READ_BIAS },
    { key(EmissionFilter), text<&Setup::m_strEmissionFilter> },
    { key(FilterPosition), text<&Setup::m_strFilterPosition> },
    { key(ExcitationFilter), text<&Setup::m_strExcitationFilter> },
    { key(SubjectSize), SUBJECT_SIZE },
    { key(ImageSubtype),
      when<&Setup::m_bFluorescent, constant<PLConstants::FLUORESCENT_LUMINESCENT_TAG>> },
    { key(FluorescenceLevel), when<&Setup::m_bFluorescent, text<&Setup::m_strFluorescenceLevel>> },
    { key(FluorescenceLevelString),
      when<&Setup::m_bFluorescent, text<&Setup::m_strFluorescenceLevelString>> },
    { key(FLGridName), when<&Setup::m_bFluorescenceGrid, text<&Setup::m_strGridName>> },
    { key(FLGridPosition), when<&Setup::m_bFluorescenceGrid, gridPosition> },
    { key(FLXMotorPosition), when<&Setup::m_bFluorescenceGrid, text<&Setup::m_strXMotorPosition>> },
    { key(FLYMotorPosition), when<&Setup::m_bFluorescenceGrid, text<&Setup::m_strYMotorPosition>> },
    { key(FLXSpot), when<&Setup::m_bFluorescenceGrid, coordinate<&Setup::m_ptSpot, true>> },
    { key(FLYSpot), when<&Setup::m_bFluorescenceGrid, coordinate<&Setup::m_ptSpot, false>> },
    // The closing keys.
    { key(ErrorWave), constant<NO_ERROR> },
    { PLConstants::NORMALIZATION_MINIMAL_COUNTS,
      onlyForFLReference<number<float, &Setup::m_fNormalizationMinimalCounts>> },
    { PLConstants::RAW_BINNING_TRANSMISSION, onlyForFLReference<text<&Setup::m_strRawBinning>> },
    { key(DemandTemperature), DEMAND_TEMPERATURE },
    { key(MeasuredTemperature), MEASURED_TEMPERATURE },
    { key(Cosmic), corrected },
    { key(BackgroundCorrected), corrected },
    { key(FlatFieldCorrected), corrected },
};

const Row BIAS_ROWS[] = {
    { key(BinningFactor), BINNING },
    { key(ReadBiasLevel), READ_BIAS },
    { key(DemandTemperature), DEMAND_TEMPERATURE },
    { key(MeasuredTemperature), MEASURED_TEMPERATURE },
    { key(DataMultiplier), constant<ONE> },
    { key(BackgroundExposure), constant<ZERO_SECONDS> },
};

const Row STRUCTURE_ROWS[] = {
    { key(BinningFactor), BINNING },
    { key(ImageUnits), constant<COUNTS> },
    { key(FNumber), F_NUMBER },
    { key(FieldOfView), FIELD_OF_VIEW },
    { key(FilterPosition), constant<ONE> },
    { key(EmissionFilter), constant<OPEN> },
    { key(ExposureTimeSec), text<&Setup::m_strExposureTimeSec> },
    { key(ObjectRadius), number<double, &Setup::m_dObjectRadius> },
    { key(SubjectSize), SUBJECT_SIZE },
    { key(HeightReference), text<&Setup::m_strHeightReference> },
    { key(HeightReferencePixelX), coordinate<&Setup::m_ptHeightReferencePixel, true> },
    { key(HeightReferencePixelY), coordinate<&Setup::m_ptHeightReferencePixel, false> },
    { key(MVStageDistance), text<&Setup::m_strMVStageDistance> },
    { key(StructuredLightLittleL), text<&Setup::m_strStructuredLightLittleL> },
    { key(StructureFrequency), text<&Setup::m_strStructureFrequency> },
};

const Row FLUORESCENT_BKG_ROWS[] = {
    { key(BinningFactor), BINNING },
    { key(FNumber), F_NUMBER },
    { key(FieldOfView), FIELD_OF_VIEW },
    { key(ReadBiasLevel), READ_BIAS },
    { key(FluorescenceLevel), text<&Setup::m_strFluorescenceLevel> },
    { key(FluorescenceLevelString), text<&Setup::m_strFluorescenceLevelString> },
    { key(DemandTemperature), DEMAND_TEMPERATURE },
    { key(MeasuredTemperature), MEASURED_TEMPERATURE },
    { key(DataMultiplier), constant<ONE> },
    { key(BackgroundExposure), text<&Setup::m_strBackgroundExposure> },
};

const Row XRAY_ROWS[] = {
    { key(BinningFactor), BINNING },
    { key(FNumber), F_NUMBER },
    { key(FieldOfView), FIELD_OF_VIEW },
    { key(ReadBiasLevel), READ_BIAS },
    { key(XrayTubeVoltage), text<&Setup::m_strXrayTubeVoltage> },
    { key(XrayTubePlateCurrent), text<&Setup::m_strXrayTubePlateCurrent> },
    { key(XrayTubeFilter), text<&Setup::m_strXrayTubeFilter> },
    { key(ExposureTimeSec), text<&Setup::m_strExposureTimeSec> },
    { SIDE_VIEW_MIRROR_KEY, MIRROR },
    { PLConstants::IMAGINGMODE_KEY, imagingMode },
};

const Row FIXED_STAMP_TYPE_ROWS[] = {
    { key(BinningFactor), BINNING },
    { key(DemandTemperature), DEMAND_TEMPERATURE },
    { key(MeasuredTemperature), MEASURED_TEMPERATURE },
};

struct Rows
{
    const Row* begin;
    const Row* end;
};
template<size_t N> Rows rows(const Row (&table)[N])
{
    return { table, table + N };
}

// The tables that an image type writes, in order.
std::vector<Rows> rowsOf(tag_eimagetype type)
{
    std::vector<Rows> tables { rows(COMMON_ROWS) };
    if (type == IMAGETYPE_FIXED_STAMP)
        tables.push_back(rows(FIXED_STAMP_ROWS));
    tables.push_back(rows(ANGLE_ROWS));
    switch (type) {
    case IMAGETYPE_PHOTOGRAPH:
        tables.push_back(rows(MIRROR_ROWS));
        tables.push_back(rows(BIAS_ROWS));
        break;
    case IMAGETYPE_LUMINESCENT:
    case IMAGETYPE_FLUORESCENT_REFERENCE:
    case IMAGETYPE_LUMINESCENT_CORRECTED:
        tables.push_back(rows(LUMINESCENT_ROWS));
        break;
    case IMAGETYPE_READBIASONLY:
        tables.push_back(rows(BIAS_ROWS));
        break;
    case IMAGETYPE_STRUCTURE:
        tables.push_back(rows(STRUCTURE_ROWS));
        break;
    case IMAGETYPE_FLUORESCENT_BKG:
        tables.push_back(rows(FLUORESCENT_BKG_ROWS));
        break;
    case IMAGETYPE_XRAY:
        tables.push_back(rows(XRAY_ROWS));
        break;
    case IMAGETYPE_FIXED_STAMP:
        tables.push_back(rows(FIXED_STAMP_TYPE_ROWS));
        break;
    default:
        break;
    }
    return tables;
}

// The body text of an image section: one "key:\tvalue" line per row written. A line break
// in a setting is written as a blank, so that it cannot end the line.
QString imageSectionBody(tag_eimagetype type, const Setup& setup)
{
    QString body;
    for (const Rows& table : rowsOf(type)) {
        for (const Row* row = table.begin; row != table.end; ++row) {
            if (const Value value = row->value(setup, type)) {
                QString line = *value;
                line.replace(QLatin1Char('\r'), QLatin1Char(' '));
                line.replace(QLatin1Char('\n'), QLatin1Char(' '));
                body += row->key + QLatin1String(":\t") + line + QLatin1Char('\n');
            }
        }
    }
    return body;
}

bool isCalibrationType(tag_eimagetype type)
{
    return type == IMAGETYPE_READBIAS || type == IMAGETYPE_READSIGMA
        || type == IMAGETYPE_DARKCHARGE;
}

// Sets `key` of a section to `value`, adding the key when the section lacks it.
void putValue(CPLSection& section, const QString& key, const QString& value)
{
    if (section.setValue(key, value) != PL_SUCCESS)
        section.addKeyValue(key, value);
}

} // namespace

int CPLClickInfo::addTiffImageSection(const QString& sectionName, tag_eimagetype type,
                                      const sIASetupInfo* setup, bool replace)
{
    if (type < 0 || type >= PL_IMAGETYPE_COUNT)
        return PL_OUT_OF_RANGE;
    if (!setup)
        return PL_NULL_ARGUMENT;
    if (sectionName.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    // An image file named "lum#1.TIF" cannot name a section: refused before anything changes.
    if (CPLSection::breaksFile(sectionName, CPLSection::TextRole::SectionKey))
        return PL_INVALID_ARGUMENT;
    int position = sectionPosition(sectionName);
    if (position >= 0 && !replace)
        return PL_INVALID_ARGUMENT;
    if (position < 0 && isCalibrationType(type))
        position = sectionPosition(OVSGlobalConstants::g_strImageSections[IMAGETYPE_READBIASONLY]);

    auto section = std::make_unique<CPLSection>(sectionName, sectionName);
    section->loadSectionData(imageSectionBody(type, *setup));
    if (replace)
        removeSection(sectionName);
    const int status = adoptSection(section);
    if (status != PL_SUCCESS)
        return status;
    if (section) // a derived document refused it
        return PL_INVALID_ARGUMENT;
    if (position >= 0)
        moveSection(sectionName, position);
    return PL_SUCCESS;
}

int CPLClickInfo::addImageSection(const QString& imagePath, const QString& userId,
                                  tag_eimagetype type, const sIASetupInfo* setup, bool replace)
{
    const int slash = imagePath.lastIndexOf(QLatin1Char('/'));
    const int status = addTiffImageSection(imagePath.mid(slash + 1), type, setup, replace);
    CPLSection* userInput = (*this)[PLConstants::USERINPUT_SECTION_KEY];
    if (status == PL_SUCCESS && userInput)
        putValue(*userInput, PLConstants::USERID_KEY, userId);
    return status;
}

int CPLClickInfo::addTiffUserSection(tag_eimagetype type, const QString& userId)
{
    if (type < 0 || type >= PL_IMAGETYPE_COUNT)
        return PL_OUT_OF_RANGE;
    if (isCalibrationType(type))
        return PL_SUCCESS;
    const int status = addDefaultUserInputSection();
    if (status != PL_SUCCESS)
        return status;
    putValue(*(*this)[PLConstants::USERINPUT_SECTION_KEY], PLConstants::USERID_KEY, userId);
    return PL_SUCCESS;
}

int CPLClickInfo::addTiffClickNumberSection(bool acquiredFromFile, bool modifiedSinceSaved,
                                            const QString& clickNumber)
{
    const QString number = clickNumber.trimmed();
    if (number.isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    CPLSection* section = (*this)[PLConstants::CLICKNUMBER_KEY];
    if (!section) {
        section = addNewSection(PLConstants::CLICKNUMBER_KEY, number);
        if (!section)
            return PL_NOTHING_TO_WORK_ON;
        moveSection(PLConstants::CLICKNUMBER_KEY, 0);
    }
    section->setSectionName(number);
    const auto yesNo
        = [](bool flag) { return flag ? PLConstants::STRING_YES : PLConstants::STRING_NO; };
    putValue(*section, PLConstants::CLICKINFOTYPE_KEY, PLConstants::RAWDATA_VALUE);
    putValue(*section, PLConstants::ACQUIREDFROMFILE_KEY, yesNo(acquiredFromFile));
    putValue(*section, PLConstants::MODIFIEDFROMFILE_KEY, yesNo(modifiedSinceSaved));
    m_strClickNumber = number;
    return PL_SUCCESS;
}
