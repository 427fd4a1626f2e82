#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/Files.hpp"
#include "practice-mac/stand-ins/KeychainText.hpp"
#include "practice-mac/stand-ins/Plist.hpp"

#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace practice {

namespace {

constexpr int itemNotFound = 44;
constexpr int itemExists = 45;

/// The keychains in the order in which they are searched.
std::vector<std::string> searchList() {
    return {homeFolder() + "/Library/Keychains/login.keychain-db",
            "/Library/Keychains/System.keychain"};
}

int dumpKeychains() {
    for (const std::string& path : searchList()) {
        const Plist items = readPlist(path);
        std::string printed;
        for (plist_t item : elements(items.get())) {
            printed += entryText(path, item);
        }
        if (!writeAll(STDOUT_FILENO, printed)) {
            return 1;
        }
    }
    return 0;
}

bool isGenericPasswordOf(plist_t item, const std::string& account) {
    return attribute(item, "class").value_or("genp") == "genp" &&
           attribute(item, "account") == account;
}

int deleteGenericPassword(const std::string& account) {
    for (const std::string& path : searchList()) {
        const Plist items = readPlist(path);
        uint32_t index = 0;
        for (plist_t item : elements(items.get())) {
            if (isGenericPasswordOf(item, account)) {
                std::cout << entryText(path, item) << std::flush;
                plist_array_remove_item(items.get(), index);
                replaceFile(path, plistBinary(items.get()));
                std::cerr << "password has been deleted.\n";
                return 0;
            }
            ++index;
        }
    }
    std::cerr << "security: the specified item could not be found in the keychain.\n";
    return itemNotFound;
}

/// Into the first keychain of the search list, as the real tool without the option for another.
int addGenericPassword(const std::string& account, const std::string& service) {
    const std::string path = searchList().front();
    Plist items = readPlist(path);
    if (!items) {
        items.reset(plist_new_array());
    }
    for (plist_t item : elements(items.get())) {
        if (isGenericPasswordOf(item, account) && attribute(item, "service") == service) {
            std::cerr << "security: SecKeychainItemCreateFromContent (<default>): The specified "
                         "item already exists in the keychain.\n";
            return itemExists;
        }
    }
    plist_t item = plist_new_dict();
    plist_dict_set_item(item, "account", plist_new_string(account.c_str()));
    plist_dict_set_item(item, "service", plist_new_string(service.c_str()));
    plist_array_append_item(items.get(), item);
    replaceFile(path, plistBinary(items.get()));
    return 0;
}

} // namespace

int runSecurity(Invocation& call) {
    const std::vector<std::string>& words = call.arguments;
    if (words.size() == 1 && words[0] == "dump-keychain") {
        return dumpKeychains();
    }
    if (words.size() == 3 && words[0] == "delete-generic-password" && words[1] == "-a") {
        return deleteGenericPassword(words[2]);
    }
    if (words.size() == 7 && words[0] == "add-generic-password" && words[1] == "-a" &&
        words[3] == "-s" && words[5] == "-w") {
        return addGenericPassword(words[2], words[4]);
    }
    return unknownRequest(call, "the arguments");
}

} // namespace practice
