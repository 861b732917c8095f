#include "Tests/UI/Stage.h"
#include "UI/Common/SubViews/MVMaterialLoader.h"
#include "UI/Extensions/MVColor.h"

#include <numbers>

namespace mv {
namespace {

class MVLoaderTest : public Stage {
protected:
    static double number(const MVLoader& loader, const char* keyPath, double time)
    {
        return std::get<double>(loader.drawableLayer()->presentationValue(keyPath, time));
    }
    static CGRect circle(const MVLoader& loader) { return loader.drawableLayer()->path()->boundingBox(); }
};

TEST_F(MVLoaderTest, restsHiddenAsASliver)
{
    const auto loader = make<MVLoader>(CGRect { 0, 0, 50, 40 });
    EXPECT_TRUE(loader->isHidden());
    EXPECT_EQ(loader->color(), UIColor::lightGray());
    EXPECT_EQ(loader->drawableLayer()->strokeStart(), 0.99);
    EXPECT_EQ(loader->drawableLayer()->strokeEnd(), 1);
    EXPECT_TRUE(isNear(circle(*loader), CGRect { 10, 5, 30, 30 })) << "radius 18 less a stroke of 3";
    loader->setLineWidth(5);
    EXPECT_TRUE(isNear(circle(*loader), CGRect { 12, 7, 26, 26 }));
    EXPECT_EQ(loader->drawableLayer()->lineWidth(), 5);
    loader->setBounds({ 0, 0, 100, 100 });
    EXPECT_TRUE(isNear(circle(*loader), CGRect { 37, 37, 26, 26 }));

    const auto red = make<MVLoader>(9, UIColor::red());
    EXPECT_EQ(red->drawableLayer()->strokeColor(), UIColor::red().cgColor());
    EXPECT_EQ(make<MVLoader>(9)->color(), UIColor::gray());
}

TEST_F(MVLoaderTest, turnsInFourSecondsAndStrokesInOneAndAHalf)
{
    const auto loader = make<MVLoader>(CGRect { 0, 0, 50, 50 });
    window->addSubview(loader);
    loader->startAnimating();
    EXPECT_FALSE(loader->isHidden());
    EXPECT_EQ(loader->drawableLayer()->animationKeys(), (std::vector<std::string> { "rotation", "stroke" }));
    const double start = host.now();
    host.advance(0.25);
    loader->startAnimating(); // runs already: the cycle goes on
    host.advance(0);
    const auto at = [&](const char* keyPath, double seconds) { return number(*loader, keyPath, start + seconds); };
    EXPECT_NEAR(at("transform.rotation", 1), std::numbers::pi / 2, 1e-9);
    EXPECT_EQ(at("strokeStart", 0.05), 0.99) << "the sliver, until the arc begins";
    EXPECT_NEAR(at("strokeEnd", 0.1), 0, 1e-9);
    EXPECT_NEAR(at("strokeEnd", 0.6), 0.5, 1e-6);
    EXPECT_NEAR(at("strokeStart", 0.6), 0.125, 1e-6);
    EXPECT_NEAR(at("strokeStart", 1.25), 0.62, 1e-3) << "the tail catches up";
    EXPECT_EQ(at("strokeEnd", 1.25), 1);
    EXPECT_NEAR(at("strokeEnd", 1.5 + 0.6), 0.5, 1e-6) << "and again";

    loader->stopAnimating();
    EXPECT_TRUE(loader->isHidden());
    EXPECT_FALSE(loader->drawableLayer()->hasAnimations());
    host.advance(0.7);
    loader->startAnimating();
    const double again = host.now();
    host.advance(0);
    EXPECT_NEAR(number(*loader, "strokeEnd", again + 0.6), 0.5, 1e-6) << "from the beginning of the cycle";
}

TEST_F(MVLoaderTest, theMaterialLoaderHoldsASpinnerThatCostsNothingWhileHidden)
{
    const auto material = make<MVMaterialLoader>(CGRect { 100, 100, 50, 50 });
    window->addSubview(material);
    host.advance(0);
    const auto loader = find<MVLoader>(material, "loader");
    EXPECT_EQ(onScreen(*loader), (CGRect { 110, 110, 30, 30 }));
    EXPECT_TRUE(isNear(circle(*loader), CGRect { 3, 3, 24, 24 }));
    EXPECT_EQ(loader->color(), MVColor::accentColor());
    EXPECT_TRUE(find(material, "backBlurView")->isHidden());

    const int first = host.frameCount();
    host.advance(1);
    EXPECT_GE(host.frameCount() - first, 59) << "it spins";
    material->setHidden(true);
    host.advance(0.1);
    const int hidden = host.frameCount();
    host.advance(10);
    EXPECT_EQ(host.frameCount(), hidden);
    material->setHidden(false);
    host.advance(0.5);
    EXPECT_GE(host.frameCount() - hidden, 29);

    material->setFrame({ 0, 0, 10, 10 }); // smaller than its margins
    host.advance(0);
    EXPECT_EQ(loader->bounds().size(), (CGSize { 0, 0 }));
}

} // namespace
} // namespace mv
