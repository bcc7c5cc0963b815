#!/usr/bin/env bash
# Benchmark of reading the largest legal binary SDR files with -t, next to reading the
# same file with cat. Run on demand: bash bench/sdr-read.sh [build-dir]
#   version 0: 255 records (its count is one byte)
#   version 1: 65534 full sensor records (the most any file may hold)
#   version 2: 9359 records of a header only (its stated size is 16 bits)
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
cmake --build "$build" --target tavrin tavrin-sdrgen -j2 >/dev/null
work=$(mktemp -d)
cd "$work"  # tavrin takes file names relative to the working directory
trap 'rm -rf "$work"' EXIT

"$build/tools/tavrin-sdrgen" 0 v0.sdr 255
"$build/tools/tavrin-sdrgen" 1 v1.sdr 65534
"$build/tools/tavrin-sdrgen" 2 v2.sdr 9359 min

seconds() {  # best of five wall times of a command, in seconds
  local best=999 start end
  for _ in 1 2 3 4 5; do
    start=$(date +%s%N)
    "$@" >/dev/null 2>&1 || true
    end=$(date +%s%N)
    best=$(awk -v a="$(( (end - start) / 1000 ))" -v b="$best" 'BEGIN{a /= 1e6; print (a<b)?a:b}')
  done
  echo "$best"
}

printf '%-10s %10s %12s %10s %12s %8s\n' file bytes tavrin_s cat_s peak_MB ratio
for v in v0 v1 v2; do
  f="$v.sdr"
  "$build/tavrin" -t "$f" >/dev/null || { echo "tavrin -t $f failed" >&2; exit 1; }
  bytes=$(stat -c %s "$f")
  t_tavrin=$(seconds "$build/tavrin" -t "$f")
  t_cat=$(seconds cat "$f")
  /usr/bin/time -f '%M' -o "$work/peak" "$build/tavrin" -t "$f" >/dev/null 2>&1 || true
  peak_kb=$(tail -n 1 "$work/peak")
  ratio=$(awk -v a="$t_tavrin" -v b="$t_cat" 'BEGIN{ printf "%.1f", a/b }')
  printf '%-10s %10s %12.4f %10.4f %12s %8s\n' "$v" "$bytes" "$t_tavrin" "$t_cat" "$((peak_kb / 1024))" "$ratio"
done
echo "Targets: within 3x of cat, peak memory under 48 MB. Both include starting the process;"
echo "tavrin's time includes setting up its two record lists of 65535 holders each."
