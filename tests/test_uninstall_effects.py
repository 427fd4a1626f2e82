"""What a whole uninstall leaves as it was, and what becomes of links, locks and leftovers."""

import plistlib
import re
import unittest

import catalogue as c
import uninstalling as u
from catalogue import (CACHE, GROUPS, HOME, LOG, LOG_FOLDER, RECORDS, STAGED_HELPER, STAGING_FOLDER,
                       SYSTEM_PARTS, TEMPORARY)
from support import BUNDLE, PROGRAM, RUNNER, PracticeMac, in_bundle, log_lines
from uninstalling import uninstall

KEYBOARD, KEYCHAIN, INPUT_SOURCES, REGISTERED, PRIVACY = (RECORDS[name] for name in (
    "keyboard", "keychain", "input-sources", "launch-services", "privacy"))


def before(scenario, path):
    """The property list that the scenario has at path."""
    return plistlib.loads(PracticeMac(scenario).run(["/bin/cat", path]).stdout)


def after(uninstalled, path):
    return plistlib.loads(uninstalled.run.written(path))


class Records(unittest.TestCase):
    """The system's own records: the product's entries go, and no other."""

    @classmethod
    def setUpClass(cls):
        cls.uninstalled = uninstall("installed")

    def test_keyboard_settings_keep_every_other_entry_and_type(self):
        expected = before("installed", KEYBOARD)
        for key in ("AppleEnabledInputSources", "AppleSelectedInputSources",
                    "AppleInputSourceHistory", "AppleDisabledInputSources"):
            expected[key] = [entry for entry in expected[key]
                             if "kovra" not in str(entry).lower()]
        self.assertEqual(sum(map(len, (expected[key] for key in expected if key.endswith("Sources")
                                       or key.endswith("History")))), 6)
        kept = after(self.uninstalled, KEYBOARD)
        self.assertEqual(kept, expected)
        self.assertEqual({key: type(value) for key, value in kept.items()},
                         {key: type(value) for key, value in expected.items()})

    def test_the_keychain_keeps_every_other_item(self):
        expected = [item for item in before("installed", KEYCHAIN)
                    if not str(item.get("account", "")).startswith("ai.kovra.")]
        self.assertEqual(after(self.uninstalled, KEYCHAIN), expected)
        self.assertEqual(len(expected), 8)

    def test_the_products_input_sources_are_disabled_and_no_other(self):
        expected = before("installed", INPUT_SOURCES)
        for source in expected:
            source["Enabled"] = "kovra" not in source["InputSourceID"]
        self.assertEqual(after(self.uninstalled, INPUT_SOURCES), expected)

    def test_bundles_are_unregistered_but_for_the_uninstallers_own(self):
        paths = {u.in_short(record["path"]) for record in after(self.uninstalled,
                                                                REGISTERED)["records"]}
        self.assertIn("~/Downloads/kovraUninstaller.app/Resources/kovraInput.app", paths)
        self.assertIn("/Library/Input Methods/Other Input.app", paths)
        self.assertFalse(paths & {*c.SYSTEM_BUNDLES, *u.USER_BUNDLES,
                                  "/Volumes/kovra 2.4/kovraInput.app"})

    def test_privacy_decisions_of_others_stay(self):
        self.assertLessEqual({"com.example.notes"},
                             {entry["client"] for entry in after(self.uninstalled, PRIVACY)})


class ActiveInputSource(unittest.TestCase):
    def scan_with_active(self, identifier):
        script = (f"/usr/bin/python3 - <<'end'\nimport plistlib\npath = '{INPUT_SOURCES}'\n"
                  "sources = plistlib.load(open(path, 'rb'))\n"
                  f"if '{identifier}' not in [s['InputSourceID'] for s in sources]:\n"
                  f" sources.append(dict(sources[0], InputSourceID='{identifier}'))\n"
                  f"for s in sources: s['Selected'] = s['InputSourceID'] == '{identifier}'\n"
                  "plistlib.dump(sources, open(path, 'wb'))\nend")
        return uninstall("installed", before=[script])

    def test_the_products_is_replaced_whatever_the_case_of_its_letters(self):
        for identifier in ("ai.kovra.inputmethod.KovraInput.main", "AI.KOVRA.INPUT", "x.KoVRaX"):
            with self.subTest(identifier):
                uninstalled = self.scan_with_active(identifier)
                self.assertIn("  Input method: switched active source to ABC", uninstalled.log)
                selected = [source["InputSourceID"] for source in after(uninstalled, INPUT_SOURCES)
                            if source["Selected"]]
                self.assertEqual(selected, ["com.apple.keylayout.ABC"])

    def test_one_of_another_product_stays_selected(self):
        uninstalled = self.scan_with_active("com.apple.keylayout.German")
        self.assertNotIn("  Input method: switched active source to ABC", uninstalled.log)
        selected = [source["InputSourceID"] for source in after(uninstalled, INPUT_SOURCES)
                    if source["Selected"]]
        self.assertEqual(selected, ["com.apple.keylayout.German"])


