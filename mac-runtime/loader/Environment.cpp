#include "loader/Environment.hpp"

#include "loader/Symbols.hpp"
#include "system/Errors.hpp"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

extern "C" char** environ;

// getenv(3), setenv(3) and environ(7) as the Mac's manual has them; _NSGetEnviron of
// <crt_externs.h>.

namespace mac {

namespace {

constexpr std::string_view entryPrefix = "MAC_RUNTIME_ENTRY_";

// The program's variable `environ`, which the program may reassign.
char** entries = nullptr;
std::string starter;
// An entry made by setenv is never freed: the program may hold its address.
std::recursive_mutex changes;

std::vector<char*> listed() {
    std::vector<char*> list;
    for (char** entry = entries; entry != nullptr && *entry != nullptr; ++entry) {
        list.push_back(*entry);
    }
    return list;
}

void replaceEntries(const std::vector<char*>& list) {
    auto** array = static_cast<char**>(std::calloc(list.size() + 1, sizeof(char*)));
    std::memcpy(array, list.data(), list.size() * sizeof(char*));
    entries = array;
}

bool isFor(const char* entry, std::string_view name) {
    return std::strncmp(entry, name.data(), name.size()) == 0 && entry[name.size()] == '=';
}

bool isInvalidName(const char* name) {
    return name == nullptr || *name == '\0' || std::strchr(name, '=') != nullptr;
}

} // namespace

void takeProgramEnvironment() {
    if (const char* path = std::getenv("MAC_RUNTIME_STARTER")) {
        starter = path;
        ::unsetenv("MAC_RUNTIME_STARTER");
    }
    std::vector<char*> list;
    if (const char* count = std::getenv("MAC_RUNTIME_ENTRIES")) {
        for (int i = 0; i < std::atoi(count); ++i) {
            const std::string name = std::string(entryPrefix) + std::to_string(i);
            list.push_back(::strdup(std::getenv(name.c_str())));
            ::unsetenv(name.c_str());
        }
        ::unsetenv("MAC_RUNTIME_ENTRIES");
    } else {
        for (char** entry = environ; *entry != nullptr; ++entry) {
            list.push_back(::strdup(*entry));
        }
    }
    replaceEntries(list);
}

const char* programStarter() {
    return starter.empty() ? nullptr : starter.c_str();
}

char** programEnvironment() {
    return entries;
}

const char* programVariable(const char* name) {
    const std::scoped_lock lock(changes);
    for (char* entry : listed()) {
        if (isFor(entry, name)) {
            return entry + std::strlen(name) + 1;
        }
    }
    return nullptr;
}

namespace {

namespace darwin {

const char* getenv(const char* name) {
    return programVariable(name);
}

int setenv(const char* name, const char* value, int overwrite) {
    if (isInvalidName(name)) {
        return failWith(DarwinError::invalidArgument);
    }
    const std::scoped_lock lock(changes);
    if (overwrite == 0 && programVariable(name) != nullptr) {
        return 0;
    }
    std::vector<char*> list = listed();
    char* made = ::strdup((std::string(name) + '=' + value).c_str());
    bool isSet = false;
    for (char*& entry : list) {
        if (!isSet && isFor(entry, name)) {
            entry = made;
            isSet = true;
        }
    }
    if (!isSet) {
        list.push_back(made);
    }
    replaceEntries(list);
    return 0;
}

int unsetenv(const char* name) {
    if (isInvalidName(name)) {
        return failWith(DarwinError::invalidArgument);
    }
    const std::scoped_lock lock(changes);
    std::vector<char*> list = listed();
    std::erase_if(list, [name](const char* entry) { return isFor(entry, name); });
    replaceEntries(list);
    return 0;
}

char*** NSGetEnviron() {
    return &entries;
}

} // namespace darwin

} // namespace

Symbols environmentSymbols() {
    static const Symbol symbols[] = {
        {"_environ", &entries},
        {"_getenv", address(darwin::getenv)},
        {"_setenv", address(darwin::setenv)},
        {"_unsetenv", address(darwin::unsetenv)},
        {"__NSGetEnviron", address(darwin::NSGetEnviron)},
    };
    return symbols;
}

} // namespace mac
