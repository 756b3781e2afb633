#include "BackgroundSample.h"
#include "PLBkgSummaryInfo.h"
#include "PLConstants.h"
#include "PLPaths.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>

#include <limits>
#include <unistd.h>

namespace {

QDateTime utc(const char* iso)
{
    QDateTime moment = QDateTime::fromString(L1(iso), Qt::ISODate);
    moment.setTimeSpec(Qt::UTC);
    return moment;
}

sBkgEntry makeEntry(const char* id, bool fluorescent = false, int binning = 4, double exposure = 1,
                    const char* fieldOfView = "C", double temperature = -90,
                    const char* acquired = nullptr)
{
    sBkgEntry entry;
    entry.m_strId = L1(id);
    entry.m_bFluorescent = fluorescent;
    entry.m_iBinning = binning;
    entry.m_dExposure = exposure;
    entry.m_dFNumber = 1;
    entry.m_strFieldOfView = L1(fieldOfView);
    entry.m_dTemperature = temperature;
    if (acquired)
        entry.m_Acquired = utc(acquired);
    return entry;
}

// One entry as the library writes it.
const QByteArray kOneEntry = "*** SL0001:\tSL0001\r\n"
                             "Image Subtype:\tluminescent\n"
                             "Binning Factor:\t4\n"
                             "Luminescent Exposure (Seconds):\t60\n"
                             "f Number:\t1\n"
                             "Field of View:\tC\n"
                             "Measured Temperature:\t-90\n"
                             "Acquisition Date:\tSunday, November 1, 2026\n"
                             "Acquisition Time:\t08:00:00\n"
                             "Acquisition Seconds:\t3876364800\n"
                             "PathName:\tSL0001\n"
                             "FileName:\tbackground.tif\n"
                             "\n\n\n";

// The library the matching table runs on.
void addTableEntries(CPLBkgSummaryInfo& library)
{
    const sBkgEntry entries[] = {
        makeEntry("SL0001", false, 4, 60, "C", -90, "2026-10-01T08:00:00"),
        makeEntry("SL0002", false, 4, 120, "C", -90, "2026-10-02T08:00:00"),
        makeEntry("SL0003", false, 4, 120, "C", -90.5, "2026-10-20T08:00:00"), // newer tie
        makeEntry("SL0004", false, 8, 30, "12.5", -90, "2026-10-03T08:00:00"),
        makeEntry("SL0005", false, 4, 300, "D", -70, "2026-10-04T08:00:00"),
        makeEntry("FL0001", true, 4, 1, "C", -90, "2026-10-05T08:00:00"),
        makeEntry("FL0002", true, 2, 0.5),
    };
    for (const sBkgEntry& entry : entries)
        ASSERT_EQ(library.addEntry(entry), PL_SUCCESS) << entry.m_strId.toStdString();
}

// An acquisition's luminescent image section.
CPLSection imageSection(const char* binning, const char* exposure, const char* fieldOfView,
                        const char* temperature, const char* subtype = nullptr)
{
    CPLSection section(PLConstants::LUMINESCENT_IMAGE_SECTION,
                       PLConstants::LUMINESCENT_IMAGE_SECTION);
    const auto add = [&section](const char* key, const char* value) {
        if (value)
            section.addKeyValue(L1(key), L1(value));
    };
    add("Image Subtype", subtype);
    add("Binning Factor", binning);
    add("Luminescent Exposure (Seconds)", exposure);
    add("Field of View", fieldOfView);
    add("Measured Temperature", temperature);
    return section;
}

// The files under `root`, as paths from it, sorted.
QStringList filesUnder(const QString& root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(it.next().mid(root.size()));
    files.sort();
    return files;
}

class BkgSummaryTest : public ::testing::Test
{
protected:
    QString file(const QString& name) const { return m_dir.filePath(name); }
    QTemporaryDir m_dir;
};

TEST_F(BkgSummaryTest, WritesTheEntryLayoutAndLoadsItBackToTheSameBytes)
{
    CPLBkgSummaryInfo library;
    QString id;
    sBkgEntry entry = makeEntry("", false, 4, 60, "C", -90, "2026-11-01T08:00:00");
    ASSERT_EQ(library.addEntry(entry, &id), PL_SUCCESS);
    EXPECT_EQ(id, L1("SL0001"));
    ASSERT_EQ(library.save(m_dir.path()), PL_SUCCESS);
    EXPECT_EQ(readBytes(file(PLConstants::BKGSUMMARY_TXT_FILENAME)), kOneEntry);
    EXPECT_EQ(readBytes(file(PLConstants::SLINDEX_TXT_FILENAME)),
              QByteArray("*** Background Index:\tluminescent\r\n"
                         "SL0001:\tSL0001/background.tif\n\n\n\n"));
    EXPECT_EQ(readBytes(file(PLConstants::FLINDEX_TXT_FILENAME)),
              QByteArray("*** Background Index:\tfluorescent\r\n\n\n\n"));

    CPLBkgSummaryInfo reloaded;
    ASSERT_EQ(reloaded.load(m_dir.path()), PL_SUCCESS);
    EXPECT_TRUE(reloaded.getLoadWarnings().isEmpty())
        << reloaded.getLoadWarnings().join(L1("\n")).toStdString();
    EXPECT_TRUE(reloaded.getLibraryWarnings().isEmpty());
    sBkgEntry read;
    ASSERT_EQ(reloaded.getEntry(L1("sl0001"), &read), PL_SUCCESS);
    entry.m_strId = id;
    entry.m_strPathName = id;
    entry.m_strFileName = PLConstants::BACKGROUND_TIF_FILENAME;
    EXPECT_EQ(read, entry);
    EXPECT_EQ(reloaded.getClickInfoData().toLatin1(), kOneEntry);
}

// The summary and its indexes are saved all or nothing: a failure at any file, before or
// after another was put in place, leaves every file byte for byte as it was.
TEST_F(BkgSummaryTest, ASaveThatFailsAtOneFileLeavesEveryFileAsItWas)
{
    const QString names[]
        = { PLConstants::BKGSUMMARY_TXT_FILENAME, PLConstants::FLINDEX_TXT_FILENAME,
            PLConstants::SLINDEX_TXT_FILENAME };
    const struct
    {
        const char* failing; // OVPARSER_FAIL_SYSCALL, or "" for a folder where SLindex.txt stands
        bool linkedSummary; // the summary has a second link, so it is written in place
        int status;
        const char* reason;
    } cases[] = {
        { "rename@SLindex.txt", false, PL_SHORT_WRITE, "Input/output error" }, // the last
        { "rename@SLindex.txt", true, PL_SHORT_WRITE, "Input/output error" },
        { "rename@FLindex.txt", false, PL_SHORT_WRITE, "Input/output error" },
        { "fsyncdir@BkgSummary.txt", false, PL_SHORT_WRITE, "Input/output error" },
        { "write@FLindex.txt", true, PL_SHORT_WRITE, "Input/output error" },
        { "", false, PL_FILE_OPEN_FAILED, "Is a directory" },
    };
    for (const auto& c : cases) {
        const QTemporaryDir folder;
        CPLBkgSummaryInfo library;
        addTableEntries(library);
        ASSERT_EQ(library.save(folder.path()), PL_SUCCESS);
        if (!*c.failing) {
            ASSERT_TRUE(QFile::remove(folder.filePath(names[2])));
            ASSERT_TRUE(QDir(folder.path()).mkdir(names[2]));
        }
        if (c.linkedSummary) {
            ASSERT_EQ(::link(QFile::encodeName(folder.filePath(names[0])).constData(),
                             QFile::encodeName(folder.filePath(L1("link"))).constData()),
                      0);
        }
        QByteArray before[3];
        for (int i = 0; i < 3; ++i)
            before[i] = readBytes(folder.filePath(names[i]));
        const QStringList files = filesUnder(folder.path());
        ASSERT_EQ(library.removeEntry(L1("SL0001")), PL_SUCCESS); // every file changes
        ASSERT_EQ(library.removeEntry(L1("FL0001")), PL_SUCCESS);
        qputenv("OVPARSER_FAIL_SYSCALL", c.failing);
        EXPECT_EQ(library.save(folder.path()), c.status) << c.failing;
        qunsetenv("OVPARSER_FAIL_SYSCALL");
        EXPECT_EQ(getLastSystemError(), L1(c.reason)) << c.failing;
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(readBytes(folder.filePath(names[i])), before[i])
                << c.failing << ' ' << c.linkedSummary << ' ' << names[i].toStdString();
        EXPECT_EQ(filesUnder(folder.path()), files) << c.failing;
    }
}

TEST_F(BkgSummaryTest, EveryFileOfAFullLibraryRoundTrips)
{
    CPLBkgSummaryInfo library;
    addTableEntries(library);
    ASSERT_EQ(library.save(m_dir.path()), PL_SUCCESS);
    for (const QString& id : L1List({ "SL0002", "FL0002" }))
        ASSERT_EQ(library.saveBkgInfo(m_dir.path(), id), PL_SUCCESS);

    QList<sBkgEntry> before;
    ASSERT_EQ(library.getEntries(&before), PL_SUCCESS);
    ASSERT_EQ(before.size(), 7);

    QTemporaryDir second;
    CPLBkgSummaryInfo reloaded;
    ASSERT_EQ(reloaded.load(m_dir.path()), PL_SUCCESS);
    EXPECT_TRUE(reloaded.getLibraryWarnings().isEmpty())
        << reloaded.getLibraryWarnings().join(L1("\n")).toStdString();
    QList<sBkgEntry> after;
    reloaded.getEntries(&after);
    EXPECT_EQ(after, before);
    ASSERT_EQ(reloaded.save(second.path()), PL_SUCCESS);
    for (const QString& name :
         { PLConstants::BKGSUMMARY_TXT_FILENAME, PLConstants::SLINDEX_TXT_FILENAME,
           PLConstants::FLINDEX_TXT_FILENAME })
        EXPECT_EQ(readBytes(second.filePath(name)), readBytes(file(name))) << name.toStdString();

    // BkgInfo.txt holds the entry's own section and reads back as the entry.
    sBkgEntry info;
    const QString infoPath = file(L1("FL0002/") + PLConstants::BKGINFO_TXT_FILENAME);
    ASSERT_EQ(CPLBkgSummaryInfo::loadBkgInfo(infoPath, &info), PL_SUCCESS);
    EXPECT_EQ(info, before.last());
    EXPECT_FALSE(info.m_Acquired.isValid());
    CPLClickInfo infoDocument;
    ASSERT_EQ(infoDocument.loadClickInfo(infoPath), PL_SUCCESS);
    EXPECT_TRUE(infoDocument.getLoadWarnings().isEmpty());
    EXPECT_EQ(library.saveBkgInfo(m_dir.path(), L1("SL0099")), PL_KEY_NOT_FOUND);
}

TEST_F(BkgSummaryTest, HandWrittenSummaryLoadsAndReportsSectionsThatAreNotEntries)
{
    writeBytes(file(PLConstants::BKGSUMMARY_TXT_FILENAME),
               "# Backgrounds taken after the CCD service\r\n"
               "*** SL0010:\tSL0010\r\n"
               "# re-taken on Monday\r\n"
               "Image Subtype:\tLuminescent\r\n"
               "Binning Factor:\t2\r\n"
               "Binning Factor:\t4\r\n"
               "Luminescent Exposure (Seconds):\t 30 \r\n"
               "Field of View:\tC\t# stage position\r\n"
               "Measured Temperature:\t-89.9\r\n"
               "\r\n"
               "*** Notes:\tfrom the service engineer\r\n"
               "Binning Factor:\tfour\r\n"
               "\r\n"
               "*** SL0011:\tSL0011\r\n"
               "Image Subtype:\tluminescent\r\n"
               "Binning Factor:\t4\r\n"
               "Luminescent Exposure (Seconds):\t30\r\n"
               "Field of View:\tC\r\n"
               "Measured Temperature:\t-90\r\n"
               "PathName:\t../outside\r\n");
    CPLBkgSummaryInfo library;
    ASSERT_EQ(library.loadSummary(file(PLConstants::BKGSUMMARY_TXT_FILENAME)), PL_SUCCESS);
    EXPECT_FALSE(library.getLoadWarnings().isEmpty()); // CR LF, repeated key, blanks
    QList<sBkgEntry> entries;
    library.getEntries(&entries);
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries[0].m_strId, L1("SL0010"));
    EXPECT_EQ(entries[0].m_iBinning, 4); // a repeated key reads as its last line
    EXPECT_EQ(entries[0].m_dExposure, 30.0);
    EXPECT_EQ(entries[0].m_strFieldOfView, L1("C"));
    // Without PathName and FileName the image is in the entry's own folder.
    EXPECT_EQ(entries[0].m_strPathName, L1("SL0010"));
    EXPECT_EQ(entries[0].m_strFileName, L1("background.tif"));
    const QString path = file(PLConstants::BKGSUMMARY_TXT_FILENAME);
    EXPECT_EQ(library.getLibraryWarnings(),
              QStringList({ path
                                + L1(":11: section \"Notes\": not a background entry: "
                                     "no Image Subtype"),
                            path
                                + L1(":14: section \"SL0011\": not a background entry: "
                                     "PathName \"../outside\" leaves the library folder") }));
    sBkgEntry entry;
    EXPECT_EQ(library.getEntry(L1("Notes"), &entry), PL_INVALID_ARGUMENT);
    // Saved, every section stays, the loose ones too.
    EXPECT_EQ(library.getSectionKeys(), L1List({ "SL0010", "Notes", "SL0011" }));
}

