#include "Platform/UIKit/UIActivityIndicatorView.h"

#include "Platform/QuartzCore/Compositor.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

#include <set>

namespace platform {
namespace {

using Style = UIActivityIndicatorViewStyle;

class UIActivityIndicatorViewTest : public ScreenTest {
protected:
    std::shared_ptr<UIActivityIndicatorView> show(Style style = Style::medium)
    {
        auto indicator = make<UIActivityIndicatorView>(style);
        indicator->setCenter({ 100, 100 });
        window->addSubview(indicator);
        makeFrame();
        return indicator;
    }
    bool isMoving()
    {
        makeFrame();
        return LayerCommitter::hasRunningAnimations();
    }
    // What the indicator looks like now: the blue of its pixels, on white.
    std::vector<std::uint8_t> look()
    {
        LayerCommitter::finishAnimations(clock.now());
        Compositor compositor;
        compositor.setSize(640, 960);
        compositor.composite(LayerCommitter::commit(UIApplication::shared().windowLayers(), clock.now(), 2, { 0, 0, 640, 960 }));
        std::vector<std::uint8_t> tones;
        for (int y = 160; y < 240; ++y)
            for (int x = 160; x < 240; ++x)
                tones.push_back(std::uint8_t(compositor.frame()->row(y)[x]));
        return tones;
    }
};

TEST_F(UIActivityIndicatorViewTest, isSeenWhileItTurnsOnly)
{
    const auto indicator = show();
    EXPECT_TRUE(indicator->isHidden());
    indicator->startAnimating();
    EXPECT_FALSE(indicator->isHidden());
    EXPECT_TRUE(isMoving());
    indicator->stopAnimating();
    EXPECT_TRUE(indicator->isHidden());
    EXPECT_FALSE(isMoving());
    indicator->setHidesWhenStopped(false);
    EXPECT_FALSE(indicator->isHidden());
    EXPECT_FALSE(isMoving());
}

TEST_F(UIActivityIndicatorViewTest, costsNothingOutOfSightAndGoesOnAfterwards)
{
    const auto indicator = show();
    indicator->startAnimating();
    indicator->removeFromSuperview();
    EXPECT_FALSE(isMoving());
    window->addSubview(indicator);
    EXPECT_TRUE(isMoving());
}

TEST_F(UIActivityIndicatorViewTest, turnsInStepsOfItsSpokes)
{
    window->setBackgroundColor(UIColor::white());
    for (const auto& [style, spokes] :
        { std::pair(Style::medium, 8u), std::pair(Style::large, 8u), std::pair(Style::gray, 12u) }) {
        const auto indicator = show(style);
        indicator->startAnimating();
        makeFrame();
        std::set<std::vector<std::uint8_t>> looks;
        for (int i = 0; i < 60; ++i) {
            looks.insert(look());
            advance(1.0 / 60);
        }
        EXPECT_EQ(looks.size(), spokes);
        indicator->removeFromSuperview();
    }
}

TEST_F(UIActivityIndicatorViewTest, isDrawnInItsColor)
{
    const auto indicator = show(Style::large);
    EXPECT_EQ(indicator->bounds().size(), (CGSize { 37, 37 }));
    EXPECT_EQ(indicator->sizeThatFits({ 100, 100 }), (CGSize { 37, 37 }));
    window->setBackgroundColor(UIColor::white());
    indicator->startAnimating();
    indicator->setColor(UIColor::white());
    const auto tones = look();
    EXPECT_EQ(std::set<std::uint8_t>(tones.begin(), tones.end()), std::set<std::uint8_t> { 255 });
    indicator->setColor(UIColor::black());
    const auto darker = look();
    EXPECT_EQ(*std::min_element(darker.begin(), darker.end()), 0);
}

} // namespace
} // namespace platform
