import tempfile
import unittest
from pathlib import Path

from layers import SourceTree

CHECKOUT = Path(__file__).resolve().parent.parent


class ThisCheckout(unittest.TestCase):
    def test_violates_nothing(self):
        self.assertEqual(SourceTree(CHECKOUT).violations(), [])

    def test_is_read_whole(self):
        tree = SourceTree(CHECKOUT)
        self.assertGreater(len(list(tree.sources())), 100)
        self.assertEqual({Path(script).parent for script in tree.root.glob("[pk]*/*/CMakeLists.txt")
                          if "kovra_library(" in script.read_text()},
                         {tree.root / layer for layer in tree.layers})
        self.assertEqual(tree.layers[0], "platform/base")
        self.assertEqual(tree.layers[-1], "kovraUninstaller/app")
        for layer in tree.layers[1:]:
            self.assertTrue(tree.uses[layer], f"{layer} uses nothing")


class ATreeWithOneViolation(unittest.TestCase):
    """A small tree without any, and each way of violating the order."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.write("platform/CMakeLists.txt",
                   "add_subdirectory(base)\nadd_subdirectory(objc)\nadd_subdirectory(services)")
        self.write("kovraUninstaller/CMakeLists.txt",
                   "add_subdirectory(system)\nadd_subdirectory(app)")
        self.write("platform/base/CMakeLists.txt", "kovra_library(base SOURCES A.cpp)")
        self.write("platform/objc/CMakeLists.txt", "kovra_library(objc SOURCES O.cpp USES base)")
        self.write("platform/services/CMakeLists.txt",
                   "kovra_library(services\n  SOURCES S.cpp\n  USES objc base)")
        self.write("kovraUninstaller/system/CMakeLists.txt",
                   "kovra_library(system SOURCES T.cpp USES services)")
        self.write("kovraUninstaller/app/CMakeLists.txt",
                   "kovra_library(app SOURCES P.cpp USES system objc)")
        self.write("platform/base/A.hpp")
        self.write("platform/objc/O.hpp", "#include <objc/runtime.h>")
        self.write("platform/services/S.hpp", '#include "platform/base/A.hpp"')
        self.write("kovraUninstaller/system/T.cpp", '#include "platform/services/S.hpp"')
        self.write("kovraUninstaller/app/P.cpp", '#include "platform/objc/O.hpp"')

    def write(self, path, text=""):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text + "\n")

    def assert_violation(self, *parts):
        violations = SourceTree(self.root).violations()
        self.assertEqual(len(violations), 1, violations)
        for part in parts:
            self.assertIn(part, violations[0])

    def test_the_small_tree_violates_nothing(self):
        self.assertEqual(SourceTree(self.root).violations(), [])

    def test_an_include_from_a_higher_layer(self):
        self.write("platform/base/A.cpp", '#include "platform/services/S.hpp"')
        self.assert_violation("platform/base/A.cpp", "does not name its target")

    def test_an_include_from_a_layer_that_is_linked_only_through_another(self):
        self.write("kovraUninstaller/system/T.cpp", '#  include "platform/objc/O.hpp"')
        self.assert_violation("T.cpp", "includes platform/objc/O.hpp", "does not name its target")

    def test_an_include_from_a_layer_that_is_not_linked(self):
        self.write("platform/services/CMakeLists.txt", "kovra_library(services SOURCES S.cpp)")
        self.assert_violation("platform/services/S.hpp", "does not name its target")

    def test_an_include_that_is_not_named_from_the_root(self):
        self.write("platform/base/B.hpp", '#include "A.hpp"')
        self.assert_violation("B.hpp", "not named from the root")

    def test_a_program_that_includes_a_header_of_the_tests(self):
        self.write("platform/testing/Folder.hpp")
        self.write("platform/base/B.hpp", '#include "platform/testing/Folder.hpp"')
        self.assert_violation("B.hpp", "belongs to the tests")

    def test_a_link_to_a_higher_layer(self):
        self.write("platform/base/CMakeLists.txt",
                   "kovra_library(base SOURCES A.cpp USES services)")
        self.assert_violation("platform/base/CMakeLists.txt", "base links services", "higher")

    def test_a_link_to_a_higher_layer_by_target_link_libraries(self):
        self.write("platform/base/CMakeLists.txt",
                   "kovra_library(base SOURCES A.cpp)\ntarget_link_libraries(base PRIVATE services)")
        self.assert_violation("platform/base/CMakeLists.txt", "base links services", "higher")

    def test_a_link_to_objective_c_outside_the_platform_and_the_application(self):
        self.write("kovraUninstaller/system/CMakeLists.txt",
                   "kovra_library(system SOURCES T.cpp USES services objc)")
        self.assert_violation("system links objc", "Objective-C")

    def test_a_condition_on_the_operating_system_outside_the_platform(self):
        self.write("kovraUninstaller/system/T.cpp", "#if defined(__APPLE__) && 1\n#endif")
        self.assert_violation("T.cpp", "__APPLE__")

    def test_a_condition_on_the_operating_system_in_a_unit_test(self):
        self.write("kovraUninstaller/system/T_test.cpp", "#ifdef __linux__\n#endif")
        self.assert_violation("T_test.cpp", "__linux__")

    def test_the_runtimes_header_outside_its_layer(self):
        self.write("platform/services/S.cpp", "#include <objc/message.h>")
        self.assert_violation("S.cpp", "objc/message.h")

    def test_a_call_of_the_runtime_outside_its_layer(self):
        self.write("platform/services/S.cpp", "auto c = objc_getClass(name);")
        self.assert_violation("S.cpp", "objc_getClass")

    def test_a_source_in_a_folder_that_is_no_layer(self):
        self.write("kovraUninstaller/elsewhere/X.cpp")
        self.assert_violation("elsewhere/X.cpp", "no layer")

    def test_comments_and_conditions_of_other_kinds_are_allowed(self):
        self.write("kovraUninstaller/system/T.cpp",
                   '// #include "platform/objc/O.hpp"\n/* #ifdef __linux__ */\n'
                   "#ifdef NDEBUG\n#endif\nint subclass_of(int);")
        self.assertEqual(SourceTree(self.root).violations(), [])


if __name__ == "__main__":
    unittest.main()
