#!/usr/bin/python3
"""Tests the signer with a reader that shares no code with it."""

import hashlib
import plistlib
import subprocess
import tempfile
import unittest
from pathlib import Path

import sample
from checks import macho, signature


class SignedBundle(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.bundle = sample.bundle(folder.name)
        self.contents = self.bundle / "Contents"

    def refuses(self, reason):
        with self.assertRaisesRegex(signature.SignatureError, reason):
            signature.check_bundle(self.bundle)

    def flip(self, name, at):
        path = self.contents / name
        data = bytearray(path.read_bytes())
        data[at] ^= 1
        path.write_bytes(data)

    def test_a_signed_bundle_is_valid(self):
        signed = signature.check_bundle(self.bundle)
        self.assertEqual(signed.identifier, "test.sample")
        self.assertEqual(signed.flags, 0x10002)
        self.assertEqual(sorted(signed.special), [1, 2, 3])
        self.assertEqual(sorted(signed.blobs), [0, 2, 0x10000])

    def test_a_change_of_any_byte_of_the_program_is_found(self):
        size = signature.check_bundle(self.bundle).limit
        original = (self.contents / "MacOS/sample").read_bytes()
        for at in range(0, size, 97):
            data = bytearray(original)
            data[at] ^= 1
            with self.assertRaises((signature.SignatureError, macho.MachOError), msg=f"byte {at}"):
                info = (self.contents / "Info.plist").read_bytes()
                listing = (self.contents / "_CodeSignature/CodeResources").read_bytes()
                signature.check_program(bytes(data), {1: info, 3: listing})

    def test_a_changed_info_plist_is_found(self):
        path = self.contents / "Info.plist"
        path.write_bytes(path.read_bytes().replace(b"test.sample", b"test.simple"))
        self.refuses("Info.plist does not match")

    def test_a_changed_resource_is_found(self):
        self.flip("Resources/text", 0)
        self.refuses("Resources/text was changed")

    def test_a_changed_nested_program_is_found(self):
        self.flip("Resources/helper", 100)
        self.refuses("Resources/helper was changed")

    def test_a_nested_program_with_a_bad_signature_of_its_own_is_found(self):
        self.flip("Resources/helper", 5000)
        sample.sign(self.bundle)
        self.refuses("page 1 of the program was changed")

    def test_a_changed_seal_is_found(self):
        self.flip("_CodeSignature/CodeResources", -30)
        self.refuses("the seal does not match")

    def test_an_added_file_is_found(self):
        (self.contents / "Resources/more").write_text("")
        self.refuses("Resources/more was added")

    def test_a_file_added_beside_the_resources_is_found(self):
        (self.contents / "more").write_text("")
        self.refuses("more was added")

    def test_a_second_program_beside_the_first_is_found(self):
        (self.contents / "MacOS/more").write_bytes(sample.program())
        self.refuses("MacOS/more was added")

    def test_a_removed_file_is_found(self):
        (self.contents / "Resources/text").unlink()
        self.refuses("Resources/text is missing")

    def test_a_removed_seal_is_found(self):
        (self.contents / "_CodeSignature/CodeResources").unlink()
        self.refuses("there is no seal")

    def test_a_link_in_place_of_a_file_is_found(self):
        path = self.contents / "Resources/text"
        path.rename(self.bundle.parent / "text")
        path.symlink_to("../../../text")
        self.refuses("text is a link")

    def test_the_same_input_gives_the_same_bytes(self):
        first = {p: p.read_bytes() for p in self.bundle.rglob("*") if p.is_file()}
        sample.sign(self.bundle)
        second = {p: p.read_bytes() for p in self.bundle.rglob("*") if p.is_file()}
        self.assertEqual(first, second)

    def test_the_seal_has_both_forms_of_each_entry(self):
        listing = plistlib.loads((self.contents / "_CodeSignature/CodeResources").read_bytes())
        names = ["Resources/helper", "Resources/text"]
        self.assertEqual(sorted(listing["files"]), names)
        self.assertEqual(sorted(listing["files2"]), names)
        self.assertEqual(listing["files"]["Resources/text"], hashlib.sha1(b"text\n").digest())
        new = listing["files2"]["Resources/text"]["hash2"]
        self.assertEqual(new, hashlib.sha256(b"text\n").digest())

    def test_nested_code_outside_of_resources_is_rejected(self):
        (self.contents / "Helpers").mkdir()
        (self.contents / "Helpers/helper").write_bytes(sample.program())
        result = subprocess.run([sample.SIGN, self.bundle], capture_output=True, text=True)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("Helpers/helper", result.stderr)


class KnownAnswers(unittest.TestCase):
    """Digests that another signer's own tests expect for the same input
    (indygreg/apple-platform-rs, apple-codesign/tests/cmd/sign-bundle.trycmd)."""

    def test_the_seal_of_two_empty_files_is_as_expected(self):
        with tempfile.TemporaryDirectory() as folder:
            contents = Path(folder)
            (contents / "Resources").mkdir()
            for name in ("file-00.txt", "file-01.txt"):
                (contents / "Resources" / name).touch()
            listing = sample.signer("resources").seal(contents, "MacOS/MyApp")
        self.assertEqual(len(listing), 2672)
        self.assertEqual(
            hashlib.sha256(listing).hexdigest(),
            "c844b31db66807774bd8ea00afe62cae1254bf6dfed2fa30d1204449d3c7e943",
        )

    def test_the_empty_parts_have_their_documented_bytes(self):
        signer = sample.signer("signature")
        self.assertEqual(
            hashlib.sha256(signer.NO_REQUIREMENTS).hexdigest(),
            "987920904eab650e75788c054aa0b0524e6a80bfc71aa32df8d237a61743f986",
        )
        self.assertEqual(
            hashlib.sha256(signer.NO_CERTIFICATES).hexdigest(),
            "e6c83bc98a10348492c7d4d2378a54572ef29e1a5692ccd02b5e29f4b762d6a0",
        )


class SignedProgram(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = Path(folder.name) / "tool"

    def test_a_program_alone_is_signed_for_its_identifier(self):
        self.path.write_bytes(sample.program())
        sample.sign("--identifier", "test.tool", self.path)
        signed = signature.check_program(self.path.read_bytes())
        self.assertEqual(signed.identifier, "test.tool")
        self.assertEqual(sorted(signed.special), [1, 2])

    def test_the_mode_of_the_file_is_preserved(self):
        self.path.write_bytes(sample.program())
        self.path.chmod(0o751)
        sample.sign(self.path)
        self.assertEqual(self.path.stat().st_mode & 0o777, 0o751)

    def test_a_file_that_is_not_a_program_is_rejected_and_not_changed(self):
        self.path.write_text("#!/bin/sh\necho a script that is long enough for a header\n")
        before = self.path.read_bytes()
        result = subprocess.run([sample.SIGN, self.path], capture_output=True, text=True)
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(self.path.read_bytes(), before)

    def test_an_unsigned_program_is_not_valid(self):
        with self.assertRaises(signature.SignatureError):
            signature.check_program(sample.program())


if __name__ == "__main__":
    unittest.main()
