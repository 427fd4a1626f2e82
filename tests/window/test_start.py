"""The program with its window, started with an environment and in a folder that are no good."""

import unittest

from case import SCANNED, STARTED, WindowTest, finished
from session import BUTTON
from whole import HOME, PROGRAM, in_bundle
from environments import HARMLESS, HOSTILE, found, handed_on

STARTER = f"{HOME}/start"


def starter(line):
    """Has a script start the program; gives what makes the script."""
    script = f"#!/bin/bash\n{line}\n"
    return f"printf %s '{script}' > {STARTER}; chmod 755 {STARTER}"


class Start(WindowTest):
    def uninstall(self, **options):
        """A whole run by the window's button; gives the session."""
        with self.session("installed", **options) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("done")
            session.key("alt+q")
        self.assert_story(session, SCANNED, STARTED, SCANNED, finished(0))
        self.assertIn(0, [tool.uid for tool in session.run.tools])
        return session

    def test_root_and_every_tool_find_what_is_on_the_list_and_nothing_else(self):
        harmless = {**HARMLESS, "DISPLAY": self.display.environment["DISPLAY"]}
        session = self.uninstall(environment={**harmless, **HOSTILE})
        for tool in session.run.tools:
            self.assertEqual((found(tool), tool.folder), (handed_on(harmless), "/"), tool.words)

    def test_the_folder_that_it_is_started_in_may_be_gone(self):
        session = self.uninstall(program=STARTER, before=[starter(
            f"mkdir ~/gone; cd ~/gone; rmdir ~/gone; exec -a kovraUninstaller {PROGRAM}")])
        self.assertEqual({tool.folder for tool in session.run.tools}, {"/"})
        self.assertNotIn(b"directory", session.run.stderr)

    def test_the_path_that_it_is_started_by_may_be_relative(self):
        session = self.uninstall(program=STARTER, before=[starter(
            f"cd ~/Downloads; exec {in_bundle('program', 'kovraUninstaller.app')}")])
        self.assertEqual({tool.folder for tool in session.run.tools}, {"/"})


if __name__ == "__main__":
    unittest.main()
