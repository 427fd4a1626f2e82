"""The list in packaging/symbols: what is known to exist in the system, and where that was read."""

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
        """Where a linker looks for its text stub; None when the compiler brings it."""
        if self.name == "libSystem":
            return None
        framework = f"{self.name}.framework/{self.name}.tbd"
        return framework if self.path.startswith("/System/") else f"{self.name}.tbd"


@dataclass
class Type:
    """A class or a protocol. `methods` maps "+ selector" or "- selector" to (encoding, header).
    `later` maps those of them that came after the macOS of list.toml to the version they came with."""

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
    """The version of macOS that all of the list was read in, as numbers."""
    text = tomllib.loads((folder / "list.toml").read_text())["version"]
    return tuple(map(int, text.split(".")))


def own_texts(folder=FOLDER):
    """The program's own texts that look like names of the system's."""
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
    """The type, `name` or one that it inherits from, that has the method; None when there is none.
    A class object answers to the instance methods of the root class too."""
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
    """The encoding of a method of `name` or of what it inherits from; None when there is none."""
    owner = owner_of(known, name, method)
    return known[owner].methods[method][0] if owner else None
