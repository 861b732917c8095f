#include "Platform/UIKit/UIStackView.h"

#include "Platform/UIKit/UILabel.h"
#include "Tests/Platform/UIKit/KitResources.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

namespace platform {
namespace {

using Distribution = UIStackViewDistribution;
using Alignment = UIStackViewAlignment;
constexpr auto vertical = NSLayoutConstraintAxis::vertical;

// A stack at the left top corner of a page, free in its size until it is constrained.
class UIStackViewOnPage : public ScreenTest {
protected:
    UIStackViewOnPage()
    {
        stack->setTranslatesAutoresizingMaskIntoConstraints(false);
        page->addSubview(stack);
        activate({ stack->leadingAnchor().equalTo(page->leadingAnchor()), stack->topAnchor().equalTo(page->topAnchor()) });
    }

    std::shared_ptr<Content> add(CGFloat width, CGFloat height)
    {
        const auto box = make<Content>(CGSize { width, height });
        stack->addArrangedSubview(box);
        return box;
    }
    void setWidth(CGFloat width) { activate({ stack->widthAnchor().equalToConstant(width) }); }
    void setHeight(CGFloat height) { activate({ stack->heightAnchor().equalToConstant(height) }); }
    void lay() { page->layoutIfNeeded(); }
    // "x+width" of each shown arranged view, or "y+height" in a column.
    std::string along() const
    {
        const bool row = stack->axis() == NSLayoutConstraintAxis::horizontal;
        std::string text;
        for (const auto& view : stack->arrangedSubviews()) {
            const CGRect f = view->frame();
            char part[64];
            std::snprintf(part, sizeof part, "%g+%g ", row ? f.x : f.y, row ? f.width : f.height);
            if (!view->isHidden())
                text += part;
        }
        return text.substr(0, text.find_last_not_of(' ') + 1);
    }

