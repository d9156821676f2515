// Binding one exported function of a run-time loaded library to a typed function pointer, as
// every make's loader does for each name of its list.
#ifndef TELVARRA_PLATFORM_BINDSYMBOL_H
#define TELVARRA_PLATFORM_BINDSYMBOL_H

#include <type_traits>

#include "platform/DynamicLibrary.h"

namespace telvarra::platform {

// Stores the address of `name` in `pointer`, or null when the library lacks it (so a table bound
// again from a different library never keeps a stale pointer). Returns whether it was found.
template <class Function>
bool bindSymbol(const DynamicLibrary& library, const char* name, Function& pointer) {
    static_assert(
        std::is_pointer_v<Function> && std::is_function_v<std::remove_pointer_t<Function>>,
        "bind to a function pointer");
    // Object-to-function pointer conversion is what dlsym/GetProcAddress results require.
    pointer = reinterpret_cast<Function>(library.symbol(name));
    return pointer != nullptr;
}

}  // namespace telvarra::platform

#endif
