import os
import shutil
import subprocess
import tempfile
import time
import unittest
import unittest.mock
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from support import BUILD, CHECKOUT, HOME, LAUNCHER, PracticeMac, text, time_limit


def launcher(*arguments, **options):
    return subprocess.run([LAUNCHER, *arguments], capture_output=True, text=True,
                          timeout=time_limit(60), check=False, **options)


class TheCommand(unittest.TestCase):
    def test_gets_its_status_and_streams_passed_through_untouched(self):
        run = PracticeMac("clean").shell("cat; printf err >&2; exit 7", stdin=b"\0\xff\n in")
        self.assertEqual((run.status, run.stdout, run.stderr), (7, b"\0\xff\n in", b"err"))

    def test_killed_by_a_signal_gives_128_and_its_number(self):
        self.assertEqual(PracticeMac("clean").shell("kill -9 $$").status, 128 + 9)

    def test_that_cannot_be_started_gives_what_a_shell_gives(self):
        self.assertEqual(PracticeMac("clean").run(["/no/such/tool"]).status, 127)
        self.assertEqual(PracticeMac("clean").run(["/etc/passwd"]).status, 126)

    def test_runs_as_the_macs_user_in_an_environment_of_its_own(self):
        run = PracticeMac("clean").shell('id -u; id -un; pwd; echo "$HOME $USER $LOGNAME"; '
                                         'touch "${TMPDIR}x"; echo "$TMPDIR"; echo "$SECRET"; '
                                         'echo "$ASKED"',
                                         environment={"ASKED": "a=b\n\x1b"})
        lines = text(run).splitlines()
        self.assertEqual(lines[:4], ["501", "sam", HOME, f"{HOME} sam sam"])
        self.assertRegex(lines[4], r"^/var/folders/.+/T/$")
        self.assertEqual(lines[5:], ["", "a=b", "\x1b"])
        self.assertEqual(run.created, [lines[4] + "x"])

    def test_runs_as_root_when_asked_to(self):
        self.assertEqual(text(PracticeMac("clean").run(["id", "-u"], as_root=True)), "0\n")

    def test_has_default_signals_and_no_descriptors_of_ours(self):
        run = PracticeMac("clean").shell("grep -E 'SigIgn|SigBlk' /proc/self/status; "
                                         "ls /proc/self/fd | wc -l")
        self.assertEqual(text(run).split(), ["SigBlk:", "0" * 16, "SigIgn:", "0" * 16, "4"])

    def test_sees_no_process_of_the_host(self):
        run = PracticeMac("clean").shell("cat /proc/1/comm; ls -d /proc/[0-9]* | wc -l")
        first, count = text(run).split()
        self.assertEqual(first, "launchd")
        self.assertLess(int(count), 20)


    def test_reaches_the_display(self):
        reader, writer = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "321x123x24",
                                   "-nolisten", "tcp"], pass_fds=[writer],
                                  stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(writer)
        with os.fdopen(reader) as numbers:
            display = f":{numbers.readline().strip()}"
        socket = f"/tmp/.X11-unix/X{display[1:]}"
        done = launcher("run", "clean", "--build", BUILD, "--", "sh", "-c",
                        f"test -S {socket} && xdotool getdisplaygeometry",
                        env={**os.environ, "DISPLAY": display})
        self.assertEqual((done.stdout, done.returncode), ("321 123\n", 0), done.stderr)


