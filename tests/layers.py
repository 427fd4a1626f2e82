"""The floors of the house, and what breaks their order in a source tree."""

import re
from pathlib import Path

# Each floor and those that it may know directly, from the ground up.
BASE = "platform/base"
OBJC = "platform/objc"
FOUNDATION = "platform/foundation"
SERVICES = "platform/services"
DECLARATIVE = "platform/declarative"
APPKIT = "platform/appkit"
LOGGING = "kovraUninstaller/logging"
SYSTEM = "kovraUninstaller/system"
INVENTORY = "kovraUninstaller/inventory"
ENGINE = "kovraUninstaller/engine"
FLOW = "kovraUninstaller/flow"
UI = "kovraUninstaller/ui"
APP = "kovraUninstaller/app"

MAY_USE = {
    BASE: set(),
    OBJC: {BASE},
    FOUNDATION: {OBJC, BASE},
    SERVICES: {FOUNDATION, OBJC, BASE},
    DECLARATIVE: {BASE},
    APPKIT: {FOUNDATION, OBJC, BASE, SERVICES, DECLARATIVE},
    LOGGING: {SERVICES, BASE},
    SYSTEM: {SERVICES, BASE},
    INVENTORY: {SYSTEM, LOGGING, SERVICES, BASE},
    ENGINE: {INVENTORY, SYSTEM, LOGGING, SERVICES, BASE},
    FLOW: {ENGINE, INVENTORY, LOGGING, SERVICES, BASE},
    UI: {FLOW, DECLARATIVE, BASE},
}
MAY_USE[APP] = set(MAY_USE)

SOURCES = ("*.cpp", "*.hpp", "*.mm", "*.h", "*.c")
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
CONDITION = re.compile(r"^[ \t]*#[ \t]*(?:el)?if[^\n]*", re.MULTILINE)
SYSTEM_MACRO = re.compile(r"__APPLE__|__MACH__|__linux__|\blinux\b|__gnu_linux__|TARGET_OS_|_WIN32"
                          r"|__GNUSTEP|__GNU_LIBOBJC__|__has_include")
RUNTIME_CALL = re.compile(r"\b(?:objc_|sel_|class_|object_|method_|ivar_)[a-zA-Z_]+\s*\(")
LIBRARY = re.compile(r"\bkovra_library\(\s*(\w+)([^)]*)\)")
EXTRA_LINK = re.compile(r"\btarget_link_libraries\(\s*(\w+)([^)]*)\)")


def floor_of(path):
    """The floor that a path, relative to the root, stands on; None for none."""
    parts = Path(path).parts
    floor = "/".join(parts[:2])
    return floor if len(parts) > 2 and floor in MAY_USE else None


def is_testing(path):
    return path.stem.endswith("_test") or "testing" in path.parts


class House:
    def __init__(self, root):
        self.root = Path(root)
        self.floor_of_target = {}
        self.uses = {}
        self.targets_of_floor = {floor: set() for floor in MAY_USE}
        for floor in MAY_USE:
            self._read_targets(floor)

    def _read_targets(self, floor):
        script = self.root / floor / "CMakeLists.txt"
        if not script.exists():
            return
        text = re.sub(r"#[^\n]*", "", script.read_text())
        for target, body in LIBRARY.findall(text):
            uses = re.search(r"\bUSES\b(.*)", body, re.DOTALL)
            self._add(floor, target, uses.group(1).split() if uses else [])
        for target, body in EXTRA_LINK.findall(text):
            self._add(floor, target, body.split())

    def _add(self, floor, target, used):
        self.floor_of_target[target] = floor
        self.targets_of_floor[floor].add(target)
        self.uses.setdefault(target, set()).update(used)

    def reachable_floors(self, floor):
        """The floors whose libraries a floor's targets link, directly or through others."""
        seen, waiting = set(), list(self.targets_of_floor[floor])
        while waiting:
            target = waiting.pop()
            if target in seen:
                continue
            seen.add(target)
            waiting += [used for used in self.uses.get(target, ()) if used in self.floor_of_target]
        return {self.floor_of_target[target] for target in seen}

    def sources(self):
        for top in ("platform", "kovraUninstaller"):
            for pattern in SOURCES:
                yield from sorted((self.root / top).rglob(pattern))

    def faults(self):
        """A line for each thing that is out of order."""
        faults = []
        for target, used in self.uses.items():
            floor = self.floor_of_target[target]
            for name in sorted(used & self.floor_of_target.keys()):
                below = self.floor_of_target[name]
                if below != floor and below not in MAY_USE[floor]:
                    faults.append(f"{floor}/CMakeLists.txt: {target} links {name}")
        for path in self.sources():
            faults += self._faults_of(path.relative_to(self.root))
        return faults

    def _faults_of(self, path):
        text = COMMENT.sub("", (self.root / path).read_text())
        floor = floor_of(path)
        if floor is None and not is_testing(path):
            return [f"{path}: stands on no floor"]
        faults = []
        if not is_testing(path):
            linked = self.reachable_floors(floor)
            for quote, name in INCLUDE.findall(text):
                faults += self._faults_of_include(path, floor, linked, quote, name)
        if not str(path).startswith("platform/"):
            faults += [f"{path}: asks for the system: {line.strip()}"
                       for line in CONDITION.findall(text) if SYSTEM_MACRO.search(line)]
        if floor != OBJC and not is_testing(path):
            faults += [f"{path}: calls the runtime: {call}" for call in RUNTIME_CALL.findall(text)]
        return faults

    def _faults_of_include(self, path, floor, linked, quote, name):
        if quote == "<":
            outside = name.startswith("objc/") and floor != OBJC
            return [f"{path}: includes the runtime's {name}"] if outside else []
        below = floor_of(name)
        if "testing" in Path(name).parts:
            return [f"{path}: includes the tests' {name}"]
        if below is None or not (self.root / name).exists():
            return [f"{path}: includes {name}, which is not named from the root"]
        if below == floor:
            return []
        if below not in MAY_USE[floor]:
            return [f"{path}: may not know {name}"]
        return [] if below in linked else [f"{path}: includes {name} and does not link it"]
