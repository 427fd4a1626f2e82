"""Writes a scenario into the setup layer."""

import base64
import datetime
import plistlib
import posixpath

from .look_alikes import WAYS, look_alikes
from .scenario import ScenarioError
from .tools import STATE


class Furnisher:
    """Puts what a scenario lists on the Mac. `places` knows the user's places."""

    def __init__(self, layer, places, process_program):
        self.layer = layer
        self.places = places
        self._process_program = process_program

    def furnish(self, scenario):
        self._each(scenario, "folder", self.put_folder)
        self._each(scenario, "bundle", self.put_bundle)
        self._each(scenario, "file", self.put_file)
        self._each(scenario, "link", self._link)
        for domain, values in scenario.table("preferences").items():
            path = f"{self.places.home}/Library/Preferences/{domain}.plist"
            self._plist(path, values, mode=0o600)
        self._each(scenario, "many", self._many)
        self._each(scenario, "look_alikes", self.put_look_alikes)
        self._keychains(scenario.list("keychain_item"))
        self._state(scenario)
        for path in scenario.list("without"):
            if not self.layer.has(self.places.path(path)):
                raise ScenarioError(f"{path} cannot be taken away: it was never put there")
            self.layer.remove(self.places.path(path))
        for path in scenario.list("locked"):
            self.layer.lock(self.places.path(path))

    def executable(self, path):
        """A program that does nothing until it is killed, under a name of its own."""
        self.layer.copy(self._process_program, path)

    @staticmethod
    def _each(scenario, key, put):
        for entry in scenario.list(key):
            try:
                put(**entry)
            except TypeError as error:
                raise ScenarioError(f"{key} {entry}: {error}") from error

    def _link(self, path, to):
        self.layer.link(self.places.path(path), self.places.path(to))

    def put_folder(self, path, files=(), mode=None):
        folder = self.places.path(path)
        self.layer.make_folder(folder, mode)
        for name in files:
            self.layer.write(f"{folder}/{name}", f"{name} of {folder}\n".encode())

    def put_bundle(self, path, executable, identifier, version="1.0", files=()):
        folder = self.places.path(path)
        information = {
            "CFBundleExecutable": executable,
            "CFBundleIdentifier": identifier,
            "CFBundleName": posixpath.splitext(posixpath.basename(folder))[0],
            "CFBundlePackageType": "APPL",
            "CFBundleShortVersionString": version,
        }
        self.layer.write(f"{folder}/Contents/Info.plist", plistlib.dumps(information))
        self.layer.write(f"{folder}/Contents/PkgInfo", b"APPL????")
        self.executable(f"{folder}/Contents/MacOS/{executable}")
        for name in files:
            self.layer.write(f"{folder}/{name}", f"{name} of {folder}\n".encode())

    def put_file(self, path, text=None, plist=None, data=None, size=None, mode=None):
        target = self.places.path(path)
        if plist is not None:
            self._plist(target, plist, binary=False, mode=mode)
        elif data is not None:
            self.layer.write(target, base64.b64decode(data, validate=True), mode)
        elif size is not None:
            self.layer.write(target, bytes(size), mode)
        else:
            self.layer.write(target, (text or "").encode(), mode)

    def _plist(self, path, values, binary=True, mode=None):
        kind = plistlib.FMT_BINARY if binary else plistlib.FMT_XML
        content = plistlib.dumps(_plist_value(values), fmt=kind, sort_keys=False)
        self.layer.write(path, content, mode)

    def _many(self, path, count, text="bystander {n}\n"):
        template = self.places.path(path)
        if "{n}" not in template:
            raise ScenarioError(f"many files need {{n}} in their path: {path}")
        for number in range(1, count + 1):
            self.layer.write(template.replace("{n}", str(number)),
                             text.replace("{n}", str(number)).encode())

    def put_look_alikes(self, of, ways, each, spared=()):
        unknown = set(ways) - set(WAYS)
        if unknown:
            raise ScenarioError(f"unknown ways of looking alike: {', '.join(sorted(unknown))}")
        originals = [self.places.path(path) for path in of]
        others = [self.places.path(path) for path in spared]
        for path in look_alikes(originals, ways, each, others):
            self.layer.write(f"{path}/inside" if path.endswith((".app", "/")) else path,
                             f"bystander at {path}\n".encode())

    def _keychains(self, items):
        """The keychains' form is our own: a list of items, in the order in which they are."""
        login, system = [], []
        for item in items:
            attributes = dict(item)
            if "account_data" in attributes:
                attributes["account"] = base64.b64decode(attributes.pop("account_data"))
            place = system if attributes.pop("keychain", "login") == "system" else login
            place.extend([attributes] * attributes.pop("count", 1))
        self._plist(f"{self.places.home}/Library/Keychains/login.keychain-db", login, mode=0o600)
        self._plist("/Library/Keychains/System.keychain", system)

    def _state(self, scenario):
        """The records that a Mac keeps in databases of its own."""
        launch_services = dict(scenario.table("launch_services"))
        launch_services["records"] = [dict(entry, path=self.places.path(entry["path"]))
                                      for entry in scenario.list("registered")]
        for name, values in (("input-sources", scenario.list("input_source")),
                             ("privacy", scenario.list("privacy")),
                             ("launch-services", launch_services)):
            self._plist(f"{STATE}/{name}.plist", values, binary=False)
        self._plist(f"{STATE}/system.plist", scenario.table("system"), binary=False)


def _plist_value(value):
    """TOML's values as a property list's: {"$data" = base64} is data, instants are in UTC."""
    if isinstance(value, dict):
        if set(value) == {"$data"}:
            return base64.b64decode(value["$data"], validate=True)
        return {key: _plist_value(item) for key, item in value.items()}
    if isinstance(value, list):
        return [_plist_value(item) for item in value]
    if isinstance(value, datetime.datetime) and value.tzinfo is not None:
        return value.astimezone(datetime.timezone.utc).replace(tzinfo=None)
    return value
