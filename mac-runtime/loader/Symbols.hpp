#pragma once

#include <cstdint>
#include <span>

namespace mac {

/// A symbol that a macOS library exports (with the C compiler's leading underscore), and the
/// address that is used for it here.
struct Symbol {
    const char* name;
    const void* value;
};

/// One file's shims.
using Symbols = std::span<const Symbol>;

/// A function's address, for such a table.
template <class Function>
const void* address(Function* function) {
    return reinterpret_cast<const void*>(function);
}

/// The address that the program's import of that name is bound to: a shim, or this system's own
/// function where both systems agree; 0 if the name is unknown.
[[nodiscard]] std::uintptr_t symbolNamed(const char* name);

// The shims of each file.
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
