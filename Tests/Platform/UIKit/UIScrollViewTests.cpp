#include "Platform/UIKit/UIScrollView.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/UIKit/UIControl.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

namespace platform {
namespace {

// 200 x 300 points, with a content of 200 x 1000.
class UIScrollViewTest : public ScreenTest {
protected:
    UIScrollViewTest()
    {
        window->addSubview(list);
        list->setContentSize({ 200, 1000 });
        makeFrame();
    }
    double y() const { return list->contentOffset().y; }
    // A finger from one place to another in so many frames.
    void drag(CGPoint from, CGPoint to, int frames, bool lift = true)
    {
        touch(UITouchPhase::began, from);
        for (int i = 1; i <= frames; ++i) {
            advance(1.0 / 60);
            const double part = double(i) / frames;
            touch(UITouchPhase::moved, { from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part });
        }
        if (lift)
            touch(UITouchPhase::ended, to);
    }
    void rest(double seconds)
    {
        for (double t = 0; t < seconds; t += 1.0 / 60)
            advance(1.0 / 60);
    }

    const std::shared_ptr<UIScrollView> list = make<UIScrollView>(CGRect { 0, 0, 200, 300 });
};

TEST_F(UIScrollViewTest, followsTheFingerFromTenPointsOn)
{
    drag({ 100, 250 }, { 100, 241 }, 3, false);
    EXPECT_EQ(y(), 0);
    touch(UITouchPhase::moved, { 100, 240 });
    EXPECT_TRUE(list->isDragging());
    EXPECT_EQ(y(), 0) << "no jump by the slop";
    touch(UITouchPhase::moved, { 100, 200 });
    EXPECT_EQ(y(), 40);
    rest(0.2);
    touch(UITouchPhase::ended, { 100, 200 });
    rest(1);
    EXPECT_EQ(y(), 40) << "a finger at rest throws nothing";
    EXPECT_FALSE(list->isDragging());
}

TEST_F(UIScrollViewTest, glidesAsFarAsItsSpeedCarriesIt)
{
    drag({ 100, 280 }, { 100, 220 }, 6); // 600 points a second
    const double released = y();
    EXPECT_TRUE(list->isDecelerating());
    rest(5);
    EXPECT_FALSE(list->isDecelerating());
    EXPECT_NEAR(y() - released, 600 / 2.002, 4);
    EXPECT_FALSE(LayerCommitter::hasRunningAnimations()) << "at rest it asks for no frame";
}

TEST_F(UIScrollViewTest, givesWayBeyondItsEndsAndComesBack)
{
    drag({ 100, 50 }, { 100, 160 }, 10, false); // 99 points after the slop's frame of 11
    EXPECT_NEAR(y(), -(1 - 1 / (99 * 0.55 / 300 + 1)) * 300, 0.5);
    touch(UITouchPhase::ended, { 100, 160 });
    rest(0.1);
    EXPECT_LT(y(), 0);
    rest(2);
    EXPECT_EQ(y(), 0);

    list->setContentOffset({ 0, 690 });
    drag({ 100, 280 }, { 100, 120 }, 6); // over the lower end at speed
    double furthest = 0;
    for (int i = 0; i < 120; ++i) {
        advance(1.0 / 60);
        furthest = std::max(furthest, y());
    }
    EXPECT_GT(furthest, 720);
    EXPECT_EQ(y(), 700);

    list->setBounces(false);
    list->setContentOffset({ 0, 0 });
    drag({ 100, 50 }, { 100, 160 }, 10);
    EXPECT_EQ(y(), 0);
}

TEST_F(UIScrollViewTest, aTouchStopsItAndPressesNothing)
{
    const auto button = make<UIControl>(CGRect { 0, 0, 200, 1000 });
    int presses = 0;
    button->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    list->addSubview(button);
    drag({ 100, 280 }, { 100, 220 }, 6);
    rest(0.1);
    touch(UITouchPhase::began, { 100, 100 });
    const double stopped = y();
    rest(0.3);
    EXPECT_EQ(y(), stopped);
    touch(UITouchPhase::ended, { 100, 100 });
    rest(1);
    EXPECT_EQ(y(), stopped);
    EXPECT_EQ(presses, 0);
    tap({ 100, 100 });
    EXPECT_EQ(presses, 1) << "at rest a tap is a tap";
}

TEST_F(UIScrollViewTest, aScrollPressesNoButtonAndAFlickDoesNotFlashIt)
{
    const auto button = make<UIControl>(CGRect { 0, 0, 200, 1000 });
    std::string heard;
    button->addAction(UIControlEvent::touchDown, [&] { heard += "down "; });
    button->addAction(UIControlEvent::touchCancel, [&] { heard += "cancel "; });
    button->addAction(UIControlEvent::touchUpInside, [&] { heard += "up "; });
    list->addSubview(button);
    drag({ 100, 200 }, { 100, 150 }, 5);
    EXPECT_EQ(heard, "");
    rest(3);
    touch(UITouchPhase::began, { 100, 200 });
    clock.advance(0.2);
    MainQueue::shared().run(clock.now());
    EXPECT_EQ(heard, "down ") << "held long enough";
    drag({ 100, 200 }, { 100, 150 }, 5);
    EXPECT_EQ(heard, "down cancel ");
    rest(3);
    touch(UITouchPhase::began, { 100, 200 });
    advance(0.05);
    touch(UITouchPhase::ended, { 100, 200 });
    EXPECT_EQ(heard, "down cancel down up ");
}

TEST_F(UIScrollViewTest, scrollsAlongTheAxisThatCan)
{
    const auto strip = make<UIScrollView>(CGRect { 0, 100, 200, 80 });
    strip->setContentSize({ 600, 80 });
    list->addSubview(strip);
    makeFrame();
    drag({ 150, 140 }, { 90, 135 }, 6, false);
    EXPECT_GT(strip->contentOffset().x, 40);
    EXPECT_EQ(y(), 0);
    touch(UITouchPhase::cancelled, { 90, 135 });
    rest(1);
    const double moved = strip->contentOffset().x;
    drag({ 150, 140 }, { 148, 80 }, 6, false);
    EXPECT_GT(y(), 40) << "upwards the outer one moves";
    EXPECT_EQ(strip->contentOffset().x, moved);
    touch(UITouchPhase::cancelled, { 148, 80 });

    list->setContentOffset({});
    list->setScrollEnabled(false);
    drag({ 100, 280 }, { 100, 200 }, 6);
    EXPECT_EQ(y(), 0);
}

TEST_F(UIScrollViewTest, theWheelGoesToTheInnermostThatCanScroll)
{
    const auto inner = make<UIScrollView>(CGRect { 0, 0, 200, 100 });
    inner->setContentSize({ 200, 150 });
    list->addSubview(inner);
    auto& application = UIApplication::shared();
    EXPECT_TRUE(application.sendScroll({ 50, 50 }, 0, 30));
    EXPECT_EQ(inner->contentOffset().y, 30);
    EXPECT_TRUE(application.sendScroll({ 50, 50 }, 0, 500));
    EXPECT_EQ(inner->contentOffset().y, 50) << "to its end";
    EXPECT_TRUE(application.sendScroll({ 50, 50 }, 0, 40));
    EXPECT_EQ(y(), 40) << "then the one around it";
    EXPECT_FALSE(application.sendScroll({ 300, 50 }, 0, 40));
    EXPECT_FALSE(application.sendScroll({ 50, 250 }, std::nan(""), 0));
}

TEST_F(UIScrollViewTest, itsContentsConstraintsGiveItsSize)
{
    for (const bool mirrored : { false, true }) {
        setDirection(mirrored ? UIUserInterfaceLayoutDirection::rightToLeft : UIUserInterfaceLayoutDirection::leftToRight);
        const auto pager = make<UIScrollView>();
        pager->setTranslatesAutoresizingMaskIntoConstraints(false);
        window->addSubview(pager);
        fill(*pager, *window, 10);
        const auto first = addConstrained("first", pager), second = addConstrained("second", pager);
        activate({
            first->leadingAnchor().equalTo(pager->leadingAnchor()),
            second->leadingAnchor().equalTo(first->trailingAnchor()),
            second->trailingAnchor().equalTo(pager->trailingAnchor()),
        });
        for (const auto& page : { first, second })
            activate({
                page->topAnchor().equalTo(pager->topAnchor()),
                page->bottomAnchor().equalTo(pager->bottomAnchor()),
                page->heightAnchor().equalTo(pager->heightAnchor()),
                page->widthAnchor().equalTo(pager->widthAnchor()),
            });
        makeFrame();
        EXPECT_EQ(pager->contentSize(), (CGSize { 600, 460 }));
        EXPECT_EQ(first->frame(), (CGRect { mirrored ? 300.0 : 0.0, 0, 300, 460 }));
        EXPECT_EQ(second->frame(), (CGRect { mirrored ? 0.0 : 300.0, 0, 300, 460 }));
        pager->setContentOffset({ 300, 0 });
        makeFrame();
        EXPECT_EQ(second->frame(), (CGRect { mirrored ? 0.0 : 300.0, 0, 300, 460 })) << "scrolling moves the bounds alone";
        EXPECT_EQ(onScreen(*first).x, mirrored ? 10 : -290);
        UIScreen::main().setGeometry({ 480, 320 }, {});
        makeFrame();
        EXPECT_EQ(pager->contentSize(), (CGSize { 920, 300 }));
        UIScreen::main().setGeometry({ 320, 480 }, {});
        pager->removeFromSuperview();
        makeFrame();
    }
}

TEST_F(UIScrollViewTest, staysWithinItsContent)
{
    list->setContentOffset({ 0, 650 });
    list->setContentSize({ 200, 500 });
    EXPECT_EQ(y(), 200);
    list->setFrame({ 0, 0, 200, 480 });
    EXPECT_EQ(y(), 20);
    list->setContentInset({ 10, 0, 30, 0 });
    EXPECT_EQ(list->minimumContentOffset().y, -10);
    EXPECT_EQ(list->maximumContentOffset().y, 50);
    list->scrollRectToVisible({ 0, 480, 10, 20 }, false);
    EXPECT_EQ(y(), 50);
    list->setContentSize({ std::nan(""), -4 });
    EXPECT_EQ(list->contentSize(), (CGSize {}));
    list->setContentOffset({ std::nan(""), 0 });
    EXPECT_EQ(takeLines().size(), 1u);
}

TEST_F(UIScrollViewTest, scrollsBeneathTheHomeIndicatorButEndsAboveIt)
{
    UIScreen::main().setGeometry({ 320, 480 }, { 40, 0, 34, 0 });
    list->setFrame({ 0, 0, 320, 480 });
    const auto inside = add({ 0, 960, 320, 40 }, list);
    makeFrame();
    EXPECT_EQ(y(), 0) << "what the owner set stays";
    EXPECT_EQ(list->minimumContentOffset().y, -40);
    EXPECT_EQ(list->maximumContentOffset().y, 554);
    list->setContentOffset({ 0, 520 });
    EXPECT_EQ(inside->safeAreaInsets(), UIEdgeInsets {}) << "what scrolls is not squeezed on its way";
}

TEST_F(UIScrollViewTest, movesOnItsOwn)
{
    list->setContentOffset({ 0, 400 }, true);
    EXPECT_EQ(y(), 0);
    advance(0.15);
    EXPECT_NEAR(y(), 200, 1);
    advance(0.16);
    EXPECT_EQ(y(), 400);
    list->setContentOffset({ 0, 0 }, true);
    advance(0.1);
    list->removeFromSuperview();
    makeFrame();
    EXPECT_FALSE(LayerCommitter::hasRunningAnimations());
}

TEST_F(UIScrollViewTest, saysWhereItIsWhileItMoves)
{
    const auto bar = [&]() -> std::shared_ptr<CALayer> {
        for (const auto& layer : list->layer()->sublayers())
            if (layer->zPosition() > 0)
                return layer;
        return nullptr;
    };
    const auto place = [&] {
        CGRect frame = bar()->frame();
        frame.y -= y();
        return frame;
    };
    const auto shown = [&] { return bar() && std::get<double>(bar()->presentationValue("opacity", clock.now())) > 0; };
    EXPECT_FALSE(shown());
    drag({ 100, 250 }, { 100, 200 }, 3, false);
    EXPECT_TRUE(shown());
    EXPECT_NEAR(place().height, 294 * 0.3, 1e-6) << "as much of its way as the view is of the content";
    EXPECT_EQ(place().maxX(), 197);
    const double before = place().y;
    touch(UITouchPhase::moved, { 100, 100 });
    EXPECT_GT(place().y, before);
    EXPECT_EQ(bar()->superlayer(), list->layer().get());
    EXPECT_TRUE(list->subviews().empty());
    rest(0.2);
    touch(UITouchPhase::ended, { 100, 100 });
    rest(0.2);
    EXPECT_TRUE(shown());
    rest(0.6);
    EXPECT_FALSE(shown());
    EXPECT_FALSE(LayerCommitter::hasRunningAnimations());

    UIApplication::shared().sendScroll({ 100, 100 }, 0, 5000);
    EXPECT_NEAR(place().maxY(), 297, 1e-6) << "at the end";
    EXPECT_TRUE(shown());
    rest(1);
    EXPECT_FALSE(shown());
    drag({ 100, 250 }, { 100, 50 }, 3, false);
    EXPECT_LT(place().height, 294 * 0.3) << "squeezed beyond the end";
    EXPECT_NEAR(place().maxY(), 297, 1e-6);
    touch(UITouchPhase::ended, { 100, 50 });
    rest(3);

    list->setShowsVerticalScrollIndicator(false);
    UIApplication::shared().sendScroll({ 100, 100 }, 0, -50);
    EXPECT_FALSE(shown());
}

// Ends the scroll view in a callback of its own.
struct Ender final : UIScrollViewDelegate {
    std::shared_ptr<UIScrollView> ended;
    void scrollViewDidScroll(UIScrollView& scrollView) override
    {
        scrollView.removeFromSuperview();
        ended = nullptr;
    }
};

TEST_F(UIScrollViewTest, mayEndInItsOwnCallback)
{
    const auto ender = std::make_shared<Ender>();
    ender->ended = make<UIScrollView>(CGRect { 0, 300, 200, 100 });
    const auto reference = weak(ender->ended);
    ender->ended->setContentSize({ 200, 900 });
    ender->ended->setDelegate(ender);
    window->addSubview(ender->ended);
    makeFrame();
    drag({ 100, 390 }, { 100, 330 }, 6);
    rest(0.5);
    EXPECT_FALSE(reference.lock());
}

} // namespace
} // namespace platform
