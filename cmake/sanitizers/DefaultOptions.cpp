// How the sanitizers run in every program of a sanitized build. Compiled in, and not handed over in
// the environment, so that it holds wherever a test starts a program, and as whom.

#define KOVRA_SANITIZER_DEFAULT(name)                                                              \
    extern "C" __attribute__((used, visibility("default"))) const char* name()

// A search for a piece of text is taken to read the whole rest, however near the hit is, and that
// is looked over at each: the square, for the hundred megabytes of a keychain's listing.
#define KOVRA_QUICK_SEARCH "intercept_memmem=0"

KOVRA_SANITIZER_DEFAULT(__asan_default_options) {
    return "detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1:"
           "strict_init_order=1:" KOVRA_QUICK_SEARCH;
}

KOVRA_SANITIZER_DEFAULT(__ubsan_default_options) {
    return "print_stacktrace=1";
}

// What the toolkit and the libraries beneath it keep until the process ends. Nothing of ours.
KOVRA_SANITIZER_DEFAULT(__lsan_default_suppressions) {
    return "leak:libgnustep-base\n"
           "leak:libgnustep-gui\n"
           "leak:libgnustep-cairo\n"
           "leak:libobjc\n"
           "leak:libfontconfig\n"
           "leak:libcairo\n"
           "leak:libX11\n"
           "leak:libxcb\n";
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
