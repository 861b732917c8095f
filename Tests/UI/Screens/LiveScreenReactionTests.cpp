#include "Main/MivoraUI.h"
#include "Tests/UI/Screens/LiveScreenViewerStage.h"

namespace mv {
namespace {

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

// On both phones on their sides: over a keyboard as high as the platform's own, and over a higher one that somebody else draws.
TEST_F(LiveScreenReactionTest, keepsThePickerWholeAboveTheKeyboard)
{
    struct Case {
        HostDevice model;
        CGFloat keyboardHeight; // points
        bool isBesideBar; // there is room above the bar
    };
    host.rotate(UIDeviceOrientation::landscapeLeft);
    for (const Case& c : { Case { HostDevice::phone(), 209, true }, Case { HostDevice::smallPhone(), 188, true },
             Case { HostDevice::phone(), 304, false }, Case { HostDevice::phone(), 300, false },
             Case { HostDevice::smallPhone(), 224, false } }) {
        SCOPED_TRACE(testing::Message() << c.model.name << " " << c.keyboardHeight);
        host.device().setModel(c.model);
        renewShow();
        openWithChat({ "m1" });
        host.setKeyboardHeight(c.keyboardHeight);
        host.advance(1);
        openPicker();
        const CGRect row = onScreen(*picker()->view());
        EXPECT_GE(row.y, 0);
        EXPECT_GE(row.height, 30) << "as high as its buttons";
        EXPECT_LE(row.maxY(), window->bounds().height - c.keyboardHeight);
        if (c.isBesideBar) {
            EXPECT_EQ(row.height, 50);
            EXPECT_LE(row.maxY(), place("commentInputView").y + 10) << "the arrow reaches into the bar";
        }
        pick(1);
        EXPECT_EQ(show->takeCalls(), Lines { "addReaction heart" });
        EXPECT_FALSE(picker());
        host.setKeyboardHeight(0);
        navigation->popViewController(false);
        host.advance(1);
    }
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

TEST_F(LiveScreenReactionTest, makesWayForAnAlert)
{
    openWithChat({ "m1" });
    openPicker();
    failVideo("The line is down.");
    host.advance(0.5);
    EXPECT_EQ(alertTexts(), (Lines { "Video Stream Error", "The line is down.", "Ok" }));
    tapOk();
    EXPECT_EQ(window->topmostController(), navigation);
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
    EXPECT_EQ(window->topmostController(), navigation);
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
