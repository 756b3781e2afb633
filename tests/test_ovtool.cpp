// Runs the built ovtool on copies of the samples and of the inputs in tests/data/ovtool, and
// checks its output against the golden files there, its exit statuses, its one-line error
// reports, and the exact bytes that set and add leave in the file.

#include "ParserLibrary.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace {

const QString SAMPLES = L1(OVPARSER_SAMPLES "/");
const QString DATA = L1(OVPARSER_TEST_DATA "/ovtool/");
const QByteArray DICOM_IMAGE("\0\0\0\0DICM\x02\0\x10\0pixels\xff\x7f\0", 19);

QByteArray golden(const char* name)
{
    return readBytes(DATA + L1(name));
}

// A command line: the arguments in UTF-8, separated by "|".
QStringList args(const char* line)
{
    return *line ? QString::fromUtf8(line).split(QLatin1Char('|')) : QStringList();
}

QByteArray replaced(QByteArray bytes, const QByteArray& before, const QByteArray& after)
{
    EXPECT_TRUE(bytes.contains(before)) << before.toStdString();
    return bytes.replace(before, after);
}

// What "add FILE Scale Units cm" makes of a file: the new section, with an empty name, goes
// before the two line feeds that end it.
QByteArray withScale(QByteArray bytes)
{
    bytes.chop(2);
    return bytes + "*** Scale:\t\r\nUnits:\tcm\n\n\n\n";
}

// Inputs that the tool refuses, each left as it was.
const struct
{
    const char* name;
    QByteArray bytes;
} INPUTS[] = {
    { "bad.txt", "\n\n*** ClickNumber:\tX1\r\nv:\t1\n\n*** Broken # note: here\r\nk:\tv\n" },
    { "noclick.txt", "*** ClickNumber:\t\r\nv:\t1\n\n" },
    { "none.txt", "just text\nand more: text\n" },
    { "twice.txt", "*** A:\tx\r\nk:\tv\n\n*** a:\ty\r\nj:\tw\n\n\n" },
    { "noblank.txt", "***A:\tx\r\nk:\tv\n\n*** B:\ty\r\nj:\tw\n\n\n" },
    { "bare.dcm", DICOM_IMAGE },
    { "bad.xml", "<a>\n  <b></a>\n" },
    { "other.xml", "<a/>" },
    { "part.xml",
      "<OV3.0.SpectralAnalysis><OV3.0.SpectralAnalysis.Attributes/>"
      "</OV3.0.SpectralAnalysis>" },
};

struct Result
{
    int exitCode = -1; // -1 when the tool did not exit normally
    QByteArray out;
    QByteArray err;
};

