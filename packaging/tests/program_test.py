#!/usr/bin/python3
"""Each check of a shipped program rejects a program that violates it."""

import unittest

import sample
from checks import bundle, macho


class ShippedProgram(unittest.TestCase):
    def refuses(self, data, reason):
        with self.assertRaisesRegex(AssertionError, reason):
            bundle.check_program(data)

    def test_an_arm64_program_for_macos_13_with_system_libraries_passes(self):
        bundle.check_program(sample.program())

    def test_a_program_for_another_processor_is_rejected(self):
        self.refuses(sample.program(cpu=0x01000007), "not for arm64")

    def test_a_program_for_a_later_system_is_rejected(self):
        self.refuses(sample.program(minimum=(14, 0)), "oldest system")

    def test_a_library_from_elsewhere_is_rejected(self):
        self.refuses(sample.program(libraries=["/opt/lib/libx.dylib"]), "it loads /opt/lib")
        self.refuses(sample.program(libraries=["@rpath/libx.dylib"]), "it loads @rpath")

    def test_a_position_dependent_program_is_rejected(self):
        self.refuses(sample.program(flags=sample.PIE_TWO_LEVEL & ~macho.PIE), "PIE is off")

    def test_a_flat_name_space_is_rejected(self):
        flat = sample.PIE_TWO_LEVEL & ~macho.TWO_LEVEL
        self.refuses(sample.program(flags=flat), "two-level names")

    def test_a_build_path_inside_is_rejected(self):
        self.refuses(sample.program(texts=["/home/somebody/main.cpp"]), "a build path")

    def test_the_name_of_a_source_file_inside_is_rejected(self):
        for text in ("./platform/appkit/Painter.cpp", "/build/x/y.hpp", "lib/libz.a"):
            self.refuses(sample.program(texts=[text]), "it names the file")
        bundle.check_program(sample.program(texts=["/usr/bin/defaults", "uninstall.sh", "a/b.app"]))

    def test_a_file_that_is_not_mach_o_is_rejected(self):
        for data in (b"", b"\xcf\xfa", b"\x7fELF" + bytes(100), sample.program()[:200]):
            with self.assertRaises(macho.MachOError):
                bundle.check_program(data)

    def test_a_load_command_that_reaches_too_far_is_rejected(self):
        data = bytearray(sample.program())
        data[36:40] = (0xFFFFFF).to_bytes(4, "little")
        with self.assertRaises(macho.MachOError):
            bundle.check_program(bytes(data))


if __name__ == "__main__":
    unittest.main()
