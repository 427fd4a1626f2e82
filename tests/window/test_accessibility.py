"""What accessibility clients see and do in the window, what the system asks of the application, and
what is logged when the toolkit raises an exception. These tests always run the Mac's program, since
Linux's has no accessibility clients."""

import json
import os
import socket
import unittest
from contextlib import contextmanager
from pathlib import Path

os.environ["KOVRA_PROGRAM"] = "macos"

from case import SCANNED, STARTED, WindowTest, finished  # noqa: E402
from session import Session  # noqa: E402

ABORTED = 134
TEXT, BUTTON, IMAGE, BAR = "AXStaticText", "AXButton", "AXImage", "AXProgressIndicator"
HEADING = "Uninstall kovra"
DESTROYED, LAYOUT, FOCUS = "AXUIElementDestroyed", "AXLayoutChanged", "AXFocusedUIElementChanged"
VALUE, ANNOUNCEMENT = "AXValueChanged", "AXAnnouncementRequested"


class Client:
    """An accessibility client of a process, by the Mac runtime's socket."""

    def __init__(self, process):
        namespace = os.stat(f"/proc/{process}/ns/pid").st_ino
        status = Path(f"/proc/{process}/status").read_text()
        own = next(line for line in status.splitlines() if line.startswith("NSpid:")).split()[-1]
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(f"\0mac-accessibility-{namespace}-{own}")
        self._answers = self._socket.makefile()

    def close(self):
        self._answers.close()
        self._socket.close()

    def send(self, *words):
        self._socket.sendall(" ".join(map(str, words)).encode() + b"\n")

    def ask(self, *words):
        self.send(*words)
        [answer] = json.loads(self.read())
        return answer

    def read(self):
        """The next line, or "" if the program has ended."""
        try:
            return self._answers.readline()
        except ConnectionResetError:
            return ""

    def window(self):
        [window] = self.ask("windows")
        return window

    def elements(self):
        return self.window()["children"]

    def named(self, name):
        return next(element for element in self.elements() if name_of(element) == name)

    def notifications(self, *names):
        """The posted notifications of these names, each with its element's number."""
        return [(posted["name"], posted["element"]) for posted in self.ask("notifications")
                if posted["name"] in names]


def name_of(element):
    return element["title"] or element["label"] or element["value"]


class AccessibilityTest(WindowTest):
    @contextmanager
    def client(self, session, state):
        """Waits until the window shows that state; connects a client to the program."""
        session.await_state(state)
        client = Client(session.process())
        try:
            yield client
        finally:
            client.close()


class Elements(AccessibilityTest):
    def test_are_children_of_the_window(self):
        """The page's view is ignored, so their parent is the window."""
        with self.session("user-only") as session:
            with self.client(session, "ready") as client:
                window = client.window()
                for element in window["children"]:
                    for place in ("parent", "window", "toplevel"):
                        self.assertEqual(element[place], window["number"], element)
                    self.assert_inside(element["frame"], window["frame"])
            session.key("alt+q")

    def assert_inside(self, inner, outer):
        for low, size in ((0, 2), (1, 3)):
            self.assertGreater(inner[size], 0)
            self.assertGreaterEqual(inner[low], outer[low])
            self.assertLessEqual(inner[low] + inner[size], outer[low] + outer[size])

    def test_have_roles_names_and_actions(self):
        with self.session("user-only") as session:
            with self.client(session, "ready") as client:
                self.assertEqual(
                    [(e["role"], name_of(e), e["press"], e["focus"]) for e in client.elements()],
                    [(TEXT, HEADING, False, False),
                     (TEXT, "This removes kovra from this Mac, including your sign-in and settings.",
                      False, False),
                     (BUTTON, "Uninstall", True, True)])
                self.assertIs(client.named("Uninstall")["enabled"], True)
                text = client.named(HEADING)["number"]
                self.assertEqual(client.ask("press", text), "unsupported")
                self.assertEqual(client.ask("focus", text), "unsupported")
                self.assertEqual(client.ask("press", 999), "invalid element")
            session.key("alt+q")

    def test_are_found_at_their_point_of_the_screen(self):
        with self.session("clean") as session:
            with self.client(session, "nothing-found") as client:
                window = client.window()
                for element in window["children"]:
                    left, bottom, width, height = element["frame"]
                    self.assertEqual(client.ask("at", left + width / 2, bottom + height / 2),
                                     element["number"], element)
                left, bottom = window["frame"][:2]
                self.assertEqual(client.ask("at", left + 5, bottom + 5), window["number"])
            session.key("alt+q")


