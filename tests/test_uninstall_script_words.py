"""The messages of the script that root runs about what stayed, and that they fit on the page."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from catalogue import HOME
from support import BUILD, CHECKOUT, PracticeMac, replace
from uninstall_script import BASH, SCRIPT, SHELLS, run_after
from uninstalling import uninstall_amid

sys.path += [str(Path(__file__).resolve().parent / folder) for folder in ("pictures", "window")]

from display import Display  # noqa: E402
from test_pictures import Picture  # noqa: E402

APP, AGENT, TEMPORARY = "/Applications/kovra.app", "/Applications/KovraAgent.app", "/tmp/kovra"
METHODS = "/Library/Input Methods"
EJECT = "eject the volume"
ALLOW = ("allow it under System Settings › Privacy & Security › App Management, or Full Disk "
         "Access")


def quoted(path):
    """Quoted for bash, in ASCII."""
    return "$'" + "".join(f"\\x{byte:02x}" for byte in os.fsencode(path)) + "'"


def after(*, mounted=(), refused=(), shell=BASH, before=(), wrap=run_after, **options):
    """The script's run where volumes are mounted in some of its folders, and the system refuses to
    change something in others."""
    prepare = ['mounted() { mkdir -p "$1/in"; mount -n -t tmpfs none "$1/in"; }',
               'refused() { mkdir -p "$1"; touch "$1/file"; chattr +i "$1/file"; }']
    prepare += [f"mounted {quoted(path)}" for path in mounted]
    prepare += [f"refused {quoted(path)}" for path in refused]
    return wrap("\n".join(prepare), shell, *before, scenario="clean", **options)


def after_each(paths, shell):
    """What the script says of each of the paths, if a volume is mounted there."""
    each = " ".join(map(quoted, paths))
    script = (f"for path in {each}; do mkdir -p \"$path\"; mount -n -t tmpfs none \"$path\"; "
              '"$@" 2>&1; echo; umount "$path"; rmdir "$path"; done')
    result = PracticeMac("clean").run(["/bin/bash", "-c", script, "bash", *shell, SCRIPT],
                                      as_root=True)
    return result.stdout.decode().splitlines()


def method(rest):
    return f"{METHODS}/kovraInput{rest}.app"


class Words(unittest.TestCase):
    def assert_says(self, expected, **situation):
        result = after(**situation)
        self.assertEqual(result.stderr.decode(), expected)
        self.assertEqual((result.status, result.stdout), (1, b""))
        self.assertLessEqual(len(expected), 200)

    def test_name_what_stayed_and_what_helps(self):
        for shell in SHELLS:
            with self.subTest(shell=shell):
                self.assert_says(f"{TEMPORARY} stayed; {EJECT}, then Retry.", mounted=[TEMPORARY],
                                 shell=shell)
                self.assert_says(f"{APP} and {AGENT} stayed; {ALLOW}, then Retry.",
                                 refused=[APP, AGENT], shell=shell)
                self.assert_says(f"{APP}, {AGENT} and 2 more stayed; {EJECT}, {ALLOW}, then Retry.",
                                 refused=[APP, TEMPORARY, method(" 2")], mounted=[AGENT],
                                 shell=shell)

    def test_advise_nothing_that_would_not_help(self):
        missing = "mkdir -p /tmp/kovra; rm /bin/rm"
        self.assert_says(f"{TEMPORARY} stayed.", before=[missing])

    def test_do_not_depend_on_the_language_of_the_tools(self):
        foreign = "\n".join(replace(tool, f'[ "$LC_ALL" = C ] || exec 2>/dev/null\n'
                                    f'exec {tool}.real "$@"')
                            for tool in ("/usr/bin/find", "/bin/rm"))
        self.assert_says(f"{AGENT} stayed; {ALLOW}, then Retry.", refused=[AGENT],
                         before=[foreign], environment={"LC_ALL": "C.UTF-8"})

    def test_leave_out_what_was_refused_at_first_and_removed_later(self):
        at_find = replace("/usr/bin/find", '/usr/bin/find.real "$@"; status=$?\n'
                          "[[ $PWD != /tmp/kovra || $* != *-delete* ]] || "
                          "chattr -i /tmp/kovra/file\nexit $status")
        self.assert_says(f"{AGENT} stayed; {EJECT}, then Retry.", refused=[TEMPORARY],
                         mounted=[AGENT], before=[at_find])

    def test_give_the_number_of_paths_that_do_not_fit_by_name(self):
        many = [method(f" {number:02}") for number in range(12)]
        for shell in SHELLS:
            with self.subTest(shell=shell):
                self.assert_says(f"{many[0]}, {many[1]} and 10 more stayed; {EJECT}, then Retry.",
                                 mounted=many, shell=shell)

    def test_name_the_folder_alone_where_the_name_could_be_misread(self):
        names = [" CANCEL", "canCelled", "\n", "\t", "\r", "\x1b[2J", "\x7f", "ü", "\udcff",
                 "\u202e", "W" * 8, " with a long name"]
        for shell in SHELLS:
            with self.subTest(shell=shell):
                self.assertEqual(after_each([method(name) for name in names], shell),
                                 [f"{METHODS}/… stayed; {EJECT}, then Retry."] * len(names))

    def test_name_paths_that_can_be_displayed(self):
        names = ["*", "\\n", "%s", "'", '"', "$x", "`x`", " & 1", "~!@#^(", "W" * 7]
        for shell in SHELLS:
            with self.subTest(shell=shell):
                self.assertEqual(after_each([method(name) for name in names], shell),
                                 [f"{method(name)} stayed; {EJECT}, then Retry." for name in names])

    def test_name_folders_alone_before_they_are_too_long(self):
        refused = [method(" A"), method(" B")]
        self.assert_says(f"{refused[0]} and {refused[1]} stayed; {ALLOW}, then Retry.",
                         refused=refused)
        self.assert_says(f"{METHODS}/…, {METHODS}/… and 1 more stayed; {ALLOW}, then Retry.",
                         refused=[*refused, method(" C")])

    def test_are_told_by_the_uninstaller_and_never_taken_for_a_refused_prompt(self):
        def uninstall(prepare, *_, scenario):
            return uninstall_amid(f"{prepare}; chown -hR 501:20 {HOME}", scenario=scenario)
        uninstalled = after(refused=[method(" Cancel")], wrap=uninstall)
        said = f"Privileged removal failed: {METHODS}/… stayed; {ALLOW}, then Retry."
        self.assertEqual(uninstalled.phase, f"failed: Remove kovra apps: {said}")
        self.assertIn(f"Uninstall failed at Remove kovra apps: {said}", uninstalled.log)


class Room(unittest.TestCase):
    """The page with the longest of these texts. Its button begins 302 points from the top."""

    SITUATIONS = {
        "both-reasons": {"refused": [APP], "mounted": [AGENT, *(method(n) for n in range(98))]},
        "both-and-a-folder": {"refused": [AGENT], "mounted": [method(n) for n in range(98)]},
        "nearly-too-long": {"refused": [method(" A"), method(" B")]},
        "named-by-folders": {"refused": [method(f"{n} long name here") for n in range(100)]},
        "widest-names": {"mounted": [method("W" * 7), method("M" * 7), method(""), AGENT][:3]},
        "widest-refused": {"refused": [AGENT, method("W" * 7)]},
    }

    def test_is_enough_for_the_longest_message_in_the_window(self):
        said = {name: after(**situation).stderr.decode()
                for name, situation in self.SITUATIONS.items()}
        self.assertGreater(max(map(len, said.values())), 190, said)
        self.assertLessEqual(max(map(len, said.values())), 200, said)
        with Display() as display, tempfile.TemporaryDirectory() as folder:
            pages = [f"{name}=Privileged removal failed: {words}" for name, words in said.items()]
            subprocess.run([BUILD / "tests/pictures/render-page", folder,
                            CHECKOUT / "resources/AppIcon.png", *pages], check=True,
                           env=display.environment, capture_output=True)
            for name in said:
                picture = Picture(f"{folder}/{name}.png", 1)
                ink = picture.ink(10, 206, 470, 302)
                self.assertGreater(ink[3], 240, name)
                self.assertLess(ink[3], 294, name)


if __name__ == "__main__":
    unittest.main()
