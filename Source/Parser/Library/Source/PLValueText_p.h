#ifndef PLVALUETEXT_P_H
#define PLVALUETEXT_P_H

// Internal header, not installed: numbers and flags as the files write and read them.

#include <QLatin1Char>
#include <QLocale>
#include <QString>

#include <cmath>

namespace PLText {

// A number in plain decimal: no exponent, no trailing zeros ("1.5", "-1", "60"); minus zero
// is written "0".
inline QString decimalText(double number)
{
    QString text = QString::number(number, 'f', 6);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

// A number written so that it reads back as the same double, in as few digits as that takes
// ("0.85", "1e-07"): for values the user typed, where plain decimal would round.
inline QString roundTripText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

// A number read from a value, in the C locale ("1.4", never "1,4"). False, leaving `number`
// alone, for text that is not a number or not finite.
inline bool readNumber(const QString& text, double* number)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return false;
    *number = value;
    return true;
}

// A flag as people write it, in any case: "1", "yes", "true", "on" are set, "0", "no",
// "false", "off" are not. False, leaving `isSet` alone, for any other text.
inline bool readFlag(const QString& text, bool* isSet)
{
    static const char* const SET[] = { "1", "yes", "true", "on" };
    static const char* const UNSET[] = { "0", "no", "false", "off" };
    for (int i = 0; i < 4; ++i) {
        if (text.compare(QLatin1String(SET[i]), Qt::CaseInsensitive) == 0
            || text.compare(QLatin1String(UNSET[i]), Qt::CaseInsensitive) == 0) {
            *isSet = text.compare(QLatin1String(SET[i]), Qt::CaseInsensitive) == 0;
            return true;
        }
    }
    return false;
}

} // namespace PLText

#endif // PLVALUETEXT_P_H
