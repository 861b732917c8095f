#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

class JSONValue;
using JSONMember = std::pair<std::string, JSONValue>; // key, value
using JSONArray = std::vector<JSONValue>;

// Members in the order they were added or read. Meant for records: a look-up goes through the members one by one.
class JSONObject {
public:
    JSONObject() = default;
    JSONObject(std::initializer_list<JSONMember> list); // for a literal: { { "id", 1 }, ... }
    explicit JSONObject(std::vector<JSONMember> list); // of different keys

    const JSONValue* find(std::string_view key) const; // null when absent
    void set(std::string key, JSONValue value); // replaces the member of that key in its place
    void append(std::string key, JSONValue value); // for a key known to be new

    bool empty() const;
    std::size_t size() const;
    std::vector<JSONMember>::const_iterator begin() const;
    std::vector<JSONMember>::const_iterator end() const;
    bool operator==(const JSONObject& other) const;

private:
    std::vector<JSONMember> members;
};

enum class JSONStyle { compact, indented };

// One JSON value. A number written without fraction or exponent that fits 64 bits is an integer, any other a double.
class JSONValue {
public:
    // Documents from outside beyond these are refused.
    static constexpr std::size_t maximumBytes = 64u << 20;
    static constexpr int maximumDepth = 200;

    JSONValue() = default; // null
    JSONValue(std::nullptr_t) { }
    template <std::same_as<bool> T> // so that no pointer becomes a boolean
    JSONValue(T value)
        : content(value)
    {
    }
    template <std::integral T>
    requires(!std::same_as<T, bool>) JSONValue(T value) // beyond 64 signed bits: the nearest double
    {
        if (std::in_range<std::int64_t>(value))
            content = static_cast<std::int64_t>(value);
        else
            content = static_cast<double>(value);
    }
    JSONValue(double value)
        : content(value)
    {
    }
    JSONValue(const char* text)
        : content(std::string(text))
    {
    }
    JSONValue(std::string_view text)
        : content(std::string(text))
    {
    }
    JSONValue(std::string text)
        : content(std::move(text))
    {
    }
    JSONValue(JSONArray values)
        : content(std::move(values))
    {
    }
    JSONValue(JSONObject members)
        : content(std::move(members))
    {
    }

    // Nothing when the text is not one JSON document; `problem` then says why, with line and column. Invalid UTF-8 reads as
    // U+FFFD; of equal keys the last one wins.
    static std::optional<JSONValue> parse(std::string_view text, std::string* problem = nullptr);
    // Doubles keep every digit that tells them apart, whole ones are written without a fraction; one that is not finite is null.
    std::string print(JSONStyle style = JSONStyle::compact) const;

    bool isNull() const { return std::holds_alternative<std::monostate>(content); }
    std::optional<bool> boolean() const { return get<bool>(); }
    bool isInteger() const { return std::holds_alternative<std::int64_t>(content); }
    std::optional<std::int64_t> integer() const; // a double only when it is whole and fits
    std::optional<double> number() const; // an integer too
    std::optional<std::string> text() const { return get<std::string>(); }
    const std::string* textPointer() const { return std::get_if<std::string>(&content); }
    const JSONArray* array() const { return std::get_if<JSONArray>(&content); }
    const JSONObject* object() const { return std::get_if<JSONObject>(&content); }

    // The member or element, or null for what is absent or no object or array, so that paths can be written at once.
    const JSONValue& operator[](std::string_view key) const;
    const JSONValue& operator[](const char* key) const { return (*this)[std::string_view(key)]; }
    template <std::integral Index> const JSONValue& operator[](Index index) const
    {
        return std::in_range<std::size_t>(index) ? element(static_cast<std::size_t>(index)) : element(SIZE_MAX);
    }

    bool operator==(const JSONValue& other) const { return content == other.content; }

private:
    const JSONValue& element(std::size_t index) const;
    template <typename T> std::optional<T> get() const
    {
        const T* value = std::get_if<T>(&content);
        return value ? std::optional<T>(*value) : std::nullopt;
    }

    std::variant<std::monostate, bool, std::int64_t, double, std::string, JSONArray, JSONObject> content;
};

} // namespace platform
