#include "UI/Screens/Broadcast Screen/SubViews/ReactionAnimationView.h"

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIImageView.h"
#include "Tests/UI/Stage.h"

#include <cstdlib>

namespace mv {
namespace {

using PathType = ReactionAnimationView::PathType;

// The share of the way that a movement which slows down has come after that share of its time.
double easedOut(double share) { return CAMediaTimingFunction::easeOut().evaluate(share); }

CGPoint onCurve(const std::array<CGPoint, 4>& p, double t)
{
    const double a = (1 - t) * (1 - t) * (1 - t), b = 3 * (1 - t) * (1 - t) * t, c = 3 * (1 - t) * t * t, d = t * t * t;
    return { a * p[0].x + b * p[1].x + c * p[2].x + d * p[3].x, a * p[0].y + b * p[1].y + c * p[2].y + d * p[3].y };
}

// What an icon looks like so many seconds after its start.
struct Look {
    CGPoint center;
    double scale = 0, opacity = 0;
};
Look lookAt(double seconds, double duration, const std::array<CGPoint, 4>& curve)
{
    const double way = easedOut(seconds / duration); // of the whole, which slows down as its parts do once more
    const double climbed = easedOut(std::min(way * duration / (duration - 1), 1.0));
    double opacity = 1;
    if (way > 0.8)
        opacity = 0.7 - 0.7 * (way - 0.8) / 4.2; // towards nothing at five times the duration
    else if (way > 0.4)
        opacity = 1 - 0.3 * (way - 0.4) / 0.4;
    return { onCurve(curve, climbed), 1 - easedOut(way), opacity };
}

std::shared_ptr<const UIImage> redImage(int width, int height)
{
    auto pixels = Bitmap::make(width, height, PixelFormat::argb);
    for (int y = 0; y < height; ++y)
        std::fill_n(pixels->row(y), width, 0xffff0000);
    return std::make_shared<const UIImage>(CGImage::fromBitmap(std::move(pixels)), 3);
}

class ReactionAnimationViewTest : public Stage {
protected:
    static constexpr std::array<CGPoint, 4> one { { { 350, 800 }, { 280, 600 }, { 420, 200 }, { 350, 0 } } };
    static constexpr std::array<CGPoint, 4> two { { { 350, 800 }, { 420, 600 }, { 280, 200 }, { 350, 0 } } };

    ReactionAnimationViewTest()
    {
        window->setBackgroundColor(UIColor::white());
        window->addSubview(overlay);
        host.advance(0);
    }
    std::size_t flying() const { return overlay->subviews().size(); }
    // Draws lots until the flight will be that one.
    static void seedFor(PathType type, double duration)
    {
        for (long seed = 0;; ++seed) {
            srand48(seed);
            const bool isOne = drand48() > 0.5, isShort = drand48() > 0.5;
            if (isOne == (type == PathType::one) && isShort == (duration == 3))
                return srand48(seed);
        }
    }
    Look shown(const UIView& view) const
    {
        const auto value = [&](const char* what) { return view.layer()->presentationValue(what, host.now()); };
        return { std::get<CGPoint>(value("position")), std::get<double>(value("transform.scale")),
            std::get<double>(value("opacity")) };
    }
    // The middle and the size, in points, of what is red on the screen, by how red it is.
    CGRect redArea()
    {
        double weight = 0, x = 0, y = 0;
        const auto& pixels = host.pixels();
        for (int row = 0; row < pixels.height(); ++row) {
            for (int column = 0; column < pixels.width(); ++column) {
                const double red = (255 - (pixels.row(row)[column] >> 8 & 255)) / 255.0;
                weight += red;
                x += red * (column + 0.5);
                y += red * (row + 0.5);
            }
        }
        return { x / weight / 3, y / weight / 3, std::sqrt(weight) / 3, std::sqrt(weight) / 3 };
    }

