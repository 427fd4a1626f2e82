#pragma once

#include "platform/base/FolderIdentity.hpp"

#include <dirent.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// A folder held open, or nothing.
class OpenFolder {
  public:
    enum class Kind { folder, other };

    struct Entry {
        std::string name;
        Kind kind;
    };

    struct Listing {
        std::vector<Entry> entries;
        int error = 0;
    };

    OpenFolder() = default;

    /// Opens a folder by its name in another; a link is not followed. Closed, with the reason in
    /// errno, when that cannot be done.
    OpenFolder(int at, const char* name);

    [[nodiscard]] explicit operator bool() const { return static_cast<bool>(stream); }

    [[nodiscard]] int descriptor() const { return ::dirfd(stream.get()); }

    /// Nothing, with the reason in errno, when the system does not say.
    [[nodiscard]] std::optional<FolderIdentity> identity() const {
        return identityOf(descriptor());
    }

    /// Everything in it, without "." and "..". The error is 0, or says why the list is not whole.
    [[nodiscard]] Listing entries();

    void close() { stream.reset(); }

  private:
    struct Closer {
        void operator()(DIR* open) const { ::closedir(open); }
    };

    std::unique_ptr<DIR, Closer> stream;
};

} // namespace platform
