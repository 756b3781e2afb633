#include "PLAnalyzedClickInfo.h"

#include "PLConstants.h"
#include "PLPaths.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "PLValueText_p.h"

#include <QDir>
#include <QFileInfo>
#include <QPair>

#include <cmath>

using namespace PLConstants;

namespace {

const char* const KIND_TEXTS[]
    = { "RawData", "SingleClickAnalysis", "ImageMath", "Kinetic", "SpectralUnmix" };

// A path naming a folder reads and writes the folder's "AnalyzedClickInfo.txt".
QString analysisFilePath(const QString& path)
{
    return getFilePathInFolder(path, ANALYZED_CLICKINFO_FILENAME);
}

// Whether a value can be written and read back as given: a "#" would start an inline
// comment, and a line break, a NUL or a character outside Latin-1 cannot stand in the file.
bool isStorable(const QString& value)
{
    const QString text = value.trimmed();
    return !text.contains(QLatin1Char('#'))
        && !CPLSection::breaksFile(text, CPLSection::TextRole::Value);
}

// Reads an optional key: an absent key leaves `value` as it is and is no failure.
int readOptional(int status)
{
    return status == PL_KEY_NOT_FOUND ? PL_SUCCESS : status;
}

} // namespace

const QString CPLAnalyzedClickInfo::ANALYSIS_SECTION_KEY = QStringLiteral("Analysis Results");

CPLAnalyzedClickInfo::CPLAnalyzedClickInfo() = default;
CPLAnalyzedClickInfo::~CPLAnalyzedClickInfo() = default;

QString CPLAnalyzedClickInfo::kindText(Kind kind)
{
    const int index = static_cast<int>(kind);
    return index >= 0 && index < static_cast<int>(Kind::Other)
        ? QString(QLatin1String(KIND_TEXTS[index]))
        : QString();
}

CPLAnalyzedClickInfo::Kind CPLAnalyzedClickInfo::kindFromText(const QString& text)
{
    for (int index = 0; index < static_cast<int>(Kind::Other); ++index) {
        if (text == QLatin1String(KIND_TEXTS[index]))
            return static_cast<Kind>(index);
    }
    return Kind::Other;
}

int CPLAnalyzedClickInfo::load(const QString& path)
{
    if (path.isEmpty())
        return PL_EMPTY_KEY;
    clearData();
    return loadClickInfo(analysisFilePath(path), false);
}

int CPLAnalyzedClickInfo::save(const QString& path) const
{
    return path.isEmpty() ? PL_EMPTY_KEY : saveClickInfo(analysisFilePath(path));
}

int CPLAnalyzedClickInfo::create(const QString& clickNumber, Kind kind)
{
    if (clickNumber.trimmed().isEmpty())
        return PL_NOTHING_TO_WORK_ON;
    if (kind == Kind::Other || kindText(kind).isEmpty())
        return PL_INVALID_ARGUMENT;
    clearData();
    const int status = addTiffClickNumberSection(false, false, clickNumber);
    return status == PL_SUCCESS ? setKind(kind) : status;
}

int CPLAnalyzedClickInfo::getKindText(QString* text) const
{
    if (!text)
        return PL_NULL_ARGUMENT;
    return getValue(CLICKNUMBER_KEY, CLICKINFOTYPE_KEY, text);
}

int CPLAnalyzedClickInfo::getKind(Kind* kind) const
{
    if (!kind)
        return PL_NULL_ARGUMENT;
    QString text;
    const int status = getKindText(&text);
    if (status == PL_SUCCESS)
        *kind = kindFromText(text);
    return status;
}

int CPLAnalyzedClickInfo::setKind(Kind kind)
{
    const QString text = kindText(kind);
    if (text.isEmpty())
        return PL_INVALID_ARGUMENT;
    CPLSection* section = (*this)[CLICKNUMBER_KEY];
    return section ? section->addKeyValue(CLICKINFOTYPE_KEY, text) : PL_SECTION_NOT_PRESENT;
}

