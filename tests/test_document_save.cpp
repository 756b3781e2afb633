// A document's save over the file it was loaded from: it never writes less than the file held,
// never overwrites a change someone else made since the load, and never writes a line that
// would read back as something else.

#include "TestUtil.h"

#include "PLBkgSummaryInfo.h"
#include "PLClickInfo.h"
#include "PLFileEditor.h"
#include "PLLabelDataSet.h"
#include "PLSection.h"
#include "PLSequenceInfo.h"
#include "PLSettingsFileWrapper.h"
#include "PLStatus.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

// Six sections of which the first holds a value cut by a NUL byte: a load reads the text up to
// it, so four sections and the rest of the second are never loaded.
QByteArray withNul()
{
    QByteArray bytes = "*** ClickNumber:\tKL1_001\r\nClickInfoType:\tRawData\n\n"
                       "*** User Input:\tOrvane Universal\r\nUser:\tKL\nComment:\tlot ";
    bytes += '\0';
    bytes += "5\n\n";
    for (const char* section : { "A", "B", "C", "D" })
        bytes += QByteArray("*** ") + section + ":\t\r\nKey:\tvalue\n\n";
    return bytes + "\n\n";
}

const QByteArray CLEAN = "*** User Input:\tOrvane Universal\r\nUser:\tKL\nCount:\t1\n\n\n\n";

class DocumentSaveTest : public ::testing::Test
{
protected:
    QString path(const char* name) const { return m_dir.filePath(L1(name)); }
    QString file() const { return path("ClickInfo.txt"); }

    // Loads `bytes` from file(), changes a value, and saves over file().
    int editAndSaveOver(const QByteArray& bytes, CPLClickInfo* doc)
    {
        writeBytes(file(), bytes);
        const int status = doc->loadClickInfo(file());
        if (status != PL_SUCCESS && status != PL_MALFORMED_SECTION_HEADER)
            return -status;
        doc->setValue(L1("User Input"), L1("User"), L1("Ana"));
        return doc->saveClickInfo(file());
    }

    QTemporaryDir m_dir;
};

TEST_F(DocumentSaveTest, ASaveOverTheFileNeverWritesLessThanItHeld)
{
    const struct
    {
        const char* what;
        QByteArray bytes;
        const char* lossNames; // a word the reason holds; null when nothing is lost
    } cases[] = {
        { "a NUL byte ends the text", withNul(), "NUL" },
        { "a section repeats a key",
          "*** User Input:\t\r\nUser:\tKL\n\n*** user input:\t\r\nNote:\tkept by hand\n\n\n\n",
          "user input" },
        { "a key repeated with another value",
          "*** User Input:\t\r\nUser:\tKL\nLot:\t4\nLot:\t5\n\n\n\n", "Lot" },
        { "a load that stopped at a malformed header",
          "*** User Input:\t\r\nUser:\tKL\n\n*** Broken\r\nKey:\tv\n\n\n\n", "stopped" },
        { "a key repeated with the same value loses nothing",
          "*** User Input:\t\r\nUser:\tKL\nLot:\t4\nLot:\t4\n\n\n\n", nullptr },
        { "CR LF, blanks and free text are rewritten, not lost",
          "*** User Input:\tOrvane Universal\r\n User :  KL \r\nfree text\r\n\r\n", nullptr },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        CPLClickInfo doc;
        const int status = editAndSaveOver(c.bytes, &doc);
        if (!c.lossNames) {
            EXPECT_EQ(status, PL_SUCCESS);
            EXPECT_TRUE(doc.getLoadIncompleteReason().isEmpty());
            EXPECT_EQ(readBytes(file()), doc.getClickInfoData().toLatin1());
            continue;
        }
        EXPECT_EQ(status, PL_LOAD_INCOMPLETE);
        EXPECT_EQ(readBytes(file()), c.bytes) << "the file is left as it stands";
        const QString reason = doc.getLoadIncompleteReason().join(L1("\n"));
        EXPECT_TRUE(reason.contains(L1(c.lossNames))) << reason.toStdString();
        EXPECT_TRUE(reason.contains(file())) << reason.toStdString();
        // Elsewhere the document saves, and a document emptied on purpose saves over it too.
        EXPECT_EQ(doc.saveClickInfo(path("elsewhere.txt")), PL_SUCCESS);
        doc.clearData();
        EXPECT_TRUE(doc.getLoadIncompleteReason().isEmpty());
        EXPECT_EQ(doc.saveClickInfo(file()), PL_SUCCESS);
    }
}