class Bystanders(unittest.TestCase):
    def test_ten_thousand_look_alikes_are_as_before(self):
        uninstalled = uninstall("bystanders", timeout=300)
        self.assertEqual(sorted(uninstalled.deleted), sorted(
            [*SYSTEM_PARTS, *u.USER_BUNDLES, *u.USER_DATA]))
        self.assertEqual(sorted(uninstalled.created), sorted(u.OWN_FILES))
        self.assertEqual(sorted(uninstalled.changed), sorted(u.CHANGED_RECORDS))
        self.assertEqual(uninstalled.phase, "done")


class Links(unittest.TestCase):
    def test_a_product_path_that_is_a_link_goes_and_its_target_stays(self):
        places = ["Applications/kovra.app", "Library/Input Methods/kovraInput.app",
                  "Library/Application Support/kovra", "Library/Logs/kovra",
                  "Library/Preferences/ai.kovra.inputmethod.KovraInput.plist",
                  "Library/LaunchAgents/com.kovra.agent.plist"]
        make = ["mkdir -p ~sam/precious ~sam/Applications ~sam/'Library/Input Methods';"
                "echo text > ~sam/precious/file; chown -R sam ~sam/precious ~sam/Applications ~sam/Library",
                *(f"ln -s ~sam/precious ~sam/'{place}'" for place in places)]
        uninstalled = uninstall("clean", before=[line.replace("~sam", HOME) for line in make])
        self.assertEqual(sorted(uninstalled.deleted), sorted(f"~/{place}" for place in places))
        self.assertEqual(uninstalled.phase, "done")

    def test_a_dangling_user_level_link_is_a_residue_where_names_are_listed(self):
        make = (f"mkdir -p '{HOME}/Library/Input Methods' {HOME}/Applications;"
                f"ln -s nowhere '{HOME}/Library/Input Methods/kovraInput.app';"
                f"ln -s nowhere {HOME}/Applications/kovra.app;"
                f"ln -s nowhere {HOME}/Library/Logs/kovra; chown -R sam {HOME}")
        uninstalled = uninstall("clean", before=[make])
        self.assertEqual(uninstalled.deleted, [])
        self.assertEqual(uninstalled.shown[2:4],
                         ["done", "residue: kovraInput.app (~/Library/Input Methods)"])
        self.assertEqual(uninstalled.log[-2:], ["Uninstall finished (residues: 1)",
                                                "Session ended normally"])

    def test_a_dangling_system_level_link_falls_to_the_script(self):
        make = "ln -s nowhere '/Library/Input Methods/kovraInput.app'; ln -s no /Applications/kovra.app"
        uninstalled = uninstall("clean", before=[make])
        self.assertEqual(uninstalled.deleted, ["/Applications/kovra.app",
                                               "/Library/Input Methods/kovraInput.app"])
        self.assertEqual(uninstalled.phase, "done")


class Descriptors(unittest.TestCase):
    """Which system calls the removal makes."""

    def test_everything_below_a_product_path_is_reached_without_following_links(self):
        make = (f"mkdir -p {HOME}/Documents/precious {HOME}/'Library/Application Support/kovra'/a/b/c;"
                f"ln -s {HOME}/Documents/precious {HOME}/'Library/Application Support/kovra'/a/link;"
                f"chown -R sam {HOME}/Library")
        mac = PracticeMac("user-only", bundle=RUNNER)
        # A process can have one tracer only, and the leak check of a sanitized build is one.
        untraced = {"ASAN_OPTIONS": "detect_leaks=0"}
        run = mac.run(["/usr/bin/strace", "-f", "-qq", "-s", "300", "-o", f"{HOME}/trace",
                       "-e", "trace=execve,open,openat,unlink,unlinkat,rmdir", PROGRAM], before=[make],
                      environment=untraced, timeout=240)
        self.assertEqual(run.status, 0, run.stderr)
        lines = [line.split(maxsplit=1) for line in
                 run.written(f"{HOME}/trace").decode().splitlines()]
        own = lines[0][0]
        tools = {thread for thread, call in lines if call.startswith("execve(")} - {own}
        calls = [call for thread, call in lines if thread not in tools]
        below = [call for call in calls if re.search(r"(openat|unlinkat)\(\d+, ", call)]
        opened = [call for call in below if "openat(" in call and '".."' not in call]
        self.assertGreater(len(opened), 50)
        self.assertEqual([call for call in opened if "O_NOFOLLOW|" not in call
                          or "O_DIRECTORY" not in call], [])
        # Nothing that lies deeper is removed by its path.
        removed = [call for call in calls if re.search(r"\b(unlink|rmdir)\(", call)]
        product = re.compile(r"kovra(?!Uninstaller)|Kovra")
        self.assertEqual([call for call in removed if product.search(call)
                          and "= 0" in call and ".session_active" not in call], [])
        names = [call for call in below if "unlinkat(" in call]
        self.assertGreater(len(names), 50)
        self.assertEqual([call for call in names if re.search(r'unlinkat\(\d+, "[^"]*/', call)], [])


