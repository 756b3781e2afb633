#ifndef TESTUTIL_H
#define TESTUTIL_H

// Small helpers shared by the test programs.

#include <QByteArray>
#include <QFile>
#include <QIODevice>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <initializer_list>
#include <ostream>
#include <sys/resource.h>

#include <dirent.h>
#include <sys/stat.h>

// Readable failure messages: print the text, not the raw QChar array.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* os)
{
    *os << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* os)
{
    *os << '[' << list.join(QStringLiteral("|")).toStdString() << ']';
}

// Latin-1 text from a literal; the tests are built without implicit conversions.
inline QString L1(const char* text)
{
    return QString::fromLatin1(text);
}

inline QStringList L1List(std::initializer_list<const char*> texts)
{
    QStringList list;
    for (const char* text : texts)
        list.append(L1(text));
    return list;
}

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

// A device that takes at most `capacity` bytes in all, then refuses every write.
class LimitedDevice : public QIODevice
{
public:
    explicit LimitedDevice(qint64 capacity)
        : m_capacity(capacity)
    {
        open(QIODevice::WriteOnly);
    }
    QByteArray written;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override
    {
        const qint64 taken = std::min(size, m_capacity - written.size());
        if (taken <= 0)
            return -1;
        written.append(data, int(taken));
        return taken;
    }

private:
    qint64 m_capacity;
};

// Lowers RLIMIT_FSIZE for the scope so that writes past `bytes` fail with EFBIG.
struct FileSizeLimit
{
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN); // for this program: a write past the limit just fails
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit { bytes, m_old.rlim_max };
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_old); }
    rlimit m_old {};
};

// Takes every permission away from a folder while it lives (chmod 000), and gives the owner's
// back after, so that a temporary folder can still be removed.
class LockedFolder
{
public:
    explicit LockedFolder(const QString& path)
        : m_path(QFile::encodeName(path))
    {
        chmod(m_path.constData(), 0);
    }
    ~LockedFolder() { chmod(m_path.constData(), 0700); }
    LockedFolder(const LockedFolder&) = delete;
    LockedFolder& operator=(const LockedFolder&) = delete;

    // Whether the folder cannot be listed now; a user who may read everything (root) still can.
    bool keepsOut() const
    {
        DIR* dir = opendir(m_path.constData());
        if (dir)
            closedir(dir);
        return !dir;
    }

private:
    QByteArray m_path;
};

#endif // TESTUTIL_H
