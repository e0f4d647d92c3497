#!/usr/bin/env bash
# run_example.sh NAME WORK PROGRAM [ARG...]
#
# Runs the program in the directory WORK beside copies of the sample documents, and compares all
# that it prints and its exit code with expected/NAME.txt. If there is an expected/NAME.xml, the
# program must have written a file of that name with exactly that content; if there is none, it must
# not have left one behind.
#
# What depends on the machine is masked first: times, rates, sizes of memory, the path of WORK.
set -euo pipefail
name=$1
work=$2
shift 2
examples=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

rm -rf "$work"
mkdir -p "$work"
cp "$examples"/*.xml "$examples"/*.xsd "$work"
cd "$work"
work=$(pwd -P)
head -n 20 catalog.xml >truncated.xml
head -n 20 measurements.xml >truncated_measurements.xml
sed 's/00:00:05/24:00:00/' measurements.xml >wrong_time.xml
# Something that would clear the screen, in text that turns its direction, behind a combining mark.
printf '<list>\n\t<item>e\xCC\x81\xE2\x80\xAE\xE9\x9B\xB2\xE9\x9B\xA8 \x1B[2J</item>\n</list>\n' >control.xml
sed 's/xs:decimal/xs:decimals/' orders.xsd >wrong.xsd
# A line of 12,000 characters.
printf '<list>%.0s' {1..1000} >long_line.xml
printf '</lost>%.0s' {1..1000} >>long_line.xml

# 17 May 2024, 10:30 UTC.
export SOURCE_DATE_EPOCH=1715941800

code=0
"$@" >printed.txt 2>errors.txt </dev/null || code=$?
{
    cat printed.txt
    sed 's/^/stderr: /' errors.txt
    echo "exit code: $code"
} | sed -E \
    -e "s|$work|WORK|g" \
    -e 's/ +[0-9]+\.[0-9]+ m?s\b/ TIME/g' \
    -e 's|[0-9]+\.[0-9]+ MB/s|RATE|' \
    -e 's/[0-9.]+ MB before, [0-9.]+ MB at most/SIZES/' \
    -e 's/^(  heap) .*/\1 SIZE/' >actual.txt

failed=0
diff -u "$examples/expected/$name.txt" actual.txt || failed=1
if [[ -e $examples/expected/$name.xml ]]; then
    diff -u "$examples/expected/$name.xml" "$name.xml" || failed=1
elif [[ -e $name.xml ]]; then
    echo "$name.xml was left behind, ending in:"
    tail -n 3 "$name.xml"
    failed=1
fi
if [[ $failed -ne 0 ]]; then
    echo "If the new output is what you want: cp $work/actual.txt $examples/expected/$name.txt"
fi
exit "$failed"
