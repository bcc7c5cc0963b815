#!/usr/bin/env bash
# The real route libraries against a real KCS interface: boots a small VM under QEMU
# (TCG) with QEMU's emulated BMC behind an ISA KCS interface (ports 0xCA2/0xCA3), runs
# the built tavrin with build/lib/libsarnic.so (kernel driver ipmi_si, /dev/ipmi0) and
# build/lib/libbrevok.so (-msgintf kcsio, port I/O with no IPMI module loaded) inside
# it, and compares the transcript that the guest writes to the serial console with
# tests/vm/expected.txt, check by check.
#
#   bash tests/vm/vm-test.sh [BUILD_DIR]      (default: build; build it first)
#
# Debian's kernel and busybox-static are fetched with apt-get download into
# BUILD_DIR/vm/cache when missing and kept there; nothing is installed system-wide.
# Skipped with a reason where it cannot run, except under CI=true, where that fails.
set -euo pipefail

readonly TIME_LIMIT_S=300
# The emulated BMC's FRU 0: sample-card.fru (104 bytes) in an area of 256 bytes, which
# sample-server.fru (255 bytes) nearly fills, so its -v compares all but the last byte.
# A multiple of 16: tavrin's 16-byte reads never ask at the area's last byte, a read
# that QEMU refuses.
readonly FRU_AREA_SIZE=256
# The time (UTC) to which the guest sets its clock right before -updateFRU of the date/time.
readonly GUEST_CLOCK="2025-01-02 03:04"
# glibc's converters between ISO-8859-1 and UTF-16LE, which UTF-16 text files need, and
# their table.
readonly GCONV_DIR=/usr/lib/x86_64-linux-gnu/gconv
readonly GCONV_FILES="gconv-modules ISO8859-1.so UTF-16.so"
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)

fail() {
    echo "vm-test: FAILED: $*" >&2
    exit 1
}

[ -d "${1:-$root/build}" ] || fail "no build directory ${1:-$root/build}: build first"
build=$(cd "${1:-$root/build}" && pwd)
cache=$build/vm/cache
work=$build/vm/run

skip() {
    [ "${CI:-}" = true ] && fail "cannot run under CI: $*"
    echo "vm-test: SKIPPED: $*"
    exit 0
}

# Raw bytes from a list of decimal values.
write_bytes() {
    local value octal
    for value in "$@"; do
        printf -v octal '%03o' "$value"
        printf '%b' "\\$octal"
    done
}

