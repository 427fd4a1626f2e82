#!/usr/bin/python3
"""Tests what install-packages installs on other releases, with stubs of dpkg, apt and sudo."""

import subprocess
import tempfile
import unittest
from pathlib import Path

import sample

PROGRAM = sample.PACKAGING / "install-packages"

DPKG = """#!/bin/sh
for name; do :; done
grep -qx "$name" "$WORLD/installed" && echo installed"""
CACHE = """#!/bin/sh
if [ "$1" = depends ]; then
    echo "  Depends: $(cat "$WORLD/compiler")"
else
    for name; do :; done
    ! grep -qx "$name" "$WORLD/unknown"
fi"""
GET = """#!/bin/sh
echo "apt-get $*" >> "$WORLD/done" """
SUDO = """#!/bin/sh
echo sudo >> "$WORLD/done"
exec "$@" """
EVERYTHING_ELSE = ("cat", "sed", "grep", "tr", "head", "env", "sh", "dash")


class InstallPackages(unittest.TestCase):
    def setUp(self):
        self.world = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.tools = self.world / "tools"
        self.tools.mkdir()
        for name in EVERYTHING_ELSE:
            (self.tools / name).symlink_to(f"/usr/bin/{name}")
        self.tool("dpkg-query", DPKG)
        self.tool("apt-cache", CACHE)
        self.tool("apt-get", GET)
        self.tool("id", "#!/bin/sh\necho 0")
        self.tool("uname", "#!/bin/sh\necho x86_64")
        self.tool("unshare", "#!/bin/sh\nexit 0")
        for name in ("installed", "unknown", "done"):
            (self.world / name).touch()
        self.write("compiler", "g++-14")

    def tool(self, name, text):
        (self.tools / name).write_text(text)
        (self.tools / name).chmod(0o755)

    def write(self, name, *lines):
        (self.world / name).write_text("".join(f"{line}\n" for line in lines))

    def ask(self, *tasks):
        """The status, the output, and the packages that were installed."""
        done = subprocess.run([PROGRAM, *tasks], capture_output=True, text=True, check=False,
                              env={"PATH": str(self.tools), "WORLD": str(self.world)})
        self.done = (self.world / "done").read_text()
        installed = [line.split() for line in self.done.splitlines() if " install " in line]
        return done.returncode, done.stdout + done.stderr, set(sum(installed, []))

    def test_installs_the_first_alternative_that_the_release_has(self):
        self.write("unknown", *(f"gnustep-back0.{n}-cairo" for n in (32, 31, 30)))
        self.write("compiler", "g++-12")
        _, _, installed = self.ask("run")
        self.assertIn("gnustep-back0.29-cairo", installed)
        self.assertIn("libobjc-12-dev", installed)

    def test_installs_the_newest_alternative_of_several(self):
        _, _, installed = self.ask("run")
        self.assertIn("gnustep-back0.32-cairo", installed)
        self.assertNotIn("gnustep-back0.29-cairo", installed)
        self.assertIn("libobjc-14-dev", installed)

    def test_installs_the_runtime_of_the_installed_compiler(self):
        self.tool("g++", "#!/bin/sh\necho 13.2.0")
        self.assertIn("libobjc-13-dev", self.ask("run")[2])

    def test_installs_only_the_packages_of_the_task(self):
        _, _, installed = self.ask("run")
        self.assertIn("cmake", installed)
        for other in ("npm", "clang-19", "libgtest-dev", "user-mode-linux", "hyperfine"):
            self.assertNotIn(other, installed)
        self.assertIn("clang-19", self.ask("run", "test")[2])
        self.assertIn("npm", self.ask("package")[2])
        self.write("done")
        _, _, installed = self.ask("bench")
        self.assertLessEqual({"hyperfine", "libbenchmark-dev", "libgtest-dev", "cmake"}, installed)
        self.assertNotIn("clang-19", installed)

    def test_installs_the_kernel_for_the_tests_and_where_namespaces_are_refused(self):
        self.assertIn("user-mode-linux", self.ask("test")[2])
        self.write("done")
        self.tool("unshare", "#!/bin/sh\nexit 1")
        self.assertIn("user-mode-linux", self.ask("run")[2])
        self.write("done")
        self.tool("uname", "#!/bin/sh\necho aarch64")
        self.assertNotIn("user-mode-linux", self.ask("run")[2])

    def test_does_nothing_if_nothing_is_missing(self):
        _, _, installed = self.ask("run")
        self.write("installed", *installed)
        self.write("done")
        self.tool("g++", "#!/bin/sh\necho 14.2.0")
        self.tool("id", "#!/bin/sh\necho 1000")
        self.tool("sudo", SUDO)
        self.assertEqual(self.ask("run"), (0, "", set()))
        self.assertEqual(self.done, "")

    def test_uses_sudo_only_to_install(self):
        self.tool("id", "#!/bin/sh\necho 1000")
        self.tool("sudo", SUDO)
        self.ask("run")
        self.assertEqual(self.done.splitlines()[::2], ["sudo", "sudo"])

    def test_without_root_and_sudo_names_what_is_missing(self):
        self.tool("id", "#!/bin/sh\necho 1000")
        status, told, installed = self.ask("run")
        self.assertEqual((status, installed), (1, set()))
        self.assertIn("the practice Mac: psmisc procps zenity", told)

    def test_names_a_package_that_the_release_does_not_have(self):
        self.write("unknown", "psmisc")
        status, told, installed = self.ask("run")
        self.assertEqual((status, installed), (1, set()))
        self.assertIn("For the practice Mac this release has none of: psmisc", told)

    def test_without_apt_prints_the_packages_and_their_purposes(self):
        (self.tools / "apt-get").unlink()
        status, told, _ = self.ask("run")
        self.assertEqual(status, 1)
        self.assertIn("There is no apt here.", told)
        self.assertIn("building: cmake ninja-build", told)
        self.assertIn("the Objective-C runtime of g++", told)
        self.assertNotIn("npm", told)


if __name__ == "__main__":
    unittest.main(verbosity=2)
