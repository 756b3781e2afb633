// The instrument configuration: how extensions merge into the base file, the checks of the
// extensions, the accessory states kept in the settings store, the key queries, and the
// application folders. Every test works in a temporary folder; OVPARSER_DATA_DIR points the
// folder tree and the settings store there.

#include "PLCameraInfo.h"
#include "PLConstants.h"
#include "PLPaths.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class CameraInfoTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        qputenv(OV_DATA_DIR_VARIABLE, m_dir.filePath(L1("data")).toLocal8Bit());
    }
    void TearDown() override { qunsetenv(OV_DATA_DIR_VARIABLE); }

    QString path(const QString& name) const { return m_dir.filePath(name); }
    // Writes a file under the temporary folder, making its folders.
    QString write(const QString& name, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        writeBytes(path(name), bytes);
        return path(name);
    }
    // A base file and extensions in "inst/" and "inst/config/", loaded.
    int loadInstrument(CPLCameraInfo& camera, const QByteArray& base,
                       std::initializer_list<std::pair<const char*, QByteArray>> extensions = {})
    {
        for (const auto& extension : extensions)
            write(L1("inst/config/") + L1(extension.first), extension.second);
        return camera.load(write(L1("inst/CameraInfo.txt"), base));
    }
    QString mainValue(const CPLCameraInfo& camera, const char* key) const
    {
        const CPLSection* main = camera.getCameraInfoSection();
        return main ? (*main)[L1(key)] : L1("<no main section>");
    }

    QTemporaryDir m_dir;
};

QByteArray extension(const char* name, const char* system, const char* conflicts,
                     const QByteArray& mainKeys, const QByteArray& more = QByteArray())
{
    return QByteArray("*** Extension Info:\t") + name + "\nExtension name:\t" + name
        + "\nSystem Configuration:\t" + system + "\nConflicts with extensions:\t" + conflicts
        + "\n\n*** Camera System Info:\t" + name + "\n" + mainKeys + "\n" + more;
}

const QByteArray kBase = "*** Camera System Info:\tKR-1\nSystem Configuration:\tKORA 200\n"
                         "Lens Motor Driver Number:\t3\nXray Controller:\tno\n\n"
                         "*** Camera Timing:\tdefaults\nReadout:\t2\n";

} // namespace

TEST_F(CameraInfoTest, ExtensionsMergeBeforeTheFirstHeaderAndNoBaseKeyIsLost)
{
    CPLCameraInfo camera;
    ASSERT_EQ(loadInstrument(camera, kBase,
                             { { "b.cfg",
                                 extension("Xray", "KORA 200", "",
                                           "Xray Controller:\tyes\n"
                                           "XR Filter Motor Driver "
                                           "Number:\t16\n",
                                           "*** X-Ray Source:\tdefault\nkV:\t35\n") },
                               { "a.cfg",
                                 extension("Laser", "kora 200 rev B", "Other",
                                           "Laser On Control NI Channel:\tDev2/0\n") } }),
              PL_SUCCESS);
    // Extensions in name order, each "Extension Info" section cut out, their own sections
    // before the base file's.
    EXPECT_EQ(camera.getSectionKeys(),
              L1List({ "Camera System Info", "X-Ray Source", "Camera Timing" }));
    ASSERT_EQ(camera.getLoadedExtensions().size(), 2);
    EXPECT_EQ(camera.getLoadedExtensions().at(0).name, L1("Laser"));
    EXPECT_EQ(camera.getLoadedExtensions().at(1).file, path(L1("inst/config/b.cfg")));
    // Every base key is there; an option's setting overrides the base file's.
    EXPECT_EQ(mainValue(camera, "System Configuration"), L1("KORA 200"));
    EXPECT_EQ(mainValue(camera, "Lens Motor Driver Number"), L1("3"));
    EXPECT_EQ(mainValue(camera, "Xray Controller"), L1("yes"));
    EXPECT_EQ(mainValue(camera, "Laser On Control NI Channel"), L1("Dev2/0"));
    EXPECT_EQ(mainValue(camera, "XR Filter Motor Driver Number"), L1("16"));
    // Each key tells the file and header line it came from.
    const QString main = PLConstants::CAMERAINFO_SECTION_KEY;
    EXPECT_EQ(camera.getKeyOrigin(main, L1("Lens Motor Driver Number")).toString(),
              QString(path(L1("inst/CameraInfo.txt")) + L1(":1")));
    EXPECT_EQ(camera.getKeyOrigin(main, L1("Xray Controller")).toString(),
              QString(path(L1("inst/config/b.cfg")) + L1(":6")));
    EXPECT_EQ(camera.getSectionOrigin(L1("Camera Timing")).toString(),
              QString(path(L1("inst/CameraInfo.txt")) + L1(":6")));
    EXPECT_TRUE(camera.getLoadWarnings().isEmpty())
        << camera.getLoadWarnings().join(L1("\n")).toStdString();
    EXPECT_EQ(camera.getFileSectionCount(), 3);
}

