#include "Platform/Foundation/UserDefaults.h"

#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/JSON.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Text.h"

#include <cmath>

namespace platform {

namespace {

// The file is one object with the members "format" and "values". A value is written so that its type comes back with it: texts,
// integers and booleans as they are, {"number": 1.5} and {"data": "base64"}.
constexpr const char* format = "mivora user defaults 1";

std::optional<std::string>& chosenStandardPath()
{
    static std::optional<std::string> path;
    return path;
}

JSONValue encoded(const UserDefaults::Value& value)
{
    if (const auto* flag = std::get_if<bool>(&value))
        return *flag;
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        return *integer;
    if (const auto* number = std::get_if<double>(&value))
        return JSONObject { { "number", *number } };
    if (const auto* data = std::get_if<Data>(&value))
        return JSONObject { { "data", base64(*data) } };
    return std::get<std::string>(value);
}

std::optional<UserDefaults::Value> decoded(const JSONValue& json)
{
    if (const auto flag = json.boolean())
        return *flag;
    if (const auto text = json.text())
        return *text;
    if (const auto integer = json.integer())
        return *integer;
    if (const auto number = json["number"].number())
        return *number;
    const auto text = json["data"].text();
    if (auto data = text ? dataFromBase64(*text) : std::nullopt)
        return std::move(*data);
    return std::nullopt;
}

std::optional<std::map<std::string, UserDefaults::Value>> decodedFile(const Data& content)
{
    const auto json = JSONValue::parse(textView(content));
    const JSONObject* const members = json ? (*json)["values"].object() : nullptr;
    if (!members || (*json)["format"].text() != format)
        return std::nullopt;
    std::map<std::string, UserDefaults::Value> values;
    for (const auto& [key, member] : *members) {
        auto value = decoded(member);
        if (!value)
            return std::nullopt;
        values.insert_or_assign(key, std::move(*value));
    }
    return values;
}

} // namespace

UserDefaults::UserDefaults(std::string filePath, FileSystem& fileSystem)
    : path(std::move(filePath))
    , files(fileSystem)
{
}

UserDefaults& UserDefaults::standard()
{
    static auto* const defaults
        = new UserDefaults(chosenStandardPath().value_or(joinPath(Folders::data(), "UserDefaults.json")), FileSystem::real());
    return *defaults;
}

void UserDefaults::setStandardPath(std::string path) { chosenStandardPath() = std::move(path); }

std::optional<UserDefaults::Value> UserDefaults::object(const std::string& key) const
{
    load();
    const auto entry = values.find(validUTF8(key));
    return entry == values.end() ? std::nullopt : std::optional(entry->second);
}

std::optional<double> UserDefaults::number(const std::string& key) const
{
    if (const auto whole = integer(key))
        return static_cast<double>(*whole);
    return typed<double>(key);
}

void UserDefaults::set(const std::string& key, Value value)
{
    load();
    if (const auto* number = std::get_if<double>(&value); number && !std::isfinite(*number)) {
        NSLog("user defaults: \"" + key + "\" not stored, the number is not finite");
        return;
    }
    if (auto* text = std::get_if<std::string>(&value))
        *text = validUTF8(*text);
    const auto [entry, isNew] = values.try_emplace(validUTF8(key));
    if (!isNew && entry->second == value)
        return;
    entry->second = std::move(value);
    save();
}

void UserDefaults::removeObject(const std::string& key)
{
    load();
    if (values.erase(validUTF8(key)) > 0)
        save();
}

void UserDefaults::load() const
{
    if (loaded)
        return;
    loaded = true;
    if (!files.exists(path))
        return;
    const auto content = files.read(path);
    if (auto read = content ? decodedFile(*content) : std::nullopt) {
        values = std::move(*read);
        return;
    }
    const std::string what = "user defaults \"" + path + "\" " + (content ? "are damaged" : "cannot be read");
    const auto aside = setFileAside(files, path);
    writable = aside.has_value();
    NSLog(aside ? what + ": set aside as \"" + *aside + "\"" : what + " nor set aside: changes are kept in memory only");
}

void UserDefaults::save()
{
    if (!writable)
        return; // said when it was read
    JSONObject members;
    for (const auto& [key, value] : values)
        members.append(key, encoded(value));
    const JSONValue file = JSONObject { { "format", format }, { "values", std::move(members) } };
    if (!replaceFile(files, path, dataFromText(file.print(JSONStyle::indented))))
        NSLog("user defaults not saved: \"" + path + "\" cannot be written");
}

} // namespace platform
