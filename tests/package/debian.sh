#!/usr/bin/env bash
# debian.sh CPACK BUILD_DIR SCRATCH CLIENT_SH CMAKE COMPILER SOURCES
#
# Makes the Debian packages, looks at what they say of themselves, unpacks both into an empty
# root, builds the client against that root, and removes what the packages' lists name: then
# nothing may be left.
set -euo pipefail
cpack=$1
build=$2
scratch=$3
client=$4
cmake=$5
compiler=$6
sources=$7
root=$scratch/root

fail() {
    echo "$*"
    exit 1
}

rm -rf "$scratch"
mkdir -p "$root"
"$cpack" --config "$build/CPackConfig.cmake" -B "$scratch/made"

one_of() {
    local found
    found=$(find "$scratch/made" -maxdepth 1 -name "$1")
    [[ -f $found ]] || fail "$1: expected one package, found '$found'" >&2
    echo "$found"
}
runtime=$(one_of 'libnorvask1642_*.deb')
development=$(one_of 'libnorvask-dev_*.deb')

# has FILE FIELD PATTERN
has() {
    local value
    value=$(dpkg-deb --field "$1" "$2")
    [[ $value =~ $3 ]] || fail "$(basename "$1") has the $2 '$value'"
}
version=$(dpkg-deb --field "$runtime" Version)
has "$runtime" Package '^libnorvask1642$'
has "$runtime" Depends 'libc6 \(.*libstdc\+\+6 \(.*libxerces-c3\.'
has "$development" Package '^libnorvask-dev$'
has "$development" Depends "^libnorvask1642 \(= ${version//./\\.}\)$"

# A script of a maintainer could leave behind what no list names.
for package in "$runtime" "$development"; do
    dpkg-deb --ctrl-tarfile "$package" | tar -t | sed 's|^\./||' >"$scratch/control"
    if grep -Ex '(pre|post)(inst|rm)' "$scratch/control"; then
        fail "$(basename "$package") has the scripts above"
    fi
done
dpkg-deb --info "$runtime" shlibs | grep -qx "libNORVASK1642 1 libnorvask1642 (>= $version)" ||
    fail "other programs' packages would not depend on the right version of the library"
dpkg-deb --info "$runtime" triggers | grep -q '^activate-noawait ldconfig$' ||
    fail "installing the library does not run ldconfig"

list() {
    dpkg-deb --fsys-tarfile "$1" | tar -t | sed 's|^\./||; /^$/d'
}
list "$runtime" >"$scratch/runtime.list"
list "$development" >"$scratch/development.list"
if sort "$scratch/runtime.list" "$scratch/development.list" | uniq -d | grep -v '/$'; then
    fail "the files above are in both packages"
fi

in_list() {
    grep -Exq "$2" "$scratch/$1.list" || fail "no file '$2' in the $1 package"
}
in_list runtime 'usr/lib/.*libNORVASK1642\.so\.1'
in_list runtime 'usr/share/doc/libnorvask1642/copyright'
in_list development 'usr/lib/.*libNORVASK1642\.so'
in_list development 'usr/lib/.*/norvaskConfig\.cmake'
in_list development 'usr/lib/.*/norvask\.pc'
in_list development 'usr/share/doc/libnorvask-dev/copyright'
in_list development 'usr/share/doc/libnorvask-dev/examples/first_steps\.cpp'
for header in "$sources"/include/norvask/*.h; do
    in_list development "usr/include/norvask/$(basename "$header" .h)\.h"
done
library=$(grep -E '/libNORVASK1642\.so\.1\.' "$scratch/runtime.list")
in_list development "usr/share/gdb/auto-load/$library-gdb\.py"

dpkg-deb --extract "$runtime" "$root"
dpkg-deb --extract "$development" "$root"
readelf -d "$root/$library" | grep -q 'SONAME.*\[libNORVASK1642\.so\.1\]' ||
    fail "$library has another soname"
if readelf -d "$root/$library" | grep -E 'RPATH|RUNPATH'; then
    fail "$library looks for other libraries in a place of its own"
fi
if grep -rlF -e "$build" -e "$sources" "$root"; then
    fail "the files above name the place where they were made"
fi

for method in find_package pkg_config; do
    "$client" "$method" "$cmake" "$compiler" 17 "$root/usr" "$scratch/client-$method"
done

# The way of dpkg: files first, then folders that are empty, from the deepest.
sort -r "$scratch/runtime.list" "$scratch/development.list" | uniq | while read -r path; do
    if [[ $path == */ ]]; then
        rmdir "$root/$path"
    else
        rm "$root/$path"
    fi
done
left=$(find "$root" -mindepth 1)
[[ -z $left ]] || fail "left behind: $left"
echo "both packages unpacked, used and removed without a trace"
