"""What goes over a line between the host and a command's keeper in the guest.

A frame is one letter, the length of its content and the content. A line carries one command at a
time, from ORDER to ENDED.
"""

import struct

# From the host: a piece of a command's order (JSON); that it is whole; bytes for the command's
# standard input, none at its end; a signal's number; the terminal's rows and columns; that the
# command is wanted no more.
ORDER = b"O"
START = b"S"
INPUT = b"i"
SIGNAL = b"s"
SIZE = b"w"
ABORT = b"x"

# From the guest: that the line is open (JSON); bytes of the two outputs; how many bytes of order or
# input were taken; the exit status, as subprocess gives it.
READY = b"r"
OUTPUT = b"o"
ERROR = b"e"
TAKEN = b"t"
ENDED = b"z"

# So many bytes may be under way to the guest, whose serial line stands still for good when it has
# once been full (4096 bytes); so many at most are read or written at once.
UNDER_WAY = 2048
CHUNK = 1 << 13
# So many bytes may wait to be sent to the host.
WAITING = 1 << 16

_HEAD = struct.Struct("=cI")
_NUMBERS = struct.Struct("=ii")


def frame(kind, content=b""):
    return _HEAD.pack(kind, len(content)) + content


def numbers(first, second=0):
    return _NUMBERS.pack(first, second)


def as_numbers(content):
    return _NUMBERS.unpack(content)


class Reader:
    """Cuts a stream of bytes into frames."""

    def __init__(self):
        self._bytes = bytearray()

    def feed(self, data):
        """Takes bytes as they come, and gives the frames that are whole: pairs of kind, content."""
        self._bytes += data
        start = 0
        while len(self._bytes) - start >= _HEAD.size:
            kind, length = _HEAD.unpack_from(self._bytes, start)
            end = start + _HEAD.size + length
            if len(self._bytes) < end:
                break
            yield kind, bytes(self._bytes[start + _HEAD.size:end])
            start = end
        del self._bytes[:start]
