// The analysis results of a click: kinds, each group of analysis keys, and the file they make.

#include "AnalysisSample.h"
#include "PLAnalyzedClickInfo.h"
#include "PLConstants.h"
#include "PLPaths.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <cmath>

using Kind = CPLAnalyzedClickInfo::Kind;
using Correction = CPLAnalyzedClickInfo::Correction;

namespace {

const char IMAGE_MATH_FILE[] = "*** ClickNumber:\tKL20261105101544_001_IM01\r\n"
                               "ClickInfoType:\tImageMath\n"
                               "Acquired From File:\tNo\n"
                               "Modified Since Saved:\tNo\n"
                               "\n"
                               "*** Analysis Results:\t\r\n"
                               "Folder On Disk:\tKL20261105101544_001_IM01\n"
                               "Image Math Operation:\tA-k*B\n"
                               "Image Math k:\t0.85\n"
                               "Image Math A ClickNumber:\tKL20261105101544_001\n"
                               "Image Math B ClickNumber:\tKL20261104142207_001\n"
                               "Background Click:\tBK20261101080000_001\n"
                               "Saturated:\tNo\n"
                               "Background Corrected:\tYes\n"
                               "\n"
                               "\n"
                               "\n";

void buildImageMath(CPLAnalyzedClickInfo& info)
{
    ASSERT_EQ(info.create(L1("KL20261105101544_001_IM01"), Kind::ImageMath), PL_SUCCESS);
    ASSERT_EQ(info.setFolderOnDisk(L1("KL20261105101544_001_IM01")), PL_SUCCESS);
    CPLAnalyzedClickInfo::ImageMath math;
    math.operation = L1("A-k*B");
    math.k = 0.85;
    math.aClickNumber = L1("KL20261105101544_001");
    math.bClickNumber = L1("KL20261104142207_001");
    ASSERT_EQ(info.setImageMath(math), PL_SUCCESS);
    ASSERT_EQ(info.setBackgroundClick(L1("BK20261101080000_001")), PL_SUCCESS);
    ASSERT_EQ(info.setCorrection(Correction::Saturated, false), PL_SUCCESS);
    ASSERT_EQ(info.setCorrection(Correction::BackgroundCorrected, true), PL_SUCCESS);
}

} // namespace

TEST(AnalyzedClickInfo, ImageMathResultWritesItsFileAndReadsItBack)
{
    QTemporaryDir dir;
    CPLAnalyzedClickInfo info;
    buildImageMath(info);
    ASSERT_EQ(info.save(dir.path()), PL_SUCCESS);
    const QString file = dir.filePath(PLConstants::ANALYZED_CLICKINFO_FILENAME);
    EXPECT_EQ(readBytes(file), QByteArray(IMAGE_MATH_FILE));

    CPLAnalyzedClickInfo read;
    ASSERT_EQ(read.load(file), PL_SUCCESS);
    EXPECT_EQ(read.getLoadWarnings(), QStringList());
    Kind kind = Kind::Other;
    ASSERT_EQ(read.getKind(&kind), PL_SUCCESS);
    EXPECT_EQ(kind, Kind::ImageMath);
    CPLAnalyzedClickInfo::ImageMath math;
    ASSERT_EQ(read.getImageMath(&math), PL_SUCCESS);
    EXPECT_EQ(math.operation, L1("A-k*B"));
    EXPECT_EQ(math.k, 0.85);
    EXPECT_EQ(math.bClickNumber, L1("KL20261104142207_001"));
    EXPECT_EQ(math.photoClickNumber, QString());
    QString text;
    ASSERT_EQ(read.getBackgroundClick(&text), PL_SUCCESS);
    EXPECT_EQ(text, L1("BK20261101080000_001"));
    bool isSet = true;
    ASSERT_EQ(read.getCorrection(Correction::Saturated, &isSet), PL_SUCCESS);
    EXPECT_FALSE(isSet);
    EXPECT_EQ(read.getCorrection(Correction::FlatFieldCorrected, &isSet), PL_KEY_NOT_FOUND);

    // Saving what was read writes the same bytes; loading clears what was there.
    const QString copy = dir.filePath(L1("copy.txt"));
    ASSERT_EQ(read.save(copy), PL_SUCCESS);
    EXPECT_EQ(readBytes(copy), QByteArray(IMAGE_MATH_FILE));
    ASSERT_EQ(read.load(dir.path()), PL_SUCCESS);
    EXPECT_EQ(read.getSectionKeys(), L1List({ "ClickNumber", "Analysis Results" }));
}

