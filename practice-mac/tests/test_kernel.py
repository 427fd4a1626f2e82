"""The practice Mac where namespaces are refused: run by a plain user without any capability, under a
filter, in a user-mode kernel."""

import contextlib
import json
import os
import pty
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import unittest.mock
from pathlib import Path

from support import BUILD, CHECKOUT, HOME, LAUNCHER, time_limit

sys.path.insert(0, str(CHECKOUT / "practice-mac"))
from kernel import boot, memory, session  # noqa: E402
from launcher.root import CannotBoot  # noqa: E402

WITH_NAMESPACES = CHECKOUT / "practice-mac/with-namespaces"
FILTER = CHECKOUT / "tests/without-namespaces"
NOBODY = 65534
SAYS = "a user-mode kernel does it (1024 MB in "
RUNNER = BUILD / "tests/kovraUninstaller.app"
PROGRAM = f"{HOME}/Downloads/kovraUninstaller.app/kovraUninstaller"


def without_capabilities(user, group):
    """The beginning of a command line; root's alone can take anything away."""
    return ["setpriv", f"--reuid={user}", f"--regid={group}", "--clear-groups",
            "--bounding-set=-all", "--inh-caps=-all", "--"] if os.geteuid() == 0 else []


def plain_user():
    """Nobody; where he may not look into this checkout, its owner."""
    checkout = CHECKOUT.stat()
    tried = subprocess.run([*without_capabilities(NOBODY, NOBODY), "test", "-r", FILTER], check=False)
    return (NOBODY, NOBODY) if tried.returncode == 0 else (checkout.st_uid, checkout.st_gid)


USER = plain_user()


def refused(*command):
    """The command line that runs a command as a plain user, without what a kernel may allow or
    refuse."""
    return [str(word) for word in (*without_capabilities(*USER), FILTER, *command)]


class KernelTest(unittest.TestCase):
    def setUp(self):
        self.folder = self.folder_of_nobody()
        os.environ["PRACTICE_MAC_BUILD"] = str(BUILD)
        # Not the one of whoever runs the tests.
        os.environ.pop(session.SOCKET, None)

    def folder_of_nobody(self):
        folder = tempfile.mkdtemp(prefix="practice-mac-test-")
        self.addCleanup(shutil.rmtree, folder)
        if os.geteuid() == 0:
            os.chown(folder, *USER)
        return Path(folder)

    def run_refused(self, *command, **options):
        return subprocess.run(refused(*command), capture_output=True, check=False,
                              timeout=time_limit(120), **options)

    def mac(self, *arguments, **options):
        return self.run_refused(LAUNCHER, "run", *arguments, **options)

    def start(self, *command, **options):
        process = subprocess.Popen(refused(*command), stdout=subprocess.PIPE, **options)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.addCleanup(process.stdout.close)
        return process

    def kernels(self):
        """The ids of all processes of this checkout's kernels, those of their guests included."""
        mark = str(CHECKOUT / "practice-mac/kernel/guest").encode()
        found = []
        for entry in Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and mark in (entry / "cmdline").read_bytes():
                    found.append(int(entry.name))
            except OSError:
                pass
        return found

    def processors(self, processes):
        """Those that any of the processes may run on."""
        found = set()
        for process in processes:
            with contextlib.suppress(ProcessLookupError):
                found |= os.sched_getaffinity(process)
        return found

    def await_none(self, processes):
        end = time.monotonic() + time_limit(20)
        while any(self.lives(process) for process in processes):
            self.assertLess(time.monotonic(), end, "a process outlived its launcher")
            time.sleep(0.05)


    def lives(self, process):
        try:
            status = Path(f"/proc/{process}/status").read_text()
        except OSError:
            return False
        return "\nState:\tZ" not in status


