// The locks of a save and what a save keeps of the file: writers that lock in different
// ways exclude each other, a lock left by a writer that ended is taken over, a name too long
// for a lock file is still saved, extended attributes and ACLs stay, a bind-mounted file is
// written, and a file its writer may not write is refused.

#include "PLClickInfo.h"
#include "PLFileEditor.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "SaveTestUtil.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <thread>

#include <cstdint>
#include <cstring>
#include <iostream>
#include <sys/mount.h>
#include <sys/xattr.h>
#include <vector>

namespace {

const QByteArray COUNTER = "*** Counter:\nValue:\t0\n\n\n";

// Adds one to the counter through the editor, as `ovtool set` does: read under the lock,
// edited, written. 0, or the status of the step that failed.
int increment(const QString& file)
{
    CPLFileEditor editor(file);
    int status = editor.open();
    int value = 0;
    const CPLSection* section = status == PL_SUCCESS ? editor.document()[L1("Counter")] : nullptr;
    if (status == PL_SUCCESS)
        status = section ? section->getValue(L1("Value"), &value) : PL_SECTION_NOT_PRESENT;
    if (status == PL_SUCCESS)
        status = editor.setValue(L1("Counter"), L1("Value"), QString::number(value + 1));
    return status == PL_SUCCESS ? editor.commit() : status;
}

int counterOf(const QString& file)
{
    CPLClickInfo document;
    int value = -1;
    if (document.loadClickInfo(file) != PL_SUCCESS || !document[L1("Counter")])
        return -1;
    document[L1("Counter")]->getValue(L1("Value"), &value);
    return value;
}

// `edits` increments in a child process, begun once the pipe `start` is closed (so that two
// writers begin at once); it returns how many failed (at most 250).
pid_t startIncrements(const QString& file, int edits, bool unprivileged, const int start[2])
{
    const int readEnd = start[0];
    const int writeEnd = start[1];
    return startChild(
        [=] {
            ::alarm(60); // instead of the usual 10 s: a few hundred synced saves
            ::close(writeEnd);
            char byte = 0;
            while (::read(readEnd, &byte, 1) > 0) { }
            int failed = 0;
            for (int i = 0; i < edits; ++i)
                failed += increment(file) == PL_SUCCESS ? 0 : 1;
            return std::min(failed, 250);
        },
        unprivileged);
}

// The bytes of extended attribute `name` of `path`, or empty with *error set.
QByteArray attribute(const QString& path, const char* name, int* error = nullptr)
{
    QByteArray value(4096, '\0');
    const ssize_t size = ::getxattr(native(path).constData(), name, value.data(), value.size());
    if (error)
        *error = size < 0 ? errno : 0;
    value.resize(int(qMax<ssize_t>(size, 0)));
    return value;
}

// An access ACL in the system's binary form: the owner, group and others as in mode 0644,
// and user 4321 granted read and write.
QByteArray aclGrantingUser4321()
{
    struct Entry
    {
        std::uint16_t tag, permissions;
        std::uint32_t id;
    };
    const std::uint32_t undefined = 0xFFFFFFFF;
    const Entry entries[] = { { 0x01, 6, undefined },
                              { 0x02, 6, 4321 },
                              { 0x04, 4, undefined },
                              { 0x10, 6, undefined },
                              { 0x20, 4, undefined } };
    const std::uint32_t version = 2;
    QByteArray blob(reinterpret_cast<const char*>(&version), sizeof version);
    blob.append(reinterpret_cast<const char*>(entries), sizeof entries);
    return blob;
}

class SaveLocksTest : public SaveTest
{
protected:
    // "own/ClickInfo.txt", holding "old", in a folder of its own, both owned by nobody.
    QString ownFileOfNobody()
    {
        const QString folder = path("own");
        const QString file = folder + L1("/ClickInfo.txt");
        EXPECT_TRUE(QDir().mkdir(folder));
        writeBytes(file, "old");
        for (const QString& name : { folder, file })
            EXPECT_EQ(::chown(native(name).constData(), NOBODY, NOBODY), 0);
        return file;
    }
    void SetUp() override
    {
        SaveTest::SetUp();
        // Open to the user the saves may run as.
        ASSERT_EQ(::chmod(native(m_dir.path()).constData(), 0755), 0);
    }
};

} // namespace

