"""Installs a harmless product in this account, removes it by the buttons, and judges what is left.

The practice Mac's scenario files say what is installed, the proofs' home model what must be
removed. Written for Python 3.9.
"""

import os
import plistlib
import re
import shutil
import subprocess
import sys
from pathlib import Path

import judge
import window
from evidence import until

CHECKOUT = Path(__file__).resolve().parent.parent.parent
sys.path[1:1] = [str(CHECKOUT / folder) for folder in ("practice-mac", "tests", "tests/proof")]

import catalogue as c  # noqa: E402
from home_model import HomeModel  # noqa: E402

MARKER = "/Users/Shared/this Mac may be thrown away"
KEYBOARD = "com.apple.HIToolbox"
ATTENDED = ["parts/settings", "parts/system-bundles", "parts/user-bundles", "parts/system-running"]
UNATTENDED = ["parts/settings", "parts/user-bundles", "parts/user-running"]
# Names that resemble the product's. A difference of case is none on a Mac's file system.
LOOK_ALIKES = {"of": ["~/Applications/kovra.app", "~/Library/Input Methods/kovraInput.app",
                      "~/Library/LaunchAgents/ai.kovra.tis-helper.plist",
                      "~/Library/Preferences/group.ai.kovra.shared.plist",
                      "~/Library/Logs/kovra", "~/Library/Application Support/kovra",
                      "~/Library/Caches/ai.kovra.inputmethod.KovraInput"],
               "ways": ["longer", "shorter", "letter"], "each": 3}
# The program behind all names of the product's processes: it waits until it is killed.
WAITING = "#include <unistd.h>\nint main(void) { for (;;) pause(); }\n"


class Mac:
    """Writes a furnisher's files on a real Mac, in place of a practice Mac's layer; by sudo, which
    asks for a password, where the user may not write."""

    def __init__(self, evidence):
        self._evidence = evidence

    def make_folder(self, path, mode=None):
        path = Path(path)
        if not path.is_dir():
            above = next(folder for folder in path.parents if folder.is_dir())
            if os.access(above, os.W_OK):
                path.mkdir(parents=True)
            else:
                self._as_root("/bin/mkdir", "-p", path)
        if mode is not None:
            path.chmod(mode)

    def write(self, path, content, mode=None):
        self.make_folder(os.path.dirname(path))
        if not os.access(os.path.dirname(path), os.W_OK):
            copy = self._evidence.path("to-be-copied")
            copy.write_bytes(content)
            self._as_root("/bin/cp", copy, path)
            copy.unlink()
            return
        Path(path).write_bytes(content)
        os.chmod(path, 0o644 if mode is None else mode)

    def copy(self, source, path, mode=0o755):
        self.write(path, Path(source).read_bytes(), mode)
        if not os.access(path, os.X_OK):
            self._as_root("/bin/chmod", "755", path)

    def link(self, path, to):
        self.make_folder(os.path.dirname(path))
        os.symlink(to, path)

    @staticmethod
    def has(path):
        return os.path.lexists(path)

    def _as_root(self, *words):
        subprocess.run(["/usr/bin/sudo", *map(str, words)], check=True)


class Places:
    """Resolves the user's folders in a scenario's paths."""

    def __init__(self, evidence):
        self.home = str(Path.home())

        def asked(name):
            return evidence.run(name, ["/usr/bin/getconf", name]).out.strip()
        self.temporary, self.cache = asked("DARWIN_USER_TEMP_DIR"), asked("DARWIN_USER_CACHE_DIR")

    def path(self, text):
        if text == "~" or text.startswith("~/"):
            text = self.home + text[1:]
        return text.replace("{temporary}", self.temporary).replace("{cache}", self.cache)

    def canonical(self, path):
        """The path as the home model spells it."""
        for here, there in ((self.temporary, f"{c.TEMPORARY}/"), (self.cache, f"{c.CACHE}/"),
                            (f"{self.home}/", f"{c.HOME}/")):
            if path.startswith(here):
                return there + path[len(here):]
        return path