class TheCommand(KernelTest):
    def test_gets_arguments_environment_and_streams_and_gives_its_status(self):
        done = self.mac("clean", "--build", BUILD, "--env", "ASKED=a=b", "--", "sh", "-c",
                        'cat; echo "$1 $ASKED $LC_TIME $SECRET"; id -u; pwd; printf err >&2; '
                        'exit 7', "sh", "one 'word'", input=b"\0\xff\n\x03\x04\x11\x13 in\r\n",
                        env={**os.environ, "LC_TIME": "C.UTF-8", "SECRET": "x"})
        told, _, rest = done.stderr.decode().partition("\n")
        self.assertIn(SAYS, told)
        self.assertEqual((done.returncode, rest), (7, "err"))
        self.assertEqual(done.stdout, b"\0\xff\n\x03\x04\x11\x13 in\r\n"
                         b"one 'word' a=b C.UTF-8 \n501\n" + HOME.encode() + b"\n")

    def test_reads_and_writes_megabytes(self):
        content = os.urandom(300_000)
        done = self.run_refused(WITH_NAMESPACES, "sh", "-c", "tee /dev/stderr", input=content)
        self.assertEqual(done.stdout, content)
        self.assertTrue(done.stderr.endswith(content))

    def test_that_a_signal_kills_gives_what_it_gives_elsewhere(self):
        self.assertEqual(self.mac("clean", "--build", BUILD, "--", "sh", "-c",
                                  "kill -9 $$").returncode, 128 + 9)
        self.assertEqual(self.run_refused(WITH_NAMESPACES, "sh", "-c", "kill $$").returncode,
                         -signal.SIGTERM)

    def test_gets_the_terminals_interrupt(self):
        process = self.start(LAUNCHER, "run", "clean", "--build", BUILD, "--", "sh", "-c",
                             "trap 'echo interrupted; exit 3' INT; echo up; "
                             "while :; do sleep 0.1; done")
        self.assertEqual(process.stdout.readline(), b"up\n")
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.stdout.readline(), b"interrupted\n")
        self.assertEqual(process.wait(time_limit(60)), 3)

    def test_has_a_terminal_where_its_caller_has_one(self):
        process, terminal = pty.fork()
        if process == 0:
            script = ("stty size; test -t 0 -a -t 1 -a -t 2 && echo up; "
                      "trap 'echo interrupted; exit 3' INT; while :; do sleep 0.1; done")
            command = refused(WITH_NAMESPACES, "sh", "-c", f"stty rows 33 cols 77; {script}")
            os.execv("/usr/bin/env", ["env", *command])
        self.addCleanup(os.close, terminal)
        shown = b""
        end = time.monotonic() + time_limit(60)
        while b"up\r\n" not in shown and time.monotonic() < end:
            if select.select([terminal], [], [], 1)[0]:
                shown += os.read(terminal, 4096)
        self.assertIn(b"33 77\r\nup\r\n", shown)
        os.write(terminal, b"\x03")
        _, status = os.waitpid(process, 0)
        self.assertEqual(os.waitstatus_to_exitcode(status), 3)

    def test_ends_with_its_launcher_however_that_ends(self):
        for number in (signal.SIGTERM, signal.SIGKILL):
            with self.subTest(number):
                others = self.kernels()
                process = self.start(WITH_NAMESPACES, "sh", "-c", "sleep 1000 & echo up; "
                                     "while :; do :; done")
                self.assertEqual(process.stdout.readline(), b"up\n")
                own = set(self.kernels()) - set(others)
                # The kernel, its helpers, and the guest's own: init, keeper, shell and sleep.
                self.assertGreater(len(own), 4)
                # All on one processor, since they take turns.
                self.assertEqual(len(self.processors(own)), 1)
                process.send_signal(number)
                process.wait()
                self.await_none(own)


