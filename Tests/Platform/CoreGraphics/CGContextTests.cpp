#include "Platform/CoreGraphics/CGContext.h"
#include "Tests/Platform/CoreGraphics/GraphicsTestSupport.h"

namespace platform {
using testing::hex;
using testing::inkOf;

namespace {
constexpr CGColor white { 1, 1, 1, 1 }, red { 1, 0, 0, 1 }, blue { 0, 0, 1, 1 };

std::shared_ptr<Bitmap> page(int width, int height)
{
    auto bitmap = Bitmap::make(width, height, PixelFormat::argb);
    CGContext(*bitmap, {}).fill(CGRect { 0, 0, double(width), double(height) }, white);
    return bitmap;
}

// Four plain quarters: red, green; blue, clear.
std::shared_ptr<const CGImage> quarters(int side)
{
    auto bitmap = Bitmap::make(side, side, PixelFormat::argb, true);
    const std::uint32_t words[] = { 0xffff0000, 0xff00ff00, 0xff0000ff, 0 };
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            bitmap->row(y)[x] = words[(y >= side / 2) * 2 + (x >= side / 2)];
    }
    return CGImage::fromBitmap(bitmap);
}
}

TEST(CGContext, mapsPointsToPixelsAndRestores)
{
    const auto bitmap = page(60, 60);
    CGContext context(*bitmap, CGAffineTransform::scale(3, 3));
    context.save();
    context.concat(CGAffineTransform::translation(5, 2));
    context.fill(CGRect { 0, 0, 4, 6 }, red);
    context.restore();
    EXPECT_EQ(inkOf(*bitmap), (PixelRect { 15, 6, 12, 18 }));
    EXPECT_EQ(context.transform(), CGAffineTransform::scale(3, 3));
    context.restore(); // one too many
    context.fill(CGRect { 0, 0, 1, 1 }, red);
    EXPECT_EQ(inkOf(*bitmap).x, 0);
}

TEST(CGContext, clipsToWholePixelsAndToPaths)
{
    const auto bitmap = page(40, 40);
    CGContext context(*bitmap, {});
    context.save();
    context.clip(CGRect { 4.4, 4.4, 10, 10 });
    context.fill(CGRect { 0, 0, 40, 40 }, red);
    EXPECT_EQ(inkOf(*bitmap), (PixelRect { 4, 4, 10, 10 }));
    EXPECT_EQ(hex(bitmap->row(4)[4]), "ffff0000");
    context.restore();

    CGPath circle;
    circle.addEllipse({ 0, 0, 40, 40 });
    context.clip(circle);
    context.drawImage(*quarters(40), { 0, 0, 40, 40 });
    EXPECT_EQ(hex(bitmap->row(0)[0]), "ffffffff"); // outside the circle
    EXPECT_EQ(hex(bitmap->row(10)[30]), "ff00ff00");
}

TEST(CGContext, drawsPicturesAtWholePixelsScaledTintedAndMirrored)
{
    const auto bitmap = page(32, 32);
    CGContext context(*bitmap, CGAffineTransform::scale(2, 2));
    context.drawImage(*quarters(8), { 0.1, 0.1, 16, 16 }); // a fifth of a pixel off
    EXPECT_EQ(hex(bitmap->row(4)[4]), "ffff0000");
    EXPECT_EQ(hex(bitmap->row(4)[28]), "ff00ff00");
    EXPECT_EQ(hex(bitmap->row(28)[28]), "ffffffff");

    context.drawImage(*quarters(8), { 0, 0, 16, 16 }, CGColor { 0, 0, 0, 0.5 });
    EXPECT_EQ(hex(bitmap->row(28)[28]), "ffffffff"); // nothing where the picture is clear
    EXPECT_NEAR((bitmap->row(4)[28] >> 8) & 255, 127, 1);

    const auto mirrored = page(32, 32);
    CGContext turned(*mirrored, { -2, 0, 0, 2, 32, 0 });
    turned.drawImage(*quarters(8), { 0, 0, 16, 16 });
    EXPECT_EQ(hex(mirrored->row(4)[28]), "ffff0000");
    EXPECT_EQ(hex(mirrored->row(4)[4]), "ff00ff00");
}

