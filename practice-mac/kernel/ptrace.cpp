// Loaded into the user-mode kernel in front of the C library, for two things that its way of tracing
// the guest's processes needs.
//
// It keeps a process's extended registers in a buffer of the size that processors had when it was
// written. Where they have more (AMX), the machine takes them back only whole, and the kernel would
// give up at its first process.
//
// And it does not ask for the guest's processes to end with it. Should it be killed, they would go
// on as processes of the machine.

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <sys/ptrace.h>
#include <sys/uio.h>

namespace {

using Ptrace = long (*)(int, pid_t, void*, void*);

// The components that fit the kernel's buffer: x87 to AVX-512, and protection keys.
constexpr std::uint64_t keptComponents = 0x2ff;
constexpr std::size_t headerOffset = 512;

Ptrace systemPtrace() {
    static const auto found = reinterpret_cast<Ptrace>(::dlsym(RTLD_NEXT, "ptrace"));
    return found;
}

void* registerSet() {
    return reinterpret_cast<void*>(std::uintptr_t{NT_X86_XSTATE});
}

// The size in bytes that the machine wants, or 0 where it cannot be asked.
std::size_t stateSize(pid_t process, std::array<char, 65536>& buffer) {
    iovec whole{buffer.data(), buffer.size()};
    const long result = systemPtrace()(PTRACE_GETREGSET, process, registerSet(), &whole);
    buffer.fill(0);
    return result < 0 ? 0 : whole.iov_len;
}

// What the kernel does not know stays as a process has it that never used it.
long setState(pid_t process, iovec& given) {
    alignas(64) static std::array<char, 65536> state;
    static const std::size_t size = stateSize(process, state);
    if (given.iov_len >= size || given.iov_len < headerOffset + sizeof(std::uint64_t)) {
        return systemPtrace()(PTRACE_SETREGSET, process, registerSet(), &given);
    }
    std::memcpy(state.data(), given.iov_base, given.iov_len);
    std::uint64_t components = 0;
    std::memcpy(&components, state.data() + headerOffset, sizeof components);
    components &= keptComponents;
    std::memcpy(state.data() + headerOffset, &components, sizeof components);
    iovec whole{state.data(), size};
    return systemPtrace()(PTRACE_SETREGSET, process, registerSet(), &whole);
}

} // namespace

extern "C" __attribute__((visibility("default"))) long ptrace(enum __ptrace_request request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    const auto process = va_arg(arguments, pid_t);
    auto* const address = va_arg(arguments, void*);
    auto* data = va_arg(arguments, void*);
    va_end(arguments);
    if (request == PTRACE_SETREGSET && address == registerSet()) {
        return setState(process, *static_cast<iovec*>(data));
    }
    if (request == PTRACE_SETOPTIONS) {
        data = reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(data) | PTRACE_O_EXITKILL);
    }
    return systemPtrace()(request, process, address, data);
}
