"""Uninstalls from random homes: only the product's pieces may be removed or changed.

`bystanders.py` tries 50 homes, `--full` 1000, `--homes N` N of them; `--seed N` repeats one home.
"""

import base64
import plistlib
import sys
import tempfile
from pathlib import Path

import toml
from macs import PROGRAM, Ended, c, difference, each
from home_model import HomeModel
from homes import Home

# Prints the records before the run, then runs the program.
COMMAND = ["/bin/sh", "-c", 'program=$1; shift; for f; do base64 -w0 "$f"; echo; done;'
           'exec "$program"', "sh", PROGRAM, *c.RECORDS.values()]


def try_home(seed):
    """Tries the home of that seed; prints and returns what is wrong, since all homes take long."""
    wrong = compare_home(seed)
    for line in wrong:
        print(line, file=sys.stderr, flush=True)
    return wrong


def compare_home(seed):
    home = Home(seed)
    with tempfile.TemporaryDirectory() as folder:
        scenario = Path(folder) / f"home-{seed}.toml"
        scenario.write_text(toml.text_of(home.content()))
        ended = Ended(scenario, command=COMMAND, timeout=300)
    if ended.run.status != 0:
        return [f"seed {seed}: status {ended.run.status}: {ended.stderr[-2000:]}"]
    before = {name: plistlib.loads(base64.b64decode(line))
              for name, line in zip(c.RECORDS, ended.shown, strict=False)}
    model = HomeModel(home, before)
    settings, removed = model.settings()
    wrong = []

    def compare(what, found, wanted):
        if found != wanted:
            wrong.append(f"seed {seed}: {what}: {difference(found, wanted)}")

    compare("phase", ended.phase, "done")
    compare("residues", sorted(ended.residues), sorted(model.residues()))
    compare("deleted", sorted(ended.run.deleted), model.deleted())
    compare("created", ended.run.created, c.OWN_FILES)
    compare("changed", [path for path in ended.run.changed if path not in c.RECORDS.values()], [])
    wanted = {"keyboard": settings, "keychain": model.keychain(), "input-sources": model.sources(),
              "launch-services": before["launch-services"] | {"records": model.records()},
              "privacy": model.decisions()}
    for name in c.RECORDS:
        compare(name, ended.record(name, before[name]), wanted[name])
    if not removed and c.KEYBOARD_FILE in ended.run.changed:
        wrong.append(f"seed {seed}: keyboard settings were written without a change")
    compare("entries removed", [line for line in ended.log if "entries removed" in line],
            [f"  Input method: keyboard settings entries removed — {removed}"])
    compare("prompted", "osascript" in {tool.name for tool in ended.run.tools}, model.needs_admin)
    compare("processes", sorted(line for line in ended.processes if line in home.programs),
            model.surviving_programs())
    return wrong


def main(arguments):
    if "--seed" in arguments:
        seeds = [int(arguments[arguments.index("--seed") + 1])]
    elif "--homes" in arguments:
        seeds = list(range(1, int(arguments[arguments.index("--homes") + 1]) + 1))
    else:
        seeds = list(range(1, (1000 if "--full" in arguments else 50) + 1))
    wrong = [line for lines in each(try_home, seeds) for line in lines]
    print(f"{len(seeds)} homes tried, {len({line.split(':')[0] for line in wrong})} wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
