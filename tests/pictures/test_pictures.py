"""What the painter makes of the page, pixel by pixel. Offsets are points from the top left."""

import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "window"))

from display import Display  # noqa: E402
from pictures import ICON  # noqa: E402
from whole import BUILD  # noqa: E402

INK = (20, 22, 26)
BACKGROUND = (247, 247, 247)
GREEN = (178, 224, 11)
TRACK = (226, 240, 176)  # the green at 30 % over the background
DANGER = (255, 59, 48)
CARD = (244, 244, 244)  # ink at 1.5 % over the background
WIDTH, HEIGHT = 480, 450
TITLE, SUBTITLE = (40, 172, 440, 204), (60, 206, 420, 240)  # left, top, right, bottom
ACTION, LINK, UNDERLINE = (140, 304, 340, 342), (130, 360, 350, 384), (200, 376.5, 280, 377)


class Picture:
    def __init__(self, path, scale):
        self.scale = scale
        self.size = (WIDTH * scale, HEIGHT * scale)
        self._bytes = subprocess.run(["convert", path, "-depth", "8", "rgb:-"], check=True,
                                     capture_output=True).stdout
        assert len(self._bytes) == self.size[0] * self.size[1] * 3

    def pixel(self, x, y):
        at = (y * self.size[0] + x) * 3
        return tuple(self._bytes[at:at + 3])

    def at(self, x, y):
        return self.pixel(int(x * self.scale), int(y * self.scale))

    def main_color(self, box, behind=BACKGROUND):
        """The commonest colour in the box beside the one behind it: that of the letters' stems."""
        left, top, right, bottom = (int(edge * self.scale) for edge in box)
        counts = Counter(self.pixel(x, y) for y in range(top, bottom) for x in range(left, right))
        del counts[behind]
        return counts.most_common(1)[0][0]

    def darkness(self, left, top, right, bottom):
        """How dark the area is against the background, from 0 to 1."""
        scale = self.scale
        values = [1 - self.pixel(x, y)[1] / BACKGROUND[1]
                  for y in range(top * scale, bottom * scale)
                  for x in range(left * scale, right * scale)]
        return sum(values) / len(values)

    def ink(self, left, top, right, bottom, differs=40):
        """The box around all that is not the background, in points."""
        scale = self.scale
        marked = [(x, y) for y in range(top * scale, bottom * scale)
                  for x in range(left * scale, right * scale)
                  if max(abs(a - b) for a, b in zip(self.pixel(x, y), BACKGROUND)) > differs]
        xs, ys = [x for x, _ in marked], [y for _, y in marked]
        return (min(xs) / scale, min(ys) / scale, (max(xs) + 1) / scale, (max(ys) + 1) / scale)


