#!/usr/bin/python3
"""Stand-ins for the Mac's tools that check-on-a-mac calls, in a practice Mac with a display: one
program with all their names. Their output follows the tools' documentation; they show and press the
real window. CHECK_WRONG names the tools that answer as on a faulty Mac.

    mac_tools.py TOOL ARGUMENT...
"""

import json
import os
import shlex
import shutil
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

import catalogue  # noqa: E402

HOME = Path.home()
LOG = Path(catalogue.LOG)
PICTURES = Path(__file__).resolve().parent.parent.parent / "docs/pictures"
TITLE_BAR = 28
BUTTON, LINK = (240, 323), (240, 371)


def output(*words):
    return subprocess.run([str(word) for word in words], check=True, stdout=subprocess.PIPE).stdout


def is_wrong(tool):
    return tool in os.environ.get("CHECK_WRONG", "").split(",")


# The bundle


def codesign(words):
    if "--force" in words:
        return 0
    if "--verify" in words:
        print("a: valid on disk\na: satisfies its Designated Requirement", file=sys.stderr)
        return 0
    helper = ".tistool" if words[-1].endswith("tistool") else ""
    flags = "0x2(adhoc)" if is_wrong("codesign") else "0x10002(adhoc,runtime)"
    print(f"Identifier=ai.kovra.KovraUninstaller{helper}\nCodeDirectory v=20500 flags={flags}\n"
          "Signature=adhoc\nSealed Resources version=2 rules=13 files=4", file=sys.stderr)
    return 0


def spctl(words):
    print(f"{words[-1]}: rejected", file=sys.stderr)
    return 3


def plutil(words):
    if words[0] == "-lint":
        print(f"{words[-1]}: OK")
    else:
        sys.stdout.write(Path(words[-1]).read_text())
    return 0


def iconutil(words):
    folder, icon = Path(words[words.index("-o") + 1]), Path(words[-1])
    folder.mkdir()
    for points in (16, 32, 128, 256, 512):
        for scale, ending in ((1, ""), (2, "@2x")):
            side = points * scale * (2 if is_wrong("iconutil") else 1)
            output("convert", icon.with_suffix(".png"), "-resize", f"{side}x{side}",
                   folder / f"icon_{points}x{points}{ending}.png")
    return 0


def sips(words):
    source, target = words[-3], words[-1]
    output("convert", source, f"bmp:{target}")
    return 0


# The system


def lsappinfo(_words):
    print(' 5) "Finder" ASN:0x0-0x9009:\n    pid = 406 type="Foreground" flavor=3')
    if is_wrong("lsappinfo"):  # as if the program had an icon in the Dock
        for process in output("pgrep", "-P", os.getppid()).decode().split():
            print(f'12) "kovra Uninstaller"\n    pid = {process} type="Foreground" flavor=3')
    return 0


def ditto(words):
    Path(words[1]).parent.mkdir(parents=True, exist_ok=True)
    output("cp", "-a", *words)
    return 0


def open_(words):
    app = next(Path(word) for word in words if word.endswith(".app"))
    arguments = words[words.index("--args") + 1:]
    return subprocess.run([app / "Contents/MacOS/kovraUninstaller", *arguments],
                          stdout=subprocess.DEVNULL, check=False).returncode


def log(_words):
    for line in Path("/dev/practice-mac/syslog").read_text().splitlines():
        text = "<private>" if is_wrong("log") else line
        print(f"2025-03-14 09:26:53.000 E kovraUninstaller[1] [ai.kovra.KovraUninstaller:] {text}")
    return 0


def sudo(words):
    """Accepts any password."""
    command = " ".join(map(shlex.quote, words)).replace("\\", "\\\\").replace('"', '\\"')
    return subprocess.run(["/usr/bin/osascript", "-e", f'do shell script "{command}" with '
                           "administrator privileges"], stdout=subprocess.DEVNULL,
                          check=False).returncode


def says(text):
    def tool(_words):
        print(text)
        return 0
    return tool


# The window


def window():
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^ $"], check=False,
                           capture_output=True).stdout.split()
    return found[-1].decode() if found else None


def geometry():
    lines = output("xwininfo", "-id", window()).decode().splitlines()
    values = dict(line.strip().split(":", 1) for line in lines if ":" in line)
    return [int(values[f"Absolute upper-left {axis}"]) for axis in "XY"]


def screencapture(words):
    output("import", "-silent", "-window", words[words.index("-l") + 1], f"png:{words[-1]}")
    output("mogrify", "-background", "white", "-splice", f"0x{TITLE_BAR}", words[-1])
    if is_wrong("screencapture"):
        output("mogrify", "-roll", "+9+0", words[-1])
    return 0


def shown_page():
    """The name of the picture in docs/ that is most like the window."""
    def difference(name):
        done = subprocess.run(["compare", "-metric", "AE", "-fuzz", "5%", f"{PICTURES}/{name}.png",
                               "png:-", "null:"], check=False, capture_output=True, input=shot)
        return float(done.stderr.split()[0])
    shot = output("import", "-silent", "-window", window(), "png:-")
    return min(("scanning", "ready", "uninstalling", "nothing-found", "done", "residues", "failed"),
               key=difference)


