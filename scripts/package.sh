#!/usr/bin/env bash
# Builds the Debian package of Tavrin from this checkout: installs what the build needs
# when it is missing (cmake, g++, make, dpkg-dev), builds a Release tree without the
# tests in build-package/, and packs it with CPack. Prints the package's path.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh package
cmake -S . -B build-package -DCMAKE_BUILD_TYPE=Release -DTAVRIN_TESTS=OFF >/dev/null
cmake --build build-package -j"$(nproc 2>/dev/null || echo 2)"
(cd build-package && cpack -G DEB >/dev/null)
ls "$PWD"/build-package/tavrin_*.deb
