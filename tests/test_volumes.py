"""Volumes that are mounted where the product lies: nothing on them is touched, what lies beside them
goes, and each is told."""

import unittest

import catalogue as c
import uninstalling as u
from catalogue import CACHE, CACHES, HOME, LOG, LOG_FOLDER, STAGED_HELPER, TEMPORARY
from support import replace, without_stamps
from uninstalling import uninstall_amid

LIBRARY = f"{HOME}/Library"
DATA = f"{LIBRARY}/Application Support/kovra"
DOCUMENTS = f"{HOME}/Documents"

# All that is removed without an administrator, in this order.
APPS = [f"{LIBRARY}/Input Methods/kovraInput.app", *c.USER_APPS]
LISTED = [*c.COUNTED, f"{TEMPORARY}/kovraInstaller-8231"]

OWN = f"chown -hR 501:20 {HOME} {TEMPORARY} {CACHE}"
EACH = "each() { while IFS= read -r path; do \"$@\"; done; }\n"
RESIDUES = ["kovra.app (~/Applications)", "KovraAgent.app (old version) (~/Applications)",
            "kovraInput.app (~/Library/Input Methods)", "Settings and app data (32 items)"]


def mount_at(places):
    """Makes a volume of the user's, with a photo on it, at each of the places."""
    return (EACH + 'disk() { mkdir -p "$path"; mount -t tmpfs -o uid=501,gid=20 none "$path";'
            ' mkdir "$path/album"; echo photo > "$path/album/photo"; }\n'
            + "each disk <<'end'\n" + "\n".join(places) + "\nend\n")


def photos_at(places):
    """Prints what is on each of these volumes, and then their places with a name behind them."""
    return ("set +e\n" + EACH + 'look() { cat "$path/album/photo" || echo "lost: $path"; }\n'
            + "each look <<'end'\n" + "\n".join(places) + "\nend\n")


def refusal(area, path, mounted):
    return f"  {area}: Could not remove {path}. (a volume is mounted at {mounted})"


class EveryPlace(unittest.TestCase):
    """A volume at, or in, everything that is removed without an administrator."""

    def assert_kept(self, uninstalled, places, behind):
        helper, shown = "Could not run the input source helper.", uninstalled.shown
        self.assertEqual(uninstalled.run_log, [
            "Uninstall started",
            "  Stop: processes and launch agents — OK",
            f"  Input method: {helper}",
            "  Input method: keyboard settings entries removed — 0",
            "  Input method: TIS + LaunchServices cleanup — OK",
            "  Apps: no system-level bundles found, skipping admin prompt",
            *(refusal("Apps", path, path + behind) for path in APPS),
            "  Apps: user-level bundles removed — OK",
            *(refusal("Data", path, path + behind) for path in [*LISTED, *CACHES]),
            "  Data: settings and data removed — WARN",
            "  Permissions: TCC records reset — OK",
            "  Refresh: input UI services restarted — OK",
            "Preflight scan:",
            f"  Verify: residues — {', '.join(RESIDUES)}",
            "Uninstall finished (residues: 4)",
            "Session ended normally"])
        self.assertEqual(shown[2:7], ["done", *(f"residue: {line}" for line in RESIDUES)])
        self.assertIn(f"inputSource: warning: {helper}", shown)
        for row, paths in (("removeApps", APPS), ("removeData", [*LISTED, *CACHES])):
            sentences = (f"Could not remove {u.in_short(path)}." for path in paths)
            self.assertIn(f"{row}: warning: {' '.join(sentences)}", shown)
        self.assertEqual([line for line in uninstalled.run.syslog if "tistool staging" in line],
                         [line for line in uninstalled.run.syslog
                          if f"failed: a volume is mounted at {STAGED_HELPER}{behind}" in line])
        self.assertIn("tistool staging failed", "".join(uninstalled.run.syslog))
        self.assertEqual(uninstalled.run.stderr.decode().splitlines(), ["photo"] * len(places))

    def test_a_volume_in_its_place_stays_as_it_is(self):
        places = [*APPS, *LISTED, *CACHES, STAGED_HELPER]
        uninstalled = uninstall_amid(f"{mount_at(places)}{OWN}", photos_at(places))
        self.assert_kept(uninstalled, places, "")

    def test_a_volume_inside_stays_and_all_beside_it_goes(self):
        tops = [*APPS, *LISTED, *CACHES, STAGED_HELPER]
        places = [f"{top}/in/Drive" for top in tops]
        beside = ('beside() { mkdir -p "$path/a" "$path/in/zoo"; touch "$path/file" '
                  '"$path/a/file" "$path/in/file" "$path/in/zoo/file"; }\n'
                  "each beside <<'end'\n" + "\n".join(tops) + "\nend\n")
        left = 'left() { find "$path" -mindepth 1 ! -path "*/Drive*" ! -name in >&2; }\n'
        uninstalled = uninstall_amid(
            f"{mount_at(places)}{beside}{OWN}",
            f"{photos_at(places)}{left}each left <<'end'\n" + "\n".join(tops) + "\nend\n")
        self.assert_kept(uninstalled, places, "/in/Drive")