# Role, text and height on the page of each element.
REMOVES = "This removes kovra from this Mac, including your sign-in and settings."
BEGINNING = [("AXStaticText", "Uninstall kovra", 172)]
PAGES = {
    "scanning": [*BEGINNING, ("AXStaticText", REMOVES, 210), ("AXStaticText", "Checking…", 302)],
    "ready": [*BEGINNING, ("AXStaticText", REMOVES, 210), ("AXButton", "Uninstall", 302)],
    "uninstalling": [*BEGINNING, ("AXStaticText", "Your Mac may ask for your password to remove "
                                  "kovra from the system Input Methods folder.", 210),
                     ("AXProgressIndicator", "Uninstalling…", 302)],
    "nothing-found": [("AXImage", "Done", 76), ("AXStaticText", "kovra was not found", 172),
                      ("AXStaticText", "There is nothing to remove on this Mac.", 210),
                      ("AXButton", "Quit", 302), ("AXButton", "Clean up anyway", 360)],
    "done": [("AXImage", "Done", 76), ("AXStaticText", "Goodbye.", 172),
             ("AXStaticText", "kovra was removed. Thanks for giving it a try.", 210),
             ("AXButton", "Quit", 302), ("AXButton", "Download kovra again", 360)],
    "residues": [("AXImage", "Done", 76), ("AXStaticText", "kovra was removed", 172),
                 ("AXStaticText", "Some items could not be removed. Restarting your Mac usually "
                  "clears them.", 210), ("AXButton", "Quit", 302), ("AXButton", "Show Log", 360)],
    "failed": [("AXImage", "Warning", 76), ("AXStaticText", "Couldn't finish uninstalling", 172),
               ("AXStaticText", "Remove kovra apps: failed", 210), ("AXButton", "Retry", 302),
               ("AXButton", "Show Log", 360)],
}


def tree():
    if window() is None:
        return {"windows": []}
    left, top = geometry()
    elements = [{"role": role, "subrole": None, "value": text, "title": None, "label": None,
                 "frame": [left + 150, top + y, 180, 20], "focused": False,
                 "actions": ["AXPress"] if role == "AXButton" else [], "window": True,
                 "topLevel": True, "parent": "AXGroup" if is_wrong("elements") else "AXWindow"}
                for role, text, y in PAGES[shown_page()]]
    return {"windows": [{"role": "AXWindow", "frame": [left, top - TITLE_BAR, 480, 478],
                         "elements": elements}]}


def press(title):
    texts = [text for _, text, _ in PAGES[shown_page()]]
    if title not in texts:
        return {"pressed": False}
    place = LINK if title in ("Clean up anyway", "Show Log", "Download kovra again") else BUTTON
    x, y = (a + b for a, b in zip(geometry(), place, strict=True))
    output("xdotool", "mousemove", x - 1, y, "mousemove", x, y, "mousedown", 1, "sleep", "0.05",
           "mouseup", 1, "mousemove", 5, 5)
    return {"pressed": True}


def elements(words):
    """Replaces elements.py, which needs a Mac's frameworks."""
    if words[0] == "permissions":
        allowed = not is_wrong("permissions")
        answer = {"accessibility": allowed, "screen": allowed}
    elif words[0] == "windows":
        answer = [{"id": window(), "frame": [0, 0, 480, 478]}] if window() else []
    elif words[0] == "tree":
        answer = tree()
    elif words[0] == "press":
        answer = press(words[2])
    else:
        output("xdotool", "key", "--delay", 60, "alt+q")
        answer = {"pressed": True}
    print(json.dumps(answer))
    return 0


def report(words):
    """Stands in for the system's crash reporter: waits for the program's end, and writes a report if
    it crashed."""
    state = Path(f"/proc/{words[0]}/stat")
    while state.exists() and state.read_text().rpartition(")")[2].split()[0] != "Z":
        time.sleep(0.1)
    if LOG.exists() and LOG.read_text().splitlines()[-1].endswith("CRASH: SIGSEGV"):
        (HOME / "Library/Logs/DiagnosticReports/kovraUninstaller-2025-03-14-092653.ips").touch()
    return 0


TOOLS = {
    "/usr/bin/uname": says("Darwin"), "/usr/bin/sw_vers": says("ProductVersion: 14.5"),
    "/usr/bin/xcode-select": says("/Library/Developer/CommandLineTools"),
    "/usr/sbin/sysctl": says("Mac14,2"), "/usr/bin/codesign": codesign, "/usr/sbin/spctl": spctl,
    "/usr/bin/plutil": plutil, "/usr/bin/iconutil": iconutil, "/usr/bin/sips": sips,
    "/usr/bin/lsappinfo": lsappinfo, "/usr/bin/ditto": ditto, "/usr/bin/open": open_,
    "/usr/bin/log": log, "/usr/bin/sudo": sudo, "/usr/sbin/screencapture": screencapture,
    "elements": elements, "report": report,
}

if __name__ == "__main__":
    if sys.argv[1] in TOOLS and shutil.which("convert"):
        sys.exit(TOOLS[sys.argv[1]](sys.argv[2:]))
    sys.exit(f"mac_tools.py: no stand-in of {sys.argv[1]}")
