#!/usr/bin/python3
"""Tests the list of the system's names, and the check of programs by it."""

import subprocess
import tempfile
import unittest
from pathlib import Path

import sample
from checks import asks, bundle, known, macho

SYSTEM = [library.path for library in known.libraries().values()]
GOOD = "+ NSString alloc @@:\n- NSString UTF8String r*@:\n"


def problems(methods=GOOD, **rest):
    return asks.problems(macho.read(sample.program(methods, libraries=SYSTEM, **rest)))


class AskedOfTheSystem(unittest.TestCase):
    def test_a_program_that_uses_only_listed_names_passes(self):
        imports = [("_objc_msgSend", 1 + SYSTEM.index("/usr/lib/libobjc.A.dylib"))]
        texts = ["NSString", "pathForResource:ofType:", "Nothing found."]
        self.assertEqual(problems(imports=imports, texts=texts), [])

    def test_an_inherited_method_passes(self):
        self.assertEqual(problems("- NSMutableDictionary objectForKey: @@:@\n"), [])

    def test_a_method_of_a_protocol_passes(self):
        self.assertEqual(problems("- NSView setAccessibilityLabel: v@:@\n"), [])

    def test_the_direction_of_an_argument_makes_no_difference(self):
        method = "+ NSPropertyListSerialization propertyListWithData:options:format:error:"
        self.assertEqual(problems(f"{method} @@:@Q^Q^@\n"), [])

    def test_a_class_that_does_not_exist_fails(self):
        self.assertEqual(problems("+ NSStrung alloc @@:\n"), ["there is no class NSStrung"])

    def test_a_method_that_does_not_exist_fails(self):
        expected = ["NSString has no method - UTF7String"]
        self.assertEqual(problems("- NSString UTF7String r*@:\n"), expected)

    def test_a_class_method_is_not_an_instance_method(self):
        expected = ["NSWorkspace has no method - sharedWorkspace"]
        self.assertEqual(problems("- NSWorkspace sharedWorkspace @@:\n"), expected)

    def test_a_method_with_another_encoding_fails(self):
        expected = ["NSWindow - setTitleVisibility: has the types v@:q, not v@:i"]
        self.assertEqual(problems("- NSWindow setTitleVisibility: v@:i\n"), expected)

    def test_a_class_looked_up_by_a_wrong_name_fails(self):
        self.assertEqual(problems(texts=["NSAppleScrypt"]), ["there is no class NSAppleScrypt"])

    def test_a_selector_that_no_class_has_fails(self):
        expected = ["no class in the list has the selector initWithSauce:"]
        self.assertEqual(problems(texts=["initWithSauce:"]), expected)

    def test_an_import_that_the_library_does_not_have_fails(self):
        number = 1 + next(i for i, path in enumerate(SYSTEM) if path.endswith("/Foundation"))
        imports = [("_NSHomeDirectory", number), ("_NSHomeDirektory", number)]
        found = problems(imports=imports)
        self.assertEqual(len(found), 1)
        self.assertIn("has no _NSHomeDirektory", found[0])

    def test_an_import_from_the_wrong_library_fails(self):
        number = 1 + SYSTEM.index("/usr/lib/libobjc.A.dylib")
        self.assertEqual(len(problems(imports=[("_NSHomeDirectory", number)])), 1)

    def test_a_library_that_is_not_in_the_list_fails(self):
        program = macho.read(sample.program(GOOD, libraries=["/usr/lib/libother.dylib"]))
        expected = ["/usr/lib/libother.dylib is no library in the list"]
        self.assertEqual(asks.problems(program), expected)

    def test_a_listed_name_that_no_program_imports_is_reported(self):
        stubs = [library for library in known.libraries().values() if library.stub]
        listed = {name for library in stubs for name in library.symbols}
        first, second = sorted(listed)[:5], sorted(listed)[5:]
        programs = [macho.read(sample.program(imports=[(name, 1) for name in names]))
                    for names in (first, second, ["_open"])]  # fmt: skip
        self.assertEqual(list(asks.unused_names(programs, known.libraries())), [])
        found = list(asks.unused_names([programs[1]], known.libraries()))
        self.assertEqual(len(found), len(first))
        self.assertIn(f"is listed with {first[0]}, which is not in use", found[0])

    def unused_methods(self, methods, texts=()):
        types = {
            "NSObject": known.Type("NSObject", "objc", [], {"+ alloc": ("@@:", "")}),
            "NSString": known.Type("NSString", "Foundation", ["NSObject", "@NSCopying"],
                                   {"- length": ("Q@:", ""), "- string": ("@@:", "")}),
            "@NSCopying": known.Type("@NSCopying", "Foundation", [], {}),
            "NSView": known.Type("NSView", "AppKit", ["NSObject"], {"- drawRect:": ("v@:", "")}),
        }  # fmt: skip
        program = macho.read(sample.program(methods, texts=list(texts)))
        return list(asks.unused_methods([program], types))

    def test_a_listed_method_or_class_that_no_program_uses_is_reported(self):
        methods = "+ NSString alloc @@:\n- NSString length Q@:\n"
        self.assertEqual(self.unused_methods(methods),
                         ["NSString is listed with - string, which is not in use",
                          "NSView is listed with - drawRect:, which is not in use",
                          "NSView is listed, and not in use"])

    def test_a_method_that_a_program_implements_or_names_counts_as_used(self):
        methods = "+ NSString alloc @@:\n- NSString length Q@:\n- NSString string @@:\n"
        self.assertEqual(self.unused_methods(methods, ["drawRect:"]), [])

    def test_a_method_of_another_class_with_a_selector_that_is_called_is_reported(self):
        methods = "+ NSView alloc @@:\n- NSView length Q@:\n- NSView string @@:\n"
        found = self.unused_methods(methods, ["length", "string", "drawRect:", "NSString"])
        self.assertEqual(found, ["NSString is listed with - length, which is not in use",
                                 "NSString is listed with - string, which is not in use"])

    def test_a_program_without_its_table_fails(self):
        self.assertEqual(problems(""), ["the program's table of methods is missing"])

    def test_a_malformed_line_of_the_table_fails(self):
        with self.assertRaises(macho.MachOError):
            problems("NSString alloc\n")


