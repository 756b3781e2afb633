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
    const CPLSection* section = doc[key];
    if (section)
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

QStringList builtKeys(tag_eimagetype type, const sIASetupInfo& setup)
{
    CPLClickInfo doc;
    EXPECT_EQ(doc.addTiffImageSection(L1("image"), type, &setup, false), PL_SUCCESS) << type;
    return keysOf(doc, L1("image"));
}

// Adds the "luminescent image" section of a new setup taken at STAMP.
void addDefaultLuminescent(CPLClickInfo& doc)
{
    sIASetupInfo setup;
    setup.m_tTimeStamp = STAMP;
    ASSERT_EQ(
        doc.addTiffImageSection(L1("luminescent image"), IMAGETYPE_LUMINESCENT, &setup, false),
        PL_SUCCESS);
}

TEST(ImageTypesTest, NamesOfTheTypes)
{
    for (int type = 0; type <= 16; ++type)
        EXPECT_EQ(getImageTypeString(tag_eimagetype(type)), OVSGlobalConstants::g_strImages[type]);
    EXPECT_EQ(getImageTypeString(IMAGETYPE_LUMINESCENT_CORRECTED), L1("Luminescent"));
    EXPECT_EQ(getImageTypeString(IMAGETYPE_SATURATION_MAP_2), L1("Saturation Map"));
}

TEST(ImageSectionTest, EveryTypeWritesItsKeysInOrder)
{
    const QStringList common = L1List({ "Acquisition Date", "Acquisition Time",
                                        "Acquisition Seconds", "Pixel Width", "Pixel Height" });
    const QStringList angle = L1List({ "Imaging Angle" });
    const QStringList start = common + angle;
    const QStringList bias
        = L1List({ "Binning Factor", "Read Bias Level", "Demand Temperature",
                   "Measured Temperature", "Data Multiplier", "Background Exposure (Seconds)" });
    const QStringList luminescent = L1List({ "Image Units",
                                             "Binning Factor",
                                             "Side View Mirror Enabled",
                                             "Luminescent Exposure (Seconds)",
                                             "Luminescent Exposure Units",
                                             "EM Gain",
                                             "f Number",
                                             "Field of View",
                                             "Read Bias Level",
                                             "Emission filter",
                                             "Filter Position",
                                             "Excitation filter",
                                             "Subject size",
                                             "Image Subtype",
                                             "Fluorescence level",
                                             "Fluorescence level string",
                                             "FL Grid Name",
                                             "FL Grid Position",
                                             "FL X motor position",
                                             "FL Y motor position",
                                             "FL x-spot",
                                             "FL y-spot",
                                             "Error Wave" });
    const QStringList closing = L1List({ "Demand Temperature", "Measured Temperature", "Cosmic",
                                         "Background Corrected", "Flat Field Corrected" });
    const QStringList normalisation = L1List({ "Minimal Counts For Normalization", "Raw Binning" });
    const QStringList expected[PL_IMAGETYPE_COUNT] = {
        start + L1List({ "Side View Mirror Enabled" }) + bias,
        start + luminescent + closing,
        start,
        start,
        start,
        start + bias,
        start,
        start
            + L1List({ "Binning Factor", "Image Units", "f Number", "Field of View",
                       "Filter Position", "Emission filter", "Exposure Time Sec", "Object radius",
                       "Subject size", "Height Reference", "Height Reference Pixel X",
                       "Height Reference Pixel Y", "MV stage distance", "Structured Light Little L",
                       "Structure frequency" }),
        start
            + L1List({ "Binning Factor", "f Number", "Field of View", "Read Bias Level",
                       "Fluorescence level", "Fluorescence level string", "Demand Temperature",
                       "Measured Temperature", "Data Multiplier",
                       "Background Exposure (Seconds)" }),
        start + luminescent + normalisation + closing,
        start,
        start,
        start
            + L1List({ "Binning Factor", "f Number", "Field of View", "Read Bias Level",
                       "X-ray tube voltage", "X-ray tube plate current", "X-ray tube filter",
                       "Exposure Time Sec", "Side View Mirror Enabled", "Imaging Mode" }),
        start,
        start,
        start,
        start,
        start + luminescent + closing,
        start,
        common + common + angle
            + L1List({ "Binning Factor", "Demand Temperature", "Measured Temperature" }),
    };
    // With the optional keys switched off, exactly those keys go.
    const QStringList optional = L1List(
        { "Imaging Angle", "Side View Mirror Enabled", "Image Subtype", "Fluorescence level",
          "Fluorescence level string", "FL Grid Name", "FL Grid Position", "FL X motor position",
          "FL Y motor position", "FL x-spot", "FL y-spot" });
    sIASetupInfo plain;
    for (int type = 0; type < PL_IMAGETYPE_COUNT; ++type) {
        SCOPED_TRACE(type);
        EXPECT_EQ(builtKeys(tag_eimagetype(type), filledSetup()), expected[type]);
        QStringList withoutOptional = expected[type];
        // The fluorescent background writes its fluorescence level whatever the setup.
        if (type != IMAGETYPE_FLUORESCENT_BKG) {
            for (const QString& key : optional)
                withoutOptional.removeAll(key);
        } else {
            withoutOptional.removeAll(L1("Imaging Angle"));
        }
        EXPECT_EQ(builtKeys(tag_eimagetype(type), plain), withoutOptional);
    }
}

