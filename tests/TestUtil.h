#ifndef TESTUTIL_H
#define TESTUTIL_H

// Small helpers shared by the test programs.

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>

// Readable failure messages: print the text, not the raw QChar array.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
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

#endif // TESTUTIL_H
