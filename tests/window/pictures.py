"""Pictures of each state of the page, drawn off screen by the program's own painter."""

import subprocess
import tempfile
from pathlib import Path

from whole import BUILD, CHECKOUT

ICON = CHECKOUT / "resources/AppIcon.png"


class Pictures:
    """The raw pixels of all states by name, at a backing scale."""

    def __init__(self, display, scale=1):
        ending = "" if scale == 1 else f"@{scale}x"
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([BUILD / "tests/pictures/render-page", folder, ICON], check=True,
                           env=display.environment, capture_output=True)
            self._by_name = {name: pixels(path.read_bytes())
                             for path in Path(folder).glob("*.png")
                             for name, at, many in [path.stem.partition("@")]
                             if at + many == ending}

    def __getitem__(self, name):
        return self._by_name[name]

    def name_of(self, picture):
        """The state with exactly these pixels, or None."""
        return next((name for name, known in self._by_name.items() if known == picture), None)


def pixels(png):
    """The raw pixels of a PNG, three bytes each."""
    return subprocess.run(["convert", "png:-", "-depth", "8", "rgb:-"], input=png, check=True,
                          capture_output=True).stdout
