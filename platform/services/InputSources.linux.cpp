#include "platform/services/InputSources.hpp"

#include "platform/base/FileSystem.hpp"
#include "platform/services/PropertyListSerialization.hpp"
#include "platform/services/Queues.hpp"
#include "platform/services/TextCase.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ranges>

namespace platform {

namespace {

using Dictionary = PropertyListValue::Dictionary;

constexpr const char* registryPath = "/var/db/practice-mac/input-sources.plist";

// As the system's functions do on a Mac.
void trapOffMainThread() {
    if (!isMainThread()) {
        std::fputs("The input sources were asked for off the main thread.\n", stderr);
        std::abort();
    }
}

// The registry's sources; entries that are no dictionaries are skipped.
std::vector<Dictionary> readRegistry() {
    trapOffMainThread();
    const auto content = readFile(registryPath);
    const auto list = content ? parsePropertyList(*content) : std::nullopt;
    const auto* entries = list ? list->as<PropertyListValue::Array>() : nullptr;
    std::vector<Dictionary> sources;
    if (entries != nullptr) {
        for (const PropertyListValue& entry : *entries) {
            if (const auto* source = entry.as<Dictionary>()) {
                sources.push_back(*source);
            }
        }
    }
    return sources;
}

void writeRegistry(const std::vector<Dictionary>& sources) {
    const PropertyListValue::Array entries(sources.begin(), sources.end());
    if (const auto xml = serializeXmlPropertyList(entries)) {
        writeFileAtomically(registryPath, *xml);
    }
}

std::string textOf(const Dictionary& source, std::string_view key) {
    const auto found = source.find(key);
    const auto* text = found != source.end() ? found->second.as<std::string>() : nullptr;
    return text != nullptr ? *text : std::string();
}

bool isSet(const Dictionary& source, std::string_view key) {
    const auto found = source.find(key);
    const auto* value = found != source.end() ? found->second.as<bool>() : nullptr;
    return value != nullptr && *value;
}

} // namespace

int inputSourceCount(const std::string& bundleIdentifier) {
    const auto sources = readRegistry();
    return static_cast<int>(std::ranges::count_if(sources, [&](const Dictionary& source) {
        return textOf(source, "BundleID") == bundleIdentifier;
    }));
}

std::optional<std::string> currentInputSourceIdentifier() {
    for (const Dictionary& source : readRegistry()) {
        if (isSet(source, "Selected")) {
            return textOf(source, "InputSourceID");
        }
    }
    return std::nullopt;
}

bool selectInputSource(const std::string& identifier) {
    auto sources = readRegistry();
    const auto wanted = std::ranges::find_if(sources, [&](const Dictionary& source) {
        return textOf(source, "InputSourceID") == identifier;
    });
    if (wanted == sources.end()) {
        return false;
    }
    for (Dictionary& source : sources) {
        source.insert_or_assign("Selected", false);
    }
    wanted->insert_or_assign("Selected", true);
    wanted->insert_or_assign("Enabled", true);
    writeRegistry(sources);
    return true;
}

int disableInputSourcesContaining(const std::string& lowercaseWord) {
    auto sources = readRegistry();
    int count = 0;
    for (Dictionary& source : sources) {
        if (lowercased(textOf(source, "InputSourceID")).find(lowercaseWord) != std::string::npos) {
            source.insert_or_assign("Enabled", false);
            ++count;
        }
    }
    if (count > 0) {
        writeRegistry(sources);
    }
    return count;
}

} // namespace platform
