"""The tools that a whole uninstall runs, what it logs and what it leaves, in every course of it."""

import unittest

import catalogue as c
import uninstalling as u
from catalogue import LOG
from support import RUNNER, in_bundle, replace
from uninstalling import uninstall


class Installed(unittest.TestCase):
    """The whole product, for all users and for this one."""

    @classmethod
    def setUpClass(cls):
        cls.uninstalled = uninstall("installed")

    def test_runs_the_tools_in_this_order(self):
        self.assertEqual(self.uninstalled.tools, [
            *u.SCAN, *u.STOP_PROCESSES, *u.INPUT_SOURCE, *u.PROMPT, *u.AS_ROOT, *u.REMOVE_DATA,
            *u.RESET_PERMISSIONS, *u.REFRESH_SYSTEM, *u.SCAN])

    def test_takes_each_tool_from_where_a_mac_has_it(self):
        self.assertEqual({tool.tool for tool in self.uninstalled.run.tools}, {
            "/usr/bin/defaults", "/usr/bin/security", "/usr/bin/pkill", "/usr/bin/killall",
            "/usr/bin/getconf", "/usr/bin/tccutil", "/usr/bin/osascript", "/bin/launchctl",
            "/usr/libexec/PlistBuddy", "/bin/sh",
            c.LSREGISTER})

    def test_gives_input_to_the_keyboard_settings_alone(self):
        with_input = [tool for tool in self.uninstalled.run.tools if tool.stdin is not None]
        self.assertEqual([tool.words for tool in with_input],
                         [["defaults", "import", "com.apple.HIToolbox", "-"]])
        self.assertIn(b"<plist", with_input[0].stdin)

    def test_runs_the_script_alone_as_root(self):
        as_root = [" ".join(tool.words) for tool in self.uninstalled.run.tools if tool.uid == 0]
        self.assertEqual([u.in_short(line) for line in as_root], u.AS_ROOT)

    def test_logs_these_lines(self):
        self.assertEqual(self.uninstalled.run_log,
                         [*u.LOG_BEFORE_APPS, u.LOG_OF_ADMIN, *u.LOG_AFTER_APPS])

    def test_shows_seven_clean_steps(self):
        steps = ("stopProcesses", "inputSource", "removeApps", "removeData", "resetPermissions",
                 "refreshSystem", "verify")
        self.assertEqual(self.uninstalled.shown,
                         ["ready", "uninstalling", "done", *(f"{step}: done" for step in steps)])

    def test_deletes_this_and_nothing_else(self):
        self.assertEqual(sorted(self.uninstalled.deleted), sorted(
            [*c.SYSTEM_PARTS, *u.USER_BUNDLES, *u.USER_DATA]))

    def test_creates_its_log_and_its_helper_and_nothing_else(self):
        self.assertEqual(sorted(self.uninstalled.created), sorted(u.OWN_FILES))

    def test_changes_the_systems_records_and_nothing_else(self):
        self.assertEqual(sorted(self.uninstalled.changed), sorted(u.CHANGED_RECORDS))

    def test_stages_the_helper_for_everybody_to_run(self):
        staged = self.uninstalled.run.upper / u.OWN_FILES[-1].lstrip("/")
        self.assertEqual(staged.stat().st_mode & 0o7777, 0o755)
        self.assertEqual(staged.read_bytes(), (RUNNER / in_bundle("tistool")).read_bytes())


class UserOnly(unittest.TestCase):
    """Nothing of the product lies where only an administrator may remove it."""

    @classmethod
    def setUpClass(cls):
        cls.uninstalled = uninstall("user-only")

    def test_never_prompts(self):
        self.assertNotIn("osascript", {tool.name for tool in self.uninstalled.run.tools})
        self.assertEqual({tool.uid for tool in self.uninstalled.run.tools}, {501})

    def test_says_in_the_log_that_it_skipped_the_prompt(self):
        self.assertEqual(self.uninstalled.run_log,
                         [*u.LOG_BEFORE_APPS, u.LOG_OF_SKIPPING, *u.LOG_AFTER_APPS])

    def test_deletes_what_is_the_users(self):
        self.assertEqual(sorted(self.uninstalled.deleted), sorted([*u.USER_BUNDLES, *u.USER_DATA]))