TEST_F(CameraInfoTest, WhereTheMainHeaderIsMissingOrSpelledOtherwise)
{
    const QByteArray ext = extension("Opt", "KORA 200", "", "Added:\t1\n", "*** Opt:\tx\nO:\t1\n");
    // No header at all: one main section, the extension text after it.
    CPLCameraInfo headerless;
    ASSERT_EQ(
        loadInstrument(headerless, "System Configuration:\tKORA 200\nA:\t1", { { "e.cfg", ext } }),
        PL_SUCCESS);
    EXPECT_EQ(headerless.getSectionKeys(), L1List({ "Camera System Info", "Opt" }));
    EXPECT_EQ(mainValue(headerless, "A"), L1("1"));
    EXPECT_EQ(mainValue(headerless, "Added"), L1("1"));

    // A header in lower case counts: no second one is put in front.
    CPLCameraInfo lower;
    ASSERT_EQ(lower.load(write(L1("lower/CameraInfo.txt"),
                               "*** camera system info:\tS\nSystem Configuration:\tKORA 200\n")),
              PL_SUCCESS);
    EXPECT_EQ(lower.getSectionKeys(), L1List({ "camera system info" }));
    EXPECT_TRUE(lower.getLoadWarnings().isEmpty());

    // Other sections but no main one: the extension text lands at the place the first
    // header had before the main header (24 characters) was put in front, here the start of
    // the "Padding" line, which then belongs to the extension's last section.
    CPLCameraInfo unmoved;
    ASSERT_EQ(loadInstrument(unmoved,
                             "System Configuration:\tKORA 200\n"
                             "Padding:\t12345678901234\n*** Other:\tO\nX:\t1\n"),
              PL_SUCCESS);
    EXPECT_EQ(unmoved.getSectionKeys(), L1List({ "Camera System Info", "Opt", "Other" }));
    EXPECT_EQ(mainValue(unmoved, "System Configuration"), L1("KORA 200"));
    EXPECT_EQ((*unmoved[L1("Opt")])[L1("Padding")], L1("12345678901234"));
    EXPECT_FALSE(unmoved.getCameraInfoSection()->isKeyPresent(L1("Padding")));
}

TEST_F(CameraInfoTest, RepeatedMainSectionsOfOneFileMergeWithAWarning)
{
    CPLCameraInfo camera;
    ASSERT_EQ(loadInstrument(camera,
                             "*** Camera System Info:\tA\nX:\t1\n\n"
                             "*** Camera System Info:\tB\nX:\t2\nY:\t3\n"),
              PL_SUCCESS);
    EXPECT_EQ(mainValue(camera, "X"), L1("1"));
    EXPECT_EQ(mainValue(camera, "Y"), L1("3"));
    const QList<CPLLoadWarning> warnings = camera.getLoadWarningList();
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_EQ(warnings.at(0).kind(), CPLLoadWarning::MergedSection);
    EXPECT_EQ(warnings.at(0).toString(),
              QString(path(L1("inst/CameraInfo.txt"))
                      + L1(":4: section \"Camera System Info\" repeats the key of a section before "
                           "it; its keys are merged into that section")));
}

