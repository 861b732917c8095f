#include "Showroom/Service/Scenario.h"

#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/NSLog.h"

#include <algorithm>

namespace showroom {

using namespace platform;

namespace {

template <typename Choice> struct Name {
    const char* text;
    Choice choice;
};

constexpr Name<mv::MVBroadcastStatus> statuses[] = { { "live", mv::MVBroadcastStatus::live },
    { "upcoming", mv::MVBroadcastStatus::upcoming }, { "completed", mv::MVBroadcastStatus::completed } };
constexpr Name<mv::MVCurrentUserType> roles[] = { { "user", mv::MVCurrentUserType::user },
    { "guest", mv::MVCurrentUserType::guest }, { "anonymous", mv::MVCurrentUserType::anonymous } };
constexpr Name<CannedAnswer> answers[]
    = { { "success", CannedAnswer::success }, { "failure", CannedAnswer::failure }, { "absent", CannedAnswer::absent },
          { "twice", CannedAnswer::twice }, { "never", CannedAnswer::never }, { "offMainThread", CannedAnswer::offMainThread } };
constexpr Name<bool> starts[] = { { "watching", true }, { "launch", false } };
constexpr const char* operationNames[]
    = { "getBroadcast", "getBroadcasts", "createGuestUser", "startWatching", "stopWatching", "startWatchingBroadcastConversation",
          "stopWatchingBroadcastConversation", "playVideoStream", "loadChatMessages", "sendMessage", "addReaction" };
constexpr const char* eventKinds[] = { "message", "deletion", "watchers", "reaction", "feature", "unfeature", "started",
    "completed", "streamOffline", "streamOnline", "streamError", "error" };

// Reads one object of the file and keeps book of what is wrong in it.
class Reader {
public:
    Reader(const JSONValue& object, std::string path, std::vector<std::string>& faults)
        : object(object)
        , path(std::move(path))
        , faults(faults)
    {
    }

    bool isObject() const { return object.object() != nullptr; }
    const JSONValue& operator[](const char* key) const { return object[key]; }

    void fault(const std::string& what) const { faults.push_back(path + ": " + what); }
    void fault(const char* key, const std::string& what) const { faults.push_back(path + "." + key + ": " + what); }

    std::optional<std::string> text(const char* key) const { return read<std::string>(key, &JSONValue::text, "a text"); }
    std::optional<double> number(const char* key) const { return read<double>(key, &JSONValue::number, "a number"); }
    std::optional<bool> flag(const char* key) const { return read<bool>(key, &JSONValue::boolean, "true or false"); }
    std::optional<int> count(const char* key) const
    {
        const auto value = read<std::int64_t>(key, &JSONValue::integer, "a whole number");
        return value ? std::optional<int>(int(std::clamp<std::int64_t>(*value, -1'000'000'000, 1'000'000'000))) : std::nullopt;
    }
    std::string identifier() const
    {
        const auto id = text("id").value_or("");
        if (id.empty())
            fault("has no \"id\"");
        return id;
    }
    template <typename Choice, std::size_t count>
    std::optional<Choice> choice(const char* key, const Name<Choice> (&names)[count]) const
    {
        const auto value = text(key);
        if (!value)
            return std::nullopt;
        std::string all;
        for (const auto& name : names) {
            if (*value == name.text)
                return name.choice;
            all += std::string(all.empty() ? "" : ", ") + name.text;
        }
        fault(key, "\"" + *value + "\" is none of " + all);
        return std::nullopt;
    }

    // Calls back for every object of the list under that key.
    template <typename Visit> void each(const char* key, const Visit& visit) const
    {
        const JSONValue& list = object[key];
        if (list.isNull())
            return;
        if (!list.array())
            return fault(key, "is not a list");
        for (std::size_t i = 0; i < list.array()->size(); ++i) {
            const Reader entry(list[i], path + "." + key + "[" + std::to_string(i) + "]", faults);
            entry.isObject() ? visit(entry) : entry.fault("is not an object");
        }
    }
    std::vector<std::string> texts(const char* key) const
    {
        std::vector<std::string> found;
        const auto* list = object[key].array();
        for (std::size_t i = 0; list && i < list->size(); ++i) {
            const auto* entry = (*list)[i].textPointer();
            entry ? found.push_back(*entry) : fault(key, "entry " + std::to_string(i) + " is not a text");
        }
        return found;
    }

