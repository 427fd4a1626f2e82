#pragma once

#include "practice-mac/stand-ins/Spawn.hpp"

#include <chrono>
#include <list>
#include <optional>
#include <plist/plist.h>
#include <string>

namespace practice {

/// What launchd keeps running: the system's services, the launch agents and plain processes.
class Jobs {
  public:
    using Clock = std::chrono::steady_clock;

    /// Takes the launcher's list of jobs.
    explicit Jobs(plist_t list);

    void startAll();

    /// Notes that a process has ended. One that is kept alive starts again a moment later.
    void processEnded(pid_t process);

    /// Does what is due by now: restarts, and the end of those that were slow to stop.
    void tend();

    /// When `tend` is due next, if ever.
    std::optional<Clock::time_point> nextDue() const;

    /// Stops and forgets the job, then answers on the connection: when it has stopped, or that it
    /// is slow to.
    void bootOut(const std::string& label, int connection);

    /// Stops and forgets the job and answers at once.
    void remove(const std::string& label, int connection);

    /// One line for each labelled job: process, last status, label.
    std::string listing() const;

  private:
    struct Job {
        std::string label;
        ProcessOptions options;
        bool keepAlive = false;
        bool forgotten = false;
        pid_t process = 0;
        int waiting = -1;
        std::optional<Clock::time_point> due;
    };

    std::list<Job> jobs_;

    static void start(Job& job);
    static void stop(Job& job);
    static void tellSlow(Job& job);
    Job* find(const std::string& label);
};

} // namespace practice
