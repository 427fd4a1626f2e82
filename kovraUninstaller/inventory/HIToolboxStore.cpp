#include "kovraUninstaller/inventory/HIToolboxStore.hpp"

#include "kovraUninstaller/inventory/KovraFootprint.hpp"
#include "kovraUninstaller/system/Shell.hpp"
#include "platform/services/PropertyListSerialization.hpp"
#include "platform/services/TextCase.hpp"

#include <algorithm>
#include <system_error>
#include <utility>

namespace kovra {

using platform::PropertyListValue;

namespace {

constexpr const char* defaultsTool = "/usr/bin/defaults";
constexpr const char* domain = "com.apple.HIToolbox";

} // namespace

std::optional<HIToolboxStore::Dictionary> HIToolboxStore::read() {
    try {
        const Shell::Result exported = Shell::run(defaultsTool, {"export", domain, "-"});
        if (exported.terminationStatus != 0 || exported.data.empty()) {
            return std::nullopt;
        }
        auto list = platform::parsePropertyList(exported.data);
        auto* dictionary = list ? list->as<Dictionary>() : nullptr;
        return dictionary == nullptr ? std::nullopt : std::optional(std::move(*dictionary));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

bool HIToolboxStore::write(const Dictionary& dictionary) {
    const auto xml = platform::serializeXmlPropertyList(dictionary);
    if (!xml) {
        return false;
    }
    try {
        return Shell::run(defaultsTool, {"import", domain, "-"}, *xml).terminationStatus == 0;
    } catch (const std::system_error&) {
        return false;
    }
}

namespace {

void appendText(const PropertyListValue& value, std::string& text) {
    if (const auto* string = value.as<std::string>()) {
        text.append(*string).append("\n");
    } else if (const auto* data = value.as<PropertyListValue::Data>()) {
        constexpr std::string_view digits = "0123456789abcdef";
        for (const std::byte byte : *data) {
            text += digits[std::to_integer<unsigned>(byte >> 4)];
            text += digits[std::to_integer<unsigned>(byte & std::byte{15})];
        }
        text += "\n";
    } else if (const auto* array = value.as<PropertyListValue::Array>()) {
        for (const PropertyListValue& element : *array) {
            appendText(element, text);
        }
    } else if (const auto* dictionary = value.as<PropertyListValue::Dictionary>()) {
        for (const auto& [key, element] : *dictionary) {
            text.append(key).append("\n");
            appendText(element, text);
        }
    }
}

} // namespace

std::string textOf(const PropertyListValue& value) {
    std::string text;
    appendText(value, text);
    return text;
}

bool isProductEntry(const PropertyListValue& entry) {
    return platform::lowercased(textOf(entry)).find(KovraFootprint::looseMatchNeedle) !=
           std::string::npos;
}

PropertyListValue::Array* inputSourceEntries(PropertyListValue::Dictionary& settings,
                                             std::string_view key) {
    const auto found = settings.find(key);
    auto* entries =
        found == settings.end() ? nullptr : found->second.as<PropertyListValue::Array>();
    const auto isDictionary = [](const PropertyListValue& entry) {
        return entry.as<PropertyListValue::Dictionary>() != nullptr;
    };
    return entries != nullptr && std::ranges::all_of(*entries, isDictionary) ? entries : nullptr;
}

std::size_t removeProductEntries(PropertyListValue::Dictionary& settings) {
    std::size_t removed = 0;
    for (const std::string_view key : KovraFootprint::hiToolboxKeys) {
        if (auto* entries = inputSourceEntries(settings, key)) {
            removed += std::erase_if(*entries, isProductEntry);
        }
    }
    return removed;
}

} // namespace kovra
