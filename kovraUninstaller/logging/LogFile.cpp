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
    // O_APPEND makes the seek to the end and the write one atomic action. Without O_NONBLOCK a FIFO
    // under the log's name would block the program until somebody opened it for reading.
    constexpr mode_t ownerWritesAllRead = 0644;
    descriptor_.reset(platform::retryInterrupted([&] {
        return ::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK,
                      ownerWritesAllRead);
    }));
    // A FIFO whose reader goes away would end the program by SIGPIPE.
    struct stat status{};
    if (descriptor_ && (::fstat(descriptor_.get(), &status) != 0 || S_ISFIFO(status.st_mode))) {
        descriptor_.reset();
    }
}

// A writer counts itself before it reads the flag, and appendLast sets the flag before it reads the
// count. Both are sequentially consistent, so one of the two sees the other. Who comes after the
// end does not count, so that threads that go on logging cannot hold the count above zero.
void LogFile::append(std::string_view line) {
    if (hasEnded_) {
        return;
    }
    ++appending_;
    if (!hasEnded_) {
        write(line);
    }
    --appending_;
}

void LogFile::appendLast(std::string_view line) {
    hasEnded_ = true;
    // A write takes microseconds, on a disk that is busy or asleep a few seconds. One that hangs
    // must not keep the program from quitting.
    constexpr auto timeout = std::chrono::seconds(5);
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (appending_ > 0 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    write(line);
}

void LogFile::write(std::string_view line) const {
    if (descriptor_) {
        platform::retryInterrupted(
            [&] { return ::write(descriptor_.get(), line.data(), line.size()); });
    }
}

} // namespace kovra
