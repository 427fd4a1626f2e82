"""Each phase in the window: its picture, its texts, and what its button and link do."""

import unittest

from case import REFUSED, SCANNED, STARTED, WindowTest, finished
from session import BUTTON, LINK, NOWHERE
from whole import HOME, LOG_FOLDER, in_bundle

DOWNLOAD_PAGE = "https://kovra.example/download"


class Phases(WindowTest):
    def test_a_slow_scan_shows_its_page_until_it_ends(self):
        with self.session("user-only", faults=["security dump-keychain=slow:5*1"]) as session:
            session.await_state("scanning")
            # Clicks and keys have no effect during the scan.
            session.click_and_leave(BUTTON)
            session.key("Tab", "Return", "space")
            session.await_state("ready")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_a_whole_run_ends_with_goodbye(self):
        with self.session("user-only") as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("done")
            session.click(BUTTON)
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_looks_the_same_in_a_folder_with_a_backslash_in_its_name(self):
        folder = f"{HOME}/back\\slash"
        move = f"mkdir '{folder}'; mv {HOME}/Downloads/kovraUninstaller.app '{folder}'"
        program = in_bundle("program", f"{folder}/kovraUninstaller.app")
        with self.session("user-only", program=program, before=[move]) as session:
            session.await_state("ready")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED)

    def test_each_step_fills_a_seventh_of_the_bar(self):
        with self.session("user-only", faults=["tccutil=slow:1", "pkill=slow:1"]) as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("uninstalling-0")
            session.await_state("uninstalling-4")
            session.await_state("done")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_the_link_cleans_up_a_mac_without_the_product(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.click_and_leave(LINK)
            session.await_state("done")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))

    def test_nothing_found_offers_to_quit(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.click(BUTTON)
        self.assert_phases_logged(session, SCANNED)

    def test_residues_are_reported_and_the_log_can_be_shown(self):
        with self.session("locked-user") as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("residues")
            session.click(LINK)
            session.await_state("residues-hovered")
            session.click(BUTTON)
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(3))
        self.assertEqual(self.opened(session), [(LOG_FOLDER,)])

    def test_a_refused_prompt_can_be_retried(self):
        with self.session("cancelled") as session:
            session.await_state("ready")
            session.click_and_leave(BUTTON)
            session.await_state("failed")
            session.await_standstill()
            session.click(LINK)
            session.click_and_leave(BUTTON)
            session.await_state("done")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, REFUSED, STARTED, SCANNED, finished(0))
        self.assertEqual(self.opened(session), [(LOG_FOLDER,)])

    def test_the_external_link_opens_the_download_page(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.click_and_leave(LINK)
            session.await_state("done")
            session.point_at(LINK)
            session.await_state("done-hovered")
            session.click_and_leave(LINK)
            session.await_state("done")
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))
        self.assertEqual(self.opened(session), [(DOWNLOAD_PAGE,)])

    def test_a_link_that_replaces_a_hovered_one_is_not_hovered(self):
        with self.session("clean") as session:
            session.await_state("nothing-found")
            session.click(LINK)
            session.await_state("done")
            session.point_at((LINK[0] + 4, LINK[1]))
            session.await_state("done-hovered")
            session.point_at(NOWHERE)
            session.key("alt+q")
        self.assert_phases_logged(session, SCANNED, STARTED, SCANNED, finished(0))


if __name__ == "__main__":
    unittest.main()
