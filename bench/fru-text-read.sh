#!/usr/bin/env bash
# Benchmark of reading the largest FRU text file with -t, next to wc -l on the same file,
# in each encoding. Run on demand: bash bench/fru-text-read.sh [build-dir] [runs]
# The image is the sample server's with 251 more records of 255 bytes: 65515 bytes, near
# the 65535 that an image can have, laid out as an upload writes it: one byte a line.
# Target: within 5x of wc -l.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
runs=${2:-11}
cmake --build "$build" --target tavrin tavrin-frugen -j2 >/dev/null
source=$(pwd)
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

{
  cat "$source/tools/frugen/samples/server.frudesc"
  data=$(awk 'BEGIN { for (i = 0; i < 255; i++) printf " %02X", i }')
  for _ in $(seq 251); do echo "    record 0xC0$data"; done
} > largest.frudesc

printf '%-6s %10s %9s %11s %10s %10s %8s\n' file bytes lines image_bytes tavrin_s wc_l_s vs_wc
"$build/tools/tavrin-frugen" largest.frudesc image.bin
for e in ascii utf8 utf16; do
  f="$e.fru"
  "$build/tools/tavrin-frugen" --text="$e" --plain largest.frudesc "$f"
  "$build/tavrin" -t "$f" fruID=0 >/dev/null || { echo "tavrin -t $f failed" >&2; exit 1; }
  # Best of the runs, the two commands in turn, so that a slower moment of the machine
  # weighs on both alike.
  t_tavrin=999
  t_wc=999
  for _ in $(seq "$runs"); do
    t_tavrin=$(min "$t_tavrin" "$(wall "$build/tavrin" -t "$f" fruID=0)")
    t_wc=$(min "$t_wc" "$(wall wc -l "$f")")
  done
  printf '%-6s %10s %9s %11s %10.4f %10.4f %8s\n' "$e" "$(stat -c %s "$f")" "$(wc -l < "$f")" \
    "$(stat -c %s image.bin)" "$t_tavrin" "$t_wc" "$(awk -v a="$t_tavrin" -v b="$t_wc" 'BEGIN{ printf "%.1fx", a/b }')"
done
echo "Target: within 5x of wc -l. Both times include starting the process; tavrin's includes"
echo "reading the file four times (its size, the start tag, a second start tag, the blocks)."
