// The date, time and text helpers, checked against Qt's own date and time formatting.

#include "PLPaths.h"
#include "PLUtilities.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDate>
#include <QDir>
#include <QLocale>
#include <QTemporaryDir>
#include <QTime>

#include <cmath>
#include <utility>

namespace {

std::tm calendarTime(const QDate& date, const QTime& time)
{
    std::tm tm {};
    tm.tm_year = date.year() - 1900;
    tm.tm_mon = date.month() - 1;
    tm.tm_mday = date.day();
    tm.tm_wday = date.dayOfWeek() % 7; // Qt counts Monday 1 to Sunday 7
    tm.tm_hour = time.hour();
    tm.tm_min = time.minute();
    tm.tm_sec = time.second();
    return tm;
}

TEST(UtilitiesTest, LongDateAndTwoDigitTimeAsQtFormatsThem)
{
    const QLocale c = QLocale::c();
    // Days 1 to 10 of every month of a leap year and two others: each weekday and month name,
    // days on both sides of 10; every hour, and minutes and seconds on both sides of 10.
    const int minutes[] = { 0, 5, 9, 10, 59 };
    for (const int year : { 1999, 2024, 2026 }) {
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; day <= 10; ++day) {
                const QDate date(year, month, day);
                const int minute = minutes[(month + day) % 5];
                const QTime time((month * 10 + day) % 24, minute, 59 - minute);
                const std::tm tm = calendarTime(date, time);
                EXPECT_EQ(getDateOVSFormat(&tm), c.toString(date, L1("dddd, MMMM d, yyyy")))
                    << date.toString(Qt::ISODate).toStdString();
                EXPECT_EQ(getTimeOVSFormat(&tm), time.toString(L1("HH:mm:ss")));
            }
        }
    }
}

TEST(UtilitiesTest, SecondsSince1904AreCutTowardZero)
{
    // Independent: whole seconds by truncation of the sum.
    for (const double t : { 0.0, 1.0, 0.999999, 1231113600.75, 1762300000.5, 4102444800.25, -1.0,
                            -2082844800.0, -2082844801.75, -2082844900.5, -3e9 }) {
        const double sum = t + 2082844800.0;
        EXPECT_EQ(getTimefrom1904(t), QString::number(qint64(std::trunc(sum)))) << t;
    }
    // Less than a second before 1904: the "-" of the fraction stays.
    EXPECT_EQ(getTimefrom1904(-2082844800.5), L1("-0"));
}

TEST(UtilitiesTest, CamelCaseCapitalisesEachBlankSeparatedWord)
{
    const std::pair<const char*, const char*> cases[] = {
        { "  dark   charge image", "Dark Charge Image" },
        { "rEAD bias", "READ Bias" },
        { "", "" },
        { "    ", "" },
        { "tab\tinside word ", "Tab\tinside Word" },
        { "3d view, (new)", "3d View, (new)" },
        { "\xe9t\xe9 x", "\xc9t\xe9 X" },
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(camelCaseString(L1(in)), L1(out)) << in;
}

} // namespace

// A folder stands for its file; a file, or a path that does not exist, stands for itself.
TEST(UtilitiesTest, AFolderNamesItsFileAndAFileItself)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("acq")));
    const QString folder = dir.filePath(QStringLiteral("acq"));
    const QString name = QStringLiteral("ClickInfo.txt");
    EXPECT_EQ(getFilePathInFolder(folder, name),
              QString(folder + QStringLiteral("/ClickInfo.txt")));
    EXPECT_EQ(getFilePathInFolder(folder + QStringLiteral("//./"), name),
              QString(folder + QStringLiteral("/ClickInfo.txt")));
    const QString file = folder + QStringLiteral("/other.txt");
    EXPECT_EQ(getFilePathInFolder(file, name), file) << "absent: taken as the file";
    EXPECT_EQ(getFilePathInFolder(QString(), name), QString());
}
