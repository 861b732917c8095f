#include "Platform/QuartzCore/CALayer.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/QuartzCore/CATransaction.h"
#include "Tests/Platform/QuartzCore/LayerTestSupport.h"

#include <cmath>
#include <deque>
#include <functional>
#include <numbers>

namespace platform {

namespace {

// A view's part: animates what it is told to, notes what it is asked, lays out and draws.
class Owner final : public CALayerDelegate {
public:
    std::shared_ptr<CABasicAnimation> actionForLayer(CALayer&, std::string_view key) override
    {
        asked += std::string(key) + " ";
        if (!animates)
            return nullptr;
        auto action = make<CABasicAnimation>();
        action->duration = 1;
        return action;
    }
    void layoutSublayersOf(CALayer& layer) override
    {
        ++layouts;
        if (onLayout)
            onLayout(layer);
    }
    void drawLayer(CALayer&, CGContext& context) override
    {
        ++drawings;
        context.fill(CGRect { 0, 0, 1, 1 }, CGColor { 1, 0, 0, 1 });
    }

    bool animates = false;
    std::string asked;
    int layouts = 0;
    int drawings = 0;
    std::function<void(CALayer&)> onLayout;
};

class CALayerTest : public LayerScreen {
protected:
    ~CALayerTest() override
    {
        for (const auto& layer : owned)
            layer->setDelegate(nullptr);
    }
    Owner& own(const std::shared_ptr<CALayer>& layer)
    {
        owned.push_back(layer);
        layer->setDelegate(&owners.emplace_back());
        return owners.back();
    }

private:
    std::deque<Owner> owners;
    std::vector<std::shared_ptr<CALayer>> owned;
};

} // namespace

TEST_F(CALayerTest, derivesItsFrame)
{
    const auto layer = add({ 10, 20, 30, 40 });
    EXPECT_EQ(layer->position(), (CGPoint { 25, 40 }));
    layer->setBounds({ 100, 100, 10, 10 }); // a scrolled one
    EXPECT_EQ(layer->frame(), (CGRect { 20, 35, 10, 10 }));
    layer->setTransform(CGAffineTransform::rotation(std::numbers::pi / 4));
    EXPECT_NEAR(layer->frame().width, 10 * std::sqrt(2), 1e-9);
    layer->setTransform(CGAffineTransform::scale(2, -3));
    layer->setAnchorPoint({ 0, 1 });
    layer->setFrame({ 0, 0, 60, 60 });
    EXPECT_EQ(layer->frame(), (CGRect { 0, 0, 60, 60 }));
    EXPECT_EQ(layer->bounds(), (CGRect { 100, 100, 30, 20 }));
    layer->setTransform({});
    layer->setFrame({ 10, 10, -4, -6 });
    EXPECT_EQ(layer->frame(), (CGRect { 6, 4, 4, 6 })) << "turned over";
}

TEST_F(CALayerTest, convertsPointsThroughTransforms)
{
    const auto table = add({ 0, 0, 100, 100 });
    table->setTransform(CGAffineTransform::scale(1, -1)); // a table that grows upwards
    table->setBounds({ 0, 30, 100, 100 });
    const auto row = add({ 0, 40, 100, 20 }, table);
    row->setTransform(CGAffineTransform::scale(1, -1));
    EXPECT_EQ(row->convertTo({ 5, 0 }, nullptr), (CGPoint { 5, 70 })) << "upright again";
    EXPECT_EQ(root->convertTo({ 5, 70 }, row.get()), (CGPoint { 5, 0 }));
    const auto sibling = add({ 50, 50, 10, 10 });
    EXPECT_EQ(row->convertTo({ 5, 0 }, sibling.get()), (CGPoint { -45, 20 }));
    table->setSublayerTransform(CGAffineTransform::translation(7, 0));
    EXPECT_EQ(row->convertTo({ 5, 0 }, table.get()), (CGPoint { 12, 60 }));
}

TEST_F(CALayerTest, keepsItsTreeInOrder)
{
    const auto a = add({}), b = add({}), c = add({});
    const auto order = [&] {
        std::string names;
        for (const auto& layer : root->sublayers())
            names += layer == a ? "a" : layer == b ? "b" : "c";
        return names;
    };
    root->addSublayer(a);
    EXPECT_EQ(order(), "bca") << "added again: in front";
    root->insertSublayer(c, 0);
    EXPECT_EQ(order(), "cba");
    root->insertSublayer(c, 99);
    EXPECT_EQ(order(), "bac");
    root->addSublayer(root->sublayers().front());
    EXPECT_EQ(order(), "acb");
    const auto elsewhere = make<CALayer>();
    elsewhere->addSublayer(a);
    EXPECT_EQ(order(), "cb");
    EXPECT_EQ(a->superlayer(), elsewhere.get());
    a->removeFromSuperlayer();
    a->removeFromSuperlayer();
    EXPECT_EQ(a->superlayer(), nullptr);
}

TEST_F(CALayerTest, refusesToHoldItself)
{
    const auto inner = add({}, add({}));
    LogCapture log;
    inner->addSublayer(root);
    inner->addSublayer(inner);
    inner->setMask(root);
    EXPECT_EQ(log.lines().size(), 3u);
    EXPECT_TRUE(inner->sublayers().empty());
    EXPECT_EQ(inner->mask(), nullptr);
}

TEST_F(CALayerTest, keepsItsGeometryWhenGivenNoNumbers)
{
    const auto layer = add({ 1, 2, 3, 4 });
    const double none = std::nan("");
    LogCapture log;
    layer->setPosition({ none, 0 });
    layer->setFrame({ 0, 0, none, 1 });
    layer->setBounds({ 0, 0, INFINITY, 1 });
    layer->setTransform({ none, 0, 0, 1, 0, 0 });
    layer->setOpacity(none);
    EXPECT_EQ(log.lines().size(), 5u);
    EXPECT_EQ(layer->frame(), (CGRect { 1, 2, 3, 4 }));
    EXPECT_EQ(layer->opacity(), 1);
}

TEST_F(CALayerTest, asksItsOwnerForActionsOnRealChanges)
{
    const auto layer = addBox({ 0, 0, 10, 10 });
    Owner& owner = own(layer);
    const auto changes = layer->changeCount();
    layer->setFrame({ 0, 0, 10, 10 });
    layer->setOpacity(1);
    layer->setBackgroundColor(CGColor { 1, 0, 0, 1 });
    layer->setShadowPath(nullptr);
    EXPECT_EQ(owner.asked, "") << "equal values change nothing";
    EXPECT_EQ(layer->changeCount(), changes);
    layer->setFrame({ 5, 0, 20, 10 });
    EXPECT_EQ(owner.asked, "bounds position ");
    CATransaction::begin();
    CATransaction::setDisableActions(true);
    layer->setOpacity(0.5);
    CATransaction::commit();
    EXPECT_EQ(owner.asked, "bounds position ") << "not when actions are off";
    layer->setOpacity(0.25);
    EXPECT_EQ(owner.asked, "bounds position opacity ");
    EXPECT_FALSE(layer->hasAnimations());
}

TEST_F(CALayerTest, comparesPathsByTheirPoints)
{
    const auto shape = add<CAShapeLayer>({ 0, 0, 10, 10 });
    shape->setPath(CGPath::rect({ 0, 0, 5, 5 }));
    const auto changes = shape->changeCount();
    shape->setPath(CGPath::rect({ 0, 0, 5, 5 }));
    EXPECT_EQ(shape->changeCount(), changes);
    shape->setPath(CGPath::rect({ 0, 0, 5, 6 }));
    EXPECT_GT(shape->changeCount(), changes);
}

TEST_F(CALayerTest, animatesFromWhatIsSeenAtPresent)
{
    const auto layer = addBox({ 0, 0, 10, 10 });
    Owner& owner = own(layer);
    owner.animates = true;
    frame(10);
    layer->setPosition({ 105, 5 });
    frame(10);
    EXPECT_EQ(point(*layer, "position", 10.5), (CGPoint { 55, 5 }));
    frame(10.5);
    layer->setPosition({ 5, 5 }); // turns round on its way
    EXPECT_EQ(layer->animationKeys(), std::vector<std::string> { "position" });
    EXPECT_EQ(point(*layer, "position", 10.5), (CGPoint { 55, 5 }));
    frame(10.5);
    EXPECT_EQ(point(*layer, "position", 11), (CGPoint { 30, 5 }));
    layer->setPosition({ 45, 5 }); // twice in one turn: still from what is seen
    layer->setPosition({ 15, 5 });
    EXPECT_EQ(point(*layer, "position", 10.5), (CGPoint { 55, 5 }));
}

TEST_F(CALayerTest, fadesInAColourThatWasNotThere)
{
    const auto layer = add({ 0, 0, 10, 10 });
    Owner& owner = own(layer);
    owner.animates = true;
    layer->setBackgroundColor(CGColor { 1, 1, 1, 1 });
    frame(10);
    EXPECT_EQ(std::get<CGColor>(layer->presentationValue("backgroundColor", 10.25)), (CGColor { 1, 1, 1, 0.25 }));
}

TEST_F(CALayerTest, laysOutMarkedLayersOnly)
{
    const auto marked = add({ 0, 0, 10, 10 }), still = add({ 0, 0, 10, 10 });
    const auto below = add({ 0, 0, 5, 5 }, marked);
    frame(1);
    Owner &markedOwner = own(marked), &stillOwner = own(still), &belowOwner = own(below);
    markedOwner.onLayout = [&](CALayer&) { below->setFrame({ 0, 0, 7, 7 }); };
    marked->setNeedsLayout();
    frame(2);
    EXPECT_EQ(markedOwner.layouts, 1);
    EXPECT_EQ(belowOwner.layouts, 1) << "its new size marked it, in the same pass";
    EXPECT_EQ(stillOwner.layouts, 0);
    frame(3);
    EXPECT_EQ(markedOwner.layouts, 1);
    still->setFrame({ 50, 0, 10, 10 });
    frame(4);
    EXPECT_EQ(stillOwner.layouts, 0) << "a new place alone changes nothing inside";
}

TEST_F(CALayerTest, laysOutWhatALayoutMovesAround)
{
    // Each layout puts its marked sublayers into another order, and one of them into another layer.
    const auto container = add({ 0, 0, 50, 50 }), elsewhere = add({ 0, 0, 50, 50 });
    std::shared_ptr<CALayer> inner[3];
    Owner* owners[3];
    for (int i = 0; i < 3; ++i)
        owners[i] = &own(inner[i] = add({ 0, 0, 5, 5 }, container));
    owners[0]->onLayout = [&](CALayer& layer) {
        container->addSublayer(layer.sublayers().empty() ? inner[0] : nullptr);
        elsewhere->addSublayer(inner[1]);
    };
    frame(1);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(owners[i]->layouts, 1) << i;
        EXPECT_FALSE(inner[i]->needsLayout());
    }
}

