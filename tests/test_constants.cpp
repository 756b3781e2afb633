#include "PLConstants.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QString>

#include <iterator>
#include <ostream>

using namespace PLConstants;
using namespace OVSGlobalConstants;

namespace {

struct NamedArray
{
    const char* name;
    const QString* begin;
    std::size_t size;
    std::size_t expected;
};

#define ARRAY(a, n) (NamedArray { #a, a, std::size(a), n })

const NamedArray kArrays[] = {
    ARRAY(strUserLabelSetKeys, 16),    ARRAY(strIntensityCalibrationValues, 4),
    ARRAY(strImagingParams, 8),        ARRAY(strDayKeys, 7),
    ARRAY(strMonthKeys, 12),           ARRAY(strMonthDisplayKeys, 12),
    ARRAY(strSeqGraphSectionKeys, 9),  ARRAY(strROISectionValues, 14),
    ARRAY(strClickPalleteSection, 19), ARRAY(strGraphSectionKeys, 17),
    ARRAY(strGraphSectionValues, 17),  ARRAY(strBrowseImage_NameKeyPairs, 24),
    ARRAY(strClickInfoKeys, 58),       ARRAY(strCTSectionKeys, 39),
    ARRAY(g_strImageSections, 13),     ARRAY(g_strImages, 17),
    ARRAY(g_strClickInfoSections, 6),  ARRAY(g_str3DViz, 1),
    ARRAY(g_strColorTable, 11),        ARRAY(g_strVolumeColorTable, 13),
    ARRAY(g_strDisplayUnit, 4),        ARRAY(g_strCountsUnit, 5),
    ARRAY(g_strPhotonUnit, 5),         ARRAY(g_strEfficiencyUnit, 5),
    ARRAY(g_strPresetColors, 3),       ARRAY(g_strCTTargetTYPES, 2),
    ARRAY(g_strTabStyleSheet, 1),
};

#undef ARRAY

QString L(const char* s)
{
    return QLatin1String(s);
}

} // namespace

TEST(Constants, ArrayLengthsAndElements)
{
    for (const NamedArray& a : kArrays) {
        SCOPED_TRACE(a.name);
        EXPECT_EQ(a.size, a.expected);
        QSet<QString> seen;
        for (std::size_t i = 0; i < a.size; ++i) {
            const QString& s = a.begin[i];
            EXPECT_FALSE(s.isEmpty()) << "index " << i;
            EXPECT_EQ(s, s.trimmed()) << "index " << i;
            seen.insert(s);
        }
        // strGraphSectionValues repeats its defaults; the browse pairs repeat two names.
        if (a.begin == strGraphSectionValues)
            continue;
        const std::size_t repeats = a.begin == strBrowseImage_NameKeyPairs ? 2 : 0;
        EXPECT_EQ(std::size_t(seen.size()), a.size - repeats);
    }
}

