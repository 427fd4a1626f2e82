"""Reads and presses the elements of another program, by the system's interfaces, and prints JSON.

    elements.py permissions            whether it may read other programs and take pictures
    elements.py windows PROCESS        its windows on the screen: id and frame
    elements.py tree PROCESS           its windows with all accessibility elements
    elements.py press PROCESS TEXT     presses the button of that title
    elements.py close PROCESS          presses the close button of its window

It is a process of its own, so that the objects it holds are released when it ends. Written for
Python 3.9.
"""

import ctypes
import json
import sys
from ctypes import c_bool, c_char_p, c_double, c_int32, c_long, c_uint8, c_uint32, c_void_p

FRAMEWORKS = "/System/Library/Frameworks/{0}.framework/{0}"
UTF8, DOUBLE = 0x08000100, 13
POINT, EXTENT = 1, 2
ON_SCREEN = 1

# Types of the result and the arguments of each function.
INTERFACES = {
    "CoreFoundation": {
        "CFGetTypeID": (c_long, c_void_p), "CFStringGetTypeID": (c_long,),
        "CFBooleanGetTypeID": (c_long,), "CFNumberGetTypeID": (c_long,),
        "CFArrayGetTypeID": (c_long,), "CFBooleanGetValue": (c_uint8, c_void_p),
        "CFNumberGetValue": (c_uint8, c_void_p, c_long, c_void_p),
        "CFArrayGetCount": (c_long, c_void_p),
        "CFArrayGetValueAtIndex": (c_void_p, c_void_p, c_long),
        "CFDictionaryGetValue": (c_void_p, c_void_p, c_void_p),
        "CFStringCreateWithCString": (c_void_p, c_void_p, c_char_p, c_uint32),
        "CFStringGetLength": (c_long, c_void_p),
        "CFStringGetCString": (c_uint8, c_void_p, c_char_p, c_long, c_uint32),
        "CFEqual": (c_uint8, c_void_p, c_void_p),
    },
    "ApplicationServices": {
        "AXIsProcessTrusted": (c_uint8,), "AXUIElementGetTypeID": (c_long,),
        "AXUIElementCreateApplication": (c_void_p, c_int32),
        "AXUIElementCopyAttributeValue": (c_int32, c_void_p, c_void_p, c_void_p),
        "AXUIElementCopyActionNames": (c_int32, c_void_p, c_void_p),
        "AXUIElementPerformAction": (c_int32, c_void_p, c_void_p),
        "AXValueGetTypeID": (c_long,), "AXValueGetType": (c_uint32, c_void_p),
        "AXValueGetValue": (c_uint8, c_void_p, c_uint32, c_void_p),
    },
    "CoreGraphics": {
        "CGPreflightScreenCaptureAccess": (c_bool,),
        "CGWindowListCopyWindowInfo": (c_void_p, c_uint32, c_uint32),
    },
}


class System:
    def __init__(self, open_library=lambda name: ctypes.CDLL(FRAMEWORKS.format(name))):
        for library, functions in INTERFACES.items():
            opened = open_library(library)
            for name, (result, *arguments) in functions.items():
                function = getattr(opened, name)
                function.restype, function.argtypes = result, arguments
                setattr(self, name, function)

    def string(self, text):
        return self.CFStringCreateWithCString(None, text.encode(), UTF8)

    def value(self, reference):
        """A string, boolean, number, point or list as a Python value; else the reference."""
        kind = self.CFGetTypeID(reference)
        if kind == self.CFStringGetTypeID():
            room = 4 * self.CFStringGetLength(reference) + 1
            buffer = ctypes.create_string_buffer(room)
            self.CFStringGetCString(reference, buffer, room, UTF8)
            return buffer.value.decode(errors="replace")
        if kind == self.CFBooleanGetTypeID():
            return bool(self.CFBooleanGetValue(reference))
        if kind == self.CFNumberGetTypeID():
            number = c_double()
            self.CFNumberGetValue(reference, DOUBLE, ctypes.byref(number))
            return number.value
        if kind == self.CFArrayGetTypeID():
            return [self.value(self.CFArrayGetValueAtIndex(reference, index))
                    for index in range(self.CFArrayGetCount(reference))]
        if kind == self.AXValueGetTypeID():
            return self._pair(reference)
        return reference

    def _pair(self, reference):
        kind = self.AXValueGetType(reference)
        pair = (c_double * 2)()
        if kind not in (POINT, EXTENT):
            return None
        self.AXValueGetValue(reference, kind, ctypes.byref(pair))
        return list(pair)

    def attribute(self, element, name):
        found = c_void_p()
        failed = self.AXUIElementCopyAttributeValue(element, self.string(name),
                                                    ctypes.byref(found))
        return None if failed or not found.value else self.value(found.value)

    def actions(self, element):
        names = c_void_p()
        failed = self.AXUIElementCopyActionNames(element, ctypes.byref(names))
        return [] if failed or not names.value else self.value(names.value)


