#!/usr/bin/env bash
# The worst shape of document that the limits admit, as many sections as a document holds
# with as many lines as it holds (bench/worst_shapes.py mixed), read by "ovtool get" and
# "ovtool json" within the bounds the limits are chosen for: 1 GB of memory at the peak
# (maximum resident set size, GNU time) and 30 s. One section more is refused with status 3
# and the count; with too little memory, a load ends with one line and exit status 3. The full
# measurements of every shape and command are bench/limits.sh's.
#
#   limits_memory.sh OVTOOL GENERATOR MAX_SECTIONS MAX_LINES
set -euo pipefail

ovtool=$1 generator=$2 sections=$3 lines=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 "$generator" mixed 0 "$work/ClickInfo.txt" --count "$sections" --lines "$lines"

failures=0
bounded() { # name command...
    local name=$1
    shift
    /usr/bin/time -v -o "$work/time" "$@" >/dev/null 2>"$work/err" || {
        echo "$name: exit status $?: $(cat "$work/err")" >&2
        failures=$((failures + 1))
        return
    }
    local kib seconds
    kib=$(sed -n 's/.*Maximum resident set size (kbytes): //p' "$work/time")
    seconds=$(sed -n 's/.*Elapsed (wall clock) time.*: //p' "$work/time" | awk -F: '{ print ($1 * 60 + $2) }')
    echo "$name: $((kib / 1024)) MiB at the peak, $seconds s"
    if ((kib > 1000 * 1000)) || awk -v s="$seconds" 'BEGIN { exit !(s > 30) }'; then
        echo "$name: above 1 GB or 30 s" >&2
        failures=$((failures + 1))
    fi
}
bounded get "$ovtool" --quiet get "$work/ClickInfo.txt" 0 k0
bounded json "$ovtool" --quiet json "$work/ClickInfo.txt"

# The same load with too little address space (ulimit -v) for it, at a few sizes: the run ends
# with one line and exit status 3, or with the value; never by a signal, nor does it hang.
for kib in 150000 200000 250000 300000 350000; do
    status=0
    (ulimit -v $kib && exec timeout 30 "$ovtool" get "$work/ClickInfo.txt" 5 k3) >"$work/out" 2>"$work/err" || status=$?
    if ! { ((status == 3)) && [[ $(wc -l <"$work/err") -eq 1 ]] && grep -q '^ovtool: ' "$work/err"; } &&
        ! { ((status == 0)) && [[ $(cat "$work/out") == b ]]; }; then
        echo "ulimit -v $kib: exit $status, $(head -c 300 "$work/err")" >&2
        failures=$((failures + 1))
    else
        echo "ulimit -v $kib: exit $status $(head -c 100 "$work/err")"
    fi
done

# One section more than a document holds: refused before the sections are built.
python3 "$generator" sections 100000000 "$work/ClickInfo.txt" --count $((sections + 1))
status=0
"$ovtool" get "$work/ClickInfo.txt" 0 k0 >/dev/null 2>"$work/err" || status=$?
if ((status != 3)) || ! grep -q "sections, more than the" "$work/err"; then
    echo "one section more: exit $status, $(cat "$work/err")" >&2
    failures=$((failures + 1))
else
    echo "one section more: $(cat "$work/err")"
fi
((failures == 0))
