"""A private root over the host's: an overlay, a mount namespace and a process namespace."""

import os
import signal
import stat
from pathlib import Path

from . import syscalls

# The layers live in a tmpfs over this folder, in this process's own mount namespace only. It is
# there on every Linux, and nobody keeps a checkout, a build tree or a report in it.
STAGE = Path("/proc/driver")

# No metadata-only copies, and a rename of a lower folder fails with EXDEV: the upper layer can be read
# without the lower ones.
OVERLAY_OPTIONS = "metacopy=off,redirect_dir=off,index=off"

DEVICES = ("null", "zero", "full", "random", "urandom", "tty")


class CannotBoot(Exception):
    """Something that a practice Mac needs is missing here; the text names it."""


def refusal():
    """Why no root can be made here; None where it can. A child process tries it."""
    reader, writer = os.pipe()
    child = os.fork()
    if child == 0:
        try:
            root = Root()
            root.open()
            root.assemble()
            root.run_nothing()
        except CannotBoot as reason:
            os.write(writer, str(reason).encode())
        except OSError as error:
            os.write(writer, f"a file system cannot be mounted ({error.strerror})".encode())
        finally:
            os._exit(0)
    os.close(writer)
    with os.fdopen(reader) as told:
        reason = told.read()
    os.waitpid(child, 0)
    return reason or None


