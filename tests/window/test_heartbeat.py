"""The main thread responds from the window's opening to its closing."""

import re
import subprocess
import unittest

from case import SCANNED, STARTED, WindowTest, finished
from session import BUTTON
from whole import BUILD

# One tool of the scan and of each step takes this many seconds. A main thread that waits for it
# answers no sooner than the tool ends; half of that leaves room for whatever else goes on.
SLOW_SECONDS = 5
SLOW = [f"{command}=slow:{SLOW_SECONDS}{times}" for command, times in (
    ("security dump-keychain", ""), ("pkill -9", "*1"), ("defaults import", ""),
    ("lsregister -dump", ""), ("osascript", ""), ("getconf", ""),
    ("tccutil reset Microphone", "*1"), ("killall SystemUIServer", ""))]


class Heartbeat(WindowTest):
    def test_a_whole_run_with_slow_tools_keeps_nobody_waiting(self):
        with self.session("installed", faults=SLOW) as session:
            command = [BUILD / "tests/window/ping_window", session.window(), str(session.process())]
            with subprocess.Popen(command, env=self.display.environment,
                                  stdout=subprocess.PIPE) as pings:
                session.await_state("ready")
                session.click_and_leave(BUTTON)
                session.await_state("done")
                session.await_standstill()
                session.click(BUTTON)
                told = pings.communicate()[0].decode()
        answers, longest = re.fullmatch(r"(\d+) answers, longest wait: ([\d.]+) s\n", told).groups()
        print(told, end="")
        # The tools alone take forty seconds, with twenty questions in each but for a busy machine.
        self.assertGreater(int(answers), 100)
        self.assertLess(float(longest), SLOW_SECONDS / 2)
        self.assert_story(session, SCANNED, STARTED, SCANNED, finished(0))


if __name__ == "__main__":
    unittest.main()
