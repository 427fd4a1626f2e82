#include "kovraUninstaller/app/MainMenu.hpp"
#include "platform/appkit/NSEvent.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/objc/AutoreleasePool.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace kovra {
namespace {

using namespace platform;
using appkit::NSEvent;
using appkit::NSMenu;
using appkit::NSMenuItem;
using appkit::NSString;
using foundation::NSArray;
using foundation::toString;
using objc::InstanceMethod;
using ::testing::ElementsAre;

std::string keysOf(const NSMenuItem* item) {
    const std::string key =
        toString(InstanceMethod<"NSMenuItem", "keyEquivalent", NSString*()>::send(item));
    if (key.empty()) {
        return "";
    }
    const auto modifiers =
        InstanceMethod<"NSMenuItem", "keyEquivalentModifierMask", objc::UInteger()>::send(item);
    std::string keys = " ";
    for (const auto& [modifier, name] :
         {std::pair{NSEvent::optionKey, "option "}, std::pair{NSEvent::shiftKey, "shift "},
          std::pair{NSEvent::controlKey, "control "}, std::pair{NSEvent::commandKey, "command "}}) {
        keys += (modifiers & modifier) != 0 ? name : "";
    }
    return keys + key;
}

std::string titleOf(const NSMenuItem* item) {
    return toString(InstanceMethod<"NSMenuItem", "title", NSString*()>::send(item));
}

std::string described(const NSMenuItem* item) {
    if (InstanceMethod<"NSMenuItem", "isSeparatorItem", objc::Bool()>::send(item) != NO) {
        return "-";
    }
    const auto action = InstanceMethod<"NSMenuItem", "action", SEL()>::send(item);
    return titleOf(item) + ": " + sel_getName(action) + keysOf(item);
}

std::vector<NSMenuItem*> itemsOf(const NSMenu* menu) {
    const auto* items = InstanceMethod<"NSMenu", "itemArray", NSArray*()>::send(menu);
    std::vector<NSMenuItem*> list;
    for (objc::UInteger i = 0; i < items->count(); ++i) {
        list.push_back(static_cast<NSMenuItem*>(items->objectAtIndex(i)));
    }
    return list;
}

std::vector<std::string> submenuOf(const NSMenuItem* item) {
    std::vector<std::string> lines;
    const auto* menu = InstanceMethod<"NSMenuItem", "submenu", NSMenu*()>::send(item);
    for (const NSMenuItem* each : itemsOf(menu)) {
        lines.push_back(described(each));
    }
    return lines;
}

TEST(MainMenu, HasTheCommandsOfAProgramWithOneWindow) {
    const objc::AutoreleasePool pool;
    const auto items = itemsOf(makeMainMenu());
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(titleOf(items[0]), "kovra Uninstaller");
    EXPECT_THAT(submenuOf(items[0]),
                ElementsAre("About kovra Uninstaller: orderFrontStandardAboutPanel:", "-",
                            "Hide kovra Uninstaller: hide: command h",
                            "Hide Others: hideOtherApplications: option command h",
                            "Show All: unhideAllApplications:", "-",
                            "Quit kovra Uninstaller: terminate: command q"));
    EXPECT_EQ(titleOf(items[1]), "File");
    EXPECT_THAT(submenuOf(items[1]), ElementsAre("Close: performClose: command w"));
}

} // namespace
} // namespace kovra