class Product:
    """The harmless product."""

    def __init__(self, evidence, parts, without=()):
        from launcher import scenario
        self._evidence = evidence
        self.places = Places(evidence)
        self.content = scenario.combined(parts)
        self._without = without
        self._running = []

    def furnish(self):
        from launcher.furnish import Furnisher
        from launcher.processes import install_processes
        waiting = self._evidence.path("waiting")
        waiting.with_suffix(".c").write_text(WAITING)
        built = self._evidence.run("compile", ["/usr/bin/cc", "-o", waiting,
                                               waiting.with_suffix(".c")])
        if built.status != 0:
            raise RuntimeError(f"the compiler ends with {built.status}")
        layer = Mac(self._evidence)
        furnisher = Furnisher(layer, self.places, waiting)
        for kind in ("folder", "bundle", "file"):
            for entry in self.content.get(kind, []):
                if not entry["path"].startswith(self._without):
                    getattr(furnisher, f"put_{kind}")(**entry)
        furnisher.put_look_alikes(**LOOK_ALIKES)
        jobs = install_processes(Listed(self.content), furnisher)
        self._preferences()
        self._keychain()
        self._register()
        for job in jobs:
            if not self._loaded(job):
                self._running.append(subprocess.Popen([job["program"], *job["arguments"]],
                                                      stdin=subprocess.DEVNULL,
                                                      start_new_session=True))

    def _loaded(self, job):
        """Loads the job as an agent; returns whether launchd accepted it."""
        if "label" not in job:
            return False
        path = self.places.path(f"~/Library/LaunchAgents/{job['label']}.plist")
        return self._evidence.run("load-agent", ["/bin/launchctl", "bootstrap",
                                                 f"gui/{os.getuid()}", path]).status == 0

    def _preferences(self):
        for domain, values in self.content["preferences"].items():
            merged = read_domain(self._evidence, domain)
            for key, value in values.items():
                merged[key] = merged.get(key, []) + value if isinstance(value, list) else value
            self._evidence.run(f"import-{domain}", ["/usr/bin/defaults", "import", domain, "-"],
                               stdin=plistlib.dumps(merged))

    def _keychain(self):
        for item in self.content["keychain_item"]:
            for number in range(item.get("count", 1)):
                # Account and service identify an item, so each needs another service.
                service = item["service"] + (f".{number}" if number else "")
                self._evidence.run("add-keychain-item", [
                    "/usr/bin/security", "add-generic-password", "-a", item["account"],
                    "-s", service, "-w", "harmless"])

    def _register(self):
        for record in self.content["registered"]:
            path = self.places.path(record["path"])
            if os.path.isdir(path):
                self._evidence.run("register", [c.LSREGISTER, "-f", path])

    def stop(self):
        for process in self._running:
            if process.poll() is None:
                process.kill()
            process.wait()


class Listed:
    """The content of a scenario, with the method that the launcher's functions call."""

    def __init__(self, content):
        self._content = content

    def list(self, key):
        return self._content.get(key, [])


def read_domain(evidence, domain):
    captured = evidence.run(f"export-{domain}", ["/usr/bin/defaults", "export", domain, "-"])
    try:
        return plistlib.loads(captured.out.encode())
    except Exception:  # the domain does not exist
        return {}


def keychain_items(dump):
    """Class and account of each item in the output of `security dump-keychain`."""
    found, kind = [], None
    for line in dump.splitlines():
        start = re.match(r'class: (?:"(\w+)"|(0x\w+))', line)
        if start:
            kind = start[1] or start[2]
        account = re.match(r'\s+"acct"<blob>=(?:"(.*)"|(0x.*)|<NULL>|)$', line)
        if account and kind:
            found.append({"class": kind, "account": account[1] or account[2] or ""})
    return found


class State:
    """The files, settings, keychain items, registrations, processes and jobs of this Mac."""

    def __init__(self, evidence, places):
        self.kinds = {}
        folders = {os.path.dirname(path) for path in (
            *c.SYSTEM_APPS, *c.USER_APPS, *c.COUNTED, *c.CACHES, *c.CANONICAL, *c.DELETED_DOMAINS,
            c.SHARED_TEMPORARY, f"{c.TEMPORARY}/x")}
        for folder in folders:
            real = folder.replace(c.TEMPORARY, places.temporary.rstrip("/")).replace(
                c.CACHE, places.cache.rstrip("/")).replace(c.HOME, places.home)
            for name in os.listdir(real) if os.path.isdir(real) else []:
                path = f"{real}/{name}"
                self.kinds[places.canonical(path)] = judge.kind_of(path, os.lstat, os.path.exists)
        self.settings = read_domain(evidence, KEYBOARD)
        dump = evidence.run("keychain", ["/usr/bin/security", "dump-keychain"])
        self.keychain = keychain_items(dump.out)
        self.registered = evidence.run("registrations", [c.LSREGISTER, "-dump"], timeout=300).out
        self.processes = evidence.run("processes", ["/bin/ps", "-axo", "command="]).out
        self.jobs = evidence.run("agents", ["/bin/launchctl", "list"]).out


class Home:
    """The attributes that the home model reads."""

    def __init__(self, kinds):
        self.kinds, self.domains, self.programs = kinds, [], []


