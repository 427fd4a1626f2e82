"""Processes, launchd, the password prompt, and the transcript of it all."""

import unittest

from support import HOME, PracticeMac, text

ASK = "/usr/bin/osascript"

# Waits, for ten seconds at most, until no process matches, or until one does.
WAIT = """
gone() { i=0; while pgrep "$@" > /dev/null && [ $i -lt 200 ]; do sleep 0.05; i=$((i+1)); done; }
up() { i=0; until pgrep "$@" > /dev/null || [ $i -ge 200 ]; do sleep 0.05; i=$((i+1)); done; }
"""


def script(command):
    escaped = command.replace("\\", "\\\\").replace('"', '\\"')
    return f'do shell script "{escaped}" with administrator privileges'


def ask(mac, command, **options):
    return mac.run([ASK, "-e", script(command)], **options)


class Launchd(unittest.TestCase):
    SERVICES = ["cfprefsd", "TextInputMenuAgent", "TextInputSwitcher", "pboard", "SystemUIServer"]

    def test_starts_the_systems_services_again_when_they_are_killed(self):
        run = PracticeMac("clean").shell(
            WAIT + "same() { test \"$(pgrep -f $1)\" = $2; };"
            f"for n in {' '.join(self.SERVICES)}; do one=$(pgrep -f /$n); killall -9 $n || exit 1;"
            "  k=0; while same /$n $one && [ $k -lt 200 ]; do sleep 0.05; k=$((k+1)); done;"
            "  up -f /$n; two=$(pgrep -f /$n) || exit 2; test $one != $two || exit 3; done")
        self.assertEqual((run.status, run.stderr), (0, b""))

    def test_keeps_an_agent_alive_until_it_is_booted_out(self):
        agent = f"{HOME}/Library/LaunchAgents/ai.kovra.inputmethod.KovraAgent.plist"
        run = PracticeMac("installed").shell(
            WAIT + "one=$(pgrep -x KovraAgent); kill $one;"
            "while [ -e /proc/$one ]; do sleep 0.05; done; up -x KovraAgent; pgrep -xc KovraAgent;"
            f"launchctl bootout gui/501 {agent}; echo $?; sleep 0.4; pgrep -xc KovraAgent;"
            f"launchctl bootout gui/501 {agent}; echo $?")
        self.assertEqual(text(run).split(), ["1", "0", "0", "5"])
        self.assertEqual(run.stderr, b"Boot-out failed: 5: Input/output error\n")

    def test_removes_a_job_by_its_label(self):
        label = "ai.kovra.inputmethod.KovraAgent"
        run = PracticeMac("installed").shell(
            WAIT + f"launchctl list | grep -c {label}; launchctl remove {label}; echo $?;"
            f"gone -x KovraAgent; sleep 0.3; pgrep -xc KovraAgent;"
            f"launchctl list | grep -c {label};"
            f"launchctl remove {label}; echo $?")
        self.assertEqual(text(run).split(), ["1", "0", "0", "0", "3"])

    def test_knows_no_job_of_files_without_a_label_and_of_missing_ones(self):
        agents = f"{HOME}/Library/LaunchAgents"
        for name in ("com.kovra.agent.plist", "none.plist"):
            run = PracticeMac("installed").run(
                ["launchctl", "bootout", "gui/501", f"{agents}/{name}"])
            self.assertEqual(run.status, 5)

    def test_serves_only_the_users_own_domain(self):
        run = PracticeMac("installed").run(["launchctl", "bootout", "gui/502", "/x.plist"])
        self.assertEqual(run.status, 125)

    def test_says_when_a_job_is_slow_to_stop_and_stops_it_later(self):
        agent = f"{HOME}/Library/LaunchAgents/com.example.notes.sync.plist"
        run = PracticeMac("clean").shell(
            WAIT + "p=$(pgrep -x Notes); kill -STOP $p;"
            "until grep -q '^State:.T' /proc/$p/status; do sleep 0.05; done;"
            f"launchctl bootout gui/501 {agent}; echo $?;"
            "pgrep -xc Notes; gone -x Notes; pgrep -xc Notes")
        self.assertEqual(text(run).split(), ["36", "1", "0"])
        self.assertEqual(run.stderr, b"Boot-out failed: 36: Operation now in progress\n")

    def test_collects_what_is_sent_to_the_systems_log(self):
        run = PracticeMac("clean").run(["logger", "-p", "user.err", "-t", "kovra", "a — line"])
        self.assertEqual(len(run.syslog), 1)
        self.assertRegex(run.syslog[0], r"^<11>.* kovra: a — line$")
        self.assertEqual(run.created, [])

    def test_leaves_no_zombies(self):
        run = PracticeMac("clean").shell("sh -c 'sleep 0.1 & exit'; sleep 0.4; ps -eo stat=")
        self.assertNotIn("Z", text(run))


