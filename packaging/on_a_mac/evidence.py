"""The folder of evidence: the output of every tool, the pictures, and a summary of the rows.

Written for Python 3.9.
"""

import json
import re
import subprocess
import time
import traceback
from pathlib import Path
from typing import NamedTuple

import judge

EXIT = {judge.RIGHT: 0, judge.WRONG: 1, judge.NOT_TRIED: 2}


class Captured(NamedTuple):
    status: int
    out: str
    err: str

    @property
    def text(self):
        return self.out + self.err


class Evidence:
    def __init__(self, folder):
        self.folder = Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.rows = []
        self._runs = 0

    def path(self, name):
        return self.folder / name

    def write(self, name, text):
        self.path(name).write_text(text, encoding="utf-8", errors="surrogateescape")

    def run(self, name, words, timeout=120, stdin=None, again=False):
        """Runs a tool of the Mac by its absolute path and keeps its output; with `again`, only that
        of the last run. The status is 127 if the tool is missing, 124 if it takes too long."""
        words = [str(word) for word in words]
        try:
            done = subprocess.run(words, input=stdin, capture_output=True, timeout=timeout,
                                  check=False)
            captured = Captured(done.returncode, *(part.decode(errors="replace")
                                                   for part in (done.stdout, done.stderr)))
        except FileNotFoundError as error:
            captured = Captured(127, "", str(error))
        except subprocess.TimeoutExpired as late:
            captured = Captured(124, (late.stdout or b"").decode(errors="replace"),
                                f"not ended after {timeout} s\n")
        self._runs += not again
        self.write(f"last-{name}.txt" if again else f"{self._runs:03d}-{name}.txt",
                   f"$ {' '.join(words)}\n{captured.out}--- standard error\n{captured.err}"
                   f"--- status {captured.status}\n")
        return captured

    def row(self, name, check):
        """Tries one row: `check` returns its verdict. An exception in the check is shown, and counts
        as wrong."""
        try:
            verdict = check()
        except Exception:  # one row that fails does not stop the others
            verdict = judge.Verdict(judge.WRONG, traceback.format_exc(limit=-4).strip(),
                                    "a check that ends")
        self.rows.append((name, verdict))
        print(f"{verdict.state:9}  {name}: {verdict.saw}", flush=True)
        if verdict.state == judge.WRONG:
            print(f"{'':9}  wanted: {verdict.wanted}", flush=True)

    def status(self):
        states = {verdict.state for _, verdict in self.rows}
        for state in (judge.WRONG, judge.NOT_TRIED):
            if state in states:
                return EXIT[state]
        return EXIT[judge.RIGHT]

    def summarise(self, heading):
        lines = [heading, ""]
        lines += [f"{verdict.state:9}  {name}\n           saw: {verdict.saw}\n"
                  f"           wanted: {verdict.wanted}" for name, verdict in self.rows]
        self.write("summary.txt", "\n".join(lines) + "\n")
        rows = [{"row": name, **verdict._asdict()} for name, verdict in self.rows]
        self.write("summary.json", json.dumps(rows, indent=1, ensure_ascii=False))
        counts = [f"{sum(verdict.state == state for _, verdict in self.rows)} {state}"
                  for state in EXIT]
        print(f"{', '.join(counts)}; the evidence is in {self.folder}")


def until(question, seconds):
    """Asks until the answer is true or the time is up; returns the last answer."""
    end = time.monotonic() + seconds
    while True:
        answer = question()
        if answer or time.monotonic() > end:
            return answer
        time.sleep(0.3)


def file_name(text):
    return re.sub(r"[^a-z0-9]+", "-", text.lower()).strip("-")
