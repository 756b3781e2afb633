#include "Browse.h"

#include "Document.h"

#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLImageTypes.h"
#include "PLStatus.h"
#include "PLText_p.h"
#include "PLUtilities.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <iterator>

#include <fcntl.h>
#include <unistd.h>

namespace OvBrowse {

namespace {

const auto& PAIRS = PLConstants::strBrowseImage_NameKeyPairs;
constexpr int COLUMNS = int(std::size(PAIRS)) / 2;
const QString CLICK_NUMBER_TITLE = QStringLiteral("Click Number");
// The image sections a row is read from, in order of preference.
const QString& LUMINESCENT = OVSGlobalConstants::g_strImageSections[IMAGETYPE_LUMINESCENT];
const QString& PHOTOGRAPHIC = OVSGlobalConstants::g_strImageSections[IMAGETYPE_PHOTOGRAPH];

const QString& columnKey(int column)
{
    return PAIRS[2 * column + 1];
}

// The browse column of "Acquisition Seconds", shown as a date and time.
bool isDateColumn(int column)
{
    return columnKey(column) == PLConstants::strClickInfoKeys[2];
}

QString cellText(int column, const QString& value)
{
    return isDateColumn(column) ? dateTimeText(value) : value;
}

QString reasonAt(int line, int status)
{
    return line > 0 ? QStringLiteral("line %1: %2").arg(line).arg(loadFailure(status))
                    : loadFailure(status);
}

// Why a file that loaded cannot be browsed; empty when it can.
QString missingParts(bool hasClickNumber, bool hasImage)
{
    if (!hasClickNumber)
        return QStringLiteral("no \"ClickNumber\" section");
    if (!hasImage)
        return QStringLiteral("neither a \"%1\" nor a \"%2\" section")
            .arg(LUMINESCENT, PHOTOGRAPHIC);
    return QString();
}

bool readFullLoad(const QString& file, Row* row, QString* reason)
{
    CPLClickInfo document;
    const int status = document.loadClickInfo(file, false);
    if (status != PL_SUCCESS) {
        *reason = reasonAt(document.getLastErrorLine(), status);
        return false;
    }
    document.getClickNumber(&row->clickNumber);
    const QString& image = document.isSectionPresent(LUMINESCENT) ? LUMINESCENT : PHOTOGRAPHIC;
    *reason = missingParts(!row->clickNumber.isEmpty(), document.isSectionPresent(image));
    if (!reason->isEmpty())
        return false;
    for (int column = 0; column < COLUMNS; ++column) {
        QString value;
        document.getValue(image, columnKey(column), &value);
        row->values.append(cellText(column, value));
    }
    return true;
}

using Span = PLText::Span<char>;

QLatin1String latin1(Span span)
{
    return QLatin1String(span.begin, int(span.size()));
}

// The Lookup reading: one pass over the file's lines, keeping only the click number and the
// browse keys of the two image sections. It follows the loader's rules: lines end at LF, CR
// LF or CR; the text ends at its first NUL; a line whose first token begins with "***" is a
// section header, split at "*** " (or "***") and its first colon, malformed when a "#" comes
// at or before the colon; the first section of a key counts; a body line holds a key when a
// colon comes before any "#", and the colon's offset in the line cuts the trimmed line; the
// last line of a key wins; values lose their inline comment.
class LookupReader
{
public:
    // 0, or the load status the loader would give, with the line in *line.
    int read(const QByteArray& bytes, int* line)
    {
        const char* p = bytes.constData();
        const char* const end = p + qstrnlen(p, uint(bytes.size()));
        *line = 0;
        while (p < end) {
            const char* lineEnd = p;
            while (lineEnd < end && *lineEnd != '\n' && *lineEnd != '\r')
                ++lineEnd;
            ++*line;
            const int status = readLine({ p, lineEnd });
            if (status != PL_SUCCESS)
                return status;
            p = lineEnd;
            if (p < end && *p == '\r' && p + 1 < end && p[1] == '\n')
                ++p;
            ++p;
        }
        *line = 0;
        return PL_SUCCESS;
    }

    QString clickNumber;
    bool hasClickNumberSection = false;
    // The browse values of each image section, when the file has it.
    QStringList values[2];
    bool hasSection[2] = { false, false };

private:
    int readLine(Span line)
    {
        const char* first = line.begin;
        while (first != line.end && (*first == ' ' || *first == '\t'))
            ++first;
        if (line.end - first >= 3 && first[0] == '*' && first[1] == '*' && first[2] == '*')
            return readHeader(line);
        if (m_current >= 0)
            readEntry(line);
        return PL_SUCCESS;
    }