// A second section under an entry's ID (a user's note) is kept where it stood, saved back
// there, named in the library warnings, and never read as the entry.
TEST_F(BkgSummaryTest, ASectionRepeatingAnIdIsKeptAndReported)
{
    const QByteArray note = "*** SL0001:\tnote\r\n# the shutter stuck once\nChecked:\tyes\n\n";
    const QByteArray second = QByteArray(kOneEntry).replace("SL0001", "SL0002");
    // kOneEntry ends with the document's two LF: the sections stand before them.
    const QByteArray first = kOneEntry.left(kOneEntry.size() - 2);
    const QByteArray summary = first + note + second;
    writeBytes(file(PLConstants::BKGSUMMARY_TXT_FILENAME), summary);
    CPLBkgSummaryInfo library;
    ASSERT_EQ(library.load(m_dir.path()), PL_SUCCESS);
    const int noteLine = first.count('\n') + 1;
    const QString path = file(PLConstants::BKGSUMMARY_TXT_FILENAME);
    const QStringList warnings = library.getLibraryWarnings();
    ASSERT_FALSE(warnings.isEmpty());
    EXPECT_EQ(warnings.first(),
              path
                  + QStringLiteral(":%1: section \"SL0001\" repeats the ID of the entry on line 1; "
                                   "kept as it stands and saved back there, not read as an entry")
                        .arg(noteLine));
    EXPECT_TRUE(library.getLoadWarnings().isEmpty())
        << library.getLoadWarnings().join(L1("\n")).toStdString();
    QList<sBkgEntry> entries;
    library.getEntries(&entries);
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0].m_strId, L1("SL0001"));
    EXPECT_EQ(entries[0].m_iBinning, 4);
    EXPECT_EQ(entries[1].m_strId, L1("SL0002"));

    // Saved elsewhere: the same bytes, the note in its place.
    QTemporaryDir other;
    ASSERT_EQ(library.save(other.path()), PL_SUCCESS);
    EXPECT_EQ(readBytes(other.filePath(PLConstants::BKGSUMMARY_TXT_FILENAME)), summary);
    EXPECT_TRUE(readBytes(other.filePath(PLConstants::SLINDEX_TXT_FILENAME))
                    .contains("SL0001:\tSL0001/background.tif\nSL0002:"));

    // Removing the entry removes the note under its ID too: it would be the entry next time.
    ASSERT_EQ(library.removeEntry(L1("sl0001")), PL_SUCCESS);
    EXPECT_EQ(library.getClickInfoData().toLatin1(), second);

    // A repeat that reads as a usable entry is still no entry: not listed, never found.
    writeBytes(file(PLConstants::BKGSUMMARY_TXT_FILENAME),
               "*** SL0001:\tnote\nChecked:\tyes\n\n" + kOneEntry);
    ASSERT_EQ(library.load(m_dir.path()), PL_SUCCESS);
    library.getEntries(&entries);
    EXPECT_TRUE(entries.isEmpty());
    sBkgEntry found;
    EXPECT_EQ(library.findBackground(imageSection("4", "60", "C", "-90"), &found),
              PL_NO_BACKGROUND_FITS);
}

