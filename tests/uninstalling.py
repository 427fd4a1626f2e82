"""Runs whole uninstalls without a window, and gives what happened as short lines."""

import catalogue as c
from support import BUNDLE, PROGRAM, RUNNER, PracticeMac, in_bundle, log_lines

STEPS = ("stopProcesses", "inputSource", "removeApps", "removeData", "resetPermissions",
         "refreshSystem", "verify")


def in_short(text):
    """The text with the home folder as ~."""
    return text.replace(c.HOME, "~")


AGENTS = "~/Library/LaunchAgents"
SCRIPT = in_short(in_bundle("uninstall.sh", BUNDLE))
USER_BUNDLES = [in_short(path) for path in c.USER_BUNDLES]
USER_DATA = [in_short(path) for path in c.USER_DATA]
OWN_FILES = [in_short(path) for path in c.OWN_FILES]
CHANGED_RECORDS = [in_short(path) for path in c.RECORDS.values()]


def ended_well(run):
    """The run as Ended; its status must be 0."""
    assert run.status == 0, (run.status, run.stdout, run.stderr)
    return Ended(run)


def uninstall(scenario, *arguments, **options):
    """Scans, presses "Uninstall" and waits for the end."""
    mac = PracticeMac(scenario, bundle=RUNNER)
    return ended_well(mac.run([PROGRAM, *arguments], **options))


AS_USER = (f"setpriv --reuid=501 --regid=20 --clear-groups env HOME={c.HOME} USER=sam LOGNAME=sam "
           f"{PROGRAM}")


def uninstall_amid(script, afterwards="", scenario="clean", **options):
    """Root runs the script, the user uninstalls, and root looks afterwards; what it finds is on
    standard error."""
    mac = PracticeMac(scenario, bundle=RUNNER)
    whole = (f"set -e\n{script}\n{AS_USER} && status=0 || status=$?\nexec >&2\n{afterwards}\n"
             "exit $status")
    return ended_well(mac.run(["/bin/bash", "-c", whole], as_root=True, **options))


class Ended:
    """A run of the uninstaller that has ended, and how. Paths in the user's home begin with ~."""

    def __init__(self, run):
        self.run = run

    @property
    def shown(self):
        """What the service published: the phases, and the rows at the end of a run."""
        return in_short(self.run.stdout.decode()).splitlines()

    @property
    def phase(self):
        """The last one."""
        return [line for line in self.shown if line == "done" or line.startswith("failed: ")][-1]

    @property
    def rows(self):
        """Step to state, of the last run."""
        pairs = (line.partition(": ") for line in self.shown)
        return {step: state for step, _, state in pairs if step in STEPS}

    @property
    def residues(self):
        return [line[len("residue: "):] for line in self.shown if line.startswith("residue: ")]

    @property
    def tools(self):
        """Each tool run as a command line."""
        return [in_short(" ".join(tool.words)) for tool in self.run.tools]

    @property
    def steps_tools(self):
        """The same without the two probes of the scan before the run."""
        assert self.tools[:2] == SCAN
        return self.tools[2:]

    @property
    def log(self):
        return log_lines(self.run)

    @property
    def log_from_scan(self):
        """From the first scan on."""
        lines = self.log
        return lines[lines.index("Preflight scan:"):]

    @property
    def run_log(self):
        """The log from the beginning of the (last) run on, without the scan's summary."""
        lines = self.log
        start = len(lines) - 1 - lines[::-1].index("Uninstall started")
        return without_summaries(lines[start:])

    @property
    def deleted(self):
        return [in_short(path) for path in self.run.deleted]

    @property
    def created(self):
        return [in_short(path) for path in self.run.created]

    @property
    def changed(self):
        return [in_short(path) for path in self.run.changed]


def without_summaries(lines):
    """Leaves the heading of each scan's summary and drops its lines."""
    return [line for line in lines
            if line != "Nothing found." and not line.startswith(("[", "  - "))]


