"""The session that the shipped program keeps in its log: how it begins, and what is done when."""

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


def told(line):
    """What a line of the trace says of the session."""
    if handler := re.search(r"rt_sigaction\((\w+), \{sa_handler=0x", line):
        return handler[1] if handler[1] in SIGNALS else None
    if written := re.search(r'write\(\d+, "\[[-: \d]{19}\] (.+)\\n"', line):
        return written[1].encode().decode("unicode_escape").encode("latin-1").decode()
    if changed := re.search(r'(rename|unlink)\w*\(.*["/]\.session_active"', line):
        return {"rename": "marked", "unlink": "unmarked"}[changed[1]]
    return None


class LogSession(WindowTest):
    def test_has_its_crash_handlers_before_its_header_and_its_marker_between_header_and_last_line(self):
        # The main thread alone: a tool that is sanitized has handlers too.
        command = ["-qq", "-s", "300", "-o", TRACE, "-e",
                   "trace=rt_sigaction,write,rename,renameat,renameat2,unlink,unlinkat"]
        # A process can have one tracer only, and the leak check of a sanitized build is one.
        # The folder is there, so that nothing of it waits for the first line to make it.
        make = f"mkdir -p {LOG_FOLDER}; chown sam {LOG_FOLDER}"
        with self.session("clean", before=[make],
                          program="/usr/bin/strace", arguments=[*command, PROGRAM],
                          environment={"ASAN_OPTIONS": "detect_leaks=0"}) as session:
            session.await_state("nothing-found")
            session.key("alt+q")
        trace = session.run.written(TRACE).decode(errors="replace").splitlines()
        story = [part for part in map(told, trace) if part and not part.startswith("Preflight")]
        # A sanitizer has handlers of its own before, and so has the Mac's emulator, which keeps two
        # signals to itself and handles the others anew later.
        signals = [name for name in SIGNALS if not (IS_MAC and name in ("SIGSEGV", "SIGBUS"))]
        header = story.index(RULE)
        self.assertEqual(story[header - len(signals):header], signals)
        self.assertEqual([part for part in story[header:] if not (IS_MAC and part in signals)], [
            RULE, *self.log_of(session)[1:4], RULE, "marked", "Session ended normally", "unmarked"])
        self.assertNotIn("marked", story[:header])

    def test_tells_of_a_crash_of_the_program(self):
        for number in (signal.SIGSEGV, signal.SIGABRT):
            with self.subTest(number):
                with Session(self.display, self.pictures, "clean") as session:
                    session.await_state("nothing-found")
                    os.kill(session.process(), number)
                self.assertEqual(session.run.status, 128 + number)
                log = self.log_of(session)
                self.assertEqual(log[-1], f"‼️ CRASH: {number.name}")
                self.assertIn(f"{LOG_FOLDER}/.session_active", session.run.created)

    def test_begins_whatever_word_merely_holds_the_one_that_asks_for_the_inventory(self):
        words = ["--inventory=all", "--inventory-only", "x--inventory", "--inventor", "--Inventory",
                 "--inventory ", "inventory", ""]
        with self.session("clean", arguments=words) as session:
            session.await_state("nothing-found")
            session.key("alt+q")
        self.assert_story(session, SCANNED)
        self.assertEqual(session.run.stdout, b"")
        self.assertRegex(self.log_of(session)[1], r"^kovra Uninstaller v")


if __name__ == "__main__":
    unittest.main()
