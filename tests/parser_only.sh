#!/usr/bin/env bash
# Runs a test program with another build of the library than the one it was linked to.
#
#   parser_only.sh LIBRARY PROGRAM [ARG...]
set -euo pipefail

library=$(realpath "$1")
program=$2
shift 2
LD_LIBRARY_PATH=$(dirname "$library")${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export LD_LIBRARY_PATH

# Else the program would pass with the wrong one.
used=$(ldd "$program" | sed -n 's/^.*libNORVASK1642[^ ]* => \([^ ]*\) .*$/\1/p')
if [[ -z $used || $(realpath "$used") != "$library" ]]; then
    echo "$program would run with '$used' instead of $library"
    exit 1
fi
exec "$program" "$@"
