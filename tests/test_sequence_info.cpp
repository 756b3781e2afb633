#include "PLConstants.h"
#include "PLSection.h"
#include "PLSequenceInfo.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace {

using LabelValues = QList<QPair<QString, QString>>;
using S = CPLSequenceInfo;

// What the library writes for a two-click sequence with user input and one restore result.
const QByteArray kWritten = "*** Sequence:\tSQ20261106101500\r\n"
                            "ClickNumbers in Sequence:\t2\n"
                            "ClickNumber 1:\tSQ20261106101500_001\n"
                            "ClickNumber 2:\tSQ20261106101500_002\n"
                            "\n"
                            "*** User Input:\tOrvane Universal\r\n"
                            "User:\tKatrin Lenz\n"
                            "Treatment:\tVehicle\t# saline\n"
                            "\n"
                            "*** User Label Name Set:\tOrvane Universal\r\n"
                            "User:\t\n"
                            "Treatment:\t\n"
                            "\n"
                            "*** Restore Results:\t\r\n"
                            "Active Click:\tSQ20261106101500_002\n"
                            "\n"
                            "\n\n";

// Written by hand: LF and CR LF, comments, blank lines, the click lines out of order, an
// inline comment, an empty click line, a repeated key, a key of one's own, no count.
const QByteArray kHandWritten = "# spectral series, filters 580 to 700\n"
                                "*** Sequence:\tSQ7\r\n"
                                "# reordered by hand\r\n"
                                "ClickNumber 3:\tSQ7_700\n"
                                "ClickNumber 1:\tSQ7_580   # first filter\n"
                                "\n"
                                "ClickNumber 2:\tSQ7_620\n"
                                "ClickNumber 4:\t\n"
                                "Operator:\tkl\n"
                                "ClickNumber 02:\tSQ7_660\n"
                                "clicknumber 3:\tSQ7_700b\n"
                                "ClickNumber x:\tnot a click\n"
                                "*** Restore Results:\t\n";

class SequenceInfoTest : public ::testing::Test
{
protected:
    QString path(const QString& name) const { return m_dir.filePath(name); }
    QString file() const { return path(PLConstants::SEQUENCEINFO_FILENAME); }

    int loadBytes(CPLSequenceInfo& sequence, const QByteArray& bytes)
    {
        writeBytes(file(), bytes);
        return sequence.load(m_dir.path());
    }

    // An acquisition folder FOLDER (named `folderName`, holding click number `clickNumber`)
    // with a "User Input" section named `labelSet` and the user "user".
    QString makeAcquisition(const QString& folderName, const QString& clickNumber,
                            const QString& user = L1("Katrin Lenz"),
                            const QString& labelSet = L1("Orvane Universal"))
    {
        const QString folder = path(folderName);
        EXPECT_TRUE(QDir().mkpath(folder));
        CPLClickInfo document;
        EXPECT_EQ(document.addTiffClickNumberSection(false, false, clickNumber), PL_SUCCESS);
        EXPECT_EQ(document.addTiffUserSection(IMAGETYPE_LUMINESCENT, L1("klenz")), PL_SUCCESS);
        document[PLConstants::USERINPUT_SECTION_KEY]->setSectionName(labelSet);
        EXPECT_EQ(document.setValue(PLConstants::USERINPUT_SECTION_KEY, L1("User"), user),
                  PL_SUCCESS);
        EXPECT_EQ(document.saveClickInfo(QDir(folder).filePath(PLConstants::CLICKINFO_FILENAME)),
                  PL_SUCCESS);
        return folder;
    }

    QTemporaryDir m_dir;
};

// What a getter of one value gives, expecting success.
template<typename T>
T got(const CPLSequenceInfo& sequence, int (CPLSequenceInfo::*getter)(T*) const)
{
    T value;
    EXPECT_EQ((sequence.*getter)(&value), PL_SUCCESS);
    return value;
}
QStringList clicks(const CPLSequenceInfo& s)
{
    return got(s, &CPLSequenceInfo::getClickNumbers);
}
QString userValue(const CPLSequenceInfo& sequence, const char* label)
{
    QString value;
    EXPECT_EQ(sequence.getUserInputValue(L1(label), &value), PL_SUCCESS) << label;
    return value;
}

