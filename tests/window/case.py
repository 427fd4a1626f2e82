"""The base class of the tests of the window."""

import unittest
from contextlib import contextmanager

from display import Display
from pictures import Pictures
from session import Session
from whole import IS_MAC, LOG_FOLDER, log_lines

# How the log lines of the session's phases begin; the others are the engine's.
PHASE_LINES = ("Preflight scan:", "Uninstall ", "Session ended normally")


class WindowTest(unittest.TestCase):
    """Presses the real window on a display of its own."""

    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(Display())
        cls.pictures = Pictures(cls.display)

    @contextmanager
    def session(self, scenario, *, signal=None, **options):
        """A session that the `with` block ends, by `signal` if one is given; checks that it ended
        normally."""
        with Session(self.display, self.pictures, scenario, **options) as session:
            yield session
        if signal is not None and IS_MAC:
            self.assert_ended_by_signal(session, signal)
        else:
            self.assert_ended_normally(session)

    def assert_ended_by_signal(self, session, signal):
        """The session ended by a signal. AppKit keeps its default action, so the marker stays."""
        run = session.run
        self.assertEqual(run.status, 128 + signal, run.stderr)
        self.assertNotIn("Session ended normally", self.log_of(session))
        self.assertIn(f"{LOG_FOLDER}/.session_active", run.created)

    def assert_ended_normally(self, session):
        """Checks the status, the log's last line, and that the marker is gone."""
        run = session.run
        self.assertEqual(run.status, 0, run.stderr)
        self.assertEqual(self.log_of(session)[-1], "Session ended normally")
        self.assertNotIn(f"{LOG_FOLDER}/.session_active", [*run.created, *run.changed])

    def log_of(self, session):
        return log_lines(session.run)

    def assert_phases_logged(self, session, *lines, signal=None):
        """The log has these lines of phases and no others, and the end unless a signal ended it."""
        end = [] if signal is not None and IS_MAC else ["Session ended normally"]
        self.assertEqual([line for line in self.log_of(session) if line.startswith(PHASE_LINES)],
                         [*lines, *end])

    def opened(self, session):
        """The arguments of each run of xdg-open."""
        return [run.arguments for run in session.run.tools if run.name == "xdg-open"]


SCANNED = "Preflight scan:"
STARTED = "Uninstall started"
REFUSED = "Uninstall failed at Remove kovra apps: Administrator access was not granted."


def finished(residues):
    return f"Uninstall finished (residues: {residues})"
