#ifndef PLLIMITS_P_H
#define PLLIMITS_P_H

// Internal header, not installed: the counts a load makes before it builds anything, held
// against the limits of PLStatus.h (PL_MAX_SECTIONS, PL_MAX_LINES, PL_MAX_XML_ELEMENTS).

#include <QChar>
#include <QString>
#include <QtGlobal>

namespace PLLimits {

// Refuses a file that holds `count` things of a kind where at most `limit` are loaded: logs
// "SOURCE: 1,000,001 sections, more than the 100,000 a document may hold" in lcOvLoad,
// records the text after the source for getLastLimitText(), and returns PL_LIMIT_EXCEEDED.
// `what` names the things ("sections"), `holder` what may hold them ("a document").
int refuse(const QString& source, qint64 count, qint64 limit, const char* what, const char* holder);

// Counts the lines and the section header lines of `length` characters of document text
// (followed by a 0), and refuses the text with refuse() when either count is above its limit.
// The count runs with the vectorised searches of the scanner, and allocates nothing. `lines`,
// when not negative, is the number of lines, counted already.
int checkDocument(const QChar* text, qint64 length, const QString& source, qint64 lines = -1);

// Forgets the text of an earlier refusal; a load calls it when it starts.
void clearLastLimitText();

} // namespace PLLimits

#endif // PLLIMITS_P_H
