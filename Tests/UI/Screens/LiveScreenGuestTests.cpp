#include "Tests/UI/Screens/LiveScreenViewerStage.h"

namespace mv {
namespace {

class LiveScreenGuestTest : public LiveScreenViewerStage {
protected:
    LiveScreenGuestTest() { becomeAnonymous(); }
    void becomeAnonymous()
    {
        service->role = Role::anonymous;
        show->isGuestUserAllowedToChat = true;
    }
    void openAsAnonymous(const Lines& newestFirst = {})
    {
        renewShow();
        becomeAnonymous();
        openWithChat(newestFirst);
    }
};

TEST_F(LiveScreenGuestTest, asksForANameAndSendsOnceThereIsOne)
{
    openWithChat({ "m1" });
    comment(" line 2 ");
    ASSERT_TRUE(prompt());
    EXPECT_EQ(prompt()->modalPresentationStyle(), UIModalPresentationStyle::overCurrentContext);
    EXPECT_FALSE(screen->view()->isHidden()) << "the show goes on behind it";
    EXPECT_EQ(show->takeCalls(), Lines {});
    join(" Ana ");
    EXPECT_FALSE(prompt());
    EXPECT_EQ(show->takeCalls(), Lines { "createGuestUser  Ana " }) << "and nothing more yet";
    service->role = Role::guest;
    answerGuest();
    EXPECT_EQ(show->takeCalls(), Lines { "sendMessage  line 2 " });
    answerComment(0, message("m2"));
    EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" }));
    comment("line 3");
    EXPECT_FALSE(prompt()) << "known by now";
    EXPECT_EQ(show->takeCalls(), Lines { "sendMessage line 3" });
}

TEST_F(LiveScreenGuestTest, dropsTheCommentWhenThereIsNoGuest)
{
    openWithChat({ "m1" });
    comment("line 2");
    join("Ana");
    show->takeCalls();
    answerGuest(refusal);
    EXPECT_EQ(takeLines(), (Lines { "not now", "E7", "429" }));
    EXPECT_EQ(show->takeCalls(), Lines {});
    comment("line 3");
    ASSERT_TRUE(prompt()) << "asked anew";
    EXPECT_EQ(find<UITextField>(prompt()->view(), "inputTextField")->text(), "");
    pressInPrompt("cancelButton");
    EXPECT_FALSE(prompt());
    EXPECT_EQ(show->takeCalls(), Lines {}) << "given up";
    EXPECT_EQ(barButtons(), "react");
    comment("line 4");
    join("Ben");
    const auto answer = service->guests.back();
    answer(std::nullopt, std::nullopt); // no error is a success
    EXPECT_EQ(show->takeCalls(), (Lines { "createGuestUser Ben", "sendMessage line 4" }));
}

TEST_F(LiveScreenGuestTest, joinsOnceHoweverOftenItIsPressed)
{
    openWithChat({});
    comment("line 1");
    host.type("Ana");
    const auto at = middle(*find(prompt()->view(), "joinButton"));
    const auto pressed = prompt();
    host.tap(at);
    host.tap(at);
    find<UIButton>(pressed->view(), "joinButton")->sendActions(UIControlEvent::touchUpInside); // as a key would
    host.advance(0.5);
    EXPECT_EQ(show->takeCalls(), Lines { "createGuestUser Ana" });
    answerGuest();
    answerGuest();
    EXPECT_EQ(show->takeCalls(), Lines { "sendMessage line 1" });
    takeLines(); // that the service has answered twice, once in a process
}

TEST_F(LiveScreenGuestTest, asksEveryTimeUntilThereIsAGuest)
{
    openWithChat({});
    comment("line 1");
    join("Ana");
    comment("line 2");
    join("Ben");
    EXPECT_EQ(show->takeCalls(), (Lines { "createGuestUser Ana", "createGuestUser Ben" }));
    service->guests[1](MVUser {}, std::nullopt);
    service->guests[0](std::nullopt, refusal);
    EXPECT_EQ(show->takeCalls(), Lines { "sendMessage line 2" }) << "each with its own";
    EXPECT_EQ(takeLines().size(), 3u);
}

TEST_F(LiveScreenGuestTest, dropsTheCommentWhereNothingCanAsk)
{
    screen = make<Screen>();
    window->setRootViewController(screen);
    screen->setBroadcast(show);
    host.advance(0.5);
    show->takeCalls();
    comment("line 1");
    EXPECT_EQ(window->topmostController(), screen);
    EXPECT_EQ(show->takeCalls(), Lines {});
    EXPECT_EQ(field()->text(), "");
    service->role = Role::guest;
    comment("line 2");
    EXPECT_EQ(show->takeCalls(), Lines { "sendMessage line 2" });
    screen->resetOnEventComplete();
}

TEST_F(LiveScreenGuestTest, keepsThePromptThroughARotation)
{
    openWithChat({});
    comment("line 1");
    host.type("An");
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(0.5);
    ASSERT_TRUE(prompt());
    const CGRect card = onScreen(*find(prompt()->view(), "containerView"));
    EXPECT_NEAR(card.maxY(), 390 / 2 - 20, 1);
    EXPECT_NEAR(card.width, 844 * 0.85, 1);
    join("a");
    EXPECT_EQ(show->takeCalls(), Lines { "createGuestUser Ana" });
}

TEST_F(LiveScreenGuestTest, keepsThePromptBelowAnAlert)
{
    openWithChat({});
    comment("line 1");
    host.type("An");
    failVideo("The line is down.");
    failVideo("Still down.");
    EXPECT_EQ(alertTexts(), (Lines { "Video Stream Error", "The line is down.", "Ok" }));
    tapOk();
    join("a");
    EXPECT_EQ(show->takeCalls(), Lines { "createGuestUser Ana" });
    comment("line 2");
    failVideo("Down again.");
    navigation->popViewController(true);
    host.advance(1);
    EXPECT_EQ(window->topmostController(), navigation) << "neither of the two";
}

TEST_F(LiveScreenGuestTest, sendsNothingOnceTheScreenIsLeft)
{
    const std::pair<const char*, std::function<void()>> ways[] {
        { "closed", [this] { screen->onPressCloseButton(); } },
        { "popped", [this] { navigation->popViewController(true); } },
        { "over", [this] { complete(), host.advance(1), tapOk(); } },
    };
    for (const auto& [way, leave] : ways) {
        for (const bool joined : { false, true }) {
            SCOPED_TRACE(std::string(way) + (joined ? " after the join" : " before it"));
            openAsAnonymous({ "m1" });
            comment("line 2");
            host.type("Ana");
            const auto asked = prompt();
            ASSERT_TRUE(asked);
            if (joined)
                pressInPrompt("joinButton");
            leave();
            host.advance(1);
            EXPECT_FALSE(asked->presentingViewController());
            EXPECT_EQ(window->topmostController(), navigation);
            EXPECT_EQ(navigation->topViewController(), shop);
            if (joined)
                answerGuest();
            find<UIButton>(asked->view(), "joinButton")->sendActions(UIControlEvent::touchUpInside);
            auto expected = stopCalls;
            if (joined)
                expected.insert(expected.begin(), "createGuestUser Ana");
            EXPECT_EQ(show->takeCalls(), expected);
        }
    }
}

} // namespace
} // namespace mv
