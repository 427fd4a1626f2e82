"""What the tests of the window share."""

import unittest

from display import Display
from pictures import Pictures
from session import Session
from whole import LOG, without_stamps

# The lines of the log that tell the story; those between them are the engine's.
STORY = ("Preflight scan:", "Uninstall ", "Session ended normally")


class WindowTest(unittest.TestCase):
    """Presses the real window on a display of its own."""

    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(Display())
        cls.pictures = Pictures(cls.display)

    def session(self, scenario, **options):
        return Session(self.display, self.pictures, scenario, **options)

    def log_of(self, session):
        return without_stamps(session.run.written(LOG)).splitlines()

    def assert_story(self, session, *lines):
        """The program ended normally, and its log tells this and nothing else of the kind."""
        self.assertEqual(session.run.status, 0, session.run.stderr)
        log = self.log_of(session)
        self.assertEqual([line for line in log if line.startswith(STORY)],
                         [*lines, "Session ended normally"])
        self.assertEqual(log[-1], "Session ended normally")

    def opened(self, session):
        """What the program had the desktop open."""
        return [run.arguments for run in session.run.tools if run.name == "xdg-open"]


SCANNED = "Preflight scan:"
STARTED = "Uninstall started"
REFUSED = "Uninstall failed at Remove kovra apps: Administrator access was not granted."


def finished(residues):
    return f"Uninstall finished (residues: {residues})"
