// Browsing a folder of acquisitions: the files found (ClickInfo.txt and DICOM files, in any
// case), the row each file makes or the reason it is skipped, in path order; unreadable
// folders left out; rows sort by number or text; CSV quoting; and the bundled samples are
// exactly what the sample generator writes with the image section builder.

#include "Browse.h"
#include "SampleAcquisitions.h"
#include "SequenceSample.h"
#include "TestUtil.h"

#include "PLClickInfo.h"
#include "PLStatus.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const bool g_utc = [] {
    setenv("TZ", "UTC", 1);
    tzset();
    return true;
}();

const QString SAMPLES = L1(OVPARSER_SAMPLES);

TEST(BrowseTest, BundledSamplesAreWhatTheGeneratorWrites)
{
    const auto acquisitions = OvSamples::bundledAcquisitions();
    ASSERT_EQ(acquisitions.size(), 2);
    for (const auto& acquisition : acquisitions) {
        const QString file = SAMPLES + L1("/") + acquisition.folder + L1("/ClickInfo.txt");
        EXPECT_EQ(readBytes(file), acquisition.clickInfo)
            << file.toStdString() << ": run make_samples samples to write it again";
    }
}

TEST(BrowseTest, BundledSequenceIsWhatTheGeneratorWrites)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_EQ(OvSamples::writeSequenceSample(dir.path()), PL_SUCCESS);
    const QString id = OvSamples::sequenceSampleID();
    QStringList files { id + L1("/SequenceInfo.txt") };
    for (const auto& acquisition : OvSamples::sequenceAcquisitions())
        files.append(id + L1("/") + acquisition.folder + L1("/ClickInfo.txt"));
    ASSERT_EQ(files.size(), 5);
    for (const QString& file : files)
        EXPECT_EQ(readBytes(SAMPLES + L1("/sequence/") + file), readBytes(dir.filePath(file)))
            << file.toStdString() << ": run make_samples samples to write it again";
}

// Files in path order, each with its row (the values joined by "|") or the start of the report
// of why it is skipped, after "FILE:" (a line, or a blank and the reason). The line and header
// rules themselves are the loader's, tested with it.
const struct
{
    const char* name;
    QByteArray text;
    const char* row;
    const char* reason;
} FILES[] = {
    { "crlf",
      "*** ClickNumber:\tC1\r\n\r\n*** Luminescent Image:\tx\r\nBINNING FACTOR:\t4\r\n"
      "Field of View:\t12.5\t# cm\r\nFilter:\tGFP\r\nEmission filter:\tOpen\r\n",
      "|4||12.5||||GFP||||||", nullptr },
    { "empty-click-number", "*** ClickNumber:\t\n*** photographic image:\tp\n", nullptr,
      "1: a section header without a key" },
    { "first-section-wins",
      "lead line\n*** ClickNumber:\tC3\n*** luminescent image:\ta\nf Number:\t1\nf Number:\t2\n"
      "*** luminescent image:\tb\nf Number:\t9\n*** photographic image:\tp\nf Number:\t4\n",
      "||||2|||||||||", nullptr },
    { "malformed-header", "*** ClickNumber:\tC7\n\n*** Broken # note: x\nk:\tv\n", nullptr,
      "3: malformed section header" },
    { "no-click-number", "*** photographic image:\tp\nEM Gain:\t1\n", nullptr,
      " no \"ClickNumber\" section" },
    { "no-image", "*** ClickNumber:\tC10\n*** x-ray image:\tx\nEM Gain:\t1\n", nullptr,
      " neither a \"luminescent image\" nor a \"photographic image\" section" },
};

TEST(BrowseTest, RowsAndSkippedAcquisitions)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(OvSamples::writeAcquisitions(dir.path(), OvSamples::bundledAcquisitions()));
    for (const auto& f : FILES) {
        QDir(dir.path()).mkpath(L1(f.name));
        writeBytes(dir.filePath(L1(f.name) + L1("/ClickInfo.txt")), f.text);
    }
    writeBytes(dir.filePath(L1("ClickInfo.txt.bak")), "not an acquisition");
    // The loader logs what it finds wrong in the malformed files: not wanted here.
    const QtMessageHandler logger
        = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const OvBrowse::Result result = OvBrowse::browse(dir.path());
    qInstallMessageHandler(logger);

    // The two bundled acquisitions sort first; the rows and the skipped files keep the path order.
    int row = 2, skipped = 0;
    for (const auto& f : FILES) {
        const QString file = dir.filePath(L1(f.name) + L1("/ClickInfo.txt"));
        if (f.row) {
            const OvBrowse::Row r = result.rows.value(row++);
            EXPECT_EQ(r.file + L1(": ") + r.values.join(L1("|")), file + L1(": ") + L1(f.row));
        } else {
            const OvBrowse::Skipped s = result.skipped.value(skipped++);
            // Where it points, then why: "FILE:LINE: reason" as reported.
            const QString report = s.where() + L1(": ") + s.reason;
            EXPECT_EQ(s.path, file);
            EXPECT_TRUE(report.startsWith(file + L1(":") + L1(f.reason))) << report.toStdString();
        }
    }
    EXPECT_EQ(row, result.rows.size());
    EXPECT_EQ(skipped, result.skipped.size());
}