class TheHost(unittest.TestCase):
    def test_stays_as_it_is_whatever_root_does_inside(self):
        mark = f"practice-mac-{os.getpid()}"
        outside = Path(tempfile.mkdtemp(prefix="practice-mac-test-"))
        self.addCleanup(shutil.rmtree, outside)
        (outside / "kept").write_text("kept")
        run = PracticeMac("clean").shell(
            f"test ! -e {outside}/kept; touch /etc/{mark} /usr/bin/{mark} /dev/shm/{mark} "
            f"/tmp/{mark} /{mark}; rm -rf /usr/bin/env /usr/share/doc {outside}; "
            "echo changed >> /etc/passwd; mknod /etc/node c 1 3", as_root=True)
        self.assertEqual(run.status, 0, run.stderr)
        for path in ("/etc", "/usr/bin", "/dev/shm", "/tmp", "/"):
            self.assertFalse((Path(path) / mark).exists(), path)
        self.assertTrue(Path("/usr/bin/env").exists())
        self.assertNotIn("changed", Path("/etc/passwd").read_text())
        self.assertEqual((outside / "kept").read_text(), "kept")
        self.assertIn("/usr/bin/env", run.deleted)

    def test_shows_the_checkout_for_reading_only(self):
        run = PracticeMac("clean").shell(f"cat {CHECKOUT}/CMakeLists.txt; touch {CHECKOUT}/x",
                                         as_root=True)
        self.assertEqual(run.stdout, (CHECKOUT / "CMakeLists.txt").read_bytes())
        self.assertIn(b"Read-only file system", run.stderr)

    def test_shows_a_checkout_that_stands_in_a_hidden_folder(self):
        for parent in ("/root", "/tmp", "/home"):
            with self.subTest(parent), tempfile.TemporaryDirectory(dir=parent) as folder:
                copy = Path(folder) / "deep/checkout"
                shutil.copytree(CHECKOUT / "practice-mac", copy / "practice-mac")
                done = subprocess.run(
                    [copy / "practice-mac/practice-mac", "run", "clean", "--build", BUILD,
                     "--before", f"ls -A {parent} > /listing", "--", "/bin/sh", "-c",
                     f"cat /listing; test -r {copy}/practice-mac/README.md"],
                    capture_output=True, text=True, timeout=time_limit(60), check=False)
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                # This checkout may stand in the hidden folder too.
                own = [CHECKOUT.relative_to(parent).parts[0]] if CHECKOUT.is_relative_to(parent) else []
                self.assertEqual(set(done.stdout.split()), {Path(folder).name, *own})

    def test_may_write_where_coverage_is_counted_and_that_is_no_change(self):
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o777)
            script = 'echo "$LLVM_PROFILE_FILE" > "$(dirname "$LLVM_PROFILE_FILE")/told"'
            with unittest.mock.patch.dict(os.environ, LLVM_PROFILE_FILE=f"{folder}/%m"):
                run = PracticeMac("clean").shell(script)
            self.assertEqual((run.status, run.stderr), (0, b""))
            self.assertEqual((Path(folder) / "told").read_text(), f"{folder}/%m\n")
            self.assertEqual(run.created, [])

    def test_has_no_process_left_when_the_launcher_is_killed(self):
        mark = f"98{os.getpid()}"
        process = subprocess.Popen([LAUNCHER, "run", "clean", "--build", BUILD, "--",
                                    "/bin/sh", "-c", f"echo up; sleep {mark}; :"],
                                   stdout=subprocess.PIPE)
        with process.stdout:
            self.assertEqual(process.stdout.readline(), b"up\n")
        process.kill()
        process.wait()
        deadline = time.monotonic() + time_limit(10)
        while subprocess.run(["pgrep", "-f", f"^sleep {mark}$"], check=False,
                             stdout=subprocess.DEVNULL).returncode == 0:
            self.assertLess(time.monotonic(), deadline, "the command outlived its launcher")
            time.sleep(0.05)


