# What a program printed on a terminal, as a picture. Run it with LC_ALL=C: it looks at bytes.
#
# Each run of text in one colour gets the place and the width that it has on the terminal, whatever
# font shows it.

function escaped(text) {
    gsub(/&/, "\\&amp;", text)
    gsub(/</, "\\&lt;", text)
    gsub(/>/, "\\&gt;", text)
    return text
}

# In columns: two for a character of East Asia, which is what the longer ones here are.
function width(text) {
    gsub(/[\343-\355][\200-\277][\200-\277]/, "ww", text)
    gsub(/[\200-\277]/, "", text)
    return length(text)
}

function run(text) {
    while (sub(/^ /, "", text)) ++column
    if (text != "") {
        gsub(/ /, "\302\240", text)  # blanks that are kept
        picture = picture sprintf("<text x=\"%.1f\" y=\"%d\" textLength=\"%.1f\"%s>%s</text>\n",
            16 + column * 8.4, 12 + NR * 20, width(text) * 8.4, style, escaped(text))
    }
    column += width(text)
    if (column > widest) widest = column
}

# TABs are eight columns wide.
function show(text,    at) {
    while ((at = index(text, "\t")) > 0) {
        run(substr(text, 1, at - 1))
        column += 8 - column % 8
        text = substr(text, at + 1)
    }
    run(text)
}

BEGIN {
    split("0 1 2 31 32 33 36 1;31 1;32", codes, " ")
    split(",b,f,r,g,y,c,b r,b g", classes, ",")
    for (i in codes) {
        if (classes[i] != "") styles[codes[i]] = " class=\"" classes[i] "\""
    }
}

{
    column = 0
    style = ""
    line = $0
    while (match(line, /\033\[[0-9;]*m/)) {
        show(substr(line, 1, RSTART - 1))
        code = substr(line, RSTART + 2, RLENGTH - 3)
        style = styles[code]
        line = substr(line, RSTART + RLENGTH)
    }
    show(line)
}

END {
    w = 32 + widest * 8.4
    h = 26 + NR * 20
    printf "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" ", w, h
    printf "viewBox=\"0 0 %d %d\">\n", w, h
    print "<style>"
    print "text { font: 14px \"DejaVu Sans Mono\", \"Liberation Mono\", Consolas, Menlo, monospace;"
    print "    fill: #e6e9ef; }"
    print ".b { font-weight: bold; } .f { fill: #8b95a5; } .r { fill: #ff7b72; }"
    print ".g { fill: #7ee787; } .y { fill: #e3b341; } .c { fill: #79c0ff; }"
    print "</style>"
    printf "<rect width=\"%d\" height=\"%d\" rx=\"6\" fill=\"#1c2430\"/>\n", w, h
    printf "%s</svg>\n", picture
}
