import subprocess
import tempfile
import unittest
from pathlib import Path

from catalogue import LOG, LOG_FOLDER, RECORDS
from support import (APPLICATION, PROGRAM, PracticeMac, in_bundle, on_this_machine, time_limit,
                     without_stamps)

INSTALLED = """\
[Apps]
  - kovra.app: /Applications (admin)
  - kovra.app: ~/Applications
  - KovraAgent.app (old version): /Applications (admin)
  - KovraAgent.app (old version): ~/Applications
[Input method]
  - kovraInput.app: /Library/Input Methods (admin)
  - kovraInput.app: ~/Library/Input Methods
  - Input source registration: 2 sources
  - Keyboard settings entries: 5 entries
[Data & settings]
  - Settings and app data: 33 items
  - Temporary files: /tmp/kovra (admin)
  - Sign-in data (Keychain): 3 items
[Permissions]
  - Microphone and Accessibility records: Will be reset
"""
USER_ONLY = "".join(line for line in INSTALLED.splitlines(True) if "(admin)" not in line)
LEFTOVERS = USER_ONLY.replace("""\
[Apps]
  - kovra.app: ~/Applications
  - KovraAgent.app (old version): ~/Applications
""", "").replace("  - kovraInput.app: ~/Library/Input Methods\n", "")
NOTHING = "Nothing found.\n"
PERMISSIONS = "[Permissions]\n  - Microphone and Accessibility records: Will be reset\n"

SETTINGS_READ = ("/usr/bin/defaults", "export", "com.apple.HIToolbox", "-")
KEYCHAIN_READ = ("/usr/bin/security", "dump-keychain")


def scan(scenario, *arguments, **options):
    return PracticeMac(scenario).run([PROGRAM, "--inventory", *arguments], **options)


def scan_after(script):
    """A scan of a clean Mac after a script of the user's, which starts in the home folder."""
    return PracticeMac("clean").shell(f"set -e; {script}\n{PROGRAM} --inventory")


class Inventory(unittest.TestCase):
    def assert_prints(self, run, text):
        self.assertEqual((run.stdout.decode(), run.status, run.stderr), (text, 0, b""))

    def test_lists_the_groups_the_counts_and_what_needs_an_administrator(self):
        for scenario, text in (("installed", INSTALLED), ("user-only", USER_ONLY),
                               ("leftovers", LEFTOVERS), ("clean", NOTHING)):
            with self.subTest(scenario):
                self.assert_prints(scan(scenario), text)

    def test_what_is_meant_for_a_stream_that_is_closed_gets_into_no_file(self):
        log = f"Preflight scan:\n{INSTALLED}"
        for closed, printed in (("0<&-", INSTALLED), ("1>&-", ""), ("2>&-", INSTALLED),
                                ("0<&- 1>&- 2>&-", "")):
            with self.subTest(closed):
                run = PracticeMac("installed").shell(f"exec {PROGRAM} --inventory {closed}")
                self.assert_prints(run, printed)
                self.assertEqual(without_stamps(run.written(LOG)), log)
                self.assertEqual([tool.status for tool in run.tools], [0, 0])

    def test_works_among_other_arguments(self):
        run = PracticeMac("clean").run([PROGRAM, "first", "--inventory", "last"])
        self.assert_prints(run, NOTHING)

    def test_writes_its_log_record_and_nothing_else(self):
        run = scan("installed")
        self.assertEqual(run.created, [LOG_FOLDER, LOG])
        self.assertEqual((run.changed, run.deleted), ([], []))
        self.assertEqual(without_stamps(run.written(LOG)), "Preflight scan:\n" + INSTALLED)

    def test_records_an_empty_scan(self):
        run = scan("clean")
        self.assertEqual(without_stamps(run.written(LOG)), "Preflight scan:\nNothing found.\n")

    def test_stamps_the_log_with_the_local_time(self):
        run = PracticeMac("clean").shell(
            f"before=$(date '+%F %T'); {PROGRAM} --inventory >/dev/null; after=$(date '+%F %T');"
            f"echo \"[$before]\"; head -c 21 {LOG}; echo; echo \"[$after]\"",
            environment={"TZ": "Pacific/Chatham"})
        before, stamp, after = run.stdout.decode().splitlines()
        self.assertTrue(before <= stamp <= after, run.stdout)

    def test_runs_two_tools_and_gives_them_no_input(self):
        run = scan("installed")
        self.assertEqual([(tool.tool, *tool.arguments) for tool in run.tools],
                         [SETTINGS_READ, KEYCHAIN_READ])
        self.assertEqual([tool.stdin for tool in run.tools], [None, None])
        self.assertEqual([tool.uid for tool in run.tools], [501, 501])


