#pragma once

#include "Platform/Foundation/JSON.h"
#include "Service/MVRecords.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace showroom {

// A scenario file tells the canned service everything: who and what there is, how each operation answers, and what happens when.
// Showroom/Service/README.md describes the file.

// How an operation of the service answers.
enum class CannedAnswer {
    success,
    failure, // with the script's error
    absent, // neither a result nor an error
    twice, // the success, and at once again
    never,
    offMainThread, // the success, on a thread of its own
};

struct OperationScript {
    CannedAnswer answer = CannedAnswer::success;
    double latency = 0.15; // seconds until the answer
    mv::MVApiError error { .errorCode = "canned_failure", .errorMessage = "The scenario wants this to fail.", .statusCode = 503 };
    std::optional<double> echo; // seconds until the sent message or reaction comes back as an event; absent: with the answer
    int times = -1; // how many calls follow this script, the later ones succeed; -1: all
};

struct ScenarioMessage {
    std::string id;
    std::string user; // a user's identifier
    std::string text;
    double ago = 0; // seconds before the launch
    bool deleted = false;
};

struct ScenarioProduct {
    std::string id; // of the scenario's product list
    bool featured = false;
};

struct ScenarioBroadcast {
    std::string id;
    std::optional<std::string> title, description;
    mv::MVBroadcastStatus status = mv::MVBroadcastStatus::upcoming;
    std::optional<double> startsIn, endsIn; // seconds from the launch, negative in the past
    std::optional<std::string> banner, bannerVideo, recording, stream; // addresses, or names in the media folder
    std::optional<bool> recordingAllowed;
    std::optional<int> watchers;
    std::optional<std::string> conversation;
    std::vector<std::string> hosts; // users' identifiers, the presenter first
    std::vector<ScenarioProduct> products;
    std::vector<ScenarioMessage> messages; // oldest first
    bool guestsMayChat = true;
    bool anonymousMayWatch = true;
};

// Something that the service tells by itself.
struct ScenarioEvent {
    double at = 0; // seconds after the launch or after a viewer began to watch
    bool sinceWatching = true;
    std::string kind; // "message", "deletion", "watchers", "reaction", "feature", "unfeature", "started", "completed", ...
    std::string broadcast; // identifier
    platform::JSONValue detail; // the event's whole object in the file
};

struct Scenario {
    std::string store; // host name for share links
    mv::MVCurrentUserType role = mv::MVCurrentUserType::anonymous;
    std::string viewer; // the signed-in user's identifier, if any
    std::map<std::string, mv::MVUser> users;
    std::map<std::string, mv::MVProduct> products;
    std::vector<ScenarioBroadcast> broadcasts;
    std::map<std::string, OperationScript> operations; // by the operation's name
    std::vector<ScenarioEvent> timeline; // by time

    // What stands in the text. Names of pictures and videos become addresses below `mediaBase` (ends with "/"). Every fault is
    // one line in `faults` ("broadcasts[2].status: \"soon\" is none of live, upcoming, completed"), and what is faulty is left
    // out.
    static Scenario parse(std::string_view text, const std::string& mediaBase, std::vector<std::string>& faults);
    // From a file; its faults go to the console, one line each. Empty when the file cannot be read.
    static Scenario load(const std::string& path, const std::string& mediaBase);
};

} // namespace showroom