    std::shared_ptr<UIView> page = ScreenTest::add({ 0, 0, 600, 800 });
    std::shared_ptr<UIStackView> stack = make<UIStackView>();
};

TEST_F(UIStackViewOnPage, isAsLargeAsWhatItHolds)
{
    stack->setSpacing(5);
    add(30, 10);
    add(50, 40);
    lay();
    EXPECT_EQ(stack->frame(), (CGRect { 0, 0, 85, 40 }));
    EXPECT_EQ(along(), "0+30 35+50");
    EXPECT_EQ(stack->arrangedSubviews()[0]->frame().height, 40) << "fill is the alignment at first";
    stack->setAxis(vertical);
    lay();
    EXPECT_EQ(stack->frame(), (CGRect { 0, 0, 50, 55 }));
    EXPECT_EQ(along(), "0+10 15+40");
}

TEST_F(UIStackViewOnPage, isNothingWhileItShowsNothing)
{
    lay();
    EXPECT_EQ(stack->frame(), CGRect {});
    add(30, 30)->setHidden(true);
    lay();
    EXPECT_EQ(stack->frame(), CGRect {});
}

TEST_F(UIStackViewOnPage, givesTheRestToTheOneThatHugsLeast)
{
    setWidth(200);
    add(30, 10);
    const auto spacer = make<UIView>();
    stack->addArrangedSubview(spacer);
    add(40, 10);
    lay();
    EXPECT_EQ(along(), "0+30 30+130 160+40");
}

TEST_F(UIStackViewOnPage, leavesHiddenViewsOutInEveryDistribution)
{
    struct Case {
        Distribution distribution;
        const char* all;
        const char* withoutMiddle;
        const char* withoutLast;
    };
    // Views of 30, 50 and 40 in 300 points, at least 15 apart; edges lie on half points.
    const Case cases[] = {
        { Distribution::fillEqually, "0+90 105+90 210+90", "0+142.5 157.5+142.5", "0+142.5 157.5+142.5" },
        { Distribution::fillProportionally, "0+67.5 82.5+112.5 210+90", "0+122 137+163", "0+107 122+178" },
        { Distribution::equalSpacing, "0+30 120+50 260+40", "0+30 260+40", "0+30 250+50" },
        { Distribution::equalCentering, "0+30 122.5+50 260+40", "0+30 260+40", "0+30 250+50" },
    };
    setWidth(300);
    stack->setSpacing(15);
    add(30, 10);
    const auto middle = add(50, 10), last = add(40, 10);
    activate({ middle->heightAnchor().equalToConstant(70) });
    for (const Case& c : cases) {
        SCOPED_TRACE(int(c.distribution));
        stack->setDistribution(c.distribution);
        lay();
        EXPECT_EQ(along(), c.all);
        EXPECT_EQ(stack->frame().height, 70);
        middle->setHidden(true);
        lay();
        EXPECT_EQ(along(), c.withoutMiddle);
        EXPECT_EQ(stack->frame().height, 10) << "nor does the hidden one's own height count";
        middle->setHidden(false);
        last->setHidden(true);
        lay();
        EXPECT_EQ(along(), c.withoutLast);
        last->setHidden(false);
    }
}

TEST_F(UIStackViewOnPage, aHiddenViewsOwnConstraintsDoNotPullOnOthers)
{
    const auto shown = add(30, 10), hidden = add(50, 10);
    activate({ hidden->widthAnchor().equalToConstant(90), hidden->widthAnchor().equalTo(shown->widthAnchor()) });
    lay();
    EXPECT_EQ(along(), "0+90 90+90");
    hidden->setHidden(true);
    lay();
    EXPECT_EQ(along(), "0+30");
    hidden->setHidden(false);
    lay();
    EXPECT_EQ(along(), "0+90 90+90");
}

TEST_F(UIStackViewOnPage, isTightWhereNothingSaysItsLength)
{
    stack->setSpacing(10);
    add(30, 10);
    add(50, 10);
    for (const auto distribution : { Distribution::equalSpacing, Distribution::fillProportionally, Distribution::fill }) {
        stack->setDistribution(distribution);
        lay();
        EXPECT_EQ(along(), "0+30 40+50");
    }
}

TEST_F(UIStackViewOnPage, followsItsContentsProportions)
{
    stack->setDistribution(Distribution::fillProportionally);
    setWidth(300);
    const auto first = add(10, 10);
    add(20, 10);
    lay();
    EXPECT_EQ(along(), "0+100 100+200");
    first->setSize({ 40, 10 });
    lay();
    EXPECT_EQ(along(), "0+200 200+100");
}

TEST_F(UIStackViewOnPage, alignsAcross)
{
    const auto high = add(20, 60), low = add(20, 20);
    for (const auto& [alignment, y] : { std::pair(Alignment::top, 0), { Alignment::center, 20 }, { Alignment::bottom, 40 } }) {
        stack->setAlignment(alignment);
        lay();
        EXPECT_EQ(stack->frame().height, 60);
        EXPECT_EQ(low->frame().y, y);
        EXPECT_EQ(low->frame().height, 20);
        EXPECT_EQ(high->frame().y, 0);
    }
    setHeight(100);
    lay();
    EXPECT_EQ(high->frame().y, 40);
    EXPECT_EQ(high->frame().height, 60);
}

TEST_F(UIStackViewOnPage, standsTextsOnOneLine)
{
    stack->setAlignment(Alignment::firstBaseline);
    std::shared_ptr<UILabel> labels[] = { make<UILabel>(), make<UILabel>() };
    labels[0]->setFont(kitFont("Regular", 12));
    labels[1]->setFont(kitFont("Bold", 30));
    for (const auto& label : labels) {
        label->setText("Text");
        stack->addArrangedSubview(label);
    }
    lay();
    EXPECT_NEAR(
        labels[0]->frame().y + labels[0]->firstBaselineOffset(), labels[1]->frame().y + labels[1]->firstBaselineOffset(), 0.6);
    EXPECT_NEAR(stack->frame().height, labels[1]->frame().height, 0.6);
}

TEST_F(UIStackViewOnPage, keepsASpacingOfItsOwnAfterAView)
{
    stack->setSpacing(10);
    const auto first = add(30, 10), second = add(30, 10);
    add(30, 10);
    stack->setCustomSpacing(50, *first);
    lay();
    EXPECT_EQ(along(), "0+30 80+30 120+30");
    second->setHidden(true);
    lay();
    EXPECT_EQ(along(), "0+30 80+30");
    first->setHidden(true);
    second->setHidden(false);
    lay();
    EXPECT_EQ(along(), "0+30 40+30") << "a hidden view's spacing is gone with it";
    stack->setCustomSpacing(std::nullopt, *first);
    first->setHidden(false);
    lay();
    EXPECT_EQ(along(), "0+30 40+30 80+30");
}

TEST_F(UIStackViewOnPage, followsComingAndGoing)
{
    const auto first = add(10, 10), second = add(20, 10);
    lay();
    const auto between = make<Content>(CGSize { 5, 10 });
    stack->insertArrangedSubview(between, 1);
    lay();
    EXPECT_EQ(along(), "0+10 10+5 15+20");
    stack->insertArrangedSubview(first, 99);
    lay();
    EXPECT_EQ(along(), "0+5 5+20 25+10") << "one that is there already moves";
    between->removeFromSuperview();
    lay();
    EXPECT_EQ(along(), "0+20 20+10");
    stack->removeArrangedSubview(*second);
    EXPECT_EQ(second->superview(), stack.get()) << "it is no longer arranged, but still there";
    lay();
    EXPECT_EQ(along(), "0+10");
    stack->addArrangedSubview(nullptr);
    EXPECT_EQ(stack->arrangedSubviews().size(), 1u);
}

TEST_F(UIStackViewOnPage, runsFromTheRightInAMirroredInterface)
{
    stack->setSpacing(5);
    add(30, 10);
    add(50, 10);
    for (const auto& view : stack->arrangedSubviews())
        view->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    lay();
    EXPECT_EQ(along(), "55+30 0+50");
}

TEST_F(UIStackViewOnPage, holdsStacks)
{
    stack->setAxis(vertical);
    stack->setSpacing(10);
    const auto row = make<UIStackView>();
    row->setSpacing(4);
    const auto a = make<Content>(CGSize { 30, 20 }), b = make<Content>(CGSize { 40, 25 });
    row->addArrangedSubview(a);
    row->addArrangedSubview(b);
    stack->addArrangedSubview(row);
    add(100, 15);
    row->setDistribution(Distribution::equalSpacing);
    lay();
    EXPECT_EQ(stack->frame(), (CGRect { 0, 0, 100, 50 }));
    EXPECT_EQ(b->frame().x, 60);
    row->setHidden(true);
    lay();
    EXPECT_EQ(stack->frame(), (CGRect { 0, 0, 100, 15 })) << "with everything below it";
}

TEST_F(UIStackViewOnPage, rebuildsNothingWhenNothingChanged)
{
    add(30, 10);
    add(50, 10);
    lay();
    const auto before = stack->constraints();
    stack->setSpacing(0);
    stack->setAlignment(Alignment::fill);
    stack->arrangedSubviews()[0]->setHidden(false);
    stack->setNeedsUpdateConstraints();
    lay();
    EXPECT_EQ(stack->constraints(), before);
}

TEST_F(UIStackViewOnPage, movesTheOthersInsideAnAnimation)
{
    const auto first = add(30, 10), second = add(50, 10);
    lay();
    UIView::animate(0.33, [&] { first->setHidden(true); });
    EXPECT_EQ(second->frame().x, 0);
    EXPECT_TRUE(second->layer()->animation("position")) << "on its way";
    second->layer()->removeAllAnimations();
    UIView::animate(0.33, [&] { first->setHidden(false); });
    EXPECT_EQ(second->frame().x, 30);
    EXPECT_TRUE(second->layer()->animation("position"));
    EXPECT_FALSE(first->layer()->animation("position")) << "it comes at its own place";
    EXPECT_TRUE(first->layer()->animation("opacity"));
    EXPECT_EQ(first->alpha(), 1);
}

} // namespace
} // namespace platform
