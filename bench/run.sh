#!/usr/bin/env bash
# Builds the benchmarks (Release) and runs them: the table of times and byte rates, then the
# ratios that the library's performance targets are stated in. The figures are also kept as
# JSON in the build folder.
#
#   bench/run.sh [Google Benchmark options]   e.g. --benchmark_filter=Scan
#
# Environment: BUILD_DIR (default build-bench), JOBS (default 2).
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${BUILD_DIR:-$root/build-bench}

cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release \
    -DOVPARSER_BUILD_BENCH=ON -DOVPARSER_BUILD_TESTS=OFF -DOVPARSER_BUILD_TOOLS=ON >/dev/null
cmake --build "$build" --target bench_ovparser -j "${JOBS:-2}"

# Without options: three repetitions of each benchmark, interleaved at random so that a
# passing disturbance of the machine does not fall on one benchmark alone; the ratios are
# taken from the medians.
if [[ $# -eq 0 ]]; then
    set -- --benchmark_repetitions=3 --benchmark_enable_random_interleaving=true
fi
"$build/bench/bench_ovparser" \
    --benchmark_out="$build/bench-results.json" --benchmark_out_format=json "$@"
echo "JSON results: $build/bench-results.json"
