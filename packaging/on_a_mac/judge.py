"""Judges what was captured on a Mac: pure functions, each of which returns a Verdict.

Written for Python 3.9.
"""

import plistlib
import re
import stat
from typing import NamedTuple

RIGHT, WRONG, NOT_TRIED = "right", "wrong", "not tried"
IDENTIFIER = "ai.kovra.KovraUninstaller"


class Verdict(NamedTuple):
    state: str
    saw: str
    wanted: str


def compared(wanted, problems, saw):
    """Wrong with the problems if there are any, else right with what was seen."""
    return Verdict(WRONG if problems else RIGHT, "; ".join(problems) or saw, wanted)


def not_tried(lacking, wanted=""):
    return Verdict(NOT_TRIED, f"lacking: {lacking}", wanted)


# The bundle


def signature(verified, shown, helper):
    """Judges the status and output of `codesign --verify --verbose=2`, and of `codesign -dvvv` for
    the bundle and its helper."""
    problems = []
    status, text = verified
    for sentence in ("valid on disk", "satisfies its Designated Requirement"):
        if status != 0 or sentence not in text:
            problems.append(f"the verification does not say: {sentence}")
    for (status, text), name, identifier in ((shown, "bundle", IDENTIFIER),
                                             (helper, "helper", f"{IDENTIFIER}.tistool")):
        flags = re.search(r"flags=0x[0-9a-f]+\(([^)]*)\)", text)
        if status != 0 or flags is None:
            problems.append(f"codesign shows no flags of the {name}")
            continue
        if "runtime" not in flags[1].split(","):
            problems.append(f"the {name} lacks the hardened runtime ({flags[1]})")
        if f"Identifier={identifier}" not in text.splitlines():
            problems.append(f"the {name} is not signed as {identifier}")
    if "Sealed Resources version=2" not in shown[1]:
        problems.append("the resources are not sealed")
    return compared("valid on disk, hardened runtime, sealed resources", problems,
                    "ad hoc" if is_ad_hoc(shown[1]) else "signed with a certificate")


def is_ad_hoc(shown):
    return "Signature=adhoc" in shown


def assessment(status, text, ad_hoc):
    """Judges `spctl --assess --type execute --verbose`."""
    wanted = "accepted, source=Notarized Developer ID"
    if "override=security disabled" in text or "assessments disabled" in text:
        return not_tried("a Mac whose Gatekeeper is on", wanted)
    if ad_hoc:
        if status == 0:
            return Verdict(WRONG, f"an ad-hoc signature was accepted: {text.strip()}", "rejected")
        return not_tried("a Developer ID signature and the notary's ticket", wanted)
    problems = []
    if status != 0 or "accepted" not in text or "source=Notarized Developer ID" not in text:
        problems.append(text.strip() or f"status {status}")
    return compared(wanted, problems, text.strip())


INFORMATION = {"CFBundleExecutable": "kovraUninstaller", "CFBundleIconFile": "AppIcon",
               "CFBundleIdentifier": IDENTIFIER, "CFBundleInfoDictionaryVersion": "6.0",
               "CFBundleName": "kovra Uninstaller", "CFBundlePackageType": "APPL",
               "NSHighResolutionCapable": True, "NSPrincipalClass": "NSApplication"}


def information(lint, converted, oldest_system):
    """Judges status and output of `plutil -lint`, and the output of `plutil -convert xml1 -o -`."""
    wanted = {**INFORMATION, "LSMinimumSystemVersion": oldest_system}
    problems = []
    if lint[0] != 0 or not lint[1].strip().endswith(": OK"):
        problems.append(f"plutil: {lint[1].strip()}")
    try:
        found = plistlib.loads(converted)
    except Exception as error:  # whatever the parser throws, it is not a property list
        return compared("Info.plist, well formed", [*problems, f"cannot be read: {error}"], "")
    problems += [f"{key} is {found.get(key)!r}" for key, value in wanted.items()
                 if found.get(key) != value]
    problems += [f"{key} is {found.get(key)!r}"
                 for key in ("CFBundleShortVersionString", "CFBundleVersion")
                 if not re.fullmatch(r"\d+(\.\d+)*", str(found.get(key)))]
    version = f"{found.get('CFBundleShortVersionString')} ({found.get('CFBundleVersion')})"
    return compared("well formed, with the keys that the system reads", problems, version)


