"""The script that root runs, under every shell that might run it."""

import re
import shlex
import subprocess
import unittest

from catalogue import SYSTEM_PARTS
from support import PracticeMac, replace
from uninstall_script import (BASH, FINDS, LINKED_TMP, SCRIPT, SHELLS, WORLDS, run, run_after)


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
        for shell, find in WORLDS:
            with self.subTest(shell=shell, find=find):
                self.assert_removed(run("installed", shell, find), SYSTEM_PARTS)

    def test_removes_them_where_the_temporary_folder_is_a_link(self):
        parts = [part.replace("/tmp", "/private/tmp") for part in SYSTEM_PARTS]
        for shell, find in WORLDS:
            with self.subTest(shell=shell, find=find):
                self.assert_removed(run("installed", shell, LINKED_TMP, find), parts)

    def test_leaves_ten_thousand_look_alikes_alone(self):
        self.assert_removed(run("bystanders", BASH), SYSTEM_PARTS)

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

    def test_removes_whatever_lies_in_there(self):
        names = ["-delete", "-rf", "*", "?", "[a]", "$(touch x)", "`id`", "'", '"', "\\", " ", "\n",
                 "a\nb", "{}", ";", "~", "\x1b[2J", "ü", "\udcff", "%s", "!", "n" * 255]
        make = "\n".join(f"mkdir -p {folder}; touch {folder}/file; ln -s / {folder}/link"
                         for folder in ("/tmp/kovra/" + shlex.quote(name) for name in names))
        make += ("; cd /tmp/kovra; mkfifo fifo; mknod device c 1 3; mkdir -m 0 shut;"
                 "touch shut/file .hidden ...")
        for find in FINDS.values():
            with self.subTest(find=find):
                self.assert_removed(run("clean", BASH, make, find), ["/tmp/kovra"])

    def test_removes_a_tree_that_is_deep_and_one_that_is_wide(self):
        make = ("mkdir -p /tmp/kovra/wide /Applications/kovra.app; cd /tmp/kovra/wide;"
                "mkdir {1..9999}; touch {1..9999}/file; cd /Applications/kovra.app;"
                f"for n in {{1..300}}; do mkdir {'n' * 200}; cd {'n' * 200}; touch file; done")
        self.assert_removed(run("clean", BASH, f"bash -c {shlex.quote(make)}"),
                            ["/Applications/kovra.app", "/tmp/kovra"])

    def test_leaves_what_only_a_pattern_that_spans_slashes_would_find(self):
        make = ("cd '/Library/Input Methods'; mkdir -p 'kovraInput notes/old.app/in'"
                " kovraInput/kovraInput.app; touch 'kovraInput notes/old.app/in/file';"
                "cd /Applications; mkdir -p other/kovra.app kovra.app.old /tmp/other/kovra")
        for find in FINDS.values():
            with self.subTest(find=find):
                self.assert_removed(run("installed", BASH, make, find), SYSTEM_PARTS)

    def test_unlocks_a_folder_that_is_locked_in_the_finder(self):
        # As on a Mac: find -delete clears a folder's flag after it has tried what is in it.
        for locked in ("/Applications/kovra.app", "/Applications/kovra.app/Contents"):
            with self.subTest(locked=locked):
                at_find = replace("/usr/bin/find", '/usr/bin/find.real "$@"; status=$?\n'
                                  "[[ $PWD != *kovra.app || $* != *-delete* ]] || "
                                  f"chattr -i {locked}\nexit $status")
                result = run_after(f"mkdir -p {locked}/in; touch {locked}/in/file {locked}/file;"
                                   f"chattr +i {locked}", BASH, at_find)
                self.assert_removed(result, SYSTEM_PARTS)

    def test_follows_no_link_that_takes_a_folders_place(self):
        for precious in ("/precious", "/tmp/precious"):
            swap = f"mv /tmp/kovra /tmp/aside; ln -s {precious} /tmp/kovra"
            back = "rm /tmp/kovra; mv /tmp/aside /tmp/kovra"
            for when, script in {"before": f"{swap}; builtin cd /tmp/kovra",
                                 "amid": f"{swap}; builtin cd /tmp/kovra; {back}",
                                 "after": f"builtin cd /tmp/kovra; {swap}"}.items():
                with self.subTest(precious=precious, when=when):
                    enter = (f'() {{ if [[ "$1" = /tmp/kovra && ! -e /tmp/aside ]]; then {script}; '
                             'else builtin cd "$@"; fi; }')
                    result = run("installed", BASH, f"mkdir {precious}; touch {precious}/file",
                                 environment={"BASH_FUNC_cd%%": enter})
                    self.assertEqual([path for path in result.deleted if "precious" in path], [])
                    self.assertEqual(result.status, 1 if when == "amid" else 0)

    def test_removes_nothing_below_the_four_places_by_a_path(self):
        make = "mkdir -p /tmp/kovra/a/b/c; touch /tmp/kovra/a/b/file; ln -s / /tmp/kovra/a/b/link"
        result = PracticeMac("installed").run(
            ["/usr/bin/strace", "-f", "-qq", "-s", "300", "-o", "/trace", "-e",
             "trace=unlink,unlinkat,rmdir,rename,renameat,renameat2", *BASH, SCRIPT],
            as_root=True, before=[make])
        self.assertEqual(set(SYSTEM_PARTS) - set(result.deleted), set())
        calls = [line for line in result.written("/trace").decode().splitlines() if "= 0" in line]
        self.assertGreater(len(calls), 10)
        paths = {re.search(r'\w+\((?:\w+, )?"([^"]*)"', call)[1] for call in calls}
        self.assertEqual({path for path in paths if "/" in path}, set(SYSTEM_PARTS))

    def test_runs_on_as_it_was_when_it_is_written_over(self):
        written = "/Library/uninstall.sh"
        tool = ("for n in $(seq 500); do echo '/bin/touch /Library/written-over';"
                f"done > {written}\necho 0")
        before = (replace("/usr/bin/id", tool) +
                  f"\nprintf %s {shlex.quote(SCRIPT.read_text())} > {written}")

        def check(shell):
            result = PracticeMac("installed").run([*shell, written], as_root=True, before=[before])
            self.assertEqual((result.status, result.stderr), (0, b""))
            self.assertEqual(result.deleted, sorted(SYSTEM_PARTS))
            self.assertEqual((result.created, result.changed), ([], [written]))
        self.in_each_shell(check)

    def test_fails_and_does_the_rest_when_something_stays(self):
        def check(shell):
            result = run("locked", shell)
            self.assertEqual((result.status, result.stdout), (1, b""))
            self.assertEqual(set(SYSTEM_PARTS) - set(result.deleted), {"/Applications/kovra.app"})
        self.in_each_shell(check)

    def test_notices_a_dangling_link_that_stays(self):
        for path in ("/Applications/kovra.app", "/Library/Input Methods/kovraInput.app"):
            def check(shell, path=path):
                folder = path.rpartition("/")[0]
                result = run_after(f"ln -s nowhere '{path}'; chattr +i '{folder}'", shell,
                                   look=f"chattr -i '{folder}'; readlink '{path}'; rm '{path}'",
                                   scenario="clean")
                self.assertEqual((result.status, result.stdout), (1, b"nowhere\n"))
                self.assertTrue(result.stderr.startswith(f"{path} stayed".encode()))
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
        for surroundings in (hostile, {"SHELLOPTS": "errexit:noglob"}):
            self.in_each_shell(lambda shell, around=surroundings: self.assert_removed(
                run("installed", shell, environment=around), SYSTEM_PARTS))

    def test_keeps_to_the_portable_subset(self):
        checked = subprocess.run(["shellcheck", "--shell=sh", "--severity=style", SCRIPT],
                                 capture_output=True, check=False)
        self.assertEqual((checked.returncode, checked.stdout.decode()), (0, ""))

    def test_removes_nothing_by_a_variable(self):
        commands = [line for line in self.script().splitlines()
                    if re.search(r"\b(rm|rmdir|mv|unlink)\b|-delete", line)]
        self.assertEqual(len(commands), 5)
        self.assertFalse([line for line in commands if "$" in line or "`" in line])

    def test_goes_over_the_four_places_and_no_others(self):
        loops = re.findall(r"\bfor (\w+) in (.*?);", self.script())
        places = ('"/Applications/kovra.app" "/Applications/KovraAgent.app" '
                  '"/Library/Input Methods/"kovraInput*.app "/tmp/kovra"')
        self.assertEqual(loops, [("folder", places), ("path", places)])
        self.assertEqual(re.findall(r"\bcd .*|\benter .*", self.script()), [
            "cd / || exit 1",
            'cd "$1" && [ -n "$(/usr/bin/find "$1" -prune -type d -samefile .)" ] &&',
            'enter "$folder" && empty)'])
        self.assertFalse(re.findall(r"\bfolder=", self.script()))

    def script(self):
        """Without comments, each command on a line."""
        lines = [line for line in SCRIPT.read_text().splitlines()
                 if not line.lstrip().startswith("#")]
        return re.sub(r"\\\n\s*", "", "\n".join(lines))


if __name__ == "__main__":
    unittest.main()