    const JSONValue& object;
    const std::string path;
    std::vector<std::string>& faults;

private:
    template <typename Value, typename Get> std::optional<Value> read(const char* key, Get get, const char* wanted) const
    {
        const JSONValue& member = object[key];
        auto value = (member.*get)();
        if (!value && !member.isNull())
            fault(key, std::string("is not ") + wanted);
        return value;
    }
};

std::optional<std::string> address(const Reader& reader, const char* key, const std::string& mediaBase)
{
    const auto name = reader.text(key);
    if (!name)
        return std::nullopt;
    const auto whole = name->find("://") == std::string::npos ? mediaBase + *name : *name;
    if (!URL::parse(whole)) {
        reader.fault(key, "\"" + *name + "\" is no address");
        return std::nullopt;
    }
    return whole;
}

std::optional<URL> url(const std::optional<std::string>& address) { return address ? URL::parse(*address) : std::nullopt; }

OperationScript readOperation(const Reader& reader)
{
    OperationScript script;
    script.answer = reader.choice("answer", answers).value_or(script.answer);
    script.latency = std::max(reader.number("latency").value_or(script.latency), 0.0);
    script.echo = reader.number("echo");
    script.times = reader.count("times").value_or(script.times);
    const Reader error(reader["error"], reader.path + ".error", reader.faults);
    if (error.isObject())
        script.error = { error.text("code"), error.text("message"), error.count("status") };
    return script;
}

ScenarioBroadcast readBroadcast(const Reader& reader, const Scenario& scenario, const std::string& mediaBase)
{
    ScenarioBroadcast show;
    show.id = reader.identifier();
    show.title = reader.text("title");
    show.description = reader.text("description");
    show.status = reader.choice("status", statuses).value_or(show.status);
    show.startsIn = reader.number("startsIn");
    show.endsIn = reader.number("endsIn");
    show.banner = address(reader, "banner", mediaBase);
    show.bannerVideo = address(reader, "bannerVideo", mediaBase);
    show.recording = address(reader, "recording", mediaBase);
    show.stream = address(reader, "stream", mediaBase);
    show.recordingAllowed = reader.flag("recordingAllowed");
    show.watchers = reader.count("watchers");
    show.conversation = reader.text("conversation");
    show.guestsMayChat = reader.flag("guestsMayChat").value_or(true);
    show.anonymousMayWatch = reader.flag("anonymousMayWatch").value_or(true);
    for (const auto& host : reader.texts("hosts"))
        scenario.users.contains(host) ? show.hosts.push_back(host) : reader.fault("hosts", "nobody is \"" + host + "\"");
    reader.each("products", [&](const Reader& entry) {
        const auto id = entry.identifier();
        if (scenario.products.contains(id))
            show.products.push_back({ id, entry.flag("featured").value_or(false) });
        else
            entry.fault("there is no product \"" + id + "\"");
    });
    reader.each("messages", [&](const Reader& entry) {
        const auto user = entry.text("user").value_or("");
        if (!scenario.users.contains(user))
            return entry.fault("nobody is \"" + user + "\"");
        show.messages.push_back({ entry.text("id").value_or(show.id + "-" + std::to_string(show.messages.size())), user,
            entry.text("text").value_or(""), entry.number("ago").value_or(0), entry.flag("deleted").value_or(false) });
    });
    return show;
}

ScenarioEvent readEvent(const Reader& reader)
{
    ScenarioEvent event;
    event.at = std::max(reader.number("at").value_or(0), 0.0);
    event.sinceWatching = reader.choice("since", starts).value_or(true);
    event.kind = reader.text("event").value_or("");
    event.broadcast = reader.text("broadcast").value_or("");
    event.detail = reader.object;
    return event;
}

template <std::size_t count> bool isOneOf(const std::string& text, const char* const (&names)[count])
{
    return std::find(std::begin(names), std::end(names), text) != std::end(names);
}

} // namespace

Scenario Scenario::parse(std::string_view text, const std::string& mediaBase, std::vector<std::string>& faults)
{
    Scenario scenario;
    std::string problem;
    const auto json = JSONValue::parse(text, &problem);
    if (!json || !json->object()) {
        faults.push_back(json ? "is not an object" : problem);
        return scenario;
    }
    const Reader file(*json, "scenario", faults);
    scenario.store = file.text("store").value_or("");
    scenario.role = file.choice("role", roles).value_or(scenario.role);
    scenario.viewer = file.text("viewer").value_or("");
    file.each("users", [&](const Reader& entry) {
        if (const auto id = entry.identifier(); !id.empty())
            scenario.users[id] = { id, entry.text("name") };
    });
    file.each("products", [&](const Reader& entry) {
        if (const auto id = entry.identifier(); !id.empty())
            scenario.products[id] = { id, entry.text("title"), url(address(entry, "thumbnail", mediaBase)),
                url(address(entry, "url", mediaBase)), entry.flag("featured") };
    });
    file.each("broadcasts", [&](const Reader& entry) {
        auto show = readBroadcast(entry, scenario, mediaBase);
        if (!show.id.empty())
            scenario.broadcasts.push_back(std::move(show));
    });
    if (const auto* operations = file["operations"].object()) {
        for (const auto& [name, script] : *operations) {
            const Reader entry(script, "scenario.operations." + name, faults);
            if (isOneOf(name, operationNames))
                scenario.operations[name] = readOperation(entry);
            else
                entry.fault("is no operation of the service");
        }
    }
    file.each("timeline", [&](const Reader& entry) {
        auto event = readEvent(entry);
        if (isOneOf(event.kind, eventKinds))
            scenario.timeline.push_back(std::move(event));
        else
            entry.fault("event", "\"" + event.kind + "\" is no event of the service");
    });
    std::stable_sort(
        scenario.timeline.begin(), scenario.timeline.end(), [](const auto& a, const auto& b) { return a.at < b.at; });
    return scenario;
}

Scenario Scenario::load(const std::string& path, const std::string& mediaBase)
{
    const auto content = FileSystem::real().read(path);
    if (!content) {
        NSLog("scenario \"" + path + "\" not read: no such file, or it cannot be read");
        return {};
    }
    std::vector<std::string> faults;
    auto scenario = parse(textView(*content), mediaBase, faults);
    for (const auto& fault : faults)
        NSLog("scenario \"" + path + "\": " + fault);
    return scenario;
}

} // namespace showroom