TEST_F(SaveLocksTest, ALockLeftByAWriterThatEndedIsTakenOverAtOnce)
{
    const QString file = path("ClickInfo.txt");
    const QString lock = file + L1(".lock");
    const std::function<void()> leaveLock[] = {
        [&] { writeBytes(lock, ""); }, // no process ever held it
        [&] { // an editor killed while it held it
            const int died = inChild([&] {
                CPLFileEditor editor(file);
                if (editor.open() == PL_SUCCESS)
                    ::raise(SIGKILL);
                return 1;
            });
            EXPECT_EQ(died, 128 + SIGKILL);
        },
    };
    for (const auto& leave : leaveLock) {
        writeBytes(file, "old");
        leave();
        ASSERT_TRUE(QFileInfo::exists(lock));
        QElapsedTimer timer;
        timer.start();
        int status = -1;
        const QString text = saveMessagesOf([&] { status = save(file); });
        EXPECT_EQ(status, PL_SUCCESS);
        EXPECT_LT(timer.elapsed(), 1000) << "waited for a lock nobody holds";
        EXPECT_TRUE(text.contains(
            lock + L1(": a lock left by an editor that ended (no process holds it); taken over")))
            << text.toStdString();
        EXPECT_EQ(readBytes(file), m_text);
        EXPECT_EQ(namesIn(m_dir.path()), L1List({ "ClickInfo.txt" }));
    }
}

// A writer that can create the lock file and one that cannot (it may write the file, not its
// folder) each add one to a counter, many times at once: every increment stays.
TEST_F(SaveLocksTest, WritersThatLockInDifferentWaysLoseNoUpdate)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root, to run the second writer as another user";
    const int edits = 200;
    const ReadOnlyFolder shared(m_dir);
    writeBytes(shared.file, COUNTER);
    int start[2];
    ASSERT_EQ(::pipe(start), 0);
    const pid_t withLockFile = startIncrements(shared.file, edits, false, start);
    const pid_t inPlace = startIncrements(shared.file, edits, true, start);
    QElapsedTimer timer;
    timer.start();
    ::close(start[0]);
    ::close(start[1]);
    EXPECT_EQ(waitChild(withLockFile), 0) << "failed edits";
    EXPECT_EQ(waitChild(inPlace), 0) << "failed edits";
    const int counter = counterOf(shared.file);
    std::cout << "2 writers x " << edits << " edits: counter " << counter << ", "
              << 2 * edits - counter << " lost, " << timer.elapsed() << " ms\n";
    EXPECT_EQ(counter, 2 * edits);
    EXPECT_EQ(namesIn(shared.folder), L1List({ "ClickInfo.txt" }));
}

