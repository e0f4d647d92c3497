"""Runs in GDB: stops the program at each Stop() and writes what the views show there to a file.

Addresses become 0xN, so that the output is the same each time. What a command reports as an error
is written like its output.
"""

import os
import re

import gdb

SETTINGS = """
set pagination off
set confirm off
set width 0
set style enabled off
set charset UTF-8
set debuginfod enabled off
"""

TREES = """
print document
print nothing
print null
print root
print book
print reference
print title
print text
print binary
print children[4]
print children[5]
print derived
print attribute
print &own
print &blank
print/r &own
set charset ASCII
print text
set charset UTF-8
norvask-tree document
norvask-tree -1 book
norvask-tree -2 reference
norvask-tree derived
norvask-tree price
norvask-tree nothing
norvask-tree null
norvask-tree attribute
norvask-tree 3
norvask-tree
"""

OBJECTS = """
print *document
print *nothing
print *root
print *book
print *title
print *text
print *binary
print own
"""

OTHER_OBJECTS = """
print value
print plainValue
print other
print busy
"""

OTHERS = """
print e
print &other
print plain
print inNamespace
print first
print second
"""

LARGE = """
print wide
print deep
print many
print longText
print binary
norvask-tree -2 wide
"""

GARBAGE = """
print ended
print root
print unreadable
print unreadableDocument
print noNode
print *noNode
print noDocument
print noAttribute
print *noAttribute
print noWriter
print noException
print document
norvask-tree document
norvask-tree ended
norvask-tree unreadable
"""


written = open(os.environ["NORVASK_WRITTEN"], "w", encoding="utf-8")


def write(line):
    written.write(line + "\n")


def run(command):
    try:
        return gdb.execute(command, to_string=True)
    except gdb.error as error:
        return "error: %s\n" % error


def shown(commands):
    for command in commands.split("\n"):
        output = run(command) if command else ""
        if not command or command.startswith("set "):
            continue
        output = re.sub(r"\$\d+ = ", "", re.sub(r"0x[0-9a-f]{5,}", "0xN", output))
        write("> %s\n%s" % (command, output.rstrip("\n")))


def section(title, commands):
    """Goes on to the next stop and shows what is there."""
    run("continue" if gdb.selected_inferior().pid else "run >/dev/null")
    run("up")
    write("== %s" % title)
    shown(commands)


for setting in SETTINGS.strip().splitlines():
    run(setting)
run("break Stop")
section("trees", TREES + OBJECTS)
section("others", OTHERS + OTHER_OBJECTS)
section("large", LARGE)
lines = run("norvask-tree -1000000 deep").splitlines()
write("norvask-tree -1000000 deep: %d lines, then '%s'" % (len(lines) - 1, lines[-1]))
section("garbage", GARBAGE)
write("== end")
run("continue")
write("exit code %s" % gdb.parse_and_eval("$_exitcode"))
written.close()
