// The optical-property, reconstruction and auto-ROI preferences: typed reads with defaults and
// presence, and setters that change one line of the user's file and nothing else.

#include "PLConstants.h"
#include "PLOptPropInfo.h"
#include "PLPaths.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTemporaryDir>

namespace {

// A user's file as written by hand: LF line ends, comments, blank lines, other sections.
const QByteArray kUserFile = "# my preferences\n"
                             "*** Camera Settings:\t\n"
                             "Photo Exposure:\t0.2\n"
                             "\n"
                             "*** Optical Properties:\t\n"
                             "# chosen for the hind limb study\n"
                             "Tissue Properties:\tSkin\n"
                             "Bioluminescent Spectrum:\tFirefly   # click beetle later\n"
                             "Index of Refraction:\t1,33\n"
                             "\n"
                             "*** DLIT Params:\t\n"
                             "Angle Limit:\t60\n"
                             "N Surface Lower:\t12abc\n"
                             "Uniform Surface Sampling:\tno\n"
                             "Smooth Mesh Surface:\tmaybe\n"
                             "Auto Fluorescence:\tON\n"
                             "Path Avg Size:\t\n"
                             "\n"
                             "*** DLIT:\t\n"
                             "Angle Limit:\t45.5\n"
                             "\n"
                             "*** Plot Section:\t\n"
                             "X Axis:\tWavelength # nm\n"
                             "Y Axis:\tmu_a\n";

void loadInto(CPLOptPropInfo& info, const QByteArray& bytes)
{
    ASSERT_EQ(info.loadBytes(bytes, L1("UserPreferences.txt")), PL_SUCCESS);
}

template<typename T>
void expectValue(const CPLOptPropValue<T>& got, const T& value, bool present, bool valid,
                 const char* what)
{
    EXPECT_EQ(got.value, value) << what;
    EXPECT_EQ(got.present, present) << what;
    EXPECT_EQ(got.valid, valid) << what;
}

} // namespace

TEST(OptPropInfo, NamedGettersReadValuesDefaultsAndMalformedText)
{
    CPLOptPropInfo info;
    loadInto(info, kUserFile);

    const CPLOpticalProperties optical = info.getOpticalProperties();
    expectValue(optical.tissueProperties, L1("Skin"), true, true, "tissue");
    expectValue(optical.bioluminescentSpectrum, L1("Firefly"), true, true, "inline comment");
    expectValue(optical.fluorescentSpectrum, L1("ICG"), false, false, "absent: default");
    expectValue(optical.indexOfRefraction, 1.4, true, false, "a decimal comma is malformed");

    const CPLReconstructionParameters shared
        = info.getReconstructionParameters(CPLOptPropInfo::Shared);
    expectValue(shared.angleLimit, 60.0, true, true, "angle");
    expectValue(shared.surfaceLowerCount, 200, true, false, "12abc");
    expectValue(shared.uniformSurfaceSampling, false, true, true, "no");
    expectValue(shared.smoothMeshSurface, true, true, false, "maybe: default 1");
    expectValue(shared.autoFluorescence, true, true, true, "ON");
    expectValue(shared.pathAverageSize, 3, true, false, "empty value: default");
    expectValue(shared.startingVoxelSize, 2.0, false, false, "absent");

    // "DLIT" overrides the shared angle; "SpIM" is absent and falls back to "DLIT Params".
    expectValue(info.getReconstructionParameters(CPLOptPropInfo::Dlit).angleLimit, 45.5, true, true,
                "DLIT");
    expectValue(info.getReconstructionParameters(CPLOptPropInfo::Spim).angleLimit, 60.0, true, true,
                "SpIM");
    expectValue(info.getReconstructionParameters(CPLOptPropInfo::Dlit).autoFluorescence, true, true,
                true, "DLIT falls back key by key");

    const CPLSubjectAutoRoi subject = info.getSubjectAutoRoi();
    expectValue(subject.thresholdMethod, L1("Auto"), false, false, "section absent");
    expectValue(subject.smallRoiLimitB, 50, false, false, "section absent");
    expectValue(info.getMeasurementAutoRoi().minRoiSize, 10, false, false, "section absent");

    const QList<QPair<QString, QString>> plot = info.getPlotSettings();
    ASSERT_EQ(plot.size(), 2);
    EXPECT_EQ(plot[0], qMakePair(L1("X Axis"), L1("Wavelength")));
    EXPECT_EQ(plot[1], qMakePair(L1("Y Axis"), L1("mu_a")));
}