// Writes `bytes` at `name` below `root`, making its folders.
void writeFile(const QString& root, const QString& name, const QByteArray& bytes)
{
    ASSERT_TRUE(QDir(root).mkpath(QFileInfo(name).path())) << name.toStdString();
    writeBytes(root + L1("/") + name, bytes);
}

TEST(BrowseTest, FindsClickInfoAndDicomFilesInAnyCase)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QStringList wanted
        = L1List({ "a/ClickInfo.txt", "b/clickinfo.TXT", "c/CLICKINFO.TXT", "d/scan.dcm",
                   "d/SCAN2.DCM", "e.dcm/x.Dcm", ".hidden/ClickInfo.txt" });
    for (const QString& name : wanted)
        writeFile(dir.path(), name, "x");
    for (const char* name : { "a/ClickInfo.txt.bak", "a/MyClickInfo.txt", "a/ClickInfo.tx",
                              "d/scan.dcm.bak", "d/scandcm", "e.dcm/ClickInfo" })
        writeFile(dir.path(), L1(name), "x");
    // A link to a file counts as the file; a link to a folder is not followed, and a link that
    // leads nowhere is no file.
    ASSERT_TRUE(QDir(dir.path()).mkpath(L1("links")));
    ASSERT_TRUE(QFile::link(L1("../a/ClickInfo.txt"), dir.filePath(L1("links/ClickInfo.txt"))));
    ASSERT_TRUE(QFile::link(L1("../a"), dir.filePath(L1("links/folder"))));
    ASSERT_TRUE(QFile::link(L1("missing.dcm"), dir.filePath(L1("links/gone.dcm"))));

    QStringList expected;
    for (const QString& name : wanted + L1List({ "links/ClickInfo.txt" }))
        expected.append(dir.filePath(name));
    std::sort(expected.begin(), expected.end());
    int reported = 0;
    const OvBrowse::Found found
        = OvBrowse::findAcquisitions(dir.path(), [&](int count) { reported = count; });
    EXPECT_EQ(found.files, expected);
    EXPECT_EQ(reported, expected.size());
    EXPECT_TRUE(found.unreadableFolders.isEmpty());
    // A folder given with a slash at its end: no doubled slash in the paths.
    EXPECT_EQ(OvBrowse::findAcquisitions(dir.path() + L1("/")).files, expected);
}

// needs loadClickInfo(.dcm): browse reads a DICOM file with CPLClickInfo::loadClickInfo(),
// which is to read the metadata appended after the image data by itself. Until the library
// does, this test is skipped.
TEST(BrowseTest, ReadsDicomFilesAsTheirClickInfo)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const OvSamples::Acquisition acquisition = OvSamples::bundledAcquisitions().first();
    const QByteArray image("\0\0\0\0DICM\x02\0\x10\0pixels\xff\x7f\0", 19);
    writeFile(dir.path(), L1("a/ClickInfo.txt"), acquisition.clickInfo);
    const QStringList dicomFiles = L1List({ "b/image.dcm", "c/IMAGE.DCM" });
    for (const QString& name : dicomFiles) {
        writeFile(dir.path(), name, image + acquisition.clickInfo);
        CPLClickInfo document;
        QString clickNumber;
        if (document.loadClickInfo(dir.filePath(name)) != PL_SUCCESS
            || document.getClickNumber(&clickNumber) != PL_SUCCESS
            || clickNumber != acquisition.folder)
            GTEST_SKIP() << "loadClickInfo() does not read the metadata of " << name.toStdString()
                         << " yet";
    }
    const OvBrowse::Result result = OvBrowse::browse(dir.path());
    EXPECT_TRUE(result.skipped.isEmpty());
    ASSERT_EQ(result.rows.size(), 3);
    const OvBrowse::Row& text = result.rows.first();
    EXPECT_EQ(text.clickNumber, acquisition.folder);
    for (int i = 0; i < dicomFiles.size(); ++i) {
        const OvBrowse::Row& dicom = result.rows.at(i + 1);
        EXPECT_EQ(dicom.file, dir.filePath(dicomFiles.at(i)));
        EXPECT_EQ(dicom.clickNumber, text.clickNumber);
        EXPECT_EQ(dicom.values, text.values);
    }
}

TEST(BrowseTest, UnreadableFolderIsLeftOutAndTheWalkGoesOn)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(OvSamples::writeAcquisitions(dir.path(), OvSamples::bundledAcquisitions()));
    const auto hidden = OvSamples::generatedAcquisition(0);
    writeFile(dir.path(), L1("sub/locked/") + hidden.folder + L1("/ClickInfo.txt"),
              hidden.clickInfo);
    const LockedFolder locked(dir.filePath(L1("sub/locked")));
    if (!locked.keepsOut())
        GTEST_SKIP() << "this user reads a folder without permissions (root)";

    const OvBrowse::Result result = OvBrowse::browse(dir.path() + L1("/"));
    ASSERT_EQ(result.skipped.size(), 1);
    EXPECT_EQ(result.skipped.first().path, dir.filePath(L1("sub/locked")));
    EXPECT_EQ(result.skipped.first().reason, L1("cannot read the folder: Permission denied"));
    // The acquisitions before and after it in path order are still read.
    ASSERT_EQ(result.rows.size(), 2);
    for (const OvBrowse::Row& row : result.rows)
        EXPECT_EQ(row.file, dir.filePath(row.clickNumber + L1("/ClickInfo.txt")));
}

