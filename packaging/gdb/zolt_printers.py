# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
"""Shows zolt's types readably in GDB: texts, variants, pointers, lists, trees, dates and times.

GDB loads the installed copy of this file together with the library; `source` loads it by hand. See
docs/guide/debugging.md.

A compiler describes a class with virtual functions only where its destructor is, which for zolt's is in the
library, and clang++ leaves out still more. So most programs know next to nothing about the objects that they
hold. That is why objects are read here from memory by their layout, on 64 and 32 bits, which is fixed as long
as the library's name is. Members are asked for by name only where an object is not in memory: in registers, or
in a variable of GDB's own.

What a debugger shows may be uninitialised or destroyed. Whatever cannot be read appears as <why>, every length
is bounded by `print elements`, and links that lead in a circle end the walk.
"""
import codecs
import functools
import itertools
import struct

import gdb
import gdb.printing
import gdb.types

NAMESPACE = "ZOLT_2_18"
MOST_ELEMENTS = 1 << 20  # where `print elements` is unlimited
MOST_LEVELS = 100  # where `print max-depth` is


class Unreadable(Exception):
    """Says why an object cannot be shown."""


def print_option(name, parameter, most):
    value = gdb.print_options()[name] if hasattr(gdb, "print_options") else gdb.parameter(parameter)
    return min(value, most) if value and value > 0 else most


def most_elements():
    return print_option("max_elements", "print elements", MOST_ELEMENTS)


def members(value, layout, *paths):
    """Numbers: what is in memory by its layout, else the members of these names."""
    if value.address is not None:
        return Memory(value).numbers(int(value.address), layout)
    if not gdb.types.get_basic_type(value.type).fields():
        raise Unreadable("incomplete type")
    return [int(functools.reduce(lambda part, name: part[name], path.split("."), value)) for path in paths]


def known_type(name):
    """None where the program does not describe it."""
    try:
        found = gdb.lookup_type(f"{NAMESPACE}::{name}")
    except gdb.error:
        return None
    return found if found.fields() else None


def object_at(address, object_type):
    place = gdb.Value(address)
    if not object_type.fields():
        return place.cast(object_type.pointer()).dereference()
    # As an element of an array: of a pointer's target GDB looks for the dynamic type and warns of what it misses.
    return place.cast(object_type.array(0).pointer()).dereference()[0]


class Memory:
    """The program's memory, read in terms of a machine with pointers of `word` bytes."""

    def __init__(self, value):
        self.word = value.type.pointer().sizeof
        self.string_size = 2 * self.word + 16

    def bytes(self, address, size):
        address %= 1 << 8 * self.word
        return gdb.selected_inferior().read_memory(address, size).tobytes()

    def numbers(self, address, layout):
        """Numbers one after the other, without gaps; P is a pointer."""
        layout = "<" + layout.replace("P", "Q" if self.word == 8 else "I")
        return struct.unpack(layout, self.bytes(address, struct.calcsize(layout)))

    def pointer(self, address):
        return self.numbers(address, "P")[0]

    def string(self, address):
        """Where the units of a standard string are, and how many."""
        return self.numbers(address, "PP")

    def string_bytes(self, address):
        data, size = self.string(address)
        return self.bytes(data, min(size, MOST_ELEMENTS)) if size else b""


# Text.

ESCAPES = {"\0": "\\0", "\t": "\\t", "\n": "\\n", "\r": "\\r", '"': '\\"', "\\": "\\\\"}


def can_be_shown(character):
    try:
        for charset in (gdb.target_charset(), gdb.host_charset()):
            character.encode(charset)
        return character.isprintable()
    except (UnicodeError, LookupError):
        return False


def escaped(code):
    if code < 0x110000 and not 0xD800 <= code < 0xE000:
        character = chr(code)
        if character in ESCAPES:
            return ESCAPES[character]
        if can_be_shown(character):
            return character
    if code < 0x100:
        return f"\\x{code:02X}"
    return f"\\u{code:04X}" if code < 0x10000 else f"\\U{code:08X}"


