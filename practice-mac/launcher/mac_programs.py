"""Mac programs on a practice Mac: whoever executes one has it run by the Mac runtime."""

import os
import platform
import shutil

from .root import CannotBoot
from .tools import OWN_FOLDER

EMULATOR = "qemu-aarch64"
STARTER = "start-mac-program"
LIBRARY = "execute-mac-programs.so"


def is_mac_bundle(bundle):
    """Whether the application is one of a Mac's, by its layout."""
    return bundle is not None and (bundle / "Contents/MacOS").is_dir()


def resources_of(bundle):
    """Where in the application its resources are."""
    return "Contents/Resources" if is_mac_bundle(bundle) else "Resources"


def install(layer, runtime, variables):
    """Puts the starter into the layer and has every program load the library that calls it.
    `runtime` is the Mac runtime's build folder, `variables` are the toolkit's."""
    emulator = shutil.which(EMULATOR)
    if emulator is None:
        raise CannotBoot(f"{EMULATOR} is missing; Debian's package qemu-user brings it")
    if not (runtime / "mac-runtime").exists():
        raise CannotBoot("the Mac runtime is not built; mac-runtime/build does it")
    starter = f"{OWN_FOLDER}/{STARTER}"
    layer.copy(runtime / STARTER, starter)
    lines = [f"emulator={emulator}", f"runtime={runtime}/mac-runtime"]
    lines += [f"{name}={value}" for name, value in variables.items()]
    layer.write(f"{starter}.conf", os.fsencode("".join(f"{line}\n" for line in lines)))
    # The dynamic linker of each architecture takes the library from its own folder ($LIB): the
    # emulated one finds an empty one there.
    layer.copy(runtime / "libempty.so", f"{OWN_FOLDER}/lib/aarch64-linux-gnu/{LIBRARY}")
    layer.copy(runtime / LIBRARY, f"{OWN_FOLDER}/lib/{platform.machine()}-linux-gnu/{LIBRARY}")
    layer.write("/etc/ld.so.preload", f"{OWN_FOLDER}/$LIB/{LIBRARY}\n".encode())
