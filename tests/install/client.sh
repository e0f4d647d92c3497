#!/usr/bin/env bash
# client.sh METHOD CMAKE COMPILER STANDARD NORVASK WORK
#
# Builds the programs in client/ in the directory WORK and runs them. METHOD is find_package,
# pkg_config or, for a static library, pkg_config_static, with NORVASK the prefix of an
# installation, or add_subdirectory, with NORVASK the root of the sources.
set -euo pipefail
method=$1
cmake=$2
compiler=$3
standard=$4
norvask=$5
work=$6
client=$(dirname "${BASH_SOURCE[0]}")/client
warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Werror)

if ! command -v "$compiler" >/dev/null; then
    echo "$compiler is not installed"
    exit 1
fi
rm -rf "$work"
mkdir -p "$work"

configure() {
    "$cmake" -S "$client" -B "$work/build" -G Ninja \
        -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_STANDARD="$standard" -DCLIENT_WARNINGS="$(IFS=';' && echo "${warnings[*]}")" \
        "$@"
}

programs=(main writer early)

# run_in DIRECTORY
run_in() {
    local program
    for program in "${programs[@]}"; do
        echo "$program:"
        "$1/$program"
    done
}

case $method in
    find_package)
        # A client needs no parser: looking for it is switched off.
        configure -DCMAKE_PREFIX_PATH="$norvask" -DCMAKE_DISABLE_FIND_PACKAGE_XercesC=ON
        "$cmake" --build "$work/build"
        run_in "$work/build"
        ;;
    add_subdirectory)
        configure -DCLIENT_NORVASK_SOURCES="$norvask"
        "$cmake" --build "$work/build" --parallel 2
        run_in "$work/build"
        if [[ -n $(find "$work/build" -name '*norvask*tests*') ]]; then
            echo "a subdirectory of another project must not build its tests by itself"
            exit 1
        fi
        ;;
    pkg_config | pkg_config_static)
        options=(--cflags --libs)
        if [[ $method == pkg_config_static ]]; then
            options+=(--static)
        fi
        pc=$(find "$norvask" -name norvask.pc)
        libdir=$(dirname "$(dirname "$pc")")
        printed=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config "${options[@]}" 'norvask >= 1.0')
        echo "pkg-config: $printed"
        read -ra flags <<<"$printed"
        for program in "${programs[@]}"; do
            "$compiler" -std="c++$standard" "${warnings[@]}" "$client/$program.cpp" \
                -o "$work/$program" "${flags[@]}"
        done
        export LD_LIBRARY_PATH=$libdir
        run_in "$work"
        ;;
    *)
        echo "unknown method: $method"
        exit 2
        ;;
esac
