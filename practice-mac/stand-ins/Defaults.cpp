#include "practice-mac/stand-ins/Applets.hpp"
#include "practice-mac/stand-ins/DefaultsText.hpp"
#include "practice-mac/stand-ins/Files.hpp"
#include "practice-mac/stand-ins/Plist.hpp"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <system_error>
#include <unistd.h>

namespace practice {

namespace {

std::string fileOf(const std::string& domain) {
    if (domain.starts_with('/')) {
        return domain.ends_with(".plist") ? domain : domain + ".plist";
    }
    const bool global = domain == "-g" || domain == "NSGlobalDomain";
    return homeFolder() + "/Library/Preferences/" + (global ? ".GlobalPreferences" : domain) +
           ".plist";
}

/// Errors come as the system's logging function prints them.
int complain(const std::string& message) {
    const auto now = std::chrono::system_clock::now();
    const time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto part = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
    tm parts{};
    localtime_r(&seconds, &parts);
    std::array<char, 32> stamp{};
    strftime(stamp.data(), stamp.size(), "%Y-%m-%d %H:%M:%S", &parts);
    const std::string milliseconds = std::to_string(1000 + part.count() % 1000).substr(1);
    std::cerr << stamp.data() << '.' << milliseconds << " defaults[" << getpid() << ':' << getpid()
              << "] " << message << '\n';
    return 1;
}

/// The domain's dictionary; an empty one when there is none or its file is damaged.
Plist domainOrEmpty(const std::string& domain) {
    Plist root = readPlist(fileOf(domain));
    return isDictionary(root.get()) ? std::move(root) : Plist(plist_new_dict());
}

int store(const std::string& domain, std::string_view bytes) {
    try {
        replaceFile(fileOf(domain), bytes);
        return 0;
    } catch (const std::system_error&) {
        return complain("Could not write domain " + domain + "; exiting");
    }
}

int exportDomain(const std::string& domain, const std::string& target) {
    std::string xml = readFile(fileOf(domain)).value_or(std::string());
    const Plist root = parsePlist(xml);
    if (!isDictionary(root.get())) {
        xml = plistXml(Plist(plist_new_dict()).get());
    } else if (isBinaryPlist(xml)) {
        // What is XML already goes out as it came in, to the last byte.
        xml = plistXml(root.get());
    }
    if (target == "-") {
        return writeAll(STDOUT_FILENO, xml) ? 0 : 1;
    }
    replaceFile(target, xml);
    return 0;
}

int importDomain(Invocation& call, const std::string& domain, const std::string& source) {
    const std::optional<std::string> bytes =
        source == "-" ? call.standardInput() : readFile(source);
    if (!bytes) {
        return complain("Could not read " + source);
    }
    if (!isDictionary(parsePlist(*bytes).get())) {
        return complain("Could not parse property list: the root is no dictionary");
    }
    // The whole domain is replaced, by these very bytes.
    return store(domain, *bytes);
}

int readDomain(const std::string& domain, const std::optional<std::string>& key) {
    const Plist root = readPlist(fileOf(domain));
    if (!isDictionary(root.get())) {
        return complain("\nDomain " + domain + " does not exist");
    }
    plist_t value = key ? itemAt(root.get(), key->c_str()) : root.get();
    if (value == nullptr) {
        return complain("\nThe domain/default pair of (" + domain + ", " + key.value_or("") +
                        ") does not exist");
    }
    std::cout << defaultsText(value) << '\n';
    return 0;
}

/// The value that a type's flag and a word spell; nullptr for what this stand-in does not know.
plist_t spelledValue(const std::string& type, const std::string& word) {
    if (type == "-bool" || type == "-boolean") {
        const bool yes = word == "true" || word == "TRUE" || word == "yes" || word == "YES";
        const bool no = word == "false" || word == "FALSE" || word == "no" || word == "NO";
        return yes || no ? plist_new_bool(yes ? 1 : 0) : nullptr;
    }
    if (type == "-string") {
        return plist_new_string(word.c_str());
    }
    const char* end = word.data() + word.size();
    if (type == "-int" || type == "-integer") {
        int64_t value = 0;
        const auto [rest, error] = std::from_chars(word.data(), end, value);
        if (error != std::errc() || rest != end) {
            return nullptr;
        }
        // The library's releases differ in the function for negative numbers.
        return parsePlist("<plist><integer>" + std::to_string(value) + "</integer></plist>")
            .release();
    }
    if (type == "-float") {
        double value = 0;
        const auto [rest, error] = std::from_chars(word.data(), end, value);
        return error == std::errc() && rest == end ? plist_new_real(value) : nullptr;
    }
    return nullptr;
}

int writeKey(const std::string& domain, const std::string& key, plist_t value) {
    const Plist root = domainOrEmpty(domain);
    plist_dict_set_item(root.get(), key.c_str(), value);
    return store(domain, plistBinary(root.get()));
}

int deleteDomain(const std::string& domain) {
    if (unlink(fileOf(domain).c_str()) != 0) {
        return complain("\nDomain (" + domain + ") not found.\nDefaults have not been changed.");
    }
    return 0;
}

int deleteKey(const std::string& domain, const std::string& key) {
    const Plist root = domainOrEmpty(domain);
    if (itemAt(root.get(), key.c_str()) == nullptr) {
        return complain("\nDomain (" + domain + ") not found.\nDefaults have not been changed.");
    }
    plist_dict_remove_item(root.get(), key.c_str());
    return store(domain, plistBinary(root.get()));
}

} // namespace

int runDefaults(Invocation& call) {
    const std::vector<std::string>& words = call.arguments;
    const std::string verb = words.empty() ? "" : words[0];
    if (verb == "export" && words.size() == 3) {
        return exportDomain(words[1], words[2]);
    }
    if (verb == "import" && words.size() == 3) {
        return importDomain(call, words[1], words[2]);
    }
    if (verb == "read" && (words.size() == 2 || words.size() == 3)) {
        return readDomain(words[1], words.size() == 3 ? std::optional(words[2]) : std::nullopt);
    }
    if (verb == "write" && words.size() == 5) {
        plist_t value = spelledValue(words[3], words[4]);
        return value != nullptr ? writeKey(words[1], words[2], value)
                                : unknownRequest(call, "a value of this type");
    }
    if (verb == "delete" && words.size() == 2) {
        return deleteDomain(words[1]);
    }
    if (verb == "delete" && words.size() == 3) {
        return deleteKey(words[1], words[2]);
    }
    return unknownRequest(call, "the arguments");
}

} // namespace practice
