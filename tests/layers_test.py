import tempfile
import unittest
from pathlib import Path

from layers import MAY_USE, House

CHECKOUT = Path(__file__).resolve().parent.parent


class ThisHouse(unittest.TestCase):
    def test_is_in_order(self):
        self.assertEqual(House(CHECKOUT).faults(), [])

    def test_is_looked_at_whole(self):
        house = House(CHECKOUT)
        self.assertGreater(len(list(house.sources())), 100)
        for floor, targets in house.targets_of_floor.items():
            self.assertTrue(targets, f"{floor} has no target")

    def test_has_no_way_up(self):
        for floor, below in MAY_USE.items():
            for lower in below:
                self.assertNotIn(floor, MAY_USE[lower])


class AHouseOutOfOrder(unittest.TestCase):
    """A small house in order, and each way of breaking it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.write("platform/base/CMakeLists.txt", "kovra_library(base SOURCES A.cpp)")
        self.write("platform/objc/CMakeLists.txt", "kovra_library(objc SOURCES O.cpp USES base)")
        self.write("platform/services/CMakeLists.txt",
                   "kovra_library(services\n  SOURCES S.cpp\n  USES objc base)")
        self.write("kovraUninstaller/system/CMakeLists.txt",
                   "kovra_library(system SOURCES T.cpp USES services)")
        self.write("platform/base/A.hpp")
        self.write("platform/objc/O.hpp", "#include <objc/runtime.h>")
        self.write("platform/services/S.hpp", '#include "platform/base/A.hpp"')
        self.write("kovraUninstaller/system/T.cpp", '#include "platform/services/S.hpp"')

    def write(self, path, text=""):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text + "\n")

    def assert_fault(self, *parts):
        faults = House(self.root).faults()
        self.assertEqual(len(faults), 1, faults)
        for part in parts:
            self.assertIn(part, faults[0])

    def test_in_order_has_no_fault(self):
        self.assertEqual(House(self.root).faults(), [])

    def test_an_include_that_points_up(self):
        self.write("platform/base/A.cpp", '#include "platform/services/S.hpp"')
        self.assert_fault("platform/base/A.cpp", "may not know")

    def test_an_include_of_an_objective_c_type_beyond_the_services(self):
        self.write("kovraUninstaller/system/T.cpp", '#  include "platform/objc/O.hpp"')
        self.assert_fault("T.cpp", "may not know platform/objc/O.hpp")

    def test_an_include_of_what_is_not_linked(self):
        self.write("platform/services/CMakeLists.txt", "kovra_library(services SOURCES S.cpp)")
        self.assert_fault("platform/services/S.hpp", "does not link it")

    def test_an_include_that_is_not_named_from_the_root(self):
        self.write("platform/base/B.hpp", '#include "A.hpp"')
        self.assert_fault("B.hpp", "not named from the root")

    def test_a_program_that_includes_what_is_the_tests_own(self):
        self.write("platform/testing/Folder.hpp")
        self.write("platform/base/B.hpp", '#include "platform/testing/Folder.hpp"')
        self.assert_fault("B.hpp", "tests'")

    def test_a_link_that_points_up(self):
        self.write("platform/base/CMakeLists.txt", "kovra_library(base SOURCES A.cpp USES objc)")
        self.assert_fault("platform/base/CMakeLists.txt", "base links objc")

    def test_a_link_that_points_up_in_a_line_of_its_own(self):
        self.write("platform/base/CMakeLists.txt",
                   "kovra_library(base SOURCES A.cpp)\ntarget_link_libraries(base PRIVATE services)")
        self.assert_fault("platform/base/CMakeLists.txt", "base links services")

    def test_a_question_about_the_system_outside_the_platform(self):
        self.write("kovraUninstaller/system/T.cpp", "#if defined(__APPLE__) && 1\n#endif")
        self.assert_fault("T.cpp", "__APPLE__")

    def test_a_question_about_the_system_in_a_test_too(self):
        self.write("kovraUninstaller/system/T_test.cpp", "#ifdef __linux__\n#endif")
        self.assert_fault("T_test.cpp", "__linux__")

    def test_the_runtime_beyond_its_floor(self):
        self.write("platform/services/S.cpp", "#include <objc/message.h>")
        self.assert_fault("S.cpp", "objc/message.h")
        self.write("platform/services/S.cpp", "auto c = objc_getClass(name);")
        self.assert_fault("S.cpp", "objc_getClass")

    def test_a_source_on_no_floor(self):
        self.write("kovraUninstaller/elsewhere/X.cpp")
        self.assert_fault("elsewhere/X.cpp", "no floor")

    def test_comments_and_conditions_of_other_kinds_are_no_fault(self):
        self.write("kovraUninstaller/system/T.cpp",
                   '// #include "platform/objc/O.hpp"\n/* #ifdef __linux__ */\n'
                   "#ifdef NDEBUG\n#endif\nint subclass_of(int);")
        self.assertEqual(House(self.root).faults(), [])


if __name__ == "__main__":
    unittest.main()
