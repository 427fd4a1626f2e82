"""Writing into the setup layer: paths as the Mac sees them, owners as the Mac has them."""

import fcntl
import os
import shutil
import struct
from pathlib import Path

from .root import CannotBoot

FS_IOC_GETFLAGS = 0x80086601
FS_IOC_SETFLAGS = 0x40086602
FS_IMMUTABLE_FL = 0x10

STAFF = 20


class Layer:
    """The setup layer. `owners` maps path prefixes to user ids; everything else is root's."""

    def __init__(self, folder, hidden, owners):
        self.folder = folder
        self._hidden = tuple(f"{path}/" for path in hidden)
        self._owners = owners
        self._made = {}

    def place(self, path):
        """The layer's own path of a Mac path, its folders made."""
        parent, _, name = str(path).rpartition("/")
        return self.make_folder(parent or "/") / name

    def has(self, path):
        """Whether something was written at path."""
        parent, _, name = str(path).rpartition("/")
        real = parent if self._is_hidden(parent) else os.path.realpath(parent)
        return os.path.lexists(f"{self.folder}{real}/{name}")

    def make_folder(self, path, mode=None):
        """Makes the folder and those above it; a folder that the host has keeps its mode."""
        path = str(path).rstrip("/") or "/"
        if path in self._made and mode is None:
            return self._made[path]
        if path == "/":
            return self.folder
        # Debian's /bin is a link; what stands in it must be written where the link leads.
        real = path if self._is_hidden(path) else os.path.realpath(path)
        if real != path:
            made = self.make_folder(real, mode)
        else:
            made = self.place(path)
            self._make_one(made, path, mode)
        self._made[path] = made
        return made

    def _make_one(self, made, path, mode):
        if not made.is_dir():
            made.mkdir()
            owner, group = self.owner(path)
            host = Path(path)
            if not self._is_hidden(path) and host.is_dir():
                status = host.stat()
                mode = status.st_mode & 0o7777 if mode is None else mode
                owner, group = status.st_uid, status.st_gid
            os.chown(made, owner, group)
            made.chmod(0o755 if mode is None else mode)
        elif mode is not None:
            made.chmod(mode)

    def owner(self, path):
        for prefix, user in self._owners.items():
            if path == prefix or path.startswith(f"{prefix}/"):
                return user, STAFF
        return 0, 0

    def write(self, path, content, mode=None):
        """Writes a file; it belongs to the owner of the place."""
        target = self.place(path)
        target.write_bytes(content)
        self._dress(target, path, 0o644 if mode is None else mode)

    def copy(self, source, path, mode=0o755):
        target = self.place(path)
        shutil.copyfile(source, target)
        self._dress(target, path, mode)

    def copy_tree(self, source, path):
        """Copies a folder; all of it belongs to the owner of the place."""
        target = self.place(path)
        shutil.copytree(source, target, symlinks=True)
        for folder, folders, files in os.walk(target):
            os.chown(folder, *self.owner(path))
            for name in files + folders:
                os.lchown(os.path.join(folder, name), *self.owner(path))

    def link(self, path, to):
        target = self.place(path)
        target.symlink_to(to)
        os.lchown(target, *self.owner(path))

    def hard_link(self, source, path):
        """A hard link to a file of the layer."""
        os.link(source, self.place(path))

    def remove(self, path):
        """Takes back what was written at path, if anything was."""
        target = self.place(path)
        if target.is_dir() and not target.is_symlink():
            shutil.rmtree(target)
            self._made = {key: value for key, value in self._made.items()
                          if key != path and not key.startswith(f"{path}/")}
        else:
            target.unlink(missing_ok=True)

    def lock(self, path):
        """Makes path and all below it immutable: nobody, root included, can remove it."""
        target = self.place(path)
        if target.is_dir():
            for folder, _, files in os.walk(target, topdown=False):
                for name in files:
                    _make_immutable(os.path.join(folder, name))
                _make_immutable(folder)
        else:
            _make_immutable(target)

    def _dress(self, target, path, mode):
        os.chown(target, *self.owner(path))
        target.chmod(mode)

    def _is_hidden(self, path):
        return f"{path}/".startswith(self._hidden)


def _make_immutable(path):
    if os.path.islink(path):
        return
    descriptor = os.open(path, os.O_RDONLY | os.O_NONBLOCK)
    try:
        flags = struct.unpack("l", fcntl.ioctl(descriptor, FS_IOC_GETFLAGS, bytes(8)))[0]
        fcntl.ioctl(descriptor, FS_IOC_SETFLAGS, struct.pack("l", flags | FS_IMMUTABLE_FL))
    except OSError as error:
        raise CannotBoot("locked files need a kernel whose tmpfs knows immutable files "
                         f"(Linux 6.6 or later): {error.strerror}") from error
    finally:
        os.close(descriptor)
