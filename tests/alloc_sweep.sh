#!/usr/bin/env bash
# Fails each allocation of an ovtool run in turn, through the preloaded test allocator
# (failalloc/failalloc.c), and checks that every run ends as documented:
# - no run ends by a signal (an abort, a crash) or hangs;
# - a run that exits 0 prints what a run without failures prints;
# - a failing run prints exactly one line on stderr, "ovtool: ...", and exits 3 (a file that
#   cannot be read; "ovtool: not enough memory" when the failure is in ovtool's own code).
#
#   alloc_sweep.sh OVTOOL LIBFAILALLOC SAMPLE_CLICKINFO
#
# The count runs from main() to its return (see failalloc.c): what the dynamic loader and the
# shared libraries' constructors allocate before, and static destructors after, is not swept,
# since no code of the program runs there to handle it. Every N from 1 to the number of
# allocations a run makes is tried, for "get FILE SECTION KEY" and for "show FILE". Prints the
# exit statuses seen.
#
# Two faults of Qt 5 itself are shown and let pass, each told by the call stack of the failed
# allocation (FAILALLOC_TRACE), not by its number:
# - an allocation failure inside QCoreApplication's constructor: its unwinding destroys the
#   half-made private object and crashes (SIGSEGV). No code of ovtool runs before it.
# - an allocation failure inside QObject::connect() (QObjectPrivate::addConnection), which
#   QTextStream's constructor calls for the standard output: Qt crashes (SIGSEGV) instead of
#   throwing.
# Any other run that ends by a signal fails the test.
set -uo pipefail

ovtool=$1 library=$2 sample=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# The fault of Qt's own that a run failing allocation N ran into, from its call stack; empty
# when it is none of the two known.
qtFault() { # N command...
    local n=$1
    shift
    local stack
    stack=$(FAILALLOC_TRACE=1 FAILALLOC_N=$n LD_PRELOAD=$library timeout 3 "$@" 2>&1 >/dev/null)
    if grep -q '_ZN14QObjectPrivate13addConnection' <<<"$stack"; then
        echo "QObject::connect()"
    elif grep -q '_ZN16QCoreApplicationC' <<<"$stack"; then
        echo "QCoreApplication's constructor"
    fi
}

sweep() { # name command...
    local name=$1
    shift
    "$@" >"$work/expected" 2>"$work/expected.err" || { echo "$name: fails without a failing allocation" >&2; exit 1; }
    FAILALLOC_REPORT=$work/count LD_PRELOAD=$library "$@" >/dev/null 2>&1
    local total
    total=$(cat "$work/count")
    declare -A seen=()
    for ((n = 1; n <= total + 1; ++n)); do
        FAILALLOC_N=$n LD_PRELOAD=$library timeout 3 "$@" >"$work/out" 2>"$work/err"
        local status=$? problem=
        local lines
        lines=$(wc -l <"$work/err")
        if ((status == 124)); then
            problem="hangs"
        elif ((status > 128)); then
            problem="ends by signal $((status - 128))"
            local qt
            qt=$(qtFault "$n" "$@")
            if [[ -n $qt ]]; then
                seen["signal $((status - 128)) in Qt: $qt"]=$((${seen["signal $((status - 128)) in Qt: $qt"]:-0} + 1))
                continue
            fi
        elif ((status == 0)); then
            cmp -s "$work/out" "$work/expected" || problem="exits 0 with other output"
        elif ((status != 3)); then
            problem="exits $status"
        elif ((lines != 1)) || ! grep -q '^ovtool: ' "$work/err"; then
            problem="prints $lines lines on stderr"
        fi
        local key="exit $status"
        ((status == 3)) && key="exit 3: $(sed 's/^ovtool: [^:]*: //; s/^ovtool: //' "$work/err" | head -1)"
        seen[$key]=$((${seen[$key]:-0} + 1))
        if [[ -n $problem ]]; then
            seen["FAILED: $problem"]=$((${seen["FAILED: $problem"]:-0} + 1))
            echo "$name: allocation $n of $total: $problem" >&2
            head -c 600 "$work/err" >&2
            failures=$((failures + 1))
        fi
    done
    echo "$name: $((total + 1)) runs (allocations 1 to $total, and one past them):"
    for key in "${!seen[@]}"; do
        echo "  ${seen[$key]} x $key"
    done | sort -rn
}

sweep get "$ovtool" get "$sample" "User Input" User
sweep show "$ovtool" show "$sample"
if ((failures > 0)); then
    echo "$failures runs did not end as documented" >&2
    exit 1
fi
