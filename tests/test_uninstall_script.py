"""The script that root runs, under every shell that might run it."""

import shlex
import subprocess
import unittest

from support import CHECKOUT, PracticeMac

SCRIPT = CHECKOUT / "resources/uninstall.sh"
SHELLS = (["/bin/bash"], ["/bin/bash", "--posix"], ["/bin/dash"], ["/bin/sh"])
SYSTEM_PARTS = ["/Applications/KovraAgent.app", "/Applications/kovra.app",
                "/Library/Input Methods/kovraInput.app", "/tmp/kovra"]


def run(scenario, shell, *before, as_root=True, environment=None):
    return PracticeMac(scenario).run([*shell, SCRIPT], as_root=as_root, before=before,
                                     environment=environment)


class Script(unittest.TestCase):
    def assert_removed(self, result, deleted):
        self.assertEqual((result.status, result.stdout, result.stderr), (0, b"", b""))
        self.assertEqual(result.deleted, sorted(deleted))
        self.assertEqual((result.created, result.changed), ([], []))

    def in_each_shell(self, check):
        for shell in SHELLS:
            with self.subTest(shell=shell):
                check(shell)

    def test_removes_the_system_parts_and_nothing_else(self):
        self.in_each_shell(lambda shell: self.assert_removed(run("installed", shell), SYSTEM_PARTS))

    def test_leaves_ten_thousand_look_alikes_alone(self):
        self.assert_removed(run("bystanders", ["/bin/bash"]), SYSTEM_PARTS)

    def test_has_nothing_to_do_where_nothing_is(self):
        self.in_each_shell(lambda shell: self.assert_removed(run("clean", shell), []))

    def test_works_where_the_folders_are_missing(self):
        self.in_each_shell(lambda shell: self.assert_removed(
            run("clean", shell, "rm -r /Applications '/Library/Input Methods'"), []))

    def test_finds_input_methods_as_the_scanner_does(self):
        names = ["kovraInput 2.app", "kovraInput\nline.app", "kovraInput*.app", "kovraInput-\t.app"]
        others = ["KovraInput.app", "kovrainput.app", "kovraInput.app2", "xkovraInput.app",
                  "kovraInput", ".kovraInput.app"]
        make = "; ".join(f"mkdir '/Library/Input Methods/{name}'" for name in names + others)
        self.in_each_shell(lambda shell: self.assert_removed(
            run("clean", shell, make), [f"/Library/Input Methods/{name}" for name in names]))

    def test_removes_links_as_links(self):
        make = ("mkdir -p /precious/Contents; touch /precious/Contents/file;"
                "for part in /Applications/kovra.app /Applications/KovraAgent.app"
                " '/Library/Input Methods/kovraInput.app' /tmp/kovra;"
                "do ln -s /precious \"$part\"; done;"
                "ln -s nowhere '/Library/Input Methods/kovraInput dangling.app'")
        self.in_each_shell(lambda shell: self.assert_removed(
            run("clean", shell, make),
            [*SYSTEM_PARTS, "/Library/Input Methods/kovraInput dangling.app"]))

    def test_follows_no_link_inside(self):
        make = ("mkdir -p /precious /Applications/kovra.app; touch /precious/file;"
                "ln -s /precious /Applications/kovra.app/link; ln -s / /Applications/kovra.app/root")
        self.in_each_shell(lambda shell: self.assert_removed(
            run("clean", shell, make), ["/Applications/kovra.app"]))

    def test_leaves_a_volume_that_somebody_mounted_in_the_temporary_folder(self):
        mounted = "/tmp/kovra/in/volume"
        script = (f"mkdir -p {mounted}; touch /tmp/kovra/in/file; mount -t tmpfs none {mounted};"
                  f"mkdir {mounted}/photos; echo photo > {mounted}/photos/1;"
                  f'"$@" && status=0 || status=$?; cat {mounted}/photos/1;'
                  "ls -A /tmp/kovra /tmp/kovra/in; exit $status")

        def check(shell):
            result = PracticeMac("installed").run(["/bin/sh", "-c", script, "sh", *shell, SCRIPT],
                                                  as_root=True)
            self.assertEqual(result.stdout.split(),
                             [b"photo", b"/tmp/kovra:", b"in", b"/tmp/kovra/in:", b"volume"])
            self.assertEqual(result.status, 1)
            self.assertEqual(result.stderr.decode(), "kovra: some parts could not be removed from "
                                                     "the system's folders.\n")
            self.assertEqual(set(SYSTEM_PARTS) - set(result.deleted), {"/tmp/kovra"})
        self.in_each_shell(check)

    def test_runs_on_as_it_was_when_it_is_written_over(self):
        written = "/Library/uninstall.sh"
        tool = (f"#!/bin/sh\nfor n in $(seq 500); do echo '/bin/touch /Library/written-over';"
                f"done > {written}\necho 0\n")
        before = (f"rm /usr/bin/id; printf %s {shlex.quote(tool)} > /usr/bin/id;"
                  f"chmod 755 /usr/bin/id; printf %s {shlex.quote(SCRIPT.read_text())} > {written}")

        def check(shell):
            result = PracticeMac("installed").run([*shell, written], as_root=True, before=[before])
            self.assertEqual((result.status, result.stderr), (0, b""))
            self.assertEqual(result.deleted, sorted(SYSTEM_PARTS))
            self.assertEqual((result.created, result.changed), ([], [written]))
        self.in_each_shell(check)

    def test_says_what_it_could_not_do_and_does_the_rest(self):
        def check(shell):
            result = run("locked", shell)
            self.assertEqual(result.status, 1)
            self.assertEqual(result.stdout, b"")
            self.assertEqual(result.stderr.decode(), "kovra: some parts could not be removed from "
                                                     "the system's folders.\n")
            self.assertNotIn("/Applications/kovra.app", result.deleted)
            self.assertLessEqual(set(SYSTEM_PARTS) - {"/Applications/kovra.app"},
                                 set(result.deleted))
        self.in_each_shell(check)

    def test_refuses_anybody_but_root(self):
        def check(shell):
            result = run("installed", shell, as_root=False)
            self.assertEqual(result.status, 1)
            self.assertEqual(result.stderr.decode(),
                             "kovra: only root may remove kovra for all users.\n")
            self.assertEqual((result.deleted, result.changed, result.created), ([], [], []))
        self.in_each_shell(check)

    def test_does_not_care_what_surrounds_it(self):
        hostile = {"PATH": "/nowhere", "IFS": "/pl", "LC_ALL": "C.UTF-8", "CDPATH": "/Users",
                   "GLOBIGNORE": "*kovra*", "POSIXLY_CORRECT": "1"}
        self.in_each_shell(lambda shell: self.assert_removed(
            run("installed", shell, environment=hostile), SYSTEM_PARTS))

    def test_keeps_to_the_portable_subset(self):
        checked = subprocess.run(["shellcheck", "--shell=sh", "--severity=style", SCRIPT],
                                 capture_output=True, check=False)
        self.assertEqual((checked.returncode, checked.stdout.decode()), (0, ""))

    def test_removes_nothing_by_a_variable(self):
        removals = [line for line in SCRIPT.read_text().splitlines()
                    if ("rm " in line or "-delete" in line) and not line.lstrip().startswith("#")]
        self.assertEqual(len(removals), 4)
        self.assertFalse([line for line in removals if "$" in line])


if __name__ == "__main__":
    unittest.main()
