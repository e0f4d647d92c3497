"""Shows Norvask's documents, nodes, attributes, exceptions and writers in GDB.

    print node                what a pointer leads to, as a line of XML
    print *node               an object, with its children below it
    norvask-tree node         the tree below a node or in a document: three levels of it
    norvask-tree -9 node      nine levels

Nothing here calls a function of the program or needs the library's debug information: objects are
read by the table that layout.cpp leaves in the library's file. Few words of each object are read,
so huge trees and long texts print at once.
"""

import codecs
import itertools
import re

import gdb
import gdb.printing

NAMESPACE = "norvask::"

# What one line shows.
SHOWN_CHARACTERS = 60
SHOWN_ATTRIBUTES = 6
SHOWN_BYTES = 16
SHOWN_OPEN_ELEMENTS = 8

# What norvask-tree shows.
TREE_LEVELS = 3
TREE_CHILDREN = 20
TREE_LINES = 200


class NoObject(Exception):
    """There is no object where a pointer leads to."""


UNREADABLE = (NoObject, gdb.MemoryError, OverflowError)

layout = {}


def entry(name):
    """The offset and the size of a field, or a value and 0."""
    if not layout:
        files = [part.filename for part in gdb.objfiles() if "NORVASK1642" in str(part.filename)]
        # The last one is the program, which may have the static library.
        for file in files + [gdb.current_progspace().filename]:
            try:
                with open(str(file), "rb") as library:
                    table = re.findall(rb"norvask-layout (\S+) (\d+) (\d+)\n", library.read())
            except OSError:
                continue
            layout.update((key.decode(), (int(at), int(size))) for key, at, size in table)
            if layout:
                break
    if name not in layout:
        raise NoObject("the file of the library has no table")
    return layout[name]


def value(name):
    return entry(name)[0]


def read(address, count):
    return bytes(gdb.selected_inferior().read_memory(address, count))


def number(address, size):
    return int.from_bytes(read(address, size), "big" if value("target.big_endian") else "little")


def field(address, name):
    """A field of the structure at an address."""
    offset, size = entry(name)
    return number(address + offset, size)


def slots(address, count):
    """The pointers of an array, read one by one."""
    size = value("target.pointer")
    return (number(address + index * size, size) for index in range(count))


def text_at(address, limit=SHOWN_CHARACTERS):
    """The bytes up to the terminator or the limit, and whether that was the end."""
    found = b""
    while len(found) <= limit:
        # Never across a page that may not be there.
        part = read(address, 256 - address % 256)
        address += len(part)
        found += part.split(b"\0")[0]
        if b"\0" in part:
            break
    return found[:limit], len(found) <= limit


def printable(found, quote=""):
    """The bytes of a text as something that can be printed on any terminal."""
    text, whole = found
    shown = ""
    # A character that the limit has cut in two goes.
    for character in codecs.getincrementaldecoder("utf-8")("surrogateescape").decode(text, whole):
        if character in "\n\r\t\\":
            shown += repr(character)[1:-1]
        elif character == quote:
            shown += "\\" + character
        elif character.isprintable():
            shown += character
        else:
            code = ord(character)
            if 0xDC80 <= code <= 0xDCFF:  # a byte that is not UTF-8
                code -= 0xDC00
            shown += "\\x%02x" % code if code < 256 else "\\u%04x" % code
    try:
        for charset in (gdb.host_charset(), gdb.target_charset()):
            shown.encode(charset)
    except (AttributeError, LookupError, UnicodeError):
        shown = shown.encode("ascii", "backslashreplace").decode("ascii")
    return shown + ("" if whole else "...")


def quoted(found):
    return '"' + printable(found, '"') + '"'


def count_of(count, noun, plural):
    return "%d %s" % (count, noun if count == 1 else plural)


def class_of(address):
    """The name of the class of an object with a virtual table."""
    table = next(slots(address, 1))
    symbol = gdb.execute("info symbol %d" % table, to_string=True)
    if "vtable for " not in symbol:
        raise NoObject("no object here, or no longer")
    return symbol.split("vtable for ", 1)[1].split(" + ")[0].split(" in section")[0].strip()


def tree_string(address):
    """A string of a tree: its tag leads to the page in which it lies."""
    tag = address - value("string.bytes")
    if not field(tag, "string.flags") & value("string.constant"):
        distance = field(tag, "string.distance") * value("page.unit")
        page = tag - distance
        reach = field(page, "page.bytes") + value("page.header")
        if not 0 < distance <= reach or field(page, "page.retained") == 0:
            raise NoObject("no string here, or no longer")
    return text_at(address)


class View:
    """What is shown of an object: a line, and the children below it."""

    def __init__(self, address):
        self.address = address

    def children(self):
        return iter(())


class Attribute(View):
    """A CXMLAttribut."""

    def line(self):
        name = field(self.address, "attribute.name") & ~value("attribute.bits")
        text = field(self.address, "attribute.value")
        return printable(tree_string(name)) + "=" + quoted(tree_string(text))


