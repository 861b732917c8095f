#include "Platform/QuartzCore/LayerCommitter.h"

#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Tests/Platform/QuartzCore/LayerTestSupport.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <set>

namespace platform {

namespace {

class LayerCommitterTest : public LayerScreen {
protected:
    const RenderItem& item(std::size_t index) const { return list->items.at(index); }

    const CGColor red { 1, 0, 0, 1 };
    const CGColor glass { 1, 1, 1, 0.5 };
};

std::shared_ptr<const CGImage> picture(int width, int height, PixelFormat format = PixelFormat::argb)
{
    return CGImage::fromBitmap(Bitmap::make(width, height, format, true));
}

} // namespace

TEST_F(LayerCommitterTest, asksForOneFrameAndOnlyWhenSomethingChanged)
{
    int asked = 0;
    LayerCommitter::setOnNeedsFrame([&] { ++asked; });
    const auto layer = addBox({ 0, 0, 10, 10 });
    layer->setOpacity(0.5);
    layer->setHidden(true);
    EXPECT_EQ(asked, 1);
    frame(1);
    EXPECT_FALSE(LayerCommitter::needsFrame());
    layer->setOpacity(0.5);
    layer->setFrame({ 0, 0, 10, 10 });
    root->addSublayer(layer);
    frame(2);
    EXPECT_EQ(asked, 1);
    layer->setHidden(false);
    EXPECT_EQ(asked, 2);
    frame(3);
    layer->addAnimation(basic("opacity", 0.0, 1.0), "fade");
    EXPECT_EQ(asked, 3);
    frame(4);
    layer->removeAnimation("fade");
    EXPECT_EQ(asked, 4);
}

TEST_F(LayerCommitterTest, keepsTheListWhenNothingChanged)
{
    const auto layer = addBox({ 0, 0, 10, 10 });
    frame(1);
    const auto before = list;
    frame(2);
    EXPECT_EQ(list, before);
    layer->setOpacity(0.9);
    frame(3);
    EXPECT_NE(list, before);
    auto delayed = basic("opacity", 0.0, 0.5);
    delayed->beginTime = 10;
    layer->addAnimation(delayed, "later");
    frame(4);
    EXPECT_FALSE(LayerCommitter::hasRunningAnimations());
    EXPECT_EQ(LayerCommitter::nextEventTime(), 10);
    frame(10.5);
    EXPECT_EQ(item(0).opacity, 0.25) << "its time has come";
    EXPECT_TRUE(LayerCommitter::hasRunningAnimations());
}

TEST_F(LayerCommitterTest, placesItemsInDevicePixels)
{
    const auto parent = add({ 10, 20, 50, 50 });
    parent->setBounds({ 0, 5, 50, 50 }); // scrolled
    const auto layer = addBox({ 1, 6, 10, 10 }, parent);
    layer->setTransform(CGAffineTransform::scale(0.5, 0.5));
    frame(1);
    ASSERT_EQ(kindsOf(*list), "B");
    EXPECT_EQ(item(0).bounds, (PixelRect { 27, 47, 10, 10 }));
    EXPECT_EQ(item(0).rect, (CGRect { 0, 0, 10, 10 }));
    EXPECT_EQ(item(0).transform.apply(item(0).rect), (CGRect { 27, 47, 10, 10 }));
}

TEST_F(LayerCommitterTest, walksOnlyWhatCanBeSeen)
{
    addBox({ 0, 0, 10, 10 });
    frame(1);
    const std::size_t visited = LayerCommitter::visitedLayerCount();
    const auto hidden = addBox({ 0, 0, 10, 10 }), clear = addBox({ 0, 0, 10, 10 }), scrolledAway = addBox({ 0, 300, 50, 50 });
    hidden->setHidden(true);
    clear->setOpacity(0);
    scrolledAway->setMasksToBounds(true);
    for (int i = 0; i < 1000; ++i) {
        for (const auto& parent : { hidden, clear, scrolledAway })
            addBox({ 0, 0, 10, 10 }, parent);
    }
    frame(2);
    EXPECT_EQ(kindsOf(*list), "B");
    EXPECT_EQ(LayerCommitter::visitedLayerCount(), visited + 2) << "the clear one and the clipping one themselves";
    const auto row = addBox({ 0, 500, 50, 50 });
    frame(3);
    EXPECT_EQ(list->items.size(), 1u) << "out of sight";
    row->setPosition({ 25, 225 });
    frame(4);
    EXPECT_EQ(list->items.size(), 1u) << "touching the edge is still out of sight";
}

TEST_F(LayerCommitterTest, hasNothingToDoForWhatRunsUnseen)
{
    const auto scroller = add({ 0, 0, 100, 100 });
    scroller->setMasksToBounds(true);
    const auto hidden = add({ 0, 0, 50, 50 }, scroller);
    hidden->setHidden(true);
    for (const auto& spinner : { addBox({ 10, 10, 20, 20 }, hidden), addBox({ 10, 130, 20, 20 }, scroller) }) {
        auto turn = basic("transform.rotation", 0.0, 2 * std::numbers::pi, 4);
        turn->repeatCount = std::numeric_limits<double>::infinity();
        turn->removedOnCompletion = false;
        spinner->addAnimation(turn, "rotation");
    }
    frame(1);
    EXPECT_FALSE(LayerCommitter::hasRunningAnimations());
    const auto before = list;
    frame(2);
    EXPECT_EQ(list, before);
    scroller->setBounds({ 0, 28, 100, 100 }); // the lower one touches the edge now and then, as it turns
    frame(3);
    EXPECT_TRUE(LayerCommitter::hasRunningAnimations());
    scroller->setBounds({ 0, 0, 100, 100 });
    frame(4);
    EXPECT_FALSE(LayerCommitter::hasRunningAnimations());
    hidden->setHidden(false);
    frame(5);
    EXPECT_TRUE(LayerCommitter::hasRunningAnimations());
}

TEST_F(LayerCommitterTest, keepsRunningWhatIsOnItsWayIntoSight)
{
    const auto banner = addBox({ 0, -50, 100, 40 });
    banner->addAnimation(basic("position.y", -30.0, 20.0), "slide");
    frame(1);
    EXPECT_EQ(kindsOf(*list), "");
    EXPECT_TRUE(LayerCommitter::hasRunningAnimations());
    const auto fading = addBox({ 0, 0, 10, 10 });
    fading->addAnimation(basic("opacity", 0.0, 1.0, 9), "fade");
    frame(2);
    EXPECT_TRUE(LayerCommitter::hasRunningAnimations());
}

TEST_F(LayerCommitterTest, drawsALayersPartsFromBackToFront)
{
    const auto gradient = add<CAGradientLayer>({ 10, 10, 30, 30 });
    gradient->setColors({ red, glass });
    gradient->setCornerRadius(4);
    gradient->setBackgroundColor(red);
    gradient->setShadowOpacity(0.5);
    gradient->setBackdropBlur(10, 1.8);
    gradient->setBorderWidth(2);
    gradient->setBorderColor(red);
    gradient->setContents(picture(4, 4));
    addBox({ 0, 0, 5, 5 }, gradient);
    frame(1);
    EXPECT_EQ(kindsOf(*list), "HKBGIBB");
    EXPECT_EQ(item(3).cornerRadius, 4);
    EXPECT_EQ(item(4).cornerRadius, 0) << "a picture is not rounded unless the layer clips";
    EXPECT_EQ(std::get<RenderBox>(item(6).content).borderWidth, 2) << "over the sublayer";
    EXPECT_FALSE(std::get<RenderBox>(item(2).content).border);
    std::set<std::uint64_t> keys;
    for (const RenderItem& one : list->items)
        keys.insert(one.key);
    EXPECT_EQ(keys.size(), list->items.size());
    const auto firstKey = item(0).key;
    gradient->setPosition({ 50, 50 });
    frame(2);
    EXPECT_EQ(item(0).key, firstKey) << "stable from frame to frame";
}

TEST_F(LayerCommitterTest, drawsABorderWithItsBackgroundWhenNothingLiesBetween)
{
    const auto layer = addBox({ 0, 0, 10, 10 });
    layer->setBorderWidth(1);
    layer->setBorderColor(glass);
    frame(1);
    ASSERT_EQ(kindsOf(*list), "B");
    EXPECT_EQ(std::get<RenderBox>(item(0).content), (RenderBox { red, glass, 1 }));
}

TEST_F(LayerCommitterTest, foldsUprightClipsIntoBounds)
{
    const auto clip = add({ 10, 10, 20, 20 });
    clip->setMasksToBounds(true);
    addBox({ 15, -5, 50, 50 }, clip);
    frame(1);
    EXPECT_EQ(item(0).bounds, (PixelRect { 50, 20, 10, 40 }));
    EXPECT_EQ(item(0).clip, -1);
    EXPECT_TRUE(list->clips.empty());
}

TEST_F(LayerCommitterTest, chainsClipsThatAreNoUprightRectangles)
{
    const auto turned = add({ 20, 20, 40, 40 });
    turned->setTransform(CGAffineTransform::rotation(0.3));
    turned->setMasksToBounds(true);
    const auto round = addBox({ 0, 0, 40, 40 }, turned);
    round->setMasksToBounds(true);
    round->setCornerRadius(8);
    addBox({ 0, 0, 40, 40 }, round);
    frame(1);
    ASSERT_EQ(list->clips.size(), 2u);
    EXPECT_EQ(item(0).clip, 0) << "the round one's own background is round by itself";
    EXPECT_EQ(item(0).cornerRadius, 8);
    EXPECT_EQ(item(1).clip, 1);
    EXPECT_EQ(list->clips[1].parent, 0);
    EXPECT_EQ(list->clips[1].cornerRadius, 8);
}

TEST_F(LayerCommitterTest, leavesOutRoundClipsThatCutNothing)
{
    const auto card = add({ 0, 0, 80, 80 });
    card->setMasksToBounds(true);
    card->setCornerRadius(10);
    addBox({ 10, 0, 60, 80 }, card); // between the corners
    addBox({ 0, 10, 80, 60 }, card);
    addBox({ 0, 0, 5, 5 }, card); // in a corner
    card->setContents(picture(160, 160)); // fills it exactly
    frame(1);
    ASSERT_EQ(kindsOf(*list), "IBBB");
    EXPECT_EQ(item(0).clip, -1);
    EXPECT_EQ(item(0).cornerRadius, 10) << "takes the radius itself";
    EXPECT_EQ(item(1).clip, -1);
    EXPECT_EQ(item(2).clip, -1);
    EXPECT_EQ(item(3).clip, 0);
    card->setMaskedCorners(maxXMaxY);
    frame(2);
    EXPECT_EQ(item(3).clip, -1) << "that corner is square now";
}

TEST_F(LayerCommitterTest, composesOnlyOverlappingThingsUnderOneOpacity)
{
    const auto faded = add({ 0, 0, 100, 100 });
    faded->setOpacity(0.5);
    const auto first = addBox({ 0, 0, 20, 20 }, faded);
    frame(1);
    ASSERT_EQ(kindsOf(*list), "B");
    EXPECT_EQ(item(0).opacity, 0.5);
    const auto second = addBox({ 40, 0, 20, 20 }, faded);
    second->setOpacity(0.5);
    frame(2);
    ASSERT_EQ(kindsOf(*list), "BB");
    EXPECT_EQ(item(1).opacity, 0.25);
    second->setPosition({ 20, 10 });
    frame(3);
    ASSERT_EQ(kindsOf(*list), "C");
    EXPECT_EQ(item(0).opacity, 0.5);
    EXPECT_EQ(item(0).bounds, (PixelRect { 0, 0, 60, 40 }));
    const auto& group = std::get<RenderGroup>(item(0).content);
    EXPECT_EQ(kindsOf(*group.content), "BB");
    EXPECT_EQ(group.content->items[1].opacity, 0.5);
    first->setBackgroundColor(std::nullopt);
    first->setBackdropBlur(5);
    frame(4);
    EXPECT_EQ(kindsOf(*list), "KB") << "blur needs what is behind it";
}

TEST_F(LayerCommitterTest, keepsClipsOfThingsThatLeaveTheirGroup)
{
    const auto outer = add({ 0, 0, 50, 50 });
    outer->setMasksToBounds(true);
    outer->setCornerRadius(10);
    const auto faded = add({ 0, 0, 50, 50 }, outer);
    faded->setOpacity(0.5);
    const auto inner = add({ 0, 0, 50, 50 }, faded);
    inner->setMasksToBounds(true);
    inner->setCornerRadius(20);
    addBox({ 0, 0, 50, 50 }, inner);
    frame(1);
    ASSERT_EQ(kindsOf(*list), "B");
    ASSERT_EQ(list->clips.size(), 2u);
    EXPECT_EQ(list->clips[std::size_t(item(0).clip)].cornerRadius, 20);
    EXPECT_EQ(list->clips[std::size_t(item(0).clip)].parent, 0);
}

TEST_F(LayerCommitterTest, castsABoxsShadowWithoutAGroup)
{
    const auto card = addBox({ 20, 20, 40, 40 });
    card->setCornerRadius(6);
    card->setShadowOpacity(0.5);
    card->setShadowColor({ 0, 0, 0, 0.5 });
    card->setShadowRadius(4);
    card->setShadowOffset({ 0, 2 });
    frame(1);
    ASSERT_EQ(kindsOf(*list), "HB");
    EXPECT_EQ(item(0).cornerRadius, 6);
    EXPECT_EQ(item(0).bounds, (PixelRect { 16, 20, 128, 128 })) << "three sigmas around, moved by the offset";
    EXPECT_EQ(std::get<RenderShadow>(item(0).content).color.alpha, 0.25);
    card->setMasksToBounds(true);
    frame(2);
    EXPECT_EQ(kindsOf(*list), "B") << "a layer that clips clips its shadow too";
    card->setMasksToBounds(false);
    card->setShadowPath(CGPath::rect({ 10, 10, 20, 20 }));
    frame(3);
    EXPECT_EQ(item(0).rect, (CGRect { 10, 10, 20, 20 }));
    EXPECT_EQ(item(0).cornerRadius, 0);
}

TEST_F(LayerCommitterTest, castsTheShadowOfPixelsFromAGroup)
{
    const auto label = add({ 20, 20, 40, 40 });
    label->setContents(picture(80, 80));
    label->setShadowOpacity(1);
    label->setShadowRadius(2);
    label->setShadowOffset({ 1, 0 });
    frame(1);
    ASSERT_EQ(kindsOf(*list), "C");
    EXPECT_EQ(item(0).bounds, (PixelRect { 30, 28, 104, 104 }));
    EXPECT_EQ(std::get<RenderGroup>(item(0).content).shadow->radius, 2);
    label->setPosition({ -22, 40 }); // two points off the screen; its shadow reaches five into it
    frame(2);
    ASSERT_EQ(kindsOf(*list), "C");
    EXPECT_EQ(item(0).bounds, (PixelRect { 0, 28, 10, 104 }));
    label->setPosition({ -40, 40 });
    frame(3);
    EXPECT_EQ(kindsOf(*list), "");
}

TEST_F(LayerCommitterTest, cutsByAMasksPixels)
{
    const auto chat = addBox({ 0, 0, 50, 100 });
    const auto fade = make<CAGradientLayer>();
    fade->setFrame({ 0, 0, 50, 40 });
    fade->setColors({ { 0, 0, 0, 0 }, { 0, 0, 0, 1 } });
    chat->setMask(fade);
    EXPECT_EQ(fade->superlayer(), chat.get());
    frame(1);
    ASSERT_EQ(kindsOf(*list), "C");
    EXPECT_EQ(kindsOf(*std::get<RenderGroup>(item(0).content).mask), "G");
    EXPECT_EQ(item(0).bounds, (PixelRect { 0, 0, 100, 80 })) << "nothing is seen outside of the mask";
    fade->addAnimation(basic("position.y", 20.0, 60.0), "move");
    frame(2);
    frame(2.5);
    EXPECT_EQ(item(0).bounds, (PixelRect { 0, 40, 100, 80 })) << "a mask is animated like any layer";
    chat->setMask(nullptr);
    EXPECT_EQ(fade->superlayer(), nullptr);
    frame(3);
    EXPECT_EQ(kindsOf(*list), "B");
}

TEST_F(LayerCommitterTest, snapsToWholePixelsWhatRoundingMovedOff)
{
    struct Case {
        const char* why;
        double x; // points, at 3 pixels each
        double pixels;
    };
    const Case cases[] = {
        { "a third", 10.3333, 31 },
        { "turned over the edge", 10.6667, 32 },
        { "a real fraction stays", 10.1, 30.3 },
    };
    const auto layer = addBox({ 0, 0, 20, 20 });
    layer->setAnchorPoint({ 0, 0 });
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        layer->setPosition({ c.x, 0 });
        const auto made = LayerCommitter::commit({ root }, 1, 3, { 0, 0, 300, 600 });
        ASSERT_EQ(made->items.size(), 1u);
        EXPECT_NEAR(made->items[0].transform.tx, c.pixels, 1e-9);
    }
    // A flipped table with flipped rows folds to a plain translation.
    layer->setTransform(CGAffineTransform::rotation(std::numbers::pi));
    root->setTransform(CGAffineTransform::rotation(std::numbers::pi));
    const auto made = LayerCommitter::commit({ root }, 1, 3, { 0, 0, 900, 1800 });
    ASSERT_EQ(made->items.size(), 1u);
    EXPECT_EQ(made->items[0].transform.a, 3);
    EXPECT_EQ(made->items[0].transform.b, 0);
    EXPECT_EQ(made->items[0].transform.ty, std::round(made->items[0].transform.ty));
}