class Locked(unittest.TestCase):
    """Some of it cannot be removed by anybody."""

    def test_each_is_told_and_the_rest_goes(self):
        uninstalled = uninstall("locked-user")
        self.assertEqual(uninstalled.shown[2:7], [
            "done",
            "residue: kovra.app (~/Applications)",
            "residue: kovraInput.app (~/Library/Input Methods)",
            "residue: Settings and app data (1 item)",
            "stopProcesses: done"])
        self.assertIn("removeApps: warning: Could not remove ~/Library/Input Methods/kovraInput.app."
                      " Could not remove ~/Applications/kovra.app.", uninstalled.shown)
        self.assertIn("removeData: warning: Could not remove ~/Library/Logs/kovra.",
                      uninstalled.shown)
        self.assertIn("verify: done", uninstalled.shown)
        log = uninstalled.run_log
        self.assertIn("  Apps: user-level bundles removed — OK", log)
        self.assertIn("  Data: settings and data removed — WARN", log)
        self.assertIn("  Verify: residues — kovra.app (~/Applications), kovraInput.app "
                      "(~/Library/Input Methods), Settings and app data (1 item)", log)
        self.assertIn("Uninstall finished (residues: 3)", log)
        # None of the lists and commands after the one that failed is left out.
        self.assertEqual({"~/Applications/KovraAgent.app", *u.USER_DATA} -
                         set(uninstalled.deleted), {"~/Library/Logs/kovra"})
        removed = [line for line in log if "removed Keychain item" in line]
        self.assertEqual(removed, [f"  Data: removed Keychain item {account}" for account in
                                   ("ai.kovra.auth.pendingPKCE", "ai.kovra.auth.session",
                                    "ai.kovra.device.0042")])

    def test_a_cache_that_stays_is_told_by_a_path_without_a_double_slash(self):
        stuck = f"{CACHE}/com.apple.IntlDataCache.le"
        # A folder of root's with a file in it, which the user can neither empty nor remove.
        uninstalled = uninstall("clean", before=[f"mkdir -p {stuck}; touch {stuck}/file"])
        self.assertIn(f"removeData: warning: Could not remove {stuck}.", uninstalled.shown)

    def test_the_administrator_is_told_too(self):
        uninstalled = uninstall("locked")
        self.assertEqual(uninstalled.phase,
                         "failed: Remove kovra apps: Privileged removal failed: "
                         "/Applications/kovra.app stayed; allow it under System Settings › Privacy "
                         "& Security › App Management, or Full Disk Access, then Retry.")
        self.assertIn("/Applications/KovraAgent.app", uninstalled.deleted)
        self.assertFalse(set(u.USER_BUNDLES) & set(uninstalled.deleted))

    def test_a_name_with_invalid_utf_8_is_reported_with_replacement_characters(self):
        folder = f"{HOME}/Library/Input Methods"
        make = (f"mkdir -p '{folder}'; cd '{folder}'; mkdir -p \"$(printf 'kovraInput\\377.app')\"/x;"
                f"chown -R sam '{HOME}/Library'; chmod 500 \"$(printf 'kovraInput\\377.app')\"")
        uninstalled = uninstall("clean", before=[make])
        self.assertIn("removeApps: warning: Could not remove ~/Library/Input Methods/"
                      "kovraInput\ufffd.app.", uninstalled.shown)


