// Reading and saving files: what is refused, what a save keeps of the file it replaces (its
// links, owner, group and mode), locks, and that no failure harms the old file.

#include "PLClickInfo.h"
#include "PLFileEditor.h"
#include "PLSection.h"
#include "PLSpectralWrapper.h"
#include "PLStatus.h"
#include "PLXMLReader.h"
#include "SaveTestUtil.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QMutex>
#include <QProcess>
#include <QTemporaryDir>

#include <fcntl.h>
#include <functional>
#include <future>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

// The files a save meets: a file replaced through a rename or written in place (a second
// hard link), a DICOM file appended to either way, and a file that does not exist yet.
enum class Layout { Replace, InPlace, Append, AppendInPlace, New };
const Layout kLayouts[]
    = { Layout::Replace, Layout::InPlace, Layout::Append, Layout::AppendInPlace, Layout::New };

const char* layoutName(Layout layout)
{
    const char* const names[] = { "replace", "in place", "append", "append in place", "new" };
    return names[int(layout)];
}

bool inPlace(Layout layout)
{
    return layout == Layout::InPlace || layout == Layout::AppendInPlace;
}

// A folder laid out for a save, and what it held before.
struct Scene
{
    Scene(const QString& root, Layout layout)
        : folder(root + QLatin1Char('/') + QLatin1String(layoutName(layout)))
        , append(layout == Layout::Append || layout == Layout::AppendInPlace)
        , target(folder + (append ? QLatin1String("/image.dcm") : QLatin1String("/ClickInfo.txt")))
        , old(append ? QByteArray("DICM\0\0\x01\x02", 8) : QByteArray(1000, 'o'))
    {
        QDir().mkpath(folder);
        if (layout != Layout::New)
            writeBytes(target, old);
        if (inPlace(layout)) {
            EXPECT_EQ(::link(native(target).constData(),
                             native(target + QLatin1String(".link")).constData()),
                      0);
        }
        names = namesIn(folder);
    }
    // The file holds what it held, and the folder nothing more.
    void expectUnchanged() const
    {
        EXPECT_EQ(QFileInfo::exists(target), !names.isEmpty());
        EXPECT_EQ(readBytes(target), names.isEmpty() ? QByteArray() : old);
        EXPECT_EQ(namesIn(folder), names);
    }
    // The file holds `text` (after the old bytes, for an append), and the folder nothing more.
    void expectSaved(const QByteArray& text) const
    {
        EXPECT_EQ(readBytes(target), append ? old + text : text);
        EXPECT_EQ(namesIn(folder),
                  names.isEmpty() ? QStringList(QFileInfo(target).fileName()) : names);
    }

    QString folder;
    bool append;
    QString target;
    QByteArray old;
    QStringList names;
};

using FileIoTest = SaveTest;

} // namespace

TEST_F(FileIoTest, ASaveKeepsTheOwnerGroupAndModeOfTheFileItReplaces)
{
    // Root gives the file to another user too (only root can); set-id bits are given up by
    // a write when the writer may not keep them, so they show what the save restores.
    const bool root = ::geteuid() == 0;
    const FileStatus own = statOf(m_dir.path());
    const uid_t owner = root ? 4321 : own.st_uid;
    const gid_t group = root ? 4322 : own.st_gid;
    for (const mode_t mode : { 0444, 0640, 0600, 04755, 02750, 06711 }) {
        // A user other than root may not write a file of mode 0444 (a save refuses it).
        if (mode == 0444 && !root)
            continue;
        const QString file = path("ClickInfo.txt");
        QFile::remove(file);
        writeBytes(file, "old");
        ASSERT_EQ(::chown(native(file).constData(), owner, group), 0);
        ASSERT_EQ(::chmod(native(file).constData(), mode), 0);
        EXPECT_EQ(save(file), PL_SUCCESS) << std::oct << mode;
        EXPECT_EQ(readBytes(file), m_text) << std::oct << mode;
        const FileStatus status = statOf(file);
        EXPECT_EQ(status.st_mode & 07777, mode) << std::oct << mode;
        EXPECT_EQ(status.st_uid, owner) << std::oct << mode;
        EXPECT_EQ(status.st_gid, group) << std::oct << mode;
        EXPECT_EQ(namesIn(m_dir.path()), L1List({ "ClickInfo.txt" })) << std::oct << mode;
    }
}