class TheHost(KernelTest):
    def test_is_as_it_was_after_a_whole_uninstall_and_whatever_root_does(self):
        home = self.folder_of_nobody()
        (home / "kept").write_text("kept")
        scratch = self.folder_of_nobody()
        before = self._state(CHECKOUT, BUILD / "practice-mac", RUNNER, home)
        environment = {**os.environ, "HOME": str(home), "TMPDIR": str(scratch)}
        done = self.mac("installed", "--build", BUILD, "--bundle", RUNNER, "--", PROGRAM,
                        env=environment)
        self.assertIn("done", done.stdout.decode().splitlines(), done.stderr)
        done = self.run_refused(
            WITH_NAMESPACES, "sh", "-c",
            f"touch {CHECKOUT}/x {BUILD}/x {home}/x /etc/x; rm -rf {home}/kept; echo x > /tmp/x; "
            f"mkdir {CHECKOUT}/y", env=environment)
        self.assertIn(b"Read-only file system", done.stderr)
        self.assertEqual(self._state(CHECKOUT, BUILD / "practice-mac", RUNNER, home), before)
        # The kernel's memory may have been a file there.
        self.assertEqual(list(scratch.iterdir()), [])
        self.assertFalse(Path("/tmp/x").exists())

    def _state(self, *trees):
        """Everything about every file but when it was read. What tests beside this one write in the
        build tree is none of it, nor what the version control keeps."""
        found = {}
        for tree in trees:
            for folder, folders, files in os.walk(tree):
                if Path(folder) == CHECKOUT:
                    folders[:] = [name for name in folders if name not in ("build", ".git")]
                for name in (".", *files):
                    path = os.path.join(folder, name)
                    status = os.lstat(path)
                    found[path] = (status.st_mode, status.st_uid, status.st_gid, status.st_size,
                                   status.st_mtime_ns, status.st_ctime_ns, status.st_ino)
        return found

    def test_has_the_reports_written_and_nothing_else(self):
        (self.folder / "upper").mkdir()
        if os.geteuid() == 0:
            os.chown(self.folder / "upper", *USER)
        beside = self.folder_of_nobody()
        done = self.mac("clean", "--build", BUILD, "--report", "report", "--transcript", "tools",
                        "--syslog", "log", "--upper-copy", self.folder / "upper", "--", "sh", "-c",
                        "echo new > made; rm Documents/kovra.txt; defaults read none; exit 5",
                        cwd=self.folder)
        self.assertEqual(done.returncode, 5, done.stderr)
        report = json.loads((self.folder / "report").read_text())
        self.assertEqual([entry["path"] for entry in report["created"]], [f"{HOME}/made"])
        self.assertEqual([entry["path"] for entry in report["deleted"]],
                         [f"{HOME}/Documents/kovra.txt"])
        [tool] = map(json.loads, (self.folder / "tools").read_text().splitlines())
        self.assertEqual(tool["argv"], ["read", "none"])
        self.assertTrue((self.folder / "log").exists())
        self.assertEqual((self.folder / f"upper{HOME}/made").read_text(), "new\n")
        done = self.run_refused(WITH_NAMESPACES, "--writable", self.folder, "sh", "-c",
                                f"echo x > {self.folder}/told; echo x > {beside}/told")
        self.assertEqual((self.folder / "told").read_text(), "x\n")
        self.assertEqual(list(beside.iterdir()), [])

    def test_can_be_searched_although_it_has_more_files_than_may_be_open(self):
        for number in range(8000):
            (self.folder / str(number)).mkdir()
        done = self.run_refused("prlimit", "--nofile=4000:4000", WITH_NAMESPACES,
                                "sh", "-c", f"find {self.folder} | wc -l")
        self.assertEqual(done.stdout, b"8001\n")
        self.assertNotIn(b"Too many open files", done.stderr)

    def test_has_nothing_left_of_the_kernel(self):
        scratch = self.folder_of_nobody()
        with unittest.mock.patch.dict(os.environ, TMPDIR=str(scratch), HOME=str(self.folder)):
            self.run_refused(WITH_NAMESPACES, "true")
        self.assertEqual([*scratch.iterdir(), *self.folder.iterdir()], [])


class TheSession(KernelTest):
    def test_has_one_kernel_for_all_commands_and_says_how_slow_it_is(self):
        identity = f"{WITH_NAMESPACES} cat /proc/sys/kernel/random/boot_id"
        done = self.run_refused(WITH_NAMESPACES, "--session", "sh", "-c",
                                f"{identity}; {identity}; echo $PRACTICE_MAC_TIME_FACTOR; exit 4")
        first, second, factor = done.stdout.decode().split()
        self.assertEqual((first, done.returncode), (second, 4))
        self.assertNotEqual(first, Path("/proc/sys/kernel/random/boot_id").read_text().strip())
        told = done.stderr.decode().splitlines()
        self.assertIn(SAYS, told[0])
        self.assertEqual(told[1:], [f"practice-mac: limits of time are {factor} times as long there"])

    def test_runs_as_many_commands_at_once_as_are_asked_for(self):
        done = self.run_refused(
            WITH_NAMESPACES, "--session", "sh", "-c",
            f"for n in 1 2 3 4 5 6 7 8 9 10; do {WITH_NAMESPACES} sh -c "
            "\"sleep 0.5; echo $n\" & done; wait")
        self.assertEqual(sorted(map(int, done.stdout.split())), list(range(1, 11)))

    def test_ends_the_command_of_a_caller_that_was_killed(self):
        mark = f"97{os.getpid()}"
        script = (f"{WITH_NAMESPACES} sh -c 'echo up; sleep {mark}; :' & caller=$!; sleep 3; "
                  f"kill -9 $caller; sleep 1; {WITH_NAMESPACES} pgrep -xf 'sleep {mark}'; "
                  "echo $?")
        done = self.run_refused(WITH_NAMESPACES, "--session", "bash", "-c", script)
        self.assertEqual(done.stdout.decode().split(), ["up", "1"], done.stderr)


