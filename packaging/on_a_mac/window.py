"""Starts the program, reads and presses its window's elements, and takes pictures.

Written for Python 3.9.
"""

import json
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

import judge
from evidence import until
from picture import Picture, page_picture

HERE = Path(__file__).resolve().parent
CHECKOUT = HERE.parent.parent
sys.path.insert(1, str(CHECKOUT / "tests"))

import catalogue  # noqa: E402

PICTURES = CHECKOUT / "docs/pictures"
SRGB = "/System/Library/ColorSync/Profiles/sRGB Profile.icc"
LOG = Path(catalogue.LOG.replace(catalogue.HOME, str(Path.home())))
MARKER = LOG.parent / ".session_active"


def ask(evidence, *words):
    """The answer of elements.py, or None if it fails."""
    captured = evidence.run(f"elements-{words[0]}", [sys.executable, "-B", HERE / "elements.py",
                                                     *words], again=True)
    try:
        return json.loads(captured.out)
    except ValueError:
        return None


def permissions(evidence):
    return ask(evidence, "permissions") or {"accessibility": False, "screen": False}


def log_lines():
    try:
        return LOG.read_text(encoding="utf-8", errors="replace").splitlines()
    except FileNotFoundError:
        return []


def bitmap(evidence, source, name):
    """Converts a picture to sRGB and reads it."""
    target = evidence.path(f"{name}.bmp")
    evidence.run(f"sips-{name}", ["/usr/bin/sips", "-s", "format", "bmp", "--matchTo",
                                  SRGB, source, "--out", target])
    with open(target, "rb") as file:
        return Picture(file.read())


class Session:
    """One run of the program. `await_page` comes first; `end` closes the window."""

    def __init__(self, evidence, allowed, program, arguments=(), environment=None, folder=None):
        self._evidence, self._allowed = evidence, allowed
        self._lines_before = len(log_lines())
        self._process = subprocess.Popen([str(program), *arguments], env=environment, cwd=folder,
                                         stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                         stderr=subprocess.DEVNULL)
        self.id = self._process.pid

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._process.poll() is None:
            self._process.kill()
            self._process.wait()

    def tree(self):
        return ask(self._evidence, "tree", self.id) or {"windows": []}

    def page(self):
        return judge.page_of(self.tree()) if self._allowed["accessibility"] else None

    def await_page(self, wanted=("ready", "nothing-found", "done", "residues", "failed"),
                   seconds=60):
        """Waits until the page is one of these and returns its name. Without the permission to read
        the window it waits for the scan's line in the log, and returns None."""
        if self._allowed["accessibility"]:
            return until(lambda: next((name for name in (self.page(),) if name in wanted), None),
                         seconds)
        until(lambda: any("Preflight scan:" in line for line in self.lines()), seconds)
        return None

    def lines(self):
        """The log's lines of this session so far."""
        lines = log_lines()
        # A log that had grown too large was moved aside when this session began.
        return lines[self._lines_before:] if len(lines) >= self._lines_before else lines

    def press(self, title):
        return ask(self._evidence, "press", self.id, title) or {"pressed": False}

    def photograph(self, name):
        """Takes a picture of the window alone; returns its path, or None."""
        listed = ask(self._evidence, "windows", self.id)
        if not listed:
            return None
        path = self._evidence.path(f"{name}.png")
        self._evidence.run(f"screencapture-{name}",
                           ["/usr/sbin/screencapture", "-x", "-o", "-l", listed[0]["id"], path])
        return path if path.exists() else None

    def signal(self, number, seconds=20):
        """Sends a signal and returns the status with which the program ends."""
        self._process.send_signal(number)
        return self._ended(seconds)

    def end(self):
        """Closes the window and returns the log's lines of the session. If it may not, kills the
        program, removes its marker and returns None."""
        if self._allowed["accessibility"]:
            ask(self._evidence, "close", self.id)
            if self._ended(20) is not None:
                return self.lines()
        self._process.kill()
        self._process.wait()
        if not self._allowed["accessibility"] and MARKER.exists():
            MARKER.unlink()
        return None

    def _ended(self, seconds):
        try:
            return self._process.wait(timeout=seconds)
        except subprocess.TimeoutExpired:
            return None