    int readHeader(Span line)
    {
        const QLatin1String header = latin1(line);
        const int start = header.indexOf(QLatin1String("*** "));
        const int keyStart = start >= 0 ? start + 4 : header.indexOf(QLatin1String("***")) + 3;
        const int colon = header.indexOf(QLatin1Char(':'));
        const int hash = header.indexOf(QLatin1Char('#'));
        if (colon < keyStart || (hash >= 0 && hash <= colon))
            return PL_MALFORMED_SECTION_HEADER;
        const QLatin1String key
            = latin1(PLText::trimmed(Span { line.begin + keyStart, line.begin + colon }));
        const bool isClickNumber
            = key.compare(PLConstants::CLICKNUMBER_KEY, Qt::CaseInsensitive) == 0;
        if (isClickNumber) {
            clickNumber = latin1(PLText::trimmed(Span { line.begin + colon + 1, line.end }));
            if (clickNumber.isEmpty())
                return PL_NOTHING_TO_WORK_ON;
            hasClickNumberSection = true;
        }
        if (key.isEmpty())
            return PL_NOTHING_TO_WORK_ON;
        m_current = -1;
        for (int image = 0; image < 2; ++image) {
            if (!hasSection[image]
                && key.compare(image == 0 ? LUMINESCENT : PHOTOGRAPHIC, Qt::CaseInsensitive) == 0) {
                hasSection[image] = true;
                values[image] = QStringList();
                for (int column = 0; column < COLUMNS; ++column)
                    values[image].append(QString());
                m_current = image;
            }
        }
        return PL_SUCCESS;
    }

    void readEntry(Span line)
    {
        const char* colon = line.begin;
        while (colon != line.end && *colon != ':' && *colon != '#')
            ++colon;
        if (colon == line.end || *colon != ':')
            return;
        const Span trimmedLine = PLText::trimmed(line);
        const qsizetype cut = colon - line.begin;
        const qsizetype size = trimmedLine.size();
        const char* start = trimmedLine.begin;
        const QLatin1String key = latin1(PLText::trimmed(Span { start, start + qMin(cut, size) }));
        for (int column = 0; column < COLUMNS; ++column) {
            if (key.compare(columnKey(column), Qt::CaseInsensitive) == 0) {
                Span value = PLText::trimmed(Span { start + qMin(cut + 1, size), trimmedLine.end });
                if (const char* hash = PLText::find(value.begin, value.end, '#'))
                    value = PLText::trimmed(Span { value.begin, hash });
                values[m_current][column] = latin1(value);
            }
        }
    }

    int m_current = -1; // the image section being read, or -1
};

// The bytes of a file with as few system calls as may be: open, read until the end, close.
// QFile would also ask for the file's status three times, which costs as much again on a
// tree of small files.
bool readBytes(const QString& file, QByteArray* bytes)
{
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    bytes->resize(16 * 1024);
    qint64 size = 0;
    for (;;) {
        if (size == bytes->size())
            bytes->resize(bytes->size() * 2);
        const ssize_t got = ::read(fd, bytes->data() + size, size_t(bytes->size() - size));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            ::close(fd);
            bytes->resize(int(size));
            return got == 0;
        }
        size += got;
    }
}

bool readLookup(const QString& file, Row* row, QString* reason)
{
    QByteArray bytes;
    if (!readBytes(file, &bytes)) {
        *reason = loadFailure(PL_FILE_OPEN_FAILED);
        return false;
    }
    LookupReader reader;
    int line = 0;
    const int status = reader.read(bytes, &line);
    if (status != PL_SUCCESS) {
        *reason = reasonAt(line, status);
        return false;
    }
    const int image = reader.hasSection[0] ? 0 : 1;
    *reason = missingParts(reader.hasClickNumberSection, reader.hasSection[image]);
    if (!reason->isEmpty())
        return false;
    row->clickNumber = reader.clickNumber;
    for (int column = 0; column < COLUMNS; ++column)
        row->values.append(cellText(column, reader.values[image].at(column)));
    return true;
}

// The order of cells: numbers first, by value; then text, in any case; then empty cells.
int compareCells(const QString& a, const QString& b)
{
    bool aIsNumber = false;
    bool bIsNumber = false;
    const double x = a.toDouble(&aIsNumber);
    const double y = b.toDouble(&bIsNumber);
    const int aClass = aIsNumber ? 0 : (a.isEmpty() ? 2 : 1);
    const int bClass = bIsNumber ? 0 : (b.isEmpty() ? 2 : 1);
    if (aClass != bClass)
        return aClass - bClass;
    if (aIsNumber)
        return x < y ? -1 : (x > y ? 1 : 0);
    return a.compare(b, Qt::CaseInsensitive);
}

QString cell(const Row& row, int column)
{
    return column == 0 ? row.clickNumber : row.values.value(column - 1);
}

QStringList cells(const Row& row)
{
    return QStringList { row.clickNumber } + row.values;
}

} // namespace