ICON_SIZES = {f"icon_{points}x{points}{'@2x' if scale == 2 else ''}.png": points * scale
              for points in (16, 32, 128, 256, 512) for scale in (1, 2)}


def icon(sizes, differences):
    """`sizes`: (width, height) of each picture that iconutil extracted, by its name; `differences`:
    the mean difference, of 255, of its middle from the large drawing."""
    problems = [f"{name} is missing" for name in sorted(ICON_SIZES.keys() - sizes.keys())]
    for name in sorted(ICON_SIZES.keys() & sizes.keys()):
        side = ICON_SIZES[name]
        if sizes[name] != (side, side):
            problems.append(f"{name} has {sizes[name][0]} × {sizes[name][1]} pixels")
        elif name not in differences:
            problems.append(f"{name} cannot be read")
        elif differences[name] > 24:
            problems.append(f"{name} differs from the drawing by {differences[name]:.0f} of 255")
    return compared("ten sizes, each as the drawing is", problems, f"{len(sizes)} sizes")


# The program


HEADINGS = ["[Apps]", "[Input method]", "[Data & settings]", "[Permissions]"]


def inventory(status, out, err):
    problems = [] if status == 0 else [f"status {status}"]
    lines = out.splitlines()
    headings = [line for line in lines if line in HEADINGS]
    if lines != ["Nothing found."]:
        if not headings or headings != sorted(set(headings), key=HEADINGS.index):
            problems.append(f"the headings are {headings}")
        if not lines or lines[0] not in HEADINGS or not out.endswith("\n"):
            problems.append("the text does not begin with a heading or end with a line break")
        problems += [f"an unexpected line: {line}" for line in lines
                     if line not in HEADINGS and not re.match(r"  - .+: .+", line)]
    if err.strip():
        problems.append(f"on standard error: {err.strip()[:200]}")
    return compared("the summary, nothing else, status 0", problems, f"{len(lines)} lines")


def no_dock_icon(listings, process):
    """`listings`: the output of `lsappinfo list` at several times while the process ran."""
    wanted = "no icon in the Dock while --inventory runs"
    kinds = {}
    for listing in listings:
        for number, kind in re.findall(r'pid = (\d+).*?type="(\w+)"', listing, re.DOTALL):
            kinds.setdefault(int(number), set()).add(kind)
    if not any("Foreground" in kind for kind in kinds.values()):
        return not_tried("somebody logged in at the screen", wanted)
    own = kinds.get(process, set())
    return compared(wanted, ["it is in the foreground"] if "Foreground" in own else [],
                    f"{', '.join(sorted(own)) or 'not listed'} in {len(listings)} listings")


STAMP = re.compile(r"^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\] ")


def crash(status, ended, restarted, reports):
    """`ended`: the log's lines after SIGSEGV was sent; `restarted`: those of the next session;
    `reports`: the names of the system's crash reports that were made in between."""
    problems = [] if status == -11 else [f"it ended with {status}, not with signal 11"]
    last = [STAMP.sub("", line) for line in ended]
    if last != ["‼️ CRASH: SIGSEGV"]:
        problems.append(f"after the signal the log says {last}")
    first = [STAMP.sub("", line) for line in restarted]
    if not any(re.fullmatch(r"⚠️ Previous session \(started .+\) ended abnormally", line)
               for line in first[:1]):
        problems.append(f"the next session begins with {first[:1]}")
    for report in reports:
        if not any(line.startswith(f"⚠️ System crash report found: {report} (created ")
                   for line in first):
            problems.append(f"the next session does not name {report}")
    if not reports:
        problems.append("the system made no report")
    problems += [f"a line without a time stamp: {line}" for line in ended if not STAMP.match(line)]
    return compared("the signal in the log, a report, both named by the next session", problems,
                    ", ".join(reports))


def session(lines):
    """Judges the log's lines of a session that ended by closing its window."""
    text = [STAMP.sub("", line) for line in lines]
    problems = []
    if not any(re.fullmatch(r"kovra Uninstaller v\S+ \(build \S+\)", line) for line in text):
        problems.append("the log has no header")
    if not any(re.fullmatch(r"Machine: \S+ \[arm64\]", line) for line in text):
        problems.append("the header does not name the machine")
    if text[-1:] != ["Session ended normally"]:
        problems.append(f"the log's last line is {text[-1:]}")
    return compared("a header, and a normal end when the window is closed", problems,
                    f"{len(text)} lines")


