"""The program with its window, started with a hostile environment and in odd folders."""

import unittest

from case import SCANNED, STARTED, WindowTest, finished
from session import BUTTON
from whole import HOME, PROGRAM, in_bundle
from environments import HARMLESS, HOSTILE, found, handed_on

STARTER = f"{HOME}/start"


def starter(line):
    """Shell commands that write a script which starts the program."""
    script = f"#!/bin/bash\n{line}\n"
    return f"printf %s '{script}' > {STARTER}; chmod 755 {STARTER}"


class Start(WindowTest):
    def uninstall(self, **options):
        """Uninstalls by the window's button; returns the session."""
        with self.session("installed", **options) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("done")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))
        self.assertIn(0, [tool.uid for tool in session.run.tools])
        return session

    def test_root_and_every_tool_get_only_the_listed_variables(self):
        harmless = {**HARMLESS, "DISPLAY": self.display.environment["DISPLAY"]}
        session = self.uninstall(environment={**harmless, **HOSTILE})
        for tool in session.run.tools:
            self.assertEqual((found(tool), tool.folder), (handed_on(harmless), "/"), tool.words)

    def test_the_current_folder_may_have_been_removed(self):
        session = self.uninstall(program=STARTER, before=[starter(
            f"mkdir ~/gone; cd ~/gone; rmdir ~/gone; exec -a kovraUninstaller {PROGRAM}")])
        self.assertEqual({tool.folder for tool in session.run.tools}, {"/"})
        self.assertNotIn(b"directory", session.run.stderr)

    def test_the_program_may_be_started_by_a_relative_path(self):
        session = self.uninstall(program=STARTER, before=[starter(
            f"cd ~/Downloads; exec {in_bundle('program', 'kovraUninstaller.app')}")])
        self.assertEqual({tool.folder for tool in session.run.tools}, {"/"})


if __name__ == "__main__":
    unittest.main()
