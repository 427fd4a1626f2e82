// The Mac's input sources on stand-ins for the system's functions, which keep count of who owns
// what.

#include "platform/services/InputSources.hpp"

#include "platform/foundation/NSDictionary.hpp"
#include "platform/foundation/testing/ConstantString.hpp"
#include "platform/services/SystemSymbols.macos.hpp"

#include <gmock/gmock.h>

namespace platform {
namespace {

using namespace foundation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int32_t noError = 0;
constexpr std::int32_t parameterError = -50;

/// A system with input sources: dictionaries of their properties.
struct System {
    std::vector<objc::Retained<NSObject>> sources{};
    NSObject* current = nullptr;
    std::optional<objc::Retained<NSObject>> list{}; ///< given in place of a true list
    std::vector<std::string> selected{};
    std::vector<std::string> disabled{};
    bool includesAllInstalled = true;
    std::int32_t disabling = noError;
};

System mac;

UInteger ownersOf(const NSObject* object) {
    return InstanceMethod<"NSObject", "retainCount", UInteger()>::send(object);
}

std::string identifierOf(const NSObject* source) {
    auto* properties = static_cast<const NSDictionary*>(source);
    return toString(static_cast<NSString*>(
        properties->objectForKey(toFacade<NSObject>(kTISPropertyInputSourceID))));
}

bool fits(const NSObject* source, const NSDictionary* filter) {
    const auto* keys = filter == nullptr ? nullptr : filter->allKeys();
    for (UInteger i = 0; keys != nullptr && i < keys->count(); ++i) {
        NSObject* key = keys->objectAtIndex(i);
        const auto* value = static_cast<const NSDictionary*>(source)->objectForKey(key);
        if (InstanceMethod<"NSObject", "isEqual:", Bool(const NSObject*)>::send(
                filter->objectForKey(key), value) == NO) {
            return false;
        }
    }
    return true;
}

class InputSourcesOnAMac : public ::testing::Test {
  protected:
    InputSourcesOnAMac() {
        add("com.apple.keylayout.US", "com.apple.keyboardlayouts");
        add("ai.kovra.inputmethod.KovraInput.Main", "ai.kovra");
        add("ai.KOVRA.mode", "ai.kovra");
        add("ai.KOVRA.mode", "ai.kovra"); // the system can have two that are alike
    }

    // Each list that was given, and each source, has been given up as often as it was taken.
    ~InputSourcesOnAMac() override {
        for (const auto& source : mac.sources) {
            EXPECT_EQ(ownersOf(source.get()), 1U) << identifierOf(source.get());
        }
        if (mac.list && *mac.list) {
            EXPECT_EQ(ownersOf(mac.list->get()), 1U);
        }
        mac = {};
    }

