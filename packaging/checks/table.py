"""What a built program uses of Objective-C: its table of methods, and the names in its strings."""

import re
from dataclasses import dataclass

from .macho import MachOError


@dataclass(frozen=True)
class Record:
    kind: str  # "+" for a class's own method, "-" for an instance's
    type: str
    selector: str
    encoding: str


def records(program):
    """The lines "+ Class selector encoding" of the section to which each facade method adds one."""
    data = program.section_bytes("__DATA", "__kovra_methods") or b""
    found = []
    for line in data.replace(b"\0", b"").decode().splitlines():
        words = line.split(" ")
        if len(words) != 4 or words[0] not in "+-":
            raise MachOError(f"the table of methods has a malformed line: {line!r}")
        found.append(Record(*words))
    return found


def texts(program):
    """All constant strings of the program; some are in the section of other constants."""
    sections = [program.section_bytes("__TEXT", name) or b"" for name in ("__cstring", "__const")]
    pieces = b"\0".join(sections).split(b"\0")
    return {piece.decode("utf-8", "replace") for piece in pieces if piece}


def class_names(program):
    """The strings that look like the names of the system's classes."""
    return {text for text in texts(program) if re.fullmatch(r"NS[A-Z][A-Za-z]+", text)}


def selectors(program):
    """The strings that look like selectors with arguments."""
    pattern = r"[a-z_][A-Za-z0-9_]*:(?:[A-Za-z_][A-Za-z0-9_]*:)*"
    return {text for text in texts(program) if re.fullmatch(pattern, text)}
