"""The window without a pointer: what has the focus shows it, and nothing else is pressed."""

import unittest

from case import SCANNED, STARTED, WindowTest, finished


class Keyboard(WindowTest):
    def test_tab_walks_round_with_a_ring(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            button, link = "nothing-found-button-focused", "nothing-found-link-focused"
            for keys, ringed in (("Tab", button), ("Tab", link), ("Tab", button),
                                 ("shift+Tab", link), ("shift+Tab", button)):
                session.key(keys)
                session.await_state(ringed)
            session.key("alt+q")
        self.assert_story(session, SCANNED)

    def test_backwards_the_walk_begins_at_the_end(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("shift+Tab")
            session.await_state("nothing-found-link-focused")
            session.key("alt+q")
        self.assert_story(session, SCANNED)

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
        self.assert_story(session, SCANNED, STARTED, SCANNED, finished(0))
        self.assertEqual(len(self.opened(session)), 1)

    def test_space_presses_the_button(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("Tab")
            session.await_state("nothing-found-button-focused")
            session.key("space")
        self.assert_story(session, SCANNED)

    def test_return_presses_the_link(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("Tab", "Tab")
            session.await_state("nothing-found-link-focused")
            session.key("Return")
            session.await_state("done")
            session.key("alt+q")
        self.assert_story(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_space_and_return_press_nothing_without_a_ring(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            # The ring that Tab brings says that the keys before it have been dealt with.
            session.key("space", "Return", "KP_Enter", "x", "Escape", "Tab")
            session.await_state("nothing-found-button-focused")
            session.key("alt+q")
        self.assert_story(session, SCANNED)

    def test_other_keys_press_nothing_with_a_ring(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("Tab")
            session.await_state("nothing-found-button-focused")
            session.key("x", "Escape", "Down", "BackSpace", "ctrl+Return", "Tab")
            session.await_state("nothing-found-link-focused")
            session.key("alt+q")
        self.assert_story(session, SCANNED)


if __name__ == "__main__":
    unittest.main()