TEST_F(LayerCommitterTest, laysPicturesByTheirGravity)
{
    using Gravity = CALayerContentsGravity;
    const std::pair<Gravity, CGRect> cases[] = {
        { Gravity::resize, { 0, 0, 40, 30 } },
        { Gravity::resizeAspect, { 5, 0, 30, 30 } },
        { Gravity::resizeAspectFill, { 0, -5, 40, 40 } },
        { Gravity::center, { 10, 5, 20, 20 } },
        { Gravity::topLeft, { 0, 0, 20, 20 } },
        { Gravity::bottomRight, { 20, 10, 20, 20 } },
        { Gravity::left, { 0, 5, 20, 20 } },
        { Gravity::top, { 10, 0, 20, 20 } },
    };
    const auto layer = add({ 10, 10, 40, 30 });
    layer->setContents(picture(40, 40));
    layer->setContentsScale(2);
    layer->setContentsTint(red);
    for (const auto& [gravity, rect] : cases) {
        layer->setContentsGravity(gravity);
        frame(1);
        EXPECT_EQ(item(0).rect, rect) << int(gravity);
        EXPECT_EQ(std::get<RenderImage>(item(0).content).tint, red);
    }
    layer->setContentsGravity(Gravity::resizeAspectFill);
    layer->setMasksToBounds(true);
    frame(2);
    EXPECT_EQ(item(0).bounds, (PixelRect { 20, 20, 80, 60 })) << "cut when the layer clips";
    layer->setMasksToBounds(false);
    frame(3);
    EXPECT_EQ(item(0).bounds, (PixelRect { 20, 10, 80, 80 })) << "else it hangs over";
}