TEST(Constants, IndexedPositions)
{
    // Image sections and image names are indexed by the numeric image type.
    EXPECT_EQ(g_strImageSections[0], PHOTOGRAPH_IMAGE_SECTION);
    EXPECT_EQ(g_strImageSections[1], LUMINESCENT_IMAGE_SECTION);
    EXPECT_EQ(g_strImageSections[2], READBIAS_IMAGE_SECTION);
    EXPECT_EQ(g_strImageSections[3], L("readsigma image"));
    EXPECT_EQ(g_strImageSections[3], READSIGMA_IMAGE_SECTION);
    EXPECT_EQ(g_strImageSections[7], STRUCTURE_IMAGE_SECTION);
    EXPECT_EQ(g_strImageSections[10], LUMINESCENT_A_SECTION_KEY);
    EXPECT_EQ(g_strImageSections[11], LUMINESCENT_B_SECTION_KEY);
    EXPECT_EQ(g_strImageSections[12], XRAY_IMAGE_SECTION);
    const char* images[]
        = { "Photograph",    "Luminescent",   "Read Bias", "Read Sigma",      "Background",
            "Bias",          "Reference",     "Structure", "Fluorescent Bkg", "FL Reference",
            "Luminescent A", "Luminescent B", "X-Ray" };
    for (std::size_t i = 0; i < std::size(images); ++i)
        EXPECT_EQ(g_strImages[i], L(images[i])) << "index " << i;
    EXPECT_EQ(g_strImages[16], L("Photo Mask"));

    // The palette list keeps its own spelling of the read-sigma section.
    EXPECT_EQ(strClickPalleteSection[10], L("readbsigma image"));
    EXPECT_EQ(strClickPalleteSection[18], L("Blemish Image"));
    EXPECT_NE(strClickPalleteSection[18], BLEMISH_IMAGE_SECTION);

    // Graph control keys and their defaults are parallel.
    EXPECT_EQ(strGraphSectionKeys[0], L("Overlay"));
    EXPECT_EQ(strGraphSectionValues[0], L("Overlay"));
    EXPECT_EQ(strGraphSectionKeys[2], L("Color Table"));
    EXPECT_EQ(strGraphSectionValues[2], L("Rainbow"));
    EXPECT_EQ(strGraphSectionKeys[4], L("Intensity Calibration"));
    EXPECT_EQ(strGraphSectionValues[4], strIntensityCalibrationValues[0]);
    EXPECT_EQ(strGraphSectionKeys[6], L("Brightness"));
    EXPECT_EQ(strGraphSectionValues[6], L("100"));
    EXPECT_EQ(strGraphSectionKeys[7], L("Gamma"));
    EXPECT_EQ(strGraphSectionValues[7], L("1.5"));
    EXPECT_EQ(strGraphSectionKeys[8], L("Alpha Blend"));
    EXPECT_EQ(strGraphSectionValues[8], L("0.5"));
    EXPECT_EQ(strGraphSectionKeys[9], L("Rotation"));
    EXPECT_EQ(strGraphSectionValues[9], L("0"));
    EXPECT_EQ(strGraphSectionKeys[16], L("Raw Color Table Max"));
    EXPECT_EQ(strGraphSectionValues[16], L("-1"));

    // Browse columns: title at even positions, the key that fills it right after.
    EXPECT_EQ(strBrowseImage_NameKeyPairs[0], L("Date and Time"));
    EXPECT_EQ(strBrowseImage_NameKeyPairs[1], L("Acquisition Seconds"));
    EXPECT_EQ(strBrowseImage_NameKeyPairs[5], L("Luminescent Exposure (Seconds)"));
    EXPECT_EQ(strBrowseImage_NameKeyPairs[14], L("EM Filter"));
    EXPECT_EQ(strBrowseImage_NameKeyPairs[15], L("Filter"));
    EXPECT_EQ(strBrowseImage_NameKeyPairs[20], L("Illumination Mode"));
    EXPECT_EQ(strBrowseImage_NameKeyPairs[21], IMAGE_SUBTYPE_KEY);
    EXPECT_EQ(strBrowseImage_NameKeyPairs[22], L("EM Gain"));
    EXPECT_EQ(strBrowseImage_NameKeyPairs[23], L("EM Gain"));

    // Calendar tables are indexed by the zero-based month and weekday.
    EXPECT_EQ(strMonthDisplayKeys[0], L("01"));
    EXPECT_EQ(strMonthDisplayKeys[8], L("09"));
    EXPECT_EQ(strMonthDisplayKeys[11], L("12"));
    EXPECT_EQ(strMonthKeys[0], L("January"));
    EXPECT_EQ(strMonthKeys[11], L("December"));
    EXPECT_EQ(strDayKeys[0], L("Sunday"));
    EXPECT_EQ(strDayKeys[6], L("Saturday"));

    EXPECT_EQ(strClickInfoKeys[0], L("Acquisition Date"));
    EXPECT_EQ(strClickInfoKeys[57], L("AOI Probe"));
    EXPECT_EQ(strCTSectionKeys[0], L("Exposure (ms)"));
    EXPECT_EQ(strCTSectionKeys[38], L("CT Defect Map Click Used"));
}