// A sequence `id` with the click numbers given.
void fill(CPLSequenceInfo& sequence, const QStringList& clickNumbers, const char* id = "SQ")
{
    ASSERT_EQ(sequence.setSequenceID(L1(id)), PL_SUCCESS);
    for (const QString& clickNumber : clickNumbers)
        ASSERT_EQ(sequence.addClickNumber(clickNumber), PL_SUCCESS);
}

TEST_F(SequenceInfoTest, WritesTheDocumentedLayoutAndReadsItBackByteForByte)
{
    CPLSequenceInfo sequence;
    fill(sequence, { L1("SQ20261106101500_002") }, "SQ20261106101500");
    ASSERT_EQ(sequence.addClickNumber(L1("SQ20261106101500_001"), 0), PL_SUCCESS);
    ASSERT_EQ(sequence.setUserInput(L1("Orvane Universal"),
                                    { { L1("User"), L1("Katrin Lenz") },
                                      { L1("Treatment"), L1("Vehicle\t# saline") } }),
              PL_SUCCESS);
    ASSERT_EQ(sequence.setRestoreResult(L1("Active Click"), L1("SQ20261106101500_002")),
              PL_SUCCESS);
    ASSERT_EQ(sequence.save(m_dir.path()), PL_SUCCESS);
    EXPECT_EQ(readBytes(file()), kWritten);

    CPLSequenceInfo loaded;
    ASSERT_EQ(loaded.load(file()), PL_SUCCESS);
    EXPECT_TRUE(loaded.getLoadWarnings().isEmpty())
        << loaded.getLoadWarnings().join(L1("\n")).toStdString();
    EXPECT_EQ(got(loaded, &S::getSequenceID), L1("SQ20261106101500"));
    EXPECT_EQ(clicks(loaded), L1List({ "SQ20261106101500_001", "SQ20261106101500_002" }));
    LabelValues input;
    ASSERT_EQ(loaded.getUserInput(&input), PL_SUCCESS);
    EXPECT_EQ(
        input,
        (LabelValues { { L1("User"), L1("Katrin Lenz") }, { L1("Treatment"), L1("Vehicle") } }))
        << "the inline comment is not part of the value";
    EXPECT_EQ(got(loaded, &S::getLabelSetName), L1("Orvane Universal"));
    EXPECT_EQ(got(loaded, &S::getLabelSetLabels), L1List({ "User", "Treatment" }));
    EXPECT_EQ(loaded.getRestoreResultKeys(), L1List({ "Active Click" }));
    // A file written by hand without the label set names it by its user input.
    CPLSequenceInfo handWritten;
    const QByteArray text("*** User Input:\tExperiment\r\nUser:\tme\n\n");
    ASSERT_EQ(handWritten.loadClickInfoBytes(text.constData(), text.size(), L1("hand.txt")),
              PL_SUCCESS);
    EXPECT_EQ(got(handWritten, &S::getLabelSetName), L1("Experiment"));
    QStringList labels;
    EXPECT_EQ(handWritten.getLabelSetLabels(&labels), PL_SECTION_NOT_PRESENT);

    const QString copy = path(L1("copy.txt"));
    ASSERT_EQ(loaded.save(copy), PL_SUCCESS);
    EXPECT_EQ(readBytes(copy), kWritten);
}

TEST_F(SequenceInfoTest, AnEmptySequenceSaysSoAndRoundTrips)
{
    CPLSequenceInfo sequence;
    fill(sequence, { L1("SQ_001") });
    ASSERT_EQ(sequence.removeClickNumber(L1("SQ_001")), PL_SUCCESS);
    EXPECT_EQ(sequence.getClickNumberCount(), 0);
    ASSERT_EQ(sequence.save(file()), PL_SUCCESS);
    const QByteArray expected = "*** Sequence:\tSQ\r\nClickNumbers in Sequence:\t0\n"
                                "ClickNumbers:\tEmpty Sequence\n\n\n\n";
    EXPECT_EQ(readBytes(file()), expected);

    CPLSequenceInfo loaded;
    ASSERT_EQ(loaded.load(file()), PL_SUCCESS);
    EXPECT_TRUE(clicks(loaded).isEmpty()) << "the marker line is not a click";
    ASSERT_EQ(loaded.addClickNumber(L1("SQ_002")), PL_SUCCESS);
    ASSERT_EQ(loaded.save(file()), PL_SUCCESS);
    EXPECT_EQ(readBytes(file()),
              QByteArray("*** Sequence:\tSQ\r\nClickNumbers in Sequence:\t1\n"
                         "ClickNumber 1:\tSQ_002\n\n\n\n"))
        << "the marker goes with the first click";
}

