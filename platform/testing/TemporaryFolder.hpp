#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace platform::testing {

/// A new empty folder, which is removed with everything in it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kovra-test.XXXXXX").string();
        root_ = ::mkdtemp(name.data());
        // Without links, so that a path that a tool prints compares equal.
        root_ = std::filesystem::canonical(root_);
    }

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return root_; }

    [[nodiscard]] std::string path(const std::string& below) const { return root_ + "/" + below; }

    /// Makes the folder and those above it; returns its path.
    std::string folder(const std::string& below) const {
        std::filesystem::create_directories(path(below));
        return path(below);
    }

    /// Makes a file and the folders above it; returns its path.
    std::string file(const std::string& below, const std::string& content = "content") const {
        std::filesystem::create_directories(std::filesystem::path(path(below)).parent_path());
        std::ofstream(path(below), std::ios::binary) << content;
        return path(below);
    }

    /// Makes an executable script, whose first line names its interpreter; returns its path.
    std::string script(const std::string& below, const std::string& content) const {
        file(below, content);
        std::filesystem::permissions(path(below), std::filesystem::perms{0755});
        return path(below);
    }

    /// Makes a link and the folders above it; returns its path.
    std::string link(const std::string& below, const std::string& target) const {
        std::filesystem::create_directories(std::filesystem::path(path(below)).parent_path());
        std::filesystem::create_symlink(target, path(below));
        return path(below);
    }

  private:
    std::string root_;
};

/// The content of a file of the test.
inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Whether the path exists; a dangling link does.
inline bool isThere(const std::string& path) {
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}

/// Gives root's process the effective user ID of an ordinary user during its life; does nothing for
/// other users.
class OrdinaryRights {
  public:
    OrdinaryRights() {
        if (::geteuid() == 0) {
            wasRoot_ = ::seteuid(ordinaryUser) == 0;
        }
    }

    ~OrdinaryRights() {
        if (wasRoot_ && ::seteuid(0) != 0) {
            std::abort();
        }
    }

    OrdinaryRights(const OrdinaryRights&) = delete;
    OrdinaryRights& operator=(const OrdinaryRights&) = delete;

    /// Makes that user the owner of the path and of everything below it.
    static void give(const std::string& path) {
        if (::geteuid() != 0) {
            return;
        }
        giveOne(path);
        if (std::filesystem::is_directory(std::filesystem::symlink_status(path))) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
                giveOne(entry.path());
            }
        }
    }

  private:
    static constexpr uid_t ordinaryUser = 65534;

    static void giveOne(const std::string& path) {
        if (::lchown(path.c_str(), ordinaryUser, ordinaryUser) != 0) {
            std::abort();
        }
    }

    bool wasRoot_ = false;
};

} // namespace platform::testing