class TheReport(unittest.TestCase):
    def test_lists_exactly_what_the_run_changed(self):
        run = PracticeMac("clean").shell(
            "cat Documents/* > /dev/null; echo new > made; mkdir -p d/e; ln -s made link;"
            "echo more >> Documents/kovra.txt; chmod 600 Library/Logs/DiagnosticReports/*;"
            "rm 'Documents/Letter to a friend.txt'; rm -r 'Library/Group Containers';"
            "rm -r 'Library/Application Support/com.example.notes';"
            "mkdir 'Library/Application Support/com.example.notes';"
            "touch gone; rm gone")
        self.assertEqual(run.status, 0, run.stderr)
        self.assertEqual(run.created, [f"{HOME}/d", f"{HOME}/d/e", f"{HOME}/link", f"{HOME}/made"])
        notes = f"{HOME}/Library/Application Support/com.example.notes"
        self.assertEqual(run.deleted, [f"{HOME}/Documents/Letter to a friend.txt",
                                       f"{notes}/attachments", f"{notes}/store.sqlite",
                                       f"{HOME}/Library/Group Containers"])
        changed = {entry["path"]: (entry["kind"], entry["what"])
                   for entry in run.changes["changed"]}
        report = f"{HOME}/Library/Logs/DiagnosticReports/Notes-2024-03-01-101500.ips"
        self.assertEqual(changed, {f"{HOME}/Documents/kovra.txt": ("file", ["content", "time"]),
                                   report: ("file", ["mode"])})
        self.assertEqual(run.written(f"{HOME}/made"), b"new\n")

    def test_is_empty_for_a_run_that_only_reads(self):
        run = PracticeMac("installed").shell("find / -xdev -newer /etc/passwd > /dev/null 2>&1;"
                                             "defaults export com.apple.HIToolbox -;"
                                             "security dump-keychain")
        self.assertEqual(run.changes, {"created": [], "changed": [], "deleted": []})

    def test_leaves_out_what_a_script_did_before_the_run(self):
        run = PracticeMac("installed").run(
            ["sh", "-c", "test -d /opt/early -a ! -e /Applications/kovra.app && cat x"],
            before=["mkdir /opt/early; rm -r /Applications/kovra.app",
                    f"echo hello > {HOME}/x; chown 501 {HOME}/x"])
        self.assertEqual((run.status, run.stdout), (0, b"hello\n"), run.stderr)
        self.assertEqual(run.changes, {"created": [], "changed": [], "deleted": []})

    def test_is_printed_on_standard_error_when_asked_for(self):
        done = launcher("run", "clean", "--build", BUILD, "--list-changes", "--",
                        "rm", f"{HOME}/Documents/kovra.txt")
        self.assertEqual((done.stdout, done.stderr),
                         ("", f"deleted file {HOME}/Documents/kovra.txt\n"))


class TheLauncher(unittest.TestCase):
    def test_without_a_build_says_so(self):
        done = launcher("run", "clean", "--build", "/nonexistent", "--", "echo", "ran")
        self.assertEqual((done.returncode, done.stdout), (125, ""))
        self.assertIn("build the project first", done.stderr)

    def test_gives_up_when_the_script_before_the_run_fails(self):
        done = launcher("run", "clean", "--build", BUILD, "--before", "exit 3", "--", "echo", "ran")
        self.assertEqual((done.returncode, done.stdout), (125, ""))
        self.assertIn("ended with 3", done.stderr)

    def test_runs_several_practice_macs_at_once(self):
        def one(number):
            return PracticeMac("installed").shell(
                f"sleep 0.5; pgrep -xc kovra; echo {number} > own; rm -r ~/Applications")

        with ThreadPoolExecutor(4) as pool:
            runs = list(pool.map(one, range(4)))
        for number, run in enumerate(runs):
            self.assertEqual((run.status, run.stdout), (0, b"1\n"), run.stderr)
            self.assertEqual((run.created, run.deleted),
                             ([f"{HOME}/own"], [f"{HOME}/Applications"]))
            self.assertEqual(run.written(f"{HOME}/own"), f"{number}\n".encode())

    def test_runs_tools_quickly(self):
        run = PracticeMac("installed").shell(
            "date +%s%N; for n in 1 2 3 4 5 6 7 8 9; do for m in 1 2 3 4 5 6 7 8 9 0; do"
            " defaults export com.apple.HIToolbox - > /dev/null; done; done; date +%s%N")
        start, end = map(int, text(run).split())
        print(f"ninety runs of defaults: {(end - start) / 1e9:.3f} s", flush=True)
        self.assertEqual(len(run.tools), 90)

    def test_boots_quickly(self):
        for scenario in ("clean", "installed", "bystanders"):
            start = time.monotonic()
            done = launcher("run", scenario, "--build", BUILD, "--", "true")
            print(f"boot, {scenario}: {time.monotonic() - start:.3f} s", flush=True)
            self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_leaves_no_folder_behind_however_a_run_ends(self):
        with tempfile.TemporaryDirectory() as folder, \
                unittest.mock.patch.object(tempfile, "tempdir", folder):
            run = PracticeMac("clean").shell("true")
            self.assertEqual(len(os.listdir(folder)), 1)
            del run
            with self.assertRaises(subprocess.TimeoutExpired):
                PracticeMac("clean").shell("sleep infinity", timeout=1)
            self.assertEqual(os.listdir(folder), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
