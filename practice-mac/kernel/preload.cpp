// Loaded into the user-mode kernel in front of the C library, for two things that it lacks.
//
// It keeps a process's extended registers in a buffer of the size that processors had when it was
// written. Where they have more (AMX), the machine takes them back only whole, and the kernel would
// give up at its first process.
//
// And the processes that it starts do not end with it: neither its helpers nor those of the guest,
// which would go on as processes of the machine should it be killed.

#include <array>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/uio.h>

namespace {

using Ptrace = long (*)(int, pid_t, void*, void*);
using Start = int (*)(void*);
using Clone = int (*)(Start, void*, int, void*, ...);

// The same as PTRACE_SETOPTIONS; the kernel uses both.
constexpr int oldSetOptions = 21;

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

struct Started {
    Start function;
    void* argument;
};

int startBound(void* given) {
    const auto started = *static_cast<const Started*>(given);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    return started.function(started.argument);
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) long ptrace(enum __ptrace_request request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    const auto process = va_arg(arguments, pid_t);
    auto* const address = va_arg(arguments, void*);
    auto* data = va_arg(arguments, void*);
    va_end(arguments);
    if (request == PTRACE_SETREGSET && address == registerSet()) {
        return setState(process, *static_cast<iovec*>(data));
    }
    if (request == PTRACE_SETOPTIONS || static_cast<int>(request) == oldSetOptions) {
        data = reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(data) | PTRACE_O_EXITKILL);
    }
    return systemPtrace()(request, process, address, data);
}

// The kernel uses none of the further arguments.
__attribute__((visibility("default"))) int clone(Start function, void* stack, int flags,
                                                 void* argument, ...) noexcept {
    static const auto systemClone = reinterpret_cast<Clone>(::dlsym(RTLD_NEXT, "clone"));
    // On the new stack, which nobody else uses; a multiple of its alignment.
    auto* const started = reinterpret_cast<Started*>(static_cast<char*>(stack) - 64);
    *started = {function, argument};
    return systemClone(startBound, started, flags, started);
}

} // extern "C"
