#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/DefaultsText.hpp"
#include "practice-mac/stand-ins/Files.hpp"
#include "practice-mac/stand-ins/Plist.hpp"

#include <iostream>

namespace practice {

int runPlistBuddy(Invocation& call) {
    const std::vector<std::string>& words = call.arguments;
    const std::string prefix = "Print :";
    if (words.size() != 3 || words[0] != "-c" || !words[1].starts_with(prefix) ||
        words[1].find(':', prefix.size()) != std::string::npos) {
        return unknownRequest(call, "the arguments");
    }
    const std::string key = words[1].substr(prefix.size());
    if (!exists(words[2])) {
        std::cout << "File Doesn't Exist, Will Create: " << words[2] << '\n';
    }
    const Plist root = readPlist(words[2]);
    if (exists(words[2]) && !root) {
        std::cout << "Error Reading File: " << words[2] << '\n';
        return 1;
    }
    plist_t value = itemAt(root.get(), key.c_str());
    if (value == nullptr) {
        std::cerr << "Print: Entry, \":" << key << "\", Does Not Exist\n";
        return 1;
    }
    if (elements(value).empty() && !isDictionary(value)) {
        const bool isBool = plist_get_node_type(value) == PLIST_BOOLEAN;
        const std::string word = boolAt(root.get(), key.c_str()) ? "true" : "false";
        std::cout << (isBool ? word : defaultsText(value)) << '\n';
        return 0;
    }
    return unknownRequest(call, "a value with others inside");
}

} // namespace practice
