"""What the practice Mac's own tests share."""

import os
import sys
from pathlib import Path

sys.dont_write_bytecode = True
CHECKOUT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(CHECKOUT / "practice-mac"))
sys.path.append(str(CHECKOUT / "tests"))

from catalogue import HOME  # noqa: E402, F401
from launcher.practice import BUILD_VARIABLE, LAUNCHER, PracticeMac, time_limit  # noqa: E402, F401

BUILD = Path(os.environ.get(BUILD_VARIABLE, CHECKOUT / "build/linux"))


def text(run):
    return run.stdout.decode()
