#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kovra {

/// What a step wants people to know, in the order in which it arose; whole sentences.
using Problems = std::vector<std::string>;

/// Collects the problems of a step that is under way, and has each of them stand in the log from
/// the moment in which it arises. One thread at a time.
class StepReport {
  public:
    /// `area` is what the step's lines in the log begin with.
    explicit StepReport(std::string area) : area(std::move(area)) {}

    /// Adds a sentence. The reason, if there is one, stands in the log alone, behind it. Both are
    /// UTF-8.
    void add(const std::string& sentence, const std::string& reason = {});

    /// In the order in which they were added.
    [[nodiscard]] const Problems& problems() const { return sentences; }

  private:
    std::string area;
    Problems sentences;
};

} // namespace kovra
