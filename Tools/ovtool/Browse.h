#ifndef OVTOOL_BROWSE_H
#define OVTOOL_BROWSE_H

// Browsing a folder tree of acquisitions: every "ClickInfo.txt" below a folder becomes one
// row of the browse columns (PLConstants::strBrowseImage_NameKeyPairs), read from the
// acquisition's image section: the luminescent image when there is one, else the
// photographic image. Used by "ovtool browse" and by the benchmarks.

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

namespace OvBrowse {

// One acquisition: its file, its click number and one value per browse column.
struct Row
{
    QString file; // the ClickInfo.txt, as found below the folder given
    QString clickNumber;
    QStringList values; // in the order of columnTitles() after "Click Number"
};

// An acquisition that could not be read, and why.
struct Skipped
{
    QString file;
    QString reason;
};

// "Click Number", then the twelve browse column titles.
QStringList columnTitles();
// The position in columnTitles() of a title, in any case; -1 when there is none.
int columnIndex(const QString& title);

// "Acquisition Seconds" (seconds since 1904) as the local date and time "yyyy-MM-dd
// HH:mm:ss"; a value that is not a whole number is returned as it is.
QString dateTimeText(const QString& secondsSince1904);

// Reads one acquisition. False, with the reason, when the file cannot be read, has a
// malformed section header, has no click number, or has neither a luminescent nor a
// photographic image section.
bool readRow(const QString& file, Row* row, QString* reason);

// Every file named "ClickInfo.txt" in `folder` and below, sorted by path. Symbolic links to
// folders are not followed. `found`, when given, is called with the number found so far
// after each file found.
QStringList findAcquisitions(const QString& folder,
                             const std::function<void(int found)>& found = {});

struct Result
{
    QVector<Row> rows;
    QVector<Skipped> skipped;
};
// Finds and reads every acquisition below `folder`, in path order. `progress`, when given,
// is called while the files are found, with -1 and the number found so far, then after
// each file read, with the number read and the number found.
Result browse(const QString& folder, const std::function<void(int done, int total)>& progress = {});

// Sorts rows by a column (a position in columnTitles()): numbers first, by value, then text
// in any case, then empty cells; `descending` reverses that. Rows that compare equal keep
// their order.
void sortRows(QVector<Row>& rows, int column, bool descending);

// The rows with a header line: an aligned table (columns two blanks apart, trailing blanks
// dropped), CSV (RFC 4180: fields quoted when they hold a comma, quote or line break), or a
// JSON array of objects, one per row, with "file" and one member per column title.
QString tableText(const QVector<Row>& rows);
QString csvText(const QVector<Row>& rows);
QByteArray jsonText(const QVector<Row>& rows);

} // namespace OvBrowse

#endif // OVTOOL_BROWSE_H
