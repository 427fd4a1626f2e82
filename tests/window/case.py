"""What the tests of the window share."""

import unittest
from contextlib import contextmanager

from display import Display
from pictures import Pictures
from session import Session
from whole import IS_MAC, LOG_FOLDER, log_lines

# The log lines of the session's course; the lines between them are the engine's.
STORY = ("Preflight scan:", "Uninstall ", "Session ended normally")


class WindowTest(unittest.TestCase):
    """Presses the real window on a display of its own."""

    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(Display())
        cls.pictures = Pictures(cls.display)

    @contextmanager
    def session(self, scenario, *, signal=None, **options):
        """A session that is quit, in whichever way, before the `with` is left; if by a signal, then
        by that one."""
        with Session(self.display, self.pictures, scenario, **options) as session:
            yield session
        if signal is not None and IS_MAC:
            self.assert_was_ended(session, signal)
        else:
            self.assert_ended_normally(session)

    def assert_was_ended(self, session, signal):
        """AppKit leaves signals to their default action, so the session's marker stays."""
        run = session.run
        self.assertEqual(run.status, 128 + signal, run.stderr)
        self.assertNotIn("Session ended normally", self.log_of(session))
        self.assertIn(f"{LOG_FOLDER}/.session_active", run.created)

    def assert_ended_normally(self, session):
        """By its status, by the last line of its log, and by its marker, which is gone."""
        run = session.run
        self.assertEqual(run.status, 0, run.stderr)
        self.assertEqual(self.log_of(session)[-1], "Session ended normally")
        self.assertNotIn(f"{LOG_FOLDER}/.session_active", [*run.created, *run.changed])

    def log_of(self, session):
        return log_lines(session.run)

    def assert_story(self, session, *lines, signal=None):
        """The log tells this and nothing else of the kind, but for the end, if no signal was it."""
        end = [] if signal is not None and IS_MAC else ["Session ended normally"]
        self.assertEqual([line for line in self.log_of(session) if line.startswith(STORY)],
                         [*lines, *end])

    def opened(self, session):
        """The arguments of each xdg-open."""
        return [run.arguments for run in session.run.tools if run.name == "xdg-open"]


SCANNED = "Preflight scan:"
STARTED = "Uninstall started"
REFUSED = "Uninstall failed at Remove kovra apps: Administrator access was not granted."


def finished(residues):
    return f"Uninstall finished (residues: {residues})"
