#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Tests/Platform/QuartzCore/CompositorTestSupport.h"
#include "Tests/Platform/QuartzCore/LayerTestSupport.h"

#include <random>

// Scrolled content moves as pixels, and nobody can tell: the frame equals one that was painted from nothing, to the last bit.

namespace platform::testing {

namespace {

class CompositorScroll : public LayerScreen {
protected:
    CompositorScroll()
    {
        root->setBackgroundColor(white);
        compositor.setSize(pixels.width, pixels.height);
    }

    // Composes the next frame and compares it with a fresh one.
    FrameChange show(double time)
    {
        frame(time);
        const FrameChange change = compositor.composite(list);
        const Composed fresh(pixels.width, pixels.height, list);
        EXPECT_EQ(difference(*compositor.frame(), *fresh.compositor.frame()), 0) << "at " << time;
        return change;
    }

    std::shared_ptr<CALayer> addScroller(const CGRect& frame, const std::shared_ptr<CALayer>& parent = nullptr)
    {
        auto scroller = add(frame, parent);
        scroller->setMasksToBounds(true);
        return scroller;
    }

    // A card as lists have them: shadow, border, round corners, a picture and a line of another colour.
    std::shared_ptr<CALayer> addCard(const CGRect& frame, const std::shared_ptr<CALayer>& parent)
    {
        auto card = addBox(frame, parent);
        card->setBackgroundColor(CGColor { 0.9, 0.9, double(random() % 256) / 255, 1 });
        card->setCornerRadius(5);
        card->setBorderWidth(0.5);
        card->setBorderColor(black);
        card->setShadowColor(black);
        card->setShadowOpacity(0.4F);
        card->setShadowRadius(3);
        card->setShadowOffset({ 0, 1 });
        card->setShadowPath(CGPath::roundedRect({ 0, 0, frame.width, frame.height }, 5));
        auto picture = add({ 4, 4, frame.width - 8, frame.height / 2 }, card);
        picture->setContents(noisePicture(31, 17, PixelFormat::xrgb, unsigned(random())));
        picture->setCornerRadius(4);
        picture->setMasksToBounds(true);
        addBox({ 5, frame.height * 0.7, frame.width / 2, 4 }, card)->setBackgroundColor(blue);
        return card;
    }

    void addCards(const std::shared_ptr<CALayer>& parent, int count)
    {
        for (int i = 0; i < count; ++i)
            addCard({ 8, 10.0 + 50 * i, 80, 40 }, parent);
    }

    static void scroll(CALayer& layer, double dx, double dy)
    {
        CGRect bounds = layer.bounds();
        layer.setBounds({ bounds.x + dx, bounds.y + dy, bounds.width, bounds.height });
    }

    static long areaOf(const std::vector<PixelRect>& rects)
    {
        long area = 0;
        for (const PixelRect& r : rects)
            area += r.area();
        return area;
    }

