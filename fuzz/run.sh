#!/usr/bin/env bash
# Builds one libFuzzer target (when needed) and runs it for a while from its seed corpus.
#
#   fuzz/run.sh TARGET SECONDS
#
# TARGET names one fuzz/fuzz_*.cpp (fuzz_scanner, fuzz_clickinfo, ...); its seed corpus is
# fuzz/corpus/TARGET/, its dictionary fuzz/TARGET.dict when there is one, else the sectioned-text
# dictionary fuzz/clickinfo.dict. The seed corpus is copied to a scratch folder, so the
# checked-in corpus does not grow. Inputs that crash or time out are
# written to fuzz/corpus-work/artifacts/TARGET/; the exit status is non-zero when one is found.
# A crash input worth keeping goes to tests/data/fuzz-regressions/TARGET/, renamed (git ignores
# libFuzzer's crash-* names), where the regression test replays it.
#
# Environment: BUILD_DIR (default build-fuzz), JOBS (default 2), FUZZ_FLAGS (more libFuzzer
# options, e.g. "-max_len=16384").
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

usage() {
    echo "usage: $0 TARGET SECONDS   (TARGET: one of $(cd "$root/fuzz" && ls fuzz_*.cpp | sed 's/\.cpp$//' | tr '\n' ' '))" >&2
    exit 2
}

[[ $# -eq 2 ]] || usage
target=$1
seconds=$2
[[ $target =~ ^fuzz_[a-z_]+$ && -f $root/fuzz/$target.cpp ]] || usage
[[ $seconds =~ ^[0-9]+$ ]] || usage

build=${BUILD_DIR:-$root/build-fuzz}
jobs=${JOBS:-2}

for tool in clang clang++; do
    if ! command -v "$tool" >/dev/null; then
        echo "$0: $tool is not installed (scripts/install-deps.sh fuzz installs it)" >&2
        exit 1
    fi
done

if [[ ! -f $build/CMakeCache.txt ]]; then
    CC=clang CXX=clang++ cmake -S "$root" -B "$build" \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DOVPARSER_BUILD_FUZZ=ON -DOVPARSER_SANITIZE=ON \
        -DOVPARSER_BUILD_TESTS=OFF -DOVPARSER_BUILD_TOOLS=OFF
fi
cmake --build "$build" --target "$target" -j "$jobs"

work=$root/fuzz/corpus-work
corpus=$work/$target
artifacts=$work/artifacts/$target
rm -rf "$corpus"
mkdir -p "$corpus" "$artifacts"
cp "$root/fuzz/corpus/$target"/* "$corpus"/

# Leaks are reported too; malformed input is only logged by the library, never fatal.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:halt_on_error=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-halt_on_error=1:print_stacktrace=1}

dict=$root/fuzz/$target.dict
[[ -f $dict ]] || dict=$root/fuzz/clickinfo.dict

echo "== $target for $seconds s, corpus copied to $corpus"
status=0
# -timeout turns any input that takes seconds (non-linear behaviour) into a finding.
# shellcheck disable=SC2086
"$build/fuzz/$target" \
    -max_total_time="$seconds" \
    -timeout=10 \
    -max_len=8192 \
    -dict="$dict" \
    -artifact_prefix="$artifacts/" \
    -print_final_stats=1 \
    ${FUZZ_FLAGS:-} \
    "$corpus" || status=$?

if [[ $status -ne 0 ]]; then
    echo "== $target FAILED (status $status); inputs found:" >&2
    ls -l "$artifacts" >&2 || true
    echo "Keep an input for the regression test with: cp $artifacts/<file>" \
        "$root/tests/data/fuzz-regressions/$target/<name saying what it breaks>" >&2
    echo "(git ignores names that begin with crash-, leak-, timeout- or oom-)" >&2
    exit "$status"
fi
echo "== $target: no findings"
