"""The side of the tools that a scan meets, and those that keep small registries."""

import datetime
import plistlib
import re
import unittest

from support import HOME, PracticeMac, text

from catalogue import CACHE, KEYBOARD_FILE, KEYCHAIN_FILE, LSREGISTER, RECORDS


VALUES = {
    "negative": -19, "largest": 2**64 - 1, "smallest": -2**63, "real": 0.1, "huge": 1e300,
    "yes": True, "no": False, "date": datetime.datetime(2024, 2, 29, 23, 59, 58),
    "data": bytes(range(256)), "text": "a<&>\"é🎉\n\tb", "spaces": "  x  ", "empty": [],
    "nothing": {}, "nested": [{"a": [1, [2, {"b": ""}]]}], "": "an empty key",
}


def replaced(value, kind=plistlib.FMT_XML):
    """A shell script for root that puts a property list in HIToolbox's place."""
    octal = "".join(f"\\{byte:03o}" for byte in plistlib.dumps(value, fmt=kind))
    return f"printf '{octal}' > {KEYBOARD_FILE}"


class Defaults(unittest.TestCase):
    def test_exports_what_other_parsers_find_in_the_file(self):
        for kind in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            run = PracticeMac("clean").run(["defaults", "export", "com.apple.HIToolbox", "-"],
                                           before=[replaced(VALUES, kind)])
            self.assertTrue(run.stdout.startswith(b"<?xml"))
            self.assertEqual((plistlib.loads(run.stdout), run.stderr), (VALUES, b""))

    def test_exports_an_empty_dictionary_for_a_domain_that_is_not_there(self):
        run = PracticeMac("clean").run(["defaults", "export", "com.example.none", "-"])
        self.assertEqual((run.status, plistlib.loads(run.stdout)), (0, {}))

    def test_replaces_the_whole_domain_on_import_with_the_very_bytes(self):
        xml = plistlib.dumps(VALUES)
        run = PracticeMac("clean").run(["defaults", "import", "com.apple.HIToolbox", "-"],
                                       stdin=xml)
        self.assertEqual((run.status, run.stdout, run.stderr), (0, b"", b""))
        self.assertEqual(run.written(KEYBOARD_FILE), xml)
        self.assertEqual(run.changed, [KEYBOARD_FILE])

    def test_refuses_to_import_what_is_no_dictionary_and_changes_nothing(self):
        for content in (b"", b"rubbish\0\xff", plistlib.dumps([1]), plistlib.dumps("x"),
                        plistlib.dumps(VALUES)[:300], b"bplist00\xff"):
            run = PracticeMac("clean").run(["defaults", "import", "com.apple.HIToolbox", "-"],
                                           stdin=content)
            self.assertEqual((run.status, run.changed), (1, []), content)
            self.assertRegex(run.stderr, rb"^\d{4}-\d\d-\d\d .* defaults\[\d+:\d+\] ")

    def test_writes_one_value_and_keeps_the_others(self):
        run = PracticeMac("clean").shell(
            "set -e; d=com.apple.HIToolbox; defaults write $d b -bool false;"
            "defaults write $d s -string 'x y'; defaults write $d i -int -3;"
            "defaults write $d f -float 0.5; defaults write new.domain only -bool YES",
            before=[replaced(VALUES)])
        self.assertEqual((run.status, run.stderr), (0, b""))
        self.assertEqual(plistlib.loads(run.written(KEYBOARD_FILE)),
                         VALUES | {"b": False, "s": "x y", "i": -3, "f": 0.5})
        self.assertIs(plistlib.loads(run.written(KEYBOARD_FILE))["b"], False)
        created = f"{HOME}/Library/Preferences/new.domain.plist"
        self.assertEqual((run.created, plistlib.loads(run.written(created))),
                         ([created], {"only": True}))

    def test_deletes_keys_and_domains_and_complains_where_there_is_none(self):
        run = PracticeMac("clean").shell(
            "defaults delete com.apple.HIToolbox AppleScale || exit 9;"
            "defaults delete com.example.notes || exit 8; defaults delete com.example.none")
        self.assertEqual(run.status, 1)
        self.assertIn(b"Domain (com.example.none) not found.\n", run.stderr)
        self.assertEqual(run.deleted, [f"{HOME}/Library/Preferences/com.example.notes.plist"])
        self.assertNotIn("AppleScale", plistlib.loads(run.written(KEYBOARD_FILE)))

    def test_reads_values_as_text(self):
        run = PracticeMac("clean").shell(
            "for k in negative largest real yes date text data nested; do"
            " defaults read com.apple.HIToolbox $k; done; defaults read com.apple.HIToolbox none",
            before=[replaced(VALUES | {"data": b"\1\xfe", "nested": {"a": [1, "x y"]}})])
        self.assertEqual(run.status, 1)
        self.assertEqual(text(run), "-19\n18446744073709551615\n0.1\n1\n"
                         "2024-02-29 23:59:58 +0000\n" + VALUES["text"] + "\n"
                         "{length = 2, bytes = 0x01fe}\n"
                         "{\n    a = (\n        1,\n        \"x y\"\n    );\n}\n")
        self.assertIn(b"(com.apple.HIToolbox, none) does not exist", run.stderr)


