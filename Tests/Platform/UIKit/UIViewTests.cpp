#include "ScreenTest.h"

#include "Platform/UIKit/UIGestureRecognizer.h"

#include <functional>

namespace platform {
namespace {

using UIViewTest = ScreenTest;

struct Resize {
    const char* why;
    UIViewAutoresizing mask;
    double origin, size; // afterwards
};

// A child of 20 ... 80 in 100, which becomes 200.
TEST_F(UIViewTest, dealsGrowthOutToTheFlexibleParts)
{
    const Resize cases[] = {
        { "nothing flexible stays", noAutoresizing, 20, 60 },
        { "the far margin alone takes all", flexibleRightMargin, 20, 60 },
        { "the near margin alone", flexibleLeftMargin, 120, 60 },
        { "both margins keep it centred", flexibleLeftMargin | flexibleRightMargin, 70, 60 },
        { "the width alone keeps both margins", flexibleWidth, 20, 160 },
        { "width and far margin share as 60 to 20", flexibleWidth | flexibleRightMargin, 20, 135 },
        { "near margin and width share as 20 to 60", flexibleLeftMargin | flexibleWidth, 45, 135 },
        { "all three scale", flexibleLeftMargin | flexibleWidth | flexibleRightMargin, 40, 120 },
    };
    for (const Resize& c : cases) {
        SCOPED_TRACE(c.why);
        const auto parent = add({ 0, 0, 100, 100 });
        const auto across = add({ 20, 5, 60, 10 }, parent);
        const auto down = add({ 5, 20, 10, 60 }, parent);
        across->setAutoresizingMask(c.mask);
        down->setAutoresizingMask(static_cast<UIViewAutoresizing>(c.mask << 3)); // the same of the vertical axis
        parent->setFrame({ 0, 0, 200, 200 });
        EXPECT_EQ(across->frame(), (CGRect { c.origin, 5, c.size, 10 }));
        EXPECT_EQ(down->frame(), (CGRect { 5, c.origin, 10, c.size }));
    }
}

TEST_F(UIViewTest, growsEvenlyFromNothing)
{
    const auto parent = add({});
    const auto child = add({}, parent);
    child->setAutoresizingMask(flexibleWidth | flexibleHeight);
    parent->setBounds({ 0, 0, 70, 30 });
    EXPECT_EQ(child->frame(), (CGRect { 0, 0, 70, 30 }));
}

TEST_F(UIViewTest, convertsThroughTransformsAndScrolledBounds)
{
    const auto outer = add({ 100, 100, 100, 100 });
    outer->setTransform(CGAffineTransform::rotation(std::acos(-1) / 2)); // a quarter turn, clockwise
    const auto inner = add({ 10, 0, 20, 20 }, outer);
    inner->setBounds({ 0, 50, 20, 20 });
    const CGRect box = inner->convertTo(CGRect { 0, 50, 20, 10 }, window.get());
    EXPECT_NEAR(box.maxX(), 200, 1e-9);
    EXPECT_NEAR(box.y, 110, 1e-9);
    EXPECT_NEAR(box.width, 10, 1e-9);
    EXPECT_NEAR(box.height, 20, 1e-9);
    EXPECT_NEAR(inner->convertFrom(box, nullptr).y, 50, 1e-9);
}

std::string order(const UIView& parent)
{
    std::string text;
    for (const auto& child : parent.subviews())
        text += std::to_string(child->tag());
    std::string layers;
    for (const auto& layer : parent.layer()->sublayers())
        for (const auto& child : parent.subviews())
            if (child->layer() == layer)
                layers += std::to_string(child->tag());
    return text == layers ? text : text + " but layers " + layers;
}

TEST_F(UIViewTest, ordersSubviewsAndTheirLayersAlike)
{
    const auto parent = add({});
    std::vector<std::shared_ptr<UIView>> views;
    for (int i = 0; i < 4; ++i) {
        views.push_back(add({}, parent));
        views.back()->setTag(i);
    }
    const auto decoration = make<CALayer>();
    parent->layer()->insertSublayer(decoration, 0);
    parent->sendSubviewToBack(*views[2]);
    EXPECT_EQ(order(*parent), "2013");
    parent->bringSubviewToFront(*views[0]);
    EXPECT_EQ(order(*parent), "2130");
    parent->insertSubviewBelow(views[0], *views[2]);
    EXPECT_EQ(order(*parent), "0213");
    parent->insertSubviewAbove(views[0], *views[1]);
    EXPECT_EQ(order(*parent), "2103");
    parent->insertSubview(views[2], 99);
    EXPECT_EQ(order(*parent), "1032");
    parent->addSubview(views[2]);
    EXPECT_EQ(order(*parent), "1032");
    EXPECT_EQ(parent->layer()->sublayers().front(), decoration);
    EXPECT_EQ(parent->viewWithTag(3), views[3]);
}

TEST_F(UIViewTest, refusesToHoldItself)
{
    const auto outer = add({});
    const auto inner = add({}, outer);
    inner->addSubview(outer);
    outer->addSubview(outer);
    EXPECT_EQ(outer->superview(), window.get());
    EXPECT_EQ(takeLines().size(), 2u);
}

// Says what it hears.
class Listener : public UIView {
public:
    using UIView::UIView;
    std::vector<std::string> heard;
    std::function<void()> onRemove;

protected:
    void didMoveToWindow() override { heard.push_back(window() ? "window" : "no window"); }
    void didMoveToSuperview() override { heard.push_back(superview() ? "superview" : "no superview"); }
    void tintColorDidChange() override { heard.push_back("tint"); }
    void safeAreaInsetsDidChange() override { heard.push_back("safe area"); }
    void traitCollectionDidChange(const UITraitCollection& previous) override
    {
        heard.push_back(std::string("from ") + (previous.isDark() ? "dark" : "light"));
    }
    void willRemoveSubview(UIView&) override
    {
        if (const auto call = onRemove)
            call();
    }
};
using Heard = std::vector<std::string>;

TEST_F(UIViewTest, tellsASubtreeOfItsWindowAndOfNothingTwice)
{
    const auto parent = make<UIView>();
    const auto child = make<Listener>();
    parent->addSubview(child);
    EXPECT_EQ(child->heard, (Heard { "superview" }));
    child->heard.clear();
    window->addSubview(parent);
    EXPECT_EQ(child->heard, (Heard { "window" }));
    EXPECT_EQ(child->window(), window.get());
    child->heard.clear();
    parent->removeFromSuperview();
    parent->removeFromSuperview();
    EXPECT_EQ(child->heard, (Heard { "no window" }));
}

TEST_F(UIViewTest, survivesTheEndOfItsSuperviewInsideACallback)
{
    auto parent = make<Listener>();
    window->addSubview(parent);
    auto child = make<UIView>();
    parent->addSubview(child);
    parent->onRemove = [&] {
        parent->removeFromSuperview();
        parent = nullptr;
    };
    child->removeFromSuperview();
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(child->window(), nullptr);
    EXPECT_TRUE(window->subviews().empty());
}

TEST_F(UIViewTest, inheritsTintUntilItHasItsOwn)
{
    const auto parent = add({});
    const auto plain = make<Listener>(), own = make<Listener>();
    own->setTintColor(UIColor::red());
    parent->addSubview(plain);
    parent->addSubview(own);
    plain->heard.clear();
    own->heard.clear();
    EXPECT_EQ(plain->tintColor(), UIColor::systemBlue());
    parent->setTintColor(UIColor::black());
    EXPECT_EQ(plain->tintColor(), UIColor::black());
    EXPECT_EQ(plain->heard, Heard { "tint" });
    EXPECT_TRUE(own->heard.empty());
    own->setTintColor({});
    EXPECT_EQ(own->heard, Heard { "tint" });
    EXPECT_EQ(own->tintColor(), UIColor::black());
    plain->heard.clear();
    plain->removeFromSuperview();
    EXPECT_EQ(plain->tintColor(), UIColor::systemBlue());
    EXPECT_EQ(plain->heard, (Heard { "no window", "tint", "no superview" }));
}

TEST_F(UIViewTest, resolvesDynamicColoursWhenTheAppearanceChanges)
{
    const auto view = make<Listener>();
    view->setBackgroundColor(UIColor::label());
    window->addSubview(view);
    view->heard.clear();
    EXPECT_EQ(view->layer()->backgroundColor(), (CGColor { 0, 0, 0, 1 }));
    setDark(true);
    EXPECT_EQ(view->layer()->backgroundColor(), (CGColor { 1, 1, 1, 1 }));
    setDark(true);
    EXPECT_EQ(view->heard, Heard { "from light" });

    view->removeFromSuperview();
    setDark(false);
    EXPECT_TRUE(view->traitCollection().isDark()); // learns of it when it comes back
    view->heard.clear();
    window->addSubview(view);
    EXPECT_EQ(view->heard, (Heard { "from dark", "window", "superview" }));
    EXPECT_EQ(view->layer()->backgroundColor(), (CGColor { 0, 0, 0, 1 }));
}

TEST_F(UIViewTest, handsDownWhatTheSafeAreaReachesIntoIt)
{
    const auto inside = add({ 10, 30, 300, 440 });
    const auto nested = make<Listener>(CGRect { 0, 400, 300, 40 });
    inside->addSubview(nested);
    nested->heard.clear();
    UIScreen::main().setGeometry({ 320, 480 }, { 59, 0, 34, 0 });
    EXPECT_EQ(window->safeAreaInsets(), (UIEdgeInsets { 59, 0, 34, 0 }));
    EXPECT_EQ(inside->safeAreaInsets(), (UIEdgeInsets { 29, 0, 24, 0 }));
    EXPECT_EQ(nested->safeAreaInsets(), (UIEdgeInsets { 0, 0, 24, 0 }));
    EXPECT_EQ(nested->heard, Heard { "safe area" });
    EXPECT_EQ(inside->safeAreaLayoutGuide()->layoutFrame(), (CGRect { 0, 29, 300, 387 }));
    nested->setFrame({ 0, 300, 300, 40 });
    EXPECT_EQ(nested->safeAreaInsets(), UIEdgeInsets {});
    inside->removeFromSuperview();
    EXPECT_EQ(inside->safeAreaInsets(), UIEdgeInsets {});
}

TEST_F(UIViewTest, leavesNothingBehind)
{
    std::weak_ptr<UIView> gone[3];
    std::weak_ptr<CALayer> goneLayer;
    {
        auto tree = addConstrained("tree");
        auto left = addConstrained("left", tree), right = addConstrained("right", tree);
        gone[0] = tree;
        gone[1] = left;
        gone[2] = right;
        goneLayer = left->layer();
        fill(*tree, *window, 10);
        fill(*left, *tree->safeAreaLayoutGuide());
        activate({ right->widthAnchor().equalTo(left->widthAnchor()), right->heightAnchor().equalToConstant(4),
            right->centerXAnchor().equalTo(left->centerXAnchor()) });
        left->addGestureRecognizer(make<UIGestureRecognizer>());
        makeFrame();
        UIView::animate(1, [&] { right->setAlpha(0); });
        advance(0.5);
        tree->removeFromSuperview();
    }
    makeFrame();
    for (const auto& view : gone)
        EXPECT_TRUE(view.expired());
    EXPECT_TRUE(goneLayer.expired());
    EXPECT_TRUE(window->constraints().empty());
    EXPECT_TRUE(window->constraintsNaming().empty());
}

} // namespace
} // namespace platform