TEST_F(FileIoTest, AHardLinkStaysOneFileSharedByItsNames)
{
    for (const char* name : { "ClickInfo.txt", "image.dcm" }) {
        const QString file = path(name);
        const QString other = file + QLatin1String(".link");
        writeBytes(file, "old");
        ASSERT_EQ(::link(native(file).constData(), native(other).constData()), 0);
        EXPECT_EQ(save(file), PL_SUCCESS) << name;
        EXPECT_EQ(statOf(file).st_ino, statOf(other).st_ino) << name;
        EXPECT_EQ(statOf(other).st_nlink, 2u) << name;
        const QByteArray kept = QByteArray(name).endsWith(".dcm") ? "old" : "";
        EXPECT_EQ(readBytes(other), kept + m_text) << name;
        EXPECT_FALSE(QFileInfo::exists(file + QLatin1String(".lock"))) << name;
    }
}

TEST_F(FileIoTest, ASymbolicLinkStaysALinkAndItsTargetIsSaved)
{
    QDir(m_dir.path()).mkdir(L1("data"));
    writeBytes(path("data/ClickInfo.txt"), "old");
    const struct
    {
        const char* link;
        const char* pointsTo;
        const char* target;
    } links[] = {
        { "link.txt", "data/ClickInfo.txt", "data/ClickInfo.txt" },
        { "chain.txt", "link.txt", "data/ClickInfo.txt" }, // a link to a link
        { "dangling.txt", "data/New.txt", "data/New.txt" }, // the target is created
    };
    for (const auto& link : links) {
        ASSERT_EQ(::symlink(link.pointsTo, native(path(link.link)).constData()), 0);
        EXPECT_EQ(save(path(link.link)), PL_SUCCESS) << link.link;
        EXPECT_TRUE(QFileInfo(path(link.link)).isSymLink()) << link.link;
        EXPECT_EQ(readBytes(path(link.target)), m_text) << link.link;
        writeBytes(path(link.target), "old");
    }
    EXPECT_EQ(namesIn(path("data")), L1List({ "ClickInfo.txt", "New.txt" }));
    EXPECT_EQ(namesIn(m_dir.path()), L1List({ "chain.txt", "dangling.txt", "data", "link.txt" }));
}

TEST_F(FileIoTest, OnlyRegularFilesAreReadOrWritten)
{
    ASSERT_EQ(::mkfifo(native(path("fifo.txt")).constData(), 0644), 0);
    ASSERT_EQ(::symlink("fifo.txt", native(path("fifo-link.txt")).constData()), 0);
    QDir(m_dir.path()).mkdir(L1("folder"));
    enum Operation { Load, Lookup, Save };
    const struct
    {
        Operation operation;
        QString file;
        int status;
        const char* systemError;
    } cases[] = {
        { Load, path("fifo.txt"), PL_NOT_REGULAR_FILE, "" },
        { Lookup, path("fifo.txt"), PL_NOT_REGULAR_FILE, "" },
        { Save, path("fifo.txt"), PL_NOT_REGULAR_FILE, "" },
        { Save, path("fifo-link.txt"), PL_NOT_REGULAR_FILE, "" },
        { Load, L1("/dev/zero"), PL_NOT_REGULAR_FILE, "" },
        { Save, L1("/dev/null"), PL_NOT_REGULAR_FILE, "" },
        { Load, path("folder"), PL_FILE_OPEN_FAILED, "Is a directory" },
        { Save, path("folder"), PL_FILE_OPEN_FAILED, "Is a directory" },
        { Load, path("absent.txt"), PL_FILE_OPEN_FAILED, "No such file or directory" },
        { Save, path("absent/ClickInfo.txt"), PL_FILE_OPEN_FAILED, "No such file or directory" },
    };
    for (const auto& c : cases) {
        // In a child, so that a FIFO opened by mistake ends the child instead of hanging.
        const int status = inChild([&] {
            CPLClickInfo doc;
            QString value;
            const int result = c.operation == Load ? doc.loadClickInfo(c.file)
                : c.operation == Lookup
                ? CPLClickInfo::obtainValueFromClickInfoFile(c.file, L1("User"), &value)
                : m_doc.saveClickInfo(c.file);
            return getLastSystemError() == L1(c.systemError) ? result : 255;
        });
        EXPECT_EQ(status, c.status) << c.operation << ' ' << c.file.toStdString();
    }
    EXPECT_TRUE(S_ISFIFO(statOf(path("fifo.txt")).st_mode));
    EXPECT_EQ(namesIn(m_dir.path()), L1List({ "fifo-link.txt", "fifo.txt", "folder" }));
}

