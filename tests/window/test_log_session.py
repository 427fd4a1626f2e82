"""The session in the shipped program's log: how it begins and ends, and in which order."""

import os
import re
import signal
import unittest

from case import SCANNED, WindowTest
from session import Session
from whole import HOME, IS_MAC, LOG_FOLDER, PROGRAM

RULE = "\u2500" * 60
SIGNALS = ["SIGSEGV", "SIGABRT", "SIGBUS", "SIGFPE", "SIGILL", "SIGTRAP"]
TRACE = f"{HOME}/trace"


def event_of(line):
    """The session's event in a line of the trace, or None."""
    if handler := re.search(r"rt_sigaction\((\w+), \{sa_handler=0x", line):
        return handler[1] if handler[1] in SIGNALS else None
    if written := re.search(r'write\(\d+, "\[[-: \d]{19}\] (.+)\\n"', line):
        return written[1].encode().decode("unicode_escape").encode("latin-1").decode()
    if changed := re.search(r'(rename|unlink)\w*\(.*["/]\.session_active"', line):
        return {"rename": "marked", "unlink": "unmarked"}[changed[1]]
    return None


class LogSession(WindowTest):
    def test_installs_crash_handlers_then_writes_header_marker_and_last_line(self):
        # Traces the main thread only, since sanitized tools install handlers too.
        command = ["-qq", "-s", "300", "-o", TRACE, "-e",
                   "trace=rt_sigaction,write,rename,renameat,renameat2,unlink,unlinkat"]
        # A process can have only one tracer, and a sanitized build's leak check would be another. The
        # log's folder exists, so that every line is written at once.
        make = f"mkdir -p {LOG_FOLDER}; chown sam {LOG_FOLDER}"
        with self.session("clean", before=[make],
                          program="/usr/bin/strace", arguments=[*command, PROGRAM],
                          environment={"ASAN_OPTIONS": "detect_leaks=0"}) as session:
            session.await_state("nothing-found")
            session.key("alt+q")
        trace = session.run.written(TRACE).decode(errors="replace").splitlines()
        story = [event for event in map(event_of, trace)
                 if event and not event.startswith("Preflight")]
        # A sanitizer installs handlers before. So does the Mac's emulator, which handles some signals
        # itself (from version 9.1 on SIGABRT, too) and installs the others again later.
        own = ("SIGSEGV", "SIGABRT", "SIGBUS") if IS_MAC else ()
        signals = [name for name in SIGNALS if name not in own]
        header = story.index(RULE)
        self.assertEqual(story[header - len(signals):header], signals)
        self.assertEqual([event for event in story[header:] if not (IS_MAC and event in SIGNALS)], [
            RULE, *self.log_of(session)[1:4], RULE, "marked", "Session ended normally", "unmarked"])
        self.assertNotIn("marked", story[:header])

    def test_logs_a_crash(self):
        # Newer emulators end themselves by a SIGABRT that another process sends.
        for number in (signal.SIGSEGV, signal.SIGFPE if IS_MAC else signal.SIGABRT):
            with self.subTest(number):
                with Session(self.display, self.pictures, "clean") as session:
                    session.await_state("nothing-found")
                    os.kill(session.process(), number)
                self.assertEqual(session.run.status, 128 + number)
                log = self.log_of(session)
                self.assertEqual(log[-1], f"‼️ CRASH: {number.name}")
                self.assertIn(f"{LOG_FOLDER}/.session_active", session.run.created)

    def test_begins_with_arguments_that_only_resemble_the_inventory_option(self):
        words = ["--inventory=all", "--inventory-only", "x--inventory", "--inventor", "--Inventory",
                 "--inventory ", "inventory", ""]
        with self.session("clean", arguments=words) as session:
            session.await_state("nothing-found")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)
        self.assertEqual(session.run.stdout, b"")
        self.assertRegex(self.log_of(session)[1], r"^kovra Uninstaller v")


if __name__ == "__main__":
    unittest.main()