TEST_F(LayerCommitterTest, fadesFromPictureToPicture)
{
    const auto layer = add({ 0, 0, 40, 30 });
    const auto before = picture(4, 4, PixelFormat::xrgb), after = picture(4, 4, PixelFormat::xrgb), clear = picture(4, 4);
    layer->setContents(after);
    layer->addAnimation(basic("contents", before, {}), "fade");
    frame(1);
    frame(1.25);
    ASSERT_EQ(kindsOf(*list), "II");
    EXPECT_EQ(std::get<RenderImage>(item(0).content).image, before);
    EXPECT_EQ(item(0).opacity, 1) << "whole under an opaque one";
    EXPECT_EQ(item(1).opacity, 0.25);
    layer->setContents(clear);
    frame(1.25);
    EXPECT_EQ(item(0).opacity, 0.75);
    frame(2);
    EXPECT_EQ(kindsOf(*list), "I");
}

TEST_F(LayerCommitterTest, sortsByZKeepingEqualOnesInOrder)
{
    const auto a = addBox({ 0, 0, 10, 10 }), b = addBox({ 0, 0, 10, 10 }), c = addBox({ 0, 0, 10, 10 });
    const auto order = [&] {
        frame(1);
        std::string names;
        for (const RenderItem& one : list->items)
            names += one.key / 16 == a->id() ? "a" : one.key / 16 == b->id() ? "b" : "c";
        return names;
    };
    EXPECT_EQ(order(), "abc");
    a->setZPosition(1);
    EXPECT_EQ(order(), "bca");
    c->setZPosition(1);
    EXPECT_EQ(order(), "bac");
    b->addAnimation(basic("zPosition", 2.0, 2.0), "lift");
    EXPECT_EQ(order(), "acb");
}

