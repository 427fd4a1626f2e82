"""Boots the kernel of Debian's package user-mode-linux, a program like any other."""

import contextlib
import json
import os
import platform
import random
import resource
import shutil
import signal
import socket
import subprocess
import tempfile
from pathlib import Path

from launcher import syscalls
from launcher.root import CannotBoot

from . import frames, pace
from .memory import MEGABYTES, Memory

HERE = Path(__file__).resolve().parent
PROGRAM = "linux.uml"
# Built with the stand-ins; says why it is needed.
HELP = "practice-mac/libpractice_mac_kernel.so"


def check(build):
    """Raises CannotBoot where the kernel cannot run, with a text that says what it needs."""
    if platform.machine() != "x86_64":
        raise CannotBoot(f"the user-mode kernel runs on x86-64, and this is {platform.machine()}")
    if shutil.which(PROGRAM) is None:
        raise CannotBoot(f"{PROGRAM} is missing; Debian's package user-mode-linux brings it")
    if not (build / HELP).exists():
        raise CannotBoot(f"{build / HELP} is missing; build the project first")


class Kernel:
    """A running kernel with that many lines for commands. Use it in a `with`.

    `lines` are sockets that carry frames, each with its reader; `factor` is how many times slower than here a program starts there.
    """

    def __init__(self, build, lines, say):
        """`say` is called with one line of text before the kernel boots."""
        check(build)
        self._build = build
        self._count = lines
        self._memory = Memory()
        self._process = None
        say(f"a user-mode kernel does it ({self._memory})")

    def __enter__(self):
        try:
            self._boot()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        # Everything that is to last has been written by then.
        if self._process is not None:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(self._process.pid, signal.SIGKILL)
            self._process.wait()
        self._memory.remove()

    def _boot(self):
        pairs = [socket.socketpair() for _ in range(self._count)]
        self.lines = [(host, frames.Reader()) for host, _ in pairs]
        with tempfile.TemporaryFile(dir=self._memory.folder) as told:
            self._process = subprocess.Popen(
                self._command([guest.fileno() for _, guest in pairs]), stdin=subprocess.DEVNULL,
                stdout=told, stderr=told, start_new_session=True, cwd="/",
                pass_fds=[guest.fileno() for _, guest in pairs],
                preexec_fn=_prepare,
                env={"PATH": os.environ.get("PATH", os.defpath), "TMPDIR": self._memory.folder,
                     "HOME": self._memory.folder, "LD_PRELOAD": str(self._build / HELP)})
            for _, guest in pairs:
                guest.close()
            seconds = [self._await_ready(line, reader, told) for line, reader in self.lines]
            self.factor = max(1, round(seconds[0] / pace.measure()))
        # The kernel holds its memory's file open, and wants nothing else of the folder.
        self._memory.remove()

    def _command(self, descriptors):
        words = [PROGRAM, f"mem={MEGABYTES}M", "root=none", "rootfstype=hostfs", "rootflags=/", "ro",
                 f'"init={HERE}/guest"', f"lines={len(descriptors)}", f"files={_most_files()}", "quiet",
                 f"uml_dir={self._memory.folder}/", "con=null", "con0=null", "ssl=null"]
        return words + [f"ssl{number}=fd:{descriptor},fd:{descriptor}"
                        for number, descriptor in enumerate(descriptors)]

    def _await_ready(self, line, reader, told):
        """The seconds that the guest measured."""
        while True:
            try:
                data = line.recv(frames.CHUNK)
            except ConnectionError:
                data = b""
            if not data:
                self._process.wait()
                told.seek(0)
                raise CannotBoot("the user-mode kernel did not boot, which needs ptrace; it said: "
                                 f"{_last_words(told.read().decode(errors='replace'))}")
            for kind, content in reader.feed(data):
                if kind == frames.READY:
                    return json.loads(content)["seconds"]


def _prepare():
    """In the child: the kernel ends with its launcher, and may open as many files as anybody here,
    since it keeps those of the host open that the guest has looked at. It stays on one processor: it
    and its guest's processes run in turn, and waking one on another processor takes many times as
    long."""
    syscalls.die_with_parent(signal.SIGKILL)
    os.sched_setaffinity(0, {random.choice(sorted(os.sched_getaffinity(0)))})
    resource.setrlimit(resource.RLIMIT_NOFILE, (_most_files(), _most_files()))


def _most_files():
    """How many files a process may have open, should it ask for it."""
    return resource.getrlimit(resource.RLIMIT_NOFILE)[1]


def _last_words(text):
    """The line that says why a kernel ended: that of its panic, or the last."""
    lines = [line.strip() for line in text.splitlines() if line.strip()]
    panics = [line for line in lines if "panic" in line]
    return (panics or lines or ["nothing"])[-1 if not panics else 0]
