# Takes from each part of an example between two lines "//! [name]" the indentation of the first of
# them, so that a snippet begins at the left. Doxygen reads the examples through this.
match($0, /^ *\/\/! \[/) {
    if (inside) {
        sub(/^ */, "")
        inside = 0
    } else {
        indent = RLENGTH - 5
        sub(/^ */, "")
        inside = 1
    }
    print
    next
}
inside {
    match($0, /^ */)
    print substr($0, (RLENGTH < indent ? RLENGTH : indent) + 1)
    next
}
{ print }
