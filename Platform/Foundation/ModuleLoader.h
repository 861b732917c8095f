#pragma once

#include <string>

namespace platform {

// Loadable modules: parts whose libraries are costly to have in the process, opened at their first use.
//
// A box declares, in a header of its own without third-party types, an abstract class with a name and version:
//
//     class IcuModule {
//     public:
//         static constexpr const char* moduleInterface = "icu 1"; // count up with every change below
//         virtual ~IcuModule() = default;
//         virtual std::string something(...) = 0;
//     };
//
// Modules/Icu/ of that box implements it, in one or more .cpp files, and exports the one object once:
//
//     #include "Platform/Foundation/ModuleExport.h"
//     MIVORA_EXPORT_MODULE(platform::IcuModule, Icu) // Icu: a final class derived from IcuModule
//
// The box's CMakeLists.txt says `mivora_module(icu Icu PACKAGES icu-uc icu-i18n)`. A module links no box: it sees headers only,
// so it uses inline code, abstract classes and standard types, returns its failures, and leaves console lines to the caller. The
// box asks
//
//     if (auto* icu = loadModule<IcuModule>("icu")) ...
//
// and has a plain answer ready for when there is none.

// What a module exports. The interface name guards against a module file of another build.
struct ModuleExport {
    const char* interfaceName;
    void* object;
};

// The exported object of modules/mivora_NAME.so, opened at the first call and never closed. Null, after one console line in the
// life of the process, when it is missing or does not fit. Any thread.
void* loadModuleObject(const std::string& name, const char* interfaceName);
template <typename Interface> Interface* loadModule(const std::string& name)
{
    return static_cast<Interface*>(loadModuleObject(name, Interface::moduleInterface));
}

// The folder that holds the modules: the environment's MIVORA_MODULES_DIR, else "modules" beside the executable.
std::string modulesFolder();

} // namespace platform