# The system creates and removes files here by itself.
BUSY = ("/tmp/", "/var/folders/", *(f"{c.HOME}/Library/{folder}/" for folder in (
    "Caches", "HTTPStorages", "Saved Application State")))


def files_verdict(before, after):
    """Judges the kinds of the paths before and after. By the home model the product's are removed,
    and no others."""
    model = HomeModel(Home(before), {"keychain": []})
    wanted = set(model.deleted())
    lost = sorted(path for path in before if path not in after and path not in wanted
                  and not path.startswith(BUSY))
    left = sorted(path for path in wanted if path in after)
    problems = [f"still there: {path}" for path in left] + [f"lost: {path}" for path in lost]
    return judge.compared("the product's files are removed and no others", problems,
                          f"{len(wanted)} removed, {len(after)} kept")


def keychain_verdict(before, after):
    if not any(item["account"].startswith("ai.kovra.") for item in before):
        return judge.not_tried("a keychain that could be written")
    model = HomeModel(Home({}), {"keychain": before})
    return judge.same("the product's sign-in items are removed and no others", after,
                      model.keychain())


def keyboard_verdict(before, after):
    if not c.without_product(before)[1]:
        return judge.not_tried("keyboard settings that could be written")
    settings, _ = c.without_product(before)
    problems = [f"{key} is {after.get(key)}" for key in c.SETTINGS_KEYS
                if (after.get(key) or []) != (settings.get(key) or [])]
    return judge.compared("the product's entries are removed and no others", problems,
                          f"{len(c.SETTINGS_KEYS)} lists as wanted")


def running_verdict(processes, jobs, places):
    """Judges that nothing of the product runs, and no agent of it is loaded."""
    programs = tuple(f"{places.path(path.replace(c.HOME, '~'))}/Contents/MacOS/"
                     for path in c.CANONICAL)
    problems = [f"still runs: {line}" for line in processes.splitlines()
                if line.startswith(programs)]
    problems += [f"still loaded: {line}" for line in jobs.splitlines()
                 if line.split("\t")[-1] in c.LABELS]
    return judge.compared("nothing of the product runs or is loaded", problems, "nothing")


def removal(evidence, allowed, program, label, seconds):
    """Presses "Uninstall", or "Clean up anyway"; returns the last page and the log's lines."""
    with window.Session(evidence, allowed, program) as session:
        page = session.await_page(("ready", "nothing-found"))
        evidence.row(f"{label}: the page before, its picture", lambda: window.picture_verdict(
            evidence, allowed, session, page, f"{label}-before"))
        evidence.row(f"{label}: the page before, its elements", lambda: window.tree_verdict(
            evidence, allowed, session))
        pressed = session.press({"nothing-found": "Clean up anyway"}.get(page, "Uninstall"))
        if not pressed["pressed"]:
            return None, session.lines()
        if session.await_page(("uninstalling",), 5) is not None:
            session.photograph(f"{label}-meanwhile")
        end = session.await_page(("done", "residues", "failed"), seconds)
        session.photograph(f"{label}-end")
        if end is not None:
            evidence.row(f"{label}: the page after, its picture", lambda: window.picture_verdict(
                evidence, allowed, session, end, f"{label}-after"))
            evidence.row(f"{label}: the page after, its elements", lambda: window.tree_verdict(
                evidence, allowed, session))
        evidence.write(f"{label}-elements.txt", str(session.tree()))
        session.end()
        return end, session.lines()


def removal_rows(evidence, allowed, app, unattended):
    # From macOS 15 on the system asks before another program removes group containers.
    without = ("~/Library/Group Containers/",) if unattended else ()
    product = Product(evidence, UNATTENDED if unattended else ATTENDED, without)
    if not unattended:
        product.content["folder"].append({"path": "/tmp/kovra", "files": ["install.lock"]})
    try:
        product.furnish()
        places = product.places
        before = State(evidence, places)
        end, lines = removal(evidence, allowed, app / "Contents/MacOS/kovraUninstaller", "removal",
                             120 if unattended else 600)
        after = State(evidence, places)
    finally:
        product.stop()
    evidence.write("removal-log.txt", "\n".join(lines) + "\n")
    told = [line for line in lines if "residues" in line]
    evidence.row("removal: the end", lambda: judge.compared(
        "Goodbye., and no residues", [] if end == "done" else [f"the page {end}; {told}"], end))
    evidence.row("removal: files", lambda: files_verdict(before.kinds, after.kinds))
    evidence.row("removal: keychain", lambda: keychain_verdict(before.keychain, after.keychain))
    evidence.row("removal: keyboard settings", lambda: keyboard_verdict(before.settings,
                                                                        after.settings))
    canonical = {places.path(path) for path in (
        "~/Applications/kovra.app", "~/Applications/KovraAgent.app", "/Applications/kovra.app",
        "/Applications/KovraAgent.app")}
    evidence.row("removal: registrations", lambda: judge.registrations(
        before.registered, after.registered, canonical, str(app)))
    evidence.row("removal: processes and agents", lambda: running_verdict(
        after.processes, after.jobs, places))


