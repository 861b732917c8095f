#include "UI/Screens/Broadcast Screen/Controllers/ReactionsPopOverController.h"

#include "Main/MivoraUI.h"
#include "Platform/UIKit/UIPopoverPresentationController.h"
#include "Tests/UI/Stage.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {
namespace {

// The screen below the picker; popovers stay popovers on it.
class Screen final : public UIViewController, public UIPopoverPresentationControllerDelegate {
public:
    UIModalPresentationStyle adaptivePresentationStyle(const UIPopoverPresentationController&, const UITraitCollection&) override
    {
        return UIModalPresentationStyle::none;
    }
};

MVReactionTable tableOf(const std::vector<std::string>& types)
{
    MVReactionTable table;
    for (const auto& type : types)
        table.set(type, MivoraUI::reactions().image("heart"));
    return table;
}

class ReactionsPopOverTest : public Stage {
protected:
    ReactionsPopOverTest()
    {
        window->setRootViewController(screen);
        source->setFrame({ 345, 770, 40, 40 });
        screen->view()->addSubview(source);
        host.advance(0);
    }
    ~ReactionsPopOverTest() override { MivoraUI::reactions = formerTable; }

    std::shared_ptr<ReactionsPopOverController> openPicker()
    {
        auto picker = make<ReactionsPopOverController>();
        picker->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
        picker->setPreferredContentSize(ReactionsPopOverController::contentSizeOfTable());
        picker->setModalPresentationStyle(UIModalPresentationStyle::popover);
        picker->onPressReaction = [this](const std::string& type) { pressed.push_back(type); };
        const auto popover = picker->popoverPresentationController();
        popover->setSourceView(source);
        popover->setPermittedArrowDirections(UIPopoverArrowDirection::down);
        popover->setDelegate(screen);
        screen->present(picker, true);
        host.advance(0.5);
        return picker;
    }
    static std::vector<std::shared_ptr<UIView>> buttons(UIViewController& picker)
    {
        return find(picker.view(), "reactionsStackView")->subviews();
    }

    const MVReactionTable formerTable = MivoraUI::reactions();
    std::shared_ptr<Screen> screen = make<Screen>();
    std::shared_ptr<UIView> source = make<UIView>();
    std::vector<std::string> pressed;
};

TEST_F(ReactionsPopOverTest, showsARowInTheTablesOrderThatScrollsALittle)
{
    const auto picker = openPicker();
    EXPECT_TRUE(isNear(onScreen(*picker->view()), { 88, 707, 295, 50 }));
    std::vector<std::string> hints;
    CGFloat x = 108; // 10 of the scroll view's margin, 10 of the row's
    for (const auto& button : buttons(*picker)) {
        hints.push_back(static_cast<UIButton&>(*button).accessibilityHint());
        EXPECT_TRUE(isNear(onScreen(*button), { x, 717, 55, 30 })) << hints.back();
        x += 55;
    }
    EXPECT_EQ(hints, (std::vector<std::string> { "wow", "heart", "like", "laugh", "angry" }));
    const auto scroller = find<UIScrollView>(picker->view(), "reactionsScrollView");
    EXPECT_EQ(scroller->maximumContentOffset(), (CGPoint { 10, 0 }));
    EXPECT_TRUE(picker->view()->traitCollection().isDark());
    EXPECT_FALSE(screen->view()->traitCollection().isDark());
}

TEST_F(ReactionsPopOverTest, tellsWhatWasPressedAndGoes)
{
    const auto picker = openPicker();
    host.tap(middle(*buttons(*picker)[2]));
    EXPECT_EQ(pressed, std::vector<std::string> { "like" });
    EXPECT_TRUE(picker->isBeingDismissed());
    host.advance(0.5);
    EXPECT_FALSE(screen->presentedViewController());
}

TEST_F(ReactionsPopOverTest, keepsAPressWithoutAKeyToItself)
{
    MivoraUI::reactions = tableOf({ "", "b" });
    const auto picker = openPicker();
    EXPECT_TRUE(isNear(onScreen(*picker->view()), { 253, 707, 130, 50 }));
    host.tap(middle(*buttons(*picker)[0]));
    host.advance(0.5);
    EXPECT_EQ(pressed, std::vector<std::string> {});
    EXPECT_EQ(screen->presentedViewController(), picker);
}

// A host's own keyboard may be higher than any of ours. Nothing may be said on the console.
TEST_F(ReactionsPopOverTest, lastlyScrollsInAHeightThatIsTooLittle)
{
    host.setKeyboardHeight(852 - 59 - 20); // below the safe area
    const auto picker = openPicker();
    EXPECT_TRUE(isNear(onScreen(*picker->view()), { 88, 59, 295, 20 }));
    EXPECT_EQ(buttons(*picker)[0]->bounds().size(), (CGSize { 55, 30 }));
    const auto scroller = find<UIScrollView>(picker->view(), "reactionsScrollView");
    EXPECT_EQ(scroller->maximumContentOffset(), (CGPoint { 10, 10 }));
    host.setKeyboardHeight(852);
    host.advance(1);
    host.setKeyboardHeight(0);
    host.advance(1);
    EXPECT_TRUE(isNear(onScreen(*picker->view()), { 88, 707, 295, 50 }));
}

TEST_F(ReactionsPopOverTest, ofAnEmptyTableIsEmpty)
{
    MivoraUI::reactions = MVReactionTable {};
    const auto picker = openPicker();
    EXPECT_TRUE(buttons(*picker).empty());
    EXPECT_EQ(picker->view()->bounds().size(), (CGSize { 20, 50 }));
}

TEST_F(ReactionsPopOverTest, goesAtOnceWhenTheDeviceIsTurned)
{
    auto picker = openPicker();
    host.rotate(UIDeviceOrientation::landscapeLeft);
    EXPECT_FALSE(screen->presentedViewController());
    EXPECT_FALSE(picker->view()->superview());
    const auto gone = weak(picker);
    picker = nullptr;
    host.advance(0.5);
    EXPECT_FALSE(gone.lock());
    host.rotate(UIDeviceOrientation::portrait); // and nobody listens any more
}

TEST_F(ReactionsPopOverTest, beginsAtTheRightEndInARightToLeftInterface)
{
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    const auto picker = openPicker();
    // Bubble from 88 to 383; margins of 10 on the right, 5 on the left.
    EXPECT_TRUE(isNear(onScreen(*find(picker->view(), "reactionsScrollView")), { 93, 707, 280, 50 }));
    EXPECT_TRUE(isNear(onScreen(*buttons(*picker)[0]), { 308, 717, 55, 30 }));
    EXPECT_TRUE(isNear(onScreen(*buttons(*picker)[4]), { 88, 717, 55, 30 }));
}

TEST_F(ReactionsPopOverTest, showIpadActionSheetPutsAPopoverOverTheMiddleOfAView)
{
    const auto sheet = make<UIViewController>();
    sheet->setModalPresentationStyle(UIModalPresentationStyle::popover);
    sheet->setPreferredContentSize({ 100, 60 });
    source->setFrame({ 100, 300, 80, 40 });
    source->setBounds({ 5, 7, 80, 40 });
    const auto popover = sheet->popoverPresentationController();
    popover->setDelegate(screen);
    showIpadActionSheet(source, *popover);
    EXPECT_EQ(popover->sourceRect(), (CGRect { 45, 27, 0, 0 }));
    screen->present(sheet, false);
    EXPECT_EQ(popover->arrowDirection(), UIPopoverArrowDirection::none);
    EXPECT_TRUE(isNear(onScreen(*sheet->view()), { 90, 290, 100, 60 }));
}

} // namespace
} // namespace mv
