#pragma once

#include "platform/testing/TemporaryFolder.hpp"

#include <cerrno>
#include <map>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <system_error>

namespace platform::testing {

/// A mount namespace of this process, for code that has absolute paths: what is written to an
/// overlaid folder is seen by this process and its children alone. It lasts until the process ends;
/// a folder is overlaid once.
///
/// Throws std::system_error where the machine allows no mount namespaces: a test that needs one
/// fails then and is not skipped. Call it in the test itself or its SetUp, since a suite whose
/// setup fails counts as skipped, and before the test starts any thread.
class PrivateMounts {
  public:
    /// Enters the namespace, once. What is open before stays in the machine's: a test that mounts
    /// while something is open calls this first.
    static void enter() {
        static const bool once = [] {
            const uid_t user = ::geteuid();
            const gid_t group = ::getegid();
            const int ownUsers = user == 0 ? 0 : CLONE_NEWUSER;
            check(::unshare(CLONE_NEWNS | ownUsers), "unshare");
            if (user != 0) {
                std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
                std::ofstream("/proc/self/setgroups") << "deny";
                std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
            }
            check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "mount private");
            return true;
        }();
        static_cast<void>(once);
    }

    /// Makes a folder, which must exist, and everything below it writable in the namespace alone,
    /// for the rest of the process's life.
    static void overlay(const std::string& folder) {
        static auto& overlaid = *new std::map<std::string, Overlay>;
        overlaid.try_emplace(folder, folder);
    }

    /// A mount over a path in the namespace, until the end of its life.
    class Mount {
      public:
        ~Mount() { ::umount2(path_.c_str(), MNT_DETACH); }

        Mount(const Mount&) = delete;
        Mount& operator=(const Mount&) = delete;

      protected:
        Mount(const std::string& source, std::string over, const char* type, unsigned long flags,
              const char* options)
            : path_(std::move(over)) {
            enter();
            check(::mount(source.c_str(), path_.c_str(), type, flags, options), "mount");
        }

      private:
        std::string path_;
    };

    /// An empty writable volume over a folder, which must exist.
    class Volume : public Mount {
      public:
        explicit Volume(std::string folder)
            : Mount("tmpfs", std::move(folder), "tmpfs", 0, "mode=0755") {}
    };

    /// A writable overlay of a folder.
    class Overlay : public Mount {
      public:
        explicit Overlay(const std::string& folder) : Overlay(folder, TemporaryFolder()) {}

      private:
        // The overlay keeps its layers after their volume was unmounted.
        Overlay(const std::string& folder, const TemporaryFolder& place)
            : Overlay(folder, place, Volume(place.path())) {}

        Overlay(const std::string& folder, const TemporaryFolder& place, const Volume&)
            : Mount("overlay", folder, "overlay", 0,
                    ("lowerdir=" + folder + ",upperdir=" + place.folder("upper") +
                     ",workdir=" + place.folder("work"))
                        .c_str()) {}
    };

    /// A bind mount of a file or folder over another of its kind. The device stays the same.
    class Bind : public Mount {
      public:
        Bind(const std::string& shown, std::string over)
            : Mount(shown, std::move(over), nullptr, MS_BIND, nullptr) {}
    };

  private:
    static void check(int result, const char* what) {
        if (result != 0) {
            throw std::system_error(errno, std::generic_category(), what);
        }
    }
};

} // namespace platform::testing
