#!/usr/bin/env bash
# big_documents.sh XML_OUTLINE WORK: a document of many levels needs no larger stack than a flat
# one, and a document of many elements gives no more rows than a short one.
set -euo pipefail
program=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
cd "$work"
failed=0

# expect WHAT FILE LINE...: the lines stand in the file, blanks aside.
expect() {
    local what=$1 file=$2 line
    shift 2
    tr -s ' ' <"$file" >"$file.squeezed"
    for line in "$@"; do
        if ! grep -qxF -- "$line" "$file.squeezed"; then
            echo "$what: no line \"$line\" in:"
            head -n 12 "$file"
            failed=1
        fi
    done
}

# No more levels than this: the parser looks through all open elements for the namespace of a name.
levels=20000
awk -v n=$levels 'BEGIN {
    for (i = 0; i < n; i++) printf "<d>"
    printf "end"
    for (i = 0; i < n; i++) printf "</d>"
}' >deep.xml
(ulimit -s 512 && "$program" deep.xml) >deep.txt
expect "deep" deep.txt \
    "deep.xml 20 000 paths of element names, 20 000 levels deep" \
    " level 20000 d 1 3" \
    " all 20 000 3"

awk 'BEGIN {
    printf "<list>"
    for (i = 0; i < 200000; i++) printf "<entry n=\"%d\"><name>x</name></entry>", i
    printf "</list>"
}' >wide.xml
"$program" wide.xml >wide.txt
expect "wide" wide.txt \
    "wide.xml 3 paths of element names, 3 levels deep" \
    " list 1" \
    " entry 200 000 200 000" \
    " name 200 000 200 000" \
    " all 400 001 200 000 200 000"
exit "$failed"
