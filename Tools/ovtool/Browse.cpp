#include "Browse.h"

#include "Document.h"
#include "Tool.h"

#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLImageTypes.h"
#include "PLSequenceInfo.h"
#include "PLStatus.h"
#include "PLUtilities.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <iterator>

#include <dirent.h>
#include <sys/stat.h>

namespace OvBrowse {

namespace {

const auto& PAIRS = PLConstants::strBrowseImage_NameKeyPairs;
constexpr int COLUMNS = int(std::size(PAIRS)) / 2;
const QString CLICK_NUMBER_TITLE = QStringLiteral("Click Number");
const QString CLICK_TYPE_TITLE = QStringLiteral("Click Type");
// The end of a DICOM file's name, in any case.
const QLatin1String DICOM_SUFFIX(".dcm");
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

// The folder a path stands in: the text before its last "/" (the walk joins with one).
QString folderOf(const QString& path)
{
    return path.left(std::max(0, int(path.lastIndexOf(QLatin1Char('/')))));
}

bool hasFileName(const QString& path, const QString& name)
{
    return QStringRef(&path)
               .mid(path.lastIndexOf(QLatin1Char('/')) + 1)
               .compare(name, Qt::CaseInsensitive)
        == 0;
}

QString clickTypeOf(const CPLClickInfo& document)
{
    QString type;
    document.getValue(PLConstants::CLICKNUMBER_KEY, PLConstants::CLICKINFOTYPE_KEY, &type);
    return type;
}

// The click type of an acquisition read from `file`: that of the analysis beside a
// "ClickInfo.txt", when there is one and it names a type, else the document's own.
QString clickType(const CPLClickInfo& document, const QString& file,
                  const QSet<QString>* analysedFolders)
{
    if (hasFileName(file, PLConstants::CLICKINFO_FILENAME)) {
        const QString folder = folderOf(file);
        const QString analysis
            = folder + QLatin1Char('/') + PLConstants::ANALYZED_CLICKINFO_FILENAME;
        const bool beside
            = analysedFolders ? analysedFolders->contains(folder) : QFileInfo::exists(analysis);
        CPLClickInfo analysed;
        if (beside && analysed.loadClickInfo(analysis) == PL_SUCCESS
            && !clickTypeOf(analysed).isEmpty())
            return clickTypeOf(analysed);
    }
    return clickTypeOf(document);
}

bool readDocument(const QString& file, Row* row, Skipped* why, const QSet<QString>* analysedFolders)
{
    CPLClickInfo document;
    const int status = document.loadClickInfo(file, false);
    QString* reason = &why->reason;
    if (status != PL_SUCCESS) {
        why->line = document.getLastErrorLine();
        *reason = why->line > 0 ? getStatusText(status) : statusReason(status);
        return false;
    }
    document.getClickNumber(&row->clickNumber);
    const QString& image = document.isSectionPresent(LUMINESCENT) ? LUMINESCENT : PHOTOGRAPHIC;
    const bool isAnalysis = hasFileName(file, PLConstants::ANALYZED_CLICKINFO_FILENAME);
    *reason
        = missingParts(!row->clickNumber.isEmpty(), isAnalysis || document.isSectionPresent(image));
    if (!reason->isEmpty())
        return false;
    for (int column = 0; column < COLUMNS; ++column) {
        QString value;
        document.getValue(image, columnKey(column), &value);
        row->values.append(cellText(column, value));
    }
    row->values.append(clickType(document, file, analysedFolders));
    row->values.append(QString()); // the sequence ID, which the sequence file gives
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

// A folder's entries, read with the system's directory calls, which (unlike QDirIterator) say
// why a folder cannot be read. Closed when it goes out of scope.
class FolderEntries
{
public:
    explicit FolderEntries(const QByteArray& path)
        : m_dir(opendir(path.constData()))
        , m_error(m_dir ? 0 : errno)
    {
    }
    ~FolderEntries()
    {
        if (m_dir)
            closedir(m_dir);
    }
    FolderEntries(const FolderEntries&) = delete;
    FolderEntries& operator=(const FolderEntries&) = delete;

    // The next entry other than "." and "..", or null at the end or when the folder cannot be
    // read (then error() tells why).
    const dirent* next()
    {
        while (m_dir && m_error == 0) {
            errno = 0;
            const dirent* entry = readdir(m_dir);
            if (!entry) {
                m_error = errno;
                return nullptr;
            }
            if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
                return entry;
        }
        return nullptr;
    }
    // The system's error number of the failure to open or read the folder; 0 when none.
    int error() const { return m_error; }

private:
    DIR* m_dir;
    int m_error;
};

enum class EntryKind { Folder, File, Other };

// The type of an entry as a listing gives it (DT_DIR, DT_REG, DT_LNK...), asking lstat()
// where the file system leaves it unknown in the listing.
unsigned char listedType(const QByteArray& path, unsigned char type)
{
    struct stat info = {};
    if (type != DT_UNKNOWN || lstat(path.constData(), &info) != 0)
        return type;
    return IFTODT(info.st_mode);
}

bool leadsToRegularFile(const QByteArray& path)
{
    struct stat info = {};
    return stat(path.constData(), &info) == 0 && S_ISREG(info.st_mode);
}

// What an entry of a listing is. A symbolic link counts as a file when it leads to a regular
// file, and is never followed to a folder.
EntryKind entryKind(const QByteArray& path, unsigned char type)
{
    switch (listedType(path, type)) {
    case DT_DIR:
        return EntryKind::Folder;
    case DT_REG:
        return EntryKind::File;
    case DT_LNK:
        return leadsToRegularFile(path) ? EntryKind::File : EntryKind::Other;
    default:
        return EntryKind::Other;
    }
}

// What a file that is no regular file is, in words: "a FIFO", "a socket", "a device".
QString fileKindText(mode_t mode)
{
    if (S_ISFIFO(mode))
        return QStringLiteral("a FIFO");
    if (S_ISSOCK(mode))
        return QStringLiteral("a socket");
    if (S_ISCHR(mode) || S_ISBLK(mode))
        return QStringLiteral("a device");
    if (S_ISDIR(mode))
        return QStringLiteral("a folder");
    return QStringLiteral("no regular file");
}

// Why an entry with a wanted name is left out that entryKind() found to be Other.
QString irregularReason(const QByteArray& path)
{
    struct stat own = {};
    struct stat target = {};
    const bool isLink = lstat(path.constData(), &own) == 0 && S_ISLNK(own.st_mode);
    if (stat(path.constData(), &target) != 0)
        return QStringLiteral("a symbolic link that leads to no file: ")
            + QString::fromLocal8Bit(std::strerror(errno));
    return (isLink ? QStringLiteral("a symbolic link to ")
                   : QStringLiteral("not a regular file but "))
        + fileKindText(target.st_mode);
}

// The path of an entry of `folder`: one slash between them, also when `folder` ends in one.
QByteArray childPath(const QByteArray& folder, const char* name)
{
    QByteArray path = folder;
    if (!path.endsWith('/'))
        path += '/';
    return path += name;
}

QString unreadableReason(int error)
{
    return QLatin1String("cannot read the folder: ") + QString::fromLocal8Bit(std::strerror(error));
}

// Lists one folder: its acquisition files go to `found`, its subfolders to `pending`; a
// folder that cannot be read, or be read to its end, to found's unreadable folders.
void walkFolder(const QByteArray& folder, QVector<QByteArray>* pending, Found* found,
                const std::function<void(int count)>& onFound)
{
    FolderEntries entries(folder);
    while (const dirent* entry = entries.next()) {
        const QLatin1String name(entry->d_name);
        const bool isSequence
            = name.compare(PLConstants::SEQUENCEINFO_FILENAME, Qt::CaseInsensitive) == 0;
        const bool wanted = isSequence || isAcquisitionFileName(name);
        // Only a folder, or a file with a wanted name, is looked at further.
        if (!wanted && entry->d_type != DT_DIR && entry->d_type != DT_UNKNOWN)
            continue;
        const QByteArray path = childPath(folder, entry->d_name);
        const EntryKind kind = entryKind(path, entry->d_type);
        if (kind == EntryKind::Folder) {
            pending->append(path);
        } else if (kind == EntryKind::File && isSequence) {
            found->sequenceFiles.append(QFile::decodeName(path));
        } else if (kind == EntryKind::File && wanted) {
            found->files.append(QFile::decodeName(path));
            if (onFound)
                onFound(found->files.size());
        } else if (kind == EntryKind::Other && wanted) {
            found->irregularFiles.append({ QFile::decodeName(path), irregularReason(path) });
        }
    }
    if (entries.error() != 0)
        found->unreadableFolders.append(
            { QFile::decodeName(folder), unreadableReason(entries.error()) });
}

// Leaves out the "AnalyzedClickInfo.txt" files of folders that hold a "ClickInfo.txt": the
// analysis belongs to that acquisition's row. Those folders go to `analysedFolders`.
void dropAnalysesOfAcquisitions(QStringList* files, QSet<QString>* analysedFolders)
{
    QSet<QString> acquisitionFolders;
    for (const QString& file : qAsConst(*files)) {
        if (hasFileName(file, PLConstants::CLICKINFO_FILENAME))
            acquisitionFolders.insert(folderOf(file));
    }
    files->erase(std::remove_if(files->begin(), files->end(),
                                [&](const QString& file) {
                                    if (!hasFileName(file, PLConstants::ANALYZED_CLICKINFO_FILENAME)
                                        || !acquisitionFolders.contains(folderOf(file)))
                                        return false;
                                    analysedFolders->insert(folderOf(file));
                                    return true;
                                }),
                 files->end());
}

// Gives each row the ID of the sequence that lists it: a sequence file in the folder above
// the row's folder. Each sequence file is read once; one that cannot be read goes to
// `skipped`.
void assignSequences(const QStringList& sequenceFiles, QVector<Row>* rows,
                     QVector<Skipped>* skipped)
{
    QHash<QString, QHash<QString, QString>> sequenceOfClick; // by sequence folder
    for (const QString& file : sequenceFiles) {
        CPLSequenceInfo sequence;
        const int status = sequence.load(file);
        QString id;
        QStringList clickNumbers;
        if (status != PL_SUCCESS || sequence.getSequenceID(&id) != PL_SUCCESS
            || sequence.getClickNumbers(&clickNumbers) != PL_SUCCESS) {
            skipped->append(
                { file,
                  status != PL_SUCCESS
                      ? statusReason(status)
                      : QStringLiteral("no \"%1\" section").arg(PLConstants::SEQUENCEINFO_KEY),
                  sequence.getLastErrorLine() });
            continue;
        }
        QHash<QString, QString>& clicks = sequenceOfClick[folderOf(file)];
        for (const QString& clickNumber : qAsConst(clickNumbers))
            clicks.insert(clickNumber, id);
    }
    if (sequenceOfClick.isEmpty())
        return;
    for (Row& row : *rows) {
        const auto sequence = sequenceOfClick.constFind(folderOf(folderOf(row.file)));
        if (sequence != sequenceOfClick.constEnd())
            row.values[sequenceIdValue()] = sequence->value(row.clickNumber);
    }
}

} // namespace

int sequenceIdValue()
{
    return COLUMNS + 1;
}

QStringList columnTitles()
{
    QStringList titles { CLICK_NUMBER_TITLE };
    for (int column = 0; column < COLUMNS; ++column)
        titles.append(PAIRS[2 * column]);
    titles << CLICK_TYPE_TITLE << PLConstants::SEQUENCEINFO_BROWSEKEY;
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

bool readRow(const QString& file, Row* row, Skipped* why, const QSet<QString>* analysedFolders)
{
    row->file = file;
    row->clickNumber.clear();
    row->values.clear();
    *why = Skipped { file, QString(), 0 };
    return readDocument(file, row, why, analysedFolders);
}

QString Skipped::where() const
{
    return line > 0 ? QStringLiteral("%1:%2").arg(path).arg(line) : path;
}

bool isAcquisitionFileName(QLatin1String name)
{
    return name.compare(PLConstants::CLICKINFO_FILENAME, Qt::CaseInsensitive) == 0
        || name.compare(PLConstants::ANALYZED_CLICKINFO_FILENAME, Qt::CaseInsensitive) == 0
        || name.endsWith(DICOM_SUFFIX, Qt::CaseInsensitive);
}

Found findAcquisitions(const QString& folder, const std::function<void(int found)>& found)
{
    Found result;
    QVector<QByteArray> pending { QFile::encodeName(folder) };
    while (!pending.isEmpty()) {
        const QByteArray path = pending.takeLast();
        walkFolder(path, &pending, &result, found);
    }
    std::sort(result.files.begin(), result.files.end());
    std::sort(result.sequenceFiles.begin(), result.sequenceFiles.end());
    dropAnalysesOfAcquisitions(&result.files, &result.analysedFolders);
    for (QVector<Skipped>* skipped : { &result.unreadableFolders, &result.irregularFiles })
        std::sort(skipped->begin(), skipped->end(),
                  [](const Skipped& a, const Skipped& b) { return a.path < b.path; });
    return result;
}

Result browse(const QString& folder, const std::function<void(int done, int total)>& progress)
{
    const Found found = findAcquisitions(folder, [&](int count) {
        if (progress)
            progress(-1, count);
    });
    Result result;
    result.rows.reserve(found.files.size());
    result.skipped = found.unreadableFolders + found.irregularFiles;
    Row row;
    Skipped why;
    int done = 0;
    for (const QString& file : found.files) {
        if (readRow(file, &row, &why, &found.analysedFolders))
            result.rows.append(row);
        else
            result.skipped.append(why);
        if (progress)
            progress(++done, found.files.size());
    }
    assignSequences(found.sequenceFiles, &result.rows, &result.skipped);
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
