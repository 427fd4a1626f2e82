"""The helpers of the whole-program tests one folder up."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

from catalogue import HOME, LOG, LOG_FOLDER  # noqa: E402, F401
from support import (BUILD, BUNDLE, CHECKOUT, IS_MAC, PROGRAM, PracticeMac,  # noqa: E402, F401
                     in_bundle, log_lines, time_limit)
