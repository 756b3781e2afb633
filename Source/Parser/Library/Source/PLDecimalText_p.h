#ifndef PLDECIMALTEXT_P_H
#define PLDECIMALTEXT_P_H

// Internal header, not installed: numbers as the files write them.

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

} // namespace PLText

#endif // PLDECIMALTEXT_P_H
