#!/usr/bin/env bash
# The manual pages render without a warning at 80 columns and below, the two examples
# of tavrin-formats(5) pass "tavrin -t" as the page prints them, and so do the files
# written by hand from that page alone (from-page.sdr, from-page.fru).
# Arguments: the folder of the pages, the tavrin executable, the folder of the files.
set -euo pipefail
pages=$1 tavrin=$2 fixtures=$3
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

for page in "$pages"/*.[1-8]; do
    warnings=$(groff -t -ww -man -Tutf8 -rLL=72n -z "$page" 2>&1)
    [[ -z $warnings ]] || fail "$page: $warnings"
done

# The example under the given subsection heading, with the roff escapes it uses undone.
page_example() {
    sed -n "/^\.SS $1\$/,/^\.EE/p" "$pages/tavrin-formats.5" | sed -n '/^\.EX/,/^\.EE/p' | sed '1d;$d' |
        sed -e 's/\\-/-/g' -e "s/\\\\(aq/'/g" -e 's/\\e/\\/g'
}
page_example "An SDR text file" >"$dir/page.sdr"
page_example "A FRU text file" >"$dir/page.fru"
cp "$fixtures/from-page.sdr" "$fixtures/from-page.fru" "$dir"

for args in "page.sdr" "page.fru fruID=0" "from-page.sdr" "from-page.fru fruID=0"; do
    # shellcheck disable=SC2086 # the file name and the FRU ID are two words
    out=$(cd "$dir" && "$tavrin" -t $args 2>&1) || fail "tavrin -t $args: $out"
    [[ $(wc -l <"$dir/${args%% *}") -gt 20 ]] || fail "$args: the example was not found"
done
[[ $failures -eq 0 ]] && echo "pages clean, examples and hand-written files pass -t"
exit "$failures"
