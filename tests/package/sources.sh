#!/usr/bin/env bash
# sources.sh CPACK BUILD_DIR SCRATCH NAME: makes the source archive and unpacks it to
# SCRATCH/unpacked/NAME.
set -euo pipefail
cpack=$1
build=$2
scratch=$3
name=$4

rm -rf "$scratch"
mkdir -p "$scratch/unpacked"
"$cpack" --config "$build/CPackSourceConfig.cmake" -B "$scratch"
tar -xzf "$scratch/$name.tar.gz" -C "$scratch/unpacked"
cd "$scratch/unpacked/$name"

for wanted in CMakeLists.txt CMakePresets.json LICENSE README.md dev include/norvask/norvask.h \
    cmake/exports.map src/load/manager.cpp tests/exported_symbols.txt examples/catalog.xml; do
    if [[ ! -e $wanted ]]; then
        echo "not in the source archive: $wanted"
        exit 1
    fi
done
for unwanted in .git build compile_commands.json; do
    if [[ -e $unwanted ]]; then
        echo "in the source archive: $unwanted"
        exit 1
    fi
done
if found=$(find . -name '*.o' -o -name CMakeCache.txt) && [[ -n $found ]]; then
    echo "products of a build in the source archive:"
    echo "$found"
    exit 1
fi