TEST_F(SequenceInfoTest, HandWrittenFileReadsInNumberOrderAndKeepsItsOtherLines)
{
    CPLSequenceInfo sequence;
    ASSERT_EQ(loadBytes(sequence, kHandWritten), PL_SUCCESS);
    // 1, 2 (and 02 after it in the file), 3 with its last value; 4 is empty; "x" is no number.
    EXPECT_EQ(clicks(sequence), L1List({ "SQ7_580", "SQ7_620", "SQ7_660", "SQ7_700b" }));
    EXPECT_FALSE(sequence.getLoadWarnings().isEmpty()) << "blank lines, repeated key, LF header";

    // "ClickNumber 3" stands on two lines with two values: an edit of the clicks would keep
    // only one of them, so it is refused until the file is mended.
    EXPECT_EQ(sequence.removeClickNumber(L1("SQ7_620")), PL_KEY_REPEATED);
    EXPECT_EQ(sequence.moveClickNumber(0, 1), PL_KEY_REPEATED);
    EXPECT_EQ(clicks(sequence), L1List({ "SQ7_580", "SQ7_620", "SQ7_660", "SQ7_700b" }));
    // Unedited, the document writes the file's own bytes back: nothing is lost.
    EXPECT_EQ(sequence.save(file()), PL_SUCCESS);
    EXPECT_EQ(readBytes(file()), kHandWritten);

    // Mended by hand, the edit is made in the file's lines: the lines still listed take their
    // clicks, the others ("ClickNumber 02", the empty "ClickNumber 4") go, the count is added.
    QByteArray mended = kHandWritten;
    mended.replace("clicknumber 3:\tSQ7_700b\n", "");
    CPLSequenceInfo again;
    ASSERT_EQ(loadBytes(again, mended), PL_SUCCESS);
    EXPECT_EQ(clicks(again), L1List({ "SQ7_580", "SQ7_620", "SQ7_660", "SQ7_700" }));
    ASSERT_EQ(again.removeClickNumber(L1("SQ7_620")), PL_SUCCESS);
    ASSERT_EQ(again.save(file()), PL_SUCCESS);
    EXPECT_EQ(readBytes(file()),
              QByteArray("# spectral series, filters 580 to 700\n"
                         "*** Sequence:\tSQ7\r\n"
                         "# reordered by hand\r\n"
                         "ClickNumber 3:\tSQ7_700\n"
                         "ClickNumber 1:\tSQ7_580   # first filter\n"
                         "\n"
                         "ClickNumber 2:\tSQ7_660\n"
                         "Operator:\tkl\n"
                         "ClickNumber x:\tnot a click\n"
                         "ClickNumbers in Sequence:\t3\n"
                         "*** Restore Results:\t\n"));
    CPLSequenceInfo reloaded;
    ASSERT_EQ(reloaded.load(file()), PL_SUCCESS);
    EXPECT_EQ(clicks(reloaded), L1List({ "SQ7_580", "SQ7_660", "SQ7_700" }));
}

TEST_F(SequenceInfoTest, AClickListedTwiceIsRemovedWhereItStandsFirst)
{
    CPLSequenceInfo sequence;
    ASSERT_EQ(loadBytes(sequence,
                        "*** Sequence:\tSQ\r\nClickNumbers in Sequence:\t3\n"
                        "ClickNumber 1:\tA\nClickNumber 2:\tB\nClickNumber 3:\tA\n\n\n\n"),
              PL_SUCCESS);
    ASSERT_EQ(sequence.removeClickNumber(L1("A")), PL_SUCCESS);
    EXPECT_EQ(clicks(sequence), L1List({ "B", "A" }));
}

