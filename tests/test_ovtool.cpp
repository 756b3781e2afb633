// Runs the built ovtool on copies of the samples and of the inputs in tests/data/ovtool, and
// checks its output against the golden files there, its exit statuses, its one-line error
// reports and warnings, the diffs of --dry-run, and the exact bytes that set, add, unset and
// format leave in the file.

#include "PLFileEditor.h"
#include "PLStatus.h"
#include "ParserLibrary.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString SAMPLES = L1(OVPARSER_SAMPLES "/");
const QString DATA = L1(OVPARSER_TEST_DATA "/ovtool/");
const QByteArray DICOM_IMAGE("\0\0\0\0DICM\x02\0\x10\0pixels\xff\x7f\0", 19);
// What "nul.txt" holds after the sample's 100 lines: a key that no load reads.
const QByteArray NUL_TAIL("\0Tail Key:\t5\n", 13);

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
    { "repeated.txt", "*** S:\tn\r\nk:\t1\nj:\t0\nk:\t2\n\n\n\n" },
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
        writeBytes(path("nul.txt"), m_sample + NUL_TAIL);
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
    // Copies every file under the sample folder `sample` to the folder `to`.
    void copyTree(const char* sample, const QString& to) const
    {
        const QString from = SAMPLES + L1(sample);
        QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            copy(file, to + file.mid(from.size()));
        }
    }

    // Runs ovtool with a UTF-8 locale and `input` on its standard input; `shellPrefix`, when
    // given, is run by sh before it.
    Result ovtool(const QStringList& arguments, const QString& shellPrefix = QString(),
                  const QByteArray& input = QByteArray()) const
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
        process.write(input);
        process.closeWriteChannel();
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