TEST(ImageSectionTest, LuminescentFamilySectionsAsSaved)
{
    const sIASetupInfo setup = filledSetup();
    CPLClickInfo doc;
    ASSERT_EQ(doc.addTiffImageSection(L1("fluorescent reference image"),
                                      IMAGETYPE_FLUORESCENT_REFERENCE, &setup, false),
              PL_SUCCESS);
    EXPECT_EQ(sectionText(doc, L1("FLUORESCENT REFERENCE IMAGE")),
              L1("*** fluorescent reference image:\tfluorescent reference image\r\n"
                 "Acquisition Date:\tTuesday, November 4, 2025\n"
                 "Acquisition Time:\t23:46:40\n"
                 "Acquisition Seconds:\t3845144800\n"
                 "Pixel Width:\t1\nPixel Height:\t1\n"
                 "Imaging Angle:\t-22.5\n"
                 "Image Units:\tcounts\nBinning Factor:\t4\nSide View Mirror Enabled:\tYes\n"
                 "Luminescent Exposure (Seconds):\t0.5\nLuminescent Exposure Units:\tsec\n"
                 "EM Gain:\t0\nf Number:\t2\nField of View:\t12.5\nRead Bias Level:\t612\n"
                 "Emission filter:\t520\nFilter Position:\t3\nExcitation filter:\t465\n"
                 "Subject size:\t2.25\n"
                 "Image Subtype:\tfluorescent\nFluorescence level:\tHigh\n"
                 "Fluorescence level string:\tHigh (500 W)\n"
                 "FL Grid Name:\tGrid 9x9\nFL Grid Position:\t3, 7\n"
                 "FL X motor position:\t1200\nFL Y motor position:\t-340\n"
                 "FL x-spot:\t12\nFL y-spot:\t14\n"
                 "Error Wave:\tNo Error\n"
                 "Minimal Counts For Normalization:\t250\nRaw Binning:\t2\n"
                 "Demand Temperature:\t-90\nMeasured Temperature:\t-89.8\n"
                 "Cosmic:\t0\nBackground Corrected:\t0\nFlat Field Corrected:\t0\n\n"));

    // A corrected luminescent image is marked corrected (the other types' keys are above).
    CPLClickInfo corrected;
    ASSERT_EQ(
        corrected.addTiffImageSection(L1("image"), IMAGETYPE_LUMINESCENT_CORRECTED, &setup, false),
        PL_SUCCESS);
    EXPECT_TRUE(
        sectionText(corrected, L1("image"))
            .endsWith(L1("Cosmic:\t1\nBackground Corrected:\t1\nFlat Field Corrected:\t1\n\n")));
}