class OrderOfTheData(unittest.TestCase):
    """The order of removals and tools: each test kills the run at a tool and checks what is gone."""

    BEFORE_DEFAULTS = {path for path in u.USER_DATA
                       if path.startswith((u.AGENTS, "~/Library/Group Containers/"))}
    BY_DEFAULTS = {f"~/Library/Preferences/{domain}.plist" for domain in GROUPS}
    TEMPORARY = {path for path in u.USER_DATA if path.startswith(TEMPORARY)}
    CACHES = {path for path in u.USER_DATA if path.startswith(CACHE)}
    BEFORE_KEYCHAIN = {*u.USER_DATA} - TEMPORARY - CACHES

    def gone_by(self, tool, run=1):
        mac = PracticeMac("user-only", bundle=RUNNER)
        ended = mac.run([PROGRAM], faults=[f"{tool}=kill-caller:{run}"])
        self.assertNotEqual(ended.status, 0)
        return {u.in_short(path) for path in ended.deleted} & set(u.USER_DATA)

    def test_agents_and_groups_go_before_the_domains(self):
        # The tool that was begun may still end its work.
        gone = self.gone_by("defaults delete") - self.BY_DEFAULTS
        self.assertEqual(gone, self.BEFORE_DEFAULTS)

    def test_preferences_logs_and_data_go_before_the_keychains_items(self):
        self.assertEqual(self.gone_by("security delete-generic-password"),
                         self.BEFORE_KEYCHAIN)

    def test_temporary_leftovers_go_after_the_keychains_items_and_before_the_caches(self):
        self.assertEqual(self.gone_by("getconf"), self.BEFORE_KEYCHAIN | self.TEMPORARY)

    def test_the_caches_go_before_the_settings_are_read_anew(self):
        self.assertEqual(self.gone_by("killall cfprefsd", run=2), set(u.USER_DATA))


class StagedHelper(unittest.TestCase):
    def test_a_stale_copy_is_replaced(self):
        uninstalled = uninstall("clean", before=[
            f"mkdir {STAGING_FOLDER}; echo old > {STAGED_HELPER}; chown -R sam {STAGING_FOLDER}"])
        self.assertIn(STAGED_HELPER, uninstalled.changed)
        self.assertIn("inputSource: done", uninstalled.shown)

    def test_a_helper_that_cannot_be_staged_is_told(self):
        for obstacle in (f"touch {STAGING_FOLDER}", f"mkdir -m 555 {STAGING_FOLDER}",
                         f"mkdir {STAGING_FOLDER}; ln -s /precious {STAGED_HELPER};"
                         f"chown -R sam {STAGING_FOLDER}"):
            with self.subTest(obstacle=obstacle):
                uninstalled = uninstall("clean", before=[obstacle])
                self.assertIn("inputSource: warning: Could not run the input source helper.",
                              uninstalled.shown)
                self.assertIn("  Input method: TIS + LaunchServices cleanup — OK", uninstalled.log)
                self.assertTrue([line for line in uninstalled.run.syslog
                                 if "tistool staging failed: " in line], uninstalled.run.syslog)

    def test_a_helper_that_is_missing_is_told(self):
        uninstalled = uninstall("clean", before=[
            f"rm {in_bundle('tistool', BUNDLE)}"])
        self.assertIn("inputSource: warning: Could not run the input source helper.",
                      uninstalled.shown)
        # The priority is that of an error of a user's program.
        [line] = uninstalled.run.syslog
        self.assertRegex(line, r"^<11>.* ai\.kovra\.KovraUninstaller:Uninstaller: "
                         r"tistool binary not found in bundle$")


class Helper(unittest.TestCase):
    """The helper by itself."""

    def ask(self, *arguments):
        return PracticeMac("installed").run([in_bundle("tistool", BUNDLE), *arguments])

    def test_disables_the_products_sources_and_says_how_many(self):
        run = self.ask("--disable-all")
        self.assertEqual((run.status, run.stdout, run.stderr),
                         (0, b"Disabled 2 input sources.\n", b""))
        self.assertIn(INPUT_SOURCES, run.changed)

    def test_does_nothing_that_it_was_not_asked(self):
        for arguments in ((), ("--disable",), ("--disable-all", "--disable-all"),
                          ("--disable-all", "com.apple.keylayout.ABC"), ("", "--disable-all")):
            with self.subTest(arguments=arguments):
                run = self.ask(*arguments)
                self.assertEqual((run.status, run.stdout, run.stderr),
                                 (2, b"", b"usage: tistool --disable-all\n"))
                self.assertNotIn(INPUT_SOURCES, run.changed)


class Sessions(unittest.TestCase):
    def test_a_killed_run_is_told_by_the_next_session(self):
        script = ('"$0" & run=$!; until grep -q "Uninstall started" "$1" 2>/dev/null; do sleep 0.05;'
                  ' done; kill -KILL $run; wait $run; "$0" --quit-at stopProcesses')
        mac = PracticeMac("installed", bundle=RUNNER)
        run = mac.run(["/bin/bash", "-c", script, PROGRAM, LOG])
        self.assertEqual(run.status, 0, run.stderr)
        log = "".join(f"{line}\n" for line in log_lines(run))
        self.assertRegex(log, r"Uninstall started\n(  Stop: .*\n)?"
                              r"⚠️ Previous session \(started ....-..-.. ..:..:..\) ended abnormally\n─")
        self.assertTrue(log.endswith("Session ended normally\n"), log)
        self.assertNotIn(f"{LOG_FOLDER}/.session_active", run.created)


if __name__ == "__main__":
    unittest.main()
