#!/usr/bin/env bash
# colours.sh EDIT_CATALOG WORK: colours appear on a terminal and nowhere else, and not with
# NO_COLOR. It also runs the program as "./dev demo" does, without arguments.
set -euo pipefail
program=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
export TMPDIR=$work TERM=xterm-256color
unset NO_COLOR
failed=0

# check WANTED FILE WHAT: whether the file has escape sequences.
check() {
    local found=no
    if grep -q $'\x1b' "$2"; then
        found=yes
    fi
    if [[ $found != "$1" ]] || ! grep -q 'BK-1377' "$2"; then
        echo "$3: colours wanted: $1, found: $found; output:"
        cat "$2"
        failed=1
    fi
}

# "script" gives the program a terminal.
script --quiet --return --command "'$program'" /dev/null >"$work/terminal" </dev/null
check yes "$work/terminal" "on a terminal"

NO_COLOR=1 script --quiet --return --command "'$program'" /dev/null >"$work/refused" </dev/null
check no "$work/refused" "on a terminal with NO_COLOR"

TERM=dumb script --quiet --return --command "'$program'" /dev/null >"$work/dumb" </dev/null
check no "$work/dumb" "on a dumb terminal"

"$program" >"$work/pipe"
check no "$work/pipe" "into a file"

saved=("$work"/catalog-*.xml)
if [[ ${#saved[@]} -ne 4 || ! -s ${saved[0]} ]]; then
    echo "four runs without a name for the output must leave four new files, not: ${saved[*]}"
    failed=1
fi
exit "$failed"