// The instrument samples, shown with the settings store in the working folder.
TEST_F(ovtoolTest, CameraShowsTheInstrumentItsExtensionsAndWhatWasRefused)
{
    for (const char* folder : { "instrument", "instrument-conflict" })
        copyTree(folder, L1(folder));
    const QString store = L1("export OVPARSER_DATA_DIR=\"$PWD/data\"");
    const struct
    {
        const char* arguments;
        int exitCode;
        QByteArray out;
    } cases[] = {
        { "camera|instrument", 0, golden("camera-instrument.txt") },
        { "camera|--keys|instrument/CameraInfo.txt", 0, golden("camera-keys.txt") },
        { "camera|--json|instrument-conflict", 0, golden("camera-conflict.json") },
        { "camera|none.txt", 4, golden("camera-invalid.txt") },
    };
    for (const auto& c : cases) {
        const Result result = ovtool(args(c.arguments), store);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments;
        EXPECT_EQ(result.out, c.out) << c.arguments;
    }
    const Result missing = ovtool(args("camera|nowhere"), store);
    EXPECT_EQ(missing.exitCode, 3);
    EXPECT_EQ(missing.err,
              QByteArray("ovtool: nowhere: the file cannot be opened: No such file or "
                         "directory\n"));
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

// json writes as it goes; what it writes is what QJsonDocument writes of the same document:
// every Latin-1 character in a value (the escapes, and UTF-8 for the upper half), a raw value
// and a raw name, a comment line, a section without entries, no leading lines.
TEST_F(ovtoolTest, JsonWrittenAsItGoesIsWhatQJsonDocumentWrites)
{
    QByteArray all;
    for (int c = 1; c < 256; ++c) {
        if (c != '\n' && c != '\r' && c != '#')
            all += char(c);
    }
    writeBytes(path("every.txt"), "*** ClickNumber:\tX_001\nClickInfoType:\tRawData\n\n"
                                  "*** Chars:\tname # note\n# a comment\nAll:\t" + all.trimmed()
                                      + "\nRaw:\tv # c\n\n*** Empty:\n\n");
    const auto entry = [](const char* key, const QString& value, const QString& raw) {
        QJsonObject object { { L1("key"), L1(key) }, { L1("value"), value } };
        if (raw != value)
            object.insert(L1("rawValue"), raw);
        return object;
    };
    const QString allText = QString::fromLatin1(all.trimmed());
    const QJsonArray sections {
        QJsonObject { { L1("key"), L1("ClickNumber") }, { L1("name"), L1("X_001") },
                      { L1("entries"),
                        QJsonArray { entry("ClickInfoType", L1("RawData"), L1("RawData")) } } },
        QJsonObject { { L1("key"), L1("Chars") }, { L1("name"), L1("name") },
                      { L1("rawName"), L1("name # note") },
                      { L1("entries"),
                        QJsonArray { QJsonObject { { L1("comment"), L1("# a comment") } },
                                     entry("All", allText, allText),
                                     entry("Raw", L1("v"), L1("v # c")) } } },
        QJsonObject { { L1("key"), L1("Empty") }, { L1("name"), L1("") },
                      { L1("entries"), QJsonArray() } },
    };
    const QJsonObject expected { { L1("file"), L1("every.txt") },
                                 { L1("clickNumber"), L1("X_001") },
                                 { L1("leadingLines"), QJsonArray() },
                                 { L1("sections"), sections } };
    EXPECT_EQ(succeed("json|--quiet|--comments|every.txt"), QJsonDocument(expected).toJson());
}

TEST_F(ovtoolTest, EachFailureIsOneLineWithItsExitStatus)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(L1("folder.txt")));
    // A FIFO is refused before it is opened: nothing waits for a writer.
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("fifo.txt")).constData(), 0600), 0);
    const QByteArray noSections = ": the file holds no sections (no line begins with \"***\")\n";
    const QByteArray noFile = ": the file cannot be opened: No such file or directory\n";
    const QByteArray fifo = "ovtool: fifo.txt: not a regular file (a FIFO, device or socket";
    const QByteArray noKey = "ovtool: c.txt:7: section \"User Input\" has no key ";
    const QByteArray repeated
        = ":4: section \"S\" holds key \"k\" on lines 2 and 4; it is not edited until one of "
          "them is removed by hand\n";
    const struct
    {
        const char* arguments;
        int exitCode;
        QByteArray err;
    } cases[] = {
        // 3: the file cannot be read.
        { "show|missing.txt", 3, "ovtool: missing.txt" + noFile },
        { "set|missing.txt|a|b|c", 3, "ovtool: missing.txt" + noFile },
        { "add|missing.txt|a|b|c", 3, "ovtool: missing.txt" + noFile },
        { "show|folder.txt", 3, "ovtool: folder.txt: the file cannot be opened: Is a directory\n" },
        { "set|folder.txt|a|b|c", 3, "ovtool: folder.txt: cannot write: Is a directory\n" },
        { "show|fifo.txt", 3, fifo + " is never read or replaced)\n" },
        { "unset|fifo.txt|a|b", 3, fifo + "); nothing written\n" },
        { "settings|missing.txt", 3, "ovtool: missing.txt" + noFile },
        { "spectral|missing.xml", 3, "ovtool: missing.xml" + noFile },
        { "browse|c.txt", 3, "ovtool: c.txt: not a folder\n" },
        // 4: the file does not load.
        { "show|bad.txt", 4,
          "ovtool: bad.txt:6: malformed section header (a header is \"*** \", a key, a colon, and "
          "no \"#\" before the colon)\n" },
        { "set|bad.txt|ClickNumber|v|2", 4,
          "ovtool: bad.txt:6: cannot be loaded: malformed section header (a header is \"*** \", "
          "a key, a colon, and no \"#\" before the colon)\n" },
        { "json|noclick.txt", 4,
          "ovtool: noclick.txt:1: a section header without a key, or a \"ClickNumber\" section "
          "without a click number\n" },
        { "show|none.txt", 4, "ovtool: none.txt" + noSections },
        { "json|none.txt", 4, "ovtool: none.txt" + noSections },
        { "get|none.txt|a|b", 4, "ovtool: none.txt" + noSections },
        { "settings|none.txt", 4, "ovtool: none.txt" + noSections },
        { "show|bare.dcm", 4, "ovtool: bare.dcm" + noSections },
        { "spectral|bad.xml", 4,
          "ovtool: bad.xml:2:9: malformed XML: Opening and ending tag mismatch.\n" },
        { "spectral|other.xml", 4,
          "ovtool: other.xml: not a spectral-analysis document (its root element is not "
          "\"OV3.0.SpectralAnalysis\")\n" },
        { "spectral|part.xml", 4,
          "ovtool: part.xml: incomplete spectral-analysis document (it lacks its attributes, its "
          "click list or its linear fit)\n" },
        // 1: the section or key is not there.
        { "get|c.txt|Foo|Bar", 1, "ovtool: c.txt: no section \"Foo\"\n" },
        { "get|c.txt|User Input|Bar", 1,
          "ovtool: c.txt: section \"User Input\" has no key \"Bar\"\n" },
        { "get|nul.txt|User Input|tail key", 1,
          "ovtool: nul.txt:101: a NUL byte ends the text here; \"tail key\" stands after it and is "
          "not read\n" },
        { "set|c.txt|Foo|Bar|x", 1, "ovtool: c.txt: no section \"Foo\"\n" },
        { "set|none.txt|a|b|c", 1, "ovtool: none.txt: no section \"a\"\n" },
        { "set|c.txt|User Input|Bar|x", 1, noKey + "\"Bar\"\n" },
        { "unset|c.txt|User Input|Bar", 1, noKey + "\"Bar\"\n" },
        // A comment line is not a key, though the library keys it "CommentLine 0".
        { "set|c.txt|User Input|CommentLine 0|x", 1, noKey + "\"CommentLine 0\"\n" },
        { "labels|c.txt", 1,
          "ovtool: c.txt: the file holds no label-name sets (no \"*** User Label Name Set:\" "
          "section)\n" },
        // 7: the edit is refused.
        { "add|c.txt|user input|USER|x", 7,
          "ovtool: c.txt:7: section \"user input\" already has key \"USER\"\n" },
        { "set|repeated.txt|S|k|3", 7, "ovtool: repeated.txt" + repeated },
        { "unset|repeated.txt|S|K", 7,
          "ovtool: repeated.txt" + replaced(repeated, "key \"k\"", "key \"K\"") },
        { "set|--dry-run|repeated.txt|S|k|3", 7, "ovtool: repeated.txt" + repeated },
        { "add|c.txt|User Input|Dose|5 \xe2\x82\xac", 7,
          "ovtool: c.txt: the value \"5 \xe2\x82\xac\" holds characters outside Latin-1\n" },
        { "add|c.txt|User Input|Dose|5\nmg", 7, "ovtool: c.txt: the value holds a line break\n" },
        { "add|c.txt|User Input|Dose:mg|5", 7,
          "ovtool: c.txt: the key \"Dose:mg\" holds a colon, which ends a key\n" },
        { "add|c.txt|New # x|k|v", 7,
          "ovtool: c.txt: the section key \"New # x\" holds a \"#\", which starts a comment\n" },
        { "add|c.txt|User Input| *** Injected|v", 7,
          "ovtool: c.txt: the key \" *** Injected\" begins with \"***\" (after any blanks), "
          "which starts a section header\n" },
        // 2: usage errors.
        { "", 2, "ovtool: no command given; see \"ovtool --help\"\n" },
        { "frobnicate|c.txt", 2,
          "ovtool: unknown command \"frobnicate\"; see \"ovtool --help\"\n" },
        { "get|c.txt|User Input", 2,
          "ovtool: get: expected 3 arguments (FILE SECTION KEY), got 2; see \"ovtool get "
          "--help\"\n" },
        { "unset|c.txt|User Input", 2,
          "ovtool: unset: expected 3 arguments (FILE SECTION KEY), got 2; see \"ovtool unset "
          "--help\"\n" },
        { "show|c.txt|annotated.txt", 2,
          "ovtool: show: expected 1 argument (FILE), got 2; see \"ovtool show --help\"\n" },
        { "show|--bogus|c.txt", 2,
          "ovtool: show: Unknown option 'bogus'; see \"ovtool show --help\"\n" },
        // An option after a negative number is still an option.
        { "set|c.txt|User Input|User|-5|--bogus", 2,
          "ovtool: set: Unknown option 'bogus'; see \"ovtool set --help\"\n" },
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
    EXPECT_EQ(readBytes(path("nul.txt")), m_sample + NUL_TAIL);
    EXPECT_FALSE(QFileInfo::exists(path("missing.txt"))) << "an edit makes no file";
    for (const auto& input : INPUTS)
        EXPECT_EQ(readBytes(path(input.name)), input.bytes) << input.name;
}