// Lock files left without a holder at any moment (as by writers killed between their
// create and their flock) are taken over, and never let two writers in at once.
TEST_F(SaveLocksTest, LocksLeftAtAnyMomentNeverLetTwoWritersIn)
{
    const int writers = 3;
    const int edits = 100;
    const QString file = path("ClickInfo.txt");
    const QByteArray lock = native(file + L1(".lock"));
    writeBytes(file, COUNTER);
    std::atomic<bool> done { false };
    std::atomic<int> left { 0 };
    std::thread leaver([&] {
        while (!done) {
            const int fd = ::open(lock.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
            if (fd >= 0) {
                ::close(fd);
                ++left;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    std::vector<std::future<int>> failed;
    QElapsedTimer timer;
    timer.start();
    for (int w = 0; w < writers; ++w) {
        failed.push_back(std::async(std::launch::async, [&] {
            for (int i = 0; i < edits; ++i) {
                if (increment(file) != PL_SUCCESS)
                    return edits - i; // the rest is not tried
            }
            return 0;
        }));
    }
    for (auto& f : failed)
        EXPECT_EQ(f.get(), 0) << "edits not made";
    done = true;
    leaver.join();
    const int counter = counterOf(file);
    std::cout << writers << " writers x " << edits << " edits, " << left
              << " locks left meanwhile: counter " << counter << ", " << writers * edits - counter
              << " lost, " << timer.elapsed() << " ms\n";
    EXPECT_EQ(counter, writers * edits);
    EXPECT_GT(left, 0);
}

TEST_F(SaveLocksTest, ANameTooLongForItsLockFileIsSavedInPlace)
{
    // 255 bytes, the longest name: "<name>.lock" cannot be created.
    const QString existing = m_dir.filePath(QString(251, QLatin1Char('a')) + L1(".txt"));
    const QString added = m_dir.filePath(QString(251, QLatin1Char('b')) + L1(".txt"));
    writeBytes(existing, "old");
    const ino_t inode = statOf(existing).st_ino;
    EXPECT_EQ(save(existing), PL_SUCCESS);
    EXPECT_EQ(readBytes(existing), m_text);
    EXPECT_EQ(statOf(existing).st_ino, inode) << "written in place";
    {
        const FailingCall failing("write");
        EXPECT_EQ(save(added), PL_SHORT_WRITE);
    }
    EXPECT_FALSE(QFileInfo::exists(added)) << "a new file whose write failed is removed";
    EXPECT_EQ(save(added), PL_SUCCESS);
    EXPECT_EQ(readBytes(added), m_text);
    EXPECT_EQ(namesIn(m_dir.path()),
              QStringList({ QFileInfo(existing).fileName(), QFileInfo(added).fileName() }));
}

TEST_F(SaveLocksTest, ExtendedAttributesAndTheAclStay)
{
    const QString file = path("ClickInfo.txt");
    const struct
    {
        const char* name;
        QByteArray value;
    } attributes[] = {
        { "user.origin", "bench 3" },
        { "system.posix_acl_access", aclGrantingUser4321() },
    };
    for (const auto& a : attributes) {
        QFile::remove(file);
        writeBytes(file, "old");
        if (::setxattr(native(file).constData(), a.name, a.value.constData(), a.value.size(), 0)
            != 0) {
            std::cout << a.name << ": not kept by this file system (" << std::strerror(errno)
                      << "), not tested\n";
            continue;
        }
        const QByteArray before = attribute(file, a.name);
        const mode_t mode = statOf(file).st_mode;
        EXPECT_EQ(save(file), PL_SUCCESS) << a.name;
        EXPECT_EQ(readBytes(file), m_text) << a.name;
        int error = 0;
        EXPECT_EQ(attribute(file, a.name, &error), before)
            << a.name << ": " << std::strerror(error);
        EXPECT_EQ(statOf(file).st_mode, mode) << a.name;
        EXPECT_EQ(namesIn(m_dir.path()), L1List({ "ClickInfo.txt" })) << a.name;
    }
}

// An attribute its writer may not give a new file (security.*, for a user other than root)
// keeps the file, written in place.
TEST_F(SaveLocksTest, AnAttributeTheWriterCannotGiveIsKeptByAWriteInPlace)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root, to set the attribute and run the writer as another user";
    const QString file = ownFileOfNobody();
    const QString folder = QFileInfo(file).path();
    if (::setxattr(native(file).constData(), "security.origin", "bench 3", 7, 0) != 0)
        GTEST_SKIP() << "security.* attributes not kept here: " << std::strerror(errno);
    const ino_t inode = statOf(file).st_ino;
    EXPECT_EQ(waitChild(startChild([&] { return save(file); }, true)), PL_SUCCESS);
    EXPECT_EQ(readBytes(file), m_text);
    EXPECT_EQ(attribute(file, "security.origin"), "bench 3");
    EXPECT_EQ(statOf(file).st_ino, inode);
    EXPECT_EQ(namesIn(folder), L1List({ "ClickInfo.txt" }));
}

TEST_F(SaveLocksTest, AFileThatIsAMountPointIsWrittenInPlace)
{
    const QString source = path("source.txt");
    const QString file = path("ClickInfo.txt");
    writeBytes(source, "old");
    writeBytes(file, "");
    if (::mount(native(source).constData(), native(file).constData(), nullptr, MS_BIND, nullptr)
        != 0)
        GTEST_SKIP() << "no bind mount here: " << std::strerror(errno);
    const int status = save(file);
    const QByteArray seen = readBytes(file);
    EXPECT_EQ(::umount2(native(file).constData(), MNT_DETACH), 0);
    EXPECT_EQ(status, PL_SUCCESS) << getLastSystemError().toStdString();
    EXPECT_EQ(seen, m_text);
    EXPECT_EQ(readBytes(source), m_text);
    EXPECT_EQ(namesIn(m_dir.path()), L1List({ "ClickInfo.txt", "source.txt" }));
}

TEST_F(SaveLocksTest, AFileItsWriterMayNotWriteIsRefused)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root, to run the writer as another user";
    // The writer's own file, mode 0444, in its own folder: a rename could replace it, an
    // open for writing could not.
    const QString file = ownFileOfNobody();
    const QString folder = QFileInfo(file).path();
    ASSERT_EQ(::chmod(native(file).constData(), 0444), 0);
    const auto saveAsOwner = [&] {
        const int status = save(file);
        return getLastSystemError() == L1("Permission denied") ? status : 255;
    };
    EXPECT_EQ(waitChild(startChild(saveAsOwner, true)), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(readBytes(file), "old");
    EXPECT_EQ(namesIn(folder), L1List({ "ClickInfo.txt" }));
    // Root may write any file.
    EXPECT_EQ(save(file), PL_SUCCESS);
    EXPECT_EQ(readBytes(file), m_text);
    EXPECT_EQ(statOf(file).st_mode & 07777, 0444u);
}
