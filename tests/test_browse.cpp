// Browsing a folder of acquisitions: both ways of reading give the same rows and the same
// reasons to skip a file, rows sort by number or text, CSV quoting; and the bundled samples
// are exactly what the sample generator writes with the image section builder.

#include "Browse.h"
#include "SampleAcquisitions.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cstdlib>
#include <ctime>

namespace OvBrowse {

void PrintTo(const Row& row, std::ostream* os)
{
    *os << row.file.toStdString() << " [" << row.clickNumber.toStdString() << "] "
        << row.values.join(L1("|")).toStdString();
}

bool operator==(const Row& a, const Row& b)
{
    return a.file == b.file && a.clickNumber == b.clickNumber && a.values == b.values;
}

} // namespace OvBrowse

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

// Files that test the line, header and value rules, each with what both readings make of it.
const struct
{
    const char* name;
    QByteArray text;
    const char* reason; // empty when the file is listed
} FILES[] = {
    { "crlf",
      "*** ClickNumber:\tC1\r\n\r\n*** Luminescent Image:\tx\r\nBINNING FACTOR:\t4\r\n"
      "Field of View:\t12.5\t# cm\r\nFilter:\tGFP\r\nEmission filter:\tOpen\r\n",
      "" },
    { "lone-cr", "*** ClickNumber:\tC2\r*** photographic image:\tp\rBinning Factor:\t2\r", "" },
    { "first-section-wins",
      "lead line\n*** ClickNumber:\tC3\n*** luminescent image:\ta\nf Number:\t1\nf Number:\t2\n"
      "*** luminescent image:\tb\nf Number:\t9\n*** photographic image:\tp\nf Number:\t4\n",
      "" },
    { "comment-lines",
      "*** ClickNumber:\tC4\n*** photographic image:\tp\n# EM Gain:\t5\n"
      "EM Gain # x:\t6\nEM Gain:\t7\n",
      "" },
    { "nul-ends-text",
      QByteArray("*** ClickNumber:\tC5\n*** photographic image:\tp\nEM Gain:\t1\n"
                 "\0EM Gain:\t2\n",
                 63),
      "" },
    { "seconds-not-a-number",
      "*** ClickNumber:\tC6\n*** photographic image:\tp\nAcquisition Seconds:\tsoon\n", "" },
    { "malformed-header", "*** ClickNumber:\tC7\n\n*** Broken # note: x\nk:\tv\n",
      "line 3: malformed section header" },
    { "no-colon", "*** ClickNumber:\tC8\n*** photographic image\n", "line 2: malformed" },
    { "empty-click-number", "*** ClickNumber:\t\n*** photographic image:\tp\n",
      "line 1: section header without a key" },
    { "empty-key", "*** ClickNumber:\tC9\n***   :\tp\n", "line 2: section header without a key" },
    { "no-click-number", "*** photographic image:\tp\nEM Gain:\t1\n",
      "no \"ClickNumber\" section" },
    { "no-image", "*** ClickNumber:\tC10\n*** x-ray image:\tx\nEM Gain:\t1\n",
      "neither a \"luminescent image\" nor a \"photographic image\" section" },
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
    // Each file as expected; rows and skipped files keep the path order.
    int listed = 2; // the bundled ones
    for (const auto& f : FILES) {
        const QString file = dir.filePath(L1(f.name) + L1("/ClickInfo.txt"));
        const auto skipped
            = std::find_if(result.skipped.begin(), result.skipped.end(),
                           [&](const OvBrowse::Skipped& s) { return s.file == file; });
        if (*f.reason) {
            ASSERT_NE(skipped, result.skipped.end()) << f.name;
            EXPECT_TRUE(skipped->reason.startsWith(L1(f.reason))) << skipped->reason.toStdString();
        } else {
            EXPECT_EQ(skipped, result.skipped.end()) << f.name;
            ++listed;
        }
    }
    ASSERT_EQ(result.rows.size(), listed);

    const auto row = [&](const char* name) {
        const QString file = dir.filePath(L1(name) + L1("/ClickInfo.txt"));
        return *std::find_if(result.rows.begin(), result.rows.end(),
                             [&](const OvBrowse::Row& r) { return r.file == file; });
    };
    // Columns: date, binning, exposure, field of view, f-stop, angle, EX, EM filter, file,
    // path, illumination mode, EM gain.
    EXPECT_EQ(row("crlf").values,
              L1List({ "", "4", "", "12.5", "", "", "", "GFP", "", "", "", "" }));
    EXPECT_EQ(row("lone-cr").values.at(1), L1("2"));
    EXPECT_EQ(row("first-section-wins").values.at(4), L1("2"));
    EXPECT_EQ(row("comment-lines").values.at(11), L1("7"));
    EXPECT_EQ(row("nul-ends-text").values.at(11), L1("1"));
    EXPECT_EQ(row("seconds-not-a-number").values.at(0), L1("soon"));
    const OvBrowse::Row fluorescent = result.rows.first();
    EXPECT_EQ(fluorescent.clickNumber, L1("AM20261105093012_001"));
    EXPECT_EQ(fluorescent.values.at(0), L1("2026-11-05 09:30:12"));
    EXPECT_EQ(fluorescent.values.at(10), L1("fluorescent"));
}

TEST(BrowseTest, DateAndTimeOfTheSecondsSince1904)
{
    EXPECT_EQ(OvBrowse::dateTimeText(L1("2082844800")), L1("1970-01-01 00:00:00"));
    EXPECT_EQ(OvBrowse::dateTimeText(L1("0")), L1("1904-01-01 00:00:00"));
    EXPECT_EQ(OvBrowse::dateTimeText(L1("3313958400")), L1("2009-01-05 00:00:00"));
    EXPECT_EQ(OvBrowse::dateTimeText(L1("12.5")), L1("12.5"));
    EXPECT_EQ(OvBrowse::dateTimeText(QString()), QString());
}

TEST(BrowseTest, SortsNumbersAsNumbersAndKeepsTiesInOrder)
{
    QVector<OvBrowse::Row> rows;
    const char* binnings[] = { "8", "16", "2", "", "abc", "ABD", "2" };
    for (int i = 0; i < int(std::size(binnings)); ++i) {
        OvBrowse::Row row;
        row.clickNumber = QString::number(i);
        row.values = QStringList(QVector<QString>(12).toList());
        row.values[1] = L1(binnings[i]);
        rows.append(row);
    }
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
    EXPECT_EQ(OvBrowse::columnIndex(L1("EM GAIN")), 12);
    EXPECT_EQ(OvBrowse::columnIndex(L1("Gain")), -1);
}

TEST(BrowseTest, CsvQuotesWhatNeedsIt)
{
    OvBrowse::Row row;
    row.clickNumber = L1("C,1");
    row.values = QStringList(QVector<QString>(12).toList());
    row.values[2] = L1("say \"hi\"");
    row.values[3] = L1("plain");
    const QString csv = OvBrowse::csvText({ row });
    EXPECT_TRUE(csv.endsWith(L1("\r\n\"C,1\",,,\"say \"\"hi\"\"\",plain,,,,,,,,\r\n")))
        << csv.toStdString();
}

} // namespace