TEST_F(ovtoolTest, BrowseReportsAMalformedAcquisitionAndLeavesItOut)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkpath(L1("tree/sub/AB20261106000000_001")));
    writeBytes(path("tree/sub/AB20261106000000_001/ClickInfo.txt"),
               "*** ClickNumber:\tAB20261106000000_001\n\n*** photographic image # x:\ty\n");
    const Result result = ovtool(args("browse|tree"));
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "ovtool: tree/sub/AB20261106000000_001/ClickInfo.txt:3: malformed section "
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
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "ovtool: tree/locked: cannot read the folder: Permission denied; left out\n");
    EXPECT_EQ(result.out, golden("browse-table.txt"));
}

TEST_F(ovtoolTest, BrowseReportsWhatIsNoRegularFileAndLeavesItOut)
{
    ASSERT_TRUE(QDir(m_dir.path()).mkpath(L1("tree/odd")));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("tree/odd/ClickInfo.txt")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(L1("/dev/null"), path("tree/odd/scan.dcm")));
    const Result result = ovtool(args("browse|tree"));
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "ovtool: tree/odd/ClickInfo.txt: not a regular file but a FIFO; left out\n"
              "ovtool: tree/odd/scan.dcm: a symbolic link to a device; left out\n");
    EXPECT_EQ(result.out, golden("browse-table.txt"));
}

TEST_F(ovtoolTest, GlobalOptionsStandBeforeOrAfterTheCommand)
{
    const char* malformed = "ovtool: bad.txt:6: malformed section header";
    // The library logs where the load stopped, then the warnings of what it read.
    const char* diagnostic = "ovtool: ovparser.load: bad.txt:6: loading stopped: ";
    const char* repeated = "ovtool: repeated.txt:4: section \"S\": a line repeats the key";
    const struct
    {
        const char* arguments;
        const char* shellPrefix;
        int exitCode;
        int lines; // on stderr
        const char* first; // the start of the first line
        const char* last; // the start of the last line
    } cases[] = {
        { "show|bad.txt", "", 4, 1, malformed, malformed },
        { "--verbose|show|bad.txt", "", 4, 5, diagnostic, malformed },
        { "show|bad.txt|--verbose", "", 4, 5, diagnostic, malformed },
        // The logging rules silence the library's diagnostics, not the failure.
        { "show|bad.txt|--verbose", "export QT_LOGGING_RULES='ovparser.*=false'", 4, 1, malformed,
          malformed },
        { "show|repeated.txt", "", 0, 1, repeated, repeated },
        { "--quiet|show|repeated.txt", "", 0, 0, "", "" },
        { "json|repeated.txt|--quiet", "", 0, 0, "", "" },
        // --quiet silences warnings, not failures.
        { "show|--quiet|bad.txt", "", 4, 1, malformed, malformed },
    };
    for (const auto& c : cases) {
        const Result result = ovtool(args(c.arguments), L1(c.shellPrefix));
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments;
        const QList<QByteArray> lines
            = result.err.isEmpty() ? QList<QByteArray>() : result.err.trimmed().split('\n');
        ASSERT_EQ(lines.size(), c.lines) << c.arguments << ": " << result.err.toStdString();
        if (c.lines == 0)
            continue;
        EXPECT_TRUE(lines.first().startsWith(c.first)) << lines.first().toStdString();
        EXPECT_TRUE(lines.last().startsWith(c.last)) << lines.last().toStdString();
    }
}

TEST_F(ovtoolTest, ShowAndJsonPrintEachLineOfARepeatedKey)
{
    const QByteArray warnings
        = "ovtool: repeated.txt:4: section \"S\": a line repeats the key of a line before it "
          "(\"k\" "
          "on line 2); saving writes the last value on every line of the key, and an edit of it "
          "is refused\n";
    const Result show = ovtool(args("show|repeated.txt"));
    EXPECT_EQ(show.exitCode, 0);
    EXPECT_EQ(show.out, "*** S: n\n  k:  1\n  j:  0\n  k:  2\n");
    EXPECT_EQ(show.err, warnings);

    const Result json = ovtool(args("json|repeated.txt"));
    EXPECT_EQ(json.exitCode, 0);
    EXPECT_EQ(json.err, warnings);
    const QJsonArray entries = QJsonDocument::fromJson(json.out)
                                   .object()
                                   .value(L1("sections"))
                                   .toArray()
                                   .at(0)
                                   .toObject()
                                   .value(L1("entries"))
                                   .toArray();
    QStringList shown;
    for (const QJsonValue& entry : entries)
        shown.append(entry.toObject().value(L1("key")).toString() + L1("=")
                     + entry.toObject().value(L1("value")).toString());
    EXPECT_EQ(shown, L1List({ "k=1", "j=0", "k=2" }));
}

