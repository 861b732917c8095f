#include "ScreenTest.h"

namespace platform {
namespace {

class UIViewAnimationTest : public ScreenTest {
protected:
    double shown(const UIView& view) const { return std::get<double>(view.layer()->presentationValue("opacity", clock.now())); }
};

double easeInOut(double t) { return CAMediaTimingFunction::easeInEaseOut().evaluate(t); }

TEST_F(UIViewAnimationTest, showsExactValuesOnTheWay)
{
    const auto view = add({ 0, 0, 10, 10 });
    std::vector<bool> ended;
    UIView::animate(
        0.4,
        [&] {
            view->setAlpha(0.5);
            view->setFrame({ 100, 0, 10, 10 });
        },
        [&](bool finished) { ended.push_back(finished); });
    EXPECT_EQ(view->frame().x, 100) << "the model is at its goal at once";
    makeFrame(); // begins here
    advance(0.1);
    EXPECT_NEAR(view->layer()->presentationFrame(clock.now()).x, 100 * easeInOut(0.25), 1e-6);
    EXPECT_NEAR(shown(*view), 1 - 0.5 * easeInOut(0.25), 1e-6);
    EXPECT_TRUE(ended.empty());
    advance(0.3);
    EXPECT_EQ(ended, std::vector<bool> { true });
    EXPECT_FALSE(view->layer()->hasAnimations());
    advance(1);
    EXPECT_EQ(ended.size(), 1u);
}

TEST_F(UIViewAnimationTest, leavesOthersOutOfALayoutInABlock)
{
    // A sibling tree that is new in this turn appears in its place instead of flying in from the corner.
    const auto left = add({ 0, 0, 160, 480 }), right = add({ 160, 0, 160, 480 });
    const auto inLeft = addConstrained("inLeft", left);
    const auto height = inLeft->heightAnchor().equalToConstant(10);
    height->setActive(true);
    makeFrame();
    const auto inRight = addConstrained("inRight", right);
    fill(*inRight, *right, 20);
    height->setConstant(20);
    UIView::animate(1, [&] { left->layoutIfNeeded(); });
    makeFrame();
    EXPECT_TRUE(inLeft->layer()->hasAnimations());
    EXPECT_FALSE(inRight->layer()->hasAnimations());
    EXPECT_EQ(inRight->frame(), (CGRect { 20, 20, 120, 440 }));
}

TEST_F(UIViewAnimationTest, startsLateWithADelay)
{
    const auto view = add({});
    UIView::animate(1, 2, UIViewAnimationCurve::linear, [&] { view->setAlpha(0); });
    makeFrame();
    advance(1);
    EXPECT_NEAR(shown(*view), 1, 1e-9);
    advance(1.25);
    EXPECT_NEAR(shown(*view), 0.75, 1e-9);
    advance(0.75);
    EXPECT_NEAR(shown(*view), 0, 1e-9);
}

TEST_F(UIViewAnimationTest, completesAtTheNextFrameWhenThereIsNothingToSee)
{
    const auto view = add({});
    int completed = 0;
    const auto count = [&](bool finished) { completed += finished; };
    UIView::animate(
        0, [&] { view->setAlpha(0.2); }, count);
    UIView::animate(
        0.33, [&] { view->setAlpha(0.2); }, count); // already so
    UIView::animate(0.33, {}, count);
    EXPECT_FALSE(view->layer()->hasAnimations());
    EXPECT_EQ(completed, 0);
    makeFrame();
    EXPECT_EQ(completed, 3);
}

TEST_F(UIViewAnimationTest, turnsFromWhereItIs)
{
    const auto view = add({});
    std::vector<bool> first, second;
    UIView::animate(
        1, 0, UIViewAnimationCurve::linear, [&] { view->setAlpha(0); }, [&](bool f) { first.push_back(f); });
    makeFrame();
    advance(0.25);
    UIView::animate(
        1, 0, UIViewAnimationCurve::linear, [&] { view->setAlpha(1); }, [&](bool f) { second.push_back(f); });
    makeFrame();
    EXPECT_NEAR(shown(*view), 0.75, 1e-9);
    advance(0.5);
    EXPECT_NEAR(shown(*view), 0.875, 1e-9);
    EXPECT_EQ(first, std::vector<bool> { false });
    advance(0.5);
    EXPECT_EQ(second, std::vector<bool> { true });
}

TEST_F(UIViewAnimationTest, nestsBlocksAndSwitchesAnimationOff)
{
    const auto inner = add({}), outer = add({}), still = add({});
    int innerEnded = 0;
    UIView::animate(2, 0, UIViewAnimationCurve::linear, [&] {
        outer->setAlpha(0);
        UIView::animate(
            0.1, [&] { inner->setAlpha(0); }, [&](bool) { ++innerEnded; });
        UIView::performWithoutAnimation([&] { still->setAlpha(0); });
    });
    makeFrame();
    advance(1);
    EXPECT_NEAR(shown(*inner), 0.5, 1e-9);
    EXPECT_FALSE(still->layer()->hasAnimations());
    EXPECT_EQ(innerEnded, 0);
    advance(1);
    EXPECT_EQ(innerEnded, 1);
    inner->setAlpha(1);
    EXPECT_FALSE(inner->layer()->hasAnimations()) << "outside a block";
    UIView::animate(0, [&] { UIView::animate(1, [&] { inner->setAlpha(0); }); });
    EXPECT_TRUE(inner->layer()->hasAnimations()) << "a block without a duration has none to give";
    UIView::performWithoutAnimation([&] { UIView::animate(1, [&] { outer->setAlpha(1); }); });
    EXPECT_FALSE(outer->layer()->hasAnimations());
}

TEST_F(UIViewAnimationTest, endsWithItsView)
{
    auto view = add({});
    const std::weak_ptr<UIView> gone = view;
    int completed = 0;
    UIView::animate(
        1, [&] { view->setAlpha(0); },
        [&](bool finished) {
            EXPECT_FALSE(finished);
            ++completed;
        });
    makeFrame();
    view->removeFromSuperview();
    view = nullptr;
    advance(0.1);
    advance(0.1);
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(completed, 1);
}

} // namespace
} // namespace platform