TEST_F(LayerCommitterTest, spreadsGradientColoursAndDropsThoseWithoutPlace)
{
    const auto gradient = add<CAGradientLayer>({ 0, 0, 10, 10 });
    gradient->setColors({ red, glass, red });
    frame(1);
    EXPECT_EQ(std::get<RenderGradient>(item(0).content).locations, (std::vector<double> { 0, 0.5, 1 }));
    gradient->setLocations({ 0, 1 });
    frame(2);
    EXPECT_EQ(std::get<RenderGradient>(item(0).content).colors, (std::vector { red, glass }));
    gradient->setColors({});
    frame(3);
    EXPECT_EQ(kindsOf(*list), "");
}

TEST_F(LayerCommitterTest, strokesAShapesPartAndCoversItsLine)
{
    const auto shape = add<CAShapeLayer>({ 0, 0, 40, 40 });
    auto line = std::make_shared<CGPath>();
    line->moveTo({ 10, 10 });
    line->lineTo({ 30, 10 });
    shape->setPath(line);
    shape->setFillColor(std::nullopt);
    frame(1);
    EXPECT_EQ(kindsOf(*list), "");
    shape->setStrokeColor(red);
    shape->setLineWidth(4);
    shape->setLineJoin(CGLineJoin::round);
    shape->setStrokeStart(0.25);
    frame(2);
    ASSERT_EQ(kindsOf(*list), "S");
    EXPECT_TRUE(item(0).bounds.contains({ 16, 16, 48, 8 }));
    EXPECT_EQ(std::get<RenderShape>(item(0).content).strokeStart, 0.25);
    shape->setStrokeEnd(0.25);
    frame(3);
    EXPECT_EQ(kindsOf(*list), "") << "nothing of the line is left";
}

} // namespace platform
