#include "PLConstants.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QString>

#include <iterator>

using namespace PLConstants;
using namespace OVSGlobalConstants;

namespace {

struct NamedArray
{
    const char* name;
    const QString* begin;
    std::size_t size;
};

#define ARRAY(a) (NamedArray { #a, a, std::size(a) })

const NamedArray kArrays[] = {
    ARRAY(strUserLabelSetKeys),    ARRAY(strIntensityCalibrationValues),
    ARRAY(strImagingParams),       ARRAY(strDayKeys),
    ARRAY(strMonthKeys),           ARRAY(strMonthDisplayKeys),
    ARRAY(strSeqGraphSectionKeys), ARRAY(strROISectionValues),
    ARRAY(strClickPalleteSection), ARRAY(strGraphSectionKeys),
    ARRAY(strGraphSectionValues),  ARRAY(strBrowseImage_NameKeyPairs),
    ARRAY(strClickInfoKeys),       ARRAY(strCTSectionKeys),
    ARRAY(g_strImageSections),     ARRAY(g_strImages),
    ARRAY(g_strClickInfoSections), ARRAY(g_str3DViz),
    ARRAY(g_strColorTable),        ARRAY(g_strVolumeColorTable),
    ARRAY(g_strDisplayUnit),       ARRAY(g_strCountsUnit),
    ARRAY(g_strPhotonUnit),        ARRAY(g_strEfficiencyUnit),
    ARRAY(g_strPresetColors),      ARRAY(g_strCTTargetTYPES),
    ARRAY(g_strTabStyleSheet),
};

#undef ARRAY

} // namespace

// Every element is set (an array defined short leaves its last ones empty), has no stray
// blanks, and is unique in its array.
TEST(Constants, ArrayElementsAreSetTrimmedAndUnique)
{
    for (const NamedArray& a : kArrays) {
        SCOPED_TRACE(a.name);
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

// Spot checks of values as files carry them: positions other code indexes by, parallel
// arrays, and the trailing blanks, odd spellings and case that must not be corrected.
TEST(Constants, Values)
{
    // Image sections are indexed by the numeric image type; the named ones match their place.
    EXPECT_EQ(
        QStringList(std::begin(g_strImageSections), std::end(g_strImageSections)),
        L1List({ "photographic image", "luminescent image", "readbias image", "readsigma image",
                 "darkcharge image", "readbiasonly image", "reference image", "structure image",
                 "fluorescent bkg image", "fluorescent reference image", "luminescent A image",
                 "luminescent B image", "x-ray image" }));
    const std::pair<int, const QString&> named[] = {
        { 0, PHOTOGRAPH_IMAGE_SECTION },   { 1, LUMINESCENT_IMAGE_SECTION },
        { 2, READBIAS_IMAGE_SECTION },     { 3, READSIGMA_IMAGE_SECTION },
        { 7, STRUCTURE_IMAGE_SECTION },    { 10, LUMINESCENT_A_SECTION_KEY },
        { 11, LUMINESCENT_B_SECTION_KEY }, { 12, XRAY_IMAGE_SECTION },
    };
    for (const auto& [index, name] : named)
        EXPECT_EQ(name, g_strImageSections[index]) << index;

    EXPECT_EQ(strGraphSectionValues[4], strIntensityCalibrationValues[0]);
    EXPECT_EQ(strBrowseImage_NameKeyPairs[21], IMAGE_SUBTYPE_KEY);
    EXPECT_EQ(SEQUENCEINFO_USERINPUT_KEY, USERINPUT_SECTION_KEY);
    EXPECT_EQ(USER_PREFERENCE_SETTINGS_DLIT_IOR_KEY, USER_PREFERENCE_SETTINGS_IOR_KEY);

    // The palette list's own spelling and case of two sections; graph control keys and, at the
    // same place, their defaults; browse keys (the titles show in the browse output files);
    // blanks that end a value, and the key without one; headers with nothing after the colon;
    // the case of the extensions.
    const struct
    {
        const QString& value;
        const char* literal;
    } cases[] = {
        { strClickPalleteSection[10], "readbsigma image" },
        { strClickPalleteSection[18], "Blemish Image" },
        { BLEMISH_IMAGE_SECTION, "blemish image" },
        { strGraphSectionValues[0], "Overlay" },
        { strGraphSectionKeys[4], "Intensity Calibration" },
        { strGraphSectionValues[7], "1.5" },
        { strGraphSectionKeys[16], "Raw Color Table Max" },
        { strGraphSectionValues[16], "-1" },
        { strBrowseImage_NameKeyPairs[5], "Luminescent Exposure (Seconds)" },
        { strBrowseImage_NameKeyPairs[15], "Filter" },
        { strMonthDisplayKeys[0], "01" },
        { strClickInfoKeys[57], "AOI Probe" },
        { strCTSectionKeys[0], "Exposure (ms)" },
        { strCTSectionKeys[38], "CT Defect Map Click Used" },
        { MAC_APPLICATION_REGISTRY_PATH,
          "/Library/Application Support/Pellion/Orvane/com.tessaly-life-sciences.Orvane.plist" },
        { COMPLETE_PREFERENCEUSERINPUT_KEY, "*** User Input:\t(User Profile)" },
        { g_strTabStyleSheet[0],
          "QTabBar::tab:selected {\t\t\t\t\t\t\t\tbackground-color: rgb(62,153,246);"
          "\t\t\t\t\t\t\t\t}" },
        { ROIFILESECTIONTAGINUSERFILE, "ROI File " },
        { ROIFOLDERIDENTIFIER, "ROIs for " },
        { TISSUE_PROPERTIES, "Tissue Properties " },
        { SOURCE_MODEL, "Source Model " },
        { USER_PREFERENCE_SETTINGS_TISSUE_PROPS_KEY, "Tissue Properties" },
        { CT_ACQUISITION_SECTION_VALUE, "" },
        { RESTORE_RESULTS_SECTION_VALUE, "" },
        { ADAPTIVEFLRBKG_TIF_FILENAME, "FluorescentAdptBkg.TIF" },
        { MIRROR_ROI_PHOTO_MASK_TIF_FILENAME, "MirrorROIPhotoMask.TIF" },
        { LUMINESCENT_A_TIF, "luminescentA.TIF" },
        { LUMINESCENT_B_TIF, "luminescentB.TIF" },
        { LUMINESCENT_TIF_FILENAME, "luminescent.tif" },
        { STUCTURE_REFERENCE_TIF_FILENAME, "reference.tif" },
        { SEQUENCEINFO_CLICKNUMBERKEY, "ClickNumber" },
        { SEQUENCEINFO_CLICK_NUMBERS_KEY, "ClickNumbers" },
        { USER_PREFERENCE_SETTINGS_FLUOR_COLOR_TABLE, "Fluor Color table" },
        { USER_PREFERENCE_SETTINGS_3DVOLUME_REVERSE, "3DVolume Reverse CheckBox" },
        { USER_PERFERENCE_SETTINGS_AF_ON, "Auto Fluorescence" },
        { USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE3, "Preference3" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.value, L1(c.literal)) << c.literal;
}
