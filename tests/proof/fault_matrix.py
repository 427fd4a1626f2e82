"""Every tool with every fault: how a scan and an uninstall end, and what they report.

`fault_matrix.py` tries all cells, `--tool TOOL` those of one tool, `--selection` each tool and each
fault at least twice; `--write` updates these cells in docs/fault-matrix.md.
"""

import random
import sys
from collections import Counter
from pathlib import Path

from fault_model import FAULTS, NEVER_STARTS, UNREPORTED, Model
from macs import BUNDLE, PROGRAM, Ended, PracticeMac, c, difference, each, in_bundle
from small import APPS, DOMAINS, FILES, SCENARIO, is_product, records_of, small

TABLE = Path(__file__).resolve().parent.parent.parent / "docs/fault-matrix.md"
TOOLS = ("pkill", "launchctl", "PlistBuddy", "defaults", "tistool", "killall", "lsregister",
         "osascript", "security", "getconf", "tccutil",
         # Single commands of a tool that also fail on their own.
         "launchctl bootout", "launchctl remove", "defaults export", "defaults import",
         "defaults write", "defaults delete", "lsregister -u", "lsregister -dump",
         "security dump-keychain", "security delete-generic-password")
SCAN_TOOLS = ("defaults", "security")
RESPONSIVE_SECONDS = 1.0
waits = []     # the longest wait for the main thread in each uninstall, in seconds
HELPER = in_bundle("tistool", BUNDLE)


def faulty_helper(fault):
    """Shell commands that replace the bundle's helper by a faulty one."""
    kind, _, value = fault.partition(":")
    if kind == "missing":
        return f"rm {HELPER}"
    if kind == "not-executable":
        return f"chmod 644 {HELPER}"
    real = f'"{HELPER}.real" "$@"'
    body = {"exit": f"exit {value}", "late-exit": f"{real}; exit {value}", "signal": f"kill -{value} $$",
            "silent": f"exec 3>&1; {real} >/dev/null 2>&1",
            "rubbish": f"exec 3>&1; {real} >/dev/null; head -c 4096 /dev/urandom",
            "flood": f"exec 3>&1; {real} >/dev/null; head -c {value} /dev/zero",
            "cut": f'whole=$({real}); printf "%.$((${{#whole}} / 2))s" "$whole"',
            "close-output": f"exec >/dev/null 2>&1; sleep {value}; {real}",
            "slow": f"sleep {value}; {real}", "grandchild": f"sleep {value} & {real}"}[kind]
    return (f"mv {HELPER} {HELPER}.real; printf '%s\\n' '#!/bin/sh' '{body}' > {HELPER};"
            f"chmod 755 {HELPER}")


def order(tool, fault):
    if tool == "tistool":
        return {"before": [faulty_helper(fault)]}
    return {"faults": [f"{tool}={fault}"]}


def records(ended, name):
    """The records of that name before the run and after it."""
    before = small().records[name]
    return before, ended.record(name, before)


def stayed(ended):
    """Which kinds of the product's things are left, as seen from outside."""
    def ours(name):
        return small().products(name, records(ended, name)[1])
    gone, present = set(ended.run.deleted), set(ended.run.created)
    agents = "ai.kovra.KovraAgent" in ended.agents
    found = {
        "apps": not set(APPS) <= gone,
        "files": not set(FILES) <= gone,
        "preferences": DOMAINS[1] not in gone or DOMAINS[0] in present,
        "cache files": c.CACHES[0] not in gone,
        "keyboard settings": records(ended, "keyboard")[1] != small().settings,
        "sign-in data": bool(ours("keychain")),
        "registrations": bool(ours("launch-services")),
        "input source": any(source["Enabled"] for source in ours("input-sources")),
        "permissions": bool(ours("privacy")),
        "agents": agents,
        # The process of a loaded agent is restarted now and then.
        "processes": any("/kovra.app/" in line or ("/KovraAgent.app/" in line and not agents)
                         for line in ended.processes),
    }
    return {what for what, is_left in found.items() if is_left}


