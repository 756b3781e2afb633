#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <tuple>

#include <QDir>
#include <QTemporaryDir>

#include <iterator>

namespace {

class ClickInfoTest : public ::testing::Test
{
protected:
    QString path(const char* name) const { return m_dir.filePath(L1(name)); }

    // Writes `bytes` to a file of the temporary folder and loads it into `doc`.
    int load(CPLClickInfo& doc, const QByteArray& bytes, const char* name = "ClickInfo.txt")
    {
        writeBytes(path(name), bytes);
        return doc.loadClickInfo(path(name), false);
    }

    QTemporaryDir m_dir;
};

// What the library writes for `bytes` after one load.
QByteArray normalised(const QByteArray& bytes)
{
    CPLClickInfo doc;
    QTemporaryDir dir;
    const QString file = dir.filePath(L1("in.txt"));
    writeBytes(file, bytes);
    EXPECT_EQ(doc.loadClickInfo(file, false), PL_SUCCESS);
    return doc.getClickInfoData().toLatin1();
}

// A file as people edit it: a leading line, comments, a repeated key, an inline comment,
// trailing blanks and blank lines.
const QByteArray kEdited = "Orvane ClickInfo  \n\n"
                           "*** ClickNumber:\tKL20260101_001\nOrvane Version:\t4.2.1\n"
                           "*** User Input:\tOrvane Universal # default set\n"
                           "# typed at the instrument\nUser:  \tKatrin   \nView:\tDorsal\n\n"
                           "view:\tVentral\nTreatment:\tVehicle # saline\n"
                           "*** Graph Controls:\nGamma:\t1.5\n";

// What the library writes for it.
const QByteArray kEditedSaved
    = "Orvane ClickInfo\n\n"
      "*** ClickNumber:\tKL20260101_001\r\nOrvane Version:\t4.2.1\n\n"
      "*** User Input:\tOrvane Universal # default set\r\n# typed at the instrument\n"
      "User:\tKatrin\nView:\tVentral\n\nview:\tVentral\nTreatment:\tVehicle # saline\n\n"
      "*** Graph Controls:\t\r\nGamma:\t1.5\n\n"
      "\n\n";

} // namespace

TEST_F(ClickInfoTest, SavesWhatItLoadedInTheLibraryFormWhateverTheLineEnds)
{
    for (const char* lineEnd : { "\n", "\r\n", "\r" })
        EXPECT_EQ(normalised(QByteArray(kEdited).replace("\n", lineEnd)), kEditedSaved)
            << int(lineEnd[0]);
}

TEST_F(ClickInfoTest, FilesTheLibraryWroteRoundTripByteForByte)
{
    const QByteArray sample
        = readBytes(QDir(L1(OVPARSER_SAMPLES)).filePath(L1("KL20261104142207_001/ClickInfo.txt")));
    ASSERT_FALSE(sample.isEmpty());
    EXPECT_EQ(normalised(sample), sample);
    EXPECT_EQ(normalised(kEditedSaved), kEditedSaved);
}

TEST_F(ClickInfoTest, MalformedHeadersStopTheLoadWithTheirLine)
{
    struct Case
    {
        QByteArray text;
        int status;
        int line;
    };
    const Case cases[] = {
        { "*** A:\tx\nk:\tv\n*** No colon here\nk:\tv\n", PL_MALFORMED_SECTION_HEADER, 3 },
        { "\n\n*** A:\tx\n*** B # note:\tx\n", PL_MALFORMED_SECTION_HEADER, 4 },
        { "\r\n\r\n\r*** A:\tx\n*** :\tempty key\n", PL_NOTHING_TO_WORK_ON, 5 },
        { "*** A:\tx\n*** ClickNumber:\t \nk:\tv\n", PL_NOTHING_TO_WORK_ON, 2 },
    };
    for (const Case& c : cases) {
        CPLClickInfo doc;
        EXPECT_EQ(load(doc, c.text), c.status) << c.text.constData();
        EXPECT_EQ(doc.getLastErrorLine(), c.line) << c.text.constData();
        // The sections before the bad one stay.
        EXPECT_TRUE(doc.isSectionPresent(L1("a"))) << c.text.constData();
    }
}

