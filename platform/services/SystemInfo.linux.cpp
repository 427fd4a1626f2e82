#include "platform/services/SystemInfo.hpp"

#include "platform/base/FileSystem.hpp"
#include "platform/services/PropertyListSerialization.hpp"

#include <cstdio>
#include <string_view>
#include <sys/utsname.h>

namespace platform {

namespace {

constexpr const char* practiceMacSystem = "/var/db/practice-mac/system.plist";

// What the practice Mac says of itself; empty where there is none.
std::string practiceMacString(std::string_view key) {
    const auto content = readFile(practiceMacSystem);
    const auto list = content ? parsePropertyList(*content) : std::nullopt;
    const auto* values = list ? list->as<PropertyListValue::Dictionary>() : nullptr;
    const auto found =
        values != nullptr ? values->find(key) : PropertyListValue::Dictionary::const_iterator();
    if (values == nullptr || found == values->end()) {
        return {};
    }
    const auto* text = found->second.as<std::string>();
    return text != nullptr ? *text : std::string();
}

utsname linuxItself() {
    utsname names{};
    ::uname(&names);
    return names;
}

} // namespace

OperatingSystemVersion operatingSystemVersion() {
    std::string text = practiceMacString("ProductVersion");
    if (text.empty()) {
        text = static_cast<const char*>(linuxItself().release);
    }
    OperatingSystemVersion version;
    std::sscanf(text.c_str(), "%ld.%ld.%ld", &version.major, &version.minor, &version.patch);
    return version;
}

std::string systemControlString(const char* name) {
    std::string text = practiceMacString(name);
    if (text.empty()) {
        const utsname names = linuxItself();
        text = std::string_view(name) == "hw.model" ? static_cast<const char*>(names.machine)
                                                    : static_cast<const char*>(names.release);
    }
    return textUpToNul({text.c_str(), text.size() + 1});
}

} // namespace platform
