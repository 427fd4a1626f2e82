#include "loader/Program.hpp"

#include "loader/ChainedFixups.hpp"
#include "loader/Environment.hpp"
#include "loader/Failure.hpp"
#include "loader/ThreadLocals.hpp"
#include "unwind/Unwind.hpp"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

namespace mac {

namespace {

Image loaded;
ProgramArguments given;

// <mach-o/loader.h>: the low byte of a section's flags is its type.
macho::SectionType typeOf(const macho::Section& section) {
    return static_cast<macho::SectionType>(section.flags & 0xff);
}

std::string_view nameOf(const macho::Section& section) {
    return {&section.name[0], ::strnlen(&section.name[0], sizeof section.name)};
}

void prepareThreadLocals(const Image& image) {
    ThreadLocals locals;
    image.forEachSection([&](const macho::Section& section, std::uint8_t* place) {
        switch (typeOf(section)) {
        case macho::SectionType::threadLocalVariables:
            locals.variables = {reinterpret_cast<ThreadLocals::Variable*>(place),
                                section.size / sizeof(ThreadLocals::Variable)};
            break;
        case macho::SectionType::threadLocalData:
        case macho::SectionType::threadLocalZeroes:
            // Zero-fill sections follow the initialised data.
            if (locals.initial == nullptr) {
                locals.initial = place;
            }
            locals.size = static_cast<std::size_t>(place - locals.initial) + section.size;
            break;
        default: break;
        }
    });
    useThreadLocals(locals);
}

void registerUnwinding(const Image& image) {
    UnwindTables tables{.imageBase = image.base, .compact = nullptr, .frames = {}};
    image.forEachSection([&](const macho::Section& section, const std::uint8_t* place) {
        if (nameOf(section) == "__unwind_info") {
            tables.compact = place;
        } else if (nameOf(section) == "__eh_frame") {
            tables.frames = {place, section.size};
        }
    });
    registerUnwindTables(tables);
}

using Initializer = void (*)(int, char**, char**, char**);

std::vector<Initializer> initializersOf(const Image& image) {
    std::vector<Initializer> functions;
    image.forEachSection([&](const macho::Section& section, const std::uint8_t* place) {
        if (typeOf(section) == macho::SectionType::initializerPointers) {
            for (std::uint64_t i = 0; i < section.size / 8; ++i) {
                functions.push_back(reinterpret_cast<const Initializer*>(place)[i]);
            }
        } else if (typeOf(section) == macho::SectionType::initializerOffsets) {
            for (std::uint64_t i = 0; i < section.size / 4; ++i) {
                functions.push_back(reinterpret_cast<Initializer>(
                    image.base + reinterpret_cast<const std::uint32_t*>(place)[i]));
            }
        }
    });
    return functions;
}

} // namespace

void fail(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::fputs("mac-runtime: ", stderr);
    std::vfprintf(stderr, format, arguments);
    std::fputc('\n', stderr);
    va_end(arguments);
    std::abort();
}

const Image& program() {
    return loaded;
}

void loadProgram(const std::string& path) {
    loaded = Image::map(path);
    applyFixups(loaded);
    prepareThreadLocals(loaded);
    registerUnwinding(loaded);
    loaded.protect();
}

ProgramArguments& programArguments() {
    return given;
}

void runProgram(int count, char** arguments) {
    given = {count, arguments};
    // The `apple` strings that the kernel passes after the environment.
    std::string executablePath = "executable_path=" + loaded.path;
    char* strings[] = {executablePath.data(), nullptr};
    for (const Initializer function : initializersOf(loaded)) {
        function(count, arguments, programEnvironment(), &strings[0]);
    }
    const auto main =
        reinterpret_cast<int (*)(int, char**, char**, char**)>(loaded.base + loaded.entryOffset);
    std::exit(main(count, arguments, programEnvironment(), &strings[0]));
}

} // namespace mac
