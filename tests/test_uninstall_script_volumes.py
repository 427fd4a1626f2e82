"""Volumes that are mounted where the script that root runs removes something."""

import unittest

from catalogue import SYSTEM_PARTS
from support import replace
from uninstall_script import BASH, BY_NUMBER, FINDS, LINKED_TMP, WORLDS, run_after

EJECT = "eject the volume, then Retry."
MOUNT = """
volume() {
    mkdir -p "$1"
    mount -n -t tmpfs none "$1"
    mkdir -p "$1/photos/empty"
    echo photo > "$1/photos/1"
    ln -s photos "$1/link"
    chmod 555 "$1/photos"
}
state() { ls -lARc --time-style=full-iso "$1"; ls -ldc --time-style=full-iso "$1"; }
"""


def with_volumes(paths, shell=BASH, *before):
    """Mounts a volume at each of the paths, and prints what was touched of them."""
    quoted = " ".join(f"'{path}'" for path in paths)
    return run_after(
        f"{MOUNT}\nfor path in {quoted}; do volume \"$path\"; done\n"
        f"before=$(for path in {quoted}; do state \"$path\"; done)",
        shell, *before, f"mkdir -p {quoted} || :",
        look=f"after=$(for path in {quoted}; do state \"$path\"; done)\n"
             "[ \"$before\" = \"$after\" ] || { echo touched; diff <(echo \"$before\") "
             "<(echo \"$after\"); }")