def left_records(ended):
    """The numbers of keychain items left by account, and the paths that are still registered."""
    items = small().products("keychain", records(ended, "keychain")[1])
    entries = small().products("launch-services", records(ended, "launch-services")[1])
    return Counter(item["account"] for item in items), [entry["path"] for entry in entries]


def reported(ended, left):
    """Which of these are reported, by the page and the log or by the log alone."""
    if ended.phase != "done":
        return left
    words = {"apps": [".app ("], "files": ["Settings and app data (", "Temporary files ("],
             "keyboard settings": ["Keyboard settings entries (", "keyboard settings."],
             "sign-in data": ["Sign-in data ("], "input source": ["input source helper."]}
    return {what for what in left if any(word in line for word in words.get(what, [])
                                         for line in (*ended.residues, *problems(ended)))}


def problems(ended):
    return [line for line in ended.log if ": Could not " in line]


def disturbed(ended):
    """What else was changed."""
    found = []
    for name in c.RECORDS:
        before, after = records(ended, name)
        if name == "keyboard":
            if after not in (before, small().settings):
                found.append(f"keyboard settings: {after}")
            continue
        others = [[record for record in records_of(name, plist) if not is_product(name, record)]
                  for plist in (before, after)]
        if others[0] != others[1]:
            found.append(f"{name}: {others[1]}, and not {others[0]}")
    products = {*APPS, *FILES, *c.CACHES, *DOMAINS}
    found += [f"deleted {path}" for path in ended.run.deleted if path not in products]
    found += [f"created {path}" for path in ended.run.created if path not in (*c.OWN_FILES, *DOMAINS)]
    found += [f"changed {path}" for path in ended.run.changed
              if path not in (*c.RECORDS.values(), *DOMAINS)]
    return found


def overtaken(ended):
    """Tools that were started before the previous tool had ended."""
    tools = [tool for tool in ended.run.tools if tool.uid != 0]
    return [" ".join(after.words) for before, after in zip(tools, tools[1:], strict=False)
            if after.started < before.ended]


def try_uninstall(cell):
    """Returns the cell's text for the table, and what is wrong."""
    tool, fault = cell
    model = Model(tool, fault)
    expected = model.uninstall()
    ended = Ended(SCENARIO, "--heartbeat", timeout=600, **order(tool, fault))
    wrong = []

    def compare(what, found, wanted):
        if found != wanted:
            wrong.append(f"{what}: {difference(found, wanted)}")

    compare("status", ended.run.status, 0)
    if wrong:
        return "?", [*wrong, ended.stderr[-2000:]]
    left = stayed(ended)
    accounts, paths = left_records(ended)
    said = reported(ended, left)
    compare("phase", ended.phase, expected.phase)
    compare("residues", ended.residues, expected.residues)
    compare("rows", ended.rows, expected.rows)
    compare("log", ended.log_from_scan, expected.log)
    compare("stayed", left, expected.stayed)
    if ended.phase == "done":
        compare("accounts", accounts, model.accounts_left)
    compare("registrations", paths, model.registered())
    compare("reported", said, expected.reported)
    compare("disturbed", disturbed(ended), [])
    compare("overtaken", overtaken(ended), [])
    compare("not reported without a reason", left - said - set(UNREPORTED), set())
    late = float(ended.stderr.partition("longest wait: ")[2].split()[0])
    waits.append(late)
    if late > RESPONSIVE_SECONDS:
        wrong.append(f"the main thread was busy for {late} s")
    return cell_text(ended, said, left - said), wrong


def cell_text(ended, said, unreported):
    if ended.phase != "done":
        return "failed"
    text = "residues" if ended.residues else "logged" if problems(ended) else "done"
    text += f": {', '.join(sorted(said))}" if said else ""
    return text + (f"; unreported: {', '.join(sorted(unreported))}" if unreported else "")