TEST_F(BkgSummaryTest, LoadReportsEveryWayAnIndexDisagreesWithTheSummary)
{
    CPLBkgSummaryInfo library;
    addTableEntries(library);
    ASSERT_EQ(library.save(m_dir.path()), PL_SUCCESS);
    const QString sl = file(PLConstants::SLINDEX_TXT_FILENAME);
    writeBytes(sl,
               "*** Background Index:\tluminescent\r\n"
               "SL0002:\tSL0002/background.tif\n"
               "SL0001:\tSL0001/background.tif\n"
               "SL0003:\tSL0003/other.tif\n"
               "FL0001:\tFL0001/background.tif\n"
               "SL0005:\tSL0005/background.tif\n\n\n");
    QFile::remove(file(PLConstants::FLINDEX_TXT_FILENAME));

    CPLBkgSummaryInfo reloaded;
    ASSERT_EQ(reloaded.load(m_dir.path()), PL_SUCCESS);
    const QString fl = file(PLConstants::FLINDEX_TXT_FILENAME);
    EXPECT_EQ(reloaded.getLibraryWarnings(),
              QStringList({ sl
                                + L1(": gives SL0003 the image \"SL0003/other.tif\", the "
                                     "summary \"SL0003/background.tif\""),
                            sl + L1(": lacks the luminescent entry SL0004"),
                            sl
                                + L1(": lists FL0001, which the summary does not hold as "
                                     "a luminescent entry"),
                            sl + L1(": lists the entries in another order than the summary"),
                            fl + L1(": the index is missing") }));
    // Saving the library puts the indexes right.
    ASSERT_EQ(reloaded.save(m_dir.path()), PL_SUCCESS);
    ASSERT_EQ(reloaded.load(m_dir.path()), PL_SUCCESS);
    EXPECT_TRUE(reloaded.getLibraryWarnings().isEmpty());
}

