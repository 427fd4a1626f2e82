"""Generates random homes: pieces of the product and look-alikes, wherever the program looks."""

import posixpath
import random

import catalogue as c

PRECIOUS = f"{c.HOME}/Documents/precious"
# The folders in which names are matched, and the rule for the product's names.
PATTERNED = {c.INPUT_METHODS: c.is_input_method, c.HOME + c.INPUT_METHODS: c.is_input_method,
             c.TEMPORARY: c.is_remnant}
PATHS = [*c.SYSTEM_APPS, *c.USER_APPS, *c.COUNTED, *c.CACHES, c.SHARED_TEMPORARY]
EXACT = {*PATHS, *c.CANONICAL, *c.DELETED_DOMAINS}
KINDS = ("file", "folder", "full folder", "link", "dangling link")


class Home:
    """`content()` is the scenario; `kinds` has the kind of each path in it."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.kinds = {}
        self.settings, self.items, self.records = {}, [], []
        self.sources, self.decisions, self.programs = [], [], []
        self.domains = []
        self._files()
        self._settings()
        self._accounts()
        self._records()
        self._programs()

    def chance(self, of_hundred):
        return self.random.randrange(100) < of_hundred

    # Files

    def _files(self):
        for path in PATHS:
            if self.chance(40):
                self._put(path)
            for _ in range(self.random.randrange(3)):
                self._put_look_alike(path)
        for folder, is_product in PATTERNED.items():
            names = (["kovraInput.app", "kovraInput 2.app", "kovraInput-beta.app"]
                     if is_product is c.is_input_method else
                     ["kovra-agent-tistool-17", "kovraInstaller", "kovraInstaller-x"])
            for name in names:
                if self.chance(40):
                    self._put(f"{folder}/{name}")
                for _ in range(self.random.randrange(4)):
                    self._put_look_alike(f"{folder}/{name}")

    def _put(self, path):
        self.kinds[path] = self.random.choice(KINDS)

    def _put_look_alike(self, path):
        folder, name = posixpath.split(path)
        name = self.altered(name)
        other = f"{folder}/{name}"
        is_product = PATTERNED.get(folder, lambda _: False)(name) or other in EXACT
        if not is_product and name.strip(". ") and other not in self.kinds:
            self._put(other)

    def altered(self, name):
        """A name that resembles the given one; it may even be equal."""
        place = self.random.randrange(len(name))
        return self.random.choice([
            name[:place] + name[place].swapcase() + name[place + 1:],
            name[:place] + name[place + 1:],
            name[:place] + self.random.choice("aeiou01_ ü") + name[place:],
            name + self.random.choice([" 2", ".bak", "~", ".old", "-x"]),
            self.random.choice(["my", "x", "not ", ".", "com."]) + name])

    # Records

    def _word(self):
        return self.random.choice([
            "ai.kovra.inputmethod.KovraInput", "AI.KOVRA", "kOvRa", "com.kovra.agent", "xkovrax",
            "ai.k0vra.input", "kovr a", "kowra", "com.example.other", "kov-ra", "okra", "Kovrä"])

    def _entry(self):
        entry = {"InputSourceKind": "Keyboard Layout", "KeyboardLayout ID":
                 self.random.randrange(-9, 9)}
        for name in self.random.sample(["Bundle ID", "Input Mode", "Details", "Names"],
                                       self.random.randrange(4)):
            word = self._word()
            entry[name] = self.random.choice([word, {"a": [word]}, {word: True}, [{"b": word}]])
        return entry

    def _settings(self):
        for key in c.SETTINGS_KEYS:
            if self.chance(80):
                entries = [self._entry() for _ in range(self.random.randrange(5))]
                if self.chance(10):
                    entries.append("kovra")      # a list that does not only contain entries
                self.settings[key] = entries
        if self.chance(50):
            self.settings["AppleOtherKey"] = [{"Bundle ID": "ai.kovra.inputmethod.KovraInput"}]
        names = [*c.GROUPS, *(self.altered(name) for name in c.GROUPS)]
        for name in dict.fromkeys(names):
            path = f"{c.HOME}/Library/Preferences/{name}.plist"
            if self.chance(60) and path not in self.kinds and "/" not in name:
                self.domains.append(name)

    def _accounts(self):
        names = ["ai.kovra.auth.session", "ai.kovra.auth.pendingPKCE", "ai.kovra.device.1",
                 "ai.kovra.x y", "ai.kovra", "ai.kovrasoft.session", "AI.KOVRA.auth.session",
                 "xai.kovra.auth.session", " ai.kovra.auth.session", "ai-kovra.auth", "sam"]
        for name in self.random.sample(names, self.random.randrange(len(names))):
            self.items.append({"account": name, "service": self._word(),
                               "class": "inet" if self.chance(10) else "genp"}
                              | ({"count": 3} if self.chance(20) else {}))

    def _records(self):
        identifiers = [*c.BUNDLE_IDS, *c.OLD_BUNDLE_IDS, "com.example.notes", "ai.kovra.other"]
        paths = [*c.CANONICAL, "/Volumes/kovra 2.4/kovraInput.app", "/Old (0x1)/kovraInput.app",
                 "/Volumes/MykovraInput.app", "/Volumes/kovraInput.app/Contents/Helper.app",
                 "/Volumes/KovraInput.app", "/Volumes/kovraInput 2.app", "/Volumes/kovra.app",
                 f"{c.HOME}/Downloads/kovraUninstaller.app/Resources/kovraInput.app",
                 "/Volumes/kovra.app/Contents/KovraAgent.app", "/Volumes/kovraInput"]
        for path in self.random.sample(paths, self.random.randrange(len(paths))):
            self.records.append({"path": path, "identifier": self.random.choice(identifiers)})
        services = [*c.SERVICES, "Camera", "ScreenCapture"]
        for _ in range(self.random.randrange(8)):
            decision = {"service": self.random.choice(services),
                        "client": self.random.choice(identifiers), "allowed": self.chance(50)}
            if decision not in self.decisions:
                self.decisions.append(decision)
        for number in range(self.random.randrange(5)):
            self.sources.append({"InputSourceID": f"{self._word()}.{number}", "BundleID":
                                 self.random.choice(identifiers), "Enabled": self.chance(70),
                                 "Selected": False})

    def _programs(self):
        programs = ["/Volumes/a/kovra", "/Volumes/a/kovraInput", "/Volumes/a/KovraAgent",
                    "/Volumes/mykovra.app/Contents/MacOS/other", "/Volumes/kovras/kovras",
                    "/Volumes/b/Kovra", "/Volumes/b/kovraInpu", "/Volumes/b/kovra-x",
                    "/Volumes/kovra.app/Contents/Resources/tool",
                    "/Volumes/kovraInput.app/Contents/MacOS/helper",
                    "/Volumes/KovraAgent.app/contents/MacOS/helper"]
        self.programs = self.random.sample(programs, self.random.randrange(6))

    # The scenario

    def content(self):
        content = {"title": "A random home", "extends": "parts/mac", "folder": [], "file": [],
                   "link": []}
        content["folder"].append({"path": PRECIOUS, "files": ["a", "b/c"]})
        for path, kind in self.kinds.items():
            if kind == "file":
                content["file"].append({"path": path, "text": path})
            elif kind.endswith("link"):
                to = PRECIOUS if kind == "link" else "/nowhere"
                content["link"].append({"path": path, "to": to})
            else:
                files = ["a", "deep/er/b"] if kind.startswith("full") else []
                content["folder"].append({"path": path, "files": files})
            if kind.startswith("full"):
                content["link"].append({"path": f"{path}/precious", "to": PRECIOUS})
        content["preferences"] = {name: {"ai.kovra.startAtLogin": True} for name in self.domains}
        content["preferences"]["com.apple.HIToolbox"] = self.settings
        return content | {"keychain_item": self.items, "registered": self.records,
                          "privacy": self.decisions, "input_source": self.sources,
                          "process": [{"program": program} for program in self.programs]}