TEST_F(ovtoolTest, ReadCommandsReadStandardInput)
{
    const struct
    {
        const char* arguments;
        QByteArray input;
        int exitCode;
        QByteArray out;
        QByteArray err;
    } cases[] = {
        { "get|-|user input|TREATMENT", m_sample, 0, "Vehicle\n", "" },
        { "show|-", m_sample, 0, golden("show-sample.txt"), "" },
        { "show|-", "*** A:\tx\nk:\t1\n\n\n\n", 0, "*** A: x\n  k:  1\n",
          "ovtool: standard input:1: section \"A\": a line ends otherwise than saving ends it (CR "
          "LF after a section header, LF after every other line)\n" },
        { "get|-|A|k", "x", 4, "",
          "ovtool: standard input: the file holds no sections (no line begins with \"***\")\n" },
        { "json|-", "*** A:\tx\r\n*** B # c:\ty\r\n", 4, "",
          "ovtool: standard input:2: malformed section header (a header is \"*** \", a key, a "
          "colon, and no \"#\" before the colon)\n" },
        { "get|-|A|k", QByteArray("*** A:\tx\r\n") + '\0' + "k:\t1\n", 1, "",
          "ovtool: standard input:2: a NUL byte ends the text here; \"k\" stands after it and is "
          "not read\n" },
    };
    for (const auto& c : cases) {
        const Result result = ovtool(args(c.arguments), QString(), c.input);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments;
        EXPECT_EQ(result.out, c.out) << c.arguments;
        EXPECT_EQ(result.err, c.err) << c.arguments;
    }
    EXPECT_EQ(QJsonDocument::fromJson(ovtool(args("json|-"), QString(), m_sample).out)
                  .object()
                  .value(L1("file"))
                  .toString(),
              L1("standard input"));
}

TEST_F(ovtoolTest, StandardInputLargerThanAFileIsRefused)
{
    // A sparse file one byte over the limit, given as standard input.
    QFile big(path("big.bin"));
    ASSERT_TRUE(big.open(QIODevice::WriteOnly));
    ASSERT_TRUE(big.resize(PL_MAX_FILE_SIZE + 1));
    big.close();
    const Result result = ovtool(args("show|-"), L1("exec < big.bin"));
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              "ovtool: standard input: more than 64 MiB, larger than a file that is read\n");
    EXPECT_EQ(result.out, QByteArray());
}

// Hand-written files, each edited once: the whole file after the edit. Only the edited line
// changes, whatever the rest holds.
TEST_F(ovtoolTest, EditsChangeOnlyTheirLines)
{
    const QByteArray leading = "Acquisition log\n\n*** S:\tn\r\nA:\t1\n\n\n";
    const struct
    {
        QByteArray before;
        const char* arguments; // after the command, the file
        QByteArray after;
    } cases[] = {
        // One case per editing command; the line rules themselves are the editor's, tested
        // with it (test_file_editor).
        { "*** S:\tn\r\nA:\t1\r\nB:\t2\r\n\r\n", "set|S|A|9",
          "*** S:\tn\r\nA:\t9\r\nB:\t2\r\n\r\n" },
        // A negative number is a value.
        { "*** S:\tn\r\nT:\t20\n\n\n", "set|S|T|-85", "*** S:\tn\r\nT:\t-85\n\n\n" },
        { "\xef\xbb\xbf*** S:\tn\r\nA:\t1\n\n\n", "unset|S|A", "\xef\xbb\xbf*** S:\tn\r\n\n\n" },
        { leading, "add|T|K|v",
          "Acquisition log\n\n*** S:\tn\r\nA:\t1\n\n*** T:\t\r\nK:\tv\n\n\n" },
        // format writes what a save writes.
        { "*** S:\tn\nA :  1\nB:\t2", "format", "*** S:\tn\r\nA:\t1\nB:\t2\n\n\n\n" },
    };
    for (const auto& c : cases) {
        writeBytes(path("e.txt"), c.before);
        QStringList arguments = args(c.arguments);
        arguments.insert(1, L1("e.txt"));
        const Result result = ovtool(arguments + QStringList(L1("--quiet")));
        EXPECT_EQ(result.exitCode, 0) << c.arguments << result.err.toStdString();
        EXPECT_EQ(readBytes(path("e.txt")), c.after) << c.arguments;
        EXPECT_FALSE(QFileInfo::exists(path("e.txt.lock"))) << c.arguments;
    }
}

