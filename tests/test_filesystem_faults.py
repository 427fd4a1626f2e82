"""File systems that refuse, are full, hold special files, or change during the removal."""

import unittest

import uninstalling as u
from catalogue import HOME, LOG, LOG_FOLDER, RECORDS, STAGING_FOLDER, TEMPORARY
from support import PROGRAM, PracticeMac
from uninstalling import ended_well, uninstall, uninstall_amid

DATA = f"{HOME}/Library/Application Support/kovra"
LOGS = f"{HOME}/Library/Logs/kovra"
PRECIOUS = f"{HOME}/Documents/precious"
MAKE_PRECIOUS = f"mkdir -p {PRECIOUS}/deep; echo text > {PRECIOUS}/deep/file; echo > {PRECIOUS}/a"
ASIDE = f"{HOME}/Documents/aside"
# Makes a large folder (one of the Mac's own layer could not be renamed) and, from the moment in
# which its removal has begun, takes folders away that are to be entered and leaves links to the
# precious one in their places; every second folder comes back. Tells how many links stayed.
SWAP_LINKS_IN = f"""
import os
os.makedirs("{DATA}")
os.chdir("{DATA}")
for n in range(4000):
    os.makedirs(f"{{n}}/in")
    open(f"{{n}}/in/file", "w").close()
names = os.listdir()
open("goes first", "w").close()
open("{ASIDE}/ready", "w").close()
while os.path.exists("goes first"):
    pass
stayed = 0
for number, name in enumerate(names):
    try:
        os.rename(name, f"{ASIDE}/{{name}}")
        os.symlink("{PRECIOUS}/deep", name)
        if number % 2:
            os.unlink(name)
            os.rename(f"{ASIDE}/{{name}}", name)
        else:
            stayed += 1
    except OSError:
        pass
os.write(2, str(stayed).encode())
"""
OWN = f"chown -hR 501:20 {HOME}"


def uninstall_while(script, before):
    """The user uninstalls and, once the steps have begun, runs the script at the same time."""
    mac = PracticeMac("clean", bundle=u.RUNNER)
    whole = (f'{PROGRAM} & run=$!; until grep -q "Uninstall started" "{LOG}" 2>/dev/null; do '
             f"sleep 0.02; done; {script}\nwait $run")
    return ended_well(mac.run(["/bin/bash", "-c", whole], before=[*before, OWN], timeout=300))


class Refusals(unittest.TestCase):
    def assert_stayed(self, uninstalled, path, reason):
        self.assertIn(f"removeData: warning: Could not remove {u.in_short(path)}.",
                      uninstalled.shown)
        self.assertEqual([line for line in uninstalled.log if "Could not" in line],
                         [f"  Data: Could not remove {path}. ({reason})"])
        self.assertIn("residue: Settings and app data (1 item)", uninstalled.shown)
        self.assertIn("  Data: settings and data removed — WARN", uninstalled.log)
        self.assertEqual(uninstalled.log[-2:],
                         ["Uninstall finished (residues: 1)", "Session ended normally"])

    def test_an_immutable_file_stays_and_is_told_and_its_neighbours_go(self):
        uninstalled = uninstall_amid(
            f"mkdir -p '{DATA}/in' '{LOGS}'; touch '{DATA}/a' '{DATA}/in/kept' '{DATA}/in/z';"
            f"{OWN}; chattr +i '{DATA}/in/kept'",
            f"chattr -i '{DATA}/in/kept'; find '{DATA}' '{LOGS}' -printf '%f\\n' || true")
        self.assert_stayed(uninstalled, DATA, "Operation not permitted")
        self.assertEqual(uninstalled.run.stderr.decode().splitlines()[:3], ["kovra", "in", "kept"])
        self.assertFalse((uninstalled.run.upper / LOGS.lstrip("/")).exists())

    def test_a_folder_that_may_not_be_read_stays_and_is_told(self):
        for owner, mode in (("0:0", "700"), ("501:20", "000"), ("0:0", "000")):
            with self.subTest(owner=owner, mode=mode):
                uninstalled = uninstall("clean", before=[
                    f"mkdir -p '{DATA}/shut'; touch '{DATA}/shut/file' '{DATA}/a'; {OWN};"
                    f"chown {owner} '{DATA}/shut'; chmod {mode} '{DATA}/shut'"])
                self.assert_stayed(uninstalled, DATA, "Permission denied")
                self.assertEqual(uninstalled.deleted, [u.in_short(f"{DATA}/a")])


class FullDisks(unittest.TestCase):
    def test_a_full_disk_for_the_log_changes_nothing_of_the_rest(self):
        for title, options in (("no byte left", "size=4k"), ("no file left", "nr_inodes=1")):
            with self.subTest(title):
                uninstalled = uninstall_amid(
                    f"mkdir -p '{DATA}' {LOG_FOLDER}; {OWN};"
                    f"mount -t tmpfs -o {options},mode=777 none {LOG_FOLDER};"
                    f"head -c 4096 /dev/zero > {LOG_FOLDER}/full || true",
                    f"cat {LOG_FOLDER}/uninstall.log || true; ls -d '{DATA}' || true")
                self.assertEqual(uninstalled.shown[:3], ["ready", "uninstalling", "done"])
                self.assertNotIn(b"Uninstall started", uninstalled.run.stderr)
                self.assertIn(b"cannot access", uninstalled.run.stderr)

    def test_a_full_disk_for_the_helper_is_told_and_the_helper_never_run(self):
        uninstalled = uninstall_amid(
            f"mkdir -p '{DATA}' {STAGING_FOLDER}; {OWN}; chown -R 501 {TEMPORARY};"
            f"mount -t tmpfs -o size=8k,mode=777 none {STAGING_FOLDER}")
        self.assertIn("inputSource: warning: Could not run the input source helper.",
                      uninstalled.shown)
        self.assertIn("done", uninstalled.shown)
        self.assertTrue([line for line in uninstalled.run.syslog if "No space left" in line],
                        uninstalled.run.syslog)
        self.assertNotIn(RECORDS["input-sources"], uninstalled.changed)


