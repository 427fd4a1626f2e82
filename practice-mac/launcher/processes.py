"""What runs on the Mac: the tiny launchd's orders, and the files of the launch agents."""

import plistlib

from .places import USER_ID
from .layer import STAFF

PATH = "/usr/bin:/bin:/usr/sbin:/sbin"


def install_processes(scenario, furnisher):
    """Writes programs and agent files of the scenario; gives launchd's list of jobs."""
    jobs = []
    for entry in scenario.list("service"):
        jobs.append(_job(furnisher, entry["program"], entry, keepAlive=True,
                         label=entry["label"]))
    for entry in scenario.list("process"):
        jobs.append(_job(furnisher, entry["program"], entry,
                         ignoresTermination=entry.get("ignores_termination", False)))
    for entry in scenario.list("agent"):
        _write_agent(furnisher, entry)
        if entry.get("loaded", True):
            jobs.append(_job(furnisher, entry["program"], entry, label=entry["label"],
                             keepAlive=entry.get("keep_alive", False),
                             ignoresTermination=entry.get("ignores_termination", False)))
    return jobs


def _job(furnisher, program, entry, **more):
    program = furnisher.places.path(program)
    if not furnisher.layer.has(program):
        furnisher.executable(program)
    return {"program": program, "arguments": entry.get("arguments", []),
            "user": USER_ID, "group": STAFF, **more}


def _write_agent(furnisher, entry):
    places = furnisher.places
    label = entry["label"]
    path = places.path(entry.get("path", f"~/Library/LaunchAgents/{label}.plist"))
    description = {
        "Label": entry.get("label_in_file", label),
        "ProgramArguments": [places.path(entry["program"]), *entry.get("arguments", [])],
        "RunAtLoad": True,
        "KeepAlive": entry.get("keep_alive", False),
    }
    if not description["Label"]:
        del description["Label"]
    furnisher.layer.write(path, plistlib.dumps(description))