TEST_F(ovtoolTest, DryRunPrintsTheDiffAndWritesNothing)
{
    const QByteArray crlf = "*** S:\tn\r\nA:\t1\r\nB:\t2\r\n\r\n";
    const QByteArray noLastLineEnd = "*** S:\tn\nA:\t1\nB:\t2";
    const QByteArray header = "--- e.txt\n+++ e.txt\n";
    const struct
    {
        QByteArray before;
        const char* arguments;
        QByteArray diff;
    } cases[] = {
        { crlf, "set|--dry-run|e.txt|S|A|9",
          header + "@@ -1,4 +1,4 @@\n *** S:\tn\r\n-A:\t1\r\n+A:\t9\r\n B:\t2\r\n \r\n" },
        { noLastLineEnd, "add|e.txt|S|C|3|--dry-run",
          header
              + "@@ -1,3 +1,4 @@\n *** S:\tn\n A:\t1\n-B:\t2\n\\ No newline at end of file\n"
                "+B:\t2\n+C:\t3\n\\ No newline at end of file\n" },
        { noLastLineEnd, "unset|e.txt|S|A|--dry-run",
          header + "@@ -1,3 +1,2 @@\n *** S:\tn\n-A:\t1\n B:\t2\n\\ No newline at end of file\n" },
        // Three lines of context; a second change far enough away is a hunk of its own.
        { "*** S:\tn\n1:\ta\n2:\tb\n3:\tc\n4:\td\n5:\te\n6:\tf\n7:\tg\n8:\th\n9:\ti\n",
          "format|e.txt|--dry-run",
          header
              + "@@ -1,4 +1,4 @@\n-*** S:\tn\n+*** S:\tn\r\n 1:\ta\n 2:\tb\n 3:\tc\n"
                "@@ -8,3 +8,6 @@\n 7:\tg\n 8:\th\n 9:\ti\n+\n+\n+\n" },
        // Nothing to change, nothing printed.
        { "*** S:\tn\r\nA:\t1\n\n\n\n", "format|--dry-run|e.txt", "" },
        { m_sample, "unset|--dry-run|e.txt|User Input|Group",
          header
              + "@@ -7,7 +7,6 @@\n *** User Input:\tOrvane Universal\r\n # Labels entered at the "
                "instrument when the image was taken\n User:\tKatrin Lenz\n-Group:\tTumor Models "
                "Core\n Experiment:\tEXP-0412 4T1-luc2 flank growth\n Comment1:\tDay 7 after "
                "implant\n Comment2:\t\n" },
    };
    for (const auto& c : cases) {
        writeBytes(path("e.txt"), c.before);
        const Result result = ovtool(args(c.arguments));
        EXPECT_EQ(result.exitCode, 0) << c.arguments;
        EXPECT_EQ(result.out, c.diff) << c.arguments;
        EXPECT_EQ(readBytes(path("e.txt")), c.before) << c.arguments;
    }
}

TEST_F(ovtoolTest, FormatListsTheWarningsOnStderr)
{
    writeBytes(path("e.txt"), "*** S:\tn\nA :  1\nB:\t2");
    const Result result = ovtool(args("format|e.txt"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, QByteArray());
    EXPECT_EQ(result.err,
              "ovtool: e.txt:1: section \"S\": a line ends otherwise than saving ends it (CR LF "
              "after a section header, LF after every other line)\n"
              "ovtool: e.txt:2: section \"S\": a line has blanks around a key, a value or a text, "
              "which saving drops\n"
              "ovtool: e.txt:3: section \"S\": saving drops or adds blank lines or white space "
              "here (it writes no blank line before a section's first line, one empty line after "
              "each section and two line feeds at the end of the file)\n");
    // Formatted, the file gives no warning.
    EXPECT_EQ(succeed("format|e.txt"), QByteArray());
}

TEST_F(ovtoolTest, FormatNeverDropsWhatALoadDoesNotTakeIn)
{
    const QByteArray files[] = {
        QByteArray("*** A:\tx\r\nk:\tv\0tail\n\n*** B:\t\r\nq:\t1\n\n\n\n", 38),
        "*** A:\t\r\nk:\t1\n\n*** a:\t\r\nnote:\tby hand\n\n\n\n",
        "*** A:\t\r\nk:\t1\nk:\t2\n\n\n\n",
    };
    for (const QByteArray& bytes : files) {
        writeBytes(path("f.txt"), bytes);
        const Result result = ovtool(args("format|--quiet|f.txt"));
        EXPECT_EQ(result.exitCode, 7) << bytes.constData();
        EXPECT_TRUE(result.err.contains("not rewritten")) << result.err.constData();
        EXPECT_EQ(readBytes(path("f.txt")), bytes);
    }
}

TEST_F(ovtoolTest, SetChangesOnlyTheValue)
{
    // The inline comment of the old value stays; a value with its own "#" replaces it.
    succeed("set|c.txt|user input|treatment|Saline");
    const Result hash
        = ovtool(args("set|c.txt|Camera System Info|Stage Temperature|36.5 # cold stage"));
    EXPECT_EQ(hash.exitCode, 0);
    EXPECT_EQ(hash.err,
              "ovtool: c.txt: a \"#\" starts a comment in these files: get will read \"36.5\"; get "
              "--raw reads the whole text\n");
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
    EXPECT_EQ(ovtool(args("add|c.txt|User Input|Weight|21.4 # g|--quiet")).err, QByteArray());
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
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_EQ(result.err, "ovtool: c.txt: cannot write: File too large\n");
    EXPECT_EQ(readBytes(path("c.txt")), m_sample);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files), files) << "no temporary file is left";
}

TEST_F(ovtoolTest, AReadOnlyFileIsNotWritten)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root writes a read-only file";
    ASSERT_TRUE(QFile::setPermissions(path("c.txt"), QFile::ReadOwner));
    const Result result = ovtool(args("set|c.txt|User Input|User|Ana"));
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_EQ(result.err, "ovtool: c.txt: cannot open for writing: Permission denied\n");
    EXPECT_EQ(readBytes(path("c.txt")), m_sample);
}

TEST_F(ovtoolTest, ALockedFileWaitsThenFails)
{
    CPLFileEditor holder(path("c.txt"));
    ASSERT_EQ(holder.open(), PL_SUCCESS);
    const Result result = ovtool(args("set|c.txt|User Input|User|Ana"));
    holder.cancel();
    EXPECT_EQ(result.exitCode, 6);
    EXPECT_EQ(result.err,
              QByteArray("ovtool: " + path("c.txt.lock").toLocal8Bit()
                         + ": the file is locked by another editor (waited 5 s for it)\n"));
    EXPECT_EQ(readBytes(path("c.txt")), m_sample);
}