int CPLAnalyzedClickInfo::getAnalysisValue(const QString& key, QString* value) const
{
    return getValue(ANALYSIS_SECTION_KEY, key, value);
}

int CPLAnalyzedClickInfo::setAnalysisValue(const QString& key, const QString& value)
{
    if (!isStorable(value))
        return PL_INVALID_ARGUMENT;
    CPLSection* section = (*this)[ANALYSIS_SECTION_KEY];
    if (!section)
        section = addNewSection(ANALYSIS_SECTION_KEY, QString());
    return section ? section->addKeyValue(key, value.trimmed()) : PL_NOTHING_TO_WORK_ON;
}

int CPLAnalyzedClickInfo::getImageMath(ImageMath* imageMath) const
{
    if (!imageMath)
        return PL_NULL_ARGUMENT;
    ImageMath result;
    int status = getAnalysisValue(IMAGEMATH_RESULT_KEY, &result.operation);
    QString kText;
    if (status == PL_SUCCESS && getAnalysisValue(IMAGEMATH_K_KEY, &kText) == PL_SUCCESS) {
        if (!PLText::readNumber(kText, &result.k))
            status = PL_INVALID_ARGUMENT;
    }
    if (status == PL_SUCCESS)
        status = readOptional(getAnalysisValue(IMAGEMATH_A_CLICK_KEY, &result.aClickNumber));
    if (status == PL_SUCCESS)
        status = readOptional(getAnalysisValue(IMAGEMATH_B_CLICK_KEY, &result.bClickNumber));
    if (status == PL_SUCCESS)
        status
            = readOptional(getAnalysisValue(IMAGEMATH_PHOTO_CLICK_KEY, &result.photoClickNumber));
    if (status == PL_SUCCESS)
        *imageMath = result;
    return status;
}

int CPLAnalyzedClickInfo::setImageMath(const ImageMath& imageMath)
{
    if (imageMath.operation.trimmed().isEmpty())
        return PL_EMPTY_KEY;
    if (!std::isfinite(imageMath.k))
        return PL_INVALID_ARGUMENT;
    const QPair<const QString*, QString> values[] = {
        { &IMAGEMATH_RESULT_KEY, imageMath.operation },
        { &IMAGEMATH_K_KEY, PLText::roundTripText(imageMath.k) },
        { &IMAGEMATH_A_CLICK_KEY, imageMath.aClickNumber },
        { &IMAGEMATH_B_CLICK_KEY, imageMath.bClickNumber },
        { &IMAGEMATH_PHOTO_CLICK_KEY, imageMath.photoClickNumber },
    };
    // Check every text first, so that a refused value leaves the document as it was.
    for (const auto& value : values) {
        if (!isStorable(value.second))
            return PL_INVALID_ARGUMENT;
    }
    for (const auto& value : values) {
        if (value.second.trimmed().isEmpty())
            continue;
        if (const int status = setAnalysisValue(*value.first, value.second))
            return status;
    }
    return PL_SUCCESS;
}

int CPLAnalyzedClickInfo::getKinetic(KineticOperation* operation, QString* clickNumber) const
{
    if (!operation || !clickNumber)
        return PL_NULL_ARGUMENT;
    QString text;
    QString click;
    int status = getAnalysisValue(KINETIC_OPERN_KEY, &text);
    if (status == PL_SUCCESS && text != ACCUM_KINETIC_OPERN && text != SINGLE_CLICK_KINETIC)
        status = PL_INVALID_ARGUMENT;
    if (status == PL_SUCCESS)
        status = readOptional(getAnalysisValue(KINETIC_IMAGE_KEY, &click));
    if (status != PL_SUCCESS)
        return status;
    *operation = text == ACCUM_KINETIC_OPERN ? KineticOperation::Accumulated
                                             : KineticOperation::SingleClick;
    *clickNumber = click;
    return PL_SUCCESS;
}

