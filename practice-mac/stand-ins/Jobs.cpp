#include "practice-mac/stand-ins/Jobs.hpp"

#include "practice-mac/stand-ins/Control.hpp"
#include "practice-mac/stand-ins/Plist.hpp"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <system_error>

namespace practice {

namespace {

using namespace std::chrono_literals;

constexpr auto restartDelay = 100ms;
/// How long a job may take to stop before the caller is told, and again before it is killed.
constexpr auto patience = 1s;

const Reply notLoaded{
    .status = 5, .output = {}, .error = "Boot-out failed: 5: Input/output error\n"};
const Reply slow{
    .status = 36, .output = {}, .error = "Boot-out failed: 36: Operation now in progress\n"};

} // namespace

Jobs::Jobs(plist_t list) {
    for (plist_t entry : elements(list)) {
        Job job;
        job.label = textAt(entry, "label");
        job.keepAlive = boolAt(entry, "keepAlive");
        job.options.program = textAt(entry, "program");
        job.options.arguments = texts(itemAt(entry, "arguments"));
        job.options.identity = {static_cast<uid_t>(integerAt(entry, "user")),
                                static_cast<gid_t>(integerAt(entry, "group"))};
        job.options.ignoresTermination = boolAt(entry, "ignoresTermination");
        job.options.environment.emplace();
        job.options.detached = true;
        job.options.folder = std::string(1, '/');
        jobs_.push_back(std::move(job));
    }
}

void Jobs::startAll() {
    for (Job& job : jobs_) {
        start(job);
    }
}

void Jobs::start(Job& job) {
    job.due.reset();
    try {
        job.process = spawn(job.options);
    } catch (const std::system_error&) {
        // The program is gone, as after an uninstall. launchd keeps on trying.
        job.process = 0;
        if (job.keepAlive) {
            job.due = Clock::now() + restartDelay;
        }
    }
}

void Jobs::processEnded(pid_t process) {
    for (auto job = jobs_.begin(); job != jobs_.end(); ++job) {
        if (job->process != process) {
            continue;
        }
        job->process = 0;
        if (job->waiting >= 0) {
            answer(job->waiting, {});
        }
        if (job->forgotten) {
            jobs_.erase(job);
        } else if (job->keepAlive) {
            job->due = Clock::now() + restartDelay;
        }
        return;
    }
}

void Jobs::tend() {
    const Clock::time_point now = Clock::now();
    for (Job& job : jobs_) {
        if (!job.due || *job.due > now) {
            continue;
        }
        if (!job.forgotten) {
            start(job);
        } else if (job.waiting >= 0) {
            tellSlow(job);
        } else {
            job.due.reset();
            kill(job.process, SIGKILL);
        }
    }
}

std::optional<Jobs::Clock::time_point> Jobs::nextDue() const {
    std::optional<Clock::time_point> next;
    for (const Job& job : jobs_) {
        if (job.due && (!next || *job.due < *next)) {
            next = job.due;
        }
    }
    return next;
}

void Jobs::stop(Job& job) {
    job.forgotten = true;
    job.due = Clock::now() + patience;
    kill(job.process, SIGTERM);
}

void Jobs::tellSlow(Job& job) {
    answer(job.waiting, slow);
    job.waiting = -1;
    job.due = Clock::now() + patience;
}

Jobs::Job* Jobs::find(const std::string& label) {
    const auto found = std::find_if(jobs_.begin(), jobs_.end(), [&](const Job& job) {
        return job.label == label && !job.label.empty() && !job.forgotten;
    });
    return found == jobs_.end() ? nullptr : &*found;
}

void Jobs::bootOut(const std::string& label, int connection) {
    Job* job = find(label);
    if (job == nullptr) {
        answer(connection, notLoaded);
    } else if (job->process == 0) {
        answer(connection, {});
        jobs_.remove_if([&](const Job& other) { return &other == job; });
    } else {
        job->waiting = connection;
        stop(*job);
    }
}

void Jobs::remove(const std::string& label, int connection) {
    Job* job = find(label);
    if (job == nullptr) {
        answer(connection, {.status = 3, .output = {}, .error = "No such process\n"});
        return;
    }
    answer(connection, {});
    if (job->process == 0) {
        jobs_.remove_if([&](const Job& other) { return &other == job; });
    } else {
        stop(*job);
    }
}

std::string Jobs::listing() const {
    std::string lines = "PID\tStatus\tLabel\n";
    for (const Job& job : jobs_) {
        if (!job.label.empty() && !job.forgotten) {
            lines += job.process != 0 ? std::to_string(job.process) : std::string(1, '-');
            lines.append("\t0\t").append(job.label).append("\n");
        }
    }
    return lines;
}

} // namespace practice