TEST_F(FileIoTest, AFileLargerThanTheLimitIsRefusedBeforeItIsRead)
{
    // Every way a file is read; sizes past 2 and 4 GiB, where a 32-bit size would wrap.
    const std::function<int(const QString&)> readers[] = {
        [](const QString& file) { return CPLClickInfo().loadClickInfo(file); },
        [](const QString& file) {
            QString value;
            return CPLClickInfo::obtainValueFromClickInfoFile(file, L1("k"), &value);
        },
        [](const QString& file) { return CPLFileEditor(file).openWithoutLock(); },
        [](const QString& file) { return CPLFileEditor(file).open(0); },
        [](const QString& file) { return CPLXMLReader().loadXMLFile(file); },
    };
    const QString file = path("large.txt");
    for (const qint64 size : { PL_MAX_FILE_SIZE + 1, qint64(5) << 30, (qint64(4) << 30) + 10 }) {
        writeBytes(file, "");
        ASSERT_EQ(::truncate(native(file).constData(), size), 0); // sparse: no disk used
        for (const auto& read : readers) {
            QElapsedTimer timer;
            timer.start();
            EXPECT_EQ(read(file), PL_FILE_TOO_LARGE) << size;
            EXPECT_LT(timer.elapsed(), 500) << "read instead of refused: " << size;
            EXPECT_EQ(getLastSystemError(), QString()) << size;
        }
    }
    EXPECT_EQ(namesIn(m_dir.path()), L1List({ "large.txt" })) << "no lock left behind";
    // A DICOM file is read backwards from its end, as far as its last NUL: its image data,
    // however large, is never read whole.
    const QString dicom = path("large.dcm");
    writeBytes(dicom, "");
    ASSERT_EQ(::truncate(native(dicom).constData(), qint64(5) << 30), 0);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(CPLClickInfo().loadClickInfo(dicom), PL_NOTHING_TO_WORK_ON);
    EXPECT_LT(timer.elapsed(), 500);
}

TEST_F(FileIoTest, EachRefusedSystemCallLeavesTheOldFileAndNoOtherFile)
{
    for (const char* operation : { "write", "fsync", "close", "rename", "fsyncdir" }) {
        QTemporaryDir root;
        for (const Layout layout : kLayouts) {
            const Scene scene(root.path(), layout);
            // An in-place write neither renames nor syncs a folder.
            const bool unused = inPlace(layout)
                && (qstrcmp(operation, "rename") == 0 || qstrcmp(operation, "fsyncdir") == 0);
            int status = 0;
            {
                const FailingCall failing(operation);
                status = save(scene.target);
            }
            const std::string what = std::string(operation) + ", " + layoutName(layout);
            if (unused) {
                EXPECT_EQ(status, PL_SUCCESS) << what;
                scene.expectSaved(m_text);
                continue;
            }
            EXPECT_EQ(status, PL_SHORT_WRITE) << what;
            EXPECT_EQ(getLastSystemError(), L1("Input/output error")) << what;
            scene.expectUnchanged();
        }
    }
}

TEST_F(FileIoTest, AWriteBeyondTheFileSizeLimitLeavesTheOldFileAndNoOtherFile)
{
    CPLClickInfo large;
    auto* section = new CPLSection(L1("Big"), QString());
    section->addKeyValue(L1("Data"), QString(4000, QLatin1Char('x')));
    large.addSection(section);
    for (const Layout layout : kLayouts) {
        const Scene scene(m_dir.path(), layout);
        {
            const FileSizeLimit limit(1536);
            EXPECT_EQ(large.saveClickInfo(scene.target), PL_SHORT_WRITE) << layoutName(layout);
        }
        EXPECT_EQ(getLastSystemError(), L1("File too large")) << layoutName(layout);
        scene.expectUnchanged();
    }
}

