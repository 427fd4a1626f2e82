#!/usr/bin/python3
"""Each check of the shipped bundle rejects a bundle that violates it."""

import plistlib
import shutil
import tempfile
import unittest
from pathlib import Path

import sample
from checks import asks, bundle, known

# Every listed method.
METHODS = "".join(f"{method[0]} {name} {method[2:]} {asks.without_directions(encoding)}\n"
                  for name, entry in known.types().items()
                  for method, (encoding, _) in entry.methods.items())
LIBRARIES = [library.path for library in known.libraries().values()]
# Every name of the stubs, each imported from its own library.
IMPORTS = [(name, 1 + LIBRARIES.index(library.path))
           for library in known.libraries().values() if library.stub
           for name in library.symbols]  # fmt: skip


def program(imports=(), **rest):
    classes = [name for name in known.types() if not name.startswith("@")]
    return sample.program(METHODS, classes, libraries=LIBRARIES, imports=imports, **rest)


def main_program(imports=IMPORTS, formats=b"%{public}s\0", **rest):
    return program(imports, formats=formats, **rest)


class ShippedBundle(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.bundle = Path(folder.name) / "kovraUninstaller.app"
        self.contents = self.bundle / "Contents"
        resources = bundle.CHECKOUT / "resources"
        self.info = {**bundle.REQUIRED_KEYS, "CFBundleVersion": "1",
                     "CFBundleShortVersionString": "1.0.0"}  # fmt: skip
        self.write("PkgInfo", b"APPL????")
        self.write("MacOS/kovraUninstaller", main_program())
        self.write("Resources/tistool", program(padding=5000))
        for name in ("AppIcon.icns", "AppIcon.png", "uninstall.sh"):
            self.write(f"Resources/{name}", (resources / name).read_bytes())
        self.sign()

    def write(self, name, data):
        path = self.contents / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)

    def sign(self, helper="ai.kovra.KovraUninstaller.tistool"):
        self.write("Info.plist", plistlib.dumps(self.info))
        sample.sign("--identifier", helper, self.contents / "Resources/tistool")
        sample.sign(self.bundle)
        for path in (self.bundle, *self.bundle.rglob("*")):
            runs = path.is_dir() or path.relative_to(self.contents).as_posix() in bundle.RUNS
            path.chmod(0o755 if runs else 0o644)

    def refuses(self, reason):
        with self.assertRaisesRegex(bundle.PROBLEMS, reason):
            bundle.check(self.bundle)

    def test_a_complete_bundle_passes(self):
        self.assertIn("signed ad hoc", bundle.check(self.bundle))

    def test_a_missing_file_is_reported(self):
        for name in sorted(bundle.FILES - {"Info.plist", "PkgInfo"}):
            with self.subTest(name):
                kept = (self.contents / name).read_bytes()
                (self.contents / name).unlink()
                self.refuses(f"lacks .*{name}")
                self.write(name, kept)

    def test_an_additional_file_is_reported(self):
        self.write("Resources/notes.txt", b"")
        self.sign()
        self.refuses("excess: Resources/notes.txt")

    def test_a_wrong_key_is_reported(self):
        for key in bundle.REQUIRED_KEYS.keys() - {"CFBundleExecutable"}:
            with self.subTest(key):
                kept, self.info[key] = self.info[key], "other"
                self.sign()
                self.refuses(f"'other' for {key}")
                self.info[key] = kept

    def test_a_wrong_mode_is_reported(self):
        (self.contents / "Resources/uninstall.sh").chmod(0o644)
        self.refuses("uninstall.sh has mode 644")

    def test_an_icon_without_all_sizes_is_rejected(self):
        icon = (self.contents / "Resources/AppIcon.icns").read_bytes()
        first = 8 + int.from_bytes(icon[12:16], "big")
        shorter = icon[:4] + (len(icon) - first + 8).to_bytes(4, "big") + icon[first:]
        self.write("Resources/AppIcon.icns", shorter)
        self.sign()
        self.refuses("the icon lacks the size")

    def test_a_helper_signed_with_another_identifier_is_rejected(self):
        self.sign(helper="tistool")
        self.refuses("the helper is signed as tistool")

    def test_a_helper_that_uses_an_unknown_name_is_rejected(self):
        number = 1 + LIBRARIES.index("/usr/lib/libobjc.A.dylib")
        self.write("Resources/tistool", program(imports=[("_objc_msgSent", number)]))
        self.sign()
        self.refuses("has no _objc_msgSent")

    def test_a_stub_with_an_unused_name_is_rejected(self):
        self.write("MacOS/kovraUninstaller", main_program(IMPORTS[1:]))
        self.sign()
        self.refuses(f"listed with {IMPORTS[0][0]}, which is not in use")

    def test_a_program_with_unreadable_log_messages_is_rejected(self):
        for formats, reason in ((None, "no section"), (b"%s\0", "formats are b'%s")):
            with self.subTest(formats):
                self.write("MacOS/kovraUninstaller", main_program(formats=formats))
                self.sign()
                self.refuses(reason)

    def test_a_program_that_is_too_large_is_rejected(self):
        self.write("MacOS/kovraUninstaller", main_program(padding=bundle.LARGEST_PROGRAM))
        self.sign()
        self.refuses("the limit is 400,000")

    def test_a_bundle_that_is_too_large_is_rejected(self):
        self.write("Resources/AppIcon.png", bytes(bundle.LARGEST_BUNDLE))
        self.sign()
        self.refuses("the limit is 1,500,000")

    def test_a_bundle_changed_after_signing_is_rejected(self):
        shutil.copy(self.contents / "PkgInfo", self.contents / "Resources/AppIcon.png")
        self.refuses("AppIcon.png was changed")


if __name__ == "__main__":
    unittest.main()