class Node(View):
    """A CXMLNode of any kind."""

    def __init__(self, address):
        super().__init__(address)
        self.class_name = class_of(address)
        self.body = field(address, "object.body") & ~value("object.bits")
        self.kind = field(self.body, "node.kind")
        # A body knows its page, a page its tree, and a tree its first page and its owners.
        page = self.body - field(self.body, "node.distance") * value("page.unit")
        tree = field(page, "page.tree")
        lives = self.kind in map(value, ("node.element", "node.text", "node.binary"))
        if not lives or field(self.body, "node.owners") == 0 or field(tree, "tree.owners") == 0 or \
                field(field(tree, "tree.first_page"), "page.tree") != tree:
            raise NoObject("no node here, or no longer")

    def child_array(self):
        """The address of the first slot, and the number of children."""
        if self.kind != value("node.element"):
            return 0, 0
        if field(self.body, "node.flags") & value("element.has_array"):
            used = field(self.body, "element.children_used")
            return field(self.body, "element.children"), used - 1
        inside = self.body + value("element.one_child")
        return inside, 0 if next(slots(inside, 1)) == 0 else 1

    def child_nodes(self):
        return slots(*self.child_array())

    def attributes(self):
        array = field(self.body, "element.attributes")
        if array == 0:
            return ""
        count = field(array, "attributes.used") - 1
        shown = slots(array + value("attributes.slots"), min(count, SHOWN_ATTRIBUTES))
        more = count - SHOWN_ATTRIBUTES
        return "".join(" " + Attribute(attribute).line() for attribute in shown) + (
            " and %d more" % more if more > 0 else "")

    def text(self):
        return tree_string(field(self.body, "text.text"))

    def lone_text(self):
        """The text of an element with one child, a text; None for every other node."""
        if self.child_array()[1] != 1:
            return None
        try:
            child = Node(next(self.child_nodes()))
            return child.text() if child.kind == value("node.text") else None
        except UNREADABLE:
            return None

    def element_line(self):
        name = printable(tree_string(field(self.body, "element.name")))
        tag = "<" + name + self.attributes()
        _, count = self.child_array()
        if count == 0:
            return tag + "/>"
        text = self.lone_text()
        if text is not None:
            return tag + ">" + printable(text) + "</" + name + ">"
        return tag + "> with " + count_of(count, "child", "children")

    def binary_line(self):
        data, length = field(self.body, "binary.data"), field(self.body, "binary.length")
        if length == 0 or data == 0:
            return "0 bytes"
        shown = read(data, min(length, SHOWN_BYTES)).hex(" ")
        more = " ..." if length > SHOWN_BYTES else ""
        return count_of(length, "byte", "bytes") + ": " + shown + more

    def line(self):
        if self.kind == value("node.element"):
            shown = self.element_line()
        elif self.kind == value("node.text"):
            shown = quoted(self.text())
        else:
            shown = self.binary_line()
        derived = not self.class_name.startswith(NAMESPACE)
        return self.class_name + " " + shown if derived else shown

    def children(self):
        for index, child in enumerate(self.child_nodes()):
            yield "[%d]" % index, pointer_line(Node, child)


class Document(View):
    """A CXMLDocument."""

    def __init__(self, address):
        super().__init__(address)
        class_of(address)
        self.body = field(address, "document.body")
        if field(self.body, "document.owners") == 0:
            raise NoObject("no document here, or no longer")
        self.root = field(self.body, "document.root")

    def line(self):
        if self.root == 0:
            return "document without a root" + self.reference(" and ")
        return "document " + line_of(Node, self.root) + self.reference(", ")

    def reference(self, before):
        name, path = field(self.body, "document.dtd_name"), field(self.body, "document.dtd_path")
        if name == 0 or path == 0:
            return ""
        return before + "DTD " + printable(text_at(name)) + " in " + quoted(text_at(path))

    def children(self):
        if self.root != 0:
            yield "root", pointer_line(Node, self.root)


class XmlException(View):
    def line(self):
        class_of(self.address)
        identifier = field(self.address, "exception.id")
        identifier -= 1 << 32 if identifier >= 1 << 31 else 0
        message = text_at(field(self.address, "exception.message"), 400)
        return "exception %d: %s" % (identifier, quoted(message))


class SaxAttribute(View):
    def line(self):
        class_of(self.address)
        uri, name, text = (text_at(field(self.address, "event." + part))
                           for part in ("uri", "name", "value"))
        shown = printable(name) + "=" + quoted(text)
        return shown + " in " + quoted(uri) if uri[0] else shown


class SaxWriter(View):
    def line(self):
        class_of(self.address)
        body = field(self.address, "writer.body")
        if field(body, "writer.stream") == 0:
            return "writer without a document"
        innermost = itertools.islice(self.names(body), SHOWN_OPEN_ELEMENTS)
        names = [printable(name) for name in innermost]
        path = "/".join(reversed(names))
        more = ".../" if len(names) == SHOWN_OPEN_ELEMENTS else ""
        file_name = field(body, "writer.file_name")
        target = "a stream" if file_name == 0 else quoted(text_at(file_name))
        return "writer to %s, %s" % (target, "in " + more + path if names else "no open element")

    def names(self, body):
        """The open elements, innermost first: in one block, each with its length behind it."""
        size = value("stack.length")
        block, end = field(body, "stack.block"), field(body, "stack.used")
        while end > 0:
            end -= number(block + end - size, size) + value("stack.overhead")
            if end < 0:
                raise NoObject("no writer here, or no longer")
            yield text_at(block + end)


