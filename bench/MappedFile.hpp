#pragma once

#include "platform/base/UniqueFd.hpp"

#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>

namespace bench {

/// A file's bytes where the system keeps them, without a copy. Throws when it cannot be had.
class MappedFile {
  public:
    explicit MappedFile(const std::string& path) {
        const platform::UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        struct stat status{};
        if (::fstat(file.get(), &status) != 0) {
            throw std::runtime_error(path);
        }
        size = static_cast<std::size_t>(status.st_size);
        memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file.get(), 0);
        if (memory == MAP_FAILED) {
            throw std::runtime_error(path);
        }
    }

    ~MappedFile() { ::munmap(memory, size); }

    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    [[nodiscard]] std::string_view bytes() const {
        return {static_cast<const char*>(memory), size};
    }

  private:
    void* memory = nullptr;
    std::size_t size = 0;
};

} // namespace bench