class ProcessTools(unittest.TestCase):
    def test_are_the_real_ones_on_real_processes(self):
        run = PracticeMac("installed").shell(
            WAIT + "pkill -x kovra; echo $?; gone -x kovra; pkill -x kovra; echo $?;"
            "pkill -x kovraInput; echo $?; sleep 0.2; pgrep -xc kovraInput;"
            "pkill -9 -x kovraInput; gone -x kovraInput; pgrep -xc kovraInput;"
            "killall nobody; echo $?")
        self.assertEqual(text(run).split(), ["0", "1", "0", "1", "0", "1"])

    def test_match_command_lines_and_spare_those_that_called(self):
        pattern = "kovraInput.app/Contents/MacOS/"
        run = PracticeMac("installed").shell(
            WAIT + f"/usr/bin/pkill -9 -f {pattern}; echo $?; gone -x kovraInput;"
            "pgrep -xc kovraInput")
        self.assertEqual((run.status, text(run).split()), (1, ["0", "0"]))

    def test_signal_no_process_of_root(self):
        run = PracticeMac("clean").shell("pkill -x launchd; kill -9 1; pgrep -xc launchd")
        self.assertEqual(text(run), "1\n")


class ThePasswordPrompt(unittest.TestCase):
    def test_granted_runs_the_command_as_root(self):
        run = ask(PracticeMac("installed"), "id -u; id -ru; rm -r /Applications/kovra.app")
        self.assertEqual((run.status, run.stdout, run.stderr), (0, b"0\r0\n", b""))
        self.assertEqual(run.deleted, ["/Applications/kovra.app"])

    def test_hands_root_the_callers_environment_and_folder(self):
        entries = ["A=1\n2", "A=3", "=x", "no value", "BASH_FUNC_f%%=() { echo of the caller; }",
                   f"HOME={HOME}", "PS4=x"]
        start = ("import ctypes, os; os.chdir('/Users/sam/Library');"
                 "strings = lambda *words: (ctypes.c_char_p * (len(words) + 1))("
                 "  *map(os.fsencode, words), None);"
                 f"ctypes.CDLL(None).execve(b'{ASK}', strings('{ASK}', '-e', {script('pwd; f')!r}),"
                 f"  strings(*{entries!r}))")
        run = PracticeMac("clean").run(["/usr/bin/python3", "-c", start])
        self.assertEqual((run.stdout, run.stderr), (b"/Users/sam/Library\rof the caller\n", b""))
        [root] = [tool for tool in run.tools if tool.uid == 0]
        self.assertEqual((list(root.environment), root.folder), (entries, "/Users/sam/Library"))

    def test_hands_over_no_folder_that_is_gone(self):
        run = PracticeMac("clean").shell(
            f"mkdir ~/gone; cd ~/gone; rmdir ~/gone; exec {ASK} -e '{script('pwd')}'")
        self.assertEqual((run.stdout, run.stderr), (b"/\n", b""))
        self.assertEqual([(tool.name, tool.folder) for tool in run.tools],
                         [("osascript", None), ("sh", "/")])

    def test_passes_on_hostile_paths_unharmed(self):
        for name in ("it's", 'a "b"', "back\\slash", "$(touch x)`y`", "new\nline", "ä 🎉"):
            quoted = "'" + name.replace("'", "'\\''") + "'"
            run = ask(PracticeMac("clean"), f"touch /opt/{quoted}")
            self.assertEqual((run.status, run.created), (0, [f"/opt/{name}"]), run.stderr)

    def test_reports_a_failing_command_by_its_message_and_status(self):
        run = ask(PracticeMac("installed"), "echo out; echo one >&2; echo two >&2; exit 3")
        self.assertEqual((run.status, run.stdout), (1, b""))
        self.assertRegex(run.stderr.decode(), r"^\d+:\d+: execution error: one\ntwo \(3\)\n$")
        run = ask(PracticeMac("installed"), "exit 4")
        self.assertRegex(run.stderr, rb"^\d+:\d+: execution error: .+ \(4\)\n$")

    def test_cancelled_runs_nothing(self):
        run = ask(PracticeMac("cancelled"), "touch /opt/ran")
        self.assertEqual((run.status, run.created), (1, []))
        self.assertRegex(run.stderr, rb"^\d+:\d+: execution error: User canceled\. \(-128\)\n$")
        run = ask(PracticeMac("cancelled-german"), "touch /opt/ran")
        self.assertEqual((run.status, run.created), (1, []))
        self.assertRegex(run.stderr, rb": execution error: Vom Benutzer abgebrochen\. \(-128\)\n$")

    def test_gives_the_scenarios_answers_one_after_the_other(self):
        line = f"{ASK} -e '{script('id -u')}'"
        run = PracticeMac("script-fails").shell(f"{line}; {line}; {line}")
        self.assertEqual((run.status, run.stdout), (0, b"0\n0\n"))
        self.assertEqual(run.stderr.count(b"Operation not permitted (1)\n"), 1)

    def test_takes_the_one_form_of_script_only(self):
        for source in ('do shell script "x"', script("x") + " ", 'do shell script "\\q" with '
                       "administrator privileges", script("x").replace('"x"', '"x" & "y"')):
            run = PracticeMac("clean").run([ASK, "-e", source])
            self.assertEqual(run.status, 97, source)


