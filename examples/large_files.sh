#!/usr/bin/env bash
# large_files.sh PROGRAMS WORK: write_report, read_large_file and convert_records together, on a
# document that is large enough to show that none of it stays in memory.
set -euo pipefail
programs=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
cd "$work"
failed=0

# A sanitizer that kept freed memory for later checks would make the programs grow.
ASAN_OPTIONS=${ASAN_OPTIONS:+$ASAN_OPTIONS:}quarantine_size_mb=0
export ASAN_OPTIONS=$ASAN_OPTIONS:thread_local_quarantine_size_kb=0

fail() {
    echo "$*"
    failed=1
}

# expect FILE LINE...: the lines stand in the file, runs of blanks taken as one.
expect() {
    local file=$1 line
    shift
    for line in "$@"; do
        if ! tr -s ' ' <"$file" | grep -qxF -- "$line"; then
            fail "$file: no line \"$line\" in:"
            head -n 20 "$file"
        fi
    done
}

# peak FILE: the most memory that a program says it has held, in KB.
peak() {
    local megabytes
    megabytes=$(sed -nE 's/^ +memory +[0-9.]+ MB before, ([0-9]+)\.([0-9]) MB at most$/\1\2/p' "$1")
    if [[ -z $megabytes ]]; then
        echo "$1: no size of memory in:" >&2
        cat "$1" >&2
        return 1
    fi
    echo $((megabytes * 100))
}

rows=30000
small_rows=3000
"$programs"/write_report --rows $rows large.xml >written_large.txt
"$programs"/write_report --rows $small_rows small.xml >written_small.txt
wrote=" wrote 30 000 measurements, $(stat -c %s large.xml |
    sed -E ':a; s/([0-9])([0-9]{3})($| )/\1 \2\3/; ta') bytes, to"
expect written_large.txt "$wrote large.xml"

# The same bytes to a pipe, to standard output that is a file, and to a file.
"$programs"/write_report --rows $rows 2>output.txt | cmp - large.xml ||
    fail "a pipe gets other bytes"
"$programs"/write_report --rows $rows 2>output.txt >output.xml
cmp output.xml large.xml || fail "standard output gets other bytes"
expect output.txt "$wrote standard output"

for size in small large; do
    "$programs"/read_large_file $size.xml >read_$size.txt
    "$programs"/convert_records $size.xml alarms_$size.xml >converted_$size.txt
done
expect read_large.txt \
    "large.xml 10 names of elements, 3 levels deep" \
    " measurement 30 000" \
    " remark 6 000" \
    " report 1" \
    " all elements 246 001"

# Every true is an alarm, and what is written of the alarms is a document again.
alarms=$(grep -cF '<alarm>true</alarm>' large.xml)
if [[ $alarms -lt 100 ]]; then
    fail "too few alarms to tell anything: $alarms"
fi
"$programs"/read_large_file --texts 0 alarms_large.xml | tr -d ' ' >read_alarms.txt
expect read_alarms.txt "alarm$alarms" "reference$alarms" "alarms1" "allelements$((6 * alarms + 1))"

# Ten times the document, and no more memory for it. Kept, its texts alone would be several times
# what is allowed here.
for what in written read converted; do
    grown=$(($(peak ${what}_large.txt) - $(peak ${what}_small.txt)))
    echo "$what: $grown KB more for ten times the document"
    if [[ $grown -gt 2000 ]]; then
        fail "$what: memory grows with the document"
    fi
done

# More names than are counted each for itself.
awk 'BEGIN {
    printf "<a>"
    for (i = 0; i < 12000; i++) printf "<n%d/><n/>", i
    printf "</a>"
}' >names.xml
"$programs"/read_large_file names.xml >read_names.txt
expect read_names.txt \
    "names.xml more than 10 000 names of elements, 2 levels deep" \
    " n 12 000" \
    " … others 11 986" \
    " all elements 24 001"

# A device that is full from the first byte that reaches it on, and one that fills up later: the
# error is found and told, and a file that is not finished does not stay.
full() {
    local what=$1 message=$2 code=0
    shift 2
    "$@" 2>error.txt || code=$?
    if [[ $code -ne 1 || $(cat error.txt) != "$message" ]]; then
        fail "$what: exit code $code, message: $(cat error.txt)"
    fi
}
full "report" "write_report: Error saving 'standard output'." \
    "$programs"/write_report --rows $rows >/dev/full
full "summary of a report" "write_report: the summary could not be written" \
    "$programs"/write_report --rows 1 one.xml >/dev/full
full "what was read" "read_large_file: the output could not be written" \
    "$programs"/read_large_file small.xml >/dev/full
full "alarms" "convert_records: Error saving '/dev/full'." \
    "$programs"/convert_records large.xml /dev/full
full "summary of a conversion" "convert_records: the summary could not be written" \
    "$programs"/convert_records small.xml one.xml >/dev/full

# limited COMMAND: no file may become larger than 64 KiB, which is told by an error of the write.
limited() {
    (trap '' XFSZ && ulimit -f 64 && "$@")
}
full "limited report" "write_report: Error saving 'limited.xml'." \
    limited "$programs"/write_report limited.xml
full "limited alarms" "convert_records: Error saving 'limited_alarms.xml'." \
    limited "$programs"/convert_records large.xml limited_alarms.xml
for file in limited.xml limited_alarms.xml; do
    if [[ -e $file ]]; then
        fail "$file was left behind"
    fi
done

# An output that exists goes only when the input is a document.
for file in missing.xml "$programs"/write_report; do
    echo "precious" >kept.xml
    "$programs"/convert_records "$file" kept.xml 2>error.txt && fail "$file was converted"
    [[ $(cat kept.xml) == precious ]] || fail "$file: the output that was there is gone"
done
exit "$failed"
