import plistlib
import re
import unittest

from catalogue import HOME, LOG, LOG_FOLDER
from support import BUNDLE, PROGRAM, RUNNER, PracticeMac, in_bundle, without_stamps
from uninstalling import uninstall

RECORD = "Preflight scan:\nNothing found.\n"
OLD = f"{LOG_FOLDER}/uninstall.old.log"


def scan_with(script):
    """A scan of a clean Mac after a script of the user's."""
    return PracticeMac("clean").shell(f"mkdir -p {LOG_FOLDER}; {script}\n{PROGRAM} --inventory")


class LogFile(unittest.TestCase):
    def assert_scanned(self, run):
        self.assertEqual((run.stdout.decode(), run.status), ("Nothing found.\n", 0))

    def test_a_new_log_begins_with_the_first_record(self):
        run = PracticeMac("clean").run([PROGRAM, "--inventory"])
        self.assertEqual(without_stamps(run.written(LOG)), RECORD)

    def test_a_later_session_appends(self):
        run = scan_with(f"{PROGRAM} --inventory >/dev/null")
        self.assertEqual(without_stamps(run.written(LOG)), RECORD + RECORD)

    def test_a_million_bytes_are_kept(self):
        run = scan_with(f"head -c 1000000 /dev/zero > {LOG}")
        self.assertNotIn(OLD, run.created)
        self.assertEqual(len(run.written(LOG)), 1_000_000 + len("[yyyy-MM-dd HH:mm:ss] " + RECORD))

    def test_one_byte_more_is_moved_aside_over_what_was_moved_before(self):
        run = scan_with(f"head -c 1000001 /dev/zero > {LOG}; echo older > {OLD}")
        self.assertEqual(run.written(OLD), bytes(1_000_001))
        self.assertEqual(without_stamps(run.written(LOG)), RECORD)

    def test_an_old_log_that_is_a_folder_is_replaced_too(self):
        run = scan_with(f"head -c 1000001 /dev/zero > {LOG}; mkdir -p {OLD}/inner")
        self.assertEqual(run.written(OLD), bytes(1_000_001))

    def test_an_unwritable_folder_loses_lines_and_nothing_else(self):
        run = scan_with(f"chmod 500 {LOG_FOLDER}")
        self.assert_scanned(run)
        self.assertNotIn(LOG, run.created)

    def test_a_home_that_is_missing_loses_lines_and_nothing_else(self):
        self.assert_scanned(PracticeMac("clean").shell(f"HOME=/gone {PROGRAM} --inventory"))

    def test_a_file_in_the_folders_place_loses_lines_and_nothing_else(self):
        self.assert_scanned(PracticeMac("clean").shell(
            f"touch {LOG_FOLDER}; {PROGRAM} --inventory"))

    def test_a_fifo_in_the_logs_place_does_not_hold_the_program_up(self):
        self.assert_scanned(scan_with(f"mkfifo {LOG}"))

    def test_a_full_disk_loses_lines_and_nothing_else(self):
        self.assert_scanned(scan_with(f"ln -s /dev/full {LOG}"))


class SessionHeader(unittest.TestCase):
    """What a session begins with, the first that this Mac sees."""

    KEYS = plistlib.loads((RUNNER / in_bundle("Info.plist")).read_bytes())
    VERSION = KEYS["CFBundleShortVersionString"]
    BUILD_NUMBER = KEYS["CFBundleVersion"]
    KEYS_THERE = in_bundle("Info.plist", BUNDLE)
    SYSTEM = "/var/db/practice-mac/system.plist"

    def assert_first_lines(self, program, system, machine, before=()):
        log = uninstall("clean", before=before).log
        rule = "\u2500" * 60
        self.assertEqual(log[:6], [rule, program, system, machine, rule, "Preflight scan:"])

    def test_is_five_lines_and_the_first_content_of_a_new_log(self):
        self.assert_first_lines(
            f"kovra Uninstaller v{self.VERSION} (build {self.BUILD_NUMBER})",
            "macOS 14.5.0 (23F79)", "Machine: Mac14,2 [arm64]")

    def test_names_a_version_that_is_missing_or_no_text_by_a_question_mark(self):
        for change, program in (
                (r"/<key>CFBundleShortVersionString</,+1d",
                 f"kovra Uninstaller v? (build {self.BUILD_NUMBER})"),
                (r"/<key>CFBundleVersion</,+1s/<string>.*/<true\/>/",
                 f"kovra Uninstaller v{self.VERSION} (build ?)")):
            with self.subTest(change):
                self.assert_first_lines(
                    program, "macOS 14.5.0 (23F79)", "Machine: Mac14,2 [arm64]",
                    before=[f"sed -i '{change}' {self.KEYS_THERE}"])

    def test_pads_the_systems_version_to_three_numbers_and_shows_other_values_unchanged(self):
        self.assert_first_lines(
            f"kovra Uninstaller v{self.VERSION} (build {self.BUILD_NUMBER})",
            "macOS 15.0.0 (24A335)", "Machine: Mac15,12 [arm64]",
            before=["sed -i 's/>14.5</>15.0</; s/>23F79</>24A335</; s/>Mac14,2</>Mac15,12</' "
                    + self.SYSTEM])


class CrashReports(unittest.TestCase):
    OWN, SYSTEMS = (f"{root}/Library/Logs/DiagnosticReports" for root in (HOME, ""))
    OWN_NAMES = {"kovraUninstaller-b.ips", "KOVRAUNINSTALLER_d_Mac.crash"}
    SYSTEMS_NAMES = {"kovraUninstaller-a.ips", "kovraUninstaller-c.ips", ".kovrauninstaller"}
    MAKE = (f"cd {OWN} && touch Notes-2.ips {' '.join(OWN_NAMES)}; "
            f"cd {SYSTEMS} && touch kovra-2.ips {' '.join(SYSTEMS_NAMES)}")

    def told(self, *before):
        """The names that stand before the session's header, in order."""
        log = uninstall("clean", before=[self.MAKE, *before]).log
        lines = [re.fullmatch(r"⚠️ System crash report found: (\S+) "
                              r"\(created \d{4}-\d\d-\d\d \d\d:\d\d:\d\d\)", line)
                 for line in log[:log.index("\u2500" * 60)]]
        self.assertTrue(all(lines), log[:6])
        return [line[1] for line in lines]

    def test_those_in_the_users_folder_come_before_those_in_the_systems(self):
        names = self.told()
        self.assertEqual((set(names[:2]), set(names[2:])), (self.OWN_NAMES, self.SYSTEMS_NAMES))
        self.assertEqual(len(names), 5)

    def test_a_folder_that_cannot_be_listed_does_not_keep_the_other_from_it(self):
        for change in (f"rm -r {self.OWN}", f"chmod 0 {self.OWN}"):
            with self.subTest(change):
                self.assertEqual(sorted(self.told(change)), sorted(self.SYSTEMS_NAMES))


if __name__ == "__main__":
    unittest.main()