TEST(CGContext, alphaMultipliesEverything)
{
    const auto bitmap = page(30, 10);
    CGContext context(*bitmap, {});
    context.setAlpha(0.5);
    context.fill(CGRect { 0, 0, 10, 10 }, { 0, 0, 0, 1 });
    context.drawImage(*quarters(20), { 10, 0, 20, 20 });
    context.fillLinearGradient({ 20, 0, 10, 10 }, { blue, blue }, {}, { 20, 0 }, { 30, 0 });
    EXPECT_NEAR(bitmap->row(5)[5] & 255, 127, 1);
    EXPECT_NEAR(bitmap->row(5)[15] & 255, 127, 1);
    EXPECT_NEAR(bitmap->row(5)[25] & 255, 191, 1); // half blue over half green over white
}

TEST(CGContext, gradientsFollowTheirAxisUnderAnyTransform)
{
    struct Case {
        const char* why;
        CGAffineTransform transform;
        CGPoint start, end;
    };
    const Case cases[] = { { "across", {}, { 0, 0 }, { 100, 0 } }, { "down", {}, { 0, 0 }, { 0, 100 } },
        { "aslant", {}, { 10, 20 }, { 80, 90 } }, { "scaled", CGAffineTransform::scale(2, 2), { 0, 0 }, { 50, 0 } },
        { "turned", { 0, 1, -1, 0, 100, 0 }, { 0, 0 }, { 100, 0 } } };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        for (const double alpha : { 1.0, 0.5 }) { // the direct way and the blended one
            const auto bitmap = Bitmap::make(100, 100, PixelFormat::argb, true);
            CGContext context(*bitmap, c.transform);
            context.fillLinearGradient({ 0, 0, 100, 100 }, { { 0, 0, 0, alpha }, { 1, 0, 0, alpha } }, {}, c.start, c.end);
            const double dx = c.end.x - c.start.x, dy = c.end.y - c.start.y;
            for (int y = 0; y < 100; y += 9) {
                for (int x = 0; x < 100; x += 9) {
                    const auto p = c.transform.inverted().apply(CGPoint { x + 0.5, y + 0.5 });
                    const double t
                        = std::clamp(((p.x - c.start.x) * dx + (p.y - c.start.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
                    ASSERT_NEAR((bitmap->row(y)[x] >> 16) & 255, 255 * t * alpha, 1.5) << x << ", " << y;
                }
            }
        }
    }
    const auto bitmap = page(10, 10);
    CGContext(*bitmap, {}).fillLinearGradient({ 0, 0, 10, 10 }, {}, {}, {}, { 1, 1 });
    EXPECT_TRUE(inkOf(*bitmap).isEmpty());
}

TEST(CGContext, survivesWhatMakesNoPicture)
{
    const auto bitmap = page(20, 20);
    CGContext context(*bitmap, {});
    CGPath line;
    line.moveTo({ 0, 10 });
    line.lineTo({ 20, 10 });
    context.stroke(line, blue, 0);
    context.stroke(line, blue, -1);
    context.drawImage(*quarters(4), { 0, 0, 0, 5 });
    context.drawImage(*quarters(4), { NAN, 0, 5, 5 });
    context.save();
    context.concat(CGAffineTransform::scale(0, 1));
    context.fill(CGRect { 0, 0, 20, 20 }, red);
    context.drawImage(*quarters(4), { 0, 0, 10, 10 });
    context.drawText(*testing::layoutOf(testing::paragraph("nothing")), {});
    context.restore();
    EXPECT_TRUE(inkOf(*bitmap).isEmpty());
    context.stroke(line, blue, 2, CGLineCap::butt, CGLineJoin::miter, { 0, 0 }); // dashes of no length are none
    EXPECT_EQ(inkOf(*bitmap), (PixelRect { 0, 9, 20, 2 }));
    context.stroke(line, red, 2, CGLineCap::butt, CGLineJoin::miter, { 5, 5 });
    EXPECT_EQ(hex(bitmap->row(9)[2]), "ffff0000");
    EXPECT_EQ(hex(bitmap->row(9)[7]), "ff0000ff");
}

} // namespace platform
