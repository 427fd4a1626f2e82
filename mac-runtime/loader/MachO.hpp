#pragma once

#include <cstdint>

// The parts of Apple's <mach-o/loader.h> and <mach-o/fixup-chains.h> that the loader reads.

namespace mac::macho {

constexpr std::uint32_t magic64 = 0xfeedfacf;
constexpr std::uint32_t cpuTypeArm64 = 0x0100000c;
constexpr std::uint32_t fileTypeExecute = 2;
constexpr std::uint32_t requiredByLoader = 0x80000000;

enum Command : std::uint32_t {
    loadDylib = 0xc,
    segment64 = 0x19,
    loadWeakDylib = 0x18 | requiredByLoader,
    main = 0x28 | requiredByLoader,
    exportsTrie = 0x33 | requiredByLoader,
    chainedFixups = 0x34 | requiredByLoader,
};

struct Header {
    std::uint32_t magic, cpuType, cpuSubtype, fileType, commandCount, commandsSize, flags, reserved;
};

struct LoadCommand {
    std::uint32_t command, size;
};

struct Segment {
    LoadCommand head;
    char name[16];
    std::uint64_t address, size, fileOffset, fileSize;
    std::uint32_t maximumProtection, protection, sectionCount, flags;
};

constexpr std::uint32_t segmentReadOnlyAfterFixups = 0x10;

struct Section {
    char name[16], segmentName[16];
    std::uint64_t address, size;
    std::uint32_t offset, alignment, relocationOffset, relocationCount, flags, reserved[3];
};

enum class SectionType : std::uint8_t {
    initializerPointers = 0x09,
    threadLocalData = 0x11,
    threadLocalZeroes = 0x12,
    threadLocalVariables = 0x13,
    initializerOffsets = 0x16,
};

struct EntryPoint {
    LoadCommand head;
    std::uint64_t offset, stackSize;
};

struct LinkeditData {
    LoadCommand head;
    std::uint32_t offset, size;
};

struct Dylib {
    LoadCommand head;
    std::uint32_t nameOffset, timestamp, currentVersion, compatibilityVersion;
};

struct FixupsHeader {
    std::uint32_t version, startsOffset, importsOffset, symbolsOffset, importCount, importsFormat,
        symbolsFormat;
};

constexpr std::uint32_t importsOfFourBytes = 1;

struct StartsInSegment {
    std::uint32_t size;
    std::uint16_t pageSize, pointerFormat;
    std::uint64_t segmentOffset;
    std::uint32_t maximumPointer;
    std::uint16_t pageCount, pageStarts[1];
};

constexpr std::uint16_t noFixupsInPage = 0xffff;
constexpr std::uint16_t pointer64 = 2;
constexpr std::uint16_t pointer64Offset = 6;

} // namespace mac::macho