TEST(AnalyzedClickInfo, KindsAndTheirTexts)
{
    const struct
    {
        const char* text;
        Kind kind;
    } cases[] = {
        { "RawData", Kind::RawData },
        { "SingleClickAnalysis", Kind::SingleClickAnalysis },
        { "ImageMath", Kind::ImageMath },
        { "Kinetic", Kind::Kinetic },
        { "SpectralUnmix", Kind::SpectralUnmix },
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CPLAnalyzedClickInfo::kindText(c.kind), L1(c.text));
        EXPECT_EQ(CPLAnalyzedClickInfo::kindFromText(L1(c.text)), c.kind);
        CPLAnalyzedClickInfo info;
        ASSERT_EQ(info.create(L1("X_001"), c.kind), PL_SUCCESS);
        QString text;
        ASSERT_EQ(info.getKindText(&text), PL_SUCCESS);
        EXPECT_EQ(text, L1(c.text));
    }
    EXPECT_EQ(CPLAnalyzedClickInfo::kindText(Kind::Other), QString());
    EXPECT_EQ(CPLAnalyzedClickInfo::kindFromText(L1("imagemath")), Kind::Other);
    EXPECT_EQ(CPLAnalyzedClickInfo::kindFromText(QString()), Kind::Other);

    // A raw acquisition's ClickInfo reads as RawData; other texts as Other.
    CPLAnalyzedClickInfo info;
    ASSERT_EQ(info.loadTextBuffer(L1("*** ClickNumber:\tA_001\nClickInfoType:\tRawData\n")),
              PL_SUCCESS);
    Kind kind = Kind::Other;
    ASSERT_EQ(info.getKind(&kind), PL_SUCCESS);
    EXPECT_EQ(kind, Kind::RawData);
    ASSERT_EQ(
        info.setValue(PLConstants::CLICKNUMBER_KEY, PLConstants::CLICKINFOTYPE_KEY, L1("Ratio")),
        PL_SUCCESS);
    ASSERT_EQ(info.getKind(&kind), PL_SUCCESS);
    EXPECT_EQ(kind, Kind::Other);
    EXPECT_EQ(info.setKind(Kind::Other), PL_INVALID_ARGUMENT);
    EXPECT_EQ(info.create(L1("  "), Kind::Kinetic), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(info.create(L1("B_001"), Kind::Other), PL_INVALID_ARGUMENT);
    EXPECT_EQ(info.getKind(nullptr), PL_NULL_ARGUMENT);

    CPLAnalyzedClickInfo empty;
    EXPECT_EQ(empty.getKind(&kind), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(empty.setKind(Kind::Kinetic), PL_SECTION_NOT_PRESENT);
}

TEST(AnalyzedClickInfo, ReadsOfMalformedAndAbsentValues)
{
    const struct
    {
        const char* body;
        int imageMath;
        int kinetic;
        int correction;
    } cases[] = {
        { "Image Math Operation:\tA/B\nKinetic Operation:\tAccumulated\nSaturated:\tyes\n",
          PL_SUCCESS, PL_SUCCESS, PL_SUCCESS },
        { "Image Math Operation:\tA/B\nImage Math k:\thigh\nKinetic Operation:\tSum\n"
          "Saturated:\tmaybe\n",
          PL_INVALID_ARGUMENT, PL_INVALID_ARGUMENT, PL_INVALID_ARGUMENT },
        { "Image Math k:\t2\nSaturated:\t\n", PL_KEY_NOT_FOUND, PL_KEY_NOT_FOUND,
          PL_INVALID_ARGUMENT },
        { "Image Math Operation:\tA-k*B\nImage Math k:\tnan\nSaturated:\tTRUE\n",
          PL_INVALID_ARGUMENT, PL_KEY_NOT_FOUND, PL_SUCCESS },
    };
    for (const auto& c : cases) {
        CPLAnalyzedClickInfo info;
        ASSERT_EQ(info.loadTextBuffer(L1("*** Analysis Results:\t\n") + L1(c.body)), PL_SUCCESS);
        CPLAnalyzedClickInfo::ImageMath math;
        math.operation = L1("untouched");
        EXPECT_EQ(info.getImageMath(&math), c.imageMath) << c.body;
        if (c.imageMath != PL_SUCCESS) {
            EXPECT_EQ(math.operation, L1("untouched")) << "written only on success";
        }
        auto operation = CPLAnalyzedClickInfo::KineticOperation::SingleClick;
        QString click;
        EXPECT_EQ(info.getKinetic(&operation, &click), c.kinetic) << c.body;
        bool isSet = false;
        EXPECT_EQ(info.getCorrection(Correction::Saturated, &isSet), c.correction) << c.body;
        if (c.correction == PL_SUCCESS) {
            EXPECT_TRUE(isSet) << c.body;
        }
    }
    // An absent k reads 1.
    CPLAnalyzedClickInfo info;
    ASSERT_EQ(info.loadTextBuffer(L1("*** Analysis Results:\t\nImage Math Operation:\tA+B\n")),
              PL_SUCCESS);
    CPLAnalyzedClickInfo::ImageMath math;
    math.k = 5;
    ASSERT_EQ(info.getImageMath(&math), PL_SUCCESS);
    EXPECT_EQ(math.k, 1.0);
    CPLAnalyzedClickInfo empty;
    EXPECT_EQ(empty.getImageMath(&math), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(empty.getImageMath(nullptr), PL_NULL_ARGUMENT);
}

TEST(AnalyzedClickInfo, KineticUnmixingAndFlagsRoundTrip)
{
    CPLAnalyzedClickInfo info;
    ASSERT_EQ(info.create(L1("KL_001_K1"), Kind::Kinetic), PL_SUCCESS);
    ASSERT_EQ(info.setKinetic(CPLAnalyzedClickInfo::KineticOperation::SingleClick, L1("KL_001")),
              PL_SUCCESS);
    ASSERT_EQ(info.setSpectralUnmixing(L1("SEQ20261105"), L1(" Tumor ")), PL_SUCCESS);
    const Correction flags[]
        = { Correction::Saturated, Correction::CcdCorrected, Correction::BackgroundCorrected,
            Correction::FlatFieldCorrected, Correction::Rotated };
    for (size_t i = 0; i < sizeof(flags) / sizeof(flags[0]); ++i)
        ASSERT_EQ(info.setCorrection(flags[i], i % 2 == 0), PL_SUCCESS);
    // Setting a key again replaces its value in its place.
    ASSERT_EQ(info.setKinetic(CPLAnalyzedClickInfo::KineticOperation::Accumulated, L1("KL_002")),
              PL_SUCCESS);

    CPLAnalyzedClickInfo read;
    ASSERT_EQ(read.loadTextBuffer(info.getClickInfoData()), PL_SUCCESS);
    EXPECT_EQ(read.getClickInfoData(), info.getClickInfoData());
    auto operation = CPLAnalyzedClickInfo::KineticOperation::SingleClick;
    QString click;
    ASSERT_EQ(read.getKinetic(&operation, &click), PL_SUCCESS);
    EXPECT_EQ(operation, CPLAnalyzedClickInfo::KineticOperation::Accumulated);
    EXPECT_EQ(click, L1("KL_002"));
    QString dataset, name;
    ASSERT_EQ(read.getSpectralUnmixing(&dataset, &name), PL_SUCCESS);
    EXPECT_EQ(dataset + L1("|") + name, L1("SEQ20261105|Tumor"));
    for (size_t i = 0; i < sizeof(flags) / sizeof(flags[0]); ++i) {
        bool isSet = i % 2 != 0;
        ASSERT_EQ(read.getCorrection(flags[i], &isSet), PL_SUCCESS);
        EXPECT_EQ(isSet, i % 2 == 0) << CPLAnalyzedClickInfo::correctionKey(flags[i]).toStdString();
    }
    EXPECT_EQ(read.getSectionKeys(), L1List({ "ClickNumber", "Analysis Results" }));
}

TEST(AnalyzedClickInfo, RefusedValuesChangeNothing)
{
    CPLAnalyzedClickInfo info;
    buildImageMath(info);
    const QString before = info.getClickInfoData();
    CPLAnalyzedClickInfo::ImageMath math;
    math.operation = L1("A-B");
    math.bClickNumber = L1("B#2");
    EXPECT_EQ(info.setImageMath(math), PL_INVALID_ARGUMENT);
    math.bClickNumber = L1("B\nUser:\tx");
    EXPECT_EQ(info.setImageMath(math), PL_INVALID_ARGUMENT);
    math.bClickNumber.clear();
    math.k = std::nan("");
    EXPECT_EQ(info.setImageMath(math), PL_INVALID_ARGUMENT);
    math.operation = L1(" ");
    EXPECT_EQ(info.setImageMath(math), PL_EMPTY_KEY);
    EXPECT_EQ(info.setKinetic(static_cast<CPLAnalyzedClickInfo::KineticOperation>(7), L1("A")),
              PL_INVALID_ARGUMENT);
    EXPECT_EQ(info.setKinetic(CPLAnalyzedClickInfo::KineticOperation::Accumulated, L1("#")),
              PL_INVALID_ARGUMENT);
    EXPECT_EQ(info.setSpectralUnmixing(L1("S"), QString(QChar(0x263A))), PL_INVALID_ARGUMENT);
    EXPECT_EQ(info.setFolderOnDisk(L1("a\rb")), PL_INVALID_ARGUMENT);
    EXPECT_EQ(info.setCorrection(static_cast<Correction>(9), true), PL_INVALID_ARGUMENT);
    EXPECT_EQ(info.getClickInfoData(), before);
    EXPECT_EQ(info.save(QString()), PL_EMPTY_KEY);
    EXPECT_EQ(info.load(QString()), PL_EMPTY_KEY);
}

TEST(AnalyzedClickInfo, AcquisitionTakesTheAnalysisSectionOnMerge)
{
    QTemporaryDir dir;
    CPLAnalyzedClickInfo analysis;
    buildImageMath(analysis);
    ASSERT_EQ(analysis.addTiffClickNumberSection(false, false, L1("KL20261105101544_001")),
              PL_SUCCESS);
    ASSERT_EQ(analysis.setKind(Kind::ImageMath), PL_SUCCESS);
    ASSERT_EQ(analysis.save(dir.path()), PL_SUCCESS);

    CPLAnalyzedClickInfo acquisition;
    ASSERT_EQ(acquisition.create(L1("KL20261105101544_001"), Kind::RawData), PL_SUCCESS);
    ASSERT_EQ(acquisition.loadAnalyzedClickInfo(dir.path()), PL_SUCCESS);
    Kind kind = Kind::Other;
    ASSERT_EQ(acquisition.getKind(&kind), PL_SUCCESS);
    EXPECT_EQ(kind, Kind::RawData) << "the acquisition keeps its own ClickNumber section";
    CPLAnalyzedClickInfo::ImageMath math;
    ASSERT_EQ(acquisition.getImageMath(&math), PL_SUCCESS);
    EXPECT_EQ(math.aClickNumber, L1("KL20261105101544_001"));
}

// samples/analysis holds what make_samples writes.
TEST(AnalyzedClickInfo, BundledSampleIsWhatTheGeneratorWrites)
{
    const QString path = L1(OVPARSER_SAMPLES "/analysis/") + L1(ANALYSIS_SAMPLE_FOLDER) + L1("/")
        + PLConstants::ANALYZED_CLICKINFO_FILENAME;
    const QByteArray expected = analysisSampleBytes();
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(readBytes(path), expected) << "run make_samples samples to write it again";
    CPLAnalyzedClickInfo info;
    ASSERT_EQ(info.load(getParentPath(path)), PL_SUCCESS);
    EXPECT_EQ(info.getLoadWarnings(), QStringList());
}