TEST(OptPropInfo, TypedValueConversionTable)
{
    const struct
    {
        const char* text;
        bool isInt, isReal, isFlag;
        int intValue;
        double realValue;
        bool flagValue;
    } cases[] = {
        { "42", true, true, false, 42, 42.0, false },
        { "-7", true, true, false, -7, -7.0, false },
        { "1", true, true, true, 1, 1.0, true },
        { "0", true, true, true, 0, 0.0, false },
        { "1.25", false, true, false, 0, 1.25, false },
        { "1e3", false, true, false, 0, 1000.0, false },
        { "1,25", false, false, false, 0, 0, false },
        { "nan", false, false, false, 0, 0, false },
        { "inf", false, false, false, 0, 0, false },
        { "99999999999", false, true, false, 0, 99999999999.0, false },
        { "Yes", false, false, true, 0, 0, true },
        { "false", false, false, true, 0, 0, false },
        { "Off", false, false, true, 0, 0, false },
        { "y", false, false, false, 0, 0, false },
    };
    for (const auto& c : cases) {
        const QByteArray bytes = QByteArray("*** S:\t\nK:\t") + c.text + "\n";
        CPLOptPropInfo info;
        loadInto(info, bytes);
        const auto i = info.getTypedValue(L1("s"), L1("k"), -1);
        const auto d = info.getTypedValue(L1("S"), L1("K"), -1.0);
        const auto b = info.getTypedValue(L1("S"), L1("K"), false);
        const auto t = info.getTypedValue(L1("S"), L1("K"), L1("default"));
        EXPECT_TRUE(i.present && d.present && b.present && t.present) << c.text;
        EXPECT_EQ(i.valid, c.isInt) << c.text;
        EXPECT_EQ(d.valid, c.isReal) << c.text;
        EXPECT_EQ(b.valid, c.isFlag) << c.text;
        EXPECT_EQ(i.value, c.isInt ? c.intValue : -1) << c.text;
        EXPECT_EQ(d.value, c.isReal ? c.realValue : -1.0) << c.text;
        EXPECT_EQ(b.value, c.isFlag ? c.flagValue : false) << c.text;
        expectValue(t, L1(c.text), true, true, c.text);
    }
    // A comment line is never a key.
    CPLOptPropInfo info;
    loadInto(info, "*** S:\t\n# note\n");
    expectValue(info.getTypedValue(L1("S"), L1("CommentLine 0"), L1("d")), L1("d"), false, false,
                "comment");
}

TEST(OptPropInfo, SetterChangesOnlyItsLine)
{
    CPLOptPropInfo info;
    loadInto(info, kUserFile);
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::IndexOfRefraction, 1.37), PL_SUCCESS);
    QByteArray expected = kUserFile;
    expected.replace("Index of Refraction:\t1,33\n", "Index of Refraction:\t1.37\n");
    EXPECT_EQ(info.fileBytes(), expected);
    expectValue(info.getOpticalProperties().indexOfRefraction, 1.37, true, true, "read back");

    // The inline comment stays after the new value.
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::BioluminescentSpectrum, L1(" Click Beetle ")),
              PL_SUCCESS);
    expected.replace("Firefly   # click", "Click Beetle\t# click");
    EXPECT_EQ(info.fileBytes(), expected);

    ASSERT_EQ(info.setSetting(CPLOptPropInfo::SmoothMeshSurface, false), PL_SUCCESS);
    expected.replace("Surface:\tmaybe", "Surface:\t0");
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::SurfaceLowerCount, 250), PL_SUCCESS);
    expected.replace("12abc", "250");
    EXPECT_EQ(info.fileBytes(), expected);

    // Setting the value a key holds changes nothing.
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::AngleLimit, 60), PL_SUCCESS);
    EXPECT_EQ(info.fileBytes(), expected);
    EXPECT_TRUE(info.getLoadWarnings().size() > 0) << "the hand-written file keeps its form";
}

TEST(OptPropInfo, CrLfFileKeepsItsLineEnds)
{
    const QByteArray crlf = "*** Optical Properties:\t\r\nTissue Properties:\tMuscle\r\n"
                            "Source Spectrum:\tFirefly\r\n\r\n";
    CPLOptPropInfo info;
    loadInto(info, crlf);
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::TissueProperties, L1("Brain")), PL_SUCCESS);
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::FluorescentSpectrum, L1("Cy5.5")), PL_SUCCESS);
    EXPECT_EQ(info.fileBytes(),
              QByteArray("*** Optical Properties:\t\r\nTissue Properties:\tBrain\r\n"
                         "Source Spectrum:\tFirefly\r\nFluorescent Spectrum:\tCy5.5\r\n\r\n"));
}

