"""Reads a Mach-O executable for the checks: its header, segments, symbols and libraries.

It shares no code with packaging/signing, so that it does not repeat a mistake made there.
"""

from dataclasses import dataclass, field

MH_EXECUTE = 2
ARM64 = 0x0100000C
PIE, TWO_LEVEL, NO_UNDEFINED = 0x200000, 0x80, 0x1
MACOS = 1


class MachOError(Exception):
    pass


@dataclass
class Section:
    segment: str
    name: str
    address: int
    size: int
    offset: int
    type: int


@dataclass
class Segment:
    name: str
    address: int
    memory_size: int
    offset: int
    size: int
    protection: int


@dataclass
class Symbol:
    name: str
    type: int
    section: int
    description: int

    @property
    def imported(self):
        return self.type & 0x0E == 0 and bool(self.type & 1)

    @property
    def library(self):
        """The library that it is imported from: 1 is the first that the program loads."""
        return self.description >> 8


@dataclass
class MachO:
    data: bytes
    cpu: int = 0
    file_type: int = 0
    flags: int = 0
    platform: int = 0
    minimum: tuple = ()
    sdk: tuple = ()
    uuid: bytes = b""
    entry: int = -1
    signature: tuple = ()
    exports: tuple = (0, 0)
    libraries: list = field(default_factory=list)
    search_paths: list = field(default_factory=list)
    segments: list = field(default_factory=list)
    sections: list = field(default_factory=list)
    symbols: list = field(default_factory=list)
    stub_symbols: set = field(default_factory=set)  # indexes of those that stubs and pointers name

    def section_bytes(self, segment, name):
        """The bytes of all sections of that name; None if there is none."""
        found = [s for s in self.sections if (s.segment, s.name) == (segment, name)]
        return b"".join(self.data[s.offset : s.offset + s.size] for s in found) if found else None

    def imports(self):
        return [s for s in self.symbols if s.imported]


def number(data, offset, size=4):
    piece = data[offset : offset + size]
    if len(piece) != size:
        raise MachOError(f"the file ends before byte {offset + size}")
    return int.from_bytes(piece, "little")


def text(data, offset, limit=None):
    end = data.find(b"\0", offset, limit)
    return data[offset : limit if end < 0 else end].decode("utf-8", "replace")


def version(packed):
    return (packed >> 16, packed >> 8 & 0xFF, packed & 0xFF)


def read(data):
    if number(data, 0) != 0xFEEDFACF:
        raise MachOError("not a 64-bit little-endian Mach-O")
    result = MachO(data, cpu=number(data, 4), file_type=number(data, 12), flags=number(data, 24))
    at, end = 32, 32 + number(data, 20)
    for _ in range(number(data, 16)):
        command, size = number(data, at), number(data, at + 4)
        if size < 8 or at + size > end:
            raise MachOError("a load command reaches beyond its table")
        _command(result, command & 0x7FFFFFFF, at, at + size)
        at += size
    return result


def _command(result, command, at, end):
    data = result.data
    if command == 0x19:
        _segment(result, at)
    elif command == 0x02:
        _symbols(result, number(data, at + 8), number(data, at + 12), number(data, at + 16))
    elif command == 0x0B:
        table, count = number(data, at + 56), number(data, at + 60)
        result.stub_symbols = {number(data, table + 4 * i) for i in range(count)}
    elif command in (0x0C, 0x18, 0x1F, 0x20):  # a library: needed, weak, re-exported, lazy
        result.libraries.append(text(data, at + number(data, at + 8), end))
    elif command == 0x1C:
        result.search_paths.append(text(data, at + number(data, at + 8), end))
    elif command == 0x32:
        result.platform = number(data, at + 8)
        result.minimum, result.sdk = version(number(data, at + 12)), version(number(data, at + 16))
    elif command == 0x1B:
        result.uuid = data[at + 8 : at + 24]
    elif command == 0x28:
        result.entry = number(data, at + 8, 8)
    elif command == 0x1D:
        result.signature = (number(data, at + 8), number(data, at + 12))
    elif command in (0x22, 0x33):  # the exports, in the older table or in a table of their own
        place = at + 40 if command == 0x22 else at + 8
        result.exports = (number(data, place), number(data, place + 4))


def _segment(result, at):
    data = result.data
    result.segments.append(Segment(
        text(data, at + 8, at + 24), number(data, at + 24, 8), number(data, at + 32, 8),
        number(data, at + 40, 8), number(data, at + 48, 8), number(data, at + 60)))  # fmt: skip
    for index in range(number(data, at + 64)):
        place = at + 72 + 80 * index
        result.sections.append(Section(
            text(data, place + 16, place + 32), text(data, place, place + 16),
            number(data, place + 32, 8), number(data, place + 40, 8),
            number(data, place + 48), number(data, place + 64) & 0xFF))  # fmt: skip


def _symbols(result, offset, count, strings):
    for index in range(count):
        place = offset + 16 * index
        result.symbols.append(Symbol(
            text(result.data, strings + number(result.data, place)),
            number(result.data, place + 4, 1), number(result.data, place + 5, 1),
            number(result.data, place + 6, 2)))  # fmt: skip


def exported_names(result):
    """The names in the export trie, to which other images can link."""
    offset, size = result.exports
    names = []
    if size:
        _walk(result.data[offset : offset + size], 0, "", names)
    return sorted(names)


def _walk(trie, node, prefix, names):
    terminal, at = _uleb(trie, node)
    if terminal:
        names.append(prefix)
    at += terminal
    children, at = trie[at], at + 1
    for _ in range(children):
        edge = text(trie, at)
        child, at = _uleb(trie, at + len(edge.encode()) + 1)
        _walk(trie, child, prefix + edge, names)


def _uleb(data, at):
    value = shift = 0
    while True:
        byte = data[at]
        value |= (byte & 0x7F) << shift
        at, shift = at + 1, shift + 7
        if not byte & 0x80:
            return value, at