    static void add(const char* identifier, const char* bundle) {
        const objc::AutoreleasePool pool;
        auto* properties = NSMutableDictionary::dictionaryWithCapacity(2);
        properties->setObject(toNSString(bundle), toFacade<NSObject>(kTISPropertyBundleID));
        if (identifier != nullptr) {
            properties->setObject(toNSString(identifier),
                                  toFacade<NSObject>(kTISPropertyInputSourceID));
        }
        mac.sources.push_back(objc::retain<NSObject>(properties));
    }
};

TEST_F(InputSourcesOnAMac, AreCountedByBundleIncludingDisabledOnes) {
    EXPECT_EQ(inputSourceCount("ai.kovra"), 3);
    EXPECT_TRUE(mac.includesAllInstalled);
    EXPECT_EQ(inputSourceCount("com.example"), 0);
}

TEST_F(InputSourcesOnAMac, AreNoneWhenTheSystemReturnsNoArray) {
    mac.list.emplace();
    EXPECT_EQ(inputSourceCount("ai.kovra"), 0);
    EXPECT_FALSE(selectInputSource("ai.KOVRA.mode"));
    EXPECT_EQ(disableInputSourcesContaining("kovra"), 0);

    const objc::AutoreleasePool pool;
    mac.list = objc::retain<NSObject>(toNSString("no list"));
    EXPECT_EQ(inputSourceCount("ai.kovra"), 0);
    EXPECT_FALSE(selectInputSource("ai.KOVRA.mode"));
}

TEST_F(InputSourcesOnAMac, TheCurrentOneIsKnownByItsIdentifier) {
    EXPECT_EQ(currentInputSourceIdentifier(), std::nullopt);
    mac.current = mac.sources[1].get();
    EXPECT_EQ(currentInputSourceIdentifier(), "ai.kovra.inputmethod.KovraInput.Main");
    add(nullptr, "com.example");
    mac.current = mac.sources.back().get();
    EXPECT_EQ(currentInputSourceIdentifier(), "");
}

TEST_F(InputSourcesOnAMac, TheFirstWithTheIdentifierIsSelected) {
    EXPECT_TRUE(selectInputSource("ai.KOVRA.mode"));
    EXPECT_THAT(mac.selected, ElementsAre("ai.KOVRA.mode"));
    EXPECT_TRUE(mac.includesAllInstalled);
    EXPECT_FALSE(selectInputSource("ai.kovra.mode"));
    EXPECT_EQ(mac.selected.size(), 1U);
}

TEST_F(InputSourcesOnAMac, AreDisabledByAWordInTheirIdentifierWhateverItsCase) {
    add(nullptr, "ai.kovra");
    EXPECT_EQ(disableInputSourcesContaining("kovra"), 3);
    EXPECT_THAT(mac.disabled, ElementsAre("ai.kovra.inputmethod.KovraInput.Main", "ai.KOVRA.mode",
                                          "ai.KOVRA.mode"));
    EXPECT_TRUE(mac.includesAllInstalled);
    EXPECT_EQ(disableInputSourcesContaining("nothing"), 0);
}

TEST_F(InputSourcesOnAMac, TheRestAreDisabledWhenTheSystemRefusesOne) {
    mac.disabling = parameterError;
    EXPECT_EQ(disableInputSourcesContaining("kovra"), 3);
    EXPECT_EQ(mac.disabled.size(), 3U);
    EXPECT_THAT(mac.selected, IsEmpty());
}

} // namespace
} // namespace platform

using namespace platform;

const CFStringRef kTISPropertyBundleID =
    toReference<CFStringRef>(foundation::testing::constantString("bundle"));
const CFStringRef kTISPropertyInputSourceID =
    toReference<CFStringRef>(foundation::testing::constantString("identifier"));

TISInputSourceRef TISCopyCurrentKeyboardInputSource() {
    return toReference<TISInputSourceRef>(objc::retain(mac.current).release());
}

CFArrayRef TISCreateInputSourceList(CFDictionaryRef properties, unsigned char includeAllInstalled) {
    mac.includesAllInstalled = mac.includesAllInstalled && includeAllInstalled != 0;
    if (mac.list) {
        return toReference<CFArrayRef>(objc::Retained(*mac.list).release());
    }
    const objc::AutoreleasePool pool;
    auto* list = foundation::NSMutableArray::arrayWithCapacity(mac.sources.size());
    for (const auto& source : mac.sources) {
        if (fits(source.get(), toFacade<const foundation::NSDictionary>(properties))) {
            list->addObject(source.get());
        }
    }
    return toReference<CFArrayRef>(objc::retain(list).release());
}

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
    return toFacade<foundation::NSDictionary>(source)->objectForKey(
        toFacade<foundation::NSObject>(key));
}

std::int32_t TISSelectInputSource(TISInputSourceRef source) {
    mac.selected.push_back(identifierOf(toFacade<foundation::NSObject>(source)));
    return noError;
}

std::int32_t TISDisableInputSource(TISInputSourceRef source) {
    mac.disabled.push_back(identifierOf(toFacade<foundation::NSObject>(source)));
    return mac.disabling;
}
