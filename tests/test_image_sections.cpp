// The image types and the sections that CPLClickInfo builds for a newly acquired image: the
// keys of every type in order, whole sections as saved, their place in the document, and the
// user-input and click-number sections.

#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLImageTypes.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cstdlib>
#include <ctime>

namespace {

// Every test here runs in UTC, so the local date and time of a time stamp are known.
const bool g_utc = [] {
    setenv("TZ", "UTC", 1);
    tzset();
    return true;
}();

// 2025-11-04 23:46:40 UTC, a Tuesday.
constexpr std::time_t STAMP = 1762300000;

// A setup with every optional key switched on and a distinct value in each field.
sIASetupInfo filledSetup()
{
    sIASetupInfo s;
    s.m_tTimeStamp = STAMP;
    s.m_strFluorescenceLevel = L1("High");
    s.m_strFluorescenceLevelString = L1("High (500 W)");
    s.m_strExcitationFilter = L1("465");
    s.m_strEmissionFilter = L1("520");
    s.m_strEMGain = L1("0");
    s.m_strBinningFactor = L1("4");
    s.m_strFieldOfView = L1("12.5");
    s.m_strGridName = L1("Grid 9x9");
    s.m_strXMotorPosition = L1("1200");
    s.m_strYMotorPosition = L1("-340");
    s.m_strExposure = L1("0.5");
    s.m_strFNumber = L1("2");
    s.m_strFilterPosition = L1("3");
    s.m_strReadBiasLevel = L1("612");
    s.m_strDemandTemperature = L1("-90");
    s.m_strMeasuredTemperature = L1("-89.8");
    s.m_strBackgroundExposure = L1("30");
    s.m_strRawBinning = L1("2");
    s.m_strXrayTubeVoltage = L1("35");
    s.m_strXrayTubeFilter = L1("in");
    s.m_strXrayTubePlateCurrent = L1("0.2");
    s.m_strExposureTimeSec = L1("5");
    s.m_strMVStageDistance = L1("7.25");
    s.m_ptGridPosition = { 3, 7 };
    s.m_ptSpot = { 12, 14 };
    s.m_ptHeightReferencePixel = { 640, 480 };
    s.m_dSubjectSize = 2.25;
    s.m_dObjectRadius = 0.125;
    s.m_fNormalizationMinimalCounts = 250.0f;
    s.m_dImagingAngle = -22.5;
    s.m_iViewMode = PL_VIEWMODE_ANGLED;
    s.m_iImagingMode = PL_IMAGINGMODE_LARGEANIMAL;
    s.m_bSideViewMirror = true;
    s.m_bFluorescent = true;
    s.m_bFluorescenceGrid = true;
    return s;
}

// The section as saveSectionData() writes it.
QString sectionText(const CPLClickInfo& doc, const QString& key)
{
    QString text;
    if (const CPLSection* section = doc[key])
        section->saveSectionData(text);
    return text;
}

QStringList keysOf(const CPLClickInfo& doc, const QString& sectionKey)
{
    QStringList keys;
    if (const CPLSection* section = doc[sectionKey])
        section->getKeyList(&keys);
    return keys;
}

QString valueOf(const CPLClickInfo& doc, const char* section, const char* key)
{
    QString value;
    EXPECT_EQ(doc.getValue(L1(section), L1(key), &value), PL_SUCCESS) << key;
    return value;
}

TEST(ImageTypesTest, NamesOfTheTypes)
{
    const char* names[]
        = { "Photograph",    "Luminescent",   "Read Bias",   "Read Sigma",      "Background",
            "Bias",          "Reference",     "Structure",   "Fluorescent Bkg", "FL Reference",
            "Luminescent A", "Luminescent B", "X-Ray",       "Overlay",         "Saturation Map",
            "Height Map",    "Photo Mask",    "Luminescent", "Saturation Map" };
    for (int type = 0; type <= IMAGETYPE_SATURATION_MAP_2; ++type)
        EXPECT_EQ(getImageTypeString(tag_eimagetype(type)), L1(names[type])) << type;
}

// Every type with every field set, as saved: which rows each type writes, in order, and the
// value each row takes. With the optional keys switched off, exactly those keys go.
TEST(ImageSectionTest, EveryTypeAsSaved)
{
    const QString stamp = L1("Acquisition Date:\tTuesday, November 4, 2025\n"
                             "Acquisition Time:\t23:46:40\nAcquisition Seconds:\t3845144800\n"
                             "Pixel Width:\t1\nPixel Height:\t1\n");
    const QString head = stamp + L1("Imaging Angle:\t-22.5\n");
    const QString temperatures = L1("Demand Temperature:\t-90\nMeasured Temperature:\t-89.8\n");
    const QString bias = L1("Binning Factor:\t4\nRead Bias Level:\t612\n") + temperatures
        + L1("Data Multiplier:\t1\nBackground Exposure (Seconds):\t0.0\n");
    const QString luminescent = head
        + L1("Image Units:\tcounts\nBinning Factor:\t4\nSide View Mirror Enabled:\tYes\n"
             "Luminescent Exposure (Seconds):\t0.5\nLuminescent Exposure Units:\tsec\n"
             "EM Gain:\t0\nf Number:\t2\nField of View:\t12.5\nRead Bias Level:\t612\n"
             "Emission filter:\t520\nFilter Position:\t3\nExcitation filter:\t465\n"
             "Subject size:\t2.25\nImage Subtype:\tfluorescent\nFluorescence level:\tHigh\n"
             "Fluorescence level string:\tHigh (500 W)\n"
             "FL Grid Name:\tGrid 9x9\nFL Grid Position:\t3, 7\n"
             "FL X motor position:\t1200\nFL Y motor position:\t-340\n"
             "FL x-spot:\t12\nFL y-spot:\t14\nError Wave:\tNo Error\n");
    const QString uncorrected
        = temperatures + L1("Cosmic:\t0\nBackground Corrected:\t0\nFlat Field Corrected:\t0\n");
    QString expected[PL_IMAGETYPE_COUNT];
    std::fill(std::begin(expected), std::end(expected), head);
    expected[IMAGETYPE_PHOTOGRAPH] = head + L1("Side View Mirror Enabled:\tYes\n") + bias;
    expected[IMAGETYPE_LUMINESCENT] = luminescent + uncorrected;
    expected[IMAGETYPE_READBIASONLY] = head + bias;
    expected[IMAGETYPE_STRUCTURE] = head
        + L1("Binning Factor:\t4\nImage Units:\tcounts\nf Number:\t2\nField of View:\t12.5\n"
             "Filter Position:\t1\nEmission filter:\tOpen\nExposure Time Sec:\t5\n"
             "Object radius:\t0.125\nSubject size:\t2.25\nHeight Reference:\tCoarse\n"
             "Height Reference Pixel X:\t640\nHeight Reference Pixel Y:\t480\n"
             "MV stage distance:\t7.25\nStructured Light Little L:\t18\n"
             "Structure frequency:\tAuto\n");
    expected[IMAGETYPE_FLUORESCENT_BKG] = head
        + L1("Binning Factor:\t4\nf Number:\t2\nField of View:\t12.5\nRead Bias Level:\t612\n"
             "Fluorescence level:\tHigh\nFluorescence level string:\tHigh (500 W)\n")
        + temperatures + L1("Data Multiplier:\t1\nBackground Exposure (Seconds):\t30\n");
    expected[IMAGETYPE_FLUORESCENT_REFERENCE] = luminescent
        + L1("Minimal Counts For Normalization:\t250\nRaw Binning:\t2\n") + uncorrected;
    expected[IMAGETYPE_XRAY] = head
        + L1("Binning Factor:\t4\nf Number:\t2\nField of View:\t12.5\nRead Bias Level:\t612\n"
             "X-ray tube voltage:\t35\nX-ray tube plate current:\t0.2\nX-ray tube filter:\tin\n"
             "Exposure Time Sec:\t5\nSide View Mirror Enabled:\tYes\n"
             "Imaging Mode:\tLarge Animal\n");
    // A corrected luminescent image is marked corrected.
    expected[IMAGETYPE_LUMINESCENT_CORRECTED] = luminescent + temperatures
        + L1("Cosmic:\t1\nBackground Corrected:\t1\nFlat Field Corrected:\t1\n");
    // The fixed stamp follows the section's own: a key written twice stands twice, and each
    // place holds the last value.
    const QString fixed = L1("Acquisition Date:\t13/12/2022\nAcquisition Time:\t12:40\n"
                             "Acquisition Seconds:\t23\nPixel Width:\t1\nPixel Height:\t1\n");
    expected[IMAGETYPE_FIXED_STAMP]
        = fixed + fixed + L1("Imaging Angle:\t-22.5\nBinning Factor:\t4\n") + temperatures;

    const QStringList optional = L1List(
        { "Imaging Angle", "Side View Mirror Enabled", "Image Subtype", "Fluorescence level",
          "Fluorescence level string", "FL Grid Name", "FL Grid Position", "FL X motor position",
          "FL Y motor position", "FL x-spot", "FL y-spot" });
    const sIASetupInfo setup = filledSetup();
    const sIASetupInfo plain;
    for (int type = 0; type < PL_IMAGETYPE_COUNT; ++type) {
        SCOPED_TRACE(type);
        CPLClickInfo doc;
        ASSERT_EQ(doc.addTiffImageSection(L1("Image"), tag_eimagetype(type), &setup, false),
                  PL_SUCCESS);
        EXPECT_EQ(sectionText(doc, L1("image")),
                  L1("*** Image:\tImage\r\n") + expected[type] + QLatin1Char('\n'));
        QStringList withoutOptional = keysOf(doc, L1("image"));
        // The fluorescent background writes its fluorescence level whatever the setup: only
        // its angle goes.
        const int gone = type == IMAGETYPE_FLUORESCENT_BKG ? 1 : optional.size();
        for (const QString& key : optional.mid(0, gone))
            withoutOptional.removeAll(key);
        CPLClickInfo plainDoc;
        ASSERT_EQ(plainDoc.addTiffImageSection(L1("image"), tag_eimagetype(type), &plain, false),
                  PL_SUCCESS);
        EXPECT_EQ(keysOf(plainDoc, L1("image")), withoutOptional);
    }
}

// A new setup's defaults are what a luminescent section says when nothing is set.
TEST(ImageSectionTest, DefaultSetupAsSaved)
{
    sIASetupInfo setup;
    setup.m_tTimeStamp = STAMP;
    CPLClickInfo doc;
    ASSERT_EQ(
        doc.addTiffImageSection(L1("luminescent image"), IMAGETYPE_LUMINESCENT, &setup, false),
        PL_SUCCESS);
    EXPECT_EQ(sectionText(doc, L1("luminescent image")),
              L1("*** luminescent image:\tluminescent image\r\n"
                 "Acquisition Date:\tTuesday, November 4, 2025\nAcquisition Time:\t23:46:40\n"
                 "Acquisition Seconds:\t3845144800\nPixel Width:\t1\nPixel Height:\t1\n"
                 "Image Units:\tcounts\nBinning Factor:\t8\n"
                 "Luminescent Exposure (Seconds):\t\nLuminescent Exposure Units:\tsec\n"
                 "EM Gain:\tHigh\nf Number:\t1\nField of View:\t\nRead Bias Level:\t\n"
                 "Emission filter:\tOpen\nFilter Position:\t1\nExcitation filter:\tBlock\n"
                 "Subject size:\t1.5\nError Wave:\tNo Error\nDemand Temperature:\t\n"
                 "Measured Temperature:\t\nCosmic:\t0\nBackground Corrected:\t0\n"
                 "Flat Field Corrected:\t0\n\n"));
}

TEST(ImageSectionTest, XrayImagingModeFollowsTheSetup)
{
    // 1 ("Large Animal") is saved above; any value but 1 and 2 is "Mouse".
    const std::pair<int, const char*> cases[]
        = { { 0, "Mouse" }, { 2, "High Resolution" }, { 3, "Mouse" }, { -1, "Mouse" } };
    for (const auto& [mode, name] : cases) {
        sIASetupInfo setup;
        setup.m_iImagingMode = mode;
        CPLClickInfo doc;
        ASSERT_EQ(doc.addTiffImageSection(L1("x-ray image"), IMAGETYPE_XRAY, &setup, false),
                  PL_SUCCESS);
        EXPECT_EQ(valueOf(doc, "x-ray image", "Imaging Mode"), L1(name)) << mode;
    }
}

TEST(ImageSectionTest, PlaceInTheSectionOrderAndOnReplace)
{
    const sIASetupInfo setup;
    CPLClickInfo doc;
    const auto add = [&](const char* name, tag_eimagetype type) {
        return doc.addTiffImageSection(L1(name), type, &setup, false);
    };
    // Without a "readbiasonly image" section a calibration image goes at the end.
    ASSERT_EQ(add("readbias image", IMAGETYPE_READBIAS), PL_SUCCESS);
    ASSERT_EQ(add("ReadBiasOnly Image", IMAGETYPE_READBIASONLY), PL_SUCCESS);
    ASSERT_EQ(add("luminescent image", IMAGETYPE_LUMINESCENT), PL_SUCCESS);
    ASSERT_EQ(add("readsigma image", IMAGETYPE_READSIGMA), PL_SUCCESS);
    ASSERT_EQ(add("darkcharge image", IMAGETYPE_DARKCHARGE), PL_SUCCESS);
    ASSERT_EQ(add("reference image", IMAGETYPE_REFERENCE), PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(),
              L1List({ "readbias image", "readsigma image", "darkcharge image",
                       "ReadBiasOnly Image", "luminescent image", "reference image" }));
    // A replaced section keeps its place and takes its name from the call.
    const sIASetupInfo second = filledSetup();
    ASSERT_EQ(
        doc.addTiffImageSection(L1("Luminescent Image"), IMAGETYPE_LUMINESCENT, &second, true),
        PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(),
              L1List({ "readbias image", "readsigma image", "darkcharge image",
                       "ReadBiasOnly Image", "Luminescent Image", "reference image" }));
    EXPECT_EQ(valueOf(doc, "luminescent image", "Binning Factor"), L1("4"));
}

TEST(ImageSectionTest, RefusedCallsLeaveTheDocumentAsItWas)
{
    const sIASetupInfo setup;
    const sIASetupInfo other = filledSetup();
    CPLClickInfo doc;
    const auto add = [&](const char* name, int type, const sIASetupInfo* with) {
        return doc.addTiffImageSection(L1(name), tag_eimagetype(type), with, false);
    };
    ASSERT_EQ(add("luminescent image", IMAGETYPE_LUMINESCENT, &setup), PL_SUCCESS);
    const QString before = doc.getClickInfoData();
    EXPECT_EQ(add("x", PL_IMAGETYPE_COUNT, &setup), PL_OUT_OF_RANGE);
    EXPECT_EQ(add("x", -1, &setup), PL_OUT_OF_RANGE);
    EXPECT_EQ(add("x", IMAGETYPE_LUMINESCENT, nullptr), PL_NULL_ARGUMENT);
    EXPECT_EQ(add("", IMAGETYPE_LUMINESCENT, &setup), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(add("LUMINESCENT IMAGE", IMAGETYPE_PHOTOGRAPH, &other), PL_INVALID_ARGUMENT);
    // Names that cannot stand in a header line: the saved file would not load back.
    for (const char* name : { "lum#1.TIF", "a:b.TIF", "two\nlines.TIF" }) {
        EXPECT_EQ(add(name, IMAGETYPE_LUMINESCENT, &setup), PL_INVALID_ARGUMENT) << name;
        EXPECT_EQ(doc.addImageSection(L1("/data/") + L1(name), L1("u"), IMAGETYPE_LUMINESCENT,
                                      &setup, true),
                  PL_INVALID_ARGUMENT)
            << name;
    }
    EXPECT_EQ(doc.addImageSection(L1("/a/b"), L1("u"), tag_eimagetype(20), &setup, true),
              PL_OUT_OF_RANGE);
    EXPECT_EQ(doc.addTiffUserSection(tag_eimagetype(20), L1("u")), PL_OUT_OF_RANGE);
    EXPECT_EQ(doc.addTiffClickNumberSection(true, true, L1("  ")), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(doc.getClickInfoData(), before);
}

TEST(ImageSectionTest, ImageSectionFromPathSetsTheUserId)
{
    sIASetupInfo setup;
    CPLClickInfo doc;
    // No "User Input" section: none is made.
    ASSERT_EQ(doc.addImageSection(L1("/data/KL1/luminescent image"), L1("klenz"),
                                  IMAGETYPE_LUMINESCENT, &setup, false),
              PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(), L1List({ "luminescent image" }));
    // A path without "/" is the name itself; the "User ID" key is added, then changed.
    ASSERT_EQ(doc.addTiffUserSection(IMAGETYPE_LUMINESCENT, L1("first")), PL_SUCCESS);
    ASSERT_EQ(doc.addImageSection(L1("photographic image"), L1("klenz"), IMAGETYPE_PHOTOGRAPH,
                                  &setup, false),
              PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(),
              L1List({ "luminescent image", "User Input", "photographic image" }));
    EXPECT_EQ(valueOf(doc, "User Input", "User ID"), L1("klenz"));
}

TEST(ImageSectionTest, UserSectionHasTheDefaultLabelsAndTheUser)
{
    CPLClickInfo doc;
    // Calibration images are not taken for a user.
    ASSERT_EQ(doc.addTiffUserSection(IMAGETYPE_DARKCHARGE, L1("klenz")), PL_SUCCESS);
    EXPECT_FALSE(doc.isSectionPresent(L1("User Input")));
    ASSERT_EQ(doc.addTiffUserSection(IMAGETYPE_LUMINESCENT, L1("klenz")), PL_SUCCESS);
    const QString labels = L1("User:\t\nGroup:\t\nExperiment:\t\nComment1:\t\nComment2:\t\n"
                              "Time Point:\t\nAnimal Number:\t\nAnimal Strain:\t\n"
                              "Animal Model:\t\nSex:\t\nView:\t\nCell Line:\t\nReporter:\t\n"
                              "Treatment:\t\nLuc Injection Time:\t\nIACUC Number:\t\n");
    EXPECT_EQ(sectionText(doc, L1("User Input")),
              L1("*** User Input:\tOrvane Universal\r\n") + labels + L1("User ID:\tklenz\n\n"));
    // A second image keeps what was entered and changes the user.
    ASSERT_EQ(doc.setValue(L1("User Input"), L1("Group"), L1("Core")), PL_SUCCESS);
    ASSERT_EQ(doc.addTiffUserSection(IMAGETYPE_PHOTOGRAPH, L1("amuir")), PL_SUCCESS);
    EXPECT_EQ(sectionText(doc, L1("User Input")),
              L1("*** User Input:\tOrvane Universal\r\n")
                  + QString(labels).replace(L1("Group:\t\n"), L1("Group:\tCore\n"))
                  + L1("User ID:\tamuir\n\n"));
}

TEST(ImageSectionTest, ClickNumberSectionComesFirst)
{
    sIASetupInfo setup;
    CPLClickInfo doc;
    ASSERT_EQ(
        doc.addTiffImageSection(L1("photographic image"), IMAGETYPE_PHOTOGRAPH, &setup, false),
        PL_SUCCESS);
    ASSERT_EQ(doc.addTiffClickNumberSection(true, false, L1(" KL20261105093012_001 ")), PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(), L1List({ "ClickNumber", "photographic image" }));
    EXPECT_EQ(sectionText(doc, L1("ClickNumber")),
              L1("*** ClickNumber:\tKL20261105093012_001\r\nClickInfoType:\tRawData\n"
                 "Acquired From File:\tYes\nModified Since Saved:\tNo\n\n"));

    // Again on a section that has more keys: renamed, flags changed, the rest kept.
    doc[L1("ClickNumber")]->addKeyValue(L1("Orvane Version"), L1("4.2.1"));
    ASSERT_EQ(doc.addTiffClickNumberSection(false, true, L1("KL2 ")), PL_SUCCESS);
    EXPECT_EQ(sectionText(doc, L1("ClickNumber")),
              L1("*** ClickNumber:\tKL2\r\nClickInfoType:\tRawData\n"
                 "Acquired From File:\tNo\nModified Since Saved:\tYes\n"
                 "Orvane Version:\t4.2.1\n\n"));
    QString number;
    doc.getClickNumber(&number);
    EXPECT_EQ(number, L1("KL2"));

    // What is built loads back as it was.
    QTemporaryDir dir;
    const QString file = dir.filePath(L1("ClickInfo.txt"));
    ASSERT_EQ(doc.saveClickInfo(file), PL_SUCCESS);
    CPLClickInfo loaded;
    ASSERT_EQ(loaded.loadClickInfo(file), PL_SUCCESS);
    EXPECT_EQ(loaded.getClickInfoData(), doc.getClickInfoData());
}

} // namespace
