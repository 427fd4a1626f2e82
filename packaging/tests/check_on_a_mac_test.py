#!/usr/bin/python3
"""The judgements of check-on-a-mac, with right and wrong captures, and its language versions."""

import ast
import ctypes
import plistlib
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
PACKAGING = Path(__file__).resolve().parent.parent
CHECKOUT = PACKAGING.parent
sys.path[:0] = [str(PACKAGING / "on_a_mac"), str(CHECKOUT / "tests")]

import elements  # noqa: E402
import judge  # noqa: E402
import removal  # noqa: E402
from picture import Picture, mean_difference, page_picture  # noqa: E402
from test_inventory import INSTALLED  # noqa: E402

SHOWN = """Executable=/Applications/kovraUninstaller.app/Contents/MacOS/kovraUninstaller
Identifier=ai.kovra.KovraUninstaller
Format=app bundle with Mach-O thin (arm64)
CodeDirectory v=20500 size=3121 flags=0x10002(adhoc,runtime) hashes=87+7 location=embedded
Signature=adhoc
Info.plist entries=13
TeamIdentifier=not set
Sealed Resources version=2 rules=13 files=4
"""
HELPER = SHOWN.replace("Identifier=ai.kovra.KovraUninstaller",
                       "Identifier=ai.kovra.KovraUninstaller.tistool")
VERIFIED = "a.app: valid on disk\na.app: satisfies its Designated Requirement\n"
LISTING = """ 5) "Finder" ASN:0x0-0x9009:
    bundleID="com.apple.finder"
    pid = 406 type="Foreground" flavor=3 Version="15.3.2"
12) "kovra Uninstaller" ASN:0x0-0x41041:
    bundleID="ai.kovra.KovraUninstaller"
    pid = 4711 type="%s" flavor=3
"""


def stamped(*lines):
    return [f"[2025-03-14 09:26:53] {line}" for line in lines]


def converted(*words):
    return subprocess.run(["convert", *map(str, words)], check=True, capture_output=True).stdout


def window_picture(name, *changes):
    """The picture of that page in docs/, with a title bar and the changes."""
    return Picture(converted(CHECKOUT / f"docs/pictures/{name}.png", *changes, "-background",
                             "white", "-splice", "0x28", "bmp:-"))


def element(role, text, y, **changes):
    key = {"AXButton": "title", "AXStaticText": "value"}.get(role, "label")
    return {"role": role, "subrole": None, "title": None, "value": None, "label": None,
            "frame": [200.0, 150.0 + y, 80.0, 20.0], "window": True, "topLevel": True,
            "parent": "AXWindow", "focused": False,
            "actions": ["AXPress"] if role == "AXButton" else [], key: text, **changes}


def tree(*elements):
    close = element("AXButton", "", 0, subrole="AXCloseButton")
    return {"windows": [{"role": "AXWindow", "frame": [100.0, 100.0, 480.0, 478.0],
                         "elements": [*elements, close]}]}


NOTHING_FOUND = [element("AXImage", "Done", 80), element("AXStaticText", "kovra was not found", 190),
                 element("AXStaticText", "There is nothing to remove on this Mac.", 230),
                 element("AXButton", "Quit", 330), element("AXButton", "Clean up anyway", 380)]


