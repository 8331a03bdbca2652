#!/usr/bin/env bash
# Mutation check: applies each single-line mutation of mutations.txt to a
# scratch copy of the tree, rebuilds, runs the fast suite and reports whether
# a test caught it. Usage:
#   tests/mutation/run.sh [-k] [PATTERN]
# PATTERN keeps the mutations whose file or note contains it; -k keeps the
# scratch directory. Exits non-zero when a mutation survives.
set -uo pipefail
keep=0
if [ "${1:-}" = "-k" ]; then keep=1; shift; fi
pattern="${1:-}"
top=$(git -C "$(dirname "$0")" rev-parse --show-toplevel)
list="$top/tests/mutation/mutations.txt"
scratch=$(mktemp -d /tmp/tpxcc-mutation.XXXXXX)
[ "$keep" = 1 ] || trap 'rm -rf "$scratch"' EXIT

# The tree as it is now, uncommitted changes included.
(cd "$top" && git ls-files -z --cached --others --exclude-standard | xargs -0 tar cf - 2>/dev/null) | tar xf - -C "$scratch"
cmake -S "$scratch" -B "$scratch/build" -DCMAKE_BUILD_TYPE=Release -DTPXCC_BUILD_BENCH=OFF -DTPXCC_BUILD_TOOLS=OFF >/dev/null
echo "building the unmutated tree in $scratch ..."
cmake --build "$scratch/build" -j2 >/dev/null 2>&1 || { echo "the unmutated tree does not build"; exit 2; }
# The fast suite: every test of the library's arithmetic (not install or exports).
suite() { ctest --test-dir "$scratch/build" -j2 --timeout 300 --stop-on-failure -E 'frame\.(install|exports)' </dev/null >/dev/null 2>&1; }
suite || { echo "the unmutated tree fails its tests"; exit 2; }
avx512=$(grep -c -m1 -w avx512bw /proc/cpuinfo)
vbmi=$(grep -c -m1 -w avx512vbmi /proc/cpuinfo)

caught=0 survived=0 equivalent=0 broken=0 untestable=0 total=0
# Entries: file @@ text on one line @@ its replacement @@ what it breaks.
entries() {
    python3 -c '
import sys
for line in open(sys.argv[1]):
    if not line.strip() or line.startswith("#"): continue
    f = [x.strip() for x in line.rstrip("\n").split(" @@ ")]
    if len(f) == 4: print("\x1f".join(f))
    else: print("\x1f".join([line.strip(), "", "", "malformed entry"]))' "$list"
}
while IFS=$'\x1f' read -r file find repl note; do
    [ -n "$pattern" ] && [[ "$file $note" != *"$pattern"* ]] && continue
    total=$((total + 1))
    label="$file: $note"
    if [[ "$file" == *avx512vbmi* && "$vbmi" = 0 ]] || [[ "$file" == *avx512* && "$avx512" = 0 ]]; then
        echo "not testable here  $label"; untestable=$((untestable + 1)); continue
    fi
    target="$scratch/$file"
    n=$(FIND="$find" python3 -c 'import os,sys; print(open(sys.argv[1]).read().count(os.environ["FIND"]))' "$target")
    if [ "$n" != 1 ]; then echo "BAD ENTRY ($n matches) $label"; broken=$((broken + 1)); continue; fi
    cp "$target" "$target.orig"
    FIND="$find" REPL="$repl" python3 -c 'import os,sys; p=sys.argv[1]; s=open(p).read(); open(p,"w").write(s.replace(os.environ["FIND"], os.environ["REPL"], 1))' "$target"
    if ! cmake --build "$scratch/build" -j2 </dev/null >/dev/null 2>&1; then
        echo "did not compile    $label"; broken=$((broken + 1))
    elif suite; then
        if [[ "$note" == EQUIVALENT* ]]; then echo "equivalent         $label"; equivalent=$((equivalent + 1))
        else echo "SURVIVED           $label"; survived=$((survived + 1)); fi
    else
        echo "caught             $label"; caught=$((caught + 1))
    fi
    mv "$target.orig" "$target"
    touch "$target"
done < <(entries)
cmake --build "$scratch/build" -j2 >/dev/null 2>&1
echo "caught $caught of $total ($equivalent equivalent, $untestable not testable on this processor, $broken did not compile or no longer match)"
[ "$survived" = 0 ] && [ "$broken" = 0 ]
