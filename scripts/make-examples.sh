#!/usr/bin/env bash
# Regenerates the example files: the SDR files (binary format versions 0-2, and the text
# format in each encoding) from the SDR generator's built-in records, and the FRU images
# from the descriptions in tools/frugen/samples, raw and as FRU text in each encoding.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build >/dev/null
cmake --build build --target tavrin-sdrgen tavrin-frugen -j2 >/dev/null
for v in 0 1 2; do
  build/tools/tavrin-sdrgen "$v" "examples/sample-v$v.sdr"
done
for e in ascii utf8 utf16; do
  build/tools/tavrin-sdrgen text "$e" "examples/sample-$e.sdr"
done
echo "examples/sample-v{0,1,2}.sdr and examples/sample-{ascii,utf8,utf16}.sdr written"
for description in tools/frugen/samples/*.frudesc; do
  name=$(basename "$description" .frudesc)
  build/tools/tavrin-frugen "$description" "examples/sample-$name.fru"
  for e in ascii utf8 utf16; do
    build/tools/tavrin-frugen --text="$e" "$description" "examples/sample-$name-$e.fru"
  done
  echo "examples/sample-$name.fru and examples/sample-$name-{ascii,utf8,utf16}.fru written"
done