class TheTranscript(unittest.TestCase):
    def test_has_every_tool_in_order_with_all_that_went_in(self):
        run = PracticeMac("installed").shell(
            WAIT + "pkill -x kovra; gone -x kovra; pkill -x kovra;"
            "killall -9 pboard; defaults delete none;"
            "printf '<plist><dict/></plist>' | defaults import none -; getconf PAGE_SIZE;"
            f"{ASK} -e '{script('exit 2')}'; xdg-open https://kovra.example/download")
        self.assertEqual([(tool.words, tool.status) for tool in run.tools], [
            (["pkill", "-x", "kovra"], 0),
            (["pkill", "-x", "kovra"], 1),
            (["killall", "-9", "pboard"], 0),
            (["defaults", "delete", "none"], 1),
            (["defaults", "import", "none", "-"], 0),
            (["getconf", "PAGE_SIZE"], 0),
            (["osascript", "-e", script("exit 2")], 1),
            (["sh", "-c", "exit 2"], 2),
            (["xdg-open", "https://kovra.example/download"], 0)])
        self.assertEqual([tool.uid for tool in run.tools], [501] * 7 + [0, 501])
        self.assertEqual([tool.stdin for tool in run.tools],
                         [None] * 4 + [b"<plist><dict/></plist>"] + [None] * 4)
        self.assertEqual(run.tools[0].tool, "/usr/bin/pkill")

    def test_has_the_path_that_the_caller_took(self):
        run = PracticeMac("clean").shell(
            f"ln -s /usr/bin/defaults {HOME}/link; {HOME}/link read none;"
            "bash -c 'exec -a /usr/bin/other /usr/bin/pkill -x none'")
        self.assertEqual([(tool.tool, tool.arguments) for tool in run.tools],
                         [(f"{HOME}/link", ("read", "none")), ("/usr/bin/pkill", ("-x", "none"))])

    def test_has_the_environment_and_the_folder_of_each(self):
        run = PracticeMac("clean").shell("cd /opt; exec env -i 'A=\"\n' B= xdg-open x")
        self.assertEqual((run.tools[0].environment, run.tools[0].folder), (('A="\n', "B="), "/opt"))

    def test_keeps_arguments_of_any_bytes(self):
        run = PracticeMac("clean").shell("xdg-open \"$(printf 'a\\n\"\\\\\\377\\342\\200\\250')\"")
        self.assertEqual(run.tools[0].arguments, ('a\n"\\\udcff\u2028',))


if __name__ == "__main__":
    unittest.main(verbosity=2)
