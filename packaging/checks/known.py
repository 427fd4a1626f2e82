"""The list in packaging/symbols: which names the system has, and where each was read."""

import tomllib
from dataclasses import dataclass, field
from pathlib import Path

FOLDER = Path(__file__).parent.parent / "symbols"
FRAMEWORKS = ("objc", "Foundation", "AppKit")


@dataclass
class Library:
    """A library that the program may load. `symbols` maps each name to the file it was read in."""

    name: str
    path: str
    current_version: str
    compatibility_version: str
    symbols: dict

    @property
    def stub(self):
        """Its text stub's path for the linker; None if the compiler brings it."""
        if self.name == "libSystem":
            return None
        framework = f"{self.name}.framework/{self.name}.tbd"
        return framework if self.path.startswith("/System/") else f"{self.name}.tbd"


@dataclass
class Type:
    """A class or a protocol. `methods` maps "+ selector" or "- selector" to (encoding, header).
    `later` maps those that are newer than the macOS of list.toml to the version that added them."""

    name: str
    framework: str
    inherits: list
    methods: dict
    later: dict = field(default_factory=dict)


def libraries(folder=FOLDER):
    table = tomllib.loads((folder / "libraries.toml").read_text())
    return {
        name: Library(
            name, entry["path"], entry["current-version"], entry["compatibility-version"],
            {symbol: place for place, listed in entry["read-in"].items() for symbol in listed})
        for name, entry in table.items()
    }  # fmt: skip


def system(folder=FOLDER):
    """The version of macOS whose SDK the list was read in, as numbers."""
    text = tomllib.loads((folder / "list.toml").read_text())["version"]
    return tuple(map(int, text.split(".")))


def own_texts(folder=FOLDER):
    """The program's own strings that look like names of the system's."""
    return set(tomllib.loads((folder / "list.toml").read_text())["own-texts"])


def types(folder=FOLDER):
    """Each class and protocol, from symbols/FRAMEWORK.toml."""
    found = {}
    for framework in FRAMEWORKS:
        path = folder / f"{framework}.toml"
        entries = tomllib.loads(path.read_text()) if path.exists() else {}
        for name, entry in entries.items():
            found[name] = _type(name, framework, entry)
    return found


def _type(name, framework, entry):
    methods, later = {}, {}
    for line in entry["methods"]:
        kind, selector, encoding, header = line.split(maxsplit=3)
        methods[f"{kind} {selector}"] = (encoding, header)
    for line in entry.get("later", []):
        kind, selector, encoding, header, version = line.split()
        methods[f"{kind} {selector}"] = (encoding, header)
        later[f"{kind} {selector}"] = version
    return Type(name, framework, entry["inherits"], methods, later)


def owner_of(known, name, method):
    """The type, `name` or one that it inherits from, that has the method; None if none has it."""
    seen, waiting = set(), [name]
    while waiting:
        current = waiting.pop(0)
        if current in seen or current not in known:
            continue
        seen.add(current)
        if method in known[current].methods:
            return current
        waiting += known[current].inherits
    return None


def encoding_of(known, name, method):
    """The encoding of a method of `name` or of what it inherits from; None if none has it."""
    owner = owner_of(known, name, method)
    return known[owner].methods[method][0] if owner else None