    const std::shared_ptr<ReactionAnimationView> overlay = make<ReactionAnimationView>(CGRect { 0, 0, 400, 800 });
    const std::shared_ptr<const UIImage> icon = redImage(105, 105);
};

TEST_F(ReactionAnimationViewTest, aFlightFollowsItsCurveShrinkingAndFading)
{
    struct Case {
        PathType type;
        const std::array<CGPoint, 4>& curve;
        double duration; // seconds
    };
    for (const Case& c :
        { Case { PathType::one, one, 3 }, { PathType::one, one, 5 }, { PathType::two, two, 3 }, { PathType::two, two, 5 } }) {
        seedFor(c.type, c.duration);
        overlay->animate(icon);
        const double start = host.now();
        const auto view = overlay->subviews().front();
        for (const double share : { 0.0, 0.1, 0.25, 0.3, 0.45, 0.6, 0.66, 0.8, 0.95, 0.999 }) {
            host.advance(start + share * c.duration - host.now());
            const Look is = shown(*view), shouldBe = lookAt(share * c.duration, c.duration, c.curve);
            SCOPED_TRACE(testing::Message() << c.duration << " s, at " << share);
            EXPECT_NEAR(is.center.x, shouldBe.center.x, 0.1);
            EXPECT_NEAR(is.center.y, shouldBe.center.y, 0.1);
            EXPECT_NEAR(is.scale, shouldBe.scale, 1e-4);
            EXPECT_NEAR(is.opacity, shouldBe.opacity, 1e-4);
        }
        EXPECT_NEAR(shown(*view).opacity, 2.0 / 3, 0.01) << "it is gone before it has faded";
        EXPECT_NEAR(shown(*view).center.y, 0, 0.1) << "it has waited at the top";
        host.advance(start + c.duration - host.now());
        EXPECT_EQ(flying(), 0u);
        EXPECT_TRUE(overlay->layer()->sublayers().empty());
    }
}

TEST_F(ReactionAnimationViewTest, chanceDecidesOnTheCurveAndTheTime)
{
    srand48(7);
    for (int i = 0; i < 120; ++i)
        overlay->animate(icon);
    host.advance(0.3);
    int left = 0;
    for (const auto& view : overlay->subviews())
        left += shown(*view).center.x < 350;
    EXPECT_NEAR(left, 60, 25);
    host.advance(2.8);
    EXPECT_NEAR(double(flying()), 60, 25) << "those of three seconds have gone";
    host.advance(2);
    EXPECT_EQ(flying(), 0u);
}

TEST_F(ReactionAnimationViewTest, hundredsFlyAtOnceAndLeaveNothingBehind)
{
    std::vector<WeakRef<UIView>> all;
    std::size_t most = 0;
    const auto expectEachOnItsWay = [&] {
        most = std::max(most, flying());
        for (const auto& view : overlay->subviews()) {
            ASSERT_TRUE(view->layer()->hasAnimations());
            ASSERT_GT(shown(*view).center.x, 280) << "none stands at its own place, neither before nor after its flight";
        }
    };
    for (int frame = 0; frame < 380; ++frame) {
        for (int i = 0; frame < 70 && i < 5; ++i) {
            overlay->animate(icon);
            all.push_back(weak(overlay->subviews().back()));
        }
        host.advance(1.0 / 60);
        expectEachOnItsWay();
    }
    EXPECT_GT(most, 300u);
    EXPECT_EQ(flying(), 0u);
    EXPECT_TRUE(overlay->layer()->sublayers().empty());
    for (const auto& view : all)
        EXPECT_FALSE(view.lock());
    EXPECT_TRUE(std::isnan(redArea().x)) << "white again";
    const int frames = host.frameCount();
    host.advance(10);
    EXPECT_EQ(host.frameCount(), frames) << "then the screen rests";
}

TEST_F(ReactionAnimationViewTest, aDrawingIsRenderedOnceAndPixelsAreReused)
{
    int renderings = 0;
    const auto drawing = CGImage::fromDrawing(24, 24, [&](int width, int height) {
        ++renderings;
        return Bitmap::make(width, height, PixelFormat::argb, true);
    });
    const auto image = std::make_shared<const UIImage>(drawing);
    const auto send = [&] {
        srand48(0); // the same flights each time
        for (int i = 0; i < 20; ++i)
            overlay->animate(image);
    };
    send();
    host.advance(6); // every size has been shown
    EXPECT_EQ(renderings, 1);
    send();
    const auto memory = PixelPool::bytesInUse() + PixelPool::bytesKept();
    host.advance(6);
    EXPECT_EQ(PixelPool::bytesInUse() + PixelPool::bytesKept(), memory);
}

TEST_F(ReactionAnimationViewTest, anIconOfAnySizeIsShownWholeInItsSquare)
{
    overlay->animate(redImage(4000, 2000));
    host.advance(0);
    const CGRect red = redArea();
    EXPECT_NEAR(red.x, 350, 0.2);
    EXPECT_NEAR(red.y, 800, 0.2);
    EXPECT_NEAR(red.width, std::sqrt(35 * 17.5), 0.3) << "half as high as it is wide";
    host.advance(6);
    for (const auto& nothing : { std::make_shared<const UIImage>(), std::shared_ptr<const UIImage>() }) {
        overlay->animate(nothing);
        EXPECT_EQ(flying(), 1u);
        host.advance(1);
        EXPECT_TRUE(std::isnan(redArea().x));
        host.advance(5);
        EXPECT_EQ(flying(), 0u);
    }
}

TEST_F(ReactionAnimationViewTest, nothingFliesOutsideAWindow)
{
    overlay->animate(icon);
    host.advance(1);
    overlay->animate(icon); // and is taken away before it is seen
    overlay->removeFromSuperview();
    EXPECT_EQ(flying(), 0u);
    for (int i = 0; i < 100; ++i)
        overlay->animate(icon);
    EXPECT_EQ(flying(), 0u);
    window->addSubview(overlay);
    host.advance(0.1);
    EXPECT_EQ(flying(), 0u) << "those that nobody saw do not come all at once";
    overlay->animate(icon);
    host.advance(1);
    EXPECT_EQ(flying(), 1u);
    const auto watched = weak(overlay->subviews().front());
    window->subviews().front()->removeFromSuperview();
    EXPECT_FALSE(watched.lock());
}

TEST_F(ReactionAnimationViewTest, aHiddenOneIsEmptyInTimeToo)
{
    overlay->setHidden(true);
    for (int i = 0; i < 10; ++i)
        overlay->animate(icon);
    const int frames = host.frameCount();
    host.advance(6);
    EXPECT_EQ(flying(), 0u);
    EXPECT_LE(host.frameCount() - frames, 5) << "it is not drawn for what nobody sees";
    overlay->animate(icon);
    host.advance(1);
    overlay->setHidden(false);
    host.advance(0.5);
    EXPECT_LT(redArea().y, 700) << "one that is under way comes into sight";
}

TEST_F(ReactionAnimationViewTest, anInterfaceThatTurnsSendsTheNextOnesUpItsNewEdge)
{
    overlay->setAutoresizingMask(flexibleWidth | flexibleHeight);
    overlay->setFrame(window->bounds());
    overlay->animate(icon);
    host.advance(0.2);
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(0.3);
    overlay->animate(icon);
    host.advance(0);
    EXPECT_LT(shown(*overlay->subviews()[0]).center.x, 393) << "it goes on as it began";
    EXPECT_EQ(shown(*overlay->subviews()[1]).center, (CGPoint { 802, 393 }));
    host.advance(6);
    EXPECT_EQ(flying(), 0u);
}

TEST_F(ReactionAnimationViewTest, rightToLeftMirrorsTheCurves)
{
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    CGPath mirrored;
    mirrored.moveTo({ 50, 800 });
    mirrored.curveTo({ 120, 600 }, { -20, 200 }, { 50, 0 });
    EXPECT_EQ(*overlay->customPath(PathType::one), mirrored);
    seedFor(PathType::two, 5);
    overlay->animate(icon);
    host.advance(0.4);
    const CGPoint leftToRight = lookAt(0.4, 5, two).center;
    EXPECT_NEAR(shown(*overlay->subviews().front()).center.x, 400 - leftToRight.x, 0.1);
    EXPECT_NEAR(shown(*overlay->subviews().front()).center.y, leftToRight.y, 0.1);
}

TEST_F(ReactionAnimationViewTest, touchesGoThrough)
{
    const auto below = make<UIButton>(CGRect { 0, 0, 393, 852 });
    int presses = 0;
    below->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    window->insertSubview(below, 0);
    overlay->animate(icon);
    host.advance(0.1);
    host.tap(shown(*overlay->subviews().front()).center);
    host.tap({ 100, 400 });
    EXPECT_EQ(presses, 2);
}

} // namespace
} // namespace mv
