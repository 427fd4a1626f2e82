"""The sealed list of a bundle's files: Contents/_CodeSignature/CodeResources."""

import hashlib
import plistlib
import re
from pathlib import Path

# The rules are part of the sealed list, and the system checks a bundle by the rules that it finds
# there; these are the ones that the system's own tool writes for an application. The weightiest
# rule that matches a path decides.
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
    """The sealed list's bytes for the folder `contents`, whose main program `executable` is not in
    it: that one is covered by its own signature, which covers this list too."""
    old, new = {}, {}
    for path in sorted(p for p in Path(contents).rglob("*") if not p.is_dir()):
        name = path.relative_to(contents).as_posix()
        if name.startswith("_CodeSignature/") or name == executable:
            continue
        if path.is_symlink():
            raise ValueError(f"{name}: a link; this bundle is to hold none")
        data = path.read_bytes()
        verdict = _rule(OLD_RULES, name)
        if verdict not in (None, "omit"):
            digest = hashlib.sha1(data).digest()
            old[name] = {"hash": digest, "optional": True} if verdict == "optional" else digest
        verdict = _rule(RULES, name)
        if verdict == "nested":
            raise ValueError(f"{name}: code belongs in Resources; this folder is for signed code")
        if verdict not in (None, "omit"):
            new[name] = {"hash2": hashlib.sha256(data).digest()}
            if verdict == "optional":
                new[name]["optional"] = True
    listing = {"files": old, "files2": new, "rules": OLD_RULES, "rules2": RULES}
    # Whole numbers stand without a fraction, as the system writes them.
    return re.sub(rb"(<real>\d+)\.0(</real>)", rb"\1\2", plistlib.dumps(listing))


def _rule(rules, name):
    """What the weightiest matching rule says: None, "omit", "nested", "optional" or "seal"."""
    weight, verdict = 0, None
    for pattern, rule in rules.items():
        settings = {} if rule is True else rule
        if settings.get("weight", 1) > weight and re.search(pattern, name):
            weight = settings.get("weight", 1)
            verdict = next((k for k in ("omit", "nested", "optional") if settings.get(k)), "seal")
    return verdict
