import time
import unittest

from support import HOME, PracticeMac, text

EXPORT = "defaults export com.apple.HIToolbox -"


def broken(fault, script=EXPORT, **options):
    return PracticeMac("clean").shell(script, faults=[fault], **options)


class AFault(unittest.TestCase):
    def test_makes_a_tool_be_missing(self):
        for tool in ("defaults", "pkill", "launchctl"):
            run = broken(f"{tool}=missing", f"{tool} x")
            self.assertEqual((run.status, run.tools), (127, []))

    def test_makes_a_tool_not_be_executable(self):
        run = broken("defaults=not-executable", f"/usr/bin/{EXPORT}")
        self.assertEqual((run.status, run.tools), (126, []))

    def test_makes_a_tool_fail_before_it_reads_or_does_anything(self):
        run = broken("defaults=exit:3", "defaults delete com.example.notes")
        self.assertEqual((run.status, run.deleted, run.tools[0].status), (3, [], 3))

    def test_makes_a_tool_fail_when_it_has_done_everything(self):
        run = broken("defaults=late-exit:3",
                     f"{EXPORT} && exit 1; defaults delete com.example.notes")
        self.assertEqual((run.status, [tool.status for tool in run.tools]), (3, [3, 3]))
        self.assertEqual(run.stdout, PracticeMac("clean").shell(EXPORT).stdout)
        self.assertEqual(run.deleted, [f"{HOME}/Library/Preferences/com.example.notes.plist"])

    def test_kills_a_tool_by_a_signal(self):
        for fault in ("defaults=signal:SIGKILL", "defaults=signal:9"):
            run = broken(fault)
            self.assertEqual((run.status, run.tools[0].signal), (128 + 9, 9))

    def test_makes_a_tool_print_nothing(self):
        run = broken("defaults=silent", f"{EXPORT}; defaults delete none")
        self.assertEqual((run.status, run.stdout, run.stderr), (1, b"", b""))

    def test_makes_a_tool_print_rubbish(self):
        run = broken("defaults=rubbish")
        self.assertEqual((run.status, len(run.stdout)), (0, 4096))
        with self.assertRaises(UnicodeDecodeError):
            run.stdout.decode()

    def test_makes_a_tool_print_a_flood(self):
        run = broken("defaults=flood:100000001", f"{EXPORT} | wc -c")
        self.assertEqual(text(run), "100000001\n")

    def test_of_what_is_printed_keeps_the_work_and_the_status(self):
        for fault in ("rubbish", "flood:1000", "silent"):
            run = broken(f"defaults={fault}",
                         "defaults delete com.example.notes >&2; defaults delete none >&2; echo $?")
            self.assertEqual(run.deleted, [f"{HOME}/Library/Preferences/com.example.notes.plist"])
            self.assertEqual(text(run), "1\n")

    def test_kills_the_caller_at_the_run_that_it_numbers(self):
        run = broken("defaults=kill-caller:2",
                     f"sh -c 'for n in 1 2 3; do {EXPORT} > /dev/null; echo $n; done'; echo $?")
        self.assertEqual(text(run).split(), ["1", "137"])

    def test_cuts_the_output_in_the_middle_and_keeps_the_work_and_the_status(self):
        whole = PracticeMac("clean").shell(EXPORT).stdout
        run = broken("defaults=cut", f"{EXPORT}; echo; defaults delete com.example.notes;"
                     "defaults delete none >&2; echo $?")
        printed, status = run.stdout.rsplit(b"\n", 2)[:2]
        self.assertEqual((printed, status), (whole[:len(whole) // 2], b"1"))
        self.assertEqual(run.deleted, [f"{HOME}/Library/Preferences/com.example.notes.plist"])
        self.assertIn(b"defaults[", run.stderr)
        self.assertNotIn(b"have not been changed", run.stderr)

    def test_cuts_what_a_real_tool_prints(self):
        whole = PracticeMac("clean").shell("getconf PAGE_SIZE").stdout
        self.assertEqual(broken("getconf=cut", "getconf PAGE_SIZE").stdout, whole[:len(whole) // 2])

    # Does the tool's work, and says whether it was done when the output came to its end.
    AT_THE_END = ("{ defaults delete com.example.notes & } | cat;"
                  f"test ! -e {HOME}/Library/Preferences/com.example.notes.plist && echo done")

    def test_makes_a_tools_output_end_before_its_work(self):
        run = broken("defaults=close-output:3", f"{self.AT_THE_END}; sleep 4")
        self.assertEqual(text(run), "")
        self.assertEqual(run.deleted, [f"{HOME}/Library/Preferences/com.example.notes.plist"])

    def test_leaves_the_output_open_until_the_work_is_done_whatever_is_printed(self):
        for fault in ("silent", "rubbish", "flood:1000", "cut"):
            run = broken(f"defaults={fault}", self.AT_THE_END)
            self.assertTrue(run.stdout.endswith(b"done\n"), fault)

    def test_makes_a_tool_slow(self):
        start = time.monotonic()
        run = broken("defaults=slow:1.5")
        self.assertGreater(time.monotonic() - start, 1.5)
        self.assertTrue(run.stdout.startswith(b"<?xml"))

    def test_leaves_a_grandchild_that_holds_the_output_open(self):
        run = broken("defaults=grandchild:1.5",
                     f"date +%s%N; {EXPORT} > /dev/null; date +%s%N; {EXPORT} | wc -c; date +%s%N")
        first, second, size, third = map(int, text(run).split())
        self.assertGreater(size, 1000)
        self.assertLess(second - first, 1.4e9)
        self.assertGreater(third - second, 1.4e9)

    def test_holds_for_the_arguments_it_names(self):
        run = broken("defaults export com.apple.HIToolbox=exit:5",
                     f"defaults export com.example.notes - > /dev/null; echo $?; {EXPORT}; echo $?")
        self.assertEqual(text(run).split(), ["0", "5"])

    def test_holds_for_as_many_runs_as_it_says(self):
        run = broken("defaults=exit:5*2", f"for n in 1 2 3; do {EXPORT} > /dev/null; echo $?; done")
        self.assertEqual(text(run).split(), ["5", "5", "0"])

    def test_works_on_the_real_tools_and_the_password_prompt_too(self):
        run = PracticeMac("installed").shell(
            "pkill -x kovra; echo $?; getconf PAGE_SIZE; echo $?; osascript -e x; echo $?",
            faults=["pkill=exit:3", "getconf=signal:11", "osascript=silent"])
        self.assertEqual(text(run).split(), ["3", "139", "97"])

    def test_that_cannot_be_understood_is_refused(self):
        for fault in ("defaults", "defaults=explode", "defalts=exit:1", "defaults=exit",
                      "defaults=silent:3", "defaults export=missing", "=exit:1",
                      "defaults=signal:SIGNOTHING", "/bin/defaults=exit:1"):
            run = broken(fault)
            self.assertEqual((run.status, run.stdout), (125, b""), fault)
            self.assertNotIn(b"Traceback", run.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
