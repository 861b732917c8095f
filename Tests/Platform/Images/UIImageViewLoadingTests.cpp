#include "Tests/Platform/Images/ImagesTest.h"

#include <sys/stat.h>

namespace platform {
namespace {

constexpr std::uint32_t red = 0xff0000, green = 0x00ff00, blue = 0x0000ff, gray = 0x808080;

std::pair<int, int> pixelsOf(const UIImageView& view)
{
    const auto& image = view.image();
    return image ? std::pair(int(image->cgImage()->width()), int(image->cgImage()->height())) : std::pair(0, 0);
}

std::shared_ptr<UIActivityIndicatorView> indicatorOf(const UIImageView& view)
{
    return view.subviews().empty() ? nullptr : std::dynamic_pointer_cast<UIActivityIndicatorView>(view.subviews().front());
}

class ImageViewLoading : public ImagesTest { };

TEST_F(ImageViewLoading, unpacksToThePixelsOfTheView)
{
    const auto wide = pictureFile("wide.png", 1000, 500);
    struct Case {
        UIViewContentMode mode;
        std::pair<int, int> pixels;
        double scale;
    };
    const Case cases[] = {
        { UIViewContentMode::scaleAspectFill, { 300, 240 }, 3 },
        { UIViewContentMode::scaleAspectFit, { 300, 150 }, 3 },
        { UIViewContentMode::scaleToFill, { 300, 240 }, 3 },
        { UIViewContentMode::center, { 1000, 500 }, 1 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(int(c.mode));
        const auto view = addImageView({ 0, 0, 100, 80 }, c.mode);
        sd_setImage(*view, wide);
        host.advance(0);
        EXPECT_EQ(pixelsOf(*view), c.pixels);
        ASSERT_TRUE(view->image());
        EXPECT_EQ(view->image()->scale(), c.scale);
        EXPECT_EQ(view->image()->name(), wide.absoluteString());
        view->removeFromSuperview();
    }
}

TEST_F(ImageViewLoading, cutsEvenlyWhatIsOver)
{
    for (const auto& [width, height] : { std::pair(1000, 100), std::pair(60, 20), std::pair(100, 1000), std::pair(7, 70) }) {
        SCOPED_TRACE(width);
        const auto view = addImageView({ 0, 0, 100, 80 });
        sd_setImage(*view, pictureFile("long" + std::to_string(width) + ".png", width, height));
        host.advance(0);
        EXPECT_EQ(pixelsOf(*view), std::pair(300, 240));
        EXPECT_EQ(pixel(25, 50), red);
        EXPECT_EQ(pixel(75, 50), blue);
        EXPECT_EQ(pixel(25, 2), width > height ? green : red) << "the line along the top is cut off where height is";
        view->removeFromSuperview();
    }
}

TEST_F(ImageViewLoading, fitsOnWholePixels)
{
    const auto view = addImageView({ 0, 0, 100, 80 }, UIViewContentMode::scaleAspectFit);
    for (int height = 40; height < 60; ++height) {
        sd_setImage(*view, pictureFile("fit" + std::to_string(height) + ".png", 100, height));
        host.advance(0);
        EXPECT_EQ((240 - pixelsOf(*view).second) % 2, 0) << height;
        EXPECT_NEAR(pixelsOf(*view).second, 3 * height, 1);
    }
}

TEST_F(ImageViewLoading, waitsForASizeAndFollowsIt)
{
    const auto view = addImageView({});
    const int before = ImageLoader::shared().decodeCount();
    sd_setImage(*view, pictureFile("sized.png", 400, 400));
    host.advance(0);
    EXPECT_FALSE(view->image());
    EXPECT_EQ(ImageLoader::shared().decodeCount(), before);
    view->setFrame({ 0, 0, 50, 50 });
    host.advance(0);
    EXPECT_EQ(pixelsOf(*view), std::pair(150, 150));
    const auto former = view->image();
    view->setFrame({ 0, 0, 80, 50 });
    EXPECT_EQ(view->image(), former) << "stays until the new one is there";
    host.advance(0);
    EXPECT_EQ(pixelsOf(*view), std::pair(240, 150));
    view->setContentMode(UIViewContentMode::scaleAspectFit);
    host.advance(0);
    EXPECT_EQ(pixelsOf(*view), std::pair(150, 150));
    EXPECT_EQ(ImageLoader::shared().decodeCount(), before + 3);
}

TEST_F(ImageViewLoading, fadesInOverTheBackgroundOnce)
{
    const auto address = pictureFile("fading.png", 300, 300);
    const auto view = addImageView({ 0, 0, 100, 100 });
    sd_setImageTransition(*view, SDWebImageTransition::fadeTransitionWithDuration(1));
    sd_setImage(*view, address);
    EXPECT_EQ(pixel(25, 50), gray);
    host.advance(0);
    EXPECT_EQ(pixel(25, 50), gray) << "the fade begins";
    host.advance(0.5);
    EXPECT_NEAR(pixel(25, 50) >> 16, 0xbf, 2) << "half of the way from gray to red";
    EXPECT_NEAR(pixel(25, 50) & 0xff, 0x40, 2);
    host.advance(0.6);
    EXPECT_EQ(pixel(25, 50), red);

    sd_setImage(*view, address);
    EXPECT_EQ(pixel(25, 50), red) << "the same address does nothing";
    const auto other = addImageView({ 100, 0, 100, 100 });
    sd_setImageTransition(*other, SDWebImageTransition::fadeTransitionWithDuration(1));
    sd_setImage(*other, address);
    EXPECT_EQ(pixel(125, 50), red) << "from memory at once";
    other->setFrame({ 100, 0, 100, 200 });
    host.advance(0);
    EXPECT_EQ(pixel(125, 100), red) << "nor does another size fade";
    const auto third = addImageView({ 200, 0, 50, 50 });
    sd_setImageTransition(*third, SDWebImageTransition::fadeTransitionWithDuration(1));
    sd_setImage(*third, address);
    EXPECT_EQ(pixel(205, 40), red) << "another size stands in";
    host.advance(0);
    EXPECT_EQ(pixel(205, 40), red);
    EXPECT_EQ(pixelsOf(*third), std::pair(150, 150));
}

TEST_F(ImageViewLoading, aReusedViewNeverShowsTheFormerPicture)
{
    const auto first = pictureFile("first.png", 300, 300), second = pictureFile("second.png", 200, 100);
    const auto view = addImageView({ 0, 0, 100, 100 });
    std::vector<std::string> completed;
    const auto note = [&completed](const auto& image) { completed.push_back(image ? image->name() : "none"); };
    sd_setImage(*view, first);
    host.advance(0);
    sd_setImage(*view, second, note);
    EXPECT_FALSE(view->image());
    EXPECT_EQ(pixel(25, 50), gray);
    sd_setImage(*view, first, note);
    EXPECT_EQ(view->image()->name(), first.absoluteString()) << "from memory";
    host.advance(0);
    EXPECT_EQ(view->image()->name(), first.absoluteString()) << "the load that was replaced does not come late";
    sd_setImage(*view, std::nullopt, note);
    EXPECT_FALSE(view->image());
    EXPECT_EQ(completed, (std::vector<std::string> { first.absoluteString(), "none" }));
}

TEST_F(ImageViewLoading, aLoadEndsWithItsView)
{
    auto view = make<UIImageView>(CGRect { 0, 0, 100, 100 });
    bool completed = false;
    sd_setImage(*view, pictureFile("orphan.png", 300, 300), [&](const auto&) { completed = true; });
    view = nullptr;
    host.advance(0);
    EXPECT_FALSE(completed);

    view = make<UIImageView>(CGRect { 0, 0, 100, 100 });
    sd_setImage(*view, pictureFile("cancelled.png", 300, 300), [&](const auto&) { completed = true; });
    sd_cancelCurrentImageLoad(*view);
    host.advance(0);
    EXPECT_FALSE(view->image());
    EXPECT_FALSE(completed);
    sd_setImage(*view, URL::fileURL(folder + "/cancelled.png"), [&](const auto&) { view = nullptr; });
    host.advance(0);
    EXPECT_FALSE(view) << "the owner may drop it in the completion";
}

TEST_F(ImageViewLoading, turnsAnIndicatorInTheMiddleWhileItLoads)
{
    const auto view = addImageView({});
    sd_setImageIndicator(*view, SDWebImageActivityIndicator::grayIndicator());
    sd_setImage(*view, pictureFile("awaited.png", 100, 100));
    ASSERT_TRUE(indicatorOf(*view));
    EXPECT_EQ(indicatorOf(*view)->style(), UIActivityIndicatorViewStyle::gray);
    EXPECT_TRUE(indicatorOf(*view)->isAnimating());
    view->setFrame({ 10, 10, 100, 60 });
    EXPECT_EQ(indicatorOf(*view)->frame(), (CGRect { 40, 20, 20, 20 }));
    host.advance(0);
    EXPECT_FALSE(indicatorOf(*view));
    EXPECT_TRUE(view->image());
    view->setFrame({ 10, 10, 100, 90 });
    EXPECT_FALSE(indicatorOf(*view)) << "not for another size";
    sd_setImage(*view, URL::fileURL(folder + "/nothing.png"));
    EXPECT_TRUE(indicatorOf(*view));
    host.advance(0);
    EXPECT_FALSE(indicatorOf(*view));
    EXPECT_EQ(takeLines().size(), 1u);
    sd_setImage(*view, pictureFile("unwanted.png", 100, 100));
    EXPECT_TRUE(indicatorOf(*view));
    sd_setImage(*view, std::nullopt);
    EXPECT_FALSE(indicatorOf(*view));
}

TEST_F(ImageViewLoading, whatCannotBeLoadedLeavesTheBackgroundAndOneLine)
{
    auto broken = picture(200, 200);
    broken.resize(broken.size() / 2);
    ::mkfifo((folder + "/pipe.png").c_str(), 0600);
    std::filesystem::create_directory(folder + "/folder.png");
    struct Case {
        const char* why;
        URL address;
        const char* told;
    };
    const Case cases[] = {
        { "no file", URL::fileURL(folder + "/none.png"), "No such file" },
        { "a folder", URL::fileURL(folder + "/folder.png"), "not a regular file" },
        { "a pipe that nobody writes", URL::fileURL(folder + "/pipe.png"), "not a regular file" },
        { "an empty file", write("empty.png", {}), "0 bytes" },
        { "a page", write("page.png", dataFromText("<html>sorry</html>")), "neither PNG" },
        { "half a picture", write("half.png", broken), "breaks off" },
        { "another scheme", *URL::parse("ftp://example.com/a.png"), "only http, https and file" },
        { "no scheme", *URL::parse("a.png"), "only http, https and file" },
        { "no host", *URL::parse("file:"), "" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const auto view = addImageView({ 0, 0, 100, 100 });
        std::vector<bool> completed;
        sd_setImage(*view, c.address, [&](const auto& image) { completed.push_back(image != nullptr); });
        host.advance(0);
        const auto lines = takeLines();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_TRUE(lines[0].starts_with("image \"" + c.address.absoluteString() + "\" not shown: ")) << lines[0];
        EXPECT_NE(lines[0].find(c.told), std::string::npos) << lines[0];
        EXPECT_EQ(completed, std::vector<bool> { false });
        EXPECT_FALSE(view->image());
        EXPECT_EQ(pixel(50, 50), gray);
        view->removeFromSuperview();
    }
}

TEST_F(ImageViewLoading, anAddressThatFailedIsTriedAgainLater)
{
    const auto address = URL::fileURL(folder + "/late.png");
    const auto view = addImageView({ 0, 0, 100, 100 });
    sd_setImage(*view, address);
    host.advance(0);
    EXPECT_EQ(takeLines().size(), 1u);
    pictureFile("late.png", 100, 100);
    int failures = 0;
    for (int i = 0; i < 5; ++i)
        sd_setImage(*view, address, [&](const auto& image) { failures += image == nullptr; });
    host.advance(1);
    EXPECT_FALSE(view->image()) << "not at each reload";
    EXPECT_EQ(failures, 5);
    host.advance(30);
    sd_setImage(*view, address);
    host.advance(0);
    EXPECT_TRUE(view->image());
}

} // namespace
} // namespace platform
