#include "Platform/CoreGraphics/Bitmap.h"
#include "Tests/Platform/CoreGraphics/GraphicsTestSupport.h"

namespace platform {

TEST(Bitmap, refusesSizesThatCannotBe)
{
    for (const auto& [width, height] : { std::pair { 0, 5 }, { 5, 0 }, { -1, 5 }, { 32768, 1 }, { 1, 32768 } })
        EXPECT_EQ(Bitmap::make(width, height, PixelFormat::argb), nullptr) << width << " x " << height;
    EXPECT_NE(Bitmap::make(32767, 1, PixelFormat::alpha), nullptr);
}

TEST(Bitmap, alignsRowsAndClearsOnlyWhenAsked)
{
    for (const auto format : { PixelFormat::argb, PixelFormat::xrgb, PixelFormat::alpha }) {
        const auto bitmap = Bitmap::make(13, 7, format, true);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bitmap->row(3)) % 64, 0u);
        EXPECT_GE(bitmap->stride(), 13 * (format == PixelFormat::alpha ? 1 : 4));
        EXPECT_TRUE(std::all_of(bitmap->data(), bitmap->data() + bitmap->byteCount(), [](auto byte) { return byte == 0; }));
    }
}

TEST(PixelPool, handsAReleasedBlockToTheNextOfItsSize)
{
    PixelPool::trim(0);
    ASSERT_EQ(PixelPool::bytesKept(), 0u);
    const std::size_t before = PixelPool::bytesInUse();
    auto bitmap = Bitmap::make(1179, 2556, PixelFormat::xrgb);
    const auto* block = bitmap->data();
    const std::size_t frame = PixelPool::bytesInUse() - before;
    EXPECT_GE(frame, 1179u * 2556 * 4);
    EXPECT_LE(double(frame), 1179.0 * 2556 * 4 * 1.3);

    bitmap.reset();
    EXPECT_EQ(PixelPool::bytesInUse(), before);
    EXPECT_EQ(PixelPool::bytesKept(), frame);
    bitmap = Bitmap::make(1170, 2550, PixelFormat::argb); // another size of the same class
    EXPECT_EQ(bitmap->data(), block);
    EXPECT_EQ(PixelPool::bytesKept(), 0u);
}

TEST(PixelPool, givesBackWhatItNeedNotKeep)
{
    PixelPool::trim(0);
    Bitmap::make(500, 500, PixelFormat::argb).reset();
    auto small = Bitmap::make(20, 20, PixelFormat::argb);
    small.reset();
    const std::size_t both = PixelPool::bytesKept();
    PixelPool::trim(both - 1); // the large one goes first
    EXPECT_GT(PixelPool::bytesKept(), 0u);
    EXPECT_LT(PixelPool::bytesKept(), 10000u);
    // However much is released at once, only so much waits.
    std::vector<std::shared_ptr<Bitmap>> many;
    for (int i = 0; i < 12; ++i)
        many.push_back(Bitmap::make(2000, 2000, PixelFormat::argb));
    many.clear();
    EXPECT_LE(PixelPool::bytesKept(), 96u << 20);
    PixelPool::trim(0);
    EXPECT_EQ(PixelPool::bytesKept(), 0u);
}

TEST(PixelPool, keepsAFilmsPictureThroughWhatEachFrameReleases)
{
    PixelPool::trim(0);
    auto shown = Bitmap::make(1179, 2556, PixelFormat::xrgb);
    const auto* first = shown->data();
    auto next = Bitmap::make(1179, 2556, PixelFormat::xrgb);
    const auto* second = next->data();
    for (int frame = 0; frame < 20; ++frame) {
        for (int side = 100; side < 700; side += 100) // of another size in every frame, as things that grow have
            Bitmap::make(side + frame * 10, side, PixelFormat::argb).reset();
        shown = std::move(next);
        next = Bitmap::make(1179, 2556, PixelFormat::xrgb);
        EXPECT_EQ(next->data(), frame % 2 ? second : first) << frame;
    }
    next.reset();
    shown.reset();
    PixelPool::trim(0);
}

} // namespace platform
