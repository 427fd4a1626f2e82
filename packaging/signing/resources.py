"""Makes the seal of a bundle's files, Contents/_CodeSignature/CodeResources."""

import hashlib
import plistlib
import re
from pathlib import Path

# The rules are part of the seal, and the system checks a bundle by them. These are the rules that
# the system's own tool writes for an application. Of the rules that match a path, the one with the
# largest weight applies.
OLD_RULES = {
    "^Resources/": True,
    r"^Resources/.*\.lproj/": {"optional": True, "weight": 1000.0},
    r"^Resources/.*\.lproj/locversion.plist$": {"omit": True, "weight": 1100.0},
    r"^Resources/Base\.lproj/": {"weight": 1010.0},
    "^version.plist$": True,
}
RULES = {
    r".*\.dSYM($|/)": {"weight": 11.0},
    r"^(.*/)?\.DS_Store$": {"omit": True, "weight": 2000.0},
    "^(Frameworks|SharedFrameworks|PlugIns|Plug-ins|XPCServices|Helpers|MacOS"
    "|Library/(Automator|Spotlight|LoginItems))/": {"nested": True, "weight": 10.0},
    "^.*": True,
    r"^Info\.plist$": {"omit": True, "weight": 20.0},
    r"^PkgInfo$": {"omit": True, "weight": 20.0},
    "^Resources/": {"weight": 20.0},
    r"^Resources/.*\.lproj/": {"optional": True, "weight": 1000.0},
    r"^Resources/.*\.lproj/locversion.plist$": {"omit": True, "weight": 1100.0},
    r"^Resources/Base\.lproj/": {"weight": 1010.0},
    "^[^/]+$": {"nested": True, "weight": 10.0},
    r"^embedded\.provisionprofile$": {"weight": 20.0},
    r"^version\.plist$": {"weight": 20.0},
}


def seal(contents, executable):
    """The seal of the folder `contents`, as bytes. It excludes the main program `executable`, whose
    own signature also covers the seal."""
    old, new = {}, {}
    for path in sorted(p for p in Path(contents).rglob("*") if not p.is_dir()):
        name = path.relative_to(contents).as_posix()
        if name.startswith("_CodeSignature/") or name == executable:
            continue
        if path.is_symlink():
            raise ValueError(f"{name}: a link, which the bundle must not contain")
        data = path.read_bytes()
        verdict = _rule(OLD_RULES, name)
        if verdict not in (None, "omit"):
            digest = hashlib.sha1(data).digest()
            old[name] = {"hash": digest, "optional": True} if verdict == "optional" else digest
        verdict = _rule(RULES, name)
        if verdict == "nested":
            raise ValueError(f"{name}: this folder is for nested code; use Resources")
        if verdict not in (None, "omit"):
            new[name] = {"hash2": hashlib.sha256(data).digest()}
            if verdict == "optional":
                new[name]["optional"] = True
    listing = {"files": old, "files2": new, "rules": OLD_RULES, "rules2": RULES}
    # The system writes whole numbers without a fraction.
    return re.sub(rb"(<real>\d+)\.0(</real>)", rb"\1\2", plistlib.dumps(listing))


def _rule(rules, name):
    """The effect of the matching rule with the largest weight: None, "omit", "nested", "optional" or
    "seal"."""
    weight, verdict = 0, None
    for pattern, rule in rules.items():
        settings = {} if rule is True else rule
        if settings.get("weight", 1) > weight and re.search(pattern, name):
            weight = settings.get("weight", 1)
            verdict = next((k for k in ("omit", "nested", "optional") if settings.get(k)), "seal")
    return verdict
