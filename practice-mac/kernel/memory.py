"""The folder of the file that backs the guest's memory."""

import os
import shutil
import tempfile
from pathlib import Path

from launcher.root import CannotBoot

MEGABYTES = 1024


class Memory:
    """A new folder for the kernel's files, with room for its memory; remove() takes it away."""

    def __init__(self):
        refused = []
        for place in _places():
            reason = _refusal(place)
            if reason is None:
                self.place = place
                self.folder = tempfile.mkdtemp(prefix="practice-mac-kernel-", dir=place)
                return
            refused.append(f"{place} {reason}")
        raise CannotBoot("there is no folder for the user-mode kernel's memory: "
                         f"{', '.join(refused)}; TMPDIR may name another")

    def remove(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def __str__(self):
        return f"{MEGABYTES} MB in {self.place}"


def _places():
    """The first two are nearly always tmpfs, which is faster."""
    named = ["/dev/shm", os.environ.get("XDG_RUNTIME_DIR"), os.environ.get("TMPDIR"), "/tmp",
             "/var/tmp"]
    return list(dict.fromkeys(place for place in named if place))


def _refusal(place):
    """Why the kernel's memory cannot be there, or None. The guest's programs run from it; a file
    system that fills up later would end the kernel in the middle of its work."""
    if not Path(place).is_dir():
        return "is no folder"
    if not os.access(place, os.W_OK | os.X_OK):
        return "cannot be written"
    system = os.statvfs(place)
    if system.f_flag & os.ST_NOEXEC:
        return "forbids execution"
    free = system.f_bavail * system.f_frsize >> 20
    if free < MEGABYTES:
        return f"has {free} MB of {MEGABYTES}"
    return None
