#!/usr/bin/env bash
# pictures.sh [--update] XML_OUTLINE WORK: the pictures of the manual, docs/pictures/*.svg, show
# what the program prints on a terminal. They are made anew in the folder WORK and compared with
# those that are there, or with --update take their place.
set -euo pipefail
update=no
if [[ $1 == --update ]]; then
    update=yes
    shift
fi
program=$(realpath "$1")
work=$2
docs=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

rm -rf "$work"
mkdir -p "$work"
cp "$docs"/../examples/*.xml "$docs"/../examples/*.xsd "$work"
cd "$work"
sed '0,/<.bk:title>/s//<\/bk:titles>/' catalog.xml >misspelt.xml
export TERM=xterm-256color LC_ALL=C.UTF-8
unset NO_COLOR
failed=0

# picture NAME ARGUMENT...: the command line and what it prints. "script" makes the terminal.
picture() {
    local name=$1
    shift
    printf '\e[2m$\e[0m xml_outline %s\n' "$*" >"$name.txt"
    script --quiet --return --command "stty cols 88 tabs; '$program' $*" /dev/null </dev/null |
        tr -d '\r' >>"$name.txt" || true
    LC_ALL=C awk -f "$docs/picture.awk" "$name.txt" >"$name.svg"
    if [[ $update == yes ]]; then
        cp "$name.svg" "$docs/pictures"
    elif ! diff "$docs/pictures/$name.svg" "$name.svg"; then
        echo "$name: the program prints something else. If that is right: docs/pictures.sh --update"
        failed=1
    fi
}

picture invalid --schema orders.xsd orders.xml
picture malformed misspelt.xml
picture untrusted --untrusted upload.xml
exit "$failed"
