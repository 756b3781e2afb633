#ifndef PLUTILITIES_H
#define PLUTILITIES_H

// Date, time and text helpers that produce the exact text the data files carry. Other
// programs parse these values back, so the formats are fixed. None of them keeps state or
// changes its argument.

#include "ovparser_global.h"

#include <QString>

#include <ctime>

// The long date of a broken-down calendar time (as from localtime()): weekday, month name,
// day of the month without a leading zero, year; "Monday, January 5, 2009". The weekday
// (0 to 6) and month (0 to 11) must be in range: anything else is a programming error.
OVPARSER_EXPORT QString getDateOVSFormat(const std::tm* time);

// The time of day, hours 0 to 23, minutes and seconds each with two digits, joined by ":";
// "09:05:07". No AM or PM, no fraction of a second.
OVPARSER_EXPORT QString getTimeOVSFormat(const std::tm* time);

// Seconds since 1 January 1970 00:00 (UTC) as whole seconds since 1 January 1904, in plain
// decimal: the fraction is cut off (toward zero), and a time before 1904 keeps its "-".
// 0 gives "2082844800".
OVPARSER_EXPORT QString getTimefrom1904(double secondsSince1970);

// Each blank-separated word with its first character in upper case, the rest unchanged,
// joined by one blank: "  dark   charge image" gives "Dark Charge Image". Only the blank
// (code 32) separates words; tabs stay inside them.
OVPARSER_EXPORT QString camelCaseString(const QString& text);

// The seconds between 1 January 1904 and 1 January 1970, both 00:00 UTC.
constexpr double PL_SECONDS_1904_TO_1970 = 2082844800.0;

#endif // PLUTILITIES_H
