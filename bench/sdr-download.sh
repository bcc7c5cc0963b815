#!/usr/bin/env bash
# Benchmark of a download of the example SDR file into a full repository of the
# simulated BMC, on each route: the exchanges of each kind and the wall time per
# exchange. Run on demand: bash bench/sdr-download.sh [build-dir]
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
cmake --build "$build" -j2 >/dev/null
examples=$(pwd)/examples
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$examples/sample-v1.sdr" "$examples/sample-v2.sdr" .
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

for route in driver kcsio lan; do
  "$sim" init admin admin
  "$sim" sdr-load sample-v1.sdr >/dev/null   # a full repository: six records to back up
  "$sim" log-clear
  start=$(date +%s.%N)
  # shellcheck disable=SC2086
  "$build/tavrin" -d sample-v2.sdr ${route_options[$route]} >/dev/null
  end=$(date +%s.%N)
  total=$("$sim" log | wc -l)
  echo "== $route: $total exchanges, $(awk -v s="$start" -v e="$end" -v n="$total" \
        'BEGIN{printf "%.1f ms in all, %.2f ms per exchange", (e-s)*1000, (e-s)*1000/n}')"
  "$sim" log | sed -E 's/.* cmd=([0-9a-f]+) .*/\1/' | sort | uniq -c | while read -r count cmd; do
    printf '   %-16s %4d\n' "${names[0x$cmd]:-cmd $cmd}" "$count"
  done
done