class Pictures(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        with Display() as display:
            subprocess.run([BUILD / "tests/pictures/render-page", cls.folder, ICON], check=True,
                           env=display.environment, capture_output=True)

    def picture(self, name, scale=2):
        return Picture(f"{self.folder}/{name}{'@2x' if scale == 2 else ''}.png", scale)

    def assert_close(self, pixel, wanted):
        for part, other in zip(pixel, wanted):
            self.assertAlmostEqual(part, other, delta=1)

    def test_colours_are_exact(self):
        ready = self.picture("ready")
        self.assertEqual(ready.at(3, 3), BACKGROUND)
        self.assertEqual(ready.at(476, 446), BACKGROUND)
        self.assertEqual(ready.at(150, 323), GREEN)
        self.assertEqual(self.picture("failed").at(240, 84), DANGER)
        self.assertEqual(self.picture("done").at(240, 80), GREEN)

    def test_texts_have_the_colours_of_their_roles(self):
        def over(backdrop, opacity):
            return tuple(back + (ink - back) * opacity for ink, back in zip(INK, backdrop))

        ready = self.picture("ready")
        self.assert_close(ready.main_color(TITLE), INK)
        self.assert_close(ready.main_color(SUBTITLE), over(BACKGROUND, 0.72))
        self.assert_close(ready.main_color(ACTION, GREEN), INK)
        self.assert_close(self.picture("uninstalling-0").main_color(ACTION, TRACK), INK)
        scanning = self.picture("scanning")
        self.assertEqual(scanning.at(150, 323), CARD)
        self.assert_close(scanning.main_color(ACTION, CARD), over(CARD, 0.5))
        self.assert_close(self.picture("nothing-found").main_color(LINK), over(BACKGROUND, 0.5))
        self.assert_close(self.picture("nothing-found-hovered").main_color(LINK), INK)
        self.assert_close(self.picture("done").main_color(LINK), INK)

    def test_underlines_rest_at_a_part_of_their_hovered_darkness(self):
        # They are about a pixel high and cover it in part, so two states are compared.
        for name, opacity in (("nothing-found", 0.28), ("done", 0.32)):
            resting, hovered = (BACKGROUND[1] - self.picture(each).main_color(UNDERLINE)[1]
                                for each in (name, f"{name}-hovered"))
            self.assertGreater(hovered, 150)
            self.assertAlmostEqual(resting / hovered, opacity, delta=0.01)

    def test_the_bar_ends_where_the_fraction_says(self):
        for name, fraction in (("uninstalling-0", 0), ("uninstalling-2", 2 / 7),
                               ("uninstalling-6", 6 / 7)):
            bar = self.picture(name)
            edge = 130 + 220 * fraction
            if fraction:
                self.assert_close(bar.at(edge - 2, 305), GREEN)
            self.assert_close(bar.at(edge + 3, 323 if fraction else 310), TRACK)

    def test_corners_are_cut_and_what_lies_under_them_shows(self):
        ready = self.picture("ready")
        for x, y in ((130.5, 302.5), (349, 302.5), (130.5, 343), (349, 343)):
            self.assertEqual(ready.at(x, y), BACKGROUND)
        self.assertEqual(ready.at(240, 302.5), GREEN)

    def test_texts_stand_in_the_middle(self):
        for name in ("ready", "done", "failed", "nothing-found", "residues"):
            picture = self.picture(name)
            for top, bottom in ((172, 205), (206, 226)):
                left, _, right, _ = picture.ink(10, top, 470, bottom)
                self.assertAlmostEqual((left + right) / 2, 240, delta=1.5, msg=name)

    def test_the_title_is_much_bolder_than_the_subtitle(self):
        picture = self.picture("done")
        left, top, right, bottom = (round(edge) for edge in picture.ink(10, 172, 470, 205))
        title = picture.darkness(left, top, right, bottom)
        left, top, right, bottom = (round(edge) for edge in picture.ink(10, 208, 470, 226))
        self.assertGreater(title, 1.5 * picture.darkness(left, top, right, bottom))

    def test_the_arrow_stands_three_points_after_the_link_on_its_baseline(self):
        picture = self.picture("done-hovered")
        left, top, right, bottom = picture.ink(100, 360, 380, 384, 60)
        columns = [x for x in range(int(left * 2), int(right * 2))
                   if any(picture.pixel(x, y)[1] < 187 for y in range(int(top * 2),
                                                                     int(bottom * 2)))]
        gaps = [(b - a - 1) / 2 for a, b in zip(columns, columns[1:]) if b - a > 1]
        self.assertEqual(len(gaps), 1, "the underline joins all of the link's letters")
        self.assertAlmostEqual(gaps[0], 3, delta=1.5)
        end_of_link = columns[[b - a > 1 for a, b in zip(columns, columns[1:])].index(True)] / 2
        arrow = picture.ink(round(end_of_link + 1), 360, 380, 384, 60)
        # The letters without a descender end where the arrow does.
        self.assertAlmostEqual(arrow[3], picture.ink(*self._letter_d(left, top))[3], delta=1)

    def _letter_d(self, left, top):
        """Around the link's first letter, above the underline."""
        return int(left), int(top), int(left) + 9, int(top) + 11

    def test_a_long_reason_runs_on_behind_the_button(self):
        long, short = self.picture("failed-long", 1), self.picture("failed", 1)
        self.assertEqual(long.at(150, 323), GREEN)
        self.assertGreater(long.darkness(130, 284, 350, 300), 0.02)
        self.assertEqual(short.darkness(130, 284, 350, 300), 0)

    def test_the_icon_fills_its_slot_and_nothing_beside_it(self):
        left, top, right, bottom = self.picture("ready").ink(10, 10, 470, 165, 1)
        self.assertGreaterEqual(left, 184)
        self.assertLessEqual(right, 296)
        self.assertGreaterEqual(top, 44)
        self.assertLessEqual(bottom, 156)
        self.assertGreater(right - left, 80)

    def test_text_is_rendered_at_full_resolution_at_scale_two(self):
        once, twice = self.picture("ready", 1), self.picture("ready", 2)
        doubled = sum(once.pixel(x // 2, y // 2) == twice.pixel(x, y)
                      for y in range(350, 400) for x in range(300, 660))
        self.assertLess(doubled, 50 * 360 * 0.9)


if __name__ == "__main__":
    unittest.main()
