#include "Screens.h"

#include "Platform/UIKit/UIControl.h"
#include "Platform/UIKit/UITabBarController.h"

namespace platform {
namespace {

class UIPresentationTest : public ScreensTest {
protected:
    UIPresentationTest()
    {
        window->setRootViewController(root);
        makeFrame();
        taken();
    }

    std::shared_ptr<NamedScreen> root = screen("root"), sheet = screen("sheet");
};

TEST_F(UIPresentationTest, coversThePresenterAndComesBack)
{
    std::vector<std::string> done;
    root->present(sheet, true, [&] { done.push_back("presented"); });
    EXPECT_EQ(taken(), (Heard { "root will disappear", "sheet will appear, presented" }));
    EXPECT_EQ(root->presentedViewController(), sheet);
    EXPECT_EQ(sheet->presentingViewController(), root.get());
    makeFrame();
    advance(0.1);
    EXPECT_GT(shownFrame(*sheet->view()).y, 0);
    EXPECT_LT(shownFrame(*sheet->view()).y, 480);
    EXPECT_FALSE(root->view()->isHidden());
    advanceFar();
    EXPECT_EQ(done, Heard { "presented" });
    EXPECT_EQ(taken(), (Heard { "sheet appeared, presented", "root disappeared" }));
    EXPECT_TRUE(root->view()->isHidden());
    EXPECT_EQ(shownFrame(*sheet->view()), (CGRect { 0, 0, 320, 480 }));

    UIScreen::main().setGeometry({ 480, 320 }, {});
    makeFrame();
    EXPECT_EQ(sheet->view()->frame(), (CGRect { 0, 0, 480, 320 }));
    EXPECT_EQ(root->view()->frame(), (CGRect { 0, 0, 480, 320 }));
    taken();

    sheet->dismiss(true, [&] { done.push_back("dismissed"); });
    EXPECT_EQ(taken(), (Heard { "sheet will disappear, dismissed", "root will appear" }));
    EXPECT_EQ(root->presentedViewController(), sheet); // still on its way
    advanceFar();
    EXPECT_EQ(taken(), (Heard { "sheet disappeared, dismissed", "root appeared" }));
    EXPECT_EQ(done, (Heard { "presented", "dismissed" }));
    EXPECT_FALSE(root->presentedViewController());
    EXPECT_FALSE(sheet->presentingViewController());
    EXPECT_FALSE(sheet->view()->window());
    EXPECT_EQ(window->subviews().size(), 1u);
}

TEST_F(UIPresentationTest, whatLiesOverThePresenterLeavesItThere)
{
    sheet->setModalPresentationStyle(UIModalPresentationStyle::overFullScreen);
    sheet->setModalTransitionStyle(UIModalTransitionStyle::crossDissolve);
    root->present(sheet, true);
    makeFrame();
    advance(0.1);
    const double alpha = std::get<double>(sheet->view()->layer()->presentationValue("opacity", clock.now()));
    EXPECT_GT(alpha, 0.1);
    EXPECT_LT(alpha, 0.9);
    advanceFar();
    EXPECT_FALSE(root->view()->isHidden());
    EXPECT_EQ(taken(), (Heard { "sheet will appear, presented", "sheet appeared, presented" }));
    int taps = 0;
    const auto button = make<UIControl>(CGRect { 0, 0, 320, 480 });
    button->addAction(UIControlEvent::touchUpInside, [&] { ++taps; });
    root->view()->addSubview(button);
    tap({ 160, 240 });
    EXPECT_EQ(taps, 0); // it takes all touches
    root->dismiss(false);
    tap({ 160, 240 });
    EXPECT_EQ(taps, 1);
}

TEST_F(UIPresentationTest, theOutermostAncestorPresents)
{
    const auto child = screen("child");
    root->addChild(child);
    root->view()->addSubview(child->view());
    child->didMoveToParent(root.get());
    taken();
    child->present(sheet, false);
    EXPECT_EQ(child->presentedViewController(), sheet);
    EXPECT_EQ(sheet->presentingViewController(), root.get());
    EXPECT_EQ(taken(),
        (Heard { "root will disappear", "child will disappear", "sheet will appear, presented", "sheet appeared, presented",
            "root disappeared", "child disappeared" }));

    const auto above = screen("above");
    sheet->present(above, false);
    EXPECT_EQ(window->topmostController(), above);
    taken();
    child->dismiss(false); // with all that lies above
    EXPECT_EQ(taken(),
        (Heard { "above will disappear, dismissed", "sheet will appear", "above disappeared, dismissed", "sheet appeared",
            "sheet will disappear, dismissed", "root will appear", "child will appear", "sheet disappeared, dismissed",
            "root appeared", "child appeared" }));
    EXPECT_EQ(window->subviews().size(), 1u);
}

TEST_F(UIPresentationTest, waitsForWhatIsLeaving)
{
    const auto next = screen("next");
    root->present(sheet, false);
    root->dismiss(true);
    makeFrame();
    taken();
    bool presented = false;
    root->present(next, false, [&] { presented = true; });
    EXPECT_EQ(taken(), Heard {});
    advanceFar();
    EXPECT_TRUE(presented);
    EXPECT_EQ(root->presentedViewController(), next);
}

TEST_F(UIPresentationTest, refusesWhatItCannotShow)
{
    root->present(sheet, false);
    root->present(screen("other"), false);
    sheet->present(sheet, false);
    const auto nowhere = screen("nowhere");
    nowhere->present(screen("other"), false);
    EXPECT_EQ(takeLines(),
        (std::vector<std::string> { "NamedScreen not presented on NamedScreen: that already presents NamedScreen",
            "NamedScreen not presented on NamedScreen: it is shown elsewhere already",
            "NamedScreen not presented on NamedScreen: that is not in a window" }));
    nowhere->dismiss(true); // nothing to do
    EXPECT_EQ(root->presentedViewController(), sheet);
}

TEST_F(UIPresentationTest, turnsRoundOnItsWay)
{
    int done = 0;
    root->present(sheet, true, [&] { ++done; });
    makeFrame();
    advance(0.1);
    sheet->dismiss(true, [&] { ++done; });
    makeFrame();
    advance(0.05);
    sheet->dismiss(true, [&] { ++done; }); // asked twice
    advanceFar();
    EXPECT_EQ(done, 3);
    EXPECT_FALSE(root->presentedViewController());
    EXPECT_FALSE(root->view()->isHidden());
    const Heard all = taken();
    EXPECT_EQ(std::ranges::count(all, "root appeared"), 1);
    EXPECT_EQ(std::ranges::count(all, "sheet disappeared, dismissed"), 1);
}

TEST_F(UIPresentationTest, endsWithItsWindowOrRoot)
{
    const WeakRef<NamedScreen> watched = weak(sheet);
    root->present(std::exchange(sheet, nullptr), true);
    makeFrame();
    advance(0.1);
    window->setRootViewController(screen("another"));
    EXPECT_FALSE(watched.lock());
    EXPECT_EQ(window->subviews().size(), 1u);
    taken();

    const auto cover = screen("cover");
    window->rootViewController()->present(cover, false);
    taken();
    window->setHidden(true);
    EXPECT_EQ(taken(), (Heard { "cover will disappear", "cover disappeared" }));
    window->setHidden(false);
    EXPECT_EQ(taken(), (Heard { "cover will appear", "cover appeared" }));
}

TEST_F(UIPresentationTest, tabsShowOneAtATime)
{
    const auto tabs = make<UITabBarController>();
    const auto a = screen("a"), b = screen("b");
    a->setTitle("First");
    b->setTitle("Second");
    tabs->setViewControllers({ a, b });
    window->setRootViewController(tabs);
    makeFrame();
    EXPECT_FALSE(b->isViewLoaded());
    EXPECT_EQ(a->view()->safeAreaInsets().bottom, 49);
    taken();
    tap({ 240, 460 });
    EXPECT_EQ(tabs->selectedViewController(), b);
    EXPECT_EQ(b->tabBarController(), tabs.get());
    EXPECT_EQ(taken(), (Heard { "a will disappear", "a disappeared", "b will appear", "b appeared" })) << "both stay in the bar";
    tabs->setSelectedIndex(7);
    EXPECT_EQ(tabs->selectedIndex(), 1u);
}

} // namespace
} // namespace platform