class TheList(unittest.TestCase):
    def test_its_sdk_is_not_newer_than_the_oldest_system(self):
        oldest = tuple(map(int, bundle.OLDEST_SYSTEM.split(".")))
        self.assertLessEqual(known.system(), oldest)
        for entry in known.types().values():
            for method, version in entry.later.items():
                came = tuple(map(int, version.split(".")))
                self.assertLessEqual(came, oldest, method)

    def test_every_method_has_a_selector_an_encoding_and_a_header(self):
        count = 0
        for entry in known.types().values():
            for method, (encoding, header) in entry.methods.items():
                colons = method.count(":")
                arguments = asks.without_directions(encoding).split("@:", 1)[1]
                self.assertGreaterEqual(len(arguments), colons, method)
                self.assertEqual(bool(arguments), bool(colons), method)
                self.assertRegex(header, r"^(objc|Foundation|AppKit|CoreText|QuartzCore)/\w+\.h$")
                count += 1
        self.assertGreater(count, 150)

    def test_every_name_has_its_text_stub(self):
        for library in known.libraries().values():
            for name, place in library.symbols.items():
                self.assertRegex(place, r"^(usr/lib|System/Library)/.*\.tbd$", name)

    def test_the_stubs_have_exactly_the_names_of_the_list(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sample.PACKAGING / "symbols/make-stubs", folder], check=True)
            for library in known.libraries().values():
                if library.stub:
                    text = (Path(folder) / library.stub).read_text()
                    names = text.split("symbols: [")[1].split("]")[0]
                    listed = {name.strip() for name in names.split(",") if name.strip()}
                    self.assertEqual(listed, set(library.symbols))
                    self.assertIn(f"'{library.path}'", text)


if __name__ == "__main__":
    unittest.main()
