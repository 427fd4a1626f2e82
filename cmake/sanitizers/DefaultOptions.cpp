// How the sanitizers run in every program of a sanitized build. Compiled in, and not handed over in
// the environment, so that it holds wherever a test starts a program, and as whom.

#include <dlfcn.h>
#include <string_view>

#define KOVRA_SANITIZER_DEFAULT(name)                                                              \
    extern "C" __attribute__((used, visibility("default"))) const char* name()

// The memmem interceptor checks the whole rest of the buffer at each call, however near the match:
// quadratic time for a keychain's listing of a hundred megabytes.
#define KOVRA_QUICK_SEARCH "intercept_memmem=0"

// Two frames of an allocation: the allocator and its caller. ASAN_OPTIONS=malloc_context_size=30
// gives the whole stack.
KOVRA_SANITIZER_DEFAULT(__asan_default_options) {
    return "detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1:"
           "strict_init_order=1:malloc_context_size=2:" KOVRA_QUICK_SEARCH;
}

KOVRA_SANITIZER_DEFAULT(__ubsan_default_options) {
    return "print_stacktrace=1";
}

// What the runtime and the libraries that draw allocate themselves and keep until the process ends,
// and what a thread asks about its stack: while it starts, nothing that is searched refers to that.
// Of an allocation only the function that asked for it is noted, see above; so nothing of ours is
// passed over that runs further down. The toolkit itself is not among them: every object, of ours
// too, is allocated by a function of its.
KOVRA_SANITIZER_DEFAULT(__lsan_default_suppressions) {
    return "leak:^objc_malloc$\n"
           "leak:^XGetWindowProperty$\n"
           "leak:^class_copyMethodList$\n"
           "leak:^pthread_getattr_np$\n"
           "leak:libfontconfig.so\n"
           "leak:libcairo.so\n"
           "leak:libgnustep-cairo\n";
}

KOVRA_SANITIZER_DEFAULT(__lsan_default_options) {
    return "print_suppressions=0";
}

KOVRA_SANITIZER_DEFAULT(__tsan_default_options) {
    return "second_deadlock_stack=1:" KOVRA_QUICK_SEARCH;
}

// The runtime makes a class ready under its lock and takes the toolkit's then; the toolkit uses new
// classes under its own. The main thread alone enters either, so they cannot meet; a test of the
// queues sees to that. The order of our own locks is looked at.
KOVRA_SANITIZER_DEFAULT(__tsan_default_suppressions) {
    return "deadlock:libobjc\n"
           "deadlock:libgnustep-base\n";
}

// The toolkit forgets some objects that it makes itself. Its methods have no names for a
// suppression in the form in which distributions ship it, and to suppress a method would pass over
// whatever of ours it calls. So each that forgets one is called with the search for leaks off, and
// only those that call nothing of ours.
extern "C" {
__attribute__((weak)) void __lsan_disable();
__attribute__((weak)) void __lsan_enable();
__attribute__((weak)) void __lsan_ignore_object(const void* object);
__attribute__((weak)) const char* class_getName(void* kind);
__attribute__((weak)) void* objc_lookUpClass(const char* name);
__attribute__((weak)) void* sel_registerName(const char* name);
__attribute__((weak)) void* class_getClassMethod(void* kind, void* selector);
__attribute__((weak)) void (*method_setImplementation(void* method, void (*function)()))();

// Called in place of the toolkit's own. Of its empty array it makes two, and forgets the first.
__attribute__((visibility("default"))) void* NSAllocateObject(void* kind, unsigned long extraBytes,
                                                              void* zone) {
    using Function = void*(void*, unsigned long, void*);
    static auto* const original =
        reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, "NSAllocateObject"));
    void* const object = original(kind, extraBytes, zone);
    if (__lsan_ignore_object != nullptr &&
        std::string_view(class_getName(kind)) == "GSPlaceholderArray") {
        __lsan_ignore_object(object);
    }
    return object;
}
}

namespace {

struct SearchOff {
    SearchOff() { __lsan_disable(); }

    ~SearchOff() { __lsan_enable(); }

    SearchOff(const SearchOff&) = delete;
    SearchOff& operator=(const SearchOff&) = delete;
};

enum class Forgetful {
    standardUserDefaults, ///< when first called, the name of a settings file's folder
    appearanceNamed,      ///< each appearance that it makes
};

template <Forgetful which, class... Arguments>
struct Unsearched {
    using Function = void*(void*, void*, Arguments...);
    static inline Function* original = nullptr;

    // Callers name the objects by types of their own.
    __attribute__((no_sanitize("function"))) static void* call(void* self, void* selector,
                                                               Arguments... arguments) {
        const SearchOff off;
        return original(self, selector, arguments...);
    }

    static void replace(const char* className, const char* selector) {
        if (void* const kind = objc_lookUpClass(className)) {
            void* const method = class_getClassMethod(kind, sel_registerName(selector));
            original = reinterpret_cast<Function*>(
                method_setImplementation(method, reinterpret_cast<void (*)()>(&call)));
        }
    }
};

// Before main, when the libraries' classes are known.
__attribute__((constructor)) void callForgetfulMethodsUnsearched() {
    if (__lsan_disable == nullptr || objc_lookUpClass == nullptr) {
        return;
    }
    Unsearched<Forgetful::standardUserDefaults>::replace("NSUserDefaults", "standardUserDefaults");
    Unsearched<Forgetful::appearanceNamed, void*>::replace("NSAppearance", "appearanceNamed:");
}

} // namespace
