#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

extern "C" char** environ;

namespace platform::testing {

/// Sets an environment variable, or unsets it for null, until the end of its life.
class EnvironmentVariable {
  public:
    EnvironmentVariable(std::string name, const char* value) : name_(std::move(name)) {
        if (const char* current = std::getenv(this->name_.c_str())) {
            before_ = current;
        }
        set(value);
    }

    ~EnvironmentVariable() { set(before_ ? before_->c_str() : nullptr); }

    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

    void set(const char* value) const {
        if (value != nullptr) {
            ::setenv(name_.c_str(), value, 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }

  private:
    std::string name_;
    std::optional<std::string> before_;
};

/// Calls `change`, which replaces `environ` by a new array, with these entries in the environment;
/// returns the entries afterwards.
template <class Change>
[[nodiscard]] std::vector<std::string> environmentAfter(Change change,
                                                        std::vector<std::string> entries) {
    std::vector<char*> array;
    array.reserve(entries.size() + 1);
    for (std::string& entry : entries) {
        array.push_back(entry.data());
    }
    array.push_back(nullptr);
    char** const before = environ;
    environ = array.data();
    change();
    std::vector<std::string> after;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        after.emplace_back(*entry);
    }
    // A program never frees it.
    delete[] environ;
    environ = before;
    return after;
}

} // namespace platform::testing
