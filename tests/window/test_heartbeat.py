"""The main thread stays responsive as long as the window is open."""

import re
import subprocess
import unittest

from case import SCANNED, STARTED, WindowTest, finished
from session import BUTTON
from whole import BUILD

# One tool of the scan and of each step takes this many seconds. A main thread that waited for it would
# not answer before the tool ends; half of that allows for a busy machine.
SLOW_SECONDS = 5
SLOW = [f"{command}=slow:{SLOW_SECONDS}{times}" for command, times in (
    ("security dump-keychain", ""), ("pkill -9", "*1"), ("defaults import", ""),
    ("lsregister -dump", ""), ("osascript", ""), ("getconf", ""),
    ("tccutil reset Microphone", "*1"), ("killall SystemUIServer", ""))]


class Heartbeat(WindowTest):
    def test_slow_tools_do_not_block_the_main_thread(self):
        with self.session("installed", faults=SLOW) as session:
            command = [BUILD / "tests/window/ping_window", session.window(), str(session.process())]
            with subprocess.Popen(command, env=self.display.environment,
                                  stdout=subprocess.PIPE) as pings:
                session.await_state("ready")
                session.click_and_leave(BUTTON)
                session.await_state("done")
                session.await_standstill()
                session.click(BUTTON)
                output = pings.communicate()[0].decode()
        answers, longest = re.fullmatch(r"(\d+) answers, longest wait: ([\d.]+) s\n", output).groups()
        print(output, end="")
        # The tools alone take forty seconds, with twenty pings in each on an idle machine.
        self.assertGreater(int(answers), 100)
        self.assertLess(float(longest), SLOW_SECONDS / 2)
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))


if __name__ == "__main__":
    unittest.main()
