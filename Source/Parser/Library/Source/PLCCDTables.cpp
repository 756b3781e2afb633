#include "PLCCDTables.h"

#include "PLAssert_p.h"
#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QRegularExpression>
#include <QStringList>

#include <cmath>
#include <initializer_list>

namespace {

// Camera model names.
const QLatin1String MODEL_DZ930("dz930");
const QLatin1String MODEL_DZ936R("dz936r");
const QLatin1String MODEL_DS934R("ds934r");
const QLatin1String MODEL_ANDOR("Andor");
const QLatin1String MODEL_ANDOR_LOWER("andor");
const QLatin1String MODEL_EEV("eev");
const QLatin1String MODEL_DZ436("dz436");
const QLatin1String MODEL_DW434("dw434");
const QLatin1String MODEL_DU88("du88");
const QLatin1String MODEL_SITE("site");

// The CCD type that sets its own width, and the system types that decide it.
const QLatin1String CCD_TYPE_SOPHIA("Sophia");
const QLatin1String SYSTEM_KORA_200("KORA 200");
const QLatin1String SYSTEM_KORA_50("KORA 50");

// Binning names of each style: high resolution, high sensitivity, medium.
const QLatin1String NAME_HR("HR");
const QLatin1String NAME_HS("HS");
const QLatin1String NAME_M("M");
const QLatin1String NAME_SMALL_HI_RES("Small (Hi Res)");
const QLatin1String NAME_LARGE_HI_SENS("Large (Hi Sens)");
const QLatin1String NAME_MED("Med.");
const QLatin1String NAME_SMALL_HI_RESOLUTION("Small (Hi Resolution)");
const QLatin1String NAME_LARGE_HI_SENSITIVITY("Large (Hi Sensitivity)");
const QLatin1String NAME_MEDIUM("Medium");

// Keys of the "Camera System Info" section of an acquisition.
const QLatin1String CCD_MAP_KEY("CCDmap");
const QLatin1String SHELF_POSITION_KEY("Shelf Position");
const QLatin1String FOV_SUBKEY("FOV");

// How far a shelf position may lie from a field of view's position and still be in it.
constexpr double SHELF_POSITION_TOLERANCE = 0.00001;

bool containsAny(const QString& text, std::initializer_list<QLatin1String> names)
{
    for (const QLatin1String& name : names) {
        if (text.contains(name, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

// Whole, case-insensitive comparison: both sides lower-cased, then equal.
bool sameName(const QString& text, const QString& name)
{
    return text.toLower() == name.toLower();
}

bool isAnyOf(const QString& text, std::initializer_list<QLatin1String> names)
{
    const QString lower = text.toLower();
    for (const QLatin1String& name : names) {
        if (lower == QString(name).toLower())
            return true;
    }
    return false;
}

double modelPixels(const QString& model)
{
    if (containsAny(model, { MODEL_DZ930, MODEL_DZ936R }))
        return 2048;
    if (containsAny(model, { MODEL_DS934R }))
        return 1024;
    if (containsAny(model, { MODEL_DZ436 })
        || (containsAny(model, { MODEL_EEV }) && !containsAny(model, { MODEL_ANDOR })))
        return 1920;
    if (containsAny(model, { MODEL_SITE }))
        return 1024;
    // These three tests compare positions case-sensitively and stay as they are: the second
    // holds whenever the first fails, so every model that gets here is 1024 wide.
    if (model.indexOf(MODEL_ANDOR_LOWER) != 0)
        return 1024;
    if (model.indexOf(MODEL_DW434) != 0)
        return 1024;
    if (containsAny(model, { MODEL_DU88 }))
        return 1024;
    return 1300;
}

QStringList binningNames(int style)
{
    switch (style) {
    case 0:
        return { NAME_HR, NAME_HS, NAME_M };
    case 1:
    case 2:
        return { NAME_SMALL_HI_RES, NAME_LARGE_HI_SENS, NAME_MED };
    case 3:
        return { NAME_SMALL_HI_RESOLUTION, NAME_LARGE_HI_SENSITIVITY, NAME_MEDIUM };
    default:
        return {};
    }
}

} // namespace

double getCCDPixels(QString& cameraModel, const QString& systemType, const QString& ccdType)
{
    double pixels = modelPixels(cameraModel);
    if (!ccdType.isEmpty() && ccdType.contains(CCD_TYPE_SOPHIA, Qt::CaseInsensitive)) {
        if (systemType.contains(SYSTEM_KORA_200, Qt::CaseInsensitive))
            pixels = 1920;
        if (systemType.contains(SYSTEM_KORA_50, Qt::CaseInsensitive))
            pixels = 2048;
    }
    return pixels;
}

void getCCDBinningsForImageType(const QString& cameraModel, const QString& /*systemType*/,
                                const QString& /*ccdType*/, const QString& imageType,
                                int& highSensitivity, int& medium, int& highResolution)
{
    using OVSGlobalConstants::g_strImages;
    const bool firstGroup
        = isAnyOf(cameraModel, { MODEL_SITE, MODEL_ANDOR_LOWER, MODEL_DW434, MODEL_DS934R });
    if (sameName(imageType, g_strImages[IMAGETYPE_PHOTOGRAPH])
        || sameName(imageType, g_strImages[IMAGETYPE_STRUCTURE])) {
        const int k = firstGroup ? 1 : 0;
        highSensitivity = -1;
        medium = 2 * k + 2;
        highResolution = k + 1;
    } else if (sameName(imageType, g_strImages[IMAGETYPE_XRAY])) {
        highSensitivity = -1;
        medium = 2;
        highResolution = 1;
    } else if (firstGroup) {
        highSensitivity = 8;
        medium = 4;
        highResolution = 2;
    } else if (isAnyOf(cameraModel, { MODEL_EEV, MODEL_DZ436, MODEL_DZ930, MODEL_DZ936R })) {
        highSensitivity = 16;
        medium = 8;
        highResolution = 4;
    } else {
        highSensitivity = 10;
        medium = 5;
        highResolution = 2;
    }
}

void getCCDBinningsForImageType(const QString& cameraModel, const QString& systemType,
                                const QString& ccdType, tag_eimagetype imageType,
                                float& highSensitivity, float& medium, float& highResolution)
{
    // Only the types up to IMAGETYPE_SATURATION_MAP_2 have a name.
    const QString name
        = imageType >= IMAGETYPE_PHOTOGRAPH && imageType <= IMAGETYPE_SATURATION_MAP_2
        ? getImageTypeString(imageType)
        : QString();
    int large = 0;
    int middle = 0;
    int small = 0;
    getCCDBinningsForImageType(cameraModel, systemType, ccdType, name, large, middle, small);
    highSensitivity = float(large);
    medium = float(middle);
    highResolution = float(small);
}

QString getValueToCCDBinningCode(float value, const QString& cameraModel, const QString& systemType,
                                 const QString& ccdType, const QString& imageType, int style)
{
    const QStringList names = binningNames(style);
    int highSensitivity = 0;
    int medium = 0;
    int highResolution = 0;
    getCCDBinningsForImageType(cameraModel, systemType, ccdType, imageType, highSensitivity, medium,
                               highResolution);
    // In the order of the names: high resolution, high sensitivity, medium.
    const int factors[] = { highResolution, highSensitivity, medium };
    for (int position = 0; position < 3; ++position) {
        if (value == float(factors[position])) {
            PL_ASSERT(position < names.size());
            return names.at(position);
        }
    }
    return QString();
}

bool hasCCDMapData(CPLClickInfo& clickInfo)
{
    const CPLSection* section = clickInfo[PLConstants::CAMERAINFO_SECTION_KEY];
    QString map;
    return section && section->getValue(CCD_MAP_KEY, &map) == PL_SUCCESS;
}

bool getFOVName(CPLClickInfo* clickInfo, double shelfPosition, QByteArray& name)
{
    const CPLSection* section
        = clickInfo ? (*clickInfo)[PLConstants::CAMERAINFO_SECTION_KEY] : nullptr;
    if (!section)
        return false;
    QStringList keys;
    section->getKeylistFromKeyAndSubkey(SHELF_POSITION_KEY, FOV_SUBKEY, &keys);
    // A single word character between white space: the letter of "Shelf Position Z FOV".
    static const QRegularExpression letter(QStringLiteral("\\s\\w\\s"));
    for (const QString& key : qAsConst(keys)) {
        double position = 0;
        // Written so that a position that is not a number matches nothing.
        if (section->getValue(key, &position) != PL_SUCCESS
            || !(std::fabs(position - shelfPosition) <= SHELF_POSITION_TOLERANCE))
            continue;
        const QRegularExpressionMatch match = letter.match(key);
        if (match.hasMatch()) {
            name = key.mid(match.capturedStart(), 2).toLatin1();
            return true;
        }
    }
    return false;
}
