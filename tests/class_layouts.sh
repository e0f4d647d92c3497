#!/usr/bin/env bash
# Compares the layout of the exported classes and data with the list under version control: the
# sizes that programs have compiled in. tests/interface/norvask/vtable_layout_test.cpp looks closer
# at the virtual tables, exported_symbols.sh at the names.
#
#   class_layouts.sh LIBRARY INCLUDE LIST            checks
#   class_layouts.sh --update LIBRARY INCLUDE LIST   writes the list anew
#
# docs/binary_interface.md says which changes are allowed. To take one over, from the root of the
# project:
#
#   cmake --preset release && cmake --build --preset release --target norvask
#   tests/class_layouts.sh --update build/release/src/libNORVASK1642.so include \
#       tests/class_layouts.txt
#
# The first half of the list comes from the public headers, as g++ lays the classes out; clang++
# follows the same rules. The second half comes from the library itself.
set -euo pipefail
export LC_ALL=C

update=no
if [[ ${1-} == --update ]]; then
    update=yes
    shift
fi
if [[ $# -ne 3 ]]; then
    echo "usage: $0 [--update] LIBRARY INCLUDE LIST" >&2
    exit 2
fi
library=$1
include=$2
list=$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Classes that a program finds in the library. Those that the headers define entirely are compiled
# into the program, which may therefore have another version of them than its neighbours.
nm -DC --defined-only "$library" | sed -nE 's/^[0-9a-f]* +[A-Za-z] (norvask::[A-Za-z0-9_]+)::.*/\1/p' |
    sort -u >"$scratch/exported"
if [[ ! -s $scratch/exported ]]; then
    echo "$library exports no class"
    exit 1
fi

# For each class its size, alignment and bases, then its virtual table, one operation a line. The
# order of the headers does not count: lines carry their class and place until they are sorted.
from_headers() {
    echo '#include <norvask/norvask.h>' >"$scratch/all.cpp"
    g++ -std=c++17 -I "$include" -fsyntax-only -fdump-lang-class="$scratch/dump" "$scratch/all.cpp"
    awk '
        NR == FNR { exported[$1] = 1; next }
        /^Vtable for / { class = $3; table = ""; kind = "table"; next }
        /^Class / { class = $2; kind = "class"; bases = ""; next }
        /^$/ {
            if (kind == "class" && class in exported) {
                printf "%s\t-1\t%s: %s%s\n%s", class, class, layout, bases, tables[class]
                delete exported[class]
            }
            if (kind == "table") tables[class] = table
            kind = ""
            next
        }
        kind == "table" && match($0, /^[0-9]+ +\(int \(\*\)\(\.\.\.\)\)/) {
            offset = $1
            entry = substr($0, RSTART + RLENGTH)
            if (entry ~ /^\(& _ZTI/) entry = "typeinfo"
            else if (entry ~ /^-?[0-9]+$/) entry = "offset to top " entry
            table = table sprintf("%s\t%d\t  %4d  %s\n", class, offset, offset, entry)
        }
        kind == "class" && /^   size=/ { layout = "size " substr($1, 6) ", alignment " substr($2, 7) }
        kind == "class" && /^norvask::/ && $1 != class { bases = bases ", base " $1 " at " $NF }
        END {
            for (class in exported) { print "no layout of " class > "/dev/stderr"; failed = 1 }
            exit failed
        }
    ' "$scratch/exported" "$scratch/dump" >"$scratch/layouts"
    sort -t $'\t' -k 1,1 -k 2,2n "$scratch/layouts" | cut -f 3-
}

# Exported data: its size is copied into programs that are not position-independent.
from_library() {
    nm -DSC --defined-only "$library" | awk '
        $3 ~ /^[BDRVuW]$/ && NF > 3 {
            size = $2
            sub(/^[0-9a-f]+ [0-9a-f]+ . /, "")
            print $0 ": size 0x" substr(size, 13)
        }' | grep -v '(' | sort
}

{
    from_headers
    echo
    from_library
} >"$scratch/found"

if [[ $update == yes ]]; then
    cp "$scratch/found" "$list"
    echo "$list: $(wc -l <"$list") lines"
    exit 0
fi
if ! diff -u --label "$list" --label "$library" "$list" "$scratch/found"; then
    echo "the layouts are not those of the list; see the head of $0"
    exit 1
fi
echo "$(wc -l <"$scratch/exported") classes, all as listed"