TEST_F(DocumentSaveTest, ACutDicomCopyIsNotHiddenBehindANewOne)
{
    const QByteArray copy = "*** User Input:\t\r\nUser:\tKL\n\n\n\n";
    const QByteArray cut = "*** User Input:\t\r\nUser:\tNew";
    const QString dicom = path("image.dcm");
    writeBytes(dicom, QByteArray("DICM\0\x01", 6) + copy + cut);
    CPLClickInfo doc;
    ASSERT_EQ(doc.loadClickInfo(dicom), PL_SUCCESS);
    EXPECT_EQ(doc.saveClickInfo(dicom), PL_LOAD_INCOMPLETE);
    EXPECT_EQ(readBytes(dicom).size(), 6 + copy.size() + cut.size());
}

TEST_F(DocumentSaveTest, ASaveNeverOverwritesAChangeMadeSinceTheLoad)
{
    const auto loadedDoc = [&](CPLClickInfo* doc) {
        writeBytes(file(), CLEAN);
        ASSERT_EQ(doc->loadClickInfo(file()), PL_SUCCESS);
        ASSERT_EQ(doc->setValue(L1("User Input"), L1("User"), L1("Ana")), PL_SUCCESS);
    };
    const QByteArray theirs = "*** User Input:\tOrvane Universal\r\nUser:\tZoe\nCount:\t2\n\n\n\n";
    const struct
    {
        const char* what;
        std::function<void()> change;
    } changes[] = {
        { "replaced through a rename",
          [&] {
              writeBytes(path("new"), theirs);
              ASSERT_EQ(::rename(QFile::encodeName(path("new")), QFile::encodeName(file())), 0);
          } },
        { "written in place, same size, same modification time",
          [&] {
              struct stat before
              {
              };
              ASSERT_EQ(::stat(QFile::encodeName(file()), &before), 0);
              QFile in(file());
              ASSERT_TRUE(in.open(QIODevice::ReadWrite));
              ASSERT_EQ(in.write(theirs.left(CLEAN.size())), CLEAN.size());
              in.close();
              const timespec times[2] = { before.st_atim, before.st_mtim };
              ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(file()), times, 0), 0);
          } },
        { "removed", [&] { ASSERT_TRUE(QFile::remove(file())); } },
    };
    for (const auto& c : changes) {
        SCOPED_TRACE(c.what);
        CPLClickInfo doc;
        loadedDoc(&doc);
        c.change();
        const QByteArray before = readBytes(file());
        EXPECT_EQ(doc.saveClickInfo(file()), PL_FILE_CHANGED);
        EXPECT_EQ(readBytes(file()), before);
        EXPECT_EQ(doc.saveClickInfo(path("copy.txt")), PL_SUCCESS) << "elsewhere it saves";
    }

    // Through a symbolic link or another hard link it is the same file.
    CPLClickInfo doc;
    loadedDoc(&doc);
    ASSERT_EQ(::symlink(QFile::encodeName(file()), QFile::encodeName(path("link"))), 0);
    ASSERT_EQ(::link(QFile::encodeName(file()), QFile::encodeName(path("hard"))), 0);
    writeBytes(file(), theirs);
    EXPECT_EQ(doc.saveClickInfo(path("link")), PL_FILE_CHANGED);
    EXPECT_EQ(doc.saveClickInfo(path("hard")), PL_FILE_CHANGED);

    // A change of mode alone changes nothing a save would overwrite; each save is the
    // document's own next start.
    CPLClickInfo again;
    loadedDoc(&again);
    ASSERT_EQ(::chmod(QFile::encodeName(file()), 0640), 0);
    EXPECT_EQ(again.saveClickInfo(file()), PL_SUCCESS);
    EXPECT_EQ(again.setValue(L1("User Input"), L1("Count"), 3), PL_SUCCESS);
    EXPECT_EQ(again.saveClickInfo(file()), PL_SUCCESS);
    EXPECT_EQ(readBytes(file()), again.getClickInfoData().toLatin1());
    writeBytes(file(), theirs);
    EXPECT_EQ(again.saveClickInfo(file()), PL_FILE_CHANGED);
}

