#include "PLLimits_p.h"

#include "PLLogging_p.h"
#include "PLScanner_p.h"
#include "PLStatus.h"

#include <QLocale>

namespace {

// The last refusal of this thread, kept as plain values: a thread_local with a destructor
// would register it at its first use, which allocates, and glibc ends the program when that
// fails.
struct Refusal
{
    qint64 count;
    qint64 limit;
    const char* what; // null when there is none
    const char* holder;
};
thread_local Refusal lastRefusal {};

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

int refuse(const QString& source, qint64 count, qint64 limit, const char* what, const char* holder)
{
    lastRefusal = { count, limit, what, holder };
    qCWarning(lcOvLoad, "%s: %s",
              qUtf8Printable(source.isEmpty() ? QStringLiteral("text") : source),
              qUtf8Printable(getLastLimitText()));
    return PL_LIMIT_EXCEEDED;
}

int checkDocument(const QChar* text, qint64 length, const QString& source, qint64 lines)
{
    clearLastLimitText();
    // A text holds no more lines than characters, and no more sections than lines: what
    // cannot exceed its limit is not counted, so that a typical file costs nothing here.
    if (lines < 0 && length > PL_MAX_SECTIONS)
        lines = PLText::count(text, text + length, '\n') + (text[length - 1] != QLatin1Char('\n'));
    else if (lines < 0)
        lines = length;
    if (lines > PL_MAX_LINES)
        return refuse(source, lines, PL_MAX_LINES, "lines", "a document");
    if (lines > PL_MAX_SECTIONS) {
        const qint64 sections = countSections(text, length);
        if (sections > PL_MAX_SECTIONS)
            return refuse(source, sections, PL_MAX_SECTIONS, "sections", "a document");
    }
    return PL_SUCCESS;
}

void clearLastLimitText()
{
    lastRefusal = {};
}

} // namespace PLLimits

QString getLastLimitText()
{
    const Refusal& r = lastRefusal;
    return r.what ? QStringLiteral("%1 %2, more than the %3 %4 may hold")
                        .arg(grouped(r.count), QLatin1String(r.what), grouped(r.limit),
                             QLatin1String(r.holder))
                  : QString();
}