VIEWS = {
    "CXMLDocument": Document,
    "CXMLNode": Node,
    "CXMLTextNode": Node,
    "CXMLBinNode": Node,
    "CXMLAttribut": Attribute,
    "CXMLException": XmlException,
    "CXMLSaxAttribut": SaxAttribute,
    "CXMLSaxWriter": SaxWriter,
}


def line_of(view, address):
    try:
        return view(address).line()
    except NoObject as reason:
        return "<%s>" % reason
    except UNREADABLE:
        return "<leads to memory that cannot be read>"


def pointer_line(view, address):
    return "0x0" if address == 0 else "0x%x %s" % (address, line_of(view, address))


def view_of(type_):
    name = type_.strip_typedefs().unqualified().tag or ""
    return VIEWS.get(name[len(NAMESPACE):]) if name.startswith(NAMESPACE) else None


def target_of(shown):
    """The type and the address of an object, through a pointer or a reference; None without one."""
    type_ = shown.type.strip_typedefs()
    if type_.code == gdb.TYPE_CODE_PTR:
        return type_.target(), int(shown)
    if type_.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        return type_.target(), int(shown.referenced_value().address)
    return type_, None if shown.address is None else int(shown.address)


class Printer:
    """An object or a reference to one; or a pointer, shown as GDB shows one to characters."""

    def __init__(self, view, address, is_pointer):
        self.view = view
        self.address = address
        self.to_string = lambda: (pointer_line if is_pointer else line_of)(view, address)
        if not is_pointer:
            self.children = self.all_children

    def all_children(self):
        try:
            yield from self.view(self.address).children()
        except UNREADABLE:
            pass


class Printers(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("norvask")

    def __call__(self, shown):
        type_, address = target_of(shown)
        view = view_of(type_)
        if view is None or address is None:
            return None
        return Printer(view, address, shown.type.strip_typedefs().code == gdb.TYPE_CODE_PTR)


def object_in(shown):
    """The view and the address of what an expression shows, through pointers and base classes."""
    type_, address = target_of(shown)
    while view_of(type_) is None:
        type_ = type_.strip_typedefs()
        bases = [part for part in type_.fields() if part.is_base_class] \
            if type_.code == gdb.TYPE_CODE_STRUCT and address is not None else []
        if not bases:
            return None, 0
        address += bases[0].bitpos // 8
        type_ = bases[0].type
    return view_of(type_), address


class TreeCommand(gdb.Command):
    """Show the tree below a norvask node or in a norvask document.

norvask-tree [-LEVELS] EXPRESSION

EXPRESSION is a pointer or reference to a node or document, or an object. Three levels are shown
when LEVELS is not given, the first 20 children of each element, and 200 lines in all."""

    def __init__(self):
        super().__init__("norvask-tree", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, from_tty):
        levels, expression = TREE_LEVELS, argument.strip()
        first, _, rest = expression.partition(" ")
        if first[:1] == "-" and first[1:].isdigit() and rest:
            levels, expression = int(first[1:]), rest
        if not expression:
            raise gdb.GdbError("norvask-tree needs a node or a document.")
        view, address = object_in(gdb.parse_and_eval(expression))
        if view is not None and address == 0:
            print("0x0")
            return
        if view is Document:
            print(line_of(view, address))
            try:
                address, view = Document(address).root, Node
            except UNREADABLE:
                return
            if address == 0:
                return
        if view is not Node:
            raise gdb.GdbError("This is neither a node nor a document of norvask.")
        for count, line in enumerate(tree_lines(address, levels)):
            if count == TREE_LINES:
                print("and more")
                break
            print(line)


def children_below(address):
    """The first children of a node, and a line that tells of the others."""
    try:
        node = Node(address)
        if node.lone_text() is not None:
            return []
        shown = list(itertools.islice(node.child_nodes(), TREE_CHILDREN + 1))
        if len(shown) > TREE_CHILDREN:
            _, count = node.child_array()
            shown[TREE_CHILDREN] = "and %d more" % (count - TREE_CHILDREN)
        return shown
    except UNREADABLE:
        return []


def tree_lines(address, levels):
    """One line for each node, down to the level given."""
    waiting = [(address, 0)]
    while waiting:
        shown, level = waiting.pop()
        if isinstance(shown, str):
            yield "  " * level + shown
            continue
        yield "  " * level + line_of(Node, shown)
        if level + 1 < levels:
            waiting.extend((child, level + 1) for child in reversed(children_below(shown)))


for event in (gdb.events.new_objfile, gdb.events.clear_objfiles):
    event.connect(lambda _: layout.clear())
gdb.printing.register_pretty_printer(gdb.current_objfile(), Printers(), replace=True)
TreeCommand()