struct MatchCase
{
    const char* what;
    CPLSection section;
    int status;
    const char* expected; // the entry ID, or the reason
    double tolerance = PL_BKG_TEMPERATURE_TOLERANCE;
};

TEST_F(BkgSummaryTest, FindsTheBackgroundByTheMatchingRule)
{
    CPLBkgSummaryInfo library;
    addTableEntries(library);
    const MatchCase cases[] = {
        { "exact exposure", imageSection("4", "60", "C", "-90"), PL_SUCCESS, "SL0001" },
        { "nearest longer exposure, newest of a tie", imageSection("4", "61", "c", "-89"),
          PL_SUCCESS, "SL0003" },
        { "the tie's older entry when the newer is too warm", imageSection("4", "90", "C", "-88.0"),
          PL_SUCCESS, "SL0002" },
        { "field of view compared as numbers", imageSection("8", "10", "12.50", "-90"), PL_SUCCESS,
          "SL0004" },
        { "temperature at the tolerance fits", imageSection("4", "200", "D", "-72"), PL_SUCCESS,
          "SL0005" },
        { "fluorescent family", imageSection("4", "0.2", "C", "-90", "fluorescent"), PL_SUCCESS,
          "FL0001" },
        { "no temperature: not checked", imageSection("2", "0.5", "C", nullptr, "fluorescent"),
          PL_SUCCESS, "FL0002" },
        { "wrong family", imageSection("8", "1", "C", "-90", "fluorescent"), PL_NO_BACKGROUND_FITS,
          "no fluorescent background with binning 8" },
        { "wrong binning", imageSection("2", "1", "C", "-90"), PL_NO_BACKGROUND_FITS,
          "no luminescent background with binning 2" },
        { "wrong field of view", imageSection("4", "1", "B", "-90"), PL_NO_BACKGROUND_FITS,
          "no luminescent background with binning 4 and field of view B" },
        { "every exposure too short", imageSection("4", "180", "C", "-90"), PL_NO_BACKGROUND_FITS,
          "no exposure >= 180 s for binning 4 field of view C (the longest is 120 s)" },
        { "temperature out of tolerance", imageSection("4", "100", "C", "-70"),
          PL_NO_BACKGROUND_FITS,
          "temperature -70.0 C differs by more than 2.0 C from every candidate (closest -90.0 C)" },
        { "a wider tolerance lets it fit", imageSection("4", "100", "C", "-70"), PL_SUCCESS,
          "SL0003", 20.5 },
        { "no binning", imageSection(nullptr, "1", "C", "-90"), PL_KEY_NOT_FOUND,
          "the image section has no Binning Factor" },
        { "binning not a number", imageSection("x4", "1", "C", "-90"), PL_INVALID_ARGUMENT,
          "Binning Factor \"x4\" is not a whole number above 0" },
        { "negative tolerance", imageSection("4", "1", "C", "-90"), PL_OUT_OF_RANGE, "", -1 },
    };
    for (const MatchCase& c : cases) {
        sBkgEntry found;
        QString reason;
        const int status = library.findBackground(c.section, &found, &reason, c.tolerance);
        EXPECT_EQ(status, c.status) << c.what;
        EXPECT_EQ(status == PL_SUCCESS ? found.m_strId : reason, L1(c.expected)) << c.what;
    }

    // From a whole acquisition: its luminescent image section, or the reason it has none.
    CPLClickInfo acquisition;
    sBkgEntry found;
    QString reason;
    EXPECT_EQ(library.findBackground(acquisition, &found, &reason), PL_SECTION_NOT_PRESENT);
    EXPECT_EQ(reason, L1("the acquisition has no \"luminescent image\" section"));
    ASSERT_EQ(acquisition.loadClickInfo(QStringLiteral(OVPARSER_SAMPLES)
                                        + L1("/KL20261104142207_001/ClickInfo.txt")),
              PL_SUCCESS);
    EXPECT_EQ(library.findBackground(acquisition, &found, &reason), PL_NO_BACKGROUND_FITS);
    EXPECT_EQ(reason,
              L1("no exposure >= 60 s for binning 8 field of view 12.5 (the longest is 30 s)"));
    EXPECT_EQ(library.findBackground(acquisition, nullptr), PL_NULL_ARGUMENT);

    CPLBkgSummaryInfo empty;
    EXPECT_EQ(empty.findBackground(acquisition, &found, &reason), PL_NO_BACKGROUND_FITS);
    EXPECT_EQ(reason, L1("no luminescent background in the library"));
}

