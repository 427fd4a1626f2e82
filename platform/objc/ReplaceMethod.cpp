#include "platform/objc/ReplaceMethod.hpp"

namespace platform::objc::detail {

// The methods of a class are those of its class's class.
void replaceClassMethod(const char* className, const char* selector, IMP implementation,
                        const char* encoding) {
    class_replaceMethod(object_getClass(reinterpret_cast<id>(requireClass(className))),
                        sel_registerName(selector), implementation, encoding);
}

} // namespace platform::objc::detail
