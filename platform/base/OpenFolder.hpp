#pragma once

#include <dirent.h>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace platform {

/// Tells one folder from every other while it exists.
struct FolderIdentity {
    dev_t device = 0;
    ino_t number = 0;
    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

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

    [[nodiscard]] FolderIdentity identity() const;

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
