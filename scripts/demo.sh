#!/usr/bin/env bash
# The main job: builds tavrin and replaces the SDR repository of the bundled simulated
# BMC through the default route (the OS driver's library, here its simulated build).
# The repository holds an older set of records, with two that the new file lacks;
# tavrin -v finds it different, tavrin -d replaces it (back-up, erase, download,
# Initialization Agent), and tavrin -v then finds it equal to the file. tavrin -u then
# saves the repository as a UTF-8 text file, which tavrin -t finds sound and tavrin -v
# finds equal to the repository. Last, a FRU round trip: tavrin -d writes the example
# image sample-server.fru into FRU device 0, tavrin -v checks it, tavrin -u saves the
# device as a UTF-8 FRU text file, which tavrin -t finds sound and tavrin -v finds equal
# to the device. Every tavrin run
# goes through "tavrin-bmcsim run", which points it at the simulator and fails loudly if
# it did not reach it.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${TAVRIN_DEMO_BUILD:-build}  # the build folder; another may be named for a second checkout
bash scripts/install-deps.sh
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" -j"$(nproc 2>/dev/null || echo 2)" >/dev/null
build=$(cd "$build" && pwd)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TAVRIN_BMCSIM_STATE="$work/bmc.state"
sim=$build/sim/bin/tavrin-bmcsim
new=examples/sample-v2.sdr
fru_image=$PWD/examples/sample-server.fru

# An OEM record (type C0h, manufacturer 000157h) that carries the text, in hex.
oem_record() {
  local body
  body="570100$(printf '%s' "$1" | od -An -tx1 | tr -d ' \n')"
  printf '000051c0%02x%s' $((${#body} / 2)) "$body"
}

# The repository, a record a line: ID, type, length and the record's readable name.
records() {
  "$sim" sdr-list | while read -r id type len data; do
    name=$(printf "$(sed 's/../\\x&/g' <<<"${data#data=}")" | { grep -ao '[[:print:]]\{3,\}' || true; } | tail -n 1)
    printf '  %s %s %-7s %s\n' "$id" "$type" "$len" "$name"
  done
  echo "  ($("$sim" sdr-list | wc -l) records)"
}

tavrin() {
  "$sim" run -- "$build/tavrin" "$@"
}

echo "== The simulated BMC before: an older repository, with two records that $new lacks =="
"$sim" init admin admin
"$sim" sdr-load examples/sample-v1.sdr >/dev/null
"$sim" sdr-add "$(oem_record 'old fan table')" >/dev/null
"$sim" sdr-add "$(oem_record 'retired sensor map')" >/dev/null
records

echo "== tavrin -t $new: the file is sound =="
tavrin -t "$new"

echo "== tavrin -v $new before the download: the repository differs (exit status 1) =="
status=0
tavrin -v "$new" || status=$?
[ "$status" -eq 1 ] || { echo "unexpected exit status $status" >&2; exit 1; }

echo "== tavrin -d $new: the repository is replaced =="
"$sim" log-clear
tavrin -d "$new"

echo "== tavrin -v $new after the download: equal =="
tavrin -v "$new"

echo "== The simulated BMC after =="
records
echo "The download and the check after it took $("$sim" log | wc -l) exchanges with the simulated BMC."

# tavrin takes file names relative to the working directory: the uploaded file goes to
# the scratch folder.
cd "$work"
echo "== tavrin -u uploaded.sdr encoding=utf8: the repository saved as a text file =="
"$sim" log-clear
tavrin -u uploaded.sdr encoding=utf8
echo "== Its first record, its lines joined by blanks =="
sed -n '1,/^$/p' uploaded.sdr | tr '\n' ' ' | sed 's/  */ /g'
echo
echo "== tavrin -t uploaded.sdr and tavrin -v uploaded.sdr: sound, and equal to the repository =="
tavrin -t uploaded.sdr
tavrin -v uploaded.sdr
echo "Done: the upload and its check took $("$sim" log | wc -l) exchanges with the simulated BMC."

echo "== FRU: tavrin -d sample-server.fru fruID=0 into an empty FRU device of 512 bytes, then tavrin -v =="
cp "$fru_image" sample-server.fru
"$sim" fru-create 0 512
"$sim" log-clear
tavrin -d sample-server.fru fruID=0
tavrin -v sample-server.fru fruID=0
echo "== tavrin -u server.txt encoding=utf8 fruID=0: the device saved as a FRU text file =="
tavrin -u server.txt encoding=utf8 fruID=0
echo "== Its board area, its lines joined by blanks =="
sed -n '/^_SEE_BOARD/,/^_SEE_PRODUCT/p' server.txt | sed '$d' | tr '\n' ' '
echo
echo "== tavrin -t server.txt fruID=0 and tavrin -v server.txt fruID=0: sound, and equal to the device =="
tavrin -t server.txt fruID=0
tavrin -v server.txt fruID=0
echo "Done: the FRU round trip took $("$sim" log | wc -l) exchanges with the simulated BMC."
