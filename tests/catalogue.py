"""The product's paths and names on a practice Mac, for all tests: independent of the program's own
list, so that an error in one is noticed by the other. Written for Python 3.9."""

HOME = "/Users/sam"
FOLDERS = "/var/folders/62/nrp34pc96t560_hhml86hmwrr_q2rc"
TEMPORARY = f"{FOLDERS}/T"
CACHE = f"{FOLDERS}/C"

LABELS = ("ai.kovra.tis-helper", "ai.kovra.agent.autostart", "ai.kovra.inputmethod.agent",
          "ai.kovra.inputmethod.KovraAgent", "ai.kovra.KovraAgent", "com.kovra.agent",
          "com.kovra.KovraAgent")
BUNDLE_IDS = ("ai.kovra.inputmethod.KovraAgent", "ai.kovra.inputmethod.KovraInput")
OLD_BUNDLE_IDS = ("com.kovra.agent", "com.kovra.KovraAgent")
GROUPS = ("group.ai.kovra.macos.shared", "group.ai.kovra.shared")
SERVICES = ("Microphone", "Accessibility", "ListenEvent", "PostEvent")
SETTINGS_KEYS = ("AppleEnabledInputSources", "AppleSelectedInputSources",
                 "AppleInputSourceHistory", "AppleDisabledInputSources")
FIXED_ACCOUNTS = ("ai.kovra.auth.session", "ai.kovra.auth.pendingPKCE")
ACCOUNT_PREFIX = "ai.kovra."
PROCESS_NAMES = ("kovra", "kovraInput", "KovraAgent")
REMNANTS = ("kovra-agent-tistool-", "kovraInstaller")

INPUT_METHODS = "/Library/Input Methods"
AGENTS = [f"{HOME}/Library/LaunchAgents/{label}.plist{end}"
          for label in LABELS for end in ("", ".bak")]
GROUP_FOLDERS = [f"{HOME}/Library/Group Containers/{group}" for group in GROUPS]
PREFERENCES = [f"{HOME}/Library/Preferences/{name}.plist" for name in BUNDLE_IDS]
LOGS = [f"{HOME}/Library/Logs/kovra", f"{HOME}/Library/Logs/KovraInstaller"]
DATA = [*(f"{HOME}/Library/{folder}/{name}{end}" for name in BUNDLE_IDS
          for folder, end in (("Application Support", ""), ("Caches", ""), ("HTTPStorages", ""),
                              ("WebKit", ""), ("Saved Application State", ".savedState"))),
        f"{HOME}/Library/Application Support/kovra"]
COUNTED = [*AGENTS, *GROUP_FOLDERS, *PREFERENCES, *LOGS, *DATA]
CACHES = [f"{CACHE}/com.apple.IntlDataCache.le", f"{CACHE}/com.apple.IntlDataCache.le.kbdx"]
DELETED_DOMAINS = [f"{HOME}/Library/Preferences/{name}.plist" for name in (*GROUPS, *BUNDLE_IDS)]
SYSTEM_APPS = ["/Applications/kovra.app", "/Applications/KovraAgent.app"]
USER_APPS = [f"{HOME}/Applications/kovra.app", f"{HOME}/Applications/KovraAgent.app"]
CANONICAL = [f"{where}/{name}" for name, places in (
    ("kovraInput.app", (INPUT_METHODS, HOME + INPUT_METHODS)),
    ("kovra.app", ("/Applications", f"{HOME}/Applications")),
    ("KovraAgent.app", ("/Applications", f"{HOME}/Applications"))) for where in places]
SHARED_TEMPORARY = "/tmp/kovra"
# What the scenario "installed" has in the user's temporary folder.
INSTALLED_REMNANTS = [f"{TEMPORARY}/kovra-agent-tistool-4711", f"{TEMPORARY}/kovraInstaller-8231"]

SYSTEM_BUNDLES = [*SYSTEM_APPS, f"{INPUT_METHODS}/kovraInput.app"]
USER_BUNDLES = [*USER_APPS, f"{HOME}{INPUT_METHODS}/kovraInput.app"]
SYSTEM_PARTS = sorted([*SYSTEM_BUNDLES, SHARED_TEMPORARY])
USER_DATA = sorted({*COUNTED, *DELETED_DOMAINS, *CACHES, *INSTALLED_REMNANTS})

# What the tools keep their records in. The last three stand for the system's own databases.
KEYBOARD_FILE = f"{HOME}/Library/Preferences/com.apple.HIToolbox.plist"
KEYCHAIN_FILE = f"{HOME}/Library/Keychains/login.keychain-db"
STATE = "/var/db/practice-mac"
RECORDS = {"keyboard": KEYBOARD_FILE, "keychain": KEYCHAIN_FILE,
           **{name: f"{STATE}/{name}.plist"
              for name in ("input-sources", "launch-services", "privacy")}}

# The uninstaller's own files.
LOG_FOLDER = f"{HOME}/Library/Logs/kovraUninstaller"
LOG = f"{LOG_FOLDER}/uninstall.log"
STAGING_FOLDER = f"{TEMPORARY}/kovra-uninstaller-tistool"
STAGED_HELPER = f"{STAGING_FOLDER}/tistool"
OWN_FILES = sorted([LOG_FOLDER, LOG, STAGING_FOLDER, STAGED_HELPER])

LSREGISTER = ("/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework"
              "/Support/lsregister")


def is_input_method(name):
    return name.startswith("kovraInput") and name.endswith(".app")


def is_remnant(name):
    return name != "kovra-uninstaller-tistool" and name.startswith(REMNANTS)


def is_listed(entry):
    """Whether a keyboard settings entry counts as the product's: the word in any key or value."""
    if isinstance(entry, dict):
        return any(is_listed(key) or is_listed(value) for key, value in entry.items())
    if isinstance(entry, list):
        return any(map(is_listed, entry))
    return isinstance(entry, str) and "kovra" in entry.lower()


def without_product(settings):
    """The keyboard settings without the product's entries, and how many went."""
    kept, removed = dict(settings), 0
    for key in SETTINGS_KEYS:
        entries = kept.get(key)
        if isinstance(entries, list) and all(isinstance(entry, dict) for entry in entries):
            kept[key] = [entry for entry in entries if not is_listed(entry)]
            removed += len(entries) - len(kept[key])
    return kept, removed


def counted(number, noun):
    ending = noun if number == 1 else {"entry": "entries"}.get(noun, f"{noun}s")
    return f"{number} {ending}"


def summary(items):
    """The log's record of a scan, of (category, title, detail, needs an administrator)."""
    if not items:
        return ["Nothing found."]
    lines = []
    for category in ("Apps", "Input method", "Data & settings", "Permissions"):
        inside = [item for item in items if item[0] == category]
        if inside:
            lines.append(f"[{category}]")
            lines += [f"  - {title}: {detail}{' (admin)' if admin else ''}"
                      for _, title, detail, admin in inside]
    return lines
