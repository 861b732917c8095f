#include "Showroom/Scenes/Scene.h"

#include "Platform/Host/HeadlessHost.h"
#include "Showroom/Scenes/GalleryViewController.h"
#include "Showroom/Scenes/TextFieldsViewController.h"
#include "Showroom/Service/CannedService.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "Showroom/Tour/TourText.h"
#include "UI/Utils/MVUtilities.h"

#include <algorithm>

namespace showroom {

namespace {

constexpr double loadLength = 3.2; // seconds until the lists have answered and the pictures have faded in
constexpr double watchLength = 1.5; // after joining, until the video and what is said are there
constexpr const char* joinedShow = "ceramic-hour"; // the newest live one
constexpr double settleLength = 2; // until a page stands still and its pictures are there
constexpr double typedLength = 0.4; // after a key, until the send button is there; the caret is still lit
constexpr double promptLength = 1.6; // until the name prompt and the keyboard stand, and the caret is lit

void showGallery(ShowroomApp& app, HeadlessHost& host)
{
    const auto gallery = make<GalleryViewController>();
    app.show(gallery);
    host.skip(0);
    gallery->startReactions();
    host.skip(2.6); // the first reactions are near the top by then, the last ones just leave
}

// One of the fields is written in, and a word selected.
void showTextFields(ShowroomApp& app, HeadlessHost& host)
{
    app.show(make<TextFieldsViewController>());
    host.skip(0);
    const auto place = findOnScreen(host.device(), "fieldRounded");
    const CGPoint beginning { place->x + 30, place->midY() };
    host.tap(beginning);
    host.skip(promptLength);
    host.tapKeys(tourText("comment"));
    host.tap(beginning);
    host.tap(beginning);
    host.skip(typedLength);
}

void showHome(ShowroomApp& app, HeadlessHost& host)
{
    app.openHome();
    host.skip(1);
}

// What shows that text is tapped, and given time to settle.
void tapText(HeadlessHost& host, const std::string& text, double length = settleLength)
{
    if (const auto place = findOnScreen(host.device(), text))
        host.tap({ place->midX(), place->midY() });
    host.skip(length);
}

void openList(ShowroomApp& app, HeadlessHost& host)
{
    app.openShop();
    host.skip(loadLength);
}

void showList(ShowroomApp& app, HeadlessHost& host) { openList(app, host); }

void showListUpcoming(ShowroomApp& app, HeadlessHost& host)
{
    openList(app, host);
    tapText(host, mv::MVLocalized("mvUpcoming"));
}

void showListPast(ShowroomApp& app, HeadlessHost& host)
{
    openList(app, host);
    tapText(host, mv::MVLocalized("mvPast"));
}

void showListEmpty(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) { scenario.broadcasts.clear(); });
    openList(app, host);
}

void showListLoading(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) { scenario.operations["getBroadcasts"].answer = CannedAnswer::never; });
    app.openShop();
    host.skip(0.95); // the loader's arc is long then
}

void showAlertLogin(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) {
        for (auto& show : scenario.broadcasts)
            show.anonymousMayWatch = false;
    });
    openList(app, host);
    tapText(host, mv::MVLocalized("mvJoinNow"));
}

// The first live show, as it is a few seconds after the viewer has joined it.
void joinShow(ShowroomApp& app, HeadlessHost& host)
{
    openList(app, host);
    if (const auto place = findOnScreen(host.device(), mv::MVLocalized("mvJoinNow")))
        host.tap({ place->midX(), place->midY() });
    host.skip(watchLength);
}

void showLive(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    host.skip(2.5); // until a few messages and reactions have come
}

void showLiveWaiting(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) { scenario.operations["playVideoStream"].answer = CannedAnswer::never; });
    joinShow(app, host);
}

void showLiveChatHidden(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    tapText(host, "chatToggleButton");
}

void showLiveProductsHidden(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    tapText(host, "productsToggleButton");
}

void showLiveLoginBanner(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) {
        for (auto& show : scenario.broadcasts)
            show.guestsMayChat = false;
    });
    joinShow(app, host);
}

void playNow(ShowroomApp& app, const char* kind, const char* key, const char* value)
{
    JSONObject detail;
    detail.append(key, value);
    ScenarioEvent event;
    event.kind = kind;
    event.broadcast = joinedShow;
    event.detail = std::move(detail);
    app.service()->play(event);
}

void showLiveReactions(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    const char* kinds[] = { "heart", "wow", "like", "laugh", "heart", "angry", "heart", "like" };
    for (const char* kind : kinds) {
        playNow(app, "reaction", "reaction", kind);
        host.skip(0.25);
    }
}

void showLiveFeatured(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    playNow(app, "feature", "product", "amphora-vase");
    host.skip(settleLength);
}

// A first comment, typed and not sent yet.
void writeComment(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    tapText(host, "commentTextField");
    host.tapKeys(tourText("comment"));
    host.skip(typedLength);
}

void showLiveKeyboard(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    tapText(host, "commentTextField");
}

void showLiveTyping(ShowroomApp& app, HeadlessHost& host) { writeComment(app, host); }

void showLiveGuestPrompt(ShowroomApp& app, HeadlessHost& host)
{
    writeComment(app, host);
    tapText(host, "sendCommentButton", promptLength);
}

void showLiveReactionPicker(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    tapText(host, "sendReactionButton");
}

void showAlertStreamError(ShowroomApp& app, HeadlessHost& host)
{
    joinShow(app, host);
    playNow(app, "streamError", "message", "The connection to the host was lost.");
    host.skip(settleLength);
}

} // namespace

const std::vector<Scene>& allScenes()
{
    static const std::vector<Scene> scenes = {
        { "gallery", showGallery },
        { "text-fields", showTextFields },
        { "home", showHome },
        { "list-live", showList },
        { "list-upcoming", showListUpcoming },
        { "list-past", showListPast },
        { "list-empty", showListEmpty },
        { "list-loading", showListLoading },
        { "alert-login", showAlertLogin },
        { "live", showLive },
        { "live-waiting", showLiveWaiting },
        { "live-chat-hidden", showLiveChatHidden },
        { "live-products-hidden", showLiveProductsHidden },
        { "live-login-banner", showLiveLoginBanner },
        { "live-keyboard", showLiveKeyboard },
        { "live-typing", showLiveTyping },
        { "live-reaction-picker", showLiveReactionPicker },
        { "live-reactions", showLiveReactions },
        { "live-guest-prompt", showLiveGuestPrompt },
        { "live-featured", showLiveFeatured },
        { "alert-stream-error", showAlertStreamError },
    };
    return scenes;
}

const Scene* findScene(std::string_view name)
{
    const auto& scenes = allScenes();
    const auto found = std::find_if(scenes.begin(), scenes.end(), [&](const Scene& scene) { return scene.name == name; });
    return found == scenes.end() ? nullptr : &*found;
}

} // namespace showroom
