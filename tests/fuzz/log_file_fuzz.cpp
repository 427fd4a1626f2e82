// Logs of any size and content: only a log above a million bytes is rotated, and an appended line
// is the last one of the file.

#include "kovraUninstaller/logging/LogFile.hpp"
#include "platform/base/FileSystem.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

const std::string& folder() {
    static const std::string only =
        std::filesystem::temp_directory_path() / ("log-fuzz-" + std::to_string(::getpid()));
    return only;
}

void write(const std::string& path, std::string_view content) {
    std::ofstream(path, std::ios::binary) << content;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    // The first two bytes choose a size near the limit; the rest is the line.
    constexpr std::size_t limit = 1'000'000;
    const std::size_t offset = size > 1 ? bytes[0] + 256U * (bytes[1] & 3U) : 0;
    const std::string old(limit - 512 + offset, 'x');
    const std::string line(asText(bytes, size));
    std::filesystem::create_directories(folder());
    const std::string file = folder() + "/" + kovra::LogFile::name;
    const std::string oldFile = folder() + "/" + kovra::LogFile::oldName;
    write(file, old);
    std::filesystem::remove(oldFile);

    kovra::LogFile(folder()).append(line);

    const bool rotated = old.size() > limit;
    require(platform::fileExists(oldFile) == rotated, "only a log above the limit is moved aside");
    require(platform::readFile(file) == (rotated ? line : old + line), "the line comes last");
    std::filesystem::remove_all(folder());
    return 0;
}