// An entry with an acquisition's or a sequence's name that is no regular file is never
// opened (a FIFO would wait for a writer), and is reported with what it is.
TEST(BrowseTest, WhatIsNoRegularFileIsReportedNotOpened)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(OvSamples::writeAcquisitions(dir.path(), OvSamples::bundledAcquisitions()));
    ASSERT_TRUE(QDir(dir.path()).mkpath(L1("odd")));
    const auto at = [&](const char* name) { return QFile::encodeName(dir.filePath(L1(name))); };
    ASSERT_EQ(::mkfifo(at("odd/ClickInfo.txt").constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(L1("ClickInfo.txt"), dir.filePath(L1("odd/fifo.dcm"))));
    ASSERT_TRUE(QFile::link(L1("/dev/null"), dir.filePath(L1("odd/device.DCM"))));
    ASSERT_TRUE(QFile::link(L1("loop.dcm"), dir.filePath(L1("odd/loop.dcm"))));
    ASSERT_TRUE(QFile::link(L1("missing"), dir.filePath(L1("odd/SequenceInfo.txt"))));
    const int sock = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(sock, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray socketPath = at("odd/s.dcm");
    ASSERT_LT(size_t(socketPath.size()), sizeof address.sun_path);
    std::strcpy(address.sun_path, socketPath.constData());
    ASSERT_EQ(::bind(sock, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(sock);

    const OvBrowse::Result result = OvBrowse::browse(dir.path());
    QStringList reports;
    for (const OvBrowse::Skipped& skipped : result.skipped)
        reports.append(skipped.path.mid(dir.path().size() + 1) + L1(": ") + skipped.reason);
    EXPECT_EQ(reports,
              L1List({ "odd/ClickInfo.txt: not a regular file but a FIFO",
                       "odd/SequenceInfo.txt: a symbolic link that leads to no file: No "
                       "such file or directory",
                       "odd/device.DCM: a symbolic link to a device",
                       "odd/fifo.dcm: a symbolic link to a FIFO",
                       "odd/loop.dcm: a symbolic link that leads to no file: Too many "
                       "levels of symbolic links",
                       "odd/s.dcm: not a regular file but a socket" }));
    EXPECT_EQ(result.rows.size(), 2); // the acquisitions are still read
}

TEST(BrowseTest, DateAndTimeOfTheSecondsSince1904)
{
    EXPECT_EQ(OvBrowse::dateTimeText(L1("2082844800")), L1("1970-01-01 00:00:00"));
    EXPECT_EQ(OvBrowse::dateTimeText(L1("0")), L1("1904-01-01 00:00:00"));
    EXPECT_EQ(OvBrowse::dateTimeText(L1("3313958400")), L1("2009-01-05 00:00:00"));
    EXPECT_EQ(OvBrowse::dateTimeText(L1("12.5")), L1("12.5"));
    EXPECT_EQ(OvBrowse::dateTimeText(QString()), QString());
}

// A row with one value at `column` of the values, and `clickNumber`.
OvBrowse::Row makeRow(const QString& clickNumber, int column, const char* value)
{
    OvBrowse::Row row { QString(), clickNumber, QStringList(QVector<QString>(12).toList()) };
    row.values[column] = L1(value);
    return row;
}

TEST(BrowseTest, SortsNumbersAsNumbersAndKeepsTiesInOrder)
{
    QVector<OvBrowse::Row> rows;
    for (const char* binning : { "8", "16", "2", "", "abc", "ABD", "2" })
        rows.append(makeRow(QString::number(rows.size()), 1, binning));
    const auto order = [&](bool descending) {
        QVector<OvBrowse::Row> sorted = rows;
        OvBrowse::sortRows(sorted, OvBrowse::columnIndex(L1("binning")), descending);
        QString numbers;
        for (const auto& row : sorted)
            numbers += row.clickNumber;
        return numbers;
    };
    // Numbers by value, then words in any case, then the empty cell.
    EXPECT_EQ(order(false), L1("2601453"));
    EXPECT_EQ(order(true), L1("3541026"));
}

TEST(BrowseTest, CsvQuotesWhatNeedsIt)
{
    const OvBrowse::Row row = makeRow(L1("C,1"), 2, "say \"hi\"");
    const QString csv = OvBrowse::csvText({ row });
    EXPECT_TRUE(csv.endsWith(L1("\r\n\"C,1\",,,\"say \"\"hi\"\"\",,,,,,,,,\r\n")))
        << csv.toStdString();
}

} // namespace
