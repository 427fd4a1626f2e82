"""Checks the application on a Mac, as far as a program can, row by row."""

import argparse
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import judge
import removal
import window
from evidence import Evidence, until
from picture import mean_difference

CHECKOUT = Path(__file__).resolve().parents[2]
EPILOG = f"""\
A row is right, wrong or not tried (with what is lacking). The status is 0 if all rows are right, 1
if any is wrong, 2 if none is wrong and some were not tried.

Without --with-product only the uninstaller's own log is changed on the Mac, and no button that removes
something is pressed. With it, a harmless product is installed in this account and removed
again: use it only on a Mac, or in an account, that you can throw away. To confirm that, create this
file first:

    touch "{removal.MARKER}"

The terminal needs Accessibility and Screen Recording (System Settings, Privacy & Security), and
somebody must be logged in at the screen; rows that lack this are not tried.
"""


def options():
    parser = argparse.ArgumentParser(prog="check-on-a-mac", epilog=EPILOG,
                                     description="Checks the application APP on this Mac.",
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("app", type=Path, metavar="APP", help="kovraUninstaller.app")
    parser.add_argument("--unattended", action="store_true",
                        help="leave out what needs a person")
    parser.add_argument("--with-product", action="store_true",
                        help="install a harmless product and remove it")
    parser.add_argument("--evidence", type=Path, metavar="FOLDER",
                        help="where the evidence is put (default: a new folder in the current one)")
    chosen = parser.parse_args()
    chosen.app = chosen.app.resolve()
    if not (chosen.app / "Contents/MacOS/kovraUninstaller").is_file():
        parser.exit(64, f"check-on-a-mac: {chosen.app} is not the application\n")
    if chosen.with_product and not Path(removal.MARKER).exists():
        parser.exit(64, "check-on-a-mac: --with-product needs a Mac that may be thrown away, which "
                    f'the file "{removal.MARKER}" says. It is not there.\n')
    chosen.evidence = chosen.evidence or Path(time.strftime("checked-on-a-mac-%Y%m%d-%H%M%S"))
    return chosen


def signature_rows(evidence, app):
    helper = app / "Contents/Resources/tistool"
    shown = [evidence.run(f"codesign-{path.stem}", ["/usr/bin/codesign", "-dvvv", path])
             for path in (app, helper)]
    verified = evidence.run("codesign-verify", ["/usr/bin/codesign", "--verify", "--deep",
                                                "--strict", "--verbose=2", app])
    evidence.row("signature", lambda: judge.signature(
        *((one.status, one.text) for one in (verified, *shown))))
    assessed = evidence.run("spctl", ["/usr/sbin/spctl", "--assess", "--type", "execute",
                                      "--verbose", app])
    evidence.row("Gatekeeper", lambda: judge.assessment(assessed.status, assessed.text,
                                                        judge.is_ad_hoc(shown[0].text)))


def information_verdict(evidence, app):
    path = app / "Contents/Info.plist"
    lint = evidence.run("plutil-lint", ["/usr/bin/plutil", "-lint", path])
    converted = evidence.run("plutil-convert",
                             ["/usr/bin/plutil", "-convert", "xml1", "-o", "-", path])
    oldest_system = re.search(r"^set\(CMAKE_OSX_DEPLOYMENT_TARGET ([0-9.]+)\)$",
                              (CHECKOUT / "CMakeLists.txt").read_text(), re.MULTILINE)[1]
    return judge.information((lint.status, lint.text), converted.out.encode(), oldest_system)


def icon_verdict(evidence, app):
    folder = evidence.path("AppIcon.iconset")
    evidence.run("iconutil", ["/usr/bin/iconutil", "-c", "iconset", "-o", folder,
                              app / "Contents/Resources/AppIcon.icns"])
    drawing = window.bitmap(evidence, app / "Contents/Resources/AppIcon.png", "icon-drawing")
    sizes, differences = {}, {}
    for path in sorted(folder.glob("*.png")) if folder.is_dir() else []:
        picture = window.bitmap(evidence, path, path.stem)
        sizes[path.name] = (picture.width, picture.height)
        differences[path.name] = mean_difference(picture, drawing)
    return judge.icon(sizes, differences)


def inventory_rows(evidence, app):
    words = [app / "Contents/MacOS/kovraUninstaller", "--inventory"]
    listings = []
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        process = subprocess.Popen([str(word) for word in words], stdin=subprocess.DEVNULL,
                                   stdout=out, stderr=err)

        def ended():
            listings.append(evidence.run("lsappinfo", ["/usr/bin/lsappinfo", "list"]).out)
            return process.poll() is not None
        if not until(ended, 60):
            process.kill()
        status = process.wait()
        texts = []
        for file in (out, err):
            file.seek(0)
            texts.append(file.read().decode(errors="replace"))
    evidence.write("inventory.txt", texts[0])
    evidence.row("--inventory", lambda: judge.inventory(status, *texts))
    evidence.row("--inventory in the Dock", lambda: judge.no_dock_icon(listings, process.pid))


def heading(evidence):
    version = evidence.run("sw_vers", ["/usr/bin/sw_vers"])
    model = evidence.run("model", ["/usr/sbin/sysctl", "-n", "hw.model"])
    return f"{' '.join(version.out.split())} {model.out.strip()}"


def main():
    chosen = options()
    evidence = Evidence(chosen.evidence)
    about = heading(evidence)
    print(about)
    program = chosen.app / "Contents/MacOS/kovraUninstaller"
    allowed = window.permissions(evidence)
    signature_rows(evidence, chosen.app)
    evidence.row("Info.plist", lambda: information_verdict(evidence, chosen.app))
    evidence.row("the icon", lambda: icon_verdict(evidence, chosen.app))
    inventory_rows(evidence, chosen.app)
    window.window_rows(evidence, allowed, program)
    evidence.row("SIGSEGV", lambda: window.crash_verdict(evidence, allowed, program))
    evidence.row("a start from Downloads", lambda: window.downloads_verdict(
        evidence, allowed, chosen.app))
    removal.rows(evidence, allowed, chosen.app, chosen.with_product, chosen.unattended)
    evidence.summarise(about)
    return evidence.status()


if __name__ == "__main__":
    sys.exit(main())