    std::mt19937 random { 5 };
    Compositor compositor;
};

} // namespace

TEST_F(CompositorScroll, paintsOnlyWhatComesIntoSight)
{
    const auto scroller = addScroller({ 0, 20, 100, 180 });
    addCards(scroller, 20);
    show(0);
    for (const double way : { 4.0, 4.0, -3.0, 10.5, 0.5 }) {
        scroll(*scroller, 0, way);
        const FrameChange change = show(1);
        ASSERT_EQ(change.moves.size(), 1u);
        EXPECT_EQ(change.moves[0].dy, int(-2 * way));
        EXPECT_EQ(areaOf(change.damage), 200 * std::abs(int(2 * way)));
    }
}

TEST_F(CompositorScroll, anOwnBackgroundStandsStill)
{
    const auto scroller = addScroller({ 10, 20, 80, 150 });
    scroller->setBackgroundColor(green);
    addCards(scroller, 20);
    show(0);
    scroll(*scroller, 0, 6);
    const FrameChange change = show(1);
    EXPECT_EQ(change.moves.size(), 1u);
    EXPECT_EQ(areaOf(change.damage), 160 * 12);
}

TEST_F(CompositorScroll, goesSidewaysAndAslant)
{
    const auto scroller = addScroller({ 0, 0, 100, 200 });
    addCards(scroller, 10);
    show(0);
    const CGSize ways[] = { { 5, 0 }, { -3, 0 }, { 4, 7 }, { -4, 7 }, { 4, -7 }, { -4, -7 } };
    for (const CGSize& way : ways) {
        scroll(*scroller, way.width, way.height);
        EXPECT_EQ(show(1).moves.size(), 1u);
    }
}

TEST_F(CompositorScroll, repaintsWhatStandsStillWhereItWasAndIs)
{
    addBox({ 30, 60, 20, 20 }); // beneath
    const auto scroller = addScroller({ 0, 20, 100, 180 });
    addCards(scroller, 20);
    const auto header = add({ 0, 0, 100, 35 });
    header->setBackdropBlur(4);
    addBox({ 92, 50, 4, 30 }); // an indicator in front
    show(0);
    for (int i = 1; i < 8; ++i) {
        scroll(*scroller, 0, 4);
        const FrameChange change = show(i);
        EXPECT_EQ(change.moves.size(), 1u);
        EXPECT_LT(areaOf(change.damage), 200 * 360 / 2);
    }
}

TEST_F(CompositorScroll, aBlurBesideTheClipSeesWhatMoves)
{
    const auto scroller = addScroller({ 0, 30, 100, 170 });
    addCards(scroller, 20);
    add({ 0, 0, 100, 30 })->setBackdropBlur(6);
    show(0);
    scroll(*scroller, 0, 5);
    EXPECT_EQ(show(1).moves.size(), 1u);
}

TEST_F(CompositorScroll, doesNotMoveWhatCannotBeMoved)
{
    const auto scroller = addScroller({ 10, 20, 80, 150 });
    addCards(scroller, 20);
    show(0);
    scroll(*scroller, 0, 4.2); // between pixels
    EXPECT_TRUE(show(1).moves.empty());
    scroll(*scroller, 0, -4.2);
    show(1);
    scroller->setCornerRadius(12); // the corners cut other pixels now
    show(1);
    scroll(*scroller, 0, 4);
    EXPECT_TRUE(show(1).moves.empty());
    scroller->setCornerRadius(0);
    show(1);
    scroll(*scroller, 0, 400); // nothing stays in sight
    EXPECT_TRUE(show(1).moves.empty());
}

TEST_F(CompositorScroll, twoScrollersMoveInOneFrame)
{
    const auto upper = addScroller({ 0, 0, 100, 80 }), lower = addScroller({ 0, 90, 100, 110 });
    addCards(upper, 5);
    addCards(lower, 5);
    show(0);
    scroll(*upper, 2, 0);
    scroll(*lower, 0, 5);
    EXPECT_EQ(show(1).moves.size(), 2u);
}

TEST_F(CompositorScroll, keepsNoPictureThatOnlyMoves)
{
    const auto scroller = addScroller({ 0, 0, 100, 200 });
    const auto picture = add({ 0, 20, 90, 90 }, scroller);
    picture->setContents(noisePicture(64, 64, PixelFormat::xrgb, 1));
    show(0);
    const std::size_t scaled = compositor.cachedBytes();
    ASSERT_GE(scaled, 180u * 180 * 4);
    for (int i = 0; i < 80; ++i) {
        scroll(*scroller, 0, i % 2 ? -2 : 2);
        show(i);
    }
    EXPECT_LT(compositor.cachedBytes(), scaled / 2);
}

TEST_F(CompositorScroll, randomScrollsLookLikeFreshFrames)
{
    int moves = 0;
    for (unsigned seed = 1; seed <= 8; ++seed) {
        random.seed(seed);
        const auto below = [this](int limit) { return int(random() % unsigned(limit)); };
        while (!root->sublayers().empty())
            root->sublayers().back()->removeFromSuperlayer();
        addBox({ 10, 100, 30, 25 });
        const auto outer = addScroller({ 0, 10, 100, 180 });
        if (seed % 2)
            outer->setBackgroundColor(CGColor { 0.95, 0.95, 0.97, 1 });
        addCards(outer, 6);
        const auto inner = addScroller({ 5, 120, 90, 60 }, outer);
        addCards(inner, 3);
        const auto turned = addBox({ 30, 30, 30, 20 }, outer);
        turned->setTransform(CGAffineTransform::rotation(0.3));
        const auto gradient = add<CAGradientLayer>({ 60, 200, 30, 40.5 }, outer);
        gradient->setColors({ red, blue });
        const auto faded = addCard({ 20, 300, 60, 50 }, outer);
        faded->setOpacity(0.6F);
        const auto blurred = add({ 40, 90, 40, 40 }, seed % 3 ? outer : root);
        blurred->setBackdropBlur(3);
        const auto front = addBox({ 80, 20, 15, 15 });
        front->setOpacity(0.5F);
        for (int step = 0; step < 40; ++step) {
            const double time = seed * 100.0 + step * 0.1;
            scroll(*outer, below(8) ? 0 : below(5) - 2, below(24) / 2.0 - 4);
            if (below(3) == 0)
                scroll(*inner, below(9) - 4, below(5) - 2);
            switch (below(9)) {
            case 0:
                front->setPosition({ 80.0 + below(10), 20.0 + below(120) });
                break;
            case 1:
                turned->addAnimation(basic("opacity", 0.2, 1.0, 0.3), "fade");
                break;
            case 2:
                addCard({ double(below(60)), double(below(300)), 40, 30 }, below(2) ? outer : inner);
                break;
            case 3:
                outer->sublayers()[std::size_t(below(int(outer->sublayers().size())))]->setHidden(below(2));
                break;
            case 4: // from the list to the front and back
                root->addSublayer(faded);
                break;
            case 5:
                outer->insertSublayer(faded, 0);
                break;
            case 6:
                outer->setFrame({ double(below(3)), 10.0 + below(10), 100, 180 });
                break;
            default:
                break;
            }
            moves += int(show(time).moves.size());
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", step " << step;
        }
    }
    EXPECT_GT(moves, 100);
}

} // namespace platform::testing