TEST(OptPropInfo, AbsentKeysAndSectionsAreAdded)
{
    CPLOptPropInfo info;
    loadInto(info, kUserFile);
    // A reconstruction's own section is added at the end of the file.
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::StartingVoxelSize, 1.5, CPLOptPropInfo::Spim),
              PL_SUCCESS);
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::MinRoiSize, 25), PL_SUCCESS);
    const QByteArray expected = kUserFile
        + "\n*** SpIM:\t\nStarting Voxel Size:\t1.5\n"
          "\n*** Measurement Auto ROI Settings:\t\nMin ROI Size:\t25\n";
    EXPECT_EQ(info.fileBytes(), expected);
    expectValue(info.getReconstructionParameters(CPLOptPropInfo::Spim).startingVoxelSize, 1.5, true,
                true, "SpIM");
    expectValue(info.getReconstructionParameters(CPLOptPropInfo::Dlit).startingVoxelSize, 2.0,
                false, false, "DLIT does not see SpIM's");

    // An empty document gets its first section.
    CPLOptPropInfo empty;
    ASSERT_EQ(empty.setSetting(CPLOptPropInfo::ThresholdMethod, L1("Manual")), PL_SUCCESS);
    EXPECT_EQ(empty.fileBytes(),
              QByteArray("*** Subject Auto ROI Settings:\t\r\nThreshold Method:\tManual\n\n\n\n"));
    EXPECT_EQ(empty.getLoadWarnings(), QStringList());
}

TEST(OptPropInfo, RefusedEditsLeaveTheBytes)
{
    const QByteArray repeated = kUserFile
        + "*** Subject Auto ROI Settings:\t\n"
          "Scale Factor:\t1\nScale Factor:\t2\n";
    CPLOptPropInfo info;
    loadInto(info, repeated);
    const struct
    {
        int status;
        int expected;
    } cases[] = {
        { info.setSetting(CPLOptPropInfo::ScaleFactor, 3.0), PL_KEY_REPEATED },
        { info.setSetting(CPLOptPropInfo::IndexOfRefraction, L1("high")), PL_INVALID_ARGUMENT },
        { info.setSetting(CPLOptPropInfo::SurfaceLowerCount, L1("2.5")), PL_INVALID_ARGUMENT },
        { info.setSetting(CPLOptPropInfo::SurfaceLowerCount, 2.5), PL_INVALID_ARGUMENT },
        { info.setSetting(CPLOptPropInfo::AutoFluorescence, L1("perhaps")), PL_INVALID_ARGUMENT },
        { info.setSetting(CPLOptPropInfo::TissueProperties, L1("")), PL_INVALID_ARGUMENT },
        { info.setSetting(CPLOptPropInfo::SettingCount, 1), PL_OUT_OF_RANGE },
        { info.setSetting(static_cast<CPLOptPropInfo::Setting>(-1), 1), PL_OUT_OF_RANGE },
        { info.setPreference(L1("Camera Settings"), L1("Note"), L1("a\nUser:\tx")),
          PL_INVALID_ARGUMENT },
        { info.setPreference(L1("Camera Settings"), L1("a:b"), L1("x")), PL_INVALID_ARGUMENT },
        { info.setPreference(L1(""), L1("Note"), L1("x")), PL_EMPTY_KEY },
        { info.setPreference(L1("Camera Settings"), L1(""), L1("x")), PL_EMPTY_KEY },
    };
    for (size_t i = 0; i < sizeof(cases) / sizeof(cases[0]); ++i)
        EXPECT_EQ(cases[i].status, cases[i].expected) << "case " << i;
    EXPECT_EQ(info.fileBytes(), repeated);
    EXPECT_EQ(info.setSetting(CPLOptPropInfo::ScaleFactor, 3.0), PL_KEY_REPEATED);
    EXPECT_TRUE(info.errorString().contains(L1("Scale Factor")))
        << info.errorString().toStdString();
}

