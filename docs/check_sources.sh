#!/usr/bin/env bash
# check_sources.sh ROOT: what can be said about the pages of the manual without building them:
#   - every snippet that they show is in its example, once, between two lines "//! [name]", and no
#     such part of an example is left out;
#   - they show no C++ other than that;
#   - every link to a file leads to one, and every page can be reached from docs/index.md;
#   - the table of docs/null_and_empty.md is what its example prints;
#   - every public header begins with "/// @file", or the manual would leave out its functions.
#
# check_sources.sh --self-test WORK: tries this script on manuals made up in the folder WORK.
set -euo pipefail

failed=0

wrong() {
    echo "$*"
    failed=1
}

check_snippets() {
    local page line file name count
    for page in docs/*.md; do
        while read -r line; do
            file=$(cut -d ' ' -f 2 <<<"$line")
            name=$(cut -d ' ' -f 3- <<<"$line")
            if [[ ! -e examples/$file ]]; then
                wrong "$page: there is no examples/$file"
                continue
            fi
            count=$(grep -cx " *//! \[$name\]" "examples/$file" || true)
            if [[ $count -ne 2 ]]; then
                wrong "$page: examples/$file has $count lines \"//! [$name]\", not 2"
            fi
        done < <(grep -E '^\\snippet ' "$page" || true)
        if grep -n -E '^ *(```|~~~) *\{?\.?(cpp|c\+\+)' "$page"; then
            wrong "$page: has C++ that is in no example"
        fi
    done
    for file in examples/manual/*.cpp; do
        while read -r name; do
            if ! grep -qxF "\\snippet ${file#examples/} $name" docs/*.md; then
                wrong "$file: no page shows [$name]"
            fi
        done < <(sed -n 's|^ *//! \[\(.*\)\]$|\1|p' "$file" | sort -u)
    done
}

# Prints the files that a page links to.
links() {
    grep -o '](\([^)]*\))' "$1" | sed 's/^](//; s/)$//; s/#.*//' | grep -v '^$' | sort -u || true
}

check_links() {
    local page link
    declare -A reached=([index.md]=1)
    local open=(index.md)
    while [[ ${#open[@]} -gt 0 ]]; do
        page=${open[0]}
        open=("${open[@]:1}")
        while read -r link; do
            if [[ ! -e docs/$link ]]; then
                wrong "docs/$page: there is no docs/$link"
            elif [[ $link == *.md && -z ${reached[$link]-} ]]; then
                reached[$link]=1
                open+=("$link")
            fi
        done < <(links "docs/$page")
    done
    for page in docs/*.md; do
        if [[ -z ${reached[${page#docs/}]-} ]]; then
            wrong "$page: no way leads there from docs/index.md"
        fi
    done
}

check_table() {
    if ! diff <(grep '^|' docs/null_and_empty.md) \
        <(grep '^|' examples/expected/manual_null_and_empty.txt); then
        wrong "docs/null_and_empty.md: the table is not what its example prints"
    fi
}

check_headers() {
    local header
    for header in include/norvask/*.h; do
        if [[ $(head -n 1 "$header") != '/// @file' ]] && ! grep -qw "$header" docs/Doxyfile; then
            wrong "$header: has no \"/// @file\" at the top, and docs/Doxyfile does not exclude it"
        fi
    done
}

check() {
    cd "$1"
    check_snippets
    check_links
    check_table
    check_headers
    return "$failed"
}

self_test() {
    local work=$1 result=0
    # manual NAME: one that is right.
    manual() {
        local root=$work/$1
        rm -rf "$root"
        mkdir -p "$root/docs" "$root/examples/manual" "$root/examples/expected" \
            "$root/include/norvask"
        printf '%s\n' 'void f() {' '    //! [part]' '    int a;' '    //! [part]' '}' \
            >"$root/examples/manual/a.cpp"
        printf '%s\n' '# A' '\snippet manual/a.cpp part' '[B](b.md#x) and [N](null_and_empty.md)' \
            >"$root/docs/index.md"
        printf '%s\n' '# B' '[A](index.md)' >"$root/docs/b.md"
        printf '%s\n' '# N' '| a | b |' >"$root/docs/null_and_empty.md"
        printf '%s\n' '| a | b |' 'exit code: 0' \
            >"$root/examples/expected/manual_null_and_empty.txt"
        echo 'EXCLUDE = include/norvask/inner.h' >"$root/docs/Doxyfile"
        echo '// Internal.' >"$root/include/norvask/inner.h"
        printf '%s\n' '/// @file' '/// @class CThing' >"$root/include/norvask/thing.h"
    }
    # wanted CODE NAME
    wanted() {
        local code=0
        (check "$work/$2") >"$work/$2.printed" 2>&1 || code=1
        if [[ $code -ne $1 ]]; then
            echo "$2: $code instead of $1"
            cat "$work/$2.printed"
            result=1
        fi
    }
    manual right
    wanted 0 right
    manual no_file
    echo '\snippet manual/b.cpp part' >>"$work/no_file/docs/b.md"
    wanted 1 no_file
    manual no_tag
    echo '\snippet manual/a.cpp other part' >>"$work/no_tag/docs/b.md"
    wanted 1 no_tag
    manual open_tag
    sed -i '4d' "$work/open_tag/examples/manual/a.cpp"
    wanted 1 open_tag
    manual unshown
    printf '%s\n' '//! [more]' 'int b;' '//! [more]' >>"$work/unshown/examples/manual/a.cpp"
    wanted 1 unshown
    manual own_code
    printf '%s\n' '```cpp' 'int c;' '```' >>"$work/own_code/docs/b.md"
    wanted 1 own_code
    manual broken_link
    echo '[C](c.md)' >>"$work/broken_link/docs/b.md"
    wanted 1 broken_link
    manual alone
    echo '# Alone' >"$work/alone/docs/alone.md"
    wanted 1 alone
    manual other_table
    echo '| c | d |' >>"$work/other_table/docs/null_and_empty.md"
    wanted 1 other_table
    manual left_out
    echo '// A thing.' >"$work/left_out/include/norvask/thing.h"
    wanted 1 left_out
    return "$result"
}

if [[ $1 == --self-test ]]; then
    mkdir -p "$2"
    self_test "$2"
else
    check "$1"
fi
