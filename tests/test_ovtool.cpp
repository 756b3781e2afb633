// Runs the built ovtool on copies of the sample and of the inputs in tests/data/ovtool, and
// checks its output against the golden files there, its exit statuses, its one-line error
// reports, and the exact bytes that set and add leave in the file.

#include "ParserLibrary.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

// Failures show bytes and JSON as text.
void PrintTo(const QByteArray& bytes, std::ostream* os)
{
    *os << '"' << bytes.toStdString() << '"';
}

void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}

void PrintTo(const QJsonObject& object, std::ostream* os)
{
    *os << QJsonDocument(object).toJson().toStdString();
}

namespace {

QString L1(const char* text)
{
    return QString::fromLatin1(text);
}

const QString SAMPLE = L1(OVPARSER_SAMPLES "/KL20261104142207_001/ClickInfo.txt");
const QString DATA = L1(OVPARSER_TEST_DATA "/ovtool/");

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray replaced(QByteArray bytes, const QByteArray& before, const QByteArray& after)
{
    EXPECT_TRUE(bytes.contains(before)) << before.toStdString();
    return bytes.replace(before, after);
}

struct Result
{
    int exitCode = -1; // -1 when the tool did not exit normally
    QByteArray out;
    QByteArray err;
};

// The test's files: copies of the sample ("c.txt") and of the annotated input ("annotated.txt")
// in a temporary folder, which is also the tool's working folder, so reports name them as given.
class ovtoolTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_sample = readBytes(SAMPLE);
        m_annotated = readBytes(DATA + L1("annotated.txt"));
        writeBytes(path("c.txt"), m_sample);
        writeBytes(path("annotated.txt"), m_annotated);
    }

    QString path(const char* name) const { return m_dir.filePath(L1(name)); }

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
    QByteArray succeed(const QStringList& arguments) const
    {
        const Result result = ovtool(arguments);
        EXPECT_EQ(result.exitCode, 0) << arguments.join(L1(" ")).toStdString();
        EXPECT_EQ(result.err, QByteArray());
        return result.out;
    }

    QTemporaryDir m_dir;
    QByteArray m_sample;
    QByteArray m_annotated;
};