class Judgements(unittest.TestCase):
    def right(self, verdict):
        self.assertEqual(verdict.state, judge.RIGHT, verdict)

    def wrong(self, verdict, *words):
        self.assertEqual(verdict.state, judge.WRONG, verdict)
        for word in words:
            self.assertIn(word, verdict.saw)

    def not_tried(self, verdict, word):
        self.assertEqual(verdict.state, judge.NOT_TRIED, verdict)
        self.assertIn(word, verdict.saw)

    def test_the_signature_needs_the_hardened_runtime_and_the_right_identifiers(self):
        self.right(judge.signature((0, VERIFIED), (0, SHOWN), (0, HELPER)))
        self.wrong(judge.signature((1, "a.app: a sealed resource is missing or invalid"),
                                   (0, SHOWN.replace("(adhoc,runtime)", "(adhoc)")), (0, SHOWN)),
                   "valid on disk", "the bundle lacks the hardened runtime",
                   "the helper is not signed as")

    def test_gatekeeper_must_accept_a_notarised_application(self):
        accepted = "a.app: accepted\nsource=Notarized Developer ID\n"
        self.right(judge.assessment(0, accepted, ad_hoc=False))
        self.wrong(judge.assessment(3, "a.app: rejected\n", ad_hoc=False), "rejected")
        self.wrong(judge.assessment(0, accepted, ad_hoc=True), "accepted")
        self.not_tried(judge.assessment(3, "a.app: rejected\n", ad_hoc=True), "Developer ID")
        self.not_tried(judge.assessment(0, "a.app: accepted\noverride=security disabled", False),
                       "Gatekeeper")

    def test_info_plist_must_be_well_formed_and_as_wanted(self):
        found = {**judge.INFORMATION, "CFBundleShortVersionString": "1.2.0", "CFBundleVersion": "42",
                 "LSMinimumSystemVersion": "14.0"}
        self.right(judge.information((0, "a/Info.plist: OK\n"), plistlib.dumps(found), "14.0"))
        self.wrong(judge.information((0, "a/Info.plist: OK\n"), plistlib.dumps(found), "13.0"),
                   "LSMinimumSystemVersion is '14.0'")
        found["CFBundleIdentifier"] = "ai.kovra.other"
        self.wrong(judge.information((1, "a/Info.plist: Unexpected character"),
                                     plistlib.dumps(found), "14.0"), "plutil", "CFBundleIdentifier")
        self.wrong(judge.information((0, "a: OK"), b"rubbish", "14.0"), "cannot be read")

    def test_the_icon_must_have_ten_sizes_of_the_same_drawing(self):
        sizes = {name: (side, side) for name, side in judge.ICON_SIZES.items()}
        same = dict.fromkeys(sizes, 2.0)
        self.right(judge.icon(sizes, same))
        self.wrong(judge.icon({**sizes, "icon_16x16.png": (32, 32)},
                              {**same, "icon_32x32.png": 90.0}),
                   "icon_16x16.png has 32 × 32", "icon_32x32.png differs")
        del sizes["icon_512x512@2x.png"]
        self.wrong(judge.icon(sizes, same), "icon_512x512@2x.png is missing")

    def test_a_scrambled_icon_differs_from_the_drawing(self):
        drawing = Picture(converted(CHECKOUT / "resources/AppIcon.png", "bmp:-"))
        small = ["-resize", "32x32"]
        scrambled = [*small, "-roll", "+16+9", "-flip"]
        for changes, differs in ((small, False), (scrambled, True)):
            picture = Picture(converted(CHECKOUT / "resources/AppIcon.png", *changes, "bmp:-"))
            self.assertEqual(mean_difference(picture, drawing) > 24, differs)

    def test_the_inventory_must_have_the_form_of_one(self):
        self.right(judge.inventory(0, INSTALLED, ""))
        self.right(judge.inventory(0, "Nothing found.\n", ""))
        self.wrong(judge.inventory(1, INSTALLED + "oops\n", "a warning"), "status 1", "oops",
                   "a warning")
        self.wrong(judge.inventory(0, "", ""), "does not begin")

    def test_the_inventory_must_not_appear_in_the_dock(self):
        self.right(judge.no_dock_icon([LISTING % "BackgroundOnly"], 4711))
        self.wrong(judge.no_dock_icon([LISTING % "BackgroundOnly", LISTING % "Foreground"], 4711),
                   "foreground")
        self.not_tried(judge.no_dock_icon([""], 4711), "logged in")

    def test_a_crash_must_be_logged_and_reported_by_the_next_session(self):
        ended = stamped("‼️ CRASH: SIGSEGV")
        report = "kovraUninstaller-2025-03-14-092653.ips"
        next_one = stamped("⚠️ Previous session (started 2025-03-14 09:26:50) ended abnormally",
                           f"⚠️ System crash report found: {report} (created 2025-03-14 09:26:54)",
                           "─" * 60)
        self.right(judge.crash(-11, ended, next_one, [report]))
        self.wrong(judge.crash(-9, [], next_one[2:], [report]), "with -9", "the log says []",
                   "the next session begins", "does not name")
        self.wrong(judge.crash(-11, ended, next_one, []), "no report")
        self.wrong(judge.crash(-11, ["‼️ CRASH: SIGSEGV"], next_one, [report]), "without a time stamp")

    def test_the_log_of_a_session_must_have_a_header_and_a_normal_end(self):
        lines = stamped("kovra Uninstaller v1.2.0 (build 42)", "Machine: Mac14,2 [arm64]",
                        "Session ended normally")
        self.right(judge.session(lines))
        self.wrong(judge.session(lines[:2]), "last line")
        self.wrong(judge.session(lines[2:]), "no header", "machine")

    def test_root_must_get_only_the_variables_on_the_list(self):
        text = "0\n0\n/\nHOME=/Users/sam\nPATH=/usr/bin:/bin:/usr/sbin:/sbin\nLANG=C\nSHLVL=1\n"
        self.right(judge.as_root(text, []))
        self.wrong(judge.as_root(text.replace("0\n0\n/", "501\n0\n/tmp") + "MARK=1\n"
                                 "TZ=() { :; }\nLC_TIME=/tmp/check-on-a-mac-orders\n",
                                 ["/tmp/trace"]),
                   "user ids", "folder", "MARK reached", "TZ=", "LC_TIME=", "/tmp/trace was created")
        self.wrong(judge.as_root("", []), "user ids")

    def test_each_hostile_variable_is_noticed(self):
        for name, value in judge.HOSTILE.items():
            text = f"0\n0\n/\n{name}={value}\n"
            self.wrong(judge.as_root(text, []), name)

    def test_the_accessibility_elements_must_be_those_of_the_page(self):
        self.right(judge.accessibility(tree(*NOTHING_FOUND)))
        self.assertEqual(judge.page_of(tree(*NOTHING_FOUND)), "nothing-found")
        lost = [*NOTHING_FOUND[:4], {**NOTHING_FOUND[4], "window": False, "parent": "AXGroup",
                                     "frame": [0.0, 0.0, 80.0, 20.0], "actions": []}]
        self.wrong(judge.accessibility(tree(*lost)), "does not answer with its window", "AXGroup",
                   "lies at", "cannot be pressed")
        self.wrong(judge.accessibility(tree(*NOTHING_FOUND, NOTHING_FOUND[0])), "6 elements")
        self.wrong(judge.accessibility(tree(*reversed(NOTHING_FOUND))), "instead of")
        self.wrong(judge.accessibility({"windows": []}), "0 windows")
        alert = tree(*NOTHING_FOUND)
        alert["windows"] *= 2
        self.wrong(judge.accessibility(alert), "2 windows")
        self.wrong(judge.accessibility(tree()), "no page has these texts")

    def test_our_own_pictures_pass(self):
        for name in judge.PAGES:
            ours = Picture(converted(CHECKOUT / f"docs/pictures/{name}.png", "bmp:-"))
            self.right(page_picture(name, window_picture(name), ours))
            # At a backing scale of 2.
            self.right(page_picture(name, window_picture(name, "-filter", "point", "-resize",
                                                         "200%"), ours))

    def test_pictures_that_differ_are_reported(self):
        ours = Picture(converted(CHECKOUT / "docs/pictures/ready.png", "bmp:-"))
        self.wrong(page_picture("ready", window_picture("ready", "-roll", "+6+0"), ours),
                   "across, the button goes from")
        self.wrong(page_picture("ready", window_picture("ready", "-fill", "#B2E01B", "-opaque",
                                                        "#B2E00B"), ours), "button")
        self.wrong(page_picture("ready", window_picture("ready", "-negate"), ours),
                   "not the background", "icon differs")
        self.wrong(page_picture("ready", window_picture("ready", "-fill", "#F7F7F7", "-draw",
                                                        "rectangle 60,160 420,300"), ours), "title")
        for changes, word in ((["-fill", "#B2E00B", "-draw", "rectangle 130,302 349,343"],
                               "not round"),
                              (["-fill", "#F7F7F7", "-draw", "rectangle 184,44 296,156"],
                               "symbol is missing"),
                              (["-fill", "#B2E02F", "-draw", "circle 240,100 240,120"],
                               "have the colour"),
                              (["-fill", "#B2E00B", "-draw", "circle 240,100 240,142"],
                               "measures")):
            self.wrong(page_picture("done", window_picture("done", *changes), ours), word)
        self.wrong(page_picture("uninstalling", window_picture(
            "uninstalling", "-crop", "220x42+130+302", "-flop", "+repage"), ours), "pixels")
        filled_from_the_right = window_picture("uninstalling", "-flop")
        self.wrong(page_picture("uninstalling", filled_from_the_right, ours), "left end")

    def test_the_systems_log_must_hold_the_error_and_no_private_text(self):
        line = ("2025-03-14 09:26:53.000 E  kovraUninstaller[4711:1] "
                "[ai.kovra.KovraUninstaller:Uninstaller] %s\n")
        shown = line % "tistool binary not found in bundle"
        self.right(judge.log_show(0, shown))
        self.wrong(judge.log_show(0, line % "<private>"), "not in the system's log", "hidden")
        self.wrong(judge.log_show(64, shown), "ended with 64")

    def test_only_the_products_registrations_may_be_removed(self):
        def dump(*paths):
            return "".join(f"path:                       {path} (0x1194)\n" for path in paths)
        before = dump("/Applications/kovra.app", "/Volumes/a/kovraInput.app", "/Applications/b.app")
        known = {"/Applications/kovra.app"}
        self.right(judge.registrations(before, dump("/Applications/b.app"), known, "/own.app"))
        self.wrong(judge.registrations(before, dump("/Volumes/a/kovraInput.app"), known, "/own.app"),
                   "/Volumes/a/kovraInput.app")
        self.not_tried(judge.registrations("", "", known, "/own.app"), "registration")

    def test_only_the_products_files_may_be_removed(self):
        home = product_home()
        self.right(removal.files_verdict(home, {"/Users/sam/Library/Logs/other": "folder"}))
        self.wrong(removal.files_verdict(home, {"/Users/sam/Library/Logs/kovra": "folder"}),
                   "still there: /Users/sam/Library/Logs/kovra",
                   "lost: /Users/sam/Library/Logs/other")

    def test_only_the_products_keychain_items_may_be_removed(self):
        dump = ('keychain: "a"\nclass: "genp"\nattributes:\n    "acct"<blob>="%s"\n'
                '    "svce"<blob>="x"\n')
        before = removal.keychain_items(dump % "sam" + dump % "ai.kovra.auth.session")
        self.assertEqual(before, [{"class": "genp", "account": "sam"},
                                  {"class": "genp", "account": "ai.kovra.auth.session"}])
        self.right(removal.keychain_verdict(before, before[:1]))
        self.wrong(removal.keychain_verdict(before, before[1:]), "unexpected", "missing")
        self.not_tried(removal.keychain_verdict(before[:1], before[:1]), "keychain")

    def test_only_the_products_keyboard_entries_may_be_removed(self):
        abc = {"KeyboardLayout Name": "ABC"}
        before = {"AppleEnabledInputSources": [abc, {"Bundle ID": "ai.kovra.x"}], "Other": 1}
        self.right(removal.keyboard_verdict(before, {"AppleEnabledInputSources": [abc]}))
        self.wrong(removal.keyboard_verdict(before, {}), "AppleEnabledInputSources is None")
        self.wrong(removal.keyboard_verdict(before, before), "AppleEnabledInputSources")
        self.not_tried(removal.keyboard_verdict({}, {}), "keyboard")

    def test_nothing_of_the_product_may_run(self):
        class Places:
            @staticmethod
            def path(text):
                return text.replace("~", "/Users/sam")
        other = "/Applications/Notes.app/Contents/MacOS/kovra\n"
        self.right(removal.running_verdict(other, "1\t0\tcom.example\n", Places))
        self.wrong(removal.running_verdict("/Applications/kovra.app/Contents/MacOS/kovra\n",
                                           "-\t0\tcom.kovra.agent\n", Places),
                   "still runs", "still loaded")


