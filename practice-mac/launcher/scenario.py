"""Scenarios: TOML files that say what is on a practice Mac."""

from dataclasses import dataclass, field
from pathlib import Path

try:
    import tomllib
except ModuleNotFoundError:  # Python 3.9 of a Mac's command-line tools; its pip has the same reader
    from pip._vendor import tomli as tomllib

SCENARIOS = Path(__file__).resolve().parent.parent / "scenarios"

# Every key that a scenario may have, and those of its tables or of its lists' entries, which may
# otherwise be of any kind (None). A misspelled key must not pass for an empty Mac.
_PROCESS = {"program", "arguments"}
KEYS = {
    "title": None, "extends": None, "users": None, "locked": None, "without": None,
    "preferences": None,
    "folder": {"path", "files", "mode"},
    "file": {"path", "text", "plist", "data", "size", "mode"},
    "link": {"path", "to"},
    "bundle": {"path", "executable", "identifier", "version", "files"},
    "many": {"path", "count", "text"},
    "look_alikes": {"of", "ways", "each", "spared"},
    "service": {"label", *_PROCESS},
    "process": {"ignores_termination", *_PROCESS},
    "agent": {"label", "path", "label_in_file", "keep_alive", "loaded", "ignores_termination",
              *_PROCESS},
    "keychain_item": {"account", "account_data", "service", "class", "label", "description",
                      "comment", "date", "keychain", "count"},
    "input_source": {"InputSourceID", "BundleID", "Enabled", "Selected"},
    "privacy": {"service", "client", "allowed"},
    "registered": {"path", "identifier"},
    "mac": {"user", "folders"},
    "system": {"ProductVersion", "kern.osversion", "hw.model"},
    "authorization": {"answers"},
    "launch_services": {"filler_bytes"},
    "uninstaller": {"path", "without"},
}


class ScenarioError(Exception):
    """A scenario that cannot be understood; the text says where and why."""


@dataclass
class Scenario:
    name: str
    title: str = ""
    content: dict = field(default_factory=dict)

    def list(self, key):
        return self.content.get(key, [])

    def table(self, key):
        return self.content.get(key, {})


def names():
    """The names of all scenarios that can be booted by name, sorted."""
    return sorted(path.stem for path in SCENARIOS.glob("*.toml"))


def load(name):
    """The scenario of that name, or of the file when name ends in .toml."""
    path = Path(name) if name.endswith(".toml") else SCENARIOS / f"{name}.toml"
    content = _load(path, ())
    return Scenario(path.stem, content.pop("title", ""), content)


def _load(path, seen):
    if path in seen:
        raise ScenarioError(f"{path} extends itself")
    try:
        own = tomllib.loads(path.read_text(encoding="utf-8"))
    except FileNotFoundError as error:
        known = ", ".join(names())
        raise ScenarioError(f"there is no scenario {path}; there are: {known}") from error
    except (tomllib.TOMLDecodeError, UnicodeDecodeError) as error:
        raise ScenarioError(f"{path}: {error}") from error
    unknown = sorted(_unknown(own))
    if unknown:
        raise ScenarioError(f"{path}: unknown: {', '.join(unknown)}")
    bases = own.pop("extends", [])
    merged = {}
    for base in [bases] if isinstance(bases, str) else bases:
        base_path = SCENARIOS / f"{base}.toml"
        if not base_path.exists():
            base_path = path.parent / f"{base}.toml"
        merged = _merge(merged, _load(base_path, (*seen, path)))
    return _merge(merged, own)


def _unknown(content):
    """The keys that are not among KEYS; those of a table or an entry as TABLE.KEY."""
    for key, value in content.items():
        if key not in KEYS:
            yield key
        elif KEYS[key] is not None:
            for table in value if isinstance(value, list) else [value]:
                yield from (f"{key}.{name}" for name in table if name not in KEYS[key])


def combined(parts):
    """The content of these scenarios, one after the other, as of one that extends them."""
    merged = {}
    for name in parts:
        merged = _merge(merged, load(name).content)
    return merged


def _merge(below, above):
    """Lists are joined, tables are merged, anything else is replaced."""
    if isinstance(below, dict) and isinstance(above, dict):
        merged = dict(below)
        for key, value in above.items():
            merged[key] = _merge(below[key], value) if key in below else value
        return merged
    if isinstance(below, list) and isinstance(above, list):
        return below + above
    return above
