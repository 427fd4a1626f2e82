import unittest

from support import HOME, LOG, LOG_FOLDER, PROGRAM, PracticeMac, without_stamps

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


if __name__ == "__main__":
    unittest.main()
