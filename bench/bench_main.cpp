// Runs the benchmarks and prints, after the usual table, the ratios that the performance
// targets of the library are stated in.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include <malloc.h>
#include <unistd.h>

namespace {

struct Figures
{
    double seconds = 0; // real time per iteration
    double bytesPerSecond = 0;
};

// The console table, and for the summary the median figures of every benchmark over its
// repetitions.
class SummaryReporter : public benchmark::ConsoleReporter
{
public:
    explicit SummaryReporter(OutputOptions options)
        : ConsoleReporter(options)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0)
                continue;
            Figures figures;
            figures.seconds = run.real_accumulated_time / double(run.iterations);
            const auto bytes = run.counters.find("bytes_per_second");
            figures.bytesPerSecond = bytes == run.counters.end() ? 0 : double(bytes->second);
            m_runs[run.run_name.function_name].push_back(figures);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override
    {
        ConsoleReporter::Finalize();
        for (auto& [name, runs] : m_runs) {
            std::sort(runs.begin(), runs.end(),
                      [](const Figures& a, const Figures& b) { return a.seconds < b.seconds; });
            m_figures[name] = runs[runs.size() / 2];
        }
        std::FILE* out = stdout;
        std::fflush(out);
        std::fprintf(out, "\nTargets\n");

        const Figures* scanSmall = find("BM_ScanSections_10KB");
        const Figures* scanLarge = find("BM_ScanSections_32MB");
        if (scanSmall && scanLarge) {
            const double ratio = scanLarge->bytesPerSecond / scanSmall->bytesPerSecond;
            const double mbps = scanLarge->bytesPerSecond / 1e6;
            std::fprintf(out,
                         "  scan 32 MB / 10 KB byte rate: %.2f (target >= 0.33): %s\n"
                         "  scan 32 MB byte rate: %.0f MB/s (target >= 400 MB/s): %s\n",
                         ratio, verdict(ratio >= 1.0 / 3.0), mbps, verdict(mbps >= 400.0));
        }
        const Figures* loadSmall = find("BM_LoadClickInfo_1MB");
        const Figures* loadLarge = find("BM_LoadClickInfo_32MB");
        if (loadSmall && loadLarge) {
            const double ratio = loadLarge->seconds / loadSmall->seconds;
            std::fprintf(out, "  load 32 MB / 1 MB time: %.1f (target <= 40): %s\n", ratio,
                         verdict(ratio <= 40.0));
        }
        const Figures* destroySmall = find("BM_DestroyClickInfo_1MB");
        const Figures* destroyLarge = find("BM_DestroyClickInfo_32MB");
        if (destroySmall && destroyLarge) {
            std::fprintf(out,
                         "  destroy 32 MB / 1 MB time: %.1f (for information: freeing memory "
                         "that no longer fits in the caches)\n",
                         destroyLarge->seconds / destroySmall->seconds);
        }
        const Figures* ours = find("BM_LoadAndReadAll_10KB");
        const Figures* qsettings = find("BM_QSettingsReadAll_10KB");
        if (ours && qsettings) {
            const double ratio = ours->seconds / qsettings->seconds;
            std::fprintf(out,
                         "  load and read all 10 KB, ovparser / QSettings time: %.3f "
                         "(target <= 0.20): %s\n",
                         ratio, verdict(ratio <= 0.20));
        }
        if (const Figures* browse = find("BM_Browse10k")) {
            std::fprintf(out,
                         "  browse 10,000 acquisitions: %.0f acquisitions/s (for information)\n",
                         10000 / browse->seconds);
        }
        if (m_missed == 0 && m_checked == 0)
            std::fprintf(out, "  (the benchmarks that the targets compare were not run)\n");
        std::fflush(out);
    }

private:
    const Figures* find(const char* name) const
    {
        const auto it = m_figures.find(name);
        return it == m_figures.end() ? nullptr : &it->second;
    }
    const char* verdict(bool met)
    {
        ++m_checked;
        m_missed += !met;
        return met ? "met" : "MISSED";
    }

    std::map<std::string, std::vector<Figures>> m_runs;
    std::map<std::string, Figures> m_figures;
    int m_checked = 0;
    int m_missed = 0;
};

} // namespace

// Without this, glibc hands a large document's freed memory straight back to the kernel, and
// every following load of a large file pays for fresh zeroed pages that a small file's load,
// reusing its memory, does not: the sizes would not be measured alike. With
// --default-allocator the allocator keeps its defaults.
void keepFreedMemory(int& argc, char** argv)
{
    const auto end = std::remove_if(argv + 1, argv + argc, [](const char* argument) {
        return std::strcmp(argument, "--default-allocator") == 0;
    });
    if (end != argv + argc) {
        argc = int(end - argv);
        std::fprintf(stderr, "allocator: glibc defaults\n");
        return;
    }
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_MMAP_THRESHOLD, std::numeric_limits<int>::max());
    std::fprintf(stderr, "allocator: freed memory is kept for reuse (see --default-allocator)\n");
}

int main(int argc, char** argv)
{
    keepFreedMemory(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    // Colours only on a terminal, so that saved output stays plain text.
    SummaryReporter reporter(isatty(STDOUT_FILENO) ? benchmark::ConsoleReporter::OO_ColorTabular
                                                   : benchmark::ConsoleReporter::OO_Tabular);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
