#include "Browse.h"

#include "Document.h"

#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLImageTypes.h"
#include "PLStatus.h"
#include "PLUtilities.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <ctime>
#include <iterator>

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

bool readDocument(const QString& file, Row* row, QString* reason)
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

bool readRow(const QString& file, Row* row, QString* reason)
{
    row->file = file;
    row->clickNumber.clear();
    row->values.clear();
    return readDocument(file, row, reason);
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

Result browse(const QString& folder, const std::function<void(int done, int total)>& progress)
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
        if (readRow(file, &row, &reason))
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
