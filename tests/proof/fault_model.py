"""Predicts the effects of one faulty tool, from what the steps do with a tool's outcome."""

import re
from collections import Counter
from dataclasses import dataclass

from macs import c
from small import small

FAULTS = ("missing", "not-executable", "exit:1", "exit:255", "signal:9", "late-exit:1", "silent",
          "rubbish", "flood:100000000", "cut", "close-output:0.2", "slow:2", "grandchild:2")
NEVER_STARTS = ("missing", "not-executable")
DOES_NOTHING = (*NEVER_STARTS, "exit:1", "exit:255", "signal:9")
FAILS = (*DOES_NOTHING, "late-exit:1")
PRINTS_ALL = ("late-exit:1", "slow:2", "grandchild:2")

# What may be left without being reported on the page or in the log, and why.
UNREPORTED = {
    "processes": "no status of `pkill` says whether a process is left, and none is checked",
    "agents": "nothing checks whether an agent is still loaded",
    "input source": "the helper's output and status are not used, and a registered input source "
                    "does not count as a residue, although the scan lists it",
    "registrations": "the registrations are listed once, before they are removed; from a list that "
                     "fails or ends early the rest is missing",
    "preferences": "no status of `defaults delete` is checked, since most of the domains do not "
                   "exist, and the groups' domains are not among the files that the scan lists",
    "sign-in data": "from a keychain that cannot be listed to its end the rest is missing; the two "
                    "fixed names are deleted all the same",
    "cache files": "they are skipped if the folder's whole path is not known",
    "permissions": "the records cannot be read; the scan only says that they will be reset",
}


@dataclass
class Expected:
    phase: str
    rows: dict
    log: list
    stayed: set
    reported: set
    residues: list


