"""The helpers of the whole-program tests one folder up."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

from support import (BUILD, BUNDLE, CHECKOUT, HOME, IS_MAC, LOG, LOG_FOLDER,  # noqa: E402, F401
                     PROGRAM, PracticeMac, in_bundle, time_limit, without_stamps)
