"""Which variables, and which working folder, the program passes on to its tools and to root."""

import posixpath
import unittest

import catalogue as c
import uninstalling as u
from environments import FIXED, HARMLESS, HOSTILE, found, handed_on
from catalogue import HOME
from support import BUNDLE, PROGRAM, PracticeMac, in_bundle

RELATIVE = in_bundle("program", "kovraUninstaller.app")
# Only root can leave it.
TRACE = "/Library/trace"
ORDERS = "/tmp/orders"
# Each of these makes Debian's bash run a command before a script's first line, or in its place.
HONOURED = {
    "a file to read first": {"BASH_ENV": ORDERS},
    "a function in a builtin's place": {"BASH_FUNC_umask%%": f"() {{ touch {TRACE}; }}"},
}
# This one is honoured too, and a Mac's bash would run the command at each line. Debian's takes no
# prompt from root's environment, so that the lines themselves are the trace; a script that fails
# shows them.
TRACED = {"SHELLOPTS": "xtrace", "PS4": f"$(touch {TRACE})"}
TRACED_LINE = "+ /bin/bash "
# Instead of what the bundle's script does: says who root is, and what it was started with.
REPORT = "/Library/report"
REPORTER = (f"cd {posixpath.dirname(in_bundle('uninstall.sh', BUNDLE))}; "
            f"echo '{{ id -u; id -ru; pwd; cat /proc/$$/environ; }} > {REPORT}' > uninstall.sh")
# What bash itself adds for a program that it starts.
BY_THE_SHELL = ("_=", "OLDPWD", "PWD=/", "SHLVL=0", "SHLVL=1")

# Starts a program with entries that no shell would hand over. Arguments: program, entries.
RAW_START = """
import ctypes, os, sys
def strings(words):
    return (ctypes.c_char_p * (len(words) + 1))(*map(os.fsencode, words), None)
program, *entries = sys.argv[1:]
ctypes.CDLL(None).execve(os.fsencode(program), strings([program, "--inventory"]), strings(entries))
"""


def leave_orders():
    return f"echo 'touch {TRACE}' > {ORDERS}; chmod 644 {ORDERS}"


class Environment(unittest.TestCase):
    maxDiff = None

    def assert_found_by_every_tool(self, run, entries):
        """Every tool, and the command of root, found these entries, the root folder, and no more."""
        self.assertTrue(run.tools)
        for tool in run.tools:
            self.assertEqual((found(tool), tool.folder), (entries, "/"), tool.words)

    def test_a_whole_run_hands_on_what_is_on_the_list_and_nothing_else(self):
        uninstalled = u.uninstall("installed", environment={**HARMLESS, **HOSTILE},
                                  before=[leave_orders()])
        self.assertEqual(uninstalled.phase, "done")
        self.assertIn("sh", [tool.name for tool in uninstalled.run.tools if tool.uid == 0])
        self.assert_found_by_every_tool(uninstalled.run, handed_on())
        self.assertNotIn(TRACE, uninstalled.created)

    def test_the_inventory_hands_on_the_same_variables(self):
        run = PracticeMac("installed").run([PROGRAM, "--inventory"],
                                           environment={**HARMLESS, **HOSTILE})
        self.assertEqual((run.status, len(run.tools)), (0, 2))
        self.assert_found_by_every_tool(run, handed_on())

    def test_roots_script_finds_that_and_what_its_shells_add(self):
        uninstalled = u.uninstall("installed", environment={**HARMLESS, **HOSTILE},
                                  before=[REPORTER])
        user, real_user, folder, environment = uninstalled.run.written(REPORT).split(b"\n", 3)
        self.assertEqual((user, real_user, folder), (b"0", b"0", b"/"))
        entries = environment.decode().rstrip("\0").split("\0")
        self.assertEqual(sorted(entry for entry in entries if not entry.startswith(BY_THE_SHELL)),
                         handed_on())

    def test_a_home_that_bash_would_import_as_a_function_is_replaced_by_the_accounts(self):
        home = {"HOME": "() { touch /Library/trace; }"}
        uninstalled = u.uninstall("installed", environment={**HARMLESS, **home})
        self.assertEqual(uninstalled.phase, "done")
        self.assertLessEqual(set(u.USER_DATA), set(uninstalled.deleted))
        kept = {name: value for name, value in HARMLESS.items() if name != "HOME"}
        self.assert_found_by_every_tool(uninstalled.run, handed_on(kept))

    def test_doubled_nameless_and_malformed_entries_go(self):
        entries = [f"HOME={HOME}", "HOME=/tmp", "USER=() { :; }", "USER=sam", "=", "=x", "",
                   "LOGNAME", "LC_ALL=C", "LC_ALL=C", "TZ=/etc/passwd", "LANG=$(id)", "PATH=/tmp",
                   "PATH=/opt", "BASH_FUNC_a%%=() { :; }", "BASH_FUNC_a%%=() { :; }", "HOME =/x"]
        run = PracticeMac("installed").run(["/usr/bin/python3", "-c", RAW_START, PROGRAM, *entries])
        self.assertEqual((run.status, len(run.tools)), (0, 2), run.stderr)
        self.assert_found_by_every_tool(run, [f"HOME={HOME}", "LC_ALL=C", *FIXED])


