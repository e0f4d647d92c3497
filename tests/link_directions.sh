#!/usr/bin/env bash
# Checks who needs whom when the library is linked: what include_directions.sh says of includes,
# said of functions and data. A declaration in a low folder may be defined in a high one, and no
# include tells.
#
#   link_directions.sh OBJECT...         checks the object files; each has its folder of src/ in
#                                        its path, as in ".../tree/node.cpp.o"
#   link_directions.sh --self-test DIR   compiles violations under DIR and expects every one of
#                                        them to be found
set -euo pipefail
export LC_ALL=C

# What a lower folder may name of a higher one. These are virtual operations of public classes of
# the tree: their places in the virtual tables, which nobody may move, name them, while their
# subject is writing. A line that nothing needs is a violation too.
ALLOWED=(
    'norvask::CXMLBinNode::Save('
    'norvask::CXMLDocument::Save('
    'norvask::CXMLNode::Save('
    'norvask::CXMLTextNode::Save('
)

# Reads lines of an object file, the kind of a symbol and the symbol; those that define come first.
# A symbol that several objects define belongs to the lowest folder among them.
read -r -d '' RULES <<'END' || true
    function folder_of(object,    count, part, i) {
        count = split(object, part, "/")
        for (i = count - 1; i > 0; --i) if (part[i] in rank) return part[i]
        print object ": in none of the folders"
        return ""
    }
    BEGIN {
        split("foundation tree write load gdb", order, " ")  # gdb/layout.cpp reads all of them
        for (i in order) rank[order[i]] = i
    }
    {
        folder = folder_of($1)
        if ($2 == "U") {
            if (rank[home[$3]] > rank[folder]) print $1 ": " folder " needs " home[$3] ": " $3
        }
        else if ($2 ~ /[A-Zu]/ && (!($3 in home) || rank[folder] < rank[home[$3]])) home[$3] = folder
    }
END

check() {
    local scratch violations allowed
    scratch=$(mktemp -d)
    {
        nm -A -P --defined-only "$@"
        nm -A -P --undefined-only "$@"
    } | sed -E 's/^(.*): ([^ ]+) (.).*/\1 \3 \2/' | awk "$RULES" | c++filt >"$scratch/found"
    for allowed in "${ALLOWED[@]}"; do
        if ! grep -qF -- ": $allowed" "$scratch/found"; then
            echo "nothing needs what is allowed: $allowed" >>"$scratch/violations"
        fi
    done
    for allowed in "${ALLOWED[@]}"; do
        echo ": $allowed"
    done >"$scratch/allowed"
    grep -vF -f "$scratch/allowed" "$scratch/found" >>"$scratch/violations" || true
    violations=$(wc -l <"$scratch/violations")
    cat "$scratch/violations"
    rm -rf "$scratch"
    echo "$# objects, $violations violations"
    [[ $violations -eq 0 ]]
}

# Compiles one object for each folder of the lines "FOLDER CODE" and prints the number of
# violations.
planted() {
    local dir=$1 line file
    shift
    rm -rf "$dir"
    local objects=()
    for line in "$@"; do
        file=$dir/${line%% *}/own
        mkdir -p "$(dirname "$file")"
        echo "${line#* }" >"$file.cpp"
        c++ -c -o "$file.cpp.o" "$file.cpp"
        objects+=("$file.cpp.o")
    done
    check "${objects[@]}" | sed -nE 's/^[1-9][0-9]* objects, ([0-9]+) violations$/\1/p'
}

self_test() {
    local dir=$1 failures=0 expected line code found
    while IFS=: read -r expected line; do
        IFS='|' read -r -a code <<<"$line"
        found=$(planted "$dir" "${code[@]}") || true
        if [[ $found != "$expected" ]]; then
            echo "found $found violations, not $expected: $line"
            failures=$((failures + 1))
        fi
    done <<'END'
0:tree void low(); void f() { low(); }|foundation void low() {}|load void low(); void g() { low(); }
1:tree void high(); void f() { high(); }|load void high() {}
1:foundation extern int high; int f() { return high; }|tree int high;
1:tree/below void high(); void f() { high(); }|write void high() {}
1:foundation struct A { virtual void high(); virtual ~A(); }; A::~A() {}|write struct A { virtual void high(); virtual ~A(); }; void A::high() {}
0:tree template <class T> void t() {} template void t<int>();|load template <class T> void t() {} template void t<int>();|write template <class T> void t(); void f() { t<int>(); }
1:foundation void unknown(); void f() { unknown(); }|elsewhere int x;
END
    ALLOWED=('high()')
    found=$(planted "$dir" 'tree void high(); void f() { high(); }' 'load void high() {}') || true
    if [[ $found != 0 ]]; then
        echo "found what is allowed"
        failures=$((failures + 1))
    fi
    found=$(planted "$dir" 'tree void f() {}') || true
    if [[ $found != 1 ]]; then
        echo "did not find that what is allowed is not needed"
        failures=$((failures + 1))
    fi
    rm -rf "$dir"
    echo "self-test: $failures failures"
    [[ $failures -eq 0 ]]
}

if [[ $# -eq 2 && $1 == --self-test ]]; then
    ALLOWED=()
    self_test "$2"
elif [[ $# -ge 1 && $1 != -* ]]; then
    check "$@"
else
    echo "usage: $0 OBJECT... | --self-test DIR" >&2
    exit 2
fi
