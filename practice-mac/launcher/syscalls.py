"""The few system calls that Python 3.11 does not offer."""

import ctypes
import os

CLONE_NEWNS = 0x00020000
CLONE_NEWPID = 0x20000000

MS_RDONLY = 1
MS_NOSUID = 2
MS_NODEV = 4
MS_REMOUNT = 32
MS_BIND = 4096
MS_REC = 16384
MS_PRIVATE = 1 << 18
MNT_DETACH = 2

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36

_libc = ctypes.CDLL(None, use_errno=True)


def _bytes(text):
    return None if text is None else os.fsencode(text)


def _checked(result, what):
    if result != 0:
        number = ctypes.get_errno()
        raise OSError(number, os.strerror(number), what)


def unshare(flags):
    """Moves this process (with CLONE_NEWPID: its next child) into new namespaces."""
    _checked(_libc.unshare(flags), "unshare")


def set_namespace(descriptor, flags):
    """Enters the namespace (with CLONE_NEWPID: sets that of later children)."""
    _checked(_libc.setns(descriptor, flags), "setns")


def mount(source, target, kind=None, flags=0, data=None):
    """mount(2); the error names the target."""
    result = _libc.mount(_bytes(source), _bytes(target), _bytes(kind),
                         ctypes.c_ulong(flags), _bytes(data))
    _checked(result, str(target))


def unmount(target, flags=0):
    _checked(_libc.umount2(_bytes(target), flags), str(target))


def bind_read_only(source, target):
    """Shows source at target, unwritable there."""
    mount(source, target, flags=MS_BIND)
    mount(None, target, flags=MS_BIND | MS_REMOUNT | MS_RDONLY)


def pivot_into(root):
    """Makes root the file system's root of this mount namespace and lets go of the old one."""
    os.chdir(root)
    _checked(_libc.pivot_root(b".", b"."), "pivot_root")
    unmount(".", MNT_DETACH)
    os.chdir("/")


def die_with_parent(signal_number):
    """Has the kernel send the signal to this process when its parent ends."""
    _checked(_libc.prctl(PR_SET_PDEATHSIG, ctypes.c_ulong(signal_number), 0, 0, 0), "prctl")


def adopt_orphans():
    """Makes this process the parent of its descendants whose own parent ends."""
    _checked(_libc.prctl(PR_SET_CHILD_SUBREAPER, ctypes.c_ulong(1), 0, 0, 0), "prctl")