class Root:
    """The methods are called in the order in which they stand. `setup` is the folder into which the
    scenario is written before the run; `control` becomes /dev/practice-mac inside, and is no part of
    what the run wrote."""

    def __init__(self):
        self.setup = STAGE / "setup"
        self.control = STAGE / "control"
        self._upper = STAGE / "upper"
        self._root = STAGE / "root"
        self._shown = []

    def open(self):
        """Makes the empty layers; raises CannotBoot."""
        # The overlay shows the one file system that / is on.
        for path in ("/usr", "/etc"):
            if os.path.ismount(path):
                raise CannotBoot(f"{path} is a file system of its own, which an overlay over / "
                                 "does not show")
        try:
            syscalls.unshare(syscalls.CLONE_NEWNS)
        except OSError as error:
            raise CannotBoot(f"mount namespaces are not allowed here ({error.strerror})") from error
        syscalls.mount(None, "/", flags=syscalls.MS_REC | syscalls.MS_PRIVATE)
        try:
            # No limit on inodes: the default is too low where there is little memory.
            syscalls.mount("practice-mac", STAGE, "tmpfs", data="mode=0711,nr_inodes=0")
        except OSError as error:
            raise CannotBoot(f"a tmpfs cannot be mounted ({error.strerror})") from error
        for name in ("setup", "control", "upper", "root", "work", "work-setup", "before"):
            (STAGE / name).mkdir()

    def hide(self, path, mode):
        """Makes the folder at path empty inside, whatever the host has there."""
        folder = self._in_setup(path)
        folder.mkdir(parents=True, exist_ok=True)
        folder.chmod(mode)
        try:
            os.setxattr(folder, "trusted.overlay.opaque", b"y")
        except OSError as error:
            raise CannotBoot(f"tmpfs keeps no trusted attributes ({error.strerror})") from error

    def remove(self, path):
        """Makes path absent inside."""
        target = self._in_setup(path)
        target.parent.mkdir(parents=True, exist_ok=True)
        os.mknod(target, stat.S_IFCHR | 0o600, os.makedev(0, 0))

    def run_in_setup(self, argv):
        """Runs argv as root inside; what it writes becomes part of the setup. Gives its status."""
        self._overlay(["/"], upper=self.setup, work=STAGE / "work-setup")
        self._make_devices()
        status = self._run(argv)
        syscalls.unmount(self._root, syscalls.MNT_DETACH)
        return status

    def show(self, path, read_only=True):
        """Shows the host's path inside, at the same place."""
        self._shown.append((Path(path), read_only))

    def assemble(self):
        """Puts the layers together: from here on the setup is closed."""
        self._overlay([self.setup, "/"], upper=self._upper, work=STAGE / "work")
        self._make_devices()
        for path, read_only in self._shown:
            target = self._root / path.relative_to("/")
            if read_only:
                syscalls.bind_read_only(path, target)
            else:
                syscalls.mount(path, target, flags=syscalls.MS_BIND)

    def boot(self, argv):
        """Runs argv as the first process inside and gives its exit status, -N for a signal."""
        return self._run(argv)

    @property
    def written(self):
        """The layer that the run wrote, as a folder; absences are character devices 0:0."""
        return self._upper

    def run_nothing(self):
        """Only tries whether a process namespace can be made."""
        self._unshare_processes()

    def before(self):
        """Gives a folder that shows the root as it was before the run."""
        syscalls.mount("before", STAGE / "before", "overlay",
                       data=f"lowerdir={self.setup}:/,{OVERLAY_OPTIONS}")
        return STAGE / "before"

    def _in_setup(self, path):
        return self.setup / Path(path).relative_to("/")

    def _overlay(self, lower, upper, work):
        layers = ":".join(str(layer) for layer in lower)
        data = f"lowerdir={layers},upperdir={upper},workdir={work},{OVERLAY_OPTIONS}"
        # The upper layer's mode becomes that of the root folder.
        upper.chmod(0o755)
        try:
            syscalls.mount("practice-mac", self._root, "overlay", data=data)
        except OSError as error:
            raise CannotBoot(f"an overlay over / cannot be mounted ({error.strerror})") from error

    def _make_devices(self):
        """A small /dev of its own, so that nothing of the host's can be written through it."""
        devices = self._root / "dev"
        syscalls.mount("dev", devices, "tmpfs", syscalls.MS_NOSUID, "mode=0755")
        for name in DEVICES:
            (devices / name).touch()
            syscalls.mount(f"/dev/{name}", devices / name, flags=syscalls.MS_BIND)
        for name in ("pts", "shm", "practice-mac"):
            (devices / name).mkdir()
        if Path("/dev/pts/ptmx").exists():
            syscalls.mount("/dev/pts", devices / "pts", flags=syscalls.MS_BIND)
            (devices / "ptmx").symlink_to("pts/ptmx")
        syscalls.mount("shm", devices / "shm", "tmpfs",
                       syscalls.MS_NOSUID | syscalls.MS_NODEV, "mode=1777")
        syscalls.mount(self.control, devices / "practice-mac", flags=syscalls.MS_BIND)
        for name, target in (("fd", "fd"), ("stdin", "fd/0"), ("stdout", "fd/1"),
                             ("stderr", "fd/2")):
            (devices / name).symlink_to(f"/proc/self/{target}")

    def _run(self, argv):
        own_processes = os.open("/proc/self/ns/pid", os.O_RDONLY | os.O_CLOEXEC)
        self._unshare_processes()
        child = os.fork()
        if child == 0:
            self._become(argv)
        # A process namespace ends with its first process: a later run needs a new one.
        syscalls.set_namespace(own_processes, syscalls.CLONE_NEWPID)
        os.close(own_processes)
        # The terminal's interrupt is for the command; the launcher only waits. When it is told to
        # end, or is killed, the whole practice Mac goes with it.
        signal.signal(signal.SIGINT, signal.SIG_IGN)
        signal.signal(signal.SIGQUIT, signal.SIG_IGN)
        _, status = os.waitpid(child, 0)
        return os.waitstatus_to_exitcode(status)

    def _unshare_processes(self):
        try:
            syscalls.unshare(syscalls.CLONE_NEWPID)
        except OSError as error:
            raise CannotBoot(f"process namespaces are not allowed here ({error.strerror})"
                             ) from error

    def _become(self, argv):
        """In the child: enters the root and becomes argv. Does not return."""
        try:
            syscalls.die_with_parent(signal.SIGKILL)
            syscalls.unshare(syscalls.CLONE_NEWNS)
            syscalls.mount(None, "/", flags=syscalls.MS_REC | syscalls.MS_PRIVATE)
            syscalls.mount("proc", self._root / "proc", "proc",
                           syscalls.MS_NOSUID | syscalls.MS_NODEV)
            syscalls.pivot_into(self._root)
            # Python ignores these two, and ignored signals stay ignored across exec.
            for number in (signal.SIGPIPE, signal.SIGXFSZ):
                signal.signal(number, signal.SIG_DFL)
            os.execve(argv[0], argv, {"PATH": "/usr/bin:/bin:/usr/sbin:/sbin"})
        except OSError as error:
            os.write(2, f"practice-mac: {error}\n".encode())
        os._exit(125)
