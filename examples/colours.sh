#!/usr/bin/env bash
# colours.sh EDIT_CATALOG XML_OUTLINE WORK: colours appear on a terminal and nowhere else, and not
# with NO_COLOR. It also runs the first program as "./dev demo" does, without arguments.
set -euo pipefail
program=$1
outline=$2
work=$3

rm -rf "$work"
mkdir -p "$work"
export TMPDIR=$work TERM=xterm-256color
unset NO_COLOR
failed=0

# check WANTED FILE WHAT [WORD]: whether the file has escape sequences.
check() {
    local found=no
    if grep -q $'\x1b' "$2"; then
        found=yes
    fi
    if [[ $found != "$1" ]] || ! grep -q "${4-BK-1377}" "$2"; then
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

# Errors have an output of their own.
printf '<list>\n' >"$work/open.xml"
errors="'$outline' '$work/open.xml'"
script --quiet --command "$errors >'$work/nothing'" /dev/null >"$work/errors" </dev/null
check yes "$work/errors" "errors on a terminal, output into a file" 'fatal error'
script --quiet --command "$errors 2>'$work/errors'" /dev/null >"$work/nothing" </dev/null
check no "$work/errors" "errors into a file, output on a terminal" 'fatal error'

saved=("$work"/catalog-*.xml)
if [[ ${#saved[@]} -ne 4 || ! -s ${saved[0]} ]]; then
    echo "four runs without a name for the output must leave four new files, not: ${saved[*]}"
    failed=1
fi
exit "$failed"
