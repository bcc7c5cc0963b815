#!/usr/bin/env bash
# The test command: installs what the tests need when it is missing, builds, and runs
# the unit and end-to-end tests twice, in a plain Release build (what packagers build)
# and under AddressSanitizer + UBSan, both treating compiler warnings as errors, and the
# VM test (tests/vm) once, with the plain build.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

jobs=$(nproc 2>/dev/null || echo 2)

echo "== Build and test =="
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DTAVRIN_WERROR=ON >/dev/null
cmake --build build -j"$jobs"
(cd build && ctest --output-on-failure -j"$jobs")

echo "== The real route libraries in a VM against QEMU's emulated BMC =="
bash tests/vm/vm-test.sh build

echo "== Build and test under AddressSanitizer and UndefinedBehaviorSanitizer =="
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DTAVRIN_SANITIZE=ON -DTAVRIN_WERROR=ON >/dev/null
cmake --build build-asan -j"$jobs"
(cd build-asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
   ctest --output-on-failure -j"$jobs")