def try_scan(cell):
    tool, fault = cell
    run = PracticeMac(SCENARIO).run([PROGRAM, "--inventory"], timeout=300,
                                                 **order(tool, fault))
    wanted = "".join(f"{line}\n" for line in Model(tool, fault).scan()[1:])
    whole = "".join(f"{line}\n" for line in Model(None, "").scan()[1:])
    wrong = [] if (run.stdout.decode(), run.status) == (wanted, 0) else [
        f"printed {run.stdout!r}, ended with {run.status}"]
    lines = len(whole.splitlines()) - len(wanted.splitlines())
    return ("all found" if wanted == whole else "its own not found" if lines else
            "its own found in part"), wrong


def text_of(cells):
    """The document; `cells` maps (title, tool, fault) to the cell's text."""
    lines = ["# Faults of the tools", "",
             "How a scan and an uninstall end when one of the tools that they run, or one of its "
             "commands, always fails in some way. Generated by `tests/proof/fault_matrix.py --write`, "
             "which tries every cell in a practice Mac and compares phase, rows, log, what is left of "
             "the product and everything else with a model of the steps.", "",
             "**done**: success is reported; **logged**: success is reported, and a line of the log "
             "says what went wrong; **residues**: the page and the log say that something is left; "
             "**failed**: the run stopped at the apps, and a retry starts anew. After the colon: "
             "what is left on the Mac and reported. After **unreported**: what is left and not "
             "reported.", "",
             "With *late-exit* the tool does its work and then fails. A *silent* one prints nothing, "
             "and keeps its output open until its work is done; *cut* passes on the first half of the "
             "output; with *close-output* the output ends before the work begins, and no other tool "
             "may be started until the work is done.", ""]
    for title, tools in (("Uninstall", TOOLS), ("Scan", SCAN_TOOLS)):
        lines += [f"## {title}", "", f"| fault | {' | '.join(tools)} |",
                  "|---" * (len(tools) + 1) + "|"]
        lines += ["| " + " | ".join([fault, *(cells.get((title, tool, fault), "–")
                                              for tool in tools)]) + " |" for fault in FAULTS]
        lines.append("")
    lines += ["## What is left and not reported", "",
              "These cases must count as success: the step ignores the tool's outcome by design, and "
              "the verification cannot see it either.", ""]
    for what, reason in UNREPORTED.items():
        where = {tool: [fault for fault in FAULTS if what in
                        cells.get(("Uninstall", tool, fault), "").partition("unreported: ")[2].split(", ")]
                 for tool in TOOLS}
        places = "; ".join(f"{tool} ({', '.join(faults)})" for tool, faults in where.items() if faults)
        lines.append(f"- **{what}**: {reason}. {places}.")
    return "\n".join(lines) + "\n"


def committed():
    """The cells of the committed document, in the same form."""
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
    """All cells. A single command of a tool cannot be missing."""
    return [(tool, fault) for tool in tools for fault in FAULTS
            if " " not in tool or fault not in NEVER_STARTS]


def selection(cells):
    """Some of the cells, with each tool and each fault at least twice."""
    times, chosen = Counter(), []
    for cell in random.Random(7).sample(cells, len(cells)):
        if any(times[what] < 2 for what in cell):
            times.update(cell)
            chosen.append(cell)
    return chosen


def main(arguments):
    small()
    tried = {"Uninstall": (try_uninstall, all_cells(TOOLS)),
             "Scan": (try_scan, all_cells(SCAN_TOOLS))}
    named = arguments[arguments.index("--tool") + 1] if "--tool" in arguments else None
    found, failures = {}, []
    for title, (attempt, cells) in tried.items():
        if named:
            cells = [cell for cell in cells if cell[0] == named]
        elif "--selection" in arguments:
            cells = selection(cells)
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
    print(f"{len(found)} cells tried, {len(failures)} wrong; "
          f"the longest wait for the main thread was {max(waits, default=0):.2f} s")
    return 1 if failures or not found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