// Copies of the bundled acquisitions in "tree/", and in "broken/" the same with one
// acquisition whose section header is malformed.
class ovtoolBrowseTest : public ovtoolTest
{
protected:
    void SetUp() override
    {
        ovtoolTest::SetUp();
        QStringList acquisitions;
        for (const QString& folder :
             QDir(L1(OVPARSER_SAMPLES)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            if (QFile::exists(L1(OVPARSER_SAMPLES "/") + folder + L1("/ClickInfo.txt")))
                acquisitions += folder;
        }
        ASSERT_EQ(acquisitions.size(), 3);
        for (const char* tree : { "tree", "broken" }) {
            for (const QString& acquisition : acquisitions) {
                const QString folder = L1(tree) + L1("/") + acquisition;
                ASSERT_TRUE(QDir(m_dir.path()).mkpath(folder));
                writeBytes(
                    m_dir.filePath(folder + L1("/ClickInfo.txt")),
                    readBytes(L1(OVPARSER_SAMPLES "/") + acquisition + L1("/ClickInfo.txt")));
            }
        }
        ASSERT_TRUE(QDir(m_dir.path()).mkpath(L1("broken/sub/AB20261106000000_001")));
        writeBytes(path("broken/sub/AB20261106000000_001/ClickInfo.txt"),
                   "*** ClickNumber:\tAB20261106000000_001\n\n*** photographic image # x:\ty\n");
    }
};

TEST_F(ovtoolBrowseTest, OutputMatchesTheGoldenFiles)
{
    const struct
    {
        QStringList arguments;
        const char* golden;
    } cases[] = {
        { { L1("browse"), L1("tree") }, "browse-table.txt" },
        { { L1("browse"), L1("--csv"), L1("tree") }, "browse.csv" },
        { { L1("browse"), L1("--json"), L1("tree/") }, "browse.json" },
        { { L1("browse"), L1("--sort"), L1("BINNING"), L1("tree") }, "browse-sort-binning.txt" },
        { { L1("browse"), L1("--sort"), L1("Date and Time"), L1("--reverse"), L1("--csv"),
            L1("tree") },
          "browse-sort-date-reverse.csv" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(succeed(c.arguments), readBytes(DATA + L1(c.golden))) << c.golden;
}

TEST_F(ovtoolBrowseTest, MalformedAcquisitionIsReportedAndLeftOut)
{
    const Result result = ovtool({ L1("browse"), L1("broken") });
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "ovtool: broken/sub/AB20261106000000_001/ClickInfo.txt: line 3: malformed section "
              "header (a header is \"*** \", a key, a colon, and no \"#\" before the colon); "
              "left out\n");
    EXPECT_EQ(result.out, readBytes(DATA + L1("browse-table.txt")).replace("tree/", "broken/"));
}

TEST_F(ovtoolBrowseTest, UsageErrors)
{
    const struct
    {
        QStringList arguments;
        int exitCode;
        QByteArray err;
    } cases[] = {
        { { L1("browse"), L1("--sort"), L1("Gain"), L1("tree") },
          2,
          "ovtool: browse: no column \"Gain\"; see \"ovtool browse --help\"\n" },
        { { L1("browse"), L1("--csv"), L1("--json"), L1("tree") },
          2,
          "ovtool: browse: --csv and --json exclude each other; see \"ovtool browse --help\"\n" },
        { { L1("browse"), L1("--reverse"), L1("tree") },
          2,
          "ovtool: browse: --reverse needs --sort; see \"ovtool browse --help\"\n" },
        { { L1("browse"), L1("c.txt") }, 1, "ovtool: c.txt: not a folder\n" },
        { { L1("browse"), L1("missing") }, 1, "ovtool: missing: not a folder\n" },
    };
    for (const auto& c : cases) {
        const Result result = ovtool(c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments.join(L1(" ")).toStdString();
        EXPECT_EQ(result.err, c.err);
        EXPECT_EQ(result.out, QByteArray());
    }
}

TEST_F(ovtoolTest, OutputMatchesTheGoldenFiles)
{
    const struct
    {
        QStringList arguments;
        const char* golden;
    } cases[] = {
        { { L1("show"), SAMPLE }, "show-sample.txt" },
        { { L1("show"), L1("--raw"), L1("--comments"), L1("annotated.txt") },
          "show-raw-comments-annotated.txt" },
        { { L1("json"), L1("--comments"), L1("annotated.txt") }, "json-comments-annotated.json" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(succeed(c.arguments), readBytes(DATA + L1(c.golden))) << c.golden;
}

TEST_F(ovtoolTest, SettingsAndLabelsMatchTheGoldenFiles)
{
    // Copies of the samples, so that the output names them by relative paths.
    const QString samples = L1(OVPARSER_SAMPLES "/settings/");
    ASSERT_TRUE(QDir(m_dir.path()).mkdir(L1("Presets")));
    for (const char* name :
         { "ROISettings.txt", "UserLabelNames.txt", "Presets/Custom-Dorsal.txt",
           "Presets/Custom-Ventral.TXT", "Presets/Standard.Txt", "Presets/notes.md" })
        writeBytes(path(name), readBytes(samples + L1(name)));
    const struct
    {
        QStringList arguments;
        const char* golden;
    } cases[] = {
        { { L1("settings"), L1("--tag"), L1("ROI File"), L1("ROISettings.txt") },
          "settings-roi.txt" },
        { { L1("settings"), L1("--section-names"), L1("--filter"), L1("Preset"), L1("--json"),
            L1("ROISettings.txt") },
          "settings-section-names.json" },
        { { L1("settings"), L1("--filter"), L1("Custom"), L1("Presets") },
          "settings-folder-custom.txt" },
        { { L1("settings"), L1("Presets") }, "settings-folder.txt" },
        { { L1("labels"), L1("UserLabelNames.txt") }, "labels.txt" },
        { { L1("labels"), L1("--json"), L1("UserLabelNames.txt") }, "labels.json" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(succeed(c.arguments), readBytes(DATA + L1(c.golden))) << c.golden;
}

TEST_F(ovtoolTest, JsonListsCommentLinesOnlyWhenAsked)
{
    QJsonObject expected
        = QJsonDocument::fromJson(readBytes(DATA + L1("json-comments-annotated.json"))).object();
    QJsonArray sections = expected.value(L1("sections")).toArray();
    for (auto section = sections.begin(); section != sections.end(); ++section) {
        QJsonObject object = section->toObject();
        QJsonArray entries;
        const QJsonArray all = object.value(L1("entries")).toArray();
        for (const QJsonValue& entry : all) {
            if (!entry.toObject().contains(L1("comment")))
                entries.append(entry);
        }
        object.insert(L1("entries"), entries);
        *section = object;
    }
    expected.insert(L1("sections"), sections);
    EXPECT_EQ(QJsonDocument::fromJson(succeed({ L1("json"), L1("annotated.txt") })).object(),
              expected);
}

TEST_F(ovtoolTest, GetPrintsTheValueAlone)
{
    const struct
    {
        QStringList arguments;
        QByteArray out;
    } cases[] = {
        { { L1("get"), L1("c.txt"), L1("user input"), L1("TREATMENT") }, "Vehicle\n" },
        { { L1("get"), L1("--raw"), L1("c.txt"), L1("User Input"), L1("Treatment") },
          "Vehicle\t# saline, 10 ml/kg i.p.\n" },
        { { L1("get"), L1("c.txt"), L1("User Input"), L1("Comment2") }, "\n" },
        // Latin-1 in the file, UTF-8 on the terminal.
        { { L1("get"), L1("annotated.txt"), L1("User Input"), L1("User") },
          "Ren\xc3\xa9"
          "e Casta\xc3\xb1o\n" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(succeed(c.arguments), c.out) << c.arguments.join(L1(" ")).toStdString();
}

TEST_F(ovtoolTest, EachFailureIsOneLineWithItsExitStatus)
{
    writeBytes(path("bad.txt"),
               "\n\n*** ClickNumber:\tX1\r\nv:\t1\n\n*** Broken # note: here\r\nk:\tv\n");
    writeBytes(path("noclick.txt"), "*** ClickNumber:\t\r\nv:\t1\n\n");
    writeBytes(path("none.txt"), "just text\nand more: text\n");
    writeBytes(path("nul.txt"), m_sample + QByteArray("\0tail", 5));
    writeBytes(path("twice.txt"), "*** A:\tx\r\nk:\tv\n\n*** a:\ty\r\nj:\tw\n\n\n");
    writeBytes(path("noblank.txt"), "***A:\tx\r\nk:\tv\n\n*** B:\ty\r\nj:\tw\n\n\n");
    const QByteArray noSections
        = "ovtool: none.txt: the file holds no sections (no line begins with \"***\")\n";
    const QByteArray noKey = "ovtool: c.txt: section \"User Input\" has no key ";
    const struct
    {
        QStringList arguments;
        int exitCode;
        QByteArray err;
    } cases[] = {
        { { L1("show"), L1("missing.txt") }, 1, "ovtool: missing.txt: cannot open the file\n" },
        { { L1("show"), L1("bad.txt") },
          1,
          "ovtool: bad.txt:6: malformed section header (a header is \"*** \", a key, a colon, and "
          "no "
          "\"#\" before the colon)\n" },
        { { L1("json"), L1("noclick.txt") },
          1,
          "ovtool: noclick.txt:1: section header without a key, or a \"ClickNumber\" section "
          "without "
          "a click number\n" },
        { { L1("show"), L1("none.txt") }, 1, noSections },
        { { L1("json"), L1("none.txt") }, 1, noSections },
        { { L1("get"), L1("none.txt"), L1("a"), L1("b") }, 1, noSections },
        { { L1("set"), L1("none.txt"), L1("a"), L1("b"), L1("c") }, 1, noSections },
        { { L1("add"), L1("none.txt"), L1("a"), L1("b"), L1("c") }, 1, noSections },
        { { L1("get"), L1("c.txt"), L1("Foo"), L1("Bar") },
          1,
          "ovtool: c.txt: no section \"Foo\"\n" },
        { { L1("set"), L1("c.txt"), L1("Foo"), L1("Bar"), L1("x") },
          1,
          "ovtool: c.txt: no section \"Foo\" (use \"ovtool add\" to add it)\n" },
        { { L1("set"), L1("c.txt"), L1("User Input"), L1("Bar"), L1("x") },
          1,
          noKey + "\"Bar\" (use \"ovtool add\" to add it)\n" },
        // A comment line is not a key, though the library keys it "CommentLine 0".
        { { L1("set"), L1("c.txt"), L1("User Input"), L1("CommentLine 0"), L1("x") },
          1,
          noKey + "\"CommentLine 0\" (use \"ovtool add\" to add it)\n" },
        { { L1("add"), L1("c.txt"), L1("user input"), L1("USER"), L1("x") },
          1,
          "ovtool: c.txt: section \"user input\" already has key \"USER\" (use \"ovtool set\" to "
          "change it)\n" },
        // Files that a save would not write back as they were read are left alone.
        { { L1("set"), L1("nul.txt"), L1("User Input"), L1("User"), L1("x") },
          1,
          "ovtool: nul.txt: line 101: a NUL byte ends the text; what follows it is not read; the "
          "file is left as it was\n" },
        { { L1("set"), L1("twice.txt"), L1("A"), L1("k"), L1("v2") },
          1,
          "ovtool: twice.txt: line 4: section \"a\" repeats the key of a section before it and "
          "is left out; the file is left as it was\n" },
        { { L1("add"), L1("noblank.txt"), L1("B"), L1("n"), L1("1") },
          1,
          "ovtool: noblank.txt: line 1: the section header \"***A:\tx\" has no blank after "
          "\"***\", so it is also kept as a line before the first section and written twice; "
          "the file is left as it was\n" },
        // Text that the file cannot hold, or that would read back differently.
        { { L1("add"), L1("c.txt"), L1("User Input"), L1("Dose"),
            QString::fromUtf8("5 \xe2\x82\xac") },
          1,
          "ovtool: c.txt: the value \"5 \xe2\x82\xac\" holds characters outside Latin-1\n" },
        { { L1("add"), L1("c.txt"), L1("User Input"), L1("Dose"), L1("5\nmg") },
          1,
          "ovtool: c.txt: the value holds a line break\n" },
        { { L1("add"), L1("c.txt"), L1("User Input"), L1("Dose:mg"), L1("5") },
          1,
          "ovtool: c.txt: the key \"Dose:mg\" holds a colon, which ends a key\n" },
        { { L1("add"), L1("c.txt"), L1("New # x"), L1("k"), L1("v") },
          1,
          "ovtool: c.txt: the section key \"New # x\" holds a \"#\", which starts a comment\n" },
        { { L1("set"), L1("c.txt"), L1("User Input"), L1("User"), L1(" Ana") },
          1,
          "ovtool: c.txt: the value \" Ana\" begins or ends with white space, which reading "
          "drops\n" },
        { { L1("settings"), L1("missing.txt") }, 1, "ovtool: missing.txt: cannot open the file\n" },
        { { L1("settings"), L1("none.txt") }, 1, noSections },
        { { L1("labels"), L1("c.txt") },
          1,
          "ovtool: c.txt: the file holds no label-name sets (no \"*** User Label Name Set:\" "
          "section)\n" },
        // Usage errors.
        { { L1("settings"), L1("--tag"), L1("ROI File"), L1(".") },
          2,
          "ovtool: settings: --tag applies to a settings file, not to a folder; see \"ovtool "
          "settings --help\"\n" },
        { {}, 2, "ovtool: no command given; see \"ovtool --help\"\n" },
        { { L1("frobnicate"), L1("c.txt") },
          2,
          "ovtool: unknown command \"frobnicate\"; see \"ovtool --help\"\n" },
        { { L1("get"), L1("c.txt"), L1("User Input") },
          2,
          "ovtool: get: expected 3 arguments (FILE SECTION KEY), got 2; see \"ovtool get "
          "--help\"\n" },
        { { L1("show"), L1("c.txt"), L1("annotated.txt") },
          2,
          "ovtool: show: expected 1 argument (FILE), got 2; see \"ovtool show --help\"\n" },
        { { L1("show"), L1("--bogus"), L1("c.txt") },
          2,
          "ovtool: show: Unknown option 'bogus'; see \"ovtool show --help\"\n" },
    };
    for (const auto& c : cases) {
        const Result result = ovtool(c.arguments);
        const std::string command = c.arguments.join(L1(" ")).toStdString();
        EXPECT_EQ(result.exitCode, c.exitCode) << command;
        EXPECT_EQ(result.err, c.err) << command;
        EXPECT_EQ(result.out, QByteArray()) << command;
    }
    EXPECT_EQ(readBytes(path("c.txt")), m_sample);
    EXPECT_EQ(readBytes(path("nul.txt")), m_sample + QByteArray("\0tail", 5));
    EXPECT_EQ(readBytes(path("twice.txt")), "*** A:\tx\r\nk:\tv\n\n*** a:\ty\r\nj:\tw\n\n\n");
}

TEST_F(ovtoolTest, VerboseAlsoPrintsTheLibraryDiagnostics)
{
    writeBytes(path("bad.txt"), "*** Broken\r\nk:\tv\n");
    const Result result = ovtool({ L1("--verbose"), L1("show"), L1("bad.txt") });
    EXPECT_EQ(result.exitCode, 1);
    const QList<QByteArray> lines = result.err.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 2) << result.err.toStdString();
    EXPECT_TRUE(lines.first().startsWith("ovtool: ovparser: ")) << lines.first().toStdString();
    EXPECT_TRUE(lines.last().startsWith("ovtool: bad.txt:1: malformed section header"));
}

TEST_F(ovtoolTest, SetChangesOnlyTheValue)
{
    // The inline comment of the old value stays; a value with its own "#" replaces it.
    succeed({ L1("set"), L1("c.txt"), L1("user input"), L1("treatment"), L1("Saline") });
    succeed({ L1("set"), L1("c.txt"), L1("Camera System Info"), L1("Stage Temperature"),
              L1("36.5 # cold stage") });
    QByteArray expected = replaced(m_sample, "Treatment:\tVehicle\t#", "Treatment:\tSaline\t#");
    expected = replaced(expected, "37.0\t# warmed stage", "36.5 # cold stage");
    EXPECT_EQ(readBytes(path("c.txt")), expected);

    // Leading lines and comment lines stay; the value is written in Latin-1.
    succeed({ L1("set"), L1("annotated.txt"), L1("User Input"), L1("User"),
              QString::fromUtf8("Zo\xc3\xab \xc3\x85ngstr\xc3\xb6m") });
    EXPECT_EQ(readBytes(path("annotated.txt")),
              replaced(m_annotated,
                       "Ren\xe9"
                       "e Casta\xf1o",
                       "Zo\xeb \xc5ngstr\xf6m"));
}

TEST_F(ovtoolTest, AddAppendsTheKeyAndItsSection)
{
    succeed({ L1("add"), L1("c.txt"), L1("User Input"), L1("Weight"), L1("21.4 # g") });
    succeed({ L1("add"), L1("c.txt"), L1("Scale"), L1("Units"), L1("cm") });
    QByteArray expected
        = replaced(m_sample, "User ID:\tklenz\n", "User ID:\tklenz\nWeight:\t21.4 # g\n");
    // The new section, with an empty name, goes before the two line feeds that end the file.
    expected.chop(2);
    expected += "*** Scale:\t\r\nUnits:\tcm\n\n\n\n";
    EXPECT_EQ(readBytes(path("c.txt")), expected);
    EXPECT_EQ(succeed({ L1("get"), L1("c.txt"), L1("User Input"), L1("Weight") }), "21.4\n");
}

TEST_F(ovtoolTest, AFailedSaveLeavesTheFileAsItWas)
{
    // A file size limit of one block, below the sample's size, makes the write fail.
    const Result result = ovtool(
        { L1("set"), L1("c.txt"), L1("User Input"), L1("User"), L1("Ana") }, L1("ulimit -f 1"));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "ovtool: c.txt: cannot write the file; it is left as it was\n");
    EXPECT_EQ(readBytes(path("c.txt")), m_sample);
    EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files),
              (QStringList { L1("annotated.txt"), L1("c.txt") }))
        << "no temporary file is left";
}

TEST_F(ovtoolTest, DicomMetadataIsAppendedAndTheLastCopyRead)
{
    const QByteArray image("\0\0\0\0DICM\x02\0\x10\0pixels\xff\x7f\0", 19);
    writeBytes(path("x.dcm"), image + m_sample);
    EXPECT_EQ(succeed({ L1("get"), L1("x.dcm"), L1("User Input"), L1("User") }), "Katrin Lenz\n");

    succeed({ L1("set"), L1("x.dcm"), L1("User Input"), L1("User"), L1("Ana Ruiz") });
    const QByteArray second = replaced(m_sample, "User:\tKatrin Lenz", "User:\tAna Ruiz");
    EXPECT_EQ(readBytes(path("x.dcm")), image + m_sample + second);
    EXPECT_EQ(succeed({ L1("get"), L1("x.dcm"), L1("User Input"), L1("User") }), "Ana Ruiz\n");

    succeed({ L1("add"), L1("x.dcm"), L1("Scale"), L1("Units"), L1("cm") });
    EXPECT_EQ(succeed({ L1("get"), L1("x.dcm"), L1("Scale"), L1("Units") }), "cm\n");
    EXPECT_EQ(succeed({ L1("get"), L1("x.dcm"), L1("User Input"), L1("User") }), "Ana Ruiz\n");
    EXPECT_TRUE(readBytes(path("x.dcm")).startsWith(image + m_sample + second));

    writeBytes(path("bare.dcm"), image);
    const Result bare = ovtool({ L1("show"), L1("bare.dcm") });
    EXPECT_EQ(bare.exitCode, 1);
    EXPECT_EQ(bare.err,
              "ovtool: bare.dcm: the file holds no sections (no line begins with \"***\")\n");
}

TEST_F(ovtoolTest, SpectralSummaries)
{
    writeBytes(path("s.xml"), readBytes(L1(OVPARSER_SAMPLES "/spectral/SpectralAnalysis.xml")));
    writeBytes(path("spectral-counts.xml"), readBytes(DATA + L1("spectral-counts.xml")));
    writeBytes(path("bad.xml"), "<a>\n  <b></a>\n");
    writeBytes(path("other.xml"), "<a/>");
    writeBytes(path("part.xml"),
               "<OV3.0.SpectralAnalysis><OV3.0.SpectralAnalysis.Attributes/>"
               "</OV3.0.SpectralAnalysis>");
    const struct
    {
        QStringList arguments;
        const char* golden;
    } cases[] = {
        { { L1("spectral"), L1("s.xml") }, "spectral-sample.txt" },
        { { L1("spectral"), L1("--json"), L1("s.xml") }, "spectral-sample.json" },
        // Counts that differ from those declared; the file indented over many lines.
        { { L1("spectral"), L1("spectral-counts.xml") }, "spectral-counts.txt" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(succeed(c.arguments), readBytes(DATA + L1(c.golden))) << c.golden;

    const struct
    {
        const char* file;
        QByteArray err;
    } failures[] = {
        { "missing.xml", "ovtool: missing.xml: cannot open the file\n" },
        { "bad.xml", "ovtool: bad.xml:2:9: malformed XML: Opening and ending tag mismatch.\n" },
        { "other.xml",
          "ovtool: other.xml: not a spectral-analysis document (its root element is not "
          "\"OV3.0.SpectralAnalysis\")\n" },
        { "part.xml",
          "ovtool: part.xml: incomplete spectral-analysis document (it lacks its attributes, its "
          "click list or its linear fit)\n" },
    };
    for (const auto& f : failures) {
        const Result result = ovtool({ L1("spectral"), L1(f.file) });
        EXPECT_EQ(result.exitCode, 1) << f.file;
        EXPECT_EQ(result.err, f.err) << f.file;
        EXPECT_EQ(result.out, QByteArray()) << f.file;
    }
}

TEST_F(ovtoolTest, HelpAndVersion)
{
    const QByteArray toolHelp = succeed({ L1("--help") });
    for (const char* command : { "show", "get", "set", "add", "json", "settings", "labels", "spectral" }) {
        EXPECT_TRUE(toolHelp.contains(QByteArray("\n  ") + command + ' ')) << command;
        const QByteArray help = succeed({ L1(command), L1("--help") });
        EXPECT_TRUE(help.startsWith(QByteArray("Usage: ovtool ") + command + " [options] "));
        EXPECT_TRUE(help.contains("\nExit status:\n")) << command;
    }
    EXPECT_EQ(succeed({ L1("--version") }),
              "ovtool " OVPARSER_VERSION_STRING "\novparser library "
                  + CParserLibrary::version().toLatin1() + '\n');
}

} // namespace
