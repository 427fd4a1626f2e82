"""A page without animation takes no processor time, in every phase."""

import time
import unittest
from dataclasses import dataclass
from pathlib import Path

from case import SCANNED, STARTED, WindowTest, finished
from session import BUTTON, LINK, NOWHERE

SECONDS = 3
TICKS = 1
WAKES = 5


@dataclass
class Activity:
    """The activity of a process's threads: their clock ticks and context switches."""

    ticks: int
    turns: int

    @classmethod
    def of(cls, process):
        ticks = turns = 0
        for task in Path(f"/proc/{process}/task").iterdir():
            fields = (task / "stat").read_text(errors="replace").rpartition(")")[2].split()
            ticks += int(fields[11]) + int(fields[12])
            for line in (task / "status").read_text(errors="replace").splitlines():
                if "ctxt_switches" in line:
                    turns += int(line.split()[1])
        return cls(ticks, turns)

    def __sub__(self, before):
        return Activity(self.ticks - before.ticks, self.turns - before.turns)


class Rest(WindowTest):
    def assert_rests(self, session):
        """The process becomes idle; what led to the picture may need some time to end."""
        process = session.process()
        for _ in range(8):
            before = Activity.of(process)
            time.sleep(SECONDS)
            done = Activity.of(process) - before
            if done.ticks <= TICKS and done.turns <= WAKES:
                return
        self.fail(f"in {SECONDS} s of rest: {done}")

    def test_while_the_scan_waits_for_a_tool(self):
        with self.session("installed", faults=["security=slow:600"]) as session:
            session.await_state("scanning")
            self.assert_rests(session)
            session.key("alt+q")

    def test_when_it_is_ready(self):
        with self.session("installed") as session:
            session.await_state("ready")
            self.assert_rests(session)
            session.point_at(BUTTON)
            self.assert_rests(session)
            session.key("Tab")
            session.await_state("ready-focused")
            self.assert_rests(session)
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_when_nothing_was_found_and_when_all_is_done(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            self.assert_rests(session)
            session.point_at(BUTTON)
            self.assert_rests(session)
            session.point_at(LINK)
            session.await_state("nothing-found-hovered")
            self.assert_rests(session)
            session.click_and_leave(LINK)
            session.await_state("done")
            self.assert_rests(session)
            session.point_at(LINK)
            session.await_state("done-hovered")
            self.assert_rests(session)
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_when_something_is_left(self):
        with self.session("locked-user") as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("residues")
            self.assert_rests(session)
            session.point_at(LINK)
            session.await_state("residues-hovered")
            self.assert_rests(session)
            session.key("alt+q")

    def test_when_it_has_failed(self):
        with self.session("cancelled") as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("failed")
            session.await_standstill()
            self.assert_rests(session)
            session.point_at(BUTTON)
            self.assert_rests(session)
            session.point_at(NOWHERE)
            session.key("alt+q")

    def test_while_the_run_waits_for_a_tool(self):
        with self.session("user-only", faults=["pkill=slow:600"]) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("uninstalling-0")
            self.assert_rests(session)
            session.key("alt+q")

    def test_while_the_run_waits_for_the_prompt_and_the_bar_has_come_to_its_place(self):
        with self.session("installed", faults=["osascript=slow:600"]) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_process("osascript")
            session.await_state("uninstalling-2")
            self.assert_rests(session)
            session.key("alt+q")


if __name__ == "__main__":
    unittest.main()
