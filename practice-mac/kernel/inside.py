"""Runs commands where namespaces can be had: here, or in a user-mode kernel."""

import os
import signal
import socket
import sys

from launcher.practice import FACTOR_VARIABLE
from launcher.root import CannotBoot, refusal

from . import session
from .boot import Kernel
from .command import Conversation, KernelEnded, order_of
from .frames import Reader


def run(reason, build, arguments, writable=()):
    """Runs the command in a kernel, the session's if there is one, and gives its exit status, -N
    for a signal N. `reason` says why it is not run here."""
    try:
        if session.SOCKET in os.environ:
            with socket.socket(socket.AF_UNIX) as line:
                line.connect(os.environ[session.SOCKET])
                factor = int(os.environ[FACTOR_VARIABLE])
                return Conversation(line, Reader()).run(order_of(arguments, writable, factor))
        with Kernel(build, 1, lambda what: _say(reason, what)) as kernel:
            return Conversation(*kernel.lines[0]).run(order_of(arguments, writable, kernel.factor))
    except KernelEnded as error:
        raise CannotBoot("the user-mode kernel ended in the middle of the run") from error
    except CannotBoot as error:
        raise CannotBoot(f"{reason}, and {error}") from error


def keep(build, command):
    """Runs the command here; what in it needs namespaces finds one kernel for all. Gives its exit
    status."""
    reason = refusal()
    if reason is None or session.SOCKET in os.environ:
        os.environ.setdefault(FACTOR_VARIABLE, "1")
        os.execvp(command[0], command)
    try:
        return session.keep(build, command, lambda what: _say(reason, what))
    except CannotBoot as error:
        raise CannotBoot(f"{reason}, and {error}") from error


def end_as(status):
    """Ends this process as another one has ended. Does not return."""
    sys.stdout.flush()
    if status < 0:
        signal.signal(-status, signal.SIG_DFL)
        os.kill(os.getpid(), -status)
    sys.exit(status)


def leave_tidily():
    """Has the signals that end a process raise SystemExit, so that nothing stays behind."""
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda number, _: sys.exit(128 + number))


def _say(reason, what):
    print(f"practice-mac: {reason}; {what}", file=sys.stderr, flush=True)