class ProbesThatFail(unittest.TestCase):
    """A tool's failure counts as nothing found; the other probes go on."""

    without_settings = INSTALLED.replace("  - Keyboard settings entries: 5 entries\n", "")
    without_keychain = INSTALLED.replace("  - Sign-in data (Keychain): 3 items\n", "")

    def test_keyboard_settings_that_cannot_be_read(self):
        for kind in ("missing", "not-executable", "exit:1", "exit:255", "signal:9", "silent",
                     "rubbish", "flood:100000000", "close-output:0.2"):
            with self.subTest(kind):
                run = scan("installed", faults=[f"defaults={kind}"])
                self.assertEqual((run.stdout.decode(), run.status), (self.without_settings, 0))

    def test_a_keychain_that_cannot_be_read(self):
        for kind in ("missing", "not-executable", "silent", "rubbish", "flood:100000000",
                     "close-output:0.2"):
            with self.subTest(kind):
                run = scan("installed", faults=[f"security={kind}"])
                self.assertEqual((run.stdout.decode(), run.status), (self.without_keychain, 0))

    def test_slow_tools_and_lingering_children_change_nothing(self):
        for kind in ("slow:0.3", "grandchild:0.3"):
            with self.subTest(kind):
                run = scan("installed", faults=[f"defaults={kind}", f"security={kind}"])
                self.assertEqual((run.stdout.decode(), run.status), (INSTALLED, 0))

    def test_settings_that_are_no_dictionary_or_half_a_property_list(self):
        settings = RECORDS["keyboard"]
        for title, command in (
                ("a list", f"echo '<plist><array/></plist>' > {settings}"),
                ("half", f"head -c 300 {settings} > /tmp/half; cat /tmp/half > {settings};"
                         "rm /tmp/half"),
                ("nothing", f": > {settings}")):
            with self.subTest(title):
                run = scan("installed", before=[command])
                self.assertEqual((run.stdout.decode(), run.status), (self.without_settings, 0))

    def test_no_input_source_registry(self):
        run = scan("installed", before=[f"rm {RECORDS['input-sources']}"])
        self.assertEqual(run.stdout.decode(),
                         INSTALLED.replace("  - Input source registration: 2 sources\n", ""))

    def test_input_source_registries_of_every_wrong_form(self):
        registry = RECORDS["input-sources"]
        for content in ("rubbish", "", "<plist><dict/></plist>",
                        "<plist><array><string>a</string><dict/></array></plist>"):
            with self.subTest(content):
                run = scan("clean", before=[f"echo '{content}' > {registry}"])
                self.assertEqual((run.stdout.decode(), run.status), (NOTHING, 0))