class Focus(AccessibilityTest):
    def test_can_be_set_by_a_client_and_is_reported(self):
        with self.session("clean") as session:
            with self.client(session, "nothing-found") as client:
                window = client.window()["number"]
                button, link = [e["number"] for e in client.elements() if e["role"] == BUTTON]
                self.assertEqual(client.ask("focused"), window)
                client.notifications()
                for element, state in ((link, "nothing-found-link-focused"),
                                       (button, "nothing-found-button-focused")):
                    self.assertEqual(client.ask("focus", element), "done")
                    session.await_state(state)
                    self.assertEqual(client.ask("focused"), element)
                    self.assertEqual([e["number"] for e in client.elements() if e["focused"]],
                                     [element])
                    self.assertEqual(client.notifications(FOCUS, LAYOUT, DESTROYED),
                                     [(FOCUS, element)])
                # Removing the focus from an element that has none changes nothing.
                self.assertEqual(client.ask("unfocus", link), "done")
                self.assertEqual(client.ask("focused"), button)
                self.assertEqual(client.ask("unfocus", button), "done")
                session.await_state("nothing-found")
                self.assertEqual(client.ask("focused"), window)
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_follows_the_keyboard(self):
        with self.session("clean") as session:
            with self.client(session, "nothing-found") as client:
                button, link = [e["number"] for e in client.elements() if e["role"] == BUTTON]
                session.key("Tab", "Tab")
                session.await_state("nothing-found-link-focused")
                self.assertEqual(client.ask("focused"), link)
                self.assertEqual(client.notifications(FOCUS), [(FOCUS, button), (FOCUS, link)])
            session.key("alt+q")


class Press(AccessibilityTest):
    def test_starts_an_uninstall_that_is_announced_step_by_step(self):
        with self.session("user-only") as session:
            with self.client(session, "ready") as client:
                window = client.window()["number"]
                heading, old, button = [e["number"] for e in client.elements()]
                client.notifications()
                self.assertEqual(client.ask("press", button), "done")
                session.await_state("done", 200)
                posted = client.ask("notifications")
                self.assertEqual(client.ask("press", button), "invalid element")
                self.assertEqual([(e["role"], name_of(e)) for e in client.elements()],
                                 [(IMAGE, "Done"), (TEXT, "Goodbye."),
                                  (TEXT, "kovra was removed. Thanks for giving it a try."),
                                  (BUTTON, "Quit"), (BUTTON, "Download kovra again")])
                client.send("press", client.named("Quit")["number"])
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))
        names = [notification["name"] for notification in posted]
        changed = names.index(LAYOUT)
        self.assertEqual([(n["name"], n["element"]) for n in posted[:changed + 1]],
                         [(DESTROYED, old), (DESTROYED, button), (LAYOUT, window)])
        # An element that both pages show stays the same.
        gone = {n["element"] for n in posted if n["name"] == DESTROYED}
        self.assertLess({heading, old, button}, gone)
        bars = {n["element"] for n in posted if n["name"] == VALUE}
        self.assertEqual(len(bars), 1)
        self.assertLess(bars, gone)
        self.assertEqual([n["details"]["AXAnnouncementKey"] for n in posted
                          if n["name"] == ANNOUNCEMENT][-1],
                         "Goodbye. kovra was removed. Thanks for giving it a try.")
        for notification in posted:
            if notification["name"] == ANNOUNCEMENT:
                self.assertEqual(notification["element"], window)
                self.assertEqual(notification["details"]["AXPriorityKey"], 90)


class Application(AccessibilityTest):
    def test_answers_the_systems_questions(self):
        with self.session("clean", arguments=["letter.txt"]) as session:
            with self.client(session, "nothing-found") as client:
                self.assertEqual(client.ask("application"),
                                 {"delegate": "KovraAppDelegate",
                                  "supportssecurerestorablestate": True,
                                  "treatunknownargumentsasopen": "NO",
                                  "initialfirstresponder": "KovraPageView",
                                  "firstresponder": "KovraPageView"})
            session.key("alt+q")


class ToolkitExceptions(AccessibilityTest):
    """A method of the toolkit raises an exception when the program calls it."""

    def assert_crashes(self, method, button):
        with Session(self.display, self.pictures, "clean") as session:
            with self.client(session, "nothing-found") as client:
                self.assertEqual(client.ask("raise", *method.split()), "done")
                client.send("press", client.named(button)["number"])
                # Reads the answers until the program has ended.
                while client.read():
                    pass
        self.assertEqual(session.run.status, ABORTED)
        crash = [line for line in self.log_of(session) if "CRASH" in line]
        self.assertEqual(crash, [f"‼️ CRASH: ToolkitException — in {method.split()[1]}",
                                 "‼️ CRASH: SIGABRT"])

    def test_in_an_action_are_logged_and_end_the_program(self):
        self.assert_crashes("NSApplication terminate:", "Quit")

    def test_in_a_noexcept_function_are_logged_and_end_the_program(self):
        """When the page changes, its elements are released in destructors."""
        self.assert_crashes("NSAccessibilityElement release", "Clean up anyway")


if __name__ == "__main__":
    unittest.main()
