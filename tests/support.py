"""What the whole-program tests share."""

import os
import re
import sys
from pathlib import Path

sys.dont_write_bytecode = True
CHECKOUT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(CHECKOUT / "practice-mac"))

from launcher.practice import BUILD_VARIABLE, PracticeMac, time_limit  # noqa: E402, F401

BUILD = Path(os.environ.get(BUILD_VARIABLE, CHECKOUT / "build/linux"))
HOME = "/Users/sam"
PROGRAM = f"{HOME}/Downloads/kovraUninstaller.app/kovraUninstaller"
LOG_FOLDER = f"{HOME}/Library/Logs/kovraUninstaller"
LOG = f"{LOG_FOLDER}/uninstall.log"

STAMP = re.compile(r"^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\] ", re.MULTILINE)


def without_stamps(log):
    """The log's text with each line's time stamp, which must be there, taken off."""
    text = log.decode()
    assert not text or STAMP.match(text), text
    return STAMP.sub("", text)
