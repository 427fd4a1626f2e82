#include "loader/ThreadLocals.hpp"

#include "loader/Symbols.hpp"

#include <cstdlib>
#include <cstring>
#include <pthread.h>

extern "C" void mac_tlv_get_addr();
extern "C" void* mac_tlv_address(const mac::ThreadLocals::Variable* variable);

namespace mac {

namespace {

ThreadLocals used;
pthread_key_t blockOfThread;

void* newBlock() {
    constexpr std::size_t alignment = 64;
    void* block = std::aligned_alloc(alignment, (used.size + alignment - 1) & ~(alignment - 1));
    // The zero-filled part has no bytes in the file, but it is mapped.
    std::memcpy(block, used.initial, used.size);
    ::pthread_setspecific(blockOfThread, block);
    return block;
}

} // namespace

void useThreadLocals(const ThreadLocals& locals) {
    used = locals;
    ::pthread_key_create(&blockOfThread, std::free);
    for (ThreadLocals::Variable& variable : used.variables) {
        variable.function = address(mac_tlv_get_addr);
    }
}

// _tlv_atexit: registers a destructor to be called when the thread ends.
extern "C" int __cxa_thread_atexit_impl(void (*destroy)(void*), void* object, void* library);

Symbols threadLocalSymbols() {
    static const Symbol symbols[] = {
        {"__tlv_bootstrap", address(mac_tlv_get_addr)},
        {"_atexit", address(+[](void (*function)()) { return std::atexit(function); })},
        {"__tlv_atexit", address(+[](void (*destroy)(void*), void* object) {
             __cxa_thread_atexit_impl(destroy, object, nullptr);
         })},
    };
    return symbols;
}

} // namespace mac

void* mac_tlv_address(const mac::ThreadLocals::Variable* variable) {
    void* block = ::pthread_getspecific(mac::blockOfThread);
    if (block == nullptr) {
        block = mac::newBlock();
    }
    return static_cast<std::uint8_t*>(block) + variable->offset;
}
