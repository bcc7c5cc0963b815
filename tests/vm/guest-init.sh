#!/bin/busybox sh
# /init of the test VM: runs tavrin with the real route libraries against QEMU's
# emulated BMC, writes a transcript of every run to the serial console and powers off.
#
# The transcript, between the lines "TAVRIN-VM-BEGIN" and "TAVRIN-VM-END", is what the
# host compares with expected.txt: for each check a line "=== NAME: tavrin ARGS", the
# exit status, and standard output and error line by line behind "|". Lines starting
# with "TAVRIN-VM " outside it carry timings.
/bin/busybox --install -s /bin
export PATH=/bin:/opt/tavrin/bin LD_LIBRARY_PATH=/opt/tavrin/lib
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs devtmpfs /dev
mkdir -p /tmp
# Kernel messages would land inside transcript lines: only emergencies reach the
# console from here on; dmesg shows the rest at the end.
echo 1 >/proc/sys/kernel/printk

IPMI_MODULES="ipmi_msghandler ipmi_devintf ipmi_si"
MODULE_STATE=unloaded

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
    tavrin "$@" >/tmp/stdout 2>/tmp/stderr
    echo "--- status $?"
    print_stream stdout /tmp/stdout
    print_stream stderr /tmp/stderr
}

# The BMC holds the records of sample-v1.sdr and the FRU image bmc.fru as FRU 0;
# other.sdr holds as many records, with different contents. intf.ini names QEMU's KCS
# port.
run_checks() {
    check loaded driver-verify-given -v sample-v1.sdr
    check loaded driver-verify-other -v other.sdr
    check loaded driver-download-refused -d other.sdr
    check loaded driver-verify-after-refusal -v sample-v1.sdr
    check loaded kcsio-refused-beside-driver -msgintf kcsio -v sample-v1.sdr

    check unloaded kcsio-verify-given -msgintf kcsio -v sample-v1.sdr
    check unloaded kcsio-verify-other -msgintf kcsio -v other.sdr
    check unloaded kcsio-download-refused -msgintf kcsio -d other.sdr
    check unloaded kcsio-verify-after-refusal -msgintf kcsio -v sample-v1.sdr
    check unloaded driver-route-without-driver -v sample-v1.sdr

    # FRU checks join here when the FRU operations land: -d, -v and -u of bmc.fru
    # with fruID=0 and -updateFRU, each followed by a read-back through the other route
    # (a "check loaded" run, then a "check unloaded ... -msgintf kcsio" one, or the
    # other way round), with their transcripts in expected.txt.
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