TEST_F(ClickInfoTest, FirstSectionWithAKeyWinsAndLoadingDoesNotClear)
{
    CPLClickInfo doc;
    ASSERT_EQ(load(doc, "*** Gain:\tfirst\nk:\t1\n*** GAIN:\tsecond\nk:\t2\n"), PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(), QStringList { L1("Gain") });

    ASSERT_EQ(load(doc, "lead\n*** gain:\tthird\nk:\t3\n*** Other:\nx:\t1\n", "second.txt"),
              PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(), (QStringList { L1("Gain"), L1("Other") }));
    EXPECT_EQ((*doc[L1("Gain")])[L1("k")], L1("1"));
    EXPECT_EQ(doc.getLeadingLines(), QStringList { L1("lead") });
    EXPECT_EQ(doc.getFileSectionCount(), 2);
}

TEST_F(ClickInfoTest, WarnsOfWhatSavingWouldNotWriteBackAsItStood)
{
    static const char raw[] = "\nOrvane\n***Lead:\tx\n*** A:\tfirst\n\nk:\tv\n  sh:ifted\n"
                              "CommentLine 9:\tx\n*** a:\tagain\nk:\tw\n\0rest";
    const QByteArray text(raw, sizeof raw - 1);
    CPLClickInfo doc;
    ASSERT_EQ(load(doc, text), PL_SUCCESS);
    // One warning per kind and section, at its first line, with the number of lines.
    using W = CPLLoadWarning;
    const QVector<std::tuple<W::Kind, int, int, QString>> expected {
        { W::BlankLines, 1, 1, QString() },  { W::HeaderInLeadingLines, 3, 1, QString() },
        { W::HeaderForm, 3, 1, L1("Lead") }, { W::LineEnds, 3, 1, L1("Lead") },
        { W::BlankLines, 4, 1, L1("Lead") }, { W::LineEnds, 4, 1, L1("A") },
        { W::BlankLines, 5, 2, L1("A") },    { W::ShiftedKey, 7, 1, L1("A") },
        { W::CommentKey, 8, 1, L1("A") },    { W::RepeatedSection, 9, 1, L1("a") },
        { W::NulByte, 11, 1, QString() },
    };
    QVector<std::tuple<W::Kind, int, int, QString>> found;
    for (const W& warning : doc.getLoadWarningList()) {
        found.append({ warning.kind(), warning.line(), warning.count(), warning.section() });
        EXPECT_TRUE(warning.toString().startsWith(
            QStringLiteral("%1:%2: ").arg(warning.file()).arg(warning.line())));
    }
    EXPECT_EQ(found, expected) << doc.getLoadWarnings().join(L1("\n")).toStdString();
    const QStringList warnings = doc.getLoadWarnings();
    EXPECT_TRUE(warnings.at(7).contains(L1("\"sh:i\""))) << warnings.at(7).toStdString();
    // Text handed in directly is read up to its first NUL too, and says so.
    CPLClickInfo direct;
    ASSERT_EQ(direct.loadTextBuffer(QString::fromLatin1("*** A:\nk:\tv\n\0rest", 17)), PL_SUCCESS);
    EXPECT_EQ(direct.getLoadWarnings().last(),
              L1("line 3: a NUL byte ends the text; what follows it is not read"));
    // A new load starts a new list. A file the library wrote warns only of what it holds
    // twice, naming both lines.
    ASSERT_EQ(load(doc, kEditedSaved, "again.txt"), PL_SUCCESS);
    ASSERT_EQ(doc.getLoadWarnings().size(), 1);
    EXPECT_TRUE(doc.getLoadWarnings().first().endsWith(
        L1("again.txt:11: section \"User Input\": a line repeats the key of a line before it "
           "(\"view\" on line 9); saving writes the last value on every line of the key, and "
           "an edit of it is refused")))
        << doc.getLoadWarnings().first().toStdString();
}

