#include "platform/services/MainBundle.hpp"

#include "platform/base/FileSystem.hpp"
#include "platform/services/PropertyListSerialization.hpp"

#include <filesystem>

// NSBundle is not used: GNUstep takes a backslash in a path for a slash and does not find the
// resources of a bundle in such a folder, and background threads must not enter Objective-C.

namespace platform {

namespace {

std::string inResources(const std::string& name) {
    return mainBundlePath() + "/Resources/" + name;
}

} // namespace

// The executable lies directly in the bundle.
std::string mainBundlePath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::optional<std::string> mainBundleIdentifier() {
    return mainBundleString("CFBundleIdentifier");
}

std::optional<std::string> mainBundleString(const std::string& key) {
    const auto bytes = readFile(inResources("Info-gnustep.plist"));
    const auto list = bytes ? parsePropertyList(*bytes) : std::nullopt;
    const auto* information = list ? list->as<PropertyListValue::Dictionary>() : nullptr;
    if (information == nullptr) {
        return std::nullopt;
    }
    const auto found = information->find(key);
    const auto* text = found == information->end() ? nullptr : found->second.as<std::string>();
    return text == nullptr ? std::nullopt : std::optional(*text);
}

std::optional<std::string> mainBundleResource(const std::string& name, const std::string& type) {
    const std::string path = inResources(type.empty() ? name : name + "." + type);
    return fileExists(path) ? std::optional(path) : std::nullopt;
}

} // namespace platform
