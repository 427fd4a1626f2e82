#include "loader/Symbols.hpp"

#include <dlfcn.h>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace mac {

namespace {

using Table = std::unordered_map<std::string_view, const void*>;

const Table& shims() {
    static const Table table = [] {
        Table all;
        for (const Symbols& symbols : {accessibilitySymbols(),
                                       appleScriptSymbols(),
                                       dispatchSymbols(),
                                       foundationSymbols(),
                                       inputSourceSymbols(),
                                       messageSymbols(),
                                       transparencyLayerSymbols(),
                                       windowSymbols(),
                                       environmentSymbols(),
                                       threadLocalSymbols(),
                                       objectExceptionSymbols(),
                                       backtraceSymbols(),
                                       childSymbols(),
                                       errorSymbols(),
                                       fileSymbols(),
                                       folderSymbols(),
                                       localeSymbols(),
                                       memorySymbols(),
                                       openFileSymbols(),
                                       signalSymbols(),
                                       systemControlSymbols(),
                                       systemLogSymbols(),
                                       testProgramSymbols(),
                                       textSymbols(),
                                       threadSymbols(),
                                       timeSymbols(),
                                       volumeSymbols()}) {
            for (const Symbol& symbol : symbols) {
                all.emplace(symbol.name, symbol.value);
            }
        }
        return all;
    }();
    return table;
}

// Functions of C, POSIX, the C++ ABI and the Objective-C runtime whose types have the same layout
// on both systems, that set no errno and take no constant whose value differs.
const std::unordered_set<std::string_view>& alike() {
    static const std::unordered_set<std::string_view> names = {
        // <stdlib.h>, <string.h>, <strings.h>, <ctype.h>
        "_abort",
        "_atoi",
        "_atol",
        "_bcmp",
        "_bsearch",
        "_bzero",
        "_exit",
        "__exit",
        "_free",
        "_memchr",
        "_memcmp",
        "_memcpy",
        "_memmem",
        "_memmove",
        "_memset",
        "_qsort",
        "_stpcpy",
        "_strcasecmp",
        "_strchr",
        "_strcmp",
        "_strcpy",
        "_strcspn",
        "_strlcpy",
        "_strlcat",
        "_strlen",
        "_strncasecmp",
        "_strncmp",
        "_strncpy",
        "_strnlen",
        "_strpbrk",
        "_strrchr",
        "_strspn",
        "_strstr",
        "_strtok_r",
        "_isalnum",
        "_tolower",
        "_toupper",
        "_wcslen",
        "_wmemchr",
        "_wmemcmp",
        "_wmemcpy",
        "_wmemmove",
        "_wmemset",
        "_btowc",
        "_wctob",
        // <math.h>
        "_asin",
        "_atan2",
        "_ceil",
        "_ceilf",
        "_cos",
        "_cosf",
        "_exp",
        "_exp2",
        "_expf",
        "_fabs",
        "_floor",
        "_floorf",
        "_fmax",
        "_fmin",
        "_fmod",
        "_fmodf",
        "_hypot",
        "_llround",
        "_log",
        "_log10",
        "_log2",
        "_lround",
        "_lroundf",
        "_modf",
        "_nearbyint",
        "_nextafter",
        "_pow",
        "_powf",
        "_rint",
        "_round",
        "_roundf",
        "_sin",
        "_sinf",
        "_sqrt",
        "_tan",
        "_trunc",
        // <stdio.h>; a stream is an opaque pointer to the program
        "_clearerr",
        "_feof",
        "_ferror",
        "_fgetc",
        "_fgets",
        "_fread",
        "_getc",
        "_putc",
        "_putchar",
        "_rewind",
        "_setbuf",
        "_ungetc",
        // <unistd.h>
        "_getegid",
        "_geteuid",
        "_getgid",
        "_getpid",
        "_getppid",
        "_getuid",
        // <pthread.h>, <sched.h>
        "_pthread_equal",
        "_pthread_self",
        "_sched_yield",
        // the C++ ABI; <unwind.h>
        "___cxa_atexit",
        "___cxa_demangle",
        "__Unwind_Backtrace",
        "__Unwind_DeleteException",
        "__Unwind_GetCFA",
        "__Unwind_GetIP",
        "__Unwind_GetIPInfo",
        "__Unwind_GetLanguageSpecificData",
        "__Unwind_GetRegionStart",
        "__Unwind_SetGR",
        "__Unwind_SetIP",
        // <objc/runtime.h>
        "_class_addIvar",
        "_class_addMethod",
        "_class_addProtocol",
        "_class_conformsToProtocol",
        "_class_getInstanceMethod",
        "_class_getInstanceVariable",
        "_class_getSuperclass",
        "_class_replaceMethod",
        "_ivar_getOffset",
        "_method_getNumberOfArguments",
        "_method_getReturnType",
        "_method_getTypeEncoding",
        "_objc_allocateClassPair",
        "_objc_registerClassPair",
        "_object_getClassName",
        "_sel_getName",
        // Foundation and AppKit; a string constant is a variable that holds the object's address
        "_NSDefaultRunLoopMode",
        "_NSEventTrackingRunLoopMode",
        "_NSFontAttributeName",
        "_NSForegroundColorAttributeName",
        "_NSModalPanelRunLoopMode",
        "_NSParagraphStyleAttributeName",
        "_NSUnderlineColorAttributeName",
        "_NSUnderlineStyleAttributeName",
        "_NSSetUncaughtExceptionHandler",
    };
    return names;
}

} // namespace

std::uintptr_t symbolNamed(const char* name) {
    if (const auto found = shims().find(name); found != shims().end()) {
        return reinterpret_cast<std::uintptr_t>(found->second);
    }
    if (alike().contains(name)) {
        return reinterpret_cast<std::uintptr_t>(::dlsym(RTLD_DEFAULT, name + 1));
    }
    return 0;
}

} // namespace mac
