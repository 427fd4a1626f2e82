#!/usr/bin/python3
"""Tests the icon that icns.py makes, and the checks of icons."""

import random
import shutil
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

import sample
import icns
from checks import icon

DRAWING = """<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">
<rect x="8" y="8" width="48" height="48" rx="12" fill="#c43"/>
<circle cx="32" cy="32" r="12" fill="#fff" fill-opacity="0.5"/></svg>"""


def joined(chunks):
    body = b"".join(k + struct.pack(">I", 8 + len(data)) + data for k, data in chunks.items())
    return b"icns" + struct.pack(">I", 8 + len(body)) + body


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

    def test_the_header_has_the_length_of_the_file(self):
        self.assertEqual(self.data[:8], b"icns" + struct.pack(">I", len(self.data)))

    def test_there_are_all_ten_sizes(self):
        self.assertEqual(list(icon.problems(self.data)), [])
        self.assertEqual(len(icon.chunks(self.data)), 10)

    def test_a_missing_size_is_reported(self):
        found = icon.chunks(self.data)
        del found[b"ic12"]
        self.assertEqual(list(icon.problems(joined(found))), ["the icon lacks the size ic12"])

    def test_a_picture_of_another_size_is_reported(self):
        found = icon.chunks(self.data)
        found[b"ic07"], found[b"ic04"] = found[b"ic08"], found[b"ic05"]
        expected = [f"the icon's {kind} has another size" for kind in ("ic04", "ic07")]
        self.assertEqual(list(icon.problems(joined(found))), expected)

    def test_a_picture_without_its_colour_space_is_reported(self):
        found = icon.chunks(self.data)
        found[b"ic07"] = found[b"ic07"][:33] + found[b"ic07"][46:]
        self.assertEqual(
            list(icon.problems(joined(found))),
            ["the icon's ic07 does not say that its colours are sRGB"],
        )

    def test_a_truncated_file_is_rejected(self):
        with self.assertRaises(icon.IconError):
            icon.chunks(self.data[:-1])

    def test_the_large_sizes_are_png_and_the_two_smallest_are_pixels(self):
        for kind, data in icon.chunks(self.data).items():
            form = b"ARGB" if kind in (b"ic04", b"ic05") else b"\x89PNG"
            self.assertEqual(data[:4], form)

    def test_the_small_sizes_show_the_drawing(self):
        side = 32
        planes = icon.channels(icon.chunks(self.data)[b"ic05"])
        pixel = lambda x, y: [planes[side * side * c + side * y + x] for c in range(4)]
        self.assertEqual(pixel(0, 0)[0], 0)
        self.assertEqual(pixel(8, 8), [255, 0xCC, 0x44, 0x33])
        self.assertEqual(pixel(16, 16)[0], 255)
        self.assertGreater(pixel(16, 16)[2], 0x88)

    def test_the_same_drawing_gives_the_same_bytes(self):
        self.assertEqual(self.data, self.again)

    def test_unpacking_gives_back_the_packed_bytes(self):
        chance = random.Random(1)
        for length in (0, 1, 2, 3, 127, 128, 129, 130, 131, 132, 260, 1024):
            for values in (1, 2, 200):
                data = bytes(chance.randrange(values) for _ in range(length))
                self.assertEqual(icon.channels(b"ARGB" + icns.pack(data)), data)


class TheCheck(unittest.TestCase):
    """make-icons --check, in a copy of its folders with another drawing."""

    @classmethod
    def setUpClass(cls):
        cls.checkout = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        shutil.copytree(sample.PACKAGING, cls.checkout / "packaging",
                        ignore=shutil.ignore_patterns("node_modules"))
        (cls.checkout / "resources").mkdir()
        cls.draw(DRAWING)
        subprocess.run([cls.checkout / "packaging/make-icons"], check=True)

    @classmethod
    def draw(cls, text):
        (cls.checkout / "resources/AppIcon.svg").write_text(text)

    def check_of(self, drawing):
        self.draw(drawing)
        done = subprocess.run([self.checkout / "packaging/make-icons", "--check"], check=False,
                              capture_output=True, text=True)
        return done.returncode, done.stderr

    def test_accepts_the_icons_of_the_drawing(self):
        self.assertEqual(self.check_of(DRAWING), (0, ""))

    def test_accepts_the_same_drawing_from_another_renderer(self):
        # The edges are slightly moved, the colours rounded differently.
        self.assertEqual(self.check_of(DRAWING.replace('cx="32"', 'cx="32.01"')
                                       .replace("#c43", "#cc4534"))[0], 0)

    def test_rejects_another_drawing(self):
        for before, after in (("#c43", "#c53"), ('r="12"', 'r="13"'), ("0.5", "0.6"),
                              ('rx="12"', 'rx="13"')):
            with self.subTest(after):
                self.assertEqual(self.check_of(DRAWING.replace(before, after)),
                                 (1, "AppIcon.icns does not show AppIcon.svg; "
                                  "packaging/make-icons renders it.\n"))


if __name__ == "__main__":
    unittest.main()