// The tool's working folder, so that reports name the files as given. It holds copies of the
// sample KL20261104142207_001 ("c.txt"), of the annotated input, of the settings and spectral
// samples, of the bundled acquisitions (in "tree/"), and the inputs above.
class ovtoolTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_sample = readBytes(SAMPLES + L1("KL20261104142207_001/ClickInfo.txt"));
        m_annotated = golden("annotated.txt");
        writeBytes(path("c.txt"), m_sample);
        writeBytes(path("annotated.txt"), m_annotated);
        writeBytes(path("nul.txt"), m_sample + QByteArray("\0tail", 5));
        for (const auto& input : INPUTS)
            writeBytes(path(input.name), input.bytes);
        for (const char* name :
             { "ROISettings.txt", "UserLabelNames.txt", "Presets/Custom-Dorsal.txt",
               "Presets/Custom-Ventral.TXT", "Presets/Standard.Txt", "Presets/notes.md" })
            copy(SAMPLES + L1("settings/") + L1(name), L1(name));
        copy(SAMPLES + L1("spectral/SpectralAnalysis.xml"), L1("s.xml"));
        copy(DATA + L1("spectral-counts.xml"), L1("spectral-counts.xml"));
        const QStringList acquisitions = QDir(SAMPLES).entryList({ L1("*_001") }, QDir::Dirs);
        for (const QString& folder : acquisitions)
            copy(SAMPLES + folder + L1("/ClickInfo.txt"),
                 L1("tree/") + folder + L1("/ClickInfo.txt"));
    }

    QString path(const char* name) const { return m_dir.filePath(L1(name)); }

    void copy(const QString& from, const QString& to) const
    {
        ASSERT_TRUE(QDir(m_dir.path()).mkpath(QFileInfo(to).path()));
        writeBytes(m_dir.filePath(to), readBytes(from));
    }

    // Runs ovtool with a UTF-8 locale; `shellPrefix`, when given, is run by sh before it.
    Result ovtool(const QStringList& arguments, const QString& shellPrefix = QString()) const
    {
        QProcess process;
        process.setWorkingDirectory(m_dir.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(L1("LC_ALL"), L1("C.UTF-8"));
        environment.insert(L1("TZ"), L1("UTC")); // browse shows local dates and times
        process.setProcessEnvironment(environment);
        if (shellPrefix.isEmpty())
            process.start(L1(OVTOOL_PATH), arguments);
        else
            process.start(
                L1("sh"),
                QStringList { L1("-c"), shellPrefix + L1("; exec \"$0\" \"$@\""), L1(OVTOOL_PATH) }
                    + arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        Result result;
        if (process.exitStatus() == QProcess::NormalExit)
            result.exitCode = process.exitCode();
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }

    // Runs ovtool and expects success with nothing on stderr; returns stdout.
    QByteArray succeed(const char* line) const
    {
        const Result result = ovtool(args(line));
        EXPECT_EQ(result.exitCode, 0) << line;
        EXPECT_EQ(result.err, QByteArray()) << line;
        return result.out;
    }

    QTemporaryDir m_dir;
    QByteArray m_sample;
    QByteArray m_annotated;
};

TEST_F(ovtoolTest, OutputIsWhatIsExpected)
{
    const struct
    {
        const char* arguments;
        QByteArray out;
    } cases[] = {
        { "show|c.txt", golden("show-sample.txt") },
        { "show|--raw|--comments|annotated.txt", golden("show-raw-comments-annotated.txt") },
        { "json|--comments|annotated.txt", golden("json-comments-annotated.json") },
        { "get|c.txt|user input|TREATMENT", "Vehicle\n" },
        { "get|--raw|c.txt|User Input|Treatment", "Vehicle\t# saline, 10 ml/kg i.p.\n" },
        { "get|c.txt|User Input|Comment2", "\n" },
        // Latin-1 in the file, UTF-8 on the terminal.
        { "get|annotated.txt|User Input|User", "Ren\u00e9e Casta\u00f1o\n" },
        { "browse|tree", golden("browse-table.txt") },
        { "browse|--csv|tree", golden("browse.csv") },
        { "browse|--json|tree/", golden("browse.json") },
        { "browse|--sort|BINNING|tree", golden("browse-sort-binning.txt") },
        { "browse|--sort|Date and Time|--reverse|--csv|tree",
          golden("browse-sort-date-reverse.csv") },
        { "settings|--tag|ROI File|ROISettings.txt", golden("settings-roi.txt") },
        { "settings|--section-names|--filter|Preset|--json|ROISettings.txt",
          golden("settings-section-names.json") },
        { "settings|--filter|Custom|Presets", golden("settings-folder-custom.txt") },
        { "settings|Presets", golden("settings-folder.txt") },
        { "labels|UserLabelNames.txt", golden("labels.txt") },
        { "labels|--json|UserLabelNames.txt", golden("labels.json") },
        { "spectral|s.xml", golden("spectral-sample.txt") },
        { "spectral|--json|s.xml", golden("spectral-sample.json") },
        // Counts that differ from those declared; the file indented over many lines.
        { "spectral|spectral-counts.xml", golden("spectral-counts.txt") },
    };
    for (const auto& c : cases)
        EXPECT_EQ(succeed(c.arguments), c.out) << c.arguments;
}

TEST_F(ovtoolTest, JsonListsCommentLinesOnlyWhenAsked)
{
    QJsonObject expected = QJsonDocument::fromJson(golden("json-comments-annotated.json")).object();
    QJsonArray sections;
    for (const QJsonValue& section : expected.value(L1("sections")).toArray()) {
        QJsonObject object = section.toObject();
        QJsonArray entries;
        for (const QJsonValue& entry : object.value(L1("entries")).toArray()) {
            if (!entry.toObject().contains(L1("comment")))
                entries.append(entry);
        }
        object.insert(L1("entries"), entries);
        sections.append(object);
    }
    expected.insert(L1("sections"), sections);
    EXPECT_EQ(succeed("json|annotated.txt"), QJsonDocument(expected).toJson());
}

TEST_F(ovtoolTest, EachFailureIsOneLineWithItsExitStatus)
{
    const QByteArray noSections = ": the file holds no sections (no line begins with \"***\")\n";
    const QByteArray noKey = "ovtool: c.txt: section \"User Input\" has no key ";
    const struct
    {
        const char* arguments;
        int exitCode;
        QByteArray err;
    } cases[] = {
        { "show|missing.txt", 1, "ovtool: missing.txt: cannot open the file\n" },
        { "show|bad.txt", 1,
          "ovtool: bad.txt:6: malformed section header (a header is \"*** \", a key, a colon, and "
          "no \"#\" before the colon)\n" },
        { "json|noclick.txt", 1,
          "ovtool: noclick.txt:1: section header without a key, or a \"ClickNumber\" section "
          "without a click number\n" },
        { "show|none.txt", 1, "ovtool: none.txt" + noSections },
        { "json|none.txt", 1, "ovtool: none.txt" + noSections },
        { "get|none.txt|a|b", 1, "ovtool: none.txt" + noSections },
        { "set|none.txt|a|b|c", 1, "ovtool: none.txt" + noSections },
        { "add|none.txt|a|b|c", 1, "ovtool: none.txt" + noSections },
        { "settings|none.txt", 1, "ovtool: none.txt" + noSections },
        { "show|bare.dcm", 1, "ovtool: bare.dcm" + noSections },
        { "get|c.txt|Foo|Bar", 1, "ovtool: c.txt: no section \"Foo\"\n" },
        { "set|c.txt|Foo|Bar|x", 1,
          "ovtool: c.txt: no section \"Foo\" (use \"ovtool add\" to add it)\n" },
        { "set|c.txt|User Input|Bar|x", 1, noKey + "\"Bar\" (use \"ovtool add\" to add it)\n" },
        // A comment line is not a key, though the library keys it "CommentLine 0".
        { "set|c.txt|User Input|CommentLine 0|x", 1,
          noKey + "\"CommentLine 0\" (use \"ovtool add\" to add it)\n" },
        { "add|c.txt|user input|USER|x", 1,
          "ovtool: c.txt: section \"user input\" already has key \"USER\" (use \"ovtool set\" to "
          "change it)\n" },
        // Files that a save would not write back as they were read are left alone.
        { "set|nul.txt|User Input|User|x", 1,
          "ovtool: nul.txt: line 101: a NUL byte ends the text; what follows it is not read; the "
          "file is left as it was\n" },
        { "set|twice.txt|A|k|v2", 1,
          "ovtool: twice.txt: line 4: section \"a\" repeats the key of a section before it and "
          "is left out; the file is left as it was\n" },
        { "add|noblank.txt|B|n|1", 1,
          "ovtool: noblank.txt: line 1: the section header \"***A:\tx\" has no blank after "
          "\"***\", so it is also kept as a line before the first section and written twice; "
          "the file is left as it was\n" },
        // Text that the file cannot hold, or that would read back differently.
        { "add|c.txt|User Input|Dose|5 \xe2\x82\xac", 1,
          "ovtool: c.txt: the value \"5 \xe2\x82\xac\" holds characters outside Latin-1\n" },
        { "add|c.txt|User Input|Dose|5\nmg", 1, "ovtool: c.txt: the value holds a line break\n" },
        { "add|c.txt|User Input|Dose:mg|5", 1,
          "ovtool: c.txt: the key \"Dose:mg\" holds a colon, which ends a key\n" },
        { "add|c.txt|New # x|k|v", 1,
          "ovtool: c.txt: the section key \"New # x\" holds a \"#\", which starts a comment\n" },
        { "set|c.txt|User Input|User| Ana", 1,
          "ovtool: c.txt: the value \" Ana\" begins or ends with white space, which reading "
          "drops\n" },
        { "settings|missing.txt", 1, "ovtool: missing.txt: cannot open the file\n" },
        { "labels|c.txt", 1,
          "ovtool: c.txt: the file holds no label-name sets (no \"*** User Label Name Set:\" "
          "section)\n" },
        { "spectral|missing.xml", 1, "ovtool: missing.xml: cannot open the file\n" },
        { "spectral|bad.xml", 1,
          "ovtool: bad.xml:2:9: malformed XML: Opening and ending tag mismatch.\n" },
        { "spectral|other.xml", 1,
          "ovtool: other.xml: not a spectral-analysis document (its root element is not "
          "\"OV3.0.SpectralAnalysis\")\n" },
        { "spectral|part.xml", 1,
          "ovtool: part.xml: incomplete spectral-analysis document (it lacks its attributes, its "
          "click list or its linear fit)\n" },
        { "browse|c.txt", 1, "ovtool: c.txt: not a folder\n" },
        // Usage errors.
        { "", 2, "ovtool: no command given; see \"ovtool --help\"\n" },
        { "frobnicate|c.txt", 2,
          "ovtool: unknown command \"frobnicate\"; see \"ovtool --help\"\n" },
        { "get|c.txt|User Input", 2,
          "ovtool: get: expected 3 arguments (FILE SECTION KEY), got 2; see \"ovtool get "
          "--help\"\n" },
        { "show|c.txt|annotated.txt", 2,
          "ovtool: show: expected 1 argument (FILE), got 2; see \"ovtool show --help\"\n" },
        { "show|--bogus|c.txt", 2,
          "ovtool: show: Unknown option 'bogus'; see \"ovtool show --help\"\n" },
        { "settings|--tag|ROI File|.", 2,
          "ovtool: settings: --tag applies to a settings file, not to a folder; see \"ovtool "
          "settings --help\"\n" },
        { "browse|--sort|Gain|tree", 2,
          "ovtool: browse: no column \"Gain\"; see \"ovtool browse --help\"\n" },
        { "browse|--csv|--json|tree", 2,
          "ovtool: browse: --csv and --json exclude each other; see \"ovtool browse --help\"\n" },
        { "browse|--reverse|tree", 2,
          "ovtool: browse: --reverse needs --sort; see \"ovtool browse --help\"\n" },
    };
    for (const auto& c : cases) {
        const Result result = ovtool(args(c.arguments));
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments;
        EXPECT_EQ(result.err, c.err) << c.arguments;
        EXPECT_EQ(result.out, QByteArray()) << c.arguments;
    }
    EXPECT_EQ(readBytes(path("c.txt")), m_sample);
    EXPECT_EQ(readBytes(path("nul.txt")), m_sample + QByteArray("\0tail", 5));
    for (const auto& input : INPUTS)
        EXPECT_EQ(readBytes(path(input.name)), input.bytes) << input.name;
}

TEST_F(ovtoolTest, BrowseReportsAMalformedAcquisitionAndLeavesItOut)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkpath(L1("tree/sub/AB20261106000000_001")));
    writeBytes(path("tree/sub/AB20261106000000_001/ClickInfo.txt"),
               "*** ClickNumber:\tAB20261106000000_001\n\n*** photographic image # x:\ty\n");
    const Result result = ovtool(args("browse|tree"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "ovtool: tree/sub/AB20261106000000_001/ClickInfo.txt: line 3: malformed section "
              "header (a header is \"*** \", a key, a colon, and no \"#\" before the colon); "
              "left out\n");
    EXPECT_EQ(result.out, golden("browse-table.txt"));
}

