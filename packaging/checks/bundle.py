"""Checks the bundle that ships."""

import plistlib
import re
import stat
from pathlib import Path

from . import asks, icon, macho, signature

CHECKOUT = Path(__file__).resolve().parent.parent.parent

# All files in Contents.
FILES = {"Info.plist", "PkgInfo", "MacOS/kovraUninstaller", "Resources/AppIcon.icns",
         "Resources/AppIcon.png", "Resources/tistool", "Resources/uninstall.sh",
         "_CodeSignature/CodeResources"}  # fmt: skip
RUNS = {"MacOS/kovraUninstaller", "Resources/tistool", "Resources/uninstall.sh"}
PROBLEMS = (signature.SignatureError, macho.MachOError, icon.IconError, OSError, KeyError,
            AssertionError)  # fmt: skip
LARGEST_PROGRAM = 400_000
LARGEST_BUNDLE = 1_500_000
OLDEST_SYSTEM = re.search(r"^set\(CMAKE_OSX_DEPLOYMENT_TARGET ([0-9.]+)\)$",
                          (CHECKOUT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]  # fmt: skip
LOG_FORMATS = b"%{public}s\0"
FLAGS = 0x10002  # signed ad hoc, hardened runtime
REQUIRED_KEYS = {
    "CFBundleExecutable": "kovraUninstaller",
    "CFBundleIdentifier": "ai.kovra.KovraUninstaller",
    "CFBundleName": "kovra Uninstaller",
    "CFBundlePackageType": "APPL",
    "CFBundleInfoDictionaryVersion": "6.0",
    "CFBundleIconFile": "AppIcon",
    "LSMinimumSystemVersion": OLDEST_SYSTEM,
    "NSHighResolutionCapable": True,
    "NSPrincipalClass": "NSApplication",
}


def demand(condition, message):
    if not condition:
        raise AssertionError(message)


def check_program(data):
    """The program must be for arm64 and the oldest system, and position-independent, load only the
    system's libraries, and contain no local symbol, debug section or build path."""
    program = macho.read(data)
    demand(program.cpu == macho.ARM64, "it is not for arm64")
    demand(program.file_type == macho.MH_EXECUTE, "it is not an executable")
    demand(program.platform == macho.MACOS, "it is not for macOS")
    minimum = ".".join(map(str, program.minimum)).removesuffix(".0")
    demand(minimum == OLDEST_SYSTEM, f"its oldest system is {minimum}")
    for flag, name in ((macho.PIE, "PIE"), (macho.TWO_LEVEL, "two-level names")):
        demand(program.flags & flag, f"{name} is off")
    for library in program.libraries:
        demand(library.startswith(("/usr/lib/", "/System/Library/")), f"it loads {library}")
    demand(not program.search_paths, f"it looks for libraries in {program.search_paths}")
    for segment in program.segments:
        demand(segment.protection & 6 != 6, f"{segment.name} can be written and run")
        demand(segment.name != "__DWARF", "it holds debug information")
    for index, symbol in enumerate(program.symbols):
        demand(not symbol.type & 0xE0, f"it holds the debug symbol {symbol.name}")
        needed = symbol.type & 1 or index in program.stub_symbols
        demand(needed, f"it is not stripped: {symbol.name}")
    for trace in (bytes(CHECKOUT), b"/home/", b"/root/", b"node_modules"):
        demand(trace not in data, f"a build path stays in it: {trace.decode()}")
    source = re.search(rb"[\w./-]*/[\w.-]+\.(?:cpp|hpp|h|o|a)\b", data)
    demand(not source, f"it names the file {source and source[0].decode()}")
    return program


def check_log(program):
    """The os_log format strings must be in the section where readers of the log look for them."""
    formats = program.section_bytes("__TEXT", "__oslogstring")
    demand(formats is not None, "its log's formats have no section of their own")
    demand(formats == LOG_FORMATS, f"its log's formats are {formats!r}")


def check_layout(bundle):
    contents = bundle / "Contents"
    info = plistlib.loads((contents / "Info.plist").read_bytes())
    for key, value in REQUIRED_KEYS.items():
        demand(info[key] == value, f"Info.plist has {info[key]!r} for {key}")
    for key in ("CFBundleVersion", "CFBundleShortVersionString"):
        demand(info[key].replace(".", "").isdigit(), f"Info.plist has {info[key]!r} for {key}")
    demand((contents / "PkgInfo").read_bytes() == b"APPL????", "PkgInfo differs")
    found = {p.relative_to(contents).as_posix() for p in contents.rglob("*") if not p.is_dir()}
    demand(found == FILES, f"it lacks or has in excess: {', '.join(sorted(found ^ FILES))}")
    for path in bundle.rglob("*"):
        mode = stat.S_IMODE(path.stat().st_mode)
        runs = path.is_dir() or path.relative_to(contents).as_posix() in RUNS
        demand(mode == (0o755 if runs else 0o644), f"{path.name} has mode {mode:o}")
    wrong = list(icon.problems((contents / "Resources/AppIcon.icns").read_bytes()))
    demand(not wrong, "; ".join(wrong))
    return info


def check_signatures(bundle, helper):
    """Both programs must be signed ad hoc with the hardened runtime, each with its identifier."""
    main = signature.check_bundle(bundle)
    nested = signature.check_program(helper)
    wanted = f"{REQUIRED_KEYS['CFBundleIdentifier']}.tistool"
    demand(nested.identifier == wanted, f"the helper is signed as {nested.identifier}")
    for signed in (main, nested):
        demand(signed.flags == FLAGS, f"the flags of {signed.identifier} are {signed.flags:#x}")


def check(bundle):
    """Raises one of PROBLEMS at the first violation; returns a readable report."""
    info = check_layout(bundle)
    program, helper = (
        (bundle / "Contents" / name).read_bytes()
        for name in ("MacOS/kovraUninstaller", "Resources/tistool")
    )
    programs = [check_program(data) for data in (program, helper)]
    check_log(programs[0])
    unknown = [line for read in programs for line in asks.problems(read)]
    demand(not unknown, "it asks for what is not known to exist: " + "; ".join(unknown))
    unused = "; ".join(asks.unused(programs))
    demand(not unused, unused)
    check_signatures(bundle, helper)
    size = len(program)
    whole = sum(p.stat().st_size for p in bundle.rglob("*") if p.is_file())
    sizes = {"program": (size, LARGEST_PROGRAM), "bundle": (whole, LARGEST_BUNDLE)}
    for name, (actual, limit) in sizes.items():
        demand(actual < limit, f"the {name} has {actual:,} bytes; the limit is {limit:,}")
    return (
        f"{info['CFBundleName']} {info['CFBundleShortVersionString']} ({info['CFBundleVersion']}), "
        f"macOS {info['LSMinimumSystemVersion']} and later, Apple silicon, signed ad hoc\n"
        f"program {size:,} bytes, bundle {whole:,} bytes"
    )
