// The in-place editor: on files written by hand and by us, an edit changes only its line and
// every other byte stays; refusals change nothing; the lock keeps two editors apart.

#include "PLClickInfo.h"
#include "PLFileEditor.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <functional>

namespace {

using Edit = std::function<int(CPLFileEditor&)>;

Edit setTo(const char* section, const char* key, const char* value)
{
    return [=](CPLFileEditor& e) { return e.setValue(L1(section), L1(key), L1(value)); };
}
Edit add(const char* section, const char* key, const char* value)
{
    return [=](CPLFileEditor& e) { return e.addKeyValue(L1(section), L1(key), L1(value)); };
}
Edit unset(const char* section, const char* key)
{
    return [=](CPLFileEditor& e) { return e.removeKey(L1(section), L1(key)); };
}

struct EditCase
{
    const char* name;
    QByteArray before;
    Edit edit;
    int status;
    QByteArray after; // the file's bytes after the commit (unchanged on a refusal)
};

class FileEditorTest : public ::testing::Test
{
protected:
    QString path(const char* name = "ClickInfo.txt") const { return m_dir.filePath(L1(name)); }

    // Writes `before`, applies `edit` under the lock, commits when it succeeds.
    int apply(const QByteArray& before, const Edit& edit, QString* error = nullptr)
    {
        writeBytes(path(), before);
        CPLFileEditor editor(path());
        int status = editor.open();
        if (status == PL_SUCCESS)
            status = edit(editor);
        if (error)
            *error = editor.errorString();
        return status == PL_SUCCESS ? editor.commit() : status;
    }

