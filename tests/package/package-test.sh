#!/usr/bin/env bash
# "cpack -G DEB" of this build tree: the package's fields, and its files unpacked into
# a scratch root (dpkg -x), where the installed tavrin tests installed examples, finds
# its route libraries through its run path, and the installed tavrin-bmcsim (the link
# in usr/bin) runs it against the installed simulated BMC.
# Argument: the build tree.
set -euo pipefail
build=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

(cd "$dir" && cpack --config "$build/CPackConfig.cmake" -G DEB -B "$dir/out" >"$dir/cpack.log" 2>&1) ||
    { cat "$dir/cpack.log"; exit 1; }
deb=$(echo "$dir"/out/tavrin_*.deb)
[[ $(dpkg-deb -f "$deb" Package) == tavrin ]] || fail "package name"
[[ $(dpkg-deb -f "$deb" Depends) == *libc6* && $(dpkg-deb -f "$deb" Depends) == *libstdc++6* ]] ||
    fail "Depends: $(dpkg-deb -f "$deb" Depends)"
[[ $(dpkg-deb -f "$deb" Recommends) == ipmitool ]] || fail "Recommends: $(dpkg-deb -f "$deb" Recommends)"

dpkg -x "$deb" "$dir/root"
usr=$dir/root/usr
for file in bin/tavrin bin/tavrin-dump2sdr bin/tavrin-bmcsim lib/tavrin/libsarnic.so lib/tavrin/libbrevok.so \
    lib/tavrin/sim/bin/ipmitool lib/tavrin/sim/lib/libsarnic.so lib/tavrin/sim/lib/libbrevok.so \
    share/man/man1/tavrin.1 share/man/man1/tavrin-bmcsim.1 share/man/man1/tavrin-dump2sdr.1 \
    share/man/man5/tavrin-formats.5 share/bash-completion/completions/tavrin share/doc/tavrin/copyright \
    share/doc/tavrin/README.md share/doc/tavrin/examples/sample-v2.sdr; do
    [[ -e $usr/$file ]] || fail "$file is missing"
done
[[ $(readlink "$usr/bin/tavrin-bmcsim") == ../lib/tavrin/sim/bin/tavrin-bmcsim ]] || fail "tavrin-bmcsim link"
runpath=$(readelf -d "$usr/bin/tavrin" | sed -n 's/.*R\(UN\)\?PATH.*\[\(.*\)\]/\2/p')
[[ $runpath == '$ORIGIN/../lib/tavrin' ]] || fail "run path: $runpath"

cd "$usr/share/doc/tavrin/examples"
for args in "sample-v2.sdr" "sample-utf16.sdr" "sample-server-utf8.fru fruID=0"; do
    # shellcheck disable=SC2086 # the file name and the FRU ID are two words
    out=$(env -u LD_LIBRARY_PATH "$usr/bin/tavrin" -t $args 2>&1) || fail "tavrin -t $args: $out"
    [[ $out == *"No error found in"* ]] || fail "tavrin -t $args: $out"
done
sim=$usr/bin/tavrin-bmcsim
"$sim" --state "$dir/state" init >/dev/null
"$sim" --state "$dir/state" sdr-load sample-v2.sdr >/dev/null
out=$("$sim" --state "$dir/state" run -- "$usr/bin/tavrin" -v sample-v2.sdr 2>&1) || fail "rehearsal: $out"
[[ $out == *"Verify SDR file sample-v2.sdr with SDR repository successful!"* ]] || fail "rehearsal: $out"

[[ $failures -eq 0 ]] && echo "the package builds, holds what it should and works unpacked"
exit "$failures"