TEST_F(SequenceInfoTest, EditsOfAHandWrittenFileChangeOnlyTheirOwnLines)
{
    const QByteArray handWritten = "# series by hand\r\n"
                                   "*** Sequence:\tSQ9\r\n"
                                   "ClickNumbers in Sequence:\t3\r\n"
                                   "ClickNumber 1:\tSQ9_001\r\n"
                                   "ClickNumber 2:\tSQ9_002  # dim\r\n"
                                   "\r\n"
                                   "free text\r\n"
                                   "ClickNumber 3:\tSQ9_003\r\n"
                                   "Operator:\tkl\r\n"
                                   "\r\n"
                                   "*** User Input:\tOrvane Universal\r\n"
                                   "User:\tKL\r\n"
                                   "\r\n"
                                   "*** Restore Results:\t\r\n"
                                   "Active:\t1\r\n";
    CPLSequenceInfo sequence;
    ASSERT_EQ(loadBytes(sequence, handWritten), PL_SUCCESS);
    ASSERT_FALSE(sequence.getLoadWarnings().isEmpty()) << "CR LF, blank lines, free text";
    ASSERT_EQ(sequence.removeClickNumber(L1("SQ9_001")), PL_SUCCESS);
    ASSERT_EQ(sequence.addClickNumber(L1("SQ9_004")), PL_SUCCESS);
    ASSERT_EQ(sequence.moveClickNumber(0, 2), PL_SUCCESS);
    ASSERT_EQ(sequence.setUserInputValue(L1("User"), L1("Ana")), PL_SUCCESS);
    ASSERT_EQ(sequence.setRestoreResult(L1("Zoom"), L1("2")), PL_SUCCESS);
    EXPECT_EQ(clicks(sequence), L1List({ "SQ9_003", "SQ9_004", "SQ9_002" }));
    ASSERT_EQ(sequence.save(m_dir.path()), PL_SUCCESS);
    // The click lines still listed take their new click numbers (an inline comment stays),
    // the one no longer listed is removed and the new one added at the end of the section;
    // every other byte is as it was.
    EXPECT_EQ(readBytes(file()),
              QByteArray("# series by hand\r\n"
                         "*** Sequence:\tSQ9\r\n"
                         "ClickNumbers in Sequence:\t3\r\n"
                         "ClickNumber 1:\tSQ9_003\r\n"
                         "ClickNumber 2:\tSQ9_004\t# dim\r\n"
                         "\r\n"
                         "free text\r\n"
                         "Operator:\tkl\r\n"
                         "ClickNumber 3:\tSQ9_002\r\n"
                         "\r\n"
                         "*** User Input:\tOrvane Universal\r\n"
                         "User:\tAna\r\n"
                         "\r\n"
                         "*** Restore Results:\t\r\n"
                         "Active:\t1\r\n"
                         "Zoom:\t2\r\n"));
    CPLSequenceInfo reloaded;
    ASSERT_EQ(reloaded.load(m_dir.path()), PL_SUCCESS);
    EXPECT_EQ(clicks(reloaded), clicks(sequence));

    // Removing every click writes the empty-sequence line in place of the count.
    for (const char* click : { "SQ9_003", "SQ9_004", "SQ9_002" })
        ASSERT_EQ(reloaded.removeClickNumber(L1(click)), PL_SUCCESS);
    ASSERT_EQ(reloaded.save(m_dir.path()), PL_SUCCESS);
    const QByteArray emptied = readBytes(file());
    EXPECT_TRUE(emptied.startsWith("# series by hand\r\n*** Sequence:\tSQ9\r\n\r\nfree text\r\n"
                                   "Operator:\tkl\r\nClickNumbers:\tEmpty Sequence\r\n\r\n"))
        << emptied.constData();

    // A new ID is a header line, which is not edited in place: the whole file is written.
    ASSERT_EQ(reloaded.setSequenceID(L1("SQ10")), PL_SUCCESS);
    ASSERT_EQ(reloaded.save(m_dir.path()), PL_SUCCESS);
    EXPECT_TRUE(readBytes(file()).startsWith("# series by hand\n*** Sequence:\tSQ10\r\n"
                                             "#free text\nOperator:\tkl\n"
                                             "ClickNumbers:\tEmpty Sequence\n\n"))
        << readBytes(file()).constData();
}

