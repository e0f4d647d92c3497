"""Shows Norvask's documents, nodes, attributes, exceptions and writers in GDB.

    print node                what a pointer leads to, as a line of XML
    print *node               an object, with its children below it
    norvask-tree node         the tree below a node or in a document: three levels of it
    norvask-tree -9 node      nine levels

Nothing here calls a function of the program or needs the library's debug information: objects are
read by the offsets below, which follow the headers of src/tree. Few words of each object are
read, so huge trees and long texts print at once.
"""

import itertools

import gdb
import gdb.printing

NAMESPACE = "norvask::"
ELEMENT, TEXT, BINARY = 0, 1, 2

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


class Reader:
    """Numbers and texts in the memory of the program."""

    def __init__(self):
        self.inferior = gdb.selected_inferior()
        self.word = gdb.lookup_type("char").pointer().sizeof
        big = "big endian" in gdb.execute("show endian", to_string=True)
        self.order = "big" if big else "little"

    def bytes(self, address, count):
        return bytes(self.inferior.read_memory(address, count))

    def number(self, address, size):
        return int.from_bytes(self.bytes(address, size), self.order)

    def pointer(self, address, index=0):
        """The word number `index` behind an address."""
        return self.number(address + index * self.word, self.word)

    def text(self, address, limit=SHOWN_CHARACTERS):
        """The bytes up to the terminator or the limit, and whether that was the end."""
        found = b""
        while len(found) <= limit:
            # Never across a page that may not be there.
            part = self.bytes(address, 256 - address % 256)
            end = part.find(b"\0")
            if end >= 0:
                found += part[:end]
                break
            found += part
            address += len(part)
        return found[:limit], len(found) <= limit


ESCAPES = {"\n": "\\n", "\r": "\\r", "\t": "\\t", "\\": "\\\\"}


def printable(found, quote=""):
    """The bytes of a text as something that can be printed on any terminal."""
    text, whole = found
    if not whole:
        # A character that the limit has cut in two goes.
        text = text[: len(text) - cut_bytes(text)]
    shown = ""
    for character in text.decode("utf-8", "surrogateescape"):
        if character in ESCAPES:
            shown += ESCAPES[character]
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


def cut_bytes(text):
    """How many bytes at the end of a text are the beginning of a longer character."""
    for length in range(1, min(4, len(text) + 1)):
        byte = text[-length]
        if byte >= 0xC0:
            needed = 2 if byte < 0xE0 else 3 if byte < 0xF0 else 4
            return length if length < needed else 0
        if byte < 0x80:
            break
    return 0


def quoted(found):
    return '"' + printable(found, '"') + '"'


def class_of(reader, address):
    """The name of the class of an object with a virtual table."""
    table = reader.pointer(address)
    symbol = gdb.execute("info symbol %d" % table, to_string=True)
    if "vtable for " not in symbol:
        raise NoObject("no object here, or no longer")
    return symbol.split("vtable for ", 1)[1].split(" + ")[0].split(" in section")[0].strip()


def tagged(reader, address):
    """A string of a tree (tree_string.h): its tag leads to the page in which it lies."""
    tag = address - 4
    distance = reader.number(tag, 2)
    is_constant = reader.number(tag + 2, 2) & 1
    if not is_constant:
        page = tag - 4 * distance
        page_bytes = reader.pointer(page, 3)
        holders = reader.number(page + 4 * reader.word + 4, 4)
        if distance == 0 or 4 * distance > page_bytes + 8 * reader.word or holders == 0:
            raise NoObject("no string here, or no longer")
    return reader.text(address)


class Attribute:
    """A CXMLAttribut (attribute_access.h): two strings, the first with bits."""

    def __init__(self, address):
        self.reader = Reader()
        self.address = address

    def line(self):
        name = self.reader.pointer(self.address) & ~3
        value = self.reader.pointer(self.address, 1)
        return printable(tagged(self.reader, name)) + "=" + quoted(tagged(self.reader, value))

    def children(self):
        return iter(())


