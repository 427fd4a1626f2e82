"""Predicts the effects of an uninstall on a random home, by the catalogue's rules."""

import posixpath
import re

import catalogue as c


class HomeModel:
    def __init__(self, home, base):
        """`base` maps names to the property lists before the run."""
        self.home, self.base = home, base
        self.needs_admin = (any(map(self.exists, [*c.SYSTEM_APPS, c.SHARED_TEMPORARY]))
                            or bool(self.named(c.INPUT_METHODS, c.is_input_method)))
        self.accounts = {item["account"] for item in base["keychain"]
                         if str(item.get("account", "")).startswith(c.ACCOUNT_PREFIX)}

    def exists(self, path):
        """Whether the path exists, links followed."""
        return self.home.kinds.get(path, "dangling link") != "dangling link"

    def named(self, folder, is_product):
        return [path for path in self.home.kinds if posixpath.dirname(path) == folder
                and is_product(posixpath.basename(path))]

    def deleted(self):
        user = [*self.named(c.HOME + c.INPUT_METHODS, c.is_input_method), *c.USER_APPS,
                *c.COUNTED, *self.named(c.TEMPORARY, c.is_remnant), *c.CACHES]
        gone = {path for path in user if self.exists(path)}
        # defaults removes a domain's file, also a dangling link to one, but no folder.
        gone |= {path for path in c.DELETED_DOMAINS
                 if self.home.kinds.get(path, "folder").endswith(("file", "link"))}
        gone |= {f"{c.HOME}/Library/Preferences/{name}.plist" for name in self.home.domains
                 if name in c.GROUPS}
        if self.needs_admin:
            system = [*c.SYSTEM_APPS, c.SHARED_TEMPORARY,
                      *self.named(c.INPUT_METHODS, c.is_input_method)]
            gone |= {path for path in system if path in self.home.kinds}
        return sorted(gone)

    def settings(self):
        """The keyboard settings after the run, and the number of removed entries."""
        return c.without_product(self.base["keyboard"])

    def keychain(self):
        deleted = self.accounts | set(c.FIXED_ACCOUNTS)
        return [item for item in self.base["keychain"]
                if item.get("account") not in deleted or item.get("class", "genp") != "genp"]

    def records(self):
        own = f"{c.HOME}/Downloads/kovraUninstaller.app"
        existing = {path for path in c.CANONICAL if self.exists(path)}
        return [record for record in self.base["launch-services"]["records"]
                if record["path"] not in existing
                and ("kovraInput.app" not in record["path"] or record["path"].startswith(own))]

    def decisions(self):
        """A decision is reset only if the system still knows a bundle of that identifier."""
        known = {record["identifier"] for record in self.records()}
        ours = known & {*c.BUNDLE_IDS, *c.OLD_BUNDLE_IDS}
        return [decision for decision in self.base["privacy"]
                if decision["client"] not in ours or decision["service"] not in c.SERVICES]

    def sources(self):
        return [source | {"Enabled": source["Enabled"] and
                          "kovra" not in source["InputSourceID"].lower()}
                for source in self.base["input-sources"]]

    def surviving_programs(self):
        def is_product(program):
            return (posixpath.basename(program) in c.PROCESS_NAMES
                    or any(re.search(f"{name}.app/Contents/MacOS/", program)
                           for name in c.PROCESS_NAMES))
        return sorted(filter(lambda program: not is_product(program), self.home.programs))

    def residues(self):
        """The lines for what the last scan still finds."""
        lines = [f"{posixpath.basename(path)} (~{c.INPUT_METHODS})"
                 for path in self.named(c.HOME + c.INPUT_METHODS, c.is_input_method)
                 if not self.exists(path)]
        left = {item["account"] for item in self.keychain()
                if str(item.get("account", "")).startswith(c.ACCOUNT_PREFIX)}
        return sorted(lines) + ([f"Sign-in data (Keychain) ({c.counted(len(left), 'item')})"]
                                if left else [])
