"""The pointer over the window: hover and its fade, presses, and covering windows."""

import subprocess
import unittest

from case import SCANNED, STARTED, WindowTest, finished
from session import BUTTON, LINK, NOWHERE, until


class Pointer(WindowTest):
    def assert_fades(self, session, resting, hovered):
        """The link fades from one look to the other, in both directions."""
        ends = [self.pictures[resting], self.pictures[hovered]]
        between = set()
        for _ in range(60):
            for place, end in ((LINK, hovered), (NOWHERE, resting)):
                session.point_at(place)
                if session.picture() not in ends:
                    between.add(end)
                session.await_state(end)
            if len(between) == 2:
                return
        self.fail(f"in sixty times the link faded towards {between or 'neither look'} alone")

    def test_a_link_fades_while_the_pointer_is_on_it(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            self.assert_fades(session, "nothing-found", "nothing-found-hovered")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_a_link_fades_while_the_program_that_it_started_is_slow(self):
        with self.session("clean", faults=["xdg-open=slow:600"]) as session:
            session.await_state("nothing-found")
            session.click_and_leave(LINK)
            session.await_state("done")
            session.click_and_leave(LINK)
            opener = session.await_process("xdg-open")
            session.await_state("done")
            self.assert_fades(session, "done", "done-hovered")
            self.assertEqual(session.processes("xdg-open"), [opener])
            session.click(BUTTON)
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_leaving_the_window_ends_the_hover(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.point_at(LINK)
            session.await_state("nothing-found-hovered")
            self.display.output("xdotool", "mousemove", 5, 5)
            session.await_state("nothing-found")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_a_release_outside_presses_nothing(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            for place in (BUTTON, LINK):
                session.point_at(place)
                self.display.output("xdotool", "mousedown", 1)
                until(lambda: session.state() is None, "the pressed look")
                session.point_at(NOWHERE)
                self.display.output("xdotool", "mouseup", 1)
                session.await_state("nothing-found")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_covered_parts_are_redrawn(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            self.cover_and_uncover(session)
            session.await_state("nothing-found")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_covered_parts_are_redrawn_while_a_tool_is_slow(self):
        with self.session("installed", faults=["osascript=slow:600"]) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("uninstalling-2")
            session.await_standstill()
            self.cover_and_uncover(session)
            session.await_state("uninstalling-2")
            self.assertEqual(len(session.processes("osascript")), 1)
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED)

    def cover_and_uncover(self, session):
        left, top, _, _ = session.geometry()
        with subprocess.Popen(["xev", "-name", "cover", "-geometry", f"300x300+{left}+{top}"],
                              env=self.display.environment, stdout=subprocess.DEVNULL) as cover:
            session.window("^cover$")
            until(lambda: session.state() is None, "the covered look")
            cover.terminate()


if __name__ == "__main__":
    unittest.main()
