#include "practice-mac/stand-ins/Authorization.hpp"

#include "practice-mac/stand-ins/Config.hpp"
#include "practice-mac/stand-ins/PasswordDialog.hpp"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace practice {

namespace {

constexpr int userCancelled = -128;

}

std::optional<Refusal> askForPassword() {
    const std::vector<plist_t> answers = elements(itemAt(toolsConfig().get(), "answers"));
    if (answers.empty()) {
        throw std::runtime_error("the scenario has no answer to the password prompt");
    }
    const auto asked = static_cast<size_t>(countedBefore("authorization"));
    plist_t answer = answers[std::min(asked, answers.size() - 1)];
    const std::string kind = textAt(answer, "kind");
    std::this_thread::sleep_for(std::chrono::duration<double>(realAt(answer, "seconds")));
    if (kind == "grant") {
        return std::nullopt;
    }
    if (kind == "cancel" || (kind == "person" && !personGivesPassword())) {
        return Refusal{"User canceled.", userCancelled};
    }
    if (kind == "person") {
        return std::nullopt;
    }
    if (kind == "error") {
        return Refusal{textAt(answer, "message"), static_cast<int>(integerAt(answer, "number"))};
    }
    throw std::runtime_error("unknown answer to the password prompt: " + kind);
}

} // namespace practice
