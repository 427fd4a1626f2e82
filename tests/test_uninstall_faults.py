"""Whole uninstalls with tools that are missing, fail, crash, print garbage or are slow."""

import unittest

import uninstalling as u
from catalogue import CACHES, GROUPS, HOME, LSREGISTER
from support import replace
from uninstalling import uninstall

EVERY_TOOL = ("pkill", "launchctl", "PlistBuddy", "defaults", "killall", "lsregister", "security",
              "getconf", "tccutil")


class KeyboardSettings(unittest.TestCase):
    def assert_unreadable(self, fault):
        uninstalled = uninstall("user-only", faults=[fault])
        self.assertIn("inputSource: warning: Could not read keyboard settings.", uninstalled.shown)
        self.assertFalse([line for line in uninstalled.log if "settings entries removed" in line])
        self.assertNotIn("defaults import com.apple.HIToolbox -", uninstalled.tools)
        self.assertIn("  Input method: TIS + LaunchServices cleanup — OK", uninstalled.log)
        after = uninstalled.log[uninstalled.log.index("Uninstall started"):]
        self.assertIn("  Data: settings and data removed — OK", after)
        return uninstalled

    def test_that_cannot_be_read_are_told_and_left_alone(self):
        for fault in ("defaults=missing", "defaults=not-executable", "defaults export=exit:1",
                      "defaults export=signal:9", "defaults export=silent",
                      "defaults export=rubbish", "defaults export=flood:3000000",
                      "defaults export=close-output:0.2"):
            with self.subTest(fault=fault):
                uninstalled = self.assert_unreadable(fault)
                self.assertNotIn("~/Library/Preferences/com.apple.HIToolbox.plist",
                                 uninstalled.changed)

    def test_the_cached_copy_is_dropped_all_the_same(self):
        uninstalled = self.assert_unreadable("defaults export=exit:1")
        at = uninstalled.steps_tools.index("defaults export com.apple.HIToolbox -")
        self.assertEqual(uninstalled.steps_tools[at + 1], "killall cfprefsd")

    def test_that_cannot_be_written_are_told_with_their_count(self):
        for fault in ("defaults import=exit:1", "defaults import=signal:15"):
            with self.subTest(fault=fault):
                uninstalled = uninstall("user-only", faults=[fault])
                self.assertIn("inputSource: warning: Could not update keyboard settings.",
                              uninstalled.shown)
                self.assertIn("  Input method: keyboard settings entries removed — 5",
                              uninstalled.log)
                self.assertIn("residue: Keyboard settings entries (5 entries)", uninstalled.shown)


class AnyTool(unittest.TestCase):
    """Whatever becomes of the tools, the run ends, the files go, and every step says so."""

    CLOSING_LINES = ["  Stop: processes and launch agents — OK",
                     "  Input method: TIS + LaunchServices cleanup — OK",
                     "  Apps: user-level bundles removed — OK",
                     "  Data: settings and data removed — OK",
                     "  Permissions: TCC records reset — OK",
                     "  Refresh: input UI services restarted — OK"]

    def assert_finished(self, faults):
        uninstalled = uninstall("user-only", faults=faults)
        self.assertEqual(uninstalled.phase, "done")
        self.assertEqual([line for line in uninstalled.log if line.endswith("— OK")],
                         self.CLOSING_LINES)
        # Preference files go by name; only the groups' domains and the caches need a tool.
        by_tool = {f"~/Library/Preferences/{group}.plist" for group in GROUPS} | set(CACHES)
        self.assertLessEqual({*u.USER_BUNDLES, *u.USER_DATA} - by_tool, set(uninstalled.deleted))
        return uninstalled

    def test_may_be_missing(self):
        self.assert_finished([f"{tool}=missing" for tool in EVERY_TOOL])

    def test_may_fail(self):
        self.assert_finished([f"{tool}=exit:1" for tool in EVERY_TOOL])

    def test_may_be_killed(self):
        self.assert_finished([f"{tool}=signal:11" for tool in EVERY_TOOL])

    def test_may_print_rubbish(self):
        # Without the deletion of keychain items: with status 0 each time, it would never end.
        tools = [tool for tool in EVERY_TOOL if tool not in ("getconf", "security")]
        self.assert_finished([f"{tool}=rubbish" for tool in [*tools, "security dump-keychain"]])

    def test_may_print_much(self):
        self.assert_finished([f"{tool}=flood:2000000" for tool in ("pkill", "killall", "tccutil",
                                                                 "PlistBuddy", "lsregister")])

    def test_may_close_its_output(self):
        self.assert_finished([f"{tool}=close-output:0.2" for tool in EVERY_TOOL])