class Node:
    """A CXMLNode of any kind (node_body.h)."""

    def __init__(self, address):
        self.reader = Reader()
        self.address = address
        self.class_name = class_of(self.reader, address)
        self.body = self.reader.pointer(address, 1) & ~3
        self.kind = self.reader.number(self.body + 2, 1)
        self.flags = self.reader.number(self.body + 3, 1)
        self.fields = self.body + 8 + self.reader.word
        self.check()

    def check(self):
        """A body knows its page, a page its tree, and a tree its first page and its owners."""
        reader = self.reader
        page = self.body - 4 * reader.number(self.body, 2)
        tree = reader.pointer(page)
        lives = self.kind <= BINARY and reader.number(self.body + 4, 4) != 0
        if not lives or reader.number(tree, 4) == 0:
            raise NoObject("no node here, or no longer")
        if reader.pointer(reader.pointer(tree + 8)) != tree:
            raise NoObject("no node here, or no longer")

    def child_array(self):
        """The address of the first slot, and the number of children."""
        reader = self.reader
        slots = self.fields + reader.word
        if self.flags & 4:
            used = reader.number(slots + reader.word + 4, 4)
            return reader.pointer(slots), used - 1
        return slots, 0 if reader.pointer(slots) == 0 else 1

    def child_nodes(self):
        if self.kind != ELEMENT:
            return
        slots, count = self.child_array()
        for index in range(count):
            yield self.reader.pointer(slots, index)

    def attributes(self):
        reader = self.reader
        union = max(2 * reader.word, reader.word + 8)
        array = reader.pointer(self.fields + reader.word + union)
        if array == 0:
            return ""
        count = reader.number(array + 4, 4) - 1
        slots = array + 8 + reader.word
        shown = ""
        for index in range(min(count, SHOWN_ATTRIBUTES)):
            shown += " " + Attribute(reader.pointer(slots, index)).line()
        return shown if count <= SHOWN_ATTRIBUTES else shown + " and %d more" % (
            count - SHOWN_ATTRIBUTES)

    def text(self):
        return tagged(self.reader, self.reader.pointer(self.fields))

    def lone_text(self):
        """The text of an element with one child, a text; None for every other node."""
        if self.kind != ELEMENT or self.child_array()[1] != 1:
            return None
        try:
            child = Node(next(self.child_nodes()))
            return child.text() if child.kind == TEXT else None
        except (NoObject, gdb.MemoryError, OverflowError):
            return None

    def element_line(self):
        name = printable(tagged(self.reader, self.reader.pointer(self.fields)))
        tag = "<" + name + self.attributes()
        _, count = self.child_array()
        if count == 0:
            return tag + "/>"
        text = self.lone_text()
        if text is not None:
            return tag + ">" + printable(text) + "</" + name + ">"
        return tag + "> with %d child%s" % (count, "" if count == 1 else "ren")

    def binary_line(self):
        data = self.reader.pointer(self.fields)
        length = self.reader.pointer(self.fields, 1)
        if length == 0 or data == 0:
            return "0 bytes"
        shown = self.reader.bytes(data, min(length, SHOWN_BYTES)).hex(" ")
        more = " ..." if length > SHOWN_BYTES else ""
        return "%d byte%s: %s%s" % (length, "" if length == 1 else "s", shown, more)

    def line(self):
        if self.kind == ELEMENT:
            shown = self.element_line()
        elif self.kind == TEXT:
            shown = quoted(self.text())
        else:
            shown = self.binary_line()
        derived = not self.class_name.startswith(NAMESPACE)
        return self.class_name + " " + shown if derived else shown

    def children(self):
        for index, child in enumerate(self.child_nodes()):
            yield "[%d]" % index, pointer_line(Node, child)


class Document:
    """A CXMLDocument (document_body.h)."""

    def __init__(self, address):
        self.reader = Reader()
        class_of(self.reader, address)
        body = self.reader.pointer(address, 1)
        if self.reader.number(body, 4) == 0:
            raise NoObject("no document here, or no longer")
        self.root, self.dtd_name, self.dtd_path = (
            self.reader.pointer(body, index) for index in (1, 2, 3))

    def line(self):
        if self.root == 0:
            return "document without a root" + self.reference(" and ")
        return "document " + line_of(Node, self.root) + self.reference(", ")

    def reference(self, before):
        if self.dtd_name == 0 or self.dtd_path == 0:
            return ""
        name, path = self.reader.text(self.dtd_name), self.reader.text(self.dtd_path)
        return before + "DTD " + printable(name) + " in " + quoted(path)

    def children(self):
        if self.root != 0:
            yield "root", pointer_line(Node, self.root)


