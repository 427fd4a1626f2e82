"""The log has a line for each failure in a step, at the right place, and no other additional line."""

import unittest

import uninstalling as u
from catalogue import CACHES, HOME
from support import BUNDLE, in_bundle
from uninstalling import uninstall

HELPER = in_bundle("tistool", BUNDLE)
NO_HELPER = "  Input method: Could not run the input source helper."
CACHE_FOLDER = CACHES[0]
REGULAR = [*u.LOG_BEFORE_APPS, u.LOG_OF_SKIPPING, *u.LOG_AFTER_APPS]
COUNT = "  Input method: keyboard settings entries removed — 5"
REFUSED = "(Operation not permitted)"


def amid(lines, *problems):
    """The lines with each (problem, line that it stands before) put in."""
    lines = list(lines)
    for problem, follower in problems:
        lines.insert(lines.index(follower), problem)
    return lines


def changed(lines, *changes):
    """The lines with some of them in other words, or left out."""
    words = dict(changes)
    return [words.get(line, line) for line in lines if words.get(line, line) is not None]


class InputMethod(unittest.TestCase):
    def assert_told(self, wanted, row, **options):
        uninstalled = uninstall("user-only", **options)
        self.assertEqual(uninstalled.run_log, wanted)
        self.assertIn(f"inputSource: warning: {row}", uninstalled.shown)

    def test_a_helper_that_cannot_be_staged(self):
        self.assert_told(amid(REGULAR, (NO_HELPER, COUNT)),
                         "Could not run the input source helper.", before=[f"rm {HELPER}"])

    def test_settings_that_cannot_be_read_behind_the_helper(self):
        unread = "  Input method: Could not read keyboard settings."
        for fault in ("defaults export=exit:1", "defaults export=silent", "defaults=missing"):
            with self.subTest(fault):
                self.assert_told(
                    changed(amid(REGULAR, (NO_HELPER, COUNT), (unread, COUNT)), (COUNT, None)),
                    "Could not run the input source helper. Could not read keyboard settings.",
                    before=[f"rm {HELPER}"], faults=[fault])

    def test_settings_that_cannot_be_written_behind_the_helper(self):
        unwritten = "  Input method: Could not update keyboard settings."
        left = "Keyboard settings entries (5 entries)"
        self.assert_told(
            changed(amid(REGULAR, (NO_HELPER, COUNT), (unwritten, COUNT)),
                    ("  Verify: residues — none", f"  Verify: residues — {left}"),
                    ("Uninstall finished (residues: 0)", "Uninstall finished (residues: 1)")),
            "Could not run the input source helper. Could not update keyboard settings.",
            before=[f"rm {HELPER}"], faults=["defaults import=exit:1"])


class Removals(unittest.TestCase):
    LEFT = ("kovra.app (~/Applications), kovraInput.app (~/Library/Input Methods), "
            "Settings and app data (1 item)")

    def test_each_path_that_stays_in_the_order_of_the_lists(self):
        uninstalled = uninstall("locked-user", before=[
            f"rm -rf {CACHE_FOLDER}; mkdir {CACHE_FOLDER}; touch {CACHE_FOLDER}/file"])
        after_apps = "  Apps: user-level bundles removed — OK"
        could_not = "Could not remove"
        self.assertEqual(uninstalled.run_log, changed(
            amid(REGULAR,
                 (f"  Apps: {could_not} {HOME}/Library/Input Methods/kovraInput.app. {REFUSED}",
                  after_apps),
                 (f"  Apps: {could_not} {HOME}/Applications/kovra.app. {REFUSED}", after_apps),
                 (f"  Data: {could_not} {HOME}/Library/Logs/kovra. {REFUSED}",
                  "  Data: removed Keychain item ai.kovra.auth.pendingPKCE"),
                 (f"  Data: {could_not} {CACHE_FOLDER}. (Permission denied)",
                  "  Data: settings and data removed — OK")),
            ("  Data: settings and data removed — OK", "  Data: settings and data removed — WARN"),
            ("  Verify: residues — none", f"  Verify: residues — {self.LEFT}"),
            ("Uninstall finished (residues: 0)", "Uninstall finished (residues: 3)")))

    def test_a_name_with_invalid_utf_8(self):
        folder = f"{HOME}/Library/Input Methods"
        make = (f"mkdir -p '{folder}'; cd '{folder}'; mkdir -p \"$(printf 'kovraInput\\377.app')\"/x;"
                f"chown -R sam '{HOME}/Library'; chmod 500 \"$(printf 'kovraInput\\377.app')\"")
        uninstalled = uninstall("clean", before=[make])
        self.assertIn(f"  Apps: Could not remove {folder}/kovraInput\ufffd.app. (Permission denied)",
                      uninstalled.log)


class Silence(unittest.TestCase):
    """Failures that the steps ignore are not logged."""

    def test_about_tools_that_fail(self):
        tools = ("pkill", "launchctl", "PlistBuddy", "killall", "lsregister", "getconf", "tccutil",
                 "defaults write", "defaults delete")
        uninstalled = uninstall("user-only", faults=[f"{tool}=exit:1" for tool in tools])
        self.assertEqual(uninstalled.run_log, REGULAR)

    def test_about_a_keychain_that_fails(self):
        uninstalled = uninstall("user-only", faults=["security=exit:1"])
        self.assertEqual(uninstalled.run_log,
                         [line for line in REGULAR if "Keychain" not in line])

    def test_about_the_users_bundles_when_the_administrators_part_fails(self):
        uninstalled = uninstall("locked", faults=["osascript=missing"])
        self.assertEqual(uninstalled.run_log, [
            *u.LOG_BEFORE_APPS, "Uninstall failed at Remove kovra apps: Could not create the "
            "privileged removal script.", "Session ended normally"])


if __name__ == "__main__":
    unittest.main()
