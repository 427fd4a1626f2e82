"""One practice Mac from its first layer to what is known after the run."""

import os
import plistlib
import shutil
import uuid
from dataclasses import dataclass, field
from pathlib import Path

from . import mac_programs
from .furnish import Furnisher
from .places import USER_ID, Places
from .layer import STAFF, Layer
from .processes import PATH, install_processes
from .root import CannotBoot
from .tools import (CONTROL, OWN_FOLDER, LAUNCHD, PROCESS_PROGRAM, REAL, TOOLS, TOOLS_PROGRAM)

# Folders of the host whose contents are hidden inside, with their modes.
HIDDEN = {"/tmp": 0o1777, "/var/tmp": 0o1777, "/root": 0o700, "/home": 0o755,
          "/run": 0o755, "/Users": 0o755}

# The coverage profile of programs; its folder is writable inside.
PROFILE = "LLVM_PROFILE_FILE"

# The folder for the emulator's records of which code of Mac programs it has executed; writable inside.
CODE_RUN = "PRACTICE_MAC_CODE_RUN"

# Of the caller's environment only this comes along: time and language, the display and the
# terminal, and what sanitizers and coverage read.
KEPT = ("TZ", "LANG", "TERM", "COLORTERM", "DISPLAY", PROFILE)
KEPT_ENDINGS = ("SAN_OPTIONS",)

X11_SOCKETS = Path("/tmp/.X11-unix")


def is_kept(name):
    """Whether the caller's variable of that name comes along."""
    return name in KEPT or name.startswith("LC_") or name.endswith(KEPT_ENDINGS)


@dataclass
class Order:
    """What the caller wants of one run."""

    scenario: object
    command: list
    checkout: Path
    build: Path
    bundle: Path | None = None
    before: list = field(default_factory=list)
    faults: list = field(default_factory=list)
    environment: dict = field(default_factory=dict)
    as_root: bool = False
    answers: list = field(default_factory=list)


