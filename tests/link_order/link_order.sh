#!/usr/bin/env bash
# link_order.sh COMPILER INCLUDE PROGRAM SCRATCH PARSER OBJECT...
#
# Links the library's objects into a program with 1, 2, ... 7 bytes of other data in front of each
# of them, and runs it. Whatever the library needs aligned must say so: without that it may be
# aligned by luck, and is not in a program that links something else before it.
set -euo pipefail
compiler=$1
include=$2
program=$3
scratch=$4
parser=$5
shift 5

rm -rf "$scratch"
mkdir -p "$scratch"
"$compiler" -std=c++17 -I "$include" -c "$program" -o "$scratch/program.o"
failed=0
for bytes in 1 2 3 4 5 6 7; do
    {
        echo "namespace {"
        echo "[[gnu::used]] char s_Data[$bytes] = {1};"
        echo "[[gnu::used]] char s_Zeros[$bytes];"
        echo "[[gnu::used]] const char TEXT[$bytes] = {1};"
        echo "}"
    } >"$scratch/bytes.cpp"
    "$compiler" -std=c++17 -c "$scratch/bytes.cpp" -o "$scratch/bytes.o"
    objects=("$scratch/program.o")
    for object in "$@"; do
        objects+=("$scratch/bytes.o" "$object")
    done
    "$compiler" "${objects[@]}" "$parser" -o "$scratch/program"
    if ! "$scratch/program"; then
        echo "With $bytes bytes of data in front of each object the program fails."
        failed=1
    fi
done
exit "$failed"