TEST(Constants, ComputedAndControlCharacters)
{
    EXPECT_EQ(
        MAC_APPLICATION_REGISTRY_PATH,
        L("/Library/Application Support/Pellion/Orvane/com.tessaly-life-sciences.Orvane.plist"));
    EXPECT_TRUE(MAC_APPLICATION_REGISTRY_PATH.startsWith(MAC_APPLICATION_SUPPORT_PATH));

    ASSERT_EQ(STR_NEWLINE.size(), 2);
    EXPECT_EQ(STR_NEWLINE.at(0), QChar(0x0d));
    EXPECT_EQ(STR_NEWLINE.at(1), QChar(0x0a));
    EXPECT_EQ(SECTIONKEY_PREFIX, L("*** "));
    EXPECT_EQ(COMPLETE_PREFERENCEUSERINPUT_KEY, L("*** User Input:\t(User Profile)"));
    EXPECT_EQ(COMPLETE_PREFERENCEUSERINPUT_KEY.count(QLatin1Char('\t')), 1);

    const QString tabs(8, QLatin1Char('\t'));
    EXPECT_EQ(g_strTabStyleSheet[0],
              L("QTabBar::tab:selected {") + tabs + L("background-color: rgb(62,153,246);") + tabs
                  + L("}"));
}

TEST(Constants, DeliberateOddities)
{
    // Trailing blanks that belong to the values, and the one key without it.
    EXPECT_EQ(COMMENTLINE_KEY, L("CommentLine "));
    EXPECT_EQ(ROIFILESECTIONTAGINUSERFILE, L("ROI File "));
    EXPECT_EQ(ROIFOLDERIDENTIFIER, L("ROIs for "));
    EXPECT_EQ(TISSUE_PROPERTIES, L("Tissue Properties "));
    EXPECT_EQ(SOURCE_MODEL, L("Source Model "));
    EXPECT_EQ(USER_PREFERENCE_SETTINGS_TISSUE_PROPS_KEY, L("Tissue Properties"));

    // Section headers written with these have nothing after the colon.
    EXPECT_TRUE(GRAPHCONTROLS_SECTION_VALUE.isEmpty());
    EXPECT_TRUE(CT_ACQUISITION_SECTION_VALUE.isEmpty());
    EXPECT_TRUE(RESTORE_RESULTS_SECTION_VALUE.isEmpty());

    EXPECT_EQ(ADAPTIVEFLRBKG_TIF_FILENAME, L("FluorescentAdptBkg.TIF"));
    EXPECT_EQ(MIRROR_ROI_PHOTO_MASK_TIF_FILENAME, L("MirrorROIPhotoMask.TIF"));
    EXPECT_EQ(LUMINESCENT_A_TIF, L("luminescentA.TIF"));
    EXPECT_EQ(LUMINESCENT_B_TIF, L("luminescentB.TIF"));
    EXPECT_EQ(LUMINESCENT_TIF_FILENAME, L("luminescent.tif"));
    EXPECT_EQ(STUCTURE_REFERENCE_TIF_FILENAME, L("reference.tif"));

    EXPECT_EQ(SEQUENCEINFO_CLICKNUMBERKEY, L("ClickNumber"));
    EXPECT_EQ(SEQUENCEINFO_CLICK_NUMBERS_KEY, L("ClickNumbers"));
    EXPECT_EQ(SEQUENCEINFO_USERINPUT_KEY, USERINPUT_SECTION_KEY);
    EXPECT_EQ(USER_PREFERENCE_SETTINGS_DLIT_IOR_KEY, USER_PREFERENCE_SETTINGS_IOR_KEY);

    EXPECT_EQ(USER_PREFERENCE_SETTINGS_FLUOR_COLOR_TABLE, L("Fluor Color table"));
    EXPECT_EQ(USER_PREFERENCE_SETTINGS_3DVOLUME_REVERSE, L("3DVolume Reverse CheckBox"));
    EXPECT_EQ(USER_PERFERENCE_SETTINGS_AF_ON, L("Auto Fluorescence"));
    EXPECT_EQ(USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE3, L("Preference3"));
}