QStringList columnTitles()
{
    QStringList titles { CLICK_NUMBER_TITLE };
    for (int column = 0; column < COLUMNS; ++column)
        titles.append(PAIRS[2 * column]);
    return titles;
}

int columnIndex(const QString& title)
{
    const QStringList titles = columnTitles();
    for (int i = 0; i < titles.size(); ++i) {
        if (titles.at(i).compare(title, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

QString dateTimeText(const QString& secondsSince1904)
{
    bool ok = false;
    const std::time_t seconds
        = std::time_t(secondsSince1904.toLongLong(&ok) - qint64(PL_SECONDS_1904_TO_1970));
    std::tm local {};
    char text[64];
    // localtime_r() and strftime(), unlike QDateTime, do not look at the time zone file
    // again for every value.
    if (!ok || !localtime_r(&seconds, &local)
        || std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local) == 0)
        return secondsSince1904;
    return QString::fromLatin1(text);
}

bool readRow(const QString& file, ReadMode mode, Row* row, QString* reason)
{
    row->file = file;
    row->clickNumber.clear();
    row->values.clear();
    return mode == ReadMode::Lookup ? readLookup(file, row, reason)
                                    : readFullLoad(file, row, reason);
}

QStringList findAcquisitions(const QString& folder, const std::function<void(int found)>& found)
{
    QStringList files;
    QDirIterator it(folder, QStringList { PLConstants::CLICKINFO_FILENAME },
                    QDir::Files | QDir::Hidden | QDir::CaseSensitive, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        files.append(it.next());
        if (found)
            found(files.size());
    }
    std::sort(files.begin(), files.end());
    return files;
}

Result browse(const QString& folder, ReadMode mode,
              const std::function<void(int done, int total)>& progress)
{
    const QStringList files = findAcquisitions(folder, [&](int found) {
        if (progress)
            progress(-1, found);
    });
    Result result;
    result.rows.reserve(files.size());
    Row row;
    QString reason;
    for (const QString& file : files) {
        if (readRow(file, mode, &row, &reason))
            result.rows.append(row);
        else
            result.skipped.append({ file, reason });
        if (progress)
            progress(result.rows.size() + result.skipped.size(), files.size());
    }
    return result;
}

void sortRows(QVector<Row>& rows, int column, bool descending)
{
    std::stable_sort(rows.begin(), rows.end(), [&](const Row& a, const Row& b) {
        const int order = compareCells(cell(a, column), cell(b, column));
        return descending ? order > 0 : order < 0;
    });
}

QString tableText(const QVector<Row>& rows)
{
    QVector<QStringList> lines { columnTitles() };
    for (const Row& row : rows)
        lines.append(cells(row));
    QVector<int> widths(lines.first().size(), 0);
    for (const QStringList& line : lines) {
        for (int i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], int(line.at(i).size()));
    }
    QString text;
    for (const QStringList& line : lines) {
        QString out;
        for (int i = 0; i < line.size(); ++i)
            out += line.at(i).leftJustified(widths[i] + 2);
        while (out.endsWith(QLatin1Char(' ')))
            out.chop(1);
        text += out + QLatin1Char('\n');
    }
    return text;
}

QString csvText(const QVector<Row>& rows)
{
    const auto field = [](QString value) -> QString {
        if (!value.contains(QLatin1Char(',')) && !value.contains(QLatin1Char('"'))
            && !value.contains(QLatin1Char('\n')) && !value.contains(QLatin1Char('\r')))
            return value;
        value.replace(QLatin1String("\""), QLatin1String("\"\""));
        return QLatin1Char('"') + value + QLatin1Char('"');
    };
    const auto line = [&](const QStringList& values) -> QString {
        QStringList fields;
        for (const QString& value : values)
            fields.append(field(value));
        return fields.join(QLatin1Char(',')) + QLatin1String("\r\n");
    };
    QString text = line(columnTitles());
    for (const Row& row : rows)
        text += line(cells(row));
    return text;
}

QByteArray jsonText(const QVector<Row>& rows)
{
    const QStringList titles = columnTitles();
    QJsonArray array;
    for (const Row& row : rows) {
        QJsonObject object { { QStringLiteral("file"), row.file } };
        const QStringList values = cells(row);
        for (int i = 0; i < titles.size(); ++i)
            object.insert(titles.at(i), values.at(i));
        array.append(object);
    }
    return QJsonDocument(array).toJson(QJsonDocument::Indented);
}

} // namespace OvBrowse