KEPT = {"HOME", "USER", "LOGNAME", "SHELL", "TMPDIR", "__CF_USER_TEXT_ENCODING",
        "__CFBundleIdentifier", "LaunchInstanceID", "SECURITYSESSIONID", "XPC_SERVICE_NAME",
        "XPC_FLAGS", "COMMAND_MODE", "MallocNanoZone", "LANG", "TZ", "PATH"}
OF_ROOTS_SHELL = {"PWD", "SHLVL", "_"}
# One variable of each kind that must not reach root with that value.
HOSTILE = {"BASH_ENV": "/tmp/check-on-a-mac-orders", "ENV": "/tmp/check-on-a-mac-orders",
           "SHELLOPTS": "xtrace", "PS4": "$(touch /tmp/check-on-a-mac-trace)", "IFS": "/",
           "CDPATH": "/tmp", "MARK": "1", "BASH_FUNC_id%%": "() { echo 4711; }",
           "DYLD_PRINT_TO_FILE": "/tmp/check-on-a-mac-trace", "PERL5LIB": "/tmp",
           "PYTHONPATH": "/tmp", "PATH": "/tmp:/usr/bin:/bin", "TZ": "() { :; }",
           "LC_TIME": "/tmp/check-on-a-mac-orders", "XPC_FLAGS": "a\nb"}


def as_root(text, traces):
    """`text`: the output of `id -u; id -ru; pwd; env` as root; `traces`: those files that commands
    in the environment would create."""
    lines = text.splitlines()
    problems = []
    if lines[:2] != ["0", "0"]:
        problems.append(f"the user ids are {lines[:2]}")
    if lines[2:3] != ["/"]:
        problems.append(f"the folder is {lines[2:3]}")
    for line in lines[3:]:
        name, _, value = line.partition("=")
        if name == "PATH":
            if value != "/usr/bin:/bin:/usr/sbin:/sbin":
                problems.append(f"PATH is {value}")
        elif name not in KEPT | OF_ROOTS_SHELL and not name.startswith("LC_"):
            problems.append(f"{name} reached root")
        elif name in HOSTILE and value == HOSTILE[name].splitlines()[0]:
            problems.append(f"{name}={value} reached root")
    problems += [f"{path} was created" for path in traces]
    return compared("0, 0, /, and of the environment what docs/security.md lists", problems,
                    f"{len(lines) - 3} variables")


# The page


class Page(NamedTuple):
    image: str      # the symbol's label; empty for the application's icon, which has none
    title: str
    subtitle: str   # a regular expression
    action: tuple   # role and text
    link: str
    symbol: tuple = ()  # the symbol's colour


GREEN, DANGER = (178, 224, 11), (255, 59, 48)
REMOVES = r"This removes kovra from this Mac, including your sign-in and settings\."
PAGES = {
    "scanning": Page("", "Uninstall kovra", REMOVES, ("AXStaticText", "Checking…"), ""),
    "ready": Page("", "Uninstall kovra", REMOVES, ("AXButton", "Uninstall"), ""),
    "uninstalling": Page("", "Uninstall kovra", r"Your Mac may ask for your password to remove "
                         r"kovra from the system Input Methods folder\.",
                         ("AXProgressIndicator", "Uninstalling…"), ""),
    "nothing-found": Page("Done", "kovra was not found",
                          r"There is nothing to remove on this Mac\.", ("AXButton", "Quit"),
                          "Clean up anyway", GREEN),
    "done": Page("Done", "Goodbye.", r"kovra was removed\. Thanks for giving it a try\.",
                 ("AXButton", "Quit"), "Download kovra again", GREEN),
    "residues": Page("Done", "kovra was removed", r"Some items could not be removed\. Restarting "
                     r"your Mac usually clears them\.", ("AXButton", "Quit"), "Show Log", GREEN),
    "failed": Page("Warning", "Couldn't finish uninstalling", r"(?s).+: .+",
                   ("AXButton", "Retry"), "Show Log", DANGER),
}
OF_THE_TITLE_BAR = {"AXCloseButton", "AXMinimizeButton", "AXZoomButton", "AXFullScreenButton"}


def read_out(element):
    for key in ("value", "title", "label"):
        if isinstance(element.get(key), str) and element[key]:
            return element[key]
    return ""


def elements_of(window):
    """The page's elements, without the title bar's buttons and its empty title."""
    return [one for one in window["elements"] if one["subrole"] not in OF_THE_TITLE_BAR
            and (read_out(one) or one["role"] != "AXStaticText")]


