// The toolkit throws objects as exceptions of the GNU runtime's own kind. On a Mac they are C++
// exceptions, whose type begins with the runtime's vtable OBJC_EHTYPE_vtable (objc4,
// objc-exception.mm). So an exception that reaches a frame of the program gets a twin of that kind,
// laid out as the program's C++ library expects (libc++abi, cxa_exception.h): the program's frames
// see the twin, all others the original.

#include "loader/Failure.hpp"
#include "loader/Symbols.hpp"
#include "unwind/TableReaders.hpp"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <list>
#include <mutex>
#include <new>
#include <unwind.h>

// From the GNU runtime, whose headers are for Objective-C.
extern "C" const char* object_getClassName(void* object);
extern "C" void objc_exception_throw(void* object);

namespace mac {

// frameworks/Messages.mm
void retainObject(void* object);
void releaseObject(void* object);
void* classOfObject(void* object);

namespace {

constexpr std::uint64_t exceptionClass(const char (&name)[9]) {
    std::uint64_t value = 0;
    for (int i = 0; i < 8; ++i) {
        value = value << 8 | static_cast<unsigned char>(name[i]);
    }
    return value;
}

constexpr std::uint64_t gnuObjects = exceptionClass("GNUCOBJC");
constexpr std::uint64_t clangCpp = exceptionClass("CLNGC++\0");

struct Type {
    const void* const* functions;
    const char* name;
    void* thrownClass;
};

void nothing() {}

int no() {
    return 0;
}

// As in any C++ vtable, two words precede the address that a type points to: the offset to top and
// the type's own type_info, which a dynamic_cast of the program's library reads.
extern const void* const typeFunctions[];
const Type typeOfTypes = {&typeFunctions[2], "i", nullptr};
const void* const typeFunctions[] = {
    nullptr,     &typeOfTypes, address(nothing), address(nothing), address(no),
    address(no), address(no),  address(no),      address(no),      address(nothing)};
const void* const typeOfAnyObject[] = {&typeFunctions[2], "id", nullptr};

using TerminateHandler = void (*)();

// The terminate handler of the C++ library of macOS, which is not the program's own library. An
// exception carries the handler that is set when it is thrown.
std::atomic<TerminateHandler> systemsTerminate = std::abort;

struct Twin {
    // __cxa_exception
    void* reserve;
    std::size_t references;
    const Type* exceptionType;
    void (*destroy)(void*);
    void (*unexpected)();
    void (*terminate)();
    void* next;
    int handlerCount, handlerSwitchValue;
    const void* actionRecord;
    const void* languageData;
    void* catchTemporary;
    void* adjusted;
    _Unwind_Exception header;
    // the thrown object and this file's own fields
    void* object;
    Type type;
    _Unwind_Exception* original;
};

static_assert(offsetof(Twin, header) == 96 && offsetof(Twin, object) == 128);

std::mutex lock;
std::list<Twin*> flying;

template <class Condition>
Twin* findTwin(Condition condition) {
    const std::scoped_lock locked(lock);
    for (Twin* twin : flying) {
        if (condition(*twin)) {
            return twin;
        }
    }
    return nullptr;
}

Twin* twinWithHeader(const _Unwind_Exception* header) {
    return findTwin([header](const Twin& twin) { return &twin.header == header; });
}

// Called when the program has handled the exception. Its library frees the twin's memory.
void destroyTwin(void* object) {
    auto* twin = reinterpret_cast<Twin*>(static_cast<char*>(object) - offsetof(Twin, object));
    {
        const std::scoped_lock locked(lock);
        flying.remove(twin);
    }
    releaseObject(twin->object);
    _Unwind_DeleteException(twin->original);
}

Twin* makeTwin(_Unwind_Exception* original) {
    void* memory = std::aligned_alloc(16, (sizeof(Twin) + 15) / 16 * 16);
    auto* twin = new (memory) Twin{};
    twin->object = *reinterpret_cast<void**>(original + 1);
    // A Mac retains the object while the exception is in flight.
    retainObject(twin->object);
    twin->references = 1;
    twin->type = {&typeFunctions[2], object_getClassName(twin->object),
                  classOfObject(twin->object)};
    twin->exceptionType = &twin->type;
    twin->destroy = destroyTwin;
    twin->unexpected = std::abort;
    twin->terminate = systemsTerminate;
    twin->header.exception_class = clangCpp;
    twin->original = original;
    const std::scoped_lock locked(lock);
    flying.push_back(twin);
    return twin;
}

Twin* twinOf(_Unwind_Exception* original) {
    Twin* twin = findTwin([original](const Twin& known) { return known.original == original; });
    if (twin == nullptr) {
        twin = makeTwin(original);
    }
    // The unwinder's own state between its two phases.
    twin->header.private_1 = original->private_1;
    twin->header.private_2 = original->private_2;
    return twin;
}

using Personality = _Unwind_Reason_Code (*)(int, _Unwind_Action, _Unwind_Exception_Class,
                                            _Unwind_Exception*, _Unwind_Context*);
Personality programsOwn = nullptr;

_Unwind_Reason_Code personality(int version, _Unwind_Action actions, _Unwind_Exception_Class kind,
                                _Unwind_Exception* exception, _Unwind_Context* context) {
    if (kind == gnuObjects) {
        return programsOwn(version, actions, clangCpp, &twinOf(exception)->header, context);
    }
    return programsOwn(version, actions, kind, exception, context);
}

namespace darwin {

// Called at the end of a cleanup in the program's frames: goes on with the original.
[[noreturn]] void unwindResume(_Unwind_Exception* exception) {
    if (Twin* twin = twinWithHeader(exception)) {
        twin->original->private_1 = exception->private_1;
        twin->original->private_2 = exception->private_2;
        exception = twin->original;
    }
    _Unwind_Resume(exception);
    std::abort();
}

TerminateHandler setTerminate(TerminateHandler handler) {
    return systemsTerminate.exchange(handler == nullptr ? std::abort : handler);
}

_Unwind_Reason_Code unwindRaiseException(_Unwind_Exception* exception) {
    if (const Twin* twin = twinWithHeader(exception)) { // rethrown
        objc_exception_throw(twin->object);
    }
    return _Unwind_RaiseException(exception);
}

} // namespace darwin

} // namespace

std::uintptr_t wrappedPersonality(std::uintptr_t own) {
    const auto function = reinterpret_cast<Personality>(own);
    if (programsOwn != nullptr && programsOwn != function) {
        fail("the program has more than one personality");
    }
    programsOwn = function;
    return reinterpret_cast<std::uintptr_t>(&personality);
}

Symbols objectExceptionSymbols() {
    static const Symbol symbols[] = {
        {"__Unwind_Resume", address(darwin::unwindResume)},
        {"__Unwind_RaiseException", address(darwin::unwindRaiseException)},
        {"__ZSt13set_terminatePFvvE", address(darwin::setTerminate)},
        {"_OBJC_EHTYPE_id", &typeOfAnyObject},
    };
    return symbols;
}

} // namespace mac
