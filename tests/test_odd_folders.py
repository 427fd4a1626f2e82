"""Whole uninstalls from folders whose names have a meaning for a shell, AppleScript or a parser."""

import json
import tempfile
import unittest
from pathlib import Path

import catalogue as c
import uninstalling as u
from catalogue import HOME, LOG
from support import PracticeMac, in_bundle, without_stamps

FOLDERS = ("it's", 'a "b"', "line\nbreak", "ä 🎉 $(touch made) `x`", "back\\slash", "\\", "plain")


def scenario(bundle):
    """The whole product, the uninstaller in that place, and a registration inside of it."""
    def text(value):
        return json.dumps(value, ensure_ascii=False)
    return "\n".join([
        'extends = "installed"',
        f"uninstaller = {{ path = {text(bundle)} }}",
        f"registered = [{{ path = {text(inside(bundle))}, identifier = 'ai.kovra.preview' }}]"])


def inside(bundle):
    return in_bundle("kovraInput.app", bundle)


def quoted(path):
    """A word for the shell."""
    return "'" + path.replace("'", "'\\''") + "'"


class OddFolders(unittest.TestCase):
    def uninstall_from(self, bundle):
        with tempfile.TemporaryDirectory() as folder:
            place = Path(folder) / "odd.toml"
            place.write_text(scenario(bundle), encoding="utf-8")
            mac = PracticeMac(place, bundle=u.RUNNER)
            # The symbolizer of a sanitized build takes a path by the line, and without names the
            # search for leaks cannot pass over the runtime's own.
            names = {"ASAN_OPTIONS": "detect_leaks=0"} if "\n" in bundle else None
            return u.ended_well(mac.run([in_bundle("program", bundle)], environment=names))

    def test_an_uninstall_from_them_succeeds_with_the_bundles_own_files(self):
        for name in FOLDERS:
            with self.subTest(name):
                bundle = f"{HOME}/{name}/kovraUninstaller.app"
                uninstalled = self.uninstall_from(bundle)
                self.assertEqual(uninstalled.shown[:4],
                                 ["ready", "uninstalling", "done", "stopProcesses: done"])
                self.assert_ran_its_script(uninstalled, bundle)
                self.assert_staged_its_helper(uninstalled)
                self.assert_kept_its_own_registrations(uninstalled, bundle)
                self.assert_knew_its_version(uninstalled)
                self.assertEqual(sorted(uninstalled.created), sorted(u.OWN_FILES))

    def assert_ran_its_script(self, uninstalled, bundle):
        command = f"/bin/bash {quoted(in_bundle('uninstall.sh', bundle))}"
        as_root = [tool.arguments for tool in uninstalled.run.tools if tool.uid == 0]
        self.assertEqual(as_root, [("-c", command)])
        self.assertLessEqual(set(c.SYSTEM_BUNDLES), set(uninstalled.deleted))

    def assert_staged_its_helper(self, uninstalled):
        self.assertEqual(uninstalled.run.written(u.OWN_FILES[-1]),
                         (u.RUNNER / in_bundle("tistool")).read_bytes())

    def assert_kept_its_own_registrations(self, uninstalled, bundle):
        unregistered = [tool.arguments[1] for tool in uninstalled.run.tools
                        if tool.name == "lsregister" and tool.arguments[0] == "-u"]
        self.assertIn("/Volumes/kovra 2.4/kovraInput.app", unregistered)
        self.assertNotIn(inside(bundle), unregistered)

    def assert_knew_its_version(self, uninstalled):
        log = without_stamps(uninstalled.run.written(LOG))
        self.assertRegex(log, r"\nkovra Uninstaller v[0-9.]+ \(build [0-9]+\)\n")


if __name__ == "__main__":
    unittest.main()
