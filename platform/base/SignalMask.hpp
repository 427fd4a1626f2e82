#pragma once

#include <csignal>

namespace platform {

/// Blocks SIGPIPE for this thread while it lives, so that a write to a broken pipe only fails with
/// EPIPE. The signal's disposition and other threads are not affected.
class BlockedSigpipe {
  public:
    BlockedSigpipe() {
        sigemptyset(&sigpipe_);
        sigaddset(&sigpipe_, SIGPIPE);
        wasPending_ = isPending();
        ::pthread_sigmask(SIG_BLOCK, &sigpipe_, &before_);
    }

    ~BlockedSigpipe() {
        if (!wasPending_ && isPending()) {
            int taken = 0;
            ::sigwait(&sigpipe_, &taken);
        }
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

    BlockedSigpipe(const BlockedSigpipe&) = delete;
    BlockedSigpipe& operator=(const BlockedSigpipe&) = delete;

  private:
    static bool isPending() {
        sigset_t pending;
        sigemptyset(&pending);
        ::sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t sigpipe_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

} // namespace platform