def quoted(units, unit_size, is_cut=False):
    """The text in quotes. What is not well-formed, does not print or is not in GDB's character set is escaped."""
    # What is cut off within a character ends before it.
    if unit_size == 1:
        text = codecs.getincrementaldecoder("utf-8")("surrogateescape").decode(units, not is_cut)
        shown = [escaped(ord(each)) if not "\uDC80" <= each <= "\uDCFF" else f"\\x{ord(each) - 0xDC00:02X}"
                 for each in text]
    elif unit_size == 2:
        text = codecs.getincrementaldecoder("utf-16-le")("surrogatepass").decode(units, not is_cut)
        shown = [escaped(ord(each)) for each in text]
    else:
        shown = [escaped(code) for code, in struct.iter_unpack("<I", units)]
    return '"' + "".join(shown) + '"' + ("..." if is_cut else "")


def text_at(memory, address, size, unit_size):
    shown = min(size, most_elements())
    units = memory.bytes(address, shown * unit_size) if shown else b""
    return quoted(units, unit_size, shown < size)


def string_at(memory, address, unit_size):
    return text_at(memory, *memory.string(address), unit_size)


# The payload of a variant tells its type by the name in its type information.

PAYLOAD_NAME = f"N{len(NAMESPACE)}{NAMESPACE}5types15variant_value_tI".encode()
STANDARD_STRING = "NSt7__cxx1112basic_stringI{0}St11char_traitsI{0}ESaI{0}EEE"
TEXT_TYPES = {
    STANDARD_STRING.format("c"): ("std::string", 1),
    STANDARD_STRING.format("w"): ("std::wstring", 4),
    "NS_7strings8ustring8E": ("ustring8", 1),
    "NS_7strings9ustring16E": ("ustring16", 2),
    "NS_7strings9ustring32E": ("ustring32", 4),
}
NUMBER_TYPES = {
    "b": "bool", "a": "signed char", "h": "unsigned char", "s": "short", "t": "unsigned short", "i": "int",
    "j": "unsigned int", "l": "long", "m": "unsigned long", "x": "long long", "y": "unsigned long long",
    "f": "float", "d": "double", "e": "long double",
}
NIL_TYPE = "NS0_5nil_tE"


def payload_type(memory, payload):
    """The mangled name of the type that the payload holds."""
    if payload == 0:
        raise Unreadable("no payload")
    type_information = memory.pointer(memory.pointer(payload) - memory.word)
    name = memory.pointer(type_information + memory.word)
    if memory.bytes(name, len(PAYLOAD_NAME)) != PAYLOAD_NAME:
        raise Unreadable("no payload")
    held = b""
    while not held.endswith(b"\0") and len(held) < 64:
        held += memory.bytes(name + len(PAYLOAD_NAME) + len(held), 1)
    return held.rstrip(b"\0").decode("latin-1")[:-len("EE")]


def payload_parts(memory, payload):
    """The names of the type held and the value as texts."""
    held = payload_type(memory, payload)
    value = payload + 2 * memory.word + 8
    if held == NIL_TYPE:
        return "nil", ""
    if held in TEXT_TYPES:
        name, unit_size = TEXT_TYPES[held]
        return name, string_at(memory, value, unit_size)
    if held not in NUMBER_TYPES:
        raise Unreadable("no payload")
    if held == "e" and memory.word == 8:
        value += 8
    number_type = gdb.lookup_type(NUMBER_TYPES[held])
    return NUMBER_TYPES[held], str(gdb.Value(value).cast(number_type.pointer()).dereference())


def payload_text(memory, payload):
    name, value = payload_parts(memory, payload)
    return f"({name}) {value}" if value else name


def variant_text(memory, address):
    try:
        return payload_text(memory, memory.pointer(address))
    except Exception as fault:
        return f"<{fault}>"


def argument_name(memory, address):
    """In quotes; nothing where it is empty."""
    return string_at(memory, address, 1) if memory.string(address)[1] else ""


# Printers.


