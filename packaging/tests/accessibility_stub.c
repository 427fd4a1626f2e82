// A stub of the frameworks that on_a_mac/elements.py calls, which shows one window with a text and a
// button. Compiled and loaded by check_on_a_mac_test.py.
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

enum { string = 1, truth, number, array, point, extent, element, table };

typedef struct Object {
    long kind;
    const char* text; // a string's; what an element was pressed for
    double pair[2];   // of a truth value and a number the first
    const char* names[12];
    struct Object* values[12]; // of an array without names
} Object;

#define TEXT(words) (&(Object){.kind = string, .text = (words)})
#define POINT(x, y) (&(Object){.kind = point, .pair = {(x), (y)}})
#define EXTENT(x, y) (&(Object){.kind = extent, .pair = {(x), (y)}})
#define NUMBER(x) (&(Object){.kind = number, .pair = {(x)}})

static Object window, button;
static Object title = {
    .kind = element,
    .names = {"AXRole", "AXValue", "AXPosition", "AXSize", "AXWindow", "AXTopLevelUIElement", "AXParent"},
    .values = {TEXT("AXStaticText"), TEXT("kovra was not found …"), POINT(110, 120.5), EXTENT(80, 20),
               &window, &window, &window}};
static Object button = {
    .kind = element,
    .names = {"AXRole", "AXTitle", "AXFocused", "AXWindow", "AXParent"},
    .values = {TEXT("AXButton"), TEXT("Quit"), &(Object){.kind = truth, .pair = {1}}, &title, &title}};
static Object window = {
    .kind = element,
    .names = {"AXRole", "AXPosition", "AXSize", "AXChildren"},
    .values = {TEXT("AXWindow"), POINT(100, 100), EXTENT(480, 478),
               &(Object){.kind = array, .values = {&title, &button}}}};
static Object application = {.kind = element,
                             .names = {"AXWindows"},
                             .values = {&(Object){.kind = array, .values = {&window}}}};
static Object listed = {
    .kind = table,
    .names = {"kCGWindowOwnerPID", "kCGWindowLayer", "kCGWindowNumber", "kCGWindowBounds"},
    .values = {NUMBER(4711), NUMBER(0), NUMBER(99),
               &(Object){.kind = table,
                         .names = {"X", "Y", "Width", "Height"},
                         .values = {NUMBER(1), NUMBER(2), NUMBER(480), NUMBER(478)}}}};
static Object menuBar = {.kind = table,
                         .names = {"kCGWindowOwnerPID", "kCGWindowLayer"},
                         .values = {NUMBER(4711), NUMBER(25)}};

static Object windowList = {.kind = array, .values = {&menuBar, &listed}};
static Object buttonActions = {.kind = array, .values = {TEXT("AXPress")}};

static Object* member(const Object* object, const Object* key) {
    for (int i = 0; i < 12 && object->names[i]; ++i) {
        if (strcmp(object->names[i], key->text) == 0) {
            return object->values[i];
        }
    }
    return NULL;
}

long CFGetTypeID(const Object* object) { return object->kind == extent ? point : object->kind; }
long CFStringGetTypeID(void) { return string; }
long CFBooleanGetTypeID(void) { return truth; }
long CFNumberGetTypeID(void) { return number; }
long CFArrayGetTypeID(void) { return array; }
long AXValueGetTypeID(void) { return point; }
long AXUIElementGetTypeID(void) { return element; }
uint8_t CFBooleanGetValue(const Object* object) { return object->pair[0] != 0; }
uint8_t CFEqual(const Object* a, const Object* b) { return a == b; }
uint8_t AXIsProcessTrusted(void) { return 1; }
_Bool CGPreflightScreenCaptureAccess(void) { return 0; }
uint32_t AXValueGetType(const Object* object) { return object->kind == point ? 1 : 2; }
Object* AXUIElementCreateApplication(int32_t process) { return process == 4711 ? &application : &title; }
Object* CFArrayGetValueAtIndex(const Object* object, long index) { return object->values[index]; }
Object* CFDictionaryGetValue(const Object* object, const Object* key) { return member(object, key); }
long CFStringGetLength(const Object* object) { return (long)strlen(object->text); }

uint8_t CFNumberGetValue(const Object* object, long kind, double* result) {
    *result = object->pair[0];
    return kind == 13;
}

uint8_t AXValueGetValue(const Object* object, uint32_t kind, double* result) {
    memcpy(result, object->pair, sizeof object->pair);
    return kind == AXValueGetType(object);
}

long CFArrayGetCount(const Object* object) {
    long count = 0;
    while (count < 12 && object->values[count]) {
        ++count;
    }
    return count;
}

Object* CFStringCreateWithCString(void* allocator, const char* text, uint32_t encoding) {
    Object* made = calloc(1, sizeof *made);
    *made = (Object){.kind = string, .text = strdup(text)};
    return allocator == NULL && encoding == 0x08000100 ? made : NULL;
}

uint8_t CFStringGetCString(const Object* object, char* buffer, long room, uint32_t encoding) {
    if (encoding != 0x08000100 || (long)strlen(object->text) >= room) {
        return 0;
    }
    strcpy(buffer, object->text);
    return 1;
}

int32_t AXUIElementCopyAttributeValue(const Object* object, const Object* name, Object** result) {
    *result = member(object, name);
    return *result ? 0 : -25212;
}

int32_t AXUIElementCopyActionNames(const Object* object, Object** result) {
    *result = object == &button ? &buttonActions : NULL;
    return 0;
}

int32_t AXUIElementPerformAction(Object* object, const Object* action) {
    if (object != &button) {
        return -25206;
    }
    static Object pressed = {.kind = string, .text = "Pressed"};
    object->values[1] = &pressed;
    return strcmp(action->text, "AXPress");
}

Object* CGWindowListCopyWindowInfo(uint32_t options, uint32_t relative) {
    return options == 1 && relative == 0 ? &windowList : NULL;
}
