// The background library at the size of a long-used instrument: a summary of 10,000 entries
// (with both indexes) loaded from disk, and the background found for an acquisition in it.

#include "PLBkgSummaryInfo.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int ENTRIES = 10000;

// A library folder of ENTRIES entries over four binnings, three fields of view, both families
// and a spread of exposures, temperatures and dates, written once.
QString libraryFolder()
{
    static QTemporaryDir scratch;
    static const bool written = [] {
        CPLBkgSummaryInfo library;
        const char* fields[] = { "B", "C", "D" };
        for (int i = 0; i < ENTRIES; ++i) {
            sBkgEntry entry;
            entry.m_bFluorescent = i % 5 == 0;
            entry.m_iBinning = 1 << (i % 4);
            entry.m_dExposure = 0.5 * (1 + i % 600);
            entry.m_dFNumber = 1 + i % 3;
            entry.m_strFieldOfView = QString::fromLatin1(fields[i % 3]);
            entry.m_dTemperature = -90 + (i % 7) * 0.5;
            entry.m_Acquired
                = QDateTime::fromSecsSinceEpoch(1767225600 + qint64(i) * 3600, Qt::UTC);
            if (library.addEntry(entry) != PL_SUCCESS)
                return false;
        }
        return library.save(scratch.path()) == PL_SUCCESS;
    }();
    return written ? scratch.path() : QString();
}

void BM_BkgLoadLibrary(benchmark::State& state)
{
    const QString folder = libraryFolder();
    for (auto _ : state) {
        CPLBkgSummaryInfo library;
        if (library.load(folder) != PL_SUCCESS || !library.getLibraryWarnings().isEmpty()) {
            state.SkipWithError("the 10,000-entry library did not load cleanly");
            break;
        }
        benchmark::DoNotOptimize(library.getSectionKeys());
    }
}
BENCHMARK(BM_BkgLoadLibrary)->Unit(benchmark::kMillisecond);

void BM_BkgFindBackground(benchmark::State& state)
{
    CPLBkgSummaryInfo library;
    if (library.load(libraryFolder()) != PL_SUCCESS) {
        state.SkipWithError("the 10,000-entry library did not load");
        return;
    }
    CPLSection acquisition(QStringLiteral("luminescent image"),
                           QStringLiteral("luminescent image"));
    acquisition.addKeyValue(QStringLiteral("Binning Factor"), QStringLiteral("4"));
    acquisition.addKeyValue(QStringLiteral("Luminescent Exposure (Seconds)"), QStringLiteral("60"));
    acquisition.addKeyValue(QStringLiteral("Field of View"), QStringLiteral("C"));
    acquisition.addKeyValue(QStringLiteral("Measured Temperature"), QStringLiteral("-89.8"));
    for (auto _ : state) {
        sBkgEntry entry;
        if (library.findBackground(acquisition, &entry) != PL_SUCCESS) {
            state.SkipWithError("no background found in the 10,000-entry library");
            break;
        }
        benchmark::DoNotOptimize(entry);
    }
}
BENCHMARK(BM_BkgFindBackground)->Unit(benchmark::kMillisecond);

} // namespace
