#!/usr/bin/env bash
# Regenerates the binary SDR example files from the generator's built-in records.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build >/dev/null
cmake --build build --target tavrin-sdrgen -j2 >/dev/null
for v in 0 1 2; do
  build/tools/tavrin-sdrgen "$v" "examples/sample-v$v.sdr"
done
echo "examples/sample-v{0,1,2}.sdr written"
