#!/usr/bin/env bash
# The main job: builds tavrin and tests the example SDR files.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc 2>/dev/null || echo 2)" >/dev/null
for f in examples/sample-v0.sdr examples/sample-v1.sdr examples/sample-v2.sdr; do
  build/tavrin -t "$f"
done