// Every document that saves through the acquisition's save checks the file the same way.
TEST_F(DocumentSaveTest, EveryDocumentChecksTheFileItWasLoadedFrom)
{
    const QByteArray labels = "*** User Label Name Set:\tOrvane Universal\r\nUser:\t\n\n\n\n";
    const QByteArray sequence = "*** Sequence:\tSQ1\r\nClickNumbers in Sequence:\t1\n"
                                "ClickNumber 1:\tSQ1_001\n\n\n\n";
    const QByteArray settings = "*** ROI 1:\t\r\nMenuName:\tKidney\nFileName:\tk.xml\n\n\n\n";
    const struct
    {
        const char* what;
        QByteArray bytes;
        std::function<int(const QString&)> loadEditSave;
    } documents[] = {
        { "label sets", labels,
          [](const QString& f) {
              CPLLabelDataSet doc;
              doc.loadClickInfo(f);
              QFile::remove(f);
              writeBytes(f, "*** other:\t\r\n\n\n\n");
              return doc.save(f);
          } },
        { "sequence", sequence,
          [](const QString& f) {
              CPLSequenceInfo doc;
              doc.load(f);
              doc.addClickNumber(L1("SQ1_002"));
              writeBytes(f, "*** Sequence:\tSQ1\r\nClickNumbers:\tEmpty Sequence\n\n\n\n");
              return doc.save(f);
          } },
        { "settings", settings,
          [](const QString& f) {
              CPLSettingsFileWrapper doc;
              doc.loadClickInfo(f);
              writeBytes(f, "*** ROI 2:\t\r\nMenuName:\tLiver\nFileName:\tl.xml\n\n\n\n");
              return doc.save(f);
          } },
    };
    for (const auto& d : documents) {
        SCOPED_TRACE(d.what);
        writeBytes(file(), d.bytes);
        const QByteArray before = readBytes(file());
        EXPECT_EQ(d.loadEditSave(file()), PL_FILE_CHANGED);
        EXPECT_NE(readBytes(file()), before) << "the other writer's bytes stand";
    }

    // The background library saves its summary and indexes together: none of them is written.
    const QString summary = path("BkgSummary.txt");
    writeBytes(summary, "*** SL0001:\t\r\nImage Subtype:\tluminescent\n\n\n\n");
    CPLBkgSummaryInfo library;
    ASSERT_EQ(library.load(m_dir.path()), PL_SUCCESS);
    writeBytes(summary, "*** SL0002:\t\r\nImage Subtype:\tluminescent\n\n\n\n");
    EXPECT_EQ(library.save(m_dir.path()), PL_FILE_CHANGED);
    EXPECT_FALSE(QFile::exists(path("SLindex.txt")));
    EXPECT_FALSE(QFile::exists(path("FLindex.txt")));
    ASSERT_EQ(library.load(m_dir.path()), PL_SUCCESS);
    EXPECT_EQ(library.save(m_dir.path()), PL_SUCCESS) << "loaded again, it saves";
    EXPECT_TRUE(QFile::exists(path("SLindex.txt")));
}

