"""What a run wrote and deleted, read from the upper layer."""

import filecmp
import os
import shutil
import stat
import subprocess
import tempfile
from pathlib import Path


def _kind(status):
    if stat.S_ISDIR(status.st_mode):
        return "folder"
    if stat.S_ISLNK(status.st_mode):
        return "link"
    return "file" if stat.S_ISREG(status.st_mode) else "other"


def _is_absence(status):
    return stat.S_ISCHR(status.st_mode) and status.st_rdev == 0


def _is_opaque(folder):
    try:
        return os.getxattr(folder, "trusted.overlay.opaque") == b"y"
    except OSError:
        return False


def _status(path):
    try:
        return path.lstat()
    except (FileNotFoundError, NotADirectoryError):
        return None


def _differences(old, old_status, new, new_status):
    if _kind(old_status) != _kind(new_status):
        return ["kind"]
    found = []
    if stat.S_ISREG(new_status.st_mode):
        if not filecmp.cmp(old, new, shallow=False):
            found.append("content")
    elif stat.S_ISLNK(new_status.st_mode) and os.readlink(old) != os.readlink(new):
        found.append("content")
    if stat.S_IMODE(old_status.st_mode) != stat.S_IMODE(new_status.st_mode):
        found.append("mode")
    if (old_status.st_uid, old_status.st_gid) != (new_status.st_uid, new_status.st_gid):
        found.append("owner")
    if not stat.S_ISDIR(new_status.st_mode) and old_status.st_mtime_ns != new_status.st_mtime_ns:
        found.append("time")
    return found


def copy_upper(written, target):
    """Copies the upper layer into the folder target: all of it where this system's root is the
    target's too. It is not where a plain user's folder is shown in a kernel of his own; there
    everything becomes his, and marks of absence stay out."""
    if _may_give_away(target):
        subprocess.run(["cp", "-a", "--", f"{written}/.", target], check=True)
        return

    def left_out(folder, names):
        return [name for name in names if _kind((Path(folder) / name).lstat()) == "other"]
    shutil.copytree(written, target, symlinks=True, ignore=left_out, dirs_exist_ok=True)


def _may_give_away(folder):
    with tempfile.NamedTemporaryFile(dir=folder) as probe:
        try:
            os.chown(probe.name, 501, 20)
        except PermissionError:
            return False
    return True


class Changes:
    """Lists of what was created, changed and deleted; paths as the Mac sees them.

    A folder that was deleted stands for everything in it. A file that was opened for writing and
    left as it was is listed as changed, with no differences. Of folders that were there before,
    only mode and owner are looked at: their contents speak for themselves.
    """

    def __init__(self, written, before):
        self.created, self.changed, self.deleted = [], [], []
        self._compare(Path(written), Path(before), "")

    def as_json(self):
        return {"created": self.created, "changed": self.changed, "deleted": self.deleted}

    def text(self):
        lines = []
        for word, entries in (("created", self.created), ("changed", self.changed),
                              ("deleted", self.deleted)):
            for entry in entries:
                what = f" ({', '.join(entry['what'])})" if entry.get("what") else ""
                lines.append(f"{word} {entry['kind']} {entry['path']}{what}\n")
        return "".join(lines)

    def _compare(self, written, before, path):
        for name in sorted(os.listdir(written)):
            self._compare_one(written / name, before / name, f"{path}/{name}")
        if _is_opaque(written) and before.is_dir():
            kept = set(os.listdir(written))
            for name in sorted(set(os.listdir(before)) - kept):
                self._note(self.deleted, f"{path}/{name}", _kind((before / name).lstat()))

    def _compare_one(self, new, old, path):
        new_status, old_status = new.lstat(), _status(old)
        if _is_absence(new_status):
            if old_status is not None:
                self._note(self.deleted, path, _kind(old_status))
            return
        kind = _kind(new_status)
        if old_status is None:
            self._note(self.created, path, kind)
        else:
            what = _differences(old, old_status, new, new_status)
            if what or kind != "folder":
                self._note(self.changed, path, kind, what=what)
        if kind == "folder":
            self._compare(new, old, path)

    @staticmethod
    def _note(entries, path, kind, **more):
        entries.append({"path": path, "kind": kind, **more})
