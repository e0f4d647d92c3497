#!/usr/bin/env bash
# progress.sh PROGRAMS WORK: read_large_file shows how far it has got on a terminal, and only there.
set -euo pipefail
programs=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
cd "$work"
export TERM=xterm-256color NO_COLOR=1
failed=0

fail() {
    echo "$*"
    failed=1
}

"$programs"/write_report --rows 20000 report.xml >written.txt

# on_terminal NAME COMMAND: the command as on a terminal; NAME gets one line for each line of the
# terminal and for each time that it was drawn anew. "script" makes the terminal.
on_terminal() {
    script --quiet --return --command "$2" /dev/null </dev/null | tr '\r' '\n' >"$1"
}
read="'$programs/read_large_file' report.xml"
on_terminal both.txt "$read"
on_terminal errors.txt "$read >printed.txt"
on_terminal names.txt "'$programs/read_large_file' --texts 0 report.xml >printed_names.txt"
TERM=dumb on_terminal dumb.txt "$read"
head -c 1000000 report.xml >cut.xml
if on_terminal malformed.txt "'$programs/read_large_file' cut.xml"; then
    fail "a malformed document was read"
fi
"$programs"/read_large_file report.xml >plain.txt 2>plain_errors.txt

# The bar: "█░░    3 %    0.5 MB of   6.2 MB", and the end of the line made empty. A block is
# several bytes, which are one character in some locales only.
total=$(awk -v bytes="$(stat -c %s report.xml)" 'BEGIN { printf "%.1f", bytes / 1e6 }')
for shown in both errors names; do
    sed -nE "s/^(█)*(░)* +([0-9]+) % +[0-9.]+ MB of $total MB"$'\x1b\\[K$/\\3/p' \
        $shown.txt >percent.txt
    if [[ ! -s percent.txt || $(tail -n 1 percent.txt) -gt 100 ]] || ! sort -n -C percent.txt; then
        fail "$shown: no bar that only grows: $(tr '\n' ' ' <percent.txt)"
        head -n 12 $shown.txt
    fi
done

# What was drawn is gone before anything is printed.
for shown in both malformed; do
    if ! grep -A 1 -F ' MB of ' $shown.txt | tail -n 1 | grep -q $'^\x1b\\[K'; then
        fail "$shown: the bar is still there:"
        cat $shown.txt
    fi
done
for file in dumb.txt plain.txt plain_errors.txt printed.txt; do
    if grep -qE $'\x1b| % ' $file; then
        fail "$file: has a bar:"
        cat $file
    fi
done

# A terminal for errors changes nothing in what is printed to a file.
for file in plain printed; do
    sed -E '/^  (time|memory) /d' $file.txt >$file.same
done
diff plain.same printed.same || failed=1
exit "$failed"