def frame(system, element):
    place, extent = (system.attribute(element, name) for name in ("AXPosition", "AXSize"))
    return [*place, *extent] if place and extent else None


def below(system, element):
    """The descendants of an element, in VoiceOver's order."""
    for child in system.attribute(element, "AXChildren") or []:
        yield child
        yield from below(system, child)


def described(system, element, window):
    def is_window(name):
        found = system.attribute(element, name)
        return found is not None and bool(system.CFEqual(found, window))
    parent = system.attribute(element, "AXParent")
    return {"role": system.attribute(element, "AXRole"),
            "subrole": system.attribute(element, "AXSubrole"),
            "title": system.attribute(element, "AXTitle"),
            "value": system.attribute(element, "AXValue"),
            "label": system.attribute(element, "AXDescription"),
            "focused": system.attribute(element, "AXFocused"),
            "frame": frame(system, element), "actions": system.actions(element),
            "window": is_window("AXWindow"), "topLevel": is_window("AXTopLevelUIElement"),
            "parent": None if parent is None else system.attribute(parent, "AXRole")}


def windows_of(system, process):
    application = system.AXUIElementCreateApplication(process)
    return system.attribute(application, "AXWindows") or []


def tree(system, process):
    return {"windows": [{"role": system.attribute(window, "AXRole"),
                         "frame": frame(system, window),
                         "elements": [described(system, element, window)
                                      for element in below(system, window)]}
                        for window in windows_of(system, process)]}


def press(system, process, attribute, text):
    for window in windows_of(system, process):
        for element in below(system, window):
            if system.attribute(element, attribute) == text:
                failed = system.AXUIElementPerformAction(element, system.string("AXPress"))
                return {"pressed": not failed, "error": failed}
    return {"pressed": False, "error": f"nothing has the {attribute} {text}"}


def on_screen(system, process):
    """The ids and frames of the windows. It needs no permission."""
    found = []
    listed = system.CGWindowListCopyWindowInfo(ON_SCREEN, 0)

    def entry(table, key):
        reference = system.CFDictionaryGetValue(table, system.string(key))
        return None if reference is None else system.value(reference)
    for index in range(system.CFArrayGetCount(listed) if listed else 0):
        window = system.CFArrayGetValueAtIndex(listed, index)
        if entry(window, "kCGWindowOwnerPID") == process and entry(window, "kCGWindowLayer") == 0:
            bounds = entry(window, "kCGWindowBounds")
            found.append({"id": int(entry(window, "kCGWindowNumber")),
                          "frame": [entry(bounds, key) for key in ("X", "Y", "Width", "Height")]})
    return found


def main(arguments):
    system = System()
    if arguments == ["permissions"]:
        answer = {"accessibility": bool(system.AXIsProcessTrusted()),
                  "screen": bool(system.CGPreflightScreenCaptureAccess())}
    else:
        action, process = arguments[0], int(arguments[1])
        if action == "press":
            answer = press(system, process, "AXTitle", arguments[2])
        elif action == "close":
            answer = press(system, process, "AXSubrole", "AXCloseButton")
        else:
            answer = {"windows": on_screen, "tree": tree}[action](system, process)
    json.dump(answer, sys.stdout)


if __name__ == "__main__":
    main(sys.argv[1:])
