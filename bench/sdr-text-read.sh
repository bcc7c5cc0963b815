#!/usr/bin/env bash
# Benchmark of reading the largest legal SDR text file with -t, next to wc -l on the
# same file, in each encoding. Run on demand: bash bench/sdr-text-read.sh [build-dir]
# The file holds 65534 records (the most a file may hold), each of the largest length
# (40h: a full sensor record with a 16-character ID string), laid out as an upload
# writes them: one byte a line. Targets: ASCII and UTF-8 within 5x of wc -l, UTF-16
# within 2x of ASCII, peak memory under 48 MB.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
cmake --build "$build" --target tavrin tavrin-sdrgen -j2 >/dev/null
work=$(mktemp -d)
cd "$work"  # tavrin takes file names relative to the working directory
trap 'rm -rf "$work"' EXIT

seconds() {  # best of seven wall times of a command, in seconds
  local best=999 start end
  for _ in 1 2 3 4 5 6 7; do
    start=$(date +%s%N)
    "$@" >/dev/null 2>&1 || true
    end=$(date +%s%N)
    best=$(awk -v a="$(( (end - start) / 1000 ))" -v b="$best" 'BEGIN{a /= 1e6; print (a<b)?a:b}')
  done
  echo "$best"
}

printf '%-6s %10s %9s %10s %10s %8s %9s %12s\n' file bytes lines tavrin_s wc_l_s vs_wc vs_ascii peak_MB
t_ascii=""
for e in ascii utf8 utf16; do
  f="$e.sdr"
  "$build/tools/tavrin-sdrgen" text "$e" "$f" 65534
  "$build/tavrin" -t "$f" >/dev/null || { echo "tavrin -t $f failed" >&2; exit 1; }
  bytes=$(stat -c %s "$f")
  lines=$(wc -l < "$f")
  t_tavrin=$(seconds "$build/tavrin" -t "$f")
  t_wc=$(seconds wc -l "$f")
  [ -z "$t_ascii" ] && t_ascii=$t_tavrin
  /usr/bin/time -f '%M' -o "$work/peak" "$build/tavrin" -t "$f" >/dev/null 2>&1 || true
  peak_kb=$(tail -n 1 "$work/peak")
  printf '%-6s %10s %9s %10.4f %10.4f %8s %9s %12.1f\n' "$e" "$bytes" "$lines" "$t_tavrin" "$t_wc" \
    "$(awk -v a="$t_tavrin" -v b="$t_wc" 'BEGIN{ printf "%.1fx", a/b }')" \
    "$(awk -v a="$t_tavrin" -v b="$t_ascii" 'BEGIN{ printf "%.2fx", a/b }')" \
    "$(awk -v k="$peak_kb" 'BEGIN{ print k/1024 }')"
done
echo "Targets: ASCII and UTF-8 within 5x of wc -l, UTF-16 within 2x of ASCII, peak under 48 MB."
echo "Both times include starting the process; tavrin's includes its two record lists"
echo "(65535 holders each) and reading the file twice (structure, then records)."
