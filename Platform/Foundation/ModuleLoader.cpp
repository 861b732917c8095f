#include "Platform/Foundation/ModuleLoader.h"

#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/NSLog.h"

#include <cstdlib>
#include <dlfcn.h>
#include <map>
#include <mutex>
#include <string_view>

namespace platform {

namespace {

void* open(const std::string& name, const char* interfaceName)
{
    const std::string path = joinPath(modulesFolder(), "mivora_" + name + ".so");
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        const char* const reason = ::dlerror();
        NSLog("module \"" + name + "\" not loaded: " + (reason ? reason : path));
        return nullptr;
    }
    const auto entry = reinterpret_cast<ModuleExport (*)()>(::dlsym(library, "mivoraModule"));
    if (!entry) {
        NSLog("module \"" + name + "\" not loaded: " + path + " exports no mivoraModule");
        return nullptr;
    }
    const ModuleExport exported = entry();
    if (std::string_view(exported.interfaceName) != interfaceName) {
        NSLog("module \"" + name + "\" not loaded: it offers \"" + exported.interfaceName + "\" where \"" + interfaceName
            + "\" is asked for");
        return nullptr;
    }
    return exported.object;
}

} // namespace

void* loadModuleObject(const std::string& name, const char* interfaceName)
{
    static std::mutex mutex;
    static auto* const objects = new std::map<std::string, void*>; // by name and interface; null: tried in vain
    const std::lock_guard lock(mutex);
    const std::string key = name + '/' + interfaceName;
    const auto known = objects->find(key);
    if (known != objects->end())
        return known->second;
    return objects->emplace(key, open(name, interfaceName)).first->second;
}

std::string modulesFolder()
{
    const char* const named = std::getenv("MIVORA_MODULES_DIR");
    return named && *named ? named : joinPath(Folders::executable(), "modules");
}

} // namespace platform
