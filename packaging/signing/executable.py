"""Reads and rewrites those parts of a Mach-O executable that signing involves."""

import struct

LINKEDIT_ALIGNMENT = 0x4000
SEGMENT_64 = 0x19
CODE_SIGNATURE = 0x1D
BUILD_VERSION = 0x32


class Executable:
    """A 64-bit little-endian Mach-O executable with space reserved for a signature.

    `code` has all bytes before the signature, `text` the file offset and size of the __TEXT segment,
    `sdk` the packed version of the SDK.
    """

    def __init__(self, data):
        magic, _, _, _, count, _, _, _ = struct.unpack_from("<8I", data)
        if magic != 0xFEEDFACF:
            raise ValueError("not a 64-bit Mach-O executable")
        self.text = self.sdk = self._linkedit = self._signature = None
        offset = 32
        for _ in range(count):
            command, size = struct.unpack_from("<2I", data, offset)
            self._note(command, offset, data)
            offset += size
        if None in (self.text, self.sdk, self._linkedit, self._signature):
            raise ValueError("the linker has reserved no space for a signature")
        self.code = bytearray(data[: struct.unpack_from("<I", data, self._signature + 8)[0]])

    def _note(self, command, offset, data):
        if command == SEGMENT_64:
            name = data[offset + 8 : offset + 24].rstrip(b"\0")
            if name == b"__TEXT":
                self.text = struct.unpack_from("<2Q", data, offset + 40)
            elif name == b"__LINKEDIT":
                self._linkedit = offset
        elif command == CODE_SIGNATURE:
            self._signature = offset
        elif command == BUILD_VERSION:
            self.sdk = struct.unpack_from("<I", data, offset + 16)[0]

    def reserve(self, size):
        """Updates the load commands for a signature of `size` bytes after the code."""
        struct.pack_into("<2I", self.code, self._signature + 8, len(self.code), size)
        start = struct.unpack_from("<Q", self.code, self._linkedit + 40)[0]
        length = len(self.code) + size - start
        in_memory = -(-length // LINKEDIT_ALIGNMENT) * LINKEDIT_ALIGNMENT
        struct.pack_into("<Q", self.code, self._linkedit + 32, in_memory)
        struct.pack_into("<Q", self.code, self._linkedit + 48, length)
