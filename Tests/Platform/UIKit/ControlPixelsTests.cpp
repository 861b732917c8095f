// What labels, image views and buttons put on the screen, after the compositor.
#include "Platform/QuartzCore/Compositor.h"
#include "Platform/QuartzCore/LayerCommitter.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Tests/Platform/UIKit/KitResources.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

// A white page of 100 by 60 points, at two pixels a point.
class ControlPixels : public ::testing::Test {
protected:
    ControlPixels()
    {
        page->setBackgroundColor(UIColor::white());
        compositor.setSize(200, 120);
    }

    FrameChange show()
    {
        LayerCommitter::layout(roots);
        LayerCommitter::display(roots, 2);
        return compositor.composite(LayerCommitter::commit(roots, 0, 2, { 0, 0, 200, 120 }));
    }
    std::uint32_t pixel(int x, int y) const { return compositor.frame()->row(y)[x] & 0xffffff; }
    // The pixels of any other colour than white.
    PixelRect painted() const
    {
        PixelRect all;
        for (int y = 0; y < 120; ++y)
            for (int x = 0; x < 200; ++x)
                if (pixel(x, y) != 0xffffff)
                    all = all.unionWith({ x, y, 1, 1 });
        return all;
    }
    std::shared_ptr<UILabel> addLabel(const char* text)
    {
        const auto label = make<UILabel>(CGRect { 10, 20, 80, 30 });
        label->setFont(kitFont("Bold", 16));
        label->setText(text);
        page->addSubview(label);
        return label;
    }

    std::shared_ptr<UIView> page = make<UIView>(CGRect { 0, 0, 100, 60 });
    std::vector<std::shared_ptr<CALayer>> roots { page->layer() };
    Compositor compositor;
};

std::shared_ptr<const UIImage> square(std::uint32_t color)
{
    auto pixels = Bitmap::make(10, 10, PixelFormat::argb);
    for (int y = 0; y < 10; ++y)
        std::fill_n(pixels->row(y), 10, color);
    return std::make_shared<UIImage>(CGImage::fromBitmap(pixels));
}

TEST_F(ControlPixels, ofALabelLieInItsTextRectInItsColor)
{
    const auto label = addLabel("HIHI");
    label->setTextColor(UIColor(0, 0, 1));
    show();
    const CGRect text = label->textRect().offsetBy(10, 20);
    const PixelRect box = painted();
    EXPECT_TRUE(PixelRect::around({ text.x * 2 - 1, text.y * 2, text.width * 2 + 2, text.height * 2 }).contains(box));
    EXPECT_GT(box.height, 18) << "a capital of 16 points is 10.5 points high";
    int full = 0;
    for (int y = box.y; y < box.maxY(); ++y)
        for (int x = box.x; x < box.maxX(); ++x) {
            EXPECT_EQ(pixel(x, y) & 0xff, 0xffu) << "only blue on white";
            full += pixel(x, y) == 0x0000ff;
        }
    EXPECT_GT(full, 200) << "stems are solid";
}

TEST_F(ControlPixels, ofALabelAloneAreRepaintedWhenItChanges)
{
    const auto label = addLabel("one");
    addLabel("other")->setFrame({ 10, 0, 80, 18 });
    show();
    const auto repaints = [&] {
        const FrameChange change = show();
        PixelRect all;
        for (const PixelRect& rect : change.damage)
            all = all.unionWith(rect);
        return all;
    };
    label->setText("two");
    PixelRect damage = repaints();
    EXPECT_FALSE(damage.isEmpty());
    EXPECT_TRUE((PixelRect { 16, 40, 168, 60 }).contains(damage));
    label->setTextColor(UIColor::red());
    damage = repaints();
    EXPECT_FALSE(damage.isEmpty());
    EXPECT_LT(damage.width, 80) << "no wider than the word";
    label->setText("two");
    label->setNeedsLayout();
    EXPECT_TRUE(repaints().isEmpty());
}

TEST_F(ControlPixels, ofAnImageLieAsItsContentModeSays)
{
    const auto view = make<UIImageView>(square(0xff112233));
    view->setFrame({ 10, 10, 80, 40 });
    view->setClipsToBounds(true);
    page->addSubview(view);
    const std::pair<UIViewContentMode, PixelRect> cases[] = {
        { UIViewContentMode::scaleToFill, { 20, 20, 160, 80 } },
        { UIViewContentMode::scaleAspectFit, { 60, 20, 80, 80 } },
        { UIViewContentMode::scaleAspectFill, { 20, 20, 160, 80 } },
        { UIViewContentMode::center, { 90, 50, 20, 20 } },
        { UIViewContentMode::topLeft, { 20, 20, 20, 20 } },
    };
    for (const auto& [mode, place] : cases) {
        view->setContentMode(mode);
        show();
        EXPECT_EQ(painted(), place) << int(mode);
        EXPECT_EQ(pixel(100, 60), place.contains({ 100, 60, 1, 1 }) ? 0x112233u : 0xffffffu);
    }
}

TEST_F(ControlPixels, ofATemplateAreItsTintAndFadeUnderAPress)
{
    const auto button = make<UIButton>(CGRect { 10, 10, 40, 40 });
    button->setImage(square(0xff112233)->withRenderingMode(UIImageRenderingMode::alwaysTemplate));
    button->setTintColor(UIColor(1, 0, 0));
    page->addSubview(button);
    show();
    EXPECT_EQ(painted(), (PixelRect { 50, 50, 20, 20 }));
    EXPECT_EQ(pixel(60, 60), 0xff0000u);
    button->setHighlighted(true);
    show();
    EXPECT_EQ(pixel(60, 60) >> 16, 0xffu);
    EXPECT_NEAR(int(pixel(60, 60) & 0xff), 0x80, 2);
}

} // namespace
} // namespace platform