TEST_F(FileIoTest, AFileInAReadOnlyFolderIsWrittenInPlace)
{
    const ReadOnlyFolder readOnly(m_dir);
    const ino_t inode = statOf(readOnly.file).st_ino;
    // As another user when root, since root passes every check of permissions.
    EXPECT_EQ(waitChild(startChild([&] { return save(readOnly.file); }, true)), PL_SUCCESS);
    EXPECT_EQ(readBytes(readOnly.file), m_text);
    EXPECT_EQ(statOf(readOnly.file).st_ino, inode);

    // A new file cannot be created there: 11, and the system's reason.
    const auto saveNew = [&] {
        const int status = save(readOnly.folder + QLatin1String("/New.txt"));
        return getLastSystemError() == L1("Permission denied") ? status : 255;
    };
    EXPECT_EQ(waitChild(startChild(saveNew, true)), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(namesIn(readOnly.folder), L1List({ "ClickInfo.txt" }));
}

TEST_F(FileIoTest, AHeldLockRefusesTheSaveAfterTheWait)
{
    // The two saves wait at once. A file in a read-only folder, locked itself by another
    // editor, is saved in a child process (as another user when root), started before the
    // thread of the other.
    const ReadOnlyFolder readOnly(m_dir);
    const HeldLock onTheFile(readOnly.file);
    const pid_t lockedItself = startChild([&] { return save(readOnly.file); }, true);

    writeBytes(path("held.txt"), "old");
    const HeldLock held(path("held.txt.lock"));
    QElapsedTimer timer;
    timer.start();
    const QString text = saveMessagesOf([&] {
        auto heldSave = std::async(std::launch::async, [&] { return save(path("held.txt")); });
        EXPECT_EQ(heldSave.get(), PL_FILE_LOCKED);
    });
    EXPECT_EQ(waitChild(lockedItself), PL_FILE_LOCKED);
    EXPECT_GE(timer.elapsed(), PL_LOCK_WAIT_MS - 100);
    EXPECT_TRUE(text.contains(path("held.txt.lock") + L1(": the file is locked by another editor")))
        << text.toStdString();
    EXPECT_EQ(readBytes(path("held.txt")), "old");
    EXPECT_EQ(readBytes(readOnly.file), "old");
    EXPECT_EQ(namesIn(m_dir.path()), L1List({ "held.txt", "held.txt.lock", "read-only" }));
}

TEST_F(FileIoTest, ASaveWaitsForALockThatIsReleasedMeanwhile)
{
    const QString file = path("ClickInfo.txt");
    writeBytes(file, "old");
    auto held = std::make_unique<HeldLock>(file + QLatin1String(".lock"));
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ::unlink(native(file + QLatin1String(".lock")).constData());
        held.reset();
    });
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(save(file), PL_SUCCESS);
    EXPECT_GE(timer.elapsed(), 250);
    release.join();
    EXPECT_EQ(readBytes(file), m_text);
    EXPECT_EQ(namesIn(m_dir.path()), L1List({ "ClickInfo.txt" }));
}

TEST_F(FileIoTest, TheSpectralAnalysisReplacesItsFileWholeOrNotAtAll)
{
    const QString file = path("SpectralAnalysis.xml");
    const struct
    {
        const char* failing; // OVPARSER_FAIL_SYSCALL
        bool closed; // setCloseSpectralAnalysis() called, else the document dropped
        int status;
    } cases[] = {
        { "", true, PL_SUCCESS },          { "write", true, PL_SHORT_WRITE },
        { "fsync", true, PL_SHORT_WRITE }, { "rename", true, PL_SHORT_WRITE },
        { "", false, PL_SUCCESS },
    };
    for (const auto& c : cases) {
        writeBytes(file, "old");
        int status = PL_SUCCESS;
        {
            const FailingCall failing(c.failing);
            CPLSpectralWrapper writer;
            ASSERT_EQ(writer.createSpectralXMLFile(file), PL_SUCCESS);
            writer.setSpectralAttributes(L1("SEQ1"), 1, L1("C1"), L1("Mouse Tissue"), L1("Firefly"),
                                         1.4f);
            if (c.closed)
                status = writer.setCloseSpectralAnalysis();
        }
        const std::string what = std::string(c.failing) + (c.closed ? " closed" : " dropped");
        EXPECT_EQ(status, c.status) << what;
        const QByteArray content = readBytes(file);
        EXPECT_EQ(content.startsWith("<?xml"), c.closed && c.status == PL_SUCCESS) << what;
        EXPECT_EQ(content == "old", !c.closed || c.status != PL_SUCCESS) << what;
        EXPECT_EQ(namesIn(m_dir.path()), L1List({ "SpectralAnalysis.xml" })) << what;
    }
    ASSERT_EQ(::mkfifo(native(path("fifo.xml")).constData(), 0644), 0);
    EXPECT_EQ(inChild([&] { return CPLSpectralWrapper().createSpectralXMLFile(path("fifo.xml")); }),
              PL_NOT_REGULAR_FILE);
}

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool ADDRESS_SANITIZER = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool ADDRESS_SANITIZER = true;
#else
constexpr bool ADDRESS_SANITIZER = false;
#endif
#else
constexpr bool ADDRESS_SANITIZER = false;
#endif