class Model:
    """The scenario of small.toml with one tool, or one of its commands, at fault."""

    def __init__(self, tool, fault):
        self.tool, self.fault = tool, fault
        if tool == "tistool" and fault == "not-executable":
            self.tool = None        # the staged copy is made executable whatever the original is
        self.before = small()
        self.listed = self.accounts_in(self.printed("security dump-keychain",
                                                    self.before.keychain_dump))
        # The account of each deleted item, in order, and the numbers of items left by account.
        self.signed_out, self.accounts_left = [], self.before.accounts.copy()
        for account in sorted({*self.listed, *c.FIXED_ACCOUNTS}):
            if self.works("security delete-generic-password") and self.accounts_left[account]:
                if self.succeeds("security delete-generic-password"):
                    self.signed_out.append(account)
                    del self.accounts_left[account]
                else:
                    self.accounts_left -= Counter([account])    # there is only one attempt

    # The effects of the fault on a command

    def is_hit(self, command):
        return self.tool is not None and f"{command} ".startswith(f"{self.tool} ")

    def works(self, command):
        return not self.is_hit(command) or self.fault not in DOES_NOTHING

    def succeeds(self, command):
        return not self.is_hit(command) or self.fault not in FAILS

    def printed(self, command, whole):
        """The part of the command's output that the program reads."""
        if not self.is_hit(command) or self.fault in PRINTS_ALL:
            return whole
        return whole[:len(whole) // 2] if self.fault == "cut" else b""

    def heard(self, command):
        return self.printed(command, b"whole") == b"whole"

    def settings_read(self):
        return self.heard("defaults export") and self.succeeds("defaults export")

    # The scans

    @staticmethod
    def accounts_in(dump):
        names = re.findall(rb'"acct"<blob>="([^"\n]*)"', dump)
        return {name.decode() for name in names if name.startswith(c.ACCOUNT_PREFIX.encode())}

    def accounts_seen_at_last(self):
        """The number of accounts that the last scan still finds in the listing of the items left."""
        left, kept = Counter(self.accounts_left), []
        for block in re.split(rb"(?=^keychain: )", self.before.keychain_dump, flags=re.MULTILINE):
            account = next(iter(self.accounts_in(block)), None)
            if account is None or left[account]:
                kept.append(block)
                left[account] -= account is not None
        return len(self.accounts_in(self.printed("security dump-keychain", b"".join(kept))))

    def settings_item(self):
        return [("Input method", "Keyboard settings entries",
                 c.counted(self.before.entries, "entry"), False)] * self.settings_read()

    def scan(self):
        accounts = len(self.listed)
        return ["Preflight scan:", *c.summary([
            ("Apps", "kovra.app", "/Applications", True),
            ("Apps", "kovra.app", "~/Applications", False),
            ("Apps", "KovraAgent.app (old version)", "~/Applications", False),
            ("Input method", "kovraInput.app", "~/Library/Input Methods", False),
            ("Input method", "Input source registration", "1 source", False),
            *self.settings_item(),
            ("Data & settings", "Settings and app data", "3 items", False),
            ("Data & settings", "Temporary files", "/tmp/kovra", True),
            *[("Data & settings", "Sign-in data (Keychain)", c.counted(accounts, "item"), False)]
            * bool(accounts),
            ("Permissions", "Microphone and Accessibility records", "Will be reset", False)])]

    def left_settings(self):
        return [] if self.works("defaults import") else self.settings_item()

    def left_accounts(self):
        number = self.accounts_seen_at_last()
        return [("Data & settings", "Sign-in data (Keychain)", c.counted(number, "item"),
                 False)] * bool(number)

    def last_scan(self):
        return ["Preflight scan:", *c.summary([
            ("Input method", "Input source registration", "1 source", False),
            *self.left_settings(), *self.left_accounts(),
            ("Permissions", "Microphone and Accessibility records", "Will be reset", False)])]

    # The steps

    def refusal(self):
        if self.succeeds("osascript"):
            return None
        return ("Could not create the privileged removal script." if self.fault in NEVER_STARTS
                else "Privileged removal failed: Unknown error")

    def problems_of_input_source(self):
        return [*["Could not run the input source helper."]
                * (self.tool == "tistool" and self.fault == "missing"),
                *["Could not read keyboard settings."] * (not self.settings_read()),
                *["Could not update keyboard settings."]
                * (self.settings_read() and not self.succeeds("defaults import"))]

    def uninstall(self):
        refusal = self.refusal()
        problems = self.problems_of_input_source()
        before = [*self.scan(), "Uninstall started", "  Stop: processes and launch agents — OK",
                  *(f"  Input method: {problem}" for problem in problems),
                  *[f"  Input method: keyboard settings entries removed — {self.before.entries}"]
                  * self.settings_read(),
                  "  Input method: TIS + LaunchServices cleanup — OK"]
        residues = [] if refusal else [f"{title} ({detail})" for _, title, detail, _ in
                                       (*self.left_settings(), *self.left_accounts())]
        rows = {"stopProcesses": "done",
                "inputSource": f"warning: {' '.join(problems)}" if problems else "done"}
        if refusal:
            rows |= {"removeApps": f"failed: {refusal}", "removeData": "pending",
                     "resetPermissions": "pending", "refreshSystem": "pending",
                     "verify": "pending"}
            log = [*before, f"Uninstall failed at Remove kovra apps: {refusal}"]
        else:
            rows |= dict.fromkeys(("removeApps", "removeData", "resetPermissions",
                                   "refreshSystem", "verify"), "done")
            log = [*before, "  Apps: system-level bundles removed (admin)",
                   "  Apps: user-level bundles removed — OK",
                   *(f"  Data: removed Keychain item {name}" for name in self.signed_out),
                   "  Data: settings and data removed — OK",
                   "  Permissions: TCC records reset — OK",
                   "  Refresh: input UI services restarted — OK", *self.last_scan(),
                   f"  Verify: residues — {', '.join(residues) or 'none'}",
                   f"Uninstall finished (residues: {len(residues)})"]
        phase = f"failed: Remove kovra apps: {refusal}" if refusal else "done"
        return Expected(phase, rows, [*log, "Session ended normally"], self.stayed(), self.reported(),
                        residues)

    # What is left

    def registered(self):
        """The product's registrations that are left."""
        dump = self.printed("lsregister -dump", self.before.registry_dump).decode()
        return [path for path in self.before.registered if not self.works("lsregister -u") or
                (path not in c.CANONICAL and f" {path} (0x" not in dump)]

    def stayed(self):
        reasons = {
            "processes": not self.works("pkill"),
            "agents": not self.works("launchctl bootout") and not self.works("launchctl remove"),
            "input source": not self.works("tistool"),
            "keyboard settings": not self.settings_read() or not self.works("defaults import"),
            "registrations": bool(self.registered()),
            "preferences": not self.works("defaults delete"),
            "cache files": not self.heard("getconf"),
            "sign-in data": bool(self.accounts_left),
            "permissions": not self.works("tccutil"),
        }
        stayed = {what for what, stays in reasons.items() if stays}
        if self.refusal():
            stayed |= {"apps", "files", "preferences", "cache files", "sign-in data",
                       "permissions"}
        return stayed

    def reported(self):
        """What of it is reported. A failed run reports that nothing after the failure was removed."""
        if self.refusal():
            return self.stayed()
        return self.stayed() & {
            "keyboard settings",
            *["input source"] * (self.fault == "missing"),
            *["sign-in data"] * bool(self.left_accounts())}