def product_home():
    return {"/Users/sam/Library/Logs/kovra": "folder", "/Users/sam/Library/Logs/other": "folder",
            "/tmp/of-another": "file"}


class Elements(unittest.TestCase):
    """elements.py, with a stub library in place of the frameworks."""

    def setUp(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        library = Path(folder) / "stub.so"
        subprocess.run(["cc", "-shared", "-fPIC", "-w", "-o", library,
                        PACKAGING / "tests/accessibility_stub.c"], check=True)
        self.system = elements.System(lambda _: ctypes.CDLL(str(library)))

    def test_reads_the_tree(self):
        [window] = elements.tree(self.system, 4711)["windows"]
        self.assertEqual((window["role"], window["frame"]), ("AXWindow", [100, 100, 480, 478]))
        title, button = window["elements"]
        self.assertEqual(title, {
            "role": "AXStaticText", "subrole": None, "title": None, "label": None, "focused": None,
            "value": "kovra was not found …", "frame": [110, 120.5, 80, 20], "actions": [],
            "window": True, "topLevel": True, "parent": "AXWindow"})
        self.assertEqual(button, {
            "role": "AXButton", "subrole": None, "title": "Quit", "label": None, "focused": True,
            "value": None, "frame": None, "actions": ["AXPress"], "window": False,
            "topLevel": False, "parent": "AXStaticText"})

    def test_presses_the_button_of_that_title_and_no_other(self):
        def press(text):
            return elements.press(self.system, 4711, "AXTitle", text)
        self.assertEqual(press("Retry")["pressed"], False)
        self.assertEqual(press("Quit"), {"pressed": True, "error": 0})
        self.assertEqual(press("Quit")["pressed"], False)  # its title has changed
        self.assertEqual(elements.press(self.system, 4711, "AXRole", "AXStaticText"),
                         {"pressed": False, "error": -25206})

    def test_lists_the_windows_of_the_process(self):
        self.assertEqual(elements.on_screen(self.system, 4711),
                         [{"id": 99, "frame": [1, 2, 480, 478]}])
        self.assertEqual(elements.on_screen(self.system, 4712), [])
        self.assertEqual(elements.tree(self.system, 4712), {"windows": []})


class Language(unittest.TestCase):
    """What runs on a Mac must work with its Python 3.9 and bash 3.2."""

    MODULES = [*sorted((PACKAGING / "on_a_mac").glob("*.py")),
               *(CHECKOUT / f"practice-mac/launcher/{name}.py" for name in (
                   "scenario", "furnish", "look_alikes", "processes", "places", "layer", "root",
                   "syscalls", "tools")),
               CHECKOUT / "tests/catalogue.py", CHECKOUT / "tests/proof/home_model.py"]
    LATER = {"tomllib", "strict", "pairwise", "batched", "StrEnum", "TaskGroup", "UTC"}

    def test_python_files_need_no_python_later_than_3_9(self):
        for path in self.MODULES:
            with self.subTest(path.name):
                text = path.read_text()
                self.assertEqual(problems_in(text), [])

    def test_later_python_is_noticed(self):
        for text in ("match a:\n    case 1: pass\n", "def f(a: int | None): pass\n",
                     "zip(a, b, strict=True)\n", "import tomllib\n"):
            with self.subTest(text):
                self.assertNotEqual(problems_in(text), [])

    def test_the_script_needs_no_bash_later_than_3_2(self):
        """Looks for features newer than bash 3.2."""
        text = (PACKAGING / "check-on-a-mac").read_text()
        for word in ("mapfile", "readarray", "declare -A", "local -n", "&>>", "|&", "${!", "^^",
                     ",,", "coproc", "[-1]"):
            self.assertNotIn(word, text)


def problems_in(text):
    """Uses of what Python 3.9 lacks: syntax, unions of types that are evaluated, and names."""
    try:
        parsed = ast.parse(text, feature_version=(3, 9))
    except SyntaxError as error:
        return [str(error)]
    guarded = {id(child) for node in ast.walk(parsed) if isinstance(node, ast.Try)
               for child in ast.walk(node)}
    found = []
    for node in ast.walk(parsed):
        annotations = [getattr(node, name, None) for name in ("annotation", "returns")]
        found += [f"line {node.lineno}: a union of types" for annotation in annotations
                  if annotation is not None
                  for part in ast.walk(annotation) if isinstance(part, ast.BinOp)]
        if isinstance(node, ast.Import) and id(node) not in guarded:
            found += [f"line {node.lineno}: {name.name}" for name in node.names
                      if name.name in Language.LATER]
        if isinstance(node, ast.keyword) and node.arg in Language.LATER:
            found.append(f"line {node.value.lineno}: {node.arg}=")
        if isinstance(node, ast.Attribute) and node.attr in Language.LATER:
            found.append(f"line {node.lineno}: .{node.attr}")
    return found


if __name__ == "__main__":
    unittest.main()