    QTemporaryDir m_dir;
};

TEST_F(FileEditorTest, AnEditChangesOnlyItsLine)
{
    const QByteArray crlf = "Lead line  \r\n*** A: x\r\nk :  v   # c\r\nfree text\r\n\r\n";
    const QByteArray ours = "*** A:\tx\r\nk:\tv\nm:\t2\n\n*** B:\ty\r\nz:\t1\n\n\n\n";
    const EditCase cases[] = {
        { "a file we wrote", ours, setTo("a", "K", "new"), PL_SUCCESS,
          "*** A:\tx\r\nk:\tnew\nm:\t2\n\n*** B:\ty\r\nz:\t1\n\n\n\n" },
        { "CR LF, blanks, free text; the comment stays", crlf, setTo("A", "k", "w"), PL_SUCCESS,
          "Lead line  \r\n*** A: x\r\nk :  w\t# c\r\nfree text\r\n\r\n" },
        { "a new comment replaces the old", crlf, setTo("A", "k", "w # mine"), PL_SUCCESS,
          "Lead line  \r\n*** A: x\r\nk :  w # mine\r\nfree text\r\n\r\n" },
        { "CR line ends", "*** A:\tx\rk:\tv\r", setTo("A", "k", "z"), PL_SUCCESS,
          "*** A:\tx\rk:\tz\r" },
        { "byte order mark and leading lines", "\xEF\xBB\xBFOrvane\n\n*** A:\tx\nk:\tv\n",
          setTo("A", "k", "2"), PL_SUCCESS, "\xEF\xBB\xBFOrvane\n\n*** A:\tx\nk:\t2\n" },
        { "an empty value after a colon alone", "*** A:\tx\nk:\nm:\t\n", setTo("A", "k", "1"),
          PL_SUCCESS, "*** A:\tx\nk:\t1\nm:\t\n" },
        { "an empty value after the tab", "*** A:\tx\nk:\nm:\t\n", setTo("A", "m", " 2 "),
          PL_SUCCESS, "*** A:\tx\nk:\nm:\t2\n" },
        { "a repeated key elsewhere stays", "*** A:\t\nk:\t1\nk:\t2\nm:\t3\n",
          setTo("A", "m", "4"), PL_SUCCESS, "*** A:\t\nk:\t1\nk:\t2\nm:\t4\n" },
        { "the first section of a repeated key", "*** A:\t\nk:\t1\n*** a:\t\nk:\t2\n",
          setTo("A", "k", "9"), PL_SUCCESS, "*** A:\t\nk:\t9\n*** a:\t\nk:\t2\n" },

        { "add after the section's last line, with its line end",
          "*** A:\tx\r\nk:\tv\r\n\r\n*** B:\ty\r\nm:\t1\r\n", add("A", "n", "5"), PL_SUCCESS,
          "*** A:\tx\r\nk:\tv\r\nn:\t5\r\n\r\n*** B:\ty\r\nm:\t1\r\n" },
        { "add to a section without lines: the file's key line end",
          "*** A:\tx\r\n\r\n*** B:\ty\r\nm:\t1\n", add("A", "n", "5"), PL_SUCCESS,
          "*** A:\tx\r\nn:\t5\n\r\n*** B:\ty\r\nm:\t1\n" },
        { "add a section to a file we wrote", "*** A:\tx\r\nk:\tv\n\n\n\n", add("B", "m", "1"),
          PL_SUCCESS, "*** A:\tx\r\nk:\tv\n\n*** B:\t\r\nm:\t1\n\n\n\n" },
        { "add a section to a file without a last line end", "*** A:\tx\nk:\tv",
          add("B", "m", "1"), PL_SUCCESS, "*** A:\tx\nk:\tv\n\n*** B:\t\nm:\t1" },
        { "add a key after a last line without line end", "*** A:\tx\r\nk:\tv",
          add("A", "m", "1"), PL_SUCCESS, "*** A:\tx\r\nk:\tv\nm:\t1" },
        { "add a section to an empty file", "", add("A", "k", "v"), PL_SUCCESS,
          "*** A:\t\r\nk:\tv\n\n\n\n" },

        { "remove a line with its line end", "*** A:\tx\r\nk:\tv\r\nm:\t2\r\n",
          unset("A", "K"), PL_SUCCESS, "*** A:\tx\r\nm:\t2\r\n" },
        { "remove the last line without line end", "*** A:\tx\nk:\tv\r\nm:\t2", unset("A", "m"),
          PL_SUCCESS, "*** A:\tx\nk:\tv" },

        { "a removal that would change how the next line reads", "*** A:\t\nk:\t1\n  v:\t2\n",
          unset("A", "k"), PL_INVALID_ARGUMENT, "*** A:\t\nk:\t1\n  v:\t2\n" },
        { "a key held twice is not edited", "*** A:\t\nk:\t1\nk:\t2\n", setTo("A", "k", "3"),
          PL_KEY_REPEATED, "*** A:\t\nk:\t1\nk:\t2\n" },
        { "nor removed", "*** A:\t\nk:\t1\nK:\t2\n", unset("A", "k"), PL_KEY_REPEATED,
          "*** A:\t\nk:\t1\nK:\t2\n" },
        { "a value that would write a line of its own", "*** A:\t\nk:\t1\n",
          setTo("A", "k", "x\nUser:\tsomeone"), PL_INVALID_ARGUMENT, "*** A:\t\nk:\t1\n" },
        { "a key with a colon", "*** A:\t\nk:\t1\n", add("A", "a:b", "1"), PL_INVALID_ARGUMENT,
          "*** A:\t\nk:\t1\n" },
        { "a section key with a \"#\"", "*** A:\t\nk:\t1\n", add("lum#1", "k", "1"),
          PL_INVALID_ARGUMENT, "*** A:\t\nk:\t1\n" },
        { "a key present already", "*** A:\t\nk:\t1\n", add("a", "K", "2"), PL_INVALID_ARGUMENT,
          "*** A:\t\nk:\t1\n" },
        { "a missing key", "*** A:\t\nk:\t1\n", setTo("A", "n", "2"), PL_KEY_NOT_FOUND,
          "*** A:\t\nk:\t1\n" },
        { "a section beyond a NUL byte", QByteArray("*** A:\tx\nk:\tv\n\0*** B:\ty\nz:\t1\n", 28),
          setTo("B", "z", "2"), PL_SECTION_NOT_PRESENT,
          QByteArray("*** A:\tx\nk:\tv\n\0*** B:\ty\nz:\t1\n", 28) },
    };
    for (const EditCase& c : cases) {
        QString error;
        EXPECT_EQ(apply(c.before, c.edit, &error), c.status) << c.name << ": " << error.toStdString();
        EXPECT_EQ(readBytes(path()), c.after) << c.name;
        EXPECT_EQ(error.isEmpty(), c.status == PL_SUCCESS) << c.name << ": " << error.toStdString();
    }
}

TEST_F(FileEditorTest, RefusalsSayWhereAndWhy)
{
    QString error;
    EXPECT_EQ(apply("lead\n*** A:\t\nk:\t1\nm:\t2\nK:\t3\n", setTo("a", "k", "9"), &error),
              PL_KEY_REPEATED);
    EXPECT_EQ(error,
              path() + L1(":5: section \"a\" holds key \"k\" on lines 3 and 5; it is not edited "
                          "until one of them is removed by hand"));
    EXPECT_EQ(apply("*** A:\t\n", setTo("A", "k", "1"), &error), PL_KEY_NOT_FOUND);
    EXPECT_EQ(error, path() + L1(":1: section \"A\" has no key \"k\""));

    CPLFileEditor editor(path(("absent.txt")));
    EXPECT_EQ(editor.openWithoutLock(), PL_FILE_OPEN_FAILED);
    EXPECT_TRUE(editor.errorString().startsWith(path("absent.txt") + L1(": ")))
        << editor.errorString().toStdString();
    EXPECT_EQ(editor.setValue(L1("A"), L1("k"), L1("1")), PL_NOTHING_TO_WORK_ON);
}

TEST_F(FileEditorTest, SeveralEditsFormatAndPreview)
{
    const QByteArray before = "*** A:\tx\r\n k: v \r\n#note\r\n";
    writeBytes(path(), before);
    CPLFileEditor preview(path());
    ASSERT_EQ(preview.openWithoutLock(), PL_SUCCESS);
    EXPECT_FALSE(preview.loadWarnings().isEmpty());
    ASSERT_EQ(preview.addKeyValue(L1("A"), L1("n"), L1("1")), PL_SUCCESS);
    ASSERT_EQ(preview.setValue(L1("A"), L1("n"), L1("2")), PL_SUCCESS);
    EXPECT_EQ(preview.editedBytes(), QByteArray("*** A:\tx\r\n k: v \r\n#note\r\nn:\t2\r\n"));
    EXPECT_EQ(preview.originalBytes(), before);
    EXPECT_EQ(preview.commit(), PL_INVALID_ARGUMENT) << "a preview writes nothing";
    EXPECT_EQ(readBytes(path()), before);

    CPLFileEditor format(path());
    ASSERT_EQ(format.open(), PL_SUCCESS);
    ASSERT_EQ(format.rewriteCanonical(), PL_SUCCESS);
    ASSERT_EQ(format.commit(), PL_SUCCESS);
    CPLClickInfo doc;
    ASSERT_EQ(doc.loadClickInfo(path()), PL_SUCCESS);
    EXPECT_EQ(readBytes(path()), doc.getClickInfoData().toLatin1());
    EXPECT_TRUE(doc.getLoadWarnings().isEmpty()) << doc.getLoadWarnings().join(L1("\n")).toStdString();
}

TEST_F(FileEditorTest, ASecondEditorWaitsThenFailsNamingTheLock)
{
    writeBytes(path(), "*** A:\t\nk:\t1\nm:\t2\n");
    CPLFileEditor first(path());
    ASSERT_EQ(first.open(), PL_SUCCESS);
    CPLFileEditor second(path());
    EXPECT_EQ(second.open(50), PL_FILE_LOCKED);
    EXPECT_TRUE(second.errorString().contains(L1("ClickInfo.txt.lock")))
        << second.errorString().toStdString();
    ASSERT_EQ(first.setValue(L1("A"), L1("k"), L1("3")), PL_SUCCESS);
    ASSERT_EQ(first.commit(), PL_SUCCESS);
    // Now the second reads what the first wrote, and keeps it.
    ASSERT_EQ(second.open(50), PL_SUCCESS);
    ASSERT_EQ(second.setValue(L1("A"), L1("m"), L1("4")), PL_SUCCESS);
    ASSERT_EQ(second.commit(), PL_SUCCESS);
    EXPECT_EQ(readBytes(path()), QByteArray("*** A:\t\nk:\t3\nm:\t4\n"));
}

TEST_F(FileEditorTest, ADicomFileGetsTheEditedCopyAppended)
{
    const QByteArray image("DICM\0\x01\x02", 7);
    const QByteArray copy = "*** ClickNumber:\tC1\r\nk:\tv\n\n\n\n";
    writeBytes(path("scan.DCM"), image + copy);
    CPLFileEditor editor(path("scan.DCM"));
    ASSERT_EQ(editor.open(), PL_SUCCESS);
    EXPECT_EQ(editor.originalBytes(), copy);
    ASSERT_EQ(editor.setValue(L1("ClickNumber"), L1("k"), L1("w")), PL_SUCCESS);
    ASSERT_EQ(editor.commit(), PL_SUCCESS);
    const QByteArray edited = "*** ClickNumber:\tC1\r\nk:\tw\n\n\n\n";
    EXPECT_EQ(readBytes(path("scan.DCM")), image + copy + edited);

    // After a copy cut within its first line, the next copy begins a line of its own, after
    // three LF in a row, and is the one loaded.
    writeBytes(path("scan.DCM"), image + copy + "*** Click");
    CPLFileEditor again(path("scan.DCM"));
    ASSERT_EQ(again.open(), PL_SUCCESS);
    EXPECT_EQ(again.loadWarnings().last().kind(), CPLLoadWarning::CutCopy);
    ASSERT_EQ(again.setValue(L1("ClickNumber"), L1("k"), L1("w")), PL_SUCCESS);
    ASSERT_EQ(again.commit(), PL_SUCCESS);
    EXPECT_EQ(readBytes(path("scan.DCM")), image + copy + "*** Click\n\n\n" + edited);
    CPLClickInfo doc;
    ASSERT_EQ(doc.loadClickInfo(path("scan.DCM")), PL_SUCCESS);
    EXPECT_EQ(doc.getClickInfoData().toLatin1(), edited);
    EXPECT_TRUE(doc.getLoadWarnings().isEmpty());
}

} // namespace
