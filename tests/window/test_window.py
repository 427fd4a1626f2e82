import plistlib
import time
import unittest

from display import Display
from pictures import Pictures
from session import BUTTON, HEIGHT, LINK, NOWHERE, WIDTH, Session, until
from whole import HOME, LOG, PROGRAM, PracticeMac, without_stamps

REFUSED = ("Uninstall failed at Remove kovra apps: Administrator access was not granted.")


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

    def assert_ended_normally(self, session):
        self.assertEqual(session.run.status, 0, session.run.stderr)
        self.assertEqual(self.log_of(session)[-1], "Session ended normally")

    def opened(self, session):
        return [run.arguments for run in session.run.tools if run.name == "xdg-open"]


class Phases(WindowTest):
    def test_a_whole_run_ends_with_goodbye(self):
        with self.session("user-only") as session:
            session.await_state("ready")
            session.click(BUTTON)
            session.point_at(NOWHERE)
            session.await_state("done")
            session.click(BUTTON)
        self.assert_ended_normally(session)
        self.assertIn("Uninstall finished (residues: 0)", self.log_of(session))

    def test_the_quiet_link_cleans_up_a_mac_without_the_product(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.click(LINK)
            session.point_at(NOWHERE)
            session.await_state("done")
            session.key("alt+q")
        self.assert_ended_normally(session)
        self.assertIn("Uninstall started", self.log_of(session))

    def test_nothing_found_offers_to_quit(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.click(BUTTON)
        self.assert_ended_normally(session)
        self.assertNotIn("Uninstall started", self.log_of(session))

    def test_what_is_left_over_is_said_and_the_log_can_be_shown(self):
        with self.session("locked-user") as session:
            session.await_state("ready")
            session.click(BUTTON)
            session.point_at(NOWHERE)
            session.await_state("residues")
            session.click(LINK)
            until(lambda: session.state() == "residues-hovered", "the hovered link")
            session.click(BUTTON)
        self.assert_ended_normally(session)
        self.assertEqual(self.opened(session), [(LOG.rpartition("/")[0],)])

    def test_a_refused_prompt_can_be_retried(self):
        with self.session("cancelled") as session:
            session.await_state("ready")
            session.click(BUTTON)
            session.point_at(NOWHERE)
            session.await_state("failed")
            session.await_standstill()
            session.click(LINK)
            session.click(BUTTON)
            session.point_at(NOWHERE)
            session.await_state("done")
            session.key("alt+q")
        self.assert_ended_normally(session)
        log = self.log_of(session)
        self.assertEqual((log.count(REFUSED), log.count("Uninstall started")), (1, 2))
        self.assertEqual(len(self.opened(session)), 1)

    def test_the_external_link_opens_the_download_page(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.click(LINK)
            session.point_at(NOWHERE)
            session.await_state("done")
            session.point_at(LINK)
            session.await_state("done-hovered")
            session.click(LINK)
            session.point_at(NOWHERE)
            session.await_state("done")
            session.key("alt+q")
        self.assert_ended_normally(session)
        self.assertEqual(len(self.opened(session)), 1)
        self.assertRegex(self.opened(session)[0][0], "^https://")


class Pointer(WindowTest):
    def test_a_link_fades_while_the_pointer_is_on_it(self):
        ends = [self.pictures["nothing-found"], self.pictures["nothing-found-hovered"]]
        with self.session("clean") as session:
            session.await_state("nothing-found")
            between = None
            for _ in range(30):
                session.point_at(LINK)
                picture = session.picture()
                between = picture if picture not in ends else between
                session.await_state("nothing-found-hovered")
                session.point_at(NOWHERE)
                session.await_state("nothing-found")
                if between is not None:
                    break
            session.key("alt+q")
        self.assertIsNotNone(between, "the link jumped from one look to the other, thirty times")

    def test_leaving_the_window_ends_the_hover(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.point_at(LINK)
            session.await_state("nothing-found-hovered")
            self.display.output("xdotool", "mousemove", 5, 5)
            session.await_state("nothing-found")
            session.key("alt+q")

    def test_letting_go_elsewhere_presses_nothing(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.point_at(BUTTON)
            self.display.output("xdotool", "mousedown", 1)
            until(lambda: session.state() is None, "the pressed look")
            session.point_at(NOWHERE)
            self.display.output("xdotool", "mouseup", 1)
            session.await_state("nothing-found")
            session.key("alt+q")
        self.assert_ended_normally(session)


class Keyboard(WindowTest):
    def test_tab_and_return_press_what_is_ringed(self):
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
        self.assert_ended_normally(session)
        self.assertEqual(len(self.opened(session)), 1)

    def test_space_and_return_press_nothing_without_a_ring(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("space", "Return", "x", "Escape")
            time.sleep(0.5)
            self.assertEqual(session.state(), "nothing-found")
            session.key("alt+q")
        self.assertNotIn("Uninstall started", self.log_of(session))


class Ends(WindowTest):
    def test_closing_the_window_during_a_run_ends_the_program(self):
        with self.session("user-only", faults=["pkill=slow:2"]) as session:
            session.await_state("ready")
            session.click(BUTTON)
            session.point_at(NOWHERE)
            session.await_state("uninstalling-0")
            session.key("alt+F4")
        self.assert_ended_normally(session)
        self.assertNotIn("Uninstall finished (residues: 0)", self.log_of(session))

    def test_the_close_command_closes_the_window(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.key("alt+w")
        self.assert_ended_normally(session)

    def test_without_a_display_nothing_is_removed(self):
        run = PracticeMac("installed").run(["/usr/bin/env", "-u", "DISPLAY", PROGRAM])
        self.assertEqual(run.status, 1)
        self.assertIn(b"there is no display", run.stderr)
        self.assertEqual((run.deleted, run.tools), ([], []))


class Place(WindowTest):
    def test_the_window_makes_room_for_the_prompt_and_returns(self):
        with self.session("installed", faults=["osascript=slow:2"]) as session:
            session.await_state("ready")
            left, top, *size = before = session.geometry()
            self.assertEqual(size, [WIDTH, HEIGHT])
            self.assertAlmostEqual(left + WIDTH / 2, self.display.size[0] / 2, delta=2)
            session.click(BUTTON)
            session.point_at((900, 400))
            until(lambda: session.processes("osascript"), "the prompt")
            left, top, *size = aside = session.geometry()
            self.assertEqual(size, [WIDTH, HEIGHT])
            self.assertAlmostEqual(left, 40, delta=2)
            time.sleep(0.5)
            self.assertEqual(session.geometry(), aside)
            until(lambda: not session.processes("osascript"), "the prompt's end")
            session.await_state("done")
            self.assertAlmostEqual(session.geometry()[0], before[0], delta=2)
            session.key("alt+q")
        self.assert_ended_normally(session)

    def test_a_resting_page_takes_no_processor_time(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            time.sleep(1)
            [process] = session.processes("kovraUninstaller")
            before = processor_ticks(process)
            time.sleep(3)
            self.assertLessEqual(processor_ticks(process) - before, 1)
            session.key("alt+q")


class Repainting(WindowTest):
    def test_the_window_answers_while_a_tool_is_slow(self):
        with self.session("installed", faults=["osascript=slow:3"]) as session:
            session.await_state("ready")
            session.click(BUTTON)
            session.point_at(NOWHERE)
            [prompt] = until(lambda: session.processes("osascript"), "the prompt")
            session.await_state("uninstalling-2")
            # Closing is an answer of the main thread, and it comes long before the tool's.
            session.key("alt+w")
            until(lambda: not session.processes("kovraUninstaller"), "the end", 2)
            self.assertTrue(prompt)
        self.assert_ended_normally(session)

    def test_a_dark_desktop_does_not_change_the_page(self):
        dark = {name: "0.1 0.1 0.1" for name in DARK_COLOURS}
        settings = plistlib.dumps({"NSGlobalDomain": dark}).decode()
        place = f"{HOME}/GNUstep/Defaults"
        write = (f"mkdir -p {place}; cat > {place}/.GNUstepDefaults <<'END'\n{settings}\nEND\n"
                 f"chown -R 501 {HOME}/GNUstep")
        with self.session("clean", before=[write]) as session:
            session.await_state("nothing-found")
            session.key("alt+q")
        self.assert_ended_normally(session)


DARK_COLOURS = ("controlBackgroundColor", "controlColor", "textBackgroundColor",
                "windowBackgroundColor", "windowFrameColor")


def processor_ticks(process):
    with open(f"/proc/{process}/stat", encoding="ascii", errors="replace") as file:
        fields = file.read().rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


if __name__ == "__main__":
    unittest.main()
