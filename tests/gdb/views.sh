#!/usr/bin/env bash
# views.sh PROGRAM EXPECTED: what the debugger's views print for PROGRAM, compared with the file
# EXPECTED.
set -euo pipefail
program=$1
expected=$2
here=$(dirname "${BASH_SOURCE[0]}")

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# An installed copy of the library may bring views of its own; these are to be tested.
if ! NORVASK_WRITTEN=$scratch/written gdb -nx -batch -iex "set auto-load no" \
    -x "$here/../../gdb/norvask_gdb.py" -x "$here/views.py" \
    "$program" >"$scratch/printed" 2>&1; then
    echo "gdb failed"
fi
if ! diff -u "$expected" "$scratch/written"; then
    cat "$scratch/printed"
    exit 1
fi