class OnePlace(unittest.TestCase):
    """A volume in the data folder, in each of the ways in which one can be there."""

    def uninstall(self, make, look, told=None):
        uninstalled = uninstall_amid(make, look)
        problems = [line for line in uninstalled.log if "Could not" in line]
        self.assertEqual(problems, [refusal("Data", DATA, told)] if told else [])
        self.assertEqual("residue: Settings and app data (1 item)" in uninstalled.shown,
                         told is not None)
        self.assertIn(f"Uninstall finished (residues: {1 if told else 0})", uninstalled.log)
        return uninstalled.run.stderr.decode().splitlines()

    def test_a_read_only_volume(self):
        said = self.uninstall(
            f"mkdir -p '{DATA}'; {OWN}; mount -t tmpfs -o uid=501 none '{DATA}'; touch '{DATA}/file';"
            f"mount -o remount,ro '{DATA}'", f"ls '{DATA}'", told=DATA)
        self.assertEqual(said, ["file"])

    def test_one_that_the_user_may_not_open(self):
        said = self.uninstall(
            f"mkdir -p '{DATA}/disk'; touch '{DATA}/file'; {OWN};"
            f"mount -t tmpfs -o mode=700 none '{DATA}/disk'; touch '{DATA}/disk/file'",
            f"find '{DATA}' -type f", told=f"{DATA}/disk")
        self.assertEqual(said, [f"{DATA}/disk/file"])

    def test_a_volume_mounted_on_another(self):
        said = self.uninstall(
            f"mkdir -p '{DATA}'; {OWN}; {mount_at([f'{DATA}/outer', f'{DATA}/outer/inner'])}",
            photos_at([f"{DATA}/outer", f"{DATA}/outer/inner"]), told=f"{DATA}/outer")
        self.assertEqual(said, ["photo", "photo"])

    def test_a_folder_of_the_same_device(self):
        said = self.uninstall(
            f"mkdir -p '{DATA}/mine' '{DATA}/in' {DOCUMENTS}/deep; touch '{DATA}/in/file';"
            f"echo text > {DOCUMENTS}/deep/letter; {OWN}; mount --bind {DOCUMENTS} '{DATA}/mine'",
            f"cat {DOCUMENTS}/deep/letter; ls '{DATA}'", told=f"{DATA}/mine")
        self.assertEqual(said, ["text", "mine"])

    def test_a_folder_of_the_same_device_in_its_place(self):
        said = self.uninstall(
            f"mkdir -p '{DATA}' {DOCUMENTS}/deep; echo text > {DOCUMENTS}/deep/letter; {OWN};"
            f"mount --bind {DOCUMENTS} '{DATA}'", f"cat {DOCUMENTS}/deep/letter", told=DATA)
        self.assertEqual(said, ["text"])

    def test_a_bind_mount_of_a_single_file(self):
        said = self.uninstall(
            f"mkdir -p '{DATA}' {DOCUMENTS}; touch '{DATA}/letter' '{DATA}/file';"
            f"echo text > {DOCUMENTS}/letter; {OWN};"
            f"mount --bind {DOCUMENTS}/letter '{DATA}/letter'",
            f"cat {DOCUMENTS}/letter; ls '{DATA}'", told=f"{DATA}/letter")
        self.assertEqual(said, ["text", "letter"])

    def test_a_single_file_in_its_place(self):
        said = self.uninstall(
            f"mkdir -p '{LIBRARY}/Application Support' {DOCUMENTS}; touch '{DATA}';"
            f"echo text > {DOCUMENTS}/letter; {OWN}; mount --bind {DOCUMENTS}/letter '{DATA}'",
            f"cat {DOCUMENTS}/letter", told=DATA)
        self.assertEqual(said, ["text"])

    def test_a_link_to_one_goes_and_the_volume_stays(self):
        disk = f"{HOME}/Disk"
        said = self.uninstall(
            f"{mount_at([disk])}mkdir -p '{LIBRARY}/Application Support' {LIBRARY}/Logs/kovra;"
            f"ln -s {disk} '{DATA}'; ln -s {disk}/album {LIBRARY}/Logs/kovra/album; {OWN}",
            f"{photos_at([disk])}ls -d '{DATA}' {LIBRARY}/Logs/kovra 2>/dev/null || true")
        self.assertEqual(said, ["photo"])

    def test_one_in_the_place_of_the_old_log_stays_and_the_log_is_written_on(self):
        old = f"{LOG_FOLDER}/uninstall.old.log"
        make = (f"mkdir -p '{DATA}' {LOG_FOLDER}; head -c 1000001 /dev/zero > {LOG};"
                f"echo >> {LOG}; {OWN}\n{mount_at([old])}")
        uninstalled = uninstall_amid(make, f"{photos_at([old])}tail -n +2 {LOG}")
        said = uninstalled.run.stderr.decode().splitlines()
        self.assertEqual((said[0], said[-1][22:]), ("photo", "Session ended normally"))
        self.assertIn("  Data: settings and data removed — OK", [line[22:] for line in said])

    def test_a_name_with_a_line_break_is_told_as_it_is(self):
        uninstalled = uninstall_amid(
            f"mkdir -p '{DATA}/a\nb'; {OWN}; mount -t tmpfs none '{DATA}/a\nb'")
        at = uninstalled.run_log.index(refusal("Data", DATA, f"{DATA}/a").removesuffix(")"))
        self.assertEqual(uninstalled.run_log[at + 1], "b)")

    def test_one_that_comes_between_scan_and_removal(self):
        # A tool of an earlier step waits for the volume, which waits for the run.
        waits = f"until [ -e '{DATA}/album/photo' ]; do sleep 0.02; done"
        uninstalled = uninstall_amid(
            f"mkdir -p '{DATA}/in'; touch '{DATA}/file' '{DATA}/in/file'; {OWN}\n"
            f"{replace('/usr/bin/killall', waits)}\n"
            f"(until grep -q 'Uninstall started' {LOG} 2>/dev/null; do sleep 0.02; done\n"
            f"{mount_at([DATA])}) &", photos_at([DATA]))
        self.assertIn(refusal("Data", DATA, DATA), uninstalled.log)
        self.assertEqual(uninstalled.run.stderr, b"photo\n")


