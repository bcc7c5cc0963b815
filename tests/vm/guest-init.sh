#!/bin/busybox sh
# /init of the test VM: runs tavrin with the real route libraries against QEMU's
# emulated BMC, writes a transcript of every run to the serial console and powers off.
#
# The transcript, between the lines "TAVRIN-VM-BEGIN" and "TAVRIN-VM-END", is what the
# host compares with expected.txt: for each check a line "=== NAME: tavrin ARGS", the
# exit status, and standard output and error line by line behind "|". Lines starting
# with "TAVRIN-VM " outside it carry timings.
/bin/busybox --install -s /bin
export PATH=/bin:/opt/tavrin/bin LD_LIBRARY_PATH=/opt/tavrin/lib TZ=UTC0
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs devtmpfs /dev
mkdir -p /tmp
# Kernel messages would land inside transcript lines: only emergencies reach the
# console from here on; dmesg shows the rest at the end.
echo 1 >/proc/sys/kernel/printk

IPMI_MODULES="ipmi_msghandler ipmi_devintf ipmi_si"
MODULE_STATE=unloaded
CLOCK=""

# Loads the kernel's IPMI driver and waits for its device node, or unloads it.
# Trouble shows in the transcript, so the check that needed the state fails.
set_modules() {
    [ "$1" = "$MODULE_STATE" ] && return
    MODULE_STATE=$1
    if [ "$1" = loaded ]; then
        for module in $IPMI_MODULES; do
            insmod "/lib/modules/$module.ko" 2>&1 || echo "!!! insmod $module failed"
        done
        tries=0
        while [ ! -c /dev/ipmi0 ] && [ $tries -lt 300 ]; do
            sleep 0.1
            tries=$((tries + 1))
        done
        [ -c /dev/ipmi0 ] || echo "!!! no /dev/ipmi0 after loading $IPMI_MODULES"
    else
        rmmod ipmi_si ipmi_devintf ipmi_msghandler 2>&1 || echo "!!! rmmod of the IPMI modules failed"
    fi
}

# One stream of a run, line by line; a last line without line end is marked.
print_stream() {
    echo "--- $1"
    sed 's/^/|/' "$2"
    if [ -n "$(tail -c 1 "$2")" ]; then
        echo
        echo "--- $1 ends without a line end"
    fi
}

# check MODULES NAME ARGS...: one run of tavrin ARGS with the IPMI modules loaded or
# unloaded (-msgintf kcsio needs them unloaded; the default route needs them loaded).
check() {
    modules=$1 name=$2
    shift 2
    echo "=== $name: tavrin $*"
    set_modules "$modules"
    if [ -n "$CLOCK" ]; then
        date -s "$CLOCK" >/dev/null || echo "!!! cannot set the clock to $CLOCK"
    fi
    tavrin "$@" >/tmp/stdout 2>/tmp/stderr
    echo "--- status $?"
    print_stream stdout /tmp/stdout
    print_stream stderr /tmp/stderr
}

# check_on_clock MODULES NAME ARGS...: check with the clock set right before tavrin
# runs to the whole minute in the file clock, so a date/time written is known.
check_on_clock() {
    CLOCK=$(cat clock)
    check "$@"
    CLOCK=""
}

# The BMC holds the records of sample-v1.sdr, and sample-card.fru in FRU 0, an area of
# 256 bytes; other.sdr holds as many records, with different contents. server-serial.fru
# and server-updated.fru are sample-server.fru as -updateFRU must leave it: the board
# serial number changed, then also the board's date/time to the time in the file clock.
# intf.ini names QEMU's KCS port. What one route changes or uploads, the other reads back.
run_checks() {
    check loaded driver-verify-given -v sample-v1.sdr
    check loaded driver-verify-other -v other.sdr
    check loaded driver-download-refused -d other.sdr
    check loaded driver-verify-after-refusal -v sample-v1.sdr
    check loaded kcsio-refused-beside-driver -msgintf kcsio -v sample-v1.sdr
    check loaded driver-fru-verify-given -v sample-card.fru fruID=0
    check loaded driver-fru-verify-other -v sample-server.fru fruID=0
    check loaded driver-fru-download -d sample-server.fru fruID=0
    check loaded driver-upload -u driver.sdr encoding=utf8
    check loaded driver-upload-test -t driver.sdr

    check unloaded kcsio-verify-given -msgintf kcsio -v sample-v1.sdr
    check unloaded kcsio-verify-other -msgintf kcsio -v other.sdr
    check unloaded kcsio-download-refused -msgintf kcsio -d other.sdr
    check unloaded kcsio-verify-after-refusal -msgintf kcsio -v sample-v1.sdr
    check unloaded driver-route-without-driver -v sample-v1.sdr
    check unloaded kcsio-fru-verify-downloaded -msgintf kcsio -v sample-server.fru fruID=0
    check unloaded kcsio-verify-driver-upload -msgintf kcsio -v driver.sdr
    check unloaded kcsio-upload -msgintf kcsio -u kcsio.sdr encoding=utf16
    check unloaded kcsio-upload-test -t kcsio.sdr
    check unloaded kcsio-fru-update-serial -msgintf kcsio -updateFRU fieldName=snBoard offset=0x63 \
        strType=2 strLength=8 strValue=BS24B99999 fruID=0

    check loaded driver-fru-verify-serial -v server-serial.fru fruID=0
    check loaded driver-verify-kcsio-upload -v kcsio.sdr
    check_on_clock loaded driver-fru-update-datetime -updateFRU fieldName=datetime offset=0x3B fruID=0

    check unloaded kcsio-fru-verify-updated -msgintf kcsio -v server-updated.fru fruID=0
    check unloaded kcsio-fru-upload -msgintf kcsio -u fru.txt encoding=utf16 fruID=0
    check unloaded kcsio-fru-upload-test -t fru.txt fruID=0
}

cd /data || exit 1
echo "TAVRIN-VM boot-seconds $(cut -d' ' -f1 /proc/uptime)"
echo "TAVRIN-VM-BEGIN"
run_checks
echo "TAVRIN-VM-END"
echo "TAVRIN-VM checks-done-seconds $(cut -d' ' -f1 /proc/uptime)"
echo "TAVRIN-VM kernel log follows"
dmesg
poweroff -f
