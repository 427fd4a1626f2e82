"""What each state of the page looks like, painted off screen by the same painter."""

import subprocess
import tempfile
from pathlib import Path

from whole import BUILD, CHECKOUT

ICON = CHECKOUT / "resources/AppIcon.png"


class Pictures:
    """All states at so many pixels to a point, as raw pixels by name."""

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
        """The state that looks exactly so, or None."""
        return next((name for name, known in self._by_name.items() if known == picture), None)


def pixels(png):
    """The raw pixels, three bytes each."""
    return subprocess.run(["convert", "png:-", "-depth", "8", "rgb:-"], input=png, check=True,
                          capture_output=True).stdout
