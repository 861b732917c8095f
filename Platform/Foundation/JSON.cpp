#include "Platform/Foundation/JSON.h"

#include "Platform/Foundation/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <unordered_map>

namespace platform {

namespace {

constexpr std::size_t npos = static_cast<std::size_t>(-1);

// Builds our value from the parser's events, so that members keep their order and depth is bounded.
class Builder final : public nlohmann::json_sax<nlohmann::json> {
public:
    JSONValue root;
    std::string problem;

    bool null() override { return add(JSONValue()); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override { return add(value); }
    bool number_float(number_float_t value, const string_t&) override { return add(value); }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(true); }
    bool key(string_t& value) override
    {
        openContainers.back().key = std::move(value);
        return true;
    }
    bool end_object() override
    {
        JSONObject object(withoutRepeatedKeys(std::move(openContainers.back().members)));
        openContainers.pop_back();
        return add(std::move(object));
    }
    bool start_array(std::size_t) override { return open(false); }
    bool end_array() override
    {
        JSONArray array = std::move(openContainers.back().elements);
        openContainers.pop_back();
        return add(std::move(array));
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override
    {
        const std::string_view what = error.what(); // "[json.exception.parse_error.101] parse error at line ..."
        problem = what.substr(what.find("] ") == npos ? 0 : what.find("] ") + 2);
        return false;
    }

private:
    struct Container {
        bool isObject = false;
        std::string key; // of the member to come
        std::vector<JSONMember> members;
        JSONArray elements;
    };

    bool open(bool isObject)
    {
        if (openContainers.size() >= static_cast<std::size_t>(JSONValue::maximumDepth)) {
            problem = "nested more than " + std::to_string(JSONValue::maximumDepth) + " levels deep";
            return false;
        }
        openContainers.emplace_back().isObject = isObject;
        return true;
    }

    bool add(JSONValue value)
    {
        if (openContainers.empty())
            root = std::move(value);
        else if (Container& container = openContainers.back(); container.isObject)
            container.members.emplace_back(std::move(container.key), std::move(value));
        else
            container.elements.push_back(std::move(value));
        return true;
    }

    // Of equal keys the last value stays, in the first one's place.
    static std::vector<JSONMember> withoutRepeatedKeys(std::vector<JSONMember> members)
    {
        std::unordered_map<std::string_view, std::size_t> places; // for large objects only; small ones compare every pair
        constexpr std::size_t small = 12;
        const auto firstPlace = [&](std::size_t i) {
            if (members.size() > small)
                return places.emplace(members[i].first, i).first->second;
            std::size_t place = 0;
            while (members[place].first != members[i].first)
                ++place;
            return place;
        };
        std::vector<std::size_t> repeated;
        for (std::size_t i = 0; i < members.size(); ++i) {
            const std::size_t place = firstPlace(i);
            if (place == i)
                continue;
            members[place].second = std::move(members[i].second);
            repeated.push_back(i);
        }
        if (repeated.empty())
            return members;
        std::vector<JSONMember> unique;
        for (std::size_t i = 0, skipped = 0; i < members.size(); ++i) {
            if (skipped < repeated.size() && repeated[skipped] == i)
                ++skipped;
            else
                unique.push_back(std::move(members[i]));
        }
        return unique;
    }

    std::vector<Container> openContainers;
};

void printText(std::string& out, std::string_view text)
{
    const std::string repaired = isValidUTF8(text) ? std::string() : validUTF8(text);
    out += '"';
    for (const char c : repaired.empty() ? text : std::string_view(repaired)) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) >= 0x20) {
                out += c;
                break;
            }
            constexpr const char* digits = "0123456789abcdef";
            out += "\\u00";
            out += digits[c >> 4];
            out += digits[c & 15];
        }
    }
    out += '"';
}

void printNumber(std::string& out, double value)
{
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    constexpr double exactIntegers = 9007199254740992; // 2^53
    std::array<char, 32> buffer;
    const auto end = value == std::trunc(value) && std::abs(value) < exactIntegers
        ? std::to_chars(buffer.begin(), buffer.end(), static_cast<std::int64_t>(value))
        : std::to_chars(buffer.begin(), buffer.end(), value);
    out.append(buffer.data(), end.ptr);
}

class Printer {
public:
    explicit Printer(JSONStyle printStyle)
        : style(printStyle)
    {
    }