class Volumes(unittest.TestCase):
    def assert_stays(self, result, words):
        self.assertEqual(result.stdout.decode(), "")
        self.assertEqual(result.stderr.decode(), words)
        self.assertEqual(result.status, 1)
        self.assertEqual((result.created, result.changed), ([], []))

    def in_each_world(self, check):
        for shell, find in WORLDS:
            with self.subTest(shell=shell, find=find):
                check(shell, find)

    def test_one_in_the_place_of_each_part_stays(self):
        def check(shell, find):
            result = with_volumes(SYSTEM_PARTS, shell, find)
            self.assert_stays(result, "/Applications/kovra.app, /Applications/KovraAgent.app and "
                                      f"2 more stayed; {EJECT}")
            self.assertEqual(result.deleted, [])
        self.in_each_world(check)

    def test_one_below_each_part_stays_with_the_folders_above_it_and_the_rest_goes(self):
        below = [f"{part}/in side/Drive" for part in SYSTEM_PARTS]
        beside = " ".join(f"'{part}/in side/gone/with'" for part in SYSTEM_PARTS)

        def check(shell, find):
            make = f"mkdir -p {beside}; for folder in {beside}; do touch \"$folder/file\"; done"
            result = with_volumes(below, shell, find, make)
            self.assert_stays(result, "/Applications/kovra.app, /Applications/KovraAgent.app and "
                                      f"2 more stayed; {EJECT}")
            for part in SYSTEM_PARTS:
                self.assertNotIn(part, result.deleted)
                self.assertNotIn(f"{part}/in side", result.deleted)
                self.assertIn(f"{part}/in side/gone", result.deleted)
            self.assertTrue({f"{part}/Contents" for part in SYSTEM_PARTS[:3]} <=
                            set(result.deleted))
        self.in_each_world(check)

    def test_one_stays_where_the_temporary_folder_is_a_link(self):
        for path in ("/private/tmp/kovra", "/private/tmp/kovra/in"):
            for find in FINDS.values():
                with self.subTest(path=path, find=find):
                    result = with_volumes([path], BASH, LINKED_TMP, find)
                    self.assert_stays(result, f"/tmp/kovra stayed; {EJECT}")
                    self.assertEqual(set(SYSTEM_PARTS) - set(result.deleted), {"/tmp/kovra"})

    def test_several_in_one_folder_stay(self):
        paths = ["/tmp/kovra/a", "/tmp/kovra/b/c", "/tmp/kovra/b/d\n/e", "/tmp/kovra/b/d\n/*",
                 "/tmp/kovra/b/100% /"]
        for find in FINDS.values():
            with self.subTest(find=find):
                result = with_volumes(paths, BASH, find)
                self.assert_stays(result, f"/tmp/kovra stayed; {EJECT}")
                self.assertEqual(set(SYSTEM_PARTS) - set(result.deleted), {"/tmp/kovra"})

    def test_a_volume_mounted_on_another_stays(self):
        result = with_volumes(["/tmp/kovra/in", "/tmp/kovra/in/photos"])
        self.assert_stays(result, f"/tmp/kovra stayed; {EJECT}")

    def test_one_in_a_place_that_nothing_is_in_is_told_too(self):
        result = run_after("mount -n -t tmpfs none /tmp/kovra")
        self.assert_stays(result, f"/tmp/kovra stayed; {EJECT}")

    def test_a_volume_in_the_place_of_a_part_is_not_searched(self):
        at_df = replace("/bin/df", 'printf "%s\\n" "$@" >> /asked\nexec /bin/df.real "$@"')
        result = run_after(f"{MOUNT}\nvolume /tmp/kovra", BASH, at_df, look="cat /asked; rm /asked")
        self.assertEqual(result.stdout.decode().split(), ["-P", "/tmp", "-P", "/tmp/kovra"])
        self.assertEqual((result.status, result.stderr.decode()),
                         (1, f"/tmp/kovra stayed; {EJECT}"))

    def test_a_volume_under_the_target_of_a_link_is_not_touched(self):
        link = "rm -rf /Applications/kovra.app; ln -s /precious /Applications/kovra.app"
        result = with_volumes(["/precious"], BASH, link)
        self.assertEqual((result.status, result.stdout, result.stderr), (0, b"", b""))
        self.assertEqual(result.deleted, SYSTEM_PARTS)

    def test_one_is_not_entered_by_a_link_though_a_folder_there_has_the_same_number(self):
        enter = ('() { if [ "$1" = /tmp/kovra ] && [ ! -e /tmp/aside ]; then '
                 "mv /tmp/kovra /tmp/aside; ln -s /disk/folders/same /tmp/kovra; "
                 "builtin cd /tmp/kovra; rm /tmp/kovra; mv /tmp/aside /tmp/kovra; "
                 'else builtin cd "$@"; fi; }')
        # On an empty volume of this kind folders have the numbers in turn.
        prepare = """
mkdir -p /disk; mount -n -t tmpfs none /disk; mount -n -t tmpfs none /tmp; mkdir /disk/folders
mkdir /disk/folders/{1..50} /tmp/{1..9} /tmp/kovra
number=$(stat -c %i /tmp/kovra)
same=$(/usr/bin/find /disk/folders -inum "$number"); mv "$same" /disk/folders/same
touch /tmp/kovra/file /disk/folders/same/photo"""
        result = run_after(prepare, BASH, BY_NUMBER, environment={"BASH_FUNC_cd%%": enter},
                           look="ls /tmp/kovra; ls /disk/folders/same; umount /disk; rmdir /disk")
        self.assertEqual(result.stdout.decode().split(), ["file", "photo"])
        self.assertEqual((result.status, result.stderr.decode()), (1, "/tmp/kovra stayed."))

    def test_what_is_itself_on_another_volume_than_the_root_goes(self):
        for parent in ("/tmp", "/Library/Input Methods", "/Applications"):
            with self.subTest(parent):
                result = run_after(f"mount -t tmpfs none '{parent}'\n"
                                   f"for name in kovra kovra.app kovraInput.app; do\n"
                                   f"mkdir -p '{parent}/'$name/in/side; done\n"
                                   f"touch '{parent}/kovra.txt'", look=f"ls '{parent}'")
                mine = {"/tmp": "kovra", "/Applications": "kovra.app"}.get(parent, "kovraInput.app")
                self.assertEqual(result.stdout.decode().split(), sorted(
                    {"kovra", "kovra.app", "kovraInput.app", "kovra.txt"} - {mine}))
                self.assertEqual((result.status, result.stderr), (0, b""))

    def test_one_that_is_mounted_once_the_script_is_in_the_folder_stays(self):
        at_find = replace("/usr/bin/find", "if [ $PWD = /tmp/kovra ] && [ ! -e /mounted ]; then\n"
                          f"touch /mounted\n{MOUNT}\nvolume /tmp/kovra\n"
                          'volume /tmp/kovra/on-it\nfi\nexec /usr/bin/find.real "$@"')
        result = run_after(":", BASH, at_find, look="cat /tmp/kovra/photos/1 "
                           "/tmp/kovra/on-it/photos/1; rm /mounted")
        self.assertEqual(result.stdout, b"photo\nphoto\n")
        self.assertEqual((result.status, result.stderr.decode()),
                         (1, f"/tmp/kovra stayed; {EJECT}"))

    def test_one_that_is_mounted_once_find_has_begun_stays(self):
        at_find = replace("/usr/bin/find", "if [ $PWD = /tmp/kovra ] && [ ! -e /mounted ] && "
                          f"[[ $* = *-delete* ]]; then\ntouch /mounted\n{MOUNT}\n"
                          "volume /tmp/kovra/in/it\nvolume /tmp/kovra\nfi\n"
                          'exec /usr/bin/find.real "$@"')
        result = run_after(":", BASH, at_find,
                           look="cat /tmp/kovra/photos/1; umount /tmp/kovra; "
                                "cat /tmp/kovra/in/it/photos/1; ls /tmp/kovra; rm /mounted")
        self.assertEqual(result.stdout, b"photo\nphoto\nin\n")
        self.assertEqual((result.status, result.stderr.decode()),
                         (1, f"/tmp/kovra stayed; {EJECT}"))

    def test_none_is_touched_where_a_tool_is_missing_or_fails(self):
        paths = ["/Applications/kovra.app", "/tmp/kovra/in/it", SYSTEM_PARTS[2]]
        for tool in ("/usr/bin/find", "/bin/df", "/usr/bin/sed", "/usr/bin/sort", "/usr/bin/grep",
                     "/bin/rm"):
            for fault in (f"rm {tool}", *(f"rm {tool}; printf '#!/bin/sh\\n{does}\\n' > {tool}; "
                                          f"chmod 755 {tool}" for does in
                                          ("exit 1", "exit 0", "echo /; exit 0", "kill -9 $$"))):
                with self.subTest(tool=tool, fault=fault):
                    result = with_volumes(paths, BASH, fault)
                    self.assertEqual(result.stdout.decode(), "")
                    self.assertEqual(result.status, 1)
                    self.assertRegex(result.stderr.decode(), "^/Applications/kovra.app[^\n]*"
                                                             r" stayed[^\n]*\.$")


if __name__ == "__main__":
    unittest.main()
