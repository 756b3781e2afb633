#!/usr/bin/env bash
# Installs the system packages that ovparser needs, on Debian and Ubuntu, and only those that
# are missing. Elsewhere it says what to install and fails only when something required is
# really absent.
#
#   scripts/install-deps.sh [GROUP...]
#
# Groups: build (compiler, CMake, make, pkg-config, Qt 5), test (GoogleTest), bench (Google
# Benchmark), fuzz (clang and its libFuzzer runtime), xml (xmllint), all. Without a group:
# build and test.
set -euo pipefail

usage() {
    echo "usage: $0 [build|test|bench|fuzz|xml|all]..." >&2
    exit 2
}

groups=()
for group in "${@:-build test}"; do
    for g in $group; do
        case $g in
            build | test | bench | fuzz | xml) groups+=("$g") ;;
            all) groups+=(build test bench fuzz xml) ;;
            *) usage ;;
        esac
    done
done

have() { command -v "$1" >/dev/null 2>&1; }

header_exists() {
    local dir
    for dir in /usr/include /usr/local/include; do
        [[ -e $dir/$1 ]] && return 0
    done
    return 1
}

# What each group needs, checked by use rather than by package: prints what is missing.
missing_in() {
    case $1 in
        build)
            have c++ || have g++ || have clang++ || echo "a C++17 compiler"
            have cmake || echo "cmake"
            have make || echo "make"
            have pkg-config || echo "pkg-config"
            { have pkg-config && pkg-config --exists 'Qt5Core >= 5.15' Qt5Xml; } || echo "Qt 5.15 Core and Xml development files"
            ;;
        test)
            { have pkg-config && pkg-config --exists gtest; } || header_exists gtest/gtest.h || echo "GoogleTest"
            [[ -x /usr/bin/time ]] || echo "GNU time (/usr/bin/time)"
            have python3 || echo "python3"
            ;;
        bench)
            { have pkg-config && pkg-config --exists benchmark; } || header_exists benchmark/benchmark.h || echo "Google Benchmark"
            [[ -x /usr/bin/time ]] || echo "GNU time (/usr/bin/time)"
            ;;
        fuzz)
            if ! have clang++; then
                echo "clang"
            elif [[ ! -e $(clang++ -print-file-name=libclang_rt.fuzzer-x86_64.a) ]]; then
                echo "the libFuzzer runtime of clang"
            fi
            ;;
        xml)
            have xmllint || echo "xmllint"
            ;;
    esac
}

packages_of() {
    case $1 in
        build) echo build-essential g++ cmake make pkg-config qtbase5-dev ;;
        test) echo libgtest-dev googletest time python3 ;;
        bench) echo libbenchmark-dev time python3 ;;
        fuzz) echo clang ;;
        xml) echo libxml2-utils ;;
    esac
}

installed() {
    dpkg -s "$1" 2>/dev/null | grep -q '^Status: install ok installed'
}

report_missing() {
    local group missing=0 item
    for group in "${groups[@]}"; do
        while IFS= read -r item; do
            [[ -n $item ]] || continue
            echo "missing for '$group': $item" >&2
            missing=1
        done < <(missing_in "$group")
    done
    return $missing
}

if ! have apt-get || ! have dpkg; then
    if report_missing; then
        exit 0
    fi
    echo "Not a Debian or Ubuntu system: install the items above with the system's package manager." >&2
    exit 1
fi

sudo=()
if [[ $(id -u) -ne 0 ]]; then
    if ! have sudo; then
        echo "$0: packages must be installed as root, and sudo is not available" >&2
        exit 1
    fi
    sudo=(sudo)
fi
apt=("${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -q -o Dpkg::Use-Pty=0)

wanted=()
for group in "${groups[@]}"; do
    for package in $(packages_of "$group"); do
        installed "$package" || wanted+=("$package")
    done
done

updated=0
update_once() {
    if [[ $updated -eq 0 ]]; then
        "${apt[@]}" update
        updated=1
    fi
}

if [[ ${#wanted[@]} -gt 0 ]]; then
    echo "Installing: ${wanted[*]}"
    update_once
    "${apt[@]}" install --no-install-recommends "${wanted[@]}"
fi

# libFuzzer comes with clang's compiler runtime, packaged per clang version and not always
# pulled in by clang itself: libclang-rt-N-dev, or libclang-common-N-dev on older releases.
if [[ " ${groups[*]} " == *" fuzz "* ]] && [[ -n $(missing_in fuzz) ]] && have clang++; then
    version=$(clang++ -dumpversion | cut -d. -f1)
    update_once
    runtime=libclang-rt-$version-dev
    apt-cache show "$runtime" >/dev/null 2>&1 || runtime=libclang-common-$version-dev
    if ! installed "$runtime"; then
        echo "Installing: $runtime"
        "${apt[@]}" install --no-install-recommends "$runtime"
    fi
fi

report_missing
