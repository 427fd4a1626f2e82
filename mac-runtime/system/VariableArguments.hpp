#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstring>

namespace mac {

/// On a Mac all variable arguments of a call are on the stack, in words of eight bytes, and a
/// va_list is their address ("Writing ARM64 code for Apple platforms").
using VariableArguments = const std::uint64_t*;

/// The same arguments as this system's va_list (AAPCS64), with all registers used up.
class VariableList {
  public:
    explicit VariableList(VariableArguments arguments) {
        const struct {
            const void* stack;
            void* generalTop;
            void* vectorTop;
            int generalOffset, vectorOffset;
        } parts{arguments, nullptr, nullptr, 0, 0};

        static_assert(sizeof parts == sizeof(std::va_list));
        std::memcpy(&list, &parts, sizeof parts);
    }

    std::va_list list;
};

} // namespace mac
