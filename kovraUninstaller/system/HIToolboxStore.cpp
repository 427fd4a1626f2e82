#include "kovraUninstaller/system/HIToolboxStore.hpp"

#include "kovraUninstaller/system/Shell.hpp"
#include "platform/services/PropertyListSerialization.hpp"

#include <system_error>
#include <utility>

namespace kovra {

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

} // namespace kovra
