#include "PLUtilities.h"

#include "PLAssert_p.h"
#include "PLConstants.h"

#include <QStringList>

#include <iterator>

namespace {

// A number of a clock reading: two digits, with a leading "0" below 10.
QString twoDigits(int value)
{
    const QString text = QString::number(value);
    return text.size() == 1 ? QLatin1Char('0') + text : text;
}

} // namespace

QString getDateOVSFormat(const std::tm* time)
{
    PL_ASSERT(time != nullptr);
    PL_ASSERT(time->tm_wday >= 0 && time->tm_wday < int(std::size(PLConstants::strDayKeys)));
    PL_ASSERT(time->tm_mon >= 0 && time->tm_mon < int(std::size(PLConstants::strMonthKeys)));
    const QLatin1String separator(", ");
    return PLConstants::strDayKeys[time->tm_wday] + separator
        + PLConstants::strMonthKeys[time->tm_mon] + QLatin1Char(' ')
        + QString::number(time->tm_mday) + separator + QString::number(time->tm_year + 1900);
}

QString getTimeOVSFormat(const std::tm* time)
{
    PL_ASSERT(time != nullptr);
    const QLatin1Char colon(':');
    return twoDigits(time->tm_hour) + colon + twoDigits(time->tm_min) + colon
        + twoDigits(time->tm_sec);
}

QString getTimefrom1904(double secondsSince1970)
{
    const QString text = QString::number(secondsSince1970 + PL_SECONDS_1904_TO_1970, 'f', 6);
    const int point = text.indexOf(QLatin1Char('.'));
    return point < 0 ? text : text.left(point);
}

QString camelCaseString(const QString& text)
{
    QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString& word : words)
        word[0] = word.at(0).toUpper();
    return words.join(QLatin1Char(' '));
}
