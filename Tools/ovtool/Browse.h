#ifndef OVTOOL_BROWSE_H
#define OVTOOL_BROWSE_H

// Browsing a folder tree of acquisitions: every metadata file below a folder, a
// "ClickInfo.txt" or a DICOM file with the metadata appended to its image, becomes one row of
// the browse columns (PLConstants::strBrowseImage_NameKeyPairs), read from the acquisition's
// image section: the luminescent image when there is one, else the photographic image; and so
// does the "AnalyzedClickInfo.txt" of a folder without a "ClickInfo.txt" (an image-math
// result, say). Two columns follow: the click type, the "ClickInfoType" of the "ClickNumber"
// section ("RawData" for an acquisition; the type of the "AnalyzedClickInfo.txt" beside it,
// "SingleClickAnalysis" say, when it was analysed), and the ID of the sequence the acquisition
// belongs to: that of a "SequenceInfo.txt" in the folder above the acquisition's folder that
// lists its click number. Used by "ovtool browse", "ovtool sequence" and the benchmarks.

#include <QLatin1String>
#include <QSet>
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

// An acquisition or a folder that could not be read, and why.
struct Skipped
{
    QString path; // as found below the folder given
    QString reason;
    int line = 0; // the line the reason is about; 0 for the file or folder as a whole

    // "PATH:LINE", or the path alone: where a report about it points.
    QString where() const;
};

// "Click Number", the twelve browse column titles, "Click Type" and "Sequence ID".
QStringList columnTitles();
// The position in columnTitles() of a title, in any case; -1 when there is none.
int columnIndex(const QString& title);

// "Acquisition Seconds" (seconds since 1904) as the local date and time "yyyy-MM-dd
// HH:mm:ss"; a value that is not a whole number is returned as it is.
QString dateTimeText(const QString& secondsSince1904);

// Reads one acquisition with the library's CPLClickInfo::loadClickInfo(), a DICOM file as
// well as a ClickInfo.txt. False, with why (the reason, and the line of a malformed section
// header), when the file cannot be read, has a malformed section header, has no click
// number, or has neither a luminescent nor a photographic image section (an analysis file
// may have neither: its image columns are then empty). The sequence ID is left empty.
// `analysedFolders`, when given, names the folders whose "ClickInfo.txt" has an
// "AnalyzedClickInfo.txt" beside it (Found::analysedFolders), so that no other folder is
// looked into for one; without it the file system is asked.
bool readRow(const QString& file, Row* row, Skipped* why,
             const QSet<QString>* analysedFolders = nullptr);
// The position in a row's values of the sequence ID.
int sequenceIdValue();

// Whether a file of this name holds an acquisition's metadata: "ClickInfo.txt",
// "AnalyzedClickInfo.txt", or a DICOM file, whose name ends in ".dcm"; letters in any case.
bool isAcquisitionFileName(QLatin1String name);

// What a walk below a folder found, each list sorted by path.
struct Found
{
    // See isAcquisitionFileName(); an "AnalyzedClickInfo.txt" only where its folder has no
    // "ClickInfo.txt" (else it belongs to that acquisition).
    QStringList files;
    QStringList sequenceFiles; // every "SequenceInfo.txt", in any case
    // The folders of `files` that hold both a "ClickInfo.txt" and an "AnalyzedClickInfo.txt".
    QSet<QString> analysedFolders;
    // Folders that could not be listed, with the system's reason: "cannot read the folder:
    // Permission denied". What they hold is left out; the walk goes on elsewhere.
    QVector<Skipped> unreadableFolders;
    // Entries with the name of an acquisition or sequence file that are no regular file, nor
    // a link to one: a FIFO, a socket or a device, or a symbolic link to one of those, that
    // leads nowhere or in a loop. They are never opened (a FIFO would wait for a writer).
    QVector<Skipped> irregularFiles;
};
// Every acquisition file in `folder` and below. Symbolic links to folders are not followed;
// a symbolic link to a regular file counts as that file. `found`, when given, is called with
// the number found so far after each file found.
Found findAcquisitions(const QString& folder, const std::function<void(int found)>& found = {});

struct Result
{
    QVector<Row> rows;
    // The unreadable folders first, then the irregular files, then the acquisitions that
    // could not be read.
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
