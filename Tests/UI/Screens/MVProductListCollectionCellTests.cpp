#include "UI/Screens/Broadcast Screen/SubViews/MVProductListCollectionCell.h"

#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/UIKit/UIActivityIndicatorView.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/UI/Stage.h"
#include "UI/Extensions/MVColor.h"

namespace mv {
namespace {

// One card over green, of the size that the strip of a phone gives it.
class ProductCardTest : public Stage {
protected:
    ProductCardTest()
    {
        window->setBackgroundColor(UIColor(0, 1, 0));
        window->addSubview(cell);
        cell->setFrame({ 50, 100, 314, 100 });
        cell->contentView()->setFrame(cell->bounds());
        Folders::setCache(folder / "cache");
    }

    void show(const std::string& name, const std::optional<URL>& picture = {})
    {
        const auto product = std::make_shared<MVProduct>();
        product->title = name;
        product->thumbnailUrl = picture;
        cell->assignProduct(product);
        host.advance(0);
    }
    void feature(bool isFeatured)
    {
        cell->setFeatured(isFeatured);
        host.advance(0);
    }
    CGRect place(const char* name) { return onScreen(*find(cell, name)); }
    std::shared_ptr<UILabel> title() { return find<UILabel>(cell, "productNameLabel"); }

    const std::shared_ptr<MVProductListCollectionCell> cell = make<MVProductListCollectionCell>();
    const test::TemporaryFolder folder;
    static constexpr unsigned behind = 0x00ff00;
};

TEST_F(ProductCardTest, liesInItsItemWithThePictureAtTheLeadingSide)
{
    show("Teapot");
    EXPECT_EQ(place("containerView"), (CGRect { 55, 110, 304, 80 }));
    EXPECT_EQ(place("backShadowView"), place("containerView"));
    EXPECT_EQ(place("productImageView"), (CGRect { 65, 120, 60, 60 }));
    const CGRect info = place("productNameLabel");
    EXPECT_EQ(info.x, 135);
    EXPECT_EQ(info.maxX(), 349);
    EXPECT_NEAR(info.midY(), 150, 0.34);
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    host.advance(0);
    EXPECT_EQ(place("productImageView").maxX(), 349);
    EXPECT_EQ(place("productNameLabel").x, 65);
}

TEST_F(ProductCardTest, aLongTitleTakesTwoLinesAndAtMostATenthLess)
{
    show("Teapot");
    const double line = place("productNameLabel").height;
    show("Ember stoneware teapot, raspberry glaze, 0.9 l");
    EXPECT_NEAR(place("productNameLabel").height, 2 * line, 1);
    show(std::string(500, 'w') + " " + std::string(500, 'w'));
    EXPECT_LE(place("productNameLabel").height, 2 * line + 1);
    EXPECT_NEAR(place("productNameLabel").midY(), 150, 0.34);
    cell->assignProduct(std::make_shared<MVProduct>());
    host.advance(0);
    EXPECT_EQ(title()->text(), "") << "none clears it";
}

TEST_F(ProductCardTest, onlyAFeaturedOneGlows)
{
    show("Teapot");
    EXPECT_EQ(pixel({ 52, 150 }), behind) << "no glow before it is known";
    feature(true);
    const unsigned near = pixel({ 53, 150 }), far = pixel({ 45, 150 });
    EXPECT_GT(near & 0xff, far & 0xff) << "white, softer with the distance";
    EXPECT_GT(far & 0xff, 0u);
    EXPECT_EQ(pixel({ 34, 150 }), behind) << "over within four times its radius";
    EXPECT_GT(pixel({ 207, 108 }) & 0xff, 60u) << "above as well";
    const unsigned card = pixel({ 200, 120 });
    EXPECT_GT(card & 0xff, 0xe0u);
    EXPECT_LT(card >> 16, 0x30u) << "the accent colour";
    EXPECT_EQ(find(cell, "containerView")->layer()->borderColor(), UIColor::white().cgColor());
    feature(false);
    EXPECT_EQ(pixel({ 53, 150 }), behind) << "a reused card keeps nothing";
    EXPECT_EQ(pixel({ 200, 120 }), 0xffffffu) << "the card's own colour";
    EXPECT_EQ(find(cell, "containerView")->layer()->borderColor(), MVColor::seperatorColor().cgColor());
}

TEST_F(ProductCardTest, followsTheAppearanceAndItsSize)
{
    feature(false);
    const auto border = find(cell, "containerView")->layer()->borderColor();
    host.setAppearance(UIUserInterfaceStyle::dark);
    host.advance(0);
    EXPECT_NE(find(cell, "containerView")->layer()->borderColor(), border);
    feature(true);
    EXPECT_EQ(find(cell, "containerView")->layer()->borderColor(), UIColor::white().cgColor());
    host.setAppearance(UIUserInterfaceStyle::light);
    host.advance(0);
    EXPECT_EQ(find(cell, "containerView")->layer()->borderColor(), UIColor::white().cgColor()) << "featured in both";

    cell->setFrame({ 50, 100, 200, 100 });
    cell->contentView()->setFrame(cell->bounds());
    host.advance(0);
    EXPECT_NE(pixel({ 247, 150 }), behind) << "the glow has gone along";
    EXPECT_EQ(pixel({ 362, 150 }), behind);
}

TEST_F(ProductCardTest, thePictureFadesInWithinASecond)
{
    const auto bitmap = Bitmap::make(300, 200, PixelFormat::xrgb);
    for (int y = 0; y < 200; ++y)
        std::fill_n(bitmap->row(y), 300, 0xff0000u);
    ASSERT_TRUE(writePNG(*bitmap, folder / "red.png"));
    show("Red", URL::fileURL(folder / "red.png"));
    const auto turning = find<UIActivityIndicatorView>(cell, "imageIndicator");
    ASSERT_TRUE(turning);
    EXPECT_TRUE(turning->isAnimating());
    EXPECT_EQ(turning->style(), UIActivityIndicatorViewStyle::gray);
    host.advance(0);
    EXPECT_EQ(pixel({ 95, 150 }), 0xffffffu) << "white at first";
    host.advance(0.5);
    EXPECT_NE(pixel({ 95, 150 }), 0xff0000u);
    EXPECT_NE(pixel({ 95, 150 }), 0xffffffu);
    host.advance(0.6);
    EXPECT_EQ(pixel({ 95, 150 }), 0xff0000u);
    EXPECT_EQ(pixel({ 65.2, 120.2 }), pixel({ 60, 150 })) << "round at its corners";
    show("Without");
    EXPECT_EQ(pixel({ 95, 150 }), 0xffffffu);
}

} // namespace
} // namespace mv