class Traces(unittest.TestCase):
    """What malware could make root do if the whole environment were passed on."""

    def test_the_program_leaves_none(self):
        for what, variables in HONOURED.items():
            with self.subTest(what):
                uninstalled = u.uninstall("installed", environment=variables,
                                          before=[leave_orders()])
                self.assertEqual(uninstalled.phase, "done")
                self.assertLessEqual(set(c.SYSTEM_BUNDLES), set(uninstalled.deleted))
                self.assertNotIn(TRACE, uninstalled.created)

    def test_the_same_applescript_leaves_one_without_the_reduction(self):
        for what, variables in HONOURED.items():
            with self.subTest(what):
                run = self.without_reduction("installed", variables)
                self.assertEqual(run.status, 0, run.stderr)
                self.assertIn(TRACE, run.created)

    def test_a_script_that_fails_shows_what_is_traced_and_the_programs_is_not(self):
        failed = self.without_reduction("locked", TRACED)
        self.assertIn(f"execution error: {TRACED_LINE}", failed.stderr.decode())
        uninstalled = u.uninstall("locked", environment=TRACED)
        self.assertIn("failed: Remove kovra apps: Privileged removal failed: ", uninstalled.phase)
        self.assertNotIn(TRACED_LINE, "\n".join(uninstalled.shown))
        self.assertNotIn(TRACE, [*failed.created, *uninstalled.created])

    def without_reduction(self, scenario, variables):
        """Has the system run the script as the program does, with a whole environment."""
        source = f"do shell script \"/bin/bash '{HOME}{u.SCRIPT[1:]}'\" with administrator privileges"
        mac = PracticeMac(scenario, bundle=u.RUNNER)
        return mac.run(["/usr/bin/osascript", "-e", source], environment=variables,
                       before=[leave_orders()])


class Folder(unittest.TestCase):
    """The program may be started in any folder and by any path; its tools run in the root folder."""

    FOLDERS = (
        "mkdir ~/gone; cd ~/gone; rmdir ~/gone",
        "mkdir ~/shut; cd ~/shut; chmod 0 ~/shut",
        "mkdir -p ~/shut/in; cd ~/shut/in; chmod 0 ~/shut",
        "cd ~/Downloads",
    )
    # Which is what the program is told, be it right or not.
    NAMES = (PROGRAM, RELATIVE, "./kovraUninstaller",
             "kovraUninstaller")

    BY_OTHER_PATHS = (f"cd ~/Downloads; exec {RELATIVE}",
                      f"ln -s {PROGRAM} ~/link; cd ~; exec ./link")

    def in_each_start(self, names, check):
        starts = [f"{enter}; exec -a {name} {PROGRAM}" for enter in self.FOLDERS for name in names]
        for start in (*starts, *self.BY_OTHER_PATHS):
            with self.subTest(start):
                check(start)

    def test_of_the_inventory(self):
        expected = PracticeMac("installed").run([PROGRAM, "--inventory"]).stdout

        def check(start):
            run = PracticeMac("installed").run(["/bin/bash", "-c", f"{start} --inventory"])
            self.assertEqual((run.status, run.stdout, run.stderr), (0, expected, b""))
            self.assertEqual([tool.folder for tool in run.tools], ["/", "/"])
        self.in_each_start(self.NAMES, check)

    def test_of_a_whole_run_which_finds_what_its_bundle_holds(self):
        mac = PracticeMac("installed", bundle=u.RUNNER)

        def check(start):
            uninstalled = u.ended_well(mac.run(["/bin/bash", "-c", start]))
            self.assertEqual((uninstalled.phase, uninstalled.run.stderr), ("done", b""))
            self.assertEqual({tool.folder for tool in uninstalled.run.tools}, {"/"})
            self.assertEqual(uninstalled.steps_tools[:len(u.STOP_PROCESSES)], u.STOP_PROCESSES)
            self.assertIn(u.AS_ROOT[0], uninstalled.tools)
            self.assertLessEqual({*c.SYSTEM_BUNDLES, *u.USER_BUNDLES}, set(uninstalled.deleted))
            self.assertIn(u.OWN_FILES[-1], uninstalled.created)  # the helper of its bundle
            self.assertRegex("\n".join(uninstalled.log), r"kovra Uninstaller v[0-9.]+ \(build")
        self.in_each_start(["kovraUninstaller"], check)


if __name__ == "__main__":
    unittest.main()