def page_of(tree):
    """The name of the page in the window, or None."""
    for window in tree["windows"]:
        texts = [(one["role"], read_out(one)) for one in elements_of(window)]
        for name, page in PAGES.items():
            if ("AXStaticText", page.title) in texts and page.action in texts:
                return name
    return None


def accessibility(tree):
    """Judges the tree of elements, as elements.py reads it."""
    wanted = "one window; each text and button once, in order, with its window, parent and frame"
    if len(tree["windows"]) != 1:
        return compared(wanted, [f"there are {len(tree['windows'])} windows"], "")
    window = tree["windows"][0]
    name = page_of(tree)
    if name is None:
        texts = [(one["role"], read_out(one)) for one in elements_of(window)]
        return compared(wanted, [f"no page has these texts: {texts}"], "")
    page, problems, previous = PAGES[name], [], None
    expected = [("AXImage", page.image)] if page.image else []
    expected += [("AXStaticText", page.title), ("AXStaticText", page.subtitle), page.action]
    expected += [("AXButton", page.link)] if page.link else []
    found = elements_of(window)
    if len(found) != len(expected):
        problems.append(f"{len(found)} elements and not {len(expected)}")
    for one, (role, text) in zip(found, expected):
        found_text = read_out(one)
        what = f"{role} {text!r}"
        fits = (re.fullmatch(text, found_text) if text == page.subtitle
                else found_text == text)
        if one["role"] != role or not fits:
            problems.append(f"{one['role']} {found_text!r} instead of {what}")
        problems += [f"{what} does not answer with its {key}" for key in ("window", "topLevel")
                     if not one[key]]
        if one["parent"] != "AXWindow":
            problems.append(f"the parent of {what} is {one['parent']}")
        if not lies_in(one["frame"], window["frame"]):
            problems.append(f"{what} lies at {one['frame']}, the window at {window['frame']}")
        elif previous is not None and one["frame"][1] < previous:
            problems.append(f"{what} is read in the wrong order")
        if one["frame"]:
            previous = one["frame"][1]
        if role == "AXButton" and "AXPress" not in one["actions"]:
            problems.append(f"{what} cannot be pressed")
    return compared(wanted, problems, f"the page {name}, {len(found)} elements")


def lies_in(inner, outer):
    if not inner or not outer:
        return False
    x, y, width, height = inner
    left, top, whole_width, whole_height = outer
    return (width > 0 and height > 0 and left <= x and top <= y
            and x + width <= left + whole_width and y + height <= top + whole_height)


# After a removal


def log_show(status, text):
    """Judges `log show` for a copy of the program without its helper."""
    wanted = "tistool binary not found in bundle, and no text hidden"
    problems = [] if status == 0 else [f"log show ended with {status}"]
    if "tistool binary not found in bundle" not in text:
        problems.append("the error is not in the system's log")
    own = [line for line in text.splitlines() if IDENTIFIER in line]
    problems += [f"hidden: {line}" for line in own if "<private>" in line]
    return compared(wanted, problems, "the error, readable")


def registrations(before, after, canonical, own):
    """Judges `lsregister -dump` before and after the removal."""
    wanted = "no registration of the product's bundles"

    def paths(dump):
        found = re.findall(r"^\s*path:\s+(.*?)(?: \(0x[0-9a-f]+\))?$", dump, re.MULTILINE)
        return {path for path in found if not path.startswith(own)
                and (path in canonical or "kovraInput.app" in path)}
    if not paths(before):
        return not_tried("a registration that the Mac accepted", wanted)
    left = sorted(paths(after))
    return compared(wanted, [f"still registered: {path}" for path in left],
                    f"{len(paths(before))} removed")


def same(what, found, wanted):
    """Judges whether two lists have the same items, in any order."""
    rest, more = list(wanted), []
    for item in found:
        if item in rest:
            rest.remove(item)
        else:
            more.append(item)
    problems = [f"unexpected: {item}" for item in more] + [f"missing: {item}" for item in rest]
    return compared(what, problems[:12], f"{len(wanted)} as wanted")


def kind_of(path, lstat, exists):
    """A path's kind, as the home model names it."""
    mode = lstat(path).st_mode
    if stat.S_ISLNK(mode):
        return "link" if exists(path) else "dangling link"
    return "folder" if stat.S_ISDIR(mode) else "file"
