"""For tests: boots practice Macs and says what happened.

    run = PracticeMac("installed").run(["/usr/bin/killall", "cfprefsd"])
    assert run.status == 0 and run.tools[0].name == "killall"
"""

import base64
import json
import os
import shutil
import subprocess
import tempfile
import weakref
from dataclasses import dataclass
from pathlib import Path, PurePosixPath

LAUNCHER = Path(__file__).resolve().parent.parent / "practice-mac"
BUILD_VARIABLE = "PRACTICE_MAC_BUILD"
# By how much time limits are multiplied on a slow system.
FACTOR_VARIABLE = "PRACTICE_MAC_TIME_FACTOR"


def _environment():
    """This process's, without what of it would be handed on into the Mac: neither the locale of
    whoever runs the tests, nor the one that Python sets where there is none."""
    return {name: value for name, value in os.environ.items() if not name.startswith("LC_")} | {
        "PYTHONCOERCECLOCALE": "0"}


def time_limit(seconds):
    """The seconds, multiplied by the factor of a slow system."""
    return seconds * int(os.environ.get(FACTOR_VARIABLE, "1"))


@dataclass(frozen=True)
class ToolRun:
    """One line of the transcript."""

    tool: str
    arguments: tuple
    stdin: bytes | None
    status: int
    signal: int
    uid: int
    environment: tuple
    folder: str | None
    started: int        # nanoseconds of the Mac's clock
    ended: int

    @property
    def name(self):
        return PurePosixPath(self.tool).name

    @property
    def words(self):
        """The command line from the tool's name on."""
        return [self.name, *self.arguments]

    @classmethod
    def of(cls, record):
        stdin = None if record["stdin"] is None else base64.b64decode(record["stdin"])
        return cls(record["tool"], tuple(record["argv"]), stdin, record["status"],
                   record["signal"], record["uid"], tuple(record["environment"]),
                   record["folder"], record["started"], record["ended"])


class Run:
    """What a run gave. Its folder lives as long as this object does."""

    def __init__(self, folder, status, stdout, stderr):
        self._folder = folder
        weakref.finalize(self, shutil.rmtree, folder)
        self.status, self.stdout, self.stderr = status, stdout, stderr
        self.upper = folder / "upper"
        report = self._read("report") or "{}"
        self._changes = json.loads(report)
        self.tools = [ToolRun.of(json.loads(line)) for line in self._read("tools").splitlines()]
        self.syslog = self._read("syslog").splitlines()

    @property
    def created(self):
        """The paths that the run created, sorted; so for the two below."""
        return self._paths("created")

    @property
    def changed(self):
        return self._paths("changed")

    @property
    def deleted(self):
        """A folder that is gone stands for all that was in it."""
        return self._paths("deleted")

    @property
    def changes(self):
        """The launcher's whole report: lists of dictionaries under created, changed, deleted."""
        return self._changes

    def written(self, path):
        """The bytes that the run left in the file at path."""
        return (self.upper / path.lstrip("/")).read_bytes()

    def _paths(self, what):
        return sorted(entry["path"] for entry in self._changes.get(what, []))

    def _read(self, name):
        return (self._folder / name).read_text(errors="surrogateescape")


class PracticeMac:
    """A scenario (its name, or the path of a .toml file) to run commands in, each on a new Mac."""

    def __init__(self, scenario, *, build=None, bundle=None):
        self._scenario = str(scenario)
        self._build = build or os.environ.get(BUILD_VARIABLE)
        self._bundle = bundle

    def run(self, command, *, stdin=b"", faults=(), before=(), environment=None, as_root=False,
            answers=(), timeout=120):
        """Boots, runs the command (a list) and gives the Run."""
        place = Path(tempfile.mkdtemp(prefix="practice-mac-"))
        try:
            done = self._run_in(place, command, stdin, faults, before, environment, as_root,
                                answers, timeout)
        except BaseException:
            shutil.rmtree(place)
            raise
        return Run(place, done.returncode, done.stdout, done.stderr)

    def _run_in(self, place, command, stdin, faults, before, environment, as_root, answers,
                timeout):
        for name in ("report", "tools", "syslog"):
            (place / name).touch()
        (place / "upper").mkdir()
        line = [LAUNCHER, "run", self._scenario, "--report", place / "report", "--transcript",
                place / "tools", "--syslog", place / "syslog", "--upper-copy", place / "upper"]
        line += ["--build", self._build] if self._build else []
        line += ["--bundle", self._bundle] if self._bundle else []
        line += ["--as-root"] if as_root else []
        for fault in faults:
            line += ["--fault", fault]
        for script in before:
            line += ["--before", script]
        for answer in answers:
            line += ["--answer", answer]
        for name, value in (environment or {}).items():
            line += ["--env", f"{name}={value}"]
        return subprocess.run([*map(str, line), "--", *map(str, command)], input=stdin,
                              capture_output=True, timeout=time_limit(timeout), check=False,
                              env=_environment())

    def shell(self, script, **options):
        """Runs a shell script."""
        return self.run(["/bin/sh", "-c", script], **options)
