"""A run of the uninstaller in a practice Mac, with its window on a display."""

import os
import threading
import time
from pathlib import Path

from pictures import pixels
from whole import PROGRAM, PracticeMac, time_limit

WIDTH, HEIGHT = 480, 450
# In points from the top left of the window's content.
BUTTON = (240, 323)
LINK = (240, 371)
NOWHERE = (20, 430)


class Session:
    """One run of the program. Leaving the `with` block waits for its end; then `run` is its result."""

    def __init__(self, display, pictures, scenario, *, program=PROGRAM, arguments=(), scale=1,
                 **options):
        self.display, self.pictures = display, pictures
        self.run = None
        self._command, self._scale = [program, *arguments], scale
        self._failure = None
        self._mac = PracticeMac(scenario)
        self._options = options

    def __enter__(self):
        # The launcher passes on the display of its own environment.
        os.environ["DISPLAY"] = self.display.environment["DISPLAY"]
        os.environ.pop("XAUTHORITY", None)
        self.display.output("xdotool", "mousemove", 5, 5)
        self._thread = threading.Thread(target=self._boot)
        self._thread.start()
        return self

    def __exit__(self, kind, *_):
        if kind is not None and self._thread.is_alive():
            self._press("alt+q")
        self._thread.join()
        if self._failure is not None and kind is None:
            raise self._failure

    def _boot(self):
        try:
            self.run = self._mac.run(self._command, **self._options)
        except Exception as failure:  # noqa: BLE001 raised again in the waiting thread
            self._failure = failure

    # What a person sees

    def window(self, name="^ $"):
        """Waits for the window of that name; returns its id."""
        return until(lambda: self._find(name), "the window")

    def _find(self, name):
        search = f"xdotool search --onlyvisible --name '{name}' || true"
        found = self.display.output("sh", "-c", search).split()
        return found[-1].decode() if found else None

    def geometry(self):
        """Left, top, width and height of the window's content on the screen."""
        text = self.display.output("xwininfo", "-id", self.window()).decode()
        values = dict(line.strip().split(":", 1) for line in text.splitlines() if ":" in line)
        return tuple(int(values[key]) for key in ("Absolute upper-left X", "Absolute upper-left Y",
                                                  "Width", "Height"))

    def frame(self):
        """The same for the whole window with its title bar and borders."""
        left, top, width, height = self.geometry()
        text = self.display.output("xprop", "-id", self.window(), "_NET_FRAME_EXTENTS").decode()
        west, east, north, south = (int(part) for part in text.partition("=")[2].split(","))
        return left - west, top - north, width + west + east, height + north + south

    def await_standstill(self):
        """Waits until the window does not slide any more; returns its frame."""
        places = [None]

        def stands():
            places.append(self.frame())
            time.sleep(0.1)
            return places[-1] == places[-2] == self.frame()
        until(stands, "the end of the slide")
        return places[-1]

    def png(self):
        return self.display.output("import", "-silent", "-window", self.window(), "png:-")

    def picture(self):
        return pixels(self.png())

    def state(self):
        return self.pictures.name_of(self.picture())

    def await_state(self, name, seconds=60):
        """Waits until the window shows that state; returns the picture as PNG."""
        shown = []

        def shows():
            png = self.png()
            shown[:] = [self.pictures.name_of(pixels(png))]
            return png if shown == [name] else None
        try:
            return until(shows, f"the picture of {name}", seconds)
        except AssertionError as failure:
            raise AssertionError(f"{failure}; it shows {shown}") from None

    # What a person does

    def point_at(self, place):
        """Moves the pointer in two steps, since entering the window gives no motion event."""
        left, top, _, _ = self.geometry()
        x, y = left + place[0] * self._scale, top + place[1] * self._scale
        for step in (1, 0):
            self.display.output("xdotool", "mousemove", x - step, y)

    def click(self, place):
        self.point_at(place)
        # Without the pause, the first press and release arrive in the wrong order.
        self.display.output("xdotool", "mousedown", 1, "sleep", 0.05, "mouseup", 1)

    def click_and_leave(self, place):
        self.click(place)
        self.point_at(NOWHERE)

    def key(self, *names):
        """Waits for the keyboard focus and presses these keys, one after the other."""
        window = self.window()
        until(lambda: self.display.output("xdotool", "getwindowfocus").split() == [window.encode()],
              "the keyboard focus")
        self._press(*names)

    def _press(self, *names):
        self.display.output("xdotool", "key", "--delay", 60, *names)

    def close_by_window_manager(self):
        """Presses openbox's key for closing, repeatedly: under load openbox loses a key that comes
        while it grabs the pointer."""
        while self._thread.is_alive():
            self._press("alt+F4")
            self._thread.join(time_limit(20))

    # The processes behind the window

    def processes(self, name):
        """The ids of this session's processes with that name."""
        return [int(entry.name) for entry in Path("/proc").iterdir() if entry.name.isdigit()
                and command_of(entry) == name and is_ours(int(entry.name))]

    def process(self):
        """The program's process id. A child has the same name until it executes a tool."""
        found = self.processes("kovraUninstaller")
        [program] = [process for process in found if parent_of(process) not in [0, *found]]
        return program

    def await_process(self, name):
        return until(lambda: self.processes(name), f"a process {name}")[0]


def until(question, what, seconds=60):
    """Repeats the question until the answer is true, and returns it."""
    end = time.monotonic() + time_limit(seconds)
    while True:
        answer = question()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"{what} did not come within {time_limit(seconds)} s")
        time.sleep(0.02)


def command_of(entry):
    try:
        return os.path.basename((entry / "cmdline").read_bytes().split(b"\0")[0].decode())
    except OSError:
        return None


def is_ours(process):
    """Whether the process is a descendant of this test."""
    while process > 1:
        if process == os.getpid():
            return True
        process = parent_of(process)
    return False


def parent_of(process):
    """The parent's id; 0 if the process is gone."""
    try:
        return int(Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[1])
    except OSError:
        return 0
