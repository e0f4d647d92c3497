#!/usr/bin/env bash
# Compares what the shared library exports with the list under version control.
#
#   exported_symbols.sh LIBRARY LIST            checks
#   exported_symbols.sh --update LIBRARY LIST   writes the list anew
#
# To take over an intended change, from the root of the project:
#
#   cmake --preset release && cmake --build --preset release --target norvask
#   tests/exported_symbols.sh --update build/release/src/libNORVASK1642.so \
#       tests/exported_symbols.txt
#
# Addresses and symbol types are left out: they differ between compilers.
set -euo pipefail
export LC_ALL=C

exported() {
    nm -DC --defined-only "$1" | sed -E 's/^[0-9a-f]* +[A-Za-z] //' | sort -u
}

of_norvask='^((vtable|VTT|typeinfo|typeinfo name|construction vtable) for |(non-virtual|virtual) thunk to )?norvask::'

update=no
if [[ ${1-} == --update ]]; then
    update=yes
    shift
fi
if [[ $# -ne 2 ]]; then
    echo "usage: $0 [--update] LIBRARY LIST" >&2
    exit 2
fi
library=$1
list=$2

found=$(exported "$library")
if [[ -z $found ]]; then
    echo "$library exports nothing"
    exit 1
fi

if foreign=$(grep -Ev "$of_norvask" <<<"$found"); then
    echo "exported from outside namespace norvask:"
    echo "$foreign"
    exit 1
fi

if [[ $update == yes ]]; then
    printf '%s\n' "$found" >"$list"
    echo "$list: $(wc -l <"$list") symbols"
    exit 0
fi

if [[ ! -f $list ]]; then
    echo "$list does not exist; $0 --update makes it"
    exit 1
fi
if ! diff -u --label "$list" --label "$library" "$list" - <<<"$found"; then
    echo "the exported symbols are not those of the list; see the head of $0"
    exit 1
fi
echo "$(wc -l <"$list") exported symbols, all as listed"
