#include "UI/Screens/Broadcast Screen/SubViews/ReactionAnimationView.h"

#include <gtest/gtest.h>

namespace mv {
namespace {

class ReactionAnimationViewTest : public testing::Test {
protected:
    using PathType = ReactionAnimationView::PathType;
    const std::shared_ptr<ReactionAnimationView> overlay = make<ReactionAnimationView>(CGRect { 0, 0, 400, 800 });
};

TEST_F(ReactionAnimationViewTest, pathsSwingToOneSideAndThenTheOther)
{
    CGPath one, two;
    one.moveTo({ 350, 800 });
    one.curveTo({ 280, 600 }, { 420, 200 }, { 350, 0 });
    two.moveTo({ 350, 800 });
    two.curveTo({ 420, 600 }, { 280, 200 }, { 350, 0 });
    EXPECT_EQ(*overlay->customPath(PathType::one), one);
    EXPECT_EQ(*overlay->customPath(PathType::two), two);
}

TEST_F(ReactionAnimationViewTest, anIconFliesAsOneGroupThatEndsByItself)
{
    const auto icon = std::make_shared<const UIImage>();
    for (int i = 0; i < 20; ++i)
        overlay->animate(icon);
    ASSERT_EQ(overlay->subviews().size(), 20u);
    for (const auto& view : overlay->subviews()) {
        EXPECT_EQ(view->bounds(), (CGRect { 0, 0, 35, 35 }));
        EXPECT_TRUE(view->layer()->hasAnimations());
    }
    for (const double duration : { 3.0, 5.0 }) {
        const auto position = overlay->positionAnimation(duration - 1, overlay->customPath(PathType::one));
        const auto opacity = overlay->opacityAnimation(duration);
        EXPECT_EQ(position->fillMode, CAMediaTimingFillMode::forwards) << "the icon waits at the top for the last second";
        EXPECT_EQ(opacity->keyTimes, (std::vector<double> { 0.4, 0.8, 5 }));
        EXPECT_FALSE(opacity->timingFunction) << "the fading is linear within the group";
        const auto group = overlay->groupAnimation(duration, { position, overlay->scaleAnimation(duration), opacity });
        EXPECT_EQ(group->duration, duration);
        EXPECT_EQ(group->animations.size(), 3u);
        EXPECT_TRUE(group->removedOnCompletion);
    }
}

TEST_F(ReactionAnimationViewTest, takesNoTouch)
{
    const auto below = make<UIView>(CGRect { 0, 0, 400, 800 });
    below->addSubview(overlay);
    overlay->animate(std::make_shared<const UIImage>());
    EXPECT_EQ(below->hitTest({ 200, 400 }, nullptr), below);
}

} // namespace
} // namespace mv
