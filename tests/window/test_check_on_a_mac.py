#!/usr/bin/python3
"""Runs packaging/check-on-a-mac in a practice Mac with stand-ins for the Mac's tools."""

import json
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True

import mac_tools  # noqa: E402
from display import Display  # noqa: E402
from whole import BUNDLE, CHECKOUT, HOME, PracticeMac  # noqa: E402

sys.path.insert(0, str(CHECKOUT / "tests/proof"))
import toml  # noqa: E402

TOOLS = CHECKOUT / "tests/window/mac_tools.py"
COPY = f"{HOME}/checkout"
APP = f"{HOME}/app/kovraUninstaller.app"
THROW_AWAY = "/Users/Shared/this Mac may be thrown away"
# The Linux program in a bundle with the paths of a Mac's bundle too.
SETUP = f"""set -e
mkdir -p {HOME}/app
cp -a {BUNDLE} {HOME}/app/
mkdir -p {APP}/Contents/MacOS
ln -s ../Resources {APP}/Contents/Resources
cp {CHECKOUT}/resources/AppIcon.icns {APP}/Resources/
ln -s ../Resources/Info-gnustep.plist {APP}/Contents/Info.plist
cat >{APP}/Contents/MacOS/kovraUninstaller <<'END'
#!/bin/bash -p
here=$(dirname "$(realpath "$0")")
/usr/bin/python3 -B {TOOLS} report $$ &
exec "$here/../../kovraUninstaller" "$@"
END
chmod +x {APP}/Contents/MacOS/kovraUninstaller
"""


def script(tool):
    return f"#!/bin/sh\nexec /usr/bin/python3 -B {TOOLS} {tool} \"$@\"\n"


def scenario():
    """A Mac without the product, with the check's own files and the tools that it calls."""
    files = [{"path": path, "text": script(path), "mode": 0o755}
             for path in mac_tools.TOOLS if path.startswith("/")]
    for path in [CHECKOUT / "packaging/check-on-a-mac",
                 *(CHECKOUT / "packaging/on_a_mac").glob("*.py")]:
        text = path.read_text()
        if path.name == "elements.py":
            text = ("import os, sys\n"
                    f"os.execv({str(TOOLS)!r}, [{str(TOOLS)!r}, 'elements', *sys.argv[1:]])\n")
        files.append({"path": f"{COPY}/{path.relative_to(CHECKOUT)}", "text": text, "mode": 0o755})
    links = [{"path": f"{COPY}/{name}", "to": str(CHECKOUT / name)}
             for name in ("CMakeLists.txt", "docs", "practice-mac", "tests")]
    return {"title": "A Mac to check on", "extends": "clean", "file": files, "link": links,
            "folder": [{"path": "/Library/Developer/CommandLineTools"},
                       {"path": "/Users/Shared", "mode": 0o777}]}


class CheckOnAMac(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(Display())
        folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.scenario = Path(folder) / "to-check.toml"
        cls.scenario.write_text(toml.text_of(scenario()))

    def check(self, *arguments, marked=True, **options):
        """Runs the check; returns the run, and the rows of its summary by name."""
        mark = f"touch '{THROW_AWAY}'" if marked else ":"
        environment = {"DISPLAY": self.display.environment["DISPLAY"],
                       **options.pop("environment", {})}
        run = PracticeMac(self.scenario).run(
            ["/bin/bash", "-c", f'{SETUP}{mark}\nexec {COPY}/packaging/check-on-a-mac "$@"', "bash",
             APP, "--evidence", f"{HOME}/evidence", *arguments],
            environment=environment, timeout=900, **options)
        try:
            summary = json.loads(run.written(f"{HOME}/evidence/summary.json"))
        except FileNotFoundError:
            summary = []
        return run, {row["row"]: row for row in summary}

    def states(self, rows):
        found = {}
        for name, row in rows.items():
            found.setdefault(row["state"], []).append(name)
        return found

    def assert_states(self, run, rows, *, wrong=(), not_tried=()):
        output = f"{run.stdout.decode()}\n{run.stderr.decode()}"
        states = self.states(rows)
        self.assertEqual(sorted(states.get("wrong", [])), sorted(wrong), output)
        self.assertEqual(sorted(states.get("not tried", [])), sorted(not_tried), output)
        self.assertGreater(len(states["right"]), 3, output)
        self.assertEqual(run.status, 1 if wrong else 2, output)

    # An ad-hoc signature cannot be assessed, and the privacy records cannot be read.
    NEVER = ["Gatekeeper", "removal: privacy records"]
    OF_PRODUCT = ["what reaches root", "removal", "the program's error in the system's log"]

    def test_a_mac_without_the_product_passes(self):
        run, rows = self.check("--unattended")
        self.assert_states(run, rows, not_tried=[*self.NEVER, *self.OF_PRODUCT])
        pressed = [tool for tool in run.tools if tool.name in ("killall", "tccutil", "osascript")]
        self.assertEqual(pressed, [])
        for name in ("summary.txt", "window.png", "window-ours-nothing-found.png", "inventory.txt"):
            self.assertTrue(run.written(f"{HOME}/evidence/{name}"), name)

    def test_removes_the_product_unattended(self):
        run, rows = self.check("--unattended", "--with-product")
        self.assert_states(run, rows, not_tried=[*self.NEVER, "what reaches root"])
        self.assertIn("removed", rows["removal: files"]["saw"])

    def test_removes_the_product_with_a_person_present(self):
        run, rows = self.check("--with-product")
        self.assert_states(run, rows, wrong=["what reaches root"], not_tried=self.NEVER)
        # Linux's program passes on its DISPLAY, which a Mac does not have.
        self.assertEqual(rows["what reaches root"]["saw"], "DISPLAY reached root")

    def test_each_fault_is_reported(self):
        """Faults of the bundle, of the page, and of the removal."""
        faulty = ",".join(("codesign", "lsappinfo", "iconutil", "elements", "screencapture", "log"))
        run, rows = self.check(
            "--unattended", "--with-product", environment={"CHECK_WRONG": faulty},
            faults=["security delete-generic-password=exit:1", "lsregister -u=exit:1"])
        pages = [f"removal: the page {when}, its {what}" for when in ("before", "after")
                 for what in ("picture", "elements")]
        self.assert_states(run, rows, not_tried=[*self.NEVER, "what reaches root"], wrong=[
            "signature", "the icon", "--inventory in the Dock", "the window's colours and places",
            "texts and elements by accessibility, an argument on the command line opening no alert",
            "a start from Downloads", *pages, "removal: the end", "removal: keychain",
            "removal: registrations", "the program's error in the system's log"])
        self.assertIn("unexpected: {'class': 'genp', 'account': 'ai.kovra.auth.session'}",
                      rows["removal: keychain"]["saw"])

    def test_reports_missing_permissions(self):
        run, rows = self.check("--unattended", "--with-product",
                               environment={"CHECK_WRONG": "permissions"})
        self.assertEqual(run.status, 2, run.stdout.decode())
        self.assertIn("Accessibility", rows["removal"]["saw"])
        self.assertIn("Screen Recording", rows["the window's colours and places"]["saw"])

    def test_refuses_to_install_the_product_without_the_marker_file(self):
        run, _ = self.check("--with-product", marked=False)
        self.assertEqual(run.status, 64)
        self.assertIn(THROW_AWAY, run.stderr.decode())
        self.assertEqual(run.tools, [])


if __name__ == "__main__":
    unittest.main()
