"""The state of the Mac of small.toml before a run, and the listings that its tools print."""

import base64
import functools
import plistlib
import shlex
from collections import Counter
from pathlib import Path

from macs import PracticeMac, c

SCENARIO = Path(__file__).resolve().parent / "small.toml"
APPS = ["/Applications/kovra.app", *c.USER_BUNDLES]
FILES = [f"{c.HOME}/Library/Application Support/kovra", c.SHARED_TEMPORARY,
         f"{c.HOME}/Library/LaunchAgents/ai.kovra.KovraAgent.plist",
         f"{c.TEMPORARY}/kovraInstaller-8231"]
DOMAINS = [f"{c.HOME}/Library/Preferences/{group}.plist" for group in c.GROUPS]
# The dump of the registrations is taken after the existing bundles were unregistered, as in a run.
COMMANDS = [*(f"cat {shlex.quote(path)}" for path in c.RECORDS.values()), "security dump-keychain",
            f"{{ {c.LSREGISTER} -u /Applications/kovra.app; {c.LSREGISTER} -dump; }}"]


class Small:
    """`records` maps names to property lists; the dumps are bytes."""

    def __init__(self):
        script = ";".join(f"{command} | base64 -w0; echo" for command in COMMANDS)
        run = PracticeMac(SCENARIO).shell(script)
        *lists, self.keychain_dump, self.registry_dump = map(base64.b64decode,
                                                             run.stdout.splitlines())
        self.records = dict(zip(c.RECORDS, map(plistlib.loads, lists), strict=True))
        self.settings, self.entries = c.without_product(self.records["keyboard"])
        self.accounts = Counter(item["account"] for item in self.products("keychain"))
        self.registered = [record["path"] for record in self.products("launch-services")]

    def products(self, name, plist=None):
        """The product's records in the property list of that name, by default the one before the run."""
        records = records_of(name, self.records[name] if plist is None else plist)
        return [record for record in records if is_product(name, record)]


@functools.cache
def small():
    return Small()


def is_product(name, record):
    """Whether a record of that property list is the product's."""
    if name == "keychain":
        return str(record.get("account", "")).startswith(c.ACCOUNT_PREFIX)
    if name == "launch-services":
        return record["path"] in c.CANONICAL or "kovraInput.app" in record["path"]
    if name == "privacy":
        return record["client"] in c.BUNDLE_IDS
    return "kovra" in record["InputSourceID"]


def records_of(name, plist):
    return plist["records"] if name == "launch-services" else plist
