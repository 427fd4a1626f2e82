#pragma once

#include "platform/foundation/FoundationSymbols.hpp"

// The functions and constants of AppKit in use. GNUstep lacks those of accessibility and
// NSAppearanceNameAqua.

#if defined(__OBJC__)
#include <AppKit/AppKit.h>
#endif

extern "C" {
PLATFORM_SYSTEM_STRING(NSAccessibilityAnnouncementKey);
PLATFORM_SYSTEM_STRING(NSAccessibilityAnnouncementRequestedNotification);
PLATFORM_SYSTEM_STRING(NSAccessibilityButtonRole);
PLATFORM_SYSTEM_STRING(NSAccessibilityFocusedUIElementChangedNotification);
PLATFORM_SYSTEM_STRING(NSAccessibilityImageRole);
PLATFORM_SYSTEM_STRING(NSAccessibilityLayoutChangedNotification);
PLATFORM_SYSTEM_STRING(NSAccessibilityPriorityKey);
PLATFORM_SYSTEM_STRING(NSAccessibilityProgressIndicatorRole);
PLATFORM_SYSTEM_STRING(NSAccessibilityStaticTextRole);
PLATFORM_SYSTEM_STRING(NSAccessibilityUIElementDestroyedNotification);
PLATFORM_SYSTEM_STRING(NSAccessibilityValueChangedNotification);
PLATFORM_SYSTEM_STRING(NSAppearanceNameAqua);
PLATFORM_SYSTEM_STRING(NSEventTrackingRunLoopMode);
PLATFORM_SYSTEM_STRING(NSFontAttributeName);
PLATFORM_SYSTEM_STRING(NSForegroundColorAttributeName);
PLATFORM_SYSTEM_STRING(NSModalPanelRunLoopMode);
PLATFORM_SYSTEM_STRING(NSParagraphStyleAttributeName);
PLATFORM_SYSTEM_STRING(NSUnderlineColorAttributeName);
PLATFORM_SYSTEM_STRING(NSUnderlineStyleAttributeName);
void NSAccessibilityPostNotification(platform::system::Object element,
                                     platform::system::String notification);
void NSAccessibilityPostNotificationWithUserInfo(platform::system::Object element,
                                                 platform::system::String notification,
                                                 platform::system::Dictionary userInfo);
platform::system::Object NSAccessibilityUnignoredAncestor(platform::system::Object element);
}
