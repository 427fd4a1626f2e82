"""Recomputes an ad-hoc signature from the files on disk, and names the first difference.

It shares no code with packaging/signing: it reads the published format.
"""

import hashlib
import plistlib
import re
from pathlib import Path

from . import macho


class SignatureError(Exception):
    pass


def demand(condition, message):
    if not condition:
        raise SignatureError(message)


def big(data, offset, size=4):
    demand(0 <= offset and offset + size <= len(data), "the signature is cut short")
    return int.from_bytes(data[offset : offset + size], "big")


class CodeSignature:
    """The embedded signature of a program: its blobs and the fields of its code directory."""

    def __init__(self, program):
        demand(program.signature, "the program is not signed")
        offset, size = program.signature
        self.start, self.end = offset, offset + size
        demand(self.end == len(program.data), "the signature is not the last thing in the file")
        data = program.data[offset : self.end]
        demand(big(data, 0) == 0xFADE0CC0, "the signature has no super blob")
        demand(big(data, 4) <= size, "the super blob is longer than its place")
        self.blobs = {}
        for index in range(big(data, 8)):
            kind, at = big(data, 12 + 8 * index), big(data, 16 + 8 * index)
            length = big(data, at + 4)
            demand(at + length <= big(data, 4), "a blob reaches beyond the super blob")
            self.blobs[kind] = data[at : at + length]
        demand(0 in self.blobs, "the signature has no code directory")
        self._directory(self.blobs[0])

    def _directory(self, blob):
        demand(big(blob, 0) == 0xFADE0C02, "the code directory has another magic number")
        self.version, self.flags = big(blob, 8), big(blob, 12)
        hashes, name, special, pages, self.limit = (big(blob, 16 + 4 * i) for i in range(5))
        width, kind, self.platform, self.page = blob[36:40]
        demand((width, kind) == (32, 2), "the hashes are not SHA-256")
        self.identifier = blob[name : blob.index(b"\0", name)].decode()
        demand(self.version >= 0x20500, "the code directory is too old to name a runtime")
        self.text = (big(blob, 64, 8), big(blob, 72, 8))
        self.text_flags, self.runtime = big(blob, 80, 8), macho.version(big(blob, 88))
        piece = lambda i: blob[hashes + 32 * i : hashes + 32 * i + 32]
        self.special = {-i: piece(i) for i in range(-special, 0)}
        self.pages = [piece(i) for i in range(pages)]
        demand(hashes + 32 * pages == len(blob), "hashes are missing from the code directory")


def check_program(data, sealed=None):
    """Checks a program's signature and returns it. `sealed` maps special slots to bytes."""
    program = macho.read(data)
    signature = CodeSignature(program)
    demand(signature.limit == signature.start, "the hashes do not cover the whole program")
    size = 1 << signature.page
    count = -(-signature.limit // size)
    demand(count == len(signature.pages), "the number of pages differs")
    for index, expected in enumerate(signature.pages):
        page = data[index * size : min((index + 1) * size, signature.limit)]
        same = hashlib.sha256(page).digest() == expected
        demand(same, f"page {index} of the program was changed")
    text = next(s for s in program.segments if s.name == "__TEXT")
    demand(signature.text == (text.offset, text.size), "the text segment is elsewhere")
    demand(signature.text_flags == 1, "it is not marked as a main program")
    demand(signature.runtime == program.sdk, "the runtime is that of another system version")

    contents = {2: signature.blobs.get(2, b""), **(sealed or {})}
    names = {1: "Info.plist", 2: "the requirements", 3: "the seal"}
    for slot, expected in signature.special.items():
        if slot in contents:
            actual = hashlib.sha256(contents[slot]).digest()
            demand(actual == expected, f"{names[slot]} does not match the signature")
        else:
            demand(expected == bytes(32), f"slot {slot} covers something that is not there")
    demand(set(contents) <= set(signature.special), "something in the bundle is not covered")
    return signature


def check_bundle(bundle):
    """Checks a bundle: main program, Info.plist, seal, every file and every nested program. Returns
    the main program's signature."""
    contents = Path(bundle) / "Contents"
    info = (contents / "Info.plist").read_bytes()
    executable = f"MacOS/{plistlib.loads(info)['CFBundleExecutable']}"
    listing_path = contents / "_CodeSignature/CodeResources"
    demand(listing_path.is_file(), "there is no seal")
    listing = listing_path.read_bytes()
    signature = check_program((contents / executable).read_bytes(), {1: info, 3: listing})
    identifier = plistlib.loads(info)["CFBundleIdentifier"]
    demand(signature.identifier == identifier, "it is signed for another identifier")

    unsealed = {executable, "_CodeSignature/CodeResources"}
    paths = [p for p in sorted(contents.rglob("*")) if not p.is_dir() or p.is_symlink()]
    for path in paths:
        demand(not path.is_symlink(), f"{path.name} is a link")
    found = {p.relative_to(contents).as_posix(): p.read_bytes() for p in paths}
    sealed = plistlib.loads(listing)
    _check_list(sealed["files"], sealed["rules"], found, unsealed, "hash", hashlib.sha1)
    _check_list(sealed["files2"], sealed["rules2"], found, unsealed, "hash2", hashlib.sha256)
    for name, data in found.items():
        if name != executable and data[:4] == b"\xcf\xfa\xed\xfe":
            check_program(data)
    return signature


def _check_list(entries, rules, found, unsealed, key, digest):
    due = {name for name in found if name not in unsealed and _is_sealed(name, rules)}
    for name in due - set(entries):
        raise SignatureError(f"{name} was added")
    for name, entry in entries.items():
        entry = entry if isinstance(entry, dict) else {key: entry}
        if name not in found:
            demand(entry.get("optional"), f"{name} is missing")
        else:
            demand(digest(found[name]).digest() == entry[key], f"{name} was changed")


def _is_sealed(name, rules):
    """Of the rules that match, the one with the largest weight decides."""
    matching = [
        (rule.get("weight", 1), rule.get("omit", False))
        for pattern, rule in ((p, r if isinstance(r, dict) else {}) for p, r in rules.items())
        if re.search(pattern, name)
    ]
    return bool(matching) and not max(matching)[1]
