#pragma once

#include <csignal>

namespace platform {

/// While it lives, a broken pipe gives this thread EPIPE and no SIGPIPE; what the process has
/// arranged for that signal stays as it is, and other threads do not notice.
class BrokenPipeSilence {
  public:
    BrokenPipeSilence() {
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        wasPending = isPending();
        ::pthread_sigmask(SIG_BLOCK, &brokenPipe, &before);
    }

    ~BrokenPipeSilence() {
        if (!wasPending && isPending()) {
            int taken = 0;
            ::sigwait(&brokenPipe, &taken);
        }
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    BrokenPipeSilence(const BrokenPipeSilence&) = delete;
    BrokenPipeSilence& operator=(const BrokenPipeSilence&) = delete;

  private:
    static bool isPending() {
        sigset_t pending;
        sigemptyset(&pending);
        ::sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t brokenPipe{};
    sigset_t before{};
    bool wasPending = false;
};

} // namespace platform
