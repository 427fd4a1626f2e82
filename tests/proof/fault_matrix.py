"""Every tool with every fault: how a scan and an uninstall end, and what is said of it.

`fault_matrix.py` tries all cells, `--tool TOOL` those of one tool; `--write` renews what was tried in
docs/fault-matrix.md.
"""

import plistlib
import sys
from pathlib import Path

import catalogue as c
from fault_model import FAULTS, SILENT_SUCCESSES, Model
from macs import BUNDLE, Ended, PracticeMac, PROGRAM, each, in_bundle

HERE = Path(__file__).resolve().parent
TABLE = HERE.parent.parent / "docs/fault-matrix.md"
SCENARIO = HERE / "small.toml"
TOOLS = ("pkill", "launchctl", "PlistBuddy", "defaults", "tistool", "killall", "lsregister",
         "osascript", "security", "getconf", "tccutil",
         # What a tool is asked for one thing may go wrong alone.
         "defaults import", "security dump-keychain", "security delete-generic-password",
         "lsregister -dump")
SCAN_TOOLS = ("defaults", "security")
RESPONSIVE_SECONDS = 1.5
HELPER = in_bundle("tistool", BUNDLE)


def faulty_helper(fault):
    """Shell commands that put the fault into the helper that the bundle brings."""
    kind, _, value = fault.partition(":")
    if kind == "missing":
        return f"rm {HELPER}"
    if kind == "not-executable":
        return f"chmod 644 {HELPER}"
    real = f'"{HELPER}.real" "$@"'
    body = {"exit": f"exit {value}", "signal": f"kill -{value} $$",
            "silent": f"{real} >/dev/null 2>&1",
            "rubbish": f"{real} >/dev/null; head -c 4096 /dev/urandom",
            "flood": f"{real} >/dev/null; head -c {value} /dev/zero",
            "close-output": f"exec >/dev/null 2>&1; sleep 0.2; {real}",
            "slow": f"sleep {value}; {real}", "grandchild": f"sleep {value} & {real}"}[kind]
    return (f"mv {HELPER} {HELPER}.real; printf '%s\\n' '#!/bin/sh' '{body}' > {HELPER};"
            f"chmod 755 {HELPER}")


def order(tool, fault):
    if tool == "tistool":
        return {"before": [faulty_helper(fault)]}
    return {"faults": [f"{tool}={fault}"]}


def stayed(ended):
    """What of the product is left, seen from outside."""
    gone = set(ended.run.deleted)
    before = PLISTS
    accounts = {item.get("account") for item in ended.state(c.KEYCHAIN_FILE, before["keychain"])}
    paths = {entry["path"] for entry in
             ended.state("launch-services", before["launch-services"])["records"]}
    found = {
        "apps": not {"/Applications/kovra.app", *c.USER_APPS,
                     f"{c.HOME}/Library/Input Methods/kovraInput.app"} <= gone,
        "files": not {f"{c.HOME}/Library/Application Support/kovra", "/tmp/kovra",
                      f"{c.HOME}/Library/LaunchAgents/ai.kovra.KovraAgent.plist",
                      f"{c.TEMPORARY}kovraInstaller-8231"} <= gone,
        "preferences": f"{c.HOME}/Library/Preferences/group.ai.kovra.shared.plist" not in gone,
        "cache files": c.CACHES[0] not in gone,
        "keyboard settings": c.KEYBOARD_FILE not in ended.run.changed,
        "sign-in data": bool(accounts & {"ai.kovra.auth.session", "ai.kovra.device.0042"}),
        "registrations": bool(paths & {"/Applications/kovra.app",
                                       "/Volumes/kovra 2.4/kovraInput.app"}),
        "input source": any(source["Enabled"] and "kovra" in source["InputSourceID"] for source in
                            ended.state("input-sources", before["input-sources"])),
        "permissions": any(entry["client"] in c.BUNDLE_IDS for entry in
                           ended.state("privacy", before["privacy"])),
        "processes": any("/kovra.app/" in line or "/KovraAgent.app/" in line
                         for line in ended.processes),
    }
    return {what for what, is_left in found.items() if is_left}


PLISTS = {}


def read_plists():
    """The records as they are before a run."""
    paths = {"keychain": c.KEYCHAIN_FILE, **{name: f"{c.STATE}/{name}.plist" for name in
                                             ("launch-services", "input-sources", "privacy")}}
    for name, path in paths.items():
        run = PracticeMac(SCENARIO).run(["/bin/cat", path])
        PLISTS[name] = plistlib.loads(run.stdout)


