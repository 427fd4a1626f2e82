#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace platform::testing {

/// Gives a variable of the environment another value, or none for null, until the end of its life.
class EnvironmentVariable {
  public:
    EnvironmentVariable(std::string name, const char* value) : name(std::move(name)) {
        if (const char* current = std::getenv(this->name.c_str())) {
            before = current;
        }
        set(value);
    }

    ~EnvironmentVariable() { set(before ? before->c_str() : nullptr); }

    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

    void set(const char* value) const {
        if (value != nullptr) {
            ::setenv(name.c_str(), value, 1);
        } else {
            ::unsetenv(name.c_str());
        }
    }

  private:
    std::string name;
    std::optional<std::string> before;
};

} // namespace platform::testing
