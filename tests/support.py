"""What the whole-program tests share. They try Linux's program; with KOVRA_PROGRAM=macos, the Mac's,
which `./package` made, in the Mac runtime."""

import os
import re
import sys
from pathlib import Path

sys.dont_write_bytecode = True
CHECKOUT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(CHECKOUT / "practice-mac"))

from catalogue import HOME, LOG  # noqa: E402
from launcher import practice  # noqa: E402
from launcher.practice import time_limit  # noqa: E402, F401

BUILD = Path(os.environ.get(practice.BUILD_VARIABLE, CHECKOUT / "build/linux"))
IS_MAC = {"linux": False, "macos": True}[os.environ.get("KOVRA_PROGRAM", "linux")]


def in_bundle(what, bundle=None):
    """The path of a part of the bundle: "program", "Info.plist", or a resource by its name. It is
    relative to the bundle's folder unless `bundle` names that."""
    if IS_MAC:
        places = {"program": "Contents/MacOS/kovraUninstaller", "Info.plist": "Contents/Info.plist"}
        resources = "Contents/Resources"
    else:
        places = {"program": "kovraUninstaller", "Info.plist": "Resources/Info-gnustep.plist"}
        resources = "Resources"
    place = places.get(what) or f"{resources}/{what}"
    return place if bundle is None else f"{bundle}/{place}"


# The application, and the one that uninstalls without a window, on this machine.
if IS_MAC:
    APPLICATION = CHECKOUT / "build/macos/kovraUninstaller.app"
    RUNNER = CHECKOUT / "build/macos-tests/kovraUninstaller.app"
else:
    APPLICATION = BUILD / "kovraUninstaller.app"
    RUNNER = BUILD / "tests/kovraUninstaller.app"

BUNDLE = f"{HOME}/Downloads/kovraUninstaller.app"
PROGRAM = in_bundle("program", BUNDLE)

STAMP = re.compile(r"^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\] ", re.MULTILINE)


def without_stamps(log):
    """The log's text without the time stamps, which must be there."""
    text = log.decode()
    assert not text or STAMP.match(text), text
    return STAMP.sub("", text)


def log_lines(run):
    """The lines of the log that a run wrote, without their time stamps."""
    return without_stamps(run.written(LOG)).splitlines()


def replace(tool, script):
    """Shell commands that replace a tool by a script; the real one gets the ending .real."""
    return (f"mv {tool} {tool}.real\ncat > {tool} <<'END'\n#!/bin/bash\n{script}\nEND\n"
            f"chmod 755 {tool}")


def on_this_machine(program):
    """The command line that starts the program outside of a practice Mac."""
    if IS_MAC:
        return [CHECKOUT / "build/mac-runtime/start-mac-program", program, program]
    return [program]


class PracticeMac(practice.PracticeMac):
    """A practice Mac with the application that is tried."""

    def __init__(self, scenario, *, bundle=APPLICATION, **options):
        super().__init__(scenario, build=BUILD, bundle=bundle, **options)
