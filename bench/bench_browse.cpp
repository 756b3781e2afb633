// Browsing a tree of 10,000 acquisitions (generated once into the scratch folder) as ovtool
// browse does, and the walk alone that finds the files.

#include "BenchData.h"

#include "Browse.h"
#include "SampleAcquisitions.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

using namespace OvBench;

namespace {

constexpr int ACQUISITIONS = 10000;

const QString& browseTree()
{
    static const QString root = [] {
        const QString folder = scratchDir().filePath(QStringLiteral("browse-tree"));
        QVector<OvSamples::Acquisition> acquisitions;
        for (int i = 0; i < ACQUISITIONS; ++i)
            acquisitions.append(OvSamples::generatedAcquisition(i));
        if (!OvSamples::writeAcquisitions(folder, acquisitions)) {
            std::fprintf(stderr, "bench: cannot write the browse tree\n");
            std::exit(1);
        }
        return folder;
    }();
    return root;
}

void BM_Browse10k(benchmark::State& state)
{
    const QString& root = browseTree();
    for (auto _ : state) {
        const OvBrowse::Result result = OvBrowse::browse(root);
        if (result.rows.size() != ACQUISITIONS) {
            state.SkipWithError("an acquisition of the tree was not read");
            break;
        }
        benchmark::DoNotOptimize(result);
    }
    state.SetItemsProcessed(state.iterations() * ACQUISITIONS);
}
BENCHMARK(BM_Browse10k)->Unit(benchmark::kMillisecond);

// The walk alone: finding the files without reading them.
void BM_Browse10k_FindOnly(benchmark::State& state)
{
    const QString& root = browseTree();
    for (auto _ : state)
        benchmark::DoNotOptimize(OvBrowse::findAcquisitions(root));
    state.SetItemsProcessed(state.iterations() * ACQUISITIONS);
}
BENCHMARK(BM_Browse10k_FindOnly)->Unit(benchmark::kMillisecond);

} // namespace
