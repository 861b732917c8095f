#pragma once

#include "Platform/Foundation/ModuleLoader.h"

// Exports the module's one object, made at the first call. To be written once in a module, outside of namespaces. See
// ModuleLoader.h.
#define MIVORA_EXPORT_MODULE(Interface, Implementation)                                                                          \
    extern "C" __attribute__((visibility("default"))) platform::ModuleExport mivoraModule()                                      \
    {                                                                                                                            \
        static Implementation object;                                                                                            \
        return { Interface::moduleInterface, static_cast<Interface*>(&object) };                                                 \
    }                                                                                                                            \
    static_assert(true)
