"""Where the window is placed, and that it looks the same on every desktop."""

import os
import signal
import unittest

from case import REFUSED, SCANNED, STARTED, WindowTest, finished
from pictures import Pictures
from prompt import FROM_A_PERSON, answer, await_dialog
from session import BUTTON, HEIGHT, LINK, NOWHERE, WIDTH, Session, until
from toolkit import settings
from whole import BUILD, IS_MAC

DARK = "0.2 0.2 0.2"
LIGHT = "0.8 0.8 0.8"
DARK_DESKTOP = settings(
    **dict.fromkeys(("controlBackgroundColor", "controlColor", "textBackgroundColor",
                     "windowBackgroundColor", "windowFrameColor", "highlightColor"), DARK),
    **dict.fromkeys(("controlTextColor", "labelColor", "secondaryLabelColor", "textColor",
                     "windowFrameTextColor", "keyboardFocusIndicatorColor"), LIGHT))


def middle(start, length):
    return start + length / 2


class Measuring:
    scale = 1  # the backing scale

    def assert_centred(self, rectangle):
        width, height = self.display.size
        self.assertAlmostEqual(middle(rectangle[0], rectangle[2]), width / 2, delta=1)
        self.assertAlmostEqual(middle(rectangle[1], rectangle[3]), height / 2, delta=1)

    def assert_aside(self, frame, size):
        self.assertEqual(frame[2:], size)
        self.assertEqual(frame[0], 40 * self.scale)
        self.assertAlmostEqual(middle(frame[1], frame[3]), self.display.size[1] / 2, delta=1)


class Place(Measuring, WindowTest):
    def test_the_content_is_centred_at_launch(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            content = session.geometry()
            session.key("alt+q")
        self.assertEqual(content[2:], (WIDTH, HEIGHT))
        self.assert_centred(content)

    def test_the_window_cannot_be_resized(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            allowed = self.display.output("xprop", "-id", session.window(),
                                          "_NET_WM_ALLOWED_ACTIONS").decode()
            session.key("alt+q")
        self.assertIn("_NET_WM_ACTION_MOVE", allowed)
        self.assertNotRegex(allowed, "RESIZE|MAXIMIZE")

    def test_the_window_makes_room_for_the_prompt_and_returns(self):
        with self.session("installed", answers=FROM_A_PERSON) as session:
            session.await_state("ready")
            before = session.frame()
            session.click_and_leave(BUTTON)
            # It is there before the prompt appears, and stays as long as the prompt is open.
            session.await_process("osascript")
            aside = session.frame()
            await_dialog(self.display)
            self.assertEqual(session.await_standstill(), aside)
            answer(self.display, *"secret", "Return")
            session.await_state("done")
            after = session.await_standstill()
            session.key("alt+q")
        self.assert_aside(aside, before[2:])
        self.assertEqual(after[2:], before[2:])
        self.assert_centred(after)
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_the_window_returns_from_a_prompt_that_is_refused(self):
        with self.session("cancelled") as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("failed")
            after = session.await_standstill()
            session.key("alt+q")
        self.assert_centred(after)
        self.assert_phases_logged(session, SCANNED, STARTED, REFUSED)

    def test_the_window_returns_when_the_script_fails(self):
        with self.session("script-fails") as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("failed-not-permitted")
            after = session.await_standstill()
            session.key("alt+q")
        self.assert_centred(after)

    def assert_stays(self, session, state):
        """The window does not move from the press of the button until that state is shown."""
        session.await_state("ready")
        places = {session.frame()}
        session.click_and_leave(BUTTON)
        until(lambda: places.add(session.frame()) or session.state() == state, state)
        places.add(session.await_standstill())
        session.key("alt+q")
        self.assertEqual(len(places), 1)

    def test_without_a_prompt_the_window_stays_where_it_is(self):
        with self.session("user-only", faults=["tccutil=slow:0.5"]) as session:
            self.assert_stays(session, "done")

    def test_without_its_script_the_window_stays_where_it_is(self):
        with self.session("missing-script") as session:
            self.assert_stays(session, "failed-damaged")

    def test_the_window_responds_while_the_prompt_is_open(self):
        with self.session("installed", faults=["osascript=slow:600"]) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_process("osascript")
            session.await_state("uninstalling-2")
            # The main thread handles the close, although the prompt has not been answered.
            session.key("alt+w")
        self.assert_phases_logged(session, SCANNED, STARTED)
        self.assertNotIn("osascript", [run.name for run in session.run.tools])


class Looks(WindowTest):
    def test_a_dark_desktop_does_not_change_the_page(self):
        program = BUILD / "tests/window/empty_window"
        other = Session(self.display, self.pictures, "clean", program=program,
                        before=[DARK_DESKTOP])
        with other as session:
            window = session.window("^Window$")
            inside = ["import", "-silent", "-window", window, "-crop", "9x9+100+100", "-depth", 8,
                      "rgb:-"]
            until(lambda: set(self.display.output(*inside)) == {round(0.2 * 255)},
                  "the dark look of the toolkit's own windows")
            os.kill(session.await_process("empty_window"), signal.SIGTERM)
        with self.session("clean", before=[DARK_DESKTOP]) as session:
            session.await_state("nothing-found")
            session.point_at(LINK)
            session.await_state("nothing-found-hovered")
            session.point_at(NOWHERE)
            session.key("Tab")
            session.await_state("nothing-found-button-focused")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)


class SmallPixels(Measuring, WindowTest):
    """A person has set GNUstep's scale factor to 2. In the Mac runtime it has no effect, since a Mac's
    program works in points."""

    wanted = 2
    scale = 1 if IS_MAC else wanted

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.pictures = Pictures(cls.display, cls.scale)

    def test_at_scale_two_the_page_looks_the_same_with_more_pixels(self):
        with self.session("installed", answers=FROM_A_PERSON, scale=self.scale,
                          before=[settings(GSScaleFactor=str(self.wanted))]) as session:
            session.await_state("ready")
            content, before = session.geometry(), session.frame()
            session.click_and_leave(BUTTON)
            session.await_process("osascript")
            aside = session.frame()
            answer(self.display, *"secret", "Return")
            session.await_state("done")
            after = session.await_standstill()
            session.point_at(LINK)
            session.await_state("done-hovered")
            session.click(BUTTON)
        self.assertEqual(content[2:], (WIDTH * self.scale, HEIGHT * self.scale))
        self.assert_centred(content)
        self.assert_aside(aside, before[2:])
        self.assertEqual(after[2:], before[2:])
        self.assert_centred(after)
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))


if __name__ == "__main__":
    unittest.main()