class EdgeCases(unittest.TestCase):
    def test_only_the_user_level_input_method(self):
        run = scan_after('mkdir -p "Library/Input Methods/kovraInput.app"')
        self.assertEqual(run.stdout.decode(), "[Input method]\n"
                         "  - kovraInput.app: ~/Library/Input Methods\n" + PERMISSIONS)

    def test_bundle_names_match_by_beginning_and_end_and_by_case(self):
        folder = "/Library/Input Methods"
        names = ("kovraInput 2.app", "KovraInput.app", "kovraInput.app.bak", "my kovraInput.app",
                 "kovraInput.APP", "kovrainput.app")
        run = scan("clean", before=[f"mkdir -p '{folder}/{name}'" for name in names])
        self.assertEqual(run.stdout.decode(), "[Input method]\n"
                         "  - kovraInput 2.app: /Library/Input Methods (admin)\n" + PERMISSIONS)

    def test_three_agents_and_one_preferences_file_are_four_items(self):
        agents = " ".join(f"Library/LaunchAgents/{name}" for name in (
            "ai.kovra.tis-helper.plist", "ai.kovra.tis-helper.plist.bak", "com.kovra.agent.plist"))
        run = scan_after(
            f"touch {agents} Library/Preferences/ai.kovra.inputmethod.KovraInput.plist")
        self.assertEqual(run.stdout.decode(), "[Data & settings]\n"
                         "  - Settings and app data: 4 items\n" + PERMISSIONS)

    def test_one_data_item_is_singular(self):
        run = scan_after("mkdir -p Library/Logs/KovraInstaller")
        self.assertEqual(run.stdout.decode(), "[Data & settings]\n"
                         "  - Settings and app data: 1 item\n" + PERMISSIONS)

    def test_the_system_temporary_folder_needs_an_administrator(self):
        run = scan("clean", before=["mkdir /tmp/kovra"])
        self.assertEqual(run.stdout.decode(), "[Data & settings]\n"
                         "  - Temporary files: /tmp/kovra (admin)\n" + PERMISSIONS)

    def test_the_uninstallers_own_staging_folder_is_no_leftover(self):
        run = scan_after(
            'mkdir "$TMPDIR/kovra-uninstaller-tistool" "$TMPDIR/KovraInstaller"')
        self.assertEqual(run.stdout.decode(), NOTHING)

    def test_temporary_leftovers_count_as_data(self):
        run = scan_after(
            'mkdir "$TMPDIR/kovra-agent-tistool-1"; touch "$TMPDIR/kovraInstaller"')
        self.assertEqual(run.stdout.decode(), "[Data & settings]\n"
                         "  - Settings and app data: 2 items\n" + PERMISSIONS)

    def test_a_dangling_link_is_listed_by_name_but_does_not_exist(self):
        run = scan("clean", before=[
            'mkdir -p "/Library/Input Methods"; ln -s /gone "/Library/Input Methods/kovraInput.app";'
            "ln -s /gone /Applications/kovra.app"])
        self.assertEqual(run.stdout.decode(), "[Input method]\n"
                         "  - kovraInput.app: /Library/Input Methods (admin)\n" + PERMISSIONS)

    def test_names_with_invalid_utf_8_are_shown_with_replacement_characters(self):
        run = scan("clean", before=[
            "mkdir -p \"/Library/Input Methods/$(printf 'kovraInput\\377\\n\"x\".app')\""])
        self.assertEqual(run.stdout.decode(), "[Input method]\n"
                         "  - kovraInput\ufffd\n\"x\".app: /Library/Input Methods (admin)\n"
                         + PERMISSIONS)
        self.assertEqual(without_stamps(run.written(LOG)),
                         "Preflight scan:\n" + run.stdout.decode())

    def test_look_alikes_are_not_the_product(self):
        run = scan("bystanders")
        plain = scan("installed")
        self.assertEqual(run.status, 0)
        self.assertEqual(run.stdout, plain.stdout)


PROGRAM_HERE = on_this_machine(in_bundle("program", APPLICATION))


class OutsideAPracticeMac(unittest.TestCase):
    """The program on its own: a home folder, and none of the Mac's tools."""

    def scan_home(self, *paths):
        with tempfile.TemporaryDirectory() as home:
            for path in paths:
                (Path(home) / path).mkdir(parents=True)
            run = subprocess.run([*PROGRAM_HERE, "--inventory"],
                                 env={"HOME": home, "TMPDIR": f"{home}/tmp"}, check=False,
                                 capture_output=True, timeout=time_limit(60))
            return run.stdout.decode(), run.returncode, run.stderr

    def test_an_empty_home_holds_nothing(self):
        self.assertEqual(self.scan_home(), (NOTHING, 0, b""))

    def test_a_few_paths_are_found_and_nothing_else(self):
        found = self.scan_home("Applications/kovra.app", "Library/Logs/kovra", "tmp/kovraInstaller")
        self.assertEqual(found, ("[Apps]\n  - kovra.app: ~/Applications\n[Data & settings]\n"
                                 "  - Settings and app data: 2 items\n" + PERMISSIONS, 0, b""))

    def test_a_missing_home_holds_nothing(self):
        run = subprocess.run([*PROGRAM_HERE, "--inventory"],
                             env={"HOME": "/proc/nobody", "TMPDIR": "/proc/nobody/"}, check=False,
                             capture_output=True, timeout=time_limit(60))
        self.assertEqual((run.stdout.decode(), run.returncode), (NOTHING, 0))


if __name__ == "__main__":
    unittest.main()