TEST_F(ClickInfoTest, SectionsKeepTheirTextWhateverHappensToTheTextLoaded)
{
    // The sections of a load share its text. A caller's buffer behind QString::fromRawData()
    // may be reused after the load; the sections must not notice.
    QString source = L1("*** A:\tx\nk:\tone # c\nm:\t2\n*** B:\ty\nk:\tthree\n");
    CPLClickInfo doc;
    {
        QVector<QChar> buffer(source.begin(), source.end());
        ASSERT_EQ(doc.loadTextBuffer(QString::fromRawData(buffer.constData(), buffer.size())),
                  PL_SUCCESS);
        buffer.fill(QLatin1Char('x'));
    }
    // Many changes to one section: its own text is compacted now and then.
    for (int i = 0; i < 3000; ++i)
        ASSERT_EQ(doc.setValue(L1("A"), L1("k"), QString::number(i)), PL_SUCCESS);
    CPLSection copy = *doc[L1("B")];
    copy.setValue(L1("k"), L1("changed"));
    EXPECT_EQ(doc.getClickInfoData(),
              L1("*** A:\tx\r\nk:\t2999\t# c\nm:\t2\n\n*** B:\ty\r\nk:\tthree\n\n\n\n"));
}

TEST_F(ClickInfoTest, SectionLookupComparesTheKeyTextNotWhereItIsStored)
{
    // A caller that reuses one buffer for its keys: the second lookup must not be answered
    // by the first one's section.
    CPLClickInfo doc;
    ASSERT_EQ(doc.loadTextBuffer(L1("*** AAAA:\tx\nk:\t1\n*** BBBB:\ty\nk:\t2\n")), PL_SUCCESS);
    QChar buffer[4];
    const auto fill = [&](const char* key) {
        std::transform(key, key + 4, buffer, [](char c) { return QLatin1Char(c); });
        return QString::fromRawData(buffer, 4);
    };
    const auto lookUp = [&](const char* key) { return doc[fill(key)]; };
    EXPECT_EQ(lookUp("AAAA"), doc[L1("aaaa")]);
    EXPECT_EQ(lookUp("BBBB"), doc[L1("bbbb")]);
    ASSERT_NE(doc[L1("aaaa")], doc[L1("bbbb")]);
    EXPECT_EQ(doc.setValue(fill("AAAA"), L1("k"), 7), PL_SUCCESS);
    EXPECT_EQ((*doc[L1("AAAA")])[L1("k")], L1("7"));
    EXPECT_EQ((*doc[L1("BBBB")])[L1("k")], L1("2"));
}