TEST_F(ovtoolTest, BrowseReportsAnUnreadableFolderAndLeavesItOut)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkpath(L1("tree/locked/AB20261106000000_001")));
    copy(SAMPLES + L1("KL20261104142207_001/ClickInfo.txt"),
         L1("tree/locked/AB20261106000000_001/ClickInfo.txt"));
    const LockedFolder locked(path("tree/locked"));
    if (!locked.keepsOut())
        GTEST_SKIP() << "this user reads a folder without permissions (root)";
    const Result result = ovtool(args("browse|tree"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "ovtool: tree/locked: cannot read the folder: Permission denied; left out\n");
    EXPECT_EQ(result.out, golden("browse-table.txt"));
}

TEST_F(ovtoolTest, VerboseAlsoPrintsTheLibraryDiagnostics)
{
    const Result result = ovtool(args("--verbose|show|bad.txt"));
    EXPECT_EQ(result.exitCode, 1);
    const QList<QByteArray> lines = result.err.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 2) << result.err.toStdString();
    EXPECT_TRUE(lines.first().startsWith("ovtool: ovparser: ")) << lines.first().toStdString();
    EXPECT_TRUE(lines.last().startsWith("ovtool: bad.txt:6: malformed section header"));
}

TEST_F(ovtoolTest, SetChangesOnlyTheValue)
{
    // The inline comment of the old value stays; a value with its own "#" replaces it.
    succeed("set|c.txt|user input|treatment|Saline");
    succeed("set|c.txt|Camera System Info|Stage Temperature|36.5 # cold stage");
    QByteArray expected = replaced(m_sample, "Treatment:\tVehicle\t#", "Treatment:\tSaline\t#");
    expected = replaced(expected, "37.0\t# warmed stage", "36.5 # cold stage");
    EXPECT_EQ(readBytes(path("c.txt")), expected);

    // Leading lines and comment lines stay; the value is written in Latin-1.
    succeed("set|annotated.txt|User Input|User|Zo\u00eb \u00c5ngstr\u00f6m");
    EXPECT_EQ(readBytes(path("annotated.txt")),
              replaced(m_annotated, "Ren\351e Casta\361o", "Zo\353 \305ngstr\366m"));
}