# What one scan runs.
SCAN = ["defaults export com.apple.HIToolbox -", "security dump-keychain"]


def signals(*flags):
    return [*(" ".join(["pkill", *flags, "-x", name]) for name in ("kovra", "kovraInput",
                                                                  "KovraAgent")),
            *(" ".join(["pkill", *flags, "-f", f"{name}.app/Contents/MacOS/"])
              for name in ("kovra", "kovraInput", "KovraAgent"))]


def unload(label, *, readable=True):
    lines = []
    for plist in (f"{AGENTS}/{label}.plist", f"{AGENTS}/{label}.plist.bak"):
        lines += [f"launchctl bootout gui/501 {plist}", f"PlistBuddy -c Print :Label {plist}"]
        lines += [f"launchctl remove {label}"] if readable else []
    return lines


# The tools of each step, in the installed scenario.
STOP_PROCESSES = [
    *signals(), *signals("-9"),
    *(line for label in c.LABELS for line in unload(label, readable=label != "com.kovra.agent")),
    *(f"defaults write {group} ai.kovra.startAtLogin -bool false" for group in c.GROUPS),
]
INPUT_SOURCE = [
    "defaults export com.apple.HIToolbox -",
    "defaults import com.apple.HIToolbox -",
    "killall cfprefsd",
    "lsregister -u /Library/Input Methods/kovraInput.app",
    "lsregister -u ~/Library/Input Methods/kovraInput.app",
    "lsregister -u /Applications/kovra.app",
    "lsregister -u ~/Applications/kovra.app",
    "lsregister -u /Applications/KovraAgent.app",
    "lsregister -u ~/Applications/KovraAgent.app",
    "lsregister -dump",
    "lsregister -u /Volumes/kovra 2.4/kovraInput.app",
]
PROMPT = [f"osascript -e do shell script \"/bin/bash '{SCRIPT}'\" with administrator privileges"]
AS_ROOT = [f"sh -c /bin/bash '{SCRIPT}'"]
REMOVE_DATA = [
    *(f"defaults delete {domain}" for domain in (*c.GROUPS, *c.BUNDLE_IDS)),
    "security dump-keychain",
    *["security delete-generic-password -a ai.kovra.auth.pendingPKCE"] * 2,
    *["security delete-generic-password -a ai.kovra.auth.session"] * 4,
    *["security delete-generic-password -a ai.kovra.device.0042"] * 2,
    "getconf DARWIN_USER_CACHE_DIR",
    "killall cfprefsd",
]
RESET_PERMISSIONS = [
    f"tccutil reset {service} {bundle_id}"
    for service in c.SERVICES
    for bundle_id in (*c.BUNDLE_IDS, *c.OLD_BUNDLE_IDS)
]
REFRESH_SYSTEM = ["killall -9 TextInputMenuAgent", "killall -9 TextInputSwitcher",
                  "killall -9 pboard", "killall SystemUIServer"]

LOG_BEFORE_APPS = [
    "Uninstall started",
    "  Stop: processes and launch agents — OK",
    "  Input method: keyboard settings entries removed — 5",
    "  Input method: TIS + LaunchServices cleanup — OK",
]
LOG_OF_ADMIN = "  Apps: system-level bundles removed (admin)"
LOG_OF_SKIPPING = "  Apps: no system-level bundles found, skipping admin prompt"
LOG_AFTER_APPS = [
    "  Apps: user-level bundles removed — OK",
    "  Data: removed Keychain item ai.kovra.auth.pendingPKCE",
    "  Data: removed Keychain item ai.kovra.auth.session",
    "  Data: removed Keychain item ai.kovra.device.0042",
    "  Data: settings and data removed — OK",
    "  Permissions: TCC records reset — OK",
    "  Refresh: input UI services restarted — OK",
    "Preflight scan:",
    "  Verify: residues — none",
    "Uninstall finished (residues: 0)",
    "Session ended normally",
]