class Security(unittest.TestCase):
    def test_dumps_items_in_the_real_tools_printing(self):
        run = PracticeMac("installed").run(["security", "dump-keychain"])
        self.assertEqual((run.status, run.stderr), (0, b""))
        accounts = [line.strip() for line in text(run).splitlines() if '"acct"' in line]
        umlaut = "Jürgen \\ Größe".encode()
        self.assertEqual(accounts[:6], [
            '"acct"<blob>="sam@example.com"', '"acct"<blob>="sam"',
            f'"acct"<blob>=0x{umlaut.hex().upper()}  '
            '"J\\303\\274rgen \\134 Gr\\303\\266\\303\\237e"',
            '"acct"<blob>=0x000102FF', '"acct"<blob>=', '"acct"<blob>=<NULL>'])
        self.assertIn('"acct"<blob>=0x000102FF \n', text(run))
        self.assertEqual(accounts[6:9], ['"acct"<blob>="ai.kovra.auth.session"'] * 3)
        entry = text(run).splitlines()[:5]
        self.assertEqual(entry, [f'keychain: "{KEYCHAIN_FILE}"',
                                 "version: 512", 'class: "genp"', "attributes:",
                                 '    0x00000007 <blob>="Notes"'])
        self.assertIn('"cdat"<timedate>=0x32303234303130323033303430355A00  '
                      '"20240102030405Z\\000"\n', text(run))
        self.assertIn("class: 0x80001000 \n", text(run))

    def test_deletes_one_item_of_the_account_at_a_time(self):
        run = PracticeMac("installed").shell(
            "for n in 1 2 3 4; do security delete-generic-password -a ai.kovra.auth.session"
            " > /dev/null; echo $?; done; security dump-keychain | grep '\"acct\"'")
        self.assertEqual(text(run).split()[:4], ["0", "0", "0", "44"])
        self.assertEqual(run.stderr.count(b"password has been deleted.\n"), 3)
        self.assertNotIn("ai.kovra.auth.session", text(run))
        for account in ("ai.kovra.auth.pendingPKCE", "ai.kovrasoft.session", "sam@example.com"):
            self.assertIn(f'"acct"<blob>="{account}"\n', text(run))
        self.assertEqual(run.changed, [KEYCHAIN_FILE])

    def test_adds_an_item_of_an_account_and_service_once(self):
        add = "security add-generic-password -a one -w secret -s"
        run = PracticeMac("clean").shell(
            "add() { security add-generic-password -a one -s \"$1\" -w secret; echo $?; };"
            "add x; add x; add y; security dump-keychain | grep -c '\"acct\"<blob>=\"one\"'")
        self.assertEqual(text(run).split(), ["0", "45", "0", "2"])
        self.assertIn(b"already exists", run.stderr)
        self.assertEqual(PracticeMac("clean").shell(f"{add} x").status, 97)

    def test_does_not_delete_an_internet_password(self):
        run = PracticeMac("clean").run(["security", "delete-generic-password", "-a", "sam"])
        self.assertEqual((run.status, run.changed), (44, []))


class Getconf(unittest.TestCase):
    def test_knows_the_macs_folders_and_leaves_the_rest_to_the_real_one(self):
        run = PracticeMac("clean").shell("getconf DARWIN_USER_CACHE_DIR; getconf PAGE_SIZE;"
                                         "getconf NO_SUCH_THING; echo $?")
        self.assertEqual(text(run).splitlines(), [
            f"{CACHE}/", "4096", "2"])


class PlistBuddy(unittest.TestCase):
    def print(self, key, path):
        return PracticeMac("installed").run(
            ["/usr/libexec/PlistBuddy", "-c", f"Print :{key}", path])

    def test_prints_a_value(self):
        agents = f"{HOME}/Library/LaunchAgents"
        run = self.print("Label", f"{agents}/ai.kovra.tis-helper.plist")
        self.assertEqual((run.status, run.stdout, run.stderr), (0, b"ai.kovra.tis-helper\n", b""))
        run = self.print("RunAtLoad", f"{agents}/ai.kovra.tis-helper.plist")
        self.assertEqual(run.stdout, b"true\n")

    def test_complains_about_a_missing_key_and_a_missing_file(self):
        run = self.print("Label", f"{HOME}/Library/LaunchAgents/com.kovra.agent.plist")
        self.assertEqual((run.status, run.stdout, run.stderr),
                         (1, b"", b'Print: Entry, ":Label", Does Not Exist\n'))
        run = self.print("Label", "/none.plist")
        self.assertEqual(run.status, 1)
        self.assertEqual(run.stdout, b"File Doesn't Exist, Will Create: /none.plist\n")


