"""Bystanders: names that look like the product's and are not."""

import posixpath
from itertools import islice


def _case(name):
    yield name.swapcase()
    yield name.upper()
    yield name.lower()
    yield name.title()
    for index, letter in enumerate(name):
        yield name[:index] + letter.swapcase() + name[index + 1:]


def _longer(name):
    for number in range(1, 100000):
        yield f"{name}-{number}"
        yield f"{number}-{name}"


def _shorter(name):
    for index in range(len(name)):
        yield name[:index] + name[index + 1:]


def _letter(name):
    for index, letter in enumerate(name):
        for other in "aeiouxyz0123456789_ ":
            if other != letter:
                yield name[:index] + other + name[index + 1:]


WAYS = {"case": _case, "longer": _longer, "shorter": _shorter, "letter": _letter}


def look_alikes(of, ways, each, spared):
    """Yields paths beside each path of `of`, `each` of them for each way.

    A name that `spared` (paths) holds, or that is one of `of`, is no bystander and is left out.
    """
    product = set(of) | set(spared)
    seen = set()
    for path in of:
        folder, name = posixpath.split(path)
        for way in ways:
            names = (f"{folder}/{other}" for other in WAYS[way](name) if other.strip(". "))
            fresh = (other for other in names if other not in product and other not in seen)
            for other in islice(fresh, each):
                seen.add(other)
                yield other
