// Walking a buffer section by section with the public scanner.

#include "BenchData.h"

#include "PLSectionScanner.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace OvBench;

namespace {

void scan(benchmark::State& state, const QByteArray& text)
{
    const char* buffer = text.constData();
    long sections = 0;
    for (auto _ : state) {
        long position = 0;
        sections = 0;
        while (char* section = getNextSection(buffer, &position)) {
            benchmark::DoNotOptimize(section);
            std::free(section);
            ++sections;
        }
    }
    if (sections == 0)
        state.SkipWithError("no section found");
    state.SetBytesProcessed(state.iterations() * text.size());
    state.counters["sections"] = double(sections);
}

void BM_ScanSections_10KB(benchmark::State& state)
{
    scan(state, inputs().typical);
}
BENCHMARK(BM_ScanSections_10KB)->Unit(benchmark::kMicrosecond);

void BM_ScanSections_32MB(benchmark::State& state)
{
    static const QByteArray text = clickInfoText(copiesForSize(qint64(32) << 20));
    scan(state, text);
}
BENCHMARK(BM_ScanSections_32MB)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace
