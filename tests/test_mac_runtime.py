"""What the Mac runtime gives a program, and how a practice Mac starts one. Whatever program the other
tests try, these are for the Mac's."""

import os
import unittest

os.environ["KOVRA_PROGRAM"] = "macos"

from support import (  # noqa: E402
    BUNDLE, CHECKOUT, LOG, PROGRAM, PracticeMac, in_bundle, without_stamps,
)

PROGRAMS = CHECKOUT / "build/macos-tests"
SHIMS = PROGRAMS / "shims"
ABORTED = 134


def run(*command, **options):
    return PracticeMac("clean").run(command, **options)


class Shims(unittest.TestCase):
    """A program that is compiled with Apple's headers checks what the runtime gives it."""

    def assert_holds(self, subject):
        ended = run(SHIMS, subject)
        self.assertEqual((ended.status, ended.stdout.decode(), ended.stderr.decode()), (0, "", ""))
        return ended

    def test_error_numbers_are_darwins(self):
        self.assert_holds("errors")

    def test_file_calls_have_darwins_structures_and_flags(self):
        self.assert_holds("files")

    def test_signals_have_darwins_numbers(self):
        self.assert_holds("signals")

    def test_threads_their_stacks_and_their_variables(self):
        self.assert_holds("threads")

    def test_pages_have_16_kilobytes(self):
        self.assert_holds("memory")

    def test_child_processes_start_and_end_as_on_a_mac(self):
        self.assert_holds("children")

    def test_exceptions_pass_through_frames_of_both_sides(self):
        self.assert_holds("exceptions")

    def test_queues_run_what_waits_for_one_another(self):
        self.assert_holds("queues")

    def test_a_serial_queue_keeps_its_order_and_knows_its_label_and_class(self):
        self.assert_holds("serial-queue")

    def test_the_log_keeps_private_and_public_apart(self):
        [line] = self.assert_holds("system-log").syslog
        self.assertRegex(line, r" shims: ai\.kovra\.shims:test: shown and <private>, 42 and "
                               r"<private>, 100%$")


class Differences(unittest.TestCase):
    """Known differences from a Mac; the documents name them, so a change must be noticed."""

    def test_some_malformed_property_lists_are_read(self):
        ended = run(SHIMS, "malformed-lists")
        self.assertEqual((ended.status, ended.stdout.decode()), (0, ""))


class UncaughtExceptions(unittest.TestCase):
    """The log names an uncaught C++ exception by its demangled type."""

    def assert_logged(self, subject, exception):
        mac = PracticeMac("clean")
        ended = mac.run([SHIMS, subject])
        self.assertEqual(ended.status, ABORTED, ended.stderr)
        self.assertIn(b"\nqemu: uncaught target signal 6 (Aborted)", b"\n" + ended.stderr)
        crash = [line for line in without_stamps(ended.written(LOG)).splitlines() if "CRASH" in line]
        self.assertEqual(crash, [f"‼️ CRASH: {exception}", "‼️ CRASH: SIGABRT"])

    def test_of_a_c_plus_plus_error_ends_the_program_with_its_text(self):
        self.assert_logged("uncaught-error", "std::runtime_error — for the test")

    def test_of_a_number_ends_the_program(self):
        self.assert_logged("uncaught-number", "int — unknown")


class Refusals(unittest.TestCase):
    """What the runtime does not know ends the program with a message that names it."""

    def assert_ends(self, ended, message):
        self.assertEqual(ended.status, ABORTED, ended.stderr)
        self.assertIn(f"mac-runtime: {message}\n", ended.stderr.decode())
        self.assertEqual(ended.stdout, b"")

    def test_an_unknown_import_ends_the_program_by_name(self):
        self.assert_ends(run(PROGRAMS / "unbound"),
                         "_getmntinfo of /usr/lib/libSystem.B.dylib is in no list")

    def test_an_unknown_flag_ends_the_program_by_name(self):
        self.assert_ends(run(SHIMS, "unknown-open-flag"),
                         "open with the flags 0x8000, which are not known")

    def test_a_queue_of_no_known_class(self):
        self.assert_ends(run(SHIMS, "unknown-queue-class"),
                         "dispatch_get_global_queue of 0x42, flags 0, which is not known")

    def test_input_sources_off_the_main_thread(self):
        self.assert_ends(run(SHIMS, "input-sources-off-the-main-thread"),
                         "the input sources were asked for off the main thread")


