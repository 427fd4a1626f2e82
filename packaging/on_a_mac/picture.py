"""Checks places and colours in pictures of the window.

The pictures are BMP files in sRGB, made by `sips`. Written for Python 3.9.
"""

import struct

import judge

SIZE = (480, 450)  # of the content, in points
BACKGROUND = (247, 247, 247)
TRACK = tuple(round(0.3 * green + 0.7 * grey)
              for green, grey in zip(judge.GREEN, BACKGROUND))
INK = (20, 22, 26)
ICON = (184, 44, 296, 156)  # left, top, right, bottom
BUTTON = (130, 302, 350, 344)
TOLERANCE = 4               # of 255: the colours were converted from the screen's and to sRGB


class Picture:
    """An uncompressed BMP with 24 or 32 bits per pixel. `at` takes points of the window's content,
    which is below the title bar."""

    def __init__(self, data):
        start, _, width, height = struct.unpack_from("<IIii", data, 10)
        bits, compression = struct.unpack_from("<HI", data, 28)
        if data[:2] != b"BM" or bits not in (24, 32) or compression not in (0, 3):
            raise ValueError("not a BMP of that format")
        self.width, self.height = width, abs(height)
        self._data, self._start, self._from_top = data, start, height < 0
        self._bytes = bits // 8
        self._stride = (width * self._bytes + 3) // 4 * 4
        masks = struct.unpack_from("<3I", data, 54) if compression == 3 else (
            0xFF0000, 0xFF00, 0xFF)
        self._channels = [(mask & -mask).bit_length() // 8 for mask in masks]
        if len(data) < start + self._stride * self.height:
            raise ValueError("the BMP is truncated")
        self.scale = width / SIZE[0]
        self._above = self.height - SIZE[1] * self.scale

    def pixel(self, x, y):
        """Red, green and blue of a pixel, counted from the top left."""
        row = y if self._from_top else self.height - 1 - y
        at = self._start + row * self._stride + x * self._bytes
        return tuple(self._data[at + channel] for channel in self._channels)

    def at(self, x, y):
        return self.pixel(min(int(x * self.scale), self.width - 1),
                          min(int(self._above + y * self.scale), self.height - 1))

    def has_content(self):
        return self.scale >= 1 and self._above >= 0


def near(colour, other, tolerance=TOLERANCE):
    return all(abs(a - b) <= tolerance for a, b in zip(colour, other))


def mean_difference(picture, other):
    """The mean difference, of 255, between the fields of a grid in the middle of both pictures."""
    fields, samples, begin, width = 8, 6, 0.2, 0.6

    def field(one, i, j):
        places = [(begin + width * (k + (s + 0.5) / samples) / fields)
                  for k in (i, j) for s in range(samples)]
        pixels = [one.pixel(int(x * one.width), int(y * one.height))
                  for x in places[:samples] for y in places[samples:]]
        return [sum(channel) / len(pixels) for channel in zip(*pixels)]
    differences = [abs(a - b) for i in range(fields) for j in range(fields)
                   for a, b in zip(field(picture, i, j), field(other, i, j))]
    return sum(differences) / len(differences)


def page_picture(name, picture, ours):
    """The verdict on a picture of that page; `ours` is the picture in docs/pictures."""
    wanted = f"the page {name}: every colour and place"
    if not picture.has_content():
        return judge.compared(wanted, [f"{picture.width} × {picture.height} pixels"], "")
    problems = [f"at {x}, {y} is {picture.at(x, y)} and not the background"
                for x, y in ((16, 16), (16, 434), (463, 16), (463, 434), (240, 165), (240, 425),
                             (60, 323), (420, 323))
                if not near(picture.at(x, y), BACKGROUND)]
    page = judge.PAGES[name]
    if page.symbol:
        problems += symbol(picture, page.symbol)
    else:
        problems += application_icon(picture, ours)
    if name != "scanning":  # there the button is hardly darker than the background
        problems += bar(picture, name == "uninstalling")
    problems += text(picture, "title", (100, 170, 380, 210))
    if page.action[0] == "AXButton":
        problems += text(picture, "button's title", (200, 310, 280, 336))
    return judge.compared(wanted, problems, f"{picture.width} × {picture.height} pixels")


def grid(box, step=1):
    left, top, right, bottom = box
    for i in range(int((bottom - top) / step)):
        for j in range(int((right - left) / step)):
            yield left + (j + 0.5) * step, top + (i + 0.5) * step


def symbol(picture, colour):
    """A filled symbol of one colour, about as large as its font, in the middle of its box."""
    inked = [(x, y) for x, y in grid(ICON) if not near(picture.at(x, y), BACKGROUND, 24)]
    if not inked:
        return ["the symbol is missing"]
    across, down = ([place[axis] for place in inked] for axis in (0, 1))
    middle = ((min(across) + max(across)) / 2, (min(down) + max(down)) / 2)
    sides = (max(across) - min(across), max(down) - min(down))
    problems = []
    if not near(middle, (240, 100), 4):
        problems.append(f"the symbol's middle is at {middle}")
    if not all(36 <= side <= 64 for side in sides):
        problems.append(f"the symbol measures {sides}")
    exact = sum(near(picture.at(x, y), colour) for x, y in inked)
    if exact < 0.6 * len(inked):
        problems.append(f"{exact} of {len(inked)} points of the symbol have the colour {colour}")
    return problems


def application_icon(picture, ours):
    places = list(grid((192, 52, 288, 148), 4))
    differences = [abs(a - b) for x, y in places
                   for a, b in zip(picture.at(x, y), ours.at(x, y))]
    mean = sum(differences) / len(differences)
    if mean > 16:
        return [f"the icon differs from ours by {mean:.0f} of 255"]
    return []


def bar(picture, progress):
    """The edges, round corners and colour of the button or of the progress bar in its place."""
    left, top, right, bottom = BUTTON
    fills = (judge.GREEN, TRACK) if progress else (judge.GREEN,)

    def filled(x, y):
        return any(near(picture.at(x, y), fill) for fill in fills)
    problems = []
    along = [x for x, _ in grid((100, 0, 380, 1)) if filled(x, top + 20.5)]
    down = [y for _, y in grid((0, 280, 1, 366)) if filled(left + 16.5, y)]
    for what, places, edges in (("across", along, (left, right)), ("down", down, (top, bottom))):
        if not places:
            problems.append(f"{what}, there is no button")
        elif abs(places[0] - edges[0]) > 1.5 or abs(places[-1] - edges[1]) > 1.5:
            problems.append(f"{what}, the button goes from {places[0]} to {places[-1]}")
    problems += [f"the corner at {x}, {y} is not round" for x in (left + 1, right - 2)
                 for y in (top + 1, bottom - 2) if not near(picture.at(x, y), BACKGROUND, 12)]
    above_the_text = [x for x, _ in grid((left + 14, 0, right - 14, 1))]
    strange = [x for x in above_the_text if not filled(x, top + 5)]
    # One pixel may be the edge of the filled part.
    if len(strange) > (2 if progress else 0):
        problems.append(f"the button has another colour at {strange[0]}, {top + 5}: "
                        f"{picture.at(strange[0], top + 5)}")
    done = [near(picture.at(x, top + 5), judge.GREEN) for x in above_the_text]
    if done != sorted(done, reverse=True):
        problems.append("the bar is not filled from its left end")
    return problems


def text(picture, what, box):
    """Dark letters fill a part of the box."""
    places = list(grid(box))
    share = sum(near(picture.at(x, y), INK, 60) for x, y in places) / len(places)
    if not 0.005 < share < 0.5:
        return [f"the {what} fills {share:.1%} of its box"]
    return []
