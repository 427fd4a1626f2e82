#!/usr/bin/python3
"""The icon's file, taken apart again."""

import random
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

import sample
import icns

DRAWING = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">
<rect x="8" y="8" width="48" height="48" rx="12" fill="#c43"/>
<circle cx="32" cy="32" r="12" fill="#fff" fill-opacity="0.5"/></svg>"""
SIZES = {b"ic04": 16, b"ic05": 32, b"ic11": 32, b"ic12": 64, b"ic07": 128, b"ic13": 256,
         b"ic08": 256, b"ic14": 512, b"ic09": 512, b"ic10": 1024}  # fmt: skip


def unpack(data):
    """Reads the packed channels without looking at how they were packed."""
    result = bytearray()
    reader = iter(data)
    for code in reader:
        if code < 128:
            result += bytes(next(reader) for _ in range(code + 1))
        else:
            result += bytes([next(reader)]) * (code - 125)
    return bytes(result)


def chunks(data):
    found, at = {}, 8
    while at < len(data):
        size = struct.unpack_from(">I", data, at + 4)[0]
        found[data[at : at + 4]] = data[at + 8 : at + size]
        at += size
    return found


class Icon(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            drawing, icon = Path(folder) / "a.svg", Path(folder) / "a.icns"
            drawing.write_text(DRAWING)
            program = sample.PACKAGING / "icns.py"
            subprocess.run([program, drawing, icon], check=True)
            cls.data = icon.read_bytes()
            cls.again = icns.icon(str(drawing))

    def test_the_header_has_the_whole_length(self):
        self.assertEqual(self.data[:8], b"icns" + struct.pack(">I", len(self.data)))

    def test_all_ten_sizes_are_there(self):
        self.assertEqual(set(chunks(self.data)), set(SIZES))

    def test_each_png_has_the_size_of_its_kind(self):
        for kind, data in chunks(self.data).items():
            if kind not in (b"ic04", b"ic05"):
                self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
                self.assertEqual(struct.unpack_from(">2I", data, 16), (SIZES[kind],) * 2)

    def test_the_small_sizes_hold_four_full_channels(self):
        for kind in (b"ic04", b"ic05"):
            data = chunks(self.data)[kind]
            self.assertEqual(data[:4], b"ARGB")
            self.assertEqual(len(unpack(data[4:])), 4 * SIZES[kind] ** 2)

    def test_the_small_sizes_show_the_drawing(self):
        side = 32
        planes = unpack(chunks(self.data)[b"ic05"][4:])
        pixel = lambda x, y: [planes[side * side * c + side * y + x] for c in range(4)]
        self.assertEqual(pixel(0, 0)[0], 0)
        self.assertEqual(pixel(8, 8), [255, 0xCC, 0x44, 0x33])
        self.assertEqual(pixel(16, 16)[0], 255)
        self.assertGreater(pixel(16, 16)[2], 0x88)

    def test_the_same_drawing_gives_the_same_bytes(self):
        self.assertEqual(self.data, self.again)

    def test_packing_loses_nothing(self):
        chance = random.Random(1)
        for length in (0, 1, 2, 3, 127, 128, 129, 130, 131, 132, 260, 1024):
            for values in (1, 2, 200):
                data = bytes(chance.randrange(values) for _ in range(length))
                self.assertEqual(unpack(icns.pack(data)), data)


if __name__ == "__main__":
    unittest.main()
