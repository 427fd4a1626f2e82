"""Makes an ad-hoc code signature: hashes of the code and resources, without a certificate."""

import hashlib
import struct

PAGE_SIZE_BITS = 12
SHA256 = 2
# No certificate; with the hardened runtime, which notarisation requires.
ADHOC, HARDENED_RUNTIME = 0x2, 0x10000
MAIN_BINARY = 1
DIRECTORY_VERSION = 0x20500  # the first version with the field of the hardened runtime's version

DIRECTORY, REQUIREMENTS, CERTIFICATES = 0, 2, 0x10000
SLOT_INFO, SLOT_REQUIREMENTS, SLOT_RESOURCES = 1, 2, 3


def blob(magic, content):
    return struct.pack(">2I", magic, 8 + len(content)) + content


# An ad-hoc signature has no requirements and no certificates: both blobs are empty.
NO_REQUIREMENTS = blob(0xFADE0C01, struct.pack(">I", 0))
NO_CERTIFICATES = blob(0xFADE0B01, b"")


def sign(executable, identifier, sealed):
    """Returns the bytes of `executable` with its signature.

    `sealed` maps special slots (SLOT_INFO, SLOT_RESOURCES) to the bytes of the files that the
    signature also covers.
    """
    size = len(_superblob(executable, identifier, sealed))
    padded = -(-size // 16) * 16
    executable.reserve(padded)
    return bytes(executable.code) + _superblob(executable, identifier, sealed).ljust(padded, b"\0")


def _superblob(executable, identifier, sealed):
    parts = [
        (DIRECTORY, _directory(executable, identifier, sealed)),
        (REQUIREMENTS, NO_REQUIREMENTS),
        (CERTIFICATES, NO_CERTIFICATES),
    ]
    index, offset = b"", 12 + 8 * len(parts)
    for kind, part in parts:
        index += struct.pack(">2I", kind, offset)
        offset += len(part)
    return blob(0xFADE0CC0, struct.pack(">I", len(parts)) + index + b"".join(p for _, p in parts))


def _directory(executable, identifier, sealed):
    sealed = {**sealed, SLOT_REQUIREMENTS: NO_REQUIREMENTS}
    special = [
        hashlib.sha256(sealed[slot]).digest() if slot in sealed else bytes(32)
        for slot in range(max(sealed), 0, -1)
    ]
    page = 1 << PAGE_SIZE_BITS
    code = executable.code
    pages = [hashlib.sha256(code[at : at + page]).digest() for at in range(0, len(code), page)]

    name = identifier.encode() + b"\0"
    name_offset = 96
    hash_offset = name_offset + len(name) + 32 * len(special)
    text_offset, text_size = executable.text
    fields = struct.pack(
        ">7I4BI3I4Q2I",
        DIRECTORY_VERSION, ADHOC | HARDENED_RUNTIME,
        hash_offset, name_offset, len(special), len(pages), len(code),
        32, SHA256, 0, PAGE_SIZE_BITS, 0,
        0, 0, 0,  # no scatter list, no team, spare
        0, text_offset, text_size, MAIN_BINARY,
        executable.sdk, 0,
    )  # fmt: skip
    return blob(0xFADE0C02, fields + name + b"".join(special + pages))
