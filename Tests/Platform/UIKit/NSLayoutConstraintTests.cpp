#include "ScreenTest.h"

#include "Platform/UIKit/UILabel.h"

namespace platform {
namespace {

using NSLayoutConstraintTest = ScreenTest;

// A view with a content of its own.
class Content : public UIView {
public:
    explicit Content(CGSize size)
        : size(size)
    {
        setTranslatesAutoresizingMaskIntoConstraints(false);
    }
    CGSize intrinsicContentSize() const override { return size; }
    void setSize(CGSize newSize)
    {
        size = newSize;
        invalidateIntrinsicContentSize();
    }
    // As text flows: an area of so many points, whose height follows from its width.
    double area = 0;

protected:
    std::optional<CGFloat> intrinsicHeight(CGFloat width) const override
    {
        return area > 0 && width > 0 ? std::optional(std::ceil(area / width)) : std::nullopt;
    }
    CGFloat firstBaselineOffset() const override { return 8; }
    CGFloat lastBaselineOffset() const override { return 3; }

private:
    CGSize size;
};

TEST_F(NSLayoutConstraintTest, placesViewsInsideAndBesideEachOther)
{
    const auto card = addConstrained("card");
    const auto title = addConstrained("title", card);
    const auto image = addConstrained("image", card);
    fill(*card, *window, 20);
    activate({
        image->leadingAnchor().equalTo(card->leadingAnchor(), 15),
        image->topAnchor().equalTo(card->topAnchor(), 15),
        image->bottomAnchor().equalTo(card->bottomAnchor(), -15),
        image->widthAnchor().equalToMultiple(image->heightAnchor(), 0.5),
        title->leadingAnchor().equalTo(image->trailingAnchor(), 10),
        title->trailingAnchor().lessThanOrEqualTo(card->trailingAnchor(), -5),
        title->widthAnchor().equalToConstant(30),
        title->centerYAnchor().equalTo(image->centerYAnchor(), 2),
        title->heightAnchor().equalToConstant(10),
    });
    makeFrame();
    EXPECT_EQ(card->frame(), (CGRect { 20, 20, 280, 440 }));
    EXPECT_EQ(image->frame(), (CGRect { 15, 15, 205, 410 }));
    EXPECT_EQ(title->frame(), (CGRect { 230, 217, 30, 10 }));

    UIScreen::main().setGeometry({ 480, 320 }, {});
    makeFrame();
    EXPECT_EQ(image->frame(), (CGRect { 15, 15, 125, 250 }));
}

TEST_F(NSLayoutConstraintTest, roundsEdgesNotSizesToPixels)
{
    // Three thirds of 320 at 2x: 106.667 each, without a gap or an overlap.
    std::shared_ptr<UIView> before;
    for (int i = 0; i < 3; ++i) {
        const auto part = addConstrained("part");
        activate({ part->leadingAnchor().equalTo(before ? before->trailingAnchor() : window->leadingAnchor()),
            part->widthAnchor().equalToMultiple(window->widthAnchor(), 1.0 / 3), part->heightAnchor().equalToConstant(10) });
        const auto inner = addConstrained("inner", part);
        fill(*inner, *part);
        before = part;
    }
    makeFrame();
    const double left[] = { 0, 106.5, 213.5 }, right[] = { 106.5, 213.5, 320 };
    for (int i = 0; i < 3; ++i) {
        const auto& part = window->subviews()[std::size_t(i)];
        EXPECT_EQ(part->frame(), (CGRect { left[i], 0, right[i] - left[i], 10 })) << i;
        EXPECT_EQ(part->subviews()[0]->frame(), part->bounds()) << "a pinned child fills its rounded parent: " << i;
    }
}

TEST_F(NSLayoutConstraintTest, givesWayByPriority)
{
    const auto first = make<Content>(CGSize { 200, 10 }), second = make<Content>(CGSize { 200, 10 });
    window->addSubview(first);
    window->addSubview(second);
    second->setContentCompressionResistancePriority(751, NSLayoutConstraintAxis::horizontal);
    activate(
        { first->leadingAnchor().equalTo(window->leadingAnchor()), second->leadingAnchor().equalTo(first->trailingAnchor(), 20),
            second->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(first->frame().width, 100);
    EXPECT_EQ(second->frame().width, 200);
    // With room to spare it goes to the one that hugs less.
    first->setSize({ 50, 10 });
    second->setSize({ 50, 10 });
    first->setContentHuggingPriority(251, NSLayoutConstraintAxis::horizontal);
    makeFrame();
    EXPECT_EQ(first->frame().width, 50);
    EXPECT_EQ(second->frame().width, 250);
    first->setContentHuggingPriority(249, NSLayoutConstraintAxis::horizontal);
    makeFrame();
    EXPECT_EQ(first->frame().width, 250);
}

TEST_F(NSLayoutConstraintTest, keepsASpacerFromBecomingNegative)
{
    const auto label = make<Content>(CGSize { 500, 10 });
    window->addSubview(label);
    const auto spacer = addConstrained("spacer");
    activate({ label->leadingAnchor().equalTo(window->leadingAnchor()), spacer->leadingAnchor().equalTo(label->trailingAnchor()),
        spacer->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(label->frame().width, 320);
    EXPECT_EQ(spacer->frame().width, 0);
}

TEST_F(NSLayoutConstraintTest, changesLive)
{
    const auto view = addConstrained("view");
    const auto width = view->widthAnchor().equalToConstant(100);
    const auto wide = view->widthAnchor().equalToConstant(50);
    wide->setPriority(500);
    activate({ width, wide, view->heightAnchor().equalToConstant(7) });
    makeFrame();
    EXPECT_EQ(view->frame(), (CGRect { 0, 0, 100, 7 }));
    width->setConstant(120);
    makeFrame();
    EXPECT_EQ(view->frame().width, 120);
    width->setPriority(499);
    makeFrame();
    EXPECT_EQ(view->frame().width, 50);
    width->setConstant(std::numeric_limits<double>::infinity());
    width->setPriority(1001);
    EXPECT_EQ(width->constant(), 120);
    EXPECT_EQ(width->priority(), 499);
    EXPECT_EQ(takeLines().size(), 2u);
    wide->setActive(false);
    makeFrame();
    EXPECT_EQ(view->frame().width, 120);
}

TEST_F(NSLayoutConstraintTest, mirrorsLeadingAndTrailingButNotLeftAndCenter)
{
    const auto leading = addConstrained("leading"), left = addConstrained("left"), centre = addConstrained("centre"),
               least = addConstrained("least");
    for (const auto& view : { leading, left, centre, least })
        view->widthAnchor().equalToConstant(100)->setActive(true);
    activate({ leading->leadingAnchor().equalTo(window->leadingAnchor(), 20),
        left->leftAnchor().equalTo(window->leftAnchor(), 20), centre->centerXAnchor().equalTo(window->centerXAnchor(), 10),
        least->leadingAnchor().greaterThanOrEqualTo(leading->trailingAnchor(), 30) });
    const auto near = least->leadingAnchor().equalTo(window->leadingAnchor());
    near->setPriority(10);
    near->setActive(true);
    const auto lefts = [&] {
        makeFrame();
        return std::vector<double> { leading->frame().x, left->frame().x, centre->frame().x, least->frame().x };
    };
    EXPECT_EQ(lefts(), (std::vector<double> { 20, 20, 120, 150 }));
    UITraitCollection mirrored = lightTraits();
    mirrored.layoutDirection = UIUserInterfaceLayoutDirection::rightToLeft;
    UIScreen::main().setTraitCollection(mirrored);
    EXPECT_EQ(lefts(), (std::vector<double> { 200, 20, 120, 70 }));
    leading->setSemanticContentAttribute(UISemanticContentAttribute::forceLeftToRight);
    EXPECT_EQ(lefts()[0], 20);
}

TEST_F(NSLayoutConstraintTest, alignsBaselinesAndFollowsTheirChange)
{
    const auto big = make<Content>(CGSize { 10, 40 }), small = make<Content>(CGSize { 10, 20 });
    window->addSubview(big);
    window->addSubview(small);
    activate(
        { big->topAnchor().equalTo(window->topAnchor(), 100), small->lastBaselineAnchor().equalTo(big->lastBaselineAnchor()) });
    const auto firsts = small->firstBaselineAnchor().equalTo(big->firstBaselineAnchor(), 1);
    makeFrame();
    EXPECT_EQ(small->frame().y, 120);
    NSLayoutConstraint::deactivate(big->superview()->constraints());
    activate({ big->topAnchor().equalTo(window->topAnchor(), 100), firsts });
    makeFrame();
    EXPECT_EQ(small->frame().y, 101);
}

TEST_F(NSLayoutConstraintTest, followsTheSafeArea)
{
    const auto view = addConstrained("view");
    const auto host = add({ 0, 0, 320, 480 });
    host->setAutoresizingMask(flexibleWidth | flexibleHeight);
    const auto nested = addConstrained("nested", host);
    fill(*view, *window->safeAreaLayoutGuide());
    fill(*nested, *host->safeAreaLayoutGuide(), 1);
    makeFrame();
    EXPECT_EQ(view->frame(), (CGRect { 0, 0, 320, 480 }));
    UIScreen::main().setGeometry({ 320, 480 }, { 59, 0, 34, 0 });
    makeFrame();
    EXPECT_EQ(view->frame(), (CGRect { 0, 59, 320, 387 }));
    EXPECT_EQ(nested->frame(), (CGRect { 1, 60, 318, 385 }));
    UIScreen::main().setGeometry({ 480, 320 }, { 0, 59, 21, 59 });
    makeFrame();
    EXPECT_EQ(view->frame(), (CGRect { 59, 0, 362, 299 }));
    EXPECT_EQ(nested->frame(), (CGRect { 60, 1, 360, 297 }));
}

TEST_F(NSLayoutConstraintTest, sizesWhatIsPlacedByItsMaskInTheSameSolve)
{
    // Without the mask's equation the inner view would be solved against a parent of no size, and say so.
    const auto outer = addConstrained("outer");
    const auto middle = add({}, outer);
    middle->setAutoresizingMask(flexibleWidth | flexibleHeight);
    const auto inner = addConstrained("inner", middle);
    fill(*outer, *window, 10);
    fill(*inner, *middle, 15);
    makeFrame();
    EXPECT_EQ(middle->frame(), (CGRect { 0, 0, 300, 460 }));
    EXPECT_EQ(inner->frame(), (CGRect { 15, 15, 270, 430 }));
    middle->setFrame({ 5, 5, 100, 100 });
    makeFrame();
    EXPECT_EQ(inner->frame(), (CGRect { 15, 15, 70, 70 }));
}

TEST_F(NSLayoutConstraintTest, reachesAcrossDeepBranches)
{
    // Each level adds its origin to the sum: far more terms than one equation of the solver holds.
    const auto branch = [&](double step) {
        std::shared_ptr<UIView> view = addConstrained("top");
        for (int i = 0; i < 6; ++i) {
            const auto next = addConstrained("level", view);
            next->leadingAnchor().equalTo(view->leadingAnchor(), step)->setActive(true);
            view = next;
        }
        return view;
    };
    const auto a = branch(10), b = branch(3);
    const auto top = window->subviews()[0];
    const auto across = b->leadingAnchor().equalTo(a->trailingAnchor(), 5);
    activate({ top->leadingAnchor().equalTo(window->leadingAnchor(), 1), a->widthAnchor().equalToConstant(40), across });
    makeFrame();
    EXPECT_EQ(b->convertTo(CGPoint {}, nullptr).x, 1 + 60 + 40 + 5);
    across->setConstant(15);
    makeFrame();
    EXPECT_EQ(b->convertTo(CGPoint {}, nullptr).x, 1 + 60 + 40 + 15);
}

TEST_F(NSLayoutConstraintTest, saysOnceWhichConstraintsConflict)
{
    const auto card = addConstrained("card");
    const auto hundred = card->widthAnchor().equalToConstant(100);
    const auto fifty = card->widthAnchor().equalToConstant(50);
    fifty->setIdentifier("narrow");
    activate({ hundred, fifty });
    makeFrame();
    EXPECT_EQ(card->frame().width, 100);
    EXPECT_EQ(takeLines(),
        std::vector<std::string> {
            "constraints cannot hold together, \"narrow: card.width == 50\" is given up; against it: \"card.width == 100\"" });
    hundred->setConstant(110);
    makeFrame(); // still in conflict, said already
    hundred->setActive(false);
    makeFrame();
    EXPECT_EQ(card->frame().width, 50) << "the one given up comes back";
}

TEST_F(NSLayoutConstraintTest, judgesASwapAsAWhole)
{
    const auto view = addConstrained("view");
    const NSLayoutConstraints portrait { view->widthAnchor().equalToConstant(100), view->heightAnchor().equalToConstant(10) };
    const NSLayoutConstraints landscape { view->widthAnchor().equalToConstant(200), view->heightAnchor().equalToConstant(20) };
    NSLayoutConstraint::activate(portrait);
    makeFrame();
    for (int turn = 0; turn < 3; ++turn) {
        NSLayoutConstraint::activate(landscape); // before the others leave
        NSLayoutConstraint::deactivate(portrait);
        makeFrame();
        EXPECT_EQ(view->frame().size(), (CGSize { 200, 20 }));
        NSLayoutConstraint::deactivate(landscape);
        NSLayoutConstraint::activate(portrait);
        makeFrame();
        EXPECT_EQ(view->frame().size(), (CGSize { 100, 10 }));
    }
}

TEST_F(NSLayoutConstraintTest, waitsForItsItemsToMeetAndThenSaysSo)
{
    const auto a = addConstrained("a");
    const auto b = make<UIView>();
    b->setAccessibilityIdentifier("b");
    b->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto late = b->leadingAnchor().equalTo(a->leadingAnchor(), 5);
    activate({ late, a->leadingAnchor().equalTo(window->leadingAnchor()) });
    window->addSubview(b);
    makeFrame();
    EXPECT_TRUE(late->isActive());
    EXPECT_EQ(b->frame().x, 5);

    const auto stray = make<UIView>();
    stray->setAccessibilityIdentifier("stray");
    const auto never = stray->leadingAnchor().equalTo(a->leadingAnchor());
    never->setActive(true);
    window->setNeedsLayout();
    makeFrame();
    EXPECT_FALSE(never->isActive());
    EXPECT_EQ(takeLines(),
        std::vector<std::string> { "constraint \"stray.leading == a.leading\" ignored: its items have no common ancestor" });
    b->removeFromSuperview();
    EXPECT_FALSE(late->isActive());
}

TEST_F(NSLayoutConstraintTest, outlivesItsViews)
{
    const auto a = addConstrained("a");
    auto b = addConstrained("b");
    const auto inactive = b->leadingAnchor().equalTo(a->leadingAnchor());
    const auto active = b->topAnchor().equalTo(a->topAnchor());
    active->setActive(true);
    makeFrame();
    b->removeFromSuperview();
    b = nullptr;
    EXPECT_EQ(inactive->firstItem(), nullptr);
    inactive->setActive(true);
    active->setActive(true);
    makeFrame();
    EXPECT_FALSE(inactive->isActive());
    EXPECT_FALSE(active->isActive());
    EXPECT_TRUE(a->constraintsNaming().empty() || !a->constraintsNaming()[0]->isActive());
}

TEST_F(NSLayoutConstraintTest, measuresHeightsAtTheSolvedWidth)
{
    const auto text = make<Content>(CGSize { 1000, 10 });
    text->area = 10000;
    window->addSubview(text);
    const auto below = addConstrained("below");
    const auto trailing = text->trailingAnchor().equalTo(window->trailingAnchor());
    activate({ text->leadingAnchor().equalTo(window->leadingAnchor()), trailing,
        below->topAnchor().equalTo(text->bottomAnchor(), 4) });
    makeFrame();
    EXPECT_EQ(text->frame().height, 32); // 10000 / 320, rounded up
    EXPECT_EQ(below->frame().y, 36);
    trailing->setConstant(-220);
    makeFrame();
    EXPECT_EQ(text->frame().height, 100);
    EXPECT_EQ(below->frame().y, 104);
}

TEST_F(NSLayoutConstraintTest, letsHeightFeedWidthOnce)
{
    // A square beside a flowing text takes the text's height, and so leaves the text less room.
    const auto square = addConstrained("square");
    const auto text = make<Content>(CGSize { 1000, 10 });
    text->area = 6000;
    window->addSubview(text);
    activate({ square->leadingAnchor().equalTo(window->leadingAnchor()), square->topAnchor().equalTo(text->topAnchor()),
        square->bottomAnchor().equalTo(text->bottomAnchor()), square->widthAnchor().equalTo(square->heightAnchor()),
        text->leadingAnchor().equalTo(square->trailingAnchor()), text->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(square->frame().width, square->frame().height);
    EXPECT_EQ(text->frame().maxX(), 320);
    EXPECT_EQ(square->frame().maxX(), text->frame().minX());
    const double settled = text->frame().height;
    makeFrame();
    EXPECT_EQ(text->frame().height, settled) << "the next frame does not start the circle again";
}

TEST_F(NSLayoutConstraintTest, pushesDownWhatLiesBelowALabelThatBreaks)
{
    const auto label = make<UILabel>();
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    label->setNumberOfLines(2);
    window->addSubview(label);
    const auto below = addConstrained("below");
    const auto trailing = label->trailingAnchor().equalTo(window->trailingAnchor());
    activate({ label->leadingAnchor().equalTo(window->leadingAnchor()), trailing, label->topAnchor().equalTo(window->topAnchor()),
        below->topAnchor().equalTo(label->bottomAnchor(), 10) });
    label->setText("one line");
    makeFrame();
    const double line = label->frame().height;
    EXPECT_GT(line, 10);
    EXPECT_EQ(below->frame().y, line + 10);
    label->setText("a text that is a good deal longer than one line of three hundred and twenty points can hold, and than two");
    makeFrame();
    EXPECT_NEAR(label->frame().height, 2 * line, 0.5) << "rounded up to pixels as a whole";
    EXPECT_EQ(below->frame().y, label->frame().maxY() + 10);
    label->setText("one line");
    trailing->setConstant(-280); // becomes narrow in the same turn
    makeFrame();
    EXPECT_NEAR(label->frame().height, 2 * line, 0.5);
    EXPECT_EQ(
        label->systemLayoutSizeFitting({ 300, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel).height, line);
}

TEST_F(NSLayoutConstraintTest, excludesASubtree)
{
    const auto row = addConstrained("row");
    const auto inside = addConstrained("inside", row);
    fill(*inside, *row, 15);
    const auto height = row->heightAnchor().equalToConstant(30);
    const auto below = addConstrained("below");
    const auto gone = below->topAnchor().equalTo(window->topAnchor(), 2);
    gone->setPriority(1);
    activate({ row->topAnchor().equalTo(window->topAnchor()), height, below->topAnchor().equalTo(row->bottomAnchor(), 5), gone });
    makeFrame();
    EXPECT_EQ(below->frame().y, 35);
    row->setExcludedFromLayout(true);
    makeFrame();
    EXPECT_EQ(below->frame().y, 2);
    EXPECT_TRUE(height->isActive());
    row->setExcludedFromLayout(false);
    makeFrame();
    EXPECT_EQ(below->frame().y, 35);
}

TEST_F(NSLayoutConstraintTest, findsAFittingSizeWithoutMovingAnything)
{
    const auto card = addConstrained("card");
    const auto text = make<Content>(CGSize { 1000, 10 });
    text->area = 10000;
    card->addSubview(text);
    fill(*text, *card, 10);
    activate({ card->leadingAnchor().equalTo(window->leadingAnchor()), card->topAnchor().equalTo(window->topAnchor()) });
    makeFrame();
    const CGRect before = card->frame();
    EXPECT_EQ(card->systemLayoutSizeFitting({ 120, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel),
        (CGSize { 120, 120 }));
    EXPECT_EQ(card->systemLayoutSizeFitting({ 0, 0 }), (CGSize { 1020, 30 }));
    makeFrame();
    EXPECT_EQ(card->frame(), before);

    const auto cell = make<UIView>(CGRect { 0, 0, 50, 50 });
    cell->setLayoutRoot(true);
    window->addSubview(cell);
    cell->addSubview(text);
    fill(*text, *cell, 10);
    EXPECT_EQ(cell->systemLayoutSizeFitting({ 220, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel),
        (CGSize { 220, 70 }));
    makeFrame();
    EXPECT_EQ(text->frame(), (CGRect { 10, 10, 30, 30 }));
}

TEST_F(NSLayoutConstraintTest, laysOutOnlyWhatMoved)
{
    class Counting : public UIView {
    public:
        int passes = 0;

    protected:
        void layoutSubviews() override
        {
            UIView::layoutSubviews();
            ++passes;
        }
    };
    const auto still = make<Counting>(), moving = make<Counting>();
    for (const auto& view : { still, moving }) {
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        window->addSubview(view);
        const auto inner = addConstrained("inner", view);
        fill(*inner, *view);
        view->heightAnchor().equalToConstant(10)->setActive(true);
    }
    const auto width = moving->widthAnchor().equalToConstant(10);
    const auto left = still->leadingAnchor().equalTo(window->leadingAnchor());
    activate({ width, left });
    makeFrame();
    still->passes = moving->passes = 0;
    width->setConstant(20);
    makeFrame();
    EXPECT_EQ(still->passes, 0);
    EXPECT_EQ(moving->passes, 1);
    left->setConstant(40);
    makeFrame();
    EXPECT_EQ(still->frame().x, 40);
    EXPECT_EQ(still->passes, 0) << "it moved, nothing inside it did";
}

TEST_F(NSLayoutConstraintTest, settlesWhatALayoutPassChanges)
{
    class SelfSizing : public UIView {
    public:
        std::shared_ptr<NSLayoutConstraint> height;

    protected:
        void layoutSubviews() override
        {
            UIView::layoutSubviews();
            height->setConstant(bounds().width / 2);
        }
    };
    const auto view = make<SelfSizing>();
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    view->height = view->heightAnchor().equalToConstant(1);
    window->addSubview(view);
    activate({ view->height, view->leadingAnchor().equalTo(window->leadingAnchor()),
        view->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(view->frame(), (CGRect { 0, 0, 320, 160 }));
    UIScreen::main().setGeometry({ 480, 320 }, {});
    EXPECT_EQ(view->frame(), (CGRect { 0, 0, 480, 240 }));
}

} // namespace
} // namespace platform