# The records of a binary SDR file of format version 1, back to back without header
# and CRCs: the form QEMU's BMC takes with sdrfile=.
write_sdr_records() {
    local -a bytes
    read -r -a bytes <<<"$(od -An -v -tu1 "$1" | tr '\n' ' ')"
    if [ "$(head -c 4 "$1")" != KMOR ] || [ "${bytes[4]}" -ne 1 ]; then
        fail "$1 is no binary SDR file of version 1"
    fi
    local count=$((bytes[5] | bytes[6] << 8)) position=8 record length
    for ((record = 0; record < count; record++)); do
        [ $((position + 5)) -le ${#bytes[@]} ] || fail "$1 ends inside record $record"
        length=$((5 + bytes[position + 4]))
        [ $((position + length + 2)) -le ${#bytes[@]} ] || fail "$1 ends inside record $record"
        write_bytes "${bytes[@]:position:length}"
        position=$((position + length + 2))  # behind the CRC
    done
    [ "$position" -eq ${#bytes[@]} ] || fail "$1 holds more than its $count records"
}

# The images that -updateFRU must leave in FRU 0, made by tavrin-frugen from the
# description of sample-server.fru with the new field values: server-serial.fru with the
# board serial number BS24B99999, server-updated.fru with that and the board's
# manufacturing date/time set to the guest's clock, GUEST_CLOCK (UTC), into directory $1.
write_updated_fru_images() {
    local description=$root/tools/frugen/samples/server.frudesc
    sed 's/"BS24A00123"/"BS24B99999"/' "$description" >"$work/server-serial.frudesc"
    sed "s/^\( *made  *\)2024-05-17 08:30\$/\1$GUEST_CLOCK/" "$work/server-serial.frudesc" >"$work/server-updated.frudesc"
    grep -q '"BS24B99999"' "$work/server-updated.frudesc" && grep -q " made  *$GUEST_CLOCK\$" "$work/server-updated.frudesc" ||
        fail "$description no longer holds the board serial number BS24A00123 and the date 2024-05-17 08:30"
    local name
    for name in server-serial server-updated; do
        "$build/tools/tavrin-frugen" "$work/$name.frudesc" "$1/$name.fru" || fail "tavrin-frugen $name.frudesc failed"
    done
}

# The kernel package that linux-image-amd64 depends on and busybox-static, fetched into
# $1. The package lists are refreshed once when they are missing or name a package
# that the archive no longer has.
download_packages() {
    local attempt kernel=""
    for attempt in 1 2; do
        rm -f "$1"/*.deb
        kernel=$(apt-cache depends linux-image-amd64 2>/dev/null | awk '/Depends: linux-image-/ {print $2; exit}')
        if [ -n "$kernel" ] && (cd "$1" && apt-get download -q "$kernel" busybox-static) >"$1/apt.log" 2>&1; then
            echo "vm-test: fetched $kernel and busybox-static"
            return
        fi
        [ "$attempt" -eq 2 ] || apt-get update -qq
    done
    fail "cannot fetch ${kernel:-a kernel package} and busybox-static: $(cat "$1/apt.log" 2>/dev/null)"
}

# Debian's kernel and busybox, unpacked once into the cache; only the kernel image,
# the IPMI modules and busybox are kept. The file "fetched" marks a complete cache.
fetch_packages() {
    [ -f "$cache/fetched" ] && return
    command -v apt-get >/dev/null || skip "apt-get is needed to fetch Debian's kernel and busybox-static"
    local download=$cache/download
    rm -rf "$download" "$cache/modules" && mkdir -p "$download/tree" "$cache/modules"
    download_packages "$download"
    local package
    for package in "$download"/*.deb; do dpkg -x "$package" "$download/tree"; done
    cp "$download/tree/bin/busybox" "$cache/busybox"
    cp "$download"/tree/boot/vmlinuz-* "$cache/vmlinuz"
    local module
    for module in ipmi_msghandler ipmi_devintf ipmi_si; do
        cp "$(find "$download/tree/lib/modules" -name "$module.ko")" "$cache/modules/"
    done
    (cd "$download" && ls -- *.deb) >"$cache/fetched"
    rm -rf "$download"
}

# The guest's files: init, busybox, the IPMI modules, tavrin with the real route
# libraries and the shared libraries and converters they need, and the data of the checks.
make_initramfs() {
    local tree=$work/tree
    rm -rf "$tree" && mkdir -p "$tree"/{bin,data,dev,proc,sys,tmp,lib/modules,opt/tavrin/bin,opt/tavrin/lib}
    cp "$here/guest-init.sh" "$tree/init"
    cp "$cache/busybox" "$tree/bin/busybox"
    cp "$cache"/modules/*.ko "$tree/lib/modules/"
    cp "$build/tavrin" "$tree/opt/tavrin/bin/"
    cp "$build/lib/libsarnic.so" "$build/lib/libbrevok.so" "$tree/opt/tavrin/lib/"
    local library binary
    for library in $(for binary in "$build/tavrin" "$build"/lib/*.so; do ldd "$binary"; done |
        awk '$2 == "=>" && $3 ~ /^\// {print $3} $1 ~ /^\// {print $1}' | sort -u); do
        mkdir -p "$tree$(dirname "$library")"
        cp -L "$library" "$tree$library"
    done
    mkdir -p "$tree$GCONV_DIR"
    local file
    for file in $GCONV_FILES; do cp "$GCONV_DIR/$file" "$tree$GCONV_DIR/"; done
    cp "$root/examples/sample-v1.sdr" "$root/examples/sample-card.fru" "$root/examples/sample-server.fru" "$tree/data/"
    "$build/tools/tavrin-sdrgen" 1 "$tree/data/other.sdr" 6
    write_updated_fru_images "$tree/data"
    echo "$GUEST_CLOCK:00" >"$tree/data/clock"
    printf 'KCS\nCA2\nByteBoundary\n3000\n' >"$tree/data/intf.ini"
    chmod 755 "$tree/init" "$tree/bin/busybox"
    (cd "$tree" && find . | "$cache/busybox" cpio -o -H newc -R 0:0 2>/dev/null) | gzip -1 >"$work/initramfs.gz"
}

# Boots the VM; its console goes to console.log. Fails on a time-out.
boot() {
    local status=0 start
    start=$(date +%s.%N)
    timeout -k 10 "$TIME_LIMIT_S" qemu-system-x86_64 -accel tcg -m 256M -smp 1 \
        -display none -monitor none -no-reboot -serial "file:$work/console.log" \
        -kernel "$cache/vmlinuz" -initrd "$work/initramfs.gz" \
        -append "console=ttyS0 panic=1 rdinit=/init" \
        -device "ipmi-bmc-sim,id=bmc0,sdrfile=$work/bmc-records.sdr,frudatafile=$work/bmc.fru,fruareasize=$FRU_AREA_SIZE" \
        -device isa-ipmi-kcs,bmc=bmc0 || status=$?
    wall_seconds=$(awk -v start="$start" -v end="$(date +%s.%N)" 'BEGIN {printf "%.1f", end - start}')
    tr -d '\r' <"$work/console.log" >"$work/console.txt"
    if [ "$status" -eq 124 ] || [ "$status" -eq 137 ]; then
        fail "time-out: no power-off within ${TIME_LIMIT_S} s ($work/console.txt)"
    fi
    [ "$status" -eq 0 ] || fail "qemu-system-x86_64 exited with status $status ($work/console.txt)"
}

# Splits a transcript into one file per check (named by the check) in directory $2.
split_checks() {
    rm -rf "$2" && mkdir -p "$2"
    awk -v dir="$2" '/^=== / { name = $2; sub(/:$/, "", name); file = dir "/" name } file { print > file }' "$1"
}

# Compares the guest's transcript with expected.txt check by check.
compare() {
    sed -n '/^TAVRIN-VM-BEGIN$/,/^TAVRIN-VM-END$/p' "$work/console.txt" | sed '1d;$d' >"$work/transcript.txt"
    grep -q '^TAVRIN-VM-END$' "$work/console.txt" || echo "vm-test: the guest stopped before the end of its checks"
    split_checks "$here/expected.txt" "$work/expected"
    split_checks "$work/transcript.txt" "$work/actual"
    local passed=0 failed=0 check name
    shopt -s nullglob
    for check in "$work"/expected/* "$work"/actual/*; do
        name=$(basename "$check")
        [ "$check" = "$work/actual/$name" ] && [ -f "$work/expected/$name" ] && continue
        if [ ! -f "$work/actual/$name" ]; then
            echo "vm-test: check $name: not in the guest's transcript"
        elif [ ! -f "$work/expected/$name" ]; then
            echo "vm-test: check $name: not in expected.txt"
        elif ! diff -u "$work/expected/$name" "$work/actual/$name"; then
            echo "vm-test: check $name differs (above)"
        else
            passed=$((passed + 1))
            continue
        fi
        failed=$((failed + 1))
    done
    grep -q '^TAVRIN-VM-END$' "$work/console.txt" || failed=$((failed + 1))
    local boot_s done_s
    boot_s=$(awk '/^TAVRIN-VM boot-seconds/ {print $3}' "$work/console.txt")
    done_s=$(awk '/^TAVRIN-VM checks-done-seconds/ {print $3}' "$work/console.txt")
    echo "vm-test: kernel start to init ${boot_s:-?} s, checks done at ${done_s:-?} s, whole VM run ${wall_seconds} s"
    echo "vm-test: $passed passed, $failed failed"
    [ "$failed" -eq 0 ] || fail "see $work/console.txt"
}

[ "$(uname -s)-$(uname -m)" = Linux-x86_64 ] || skip "the guest runs this machine's binaries: needs Linux on x86-64"
if ! command -v qemu-system-x86_64 >/dev/null; then
    command -v apt-get >/dev/null || skip "qemu-system-x86_64 is missing, and there is no apt-get to install it"
    bash "$root/scripts/install-deps.sh" || skip "qemu-system-x86_64 is missing and could not be installed"
fi
for file in tavrin lib/libsarnic.so lib/libbrevok.so tools/tavrin-sdrgen tools/tavrin-frugen; do
    [ -x "$build/$file" ] || [ -f "$build/$file" ] || fail "$build/$file is missing: build first"
done
for file in $GCONV_FILES; do
    [ -f "$GCONV_DIR/$file" ] || skip "$GCONV_DIR/$file (Debian package libc6) is missing: the guest needs it"
done
mkdir -p "$cache" "$work"
fetch_packages
write_sdr_records "$root/examples/sample-v1.sdr" >"$work/bmc-records.sdr"
cp "$root/examples/sample-card.fru" "$work/bmc.fru"
make_initramfs
boot
compare