def picture_verdict(evidence, allowed, session, page, label):
    """Takes a picture of the window and judges it. If the page is unknown, it must be one of those
    that follow the scan."""
    wanted = "every colour and place of the page"
    if not allowed["screen"]:
        return judge.not_tried("Screen Recording for the terminal (System Settings, Privacy & "
                               "Security)", wanted)
    path = session.photograph(label)
    if path is None:
        return judge.Verdict(judge.WRONG, "there is no window to photograph", wanted)
    picture = bitmap(evidence, path, label)
    verdicts = []
    for name in [page] if page else ["nothing-found", "ready"]:
        shutil.copy(PICTURES / f"{name}.png", evidence.path(f"{label}-ours-{name}.png"))
        ours = bitmap(evidence, PICTURES / f"{name}.png", f"{label}-ours-{name}")
        verdicts.append(page_picture(name, picture, ours))
    return next((verdict for verdict in verdicts if verdict.state == judge.RIGHT), verdicts[-1])


def tree_verdict(evidence, allowed, session):
    if not allowed["accessibility"]:
        return judge.not_tried("Accessibility for the terminal (System Settings, Privacy & "
                               "Security)", "each text and button, read by accessibility")
    return judge.accessibility(session.tree())


def window_rows(evidence, allowed, program):
    """Tries the rows of an ordinary session, started with an argument that is not an option."""
    with Session(evidence, allowed, program, ["word"]) as session:
        page = session.await_page()
        if allowed["accessibility"] and page is None:
            evidence.row("the window", lambda: judge.Verdict(
                judge.WRONG, "no page within a minute", "the page after the scan"))
        evidence.row("the window's colours and places", lambda: picture_verdict(
            evidence, allowed, session, page, "window"))
        evidence.row("texts and elements by accessibility, an argument on the command line "
                     "opening no alert", lambda: tree_verdict(evidence, allowed, session))
        evidence.row("the session in the log", lambda: ended_verdict(allowed, session))


def ended_verdict(allowed, session):
    lines = session.end()
    if not allowed["accessibility"]:
        return judge.not_tried("Accessibility for the terminal, to close the window")
    return judge.session(lines or session.lines())


REPORTS = (Path.home() / "Library/Logs/DiagnosticReports", Path("/Library/Logs/DiagnosticReports"))


def reports():
    found = set()
    for folder in REPORTS:
        if folder.is_dir() and os.access(folder, os.R_OK):
            found |= {path.name for path in folder.iterdir()
                      if "kovrauninstaller" in path.name.lower()}
    return found


def crash_verdict(evidence, allowed, program):
    """Runs two sessions: the first gets the signal, the second reports it."""
    known = reports()
    with Session(evidence, allowed, program) as first:
        until(MARKER.exists, 30)
        first.await_page()
        before = len(first.lines())
        status = first.signal(signal.SIGSEGV, 60)
        ended = first.lines()[before:]
    until(lambda: reports() - known, 60)
    new = sorted(reports() - known)
    with Session(evidence, allowed, program) as second:
        second.await_page()
        restarted = second.lines()
        second.end()
    evidence.write("crash.txt", "\n".join(["ended:", *ended, "restarted:", *restarted]) + "\n")
    return judge.crash(status, ended, restarted, new)


def downloads_verdict(evidence, allowed, app):
    """Opens a copy in Downloads, as the Finder does."""
    wanted = "the same page from Downloads as from elsewhere, and the scan in the log"
    folder = Path.home() / "Downloads/check-on-a-mac"
    copy = folder / app.name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    try:
        evidence.run("copy-to-downloads", ["/usr/bin/ditto", app, copy])
        before = len(log_lines())
        opened = evidence.run("open-from-downloads",
                              ["/usr/bin/open", "-n", "-W", copy, "--args", "--inventory"])
        started = evidence.run("inventory-from-downloads",
                               [copy / "Contents/MacOS/kovraUninstaller", "--inventory"])
        elsewhere = evidence.run("inventory-from-elsewhere",
                                 [app / "Contents/MacOS/kovraUninstaller", "--inventory"])
        problems = []
        if opened.status != 0:
            problems.append(f"open: {opened.text.strip()}")
        if (started.status, started.out) != (elsewhere.status, elsewhere.out):
            problems.append("--inventory prints something else from there")
        if sum("Preflight scan:" in line for line in log_lines()[before:]) < 3:
            problems.append("the log lacks a scan")
        with Session(evidence, allowed, copy / "Contents/MacOS/kovraUninstaller") as session:
            page = session.await_page()
            verdict = picture_verdict(evidence, allowed, session, page, "from-downloads")
            if verdict.state == judge.WRONG:
                problems.append(verdict.saw)
            session.end()
        return judge.compared(wanted, problems, f"the page {page}" if page else "the scan")
    finally:
        shutil.rmtree(folder, ignore_errors=True)
