#include "Tests/Platform/AVFoundation/MediaTest.h"

#include <cstdlib>
#include <functional>
#include <vector>

namespace platform {
namespace {

enum class Tone { red, blue, white, gray, other };

Tone toneOf(std::uint32_t word)
{
    const int red = int(word >> 16 & 255), green = int(word >> 8 & 255), blue = int(word & 255);
    const auto isNear = [](int a, int b) { return std::abs(a - b) < 24; };
    if (red > 250 && green > 250 && blue > 250)
        return Tone::white;
    if (isNear(red, green) && isNear(green, blue))
        return Tone::gray;
    if (isNear(red, 0xc0) && isNear(green, 0x20) && isNear(blue, 0x20))
        return Tone::red;
    if (isNear(red, 0x20) && isNear(green, 0x20) && isNear(blue, 0xc0))
        return Tone::blue;
    return Tone::other;
}

class AVPlayerLayerTest : public MediaTest {
protected:
    Tone toneAt(double x, double y) // points
    {
        return toneOf(host.pixels().row(int(y * 3))[int(x * 3)]);
    }
};

TEST_F(AVPlayerLayerTest, fitsFillsOrStretches)
{
    layer->setFrame({ 50, 100, 200, 300 });
    layer->setMasksToBounds(true);
    open(films.plain());
    host.advance(0);
    // Whole inside: 200 by 150 in the middle.
    EXPECT_EQ(toneAt(52, 250), Tone::red);
    EXPECT_EQ(toneAt(248, 250), Tone::blue);
    EXPECT_EQ(toneAt(150, 170), Tone::white);
    EXPECT_EQ(toneAt(150, 180), Tone::gray);
    EXPECT_EQ(toneAt(150, 330), Tone::white);

    // Stretched over the layer, coloured edges and all.
    layer->setVideoGravity(AVLayerVideoGravity::resize);
    host.advance(0);
    EXPECT_EQ(toneAt(52, 105), Tone::red);
    EXPECT_EQ(toneAt(248, 395), Tone::blue);
    EXPECT_EQ(toneAt(150, 105), Tone::gray);

    // Covered: 400 by 300, of which the middle is seen.
    layer->setVideoGravity(AVLayerVideoGravity::resizeAspectFill);
    host.advance(0);
    EXPECT_EQ(toneAt(52, 105), Tone::gray);
    EXPECT_EQ(toneAt(248, 395), Tone::gray);
    EXPECT_EQ(toneAt(48, 250), Tone::white);
}

TEST_F(AVPlayerLayerTest, hasThePixelsOfTheScreen)
{
    for (const CGRect frame : { CGRect { 0, 0, 393, 852 }, CGRect { 10, 20, 201, 155 }, CGRect { 0, 0, 99.0, 40.0 + 1.0 / 3 } }) {
        for (const auto gravity : { AVLayerVideoGravity::resizeAspect, AVLayerVideoGravity::resizeAspectFill }) {
            layer->setFrame(frame);
            layer->setVideoGravity(gravity);
            open(films.plain());
            host.advance(0);
            const auto& picture = layer->contents()->pixels();
            const double width = std::round(frame.width * 3), height = std::round(frame.height * 3);
            if (gravity == AVLayerVideoGravity::resizeAspectFill)
                EXPECT_EQ(picture->bounds(), (PixelRect { 0, 0, int(width), int(height) }));
            else
                EXPECT_NEAR(double(picture->width()) / picture->height(), 4.0 / 3, 0.03);
            // Drawn as it is: the screen's middle row is the picture's.
            const int x = int(std::lround(frame.x * 3 + (width - picture->width()) / 2));
            const int y = int(std::lround(frame.y * 3 + (height - picture->height()) / 2));
            const auto* line = picture->row(picture->height() / 2);
            const auto* shown = host.pixels().row(y + picture->height() / 2) + x;
            for (int i = 0; i < picture->width(); i += 7)
                ASSERT_EQ(shown[i] & 0xffffff, line[i] & 0xffffff) << i;
        }
    }
}

TEST_F(AVPlayerLayerTest, keepsTheColours)
{
    layer->setVideoGravity(AVLayerVideoGravity::resize);
    open(films.plain());
    host.advance(0);
    const auto grayAt = [&](double part) { return int(host.pixels().row(int(part * 2555))[400] & 255); };
    EXPECT_NEAR(grayAt(0.02), 158, 5);
    EXPECT_NEAR(grayAt(0.98), 82, 5);
}

TEST_F(AVPlayerLayerTest, followsANewSizeInTheSameFrame)
{
    open(films.plain());
    host.advance(0);
    layer->setFrame({ 0, 0, 200, 150 });
    host.advance(0);
    EXPECT_EQ(layer->contents()->pixels()->bounds(), (PixelRect { 0, 0, 600, 450 }));
    EXPECT_EQ(shownFrame(), 0);
}

TEST_F(AVPlayerLayerTest, convertsEachFrameOnce)
{
    layer->setVideoGravity(AVLayerVideoGravity::resizeAspectFill);
    open(films.plain());
    host.advance(0);
    const long before = layer->convertedPixelCount();
    const int frames = host.frameCount();
    player->play();
    host.advance(1);
    EXPECT_EQ(layer->convertedPixelCount() - before, 30l * 1179 * 2556);
    EXPECT_EQ(host.frameCount() - frames, 30) << "and the screen draws no other frames";
}

TEST_F(AVPlayerLayerTest, convertsWhatChangesAboveItOnly)
{
    layer->setVideoGravity(AVLayerVideoGravity::resizeAspectFill);
    open(films.plain());
    const auto above = make<CALayer>();
    above->setFrame({ 20, 600, 100, 40 });
    above->setBackgroundColor(CGColor { 0, 0, 0, 0.5 });
    window->layer()->addSublayer(above);
    host.advance(0);
    long before = layer->convertedPixelCount();
    above->setFrame({ 20, 590, 100, 40 });
    host.advance(0);
    EXPECT_EQ(layer->convertedPixelCount() - before, 300 * 150) << "where it was and where it is";
    const Tone shown = toneAt(100, 580);
    before = layer->convertedPixelCount();
    above->setBackgroundColor(CGColor { 1, 1, 1, 1 });
    host.advance(0);
    EXPECT_EQ(layer->convertedPixelCount(), before) << "nothing beneath what covers it";
    EXPECT_EQ(toneAt(100, 580), shown);
    above->removeFromSuperlayer();
}

TEST_F(AVPlayerLayerTest, showsThePresentWhenItComesIntoSight)
{
    open(films.plain())->play();
    host.advance(0.2);
    layer->setHidden(true);
    host.advance(0.2);
    const long converted = layer->convertedPixelCount();
    const int frames = host.frameCount();
    host.advance(0.5);
    EXPECT_EQ(layer->convertedPixelCount(), converted);
    EXPECT_EQ(host.frameCount(), frames) << "what nobody sees asks for no frames";
    layer->setHidden(false);
    host.advance(0);
    EXPECT_EQ(shownFrame(), 27);
}

// Through a mask, faded, turned, scaled and blurred by what lies above it.
TEST_F(AVPlayerLayerTest, isDrawnLikeAnyPicture)
{
    layer->setFrame({ 40, 60, 300, 400 });
    open(films.plain());
    host.advance(0);
    const auto still = make<CALayer>();
    still->setFrame(layer->frame());
    still->setContentsGravity(CALayerContentsGravity::center);
    still->setContentsScale(3);
    still->setContents(CGImage::fromBitmap(layer->contents()->pixels()));
    const std::pair<const char*, std::function<void(CALayer&)>> looks[] = { { "plain", [](CALayer&) {} },
        { "between pixels",
            [](CALayer& l) {
                l.setPosition({ 190.1, 260.25 });
            } },
        { "faded", [](CALayer& l) { l.setOpacity(0.4); } },
        { "round", [](CALayer& l) { l.setCornerRadius(30), l.setMasksToBounds(true); } },
        { "mirrored", [](CALayer& l) { l.setTransform(CGAffineTransform::scale(-1, 1)); } },
        { "turned", [](CALayer& l) { l.setTransform(CGAffineTransform::rotation(0.3)); } },
        { "scaled", [](CALayer& l) { l.setTransform(CGAffineTransform::scale(0.7, 0.9)); } },
        { "masked", [](CALayer& l) {
             const auto mask = make<CALayer>();
             mask->setFrame({ 20, 30, 200, 300 });
             mask->setCornerRadius(50);
             mask->setBackgroundColor(CGColor { 0, 0, 0, 0.7 });
             l.setMask(mask);
         } } };
    const auto screenWith = [&](const std::shared_ptr<CALayer>& shown) {
        layer->setHidden(shown != layer);
        still->setHidden(shown != still);
        host.advance(0);
        const Bitmap& screen = host.pixels();
        std::vector<std::uint32_t> words;
        for (int y = 0; y < screen.height(); ++y)
            words.insert(words.end(), screen.row(y), screen.row(y) + screen.width());
        return words;
    };
    window->layer()->addSublayer(still);
    for (const auto& [why, apply] : looks) {
        for (CALayer* each : { static_cast<CALayer*>(layer.get()), still.get() }) {
            each->setTransform({});
            each->setFrame({ 40, 60, 300, 400 });
            each->setOpacity(1);
            each->setCornerRadius(0);
            each->setMasksToBounds(false);
            each->setMask(nullptr);
            apply(*each);
        }
        EXPECT_TRUE(screenWith(layer) == screenWith(still)) << why;
    }
    still->removeFromSuperlayer();
}

TEST_F(AVPlayerLayerTest, twoLayersShowOnePlayer)
{
    const auto other = make<AVPlayerLayer>();
    other->setFrame({ 200, 0, 193, 140 });
    window->layer()->addSublayer(other);
    layer->setFrame({ 0, 0, 193, 140 });
    open(films.plain())->play();
    other->setPlayer(player);
    host.advance(0.5);
    for (const auto& each : { layer, other }) {
        const auto& picture = each->contents()->pixels();
        EXPECT_EQ(
            showroom::media::frameCode::read(picture->row(0), picture->stride() / 4, picture->width(), picture->height()), 15);
    }
    other->setPlayer(nullptr);
    other->removeFromSuperlayer();
}

} // namespace
} // namespace platform