TEST_F(ovtoolTest, AddAppendsTheKeyAndItsSection)
{
    succeed("add|c.txt|User Input|Weight|21.4 # g");
    succeed("add|c.txt|Scale|Units|cm");
    EXPECT_EQ(
        readBytes(path("c.txt")),
        withScale(replaced(m_sample, "User ID:\tklenz\n", "User ID:\tklenz\nWeight:\t21.4 # g\n")));
    EXPECT_EQ(succeed("get|c.txt|User Input|Weight"), "21.4\n");
}

TEST_F(ovtoolTest, AFailedSaveLeavesTheFileAsItWas)
{
    const QStringList files = QDir(m_dir.path()).entryList(QDir::Files);
    // A file size limit of one block, below the sample's size, makes the write fail.
    const Result result = ovtool(args("set|c.txt|User Input|User|Ana"), L1("ulimit -f 1"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "ovtool: c.txt: cannot write the file; it is left as it was\n");
    EXPECT_EQ(readBytes(path("c.txt")), m_sample);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files), files) << "no temporary file is left";
}

TEST_F(ovtoolTest, DicomMetadataIsAppendedAndTheLastCopyRead)
{
    writeBytes(path("x.dcm"), DICOM_IMAGE + m_sample);
    succeed("set|x.dcm|User Input|User|Ana Ruiz");
    const QByteArray second = replaced(m_sample, "User:\tKatrin Lenz", "User:\tAna Ruiz");
    EXPECT_EQ(readBytes(path("x.dcm")), DICOM_IMAGE + m_sample + second);
    EXPECT_EQ(succeed("get|x.dcm|User Input|User"), "Ana Ruiz\n");
    succeed("add|x.dcm|Scale|Units|cm");
    EXPECT_EQ(readBytes(path("x.dcm")), DICOM_IMAGE + m_sample + second + withScale(second));
}

TEST_F(ovtoolTest, HelpAndVersion)
{
    const QByteArray toolHelp = succeed("--help");
    for (const char* command :
         { "show", "get", "set", "add", "json", "settings", "labels", "spectral", "browse" }) {
        EXPECT_TRUE(toolHelp.contains(QByteArray("\n  ") + command + ' ')) << command;
        const QByteArray help = succeed(QByteArray(command).append("|--help").constData());
        EXPECT_TRUE(help.startsWith(QByteArray("Usage: ovtool ") + command + " [options] "));
        EXPECT_TRUE(help.contains("\nExit status:\n")) << command;
    }
    EXPECT_EQ(succeed("--version"),
              "ovtool " OVPARSER_VERSION_STRING "\novparser library "
                  + CParserLibrary::version().toLatin1() + '\n');
}

} // namespace