class StoppedAtTheApps(unittest.TestCase):
    """Runs in which the administrator's part fails: nothing after it happens."""

    def assert_stopped(self, uninstalled, message, *, tools):
        self.assertEqual(uninstalled.phase, f"failed: Remove kovra apps: {message}")
        self.assertEqual(uninstalled.tools,
                         [*u.SCAN, *u.STOP_PROCESSES, *u.INPUT_SOURCE, *tools])
        self.assertEqual([u.in_short(line) for line in uninstalled.run_log], [
            *u.LOG_BEFORE_APPS, f"Uninstall failed at Remove kovra apps: {message}",
            "Session ended normally"])
        self.assertEqual(uninstalled.shown[-7:], [
            "stopProcesses: done", "inputSource: done", f"removeApps: failed: {message}",
            "removeData: pending", "resetPermissions: pending", "refreshSystem: pending",
            "verify: pending"])
        # Agents and settings are dealt with before, bundles and data are as they were.
        self.assertEqual(uninstalled.deleted, [])

    def test_a_cancelled_prompt(self):
        self.assert_stopped(uninstall("cancelled"), "Administrator access was not granted.",
                            tools=u.PROMPT)

    def test_a_prompt_cancelled_in_another_language(self):
        self.assert_stopped(uninstall("cancelled-german"), "Administrator access was not granted.",
                            tools=u.PROMPT)

    def test_a_cancellation_that_only_its_text_tells(self):
        self.assert_stopped(uninstall("cancelled-by-text"), "Administrator access was not granted.",
                            tools=u.PROMPT)

    def test_a_script_that_fails(self):
        self.assert_stopped(
            uninstall("script-fails"),
            "Privileged removal failed: rm: /Applications/kovra.app: Operation not permitted",
            tools=u.PROMPT)

    def test_a_script_that_root_may_not_read(self):
        # The path is the scenario's, wherever the script lies in the bundle that is tried.
        self.assert_stopped(
            uninstall("script-unreadable"),
            "Privileged removal failed: /bin/bash: ~/Downloads/kovraUninstaller.app/Resources/"
            "uninstall.sh: Operation not permitted", tools=u.PROMPT)

    def test_a_script_that_is_missing(self):
        self.assert_stopped(
            uninstall("missing-script"),
            "The uninstaller is damaged (missing uninstall.sh). Please download it again.",
            tools=[])

    def test_a_prompt_that_cannot_be_made(self):
        self.assert_stopped(uninstall("installed", faults=["osascript=missing"]),
                            "Could not create the privileged removal script.", tools=[])

    def test_a_prompt_that_says_nothing_of_its_failure(self):
        self.assert_stopped(uninstall("installed", faults=["osascript=exit:3"]),
                            "Privileged removal failed: Unknown error", tools=u.PROMPT)

    def test_what_a_script_prints_is_not_why_it_failed(self):
        osascript = "\n".join(["echo '0:1: execution error: printed (-128)'",
                               "echo '0:1: execution error: told (1)' >&2",
                               "echo '0:1: execution error: printed (-128)'",
                               "exit 1"])
        self.assert_stopped(
            uninstall("installed", before=[replace("/usr/bin/osascript", osascript)]),
            "Privileged removal failed: told", tools=[])

    def test_a_prompt_that_is_killed(self):
        self.assert_stopped(uninstall("installed", faults=["osascript=signal:9"]),
                            "Privileged removal failed: Unknown error", tools=u.PROMPT)


class Retried(unittest.TestCase):
    def test_a_retry_runs_everything_anew_and_ends_clean(self):
        uninstalled = uninstall("script-fails", "--retry")
        self.assertEqual(uninstalled.log.count("Uninstall started"), 2)
        self.assertEqual(uninstalled.shown[-8:-7], ["done"])
        self.assertEqual(uninstalled.tools.count("pkill -x kovra"), 2)
        self.assertEqual(uninstalled.tools.count(u.PROMPT[0]), 2)
        self.assertEqual(sorted(uninstalled.deleted), sorted(
            [*c.SYSTEM_PARTS, *u.USER_BUNDLES, *u.USER_DATA]))
        self.assertEqual(uninstalled.run_log, [
            *u.LOG_BEFORE_APPS[:2], "  Input method: keyboard settings entries removed — 0",
            u.LOG_BEFORE_APPS[3], u.LOG_OF_ADMIN, *u.LOG_AFTER_APPS])

    def test_a_second_press_during_the_run_does_nothing(self):
        uninstalled = uninstall("user-only", "--twice")
        self.assertEqual(uninstalled.log.count("Uninstall started"), 1)
        self.assertEqual(uninstalled.tools.count("pkill -x kovra"), 1)


class Clean(unittest.TestCase):
    """A Mac without the product, cleaned up anyway."""

    def test_leaves_nothing_behind_but_its_own_files(self):
        uninstalled = uninstall("clean")
        self.assertEqual(uninstalled.shown[:3], ["nothing found", "uninstalling", "done"])
        self.assertEqual(uninstalled.deleted, [])
        self.assertEqual(sorted(uninstalled.created), sorted(u.OWN_FILES))
        self.assertNotIn("~/Library/Preferences/com.apple.HIToolbox.plist", uninstalled.changed)
        self.assertIn("  Input method: keyboard settings entries removed — 0",
                      uninstalled.run_log)


class QuitDuringTheRun(unittest.TestCase):
    def test_the_last_line_tells_of_the_quit_whatever_step_runs(self):
        for step in ("stopProcesses", "inputSource", "removeApps", "removeData",
                     "resetPermissions", "refreshSystem", "verify"):
            with self.subTest(step=step):
                uninstalled = uninstall("installed", "--quit-at", step)
                self.assertEqual(uninstalled.log[-1], "Session ended normally")
                marker = uninstalled.run.upper / f"{LOG}".lstrip("/")
                self.assertFalse(marker.with_name(".session_active").exists())


if __name__ == "__main__":
    unittest.main()
