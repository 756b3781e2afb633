// The metadata copies of a DICOM file: each save's copy is found by what the save writes
// around it, whatever its first section, and a copy cut off by a crash is never loaded while
// a complete one stands before it.

#include "PLClickInfo.h"
#include "PLLoadWarning.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

const QByteArray IMAGE("DICM\0\x01\x02pixels\0\x7f", 14);

// The text a save writes for `text` loaded as a document.
QByteArray saved(const char* text)
{
    CPLClickInfo document;
    EXPECT_EQ(document.loadClickInfoBytes(text, qint64(qstrlen(text)), QString()), PL_SUCCESS);
    return document.getClickInfoData().toLatin1();
}

// Three saves of one acquisition, each starting with another section, the last with an
// empty section at its end (its copy ends in a header's CR LF and four LF).
const QByteArray FIRST = saved("*** ClickNumber:\tC1\nk:\t1\n*** User Input:\tU\nUser:\tKatrin\n");
const QByteArray SECOND = saved("*** User Input:\tU\nUser:\tAna\n*** ClickNumber:\tC1\nk:\t2\n");
const QByteArray THIRD
    = saved("*** Extra:\tE\nx:\t3\n*** User Input:\tU\nUser:\tJo\n*** Empty:\t\n");

std::unique_ptr<CPLClickInfo> loadedDicom(const QByteArray& bytes)
{
    auto document = std::make_unique<CPLClickInfo>();
    EXPECT_EQ(document->loadClickInfoDcm(bytes.constData(), bytes.size()), PL_SUCCESS);
    return document;
}

bool warnsOfACutCopy(const CPLClickInfo& document)
{
    const QList<CPLLoadWarning> warnings = document.getLoadWarningList();
    return std::any_of(warnings.begin(), warnings.end(),
                       [](const CPLLoadWarning& w) { return w.kind() == CPLLoadWarning::CutCopy; });
}

QString user(const CPLClickInfo& document)
{
    QString value;
    document.getValue(L1("User Input"), L1("User"), &value);
    return value;
}

} // namespace

TEST(DicomCopies, EachSaveIsACopyWhateverItsFirstSection)
{
    ASSERT_TRUE(THIRD.endsWith("*** Empty:\t\r\n\n\n\n"));
    const auto second = loadedDicom(IMAGE + FIRST + SECOND);
    EXPECT_EQ(user(*second), L1("Ana"));
    EXPECT_EQ(second->getClickInfoData().toLatin1(), SECOND);
    EXPECT_FALSE(warnsOfACutCopy(*second));

    const auto third = loadedDicom(IMAGE + FIRST + SECOND + THIRD);
    EXPECT_EQ(third->getClickInfoData().toLatin1(), THIRD);
    EXPECT_FALSE(warnsOfACutCopy(*third));
}

// Every length at which an append in place can stop: the copy before is loaded, with the
// warning, until the cut copy is whole.
TEST(DicomCopies, ACutCopyFallsBackToTheLastCompleteOne)
{
    for (int cut = 1; cut < THIRD.size(); ++cut) {
        const auto document = loadedDicom(IMAGE + FIRST + SECOND + THIRD.left(cut));
        EXPECT_EQ(document->getClickInfoData().toLatin1(), SECOND) << cut;
        EXPECT_EQ(user(*document), L1("Ana")) << cut;
        EXPECT_TRUE(warnsOfACutCopy(*document)) << cut;
    }
}

// A save after a cut copy appends its copy after the separator, and that copy is loaded,
// whatever its first section and wherever the cut fell.
TEST(DicomCopies, ASaveAfterACutCopyIsFound)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(L1("scan.dcm"));
    CPLClickInfo latest;
    ASSERT_EQ(latest.loadClickInfoBytes(FIRST.constData(), FIRST.size(), QString()), PL_SUCCESS);
    ASSERT_EQ(latest.setValue(L1("User Input"), L1("User"), L1("Lee")), PL_SUCCESS);
    const QByteArray latestCopy = latest.getClickInfoData().toLatin1();
    for (int cut = 1; cut < THIRD.size(); ++cut) {
        writeBytes(path, IMAGE + FIRST + SECOND + THIRD.left(cut));
        ASSERT_EQ(latest.saveClickInfo(path), PL_SUCCESS);
        const QByteArray bytes = readBytes(path);
        ASSERT_TRUE(bytes.endsWith(latestCopy));
        const auto document = loadedDicom(bytes);
        EXPECT_EQ(document->getClickInfoData().toLatin1(), latestCopy) << cut;
        EXPECT_FALSE(warnsOfACutCopy(*document)) << cut;
        // Three LF in a row stand right before the new copy.
        const QByteArray before = bytes.left(bytes.size() - latestCopy.size());
        EXPECT_TRUE(before.endsWith("\n\n\n") && !before.endsWith("\n\n\n\n")) << cut;
    }
    // After a complete copy nothing is written between the copies.
    writeBytes(path, IMAGE + FIRST + SECOND);
    ASSERT_EQ(latest.saveClickInfo(path), PL_SUCCESS);
    EXPECT_EQ(readBytes(path), IMAGE + FIRST + SECOND + latestCopy);
}
