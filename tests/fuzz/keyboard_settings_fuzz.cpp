// Keyboard settings of any shape, read, rewritten without the product's entries and written as an
// uninstall does. A second, plain implementation of the rule says which entries must remain.

#include "kovraUninstaller/inventory/HIToolboxStore.hpp"
#include "platform/services/PropertyListSerialization.hpp"
#include "tests/fuzz/FuzzTarget.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace {

using Value = platform::PropertyListValue;
using Array = Value::Array;
using Dictionary = Value::Dictionary;

constexpr std::array<const char*, 4> lists{"AppleEnabledInputSources", "AppleSelectedInputSources",
                                           "AppleInputSourceHistory", "AppleDisabledInputSources"};

// Draws settings that often resemble real ones.
class SettingsReader {
  public:
    explicit SettingsReader(std::string_view bytes)
        : draws_(bytes), isAtLength_(isTriedAtLength(bytes)) {}

    Dictionary settings() {
        Dictionary settings;
        while (!draws_.areUsedUp()) {
            const unsigned key = draws_.next() % 8;
            std::string name = key < lists.size() ? lists[key] : word();
            if (draws_.next() % 8 == 0) {
                settings.insert_or_assign(std::move(name), value(0));
            } else {
                settings.insert_or_assign(std::move(name), entries());
            }
        }
        return settings;
    }

  private:
    // At length, each entry is repeated thousands of times.
    Array entries() {
        const std::size_t times = isAtLength_ ? 5000 : 1;
        Array entries;
        for (unsigned left = draws_.next() % 6; left > 0; --left) {
            const Value entry = draws_.next() % 16 == 0 ? value(0) : dictionary(0);
            entries.insert(entries.end(), times, entry);
        }
        return entries;
    }

    Dictionary dictionary(int depth) {
        Dictionary made;
        for (unsigned left = draws_.next() % 5; left > 0; --left) {
            std::string key = word();
            made.insert_or_assign(std::move(key), value(depth + 1));
        }
        return made;
    }

    Value value(int depth) {
        constexpr int deepest = 20;
        switch (depth > deepest ? 0 : draws_.next() % 9) {
        case 0: return word();
        case 1: return word().append("KovR");
        case 2: return static_cast<std::int64_t>(draws_.nextLong());
        case 3: return draws_.nextLong();
        case 4: return draws_.next() % 2 == 0;
        case 5: return Value::Date{static_cast<double>(draws_.next())};
        case 6: return data();
        case 7: return dictionary(depth);
        default: return Array{value(depth + 1), value(depth + 1)};
        }
    }

    Value::Data data() {
        const std::string text = word();
        const auto* const first = reinterpret_cast<const std::byte*>(text.data());
        return {first, first + text.size()};
    }

    // Text that XML can represent.
    std::string word() {
        static constexpr std::array<const char*, 12> words{"Bundle ID",
                                                           "ai.kovra.inputmethod.KovraInput",
                                                           "KOVRA",
                                                           "kov",
                                                           "ra",
                                                           "\u212AoVRa",
                                                           "k\u043Evra",
                                                           "covra",
                                                           "InputSourceKind",
                                                           "\u00C4\u212Bkovr",
                                                           "kkovra\n",
                                                           ""};
        const unsigned which = draws_.next();
        if (which % 16 < words.size()) {
            return words[which % 16];
        }
        std::string text = draws_.text(which / 16);
        for (char& c : text) {
            c = static_cast<char>(' ' + static_cast<unsigned char>(c) % 95);
        }
        return text;
    }

    Draws draws_;
    bool isAtLength_;
};

// The word has ASCII letters only. Of all other characters, only the Kelvin sign has one of them as
// its lower case.
bool holdsWord(std::string text) {
    const std::string kelvin = "\u212A";
    for (std::size_t at = text.find(kelvin); at != std::string::npos; at = text.find(kelvin)) {
        text.replace(at, kelvin.size(), "k");
    }
    const std::string word = "kovra";
    const auto same = [](char c, char letter) { return c == letter || c == letter - 'a' + 'A'; };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end();
}

bool holdsWordAnywhere(const Value& value) {
    if (const auto* text = value.as<std::string>()) {
        return holdsWord(*text);
    }
    if (const auto* array = value.as<Array>()) {
        return std::ranges::any_of(*array, holdsWordAnywhere);
    }
    const auto* dictionary = value.as<Dictionary>();
    return dictionary != nullptr && std::ranges::any_of(*dictionary, [](const auto& pair) {
               return holdsWord(pair.first) || holdsWordAnywhere(pair.second);
           });
}

// Removes the product's entries; returns their number.
std::size_t takeOut(Dictionary& settings) {
    std::size_t count = 0;
    for (const char* key : lists) {
        const auto found = settings.find(key);
        auto* entries = found == settings.end() ? nullptr : found->second.as<Array>();
        bool allAreDictionaries = entries != nullptr;
        Array kept;
        for (std::size_t i = 0; allAreDictionaries && i < entries->size(); ++i) {
            const Value& entry = (*entries)[i];
            allAreDictionaries = entry.as<Dictionary>() != nullptr;
            if (!holdsWordAnywhere(entry)) {
                kept.push_back(entry);
            }
        }
        if (allAreDictionaries) {
            count += entries->size() - kept.size();
            *entries = kept;
        }
    }
    return count;
}

std::string written(const Dictionary& settings) {
    const auto xml = platform::serializeXmlPropertyList(settings);
    require(xml.has_value(), "all these settings can be written");
    return xml.value_or("");
}

Dictionary read(const std::string& xml) {
    auto list = platform::parsePropertyList(xml);
    auto* settings = list ? list->as<Dictionary>() : nullptr;
    require(settings != nullptr, "what was written can be read");
    return settings == nullptr ? Dictionary() : std::move(*settings);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Dictionary expected = SettingsReader(asText(bytes, size)).settings();
    Dictionary settings = read(written(expected));
    require(settings == expected, "the settings are read as they were written");

    const std::size_t removed = kovra::removeProductEntries(settings);
    require(removed == takeOut(expected), "as many entries are removed as are the product's");
    require(settings == expected, "the other entries and all else stay unchanged");
    require(kovra::removeProductEntries(settings) == 0, "none of the product's entries is left");
    require(read(written(settings)) == expected, "the remaining settings are written unchanged");
    return 0;
}
