"""Faults on order: TOOL [ARGUMENT...]=KIND[:VALUE][*TIMES]."""

import re
import shlex
import signal
from dataclasses import dataclass
from pathlib import PurePosixPath

# What the kind's value is, and whether it can be left out.
VALUES = {
    "missing": None,
    "not-executable": None,
    "exit": int,
    "late-exit": int,
    "signal": int,
    "silent": None,
    "rubbish": None,
    "flood": int,
    "cut": None,
    "close-output": float,
    "slow": float,
    "grandchild": float,
    "kill-caller": int,
}
PLACED = ("missing", "not-executable")


class FaultError(Exception):
    """A fault that cannot be understood."""


@dataclass
class Fault:
    tool: str
    arguments: list[str]
    kind: str
    value: float
    times: int

    @property
    def placed(self):
        """Whether the fault lies in how the tool stands there, not in what it does."""
        return self.kind in PLACED

    def as_plist(self):
        return {"tool": self.tool, "arguments": self.arguments, "kind": self.kind,
                "value": float(self.value), "times": self.times}


def parse(text, tools):
    """The fault that text orders; `tools` are the absolute paths of the tools there are."""
    where, separator, what = text.rpartition("=")
    match = re.fullmatch(r"([a-z-]+)(?::([0-9.]+|SIG[A-Z0-9]+))?(?:\*([0-9]+))?", what)
    words = shlex.split(where)
    if not separator or match is None or not words:
        raise FaultError(f"a fault reads TOOL [ARGUMENT...]=KIND[:VALUE][*TIMES]: {text}")
    kind, value, times = match.groups()
    if kind not in VALUES:
        raise FaultError(f"unknown fault {kind}; there are: {', '.join(VALUES)}")
    if (VALUES[kind] is None) != (value is None):
        raise FaultError(f"{kind} takes {'no' if VALUES[kind] is None else 'a'} value: {text}")
    names = {PurePosixPath(path).name: path for path in tools}
    tool = PurePosixPath(words[0]).name
    if tool not in names or (words[0].startswith("/") and names[tool] != words[0]):
        raise FaultError(f"unknown tool {words[0]}; there are: {', '.join(sorted(names))}")
    if kind in PLACED and (len(words) > 1 or times):
        raise FaultError(f"{kind} holds for the whole tool: {text}")
    if value is None:
        number = 0
    elif value.startswith("SIG"):
        number = getattr(signal, value, None)
        if kind != "signal" or number is None:
            raise FaultError(f"unknown signal: {text}")
    else:
        number = VALUES[kind](value)
    return Fault(tool, words[1:], kind, number, int(times or 0))
