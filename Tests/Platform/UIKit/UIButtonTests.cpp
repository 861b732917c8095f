#include "Platform/UIKit/UIButton.h"

#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Tests/Platform/UIKit/KitResources.h"

#include <gtest/gtest.h>

#include <cmath>

namespace platform {
namespace {

constexpr auto normal = UIControlState::normal;
constexpr auto highlighted = UIControlState::highlighted;
constexpr auto disabled = UIControlState::disabled;
constexpr auto selected = UIControlState::selected;

std::shared_ptr<const UIImage> image(int width, int height)
{
    return std::make_shared<UIImage>(CGImage::fromBitmap(Bitmap::make(width, height, PixelFormat::argb, true)));
}

std::shared_ptr<UIButton> button(const char* title, const std::shared_ptr<const UIImage>& picture = nullptr)
{
    const auto result = make<UIButton>();
    result->titleLabel()->setFont(kitFont("SemiBold", 16));
    if (title)
        result->setTitle(title);
    result->setImage(picture);
    return result;
}

CGSize titleSize(const UIButton& button) { return button.titleLabel()->intrinsicContentSize(); }

void lay(UIButton& button, const CGRect& frame)
{
    button.setFrame(frame);
    button.layoutIfNeeded();
}

TEST(UIButton, fallsBackToNormalWhereAStateHasNothing)
{
    const auto toggle = button("off");
    toggle->setTitle("on", selected);
    toggle->setTitleColor(UIColor::red(), disabled);
    EXPECT_EQ(toggle->title(highlighted), "off");
    EXPECT_EQ(toggle->title(selected), "on");
    EXPECT_EQ(toggle->title(selected | highlighted), "off") << "a combination of its own";
    EXPECT_EQ(toggle->titleColor(normal), UIColor::white());
    EXPECT_EQ(toggle->titleColor(disabled), UIColor::red());
    toggle->setTitle("pressed on", selected | highlighted);
    toggle->setSelected(true);
    EXPECT_EQ(toggle->titleLabel()->text(), "on");
    toggle->setHighlighted(true);
    EXPECT_EQ(toggle->titleLabel()->text(), "pressed on");
    toggle->setTitle(std::nullopt, selected | highlighted);
    EXPECT_EQ(toggle->titleLabel()->text(), "off");
}

TEST(UIButton, showsWhatItsStateAsksFor)
{
    const auto join = button("Join", image(20, 20));
    const auto pressed = image(10, 10);
    join->setImage(pressed, highlighted);
    join->setTitleColor(UIColor::systemBlue());
    join->setTitleColor(UIColor::systemGray5(), disabled);
    join->setHighlighted(true);
    EXPECT_EQ(join->imageView()->image(), pressed);
    EXPECT_EQ(join->imageView()->alpha(), 1) << "its own image for that state is not dimmed";
    join->setEnabled(false);
    EXPECT_EQ(join->titleLabel()->textColor(), UIColor::systemGray5());
    EXPECT_EQ(join->imageView()->alpha(), 0.5);
    join->setAdjustsImageWhenHighlighted(false);
    EXPECT_EQ(join->imageView()->alpha(), 1);
}

TEST(UIButton, isAsLargeAsItsContentWithinItsInsets)
{
    const auto card = button("Join now");
    const CGSize title = titleSize(*card);
    EXPECT_EQ(card->intrinsicContentSize(), title);
    card->setContentEdgeInsets({ 10, 3, 12, 4 });
    EXPECT_EQ(card->intrinsicContentSize(), (CGSize { title.width + 7, title.height + 22 }));
    card->setImage(image(30, 40));
    EXPECT_EQ(card->intrinsicContentSize(), (CGSize { title.width + 37, 62 }));
    card->setImageEdgeInsets({ 5, -7, 5, 0 });
    card->setTitleEdgeInsets({ 9, 9, 9, 9 });
    EXPECT_EQ(card->intrinsicContentSize(), (CGSize { title.width + 37, 62 })) << "the others only move what is there";
    EXPECT_EQ(button(nullptr)->intrinsicContentSize(), CGSize {});
}

TEST(UIButton, asksForALayoutWhenItsTitleChanges)
{
    const auto row = make<UIView>(CGRect { 0, 0, 300, 40 });
    const auto tab = button("A");
    tab->setTranslatesAutoresizingMaskIntoConstraints(false);
    row->addSubview(tab);
    activate({ tab->leadingAnchor().equalTo(row->leadingAnchor()), tab->topAnchor().equalTo(row->topAnchor()) });
    row->layoutIfNeeded();
    const CGFloat narrow = tab->frame().width;
    tab->setTitle("A much longer title");
    row->layoutIfNeeded();
    EXPECT_GT(tab->frame().width, narrow * 3);
    const CGFloat before = tab->frame().width;
    tab->titleLabel()->setFont(kitFont("SemiBold", 24));
    row->layoutIfNeeded();
    EXPECT_NEAR(tab->frame().width, before * 1.5, 2) << "its label's font counts too";
    EXPECT_NEAR(tab->titleLabel()->frame().width, tab->frame().width, 0.5);
}

TEST(UIButton, putsTheImageBeforeTheTitle)
{
    const auto date = button("Mar 5", image(24, 24));
    const CGFloat title = titleSize(*date).width;
    lay(*date, { 0, 0, 200, 40 });
    const CGFloat start = (200 - 24 - title) / 2;
    EXPECT_EQ(date->imageView()->frame(), (CGRect { std::round(start * 2) / 2, 8, 24, 24 })) << "on whole pixels";
    EXPECT_NEAR(date->titleLabel()->frame().x, date->imageView()->frame().maxX(), 1e-9);
    EXPECT_NEAR(date->titleLabel()->frame().midY(), 20, 0.5);
}

TEST(UIButton, movesCentredContentByHalfAnInset)
{
    const auto date = button("Mar 5", image(24, 24));
    lay(*date, { 0, 0, 200, 40 });
    const CGRect imageBefore = date->imageView()->frame(), titleBefore = date->titleLabel()->frame();
    date->setImageEdgeInsets({ 0, -7, 0, 0 });
    date->layoutIfNeeded();
    EXPECT_NEAR(date->imageView()->frame().x, imageBefore.x - 3.5, 0.25);
    EXPECT_EQ(date->titleLabel()->frame(), titleBefore);
    date->setTitleEdgeInsets({ 0, 10, 0, 0 });
    date->layoutIfNeeded();
    EXPECT_NEAR(date->titleLabel()->frame().x, titleBefore.x + 5, 1e-9);
}

TEST(UIButton, squeezesAnImageIntoItsInsets)
{
    const auto round = button(nullptr, image(24, 24));
    round->setImageEdgeInsets({ 9, 9, 9, 9 });
    lay(*round, { 0, 0, 40, 40 });
    EXPECT_EQ(round->imageView()->frame(), (CGRect { 9, 9, 22, 22 }));
    lay(*round, { 0, 0, 50, 50 });
    EXPECT_EQ(round->imageView()->frame(), (CGRect { 13, 13, 24, 24 })) << "but never makes it larger";
    lay(*round, { 0, 0, 10, 10 });
    EXPECT_EQ(round->imageView()->frame().width, 0);
}

TEST(UIButton, cutsATitleThatFindsNoRoom)
{
    const auto narrow = button("A title that is far too long", image(20, 20));
    lay(*narrow, { 0, 0, 100, 40 });
    EXPECT_NEAR(narrow->titleLabel()->frame().x, 20, 1e-9);
    EXPECT_NEAR(narrow->titleLabel()->frame().maxX(), 100, 1e-9);
    EXPECT_TRUE(narrow->titleLabel()->displayedLayout()->isTruncated());
}

TEST(UIButton, alignsItsContent)
{
    const auto link = button("Read", image(20, 20));
    link->setContentEdgeInsets({ 0, 5, 0, 6 });
    const CGFloat title = titleSize(*link).width;
    link->setContentHorizontalAlignment(UIControlContentHorizontalAlignment::leading);
    link->setContentVerticalAlignment(UIControlContentVerticalAlignment::bottom);
    lay(*link, { 0, 0, 200, 60 });
    EXPECT_EQ(link->imageView()->frame(), (CGRect { 5, 40, 20, 20 }));
    EXPECT_NEAR(link->titleLabel()->frame().x, 25, 1e-9);
    link->setContentHorizontalAlignment(UIControlContentHorizontalAlignment::trailing);
    link->layoutIfNeeded();
    EXPECT_NEAR(link->titleLabel()->frame().maxX(), 194, 1e-9);
    EXPECT_NEAR(link->imageView()->frame().x, 194 - title - 20, 1e-9);
}

TEST(UIButton, isMirroredFromRightToLeft)
{
    const auto date = button("Mar 5", image(24, 24));
    date->setContentEdgeInsets({ 0, 10, 0, 30 });
    date->setImageEdgeInsets({ 5, -7, 5, 0 });
    lay(*date, { 0, 0, 200, 40 });
    const CGRect imageBefore = date->imageView()->frame(), titleBefore = date->titleLabel()->frame();
    date->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    date->layoutIfNeeded();
    EXPECT_NEAR(date->imageView()->frame().x, 200 - imageBefore.maxX(), 0.5);
    EXPECT_NEAR(date->titleLabel()->frame().x, 200 - titleBefore.maxX(), 0.5);
}

TEST(UIButton, namesItsOwnViews)
{
    const auto named = button("Join");
    EXPECT_EQ(named->titleLabel()->accessibilityIdentifier(), "titleLabel");
    EXPECT_EQ(named->imageView()->accessibilityIdentifier(), "imageView");
    EXPECT_TRUE(named->imageView()->isHidden()) << "no image, nothing to see";
    lay(*named, { 0, 0, 100, 40 });
    EXPECT_EQ(named->hitTest({ 50, 20 }, nullptr), named) << "they leave the touch to the button";
}

TEST(UIImageView, isAsLargeAsItsImage)
{
    const auto view = make<UIImageView>(image(30, 20));
    EXPECT_EQ(view->frame().size(), (CGSize { 30, 20 }));
    EXPECT_EQ(view->intrinsicContentSize(), (CGSize { 30, 20 }));
    view->setImage(nullptr);
    EXPECT_EQ(view->intrinsicContentSize(), (CGSize { UIView::noIntrinsicMetric, UIView::noIntrinsicMetric }));
    EXPECT_FALSE(view->layer()->contents());
    EXPECT_EQ(view->frame().size(), (CGSize { 30, 20 })) << "its frame is its owner's business";
}

TEST(UIImageView, takesTheTintOfItsSurroundings)
{
    const auto around = make<UIView>();
    const auto view = make<UIImageView>(image(30, 20)->withRenderingMode(UIImageRenderingMode::alwaysTemplate));
    around->addSubview(view);
    EXPECT_EQ(view->layer()->contentsTint(), UIColor::systemBlue().cgColor());
    around->setTintColor(UIColor::red());
    EXPECT_EQ(view->layer()->contentsTint(), UIColor::red().cgColor());
    view->setImage(image(30, 20));
    EXPECT_FALSE(view->layer()->contentsTint());
}

TEST(UIImageView, turnsAnImageThatFollowsTheDirection)
{
    const auto arrow = image(30, 20)->imageFlippedForRightToLeftLayoutDirection();
    const auto view = make<UIImageView>(arrow);
    EXPECT_EQ(view->layer()->contents(), arrow->cgImage());
    view->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    view->layoutIfNeeded();
    EXPECT_EQ(view->layer()->contents(), arrow->cgImage(true));
    EXPECT_NE(arrow->cgImage(true), arrow->cgImage());
}

} // namespace
} // namespace platform
