#include "PLLimits_p.h"

#include "PLLogging_p.h"
#include "PLScanner_p.h"
#include "PLStatus.h"

#include <QLocale>

namespace {

thread_local QString lastLimitText;

// A count with its thousands grouped by commas, as the messages write it: "1,000,001".
QString grouped(qint64 count)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(count);
}

// The section header lines of the text, counted as the scanner finds them.
qint64 countSections(const QChar* text, qint64 length)
{
    qint64 count = 0;
    for (qint64 position = 0; position < length; ++count) {
        position = PLScan::nextHeaderLine(text, length, position);
        if (position >= length)
            break;
        position = PLScan::lineEnd(text, length, position);
    }
    return count;
}

} // namespace

namespace PLLimits {

int refuse(const QString& source, qint64 count, qint64 limit, const char* what,
           const char* holder)
{
    lastLimitText = QStringLiteral("%1 %2, more than the %3 %4 may hold")
                        .arg(grouped(count), QLatin1String(what), grouped(limit),
                             QLatin1String(holder));
    qCWarning(lcOvLoad, "%s: %s",
              qUtf8Printable(source.isEmpty() ? QStringLiteral("text") : source),
              qUtf8Printable(lastLimitText));
    return PL_LIMIT_EXCEEDED;
}

int checkDocument(const QChar* text, qint64 length, const QString& source)
{
    clearLastLimitText();
    const qint64 lines
        = length == 0 ? 0 : PLText::count(text, text + length, '\n') + (text[length - 1] != QLatin1Char('\n'));
    if (lines > PL_MAX_LINES)
        return refuse(source, lines, PL_MAX_LINES, "lines", "a document");
    const qint64 sections = countSections(text, length);
    if (sections > PL_MAX_SECTIONS)
        return refuse(source, sections, PL_MAX_SECTIONS, "sections", "a document");
    return PL_SUCCESS;
}

void clearLastLimitText()
{
    lastLimitText.clear();
}

} // namespace PLLimits

QString getLastLimitText()
{
    return lastLimitText;
}