TEST_F(BkgSummaryTest, ListsEntriesOlderThanADayCountForRenewal)
{
    CPLBkgSummaryInfo library;
    addTableEntries(library);
    const QDateTime reference = utc("2026-10-31T08:00:00");
    const auto older = [&](int days) {
        QList<sBkgEntry> entries;
        EXPECT_EQ(library.getEntriesOlderThan(days, reference, &entries), PL_SUCCESS);
        QStringList ids;
        for (const sBkgEntry& entry : entries)
            ids.append(entry.m_strId);
        return ids.join(L1(","));
    };
    // SL0003 is exactly 11 days old, FL0001 26, SL0005 27, SL0004 28, SL0002 29, SL0001 30;
    // FL0002 has no date.
    EXPECT_EQ(older(11), L1("FL0002,SL0001,SL0002,SL0004,SL0005,FL0001"));
    EXPECT_EQ(older(10), L1("FL0002,SL0001,SL0002,SL0004,SL0005,FL0001,SL0003"));
    EXPECT_EQ(older(26), L1("FL0002,SL0001,SL0002,SL0004,SL0005"));
    EXPECT_EQ(older(29), L1("FL0002,SL0001"));
    EXPECT_EQ(older(30), L1("FL0002"));
    QList<sBkgEntry> entries;
    EXPECT_EQ(library.getEntriesOlderThan(-1, reference, &entries), PL_OUT_OF_RANGE);
    EXPECT_EQ(library.getEntriesOlderThan(1, QDateTime(), &entries), PL_INVALID_ARGUMENT);
    EXPECT_EQ(library.getEntriesOlderThan(1, reference, nullptr), PL_NULL_ARGUMENT);
}

