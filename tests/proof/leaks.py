"""Uninstalls again and again in one process, which must hold no more in the end than at first.

`leaks.py` runs 10 times, `--full` 100 times, `--runs N` as often as said.
"""

import re
import sys
from pathlib import Path

from macs import Ended

SCENARIO = Path(__file__).resolve().parent / "small.toml"
HELD = re.compile(r"holds (\d+) descriptors, (\d+) children, (\d+) threads, (\d+) kB")
# What an allocator may keep for later, and how many threads may wait for work.
MEMORY_SLACK_KB = 4096
IDLE_THREADS = 4
# A sanitized build keeps what was freed for a while, so that its use is noticed. That is no leak.
FREED_AT_ONCE = {"ASAN_OPTIONS": "quarantine_size_mb=0:thread_local_quarantine_size_kb=0"}


def main(arguments):
    runs = 100 if "--full" in arguments else 10
    if "--runs" in arguments:
        runs = int(arguments[arguments.index("--runs") + 1])
    ended = Ended(SCENARIO, "--runs", str(runs), timeout=60 + 20 * runs,
                  environment=FREED_AT_ONCE)
    held = [tuple(map(int, match.groups())) for match in map(HELD.fullmatch, ended.shown) if match]
    wrong = [] if len(held) == runs else [f"{len(held)} runs counted, and not {runs}"]
    wrong += [] if ended.shown.count("done") == runs else ["a run did not end well"]
    if not wrong:
        first, last = held[0], held[-1]
        for what, before, after in zip(("descriptors", "children", "threads"), first, last,
                                       strict=False):
            print(f"{what}: {before} after the first run, {after} after run {runs}")
            slack = IDLE_THREADS if what == "threads" else 0
            wrong += [f"{what} pile up"] if after > before + slack else []
        # The first runs still load and allocate what is kept.
        settled = held[min(4, runs - 1)][3]
        print(f"memory: {settled} kB after the fifth run, {last[3]} kB after run {runs}")
        wrong += ["memory piles up"] if last[3] > settled + MEMORY_SLACK_KB else []
        wrong += ["children are left"] if last[1] else []
    orphans = [line for line in ended.processes if line.startswith("/usr/bin/sleep")
               or "tistool" in line]
    wrong += [f"processes are left: {orphans}"] if orphans else []
    print(*wrong, sep="\n")
    return 1 if wrong or ended.run.status != 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