// A signal that ends an edit waiting for the file (locked itself by another writer, after the
// edit took the lock file) leaves no lock file behind, and the file as it was.
TEST_F(ovtoolTest, ASignalEndsAnEditWithoutLeavingItsLock)
{
    const QString lock = path("c.txt.lock");
    for (const int signal : { SIGTERM, SIGINT, SIGHUP }) {
        const int held = ::open(QFile::encodeName(path("c.txt")).constData(), O_RDWR | O_CLOEXEC);
        ASSERT_EQ(::flock(held, LOCK_EX), 0);
        QProcess process;
        process.setWorkingDirectory(m_dir.path());
        process.start(L1(OVTOOL_PATH), args("set|c.txt|User Input|User|Ana"));
        for (int wait = 0; wait < 300 && !QFileInfo::exists(lock); ++wait)
            ::usleep(10000);
        EXPECT_TRUE(QFileInfo::exists(lock)) << "the edit took its lock: " << signal;
        ::kill(pid_t(process.processId()), signal);
        EXPECT_TRUE(process.waitForFinished(10000));
        ::close(held);
        EXPECT_EQ(process.exitStatus(), QProcess::CrashExit) << signal;
        EXPECT_EQ(process.exitCode(), signal) << "ended by the signal itself";
        EXPECT_FALSE(QFileInfo::exists(lock)) << signal;
        EXPECT_EQ(readBytes(path("c.txt")), m_sample) << signal;
    }
}

TEST_F(ovtoolTest, AFailedCopyOfADicomFileCannotBeWritten)
{
    writeBytes(path("x.dcm"), DICOM_IMAGE + m_sample);
    const QStringList files = QDir(m_dir.path()).entryList(QDir::Files);
    // The first write of the save is the copy of the old bytes into the new file.
    const Result result
        = ovtool(args("set|x.dcm|User Input|User|Ana"), L1("export OVPARSER_FAIL_SYSCALL=write"));
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_EQ(result.err, "ovtool: x.dcm: cannot copy: Input/output error\n");
    EXPECT_EQ(readBytes(path("x.dcm")), DICOM_IMAGE + m_sample);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files), files);
}

