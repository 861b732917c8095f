#include "Screens.h"

#include "Platform/UIKit/UIAlertController.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"

namespace platform {
namespace {

class UIAlertControllerTest : public ScreensTest {
protected:
    UIAlertControllerTest()
    {
        window->setRootViewController(root);
        makeFrame();
    }
    void ask(std::vector<UIAlertAction> actions, const std::string& message = "Please Login First")
    {
        alert = make<UIAlertController>("Error", message);
        for (auto& action : actions) {
            action.handler = [this, title = action.title] { chosen.push_back(title); };
            alert->addAction(action);
        }
        root->present(alert, true);
        advanceFar();
    }
    static void collect(const std::shared_ptr<UIView>& view, std::vector<std::shared_ptr<UIButton>>& buttons)
    {
        if (auto button = std::dynamic_pointer_cast<UIButton>(view))
            buttons.push_back(button);
        for (const auto& child : view->subviews())
            collect(child, buttons);
    }
    CGRect buttonFrame(const std::string& title) const
    {
        std::vector<std::shared_ptr<UIButton>> buttons;
        collect(alert->view(), buttons);
        for (const auto& button : buttons)
            if (button->currentTitle() == title)
                return onScreen(*button);
        ADD_FAILURE() << "no button \"" << title << '"';
        return {};
    }
    CGRect card() const { return onScreen(*alert->view()); }
    bool stands() const { return root->presentedViewController() == alert; }
    void press(UIKey key, UIKeyModifiers modifiers = UIKeyModifiers::none)
    {
        UIApplication::shared().sendKey(key, modifiers);
        advanceFar();
    }

    std::shared_ptr<NamedScreen> root = screen("root");
    std::shared_ptr<UIAlertController> alert;
    std::vector<std::string> chosen;
};

TEST_F(UIAlertControllerTest, standsInTheMiddleAndLeavesBeforeItsHandlerRuns)
{
    ask({ { "Ok", {}, {} } });
    EXPECT_EQ(card().width, 270);
    EXPECT_EQ(card().midX(), 160);
    EXPECT_NEAR(card().midY(), 240, 0.5);
    EXPECT_EQ(buttonFrame("Ok").width, 270);
    EXPECT_EQ(buttonFrame("Ok").height, 44);
    EXPECT_NEAR(buttonFrame("Ok").maxY(), card().maxY(), 1e-6);

    tap({ 20, 20 }); // beside it
    advanceFar();
    EXPECT_TRUE(stands());
    tap({ 160, buttonFrame("Ok").midY() });
    tap({ 160, buttonFrame("Ok").midY() }); // twice, in a hurry
    makeFrame();
    advance(0.1);
    EXPECT_TRUE(chosen.empty());
    advanceFar();
    EXPECT_EQ(chosen, Heard { "Ok" });
    EXPECT_FALSE(stands());
}

TEST_F(UIAlertControllerTest, staysInTheMiddleOfATurnedScreen)
{
    ask({ { "Ok", {}, {} } });
    UIScreen::main().setGeometry({ 480, 320 }, { 0, 40, 20, 0 }, 0.25);
    makeFrame();
    EXPECT_EQ(card().midX(), 240);
    EXPECT_NEAR(card().midY(), 160, 0.5);
    EXPECT_EQ(card().width, 270);
}

TEST_F(UIAlertControllerTest, twoThatFitLieSideBySideOthersBelowEachOther)
{
    ask({ { "Cancel", UIAlertActionStyle::cancel, {} }, { "Save", {}, {} } });
    EXPECT_LT(buttonFrame("Cancel").midX(), buttonFrame("Save").midX());
    EXPECT_EQ(buttonFrame("Cancel").y, buttonFrame("Save").y);
    EXPECT_NEAR(buttonFrame("Cancel").width, buttonFrame("Save").width, 0.5);
    root->dismiss(false);

    ask({ { "Save", {}, {} }, { "Cancel", UIAlertActionStyle::cancel, {} } }); // the way back comes first wherever it was added
    EXPECT_LT(buttonFrame("Cancel").midX(), buttonFrame("Save").midX());
    root->dismiss(false);

    ask({ { "Continue without an account", {}, {} }, { "Log in", {}, {} } });
    EXPECT_LT(buttonFrame("Continue without an account").maxY(), buttonFrame("Log in").y + 1);
    root->dismiss(false);

    ask({ { "A", {}, {} }, { "B", {}, {} }, { "C", UIAlertActionStyle::destructive, {} } });
    EXPECT_LT(buttonFrame("A").y, buttonFrame("B").y);
    EXPECT_LT(buttonFrame("B").y, buttonFrame("C").y);
    tap({ 160, buttonFrame("B").midY() });
    advanceFar();
    EXPECT_EQ(chosen, Heard { "B" });
}

TEST_F(UIAlertControllerTest, scrollsWhatDoesNotFit)
{
    std::string novel;
    for (int word = 0; word < 2000; ++word)
        novel += "words ";
    ask({ { "Ok", {}, {} } }, novel);
    EXPECT_GE(card().y, 24);
    EXPECT_LE(card().maxY(), 480 - 24);
    EXPECT_EQ(buttonFrame("Ok").height, 44);
    root->dismiss(false);

    std::vector<UIAlertAction> many;
    for (int index = 0; index < 20; ++index)
        many.push_back({ "Choice " + std::to_string(index), {}, {} });
    ask(many);
    EXPECT_GE(card().y, 24);
    EXPECT_LE(card().maxY(), 480 - 24);
    UIApplication::shared().sendScroll({ 160, 300 }, 0, 2000);
    makeFrame();
    EXPECT_LE(buttonFrame("Choice 19").maxY(), card().maxY() + 0.5);
}

TEST_F(UIAlertControllerTest, obeysTheKeyboard)
{
    ask({ { "Cancel", UIAlertActionStyle::cancel, {} }, { "Save", {}, {} } });
    press(UIKey::enter);
    ask({ { "Cancel", UIAlertActionStyle::cancel, {} }, { "Save", {}, {} } });
    press(UIKey::escape);
    ask({ { "Cancel", UIAlertActionStyle::cancel, {} }, { "Save", {}, {} } });
    press(UIKey::tab);
    press(UIKey::enter);
    ask({ { "A", {}, {} }, { "B", {}, {} }, { "C", {}, {} } });
    press(UIKey::tab, UIKeyModifiers::shift);
    press(UIKey::tab, UIKeyModifiers::shift);
    press(UIKey::enter);
    EXPECT_EQ(chosen, (Heard { "Save", "Cancel", "Cancel", "B" }));

    ask({ { "Ok", {}, {} } });
    UIApplication::shared().sendKey(UIKey::enter);
    press(UIKey::enter); // twice, in a hurry
    EXPECT_EQ(chosen.size(), 5u);

    ask({ { "A", {}, {} }, { "B", {}, {} } }); // nothing there that cancels
    press(UIKey::escape);
    EXPECT_TRUE(stands());
    root->dismiss(false);
    ask({ { "Ok", {}, {} } });
    press(UIKey::escape);
    EXPECT_EQ(chosen.back(), "Ok");
}

TEST_F(UIAlertControllerTest, mayBeTakenAwayUnanswered)
{
    ask({ { "Ok", {}, {} } });
    root->dismiss(true);
    makeFrame();
    tap({ 160, 270 }); // too late
    advanceFar();
    EXPECT_TRUE(chosen.empty());
    const WeakRef<UIAlertController> watched = weak(alert);
    alert = nullptr;
    EXPECT_FALSE(watched.lock());
}

} // namespace
} // namespace platform
