#!/usr/bin/env bash
# Benchmark of the SDR transfers against the simulated BMC, on each route: the exchanges
# of each kind and the wall time per exchange of
#   - a download of the example SDR file into a full repository (six records to back up);
#   - an upload (-u, UTF-16) of a repository of the example records, and of one of 1000
#     full sensor records.
# The time per exchange is mostly the simulator's: at every exchange it loads and rewrites
# its whole state, the repository and the log of every exchange so far, so it grows with
# the repository and the log. (Tavrin's own save of 1000 records takes a few ms.)
# Run on demand: bash bench/sdr-download.sh [build-dir]
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
cmake --build "$build" -j2 >/dev/null
examples=$(pwd)/examples
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$examples/sample-v1.sdr" "$examples/sample-v2.sdr" .
"$build/tools/tavrin-sdrgen" 1 many.sdr 1000
export TAVRIN_BMCSIM_STATE="$work/bmc.state"
export LD_LIBRARY_PATH="$build/sim/lib"
export PATH="$build/sim/bin:$PATH"
sim="$build/sim/bin/tavrin-bmcsim"

declare -A route_options=(
  [driver]=""
  [kcsio]="-msgintf kcsio"
  [lan]="-n lanplus -H 127.0.0.1 -U admin -P admin -C 3"
)
names=([0x01]="device ID" [0x20]="repository info" [0x22]="reserve" [0x23]="get SDR" [0x25]="partial add" [0x27]="clear"
       [0x2c]="init agent")

# A fresh BMC holding the records of a binary SDR file.
repository() {
  "$sim" init admin admin
  "$sim" set capacity 200000
  "$sim" sdr-load "$1" >/dev/null
}

# Runs tavrin with the operation and the route's options, and prints the exchanges of
# each kind and the time per exchange.
measure() {
  local label=$1 route=$2 start end total
  shift 2
  rm -f up.sdr
  "$sim" log-clear
  start=$(date +%s.%N)
  # shellcheck disable=SC2086
  "$build/tavrin" "$@" ${route_options[$route]} >/dev/null
  end=$(date +%s.%N)
  total=$("$sim" log | wc -l)
  echo "== $label, $route: $total exchanges, $(awk -v s="$start" -v e="$end" -v n="$total" \
        'BEGIN{printf "%.1f ms in all, %.2f ms per exchange", (e-s)*1000, (e-s)*1000/n}')"
  "$sim" log | sed -E 's/.* cmd=([0-9a-f]+) .*/\1/' | sort | uniq -c | while read -r count cmd; do
    printf '   %-16s %5d\n' "${names[0x$cmd]:-cmd $cmd}" "$count"
  done
}

for route in driver kcsio lan; do
  repository sample-v1.sdr
  measure "download of 6 records" "$route" -d sample-v2.sdr
  repository sample-v1.sdr
  measure "upload of 6 records" "$route" -u up.sdr encoding=utf16
  repository many.sdr
  measure "upload of 1000 records" "$route" -u up.sdr encoding=utf16
  "$build/tavrin" -t up.sdr >/dev/null  # the uploaded file reads back
done