class Plain:
    """An object of a class with a virtual table that is shown as one line."""

    def __init__(self, address):
        self.reader = Reader()
        self.address = address
        class_of(self.reader, address)

    def word(self, index):
        return self.reader.pointer(self.address, index)

    def children(self):
        return iter(())


class XmlException(Plain):
    def line(self):
        number = self.reader.number(self.address + 2 * self.reader.word, 4)
        number -= 1 << 32 if number >= 1 << 31 else 0
        return "exception %d: %s" % (number, quoted(self.reader.text(self.word(1), 400)))


class SaxAttribute(Plain):
    def line(self):
        uri, _, name, value = (self.reader.text(self.word(index)) for index in (1, 2, 3, 4))
        shown = printable(name) + "=" + quoted(value)
        return shown + " in " + quoted(uri) if uri[0] else shown


class SaxWriter(Plain):
    """A CXMLSaxWriter; its open elements lie in one block, each with its length behind it."""

    def line(self):
        if self.word(2) == 0:
            return "writer without a document"
        names = [printable(name) for name in itertools.islice(self.names(), SHOWN_OPEN_ELEMENTS)]
        path = "/".join(reversed(names))
        more = ".../" if len(names) == SHOWN_OPEN_ELEMENTS else ""
        file_name = self.word(4)
        target = "a stream" if file_name == 0 else quoted(self.reader.text(file_name))
        return "writer to %s, %s" % (target, "in " + more + path if names else "no open element")

    def names(self):
        stack, word = self.word(1), self.reader.word
        block, end = self.reader.pointer(stack), self.reader.pointer(stack, 1)
        while end > 0:
            length = self.reader.pointer(block + end - word)
            end -= length + 1 + word
            if end < 0:
                raise NoObject("no writer here, or no longer")
            yield self.reader.text(block + end)


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
    except (gdb.MemoryError, OverflowError):
        return "<leads to memory that cannot be read>"


def pointer_line(view, address):
    return "0x0" if address == 0 else "0x%x %s" % (address, line_of(view, address))


def view_of(type_):
    name = type_.strip_typedefs().unqualified().tag
    if name is not None and name.startswith(NAMESPACE):
        return VIEWS.get(name[len(NAMESPACE):])
    return None


class PointerPrinter:
    """A pointer, shown as GDB shows a pointer to characters: the address and what is there."""

    def __init__(self, view, address):
        self.view = view
        self.address = address

    def to_string(self):
        return pointer_line(self.view, self.address)


class ObjectPrinter:
    """An object or a reference to one."""

    def __init__(self, view, address):
        self.view = view
        self.address = address

    def to_string(self):
        return line_of(self.view, self.address)

    def children(self):
        try:
            yield from self.view(self.address).children()
        except (NoObject, gdb.MemoryError, OverflowError):
            pass


class Printers(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("norvask")

    def __call__(self, value):
        type_ = value.type.strip_typedefs()
        if type_.code == gdb.TYPE_CODE_PTR:
            view = view_of(type_.target())
            return PointerPrinter(view, int(value)) if view else None
        if type_.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            view = view_of(type_.target())
            value = value.referenced_value()
        else:
            view = view_of(type_)
        if view is None or value.address is None:
            return None
        return ObjectPrinter(view, int(value.address))


def object_in(value):
    """The view and the address of what an expression shows, through pointers and base classes."""
    type_ = value.type.strip_typedefs()
    if type_.code == gdb.TYPE_CODE_PTR:
        address, type_ = int(value), type_.target()
    elif type_.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        address, type_ = int(value.referenced_value().address), type_.target()
    elif value.address is not None:
        address = int(value.address)
    else:
        return None, 0
    while view_of(type_) is None:
        type_ = type_.strip_typedefs()
        if type_.code != gdb.TYPE_CODE_STRUCT:
            return None, 0
        bases = [field for field in type_.fields() if field.is_base_class]
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
            except (NoObject, gdb.MemoryError, OverflowError):
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
    except (NoObject, gdb.MemoryError, OverflowError):
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


gdb.printing.register_pretty_printer(gdb.current_objfile(), Printers(), replace=True)
TreeCommand()