def changed_copy(evidence, app, name, change):
    """Makes a changed copy of the application and signs it; returns its program."""
    copy = evidence.path(name) / app.name
    shutil.rmtree(copy, ignore_errors=True)
    evidence.run("copy", ["/usr/bin/ditto", app, copy])
    change(copy / "Contents/Resources")
    evidence.run("sign-copy", ["/usr/bin/codesign", "--force", "--options", "runtime", "--sign",
                               "-", copy])
    return copy / "Contents/MacOS/kovraUninstaller"


def log_show_verdict(evidence, allowed, app):
    program = changed_copy(evidence, app, "without-helper",
                           lambda resources: (resources / "tistool").unlink())
    with window.Session(evidence, allowed, program) as session:
        page = session.await_page(("ready", "nothing-found"))
        session.press("Uninstall" if page == "ready" else "Clean up anyway")
        session.await_page(("done", "residues", "failed"), 120)
        session.end()
    shown = evidence.run("log-show", ["/usr/bin/log", "show", "--last", "10m", "--style", "compact",
                                      "--predicate", 'process == "kovraUninstaller"'], timeout=300)
    return judge.log_show(shown.status, shown.out)


def environment_verdict(evidence, allowed, app):
    """In a copy of the application, root's script reports its environment and removes nothing."""
    report = Path("/tmp/check-on-a-mac-root")
    traces = [Path("/tmp/check-on-a-mac-trace"), Path("/tmp/check-on-a-mac-ordered")]
    startup = Path(judge.HOSTILE["BASH_ENV"])
    for path in (report, *traces):
        if path.exists():
            subprocess.run(["/usr/bin/sudo", "/bin/rm", str(path)], check=True)
    startup.write_text(f"touch {traces[1]}\n")

    def change(resources):
        (resources / "uninstall.sh").write_text(
            f"#!/bin/sh\n{{ id -u; id -ru; pwd; env; }} >{report}\n")
    program = changed_copy(evidence, app, "reporting-copy", change)
    product = Product(evidence, ["parts/system-bundles"])
    product.content.update(preferences={}, keychain_item=[])
    product.furnish()
    folder = evidence.path("removed-folder")
    folder.mkdir(exist_ok=True)
    environment = {**os.environ, **judge.HOSTILE}
    with window.Session(evidence, allowed, program, environment=environment,
                        folder=folder) as session:
        page = session.await_page(("ready",))
        folder.rmdir()
        if page is None or not session.press("Uninstall")["pressed"]:
            return judge.Verdict(judge.WRONG, "the page is not ready", "the page ready, to press")
        until(report.exists, 300)
        session.await_page(("done", "residues", "failed"), 60)
        session.end()
    startup.unlink()
    text = report.read_text() if report.exists() else ""
    evidence.write("as-root.txt", text)
    return judge.as_root(text, [path for path in traces if path.exists()])


WITH_PRODUCT = "--with-product, on a Mac that may be thrown away"


def rows(evidence, allowed, app, with_product, unattended):
    """Tries the rows that remove something."""
    wanted = "what docs/release.md says"
    if not with_product or not allowed["accessibility"]:
        lacking = WITH_PRODUCT if not with_product else "Accessibility for the terminal, to press"
        for name in ("what reaches root", "removal", "the program's error in the system's log"):
            evidence.row(name, lambda: judge.not_tried(lacking, wanted))
    else:
        if unattended:
            evidence.row("what reaches root", lambda: judge.not_tried(
                "a person who enters an administrator's password", wanted))
        else:
            evidence.row("what reaches root", lambda: environment_verdict(evidence, allowed, app))
        try:
            removal_rows(evidence, allowed, app, unattended)
        except ImportError as error:
            evidence.row("removal", lambda: judge.not_tried(f"a reader of TOML ({error})"))
        evidence.row("the program's error in the system's log",
                     lambda: log_show_verdict(evidence, allowed, app))
    evidence.row("removal: privacy records", lambda: judge.not_tried(
        "a way to read them without disabling the system's protection", "no record of the product"))