TEST_F(SequenceInfoTest, LoadTakesAFolderOrAFileAndClearsFirst)
{
    CPLSequenceInfo sequence;
    EXPECT_EQ(sequence.load(m_dir.path()), PL_FILE_OPEN_FAILED) << "no SequenceInfo.txt yet";
    writeBytes(path(L1("other.txt")), kWritten);
    ASSERT_EQ(sequence.load(path(L1("other.txt"))), PL_SUCCESS);
    writeBytes(file(), "*** Sequence:\tSQ2\r\nClickNumber 1:\tB\n\n\n\n");
    ASSERT_EQ(sequence.load(m_dir.path()), PL_SUCCESS);
    EXPECT_EQ(clicks(sequence), L1List({ "B" })) << "the earlier file's sections are gone";
    EXPECT_FALSE(sequence.isSectionPresent(PLConstants::USERINPUT_SECTION_KEY));
    EXPECT_EQ(CPLSequenceInfo::sequenceFilePath(m_dir.path()), file());
    EXPECT_EQ(CPLSequenceInfo::sequenceFilePath(file()), file());
}

TEST_F(SequenceInfoTest, AddChecksTheClickNumberAndThePosition)
{
    CPLSequenceInfo none;
    EXPECT_EQ(none.addClickNumber(L1("A")), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(none.getClickNumberCount(), 0);
    QString id;
    EXPECT_EQ(none.getSequenceID(&id), PL_SECTION_NOT_PRESENT);

    const struct
    {
        const char* clickNumber;
        int position;
        int status;
    } cases[] = {
        { "", -1, PL_EMPTY_KEY },
        { "A", -1, PL_CLICK_ALREADY_LISTED },
        { "a", -1, PL_SUCCESS }, // click numbers are folder names: case counts
        { "C", 4, PL_OUT_OF_RANGE },
        { "C", -2, PL_OUT_OF_RANGE },
        { "C", 2, PL_SUCCESS },
        { "D", 0, PL_SUCCESS },
        { "x/y", -1, PL_INVALID_ARGUMENT },
        { "x#1", -1, PL_INVALID_ARGUMENT },
        { "x:1", -1, PL_INVALID_ARGUMENT },
        { " x", -1, PL_INVALID_ARGUMENT },
        { "x\ny", -1, PL_INVALID_ARGUMENT },
    };
    CPLSequenceInfo sequence;
    fill(sequence, { L1("A"), L1("B") });
    for (const auto& c : cases) {
        QStringList before = clicks(sequence);
        const int status = sequence.addClickNumber(L1(c.clickNumber), c.position);
        EXPECT_EQ(status, c.status) << c.clickNumber << " at " << c.position;
        if (status != PL_SUCCESS) {
            EXPECT_EQ(clicks(sequence), before) << "a failed add changes nothing";
        }
    }
    EXPECT_EQ(clicks(sequence), L1List({ "D", "A", "B", "C", "a" }));
}

TEST_F(SequenceInfoTest, MoveRemoveAndFindKeepTheOrder)
{
    CPLSequenceInfo sequence;
    fill(sequence, L1List({ "A", "B", "C", "D" }));
    EXPECT_EQ(sequence.moveClickNumber(0, 3), PL_SUCCESS);
    EXPECT_EQ(clicks(sequence), L1List({ "B", "C", "D", "A" }));
    EXPECT_EQ(sequence.moveClickNumber(2, 0), PL_SUCCESS);
    EXPECT_EQ(clicks(sequence), L1List({ "D", "B", "C", "A" }));
    const std::pair<int, int> outside[] = { { -1, 0 }, { 0, 4 }, { 4, 0 }, { 0, -1 } };
    for (const auto& [from, to] : outside)
        EXPECT_EQ(sequence.moveClickNumber(from, to), PL_OUT_OF_RANGE) << from << " to " << to;

    int position = -7;
    EXPECT_EQ(sequence.findClickNumber(L1("C"), &position), PL_SUCCESS);
    EXPECT_EQ(position, 2);
    position = -7;
    EXPECT_EQ(sequence.findClickNumber(L1("c"), &position), PL_KEY_NOT_FOUND);
    EXPECT_EQ(sequence.findClickNumber(L1(""), &position), PL_EMPTY_KEY);
    EXPECT_EQ(sequence.findClickNumber(L1("C"), nullptr), PL_NULL_ARGUMENT);
    EXPECT_EQ(position, -7);

    EXPECT_EQ(sequence.removeClickNumber(L1("E")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(sequence.removeClickNumber(L1("D")), PL_SUCCESS);
    EXPECT_EQ(clicks(sequence), L1List({ "B", "C", "A" }));
    EXPECT_EQ(sequence.getClickNumberCount(), 3);
    QString line;
    EXPECT_EQ(sequence.getValue(PLConstants::SEQUENCEINFO_KEY,
                                PLConstants::CLICKNUMBER_IN_SEQUENCE_KEY, &line),
              PL_SUCCESS);
    EXPECT_EQ(line, L1("3")) << "the count follows the edits";
}

TEST_F(SequenceInfoTest, SequenceIDIsTheSectionName)
{
    CPLSequenceInfo sequence;
    for (const char* bad : { "", "SQ#1", "SQ\n1" })
        EXPECT_EQ(sequence.setSequenceID(L1(bad)), *bad ? PL_INVALID_ARGUMENT : PL_EMPTY_KEY);
    EXPECT_FALSE(sequence.isSectionPresent(PLConstants::SEQUENCEINFO_KEY));
    fill(sequence, L1List({ "A" }));
    ASSERT_EQ(sequence.setSequenceID(L1("Kinetic: day 3")), PL_SUCCESS);
    EXPECT_EQ(got(sequence, &S::getSequenceID), L1("Kinetic: day 3"));
    EXPECT_EQ(clicks(sequence), L1List({ "A" })) << "renaming keeps the clicks";
    EXPECT_EQ(sequence.getSequenceID(nullptr), PL_NULL_ARGUMENT);
}

TEST_F(SequenceInfoTest, UserInputAndLabelSet)
{
    CPLSequenceInfo sequence;
    LabelValues input;
    EXPECT_EQ(sequence.getUserInput(&input), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(sequence.setUserInputValue(L1("User"), L1("x")), PL_SECTION_NOT_PRESENT);
    const struct
    {
        const char* setName;
        LabelValues entries;
        int status;
    } cases[] = {
        { "", {}, PL_EMPTY_KEY },
        { "Set", { { L1(""), L1("v") } }, PL_EMPTY_KEY },
        { "Set", { { L1("a:b"), L1("v") } }, PL_INVALID_ARGUMENT },
        { "Set", { { L1("User"), L1("v\nw") } }, PL_INVALID_ARGUMENT },
        { "Set", { { L1("User"), L1("1") }, { L1("USER"), L1("2") } }, PL_INVALID_ARGUMENT },
        { "Set#2", {}, PL_INVALID_ARGUMENT },
    };
    for (const auto& c : cases) {
        EXPECT_EQ(sequence.setUserInput(L1(c.setName), c.entries), c.status) << c.setName;
        EXPECT_FALSE(sequence.isSectionPresent(PLConstants::USERINPUT_SECTION_KEY));
    }
    ASSERT_EQ(sequence.setUserInput(L1("Kidney"),
                                    { { L1("Subject"), L1("M1") }, { L1("View"), L1("") } }),
              PL_SUCCESS);
    EXPECT_EQ(sequence.setUserInputValue(L1("view"), L1("Dorsal")), PL_SUCCESS);
    EXPECT_EQ(sequence.setUserInputValue(L1("Group"), L1("x")), PL_KEY_NOT_FOUND)
        << "setting never adds a label";
    EXPECT_EQ(sequence.setUserInputValue(L1("View"), L1("a\rb")), PL_INVALID_ARGUMENT);
    EXPECT_EQ(userValue(sequence, "VIEW"), L1("Dorsal"));

    // Replacing keeps the sections' places.
    fill(sequence, {});
    ASSERT_EQ(sequence.setUserInput(L1("Other"), { { L1("Group"), L1("G") } }), PL_SUCCESS);
    EXPECT_EQ(sequence.getSectionKeys(),
              L1List({ "User Input", "User Label Name Set", "Sequence" }));
    EXPECT_EQ(got(sequence, &S::getLabelSetLabels), L1List({ "Group" }));
}

TEST_F(SequenceInfoTest, RestoreResultsAreFreeKeys)
{
    CPLSequenceInfo sequence;
    QString value;
    EXPECT_EQ(sequence.getRestoreResult(L1("Zoom"), &value), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(sequence.removeRestoreResult(L1("Zoom")), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(sequence.setRestoreResult(L1(""), L1("1")), PL_EMPTY_KEY);
    EXPECT_EQ(sequence.setRestoreResult(L1("a#b"), L1("1")), PL_INVALID_ARGUMENT);
    EXPECT_EQ(sequence.setRestoreResult(L1("Zoom"), L1("1\n2")), PL_INVALID_ARGUMENT);
    EXPECT_FALSE(sequence.isSectionPresent(PLConstants::RESTORE_RESULTS_SECTION_KEY));

    ASSERT_EQ(sequence.setRestoreResult(L1("Zoom"), L1("2")), PL_SUCCESS);
    ASSERT_EQ(sequence.setRestoreResult(L1("ROI File"), L1("rois.xml")), PL_SUCCESS);
    ASSERT_EQ(sequence.setRestoreResult(L1("zoom"), L1("3")), PL_SUCCESS);
    EXPECT_EQ(sequence.getRestoreResultKeys(), L1List({ "Zoom", "ROI File" }));
    EXPECT_EQ(sequence.removeRestoreResult(L1("Pan")), PL_KEY_NOT_FOUND);
    ASSERT_EQ(sequence.removeRestoreResult(L1("ZOOM")), PL_SUCCESS);
    EXPECT_EQ(sequence.getRestoreResultKeys(), L1List({ "ROI File" }));
    ASSERT_EQ(sequence.save(file()), PL_SUCCESS);
    EXPECT_EQ(readBytes(file()),
              QByteArray("*** Restore Results:\t\r\nROI File:\trois.xml\n\n\n\n"));
}

TEST_F(SequenceInfoTest, VerifyFindsMissingAndUnlistedAcquisitions)
{
    makeAcquisition(L1("SQ_001"), L1("SQ_001"));
    QDir().mkpath(path(L1("SQ_002"))); // a folder without its ClickInfo.txt
    makeAcquisition(L1("SQ_005"), L1("SQ_005")); // taken, not listed
    makeAcquisition(L1("SQ_004"), L1("SQ_004"));
    QDir().mkpath(path(L1("notes"))); // no acquisition: not reported
    CPLSequenceInfo sequence;
    fill(sequence, L1List({ "SQ_003", "SQ_002", "SQ_001" }));

    CPLSequenceCheck check;
    ASSERT_EQ(sequence.verify(m_dir.path(), &check), PL_SUCCESS);
    EXPECT_EQ(check.missingFolders, L1List({ "SQ_003" }));
    EXPECT_EQ(check.missingClickInfo, L1List({ "SQ_002" }));
    EXPECT_EQ(check.unlisted, L1List({ "SQ_004", "SQ_005" }));
    EXPECT_FALSE(check.isComplete());

    ASSERT_EQ(sequence.removeClickNumber(L1("SQ_003")), PL_SUCCESS);
    ASSERT_EQ(sequence.removeClickNumber(L1("SQ_002")), PL_SUCCESS);
    ASSERT_EQ(sequence.addClickNumber(L1("SQ_004")), PL_SUCCESS);
    ASSERT_EQ(sequence.addClickNumber(L1("SQ_005")), PL_SUCCESS);
    ASSERT_EQ(sequence.verify(m_dir.path(), &check), PL_SUCCESS);
    EXPECT_TRUE(check.isComplete());

    EXPECT_EQ(sequence.verify(path(L1("absent")), &check), PL_FOLDER_MISSING);
    EXPECT_EQ(sequence.verify(m_dir.path(), nullptr), PL_NULL_ARGUMENT);
    EXPECT_EQ(CPLSequenceInfo().verify(m_dir.path(), &check), PL_SECTION_NOT_PRESENT);
}

TEST_F(SequenceInfoTest, CreateFromAcquisitionsTakesTheFirstUserInput)
{
    const QStringList folders
        = { makeAcquisition(L1("SQ9_002"), L1("SQ9_002"), L1("First"), L1("Morvex Universal")),
            makeAcquisition(L1("SQ9_001"), L1("SQ9_001"), L1("Second")) };
    CPLSequenceInfo sequence;
    ASSERT_EQ(sequence.createFromAcquisitions(folders), PL_SUCCESS);
    EXPECT_EQ(got(sequence, &S::getSequenceID), L1("SQ9"));
    EXPECT_EQ(clicks(sequence), L1List({ "SQ9_002", "SQ9_001" })) << "the order given";
    EXPECT_EQ(userValue(sequence, "User"), L1("First"));
    EXPECT_EQ(userValue(sequence, "User ID"), L1("klenz"));
    EXPECT_EQ(got(sequence, &S::getLabelSetName), L1("Orvane Universal"))
        << "the old default set name is mapped";
    EXPECT_EQ(got(sequence, &S::getLabelSetLabels).size(), 17) << "sixteen labels and the user ID";
    EXPECT_EQ(sequence.getSectionKeys(),
              L1List({ "Sequence", "User Input", "User Label Name Set", "Restore Results" }));
    CPLSequenceCheck check;
    ASSERT_EQ(sequence.verify(m_dir.path(), &check), PL_SUCCESS);
    EXPECT_TRUE(check.isComplete());

    ASSERT_EQ(sequence.createFromAcquisitions({ folders.at(1) + L1("/") }, L1("Given")),
              PL_SUCCESS);
    EXPECT_EQ(got(sequence, &S::getSequenceID), L1("Given"));
    EXPECT_EQ(clicks(sequence), L1List({ "SQ9_001" })) << "the document is made anew";
}

TEST_F(SequenceInfoTest, CreateRefusesWhatVerifyCouldNotFind)
{
    const QString good = makeAcquisition(L1("SQ9_001"), L1("SQ9_001"));
    const QString renamed = makeAcquisition(L1("copy of SQ9_002"), L1("SQ9_002"));
    QDir().mkpath(path(L1("empty")));
    const struct
    {
        QStringList folders;
        QString id;
        int status;
        QString failed;
    } cases[] = {
        { {}, QString(), PL_NOTHING_TO_WORK_ON, QString() },
        { { good, path(L1("empty")) }, QString(), PL_FILE_OPEN_FAILED, path(L1("empty")) },
        { { good, renamed }, QString(), PL_FOLDER_NOT_CLICK_NUMBER, renamed },
        { { good, good }, QString(), PL_CLICK_ALREADY_LISTED, good },
        { { good }, L1("bad#id"), PL_INVALID_ARGUMENT, QString() },
    };
    CPLSequenceInfo sequence;
    fill(sequence, L1List({ "KEEP" }));
    for (const auto& c : cases) {
        QString failed;
        EXPECT_EQ(sequence.createFromAcquisitions(c.folders, c.id, &failed), c.status)
            << c.folders.join(L1(",")).toStdString();
        EXPECT_EQ(failed, c.failed);
        EXPECT_EQ(clicks(sequence), L1List({ "KEEP" })) << "unchanged on failure";
    }
}

TEST(SequenceInfo, DefaultSequenceIDIsTheClickNumberPrefix)
{
    const struct
    {
        const char* clickNumber;
        const char* id;
    } cases[] = {
        { "SQ20261106101500_001", "SQ20261106101500" },
        { "A_B_003", "A_B" },
        { "NOPREFIX", "NOPREFIX" },
        { "_001", "_001" },
        { "", "" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(CPLSequenceInfo::defaultSequenceID(L1(c.clickNumber)), L1(c.id)) << c.clickNumber;
}

// The ovtool tests compare the words of PL_FOLDER_NOT_CLICK_NUMBER in its report.
TEST(SequenceInfo, NewStatusesHaveTheirWords)
{
    EXPECT_EQ(getStatusText(PL_CLICK_ALREADY_LISTED),
              L1("the sequence lists the click number already"));
}

TEST(SequenceInfo, AnEditKeepsALineThatWouldReadAsAHeaderAsAComment)
{
    // A vertical tab before "***" makes it a key line on load (with a warning); written back
    // as it stood it would open a section.
    const QByteArray text = "*** Sequence:\tSQ\r\nClickNumber 1:\tA\n\v*** User Input:\tx\n\n\n\n";
    CPLSequenceInfo sequence;
    ASSERT_EQ(sequence.loadClickInfoBytes(text.constData(), text.size(), L1("t")), PL_SUCCESS);
    EXPECT_FALSE(sequence.getLoadWarnings().isEmpty());
    ASSERT_EQ(sequence.addClickNumber(L1("B")), PL_SUCCESS);
    EXPECT_EQ(sequence.getClickInfoData(),
              L1("*** Sequence:\tSQ\r\nClickNumbers in Sequence:\t2\nClickNumber 1:\tA\n"
                 "ClickNumber 2:\tB\n#*** User Input::\tx\n\n\n\n"))
        << "the key as read: the line began with a blank, so its colon was cut one place on";
}

} // namespace
