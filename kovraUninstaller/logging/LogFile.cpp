#include "kovraUninstaller/logging/LogFile.hpp"

#include "platform/base/FileSystem.hpp"
#include "platform/base/RemoveTree.hpp"

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>

namespace kovra {

namespace {

// Decimal units on purpose: people read the size in the Finder, which counts so.
constexpr off_t largestKept = 1'000'000;

void rotateWhenLarge(const std::string& file, const std::string& oldFile) {
    struct stat status{};
    if (::lstat(file.c_str(), &status) != 0 || status.st_size <= largestKept) {
        return;
    }
    static_cast<void>(platform::removeTree(oldFile));
    ::rename(file.c_str(), oldFile.c_str());
}

} // namespace

LogFile::LogFile(const std::string& folder) {
    platform::createFolders(folder);
    const std::string file = folder + "/" + name;
    rotateWhenLarge(file, folder + "/" + oldName);
    // Appending makes the move to the end and the write one action. Not blocking matters for a
    // fifo under the log's name, which would hold the program up until somebody read it.
    constexpr mode_t ownerWritesAllRead = 0644;
    descriptor.reset(platform::retryInterrupted([&] {
        return ::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK,
                      ownerWritesAllRead);
    }));
    // One whose reader goes away would end the program by a signal.
    struct stat status{};
    if (descriptor && (::fstat(descriptor.get(), &status) != 0 || S_ISFIFO(status.st_mode))) {
        descriptor.reset();
    }
}

// Whoever appends is counted before it looks whether the log has ended; whoever ends it looks at
// the count afterwards. So one of the two sees the other.
void LogFile::append(std::string_view line) {
    ++appending;
    if (!hasEnded) {
        write(line);
    }
    --appending;
}

void LogFile::appendLast(std::string_view line) {
    hasEnded = true;
    // A write takes microseconds. One that hangs must not keep the program from quitting.
    constexpr auto patience = std::chrono::seconds(1);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (appending > 0 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    write(line);
}

void LogFile::write(std::string_view line) const {
    if (descriptor) {
        platform::retryInterrupted(
            [&] { return ::write(descriptor.get(), line.data(), line.size()); });
    }
}

} // namespace kovra
