#!/usr/bin/env bash
# Benchmark of reading the largest legal SDR text file with -t, next to wc -l on the
# same file, in each encoding. Run on demand: bash bench/sdr-text-read.sh [build-dir] [runs]
# The file holds 65534 records (the most a file may hold), each of the largest length
# (40h: a full sensor record with a 16-character ID string), laid out as an upload
# writes them: one byte a line. Targets: ASCII and UTF-8 within 5x of wc -l, UTF-16
# within 2x of ASCII, peak memory under 48 MB.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
runs=${2:-11}
cmake --build "$build" --target tavrin tavrin-sdrgen -j2 >/dev/null
work=$(mktemp -d)
cd "$work"  # tavrin takes file names relative to the working directory
trap 'rm -rf "$work"' EXIT

wall() {  # wall time of one run of a command, in seconds, by the shell's own clock (bash 5)
  local start end
  [ -n "${EPOCHREALTIME:-}" ] || { echo "this benchmark needs bash 5 (EPOCHREALTIME)" >&2; exit 1; }
  start=${EPOCHREALTIME/,/.}
  "$@" >/dev/null 2>&1 || true
  end=${EPOCHREALTIME/,/.}
  awk -v a="$start" -v b="$end" 'BEGIN{ print b - a }'
}
min() { awk -v a="$1" -v b="$2" 'BEGIN{ print (a < b) ? a : b }'; }
ratio() { awk -v a="$1" -v b="$2" -v f="$3" 'BEGIN{ printf f, a / b }'; }

printf '%-6s %10s %9s %10s %10s %8s %9s %9s\n' file bytes lines tavrin_s wc_l_s vs_wc vs_ascii peak_MB
t_ascii=""
for e in ascii utf8 utf16; do
  f="$e.sdr"
  "$build/tools/tavrin-sdrgen" text "$e" "$f" 65534
  "$build/tavrin" -t "$f" >/dev/null || { echo "tavrin -t $f failed" >&2; exit 1; }
  # Best of the runs, the two commands in turn, so that a slower moment of the machine
  # weighs on both alike.
  t_tavrin=999
  t_wc=999
  for _ in $(seq "$runs"); do
    t_tavrin=$(min "$t_tavrin" "$(wall "$build/tavrin" -t "$f")")
    t_wc=$(min "$t_wc" "$(wall wc -l "$f")")
  done
  [ -z "$t_ascii" ] && t_ascii=$t_tavrin
  /usr/bin/time -f '%M' -o "$work/peak" "$build/tavrin" -t "$f" >/dev/null 2>&1 || true
  printf '%-6s %10s %9s %10.4f %10.4f %8s %9s %9.1f\n' "$e" "$(stat -c %s "$f")" "$(wc -l < "$f")" \
    "$t_tavrin" "$t_wc" "$(ratio "$t_tavrin" "$t_wc" '%.1fx')" "$(ratio "$t_tavrin" "$t_ascii" '%.2fx')" \
    "$(awk -v k="$(tail -n 1 "$work/peak")" 'BEGIN{ print k / 1024 }')"
done
echo "Targets: ASCII and UTF-8 within 5x of wc -l, UTF-16 within 2x of ASCII, peak under 48 MB."
echo "Both times include starting the process; tavrin's includes its two record lists"
echo "(65535 holders each) and reading the file twice (structure, then records)."