class Machine:
    def __init__(self, root, order):
        self.root = root
        self.order = order
        self.places = Places.of(order.scenario)
        self._layer = None

    def run(self):
        """Boots, runs the command and gives its exit status (128+N after a signal N)."""
        self._check_host()
        self.root.open()
        for path, mode in HIDDEN.items():
            self.root.hide(path, mode)
        self._layer = Layer(self.root.setup, HIDDEN, self.places.owners)
        self._make_places()
        self._install_tools()
        furnisher = Furnisher(self._layer, self.places, self._program(PROCESS_PROGRAM))
        self._install_uninstaller()
        if mac_programs.is_mac_bundle(self.order.bundle):
            mac_programs.install(self._layer, self.order.checkout / "build/mac-runtime",
                                 self._display() | self._code_run())
        jobs = install_processes(self.order.scenario, furnisher)
        furnisher.furnish(self.order.scenario)
        self._write_orders(self._existing(jobs))
        self._show_host()
        for script in self.order.before:
            status = self.root.run_in_setup(["/bin/sh", "-c", script])
            if status != 0:
                raise CannotBoot(f"the script before the run ended with {status}: {script}")
        self.root.assemble()
        status = self.root.boot([LAUNCHD, f"{CONTROL}/launchd.plist"])
        return 128 - status if status < 0 else status

    def control(self, name):
        """A file that the run left in its control folder."""
        return self.root.control / name

    def _program(self, name):
        return self.order.build / "practice-mac" / name

    def _check_host(self):
        for name in (TOOLS_PROGRAM, PROCESS_PROGRAM):
            if not self._program(name).exists():
                raise CannotBoot(f"{self._program(name)} is missing; build the project first")
        for name, package in REAL.items():
            if shutil.which(name, path=PATH) is None:
                raise CannotBoot(f"{name} is missing; Debian's package {package} brings it")

    def _make_places(self):
        layer, places = self._layer, self.places
        for name in [places.name, *places.others]:
            layer.make_folder(f"/Users/{name}", 0o750)
            for place in ("Library/Preferences", "Library/Logs", "Library/Caches", "Downloads"):
                layer.make_folder(f"/Users/{name}/{place}")
        layer.make_folder("/var/root", 0o700)
        layer.make_folder(places.temporary, 0o700)
        layer.make_folder(places.cache, 0o700)
        layer.write("/etc/passwd", places.accounts())

    def _install_tools(self):
        layer = self._layer
        master = f"{OWN_FOLDER}/tools"
        layer.copy(self._program(TOOLS_PROGRAM), master)
        master = layer.place(master)
        for name in REAL:
            layer.copy(shutil.which(name, path=PATH), f"{OWN_FOLDER}/real/{name}")
        layer.hard_link(master, LAUNCHD)
        placed = {fault.tool: fault.kind for fault in self.order.faults if fault.placed}
        for path in TOOLS:
            kind = placed.get(os.path.basename(path))
            if kind is None:
                layer.hard_link(master, path)
            elif kind == "not-executable":
                layer.write(path, b"", mode=0o644)
            elif os.path.lexists(os.path.realpath(path)):
                layer.make_folder(os.path.dirname(path))
                self.root.remove(os.path.realpath(os.path.dirname(path)) + "/"
                                 + os.path.basename(path))

    def _install_uninstaller(self):
        if self.order.bundle is None:
            return
        settings = self.order.scenario.table("uninstaller")
        path = self.places.path(settings.get("path", "~/Downloads/kovraUninstaller.app"))
        self._layer.copy_tree(self.order.bundle, path)
        resources = f"{path}/{mac_programs.resources_of(self.order.bundle)}"
        for name in settings.get("without", []):
            self._layer.remove(f"{resources}/{name}")

    def _existing(self, jobs):
        """The jobs whose program the scenario has not taken away again."""
        return [job for job in jobs if self._layer.has(job["program"])]

    def _write_orders(self, jobs):
        command = {"arguments": self.order.command, "environment": self._environment(),
                   "user": 0 if self.order.as_root else USER_ID,
                   "group": 0 if self.order.as_root else STAFF,
                   "folder": "/var/root" if self.order.as_root else self.places.home}
        answers = self.order.answers or self.order.scenario.table("authorization").get(
            "answers", ["grant"])
        tools = {
            "cacheFolder": self.places.cache,
            "temporaryFolder": self.places.temporary,
            "faults": [fault.as_plist() for fault in self.order.faults if not fault.placed],
            "answers": [_answer(answer) for answer in answers],
            "display": self._display(),
        }
        for name, content in (("launchd.plist", {"jobs": jobs, "command": command}),
                              ("tools.plist", tools)):
            # XML property lists cannot hold control characters.
            self.control(name).write_bytes(plistlib.dumps(content, fmt=plistlib.FMT_BINARY))
        for name in ("transcript", "syslog"):
            self.control(name).touch()
            self.control(name).chmod(0o666)
        self.control("counts").mkdir()
        self.control("counts").chmod(0o1777)

    def _display(self):
        """The variables by which the display is found, if there is one, whatever of them the
        program is given."""
        environment = self._own_environment()
        return {name: environment[name] for name in ("DISPLAY", "XAUTHORITY")
                if name in environment}

    def _code_run(self):
        """The emulator's variables for that, with a file for each process. Mac programs lie in the
        GB behind the first four, and nothing else does."""
        if CODE_RUN not in os.environ:
            return {}
        return {"QEMU_LOG": "in_asm", "QEMU_DFILTER": "0x100000000+0x50000000",
                "QEMU_LOG_FILENAME": f"{os.environ[CODE_RUN]}/{uuid.uuid4().hex}-%d"}

    def _environment(self):
        return self._own_environment() | self.order.environment

    def _own_environment(self):
        name = "root" if self.order.as_root else self.places.name
        environment = {key: value for key, value in os.environ.items() if is_kept(key)}
        environment |= {"HOME": "/var/root" if self.order.as_root else self.places.home,
                        "USER": name, "LOGNAME": name, "SHELL": "/bin/bash",
                        "TMPDIR": self.places.temporary, "PATH": PATH}
        cookies = os.environ.get("XAUTHORITY")
        if cookies and os.path.isfile(cookies):
            inside = f"{self.places.home}/.Xauthority"
            self._layer.write(inside, Path(cookies).read_bytes(), 0o600)
            environment["XAUTHORITY"] = inside
        return environment

    def _show_host(self):
        """The checkout and the build tree, at their own places, the display's sockets, and the
        folders of coverage, which what runs inside may write."""
        shown = [self.order.checkout]
        if not self.order.build.is_relative_to(self.order.checkout):
            shown.append(self.order.build)
        if "DISPLAY" in os.environ and X11_SOCKETS.is_dir():
            shown.append(X11_SOCKETS)
        for path in shown:
            for parent in reversed(path.parents[:-1]):
                folder = self._layer.make_folder(parent)
                folder.chmod(folder.stat().st_mode | 0o011)
            self._layer.make_folder(path)
            self.root.show(path)
        written = [Path(os.environ[PROFILE]).parent] if PROFILE in os.environ else []
        written += [Path(os.environ[CODE_RUN])] if CODE_RUN in os.environ else []
        for folder in written:
            self._layer.make_folder(folder)
            self.root.show(folder, read_only=False)


def _answer(answer):
    """An answer to the password prompt as the stand-in reads it."""
    return {"kind": answer} if isinstance(answer, str) else {"kind": "error", **answer}