TEST_F(BkgSummaryTest, AddAndRemoveRefuseWhatCannotStandInTheFile)
{
    CPLBkgSummaryInfo library;
    addTableEntries(library);
    const QString before = library.getClickInfoData();
    struct
    {
        const char* what;
        sBkgEntry entry;
        int status;
    } cases[] = {
        { "ID present", makeEntry("sl0001"), PL_INVALID_ARGUMENT },
        { "ID with a colon", makeEntry("SL:1"), PL_INVALID_ARGUMENT },
        { "ID with a slash", makeEntry("a/b"), PL_INVALID_ARGUMENT },
        { "ID ..", makeEntry(".."), PL_INVALID_ARGUMENT },
        { "FOV with a hash", makeEntry("X1", false, 4, 1, "C#"), PL_INVALID_ARGUMENT },
        { "empty FOV", makeEntry("X1", false, 4, 1, ""), PL_EMPTY_KEY },
        { "binning 0", makeEntry("X1", false, 0), PL_OUT_OF_RANGE },
        { "negative exposure", makeEntry("X1", false, 4, -1), PL_OUT_OF_RANGE },
        { "infinite temperature",
          makeEntry("X1", false, 4, 1, "C", std::numeric_limits<double>::infinity()),
          PL_OUT_OF_RANGE },
    };
    for (const auto& c : cases)
        EXPECT_EQ(library.addEntry(c.entry), c.status) << c.what;
    sBkgEntry outside = makeEntry("X1");
    outside.m_strPathName = L1("/tmp/X1");
    EXPECT_EQ(library.addEntry(outside), PL_INVALID_ARGUMENT);
    EXPECT_EQ(library.getClickInfoData(), before);

    QString id;
    ASSERT_EQ(library.addEntry(makeEntry("", true), &id), PL_SUCCESS);
    EXPECT_EQ(id, L1("FL0003"));
    EXPECT_EQ(library.removeEntry(L1("fl0003")), PL_SUCCESS);
    EXPECT_EQ(library.removeEntry(L1("FL0003")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(library.removeEntry(QString()), PL_EMPTY_KEY);
    EXPECT_EQ(library.getClickInfoData(), before);
}

TEST_F(BkgSummaryTest, LoadStatusesAndTheLibraryFolder)
{
    CPLBkgSummaryInfo library;
    EXPECT_EQ(library.load(QString()), PL_NULL_ARGUMENT);
    EXPECT_EQ(library.load(file(L1("absent"))), PL_FOLDER_MISSING);
    EXPECT_EQ(library.load(m_dir.path()), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(library.save(file(L1("absent"))), PL_FOLDER_MISSING);
    sBkgEntry entry;
    EXPECT_EQ(library.getEntry(L1("SL0001"), &entry), PL_KEY_NOT_FOUND);
    EXPECT_EQ(library.getEntries(nullptr), PL_NULL_ARGUMENT);
    EXPECT_EQ(CPLBkgSummaryInfo::loadBkgInfo(file(L1("none.txt")), &entry), PL_FILE_OPEN_FAILED);

    qputenv(OV_DATA_DIR_VARIABLE, m_dir.path().toLocal8Bit());
    EXPECT_EQ(getOVPath(OV_PATH_BACKGROUND_LIBRARY), m_dir.path() + L1("/Instrument/Background"));
    qunsetenv(OV_DATA_DIR_VARIABLE);
}

TEST_F(BkgSummaryTest, BundledSampleIsWhatTheGeneratorWrites)
{
    ASSERT_EQ(writeBackgroundSample(m_dir.path()), PL_SUCCESS);
    const QString samples = QStringLiteral(OVPARSER_SAMPLES "/background");
    const QStringList written = filesUnder(m_dir.path());
    EXPECT_EQ(filesUnder(samples), written) << "run make_samples samples to write it again";
    EXPECT_EQ(written.size(), 15); // the summary, two indexes, twelve BkgInfo.txt
    for (const QString& name : qAsConst(written))
        EXPECT_EQ(readBytes(samples + name), readBytes(m_dir.path() + name)) << name.toStdString();

    CPLBkgSummaryInfo library;
    ASSERT_EQ(library.load(samples), PL_SUCCESS);
    QList<sBkgEntry> entries;
    library.getEntries(&entries);
    QList<sBkgEntry> expected = backgroundSampleEntries();
    for (sBkgEntry& entry : expected) {
        entry.m_strPathName = entry.m_strId;
        entry.m_strFileName = PLConstants::BACKGROUND_TIF_FILENAME;
    }
    EXPECT_EQ(entries, expected);
}

} // namespace
