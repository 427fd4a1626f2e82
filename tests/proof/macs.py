"""Practice Macs for the proofs: runs several at a time, and reads the state of each after its run."""

import plistlib
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

import catalogue as c  # noqa: E402
import uninstalling  # noqa: E402
from support import BUNDLE, IS_MAC, PROGRAM, RUNNER, PracticeMac, in_bundle  # noqa: E402, F401

AT_ONCE = 4  # more than processors, since runs mostly wait
MARK = "=== processes"
AGENTS = "=== agents"
# Asks launchd itself which agents are loaded, since launchctl may be the faulty tool.
ASK_LAUNCHD = ("import socket; s = socket.socket(socket.AF_UNIX);"
               "s.connect('/dev/practice-mac/launchd.sock'); s.sendall(b'list\\0');"
               "s.shutdown(socket.SHUT_WR); print(s.makefile().read())")
# Runs a command, then prints the user's processes and the loaded agents on standard error.
THEN_LEFT = (f'"$@"; status=$?; echo "{MARK}" >&2; ps -U 501 -o args= >&2; echo "{AGENTS}" >&2;'
             f'/usr/bin/python3 -c "{ASK_LAUNCHD}" >&2; exit $status')


def each(function, cells, say=True):
    """The function's results for all cells, in order; shows the progress on standard error."""
    results = []
    with ThreadPoolExecutor(AT_ONCE) as pool:
        for number, result in enumerate(pool.map(function, cells), start=1):
            results.append(result)
            if say and (number % 10 == 0 or number == len(cells)):
                print(f"{number} of {len(cells)}", file=sys.stderr, flush=True)
    return results


def difference(found, wanted):
    """Describes how two values differ."""
    if isinstance(found, list) and isinstance(wanted, list):
        more = [item for item in found if item not in wanted]
        less = [item for item in wanted if item not in found]
        if more or less:
            return f"too many {more!r}, missing {less!r}"
    return f"{found!r}, and not {wanted!r}"


class Ended(uninstalling.Ended):
    """A whole uninstall that has ended, with or without success, and the state of its Mac."""

    def __init__(self, scenario, *arguments, command=None, **options):
        mac = PracticeMac(scenario, bundle=RUNNER)
        words = command or [PROGRAM, *arguments]
        super().__init__(mac.run(["/bin/sh", "-c", THEN_LEFT, "sh", *words], **options))
        self.stderr, _, left = self.run.stderr.decode(errors="replace").partition(f"{MARK}\n")
        processes, _, agents = left.partition(f"{AGENTS}\n")
        self.processes = processes.splitlines()
        self.agents = {line.split("\t")[-1] for line in agents.splitlines()}

    def record(self, name, before):
        """The property list of that name after the run; `before` if it was not written."""
        try:
            return plistlib.loads(self.run.written(c.RECORDS[name]))
        except FileNotFoundError:
            return before