// Two editors at once, each setting its own keys: every edit stays, since each reads the
// file under its lock.
TEST_F(ovtoolTest, ConcurrentEditsKeepEveryEdit)
{
    const int edits = 50;
    QByteArray file = "*** S:\tn\r\n";
    for (const char* prefix : { "a", "b" }) {
        for (int i = 1; i <= edits; ++i)
            file += prefix + QByteArray::number(i) + ":\t0\n";
    }
    writeBytes(path("e.txt"), file + "\n\n\n");
    const QString loop = QStringLiteral("for i in $(seq 1 %1); do \"$0\" set e.txt S %2$i $i "
                                        "|| exit 1; done");
    QProcess editors[2];
    const char* prefixes[] = { "a", "b" };
    for (int e = 0; e < 2; ++e) {
        editors[e].setWorkingDirectory(m_dir.path());
        editors[e].start(L1("sh"),
                         { L1("-c"), loop.arg(edits).arg(L1(prefixes[e])), L1(OVTOOL_PATH) });
    }
    for (QProcess& editor : editors) {
        ASSERT_TRUE(editor.waitForFinished(120000));
        EXPECT_EQ(editor.exitCode(), 0) << editor.readAllStandardError().toStdString();
    }
    QByteArray expected = "*** S:\tn\r\n";
    for (const char* prefix : prefixes) {
        for (int i = 1; i <= edits; ++i)
            expected += prefix + QByteArray::number(i) + ":\t" + QByteArray::number(i) + '\n';
    }
    EXPECT_EQ(readBytes(path("e.txt")), expected + "\n\n\n");
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

// A value read from the last complete copy, because the copy after it was cut off, comes
// with a warning that says so, unless --quiet.
TEST_F(ovtoolTest, GetWarnsWhenALaterCopyWasCut)
{
    const QByteArray second = replaced(m_sample, "User:\tKatrin Lenz", "User:\tAna Ruiz");
    writeBytes(path("x.dcm"), DICOM_IMAGE + m_sample + second.left(200));
    const int cutLine = m_sample.count('\n') + 1;
    const Result result = ovtool(args("get|x.dcm|User Input|User"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "Katrin Lenz\n");
    EXPECT_EQ(result.err,
              "ovtool: x.dcm (last metadata copy):" + QByteArray::number(cutLine)
                  + ": a metadata copy begins here that was cut off before its end; "
                    "the last complete copy, before it, was loaded\n");
    EXPECT_EQ(succeed("get|--quiet|x.dcm|User Input|User"), "Katrin Lenz\n");
    // Other warnings (here of a separator other than a colon and a tab) are not get's to give.
    const QByteArray irregular = "*** User Input:\tU\r\nUser:  Jo\n\n\n\n";
    writeBytes(path("x.dcm"), DICOM_IMAGE + irregular);
    const Result other = ovtool(args("get|x.dcm|User Input|User"));
    EXPECT_EQ(other.out, "Jo\n");
    EXPECT_EQ(other.err, QByteArray());
    EXPECT_NE(ovtool(args("show|x.dcm")).err, QByteArray());
}

TEST_F(ovtoolTest, HelpAndVersion)
{
    const QByteArray toolHelp = succeed("--help");
    for (const char* command : { "show", "get", "set", "add", "unset", "format", "json", "settings",
                                 "labels", "spectral", "browse" }) {
        EXPECT_TRUE(toolHelp.contains(QByteArray("\n  ") + command + ' ')) << command;
        const QByteArray help = succeed(QByteArray(command).append("|--help").constData());
        EXPECT_TRUE(help.startsWith(QByteArray("Usage: ovtool ") + command + " [options] "));
        EXPECT_TRUE(help.contains("\n  --quiet ")) << command;
        EXPECT_TRUE(help.contains("\nExit status:\n  0  success\n")) << command;
        EXPECT_TRUE(help.contains("\n  6  the file is locked by another editor, still after "
                                  "waiting 5 s\n"))
            << command;
    }
    for (const char* command : { "set", "add", "unset", "format" })
        EXPECT_TRUE(
            succeed(QByteArray(command).append("|--help").constData()).contains("\n  --dry-run "))
            << command;
    EXPECT_EQ(succeed("--version"),
              "ovtool " OVPARSER_VERSION_STRING "\novparser library "
                  + CParserLibrary::version().toLatin1() + '\n');
}

} // namespace

// The background library sample: listed, matched with an acquisition, listed for renewal,
// and what the tool says of an index that disagrees and of an acquisition that nothing fits.
TEST_F(ovtoolTest, BkgListsTheLibraryAndFindsTheBackgroundForAnAcquisition)
{
    copyTree("background", L1("background"));
    const struct
    {
        const char* arguments;
        QByteArray out;
    } cases[] = {
        { "bkg|background", golden("bkg-list.txt") },
        { "bkg|--json|background/BkgSummary.txt", golden("bkg-list.json") },
        { "bkg|background|--for|tree/KL20261104142207_001", golden("bkg-for.txt") },
        { "bkg|background|--days|60|--date|2026-11-04", golden("bkg-renewal.txt") },
    };
    for (const auto& c : cases)
        EXPECT_EQ(succeed(c.arguments), c.out) << c.arguments;

    const struct
    {
        const char* arguments;
        int exitCode;
        QByteArray err;
    } failures[] = {
        { "bkg|background|--for|c.txt|--tolerance|0.1", 8,
          "ovtool: c.txt: no background of the library fits the acquisition: temperature "
          "-89.8 C differs by more than 0.1 C from every candidate (closest -90.0 C)\n" },
        { "bkg|background|--for|tree/KL20261105101544_001", 1,
          "ovtool: tree/KL20261105101544_001/ClickInfo.txt: the acquisition has no "
          "\"luminescent image\" section\n" },
        { "bkg|nowhere", 3, "ovtool: nowhere: the folder does not exist\n" },
        { "bkg|background|--days|two", 2,
          "ovtool: --days needs a whole number, 0 or more; see \"ovtool bkg --help\"\n" },
    };
    for (const auto& c : failures) {
        const Result result = ovtool(args(c.arguments));
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments;
        EXPECT_EQ(result.err, c.err) << c.arguments;
        EXPECT_TRUE(result.out.isEmpty()) << c.arguments;
    }

    // An index that lost an entry: the list still shows it, and the index is reported.
    writeBytes(path("background/FLindex.txt"),
               "*** Background Index:\tfluorescent\r\nFL0001:\tFL0001/background.tif\n\n\n");
    const Result result = ovtool(args("bkg|background"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, golden("bkg-list.txt"));
    EXPECT_EQ(result.err,
              QByteArray("ovtool: background/FLindex.txt: lacks the fluorescent entry FL0002\n"
                         "ovtool: background/FLindex.txt: lacks the fluorescent entry FL0003\n"
                         "ovtool: background/FLindex.txt: lacks the fluorescent entry FL0004\n"));
}

// An analysis result: shown from its file or from the folder holding it, the analysis summed
// up first; a k that is not a number and an unknown kinetic operation are said as such.
TEST_F(ovtoolTest, ShowSumsUpAnAnalysisResult)
{
    const QString sample = SAMPLES + L1("analysis/KL20261105101544_001_IM01/AnalyzedClickInfo.txt");
    copy(sample, L1("result/AnalyzedClickInfo.txt"));
    EXPECT_EQ(succeed("show|result"), golden("show-analysis.txt"));
    EXPECT_EQ(succeed("show|result/AnalyzedClickInfo.txt"), golden("show-analysis.txt"));

    writeBytes(path("odd.txt"),
               "*** ClickNumber:\tX_001\r\nClickInfoType:\tKinetic\n\n"
               "*** Analysis Results:\t\r\nImage Math Operation:\tA/B\nImage Math k:\tlots\n"
               "Kinetic Operation:\tSum\nSaturated:\tmaybe\n\n\n\n");
    EXPECT_EQ(succeed("show|odd.txt"),
              QByteArray("Analysis\n"
                         "  Kind:        Kinetic\n"
                         "  Image math:  (k is not a number)\n"
                         "  Kinetic:     (unknown operation)\n"
                         "  Flags:       Saturated ?\n"
                         "\n"
                         "*** ClickNumber: X_001\n"
                         "  ClickInfoType:  Kinetic\n"
                         "\n"
                         "*** Analysis Results:\n"
                         "  Image Math Operation:  A/B\n"
                         "  Image Math k:          lots\n"
                         "  Kinetic Operation:     Sum\n"
                         "  Saturated:             maybe\n"));
    // A folder without an analysis result is still no file.
    ASSERT_TRUE(QDir(m_dir.path()).mkpath(L1("empty")));
    EXPECT_EQ(ovtool(args("show|empty")).exitCode, 3);
}

// Sequences: "ovtool sequence" on a copy of the bundled sequence, its check of the folder, and
// "sequence create"; browse's click type and sequence ID columns.
class ovtoolSequenceTest : public ovtoolTest
{
protected:
    void SetUp() override
    {
        ovtoolTest::SetUp();
        copyTree("sequence", L1("seq"));
    }
    // The sequence folder of the copy, and one of its acquisitions (1 to 4).
    static QString folder() { return L1("seq/SQ20261106101500"); }
    static QString click(int n)
    {
        return folder() + L1("/SQ20261106101500_00") + QString::number(n);
    }
};

TEST_F(ovtoolSequenceTest, ShowsTheSequenceInEachForm)
{
    EXPECT_EQ(succeed("sequence|seq/SQ20261106101500"), golden("sequence.txt"));
    EXPECT_EQ(succeed("sequence|--csv|seq/SQ20261106101500/SequenceInfo.txt"),
              golden("sequence.csv"));
    EXPECT_EQ(succeed("sequence|--json|seq/SQ20261106101500"), golden("sequence.json"));
}

TEST_F(ovtoolSequenceTest, AnIncompleteSequenceExitsWithItsOwnStatus)
{
    ASSERT_TRUE(QFile::remove(path("seq/SQ20261106101500/SQ20261106101500_002/ClickInfo.txt")));
    ASSERT_TRUE(QDir(m_dir.path()).rename(click(4), folder() + L1("/elsewhere")));
    copy(path("c.txt"), folder() + L1("/KL20261104142207_001/ClickInfo.txt"));

    Result result = ovtool(args("sequence|seq/SQ20261106101500"));
    EXPECT_EQ(result.exitCode, 9);
    EXPECT_EQ(result.err, QByteArray());
    const QByteArray checks = "Check: seq/SQ20261106101500/SQ20261106101500_004: listed in the "
                              "sequence; no folder\n"
                              "Check: seq/SQ20261106101500/SQ20261106101500_002: listed in the "
                              "sequence; no ClickInfo.txt\n"
                              "Check: seq/SQ20261106101500/KL20261104142207_001: an acquisition "
                              "the sequence does not list\n"
                              "Check: seq/SQ20261106101500/elsewhere: an acquisition the "
                              "sequence does not list\n";
    EXPECT_TRUE(result.out.endsWith(checks)) << result.out.toStdString();
    EXPECT_EQ(result.out.count("RawData"), 2) << "rows of the two acquisitions there";

    result = ovtool(args("sequence|--csv|seq/SQ20261106101500"));
    EXPECT_EQ(result.exitCode, 9);
    EXPECT_EQ(result.err, QByteArray(checks).replace("Check: ", "ovtool: "));
    EXPECT_EQ(result.out.count("\r\n"), 3) << "the header and two rows";

    result = ovtool(args("sequence|--json|seq/SQ20261106101500"));
    EXPECT_EQ(result.exitCode, 9);
    const QJsonObject check = QJsonDocument::fromJson(result.out).object()[L1("check")].toObject();
    EXPECT_EQ(check[L1("missing folders")].toArray().first().toString(),
              L1("SQ20261106101500_004"));
    EXPECT_EQ(check[L1("not listed")].toArray().first().toString(), L1("KL20261104142207_001"));
}

TEST_F(ovtoolSequenceTest, ReportsWhatCannotBeRead)
{
    const struct
    {
        const char* arguments;
        int exitCode;
        const char* err;
    } cases[] = {
        { "sequence|c.txt", 4, "ovtool: c.txt: no \"Sequence\" section\n" },
        { "sequence|tree", 3,
          "ovtool: tree/SequenceInfo.txt: the file cannot be opened: No such file or directory\n" },
        { "sequence|bad.txt", 4,
          "ovtool: bad.txt:6: malformed section header (a header is \"*** \", a key, a colon, "
          "and no \"#\" before the colon)\n" },
        { "sequence|--csv|--json|seq", 2,
          "ovtool: sequence: --csv and --json exclude each other; see \"ovtool sequence "
          "--help\"\n" },
        { "sequence|create|seq", 2,
          "ovtool: sequence create: expected at least 2 arguments (FOLDER ACQUISITION...), got "
          "1; see \"ovtool sequence create --help\"\n" },
    };
    for (const auto& c : cases) {
        const Result result = ovtool(args(c.arguments));
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments;
        EXPECT_EQ(result.err, QByteArray(c.err)) << c.arguments;
    }
}

TEST_F(ovtoolSequenceTest, CreateWritesWhatTheSampleHoldsAndRefusesToOverwrite)
{
    const QByteArray sample = readBytes(path("seq/SQ20261106101500/SequenceInfo.txt"));
    const QString file = folder() + L1("/SequenceInfo.txt");
    ASSERT_TRUE(QFile::remove(path("seq/SQ20261106101500/SequenceInfo.txt")));
    const QStringList create = QStringList { L1("sequence"), L1("create"), folder() }
        << click(1) << click(2) << click(3) << click(4);
    Result result = ovtool(create);
    EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    EXPECT_EQ(readBytes(m_dir.filePath(file)), sample);

    result = ovtool(create);
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_EQ(result.err, "ovtool: " + file.toUtf8() + ": exists already; --force replaces it\n");
    result = ovtool(QStringList(create) << L1("--force") << L1("--id") << L1("Filters"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(readBytes(m_dir.filePath(file)).startsWith("*** Sequence:\tFilters\r\n"));

    copy(path("c.txt"), L1("renamed/ClickInfo.txt"));
    result = ovtool(args("sequence|create|--force|seq/SQ20261106101500|renamed"));
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_EQ(result.err,
              QByteArray("ovtool: renamed: the acquisition folder is not named after its click "
                         "number\n"));
    result = ovtool(args("sequence|create|--force|seq/SQ20261106101500|tree"));
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err,
              QByteArray("ovtool: tree: the file cannot be opened: No such file or "
                         "directory\n"));
}

TEST_F(ovtoolSequenceTest, BrowseShowsClickTypesAndSequences)
{
    // An analysis beside an acquisition of the sequence, and an image-math result alone.
    copy(DATA + L1("analyzed-single.txt"), click(3) + L1("/AnalyzedClickInfo.txt"));
    copy(DATA + L1("analyzed-math.txt"), L1("seq/IM20261106120000_001/AnalyzedClickInfo.txt"));
    EXPECT_EQ(succeed("browse|--sort|Click Type|seq"), golden("browse-sequence.txt"));
}
