#pragma once

#include "platform/foundation/NSObject.hpp"
#include "platform/objc/Encoding.hpp"

namespace platform::foundation {

struct NSRange {
    UInteger location;
    UInteger length;
};

} // namespace platform::foundation

template <>
struct platform::objc::Encoding<platform::foundation::NSRange> : EncodedAs<"{_NSRange=QQ}"> {};
