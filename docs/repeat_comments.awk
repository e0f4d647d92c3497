# A comment in a public header describes all declarations up to the next comment or blank line, but
# Doxygen takes it for the first of them only. It reads the headers through this, which repeats the
# comment for the others, and tells what a header is about that is named after its class.
/^\/\/\/ @class/ { print "/// Declares " $3 "." }
/^ *\/\/\/([^<]|$)/ {
    if (!is_comment) comment = ""
    comment = comment $0 "\n"
    is_comment = 1
    match($0, /^ */)
    depth = RLENGTH
    is_first = 1
    print
    next
}
{ is_comment = 0 }
/^ *$/ { comment = "" }
comment != "" {
    match($0, /^ */)
    if (RLENGTH == depth && $0 !~ /^ *([}#]|\/\/|[a-z]+:$)/) {
        if (!is_first && is_end) printf "%s", comment
        is_first = 0
    }
    code = $0
    sub(/ *\/\/.*/, "", code)
    is_end = code ~ /[;}]$/
}
{ print }