class Starting(unittest.TestCase):
    """Mac programs run however they are executed."""

    def assert_scans(self, *command, **options):
        ended = run(*command, **options)
        self.assertEqual((ended.status, ended.stdout), (0, b"Nothing found.\n"), ended.stderr)

    def test_by_the_systems_first_process(self):
        self.assert_scans(PROGRAM, "--inventory")

    def test_by_a_shell(self):
        self.assert_scans("/bin/sh", "-c", f"{PROGRAM} --inventory; exit $?")

    def test_by_bash_from_its_folder(self):
        self.assert_scans("/bin/bash", "-c", f"cd {BUNDLE}; ./{in_bundle('program')} --inventory")

    def test_by_a_tool_that_looks_in_the_path(self):
        self.assert_scans("/usr/bin/env", f"PATH=/usr/bin:{os.path.dirname(PROGRAM)}",
                          "kovraUninstaller", "--inventory")

    def test_by_posix_spawn(self):
        script = ("import os, sys\nchild = os.posix_spawn(sys.argv[1], sys.argv[1:], os.environ)\n"
                  "sys.exit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))")
        self.assert_scans("/usr/bin/python3", "-c", script, PROGRAM, "--inventory")

    def test_one_that_may_not_be_executed_is_refused(self):
        ended = run("/bin/sh", "-c", f"chmod 644 {PROGRAM}; {PROGRAM} --inventory")
        self.assertEqual(ended.status, 126)

    def test_it_has_its_own_name(self):
        ended = run("/bin/sh", "-c", f"{PROGRAM} --inventory >/dev/null & "
                    "until pgrep -x kovraUninstalle; do :; done >/dev/null; wait",
                    faults=["security=slow:3"])
        self.assertEqual(ended.status, 0, ended.stderr)

    def test_its_place_in_memory_changes(self):
        # Once its segments are there, below the mapping that its headers are read in.
        maps = "'/kovraUninstaller$' /proc/$pid/maps"
        places = run("/bin/sh", "-c", f"for i in 1 2 3 4; do {PROGRAM} --inventory >/dev/null & pid=$!; "
                     f'until mapped=$(grep -sc {maps}); [ "${{mapped:-0}}" -gt 2 ]; do :; done; '
                     f"grep -m 1 {maps}; wait; done",
                     faults=["security=slow:1"]).stdout.decode().splitlines()
        self.assertEqual(len(places), 4)
        self.assertGreater(len({line.split("-")[0] for line in places}), 1)


class Environment(unittest.TestCase):
    def told(self, *entries):
        script = "import os, sys\nos.execve(sys.argv[1], sys.argv[1:3], {ENTRIES})"
        pairs = {name: value for name, value in entries}
        ended = run("/usr/bin/python3", "-c", script.replace("ENTRIES", f"**{pairs!r}"), SHIMS,
                    "environment")
        self.assertEqual((ended.status, ended.stderr), (0, b""))
        return ended.stdout.decode().splitlines()

    def test_the_program_has_what_it_was_given_and_nothing_else(self):
        entries = [("HOME", "/Users/sam"), ("LD_PRELOAD", "/nowhere.so"), ("QEMU_STRACE", "1"),
                   ("EMPTY", ""), ("GCONV_PATH", "/nowhere")]
        self.assertEqual(self.told(*entries), [f"{name}={value}" for name, value in entries])

    def test_children_have_what_the_program_hands_them(self):
        """The stand-in of a tool that is a shell script here tells its environment."""
        ended = run("/bin/sh", "-c",
                    f"printf '#!/bin/sh\\n/usr/bin/env >/tmp/seen\\n' >/tmp/tool; chmod 755 /tmp/tool;"
                    f" env -i A=1 HOME=/Users/sam {SHIMS} child /tmp/tool; cat /tmp/seen")
        names = {line.partition("=")[0] for line in ended.stdout.decode().splitlines()}
        self.assertLessEqual({"A", "HOME"}, names)
        self.assertLessEqual(names, {"A", "HOME", "PWD", "_", "SHLVL", "OLDPWD"})


if __name__ == "__main__":
    unittest.main()
