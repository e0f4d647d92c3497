#!/usr/bin/env bash
# stage.sh CMAKE BUILD_DIR SCRATCH: installs BUILD_DIR and leaves the result in SCRATCH/prefix.
set -euo pipefail
cmake=$1
build=$2
scratch=$3

rm -rf "$scratch"
mkdir -p "$scratch"
"$cmake" --install "$build" --prefix "$scratch/first"
mv "$scratch/first" "$scratch/prefix"

for wanted in norvask.h norvaskConfig.cmake norvaskConfigVersion.cmake norvask.pc \
    libNORVASK1642.so libNORVASK1642.so.1 LICENSE; do
    if [[ -z $(find "$scratch/prefix" -name "$wanted") ]]; then
        echo "not installed: $wanted"
        exit 1
    fi
done

if grep -rlF "$scratch" "$scratch/prefix"; then
    echo "the files above name the directory they were installed to"
    exit 1
fi
