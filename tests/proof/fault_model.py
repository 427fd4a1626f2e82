"""What a fault of one tool must come to, reckoned from what the steps do with a tool's outcome."""

from dataclasses import dataclass

import catalogue as c

FAULTS = ("missing", "not-executable", "exit:1", "exit:255", "signal:9", "silent", "rubbish",
          "flood:100000000", "close-output:0.2", "slow:2", "grandchild:2")
NEVER_STARTS = ("missing", "not-executable")
DOES_NOTHING = (*NEVER_STARTS, "exit:1", "exit:255", "signal:9")
TOLD_AS_IT_IS = ("slow:2", "grandchild:2")

# Where a run must call itself a success although something stays: nobody looks, or who looks can
# see nothing. By tool, and by whether it does its work unheard ("unheard") or none ("idle").
SILENT_SUCCESSES = {
    ("pkill", "idle"): "no status of pkill says whether a process is left, and none is looked at",
    ("launchctl", "idle"): "an agent that stays loaded is not looked for",
    ("tistool", "idle"): "neither the helper's output nor its status is used, and registered "
                         "input sources are no residue",
    ("lsregister", "idle"): "registrations are not looked for",
    ("lsregister", "unheard"): "a dump that names nothing is a registry without the product",
    ("security", "idle"): "a keychain that cannot be listed is a keychain without the product",
    ("security", "unheard"): "a keychain that cannot be listed is a keychain without the product; "
                             "the two fixed names are deleted all the same",
    ("security dump-keychain", "idle"): "as when the whole tool is at fault",
    ("security dump-keychain", "unheard"): "as when the whole tool is at fault",
    ("lsregister -dump", "idle"): "as when the whole tool is at fault",
    ("lsregister -dump", "unheard"): "as when the whole tool is at fault",
    ("getconf", "idle"): "without the folder's name the two cache files are passed over",
    ("getconf", "unheard"): "without the folder's name the two cache files are passed over",
    ("tccutil", "idle"): "the permissions' records cannot be read back",
}


@dataclass
class Expected:
    phase: str
    rows: dict
    log: list
    stayed: set
    residues: list


class Model:
    """The scenario of small.toml with one tool at fault."""

    def __init__(self, tool, fault):
        self.tool, self.fault = tool, fault
        if tool == "tistool" and fault == "not-executable":
            self.tool = None        # the staged copy is made executable whatever the original is

    def is_hit(self, command):
        return self.tool is not None and f"{command} ".startswith(f"{self.tool} ")

    def works(self, command):
        return not self.is_hit(command) or self.fault not in DOES_NOTHING

    def heard(self, command):
        return not self.is_hit(command) or self.fault in TOLD_AS_IT_IS

    def way(self):
        return ("idle" if self.fault in DOES_NOTHING else
                "" if self.fault in TOLD_AS_IT_IS else "unheard")

    def scan(self):
        return ["Preflight scan:", *c.summary([
            ("Apps", "kovra.app", "/Applications", True),
            ("Apps", "kovra.app", "~/Applications", False),
            ("Apps", "KovraAgent.app (old version)", "~/Applications", False),
            ("Input method", "kovraInput.app", "~/Library/Input Methods", False),
            ("Input method", "Input source registration", "1 source", False),
            *[("Input method", "Keyboard settings entries", "2 entries", False)]
            * self.heard("defaults export"),
            ("Data & settings", "Settings and app data", "3 items", False),
            ("Data & settings", "Temporary files", "/tmp/kovra", True),
            *[("Data & settings", "Sign-in data (Keychain)", "2 items", False)]
            * self.heard("security dump-keychain"),
            ("Permissions", "Microphone and Accessibility records", "Will be reset", False)])]

    def left_settings(self):
        return ([("Input method", "Keyboard settings entries", "2 entries", False)]
                if not self.works("defaults import") and self.heard("defaults export") else [])

    def left_accounts(self):
        number = 2 - len(self.signed_out())
        return ([("Data & settings", "Sign-in data (Keychain)", c.counted(number, "item"), False)]
                if number and self.heard("security dump-keychain") else [])

    def last_scan(self):
        return ["Preflight scan:", *c.summary([
            ("Input method", "Input source registration", "1 source", False),
            *self.left_settings(), *self.left_accounts(),
            ("Permissions", "Microphone and Accessibility records", "Will be reset", False)])]

    def refusal(self):
        if self.works("osascript"):
            return None
        return ("Could not create the privileged removal script." if self.fault in NEVER_STARTS
                else "Privileged removal failed: Unknown error")

    def uninstall(self):
        refusal = self.refusal()
        before = [*self.scan(), "Uninstall started", "  Stop: processes and launch agents — OK",
                  *["  Input method: keyboard settings entries removed — 2"]
                  * self.heard("defaults export"),
                  "  Input method: TIS + LaunchServices cleanup — OK"]
        warnings = [*["Could not run the input source helper."]
                    * (self.tool == "tistool" and self.fault == "missing"),
                    *["Could not read keyboard settings."] * (not self.heard("defaults export"))]
        if self.left_settings():
            warnings.append("Could not update keyboard settings.")
        residues = [] if refusal else [f"{title} ({detail})" for _, title, detail, _ in
                                       (*self.left_settings(), *self.left_accounts())]
        rows = {"stopProcesses": "done",
                "inputSource": f"warning: {' '.join(warnings)}" if warnings else "done"}
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
                   *(f"  Data: removed Keychain item {name}" for name in self.signed_out()),
                   "  Data: settings and data removed — OK",
                   "  Permissions: TCC records reset — OK",
                   "  Refresh: input UI services restarted — OK", *self.last_scan(),
                   f"  Verify: residues — {', '.join(residues) or 'none'}",
                   f"Uninstall finished (residues: {len(residues)})"]
        phase = f"failed: Remove kovra apps: {refusal}" if refusal else "done"
        return Expected(phase, rows, [*log, "Session ended normally"], self.stayed(),
                        residues)

    def signed_out(self):
        """The accounts whose items go."""
        if not self.works("security delete-generic-password"):
            return []
        listed = {"ai.kovra.auth.session", "ai.kovra.device.0042"}
        known = set(c.FIXED_ACCOUNTS) | (listed if self.heard("security dump-keychain") else set())
        return sorted(listed & known)

    def may_stay(self):
        """An agent that was killed but not unloaded is started again, unless its program is
        removed before: which of the two is quicker is chance."""
        revived = self.works("pkill") and not self.works("launchctl bootout")
        return {"processes"} if revived else set()

    def stayed(self):
        reasons = {
            "processes": not self.works("pkill") or not self.works("launchctl bootout"),
            "input source": not self.works("tistool"),
            "keyboard settings": (not self.heard("defaults export")
                                  or not self.works("defaults import")),
            "registrations": not self.works("lsregister -u") or not self.heard("lsregister -dump"),
            "preferences": not self.works("defaults delete"),
            "cache files": not self.heard("getconf"),
            "sign-in data": len(self.signed_out()) < 2,
            "permissions": not self.works("tccutil"),
        }
        stayed = {what for what, stays in reasons.items() if stays}
        if self.refusal():
            stayed |= {"apps", "files", "preferences", "cache files", "sign-in data",
                       "permissions"}
        return stayed
