#!/usr/bin/env bash
# static.sh CMAKE COMPILER SOURCES SCRATCH: builds a static library from SOURCES and leaves it,
# installed, in SCRATCH/prefix.
set -euo pipefail
cmake=$1
compiler=$2
sources=$3
scratch=$4

rm -rf "$scratch"
mkdir -p "$scratch"
"$cmake" -S "$sources" -B "$scratch/build" -G Ninja \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
    -DNORVASK_BUILD_TESTS=OFF -DNORVASK_BUILD_EXAMPLES=OFF
"$cmake" --build "$scratch/build" --parallel 2
"$cmake" --install "$scratch/build" --prefix "$scratch/first"
mv "$scratch/first" "$scratch/prefix"

if [[ -n $(find "$scratch/prefix" -name 'libNORVASK1642.so*') ]]; then
    echo "a shared library was installed with the static one"
    exit 1
fi
pc=$(find "$scratch/prefix" -name norvask.pc)
if ! grep -q '^Requires.private: xerces-c' "$pc"; then
    echo "$pc does not name the parser"
    exit 1
fi