class WhatTheKernelNeeds(KernelTest):
    def message(self, **environment):
        done = self.run_refused(LAUNCHER, "run", "clean", "--build", BUILD, "--", "echo", "ran",
                                env={**os.environ, **environment})
        self.assertEqual((done.returncode, done.stdout), (125, b""))
        [line] = done.stderr.decode().splitlines()
        return line

    def test_is_named_in_one_line_when_the_package_is_missing(self):
        bare = self.folder_of_nobody()
        (bare / "python3").symlink_to("/usr/bin/python3")
        done = subprocess.run(refused("/usr/bin/env", f"PATH={bare}", LAUNCHER, "run", "clean", "--build", BUILD, "--", "echo", "ran"),
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (125, ""))
        self.assertEqual(done.stderr, "practice-mac: mount namespaces are not allowed here (Operation "
                         "not permitted), and linux.uml is missing; Debian's package user-mode-linux "
                         "brings it\n")

    def test_is_named_in_one_line_when_tracing_is_refused(self):
        done = subprocess.run(refused(FILTER, "--ptrace", LAUNCHER, "run", "clean", "--build", BUILD,
                                      "--", "echo", "ran"),
                              capture_output=True, text=True, check=False, timeout=time_limit(60))
        self.assertEqual((done.returncode, done.stdout), (125, ""))
        told = done.stderr.splitlines()
        self.assertIn(SAYS, told[0])
        self.assertRegex(told[1], "needs ptrace; it said: .")
        self.assertEqual(len(told), 2)

    def test_a_processor_other_than_x86_64_is_refused(self):
        with unittest.mock.patch("platform.machine", return_value="aarch64"), \
                self.assertRaisesRegex(CannotBoot, "x86-64, and this is aarch64"):
            boot.check(BUILD)


class TheMemory(unittest.TestCase):
    """Its places are made in mounts of their own."""

    def chosen(self, mounts):
        script = ("import sys; sys.path.insert(0, sys.argv[1]); from kernel import memory\n"
                  "place = memory.Memory(); print(place); place.remove()")
        done = subprocess.run([WITH_NAMESPACES, "unshare", "-m", "sh", "-ec", mounts + ' exec "$@"',
                               "sh", "env", "-u", "XDG_RUNTIME_DIR", "TMPDIR=/mnt",
                               "python3", "-Bc", script, CHECKOUT / "practice-mac"],
                              capture_output=True, text=True, check=False)
        return done.stdout.strip() or done.stderr.splitlines()[-1]

    def place(self, path, options):
        return f"mount -t tmpfs -o {options} place {path};"

    def test_is_where_there_is_room_and_execution_is_allowed(self):
        room, small, noexec = "size=2g", "size=64m", "size=2g,noexec"
        for options, expected in (((room, room, room), "/dev/shm"),
                                  ((small, room, room), "/mnt"),
                                  ((noexec, room, room), "/mnt"),
                                  ((small, noexec, room), "/tmp")):
            with self.subTest(options):
                mounts = "".join(map(self.place, ("/dev/shm", "/mnt", "/tmp"), options))
                self.assertEqual(self.chosen(mounts), f"{memory.MEGABYTES} MB in {expected}")

    def test_says_what_is_wrong_with_each_place(self):
        mounts = "".join(self.place(path, options) for path, options in (
            ("/dev/shm", "size=64m"), ("/mnt", "size=2g,noexec"), ("/tmp", "size=1m"),
            ("/var/tmp", "size=2g,noexec")))
        self.assertRegex(self.chosen(mounts), "/dev/shm has 64 MB of 1024, /mnt forbids execution, "
                         "/tmp has 1 MB of 1024, /var/tmp forbids execution")


if __name__ == "__main__":
    unittest.main(verbosity=2)
