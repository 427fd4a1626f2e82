"""The helpers of the whole-program tests one folder up."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

from support import (BUILD, CHECKOUT, HOME, LOG, LOG_FOLDER, PROGRAM,  # noqa: E402, F401
                     PracticeMac, time_limit, without_stamps)
