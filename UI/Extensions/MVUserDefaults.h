#pragma once

#include "Platform/Foundation/JSONCoding.h"
#include "Platform/Foundation/UserDefaults.h"
#include "Service/MVPlatform.h"

#include <optional>
#include <string>

namespace mv {

// The value stored as JSON under the key. Absent for a missing key, an object that is not binary data, and data that does not
// decode.
template <typename Value>
std::optional<Value> get(const UserDefaults& defaults, const std::string& key, const JSONDecoder& decoder = {})
{
    const auto data = defaults.data(key);
    return data ? decoder.decode<Value>(*data) : std::nullopt;
}

// Stores the value as JSON in binary data; a value that cannot be encoded stores nothing.
template <typename Value>
void set(UserDefaults& defaults, const Value& object, const std::string& key, const JSONEncoder& encoder = {})
{
    if (auto data = encoder.encode(object))
        defaults.set(key, std::move(*data));
}

} // namespace mv