def try_uninstall(cell):
    """(the cell's text for the table, what is wrong)."""
    tool, fault = cell
    model = Model(tool, fault)
    expected = model.uninstall()
    ended = Ended(SCENARIO, "--heartbeat", timeout=600, **order(tool, fault))
    wrong = []

    def compare(what, found, wanted):
        if found != wanted:
            wrong.append(f"{what}: {found!r}, and not {wanted!r}")

    compare("status", ended.run.status, 0)
    if wrong:
        return "?", [*wrong, ended.told[-2000:]]
    compare("phase", ended.phase, expected.phase)
    compare("residues", ended.residues, expected.residues)
    compare("rows", ended.rows, expected.rows)
    compare("log", ended.log_from_scan, expected.log)
    left_over = stayed(ended) | model.may_stay()
    compare("stayed", left_over, expected.stayed)
    late = float(ended.told.partition("longest wait: ")[2].split()[0])
    if late > RESPONSIVE_SECONDS:
        wrong.append(f"the main thread was busy for {late} s")
    warned = any(state.startswith("warning") for state in ended.rows.values())
    is_success = ended.phase == "done" and not warned and not ended.residues
    forced = (tool, Model(tool, fault).way()) in SILENT_SUCCESSES
    if is_success and left_over and not forced:
        wrong.append(f"success is told although there stayed: {left_over}")
    if forced and not (is_success and left_over) and model.tool:
        if (tool, fault) != ("tistool", "missing"):
            wrong.append("no success that had to be listed")
    left = ", ".join(sorted(left_over))
    text = ("failed" if ended.phase != "done" else "warned" if warned else
            "residues" if ended.residues else "done")
    return f"{text}: {left}" if left and text != "failed" else text, wrong


def try_scan(cell):
    tool, fault = cell
    run = PracticeMac(SCENARIO).run([PROGRAM, "--inventory"], timeout=300,
                                                 **order(tool, fault))
    wanted = "".join(f"{line}\n" for line in Model(tool, fault).scan()[1:])
    whole = "".join(f"{line}\n" for line in Model(None, "").scan()[1:])
    wrong = [] if (run.stdout.decode(), run.status) == (wanted, 0) else [
        f"printed {run.stdout!r}, ended with {run.status}"]
    return "all found" if wanted == whole else "its own not found", wrong


def text_of(cells):
    """The document; cells are (title, tool, fault) to text."""
    lines = ["# Faults of the tools", "",
             "How a scan and an uninstall end when one of the tools that they run is at fault "
             "throughout. Generated by `tests/proof/fault_matrix.py --write`, which tries "
             "every cell in a practice Mac and compares phase, rows, log and what is left with a "
             "model of the steps.", "",
             "**done**: a success is told; **warned**: a row tells that something went wrong; "
             "**residues**: what is left is told; **failed**: the run stopped at the apps, and a "
             "retry starts anew. After the colon: what stayed on the Mac.", ""]
    for title, tools in (("Uninstall", TOOLS), ("Scan", SCAN_TOOLS)):
        lines += [f"## {title}", "", f"| fault | {' | '.join(tools)} |",
                  "|---" * (len(tools) + 1) + "|"]
        lines += ["| " + " | ".join([fault, *(cells.get((title, tool, fault), "–")
                                              for tool in tools)]) + " |" for fault in FAULTS]
        lines.append("")
    lines += ["## Told as a success although something stayed", "",
              "These are as they must be: the step ignores the tool's outcome by design, and what "
              "looks afterwards cannot see it either.", ""]
    for (tool, way), reason in SILENT_SUCCESSES.items():
        faults = [fault for fault in FAULTS if Model(tool, fault).way() == way
                  and cells.get(("Uninstall", tool, fault), "").startswith("done: ")]
        lines.append(f"- {tool} ({', '.join(faults)}): {reason}.")
    return "\n".join(lines) + "\n"


def committed():
    """The cells of the committed table: (title, tool, fault) to text."""
    cells, title, tools = {}, "", []
    for line in TABLE.read_text().splitlines() if TABLE.exists() else []:
        words = [word.strip() for word in line.strip("|").split("|")]
        if line.startswith("## "):
            title = line[3:]
        elif line.startswith("| fault"):
            tools = words[1:]
        elif line.startswith("| ") and not line.startswith("|--"):
            cells |= {(title, tool, words[0]): text
                      for tool, text in zip(tools, words[1:], strict=True)}
    return cells


def all_cells(tools):
    """Whether a tool is there is no question of what it is asked."""
    return [(tool, fault) for tool in tools for fault in FAULTS
            if " " not in tool or fault not in ("missing", "not-executable")]


def main(arguments):
    read_plists()
    tried = {"Uninstall": (try_uninstall, all_cells(TOOLS)),
             "Scan": (try_scan, all_cells(SCAN_TOOLS))}
    named = arguments[arguments.index("--tool") + 1] if "--tool" in arguments else None
    found, failures = {}, []
    for title, (attempt, cells) in tried.items():
        if named:
            cells = [cell for cell in cells if cell[0] == named]
        for cell, (text, wrong) in zip(cells, each(attempt, cells), strict=True):
            found[title, *cell] = text
            failures += [(title, *cell, line) for line in wrong]
    if "--write" in arguments and not failures:
        TABLE.write_text(text_of(committed() | found))
    table = committed()
    failures += [(*cell, f"docs/fault-matrix.md says {table.get(cell)!r}, and not {text!r}")
                 for cell, text in found.items() if table.get(cell) != text]
    for failure in failures:
        print(*failure, sep="\n    ")
    print(f"{len(found)} cells tried, {len(failures)} wrong")
    return 1 if failures or not found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
