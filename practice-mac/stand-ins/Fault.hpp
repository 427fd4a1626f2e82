#pragma once

#include "practice-mac/stand-ins/Invocation.hpp"
#include "practice-mac/stand-ins/Transcript.hpp"

#include <optional>
#include <string>

namespace practice {

/// A fault that was ordered for this run of a tool.
class Fault {
  public:
    /// The first fault, in the order of the orders, that fits the run and is not used up.
    static std::optional<Fault> ordered(const Invocation& call);

    /// Whether the tool does none of its work.
    bool ends() const;

    /// How the tool ends in place of its work.
    Outcome end() const;

    /// What happens before the tool does its work. Where the fault lies in what the tool prints,
    /// the work and its status are the real ones.
    void begin();

    /// What happens once the tool has done its work and printed all; gives how it ends.
    Outcome finish(Outcome worked) const;

  private:
    std::string kind_;
    double value_ = 0;
    int output_ = -1; ///< where the caller listens, while the tool prints elsewhere
};

} // namespace practice
