#!/usr/bin/env bash
# installed.sh CMAKE BUILD_DIR SCRATCH PROGRAM: installs BUILD_DIR below SCRATCH and looks whether
# gdb finds the views by itself when PROGRAM loads the library from there.
set -euo pipefail
cmake=$1
build=$2
scratch=$3
program=$4

rm -rf "$scratch"
mkdir -p "$scratch"
prefix=$(realpath "$scratch")/prefix
"$cmake" --install "$build" --prefix "$prefix" >/dev/null

library=$(find "$prefix" -name 'libNORVASK1642.so.1')
printed=$(gdb -nx -batch \
    -iex "add-auto-load-scripts-directory $prefix/share/gdb/auto-load" \
    -iex "add-auto-load-safe-path $prefix/share/gdb/auto-load" \
    -iex "set environment LD_LIBRARY_PATH $(dirname "$library")" \
    -ex "break Stop" -ex "run" -ex "info sharedlibrary NORVASK" -ex "up" -ex "print root" \
    "$program" 2>&1) || true
echo "$printed"
if ! grep -qF "$(dirname "$library")/libNORVASK1642.so" <<<"$printed"; then
    echo "the program did not load the installed library"
    exit 1
fi
grep -qE '^\$1 = 0x[0-9a-f]+ <bk:catalog> with 1 child$' <<<"$printed"