    void print(const JSONValue& value)
    {
        if (const auto flag = value.boolean())
            out += *flag ? "true" : "false";
        else if (const std::string* text = value.textPointer())
            printText(out, *text);
        else if (const JSONArray* array = value.array())
            printAll('[', *array, ']', [this](const JSONValue& element) { print(element); });
        else if (const JSONObject* object = value.object())
            printAll('{', *object, '}', [this](const JSONMember& member) {
                printText(out, member.first);
                out += style == JSONStyle::indented ? ": " : ":";
                print(member.second);
            });
        else if (value.isInteger())
            out += std::to_string(*value.integer());
        else if (const auto number = value.number())
            printNumber(out, *number);
        else
            out += "null";
    }

    std::string out;

private:
    template <typename Items, typename PrintItem>
    void printAll(char open, const Items& items, char close, const PrintItem& printItem)
    {
        out += open;
        ++depth;
        bool first = true;
        for (const auto& item : items) {
            if (!std::exchange(first, false))
                out += ',';
            newLine();
            printItem(item);
        }
        --depth;
        if (!first)
            newLine();
        out += close;
    }

    void newLine()
    {
        if (style == JSONStyle::indented)
            out.append(1, '\n').append(2 * depth, ' ');
    }

    const JSONStyle style;
    std::size_t depth = 0;
};

const JSONValue& absent()
{
    static const JSONValue null;
    return null;
}

} // namespace

JSONObject::JSONObject(std::initializer_list<JSONMember> list)
    : members(list)
{
}

JSONObject::JSONObject(std::vector<JSONMember> list)
    : members(std::move(list))
{
}

const JSONValue* JSONObject::find(std::string_view key) const
{
    const auto member = std::find_if(members.begin(), members.end(), [&](const JSONMember& m) { return m.first == key; });
    return member == members.end() ? nullptr : &member->second;
}

void JSONObject::set(std::string key, JSONValue value)
{
    const auto member = std::find_if(members.begin(), members.end(), [&](const JSONMember& m) { return m.first == key; });
    if (member == members.end())
        append(std::move(key), std::move(value));
    else
        member->second = std::move(value);
}

void JSONObject::append(std::string key, JSONValue value) { members.emplace_back(std::move(key), std::move(value)); }

bool JSONObject::empty() const { return members.empty(); }

std::size_t JSONObject::size() const { return members.size(); }

std::vector<JSONMember>::const_iterator JSONObject::begin() const { return members.begin(); }

std::vector<JSONMember>::const_iterator JSONObject::end() const { return members.end(); }

bool JSONObject::operator==(const JSONObject& other) const { return members == other.members; }

std::optional<JSONValue> JSONValue::parse(std::string_view text, std::string* problem)
{
    Builder builder;
    bool parsed = false;
    if (text.size() > maximumBytes) {
        builder.problem = "longer than " + std::to_string(maximumBytes) + " bytes";
    } else if (text.find('\0') != std::string_view::npos) {
        builder.problem = "a zero byte, which the parser would take for the end";
    } else {
        const std::string repaired = isValidUTF8(text) ? std::string() : validUTF8(text);
        parsed = nlohmann::json::sax_parse(repaired.empty() ? text : std::string_view(repaired), &builder);
    }
    if (problem)
        *problem = builder.problem;
    return parsed ? std::optional(std::move(builder.root)) : std::nullopt;
}

std::string JSONValue::print(JSONStyle style) const
{
    Printer printer(style);
    printer.print(*this);
    return std::move(printer.out);
}

std::optional<std::int64_t> JSONValue::integer() const
{
    const auto* const number = std::get_if<double>(&content);
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (number && *number == std::trunc(*number) && *number >= -limit && *number < limit)
        return static_cast<std::int64_t>(*number);
    return get<std::int64_t>();
}

std::optional<double> JSONValue::number() const
{
    if (isInteger())
        return static_cast<double>(std::get<std::int64_t>(content));
    return get<double>();
}

const JSONValue& JSONValue::operator[](std::string_view key) const
{
    const JSONObject* const members = object();
    const JSONValue* const member = members ? members->find(key) : nullptr;
    return member ? *member : absent();
}

const JSONValue& JSONValue::element(std::size_t index) const
{
    const JSONArray* const elements = array();
    return elements && index < elements->size() ? (*elements)[index] : absent();
}

} // namespace platform
