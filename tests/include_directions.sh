#!/usr/bin/env bash
# Checks who includes whom.
#
#   include_directions.sh ROOT              checks the tree at ROOT
#   include_directions.sh --self-test DIR   plants violations in copies under DIR and expects
#                                           every one of them to be found
#
# The folders of src/ build on each other in one direction only. Public headers know neither
# the parser nor anything under src/. Only the loader lets the parser read documents; the
# foundation may use its utilities (transcoding, character tables, Base64), and the tree and
# the writing of it do not know that there is a parser.
set -euo pipefail

# Which folders of src/ a folder may include. Public headers are open to all of them.
allowed_folders() {
    case $1 in
        foundation) echo "foundation" ;;
        tree) echo "foundation tree" ;;
        write) echo "foundation tree write" ;;
        load) echo "foundation tree write load" ;;
        *) return 1 ;;
    esac
}

# Prints what each include directive of a file names, with its quotes or brackets.
includes_of() {
    sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*([<"][^">]*[">]).*/\1/p' "$1"
}

violations=0
files=0

complain() {
    echo "$1: includes $2: $3"
    violations=$((violations + 1))
}

check_public_header() {
    local root=$1 file=$2 target path
    while read -r target; do
        path=${target:1:-1}
        case $target in
            *xercesc/*) complain "$file" "$target" "public headers do not know the parser" ;;
            \<norvask/*) ;;
            \"norvask/*) ;;
            \<sys/stat.h\>) ;;  # of the system, as are <unistd.h> and <fcntl.h>
            \<*/*) complain "$file" "$target" "not a header of ours or of the standard library" ;;
            \<*) ;;
            \"*) [[ -f $root/include/norvask/$path ]] ||
                complain "$file" "$target" "not a public header" ;;
        esac
    done < <(includes_of "$root/$file")
}

parser_header_allowed() {
    case $1 in
        load) true ;;
        foundation) [[ $2 == xercesc/util/* || $2 == xercesc/framework/MemoryManager.hpp ]] ;;
        *) false ;;
    esac
}

check_source() {
    local root=$1 file=$2 folder=$3 allowed=$4 target path
    while read -r target; do
        path=${target:1:-1}
        case $target in
            *xercesc/*) parser_header_allowed "$folder" "$path" ||
                complain "$file" "$target" "not for src/$folder" ;;
            *norvask/*) [[ -f $root/include/$path ]] ||
                complain "$file" "$target" "not a public header" ;;
            \<*) ;;
            \"*/*) [[ " $allowed " == *" ${path%%/*} "* ]] ||
                complain "$file" "$target" "src/$folder may include only: $allowed" ;;
            *) complain "$file" "$target" "name the folder, as in \"$folder/$path\"" ;;
        esac
    done < <(includes_of "$root/$file")
}

check_tree() {
    local root=$1 file folder allowed
    violations=0
    files=0
    while read -r file; do
        files=$((files + 1))
        check_public_header "$root" "$file"
    done < <(cd "$root" && find include/norvask -type f | sort)
    while read -r file; do
        files=$((files + 1))
        folder=${file#src/}
        folder=${folder%%/*}
        if allowed=$(allowed_folders "$folder"); then
            check_source "$root" "$file" "$folder" "$allowed"
        else
            echo "$file: no rule for this folder"
            violations=$((violations + 1))
        fi
    done < <(cd "$root" && find src -type f \( -name '*.h' -o -name '*.cpp' \) | sort)
    echo "$files files, $violations violations"
    if [[ $files -eq 0 ]]; then
        echo "nothing to check under $root"
        return 1
    fi
    [[ $violations -eq 0 ]]
}

# Makes the smallest tree that keeps the rules, adds one line to one of its files and checks.
planted() {
    local dir=$1 file=$2 line=$3 folder
    rm -rf "$dir"
    mkdir -p "$dir/include/norvask"
    echo '#include <string>' >"$dir/include/norvask/manager.h"
    for folder in foundation tree write load; do
        mkdir -p "$dir/src/$folder"
        {
            echo '#include "norvask/manager.h"'
            echo "#include \"$folder/own.h\""
            echo '#include "foundation/own.h"'
            echo '#include <vector>'
        } >"$dir/src/$folder/own.cpp"
    done
    echo '#include <xercesc/sax2/SAX2XMLReader.hpp>' >>"$dir/src/load/own.cpp"
    echo '#include <xercesc/util/XMLString.hpp>' >"$dir/src/foundation/other.cpp"
    echo "$line" >>"$dir/$file"
    check_tree "$dir" >/dev/null
}

self_test() {
    local dir=$1 failures=0 file line
    if ! planted "$dir" src/load/own.cpp '#include "write/own.h"'; then
        echo "a tree without violations was rejected"
        failures=$((failures + 1))
    fi
    while read -r file line; do
        if planted "$dir" "$file" "$line"; then
            echo "not found: $line in $file"
            failures=$((failures + 1))
        fi
    done <<'END'
include/norvask/manager.h #include <xercesc/util/XMLString.hpp>
include/norvask/manager.h #include "tree/own.h"
include/norvask/manager.h #include "../src/tree/own.h"
include/norvask/manager.h #include <boost/any.hpp>
src/foundation/own.cpp #include "tree/own.h"
src/foundation/own.cpp #include "write/own.h"
src/foundation/own.cpp #include "load/own.h"
src/foundation/own.cpp #include <xercesc/sax2/SAX2XMLReader.hpp>
src/tree/own.cpp #include "write/own.h"
src/tree/own.cpp #  include "load/own.h"
src/tree/own.cpp #include <xercesc/util/XMLString.hpp>
src/write/own.cpp #include "load/own.h"
src/write/own.cpp #include <xercesc/util/XMLString.hpp>
src/write/own.cpp #include "own.h"
src/write/own.cpp #include "../load/own.h"
src/load/own.cpp #include "norvask/missing.h"
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
