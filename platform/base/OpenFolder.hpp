#pragma once

#include "platform/base/FolderIdentity.hpp"

#include <dirent.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// An open folder, or none.
class OpenFolder {
  public:
    enum class Kind { folder, other };

    struct Entry {
        std::string name;
        Kind kind;
    };

    struct Listing {
        std::vector<Entry> entries;
        int error = 0; ///< 0, or why the list is incomplete
    };

    OpenFolder() = default;

    /// Opens a folder by its name in another; a link is not followed. None, with the reason in
    /// errno, when that fails.
    OpenFolder(int at, const char* name);

    [[nodiscard]] explicit operator bool() const { return static_cast<bool>(stream_); }

    [[nodiscard]] int descriptor() const { return ::dirfd(stream_.get()); }

    /// Nothing, with the reason in errno, when the system call fails.
    [[nodiscard]] std::optional<FolderIdentity> identity() const {
        return identityOf(descriptor());
    }

    /// All entries but "." and "..".
    [[nodiscard]] Listing entries();

    void close() { stream_.reset(); }

  private:
    struct Closer {
        void operator()(DIR* open) const { ::closedir(open); }
    };

    std::unique_ptr<DIR, Closer> stream_;
};

} // namespace platform