TEST_F(CALayerTest, laysOutAtOnceFromTheTopmostMarkedOne)
{
    const auto outer = add({ 0, 0, 10, 10 });
    const auto middle = add({ 0, 0, 10, 10 }, outer), leaf = add({ 0, 0, 10, 10 }, middle);
    frame(1);
    Owner &outerOwner = own(outer), &leafOwner = own(leaf);
    outer->setNeedsLayout();
    leaf->setNeedsLayout();
    leaf->layoutIfNeeded();
    EXPECT_EQ(leafOwner.layouts, 1);
    EXPECT_EQ(outerOwner.layouts, 0) << "one in between needs none";
    leaf->setNeedsLayout();
    middle->setNeedsLayout();
    leaf->layoutIfNeeded();
    EXPECT_EQ(outerOwner.layouts, 1);
    EXPECT_EQ(leafOwner.layouts, 2);
}

TEST_F(CALayerTest, givesUpALayoutThatNeverSettles)
{
    const auto layer = add({ 0, 0, 10, 10 });
    Owner& owner = own(layer);
    owner.onLayout = [](CALayer& marked) { marked.setNeedsLayout(); };
    LogCapture log;
    frame(1);
    EXPECT_EQ(owner.layouts, 100);
    EXPECT_EQ(log.lines().size(), 1u);
}

