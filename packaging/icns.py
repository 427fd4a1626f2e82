#!/usr/bin/python3
"""Makes a Mac icon from an SVG file: all ten sizes, each rendered by rsvg-convert.

    icns.py DRAWING.svg ICON.icns

The result is reproducible with the same renderer.
"""

import struct
import subprocess
import sys
import zlib

# Type of chunk → (points, scale). The two smallest sizes must be raw pixels: as PNG they are shown
# scrambled inside an application.
PNG_CHUNKS = {
    b"ic11": (16, 2),
    b"ic12": (32, 2),
    b"ic07": (128, 1),
    b"ic13": (128, 2),
    b"ic08": (256, 1),
    b"ic14": (256, 2),
    b"ic09": (512, 1),
    b"ic10": (512, 2),
}
PIXEL_CHUNKS = {b"ic04": (16, 1), b"ic05": (32, 1)}


def render(drawing, pixels):
    command = ["rsvg-convert", "--width", str(pixels), "--height", str(pixels), drawing]
    return subprocess.run(command, check=True, capture_output=True).stdout


def icon(drawing):
    chunks = []
    for kind, (points, scale) in {**PIXEL_CHUNKS, **PNG_CHUNKS}.items():
        png = render(drawing, points * scale)
        chunks.append((kind, argb(png) if kind in PIXEL_CHUNKS else in_srgb(png)))
    body = b"".join(kind + struct.pack(">I", 8 + len(data)) + data for kind, data in chunks)
    return b"icns" + struct.pack(">I", 8 + len(body)) + body


def png_chunks(png):
    at = 8
    while at < len(png):
        size = struct.unpack_from(">I", png, at)[0]
        yield png[at + 4 : at + 8], png[at + 8 : at + 8 + size], png[at : at + 12 + size]
        at += 12 + size


def in_srgb(png):
    """The PNG with an sRGB chunk, the renderer's colour space, and without optional chunks, such as
    the date."""
    parts = {b"IHDR": [], b"IDAT": [], b"IEND": []}
    for kind, _, whole in png_chunks(png):
        parts.get(kind, []).append(whole)
    header, pixels, end = (b"".join(found) for found in parts.values())
    perceptual = b"sRGB\0"
    space = struct.pack(">I", 1) + perceptual + struct.pack(">I", zlib.crc32(perceptual))
    return png[:8] + header + space + pixels + end


def pixels_of(png):
    """The pixels of a PNG with 8 bits each for red, green, blue and alpha."""
    parts = {}
    for kind, data, _ in png_chunks(png):
        parts[kind] = parts.get(kind, b"") + data
    width, height, depth, colour, _, _, interlace = struct.unpack(">2I5B", parts[b"IHDR"])
    if (depth, colour, interlace) != (8, 6, 0):
        raise ValueError("the renderer's picture has another format")
    packed, stride = zlib.decompress(parts[b"IDAT"]), 4 * width
    rows, above = [], bytes(stride)
    for index in range(height):
        start = index * (stride + 1)
        above = _unfilter(packed[start], packed[start + 1 : start + 1 + stride], above)
        rows.append(above)
    return b"".join(rows)


def _unfilter(kind, row, above):
    result = bytearray(row)
    for i in range(len(result)):
        left = result[i - 4] if i >= 4 else 0
        up, corner = above[i], above[i - 4] if i >= 4 else 0
        guess = (0, left, up, (left + up) // 2, _paeth(left, up, corner))[kind]
        result[i] = (result[i] + guess) & 255
    return bytes(result)


def _paeth(left, up, corner):
    guess = left + up - corner
    return min((left, up, corner), key=lambda value: abs(guess - value))


def argb(png):
    pixels = pixels_of(png)
    return b"ARGB" + b"".join(pack(pixels[channel::4]) for channel in (3, 0, 1, 2))


def pack(data):
    """Run-length encodes: 0–127 precedes 1–128 literal bytes, 128–255 a byte to be repeated 3–130
    times."""
    result, at = b"", 0
    plain = bytearray()
    while at <= len(data):
        run = 1
        while at + run < len(data) and run < 130 and data[at + run] == data[at]:
            run += 1
        if plain and (at == len(data) or run >= 3 or len(plain) == 128):
            result += bytes([len(plain) - 1]) + plain
            plain = bytearray()
        if at == len(data):
            break
        if run >= 3:
            result += bytes([run + 125, data[at]])
            at += run
        else:
            plain.append(data[at])
            at += 1
    return result


if __name__ == "__main__":
    with open(sys.argv[2], "wb") as output:
        output.write(icon(sys.argv[1]))
