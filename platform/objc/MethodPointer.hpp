#pragma once

namespace platform::objc {

/// A method's pointer as another method type. The runtime hands all of them out, and takes them,
/// as one type; this is the one place that casts between that and the methods' own.
template <class To, class From>
To methodPointer(From* from) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wcast-function-type"
    return reinterpret_cast<To>(from);
#pragma GCC diagnostic pop
}

} // namespace platform::objc
