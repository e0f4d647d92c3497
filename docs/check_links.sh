#!/usr/bin/env bash
# check_links.sh FOLDER: every link of the HTML pages in FOLDER to a page, a picture or a place in a
# page leads somewhere. Links to other hosts are wrong too: the manual needs none.
set -euo pipefail
cd "$1"

# All attributes "href" and "src" and all places, one a line: KIND FILE TARGET.
targets() {
    find . -name '*.html' -printf '%P\0' | sort -z | xargs -0 awk '
        {
            line = $0
            while (match(line, /(href|src|id|name)="[^"]*"/)) {
                found = substr(line, RSTART, RLENGTH)
                line = substr(line, RSTART + RLENGTH)
                kind = found
                sub(/=.*/, "", kind)
                sub(/^[a-z]*="/, "", found)
                sub(/"$/, "", found)
                gsub(/&amp;/, "\\&", found)
                print (kind == "href" || kind == "src" ? "link" : "place"), FILENAME, found
            }
        }'
}

targets | awk '
    $1 == "place" { places[$2 "#" $3] = 1 }
    $1 == "link" { links[++count] = $2 " " $3 }
    END {
        wrong = 0
        for (i = 1; i <= count; ++i) {
            split(links[i], part, " ")
            from = part[1]
            to = part[2]
            if (to ~ /^(javascript:|#$)/ || to == "") continue
            # What Doxygen writes below each page about itself.
            if (to == "https://www.doxygen.org/index.html") continue
            if (to ~ /^[a-z]+:/) {
                print from ": leads to another host: " to
                ++wrong
                continue
            }
            folder = from
            if (!sub(/[^\/]*$/, "", folder)) folder = ""
            file = to
            place = ""
            if (match(file, /#/)) {
                place = substr(file, RSTART + 1)
                file = substr(file, 1, RSTART - 1)
            }
            file = file == "" ? from : folder file
            while (sub(/[^\/]+\/\.\.\//, "", file)) continue
            if (!(file in there)) {
                there[file] = (getline line < file) >= 0
                close(file)
            }
            if (!there[file]) {
                print from ": there is no " file
                ++wrong
            } else if (place != "" && !((file "#" place) in places)) {
                print from ": there is no " file "#" place
                ++wrong
            }
        }
        print count " links looked at, " wrong " wrong"
        exit count < 100 || wrong > 0
    }'
