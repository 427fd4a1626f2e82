#!/usr/bin/python3
"""Configures the build as on a Mac, with and without GoogleTest: CMake is given the system and the
compiler. Only CMake's own checks are compiled."""

import json
import plistlib
import subprocess
import tempfile
import unittest
from pathlib import Path

import sample  # noqa: F401 - checks lies beside the tests' folder
from checks import bundle

CHECKOUT = Path(__file__).resolve().parents[2]

# The configuration file of a package manager's GoogleTest.
GOOGLETEST = """foreach(name gtest gmock gmock_main)
  add_library(GTest::${name} STATIC IMPORTED)
  set_target_properties(GTest::${name} PROPERTIES IMPORTED_LOCATION /nowhere/lib${name}.a)
endforeach()
"""


class Configuration(unittest.TestCase):
    def setUp(self):
        self.build = Path(self.enterContext(tempfile.TemporaryDirectory()))

    def configure(self, *options):
        """CMake's output, and the targets of the build."""
        done = subprocess.run(
            ["cmake", "--preset", "macos", "-G", "Ninja", "-B", self.build,
             f"-DCMAKE_TOOLCHAIN_FILE={CHECKOUT}/cmake/macos-sdk.toolchain.cmake",
             "-DCMAKE_AR=/usr/bin/llvm-ar-19", "-DCMAKE_RANLIB=/usr/bin/llvm-ranlib-19",
             *options], cwd=CHECKOUT, capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        listed = subprocess.run(["ninja", "-C", self.build, "-t", "targets", "all"],
                                capture_output=True, text=True, check=True).stdout
        return done.stdout, {line.partition(":")[0] for line in listed.splitlines()}

    def test_without_googletest_the_application_is_built_and_a_line_names_what_is_missing(self):
        said, targets = self.configure()
        [line] = [line for line in said.splitlines() if "brew install googletest" in line]
        self.assertIn("No test is built", line)
        self.assertLessEqual({"kovraUninstaller", "tistool", "bundle"}, targets)
        self.assertEqual([name for name in targets if name.endswith("_test")], [])

    def test_it_is_built_for_the_oldest_system_in_its_info_plist(self):
        self.configure("-DCMAKE_EXPORT_COMPILE_COMMANDS=ON")
        info = plistlib.loads((self.build / "packaging/Info.plist").read_bytes())
        self.assertEqual(info["LSMinimumSystemVersion"], bundle.OLDEST_SYSTEM)
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            self.assertIn(f"-mmacosx-version-min={bundle.OLDEST_SYSTEM}", entry["command"].split())

    def test_with_googletest_the_tests_are_built_too(self):
        folder = self.build / "googletest"
        folder.mkdir()
        (folder / "GTestConfig.cmake").write_text(GOOGLETEST)
        said, targets = self.configure(f"-DGTest_DIR={folder}")
        self.assertNotIn("brew", said)
        self.assertLessEqual(
            {"kovraUninstaller", "bundle", "platform_base_test", "platform_services_test",
             "platform_appkit_test", "kovra_app_test", "kovra_ui_test"}, targets)
        self.assertNotIn("platform_base_mounts_test", targets)
        tests = subprocess.run(["ctest", "--test-dir", self.build, "-N"], capture_output=True,
                               text=True, check=True).stdout
        self.assertIn("platform_appkit_test", tests)


if __name__ == "__main__":
    unittest.main()
