"""The window by keyboard: the focused control has a ring, and only it is pressed."""

import unittest

from case import SCANNED, STARTED, WindowTest, finished


class Keyboard(WindowTest):
    def test_tab_moves_the_focus_ring_in_a_circle(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            button, link = "nothing-found-button-focused", "nothing-found-link-focused"
            for keys, ringed in (("Tab", button), ("Tab", link), ("Tab", button),
                                 ("shift+Tab", link), ("shift+Tab", button)):
                session.key(keys)
                session.await_state(ringed)
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_shift_tab_begins_at_the_last_control(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("shift+Tab")
            session.await_state("nothing-found-link-focused")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_return_presses_the_button_and_space_the_link(self):
        with self.session("user-only") as session:
            session.await_state("ready")
            session.key("Tab")
            session.await_state("ready-focused")
            session.key("Return")
            session.await_state("done")
            session.key("shift+Tab")
            session.await_state("done-focused")
            session.key("space")
            session.key("Tab", "Return")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))
        self.assertEqual(len(self.opened(session)), 1)

    def test_space_presses_the_button(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("Tab")
            session.await_state("nothing-found-button-focused")
            session.key("space")
        self.assert_phases_logged(session, SCANNED)

    def test_return_presses_the_link(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("Tab", "Tab")
            session.await_state("nothing-found-link-focused")
            session.key("Return")
            session.await_state("done")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_space_and_return_press_nothing_without_a_focus(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            # When Tab shows the ring, the keys before it have been handled.
            session.key("space", "Return", "KP_Enter", "x", "Escape", "Tab")
            session.await_state("nothing-found-button-focused")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_other_keys_press_nothing(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("Tab")
            session.await_state("nothing-found-button-focused")
            session.key("x", "Escape", "Down", "BackSpace", "ctrl+Return", "Tab")
            session.await_state("nothing-found-link-focused")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)


if __name__ == "__main__":
    unittest.main()
