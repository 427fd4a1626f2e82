"""The layers of a source tree, as its CMake files name them, and what violates their order.

The order is that in which platform/CMakeLists.txt and kovraUninstaller/CMakeLists.txt add their
folders, the lowest first. A layer may use those that its own CMakeLists.txt names in USES or
target_link_libraries; what it reaches through them alone, it may not include."""

import re
from pathlib import Path

TREES = ("platform", "kovraUninstaller")
OBJECTIVE_C = {"platform/objc", "platform/foundation", "platform/appkit"}
RUNTIME = "platform/objc"
APPLICATION = "kovraUninstaller/app"

SOURCES = ("*.cpp", "*.hpp", "*.mm", "*.h", "*.c")
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
CONDITION = re.compile(r"^[ \t]*#[ \t]*(?:el)?if[^\n]*", re.MULTILINE)
SYSTEM_MACRO = re.compile(r"__APPLE__|__MACH__|__linux__|\blinux\b|__gnu_linux__|TARGET_OS_|_WIN32"
                          r"|__GNUSTEP|__GNU_LIBOBJC__|__has_include")
RUNTIME_CALL = re.compile(r"\b(?:objc_|sel_|class_|object_|method_|ivar_)[a-zA-Z_]+\s*\(")
SUBDIRECTORY = re.compile(r"\badd_subdirectory\(\s*(\w+)\s*\)")
LIBRARY = re.compile(r"\bkovra_library\(\s*(\w+)([^)]*)\)")
EXTRA_LINK = re.compile(r"\btarget_link_libraries\(\s*(\w+)([^)]*)\)")


def is_testing(path):
    return path.stem.endswith("_test") or "testing" in path.parts


class SourceTree:
    def __init__(self, root):
        self.root = Path(root)
        self.layers = []  # the lowest first
        self.layer_of_target = {}
        self.links = []  # (target, target that it names)
        for tree in TREES:
            for folder in SUBDIRECTORY.findall(self._script(tree)):
                self._read_layer(f"{tree}/{folder}")
        self.uses = {layer: {self.layer_of_target[name] for target, name in self.links
                             if self.layer_of_target[target] == layer
                             and name in self.layer_of_target}
                     for layer in self.layers}

    def _script(self, folder):
        return re.sub(r"#[^\n]*", "", (self.root / folder / "CMakeLists.txt").read_text())

    def _read_layer(self, layer):
        text = self._script(layer)
        libraries = LIBRARY.findall(text)
        if not libraries:
            return
        self.layers.append(layer)
        for target, body in libraries:
            uses = re.search(r"\bUSES\b(.*)", body, re.DOTALL)
            self._add(layer, target, uses.group(1).split() if uses else [])
        for target, body in EXTRA_LINK.findall(text):
            self._add(layer, target, body.split())

    def _add(self, layer, target, used):
        self.layer_of_target[target] = layer
        self.links += [(target, name) for name in used]

    def layer_of(self, path):
        """The layer that a path, relative to the root, belongs to; None for none."""
        parts = Path(path).parts
        layer = "/".join(parts[:2])
        return layer if len(parts) > 2 and layer in self.layers else None

    def sources(self):
        for tree in TREES:
            for pattern in SOURCES:
                yield from sorted((self.root / tree).rglob(pattern))

    def violations(self):
        """One line for each."""
        found = []
        for target, name in self.links:
            if name in self.layer_of_target:
                found += self._violations_of_link(target, name)
        for path in self.sources():
            found += self._violations_of(path.relative_to(self.root))
        return found

    def _violations_of_link(self, target, name):
        layer, used = self.layer_of_target[target], self.layer_of_target[name]
        line = f"{layer}/CMakeLists.txt: {target} links {name}"
        if self.layers.index(used) > self.layers.index(layer):
            return [f"{line}, which is a higher layer"]
        if used in OBJECTIVE_C and not layer.startswith("platform/") and layer != APPLICATION:
            return [f"{line}, which has Objective-C types"]
        return []

    def _violations_of(self, path):
        text = COMMENT.sub("", (self.root / path).read_text())
        layer = self.layer_of(path)
        if layer is None and not is_testing(path):
            return [f"{path}: belongs to no layer"]
        found = []
        if not is_testing(path):
            for quote, name in INCLUDE.findall(text):
                found += self._violations_of_include(path, layer, quote, name)
        if not str(path).startswith("platform/"):
            found += [f"{path}: depends on the operating system: {line.strip()}"
                      for line in CONDITION.findall(text) if SYSTEM_MACRO.search(line)]
        if layer != RUNTIME and not is_testing(path):
            found += [f"{path}: calls the runtime: {call}" for call in RUNTIME_CALL.findall(text)]
        return found

    def _violations_of_include(self, path, layer, quote, name):
        if quote == "<":
            outside = name.startswith("objc/") and layer != RUNTIME
            return [f"{path}: includes the runtime's {name}"] if outside else []
        if "testing" in Path(name).parts:
            return [f"{path}: includes {name}, which belongs to the tests"]
        used = self.layer_of(name)
        if used is None or not (self.root / name).exists():
            return [f"{path}: includes {name}, which is not named from the root"]
        if used != layer and used not in self.uses[layer]:
            return [f"{path}: includes {name}, and {layer}/CMakeLists.txt does not name its target"]
        return []
