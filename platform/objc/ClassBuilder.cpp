#include "platform/objc/ClassBuilder.hpp"

#include "platform/objc/Method.hpp"

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace platform::objc {

namespace {

// The address of the variable in the object, in the way that both runtimes have.
char* variableAddress(const void* object, const char* name) {
    const auto instance = static_cast<id>(const_cast<void*>(object));
    const Ivar variable = class_getInstanceVariable(object_getClass(instance), name);
    return reinterpret_cast<char*>(instance) + ivar_getOffset(variable);
}

} // namespace

ClassBuilder::ClassBuilder(const char* name, const char* superclass)
    : built_(objc_allocateClassPair(requireClass(superclass), name, 0)) {
    if (built_ == nullptr) {
        std::fprintf(stderr, "kovra Uninstaller: a class named %s exists already.\n", name);
        std::abort();
    }
}

void ClassBuilder::addMethod(const char* selector, IMP implementation, const char* encoding) {
    class_addMethod(built_, sel_registerName(selector), implementation, encoding);
}

ClassBuilder& ClassBuilder::pointerVariable(const char* name) {
    class_addIvar(built_, name, sizeof(void*), std::countr_zero(alignof(void*)), "^v");
    return *this;
}

ClassBuilder& ClassBuilder::protocol(const char* name) {
    if (Protocol* found = objc_getProtocol(name)) {
        class_addProtocol(built_, found);
    }
    return *this;
}

Class ClassBuilder::registered() {
    objc_registerClassPair(built_);
    return built_;
}

void* pointerVariable(const void* object, const char* name) {
    void* value = nullptr;
    std::memcpy(&value, variableAddress(object, name), sizeof value);
    return value;
}

void setPointerVariable(void* object, const char* name, void* value) {
    std::memcpy(variableAddress(object, name), &value, sizeof value);
}

} // namespace platform::objc