int CPLAnalyzedClickInfo::setKinetic(KineticOperation operation, const QString& clickNumber)
{
    if (operation != KineticOperation::Accumulated && operation != KineticOperation::SingleClick)
        return PL_INVALID_ARGUMENT;
    if (!isStorable(clickNumber))
        return PL_INVALID_ARGUMENT;
    const int status = setAnalysisValue(
        KINETIC_OPERN_KEY,
        operation == KineticOperation::Accumulated ? ACCUM_KINETIC_OPERN : SINGLE_CLICK_KINETIC);
    return status == PL_SUCCESS ? setAnalysisValue(KINETIC_IMAGE_KEY, clickNumber) : status;
}

int CPLAnalyzedClickInfo::getSpectralUnmixing(QString* dataset, QString* concentrationName) const
{
    if (!dataset || !concentrationName)
        return PL_NULL_ARGUMENT;
    QString set;
    QString name;
    int status = getAnalysisValue(SPEC_UNMIX_SEQUENCE_KEY, &set);
    if (status == PL_SUCCESS)
        status = readOptional(getAnalysisValue(SPEC_UNMIX_CONC_NAME, &name));
    if (status == PL_SUCCESS) {
        *dataset = set;
        *concentrationName = name;
    }
    return status;
}

int CPLAnalyzedClickInfo::setSpectralUnmixing(const QString& dataset,
                                              const QString& concentrationName)
{
    if (!isStorable(concentrationName))
        return PL_INVALID_ARGUMENT;
    const int status = setAnalysisValue(SPEC_UNMIX_SEQUENCE_KEY, dataset);
    return status == PL_SUCCESS ? setAnalysisValue(SPEC_UNMIX_CONC_NAME, concentrationName)
                                : status;
}

int CPLAnalyzedClickInfo::getBackgroundClick(QString* clickNumber) const
{
    return clickNumber ? getAnalysisValue(BACKGROUND_CLICK_KEY, clickNumber) : PL_NULL_ARGUMENT;
}

int CPLAnalyzedClickInfo::setBackgroundClick(const QString& clickNumber)
{
    return setAnalysisValue(BACKGROUND_CLICK_KEY, clickNumber);
}

int CPLAnalyzedClickInfo::getFolderOnDisk(QString* folder) const
{
    return folder ? getAnalysisValue(FOLDER_ON_DISK_KEY, folder) : PL_NULL_ARGUMENT;
}

int CPLAnalyzedClickInfo::setFolderOnDisk(const QString& folder)
{
    return setAnalysisValue(FOLDER_ON_DISK_KEY, folder);
}

QString CPLAnalyzedClickInfo::correctionKey(Correction correction)
{
    switch (correction) {
    case Correction::Saturated:
        return SATURATED_KEY;
    case Correction::CcdCorrected:
        return CCD_CORRECTED_KEY;
    case Correction::BackgroundCorrected:
        return BACKGROUND_CORRECTED_KEY;
    case Correction::FlatFieldCorrected:
        return FLAT_FIELD_CORRECTED_KEY;
    case Correction::Rotated:
        return IS_ROTATED_KEY;
    }
    return QString();
}

int CPLAnalyzedClickInfo::getCorrection(Correction correction, bool* isSet) const
{
    if (!isSet)
        return PL_NULL_ARGUMENT;
    const QString key = correctionKey(correction);
    if (key.isEmpty())
        return PL_INVALID_ARGUMENT;
    QString text;
    const int status = getAnalysisValue(key, &text);
    if (status != PL_SUCCESS)
        return status;
    return PLText::readFlag(text, isSet) ? PL_SUCCESS : PL_INVALID_ARGUMENT;
}

int CPLAnalyzedClickInfo::setCorrection(Correction correction, bool isSet)
{
    const QString key = correctionKey(correction);
    return key.isEmpty() ? PL_INVALID_ARGUMENT
                         : setAnalysisValue(key, isSet ? STRING_YES : STRING_NO);
}
