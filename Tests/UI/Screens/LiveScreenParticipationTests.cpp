// Comments, the guest's name and reactions, as a viewer acts and a service answers in whatever order.
#include "Main/MivoraUI.h"
#include "Platform/UIKit/UITextField.h"
#include "Tests/UI/Screens/LiveScreenStage.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVGuestUserNameInputViewController.h"
#include "UI/Screens/Broadcast Screen/Controllers/ReactionsPopOverController.h"

namespace mv {
namespace {

class LiveScreenViewerStage : public LiveScreenStage {
protected:
    const MVApiError refusal { "E7", "not now", 429 };

    void answerComment(std::size_t index, const std::shared_ptr<const MVMessage>& message, std::optional<MVApiError> error = {})
    {
        const auto answer = show->comments.at(index);
        answer(message, std::move(error));
        host.advance(0.5);
    }
    void answerGuest(std::optional<MVApiError> error = {})
    {
        const auto answer = service->guests.back();
        answer(error ? std::nullopt : std::optional(MVUser { "g", "Ana" }), error);
        host.advance(0.5);
    }
    std::shared_ptr<UITextField> field() const { return find<UITextField>(screen->view(), "commentTextField"); }
    void write(const std::string& text)
    {
        press("commentTextField");
        host.type(text);
    }
    void comment(const std::string& text)
    {
        write(text);
        press("sendCommentButton");
    }
    template <typename Dialog> std::shared_ptr<Dialog> standing() const
    {
        return std::dynamic_pointer_cast<Dialog>(window->topmostController());
    }
    std::shared_ptr<MVGuestUserNameInputViewController> prompt() const { return standing<MVGuestUserNameInputViewController>(); }
    std::shared_ptr<ReactionsPopOverController> picker() const { return standing<ReactionsPopOverController>(); }
    void pressInPrompt(const std::string& name)
    {
        ASSERT_TRUE(prompt());
        host.tap(middle(*find(prompt()->view(), name)));
        host.advance(0.5);
    }
    void join(const std::string& name)
    {
        host.type(name);
        pressInPrompt("joinButton");
    }
    std::string barButtons() const
    {
        return std::string(part("sendCommentButton")->isHidden() ? "" : "send ")
            + (part("sendReactionButton")->isHidden() ? "" : "react");
    }
};

class LiveScreenCommentTest : public LiveScreenViewerStage { };

TEST_F(LiveScreenCommentTest, sendsAtOnceForWhoHasAName)
{
    for (const Role role : { Role::user, Role::guest }) {
        renewShow();
        service->role = role;
        show->isGuestUserAllowedToChat = true;
        openWithChat({ "m1" });
        comment("  Is it safe?  ");
        EXPECT_EQ(show->takeCalls(), Lines { "sendMessage   Is it safe?  " }) << "as typed";
        EXPECT_FALSE(prompt());
        EXPECT_EQ(chat(), Lines { "Ana: line 1" }) << "not before the service has it";
        EXPECT_EQ(barButtons(), "react");
        EXPECT_FALSE(field()->isEditing());
        answerComment(0, message("m2"));
        EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" }));
        navigation->popViewController(false);
    }
}

TEST_F(LiveScreenCommentTest, showsACommentOnceHoweverTheServiceAnswers)
{
    const auto deleted = message("m5"), elsewhere = message("m6");
    deleted->isDeleted = true;
    elsewhere->conversationId = "other";
    const auto answer
        = [this](const std::shared_ptr<const MVMessage>& message) { return [=, this] { answerComment(0, message); }; };
    const auto fail = [this] { answerComment(0, nullptr, refusal); };
    const auto echo = [this] { send(message("m2")); };
    const Lines once { "Ana: line 2", "Ana: line 1" }, none { "Ana: line 1" }, error { "E7", "not now", "429" };
    struct Case {
        const char* why;
        std::vector<std::function<void()>> steps;
        Lines chat, lines;
    };
    const Case cases[] = {
        { "answer, then echo", { answer(message("m2")), echo }, once, {} },
        { "echo, then answer", { echo, answer(message("m2")) }, once, {} },
        { "echo on both sides", { echo, answer(message("m2")), echo }, once, {} },
        { "answer alone", { answer(message("m2")) }, once, {} },
        { "echo alone", { echo }, once, {} },
        { "no message", { answer(nullptr) }, none, {} },
        { "no message, but its echo", { answer(nullptr), echo }, once, {} },
        { "a deleted message", { answer(deleted) }, none, {} },
        { "a message of another conversation", { answer(elsewhere) }, none, {} },
        { "failure", { fail }, none, error },
        { "failure, though it had arrived", { echo, fail }, once, error },
        { "failure with a message", { [this] { answerComment(0, message("m2"), refusal); } }, none, error },
        { "failure without a word", { [this] { answerComment(0, nullptr, MVApiError {}); } }, none, { "", "", "" } },
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.why);
        renewShow();
        openWithChat({ "m1" });
        comment("line 2");
        for (const auto& step : each.steps)
            step();
        EXPECT_EQ(chat(), each.chat);
        EXPECT_EQ(takeLines(), each.lines);
        EXPECT_EQ(show->takeCalls(), Lines { "sendMessage line 2" }) << "and nothing of itself";
        navigation->popViewController(false);
    }
}

TEST_F(LiveScreenCommentTest, takesTheFirstOfTwoAnswers)
{
    openWithChat({});
    comment("line 2");
    answerComment(0, message("m2"));
    answerComment(0, message("m3"));
    answerComment(0, nullptr, refusal);
    EXPECT_EQ(chat(), Lines { "Ana: line 2" });
    takeLines(); // that the service has answered twice, once in a process
}

TEST_F(LiveScreenCommentTest, bringsTheChatBackWithTheAnswerAndShowsItsEnd)
{
    Lines many;
    for (int i = 40; i > 0; --i)
        many.push_back("m" + std::to_string(i));
    openWithChat(many);
    const auto table = find<UITableView>(screen->view(), "chatTableView");
    table->setContentOffset({ 0, 300 });
    host.advance(0.5);
    ASSERT_NE(chat().front(), "Ana: line 40");
    press("chatToggleButton");
    EXPECT_TRUE(isChatHidden());
    comment("line 41");
    EXPECT_TRUE(isChatHidden()) << "it may still fail";
    answerComment(0, nullptr, refusal);
    EXPECT_TRUE(isChatHidden());
    EXPECT_EQ(takeLines().size(), 3u);
    comment("line 41");
    answerComment(1, message("m41"));
    host.advance(1);
    EXPECT_TRUE(isChatShown());
    EXPECT_EQ(chat().front(), "Ana: line 41");
    EXPECT_EQ(toggles(), "chat products");
    press("chatToggleButton");
    EXPECT_TRUE(isChatHidden()) << "its button was on";
    comment("line 42");
    answerComment(2, nullptr);
    EXPECT_TRUE(isChatShown()) << "also when the service keeps the message for itself";
}

TEST_F(LiveScreenCommentTest, sendsTheNextWhileTheFormerIsUnderWay)
{
    openWithChat({});
    comment("line 1");
    comment("line 2");
    EXPECT_EQ(show->takeCalls(), (Lines { "sendMessage line 1", "sendMessage line 2" }));
    answerComment(1, message("m2"));
    answerComment(0, message("m1"));
    EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" })) << "as they were written, not as they were answered";
    send(message("m2"));
    EXPECT_EQ(chat().size(), 2u);
}

TEST_F(LiveScreenCommentTest, hearsNoAnswerOfWhatItDoesNotWatchAnyMore)
{
    openWithChat({ "m1" });
    comment("line 2");
    const auto former = show;
    renewShow();
    screen->setBroadcast(show);
    answerPage({ "m5" });
    former->comments[0](message("m2"), std::nullopt);
    EXPECT_EQ(chat(), Lines { "Ana: line 5" }) << "another show";
    comment("line 6");
    press("closeButton");
    answerComment(0, message("m6"));
    answerComment(0, nullptr, refusal);
    EXPECT_EQ(chat(), Lines { "Ana: line 5" }) << "closed";
    takeLines();
}

TEST_F(LiveScreenCommentTest, stopsWritingAtATapOnTheVideoAndOnlyThere)
{
    openWithChat({ "m1" });
    write("Hi");
    EXPECT_TRUE(field()->isEditing());
    host.tap(middle(*part("chatTableView")));
    EXPECT_TRUE(field()->isEditing()) << "the chat may be read meanwhile";
    host.tap({ 100, 300 });
    host.advance(0.5);
    EXPECT_FALSE(field()->isEditing());
    EXPECT_EQ(field()->text(), "Hi");
    EXPECT_EQ(barButtons(), "send react");
    press("sendCommentButton");
    EXPECT_EQ(show->takeCalls(), Lines { "sendMessage Hi" });
}

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

class LiveScreenReactionTest : public LiveScreenViewerStage {
protected:
    std::size_t flying() const { return part("reactionAnimationView")->subviews().size(); }
    void echo(const std::string& type)
    {
        const MVReactionData update { "show", type, {} };
        service->publish("reaction", [update](MivoraDelegate& d) { d.didNewReactionAddedToBroadcast(update); });
        host.advance(0.1);
    }
    std::shared_ptr<UIButton> choice(std::size_t index) const
    {
        const auto row = find<UIStackView>(picker()->view(), "reactionsStackView");
        return std::dynamic_pointer_cast<UIButton>(row->arrangedSubviews().at(index));
    }
    void openPicker()
    {
        press("sendReactionButton");
        ASSERT_TRUE(picker());
    }
    void pick(std::size_t index)
    {
        host.tap(middle(*choice(index)));
        host.advance(0.5);
    }
};

TEST_F(LiveScreenReactionTest, showsThePickerAboveTheButtonAndSendsWhatIsPicked)
{
    openWithChat({ "m1" });
    openPicker();
    EXPECT_EQ(picker()->preferredContentSize(), (CGSize { 55 * 5 + 20, 50 }));
    EXPECT_EQ(picker()->overrideUserInterfaceStyle(), UIUserInterfaceStyle::dark);
    EXPECT_EQ(picker()->modalTransitionStyle(), UIModalTransitionStyle::crossDissolve);
    const CGRect row = onScreen(*picker()->view()), button = place("sendReactionButton");
    EXPECT_LE(row.maxY(), button.y) << "above the button";
    EXPECT_GT(row.maxY(), button.y - 40) << "and beside it";
    EXPECT_LE(row.maxX(), window->bounds().width);
    EXPECT_EQ(show->takeCalls(), Lines {});
    pick(1);
    EXPECT_FALSE(picker());
    EXPECT_EQ(show->takeCalls(), Lines { "addReaction heart" });
    EXPECT_EQ(flying(), 0u) << "its echo does that";
    for (const auto& answer : show->successes)
        answer(false, refusal);
    EXPECT_EQ(takeLines(), Lines {});
    echo("heart");
    EXPECT_EQ(flying(), 1u);
    host.advance(6);
    EXPECT_EQ(flying(), 0u);
    openPicker();
    pick(0);
    EXPECT_EQ(show->takeCalls(), Lines { "addReaction wow" }) << "again and again";
}

TEST_F(LiveScreenReactionTest, closesThePickerOnlyAtATapBesideIt)
{
    const auto expectOnlyThePickerGone = [this] {
        host.tap(middle(*part("closeButton")));
        host.advance(1);
        EXPECT_FALSE(picker());
        EXPECT_TRUE(screen->view()->window());
        EXPECT_EQ(show->takeCalls(), Lines {}) << "the button below the tap is not pressed";
    };
    openWithChat({ "m1" });
    openPicker();
    expectOnlyThePickerGone();
    navigation->popViewController(false);

    renewShow();
    const auto router = presentRouter();
    screen = child<Screen>(*router);
    service->answer(show);
    host.advance(0.5);
    show->takeCalls();
    navigation->view()->setBackgroundColor(UIColor::white());
    openPicker();
    EXPECT_EQ(navigation->view()->backgroundColor(), UIColor::clear()) << "of who presented the screen";
    expectOnlyThePickerGone();
    EXPECT_EQ(window->topmostController(), router) << "the screen itself was presented, too";
    press("closeButton");
    EXPECT_EQ(show->takeCalls(), stopCalls);
}

TEST_F(LiveScreenReactionTest, closesThePickerWhenTheDeviceTurns)
{
    openWithChat({ "m1" });
    openPicker();
    host.rotate(UIDeviceOrientation::landscapeRight);
    host.advance(0);
    EXPECT_FALSE(picker()) << "at once";
    host.advance(0.5);
    openPicker();
    EXPECT_LE(onScreen(*picker()->view()).maxY(), place("sendReactionButton").y);
    pick(2);
    EXPECT_EQ(show->takeCalls(), Lines { "addReaction like" });
}

TEST_F(LiveScreenReactionTest, offersWhatTheTableHolds)
{
    struct Restore {
        MVReactionTable before = MivoraUI::reactions();
        ~Restore() { MivoraUI::reactions = before; }
    } restore;
    MVReactionTable table;
    table.set("clap", MivoraUI::reactions().image("like"));
    MivoraUI::reactions = table;
    openWithChat({ "m1" });
    openPicker();
    EXPECT_EQ(picker()->preferredContentSize(), (CGSize { 75, 50 }));
    pick(0);
    EXPECT_EQ(show->takeCalls(), Lines { "addReaction clap" });
    MivoraUI::reactions = MVReactionTable {};
    echo("clap");
    EXPECT_EQ(flying(), 0u) << "nobody knows it any more";
    openPicker();
    EXPECT_EQ(picker()->preferredContentSize(), (CGSize { 20, 50 }));
    host.tap({ 100, 200 });
    host.advance(0.5);
    EXPECT_FALSE(picker());
}

TEST_F(LiveScreenReactionTest, doesNothingMoreOnceTheScreenIsClosed)
{
    openAlone();
    show->takeCalls();
    openPicker();
    const auto former = picker();
    const auto heart = choice(1);
    screen->resetOnEventComplete();
    heart->sendActions(UIControlEvent::touchUpInside);
    host.advance(1);
    EXPECT_FALSE(former->presentingViewController());
    EXPECT_EQ(show->takeCalls(), stopCalls);
    press("sendReactionButton");
    comment("line 1");
    EXPECT_EQ(window->topmostController(), navigation);
    EXPECT_EQ(show->takeCalls(), Lines {});
}

class LiveScreenLeavingTest : public LiveScreenViewerStage { };

TEST_F(LiveScreenLeavingTest, takesAlongWhatTheViewerHasOpen)
{
    host.setHardwareKeyboard(true); // keyboards come and go by hand below
    const auto before = registrations();
    std::vector<std::weak_ptr<NSObject>> left;
    for (int round = 0; round < 200; ++round) {
        renewShow();
        service->role = Role::anonymous;
        show->isGuestUserAllowedToChat = true;
        openWithChat({ "m1" });
        write("line 2");
        host.setKeyboardHeight(300);
        if (round % 4 == 1)
            press("sendCommentButton");
        if (round % 4 >= 2) {
            host.tap({ 100, 300 });
            host.setKeyboardHeight(0);
            host.advance(0.5);
            press("sendReactionButton");
        }
        if (round % 4 == 3)
            host.rotate(round % 8 == 3 ? UIDeviceOrientation::landscapeLeft : UIDeviceOrientation::portrait);
        for (const auto& object : std::initializer_list<std::shared_ptr<NSObject>> { show, screen, screen->view(), field(),
                 window->topmostController() == navigation ? nullptr : window->topmostController() })
            if (object)
                left.push_back(object);
        if (round % 3 == 0)
            complete();
        else if (round % 3 == 1)
            screen->onPressCloseButton();
        EXPECT_EQ(field()->isEditing(), round % 3 == 2 && round % 4 == 0);
        navigation->popViewController(round % 5 == 0);
        navigation->dismiss(false);
        host.advance(1);
        EXPECT_EQ(window->topmostController(), navigation);
        host.setKeyboardHeight(0);
        show = nullptr;
        screen = nullptr;
        service->completions.clear();
        service->guests.clear();
    }
    EXPECT_EQ(std::ranges::count_if(left, [](const auto& object) { return !object.expired(); }), 0);
    EXPECT_EQ(registrations(), before);
    host.rotate(UIDeviceOrientation::portrait);
}

} // namespace
} // namespace mv
