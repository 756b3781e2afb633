#ifndef PLVALUETEXT_P_H
#define PLVALUETEXT_P_H

// Internal header, not installed: numbers and flags as the files write and read them.

#include <QLatin1Char>
#include <QString>

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