TEST_F(ClickInfoTest, TypedAccessByMissingSectionFailsWithoutWriting)
{
    CPLClickInfo doc;
    ASSERT_EQ(load(doc, "*** Camera System Info:\nBinning:\t4 # hw\n"), PL_SUCCESS);
    int binning = -1;
    QString text = L1("unchanged");
    EXPECT_EQ(doc.getValue(L1("Absent"), L1("Binning"), &binning), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(doc.getValue(L1("Absent"), L1("Binning"), &text), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(doc.getValue(L1("Camera System Info"), L1("Binning"), static_cast<QString*>(nullptr)),
              PL_NULL_ARGUMENT);
    EXPECT_EQ(binning, -1);
    EXPECT_EQ(text, L1("unchanged"));
    EXPECT_EQ(doc.setValue(L1("Absent"), L1("Binning"), 8), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(doc.setValue(L1("camera system info"), L1("Missing"), 8), PL_KEY_NOT_FOUND);

    EXPECT_EQ(doc.setValue(L1("camera system info"), L1("binning"), 8), PL_SUCCESS);
    EXPECT_EQ(doc.getClickInfoData(), L1("*** Camera System Info:\t\r\nBinning:\t8\t# hw\n\n\n\n"));
}

TEST_F(ClickInfoTest, AddRemoveAndOwnership)
{
    CPLClickInfo doc;
    EXPECT_EQ(doc.addSection(nullptr), PL_NULL_ARGUMENT);
    CPLSection noKey;
    EXPECT_EQ(doc.addSection(&noKey), PL_NOTHING_TO_WORK_ON);

    auto* first = new CPLSection(L1("A"), L1("one"));
    ASSERT_EQ(doc.addSection(first), PL_SUCCESS);
    CPLSection duplicate(L1("a"), L1("two")); // not taken: stays ours
    EXPECT_EQ(doc.addSection(&duplicate), PL_SUCCESS);
    EXPECT_EQ(doc[L1("A")], first);
    ASSERT_EQ(doc.addSection(new CPLSection(L1("B"), QString())), PL_SUCCESS);
    ASSERT_EQ(doc.addSection(new CPLSection(L1("C"), QString())), PL_SUCCESS);

    // A section found once and then replaced must not be found again in its stead.
    const QString keyB = L1("B");
    ASSERT_NE(doc[keyB], nullptr);
    EXPECT_EQ(doc.removeSection(keyB), PL_SUCCESS);
    EXPECT_EQ(doc[keyB], nullptr);
    auto* newB = new CPLSection(keyB, L1("new"));
    ASSERT_EQ(doc.addSection(newB), PL_SUCCESS);
    EXPECT_EQ(doc[keyB], newB);

    EXPECT_EQ(doc.removeSection(L1("absent")), PL_SUCCESS);
    EXPECT_EQ(doc.removeSection(L1("b")), PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(), (QStringList { L1("A"), L1("C") }));
    EXPECT_EQ(doc[1], doc[L1("c")]);
    EXPECT_EQ(doc[2], nullptr);
    EXPECT_EQ(doc[-1], nullptr);
    EXPECT_EQ(doc.getSectionCount(nullptr), PL_NULL_ARGUMENT);

    doc.setClickNumber(L1("X"));
    doc.clearData();
    QString clickNumber = L1("unchanged");
    doc.getClickNumber(&clickNumber);
    EXPECT_TRUE(clickNumber.isEmpty());
    EXPECT_EQ(doc.getClickInfoData(), L1("\n\n"));
}

TEST_F(ClickInfoTest, SavingReplacesOrAppendsToDicomFiles)
{
    CPLClickInfo doc;
    ASSERT_EQ(load(doc, "lead\n*** A:\tx\nk:\tv\n"), PL_SUCCESS);
    const QByteArray text = "lead\n*** A:\tx\r\nk:\tv\n\n\n\n";

    writeBytes(path("old.txt"), QByteArray(5000, 'o'));
    ASSERT_EQ(doc.saveClickInfo(path("old.txt")), PL_SUCCESS);
    EXPECT_EQ(readBytes(path("old.txt")), text);

    const QByteArray image("DICM\0\0\x01\x02", 8);
    for (const char* name : { "image.dcm", "upper.DCM" })
        writeBytes(path(name), image);
    ASSERT_EQ(doc.saveClickInfo(path("image.dcm")), PL_SUCCESS);
    ASSERT_EQ(doc.saveClickInfo(path("image.dcm")), PL_SUCCESS);
    EXPECT_EQ(readBytes(path("image.dcm")), image + text + text);
    // The extension is compared in any case.
    ASSERT_EQ(doc.saveClickInfo(path("upper.DCM")), PL_SUCCESS);
    EXPECT_EQ(readBytes(path("upper.DCM")), image + text);

    EXPECT_EQ(doc.saveClickInfo(path("no/such/folder/ClickInfo.txt")), PL_FILE_OPEN_FAILED);
}

TEST_F(ClickInfoTest, LoadsTheLastMetadataCopyOfADicomBuffer)
{
    CPLClickInfo first;
    ASSERT_EQ(load(first, "*** ClickNumber:\tC1\nv:\t1\n*** A:\nk:\told\n"), PL_SUCCESS);
    // Image bytes: a header before the last NUL belongs to them, and the last byte is glued
    // to the first metadata line.
    QByteArray dicom("\0\0DICM*** B:\n\x02\0\x10\x7f", 17);
    const QByteArray copy1 = first.getClickInfoData().toLatin1();
    first.setValue(L1("A"), L1("k"), L1("new"));
    const QByteArray copy2 = first.getClickInfoData().toLatin1();
    dicom += copy1 + copy2;

    CPLClickInfo doc;
    ASSERT_EQ(doc.loadClickInfoDcm(dicom.constData(), dicom.size()), PL_SUCCESS);
    EXPECT_EQ(doc.getClickInfoData().toLatin1(), copy2);

    EXPECT_EQ(doc.loadClickInfoDcm(nullptr, 4), PL_NULL_ARGUMENT);
    EXPECT_EQ(doc.loadClickInfoDcm(dicom.constData(), -1), PL_INVALID_ARGUMENT);
    EXPECT_EQ(doc.loadClickInfoDcm("\0\0pixels", 8), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(doc.loadClickInfoDcm("*** A:\n\0tail", 12), PL_NOTHING_TO_WORK_ON);

    // Without a NUL the whole buffer is metadata.
    CPLClickInfo plain;
    ASSERT_EQ(plain.loadClickInfoDcm(copy1.constData(), copy1.size()), PL_SUCCESS);
    EXPECT_EQ(plain.getClickInfoData().toLatin1(), copy1);
}

TEST_F(ClickInfoTest, ACopyCutOffByACrashIsNeverTakenForTheDocument)
{
    CPLClickInfo first;
    ASSERT_EQ(load(first, "*** ClickNumber:\tC1\nv:\t1\n*** A:\nk:\told\n\n\nm:\t2\n"), PL_SUCCESS);
    const QByteArray image("DICM\0\x01", 6);
    const QByteArray copy1 = first.getClickInfoData().toLatin1();
    first.setValue(L1("A"), L1("k"), L1("new"));
    const QByteArray copy2 = first.getClickInfoData().toLatin1();
    ASSERT_TRUE(copy1.contains("\n\n\nm:")) << "empty lines inside a copy are no ending";

    // Every length at which an append in place can stop: only the whole copy is loaded.
    for (int cut = 0; cut <= copy2.size(); ++cut) {
        const QByteArray dicom = image + copy1 + copy2.left(cut);
        CPLClickInfo doc;
        ASSERT_EQ(doc.loadClickInfoDcm(dicom.constData(), dicom.size()), PL_SUCCESS) << cut;
        const bool whole = cut == 0 || cut == copy2.size();
        EXPECT_EQ(doc.getClickInfoData().toLatin1(), cut == copy2.size() ? copy2 : copy1) << cut;
        const QList<CPLLoadWarning> warnings = doc.getLoadWarningList();
        const bool warned = std::any_of(warnings.begin(), warnings.end(), [](const auto& w) {
            return w.kind() == CPLLoadWarning::CutCopy;
        });
        EXPECT_EQ(warned, !whole) << cut;
    }
    // A lone cut copy is loaded as it stands, and says so.
    const QByteArray lone = image + copy2.left(copy2.size() - 1);
    CPLClickInfo doc;
    ASSERT_EQ(doc.loadClickInfoDcm(lone.constData(), lone.size()), PL_SUCCESS);
    EXPECT_EQ(doc.getLoadWarningList().last().kind(), CPLLoadWarning::CutCopy);
    EXPECT_EQ(doc.getLoadWarningList().last().line(), 1);
}

TEST_F(ClickInfoTest, FindsOneValueWithoutLoading)
{
    const QByteArray text = "*** ClickNumber:\tC\n"
                            "# Binning Factor:\tcommented out\n"
                            "*** luminescent image:\n"
                            "binning factor:  8 # hw\n"
                            "*** photographic image:\n"
                            "Binning Factor:\t2\n";
    QString value;
    const auto find = [&value](const QByteArray& bytes, const QString& key) {
        value = L1("stale");
        return CPLClickInfo::obtainValueFromClickInfoFile(bytes.constData(), key, &value);
    };
    EXPECT_EQ(find(text, L1("Binning Factor")), PL_SUCCESS);
    EXPECT_EQ(value, L1("8 # hw"));
    EXPECT_EQ(find(text, L1("Missing")), PL_KEY_NOT_FOUND);
    EXPECT_TRUE(value.isEmpty());
    EXPECT_EQ(find(text, QString()), PL_NULL_ARGUMENT);
    EXPECT_EQ(CPLClickInfo::obtainValueFromClickInfoFile(static_cast<const char*>(nullptr), L1("k"),
                                                         &value),
              PL_NULL_ARGUMENT);

    // Lines are read in pieces of 200 characters; only the piece holding the key counts.
    EXPECT_EQ(find(QByteArray(195, 'x') + " Key:\tcut off at the piece\n", L1("Key")), PL_SUCCESS);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(find(QByteArray(196, 'x') + " Key:\tvalue\n", L1("Key")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(find(QByteArray(200, 'x') + "Key:\tsecond piece\n", L1("Key")), PL_SUCCESS);
    EXPECT_EQ(value, L1("second piece"));

    writeBytes(path("c.txt"), text);
    EXPECT_EQ(
        CPLClickInfo::obtainValueFromClickInfoFile(path("c.txt"), L1("BINNING FACTOR"), &value),
        PL_SUCCESS);
    EXPECT_EQ(value, L1("8 # hw"));
    EXPECT_EQ(CPLClickInfo::obtainValueFromClickInfoFile(path("absent.txt"), L1("k"), &value),
              PL_FILE_OPEN_FAILED);
}

TEST_F(ClickInfoTest, BadInputGivesAStatusNeverACrash)
{
    struct Case
    {
        const char* what;
        QByteArray bytes;
        int status;
        int sections;
    };
    QByteArray binary(4096, '\0');
    for (int i = 0; i < binary.size(); ++i)
        binary[i] = char((i * 7919) & 0xff);
    const Case cases[] = {
        { "empty", QByteArray(), PL_SUCCESS, 0 },
        { "blank", "  \r\n\t\n", PL_SUCCESS, 0 },
        { "no header", "just\nsome text\n", PL_SUCCESS, 0 },
        { "NUL ends the text", QByteArray("*** A:\nk:\tv\n\0*** B:\n", 20), PL_SUCCESS, 1 },
        { "header without colon", "*** A\nk:\tv\n", PL_MALFORMED_SECTION_HEADER, 0 },
        { "only asterisks", "***\n***\n", PL_MALFORMED_SECTION_HEADER, 0 },
        { "binary", binary, -1, 0 }, // any status will do: it must come back
        { "giant line", "*** A:\nk:\t" + QByteArray(8 << 20, 'v') + "\n", PL_SUCCESS, 1 },
    };
    for (const Case& c : cases) {
        CPLClickInfo doc;
        const int status = load(doc, c.bytes);
        int count = -1;
        doc.getSectionCount(&count);
        if (c.status >= 0) {
            EXPECT_EQ(status, c.status) << c.what;
            EXPECT_EQ(count, c.sections) << c.what;
        }
    }
    CPLClickInfo doc;
    EXPECT_EQ(doc.loadClickInfo(path("absent.txt"), false), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(doc.loadClickInfo(m_dir.path(), false), PL_FILE_OPEN_FAILED);
}

TEST_F(ClickInfoTest, UserSectionsAreAddedWithTheirDefaults)
{
    CPLClickInfo doc;
    writeBytes(path("ClickInfo.txt"), "*** ClickNumber:\tC\n*** Graph Controls:\nGamma:\t2.2\n");
    ASSERT_EQ(doc.loadClickInfo(path("ClickInfo.txt"), true), PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(),
              (QStringList { L1("ClickNumber"), L1("Graph Controls"), L1("User Input") }));

    const CPLSection* userInput = doc[PLConstants::USERINPUT_SECTION_KEY];
    QStringList labels;
    userInput->getKeyList(&labels);
    EXPECT_EQ(labels,
              QStringList(std::begin(PLConstants::strUserLabelSetKeys),
                          std::end(PLConstants::strUserLabelSetKeys)));
    QString name;
    userInput->getSectionName(&name);
    EXPECT_EQ(name, PLConstants::USERLABELSET_DEFAULT_SECTIONNAME);

    // Graph Controls keeps its value and gains the keys it lacked, in default order.
    const CPLSection* graph = doc[L1("graph controls")];
    EXPECT_EQ(graph->count(), int(std::size(PLConstants::strGraphSectionKeys)));
    EXPECT_EQ((*graph)[L1("Gamma")], L1("2.2"));
    EXPECT_EQ((*graph)[L1("Color Table")], L1("Rainbow"));
    QString key;
    graph->getKey(1, &key);
    EXPECT_EQ(key, L1("Overlay"));

    doc.setValue(L1("User Input"), L1("User"), L1("kl"));
    ASSERT_EQ(doc.appendUserSpecificSections(true), PL_SUCCESS);
    const CPLSection* analysis = doc[PLConstants::ANALYSISUSERINPUT_SECTION_KEY];
    ASSERT_NE(analysis, nullptr);
    EXPECT_EQ((*analysis)[L1("User")], L1("kl"));
    EXPECT_EQ(analysis->count(), 16);
}

TEST_F(ClickInfoTest, AnalysisFileAddsTheSectionsTheAcquisitionLacks)
{
    CPLClickInfo doc;
    ASSERT_EQ(load(doc, "*** ClickNumber:\tC1\n*** User Input:\nUser:\tkl\n"), PL_SUCCESS);
    writeBytes(path(PLConstants::ANALYZED_CLICKINFO_FILENAME.toLatin1().constData()),
               "*** ClickNumber:\tC1\n*** User Input:\nUser:\tother\n*** ROIs:\nROI 1:\t5\n");
    ASSERT_EQ(doc.loadAnalyzedClickInfo(m_dir.path()), PL_SUCCESS);
    EXPECT_EQ(doc.getSectionKeys(),
              (QStringList { L1("ClickNumber"), L1("User Input"), L1("ROIs") }));
    EXPECT_EQ((*doc[L1("User Input")])[L1("User")], L1("kl"));
    // Each section remembers the file and header line it was read from, across documents.
    EXPECT_EQ(doc.getSectionOrigin(L1("user input")).toString(),
              QString(path("ClickInfo.txt") + L1(":2")));
    const QString analysisFile
        = path(PLConstants::ANALYZED_CLICKINFO_FILENAME.toLatin1().constData());
    EXPECT_EQ(doc.getKeyOrigin(L1("ROIs"), L1("ROI 1")).toString(),
              QString(analysisFile + L1(":4")));
    doc.addNewSection(L1("Made"), QString());
    EXPECT_FALSE(doc.getSectionOrigin(L1("Made")).isKnown());

    writeBytes(path("other.txt"), "*** ClickNumber:\tC2\n*** Tags:\nt:\t1\n");
    EXPECT_EQ(doc.loadAnalyzedClickInfo(path("other.txt")), PL_INVALID_ARGUMENT);
    EXPECT_FALSE(doc.isSectionPresent(L1("Tags")));
    EXPECT_EQ(doc.loadAnalyzedClickInfo(path("absent.txt")), PL_FILE_OPEN_FAILED);
}

TEST_F(ClickInfoTest, LoadsTheNthImageOfATypeFromASequenceFolder)
{
    // Three clicks: luminescent, photograph only, luminescent.
    const char* clicks[] = { "c1", "c2", "c3" };
    const char* sections[] = { "luminescent image", "photographic image", "luminescent image" };
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(QDir(m_dir.path()).mkpath(L1(clicks[i])));
        writeBytes(QDir(path(clicks[i])).filePath(PLConstants::CLICKINFO_FILENAME),
                   QByteArray("*** ClickNumber:\t") + clicks[i] + "\n*** " + sections[i] + ":\n");
    }
    // The click number loaded, or the status when the load fails.
    const auto clickAt = [this](const QString& name, int type, int n) {
        CPLClickInfo doc;
        QString clickNumber;
        const int status = doc.loadClickInfo(m_dir.path(), name, type, n);
        doc.getClickNumber(&clickNumber);
        return status == PL_SUCCESS ? clickNumber : QString::number(status);
    };
    EXPECT_EQ(clickAt(QString(), 1, 1), L1("c3"));
    EXPECT_EQ(clickAt(PLConstants::CLICKINFO_FILENAME, 0, 0), L1("c2"));
    EXPECT_EQ(clickAt(QString(), 1, 2), QString::number(PL_KEY_NOT_FOUND));
    EXPECT_EQ(clickAt(QString(), 13, 0), QString::number(PL_OUT_OF_RANGE));
    EXPECT_EQ(clickAt(QString(), 1, -1), QString::number(PL_OUT_OF_RANGE));
}

// A derived document's addSection() is what loading calls.
class RenamingDocument : public CPLClickInfo
{
public:
    int addSection(CPLSection* section) override
    {
        ++m_calls;
        return CPLClickInfo::addSection(section);
    }
    int m_calls = 0;
};

TEST_F(ClickInfoTest, LoadingGoesThroughTheVirtualOperations)
{
    RenamingDocument doc;
    EXPECT_EQ(doc.loadTextBuffer(L1("*** A:\n*** B:\n*** a:\n")), PL_SUCCESS);
    EXPECT_EQ(doc.m_calls, 2); // the repeated key is dropped before addSection()
    EXPECT_EQ(doc.loadClickNumber(L1("*** ClickNumber:\n")), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(doc.loadClickNumber(L1("*** ClickNumber:\t K1 \nbody: x\n")), PL_SUCCESS);
    QString clickNumber;
    doc.getClickNumber(&clickNumber);
    EXPECT_EQ(clickNumber, L1("K1"));
}
