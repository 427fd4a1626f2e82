import fnmatch
import plistlib
import re
import tempfile
import unittest
from pathlib import Path

from support import CHECKOUT, HOME, PracticeMac, text

import catalogue as c
from launcher import faults
from launcher import scenario as scenarios

EVERYTHING = [*c.SYSTEM_BUNDLES, *c.USER_BUNDLES, *c.USER_DATA, c.SHARED_TEMPORARY]
FOUND_BY_NAME = [*(f"{c.TEMPORARY}/{remnant}*" for remnant in c.REMNANTS),
                 f"{c.INPUT_METHODS}/kovraInput*.app", f"{HOME}{c.INPUT_METHODS}/kovraInput*.app"]


def existing(scenario, paths):
    run = PracticeMac(scenario).run(["sh", "-c", 'for p; do test -e "$p" && echo "$p"; done; :',
                                     "sh", *paths])
    return text(run).splitlines()


def listing(scenario):
    run = PracticeMac(scenario).shell(
        "find /Users /Applications /Library /var/folders /tmp /System", as_root=True)
    return set(text(run).splitlines())


class Scenarios(unittest.TestCase):
    def test_all_boot_and_have_a_title(self):
        names = scenarios.names()
        self.assertGreaterEqual(len(names), 10)
        for name in names:
            with self.subTest(name):
                self.assertTrue(scenarios.load(name).title)
                run = PracticeMac(name).run(["true"])
                self.assertEqual((run.status, run.stderr), (0, b""))

    def test_installed_has_everything_the_product_ever_put_on_a_mac(self):
        self.assertEqual(existing("installed", EVERYTHING), EVERYTHING)

    def test_others_have_just_their_part_of_it(self):
        self.assertEqual(existing("user-only", EVERYTHING), [*c.USER_BUNDLES, *c.USER_DATA])
        self.assertEqual(existing("leftovers", EVERYTHING), c.USER_DATA)
        self.assertEqual(existing("clean", EVERYTHING), [])

    def test_run_the_product_from_its_bundles(self):
        programs = {"installed": ("/Applications", "/Library/Input Methods"),
                    "user-only": (f"{HOME}/Applications", f"{HOME}/Library/Input Methods")}
        for scenario, (applications, methods) in programs.items():
            run = PracticeMac(scenario).shell("for p in $(pgrep -i kovra); do"
                                              " readlink /proc/$p/exe; cat /proc/$p/comm; done")
            self.assertEqual(text(run).splitlines(), [
                f"{applications}/kovra.app/Contents/MacOS/kovra", "kovra",
                f"{methods}/kovraInput.app/Contents/MacOS/kovraInput", "kovraInput",
                f"{applications}/KovraAgent.app/Contents/MacOS/KovraAgent", "KovraAgent"])

    def test_bystanders_are_ten_thousand_and_none_is_the_products(self):
        added = listing("bystanders") - listing("installed")
        self.assertGreaterEqual(len(added), 10_000)
        self.assertEqual(added & {*EVERYTHING}, set())
        mistaken = {path for path in added for pattern in FOUND_BY_NAME
                    if fnmatch.fnmatchcase(path, pattern)}
        self.assertEqual(mistaken, set())
        self.assertIn("/Applications/Kovra.app", added)
        self.assertIn("/Applications/kovra.app-1", added)

    def test_locked_bundles_stay_whoever_removes_them(self):
        for as_root in (False, True):
            run = PracticeMac("locked").shell(
                f"rm -rf {HOME}/Applications/*.app; mv {HOME}/Applications/kovra.app /tmp/x;"
                f"test -e {HOME}/Applications/kovra.app/Contents/MacOS/kovra", as_root=as_root)
            self.assertEqual(run.status, 0)
            self.assertEqual(run.deleted, [f"{HOME}/Applications/KovraAgent.app"])

    def test_missing_script_has_an_uninstaller_without_its_script(self):
        with tempfile.TemporaryDirectory() as folder:
            bundle = Path(folder) / "Some.app"
            (bundle / "Resources").mkdir(parents=True)
            (bundle / "Resources/uninstall.sh").write_text("")
            (bundle / "Resources/tistool").write_text("")
            for scenario, left in (("installed", "tistool\nuninstall.sh\n"),
                                   ("missing-script", "tistool\n")):
                mac = PracticeMac(scenario, bundle=bundle)
                run = mac.run(["ls", f"{HOME}/Downloads/kovraUninstaller.app/Resources"])
                self.assertEqual(text(run), left)


class Readme(unittest.TestCase):
    """The README names everything that can be ordered."""

    def setUp(self):
        self.rows = {}
        for line in (CHECKOUT / "practice-mac/README.md").read_text().splitlines():
            cells = line.split("|")
            if len(cells) > 3:
                for key in re.findall(r"`([a-z_-]+)", cells[1]):
                    self.rows[key] = line

    def test_names_every_key_of_a_scenario_with_the_keys_of_its_entries(self):
        for key, inner in scenarios.KEYS.items():
            self.assertIn(key, self.rows)
            named = set(re.findall(r"`([A-Za-z_.]+)`", self.rows[key].split("|")[2]))
            with self.subTest(key):
                self.assertLessEqual(set(inner or ()), named)

    def test_names_every_kind_of_fault(self):
        self.assertLessEqual(set(faults.VALUES), set(self.rows))


class AScenarioOfOnesOwn(unittest.TestCase):
    def scenario(self, content):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        path = Path(folder.name) / "mine.toml"
        path.write_text(content)
        return path

    def test_adds_to_the_one_it_extends_and_takes_away(self):
        path = self.scenario("""
            title = "mine"
            extends = "installed"
            without = ["/Applications/kovra.app", "/tmp/kovra"]
            [[file]]
            path = "~/exact.txt"
            text = "ä\\n"
            mode = 0o640
            [[file]]
            path = "~/one.plist"
            plist = { data = { "$data" = "AAE=" }, when = 2024-01-01T01:00:00+01:00 }
            [[link]]
            path = "~/dangling"
            to = "/nowhere"
            """)
        run = PracticeMac(path).shell("test ! -e /Applications/kovra.app || exit 1;"
                                      "test -L dangling -a ! -e dangling || exit 2;"
                                      "stat -c '%a %u' exact.txt; cat exact.txt one.plist")
        self.assertEqual(run.status, 0)
        head, written, rest = run.stdout.split(b"\n", 2)
        self.assertEqual((head, written.decode()), (b"640 501", "ä"))
        value = plistlib.loads(rest)
        self.assertEqual((value["data"], value["when"].isoformat()),
                         (b"\0\1", "2024-01-01T00:00:00"))

    def test_with_a_word_that_means_nothing_is_refused(self):
        for content in ("flie = []", "[[file]", "extends = 'no-such'", "[mac]\nusers = 'sam'",
                        'extends = "clean"\nagent = [{ label = "a", program = "/a", kep_alive = true }]',
                        'extends = "clean"\nwithout = ["/x"]',
                        'extends = "clean"\nfile = [{ pth = "/x" }]'):
            run = PracticeMac(self.scenario(content)).run(["true"])
            self.assertEqual(run.status, 125)
            self.assertIn(b"practice-mac: ", run.stderr)
            self.assertNotIn(b"Traceback", run.stderr)

    def test_of_an_unknown_name_is_refused_with_the_known_ones(self):
        run = PracticeMac("instaled").run(["true"])
        self.assertEqual(run.status, 125)
        self.assertIn(b"bystanders, cancelled", run.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
