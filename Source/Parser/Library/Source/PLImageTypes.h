#ifndef PLIMAGETYPES_H
#define PLIMAGETYPES_H

// The types of the images an acquisition produces, and the record of acquisition settings
// from which the image section of a ClickInfo document is built
// (CPLClickInfo::addTiffImageSection()).

#include "ovparser_global.h"

#include <QList>
#include <QPoint>
#include <QPointF>
#include <QString>

#include <ctime>

// The type of an image. Values 0 to 16 are positions in OVSGlobalConstants::g_strImages (the
// name shown), values 0 to 12 positions in OVSGlobalConstants::g_strImageSections (the name
// of the image's section). The numbers are stored in files: they never change.
enum tag_eimagetype {
    IMAGETYPE_PHOTOGRAPH = 0,
    IMAGETYPE_LUMINESCENT = 1,
    IMAGETYPE_READBIAS = 2,
    IMAGETYPE_READSIGMA = 3,
    IMAGETYPE_DARKCHARGE = 4, // shown as "Background"
    IMAGETYPE_READBIASONLY = 5, // shown as "Bias"
    IMAGETYPE_REFERENCE = 6,
    IMAGETYPE_STRUCTURE = 7,
    IMAGETYPE_FLUORESCENT_BKG = 8,
    IMAGETYPE_FLUORESCENT_REFERENCE = 9,
    IMAGETYPE_LUMINESCENT_A = 10,
    IMAGETYPE_LUMINESCENT_B = 11,
    IMAGETYPE_XRAY = 12,
    IMAGETYPE_OVERLAY = 13,
    IMAGETYPE_SATURATION_MAP = 14,
    IMAGETYPE_HEIGHT_MAP = 15,
    IMAGETYPE_PHOTO_MASK = 16,
    // A luminescent image already corrected for cosmic rays, background and flat field;
    // shown and written like IMAGETYPE_LUMINESCENT, but marked corrected.
    IMAGETYPE_LUMINESCENT_CORRECTED = 17,
    // A second saturation map, shown as "Saturation Map".
    IMAGETYPE_SATURATION_MAP_2 = 18,
    // An image whose section carries, after its own date and time, the fixed reference stamp
    // of 13/12/2022 12:40 (see addTiffImageSection()); it has no name of its own.
    IMAGETYPE_FIXED_STAMP = 19,
};

// The number of image types: valid values are 0 to PL_IMAGETYPE_COUNT - 1.
constexpr int PL_IMAGETYPE_COUNT = 20;

// The name shown for an image type: 17 is shown as 1 ("Luminescent"), 18 as 14 ("Saturation
// Map"), every other type by its own position in g_strImages. Only 0 to 18 have a name; any
// other value is a programming error.
OVPARSER_EXPORT QString getImageTypeString(tag_eimagetype type);

// The settings of one acquisition, handed by the acquisition code to the image section
// builder, which only reads them. Each field is named after the key of the image section it
// feeds (given after the field); the builder writes it as text, numbers in plain decimal
// ("1.5", "-1", "60"). Fields marked "no key" are settings of the acquisition that the image
// section does not carry. The defaults below are those of a new acquisition.
struct OVPARSER_EXPORT sIASetupInfo
{
    sIASetupInfo();
    virtual ~sIASetupInfo();

