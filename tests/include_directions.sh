#!/usr/bin/env bash
# Checks who includes whom.
#
#   include_directions.sh ROOT              checks the tree at ROOT
#   include_directions.sh --self-test DIR   plants violations in copies under DIR and expects
#                                           every one of them to be found
#
# The folders of src/ build on each other in one direction only:
#
#   foundation < tree < write < load
#
# A public header belongs to the folder that has its sources, and counts like a header there. What
# clients include on top of them (the conveniences, norvask.h) is for no folder of src/. A folder
# below one of the four belongs to that one.
#
# No two units include each other, directly or through others; a unit is a header and the source of
# the same name. Nor do two folders, those below the four among them.
#
# Public headers know neither the parser nor anything under src/. Only the loader lets the parser
# read documents; the foundation may use its utilities (transcoding, character tables, Base64), and
# the tree and the writing of it do not know that there is a parser.
set -euo pipefail
export LC_ALL=C

# Reads first all files, one a line, then lines of a file and what it includes, with the quotes or
# brackets. Prints the violations, and the edges of both graphs into the two files.
read -r -d '' RULES <<'END' || true
    function home_of(file,    name) {
        if (file ~ /^include\/norvask\//) {
            name = substr(file, length("include/norvask/") + 1)
            if (name == "norvask.h" || name ~ /^convenience/) return "clients"
            return home[name]
        }
        split(file, part, "/")
        return part[2] in rank ? part[2] : ""
    }
    function complain(file, target, why) {
        print file ": includes " target ": " why
    }
    function check_direction(file, target, to) {
        if (rank[home_of(to)] > rank[home_of(file)])
            complain(file, target, home_of(file) " is below " home_of(to))
    }
    function unit_of(file) {
        sub(/\.(h|cpp)$/, "", file)
        return file
    }
    function folder_of(file) {
        sub(/\/[^\/]*$/, "", file)
        return file
    }
    function note_edge(file, to) {
        if (unit_of(file) != unit_of(to)) print unit_of(file), unit_of(to) > unit_edges
        if (file ~ /^src/ && to ~ /^src/ && folder_of(file) != folder_of(to))
            print folder_of(file), folder_of(to) > folder_edges
    }
    function check_ours(file, target, to) {
        if (!(to in files)) complain(file, target, "there is no such file")
        else {
            check_direction(file, target, to)
            note_edge(file, to)
        }
    }
    function check_public(file, target, path) {
        if (path ~ /xercesc\//) complain(file, target, "public headers do not know the parser")
        else if (path ~ /^norvask\//) check_ours(file, target, "include/" path)
        else if (target ~ /^"/) complain(file, target, "not a public header")
        else if (path ~ /\// && path != "sys/stat.h")  # of the system, as is <unistd.h>
            complain(file, target, "not a header of ours or of the standard library")
    }
    function check_source(file, target, path,    folder) {
        folder = home_of(file)
        if (path ~ /xercesc\//) {
            if (folder != "load" &&
                !(folder == "foundation" &&
                  (path ~ /^xercesc\/util\// || path == "xercesc/framework/MemoryManager.hpp")))
                complain(file, target, "not for src/" folder)
        }
        else if (path ~ /norvask\//) check_ours(file, target, "include/" path)
        else if (target ~ /^</) return
        else if (path !~ /\//) complain(file, target, "name the folder, as in \"" folder "/" path "\"")
        else check_ours(file, target, "src/" path)
    }
    BEGIN {
        split("foundation tree write load clients", order, " ")
        for (i in order) rank[order[i]] = i
        split("foundation convert.h error.h exception.h export.h wide_char_to_string.h " \
              "tree attribut.h bin_node.h document.h node.h text_node.h " \
              "write sax_writer.h " \
              "load load.h manager.h sax_attribut.h sax_handler.h", words, " ")
        for (i = 1; i in words; ++i)
            if (words[i] in rank) folder = words[i]
            else home[words[i]] = folder
    }
    NF == 1 {
        files[$1]
        if (home_of($1) == "") print $1 ": belongs to none of the folders"
        next
    }
    {
        path = substr($2, 2, length($2) - 2)
        if ($1 ~ /^include/) check_public($1, $2, path)
        else check_source($1, $2, path)
    }
END

# Prints the members of each cycle of a graph of edges, one edge a line.
cycles_of() {
    { tsort "$1" 2>&1 >/dev/null || true; } | sed -E 's/^tsort: //; s/^.*input contains a loop:$/a cycle of includes:/'
}

check_tree() {
    local root=$1 scratch files violations
    scratch=$(mktemp -d)
    : >"$scratch/units"
    : >"$scratch/folders"
    (
        cd "$root"
        find include/norvask src -type f \( -name '*.h' -o -name '*.cpp' \) | sort >"$scratch/files"
        xargs -d '\n' -r grep -HE '^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]' \
            <"$scratch/files" |
            sed -nE 's/^([^:]*):[[:space:]]*#[[:space:]]*include[[:space:]]*([<"][^">]*[">]).*/\1 \2/p' \
            >"$scratch/includes" || true
    )
    awk -v unit_edges="$scratch/units" -v folder_edges="$scratch/folders" "$RULES" \
        "$scratch/files" "$scratch/includes" >"$scratch/violations"
    cycles_of "$scratch/units" >>"$scratch/violations"
    cycles_of "$scratch/folders" >>"$scratch/violations"
    files=$(wc -l <"$scratch/files")
    violations=$(wc -l <"$scratch/violations")
    cat "$scratch/violations"
    rm -rf "$scratch"
    echo "$files files, $violations lines of violations"
    if [[ $files -eq 0 ]]; then
        echo "nothing to check under $root"
        return 1
    fi
    [[ $violations -eq 0 ]]
}

# Makes the smallest tree that keeps the rules, adds lines to files of it ("FILE LINE", any number),
# checks, and prints the number of violations.
planted() {
    local dir=$1 folder header plant
    shift
    rm -rf "$dir"
    mkdir -p "$dir/include/norvask"
    for header in exception node sax_writer manager; do
        echo '#include <string>' >"$dir/include/norvask/$header.h"
    done
    echo '#include "norvask/exception.h"' >>"$dir/include/norvask/manager.h"
    echo '#include "norvask/manager.h"' >"$dir/include/norvask/norvask.h"
    for folder in foundation tree tree/below write load; do
        mkdir -p "$dir/src/$folder"
        echo '#include <cstddef>' >"$dir/src/$folder/own.h"
        echo '#include <cstddef>' >"$dir/src/$folder/second.h"
        {
            echo '#include "norvask/exception.h"'
            echo "#include \"$folder/own.h\""
            echo '#include "foundation/second.h"'
            echo '#include <vector>'
        } >"$dir/src/$folder/own.cpp"
    done
    echo '#include "tree/below/own.h"' >>"$dir/src/tree/own.cpp"
    echo '#include <xercesc/sax2/SAX2XMLReader.hpp>' >>"$dir/src/load/own.cpp"
    echo '#include "norvask/manager.h"' >>"$dir/src/load/own.cpp"
    echo '#include <xercesc/util/XMLString.hpp>' >"$dir/src/foundation/other.cpp"
    for plant in "$@"; do
        mkdir -p "$dir/$(dirname "${plant%% *}")"
        echo "${plant#* }" >>"$dir/${plant%% *}"
    done
    check_tree "$dir" | sed -nE 's/^[1-9][0-9]* files, ([0-9]+) lines of violations$/\1/p'
}

self_test() {
    local dir=$1 failures=0 line plants found
    found=$(planted "$dir" 'src/load/own.cpp #include "write/own.h"') || true
    if [[ $found != 0 ]]; then
        echo "a tree without violations was rejected"
        failures=$((failures + 1))
    fi
    while read -r line; do
        IFS='|' read -r -a plants <<<"$line"
        found=$(planted "$dir" "${plants[@]}") || true
        if ! [[ $found =~ ^[1-9] ]]; then
            echo "not found: $line"
            failures=$((failures + 1))
        fi
    done <<'END'
include/norvask/manager.h #include <xercesc/util/XMLString.hpp>
include/norvask/manager.h #include "tree/own.h"
include/norvask/manager.h #include "../src/tree/own.h"
include/norvask/manager.h #include <boost/any.hpp>
include/norvask/manager.h #include "norvask/norvask.h"
include/norvask/exception.h #include "norvask/node.h"
include/norvask/node.h #include <norvask/manager.h>
include/norvask/stray.h #include <string>
src/foundation/own.cpp #include "tree/own.h"
src/foundation/own.cpp #include "write/own.h"
src/foundation/own.cpp #include "load/own.h"
src/foundation/own.cpp #include "norvask/node.h"
src/foundation/own.cpp #include "norvask/manager.h"
src/foundation/own.cpp #include <xercesc/sax2/SAX2XMLReader.hpp>
src/foundation/own.cpp #include "tree/below/own.h"
src/tree/own.cpp #include "write/own.h"
src/tree/own.cpp #  include "load/own.h"
src/tree/own.cpp #include <norvask/sax_writer.h>
src/tree/own.cpp #include "norvask/manager.h"
src/tree/own.cpp #include <xercesc/util/XMLString.hpp>
src/tree/below/own.cpp #include "write/own.h"
src/tree/below/own.cpp #include "norvask/manager.h"
src/tree/below/own.cpp #include "tree/own.h"
src/tree/own.cpp #include "below/own.h"
src/write/own.cpp #include "load/own.h"
src/write/own.cpp #include "norvask/manager.h"
src/write/own.cpp #include <xercesc/util/XMLString.hpp>
src/write/own.cpp #include "own.h"
src/write/own.cpp #include "../load/own.h"
src/load/own.cpp #include "norvask/missing.h"
src/load/own.cpp #include "load/missing.h"
src/load/own.cpp #include "norvask/norvask.h"
src/other/own.cpp #include <vector>
src/tree/own.h #include "tree/second.h"|src/tree/second.h #include "tree/own.h"
src/tree/own.cpp #include "tree/second.h"|src/tree/second.cpp #include "tree/own.h"
src/load/own.h #include "load/second.h"|src/load/second.cpp #include "load/third.h"|src/load/third.h #include "load/own.h"
END
    rm -rf "$dir"
    echo "self-test: $failures failures"
    [[ $failures -eq 0 ]]
}

if [[ $# -eq 2 && $1 == --self-test ]]; then
    self_test "$2"
elif [[ $# -eq 1 ]]; then
    check_tree "$1"
else
    echo "usage: $0 ROOT | --self-test DIR" >&2
    exit 2
fi