TEST_F(CameraInfoTest, AddedTextReplacesValuesAndKeepsTheRest)
{
    CPLCameraInfo camera;
    ASSERT_EQ(loadInstrument(camera, kBase), PL_SUCCESS);
    ASSERT_EQ(camera.addTextBuffer(L1("*** Camera System Info:\tnew\nXray Controller:\tyes\n"
                                      "New:\t1\n*** Extra:\tx\nE:\t2\n")),
              PL_SUCCESS);
    EXPECT_EQ(mainValue(camera, "Xray Controller"), L1("yes"));
    EXPECT_EQ(mainValue(camera, "Lens Motor Driver Number"), L1("3"));
    EXPECT_EQ(mainValue(camera, "New"), L1("1"));
    EXPECT_EQ(camera.getSectionKeys().last(), L1("Extra"));

    write(L1("more.txt"), "\n\n*** Camera Timing:\tx\nReadout:\t4 # faster\n");
    ASSERT_EQ(camera.loadappend(path(L1("more.txt"))), PL_SUCCESS);
    QString raw;
    camera[L1("Camera Timing")]->getRawValue(L1("Readout"), &raw);
    EXPECT_EQ(raw, L1("4 # faster"));
    EXPECT_EQ(camera.getKeyOrigin(L1("Camera Timing"), L1("Readout")).toString(),
              QString(path(L1("more.txt")) + L1(":3")));
    EXPECT_EQ(camera.loadappend(path(L1("absent.txt"))), PL_FILE_OPEN_FAILED);
    // Reading happens before clearing: an unreadable file leaves the document as it was.
    EXPECT_EQ(camera.load(path(L1("absent.txt"))), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(mainValue(camera, "New"), L1("1"));
}

TEST_F(CameraInfoTest, ExtensionChecksGiveTheirMessageAndStatus)
{
    struct Case
    {
        const char* name;
        QByteArray second; // "b.cfg"; "a.cfg" is a good extension named "A"
        int status;
        const char* message; // after "Loading cameraInfo extension 'b.cfg' failed: "
    };
    const QByteArray good = "Zoom Lens Support:\tyes\n";
    const Case cases[] = {
        { "no info", "*** Camera System Info:\tx\nK:\t1\n", 24,
          "'Extension Info' section not present" },
        { "no name",
          "*** Extension Info:\tx\nSystem Configuration:\tKORA 200\nConflicts with "
          "extensions:\t\n*** Camera System Info:\tx\n",
          24, "'Extension name' key/value not present" },
        { "no conflicts key",
          "*** Extension Info:\tx\nExtension name:\tB\nSystem Configuration:\tKORA 200\n*** Camera "
          "System Info:\tx\n",
          24, "'Conflicts with extensions' key/value not present" },
        { "other type", extension("B", "KORA 100", "", good), 47,
          "written for 'KORA 100', not for this instrument, 'KORA 200'" },
        { "no main section",
          "*** Extension Info:\tx\nExtension name:\tB\nSystem Configuration:\tKORA 200\nConflicts "
          "with extensions:\t\n",
          24, "'Camera System Info' section not present" },
        { "conflict", extension("B", "KORA 200", "Macro, A", good), 30,
          "Conflicts with already loaded extensions." },
        { "malformed", "*** Extension Info\nX:\t1\n", 5,
          "malformed section header (a header is \"*** \", a key, a colon, and no \"#\" before the "
          "colon)" },
        { "case differs", extension("B", "KORA 200", "a", good), 0, "" },
        { "empty name", extension("", "KORA 200", "", good), 19, "its 'Extension name' is empty" },
        { "empty places in the list name nothing", extension("B", "KORA 200", "Macro, ,", good), 0,
          "" },
        { "same name", extension("A", "KORA 200", "", good), 30,
          "an extension named 'A' is loaded already, from 'a.cfg'" },
        { "sets another type", extension("B", "KORA 200", "", "System Configuration:\tKORA 50\n"),
          47, "it sets 'System Configuration' to 'KORA 50', not this instrument, 'KORA 200'" },
        { "sets it in a section of its own",
          extension("B", "KORA 200", "", good,
                    "*** Camera System Info:\tagain\nsystem configuration : KORA 100\n"),
          47, "it sets 'System Configuration' to 'KORA 100', not this instrument, 'KORA 200'" },
        { "restates the type",
          extension("B", "KORA 200", "", "System Configuration:\tKORA 200 B\n"), 0, "" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        QDir(path(L1("inst"))).removeRecursively();
        CPLCameraInfo camera;
        ASSERT_EQ(loadInstrument(camera, kBase,
                                 { { "a.cfg", extension("A", "KORA 200", "", "A-key:\t1\n") },
                                   { "b.cfg", c.second } }),
                  PL_SUCCESS);
        const CPLCameraExtensionFailure failure = camera.getExtensionFailure();
        const QString message = c.status
            ? L1("Loading cameraInfo extension 'b.cfg' failed: ") + L1(c.message)
            : L1("");
        EXPECT_EQ(failure.status, c.status);
        EXPECT_EQ(failure.message, message);
        // A failure merges no extension: the base file loads alone.
        EXPECT_EQ(camera.getLoadedExtensions().size(), c.status == 0 ? 2 : 0);
        EXPECT_EQ(camera.getCameraInfoSection()->isKeyPresent(L1("A-key")), c.status == 0);
        EXPECT_EQ(failure.file.isEmpty(), c.status == 0);
        QString output;
        EXPECT_EQ(camera.loadCameraInfoExtensions(path(L1("inst/config")), output), c.status);
        if (c.status != 0) {
            EXPECT_EQ(output, message);
        }
    }
}

// An entry named "*.cfg" that is no readable file is refused, as an unreadable one is: never
// left out without a word, and a FIFO is not opened (nothing waits for a writer).
TEST_F(CameraInfoTest, AnExtensionThatIsNoFileIsRefused)
{
    const auto make = [&](const char* name) -> bool {
        const QString at = path(L1("inst/config/")) + L1(name);
        const QString entry = L1(name);
        if (entry == L1("b.cfg"))
            return ::mkfifo(QFile::encodeName(at).constData(), 0600) == 0;
        if (entry == L1("c.cfg"))
            return QDir().mkpath(at);
        return QFile::link(entry, at); // a link to itself: a loop
    };
    const struct
    {
        const char* name;
        int status;
        const char* message;
    } cases[] = {
        { "b.cfg", PL_NOT_REGULAR_FILE,
          "not a regular file (a FIFO, device or socket is never read or replaced)" },
        { "c.cfg", PL_FILE_OPEN_FAILED, "File open failed: a folder" },
        { "d.cfg", PL_FILE_OPEN_FAILED, "File open failed: a symbolic link that leads to no file" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QDir(path(L1("inst"))).removeRecursively();
        write(L1("inst/config/a.cfg"), extension("A", "KORA 200", "", "A-key:\t1\n"));
        ASSERT_TRUE(make(c.name));
        CPLCameraInfo camera;
        ASSERT_EQ(camera.load(write(L1("inst/CameraInfo.txt"), kBase)), PL_SUCCESS);
        EXPECT_EQ(camera.getExtensionFailure().status, c.status);
        EXPECT_EQ(camera.getExtensionFailure().message,
                  L1("Loading cameraInfo extension '") + L1(c.name) + L1("' failed: ")
                      + L1(c.message));
        EXPECT_TRUE(camera.getLoadedExtensions().isEmpty());
    }
}

TEST_F(CameraInfoTest, TheBaseFileTheExtensionsAreCheckedAgainst)
{
    CPLCameraInfo camera;
    QString output = L1("old");
    // No folder: nothing to load.
    EXPECT_EQ(camera.loadCameraInfoExtensions(path(L1("nowhere/config")), output), PL_SUCCESS);
    EXPECT_TRUE(output.isEmpty());

    // A folder with no base file beside it, and none in the instrument folder of the tree.
    write(L1("loose/config/x.cfg"), extension("X", "KORA 200", "", "K:\t1\n"));
    EXPECT_EQ(camera.loadCameraInfoExtensions(path(L1("loose/config")), output),
              PL_CAMERA_BASE_FILE_MISSING);
    EXPECT_TRUE(output.contains(L1("no base file"))) << output.toStdString();
    // The instrument folder's base file is used then.
    write(L1("data/Instrument/CameraInfo.txt"), "System Configuration:\tKORA 200\n");
    EXPECT_EQ(camera.loadCameraInfoExtensions(path(L1("loose/config")), output), PL_SUCCESS);
    EXPECT_TRUE(output.startsWith(L1("*** Camera System Info:\tX\nK:\t1"))) << output.toStdString();
    // A base file beside the folder wins over it.
    write(L1("loose/CameraInfo.txt"), "System Configuration:\tsomething else\n");
    EXPECT_EQ(camera.loadCameraInfoExtensions(path(L1("loose/config")), output),
              PL_CAMERA_SYSTEM_TYPE_UNKNOWN);
    EXPECT_EQ(camera.getExtensionFailure().status, PL_CAMERA_SYSTEM_TYPE_UNKNOWN);

    // An extension file that cannot be read.
    write(L1("loose/CameraInfo.txt"), "System Configuration:\tKORA 200\n");
    QFile::setPermissions(path(L1("loose/config/x.cfg")), QFileDevice::Permissions());
    if (access(QFile::encodeName(path(L1("loose/config/x.cfg"))).constData(), R_OK) == 0)
        GTEST_SKIP() << "running with rights that read any file";
    EXPECT_EQ(camera.loadCameraInfoExtensions(path(L1("loose/config")), output),
              PL_FILE_OPEN_FAILED);
    EXPECT_EQ(output, L1("Loading cameraInfo extension 'x.cfg' failed: File open failed"));
}

TEST_F(CameraInfoTest, AccessoryStatesComeFromAndGoToTheSettingsStore)
{
    const QByteArray base = "*** Camera System Info:\tKR\nSystem Configuration:\tKORA 200\n"
                            "GEIZID:\tyes\nMotor Steps for x-ray2 position c:\t52300\n"
                            "Removable Filter Wheel Capable:\tyes\nZoom Lens Support:\tyes\n"
                            "VIC Support:\tYes\nUSB I/O BOARD:\tyes\nUAC BOARD:\tno\n"
                            "Filter2 Motor Driver Number:\t7\nEM Filter2 Motor Driver Number:\t0\n"
                            "Camera CCD Type:\tsophia BV\n"
                            "Electronics Tray Part Number:\t30052\nMirror angle:\t45.5\n";
    const QString file = write(L1("inst/CameraInfo.txt"), base);
    CPLCameraInfo camera;
    ASSERT_TRUE(camera.loadCameraInfo(file));
    EXPECT_TRUE(camera.isXFOV24Available());
    EXPECT_FALSE(camera.isXFOV24Attached());
    EXPECT_TRUE(camera.isLargeAnimalCapable());
    EXPECT_FALSE(camera.isLargeAnimalSelected());
    EXPECT_FALSE(camera.isVICSupported()); // only "yes" is true
    EXPECT_TRUE(camera.hasUSBIOBoard());
    EXPECT_FALSE(camera.hasUACBoard());
    EXPECT_TRUE(camera.hasFilter2());
    EXPECT_FALSE(camera.hasEMFilter2());
    EXPECT_TRUE(camera.isSophiaCamera());
    EXPECT_TRUE(camera.isElectronicsTray30052());
    EXPECT_FLOAT_EQ(camera.getMirrorAngle(), 45.5f);
    EXPECT_EQ(camera.getSystemType(), L1("KORA 200"));
    // The wheel file and the zoom position are missing.
    const QString wheel = path(L1("inst/emfilters/standard.xem"));
    EXPECT_EQ(camera.getValidationMessages(),
              (QStringList { L1("Loading Removable filter wheel information file failed."),
                             QString(L1("The Emission Filter Wheel Information file ") + wheel
                                     + L1(" does not exist.")),
                             L1("The Zoom Lens is supported. The Shelf position information for "
                                "the zoom lens is missing in the camerainfo file") }));

    camera.setXFOV24Attached(true);
    camera.setZoomLensAttached(true);
    camera.setLargeAnimalState(true);
    QString narrow = L1("narrow.xem");
    camera.setCurrentFilterWheelName(narrow);
    write(L1("inst/emfilters/narrow.xem"), "*** Emission Filter Wheel:\tnarrow\n");
    // The settings store is the file of the data folder, not the user's own.
    EXPECT_TRUE(QFile::exists(path(L1("data/User Settings/Orvane.conf"))));

    CPLCameraInfo next;
    ASSERT_TRUE(next.loadCameraInfo(file));
    EXPECT_TRUE(next.isXFOV24Attached());
    EXPECT_TRUE(next.isZoomLensAttached());
    EXPECT_TRUE(next.isLargeAnimalSelected());
    EXPECT_EQ(next.getCurrentFilterWheelName(), narrow);
    EXPECT_EQ(next.getValidationMessages().size(), 1);

    // Selected only while capable.
    next.getCameraInfoSection()->setValue(LARGE_ANIMAL_CAPABLE, QString());
    EXPECT_FALSE(next.isLargeAnimalSelected());
    next.setLargeAnimalState(true);
    EXPECT_FALSE(next.isLargeAnimalSelected());
}

TEST_F(CameraInfoTest, ValidationFailsWithoutAMainSectionOrAKnownType)
{
    CPLCameraInfo camera;
    EXPECT_FALSE(camera.loadCameraInfo(path(L1("absent.txt"))));
    EXPECT_EQ(camera.getValidationMessages(), L1List({ "Loading camera information failed." }));
    EXPECT_FALSE(camera.loadCameraInfo(write(L1("x.txt"), "System Configuration:\tKORA 300\n")));
    EXPECT_EQ(camera.getValidationMessages(),
              L1List({ "Invalid camera information, while loading camera info." }));
    EXPECT_TRUE(
        camera.loadCameraInfo(write(L1("y.txt"), "System Configuration:\tkora 50 (2019)\n")));
    EXPECT_EQ(camera.getSystemType(), L1("KORA 50"));
}

TEST_F(CameraInfoTest, KeyQueriesAndTheKeysWhoseNamesSaySomethingElse)
{
    CPLCameraInfo camera;
    ASSERT_EQ(loadInstrument(camera,
                             "*** Camera System Info:\tx\nLens fstop 1 steps:\t0\n"
                             "Lens fstop Motor Driver Number:\t2\nLens fstop 8 steps:\t9\n"
                             "lens fstop 2 steps:\t1\nLens fstop 4 Steps:\t3\n"
                             "Mirror Rotation Motor Driver Number F:\t1400\n"),
              PL_SUCCESS);
    QStringList keys { L1("kept") };
    ASSERT_EQ(camera.getLensFStopStepList(L1("Lens fstop"), &keys), PL_SUCCESS);
    EXPECT_EQ(keys, L1List({ "kept", "Lens fstop 1 steps", "Lens fstop 8 steps" }));
    keys.clear();
    camera.getKeyListWithSameKey(L1("Lens fstop"), &keys);
    EXPECT_EQ(keys.size(), 4);
    keys.clear();
    camera.getKeylistFromKeyAndSubkey(L1("Lens"), L1("Driver"), &keys);
    EXPECT_EQ(keys, L1List({ "Lens fstop Motor Driver Number" }));
    EXPECT_EQ(camera.getKeyListWithSameKey(L1("x"), nullptr), PL_NULL_ARGUMENT);

    QString speed;
    ASSERT_EQ(camera.getValue(PLConstants::CAMERAINFO_SECTION_KEY,
                              MIRROR_ROTATION_MOTOR_SPEED_F_KEY, &speed),
              PL_SUCCESS);
    EXPECT_EQ(speed, L1("1400"));
    // (XFOV24_AVAILABLE and LARGE_ANIMAL_CAPABLE are read from their keys in the accessory test.)
    EXPECT_EQ(BOTTOM_ILLUMINATION_TOGGLE_NI_CHANNEL_KEY, L1("Bottom Fiber Toggle Channel"));
    EXPECT_EQ(MINIMUM_CONTRAST_LEVEL, L1("Minimum Contrast Ratio"));
    EXPECT_EQ(FLUORESCENCE_X_MOTOR_SPEED_F_KEY, L1("Fluorescence X motor Speed F"));
    EXPECT_EQ(SHELF_X_MOTOR_SPEED_H_KEY, L1("Shelf x-Motor Speed H"));
    EXPECT_EQ(TURNTABLE_SOFT_LIMIT_KEY, L1("Rotation Stage Soft Limit"));

    CPLCameraInfo empty;
    EXPECT_EQ(empty.getKeyListWithSameKey(L1("x"), &keys), PL_SECTION_NOT_PRESENT);
}

TEST_F(CameraInfoTest, TheFolderTree)
{
    const QString data = path(L1("data"));
    EXPECT_EQ(getProgramDataPath(), data);
    EXPECT_EQ(getOVPath(OV_PATH_INSTRUMENT_CONFIG), QString(data + L1("/Instrument")));
    EXPECT_EQ(getOVPath(OV_PATH_EMISSION_FILTERS), QString(data + L1("/Instrument/emfilters")));
    EXPECT_EQ(getOVPath(OV_PATH_CT_PARAMETERS), QString(data + L1("/Instrument/CT Parameters")));
    EXPECT_EQ(getOVPath(OV_PATH_USER_SETTINGS), QString(data + L1("/User Settings")));
    EXPECT_FALSE(QFileInfo::exists(data));
    EXPECT_EQ(getOVPath(OV_PATH_XRAY_REFERENCE, true),
              QString(data + L1("/Instrument/XRReference")));
    EXPECT_TRUE(QFileInfo(data + L1("/Instrument/XRReference")).isDir());
    EXPECT_EQ(getCompleteFilePath(OV_PATH_CAMERA_EXTENSIONS, L1("a.cfg")),
              QString(data + L1("/Instrument/config/a.cfg")));

    // A loaded configuration's folders are those beside its file.
    CPLCameraInfo camera;
    ASSERT_EQ(camera.load(write(L1("copy/CameraInfo.txt"), "System Configuration:\tKORA 50\n")),
              PL_SUCCESS);
    EXPECT_EQ(getOVPath(OV_PATH_EMISSION_FILTERS, false, &camera),
              QString(path(L1("copy/emfilters"))));
    EXPECT_EQ(getOVPath(OV_PATH_USER_SETTINGS, false, &camera),
              QString(data + L1("/User Settings")));

    // Without the variable, the tree lies in the standard locations (the test ones here).
    qunsetenv(OV_DATA_DIR_VARIABLE);
    QStandardPaths::setTestModeEnabled(true);
    EXPECT_EQ(getProgramDataPath(),
              QString(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                      + L1("/Pellion/Orvane")));
    EXPECT_TRUE(getOVPath(OV_PATH_USER_SETTINGS).contains(L1("qttest")));
    QStandardPaths::setTestModeEnabled(false);

    const std::pair<const char*, const char*> parents[] = {
        { "a/b/c.txt", "a/b" },  { "a//b/./c/", "a/b" }, { "/c.txt", "/" },
        { "c.txt", "." },        { "/", "/" },           { "", "" },
        { ".", ".." },           { "a/..", ".." },       { "..", "../.." },
        { "../..", "../../.." }, { "../a", ".." },       { "/..", "/" },
    };
    for (const auto& parent : parents)
        EXPECT_EQ(getParentPath(L1(parent.first)), L1(parent.second)) << parent.first;

    EXPECT_EQ(createFolder(QString()), PL_EMPTY_KEY);
    EXPECT_EQ(createFolder(path(L1("made/deep"))), PL_SUCCESS);
    EXPECT_EQ(createFolder(path(L1("made/deep"))), PL_SUCCESS);
    write(L1("file"), "x");
    EXPECT_EQ(createFolder(path(L1("file/sub"))), PL_FILE_OPEN_FAILED);
}
