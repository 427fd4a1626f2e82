"""Uninstalls repeatedly in one process, from a Mac that is restored each time. After each run the
process must have no more files, threads and memory than after the first.

`leaks.py` runs 10 times, `--full` 100 times, `--runs N` N times.
"""

import itertools
import shlex
import sys

from fault_model import Model
from macs import IS_MAC, Ended, c, difference
from small import APPS, DOMAINS, FILES, SCENARIO

STORE = "/var/db/furniture"
FURNITURE = ["/Applications", "/tmp/kovra", f"{c.HOME}/Applications", f"{c.HOME}/Library",
             c.FOLDERS, c.STATE]
PROGRAM = f"{c.HOME}/Applications/kovra.app/Contents/MacOS/kovra"
# Paths of each kind that must be gone after each run.
PRODUCT = [*APPS, *FILES, *DOMAINS, c.CACHES[0]]
# Run as root: prints what the last run left, and restores everything.
FURNISH = f"""
for path in {shlex.join(PRODUCT)}; do [ ! -e "$path" ] || echo "left: $path"; done
! pgrep -x kovra || echo "left: a process"
tar -C / -xf {STORE}/all.tar
setpriv --reuid=501 --regid=20 --clear-groups {PROGRAM} </dev/null >/dev/null 2>&1 &
"""
BEFORE = [f"mkdir {STORE}; tar -C / -cf {STORE}/all.tar {shlex.join(p[1:] for p in FURNITURE)};"
          f"printf %s {shlex.quote(FURNISH)} > {STORE}/furnish"]
BETWEEN = ("exec /usr/bin/osascript -e 'do shell script \"/bin/bash "
           f"'\\''{STORE}/furnish'\\''\" with administrator privileges'")
# The queue of the administrator's script, which the first run creates, and the main thread.
THREADS = ["ivileged-runner", "kovraUninstalle"]
# Threads of the Mac's system for all queues, whose number varies, and of the emulator.
OF_THE_SYSTEM = {"com.apple.root", "qemu-aarch64"} if IS_MAC else set()
# The first runs still load and allocate what is kept. Later a queue or a thread may have a block more
# or less for some time, or rarely for good. So the minimum of three successive runs counts, without
# the two largest steps: a leak is a step in every run. The bytes of the Mac's program are printed but
# not judged, since the runtime's allocations are among them, some kilobytes for each thread.
SETTLED = 4
STEPS_FOR_GOOD = 2
BYTES_FOR_EACH_RUN = 32
# Without per-thread caches of freed blocks, which would count as allocated.
ENVIRONMENT = {"GLIBC_TUNABLES": "glibc.malloc.tcache_count=0",
               "ASAN_OPTIONS": "quarantine_size_mb=0:thread_local_quarantine_size_kb=0"}


def held(shown):
    """The files, children, threads and bytes before the first run and after each, as dictionaries."""
    counts = []
    for line in shown:
        if line.startswith("holds "):
            what, _, words = line.removeprefix("holds ").partition(":")
            if what == "threads":
                counts.append({})
            counts[-1][what] = [name for name in words.split("\t")[1:]
                                if name not in OF_THE_SYSTEM]
    return counts


def runs_in(log):
    """Splits the log's lines into runs."""
    starts = [at for at, line in enumerate(log) if line == "Uninstall started"]
    return [log[start:end] for start, end in zip(starts, [*starts[1:], len(log)], strict=True)]


def compare_runs(ended, runs):
    """Checks the runs: each must find and remove everything."""
    model = Model(None, "").uninstall().log
    whole = model[model.index("Uninstall started"):-1]
    logged = runs_in(ended.log[:-1])
    wrong = [] if len(logged) == runs else [f"{len(logged)} runs logged, and not {runs}"]
    wrong += [f"run {number}: logged: {difference(lines, whole)}"
              for number, lines in enumerate(logged, start=1) if lines != whole]
    wrong += [] if ended.shown.count("done") == runs else ["a run did not end with success"]
    return wrong + sorted({line for line in ended.shown if line.startswith("left: ")})


def compare_held(counts):
    first, wrong = counts[0], []
    for number, count in enumerate(counts[1:], start=1):
        wanted = {"files": first["files"], "children": [], "threads": THREADS}
        wrong += [f"run {number}: {what}: {count[what]}, and not {words}"
                  for what, words in wanted.items() if count[what] != words]
    sizes = [int(count["bytes"][0]) for count in counts]
    least = [min(sizes[max(0, number - 2):number + 1]) for number in range(len(sizes))]
    steps = sorted(later - earlier for earlier, later in itertools.pairwise(least[SETTLED:]))
    steady = steps[:-STEPS_FOR_GOOD]
    if not IS_MAC and sum(steady) > BYTES_FOR_EACH_RUN * len(steady):
        wrong.append(f"{sum(steady)} bytes more are allocated after {len(steady)} runs")
    print(f"{len(first['files'])} files, {len(THREADS)} threads and no child after each run")
    print("allocated bytes:", *sizes)
    return wrong


def main(arguments):
    runs = 100 if "--full" in arguments else 10
    if "--runs" in arguments:
        runs = int(arguments[arguments.index("--runs") + 1])
    ended = Ended(SCENARIO, "--runs", str(runs), "--between", BETWEEN, before=BEFORE,
                  timeout=60 + 20 * runs, environment=ENVIRONMENT)
    counts = held(ended.shown)
    wrong = [] if ended.run.status == 0 else [f"status {ended.run.status}: {ended.stderr[-2000:]}"]
    if len(counts) == runs + 1:
        wrong += compare_runs(ended, runs) + compare_held(counts)
    else:
        wrong.append(f"counted {len(counts)} times, and not {runs + 1}")
    if OF_THE_SYSTEM and not any(OF_THE_SYSTEM & set(line.split("\t")) for line in ended.shown):
        wrong.append(f"there was none of the threads that are not counted: {OF_THE_SYSTEM}")
    orphans = [line for line in ended.processes if line.startswith("/usr/bin/sleep")
               or "tistool" in line or "kovra.app" in line]
    wrong += [f"processes are left: {orphans}"] if orphans else []
    print(*wrong, sep="\n")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