class StrangeThings(unittest.TestCase):
    def assert_gone(self, uninstalled, *paths):
        self.assertEqual(uninstalled.shown[:3], ["ready", "uninstalling", "done"])
        self.assertEqual(sorted(uninstalled.deleted), sorted(map(u.in_short, paths)))

    def test_sockets_pipes_and_devices_go_and_so_do_folders_of_them(self):
        make = (f"mkdir -p '{DATA}'; cd '{DATA}'; mkfifo pipe '{LOGS}'; mknod device c 1 3;"
                "mknod disk b 7 99; python3 -c 'import socket; s = socket.socket(socket.AF_UNIX);"
                f"s.bind(\"socket\")'; cp -a socket {HOME}/Library/Logs/KovraInstaller; {OWN}")
        uninstalled = uninstall("clean", before=[make])
        self.assert_gone(uninstalled, DATA, LOGS, f"{HOME}/Library/Logs/KovraInstaller")

    def test_link_loops_go_inside_a_folder_and_are_nothing_by_themselves(self):
        make = (f"mkdir -p '{DATA}/in'; cd '{DATA}'; ln -s b a; ln -s a b; ln -s . here;"
                f"ln -s ../.. in/up; ln -s kovra {LOGS}; {OWN}")
        uninstalled = uninstall("clean", before=[make])
        self.assert_gone(uninstalled, DATA)

    def test_names_of_every_kind_go(self):
        make = (f"mkdir -p '{DATA}'; cd '{DATA}'; python3 -c 'import os\n"
                "for name in (b\"n\" * 255, b\"\\xff\\xfe\", b\"line\\nline\", b\"-rf\", b\" \","
                "b\"*\", b\"a\\x1bb\", \"\\u00fc\".encode(), b\"$(touch x)\"):\n"
                "  os.makedirs(name); open(name + b\"/\" + name, \"w\")';" + OWN)
        self.assert_gone(uninstall("clean", before=[make]), DATA)

    def test_two_hundred_levels_go(self):
        levels = "/".join(["level"] * 200)
        make = f"mkdir -p '{DATA}/{levels}'; touch '{DATA}/{levels}/file'; {OWN}"
        self.assert_gone(uninstall("clean", before=[make]), DATA)

    def test_a_hundred_thousand_files_go(self):
        make = (f"mkdir -p '{DATA}'; cd '{DATA}'; seq -f 'file %.0f' 100000 | tr '\\n' '\\0' |"
                f"xargs -0 touch; {OWN}")
        self.assert_gone(uninstall("clean", before=[make], timeout=400), DATA)


class ChangesMeanwhile(unittest.TestCase):
    def test_a_path_that_changes_its_kind_goes_as_what_it_has_become(self):
        for title, make, change in (
                ("folder to link", f"mkdir -p '{DATA}/in'",
                 f"rm -rf '{DATA}'; ln -s {PRECIOUS} '{DATA}'"),
                ("link to folder", f"ln -s {PRECIOUS} '{DATA}'",
                 f"rm '{DATA}'; mkdir -p '{DATA}/in'; touch '{DATA}/in/file'"),
                ("file to folder", f"touch '{DATA}'",
                 f"rm '{DATA}'; mkdir -p '{DATA}/in'; touch '{DATA}/in/file'"),
                ("folder to file", f"mkdir -p '{DATA}/in'", f"rm -r '{DATA}'; touch '{DATA}'"),
                ("folder to nothing", f"mkdir -p '{DATA}/in'", f"rm -r '{DATA}'")):
            with self.subTest(title):
                uninstalled = uninstall_while(change, [f"{MAKE_PRECIOUS}; {make}"])
                self.assertEqual(uninstalled.shown[:3], ["ready", "uninstalling", "done"])
                self.assertEqual(uninstalled.deleted, [u.in_short(DATA)])
                self.assertEqual(uninstalled.run.changed, [])

    def test_links_that_are_swapped_in_during_the_removal_lead_nowhere(self):
        mac = PracticeMac("clean", bundle=u.RUNNER)
        run = mac.run(["/bin/bash", "-c", f"/usr/bin/python3 -c '{SWAP_LINKS_IN}' & swaps=$!;"
                       f"until [ -e {ASIDE}/ready ]; do sleep 0.05; done; {PROGRAM}; wait $swaps"],
                      before=[f"{MAKE_PRECIOUS}; mkdir {ASIDE}; {OWN}"], timeout=300)
        uninstalled = ended_well(run)
        self.assertEqual(uninstalled.shown[:3], ["ready", "uninstalling", "done"])
        self.assertEqual((uninstalled.deleted, uninstalled.changed), ([], []))
        data = run.upper / DATA.lstrip("/")
        links = sum(path.is_symlink() for path in data.iterdir()) if data.exists() else 0
        self.assertGreater(int(run.stderr.split()[-1]) - links, 100, "links that the removal met")
        # What came back behind the removal is told.
        self.assertEqual(f"removeData: warning: Could not remove {u.in_short(DATA)}." in
                         uninstalled.shown, data.exists(), uninstalled.shown)


if __name__ == "__main__":
    unittest.main()
