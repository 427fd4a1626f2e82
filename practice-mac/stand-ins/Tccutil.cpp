#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Config.hpp"

#include <algorithm>
#include <array>
#include <iostream>

namespace practice {

namespace {

constexpr int noSuchBundle = 64;
constexpr std::array<std::string_view, 7> services{"Microphone", "Accessibility", "ListenEvent",
                                                   "PostEvent",  "Camera",        "ScreenCapture",
                                                   "AppleEvents"};
const std::string recordsPath = stateFolder + "/privacy.plist";

/// The identifiers are those of registered bundles; an application that nobody knows has none.
bool isRegistered(const std::string& identifier) {
    const Plist registry = readPlist(stateFolder + "/launch-services.plist");
    const std::vector<plist_t> records = elements(itemAt(registry.get(), "records"));
    return std::any_of(records.begin(), records.end(),
                       [&](plist_t entry) { return textAt(entry, "identifier") == identifier; });
}

void forget(const std::string& service, const std::string& identifier) {
    const Plist records = readPlist(recordsPath);
    bool removed = false;
    uint32_t index = 0;
    for (plist_t entry : elements(records.get())) {
        if (textAt(entry, "service") == service && textAt(entry, "client") == identifier) {
            plist_array_remove_item(records.get(), index);
            removed = true;
        } else {
            ++index;
        }
    }
    if (removed) {
        writePlist(recordsPath, records.get());
    }
}

} // namespace

int runTccutil(Invocation& call) {
    const std::vector<std::string>& words = call.arguments;
    if (words.size() != 3 || words[0] != "reset" || words[2].empty() ||
        std::find(services.begin(), services.end(), words[1]) == services.end()) {
        // Without an identifier the real tool takes every application's permission away.
        return unknownRequest(call, "the arguments");
    }
    if (!isRegistered(words[2])) {
        std::cerr << "tccutil: No such bundle identifier \"" << words[2]
                  << "\": The operation couldn't be completed. (OSStatus error -10814.)\n";
        return noSuchBundle;
    }
    forget(words[1], words[2]);
    std::cout << "Successfully reset " << words[1] << " approval status for " << words[2] << '\n';
    return 0;
}

} // namespace practice
