// The in-place editor: one set on a typical file, and one on a large file, from taking the
// lock to the renamed new file; and the section lookup by key text.

#include "BenchData.h"

#include "PLClickInfo.h"
#include "PLFileEditor.h"
#include "PLStatus.h"

#include <benchmark/benchmark.h>

using namespace OvBench;

namespace {

// Sets one value near the end of the file, alternating between two values so that each
// iteration writes.
void editFile(benchmark::State& state, const QString& path, const QByteArray& bytes,
              const EntryRef& entry)
{
    int round = 0;
    for (auto _ : state) {
        CPLFileEditor editor(path);
        if (editor.open() != PL_SUCCESS
            || editor.setValue(entry.first, entry.second, QString::number(round++ % 2)) != PL_SUCCESS
            || editor.commit() != PL_SUCCESS) {
            state.SkipWithError(qPrintable(editor.errorString()));
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void BM_EditorSet_10KB(benchmark::State& state)
{
    const QString path = writeScratchFile(QStringLiteral("Edited.txt"), inputs().typical);
    editFile(state, path, inputs().typical, inputs().typicalEntries.last());
}
BENCHMARK(BM_EditorSet_10KB)->Unit(benchmark::kMicrosecond);

void BM_EditorSet_1MB(benchmark::State& state)
{
    static const QByteArray text = clickInfoText(copiesForSize(1 << 20));
    const QString path = writeScratchFile(QStringLiteral("Edited-1MB.txt"), text);
    editFile(state, path, text, entriesOf(text).last());
}
BENCHMARK(BM_EditorSet_1MB)->Unit(benchmark::kMillisecond);

void BM_EditorSet_32MB(benchmark::State& state)
{
    static const QByteArray text = clickInfoText(copiesForSize(32 << 20));
    const QString path = writeScratchFile(QStringLiteral("Edited-32MB.txt"), text);
    editFile(state, path, text, entriesOf(text).last());
}
BENCHMARK(BM_EditorSet_32MB)->Unit(benchmark::kMillisecond)->MinTime(3.0);

// The section lookup by key text, for every section in turn and for the same one again and
// again (which a last-lookup cache would answer at once).
void lookUp(benchmark::State& state, bool sameSection)
{
    CPLClickInfo document;
    if (document.loadClickInfo(inputs().typicalPath) != PL_SUCCESS) {
        state.SkipWithError("loadClickInfo failed");
        return;
    }
    const QStringList keys = document.getSectionKeys();
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(document[keys.at(sameSection ? 0 : i++ % keys.size())]);
    }
}

void BM_SectionLookup_Alternating(benchmark::State& state)
{
    lookUp(state, false);
}
BENCHMARK(BM_SectionLookup_Alternating)->Unit(benchmark::kNanosecond);

void BM_SectionLookup_Same(benchmark::State& state)
{
    lookUp(state, true);
}
BENCHMARK(BM_SectionLookup_Same)->Unit(benchmark::kNanosecond);

} // namespace
