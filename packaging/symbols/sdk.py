"""Reads classes, methods and exported names from a macOS SDK's headers and text stubs."""

import json
import re
from pathlib import Path

import clang.cindex as clang

clang.Config.set_library_file("/usr/lib/llvm-19/lib/libclang-19.so.1")
Kind = clang.CursorKind

# The text stubs of each library that a program can link. The first re-exports the others.
STUBS = {
    "libobjc": ["usr/lib/libobjc.A.tbd"],
    "libSystem": ["usr/lib/libSystem.B.tbd", "usr/lib/system/*.tbd"],
    "libc++abi": ["usr/lib/libc++abi.tbd"],
    "CoreFoundation": ["CoreFoundation.framework/Versions/A/CoreFoundation.tbd"],
    "CoreGraphics": ["CoreGraphics.framework/Versions/A/CoreGraphics.tbd"],
    "Foundation": ["Foundation.framework/Versions/C/Foundation.tbd"],
    "AppKit": ["AppKit.framework/Versions/C/AppKit.tbd"],
    "Carbon": [
        "Carbon.framework/Versions/A/Carbon.tbd",
        "Carbon.framework/Versions/A/Frameworks/HIToolbox.framework/Versions/A/HIToolbox.tbd",
    ],
}


class Sdk:
    def __init__(self, root):
        self.root = Path(root)
        self.frameworks = self.root / "System/Library/Frameworks"
        self._types = None

    def version(self):
        """The SDK's version of macOS, as numbers."""
        settings = json.loads((self.root / "SDKSettings.json").read_text())
        return tuple(map(int, settings["Version"].split(".")))

    def stub_files(self, library):
        for pattern in STUBS[library]:
            base = self.root if pattern.startswith("usr/") else self.frameworks
            yield from sorted(base.glob(pattern))

    def exporter(self, symbol):
        """The library that exports the symbol for arm64, and the text stub that has it."""
        pattern = re.compile(rf"[ \[,']{re.escape(symbol)}[',\s\]]")
        for library in STUBS:
            for path in self.stub_files(library):
                for targets, names in self._exports(path):
                    if "arm64e-macos" in targets and pattern.search(names):
                        return library, path.relative_to(self.root).as_posix()
        return None

    def library(self, name):
        """The install path and the two versions of a library."""
        text = next(iter(self.stub_files(name))).read_text()
        field = lambda key: re.search(rf"^{key}: +'?([^'\s]+)'?$", text, re.M)
        compatibility = field("compatibility-version")
        version = compatibility.group(1) if compatibility else "1"
        return field("install-name").group(1), field("current-version").group(1), version

    @staticmethod
    def _exports(path):
        part = re.compile(r"targets: +\[([^\]]*)\]\s+(?:symbols|weak-symbols): +(\[[^\]]*\])")
        return part.findall(path.read_text())

    def types(self):
        """Each class and protocol: name → (framework, inherits, {method: (encoding, header)})."""
        if self._types is None:
            self._types = {}
            for cursor in self._parse().get_children():
                self._note(cursor)
        return self._types

    def _parse(self):
        arguments = [
            *("-x", "objective-c", "-target", "arm64-apple-macos12.0", "-fblocks"),
            *("-isysroot", str(self.root), "-isystem", "/usr/lib/llvm-19/lib/clang/19/include"),
        ]
        source = ("all.m", "#import <AppKit/AppKit.h>\n")
        unit = clang.Index.create().parse("all.m", arguments, unsaved_files=[source])
        errors = [d for d in unit.diagnostics if d.severity >= clang.Diagnostic.Error]
        if errors:
            raise ValueError(f"the headers cannot be read: {errors[0]}")
        return unit.cursor

    def _note(self, cursor):
        if cursor.kind == Kind.OBJC_CATEGORY_DECL:
            children = cursor.get_children()
            name = next(c.spelling for c in children if c.kind == Kind.OBJC_CLASS_REF)
        elif cursor.kind in (Kind.OBJC_INTERFACE_DECL, Kind.OBJC_PROTOCOL_DECL):
            is_protocol = cursor.kind == Kind.OBJC_PROTOCOL_DECL
            name = f"@{cursor.spelling}" if is_protocol else cursor.spelling
        else:
            return
        header = self._header(cursor)
        framework = "objc" if header.startswith("objc/") else header.split("/")[0]
        _, inherits, methods = self._types.setdefault(name, (framework, [], {}))
        for child in cursor.get_children():
            if child.kind == Kind.OBJC_SUPER_CLASS_REF:
                inherits.insert(0, child.spelling)
            elif child.kind == Kind.OBJC_PROTOCOL_REF:
                inherits.append(f"@{child.spelling}")
            elif child.kind in (Kind.OBJC_CLASS_METHOD_DECL, Kind.OBJC_INSTANCE_METHOD_DECL):
                sign = "+" if child.kind == Kind.OBJC_CLASS_METHOD_DECL else "-"
                encoding = without_offsets(child.objc_type_encoding)
                methods[f"{sign} {child.spelling}"] = (encoding, self._header(child))

    def _header(self, cursor):
        path = str(cursor.location.file)
        in_framework = re.search(r"/(\w+)\.framework/(?:Versions/\w+/)?Headers/(.+)$", path)
        return "/".join(in_framework.groups()) if in_framework else path.split("/usr/include/")[-1]


def without_offsets(encoding):
    """The types of an encoding, without the offsets of the arguments in the stack frame."""
    depth, result = 0, ""
    for character in encoding:
        depth += (character in "{[(\"") - (character in "}])")
        if depth or not character.isdigit():
            result += character
    return result
