"""The uninstaller at work in a practice Mac, with somebody in front of its window."""

import os
import threading
import time
from pathlib import Path

from pictures import pixels
from whole import PROGRAM, PracticeMac

WIDTH, HEIGHT = 480, 450
# In points from the window content's top left.
BUTTON = (240, 323)
LINK = (240, 371)
NOWHERE = (20, 430)


class Session:
    """One run of the program. Leaving the `with` waits for its end; then `run` says what it did."""

    def __init__(self, display, pictures, scenario, **options):
        self.display, self.pictures = display, pictures
        self.run = None
        self._failure = None
        self._mac = PracticeMac(scenario)
        self._options = options

    def __enter__(self):
        # The launcher hands the display on from its own environment.
        os.environ["DISPLAY"] = self.display.environment["DISPLAY"]
        os.environ.pop("XAUTHORITY", None)
        self.display.output("xdotool", "mousemove", 5, 5)
        self._thread = threading.Thread(target=self._boot)
        self._thread.start()
        return self

    def __exit__(self, kind, *_):
        if kind is not None and self._thread.is_alive():
            self.key("alt+q")
        self._thread.join()
        if self._failure is not None and kind is None:
            raise self._failure

    def _boot(self):
        try:
            self.run = self._mac.run([PROGRAM], **self._options)
        except Exception as failure:  # noqa: BLE001 told to the thread that waits
            self._failure = failure

    def window(self):
        """The window's id once it is there."""
        return until(lambda: self._find(), "the window")

    def _find(self):
        found = self.display.output("sh", "-c",
                                    "xdotool search --onlyvisible --name '^ $' || true").split()
        return found[-1].decode() if found else None

    def geometry(self):
        """Left, top, width and height of the window's content on the screen."""
        text = self.display.output("xwininfo", "-id", self.window()).decode()
        values = dict(line.strip().split(":", 1) for line in text.splitlines() if ":" in line)
        return tuple(int(values[key]) for key in ("Absolute upper-left X", "Absolute upper-left Y",
                                                  "Width", "Height"))

    def await_standstill(self):
        """Waits until the window has ended a slide."""
        places = [None]
        def stands():
            places.append(self.geometry())
            time.sleep(0.1)
            return places[-1] == places[-2] == self.geometry()
        until(stands, "the end of the slide")

    def picture(self):
        return pixels(self.display.output("import", "-silent", "-window", self.window(), "png:-"))

    def state(self):
        return self.pictures.name_of(self.picture())

    def await_state(self, name, seconds=60):
        try:
            until(lambda: self.state() == name, f"the picture of {name}", seconds)
        except AssertionError as failure:
            raise AssertionError(f"{failure}; it shows {self.state()}") from None

    def point_at(self, place):
        """Moves the pointer there. One that jumps in from outside has entered and not yet moved."""
        left, top, _, _ = self.geometry()
        for step in (1, 0):
            self.display.output("xdotool", "mousemove", left + place[0] - step, top + place[1])

    def click(self, place):
        self.point_at(place)
        # Pressed and released too quickly, the first pair arrives the wrong way round.
        self.display.output("xdotool", "mousedown", 1, "sleep", 0.05, "mouseup", 1)

    def key(self, *names):
        self.display.output("xdotool", "key", "--delay", 60, *names)

    def processes(self, name):
        """The ids of this session's processes of that name."""
        return [int(entry.name) for entry in Path("/proc").iterdir() if entry.name.isdigit()
                and command_of(entry) == name and is_ours(int(entry.name))]


def until(question, what, seconds=60):
    """Asks until the answer is yes, and gives it."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        answer = question()
        if answer:
            return answer
        time.sleep(0.02)
    raise AssertionError(f"{what} did not come within {seconds} s")


def command_of(entry):
    try:
        return os.path.basename((entry / "cmdline").read_bytes().split(b"\0")[0].decode())
    except OSError:
        return None


def is_ours(process):
    """Whether this test started it, at whatever remove."""
    while process > 1:
        if process == os.getpid():
            return True
        try:
            process = int(Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[1])
        except OSError:
            return False
    return False