TEST(ImageSectionTest, OtherFamiliesAsSaved)
{
    const sIASetupInfo setup = filledSetup();
    const QString head = L1("Acquisition Date:\tTuesday, November 4, 2025\n"
                            "Acquisition Time:\t23:46:40\nAcquisition Seconds:\t3845144800\n"
                            "Pixel Width:\t1\nPixel Height:\t1\nImaging Angle:\t-22.5\n");
    const struct
    {
        tag_eimagetype type;
        QString body;
    } cases[] = {
        { IMAGETYPE_STRUCTURE,
          head
              + L1("Binning Factor:\t4\nImage Units:\tcounts\nf Number:\t2\n"
                   "Field of View:\t12.5\nFilter Position:\t1\nEmission filter:\tOpen\n"
                   "Exposure Time Sec:\t5\nObject radius:\t0.125\nSubject size:\t2.25\n"
                   "Height Reference:\tCoarse\nHeight Reference Pixel X:\t640\n"
                   "Height Reference Pixel Y:\t480\nMV stage distance:\t7.25\n"
                   "Structured Light Little L:\t18\nStructure frequency:\tAuto\n") },
        { IMAGETYPE_FLUORESCENT_BKG,
          head
              + L1("Binning Factor:\t4\nf Number:\t2\nField of View:\t12.5\n"
                   "Read Bias Level:\t612\nFluorescence level:\tHigh\n"
                   "Fluorescence level string:\tHigh (500 W)\nDemand Temperature:\t-90\n"
                   "Measured Temperature:\t-89.8\nData Multiplier:\t1\n"
                   "Background Exposure (Seconds):\t30\n") },
        { IMAGETYPE_XRAY,
          head
              + L1("Binning Factor:\t4\nf Number:\t2\nField of View:\t12.5\n"
                   "Read Bias Level:\t612\nX-ray tube voltage:\t35\n"
                   "X-ray tube plate current:\t0.2\nX-ray tube filter:\tin\n"
                   "Exposure Time Sec:\t5\nSide View Mirror Enabled:\tYes\n"
                   "Imaging Mode:\tLarge Animal\n") },
        // The fixed stamp follows the section's own: a key written twice stands twice, and
        // each place holds the last value.
        { IMAGETYPE_FIXED_STAMP,
          L1("Acquisition Date:\t13/12/2022\nAcquisition Time:\t12:40\n"
             "Acquisition Seconds:\t23\nPixel Width:\t1\nPixel Height:\t1\n")
                  .repeated(2)
              + L1("Imaging Angle:\t-22.5\nBinning Factor:\t4\nDemand Temperature:\t-90\n"
                   "Measured Temperature:\t-89.8\n") },
    };
    for (const auto& c : cases) {
        CPLClickInfo doc;
        ASSERT_EQ(doc.addTiffImageSection(L1("Image"), c.type, &setup, false), PL_SUCCESS);
        EXPECT_EQ(sectionText(doc, L1("image")),
                  L1("*** Image:\tImage\r\n") + c.body + QLatin1Char('\n'))
            << c.type;
    }
}

// A new setup's defaults are what a luminescent section says when nothing is set.
TEST(ImageSectionTest, DefaultSetupAsSaved)
{
    CPLClickInfo doc;
    addDefaultLuminescent(doc);
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
    const struct
    {
        int mode;
        const char* value;
    } cases[] = { { 0, "Mouse" },
                  { 1, "Large Animal" },
                  { 2, "High Resolution" },
                  { 3, "Mouse" },
                  { -1, "Mouse" } };
    for (const auto& c : cases) {
        sIASetupInfo setup;
        setup.m_iImagingMode = c.mode;
        CPLClickInfo doc;
        ASSERT_EQ(doc.addTiffImageSection(L1("x-ray image"), IMAGETYPE_XRAY, &setup, false),
                  PL_SUCCESS);
        QString value;
        EXPECT_EQ(doc.getValue(L1("x-ray image"), L1("Imaging Mode"), &value), PL_SUCCESS);
        EXPECT_EQ(value, L1(c.value)) << c.mode;
    }
}

TEST(ImageSectionTest, PlaceInTheSectionOrder)
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
    int count = 0;
    EXPECT_EQ(doc.getSectionCount(&count), PL_SUCCESS);
    EXPECT_EQ(count, 6);
}

