#!/usr/bin/env bash
# readme_snippets.sh ROOT: every C++ block of ROOT/README.md is the part of an example in
# ROOT/examples/*.cpp between the lines "// [mark]" and "// [/mark]", word for word, so that the
# README shows only what is compiled and run. There must be at least one such block.
#
# readme_snippets.sh --self-test WORK: tries this script on projects made up in the directory WORK.
set -euo pipefail

# Writes the blocks of a README to files: blocks OUT README.
blocks() {
    awk -v out="$1" '
        !inside && /^```cpp *$/ { inside = 1; file = out "/block" ++n; printf "" >file; next }
        inside && /^``` *$/ { inside = 0; close(file); next }
        inside { print >file }
        END { if (inside) { print "README.md: a block does not end"; exit 1 } }' "$2"
}

# Writes the marked parts of the examples to files: parts OUT SOURCE...
parts() {
    awk -v out="$1" '
        /^ *\/\/ \[\/.*\]$/ { inside = 0; close(file); next }
        /^ *\/\/ \[.*\]$/ { inside = 1; file = out "/part" ++n; printf "" >file; next }
        inside { print >file }' "${@:2}"
}

check() {
    local root=$1 failed=0 block part same
    local work
    work=$(mktemp -d)
    # The path is wanted now: the variable is gone when the trap runs.
    # shellcheck disable=SC2064
    trap "rm -rf '$work'" RETURN
    blocks "$work" "$root/README.md" || return 1
    parts "$work" "$root"/examples/*.cpp || return 1
    if [[ ! -e $work/block1 ]]; then
        echo "README.md shows no C++ at all"
        return 1
    fi
    for block in "$work"/block*; do
        same=no
        for part in "$work"/part*; do
            if [[ -s $part ]] && cmp -s "$block" "$part"; then
                same=yes
            fi
        done
        if [[ $same == no ]]; then
            echo "README.md: ${block##*/} is in none of the examples:"
            diff -u "$block" "$work/part1" || true
            failed=1
        fi
    done
    return "$failed"
}

self_test() {
    local work=$1 failed=0
    # project NAME BLOCK: an example with one marked part, a README with one block.
    project() {
        rm -rf "${work:?}/$1"
        mkdir -p "$work/$1/examples"
        printf '%s\n' 'int unmarked;' '// [steps]' 'int a;' '' 'int b;' '// [/steps]' \
            >"$work/$1/examples/steps.cpp"
        printf '%b' "$2" >"$work/$1/README.md"
    }
    # wanted CODE NAME
    wanted() {
        local code=0
        check "$work/$2" >"$work/$2/printed" || code=1
        if [[ $code -ne $1 ]]; then
            echo "$2: $code instead of $1"
            cat "$work/$2/printed"
            failed=1
        fi
    }
    project same '# A\n```cpp\nint a;\n\nint b;\n```\n'
    project changed '# A\n```cpp\nint a;\n\nint c;\n```\n'
    project shorter '# A\n```cpp\nint a;\n```\n'
    project longer '# A\n```cpp\nint a;\n\nint b;\n\n```\n'
    project second_differs '# A\n```cpp\nint a;\n\nint b;\n```\n```cpp\nint unmarked;\n```\n'
    project empty '# A\n```cpp\n```\n'
    project none '# A\n```sh\nint a;\n```\n'
    project endless '# A\n```cpp\nint a;\n\nint b;\n'
    wanted 0 same
    wanted 1 changed
    wanted 1 shorter
    wanted 1 longer
    wanted 1 second_differs
    wanted 1 empty
    wanted 1 none
    wanted 1 endless
    return "$failed"
}

if [[ $1 == --self-test ]]; then
    self_test "$2"
else
    check "$1"
fi