    // Text settings, in the order of their defaults.
    QString m_strFluorescenceLevel { QLatin1String("Medium") }; // "Fluorescence level"
    QString m_strFluorescenceLevelString { QLatin1String("Medium") }; // "Fluorescence level string"
    QString m_strExcitationFilter { QLatin1String("Block") }; // "Excitation filter"
    QString m_strEmissionFilter { QLatin1String("Open") }; // "Emission filter"
    QString m_strStagePosition { QLatin1String("Load") }; // no key: where the stage stood
    QString m_strEMGain { QLatin1String("High") }; // "EM Gain"
    QString m_strPhotographBinning { QLatin1String("2") }; // no key: the photograph's binning
    QString m_strBinningFactor { QLatin1String("8") }; // "Binning Factor"
    QString m_strFieldOfView; // "Field of View"
    QString m_strDoorLock { QLatin1String("Unlocked") }; // no key: the state of the door lock
    QString m_strGridName; // "FL Grid Name"
    QString m_strXMotorPosition; // "FL X motor position"
    QString m_strYMotorPosition; // "FL Y motor position"
    QString m_strExposure; // "Luminescent Exposure (Seconds)"
    QString m_strExposureUnits { QLatin1String("sec") }; // "Luminescent Exposure Units"
    QString m_strFNumber { QLatin1String("1") }; // "f Number"
    QString m_strFilterPosition { QLatin1String("1") }; // "Filter Position"
    QString m_strReadBiasLevel; // "Read Bias Level"
    QString m_strDemandTemperature; // "Demand Temperature"
    QString m_strMeasuredTemperature; // "Measured Temperature"
    QString m_strHeightReference { QLatin1String("Coarse") }; // "Height Reference"
    QString m_strBackgroundExposure; // "Background Exposure (Seconds)" of a fluorescent bkg
    QString m_strRawBinning { QLatin1String("8") }; // "Raw Binning" of an FL reference
    QString m_strXrayTubeVoltage { QLatin1String("Low") }; // "X-ray tube voltage"
    QString m_strXrayTubeFilter { QLatin1String("out") }; // "X-ray tube filter"
    QString m_strXrayTubePlateCurrent; // "X-ray tube plate current"
    QString m_strExposureTimeSec { QLatin1String("Auto") }; // "Exposure Time Sec"
    QString m_strStructuredLightLittleL { QLatin1String("18") }; // "Structured Light Little L"
    QString m_strStructureFrequency { QLatin1String("Auto") }; // "Structure frequency"
    QString m_strMVStageDistance; // "MV stage distance"

    // Integer pairs.
    QPoint m_ptGridPosition { 1, 1 }; // "FL Grid Position", written "x, y"
    QPoint m_ptSpot { 1, 1 }; // "FL x-spot" and "FL y-spot"
    QPoint m_ptHeightReferencePixel { 1, 1 }; // "Height Reference Pixel X" and "... Y"

    // Numbers.
    double m_dSubjectSize = 1.5; // "Subject size"
    double m_dObjectRadius = -1.0; // "Object radius"
    float m_fNormalizationMinimalCounts = 1.0f; // "Minimal Counts For Normalization"
    double m_dImagingAngle = 0.0; // "Imaging Angle", written only for an angled view
    int m_iViewMode = 0; // no key: PL_VIEWMODE_ANGLED writes "Imaging Angle"
    // "Imaging Mode" of an x-ray image: PL_IMAGINGMODE_LARGEANIMAL gives "Large Animal",
    // PL_IMAGINGMODE_HIGHRESOLUTION "High Resolution", any other value "Mouse".
    int m_iImagingMode = 0;

    // Flags.
    bool m_bSideViewMirror = false; // "Side View Mirror Enabled" = "Yes" when set
    bool m_bFluorescent = false; // a fluorescent acquisition: "Image Subtype" and its level
    bool m_bFluorescenceGrid = false; // a fluorescence grid is used: the "FL Grid" keys

    // No key: points of the acquisition kept for the acquisition code.
    QList<QPointF> m_Points;
    // The moment of acquisition, seconds since 1970: "Acquisition Date", "Acquisition Time"
    // (in local time) and "Acquisition Seconds". The constructor sets the current time.
    std::time_t m_tTimeStamp = 0;
};

// Values of sIASetupInfo::m_iViewMode and m_iImagingMode that the builder tells apart.
constexpr int PL_VIEWMODE_ANGLED = 2;
constexpr int PL_IMAGINGMODE_LARGEANIMAL = 1;
constexpr int PL_IMAGINGMODE_HIGHRESOLUTION = 2;

#endif // PLIMAGETYPES_H