TEST(ImageSectionTest, RefusedCallsLeaveTheDocumentAsItWas)
{
    CPLClickInfo doc;
    addDefaultLuminescent(doc);
    const QString before = doc.getClickInfoData();
    sIASetupInfo setup;
    sIASetupInfo other;
    const struct
    {
        const char* name;
        int type;
        const sIASetupInfo* setup;
        int status;
    } cases[] = {
        { "x", 20, &setup, PL_OUT_OF_RANGE },
        { "x", -1, &setup, PL_OUT_OF_RANGE },
        { "x", 1, nullptr, PL_NULL_ARGUMENT },
        { "", 1, &setup, PL_NOTHING_TO_WORK_ON },
        { "LUMINESCENT IMAGE", 0, &other, PL_INVALID_ARGUMENT },
    };
    for (const auto& c : cases) {
        EXPECT_EQ(doc.addTiffImageSection(L1(c.name), tag_eimagetype(c.type), c.setup, false),
                  c.status)
            << c.type;
        EXPECT_EQ(doc.getClickInfoData(), before);
    }
    EXPECT_EQ(doc.addImageSection(L1("/a/b"), L1("u"), tag_eimagetype(20), &setup, true),
              PL_OUT_OF_RANGE);
    EXPECT_EQ(doc.addTiffUserSection(tag_eimagetype(20), L1("u")), PL_OUT_OF_RANGE);
    EXPECT_EQ(doc.addTiffClickNumberSection(true, true, L1("  ")), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(doc.getClickInfoData(), before);
}

TEST(ImageSectionTest, ReplaceKeepsThePlace)
{
    sIASetupInfo first;
    sIASetupInfo second;
    second.m_strBinningFactor = L1("16");
    CPLClickInfo doc;
    doc.addNewSection(L1("A"), QString());
    ASSERT_EQ(
        doc.addTiffImageSection(L1("photographic image"), IMAGETYPE_PHOTOGRAPH, &first, false),
        PL_SUCCESS);
    doc.addNewSection(L1("B"), QString());
    ASSERT_EQ(
        doc.addTiffImageSection(L1("Photographic Image"), IMAGETYPE_PHOTOGRAPH, &second, true),
        PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(), L1List({ "A", "Photographic Image", "B" }));
    QString binning;
    EXPECT_EQ(doc.getValue(L1("photographic image"), L1("Binning Factor"), &binning), PL_SUCCESS);
    EXPECT_EQ(binning, L1("16"));
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
    QString user;
    EXPECT_EQ(doc.getValue(L1("User Input"), L1("User ID"), &user), PL_SUCCESS);
    EXPECT_EQ(user, L1("klenz"));
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
    QString number;
    doc.getClickNumber(&number);
    EXPECT_EQ(number, L1("KL20261105093012_001"));

    // Again on a section that has more keys: renamed, flags changed, the rest kept.
    doc[L1("ClickNumber")]->addKeyValue(L1("Orvane Version"), L1("4.2.1"));
    ASSERT_EQ(doc.addTiffClickNumberSection(false, true, L1("KL2")), PL_SUCCESS);
    EXPECT_EQ(sectionText(doc, L1("ClickNumber")),
              L1("*** ClickNumber:\tKL2\r\nClickInfoType:\tRawData\n"
                 "Acquired From File:\tNo\nModified Since Saved:\tYes\n"
                 "Orvane Version:\t4.2.1\n\n"));

    // What is built loads back with the same click number and sections.
    QTemporaryDir dir;
    const QString file = dir.filePath(L1("ClickInfo.txt"));
    ASSERT_EQ(doc.saveClickInfo(file), PL_SUCCESS);
    CPLClickInfo loaded;
    ASSERT_EQ(loaded.loadClickInfo(file), PL_SUCCESS);
    loaded.getClickNumber(&number);
    EXPECT_EQ(number, L1("KL2"));
    EXPECT_EQ(loaded.getClickInfoData(), doc.getClickInfoData());
}

} // namespace
