"""The ways in which the program ends, and that it does not start without a display."""

import os
import signal
import unittest
from unittest import mock

from case import SCANNED, STARTED, WindowTest
from session import BUTTON, Session
from whole import IS_MAC, PROGRAM, PracticeMac


class Ends(WindowTest):
    def end_during_a_run(self, end, *, signal=None):
        """Ends the program while a tool of the run takes very long."""
        with self.session("user-only", faults=["pkill=slow:600"], signal=signal) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_process("pkill")
            session.await_state("uninstalling-0")
            end(session)
        self.assert_phases_logged(session, SCANNED, STARTED, signal=signal)

    def test_closing_the_window_during_a_run_ends_the_program(self):
        self.end_during_a_run(Session.close_by_window_manager)

    def test_the_close_command_during_a_run_ends_the_program(self):
        self.end_during_a_run(lambda session: session.key("alt+w"))

    def test_the_quit_command_during_a_run_ends_the_program(self):
        self.end_during_a_run(lambda session: session.key("alt+q"))

    def test_sigterm_during_a_run_ends_the_program(self):
        self.end_during_a_run(lambda session: os.kill(session.process(), signal.SIGTERM),
                              signal=signal.SIGTERM)

    def test_the_close_command_closes_the_window(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("alt+w")
        self.assert_phases_logged(session, SCANNED)

    def test_sigterm_and_sigint_end_the_program_at_rest(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(number):
                with self.session("clean", signal=number) as session:
                    session.await_state("nothing-found")
                    os.kill(session.process(), number)
                self.assert_phases_logged(session, SCANNED, signal=number)

    def test_sigterm_during_a_repaint_ends_the_program(self):
        for _ in range(5):
            with self.session("clean", signal=signal.SIGTERM) as session:
                session.window()
                os.kill(session.process(), signal.SIGTERM)


class NoDisplay(unittest.TestCase):
    """On a Mac AppKit ends an application without a window server, with a message of its own."""

    def assert_does_nothing(self, **display):
        with mock.patch.dict(os.environ):
            os.environ.pop("DISPLAY", None)
            os.environ |= display
            run = PracticeMac("installed").run([PROGRAM])
        if IS_MAC:
            self.assertNotEqual(run.status, 0)
            self.assertIn(b"Unable to connect to X Server", run.stderr)
        else:
            self.assertEqual(run.status, 1)
            self.assertIn(b"there is no display", run.stderr)
            self.assertIn(b"Nothing was removed", run.stderr)
        self.assertEqual((run.deleted, run.tools), ([], []))

    def test_without_a_display_nothing_is_removed(self):
        self.assert_does_nothing()

    def test_with_an_unreachable_display_nothing_is_removed(self):
        self.assert_does_nothing(DISPLAY=":9999")


if __name__ == "__main__":
    unittest.main()
