#include "PLConstants.h"
#include "PLLabelDataSet.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace {

// Two sets, a section of another kind between them, a comment line in a set: as the library
// writes them, one section a line.
const QByteArray kTwoSets = "*** User Label Name Set:\tOrvane Universal\r\nUser:\t\nGroup:\t\n\n"
                            "*** Chosen User Label Name Set:\t\r\nName:\tExperiment\n\n"
                            "*** User Label Name Set:\tExperiment\r\n"
                            "# for the kidney study\nSubject:\t\nView:\t\n\n"
                            "\n\n";

class LabelDataSetTest : public ::testing::Test
{
protected:
    int load(CPLLabelDataSet& labels, const QByteArray& bytes)
    {
        writeBytes(path(), bytes);
        return labels.load(path());
    }
    QString path() const { return m_dir.filePath(PLConstants::LABELDATASET_FILENAME); }

    QTemporaryDir m_dir;
};

// The chosen set's name and labels, as "name: label|label".
QString chosen(const CPLLabelDataSet& labels)
{
    QString name;
    QStringList list;
    EXPECT_EQ(labels.getLabelName(&name), PL_SUCCESS);
    EXPECT_EQ(labels.getLabelData(&list), PL_SUCCESS);
    return name + L1(": ") + list.join(L1("|"));
}

TEST_F(LabelDataSetTest, FileRoundTripsByteForByte)
{
    CPLLabelDataSet labels;
    ASSERT_EQ(load(labels, kTwoSets), PL_SUCCESS);
    EXPECT_EQ(labels.getLabelSetNames(),
              (QStringList { L1("Orvane Universal"), L1("Experiment") }));
    EXPECT_EQ(chosen(labels), L1("Orvane Universal: User|Group")) << "file over built-in";
    // The name as the file holds it, not as asked.
    EXPECT_EQ(labels.selectLabelSet(L1("EXPERIMENT")), PL_SUCCESS);
    EXPECT_EQ(chosen(labels), L1("Experiment: Subject|View"));

    ASSERT_EQ(labels.save(path()), PL_SUCCESS);
    EXPECT_EQ(readBytes(path()), kTwoSets);
}

TEST_F(LabelDataSetTest, OldDefaultNameReadsAsTheCurrentOne)
{
    EXPECT_EQ(updateLabelSetName(L1("Morvex Universal")), L1("Orvane Universal"));
    EXPECT_EQ(updateLabelSetName(L1("morvex universal")), L1("morvex universal")) << "case";

    CPLLabelDataSet labels;
    ASSERT_EQ(load(labels,
                   "*** User Label Name Set:\tMorvex Universal\r\nUser:\t\n\n"
                   "*** User Label Name Set:\tOrvane Universal\r\nGroup:\t\n\n"),
              PL_SUCCESS);
    EXPECT_EQ(labels.getLabelSetNames(), QStringList { L1("Orvane Universal") }) << "first wins";
    EXPECT_EQ(labels.selectLabelSet(L1("Morvex Universal")), PL_SUCCESS);
    EXPECT_EQ(chosen(labels), L1("Orvane Universal: User"));
    ASSERT_EQ(labels.save(path()), PL_SUCCESS);
    EXPECT_EQ(readBytes(path()), "*** User Label Name Set:\tOrvane Universal\r\nUser:\t\n\n\n\n");
}

TEST_F(LabelDataSetTest, ChoosingAddingAndRemovingSets)
{
    CPLLabelDataSet labels;
    EXPECT_EQ(labels.selectLabelSet(QString()), PL_EMPTY_KEY);
    EXPECT_EQ(labels.selectLabelSet(L1("Nope")), PL_KEY_NOT_FOUND);
    // The built-in default set is chosen, and stays chosen; no set is in the document.
    EXPECT_TRUE(chosen(labels).startsWith(L1("Orvane Universal: User|Group|Experiment|")));
    EXPECT_EQ(labels.getCount(), 16);
    EXPECT_EQ(labels[15], L1("IACUC Number"));
    EXPECT_TRUE(labels[16].isNull());
    EXPECT_EQ(labels.getLabelSetNames(), QStringList());

    const struct
    {
        const char* name;
        QStringList labels;
        int status;
    } adds[] = {
        { "", { L1("a") }, PL_EMPTY_KEY },
        { "Study", { QString() }, PL_EMPTY_KEY },
        { "Study", { L1("Dose:mg") }, PL_INVALID_ARGUMENT },
        { "Study", { L1("Dose # mg") }, PL_INVALID_ARGUMENT },
        { "Study", { L1(" Dose") }, PL_INVALID_ARGUMENT },
        { "Study", { L1("Dose"), L1("DOSE") }, PL_INVALID_ARGUMENT },
        { "Study\n2", { L1("Dose") }, PL_INVALID_ARGUMENT },
        { "Study", { L1("Dose"), L1("Route") }, PL_SUCCESS },
        { "Kinetics", { L1("Time Point") }, PL_SUCCESS },
        { "study", { L1("Route"), L1("Dose") }, PL_SUCCESS },
    };
    for (const auto& a : adds)
        EXPECT_EQ(labels.addLabelSet(L1(a.name), a.labels), a.status) << a.name;
    EXPECT_EQ(labels.selectLabelSet(L1("study")), PL_SUCCESS);
    ASSERT_EQ(labels.save(path()), PL_SUCCESS);
    EXPECT_EQ(readBytes(path()),
              "*** User Label Name Set:\tStudy\r\nRoute:\t\nDose:\t\n\n"
              "*** User Label Name Set:\tKinetics\r\nTime Point:\t\n\n\n\n");

    EXPECT_EQ(labels.removeLabelSet(L1("Nope")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(labels.removeLabelSet(L1("STUDY")), PL_SUCCESS);
    QStringList list = { L1("unchanged") };
    EXPECT_EQ(labels.getLabelData(&list), PL_KEY_NOT_FOUND);
    EXPECT_EQ(list, QStringList { L1("unchanged") });
    EXPECT_EQ(labels.getCount(), 0);
    EXPECT_EQ(labels.getLabelSetNames(), QStringList { L1("Kinetics") });
}

} // namespace
