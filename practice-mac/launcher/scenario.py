"""Scenarios: TOML files that say what is on a practice Mac."""

from dataclasses import dataclass, field
from pathlib import Path

try:
    import tomllib
except ModuleNotFoundError:  # Python 3.9 of a Mac's command-line tools; its pip has the same reader
    from pip._vendor import tomli as tomllib

SCENARIOS = Path(__file__).resolve().parent.parent / "scenarios"

# Everything that a scenario may say; a misspelled word must not pass for an empty Mac.
LISTS = {"users", "folder", "file", "link", "bundle", "service", "process", "agent",
         "keychain_item", "input_source", "privacy", "registered", "many", "look_alikes",
         "locked", "without"}
TABLES = {"mac", "system", "preferences", "authorization", "launch_services", "uninstaller"}
HEAD = {"title", "extends"}


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
    unknown = set(own) - LISTS - TABLES - HEAD
    if unknown:
        raise ScenarioError(f"{path}: unknown: {', '.join(sorted(unknown))}")
    bases = own.pop("extends", [])
    merged = {}
    for base in [bases] if isinstance(bases, str) else bases:
        base_path = SCENARIOS / f"{base}.toml"
        if not base_path.exists():
            base_path = path.parent / f"{base}.toml"
        merged = _merge(merged, _load(base_path, (*seen, path)))
    return _merge(merged, own)


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