class Printer:
    """A subclass gives `text()` and, if it has any, `entries()`: pairs of name and value, after a `text()`."""

    def __init__(self, value):
        self.given = value

    def to_string(self):
        # In one place, so that no broken object ends in a traceback.
        try:
            self.is_broken = False
            self.take(self.given)
            return self.text()
        except Exception as fault:
            self.is_broken = True
            return f"<{fault}>"

    def take(self, value):
        self.type = gdb.types.get_basic_type(value.type)
        if value.type.strip_typedefs().code != gdb.TYPE_CODE_STRUCT:
            value = object_at(int(value.address), self.type)  # what a reference refers to
        self.value = value
        self.memory = Memory(value)


class ParentPrinter(Printer):
    def children(self):
        self.to_string()
        if self.is_broken:
            return
        try:
            yield from self.entries()
        except Exception as fault:
            yield "<broken>", f"<{fault}>"


class StringPrinter(Printer):
    def text(self):
        data, size = members(self.value, "PP", "_M_dataplus._M_p", "_M_string_length")
        return text_at(self.memory, data, size, int(self.type.tag.split("ustring")[1]) // 8)


class VariantPrinter(Printer):
    def text(self):
        return payload_text(self.memory, *members(self.value, "P", "m_payload.m_object"))


class ArgumentPrinter(Printer):
    def text(self):
        if self.value.address is None:
            raise Unreadable("not in memory")
        address = int(self.value.address)
        name = argument_name(self.memory, address)
        value = variant_text(self.memory, address + self.memory.string_size)
        return f"{name} = {value}" if name else value


class ListPrinter(ParentPrinter):
    """varg_list: a vector of names with variants."""

    def text(self):
        paths = ["m_arguments._M_impl._M_" + name for name in ("start", "finish", "end_of_storage")]
        self.first, end, limit = members(self.value, "PPP", *paths)
        self.step = self.memory.string_size + self.memory.word
        self.count, rest = divmod(end - self.first, self.step)
        if not self.first <= end <= limit or rest != 0:
            raise Unreadable("no list")
        if self.count:
            self.memory.bytes(end - 1, 1)
        return f"varg_list of length {self.count}"

    def entries(self):
        variant = known_type("types::variant")
        for index in range(self.count):
            address = self.first + index * self.step
            name = argument_name(self.memory, address)
            value = address + self.memory.string_size
            yield f"[{name or index}]", object_at(value, variant) if variant else variant_text(self.memory, value)


class PointerPrinter(ParentPrinter):
    """rc_pointer and shared_pointer."""

    def text(self):
        name = self.type.tag.split("<")[0].split("::")[-1]
        self.pointer = self.value["m_object"]
        if int(self.pointer) == 0:
            return f"{name} (empty)"
        self.memory.bytes(int(self.pointer), 1)
        count = self.count()
        return f"{name} ({count})" if count else name

    def entries(self):
        if int(self.pointer) != 0:
            yield "get()", self.pointer

    def count(self):
        """Nothing where the object's type is not known."""
        address = int(self.pointer)
        target_type = gdb.types.get_basic_type(self.pointer.type.target())
        target = object_at(address, target_type)
        base = counted_base(target_type)
        if target_type.name in BASES_BEFORE_COUNT:
            address += BASES_BEFORE_COUNT[target_type.name] * self.memory.word
        elif base:
            address = int(target.cast(base).address)
        elif target_type.fields():
            return count_text(target["heap_allocated"], target["reference_count"])
        else:
            return ""
        return count_text(*self.memory.numbers(address + self.memory.word, "?3xI"))


# How many base classes, a pointer each, stand before the one with the count.
BASES_BEFORE_COUNT = {
    NAMESPACE + "::config::config_tree": 0,
    NAMESPACE + "::config::base_config_item": 1,
    NAMESPACE + "::types::variant_type": 1,
    NAMESPACE + "::serialization::serialize_buffer": 2,
    NAMESPACE + "::serialization::labeled_serialize_buffer": 2,
}


def counted_base(object_type):
    """The base class with the count, of which the program may know no more than the place, or None."""
    for field in object_type.fields():
        if field.is_base_class:
            base = field.type.strip_typedefs()
            if base.name.startswith(NAMESPACE + "::generic::abilities::reference_count_pointer_ability"):
                return base
            found = counted_base(base)
            if found:
                return found
    return None


def count_text(is_heap_allocated, count):
    return f"count {int(count)}" + ("" if is_heap_allocated else ", not on the heap")


# Trees. What is read here is described in zolt/config/config_children_private.hpp and config_children.cpp.


class Node:
    """A config_tree."""

    def __init__(self, memory, kind, payload, root):
        self.memory = memory
        self.kind = kind
        self.payload = payload
        self.root = root

    @staticmethod
    def layout(memory):
        """The base classes, the entry with its number and its variant, and the children."""
        return "x" * (memory.word + 8) + "I" + "x" * (memory.word - 4) + "PP"

    def text(self):
        """The node's own entry; None for a mere step of a path, whose children say enough."""
        kind = {0: "", 1: "switch", 2: "array"}.get(self.kind, f"kind {self.kind}")
        name, value = payload_parts(self.memory, self.payload)
        if name == "nil":
            return kind or (None if self.root else "nil")
        typed = value if name == "ustring8" else f"({name}) {value}"
        return f"{kind} {typed}" if kind else typed

    def entries(self, show):
        """The name of each child and what `show` makes of its place."""
        try:
            for name, place in self.children():
                yield shown_name(name), show(place)
        except Exception as fault:
            yield "<broken>", f"<{fault}>"

    def children(self):
        """Name and place of each child, in byte order of the names."""
        for head, count, capacity, is_ordered in self.leaves():
            first = head + -(-capacity // self.memory.word) * self.memory.word
            places = self.memory.numbers(first, f"{count}P")
            found = [(self.child_name(place), place) for place in places]
            yield from found if is_ordered else sorted(found)

    def leaves(self):
        """The blocks with children: the place behind the head, count, capacity and whether it is ordered."""
        address = self.root
        height = None
        seen = set()
        while address:
            following, _, count, capacity, own_height, is_ordered = self.memory.numbers(address, "PPHHH?")
            if address in seen or not 1 <= count <= capacity <= 128 or height not in (None, own_height):
                raise Unreadable("broken links")
            seen.add(address)
            head = address + 2 * self.memory.word + 8
            if own_height == 0:
                yield head, count, capacity, is_ordered
                address, height = following, 0
            else:
                address, height = self.memory.pointer(head), own_height - 1

    def child_name(self, place):
        if is_record(place):
            size, = self.memory.numbers(place - 1, "H")
            return self.memory.bytes(place + 5, size) if size else b""
        name = place + 4 * self.memory.word + 8
        if self.memory.pointer(name + self.memory.string_size) != place:
            raise Unreadable("broken links")
        return self.memory.string_bytes(name)


# A child is a text record, at an odd place, or a node with its name and a pointer to itself behind it.


def is_record(place):
    return place % 2 == 1


def record_text(memory, place):
    name_size, text_size = memory.numbers(place - 1, "HH")
    return text_at(memory, place + 5 + name_size, text_size, 1)


def shown_name(name):
    most = most_elements()
    return "[" + quoted(name[:most], 1, most < len(name)) + "]"


def child_text(memory, address, levels):
    """A child with what is below it, as GDB shows it where it knows the type."""
    try:
        if is_record(address):
            return record_text(memory, address)
        node = Node(memory, *memory.numbers(address, Node.layout(memory)))
        text = node.text()
    except Exception as fault:
        return f"<{fault}>"
    if not node.root:
        return text
    inner = "{...}"
    if levels > 0:
        entries = node.entries(lambda place: child_text(memory, place, levels - 1))
        shown = [f"{name} = {value}" for name, value in itertools.islice(entries, most_elements())]
        inner = "{" + ", ".join(shown) + ("...}" if next(entries, None) else "}")
    return f"{text} = {inner}" if text else inner


class LeafPrinter(Printer):
    """config_tree. At an odd address it is a text record, which GDB takes for a node for want of another type."""

    def text(self):
        self.node = None
        if self.value.address is not None and is_record(int(self.value.address)):
            return record_text(self.memory, int(self.value.address))
        paths = ["m_entry.first", "m_entry.second.m_payload.m_object", "m_children.m_root"]
        self.node = Node(self.memory, *members(self.value, Node.layout(self.memory), *paths))
        return self.node.text()


class TreePrinter(ParentPrinter, LeafPrinter):
    def entries(self):
        if self.type.fields():
            return self.node.entries(lambda place: object_at(place, self.type))
        levels = print_option("max_depth", "print max-depth", MOST_LEVELS)
        return self.node.entries(lambda place: child_text(self.memory, place, levels - 1))


def tree_printer(value):
    """One that can have children only where there are some: of those, programs that drive GDB show no text."""
    printer = LeafPrinter(value)
    printer.to_string()
    has_children = not printer.is_broken and printer.node is not None and printer.node.root != 0
    return TreePrinter(value) if has_children else printer


# Dates and times.


def date_text(year, month, day):
    text = f"{year:04}-{month:02}-{day:02}"
    if not 1 <= month <= 12 or not 1 <= day <= 31:
        return text + " (no day)"
    is_leap_year = year % 4 == 0 and year % 100 != 0 or year % 400 == 0
    last = {2: 29 if is_leap_year else 28, 4: 30, 6: 30, 9: 30, 11: 30}.get(month, 31)
    return text if day <= last else f"{text} (day {last})"


def time_text(hour, minute, second, millisecond):
    text = f"{hour:02}:{minute:02}:{second:02}.{millisecond:03}"
    return text if hour < 24 and minute < 60 and second < 60 and millisecond < 1000 else text + " (no time)"


DATE_MEMBERS = ["m_year", "m_month", "m_day"]
TIME_MEMBERS = ["m_hour", "m_minute", "m_second", "m_millisecond"]


class DatePrinter(Printer):
    def text(self):
        return date_text(*members(self.value, "3I", *DATE_MEMBERS))


class TimePrinter(Printer):
    def text(self):
        return time_text(*members(self.value, "4I", *TIME_MEMBERS))


class DateTimePrinter(Printer):
    def text(self):
        names = ["m_time." + name for name in TIME_MEMBERS] + ["m_date." + name for name in DATE_MEMBERS]
        numbers = members(self.value, "7I", *names)
        return date_text(*numbers[4:]) + " " + time_text(*numbers[:4])


class DateDurationPrinter(Printer):
    def text(self):
        days, = members(self.value, "i", "m_days")
        return "1 day" if days == 1 else f"{days} days"


class TimeDurationPrinter(Printer):
    def text(self):
        total, = members(self.value, "q", "m_milliseconds")
        seconds, milliseconds = divmod(abs(total), 1000)
        minutes, seconds = divmod(seconds, 60)
        hours, minutes = divmod(minutes, 60)
        return f"{'-' if total < 0 else ''}{hours}:{minutes:02}:{seconds:02}.{milliseconds:03}"


def register():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("zolt-" + NAMESPACE[5:].replace("_", "."))
    for name, pattern, printer in (
        ("ustring", r"strings::ustring(8|16|32)", StringPrinter),
        ("variant", r"types::variant", VariantPrinter),
        ("argument", r"generic::argument", ArgumentPrinter),
        ("varg_list", r"generic::varg_list", ListPrinter),
        ("pointer", r"memory::pointers::(rc|shared)_pointer<.*>", PointerPrinter),
        ("config_tree", r"config::config_tree", tree_printer),
        ("date", r"system::date_time::date", DatePrinter),
        ("time", r"system::date_time::time", TimePrinter),
        ("date_time_t", r"system::date_time::date_time_t", DateTimePrinter),
        ("date_duration", r"system::date_time::date_duration", DateDurationPrinter),
        ("time_duration", r"system::date_time::time_duration", TimeDurationPrinter),
    ):
        printers.add_printer(name, f"^{NAMESPACE}::{pattern}$", printer)
    gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)


register()
