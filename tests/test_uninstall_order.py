"""The order of an uninstall's actions, as far as the lists of tools and log lines do not show it."""

import unittest

import catalogue as c
import uninstalling as u
from catalogue import HOME
from uninstalling import in_short, uninstall

# As the steps remove them. One of the temporary leftovers, since names come in the folder's order.
APPS = ["~/Library/Input Methods/kovraInput.app", *map(in_short, c.USER_APPS)]
DATA = [*map(in_short, c.COUNTED), f"{c.TEMPORARY}/kovraInstaller-8231", *c.CACHES]


def stuck(paths):
    """A script that puts folders there that only root can empty."""
    quoted = " ".join(f"'{path.replace('~', HOME)}'" for path in paths)
    return (f"for path in {quoted}; do mkdir -p \"$path\"; touch \"$path/file\"; done;"
            f"chown -R sam {HOME}; for path in {quoted}; do chown -R root \"$path\"; done")


def told(step, paths):
    return f"{step}: warning: " + " ".join(f"Could not remove {path}." for path in paths)


class Problems(unittest.TestCase):
    def test_are_told_in_the_order_of_the_lists(self):
        shown = uninstall("clean", before=[stuck([*APPS, *DATA])]).shown
        self.assertIn(told("removeApps", APPS), shown)
        self.assertIn(told("removeData", DATA), shown)

    def test_of_the_helper_come_before_those_of_the_keyboard_settings(self):
        helper = f"touch {c.STAGING_FOLDER}"
        for fault, second in (("defaults export=exit:1", "Could not read keyboard settings."),
                              ("defaults import=exit:1", "Could not update keyboard settings.")):
            with self.subTest(fault):
                uninstalled = uninstall("user-only", before=[helper], faults=[fault])
                self.assertIn("inputSource: warning: Could not run the input source helper. "
                              + second, uninstalled.shown)


class Processes(unittest.TestCase):
    def test_have_time_to_end_between_sigterm_and_sigkill(self):
        run = uninstall("clean").run
        signals = [tool for tool in run.tools if tool.name == "pkill"]
        self.assertEqual([tool.words[1] for tool in signals], ["-x"] * 3 + ["-f"] * 3 + ["-9"] * 6)
        self.assertGreaterEqual(signals[6].started - signals[5].ended, 600_000_000)


class AgentFiles(unittest.TestCase):
    def assert_asks_for(self, uninstalled, *names):
        launchd = [line for line in uninstalled.tools
                   if line.startswith(("launchctl", "PlistBuddy"))]
        self.assertEqual(launchd, [line for name in names for line in (
            f"launchctl bootout gui/501 {u.AGENTS}/{name}",
            f"PlistBuddy -c Print :Label {u.AGENTS}/{name}",
            "launchctl remove ai.kovra.of.the.file")])

    def test_that_are_not_there_are_asked_nothing_of(self):
        self.assert_asks_for(uninstall("clean"))

    def test_that_are_there_are_unloaded_by_file_and_by_label_in_their_order(self):
        names = ["ai.kovra.tis-helper.plist.bak", "com.kovra.agent.plist"]
        plist = ("<plist version=\"1.0\"><dict><key>Label</key>"
                 "<string>ai.kovra.of.the.file</string></dict></plist>")
        make = (f"mkdir -p {HOME}/Library/LaunchAgents; cd {HOME}/Library/LaunchAgents;"
                + "".join(f"echo '{plist}' > {name};" for name in reversed(names))
                + f"ln -s nowhere ai.kovra.KovraAgent.plist; chown -R sam {HOME}/Library")
        self.assert_asks_for(uninstall("clean", before=[make]), *names)


if __name__ == "__main__":
    unittest.main()
