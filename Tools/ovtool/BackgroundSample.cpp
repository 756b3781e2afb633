#include "BackgroundSample.h"

#include "PLPaths.h"
#include "PLStatus.h"

namespace {

struct Row
{
    const char* id;
    bool fluorescent;
    int binning;
    double exposure;
    double fNumber;
    const char* fieldOfView;
    double temperature;
    const char* acquired; // UTC
};

// Two luminescent entries of the same settings (the newer one is chosen), a long exposure
// beside them, a warm fluorescent one, fields of view as letters and as centimetres.
const Row ROWS[] = {
    { "SL0001", false, 8, 60, 1, "12.5", -90, "2026-09-01T07:30:00" },
    { "SL0002", false, 8, 60, 1, "12.5", -90, "2026-10-15T07:30:00" },
    { "SL0003", false, 8, 120, 1, "12.5", -90, "2026-10-15T07:45:00" },
    { "SL0004", false, 4, 60, 1, "12.5", -90, "2026-10-15T08:00:00" },
    { "SL0005", false, 4, 300, 1, "12.5", -89.5, "2026-08-20T18:10:00" },
    { "SL0006", false, 2, 30, 2, "C", -90, "2026-10-01T06:00:00" },
    { "SL0007", false, 1, 600, 1, "D", -85, "2026-07-01T22:00:00" },
    { "SL0008", false, 16, 10, 1, "24", -90, "2026-10-20T06:15:00" },
    { "FL0001", true, 4, 0.5, 2, "13.4", -90, "2026-10-10T09:00:00" },
    { "FL0002", true, 4, 2, 2, "13.4", -90, "2026-09-10T09:00:00" },
    { "FL0003", true, 8, 1, 2, "12.5", -70, "2026-10-12T09:00:00" },
    { "FL0004", true, 2, 0.5, 2, "C", -90, "2026-06-30T09:00:00" },
};

} // namespace

QList<sBkgEntry> backgroundSampleEntries()
{
    QList<sBkgEntry> entries;
    for (const Row& row : ROWS) {
        sBkgEntry entry;
        entry.m_strId = QString::fromLatin1(row.id);
        entry.m_bFluorescent = row.fluorescent;
        entry.m_iBinning = row.binning;
        entry.m_dExposure = row.exposure;
        entry.m_dFNumber = row.fNumber;
        entry.m_strFieldOfView = QString::fromLatin1(row.fieldOfView);
        entry.m_dTemperature = row.temperature;
        entry.m_Acquired = QDateTime::fromString(QString::fromLatin1(row.acquired), Qt::ISODate);
        entry.m_Acquired.setTimeSpec(Qt::UTC);
        entries.append(entry);
    }
    return entries;
}

int writeBackgroundSample(const QString& folder)
{
    int status = createFolder(folder);
    CPLBkgSummaryInfo library;
    const QList<sBkgEntry> entries = backgroundSampleEntries();
    for (const sBkgEntry& entry : entries) {
        if (status == PL_SUCCESS)
            status = library.addEntry(entry);
    }
    if (status == PL_SUCCESS)
        status = library.save(folder);
    for (const sBkgEntry& entry : entries) {
        if (status == PL_SUCCESS)
            status = library.saveBkgInfo(folder, entry.m_strId);
    }
    return status;
}