// A document that loads, edits and saves, racing an editor that edits the same file: each
// save either starts from what the file holds or is refused, so no edit of either is lost.
TEST_F(DocumentSaveTest, RacingADocumentAndAnEditorLosesNoUpdate)
{
    writeBytes(file(), "*** Counts:\t\r\nDocument:\t0\nEditor:\t0\n\n\n\n");
    constexpr int EDITS = 200;
    std::atomic<int> refused { 0 };
    std::thread documentSide([&] {
        for (int done = 0; done < EDITS;) {
            CPLClickInfo doc;
            int count = 0;
            if (doc.loadClickInfo(file()) != PL_SUCCESS
                || doc.getValue(L1("Counts"), L1("Document"), &count) != PL_SUCCESS)
                continue; // a save by rename was in between: read again
            doc.setValue(L1("Counts"), L1("Document"), count + 1);
            const int status = doc.saveClickInfo(file());
            if (status == PL_SUCCESS)
                ++done;
            else
                ++refused;
        }
    });
    for (int done = 0; done < EDITS; ++done) {
        CPLFileEditor editor(file());
        ASSERT_EQ(editor.open(), PL_SUCCESS) << editor.errorString().toStdString();
        int count = 0;
        editor.document().getValue(L1("Counts"), L1("Editor"), &count);
        ASSERT_EQ(editor.setValue(L1("Counts"), L1("Editor"), QString::number(count + 1)),
                  PL_SUCCESS);
        ASSERT_EQ(editor.commit(), PL_SUCCESS);
    }
    documentSide.join();
    CPLClickInfo result;
    ASSERT_EQ(result.loadClickInfo(file()), PL_SUCCESS);
    int documentCount = 0;
    int editorCount = 0;
    result.getValue(L1("Counts"), L1("Document"), &documentCount);
    result.getValue(L1("Counts"), L1("Editor"), &editorCount);
    EXPECT_EQ(documentCount, EDITS);
    EXPECT_EQ(editorCount, EDITS);
    RecordProperty("refused_saves", refused.load());
}

// A save writes what the load read, or nothing: a key that a load cut at a shifted place, or
// that would read back as a comment or a header, is not written.
TEST_F(DocumentSaveTest, ASaveReloadsAsItWasReadOrRefuses)
{
    const QByteArray inputs[] = {
        QByteArray("*** User Input:\tU\r\nA:\t1\r\x0bTreatment:\tDrug\r\nB:\t2\r\n\r\n"),
        QByteArray("*** User Input:\tU\r\nxCommentLine 1:\tv\n\n\n\n"),
        QByteArray("*** User Input:\tU\r\n\x0b*** Injected:\tv\n\n\n\n"),
        QByteArray("*** User Input:\tU\r\n  indented:\tv\nk:\t#only a comment\n\n\n\n"),
        CLEAN,
    };
    const auto entriesOf = [](const CPLClickInfo& doc) {
        QStringList entries;
        for (const QString& key : doc.getSectionKeys()) {
            const CPLSection* section = doc[key];
            QStringList keys;
            QStringList values;
            section->getKeyList(&keys);
            section->getRawValueList(&values);
            entries << key << keys << values;
        }
        return entries;
    };
    int refusedCount = 0;
    for (const QByteArray& input : inputs) {
        SCOPED_TRACE(input.constData());
        writeBytes(file(), input);
        CPLClickInfo doc;
        ASSERT_EQ(doc.loadClickInfo(file()), PL_SUCCESS);
        const QString saved = path("saved.txt");
        QFile::remove(saved);
        const int status = doc.saveClickInfo(saved);
        if (status == PL_INVALID_ARGUMENT) {
            EXPECT_FALSE(QFile::exists(saved)) << "nothing written";
            ++refusedCount;
            continue;
        }
        ASSERT_EQ(status, PL_SUCCESS);
        CPLClickInfo reloaded;
        ASSERT_EQ(reloaded.loadClickInfo(saved), PL_SUCCESS);
        EXPECT_EQ(entriesOf(reloaded), entriesOf(doc));
    }
    EXPECT_GE(refusedCount, 2) << "the shifted key and the comment key cannot be written";
}

} // namespace
