#!/usr/bin/env bash
# The bash completion of tavrin loads, registers itself, and completes the cases below
# (the line typed so far -> what it offers, sorted), in a folder with two files.
set -euo pipefail
script=$1
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"
touch new.sdr new.fru

complete_line() {
    bash --norc -c '
        source "$1" || exit 1
        [[ $(complete -p tavrin) == "complete -F _tavrin tavrin" ]] || exit 2
        COMP_LINE=$2 COMP_POINT=${#2}
        read -r -a COMP_WORDS <<<"$2"
        [[ $2 == *" " ]] && COMP_WORDS+=("")
        COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
        _tavrin
        printf "%s\n" "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd " "' _ "$script" "$1"
}

failures=0
check() {
    local got
    got=$(complete_line "$1")
    if [[ $got != "$2" ]]; then
        echo "FAIL: '$1' offers '$got', expected '$2'"
        failures=$((failures + 1))
    fi
}

check "tavrin -up" "-updateFRU"
check "tavrin /debug" "/debugmsg"
check "tavrin -msgintf " "kcsio openipmi"
check "tavrin -t new." "new.fru new.sdr"
check "tavrin -u out.sdr enc" "encoding="
check "tavrin -u out.sdr encoding=utf" "utf16 utf8"
check "tavrin -u out.sdr encoding=ascii f" "fruID="
check "tavrin -v new.fru " "fruID="
check "tavrin -updateFRU fieldName=sn" "snBoard snChassis snProduct"
check "tavrin -updateFRU fieldName=datetime strT" "strType="
check "tavrin -updateFRU strType=" "1 2 3"
check "tavrin -n lanplus -P " ""
[[ $failures -eq 0 ]] && echo "all completions as expected"
exit "$failures"
