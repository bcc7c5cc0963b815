#!/usr/bin/env bash
# The main job: builds tavrin and runs a round trip against the bundled simulated BMC
# through the default route (the OS driver's library, here its simulated build):
# a repository that already holds records is replaced by an example SDR file, with
# back-up, download and Initialization Agent, and then verified against that file.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc 2>/dev/null || echo 2)" >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TAVRIN_BMCSIM_STATE="$work/bmc.state"
sim=build/sim/bin/tavrin-bmcsim

echo "== A simulated BMC whose repository holds the records of examples/sample-v1.sdr =="
$sim init admin admin
$sim sdr-load examples/sample-v1.sdr >/dev/null
$sim sdr-list

echo "== tavrin -t, -d and -v of examples/sample-v2.sdr =="
export LD_LIBRARY_PATH="$PWD/build/sim/lib"
build/tavrin -t examples/sample-v2.sdr
build/tavrin -d examples/sample-v2.sdr
build/tavrin -v examples/sample-v2.sdr

echo "== The repository now =="
$sim sdr-list
echo "Round trip done: $($sim log | wc -l) exchanges with the simulated BMC."
