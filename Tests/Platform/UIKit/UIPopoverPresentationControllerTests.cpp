#include "Platform/UIKit/UIPopoverPresentationController.h"

#include "Screens.h"

#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/UIKit/UIAlertController.h"
#include "Platform/UIKit/UIControl.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Platform/UIKit/UIScrollView.h"

namespace platform {
namespace {

using Arrow = UIPopoverArrowDirection;

TEST(PopoverPlacementTest, findsASideWithRoom)
{
    const CGRect area { 10, 20, 300, 400 }; // to 310 and 420
    struct Case {
        const char* why;
        CGSize content;
        CGRect source;
        Arrow permitted, arrow;
        CGRect body;
        CGPoint tip;
    };
    const Case cases[] = {
        { "below, its middle under the source's", { 100, 50 }, { 140, 100, 40, 20 }, Arrow::any, Arrow::up, { 110, 133, 100, 50 },
            { 160, 120 } },
        { "above, where there is no room below", { 100, 50 }, { 140, 380, 40, 20 }, Arrow::any, Arrow::down,
            { 110, 317, 100, 50 }, { 160, 380 } },
        { "at the side, where it fits neither above nor below", { 100, 300 }, { 20, 200, 40, 20 }, Arrow::any, Arrow::left,
            { 73, 60, 100, 300 }, { 60, 210 } },
        { "at the other side", { 100, 300 }, { 260, 200, 40, 20 }, Arrow::any, Arrow::right, { 147, 60, 100, 300 },
            { 260, 210 } },
        { "only where it is permitted", { 100, 50 }, { 140, 100, 40, 20 }, Arrow::left | Arrow::right, Arrow::left,
            { 193, 85, 100, 50 }, { 180, 110 } },
        { "the arrow keeps clear of the right corner", { 100, 50 }, { 295, 200, 20, 20 }, Arrow::down, Arrow::down,
            { 210, 137, 100, 50 }, { 284, 200 } },
        { "and of the left one", { 100, 50 }, { 0, 200, 20, 20 }, Arrow::down, Arrow::down, { 10, 137, 100, 50 }, { 36, 200 } },
        { "cut to the room above", { 100, 300 }, { 140, 233, 40, 180 }, Arrow::down, Arrow::down, { 110, 20, 100, 200 },
            { 160, 233 } },
        { "cut to the area's width", { 500, 50 }, { 140, 100, 40, 20 }, Arrow::up, Arrow::up, { 10, 133, 300, 50 },
            { 160, 120 } },
        { "over the middle without an arrow", { 100, 50 }, { 160, 200, 0, 0 }, Arrow::none, Arrow::none, { 110, 175, 100, 50 },
            { 160, 200 } },
        { "inside the area even so", { 100, 50 }, { 0, 0, 0, 0 }, Arrow::none, Arrow::none, { 10, 20, 100, 50 }, { 60, 45 } },
        { "a source outside does not pull it out", { 100, 50 }, { 140, 700, 40, 20 }, Arrow::down, Arrow::down,
            { 110, 370, 100, 50 }, { 160, 433 } },
        { "a narrow one has a small arrow", { 20, 50 }, { 140, 200, 40, 20 }, Arrow::down, Arrow::down, { 150, 144, 20, 50 },
            { 160, 200 } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const auto placement = placePopover(c.content, c.source, area, c.permitted);
        EXPECT_EQ(placement.arrow, c.arrow);
        EXPECT_EQ(placement.body, c.body);
        EXPECT_EQ(placement.tip, c.tip);
        // The outline has the tip, the body's middle and the joint between them, but not the corners.
        const CGRect box = placement.bounds();
        const auto path = placement.outline();
        const auto inside = [&](CGPoint p, double share = 1) {
            const CGPoint middle = c.body.center();
            return path->contains({ middle.x + (p.x - middle.x) * share - box.x, middle.y + (p.y - middle.y) * share - box.y });
        };
        EXPECT_TRUE(inside(c.body.center()));
        EXPECT_FALSE(inside({ c.body.x + 1, c.body.y + 1 }));
        EXPECT_FALSE(inside({ c.body.maxX() - 1, c.body.maxY() - 1 }));
        if (c.arrow == Arrow::none)
            continue;
        const bool vertical = c.arrow == Arrow::up || c.arrow == Arrow::down;
        const double outwards = c.arrow == Arrow::up || c.arrow == Arrow::left ? -1 : 1;
        for (const double fromTip : { 0.5, placement.arrowLength, placement.arrowLength + 1 }) {
            const double step = outwards * fromTip;
            EXPECT_TRUE(inside(vertical ? CGPoint { c.tip.x, c.tip.y - step } : CGPoint { c.tip.x - step, c.tip.y })) << fromTip;
        }
        const double beyond = outwards * 0.5;
        EXPECT_FALSE(inside(vertical ? CGPoint { c.tip.x, c.tip.y + beyond } : CGPoint { c.tip.x + beyond, c.tip.y }));
    }
}

TEST(PopoverPlacementTest, liesOverItsSourceRatherThanBeTooLow)
{
    const CGRect area { 10, 20, 300, 400 }, source { 140, 70, 40, 20 }; // 50 points above it, 13 of them for the arrow
    EXPECT_EQ(placePopover({ 100, 60 }, source, area, Arrow::down, 37).body, (CGRect { 110, 20, 100, 37 }));
    EXPECT_EQ(placePopover({ 100, 60 }, source, area, Arrow::down, 38).body, (CGRect { 110, 20, 100, 60 }));
    const CGRect low { 10, 20, 300, 45 };
    EXPECT_EQ(placePopover({ 100, 60 }, { 140, 40, 40, 20 }, low, Arrow::down, 38).body, (CGRect { 110, 20, 100, 45 }));
}

// Answers as it is told, and writes down what it hears.
class Delegate final : public UIPopoverPresentationControllerDelegate {
public:
    UIModalPresentationStyle adaptivePresentationStyle(
        const UIPopoverPresentationController&, const UITraitCollection& traits) override
    {
        EXPECT_EQ(traits.userInterfaceIdiom, UIUserInterfaceIdiom::phone);
        return style;
    }
    void prepareForPopoverPresentation(UIPopoverPresentationController& popover) override
    {
        EXPECT_FALSE(popover.presentedViewController()->view()->window());
        heard.push_back("prepare");
    }
    bool popoverPresentationControllerShouldDismissPopover(UIPopoverPresentationController&) override
    {
        heard.push_back("should");
        return mayGo;
    }
    void popoverPresentationControllerDidDismissPopover(UIPopoverPresentationController& popover) override
    {
        EXPECT_FALSE(popover.presentedViewController()->view()->window());
        heard.push_back("did");
    }

    UIModalPresentationStyle style = UIModalPresentationStyle::none;
    bool mayGo = true;
    std::vector<std::string> heard;
};

class Writer final : public UIView {
public:
    using UIView::UIView;
    bool canBecomeFirstResponder() const override { return true; }
};

class UIPopoverTest : public ScreensTest {
protected:
    UIPopoverTest()
    {
        window->setRootViewController(root);
        source = add({ 100, 200, 40, 20 }, root->view());
        below->addAction(UIControlEvent::touchUpInside, [this] { ++taps; });
        root->view()->insertSubview(below, 0);
        makeFrame();
        taken();
    }
    ~UIPopoverTest() override { moveKeyboard(480); }

    static void moveKeyboard(CGFloat top, double duration = 0)
    {
        NotificationCenter::defaultCenter().post(UIKeyboard::willChangeFrameNotification, nullptr,
            { { UIKeyboard::frameEndUserInfoKey, CGRect { 0, top, 320, 280 } },
                { UIKeyboard::animationDurationUserInfoKey, duration } });
    }
    std::shared_ptr<UIPopoverPresentationController> prepare(Arrow permitted = Arrow::down)
    {
        content->setModalPresentationStyle(UIModalPresentationStyle::popover);
        content->setPreferredContentSize({ 100, 50 });
        const auto popover = content->popoverPresentationController();
        popover->setSourceView(source);
        popover->setPermittedArrowDirections(permitted);
        popover->setDelegate(delegate);
        return popover;
    }
    std::shared_ptr<UIPopoverPresentationController> open(Arrow permitted = Arrow::down)
    {
        const auto popover = prepare(permitted);
        root->present(content, false);
        makeFrame();
        return popover;
    }
    CGRect place() const { return onScreen(*content->view()); }
    UIView& bubble() const { return *content->view()->superview()->superview(); }
    bool isOpen() const { return root->presentedViewController() == content && !content->isBeingDismissed(); }

    std::shared_ptr<NamedScreen> root = screen("root"), content = screen("content");
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
    std::shared_ptr<UIControl> below = make<UIControl>(CGRect { 0, 0, 320, 480 });
    std::shared_ptr<UIView> source;
    int taps = 0;
};

TEST_F(UIPopoverTest, comesFastBesideItsSourceAndLeavesThePresenter)
{
    const auto popover = prepare();
    EXPECT_EQ(content->popoverPresentationController(), popover);
    root->present(content, true);
    makeFrame();
    advance(0.1);
    const auto& layer = *bubble().layer();
    EXPECT_GT(std::get<double>(layer.presentationValue("opacity", clock.now())), 0.1);
    EXPECT_LT(std::get<double>(layer.presentationValue("opacity", clock.now())), 1);
    EXPECT_LT(std::get<double>(layer.presentationValue("transform.scale", clock.now())), 1);
    EXPECT_GT(std::get<double>(layer.presentationValue("transform.scale", clock.now())), 0.9);
    advance(0.15);
    EXPECT_EQ(taken(), (Heard { "content will appear, presented", "content appeared, presented" }));
    EXPECT_EQ(delegate->heard, Heard { "prepare" });
    EXPECT_EQ(place(), (CGRect { 70, 137, 100, 50 }));
    EXPECT_EQ(popover->arrowDirection(), Arrow::down);
    EXPECT_EQ(content->popoverPresentationController(), popover);
    content->setPreferredContentSize({ 120, 60 });
    EXPECT_EQ(place(), (CGRect { 60, 127, 120, 60 }));

    content->dismiss(true);
    EXPECT_EQ(taken(), Heard { "content will disappear, dismissed" });
    tap({ 5, 5 }); // on its way out it stops nobody
    EXPECT_EQ(taps, 1);
    advanceFar();
    EXPECT_EQ(taken(), Heard { "content disappeared, dismissed" });
    EXPECT_EQ(delegate->heard, Heard { "prepare" }); // who dismisses it knows
    EXPECT_NE(content->popoverPresentationController(), popover);
    EXPECT_EQ(window->subviews().size(), 1u);
}

TEST_F(UIPopoverTest, standsOnWholePixels)
{
    source->setFrame({ 100.3, 200.3, 40, 20 });
    open();
    const double scale = UIScreen::main().scale();
    for (const double edge : { place().x, place().y })
        EXPECT_NEAR(edge * scale, std::round(edge * scale), 1e-6);
}

TEST_F(UIPopoverTest, aTouchOutsideClosesOnlyItIfTheDelegateAgrees)
{
    const auto writer = make<Writer>();
    root->view()->addSubview(writer);
    writer->becomeFirstResponder();
    delegate->mayGo = false;
    open();
    EXPECT_TRUE(writer->isFirstResponder());
    tap({ 120, 160 }); // inside
    EXPECT_EQ(delegate->heard, Heard { "prepare" });
    tap({ 5, 5 });
    UIApplication::shared().sendKey(UIKey::escape);
    UIApplication::shared().sendKey(UIKey::tab); // for the writer
    EXPECT_EQ(delegate->heard, (Heard { "prepare", "should", "should" }));
    EXPECT_TRUE(isOpen());
    delegate->mayGo = true;
    tap({ 72, 139 }); // the box of the bubble, but outside of its round corner
    EXPECT_FALSE(isOpen());
    tap({ 5, 5 });
    advanceFar();
    EXPECT_EQ(delegate->heard, (Heard { "prepare", "should", "should", "should", "did" }));
    EXPECT_EQ(taps, 1); // the last one
    EXPECT_FALSE(root->presentedViewController());
    EXPECT_TRUE(writer->isFirstResponder());
    open();
    UIApplication::shared().sendKey(UIKey::escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(UIPopoverTest, letsTouchesPassToTheViewsThatItWasTold)
{
    const auto button = make<UIControl>(CGRect { 20, 400, 60, 40 });
    int presses = 0;
    button->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    root->view()->addSubview(button);
    open()->setPassthroughViews({ button });
    tap({ 50, 420 });
    EXPECT_EQ(presses, 1);
    EXPECT_TRUE(isOpen());
    tap({ 10, 420 });
    EXPECT_EQ(taps, 0);
    EXPECT_FALSE(isOpen());
}

TEST_F(UIPopoverTest, followsItsSource)
{
    const auto scroller = make<UIScrollView>(CGRect { 0, 100, 320, 300 });
    scroller->setContentSize({ 320, 1000 });
    root->view()->addSubview(scroller);
    scroller->addSubview(source); // at 300 in the window
    source->setFrame({ 100, 200, 40, 20 });
    const auto popover = open();
    EXPECT_EQ(place(), (CGRect { 70, 237, 100, 50 }));
    scroller->setContentOffset({ 0, 40 });
    makeFrame();
    EXPECT_EQ(place(), (CGRect { 70, 197, 100, 50 }));
    scroller->setTransform(CGAffineTransform::scale(1, -1)); // from 260 to 280 becomes 220 to 240
    makeFrame();
    EXPECT_EQ(place(), (CGRect { 70, 157, 100, 50 }));
    popover->setSourceRect(CGRect { 0, 0, 10, 20 });
    EXPECT_EQ(place(), (CGRect { 55, 157, 100, 50 }));
    scroller->setTransform({});
    scroller->setFrame({ 0, 200, 320, 280 });
    makeFrame();
    EXPECT_EQ(place(), (CGRect { 55, 297, 100, 50 }));

    // The keyboard pushes it up, a turn of the screen takes it along, the safe area keeps it in.
    moveKeyboard(300);
    EXPECT_EQ(place(), (CGRect { 55, 240, 100, 50 }));
    moveKeyboard(480);
    EXPECT_EQ(place(), (CGRect { 55, 297, 100, 50 }));
    UIScreen::main().setGeometry({ 480, 320 }, { 0, 60, 20, 0 });
    scroller->setFrame({ 0, 0, 480, 320 });
    makeFrame();
    EXPECT_EQ(place(), (CGRect { 70, 97, 100, 50 }));
    popover->setPopoverLayoutMargins({ 10, 30, 10, 10 });
    EXPECT_EQ(place(), (CGRect { 90, 97, 100, 50 }));

    // It goes with its source.
    scroller->removeFromSuperview();
    makeFrame();
    EXPECT_FALSE(isOpen());
    advanceFar();
    EXPECT_EQ(delegate->heard, (Heard { "prepare", "did" }));
}

TEST_F(UIPopoverTest, withoutASourceStandsInTheMiddle)
{
    source = nullptr;
    open();
    makeFrame();
    EXPECT_EQ(place(), (CGRect { 110, 215, 100, 50 }));
    EXPECT_TRUE(isOpen());
    const auto lines = takeLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("no source view"), std::string::npos);
}

TEST_F(UIPopoverTest, coversTheScreenOfAPhoneUnlessTheDelegateKeepsItAPopover)
{
    const auto popover = prepare();
    popover->setDelegate({});
    root->present(content, false);
    EXPECT_EQ(place(), (CGRect { 0, 0, 320, 480 }));
    EXPECT_TRUE(root->view()->isHidden());
    content->dismiss(false);
    delegate->style = UIModalPresentationStyle::overFullScreen;
    prepare();
    root->present(content, false);
    EXPECT_EQ(place(), (CGRect { 0, 0, 320, 480 }));
    EXPECT_FALSE(root->view()->isHidden());
    content->dismiss(false);

    UITraitCollection tablet = lightTraits();
    tablet.userInterfaceIdiom = UIUserInterfaceIdiom::pad;
    UIScreen::main().setTraitCollection(tablet);
    prepare()->setDelegate({});
    root->present(content, false);
    EXPECT_EQ(place(), (CGRect { 70, 137, 100, 50 }));
}

TEST_F(UIPopoverTest, isDarkWhenItsControllerIsForcedToBe)
{
    const auto fill = [&] { return *static_cast<CAShapeLayer&>(*bubble().layer()).fillColor(); };
    content->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    const auto popover = open();
    EXPECT_LT(fill().red, 0.2);
    EXPECT_TRUE(content->view()->traitCollection().isDark());
    EXPECT_FALSE(root->view()->traitCollection().isDark());
    content->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::unspecified);
    EXPECT_GT(fill().red, 0.9);
    EXPECT_FALSE(content->view()->traitCollection().isDark());
    popover->setBackgroundColor(UIColor::systemRed());
    EXPECT_EQ(fill(), UIColor::systemRed().cgColor(lightTraits()));
}

TEST_F(UIPopoverTest, standsUnderAlertsAndPromptsAndGoesWithItsPresenter)
{
    open();
    const auto alert = make<UIAlertController>("Sure?", "");
    alert->addAction({ "Ok", UIAlertActionStyle::normal, {} });
    content->present(alert, true);
    makeFrame();
    EXPECT_EQ(window->topmostController(), alert);
    UIApplication::shared().sendKey(UIKey::escape); // for the alert
    advanceFar();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(window->topmostController(), content);

    const auto prompt = screen("prompt");
    prompt->setModalPresentationStyle(UIModalPresentationStyle::overCurrentContext);
    content->present(prompt, false);
    EXPECT_EQ(onScreen(*prompt->view()), (CGRect { 0, 0, 320, 480 }));
    taken();
    root->dismiss(true); // both
    root->present(screen("next"), false); // waits
    EXPECT_EQ(taken(),
        (Heard { "prompt will disappear, dismissed", "prompt disappeared, dismissed", "content will disappear, dismissed" }));
    advanceFar();
    EXPECT_EQ(window->topmostController()->view()->frame(), (CGRect { 0, 0, 320, 480 }));
    EXPECT_NE(window->topmostController(), content);
    root->dismiss(false);

    open();
    const auto former = weak(root);
    root = screen("other");
    window->setRootViewController(root);
    source = nullptr;
    makeFrame();
    EXPECT_FALSE(former.lock());
    EXPECT_FALSE(content->view()->window());
    EXPECT_FALSE(content->presentingViewController());
}

TEST_F(UIPopoverTest, leavesNothingBehindHoweverOftenItOpens)
{
    const WeakRef<UIPopoverPresentationController> unused = weak(prepare());
    content = screen("content");
    EXPECT_FALSE(unused.lock()); // one that was never presented
    std::vector<WeakRef<NSObject>> made;
    for (int round = 0; round < 200; ++round) {
        content = screen("content");
        made.push_back(WeakRef<NSObject>(content.get()));
        made.push_back(WeakRef<NSObject>(prepare().get()));
        root->present(content, round % 2 == 0);
        made.push_back(WeakRef<NSObject>(content->view()->superview()->superview()));
        if (round % 3 == 0)
            makeFrame();
        content->dismiss(round % 4 < 2);
        if (round % 5 > 0)
            advance(0.1); // not always to the end
        root->dismiss(false);
        makeFrame(); // in which the last animation begins
        advance(0.3);
    }
    content = nullptr;
    makeFrame();
    EXPECT_EQ(std::ranges::count_if(made, [](const auto& each) { return each.lock() != nullptr; }), 0);
    EXPECT_EQ(window->subviews().size(), 1u);
}

TEST_F(UIPopoverTest, overCurrentContextCoversTheControllerThatDefinesOne)
{
    const auto pane = screen("pane"), inner = screen("inner"), prompt = screen("prompt");
    root->addChild(pane);
    root->view()->addSubview(pane->view());
    pane->view()->setFrame({ 20, 100, 200, 300 });
    pane->addChild(inner);
    pane->view()->addSubview(inner->view());
    pane->setDefinesPresentationContext(true);
    prompt->setModalPresentationStyle(UIModalPresentationStyle::overCurrentContext);
    prompt->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    const auto place = [&] { return onScreen(*prompt->view()); };
    taken();
    inner->present(prompt, false);
    EXPECT_EQ(taken(), (Heard { "prompt will appear, presented", "prompt appeared, presented" }));
    EXPECT_EQ(prompt->presentingViewController(), pane.get());
    EXPECT_EQ(inner->presentedViewController(), prompt);
    EXPECT_FALSE(root->presentedViewController());
    EXPECT_EQ(window->topmostController(), prompt);
    EXPECT_EQ(place(), (CGRect { 20, 100, 200, 300 }));
    EXPECT_TRUE(prompt->view()->traitCollection().isDark());
    EXPECT_FALSE(pane->view()->traitCollection().isDark());
    tap({ 100, 150 });
    EXPECT_EQ(taps, 0);
    tap({ 280, 150 }); // beside the pane
    EXPECT_EQ(taps, 1);
    pane->view()->setFrame({ 0, 50, 320, 200 });
    EXPECT_EQ(place(), (CGRect { 0, 50, 320, 200 }));

    // What covers the root takes it along, and brings it back.
    const auto cover = screen("cover");
    root->present(cover, false);
    EXPECT_EQ(window->topmostController(), cover);
    const auto gone = taken();
    EXPECT_EQ(std::ranges::count(gone, "prompt disappeared"), 1);
    cover->dismiss(false);
    EXPECT_EQ(std::ranges::count(taken(), "prompt appeared"), 1);

    prompt->dismiss(false);
    EXPECT_EQ(taken(), (Heard { "prompt will disappear, dismissed", "prompt disappeared, dismissed" }));
    pane->setDefinesPresentationContext(false);
    inner->present(prompt, false);
    EXPECT_EQ(prompt->presentingViewController(), root.get());
    EXPECT_EQ(place(), (CGRect { 0, 0, 320, 480 }));
}

TEST_F(UIPopoverTest, aForcedAppearanceHoldsForAControllersTree)
{
    const auto child = screen("child");
    root->addChild(child);
    const auto leaf = add({}, child->view());
    leaf->setBackgroundColor(UIColor::label());
    child->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    root->view()->addSubview(child->view());
    const auto isWhite = [&] { return leaf->layer()->backgroundColor()->red > 0.9; };
    EXPECT_TRUE(isWhite());
    UITraitCollection dark = lightTraits();
    dark.userInterfaceStyle = UIUserInterfaceStyle::dark;
    dark.displayScale = 3;
    UIScreen::main().setTraitCollection(dark);
    EXPECT_EQ(leaf->traitCollection(), dark);
    child->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::light);
    EXPECT_FALSE(isWhite());
    UIScreen::main().setTraitCollection(lightTraits());
    EXPECT_FALSE(isWhite());
    root->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    EXPECT_FALSE(isWhite()); // the nearer one holds
    child->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::unspecified);
    EXPECT_TRUE(isWhite());
}

} // namespace
} // namespace platform
