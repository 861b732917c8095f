#include "Platform/UIKit/ClassName.h"

#include "Platform/Foundation/NSObject.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

namespace platform {

std::string className(const NSObject& object)
{
    const char* mangled = typeid(object).name();
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    std::string name = status == 0 && readable ? readable.get() : mangled;
    const auto colons = name.rfind("::");
    return colons == std::string::npos ? name : name.substr(colons + 2);
}

} // namespace platform