TEST_F(CALayerTest, drawsOnceWhenSeenAndAgainWhenMarked)
{
    const auto layer = add({ 0, 0, 10, 10 });
    Owner& owner = own(layer);
    layer->setDrawsContent(true);
    layer->setHidden(true);
    frame(1);
    EXPECT_EQ(owner.drawings, 0) << "nobody sees it";
    layer->setHidden(false);
    frame(2);
    frame(3);
    EXPECT_EQ(owner.drawings, 1);
    layer->setPosition({ 50, 50 });
    frame(4);
    EXPECT_EQ(owner.drawings, 1) << "moved, not drawn";
    layer->setNeedsDisplay();
    frame(5);
    EXPECT_EQ(owner.drawings, 2);
    layer->setBounds({ 0, 0, 20, 10 });
    frame(6);
    EXPECT_EQ(owner.drawings, 3) << "a new size needs new pixels";
    LayerCommitter::display({ root }, 3);
    LayerCommitter::commit({ root }, 7, 3, { 0, 0, 300, 600 });
    EXPECT_EQ(owner.drawings, 4) << "so does a new scale";
}

TEST_F(CALayerTest, drawsWhatAnimationOrScrollingBringsIntoSight)
{
    const auto scroller = add({ 0, 0, 100, 100 });
    scroller->setMasksToBounds(true);
    const auto below = add({ 0, 150, 10, 10 }, scroller), flying = add({ 500, 0, 10, 10 }, scroller);
    Owner &belowOwner = own(below), &flyingOwner = own(flying);
    below->setDrawsContent(true);
    flying->setDrawsContent(true);
    frame(1);
    EXPECT_EQ(belowOwner.drawings + flyingOwner.drawings, 0);
    scroller->setBounds({ 0, 100, 100, 100 });
    frame(2);
    EXPECT_EQ(belowOwner.drawings, 1);
    flying->addAnimation(basic("position.x", 50.0, 60.0), "fly");
    scroller->setBounds({ 0, 0, 100, 100 });
    EXPECT_EQ(kindsOf(frame(3)), "I");
    EXPECT_EQ(flyingOwner.drawings, 1);
}

} // namespace platform
