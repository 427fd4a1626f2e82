#pragma once

#include "platform/services/CoreFoundation.macos.hpp"

#include <cstdint>

// The Text Input Sources interface of the Carbon framework. Where the vendor's header is, the
// compiler holds these declarations against it.
#if __has_include(<Carbon/Carbon.h>)
#include <Carbon/Carbon.h>
#endif

extern "C" {
using TISInputSourceRef = struct __TISInputSource*;
extern const CFStringRef kTISPropertyBundleID;
extern const CFStringRef kTISPropertyInputSourceID;
TISInputSourceRef TISCopyCurrentKeyboardInputSource();
CFArrayRef TISCreateInputSourceList(CFDictionaryRef properties, unsigned char includeAllInstalled);
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);
std::int32_t TISSelectInputSource(TISInputSourceRef source);
std::int32_t TISDisableInputSource(TISInputSourceRef source);
}