class Above(unittest.TestCase):
    """Where the folders above are on other volumes, the product goes as anywhere."""

    def assert_gone(self, volumes):
        """Moves the folders onto volumes of their own and uninstalls."""
        move = EACH + ('move() { mkdir -p /private/moved; mount -t tmpfs none /private/moved;'
                       'cp -a "$path/." /private/moved; chown --reference="$path" /private/moved;'
                       'mount --move /private/moved "$path"; }\n'
                       "each move <<'end'\n" + "\n".join(volumes) + "\nend\n")
        gone = [*APPS, *LISTED, *CACHES]
        look = (f"cat {LOG}\n" + EACH + 'look() { ls -d "$path" 2>/dev/null; }\n'
                + "set +e\neach look <<'end'\n" + "\n".join(gone) + "\nend\n"
                + "".join(f"mountpoint -q '{path}' || echo no volume\n" for path in volumes))
        uninstalled = uninstall_amid(move, look, scenario="user-only")
        self.assertEqual(uninstalled.shown, ["ready", "uninstalling", "done", *(
            f"{step}: done" for step in ("stopProcesses", "inputSource", "removeApps", "removeData",
                                         "resetPermissions", "refreshSystem", "verify"))])
        said = u.without_summaries(without_stamps(uninstalled.run.stderr).splitlines())
        self.assertEqual(said[said.index("Uninstall started"):],
                         [*u.LOG_BEFORE_APPS, u.LOG_OF_SKIPPING, *u.LOG_AFTER_APPS])

    def test_a_volume_mounted_at_the_home_folder(self):
        self.assert_gone([HOME, "/var/folders"])

    def test_the_library_and_folders_in_it(self):
        self.assert_gone([LIBRARY, f"{LIBRARY}/Application Support", f"{HOME}/Applications",
                          TEMPORARY, CACHE])


if __name__ == "__main__":
    unittest.main()
