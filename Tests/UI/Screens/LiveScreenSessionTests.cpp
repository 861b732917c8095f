#include "Tests/UI/Screens/LiveScreenStage.h"

namespace mv {
namespace {

using Delegate = MVVideoStreamServiceDelegate;

class LiveScreenStartTest : public LiveScreenStage { };

TEST_F(LiveScreenStartTest, watchesAndTalksAndLoadsAndPlaysInThisOrder)
{
    show->watchersCount = 1234567;
    open();
    EXPECT_EQ(show->calls, startCalls);
    EXPECT_EQ(viewers(), "1234567");
    ASSERT_TRUE(show->stream);
    EXPECT_EQ(show->stream->streamContainerView, part("videoContainerView"));
    EXPECT_EQ(show->stream->streamRenderMode, MVVideoStreamRenderMode::scaleAspectFill);
    EXPECT_EQ(screen->broadcast(), show);
    for (const auto& answer : show->successes)
        answer(false, MVApiError { "E1", "refused", 500 });
    EXPECT_EQ(show->calls, startCalls) << "what the service answers is left to it";
    EXPECT_FALSE(alert());
}

TEST_F(LiveScreenStartTest, watchesNothingWithoutABroadcast)
{
    service->role = Role::anonymous;
    show = nullptr;
    openAlone();
    EXPECT_EQ(viewers(), "0");
    EXPECT_FALSE(find(screen->view(), "loginBannerView"));
    send(message("m1"));
    erase(messages({ "m1" }));
    countViewers(std::nullopt, 5);
    service->publish("reaction", [](MivoraDelegate& d) { d.didNewReactionAddedToBroadcast({}); });
    service->publish("featured", [](MivoraDelegate& d) { d.didBroadcastProductFeaturedUnfeatured({}); });
    video(&Delegate::didRecieveHostVideoStream, "");
    EXPECT_EQ(viewers(), "0");
    EXPECT_TRUE(isWaiting());
    EXPECT_EQ(chat(), Lines {});
    screen->resetOnEventComplete();
    EXPECT_EQ(service->delegateCount(), 0u);
}

TEST_F(LiveScreenStartTest, mayBeGivenItsBroadcastBeforeItIsSeen)
{
    screen = make<Screen>();
    screen->setBroadcast(show);
    EXPECT_EQ(show->calls, startCalls);
    EXPECT_EQ(show->stream->streamContainerView, part("videoContainerView"));
    screen->resetOnEventComplete();
}

TEST_F(LiveScreenStartTest, asksWhoMayNotWriteToLogIn)
{
    for (const Role role : { Role::user, Role::guest, Role::anonymous }) {
        for (const bool guestsMayChat : { false, true }) {
            renewShow();
            service->role = role;
            show->isGuestUserAllowedToChat = guestsMayChat;
            open();
            EXPECT_EQ(bool(find(screen->view(), "loginBannerView")), role != Role::user && !guestsMayChat)
                << int(role) << guestsMayChat;
            EXPECT_EQ(part("commentInputView")->isHidden(), role != Role::user && !guestsMayChat);
            EXPECT_EQ(show->calls, startCalls) << "and shows everything all the same";
            navigation->popViewController(false);
        }
    }
}

class LiveScreenVideoTest : public LiveScreenStage { };

TEST_F(LiveScreenVideoTest, waitsWhileTheHostSendsNothing)
{
    open();
    EXPECT_TRUE(isWaiting());
    const Lines on { "Recieved Host Video Stream" }, off { "Host Stream Got Offline" };
    for (int i = 0; i < 2; ++i) {
        for (int twice = 0; twice < 2; ++twice) {
            video(&Delegate::didRecieveHostVideoStream, "show");
            EXPECT_EQ(takeLines(), on);
            EXPECT_FALSE(isWaiting());
        }
        video(&Delegate::didHostStreamGotOffline, "other");
        video(&Delegate::didHostStreamGotOffline, "");
        EXPECT_EQ(takeLines(), Lines {});
        EXPECT_FALSE(isWaiting());
        for (int twice = 0; twice < 2; ++twice) {
            video(&Delegate::didHostStreamGotOffline, "show");
            EXPECT_EQ(takeLines(), off);
            EXPECT_TRUE(isWaiting());
        }
        video(&Delegate::didRecieveHostVideoStream, "other");
        EXPECT_EQ(takeLines(), Lines {});
        EXPECT_TRUE(isWaiting());
    }
    MVVideoStreamService::instance()->publish("joined", [](Delegate& d) { d.didVideoChannelJoinedSuccessfully("other"); });
    MVVideoStreamService::instance()->publish("left", [](Delegate& d) { d.didVideoChannelLeftSuccessfully("show"); });
    EXPECT_EQ(takeLines(), (Lines { "Video Channel Joined Successfully", "Video Channel Left Successfully" }))
        << "of whatever channel";
}

TEST_F(LiveScreenVideoTest, showsAnErrorOneAtATime)
{
    open();
    show->takeCalls();
    failVideo("The line is down.");
    EXPECT_EQ(alertTexts(), (Lines { "Video Stream Error", "The line is down.", "Ok" }));
    failVideo("Still down.");
    EXPECT_EQ(alertTexts()[1], "The line is down.");
    tapOk();
    EXPECT_FALSE(alert()) << "none behind it";
    EXPECT_EQ(show->calls, Lines {}) << "the session goes on";
    failVideo("Down again.");
    EXPECT_EQ(alertTexts()[1], "Down again.");
    navigation->dismiss(true);
    host.advance(0.05);
    failVideo("And again."); // while the other leaves
    host.advance(1);
    EXPECT_EQ(alertTexts()[1], "And again.");
    complete();
    host.advance(1);
    EXPECT_EQ(alertTexts()[0], "Broadcast Ended") << "in the place of the other";
    tapOk();
    EXPECT_EQ(navigation->topViewController(), shop);
    EXPECT_FALSE(alert());
}

class LiveScreenCloseTest : public LiveScreenStage {
protected:
    std::vector<std::size_t> before = registrations();
};

TEST_F(LiveScreenCloseTest, endsTheSessionAndThenTellsItsOwner)
{
    openAlone();
    const auto listening = registrations();
    EXPECT_EQ(listening[0], before[0] + 1);
    EXPECT_EQ(listening[1], before[1] + 1);
    EXPECT_GT(listening[2], before[2]);
    show->takeCalls();
    std::vector<std::size_t> atTheCall;
    screen->onPressCloseButton = [&] {
        show->calls.push_back("close");
        atTheCall = registrations();
    };
    press("closeButton");
    auto expected = stopCalls;
    expected.push_back("close");
    EXPECT_EQ(show->takeCalls(), expected);
    EXPECT_EQ(atTheCall, (std::vector { before[0], before[1], listening[2] - 1 }));
    countViewers("show", 9);
    video(&Delegate::didRecieveHostVideoStream, "show");
    EXPECT_EQ(viewers(), "0");
    EXPECT_TRUE(isWaiting());
    screen->onPressCloseButton = nullptr;
    press("closeButton");
    EXPECT_EQ(show->calls, Lines {}) << "ended already";
}

TEST_F(LiveScreenCloseTest, mayBeDroppedByItsOwner)
{
    openAlone();
    screen->onPressCloseButton = [this] {
        screen = nullptr;
        navigation->popViewController(false);
    };
    host.tap(middle(*part("closeButton")));
    host.advance(0.5);
    EXPECT_EQ(registrations(), before);
}

TEST_F(LiveScreenCloseTest, endsTheSessionOnceHoweverItIsLeft)
{
    const std::pair<const char*, std::function<void()>> ways[] {
        { "button", [this] { press("closeButton"); } },
        { "button twice",
            [this] {
                const auto at = middle(*part("closeButton"));
                host.tap(at);
                host.tap(at);
            } },
        { "end", [this] { complete(), host.advance(1), tapOk(); } },
        { "end twice", [this] { complete(), complete(), host.advance(1), tapOk(); } },
        { "end and button", [this] { complete(), screen->onPressCloseButton(); } },
        { "swipe", [this] { swipeBack(300); } },
        { "pop", [this] { navigation->popViewController(true); } },
        { "swipe given up, then a pop", [this] { swipeBack(60), navigation->popViewController(true); } },
    };
    for (const auto& [way, leave] : ways) {
        SCOPED_TRACE(way);
        renewShow();
        open();
        answerPage({ "m1" });
        start();
        EXPECT_EQ(show->takeCalls(), startCalls) << "though it has been told twice that the show is on";
        leave();
        host.advance(1);
        EXPECT_EQ(show->takeCalls(), stopCalls);
        EXPECT_EQ(navigation->topViewController(), shop);
        screen = nullptr;
        service->completions.clear();
        EXPECT_EQ(registrations(), before);
    }
}

TEST_F(LiveScreenCloseTest, watchesFromTheStartOfTheShowOn)
{
    show->status = MVBroadcastStatus::upcoming;
    open();
    EXPECT_EQ(show->calls, Lines {});
    start();
    start();
    EXPECT_EQ(show->takeCalls(), startCalls);
    complete();
    EXPECT_EQ(show->takeCalls(), stopCalls);

    renewShow();
    show->status = MVBroadcastStatus::upcoming;
    navigation->popViewController(false);
    open();
    navigation->popViewController(true);
    host.advance(1);
    EXPECT_EQ(show->calls, Lines {}) << "what has not begun is not ended";
}

TEST_F(LiveScreenCloseTest, hearsNoAnswerOnceItIsClosed)
{
    addProducts();
    open();
    const auto answers = [&] {
        for (const auto& answer : show->successes)
            answer(true, std::nullopt);
        const auto page = show->pages.back();
        page(messages({ "m2", "m1" }), std::nullopt);
    };
    host.tap(middle(*part("closeButton")));
    answers();
    host.advance(0.1);
    EXPECT_TRUE(screen->view()->window()) << "still sliding out";
    EXPECT_EQ(part("chatTableContainerView")->alpha(), 0);
    host.advance(1);
    EXPECT_EQ(chat(), Lines {});
    EXPECT_EQ(toggles(), "products");

    renewShow();
    open();
    navigation->popViewController(false);
    screen = nullptr;
    service->completions.clear();
    EXPECT_EQ(registrations(), before);
    answers();
    EXPECT_EQ(registrations(), before) << "and nobody comes back for it";
}

TEST_F(LiveScreenCloseTest, beginsNothingMoreWhenTheShowEndsInTheMiddleOfIt)
{
    for (const auto& call : startCalls) {
        SCOPED_TRACE(call);
        renewShow();
        show->onCall = [&](const std::string& made) {
            if (made == call)
                complete();
        };
        open();
        host.advance(1);
        auto expected = startCalls;
        expected.erase(std::ranges::find(expected, call) + 1, expected.end());
        expected.insert(expected.end(), stopCalls.begin(), stopCalls.end());
        EXPECT_EQ(show->calls, expected);
        EXPECT_EQ(alertTexts()[0], "Broadcast Ended");
        tapOk();
    }
}

TEST_F(LiveScreenCloseTest, leavesNothingBehind)
{
    std::vector<std::weak_ptr<NSObject>> left;
    for (int round = 0; round < 200; ++round) {
        renewShow();
        openWithChat({ "m2", "m1" });
        send(message("m3"));
        if (round % 5 == 0)
            failVideo("gone");
        for (const auto& object : std::initializer_list<std::shared_ptr<NSObject>> { show, screen, screen->view(), alert(),
                 part("chatTableView"), part("productCollectionView"), part("videoContainerView") })
            if (object)
                left.push_back(object);
        if (round % 2)
            complete();
        navigation->popViewController(round % 3 == 0);
        navigation->dismiss(false);
        host.advance(0.6);
        show = nullptr;
        screen = nullptr;
        service->completions.clear();
    }
    EXPECT_EQ(std::ranges::count_if(left, [](const auto& object) { return !object.expired(); }), 0);
    EXPECT_EQ(registrations(), before);
}

} // namespace
} // namespace mv
