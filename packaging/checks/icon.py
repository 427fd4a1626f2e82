"""Parses an .icns file. It shares no code with icns.py, which makes it."""

import struct

# Type of chunk → pixels on a side: 16, 32, 128, 256 and 512 points, at scale 1 and 2.
PIXELS = {b"ic04": 16, b"ic11": 32, b"ic05": 32, b"ic12": 64, b"ic07": 128, b"ic13": 256,
          b"ic08": 256, b"ic14": 512, b"ic09": 512, b"ic10": 1024}  # fmt: skip


class IconError(Exception):
    pass


def demand(condition, message):
    if not condition:
        raise IconError(message)


def chunks(data):
    """The chunks by their type."""
    demand(data[:8] == b"icns" + struct.pack(">I", len(data)), "the icon's header differs")
    found, at = {}, 8
    while at < len(data):
        demand(at + 8 <= len(data), "the icon's last chunk is cut short")
        size = struct.unpack_from(">I", data, at + 4)[0]
        demand(8 <= size <= len(data) - at, "a chunk of the icon has another length")
        found[data[at : at + 4]] = data[at + 8 : at + size]
        at += size
    return found


def channels(data):
    """The unpacked channels of a small size, one after another, alpha first."""
    demand(data[:4] == b"ARGB", "a small size of the icon has another format")
    result = bytearray()
    reader = iter(data[4:])
    for code in reader:
        if code < 128:
            result += bytes(next(reader) for _ in range(code + 1))
        else:
            result += bytes([next(reader)]) * (code - 125)
    return bytes(result)


def problems(data):
    """Yields a sentence for each size that is missing or whose content has another size."""
    found = chunks(data)
    for kind in sorted(PIXELS.keys() ^ found.keys()):
        yield f"the icon {'lacks' if kind in PIXELS else 'has'} the size {kind.decode()}"
    for kind in sorted(PIXELS.keys() & found.keys()):
        side, content = PIXELS[kind], found[kind]
        if content[:8] == b"\x89PNG\r\n\x1a\n":
            right = struct.unpack_from(">2I", content, 16) == (side, side)
            # IHDR, the first chunk, always ends there.
            if content[37:41] != b"sRGB":
                yield f"the icon's {kind.decode()} does not say that its colours are sRGB"
        else:
            right = len(channels(content)) == 4 * side * side
        if not right:
            yield f"the icon's {kind.decode()} has another size"