TEST(OptPropInfo, SaveWritesTheBytesHeldAndLoadReadsThemBack)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(L1("UserPreferences.txt"));
    writeBytes(path, kUserFile);
    CPLOptPropInfo info;
    ASSERT_EQ(info.load(path), PL_SUCCESS);
    EXPECT_EQ(info.filePath(), path);
    ASSERT_EQ(info.setPreference(L1("Camera Settings"), L1("Photo Exposure"), L1("0.5")),
              PL_SUCCESS);
    ASSERT_EQ(info.save(), PL_SUCCESS);
    QByteArray expected = kUserFile;
    expected.replace("Exposure:\t0.2", "Exposure:\t0.5");
    EXPECT_EQ(readBytes(path), expected);

    // Changes made through CPLClickInfo are saved in the canonical form.
    ASSERT_EQ(info.CPLClickInfo::setValue(L1("DLIT Params"), L1("Angle Limit"), 80), PL_SUCCESS);
    // A setter after such a change starts from the canonical form, so both changes stand.
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::CutoffParam, 0.25), PL_SUCCESS);
    EXPECT_EQ(info.getSubjectAutoRoi().cutoffParam.value, 0.25);
    EXPECT_EQ(info.getReconstructionParameters(CPLOptPropInfo::Shared).angleLimit.value, 80.0);
    const QString copy = dir.filePath(L1("copy.txt"));
    ASSERT_EQ(info.save(copy), PL_SUCCESS);
    EXPECT_EQ(readBytes(copy), info.getClickInfoData().toLatin1());
    EXPECT_EQ(info.filePath(), copy);
    CPLOptPropInfo reread;
    ASSERT_EQ(reread.load(copy), PL_SUCCESS);
    EXPECT_EQ(reread.getLoadWarnings(), QStringList());
    expectValue(reread.getReconstructionParameters(CPLOptPropInfo::Shared).angleLimit, 80.0, true,
                true, "canonical save");

    CPLOptPropInfo other;
    EXPECT_EQ(other.load(dir.filePath(L1("missing.txt"))), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(other.load(QString()), PL_EMPTY_KEY);
    EXPECT_EQ(other.load(dir.filePath(L1("x.DCM"))), PL_INVALID_ARGUMENT);
    EXPECT_EQ(other.save(), PL_EMPTY_KEY);
    EXPECT_EQ(other.loadBytes("no header line\n*** :\t\n", QString()), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(other.getSectionKeys(), QStringList());
    EXPECT_EQ(other.fileBytes(), QByteArray());
}

TEST(OptPropInfo, DefaultFileIsInTheUserSettingsFolder)
{
    QTemporaryDir dir;
    qputenv(OV_DATA_DIR_VARIABLE, dir.path().toLocal8Bit());
    EXPECT_EQ(CPLOptPropInfo::defaultFilePath(),
              dir.path() + L1("/User Settings/UserPreferences.txt"));
    createFolder(dir.path() + L1("/User Settings"));
    writeBytes(CPLOptPropInfo::defaultFilePath(), kUserFile);
    CPLOptPropInfo info;
    EXPECT_EQ(info.load(), PL_SUCCESS);
    expectValue(info.getOpticalProperties().tissueProperties, L1("Skin"), true, true,
                "default file");
    qunsetenv(OV_DATA_DIR_VARIABLE);
}

TEST(OptPropInfo, SettingTableUsesTheFileNames)
{
    const CPLOptPropInfo::SettingInfo ior
        = CPLOptPropInfo::settingInfo(CPLOptPropInfo::ReconstructionIndexOfRefraction);
    EXPECT_EQ(ior.section, PLConstants::USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS);
    EXPECT_EQ(ior.key, PLConstants::USER_PREFERENCE_SETTINGS_DLIT_IOR_KEY);
    EXPECT_EQ(CPLOptPropInfo::settingInfo(CPLOptPropInfo::AutoFluorescence).key,
              PLConstants::USER_PERFERENCE_SETTINGS_AF_ON);
    EXPECT_EQ(CPLOptPropInfo::settingInfo(CPLOptPropInfo::SettingCount).key, QString());
    // Every default reads as its setting's type, so no getter falls back to a zero.
    for (int s = 0; s < CPLOptPropInfo::SettingCount; ++s) {
        const auto setting = static_cast<CPLOptPropInfo::Setting>(s);
        CPLOptPropInfo info;
        EXPECT_EQ(info.setSetting(setting, CPLOptPropInfo::settingInfo(setting).defaultText),
                  PL_SUCCESS)
            << s;
        EXPECT_TRUE(info.getSetting<QString>(setting).valid) << s;
    }
}

// The bundled user's file, written by hand with CR LF line ends: every setting reads as
// written, and an edit changes one line of it.
TEST(OptPropInfo, BundledUserPreferences)
{
    const QString path = L1(OVPARSER_SAMPLES "/settings/UserPreferences.txt");
    const QByteArray original = readBytes(path);
    CPLOptPropInfo info;
    ASSERT_EQ(info.load(path), PL_SUCCESS);
    EXPECT_EQ(info.fileBytes(), original);
    for (int s = 0; s < CPLOptPropInfo::SettingCount; ++s) {
        const auto value = info.getSetting<QString>(static_cast<CPLOptPropInfo::Setting>(s));
        EXPECT_TRUE(value.present && value.valid) << s;
    }
    expectValue(info.getOpticalProperties().indexOfRefraction, 1.37, true, true, "comment");
    expectValue(info.getReconstructionParameters(CPLOptPropInfo::Dlit).startingVoxelSize, 1.5, true,
                true, "DLIT");
    expectValue(info.getReconstructionParameters(CPLOptPropInfo::Spim).angleLimit, 60.0, true, true,
                "SpIM");
    EXPECT_EQ(info.getPlotSettings().size(), 3);

    ASSERT_EQ(info.setSetting(CPLOptPropInfo::TissueProperties, L1("Muscle")), PL_SUCCESS);
    QByteArray expected = original;
    expected.replace("Tissue Properties:\tBrain\r\n", "Tissue Properties:\tMuscle\r\n");
    EXPECT_EQ(info.fileBytes(), expected);
}

// A file whose text ends at once (a NUL first): the setter's section takes the place of the
// blanks before the NUL, and the bytes from the NUL on stay.
TEST(OptPropInfo, SectionAddedBeforeANulKeepsTheBytesAfterIt)
{
    const QByteArray tail("\0*** Optical Properties:\t\nTissue Properties:\tSkin\n", 50);
    CPLOptPropInfo info;
    loadInto(info, QByteArray(" \n") + tail);
    ASSERT_EQ(info.setSetting(CPLOptPropInfo::TissueProperties, L1("Liver")), PL_SUCCESS);
    EXPECT_EQ(info.fileBytes(),
              QByteArray("*** Optical Properties:\t\r\nTissue Properties:\tLiver\n\n\n\n") + tail);
    expectValue(info.getOpticalProperties().tissueProperties, L1("Liver"), true, true, "set");
}

// Two editors of one preference file: the second save would drop the first one's change, so it
// is refused and the file keeps that change; after a load again, the edit goes through.
TEST(OptPropInfo, ASaveNeverLosesAChangeMadeSinceTheLoad)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(L1("UserPreferences.txt"));
    writeBytes(path, kUserFile);
    CPLOptPropInfo first;
    CPLOptPropInfo second;
    ASSERT_EQ(first.load(path), PL_SUCCESS);
    ASSERT_EQ(second.load(path), PL_SUCCESS);
    ASSERT_EQ(first.setSetting(CPLOptPropInfo::CutoffParam, 0.25), PL_SUCCESS);
    ASSERT_EQ(first.save(), PL_SUCCESS);
    const QByteArray saved = readBytes(path);
    ASSERT_NE(saved, kUserFile);

    ASSERT_EQ(second.setSetting(CPLOptPropInfo::ScaleFactor, 2.0), PL_SUCCESS);
    EXPECT_EQ(second.save(), PL_FILE_CHANGED);
    EXPECT_EQ(readBytes(path), saved);
    EXPECT_FALSE(QFileInfo::exists(path + L1(".lock")));
    // Saved elsewhere it is written; that file then is the one checked.
    EXPECT_EQ(second.save(dir.filePath(L1("mine.txt"))), PL_SUCCESS);

    ASSERT_EQ(second.load(path), PL_SUCCESS);
    ASSERT_EQ(second.setSetting(CPLOptPropInfo::ScaleFactor, 2.0), PL_SUCCESS);
    ASSERT_EQ(second.save(), PL_SUCCESS);
    CPLOptPropInfo reread;
    ASSERT_EQ(reread.load(path), PL_SUCCESS);
    EXPECT_EQ(reread.getSubjectAutoRoi().cutoffParam.value, 0.25);
    EXPECT_EQ(reread.getSubjectAutoRoi().scaleFactor.value, 2.0);
    // Its own saves in a row are no change by someone else.
    ASSERT_EQ(reread.setSetting(CPLOptPropInfo::ScaleFactor, 3.0), PL_SUCCESS);
    EXPECT_EQ(reread.save(), PL_SUCCESS);
    ASSERT_EQ(reread.setSetting(CPLOptPropInfo::ScaleFactor, 4.0), PL_SUCCESS);
    EXPECT_EQ(reread.save(), PL_SUCCESS);
}
