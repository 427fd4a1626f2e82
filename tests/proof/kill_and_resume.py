"""Kills an uninstall and checks that a second one completes it. Kills at a tool's start, at a random
moment, or during the removal of a tree of ten thousand files.

`kill_and_resume.py` kills 20 times, `--full` at every tool run, at 50 random moments and at 50 removals
of a file; `--run N`, `--moment SEED` and `--removal SEED` repeat a single one.
"""

import random
import re
import shlex
import sys
from pathlib import Path

from macs import PROGRAM, Ended, c, each

SCENARIO = Path(__file__).resolve().parent / "small.toml"
HEADER = "kovra Uninstaller v"
KILLED = "=== the first ended with "
TWICE = f'"$0"; status=$?; echo "{KILLED}$status"; sleep 0.3; exec "$0"'
# Kills the run after the given time if it has not ended.
AFTER = ('"$1" & run=$!; sleep "$0"; kill -KILL $run; wait $run; status=$?;'
         f'echo "{KILLED}$status"; sleep 0.3; exec "$1"')
# Sends SIGKILL at a thread's N-th unlinkat.
LEFT = "=== files of the tree left: "
AMID = ('strace -f -qq -o /dev/null -e trace=unlinkat '
        '-e inject=unlinkat:signal=KILL:when="$0" "$1"; status=$?;'
        f'echo "{LEFT}$(find "$2" -type f | wc -l)"; echo "{KILLED}$status"; exec "$1"')
TREES = [f"{c.HOME}/Applications/kovra.app", f"{c.HOME}/Library/Application Support/kovra"]
FILES = 10_000
MAKE_TREE = """/usr/bin/python3 - '{tree}' <<'end'
import os, sys
for n in range(100):
    os.makedirs(f"{{sys.argv[1]}}/{{n}}")
    for m in range(100):
        open(f"{{sys.argv[1]}}/{{n}}/{{m}}", "w").close()
end
chown -R 501:20 '{tree}'"""
BY_SIGNAL = "137"


def undisturbed():
    ended = Ended(SCENARIO)
    assert (ended.run.status, ended.phase) == (0, "done"), ended.stderr
    return ended


def outcome(ended):
    """The state of the Mac after the run, without the log's content, which differs."""
    records = {path: ended.run.written(path) for path in c.RECORDS.values() if path in ended.run.changed}
    products = [line for line in ended.processes if not line.startswith(("/bin/sh", "/usr/bin/python3")) and
                any(f"/{name}.app/Contents" in line for name in c.PROCESS_NAMES)]
    return {"deleted": ended.run.deleted, "created": ended.run.created,
            "changed": ended.run.changed, "processes": products} | records


def runs_of(ended):
    """Each tool run of the uninstaller as (command line, number of its run)."""
    counts, runs = {}, []
    for tool in ended.run.tools:
        if tool.uid == 0:
            continue        # run by root's script, not by the uninstaller
        line = shlex.join(tool.words)
        counts[line] = counts.get(line, 0) + 1
        runs.append((line, counts[line]))
    return runs


def seconds_of(ended):
    """The time from the first tool's start to the last one's end."""
    return (ended.run.tools[-1].ended - ended.run.tools[0].started) / 1e9


class Trial:
    def __init__(self, whole):
        self.whole = outcome(whole)
        self.seconds = seconds_of(whole)

    def at_run(self, run):
        line, number = run
        ended = Ended(SCENARIO, command=["/bin/sh", "-c", TWICE, PROGRAM], timeout=300,
                      faults=[f"{line}=kill-caller:{number}"])
        return self.judge(ended, f"{line} (run {number})", must_die=True)

    def at_moment(self, seed):
        seconds = random.Random(seed).uniform(0.02, self.seconds)
        ended = Ended(SCENARIO, command=["/bin/sh", "-c", AFTER, f"{seconds:.3f}", PROGRAM],
                      timeout=300)
        return self.judge(ended, f"moment {seed} ({seconds:.3f} s)", must_die=False)

    def at_removal(self, seed):
        chosen = random.Random(seed)
        tree, number = chosen.choice(TREES), chosen.randrange(100, FILES - 100)
        ended = Ended(SCENARIO, before=[MAKE_TREE.format(tree=tree)], timeout=300,
                      command=["/bin/sh", "-c", AMID, str(number), PROGRAM, tree])
        name = f"removal {seed} (file {number} of {tree})"
        killed, wrong = self.judge(ended, name, must_die=True)
        left = [int(line.removeprefix(LEFT)) for line in ended.shown if line.startswith(LEFT)]
        if not left or not 0 < left[0] < FILES:
            wrong.append(f"{name}: the tree's files left: {left}")
        return killed, wrong

    def judge(self, ended, name, must_die):
        """Returns whether the first session was killed, and what is wrong."""
        if ended.run.status != 0:
            return False, [f"{name}: status {ended.run.status}: {ended.stderr[-2000:]}"]
        killed = f"{KILLED}{BY_SIGNAL}" in ended.shown
        wrong = [f"{name}: the first session was not killed"] if must_die and not killed else []
        log = "\n".join(ended.log)
        # A session that was killed before its first scan may not have written its marker yet.
        first, header, _ = log.rpartition(HEADER)
        wrong += [] if header else [f"{name}: no session's header says {HEADER!r}"]
        reported = re.findall(r"⚠️ Previous session \(started \d{4}-\d\d-\d\d \d\d:\d\d:\d\d\) ended "
                          r"abnormally", log)
        if killed and "Preflight scan:" in first:
            wrong += [] if len(reported) == 1 else [f"{name}: the session before: {reported}"]
        if not killed and reported:
            wrong.append(f"{name}: a normal end was reported as abnormal")
        if not log.endswith("Uninstall finished (residues: 0)\nSession ended normally"):
            wrong.append(f"{name}: the log ends in {ended.log[-3:]}")
        if ended.phase != "done" or ended.residues:
            wrong.append(f"{name}: {ended.phase} {ended.residues}")
        found = outcome(ended)
        wrong += [f"{name}: {key}: {found.get(key)!r}, and not {self.whole.get(key)!r}"
                  for key in {*found, *self.whole} if found.get(key) != self.whole.get(key)]
        return killed, wrong


def main(arguments):
    whole = undisturbed()
    trial = Trial(whole)
    runs, moments, removals = runs_of(whole), range(1, 51), range(1, 51)
    if "--full" not in arguments:
        runs, moments, removals = random.Random(7).sample(runs, 10), range(1, 6), range(1, 6)
    if {"--run", "--moment", "--removal"} & {*arguments}:
        what, number = arguments[-2], int(arguments[-1])
        runs = [runs_of(whole)[number - 1]] if what == "--run" else []
        moments = [number] if what == "--moment" else []
        removals = [number] if what == "--removal" else []
    results = each(lambda kill: kill(), [
        *(lambda run=run: trial.at_run(run) for run in runs),
        *(lambda seed=seed: trial.at_moment(seed) for seed in moments),
        *(lambda seed=seed: trial.at_removal(seed) for seed in removals)])
    wrong = [line for _, lines in results for line in lines]
    print(*wrong, sep="\n")
    print(f"{len(runs)} tool runs, {len(moments)} moments and {len(removals)} removals tried, "
          f"{sum(killed for killed, _ in results)} kills, {len(wrong)} wrong")
    return 1 if wrong or not any(killed for killed, _ in results) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