class Lsregister(unittest.TestCase):
    def test_dumps_records_and_unregisters_one_path_at_a_time(self):
        path = "/Library/Input Methods/kovraInput.app"
        run = PracticeMac("installed").shell(
            f"l={LSREGISTER}; $l -dump; echo ====; $l -u '{path}' || exit 9; $l -dump;"
            f"echo ====; $l -u '{path}'; echo $?")
        before, after, status = (part.splitlines() for part in text(run).split("====\n"))
        form = re.compile(rf"path: {{23}}{path} \(0x[0-9a-f]+\)")
        self.assertEqual(len(list(filter(form.fullmatch, before))), 1)
        self.assertEqual(len(list(filter(form.fullmatch, after))), 0)
        self.assertIn(f"{HOME}{path} (0x", "".join(after))
        self.assertIn("/Volumes/kovra 2.4/kovraInput.app (0x", "".join(after))
        self.assertIn("-" * 80, before)
        self.assertEqual(status, ["1"])
        self.assertIn(b"-10814", run.stderr)

    def test_registers_a_bundle_by_its_description(self):
        run = PracticeMac("clean").shell(
            f"l={LSREGISTER}; b='/Library/Input Methods/Other Input.app'; $l -u \"$b\";"
            "$l -f \"$b\"; echo $?; $l -dump | grep -A9 -F \"$b (0x\"; $l -f /none; echo $?")
        self.assertEqual((text(run)[:2], text(run)[-2:]), ("0\n", "1\n"))
        self.assertIn("com.example.inputmethod.other", text(run))
        self.assertIn(b"-10811", run.stderr)

    def test_dumps_as_much_as_a_real_mac_when_the_scenario_asks(self):
        run = PracticeMac("large-registry").shell(
            f"{LSREGISTER} -dump > /dev/shm/d; wc -lc < /dev/shm/d; grep -c kovraInput /dev/shm/d")
        lines, size, product = map(int, text(run).split())
        self.assertGreater(lines, 390_000)
        self.assertGreater(size, 32_000_000)
        self.assertGreater(product, 3)


class Tccutil(unittest.TestCase):
    def records(self, run):
        return {(record["service"], record["client"]) for record in
                plistlib.loads(run.written(RECORDS["privacy"]))}

    def test_forgets_one_applications_decision(self):
        run = PracticeMac("installed").run(
            ["tccutil", "reset", "Microphone", "ai.kovra.inputmethod.KovraAgent"])
        self.assertEqual(text(run), "Successfully reset Microphone approval status for "
                         "ai.kovra.inputmethod.KovraAgent\n")
        left = self.records(run)
        self.assertNotIn(("Microphone", "ai.kovra.inputmethod.KovraAgent"), left)
        self.assertIn(("Microphone", "com.example.notes"), left)
        self.assertIn(("Accessibility", "ai.kovra.inputmethod.KovraInput"), left)

    def test_succeeds_where_nothing_was_stored(self):
        run = PracticeMac("installed").run(["tccutil", "reset", "PostEvent", "com.example.notes"])
        self.assertEqual((run.status, run.changed), (0, []))

    def test_knows_no_identifier_that_is_not_registered(self):
        run = PracticeMac("clean").run(["tccutil", "reset", "Microphone", "com.kovra.agent"])
        self.assertEqual((run.status, run.stdout), (64, b""))
        self.assertIn(b'No such bundle identifier "com.kovra.agent"', run.stderr)


class EveryStandIn(unittest.TestCase):
    def test_takes_the_accounts_home_where_the_environment_names_none(self):
        run = PracticeMac("installed").shell(
            "env -i /usr/bin/defaults read com.apple.HIToolbox AppleSelectedInputSources && "
            "env -i /usr/bin/security delete-generic-password -a ai.kovra.auth.session")
        self.assertEqual(run.status, 0, run.stderr)
        self.assertEqual(run.changed, [KEYCHAIN_FILE])

    def test_says_so_and_gives_97_when_asked_for_what_it_does_not_know(self):
        for line in ("defaults rename a b c", "defaults write d k -array x", "security unlock",
                     "launchctl kickstart x", "tccutil reset All", "tccutil reset Microphone",
                     "tccutil reset Microphone ''", "osascript script", "xdg-open",
                     "osascript -e 'display dialog \"x\"'", f"{LSREGISTER} -kill",
                     "/usr/libexec/PlistBuddy -c 'Set :a b' /x", "/usr/libexec/practice-mac/tools"):
            run = PracticeMac("installed").shell(line)
            self.assertEqual((run.status, run.stdout), (97, b""), line)
            self.assertIn(b"stand-in does not know this", run.stderr, line)
            self.assertEqual(run.changed, [], line)


if __name__ == "__main__":
    unittest.main(verbosity=2)
