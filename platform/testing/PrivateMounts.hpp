#pragma once

#include "platform/testing/TemporaryFolder.hpp"

#include <cerrno>
#include <sched.h>
#include <set>
#include <string>
#include <sys/mount.h>
#include <system_error>

namespace platform::testing {

/// A view of the file system of this process's own, for code that knows absolute paths: what is
/// put into an overlaid folder is seen by this process and its children alone, and the machine
/// stays as it is. The view lasts until the process ends; a folder is overlaid once.
///
/// Throws std::system_error where the machine allows no such views: a test that needs one fails
/// then, and does not pass over what it was to show. Call it in the test itself or its SetUp, since
/// a suite that cannot be set up counts as skipped, and before the test starts any thread.
class PrivateMounts {
  public:
    /// Makes a folder, which must exist, and everything below it writable in the view alone.
    static void overlay(const std::string& folder) {
        static auto& overlaid = *new std::set<std::string>;
        if (overlaid.contains(folder)) {
            return;
        }
        enter();
        const TemporaryFolder place;
        // The overlay keeps its layers when their volume has no place any more.
        const Volume layers(place.path());
        const std::string options = "lowerdir=" + folder + ",upperdir=" + place.folder("upper") +
                                    ",workdir=" + place.folder("work");
        check(::mount("overlay", folder.c_str(), "overlay", 0, options.c_str()), "mount overlay");
        overlaid.insert(folder);
    }

    /// An empty writable volume of its own over a folder, which must exist, in the view alone;
    /// taken off again, with all that is on it, at the end of its life.
    class Volume {
      public:
        explicit Volume(std::string folder) : folder(std::move(folder)) {
            enter();
            check(::mount("tmpfs", this->folder.c_str(), "tmpfs", 0, "mode=0755"), "mount tmpfs");
        }

        ~Volume() { ::umount2(folder.c_str(), MNT_DETACH); }

        Volume(const Volume&) = delete;
        Volume& operator=(const Volume&) = delete;

      private:
        std::string folder;
    };

  private:
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

    static void check(int result, const char* what) {
        if (result != 0) {
            throw std::system_error(errno, std::generic_category(), what);
        }
    }
};

} // namespace platform::testing
