#ifndef SAVETESTUTIL_H
#define SAVETESTUTIL_H

// Helpers of the tests of saving: child processes (as another user when root), locks held
// the way another editor holds them, the library's messages about saving.

#include "PLClickInfo.h"
#include "PLSection.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QMutex>
#include <QTemporaryDir>

#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t NOBODY = 65534;

inline QByteArray native(const QString& path)
{
    return QFile::encodeName(path);
}

using FileStatus = struct stat;

inline FileStatus statOf(const QString& path)
{
    FileStatus status {};
    EXPECT_EQ(::lstat(native(path).constData(), &status), 0) << path.toStdString();
    return status;
}

// Every name in a folder, sorted.
inline QStringList namesIn(const QString& folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System | QDir::Hidden, QDir::Name);
}

// Starts `work` in a child process, dropping root's rights first when `unprivileged` (so
// that permissions apply). The child ends itself after 10 s, so that a call that would block
// fails the test instead of hanging it.
inline pid_t startChild(const std::function<int()>& work, bool unprivileged)
{
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::alarm(10);
        if (unprivileged && ::geteuid() == 0 && (::setgid(NOBODY) != 0 || ::setuid(NOBODY) != 0))
            ::_exit(254);
        ::_exit(work());
    }
    return pid;
}

// What the child returned, or 128 + the signal that ended it.
inline int waitChild(pid_t pid)
{
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

inline int inChild(const std::function<int()>& work)
{
    return waitChild(startChild(work, false));
}

// Sets OVPARSER_FAIL_SYSCALL for the scope.
struct FailingCall
{
    explicit FailingCall(const char* operation) { qputenv("OVPARSER_FAIL_SYSCALL", operation); }
    ~FailingCall() { qunsetenv("OVPARSER_FAIL_SYSCALL"); }
};

// Holds a file's lock the way another editor does: flock(2) on an open file.
struct HeldLock
{
    explicit HeldLock(const QString& path)
        : fd(::open(native(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644))
    {
        EXPECT_EQ(::flock(fd, LOCK_EX), 0);
    }
    ~HeldLock() { ::close(fd); }
    int fd;
};

// The library's messages about saving, from every thread, collected while `work` runs.
inline QString saveMessagesOf(const std::function<void()>& work)
{
    static QMutex mutex;
    static QStringList messages;
    const auto collect = [](QtMsgType, const QMessageLogContext& context, const QString& text) {
        const QMutexLocker locker(&mutex);
        if (qstrcmp(context.category, "ovparser.save") == 0)
            messages.append(text);
    };
    const QtMessageHandler previous = qInstallMessageHandler(collect);
    work();
    qInstallMessageHandler(previous);
    return messages.join(QLatin1Char('\n'));
}

// A folder where no file can be created, holding one file anyone may write; made writable
// again when it goes, so that it can be removed.
struct ReadOnlyFolder
{
    explicit ReadOnlyFolder(const QTemporaryDir& root)
        : folder(root.filePath(L1("read-only")))
        , file(folder + QLatin1String("/ClickInfo.txt"))
    {
        QDir().mkdir(folder);
        writeBytes(file, "old");
        // Open to the user the saves may run as.
        EXPECT_EQ(::chmod(native(root.path()).constData(), 0755), 0);
        EXPECT_EQ(::chmod(native(file).constData(), 0666), 0);
        EXPECT_EQ(::chmod(native(folder).constData(), 0555), 0);
    }
    ~ReadOnlyFolder() { ::chmod(native(folder).constData(), 0755); }
    QString folder;
    QString file;
};

} // namespace

// A document of one section to save, in a temporary folder: what the save tests write.
class SaveTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        auto* section = new CPLSection(L1("User Input"), QString());
        section->addKeyValue(L1("User"), L1("Ana Ruiz"));
        m_doc.addSection(section);
        m_text = m_doc.getClickInfoData().toLatin1();
    }
    QString path(const char* name) const { return m_dir.filePath(L1(name)); }
    int save(const QString& file) const { return m_doc.saveClickInfo(file); }

    QTemporaryDir m_dir;
    CPLClickInfo m_doc;
    QByteArray m_text;
};

#endif // SAVETESTUTIL_H
