#!/usr/bin/env bash
# Measures every ovtool command that reads a file on the worst shapes of input that the load
# limits admit (bench/worst_shapes.py): wall time and peak memory (maximum resident set size,
# from GNU time). Prints one row per shape and command; "status" is ovtool's exit status.
#
#   bench/limits.sh [SHAPE...]          BUILD_DIR (default build) holds the built ovtool
#
# The shapes are made as large as the limits allow: the largest file (PL_MAX_FILE_SIZE), the
# most sections (PL_MAX_SECTIONS), the most lines (PL_MAX_LINES), the most XML elements
# (PL_MAX_XML_ELEMENTS). Takes a few minutes and needs about 1 GB of free disk in $TMPDIR.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=${BUILD_DIR:-$here/../build}
ovtool=$build/Tools/ovtool/ovtool
[[ -x $ovtool ]] || { echo "no ovtool in $build (set BUILD_DIR)" >&2; exit 1; }
[[ -x /usr/bin/time ]] || { echo "needs GNU time: scripts/install-deps.sh bench" >&2; exit 1; }

# The limits, read from the header so that the figures follow it.
limit() {
    local expr
    expr=$(sed -n "s/^constexpr [a-z0-9_ ]* $1 = \(.*\);.*/\1/p" \
        "$here/../Source/Parser/Library/Source/PLStatus.h" | sed 's/qint64(\([0-9]*\))/\1/')
    echo $((expr))
}
max_size=$(limit PL_MAX_FILE_SIZE)
max_sections=$(limit PL_MAX_SECTIONS)
max_lines=$(limit PL_MAX_LINES)
max_elements=$(limit PL_MAX_XML_ELEMENTS)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# shape: generator arguments. A file that fills the size limit is the worst for the text
# shapes; the count shapes stop at their count limit.
declare -A args=(
    [sections]="sections $max_size --count $max_sections"
    [entries]="entries $max_size --count $((max_lines - 1))"
    [mixed]="mixed $max_size --count $max_sections --lines $max_lines"
    [line]="line $((max_size - 1))"
    [value]="value $max_size"
    [dicom]="dicom $max_size --count $max_sections"
    [xml-flat]="xml-flat $max_size --count $((max_elements - 1))"
    [xml-deep]="xml-deep $max_size --count $((max_elements - 1))"
)
shapes=("$@")
[[ ${#shapes[@]} -gt 0 ]] || shapes=(sections entries mixed line value dicom xml-flat xml-deep)

measure() { # label command...
    local label=$1 out=$work/time.txt status
    shift
    status=0
    /usr/bin/time -v -o "$out" "$@" >/dev/null 2>"$work/stderr.txt" || status=$?
    local wall rss
    wall=$(sed -n 's/.*Elapsed (wall clock) time.*: //p' "$out")
    rss=$(sed -n 's/.*Maximum resident set size (kbytes): //p' "$out")
    printf '%-9s %-13s %10s %8d MiB  status %s\n' "$shape" "$label" "$wall" $((rss / 1024)) "$status"
}

printf '%-9s %-13s %10s %12s\n' shape command time 'peak RSS'
for shape in "${shapes[@]}"; do
    file=$work/ClickInfo.txt
    [[ $shape == dicom ]] && file=$work/image.dcm
    [[ $shape == xml-* ]] && file=$work/analysis.xml
    # shellcheck disable=SC2086
    python3 "$here/worst_shapes.py" ${args[$shape]} "$file"
    if [[ $shape == xml-* ]]; then
        measure spectral "$ovtool" --quiet spectral "$file"
        measure spectral-json "$ovtool" --quiet spectral --json "$file"
        rm -f "$file"
        continue
    fi
    section=$( [[ $shape == entries || $shape == value ]] && echo s || echo 1 )
    key=$( [[ $shape == entries ]] && echo 0 || echo k )
    [[ $shape == mixed ]] && key=k0
    measure show "$ovtool" --quiet show "$file"
    measure get "$ovtool" --quiet get "$file" "$section" "$key"
    measure json "$ovtool" --quiet json "$file"
    measure format "$ovtool" --quiet format --dry-run "$file"
    if [[ $shape != dicom ]]; then
        measure set "$ovtool" --quiet set "$file" "$section" "$key" y
        mkdir -p "$work/tree/1"
        mv "$file" "$work/tree/1/ClickInfo.txt"
        measure browse "$ovtool" --quiet browse "$work/tree"
        rm -rf "$work/tree"
    fi
    rm -f "$file"
done
