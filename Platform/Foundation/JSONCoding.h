#pragma once

#include "Platform/Foundation/Data.h"
#include "Platform/Foundation/JSON.h"

#include <cmath>
#include <concepts>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace platform {

// A type is codable when it lists its coded fields once; it must have a plain constructor:
//
//     struct Event {
//         std::string identifier;
//         std::optional<int> seats;
//
//         static constexpr auto codingKeys()
//         {
//             return std::tuple { codingKey("identifier", &Event::identifier), codingKey("seats", &Event::seats) };
//         }
//     };
//
// Fields may be booleans, numbers, texts, codable types, and optionals, shared pointers, vectors and text-keyed maps of those.
// An empty optional or pointer is left out when encoding; absent or null when decoding, it stays empty. Any other field must be
// there with its type, or the whole value does not decode. Members without a field are ignored.
template <typename Owner, typename Field> struct CodingKey {
    const char* name;
    Field Owner::*field;
};
template <typename Owner, typename Field> constexpr CodingKey<Owner, Field> codingKey(const char* name, Field Owner::*field)
{
    return { name, field };
}

template <typename T>
concept Codable = requires
{
    T::codingKeys();
};

namespace coding {

template <typename T> struct Coder; // encode: nothing when it has no JSON form (a number that is not finite)

template <typename T> constexpr bool mayBeAbsent = false;
template <typename T> constexpr bool mayBeAbsent<std::optional<T>> = true;
template <typename T> constexpr bool mayBeAbsent<std::shared_ptr<T>> = true;

template <> struct Coder<bool> {
    static std::optional<JSONValue> encode(bool value) { return JSONValue(value); }
    static std::optional<bool> decode(const JSONValue& json) { return json.boolean(); }
};

template <std::integral T> struct Coder<T> {
    static std::optional<JSONValue> encode(T value)
    {
        if (!std::in_range<std::int64_t>(value))
            return std::nullopt;
        return JSONValue(static_cast<std::int64_t>(value));
    }
    static std::optional<T> decode(const JSONValue& json)
    {
        const auto value = json.integer();
        if (!value || !std::in_range<T>(*value))
            return std::nullopt;
        return static_cast<T>(*value);
    }
};

template <std::floating_point T> struct Coder<T> {
    static std::optional<JSONValue> encode(T value)
    {
        if (!std::isfinite(value))
            return std::nullopt;
        return JSONValue(static_cast<double>(value));
    }
    static std::optional<T> decode(const JSONValue& json)
    {
        const auto value = json.number();
        return value ? std::optional<T>(static_cast<T>(*value)) : std::nullopt;
    }
};

template <> struct Coder<std::string> {
    static std::optional<JSONValue> encode(const std::string& value) { return JSONValue(value); }
    static std::optional<std::string> decode(const JSONValue& json) { return json.text(); }
};

template <typename T> struct Coder<std::optional<T>> {
    static std::optional<JSONValue> encode(const std::optional<T>& value)
    {
        return value ? Coder<T>::encode(*value) : JSONValue();
    }
    static std::optional<std::optional<T>> decode(const JSONValue& json)
    {
        if (json.isNull())
            return std::optional<T>();
        auto value = Coder<T>::decode(json);
        return value ? std::optional<std::optional<T>>(std::move(value)) : std::nullopt;
    }
};

template <typename T> struct Coder<std::shared_ptr<T>> {
    static std::optional<JSONValue> encode(const std::shared_ptr<T>& value)
    {
        return value ? Coder<T>::encode(*value) : JSONValue();
    }
    static std::optional<std::shared_ptr<T>> decode(const JSONValue& json)
    {
        if (json.isNull())
            return std::shared_ptr<T>();
        auto value = Coder<T>::decode(json);
        return value ? std::optional(std::make_shared<T>(std::move(*value))) : std::nullopt;
    }
};

template <typename T> struct Coder<std::vector<T>> {
    static std::optional<JSONValue> encode(const std::vector<T>& values)
    {
        JSONArray array;
        array.reserve(values.size());
        for (const T& value : values) {
            auto element = Coder<T>::encode(value);
            if (!element)
                return std::nullopt;
            array.push_back(std::move(*element));
        }
        return JSONValue(std::move(array));
    }
    static std::optional<std::vector<T>> decode(const JSONValue& json)
    {
        if (!json.array())
            return std::nullopt;
        std::vector<T> values;
        values.reserve(json.array()->size());
        for (const JSONValue& element : *json.array()) {
            auto value = Coder<T>::decode(element);
            if (!value)
                return std::nullopt;
            values.push_back(std::move(*value));
        }
        return values;
    }
};

template <typename T> struct Coder<std::map<std::string, T>> {
    static std::optional<JSONValue> encode(const std::map<std::string, T>& values)
    {
        JSONObject object;
        for (const auto& [key, value] : values) {
            auto element = Coder<T>::encode(value);
            if (!element)
                return std::nullopt;
            object.append(key, std::move(*element));
        }
        return JSONValue(std::move(object));
    }
    static std::optional<std::map<std::string, T>> decode(const JSONValue& json)
    {
        if (!json.object())
            return std::nullopt;
        std::map<std::string, T> values;
        for (const auto& [key, element] : *json.object()) {
            auto value = Coder<T>::decode(element);
            if (!value)
                return std::nullopt;
            values.insert_or_assign(key, std::move(*value));
        }
        return values;
    }
};

template <Codable T> struct Coder<T> {
    static std::optional<JSONValue> encode(const T& value)
    {
        JSONObject object;
        bool complete = true;
        forEachField(value, [&](const char* name, const auto& field) {
            auto json = Coder<std::decay_t<decltype(field)>>::encode(field);
            if (!json)
                complete = false;
            else if (!(mayBeAbsent<std::decay_t<decltype(field)>> && json->isNull()))
                object.append(name, std::move(*json));
        });
        return complete ? std::optional<JSONValue>(std::move(object)) : std::nullopt;
    }
    static std::optional<T> decode(const JSONValue& json)
    {
        if (!json.object())
            return std::nullopt;
        T value;
        bool complete = true;
        forEachField(value, [&](const char* name, auto& field) {
            auto decoded = Coder<std::decay_t<decltype(field)>>::decode(json[name]);
            if (decoded)
                field = std::move(*decoded);
            else
                complete = false;
        });
        return complete ? std::optional<T>(std::move(value)) : std::nullopt;
    }

private:
    template <typename Value, typename Visit> static void forEachField(Value& value, const Visit& visit)
    {
        std::apply([&](const auto&... key) { (visit(key.name, value.*key.field), ...); }, T::codingKeys());
    }
};

} // namespace coding

class JSONEncoder {
public:
    // Nothing when a number in it is not finite or does not fit.
    template <typename T> std::optional<Data> encode(const T& value) const
    {
        const auto json = coding::Coder<T>::encode(value);
        return json ? std::optional<Data>(dataFromText(json->print())) : std::nullopt;
    }
};

class JSONDecoder {
public:
    // Nothing when the data is no JSON document or does not have the type's form.
    template <typename T> std::optional<T> decode(const Data& data) const { return decode<T>(textView(data)); }
    template <typename T> std::optional<T> decode(std::string_view text) const
    {
        const auto json = JSONValue::parse(text);
        return json ? coding::Coder<T>::decode(*json) : std::nullopt;
    }
};

} // namespace platform
