#include "kovraUninstaller/app/MainMenu.hpp"

#include "platform/appkit/NSEvent.hpp"
#include "platform/foundation/Conversions.hpp"

#include <string>

namespace kovra {

using namespace platform;
using appkit::NSEvent;
using appkit::NSMenu;
using appkit::NSMenuItem;
using foundation::toNSString;

namespace {

constexpr const char* applicationName = "kovra Uninstaller";

/// A menu item without a target: its action goes along the responder chain.
struct Command {
    std::string title;
    SEL action;
    const char* key = "";
    objc::UInteger modifiers = NSEvent::commandKey;
};

objc::Retained<NSMenu> menuOf(const std::string& title) {
    return objc::adopt(NSMenu::alloc()->initWithTitle(toNSString(title)));
}

void add(const objc::Retained<NSMenu>& menu, const Command& command) {
    const auto item = objc::adopt(NSMenuItem::alloc()->initWithTitle(
        toNSString(command.title), command.action, toNSString(command.key)));
    item->setKeyEquivalentModifierMask(command.modifiers);
    menu->addItem(item.get());
}

void addSubmenu(NSMenu* bar, const objc::Retained<NSMenu>& menu, const std::string& title) {
    const auto item =
        objc::adopt(NSMenuItem::alloc()->initWithTitle(toNSString(title), nullptr, toNSString("")));
    item->setSubmenu(menu.get());
    bar->addItem(item.get());
}

objc::Retained<NSMenu> applicationMenu() {
    const std::string name = applicationName;
    auto menu = menuOf(name);
    add(menu, {"About " + name, objc::selector<"orderFrontStandardAboutPanel:">()});
    menu->addItem(NSMenuItem::separatorItem());
    add(menu, {"Hide " + name, objc::selector<"hide:">(), "h"});
    add(menu, {"Hide Others", objc::selector<"hideOtherApplications:">(), "h",
               NSEvent::commandKey | NSEvent::optionKey});
    add(menu, {"Show All", objc::selector<"unhideAllApplications:">()});
    menu->addItem(NSMenuItem::separatorItem());
    add(menu, {"Quit " + name, objc::selector<"terminate:">(), "q"});
    return menu;
}

objc::Retained<NSMenu> fileMenu() {
    auto menu = menuOf("File");
    add(menu, {"Close", objc::selector<"performClose:">(), "w"});
    return menu;
}

} // namespace

NSMenu* makeMainMenu() {
    NSMenu* bar = objc::autoreleased(menuOf(applicationName));
    addSubmenu(bar, applicationMenu(), applicationName);
    addSubmenu(bar, fileMenu(), "File");
    return bar;
}

} // namespace kovra
