#pragma once

#include <exception>
#include <string>
#include <utility>

namespace kovra {

/// Why a step cannot go on: the administrator said no, or something else did.
class EngineError : public std::exception {
  public:
    enum class Kind { failed, adminCancelled };

    /// `sentence` is whole and meant for people.
    static EngineError failed(std::string sentence) { return {Kind::failed, std::move(sentence)}; }

    /// The administrator prompt was refused or cancelled.
    static EngineError adminCancelled() {
        return {Kind::adminCancelled, "The administrator prompt was cancelled."};
    }

    [[nodiscard]] Kind kind() const { return kind_; }

    /// The sentence of a failure, whatever characters are in it.
    [[nodiscard]] const std::string& text() const { return sentence; }

    /// The same up to its first NUL byte.
    [[nodiscard]] const char* what() const noexcept override { return sentence.c_str(); }

  private:
    EngineError(Kind kind, std::string sentence) : kind_(kind), sentence(std::move(sentence)) {}

    Kind kind_;
    std::string sentence;
};

} // namespace kovra
