# Turns the plain comments of a public header into the form that Doxygen reads; the headers stay as they
# are. Doxygen runs it on each header: awk -f doxygen_comments.awk HEADER.
#
# - The comment that a header begins with describes its class, or the file if it is not about a class.
#   A class without a comment of its own takes no other.
# - A comment between declarations describes all declarations up to the next blank line. Each gets
#   a copy, and where there are several, the copy ends with the names of all of them.
# - A comment behind a declaration describes that one, in addition.
# - A comment that begins with "---" is the title of a group, which lasts until the next one or the
#   end of the scope or of its access section.
# - Comments inside of functions are no documentation.
# - plain_names.txt has the texts for declarations that have none, and for those of which the shared
#   comment above them does not speak.

function trimmed(text) {
    sub(/^[ \t]+/, "", text)
    sub(/[ \t]+$/, "", text)
    return text
}

# The text as Doxygen shall see it: what looks like a command, a tag or a dash is taken literally. Code
# between back quotes is left as it is.
function quoted(text,    parts, n, i) {
    n = split(text, parts, "`")
    text = literal(parts[1])
    for (i = 2; i <= n; ++i) text = text "`" (i % 2 ? literal(parts[i]) : parts[i])
    return text
}

function literal(text) {
    gsub(/\\/, "\\\\&", text)
    gsub(/@/, "\\@", text)
    gsub(/&/, "\\\\\\&", text)
    gsub(/</, "\\<", text)
    gsub(/>/, "\\>", text)
    gsub(/#/, "\\#", text)
    gsub(/%/, "\\%", text)
    gsub(/--+/, "\\\\&", text)
    gsub(/file:,/, "<code>file:</code>,", text)  # or it becomes a link
    gsub(/"/, "\\&quot;", text)  # between quotation marks Doxygen takes escapes for text
    return text
}

function emit(text) {
    print indent "///" (text == "" ? "" : " " text)
}

# Emits the line of a comment as Markdown. What our comments set off by indentation becomes a list or
# code there; `in_list` and `in_code` tell where we are.
function emit_line(text) {
    if (text ~ /^[ \t]*$/) {
        in_list = 0
        after_blank = 1
        before = ""
        emit("")
        return
    }
    if (text ~ /^  / && text !~ /^ *- / && (in_code || after_blank)) {
        in_code = 1
        after_blank = 0
        emit((text ~ /^    / ? "" : "    ") text)
        return
    }
    in_code = 0
    if (match(text, /^`?[a-z][A-Za-z]*(, [a-z][A-Za-z]*)*`?: /) && text !~ /^deliberate: / &&
        before ~ /(^|[.:])$/) {
        if (!in_list) emit("")
        in_list = 1
        text = "- *" substr(text, 1, RLENGTH - 2) "*" substr(text, RLENGTH - 1)
        gsub(/`/, "", text)
    } else if (text ~ /^  \([0-9]/) {
        if (!in_list) emit("")
        in_list = 1
        text = "- " substr(text, 3)
    } else if (text ~ /^ *- /) {
        if (!in_list) emit("")
        in_list = 1
    } else if (in_list && text ~ /^[A-Z]/) {
        in_list = 0
        emit("")
    } else if (in_list) {
        text = "  " trimmed(text)
    }
    after_blank = 0
    before = text
    emit(quoted(text))
}

# Emits the first sentence of a comment as its short form, for lists. The whole text follows.
function emit_brief(lines_of, from, to,    i, text, rest, at, end, words) {
    text = ""
    for (i = from; i <= to && lines_of[i] !~ /^([ \t]*$|  )/; ++i) {
        text = text (text == "" ? "" : " ") lines_of[i]
    }
    rest = text
    end = 0
    # A full stop between quotation marks ends nothing, and two words say too little.
    while (match(rest, /\.( |$)/)) {
        end += RSTART
        at = substr(text, 1, end)
        if (gsub(/"/, "", at) % 2 == 0 && split(at, words, " ") > 2) {
            text = substr(text, 1, end)
            break
        }
        rest = substr(rest, RSTART + 1)
    }
    sub(/^deliberate: /, "", text)
    emit("@brief " quoted(text))
    emit("")
}

function begin_text() {
    in_list = in_code = after_blank = 0
    before = ""
}

# The line without its comment and with empty strings.
function code_of(line) {
    gsub(/"([^"\\]|\\.)*"/, "\"\"", line)
    sub(/\/\/.*/, "", line)
    return line
}

# The name that a declaration declares.
function name_of(code) {
    while (gsub(/<[^<>()]*(\([^()]*\))?[^<>()]*>/, "", code)) continue
    if (code ~ /operator\(\)/) return "operator()"
    if (code ~ /operator *[^ a-z(]+ *\(/) {
        match(code, /operator *[^ a-z(]+/)
        return substr(code, RSTART, RLENGTH)
    }
    if (code ~ /~/) {
        match(code, /~[A-Za-z0-9_]+/)
        return substr(code, RSTART, RLENGTH)
    }
    if (match(code, /[A-Za-z0-9_]+ *\(/)) {
        return trimmed(substr(code, RSTART, RLENGTH - 1))
    }
    sub(/ *[=;{].*/, "", code)
    match(code, /[A-Za-z0-9_]+ *$/)
    return trimmed(substr(code, RSTART, RLENGTH))
}

# Whether the scope that this text opens holds declarations.
function is_declarative(text) {
    gsub(/template *<[^{]*>/, "", text)
    return text ~ /(^|[^A-Za-z0-9_])(namespace|class|struct|union|extern)([^A-Za-z0-9_]|$)/ &&
           text !~ /\(/
}

function in_declarations() {
    return depth == 0 || scope[depth] == "declarations"
}

# Keeps account of the braces and of where statements end.
function walk(code,    i, c) {
    for (i = 1; i <= length(code); ++i) {
        c = substr(code, i, 1)
        if (c == "{") {
            if (in_declarations() && is_declarative(statement)) {
                scope[++depth] = "declarations"
                if (match(statement, /(class|struct) +(NORVASK_API +)?[A-Za-z0-9_]+/)) {
                    class = substr(statement, RSTART, RLENGTH)
                    sub(/.* /, "", class)
                    class_depth = depth
                }
                comments = 0
                shared = ""
            } else if (in_declarations() && statement ~ /(^|[ \t])enum([ \t]|$)/) {
                scope[++depth] = "enum"
            } else {
                scope[++depth] = "body"
            }
            statement = ""
        } else if (c == "}") {
            if (depth == group_depth && group_depth > 0) group_ends = 1
            if (depth == class_depth) class = ""
            --depth
            statement = ""
            ended_body = 1
        } else if (c == ";") {
            statement = ""
        } else {
            statement = statement c
        }
    }
    statement = statement " "
}

function end_group() {
    if (group_depth > 0) print indent "///@}"
    group_depth = 0
}

function key_of(name) {
    return (class == "" ? "" : class "::") name
}

# What a shared comment is not about, since it tells how objects are copied or made: destructors, and
# constructors without arguments.
function stands_apart(code,    name) {
    name = name_of(code)
    return name ~ /^~/ || (name == class && code ~ /\( *\)/) || key_of(name) in apart
}

# The names of all declarations up to the next blank line, if there are several that differ; `group_size` is
# how many declarations there are.
function names_ahead(from,    i, code, text, names, seen, count, level, open) {
    count = 0
    group_size = 0
    level = 0
    text = ""
    for (i = from; i <= lines && line[i] !~ /^[ \t]*$/; ++i) {
        if (line[i] ~ /^[ \t]*\/\// || line[i] ~ /^[ \t]*#/) continue
        if (line[i] ~ /^ *(public|protected|private):/) break
        code = code_of(line[i])
        if (level == 0) text = text " " trimmed(code)
        open = gsub(/{/, "{", code) - gsub(/}/, "}", code)
        level += open
        if (level == 0 && text ~ /[;}] *$/) {
            sub(/{.*/, "", text)
            ++group_size
            if (stands_apart(text)) {
                text = ""
                continue
            }
            code = name_of(text)
            if (!(code in seen)) {
                seen[code] = 1
                names = names (count++ ? ", " : "") code
            }
            text = ""
        }
    }
    return count > 1 ? names : ""
}

function emit_comment(trailing,    i) {
    if (trailing != "") {
        emit("@brief " toupper(substr(trailing, 1, 1)) quoted(substr(trailing, 2)) (trailing ~ /[.:]$/ ? "" : "."))
        emit("")
        if (comments == 0) emit(toupper(substr(trailing, 1, 1)) quoted(substr(trailing, 2)) ".")
    } else {
        emit_brief(comment, 1, comments)
    }
    begin_text()
    for (i = 1; i <= comments; ++i) emit_line(comment[i])
    if (comments > 0 && shared != "") {
        emit("")
        emit("*One text for* " quoted(shared) ".")
    }
}

BEGIN {
    names = "docs/plain_names.txt"
    while ((getline text < names) > 0) {
        if (text ~ /^#/) continue
        key = substr(text, 1, index(text, " ") - 1)
        text = substr(text, index(text, " ") + 1)
        if (sub(/^! /, "", text)) apart[key] = 1
        own[key] = text
    }
}

{ line[++lines] = $0 }

END {
    n = 1
    # The comment at the top.
    for (; line[n] ~ /^\/\//; ++n) {
        sub(/^\/\/ ?/, "", line[n])
        lead[n] = line[n]
    }
    leads = n - 1
    match(lead[1], /^C[A-Z][A-Za-z]+:/)
    about = RSTART == 1 ? substr(lead[1], 1, RLENGTH - 1) : ""
    file = FILENAME
    sub(/.*\//, "", file)
    print "/// @file " file
    if (about != "") {
        print "/// @brief Declares norvask::" about "."
        print ""
        print "/// @class norvask::" about " " file " <norvask/" file ">"
        sub(/^C[A-Z][A-Za-z]+: */, "", lead[1])
        lead[1] = toupper(substr(lead[1], 1, 1)) substr(lead[1], 2)
    }
    emit_brief(lead, 1, leads)
    for (i = 1; i <= leads; ++i) {
        # Each of these begins a paragraph.
        if (match(lead[i], /^(Role|Owner|Threads|Depth|Deriving|States|Results|Locale): /)) {
            if (i > 1) emit_line("")
            lead[i] = "**" substr(lead[i], 1, RLENGTH - 2) "**" substr(lead[i], RLENGTH - 1)
        }
        emit_line(lead[i])
    }
    print ""
    comments = 0
    for (; n <= lines; ++n) {
        text = line[n]
        match(text, /^[ \t]*/)
        indent = substr(text, 1, RLENGTH)
        if (text ~ /^[ \t]*$/) {
            if (in_declarations()) {
                comments = 0
                shared = ""
            }
            print ""
            continue
        }
        if (text ~ /^[ \t]*#/) {
            print text
            continue
        }
        if (text ~ /^[ \t]*\/\//) {
            if (!in_declarations() && scope[depth] != "enum") {
                print text
                continue
            }
            # The whole block.
            comments = 0
            for (; line[n] ~ /^[ \t]*\/\//; ++n) {
                sub(/^[ \t]*\/\/ ?/, "", line[n])
                comment[++comments] = line[n]
            }
            if (comment[1] ~ /^--- /) {
                end_group()
                sub(/^--- */, "", comment[1])
                title = comment[1]
                rest = ""
                if (match(title, /\. /)) {
                    rest = substr(title, RSTART + 2)
                    title = substr(title, 1, RSTART - 1)
                }
                sub(/\.$/, "", title)
                emit("@name " quoted(title))
                if (rest != "") emit(quoted(rest))
                begin_text()
                for (i = 2; i <= comments; ++i) emit_line(comment[i])
                print indent "///@{"
                group_depth = depth
                comments = 0
            }
            shared = comments > 0 ? names_ahead(n) : ""
            --n
            continue
        }
        if (text ~ /^ *(public|protected|private):/) {
            end_group()
            comments = 0
            print text
            walk("")
            statement = ""
            continue
        }
        code = code_of(text)
        begins = in_declarations() && statement ~ /^ *$/ && trimmed(code) !~ /^[}]/
        trailing = ""
        if (in_declarations() && text ~ /[;,{}] *\/\/ /) {
            trailing = text
            sub(/^.*[;,{}] *\/\/ */, "", trailing)
            sub(/ *\/\/ .*/, "", text)
        }
        if (begins && code !~ /namespace/) {
            key = key_of(name_of(code))
            if (key in own && (comments == 0 || key in apart)) {
                emit("@brief " quoted(own[key]))
                emit("")
                emit(quoted(own[key]))
            } else if (comments > 0 && group_size > 1 && stands_apart(code)) {
                emit(code ~ /~/ ? "@details Ends the object." : "@details Makes one.")
            } else if (comments > 0 || trailing != "") {
                emit_comment(trailing)
            }
        }
        group_ends = 0
        walk(code)
        if (group_ends) end_group()
        print text
    }
}
