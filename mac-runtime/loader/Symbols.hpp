#pragma once

#include <cstdint>
#include <span>

namespace mac {

/// A name that a Mac's library exports (with the C compiler's underscore in front), and what stands
/// for it here.
struct Symbol {
    const char* name;
    const void* value;
};

/// One file's shims.
using Symbols = std::span<const Symbol>;

/// The address of a function, to be put into a table.
template <class Function>
const void* address(Function* function) {
    return reinterpret_cast<const void*>(function);
}

/// What the program's import of that name is bound to: a shim, or this system's own function where
/// both agree in all; 0 where the name is in no list.
[[nodiscard]] std::uintptr_t symbolNamed(const char* name);

// The shims, each with its file.
Symbols accessibilitySymbols(); // frameworks/
Symbols appleScriptSymbols();
Symbols dispatchSymbols();
Symbols foundationSymbols();
Symbols inputSourceSymbols();
Symbols messageSymbols();
Symbols transparencyLayerSymbols();
Symbols windowSymbols();
Symbols environmentSymbols(); // loader/
Symbols threadLocalSymbols();
Symbols objectExceptionSymbols(); // unwind/
Symbols backtraceSymbols();       // system/
Symbols childSymbols();
Symbols errorSymbols();
Symbols fileSymbols();
Symbols folderSymbols();
Symbols localeSymbols();
Symbols memorySymbols();
Symbols openFileSymbols();
Symbols signalSymbols();
Symbols systemControlSymbols();
Symbols systemLogSymbols();
Symbols testProgramSymbols();
Symbols textSymbols();
Symbols threadSymbols();
Symbols timeSymbols();
Symbols volumeSymbols();

} // namespace mac
