#pragma once

#include "practice-mac/stand-ins/Invocation.hpp"

namespace practice {

/// How a run ended: with a status, or by a signal when that is not 0.
struct Outcome {
    int status = 0;
    int signal = 0;
};

/// Nanoseconds of the monotonic clock.
long long monotonicNow();

/// Adds the run to the transcript, as one line of JSON. A practice Mac without a transcript keeps
/// none.
void record(const Invocation& call, const Outcome& outcome);

} // namespace practice
