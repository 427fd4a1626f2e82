"""Answers the password prompt of a practice Mac that waits for a person."""

import time

from session import until

FROM_A_PERSON = ["person"]


def dialog(display):
    """The prompt's window, or None."""
    found = display.output("sh", "-c", "xdotool search --onlyvisible --class zenity || true")
    return found.split()[0].decode() if found.split() else None


def await_dialog(display):
    return until(lambda: dialog(display), "the password dialog")


def answer(display, *keys):
    """Waits for the prompt and presses the keys until it is gone: keys are lost while it is being
    opened."""
    window = await_dialog(display)

    def gone():
        time.sleep(0.5)
        if dialog(display) is None:
            return True
        display.output("sh", "-c", f"xdotool windowfocus {window} key --delay 60 {' '.join(keys)} "
                       "|| true")
        return False
    until(gone, "the end of the password dialog")