class SingleTools(unittest.TestCase):
    def test_an_agents_file_without_a_readable_label_is_booted_out_and_not_removed(self):
        for fault in ("PlistBuddy=exit:1", "PlistBuddy=missing", "PlistBuddy=silent"):
            with self.subTest(fault=fault):
                tools = uninstall("user-only", faults=[fault]).tools
                self.assertEqual(sum(line.startswith("launchctl bootout") for line in tools), 14)
                self.assertFalse([line for line in tools if line.startswith("launchctl remove")])

    def test_without_a_cache_folder_the_caches_stay_and_nothing_is_told(self):
        for fault in ("getconf=missing", "getconf=silent"):
            with self.subTest(fault=fault):
                uninstalled = uninstall("user-only", faults=[fault])
                self.assertFalse(set(CACHES) & set(uninstalled.deleted))
                self.assertIn("removeData: done", uninstalled.shown)

    def test_a_cache_folder_with_a_nul_byte_leads_to_no_other_file(self):
        precious = f"{HOME}/Documents/precious.txt"
        uninstalled = uninstall("user-only", before=[
            f"mkdir -p {HOME}/Documents; echo text > {precious}; chown -R sam {HOME}/Documents",
            replace("/usr/bin/getconf", f'printf "{precious}\\0"')])
        self.assertNotIn(u.in_short(precious), uninstalled.deleted)
        self.assertFalse(set(CACHES) & set(uninstalled.deleted))
        self.assertIn("removeData: done", uninstalled.shown)

    def test_without_a_dump_only_the_fixed_places_are_unregistered(self):
        uninstalled = uninstall("installed", faults=["lsregister -dump=exit:1"])
        unregistered = [line for line in uninstalled.tools if line.startswith("lsregister -u")]
        self.assertEqual(unregistered, u.INPUT_SOURCE[3:9])

    def test_a_keychain_that_cannot_be_listed_loses_the_known_items(self):
        uninstalled = uninstall("user-only", faults=["security dump-keychain=exit:1"])
        removed = [line for line in uninstalled.log if "Keychain item" in line]
        self.assertEqual(removed, ["  Data: removed Keychain item ai.kovra.auth.pendingPKCE",
                                   "  Data: removed Keychain item ai.kovra.auth.session"])

    def test_a_keychain_that_deletes_nothing_is_asked_once_for_each_name(self):
        uninstalled = uninstall("user-only", faults=["security delete-generic-password=exit:36"])
        asked = [line for line in uninstalled.tools if "delete-generic-password" in line]
        self.assertEqual(asked, [f"security delete-generic-password -a {name}" for name in
                                 ("ai.kovra.auth.pendingPKCE", "ai.kovra.auth.session",
                                  "ai.kovra.device.0042")])
        self.assertFalse([line for line in uninstalled.log if "Keychain item" in line])

    def assert_only_known_accounts_are_asked_for(self, listing):
        """With a keychain that lists what these shell commands print."""
        asked = f"{HOME}/asked"
        uninstalled = uninstall("user-only", before=[replace(
            "/usr/bin/security",
            f"[ $1 = dump-keychain ] || {{ echo $* >>{asked}; exit 44; }}\n{listing}")])
        self.assertEqual(uninstalled.phase, "done")
        self.assertEqual(uninstalled.run.written(asked).decode().splitlines(),
                         [f"delete-generic-password -a {name}" for name in
                          ("ai.kovra.auth.pendingPKCE", "ai.kovra.auth.session")])
        return uninstalled

    def test_a_keychain_account_that_no_tool_can_be_told_is_not_taken_for_another(self):
        # An argument ends at the NUL byte: "ai.kovra.a", which may be another product's account.
        uninstalled = self.assert_only_known_accounts_are_asked_for(
            """printf '    "acct"<blob>="ai.kovra.a\\0b"\\n'""")
        self.assertIn("  - Sign-in data (Keychain): 1 item", uninstalled.log)

    def test_a_keychain_listing_with_one_invalid_byte_at_its_very_end_counts_as_empty(self):
        uninstalled = self.assert_only_known_accounts_are_asked_for(
            """yes '    "acct"<blob>="ai.kovra.a"' | head -n 10000; printf '\\377'""")
        self.assertNotIn("Sign-in data", "\n".join(uninstalled.log))

    def asked_of_lsregister_after(self, dump):
        """What is asked of the tool once its dump, which these shell commands print, has ended."""
        asked = f"{HOME}/asked"
        uninstalled = uninstall("user-only", before=[replace(
            LSREGISTER, f"[ $1 = -dump ] || {{ echo $* >>{asked}; exit 0; }}\n"
                        f"{dump}\necho the dump has ended >>{asked}")])
        lines = uninstalled.run.written(asked).decode().splitlines()
        return lines[lines.index("the dump has ended") + 1:]

    def test_registrations_are_removed_once_the_dump_has_ended(self):
        self.assertEqual(
            self.asked_of_lsregister_after("echo 'path: /a/kovraInput.app (0x1)'; sleep 0.5;"
                                           "echo 'path: /b/kovraInput.app (0x2)'"),
            ["-u /a/kovraInput.app", "-u /b/kovraInput.app"])

    def test_a_dump_with_one_invalid_byte_at_its_very_end_removes_no_registration(self):
        self.assertEqual(
            self.asked_of_lsregister_after("echo 'path: /a/kovraInput.app (0x1)'; printf '\\377'"),
            [])

    def test_what_a_tool_printed_counts_where_its_status_does_not(self):
        uninstalled = uninstall("installed", faults=[
            f"{tool}=late-exit:1" for tool in ("getconf", "lsregister -dump",
                                               "security dump-keychain")])
        self.assertIn("  - Sign-in data (Keychain): 3 items", uninstalled.log)
        self.assertEqual(uninstalled.tools, uninstall("installed").tools)
        self.assertLessEqual(set(CACHES), set(uninstalled.deleted))
        self.assertIn("  Data: removed Keychain item ai.kovra.device.0042", uninstalled.log)

    def test_what_a_tool_printed_does_not_count_where_its_status_does(self):
        uninstalled = uninstall("user-only", faults=["PlistBuddy=late-exit:1",
                                                     "defaults export=late-exit:1",
                                                     "security delete-generic-password=late-exit:1"])
        self.assertFalse([line for line in uninstalled.tools
                          if line.startswith(("launchctl remove", "defaults import"))])
        self.assertIn("inputSource: warning: Could not read keyboard settings.", uninstalled.shown)
        self.assertNotIn("Keyboard settings entries", "".join(uninstalled.log))
        self.assertFalse([line for line in uninstalled.log if "removed Keychain item" in line])

    def test_a_slow_tool_is_waited_for(self):
        uninstalled = uninstall("user-only", faults=["tccutil reset Microphone=slow:0.5*1",
                                                     "getconf=grandchild:1"])
        self.assertEqual(uninstalled.phase, "done")
        self.assertLessEqual(set(CACHES), set(uninstalled.deleted))

    def test_a_registry_of_real_size_is_read(self):
        uninstalled = uninstall("large-registry")
        self.assertIn("lsregister -u /Library/Input Methods/kovraInput.app", uninstalled.tools)
        self.assertEqual(uninstalled.phase, "done")


if __name__ == "__main__":
    unittest.main()
