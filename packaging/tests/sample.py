"""Generates small programs and bundles for the tests of the signer and the checks."""

import importlib.util
import plistlib
import struct
import subprocess
import sys
from pathlib import Path

PACKAGING = Path(__file__).parent.parent
sys.path.insert(0, str(PACKAGING))
sys.dont_write_bytecode = True

SIGN = PACKAGING / "signing/sign"
SYSTEM = "/usr/lib/libSystem.B.dylib"
PIE_TWO_LEVEL = 0x200085


def program(methods="", texts=(), imports=(), libraries=(SYSTEM,), flags=PIE_TWO_LEVEL,
            cpu=0x0100000C, minimum=(13, 0), padding=9000, formats=None):  # fmt: skip
    """An arm64 executable for macOS 13 with a place for a signature. It cannot run: it has a table
    of methods, constant texts, imports as (symbol, library's number from 1), and formats for the
    system's log."""
    contents = [
        ("__TEXT", "__cstring", b"\0".join(t.encode() for t in texts) + b"\0"),
        ("__TEXT", "__const", bytes(padding)),
        ("__DATA", "__kovra_methods", methods.encode()),
    ]
    if formats is not None:
        contents.append(("__TEXT", "__oslogstring", formats))
    strings, symbols = b"\0", b""
    for name, library in imports:
        symbols += struct.pack("<I2BHQ", len(strings), 1, 0, library << 8, 0)
        strings += name.encode() + b"\0"

    loads = [_library(path) for path in libraries]
    size = 32 + 3 * 72 + 80 * len(contents) + 24 + 24 + 16 + sum(map(len, loads))
    commands, offset, body = [], size, b""
    for segment in ("__TEXT", "__DATA"):
        start, sections = (0 if segment == "__TEXT" else offset), b""
        for owner, name, data in contents:
            if owner == segment:
                sections += struct.pack("<16s16s2Q8I", name.encode(), owner.encode(), offset,
                                        len(data), offset, *[0] * 7)  # fmt: skip
                offset, body = offset + len(data), body + data
        protection = 5 if segment == "__TEXT" else 3
        commands.append(_segment(segment, start, offset - start, protection, sections))
    offset, body = offset + -offset % 16, body + bytes(-offset % 16)
    tail = symbols + strings
    tail += bytes(-len(tail) % 16)
    commands.append(_segment("__LINKEDIT", offset, len(tail) + 16, 1, b""))
    count = len(symbols) // 16
    commands.append(struct.pack("<6I", 2, 24, offset, count, offset + len(symbols), len(strings)))
    packed = minimum[0] << 16 | minimum[1] << 8
    commands.append(struct.pack("<6I", 0x32, 24, 1, packed, 14 << 16, 0))
    commands.append(struct.pack("<4I", 0x1D, 16, offset + len(tail), 16))
    commands += loads
    joined = b"".join(commands)
    assert 32 + len(joined) == size
    header = struct.pack("<8I", 0xFEEDFACF, cpu, 0, 2, len(commands), len(joined), flags, 0)
    return header + joined + body + tail + bytes(16)


def _segment(name, offset, size, protection, sections):
    return struct.pack("<2I16s4Q4I", 0x19, 72 + len(sections), name.encode(), offset, size, offset,
                       size, protection, protection, len(sections) // 80, 0) + sections  # fmt: skip


def _library(path):
    text = path.encode() + b"\0"
    text += bytes(-len(text) % 8)
    return struct.pack("<6I", 0x0C, 24 + len(text), 24, 2, 0, 0) + text


def bundle(folder):
    """Makes a signed bundle with a nested program; returns its path."""
    path = Path(folder) / "Sample.app"
    contents = path / "Contents"
    (contents / "MacOS").mkdir(parents=True)
    (contents / "Resources").mkdir()
    (contents / "MacOS/sample").write_bytes(program())
    (contents / "Resources/helper").write_bytes(program(padding=5000))
    (contents / "Resources/text").write_text("text\n")
    (contents / "PkgInfo").write_text("APPL????")
    info = {"CFBundleExecutable": "sample", "CFBundleIdentifier": "test.sample"}
    (contents / "Info.plist").write_bytes(plistlib.dumps(info))
    sign("--identifier", "test.sample.helper", contents / "Resources/helper")
    sign(path)
    return path


def signer(name):
    """A module of the signer; its name must not hide the check's module of the same name."""
    place = PACKAGING / "signing" / f"{name}.py"
    spec = importlib.util.spec_from_file_location(f"signer_{name}", place)
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def sign(*arguments):
    subprocess.run([SIGN, *arguments], check=True, capture_output=True, text=True)