// The address space this process uses now, in bytes.
rlim_t addressSpaceInUse()
{
    QFile statm(L1("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    return rlim_t(statm.readAll().split(' ').value(0).toULongLong())
        * rlim_t(::sysconf(_SC_PAGESIZE));
}

} // namespace

// Memory runs out while a file of 60 MB is read: every way in becomes PL_OUT_OF_MEMORY and
// the critical message, never an exception that ends the program. The test runs itself again
// in a process whose allocations are limited: by RLIMIT_AS, or under the address sanitizer
// (which reserves far more address space than it uses) by its largest allocation.
TEST(AllocationFailure, BecomesAStatusAndTheCriticalMessage)
{
    const QByteArray file = qgetenv("OVPARSER_ALLOCATION_FILE");
    if (file.isEmpty()) {
        QTemporaryDir dir;
        const QString large = dir.filePath(L1("ClickInfo.txt"));
        writeBytes(large, "*** A:\tx\nk:\tv\n");
        ASSERT_EQ(::truncate(native(large).constData(), 60 << 20), 0); // sparse: no disk used
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(L1("OVPARSER_ALLOCATION_FILE"), large);
        environment.insert(L1("ASAN_OPTIONS"),
                           environment.value(L1("ASAN_OPTIONS"))
                               + L1(":allocator_may_return_null=1:max_allocation_size_mb=32"
                                    // its warnings of the refused allocations are expected:
                                    // they go to the child's stderr, not to the reports
                                    ":log_path=stderr"));
        child.setProcessEnvironment(environment);
        child.start(QFile::decodeName(QFile::symLinkTarget(L1("/proc/self/exe")).toLocal8Bit()),
                    { L1("--gtest_filter=AllocationFailure.*") });
        ASSERT_TRUE(child.waitForFinished(120000));
        const QByteArray output = child.readAllStandardOutput() + child.readAllStandardError();
        EXPECT_EQ(child.exitStatus(), QProcess::NormalExit) << output.toStdString();
        EXPECT_EQ(child.exitCode(), 0) << output.toStdString();
        EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.toStdString();
        return;
    }

    static QStringList critical;
    qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
            if (type == QtCriticalMsg)
                critical.append(
                    QStringLiteral("%1 %2 %3")
                        .arg(text, QLatin1String(context.file), QLatin1String(context.function)));
        });
    if (!ADDRESS_SANITIZER) {
        const rlimit limit { addressSpaceInUse() + (40 << 20), RLIM_INFINITY };
        ASSERT_EQ(::setrlimit(RLIMIT_AS, &limit), 0);
    }
    const QString path = QFile::decodeName(file);
    CPLClickInfo doc;
    EXPECT_EQ(doc.loadClickInfo(path), PL_OUT_OF_MEMORY);
    QString value;
    EXPECT_EQ(CPLClickInfo::obtainValueFromClickInfoFile(path, L1("k"), &value), PL_OUT_OF_MEMORY);
    CPLFileEditor editor(path);
    EXPECT_EQ(editor.openWithoutLock(), PL_OUT_OF_MEMORY);
    ASSERT_FALSE(critical.isEmpty());
    // The message names where memory ran out: the source file and the function.
    EXPECT_TRUE(critical.first().startsWith(L1("Unable To Allocate Memory for Operation "))
                && critical.first().contains(L1(".cpp ")))
        << critical.first().toStdString();
    EXPECT_EQ(critical.size(), 3) << critical.join(L1("\n")).toStdString();
}
