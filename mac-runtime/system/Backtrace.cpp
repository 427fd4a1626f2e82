#include "loader/Program.hpp"
#include "loader/Symbols.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string>
#include <vector>

// backtrace(3), which follows the frame pointers on a Mac, and backtrace_symbols(3) in the format
// of Libc's backtrace.c: "%-4d%-35s 0x%016lx %s + %lu". dlopen(3), dlsym(3).

namespace mac {

namespace {

std::string lineFor(int number, const void* frame) {
    const auto place = reinterpret_cast<std::uintptr_t>(frame);
    std::string image = "???";
    std::string symbol = "0x0";
    std::uintptr_t begin = 0;
    Dl_info information{};
    if (program().contains(place)) {
        // The program's own symbols are stripped, so its image is all that can be named.
        image = symbol = program().name;
        begin = program().base;
    } else if (::dladdr(frame, &information) != 0) {
        image = std::string(information.dli_fname);
        image = image.substr(image.rfind('/') + 1);
        const bool isNamed = information.dli_sname != nullptr;
        symbol = isNamed ? information.dli_sname : image;
        begin = reinterpret_cast<std::uintptr_t>(isNamed ? information.dli_saddr
                                                         : information.dli_fbase);
    }
    std::vector<char> line(symbol.size() + image.size() + 128);
    std::snprintf(line.data(), line.size(), "%-4d%-35s 0x%016lx %s + %lu", number, image.c_str(),
                  place, symbol.c_str(), place - begin);
    return line.data();
}

const char* libraries[] = {
    "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit",
    "/System/Library/Frameworks/Foundation.framework/Versions/C/Foundation",
    "/usr/lib/libSystem.B.dylib",
    "/usr/lib/libc++abi.dylib",
    "/usr/lib/libobjc.A.dylib",
};

namespace darwin {

int backtrace(void** frames, int most) {
    struct Frame {
        const Frame* caller;
        void* returnAddress;
    };

    constexpr std::uintptr_t farthest = 1 << 20;
    int count = 0;
    const auto* frame = static_cast<const Frame*>(__builtin_frame_address(0));
    while (count < most && frame != nullptr && frame->returnAddress != nullptr) {
        frames[count++] = frame->returnAddress;
        const Frame* caller = frame->caller;
        if (caller <= frame ||
            reinterpret_cast<std::uintptr_t>(caller) - reinterpret_cast<std::uintptr_t>(frame) >
                farthest) {
            break;
        }
        frame = caller;
    }
    return count;
}

// One block of memory, which the caller frees: the pointers, then the strings.
char** backtrace_symbols(void* const* frames, int count) {
    std::vector<std::string> lines;
    std::size_t size = 0;
    for (int i = 0; i < count; ++i) {
        lines.push_back(lineFor(i, frames[i]));
        size += sizeof(char*) + lines.back().size() + 1;
    }
    auto** pointers = static_cast<char**>(std::malloc(size + 1));
    auto* text = reinterpret_cast<char*>(pointers + lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        pointers[i] = std::strcpy(text, lines[i].c_str());
        text += lines[i].size() + 1;
    }
    return pointers;
}

// Only libraries that are linked are found; their symbols are those of the runtime's lists.
void* dlopen(const char* path, int) {
    for (const char*& library : libraries) {
        if (path != nullptr && std::strcmp(library, path) == 0) {
            return &library;
        }
    }
    return nullptr;
}

void* dlsym(void*, const char* name) {
    return reinterpret_cast<void*>(symbolNamed(('_' + std::string(name)).c_str()));
}

} // namespace darwin

} // namespace

Symbols backtraceSymbols() {
    static const Symbol symbols[] = {
        {"_backtrace", address(darwin::backtrace)},
        {"_backtrace_symbols", address(darwin::backtrace_symbols)},
        {"_dlopen", address(darwin::dlopen)},
        {"_dlsym", address(darwin::dlsym)},
    };
    return symbols;
}

} // namespace mac
