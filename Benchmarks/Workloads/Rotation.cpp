#include "Benchmarks/Workloads/Rotation.h"

#include "Benchmarks/Workloads/ChatScreen.h"
#include "Platform/CoreGraphics/Text/CTFont.h"
#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/JSON.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Images/UIImageViewLoading.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIWindow.h"

#include <cstdio>
#include <vector>

namespace bench {

using namespace platform;

namespace {

// Points.
constexpr CGFloat side = 20, headerTop = 12, headerHeight = 44, discSize = 36, headerGap = 10;
constexpr CGSize pillSize { 60, 28 }, cardSize { 220, 104 };
constexpr CGFloat stripBottom = 12, cardGap = 12, chatBottom = 128;
constexpr double chatShare = 0.45; // of the screen's height
constexpr int productCount = 20, warmUp = 4;
constexpr std::size_t heldMessages = 10'000;

struct Product {
    std::string thumbnail; // a file, or empty
    std::string title, price;
};

std::string banner(const std::string& assets, int number)
{
    char name[16];
    std::snprintf(name, sizeof name, "/banner%02d.jpg", number % 12);
    return assets.empty() ? "" : assets + name;
}

std::vector<Product> readProducts(const std::string& assets)
{
    const auto bytes = assets.empty() ? std::nullopt : FileSystem::real().read(assets + "/products.json");
    const auto json = bytes ? JSONValue::parse(textView(*bytes)) : std::nullopt;
    std::vector<Product> products;
    for (int i = 0; i < productCount; ++i) {
        if (!json) {
            products.push_back({ {}, "A very large jug", "59.00 EUR" });
            continue;
        }
        const auto& entry = (*json)[std::size_t(i)];
        products.push_back({ banner(assets, int(entry["thumb"].integer().value_or(0))),
            std::string(entry["title"].text().value_or("")), std::string(entry["price"].text().value_or("")) });
    }
    return products;
}

std::shared_ptr<UILabel> makeLabel(
    UIView& parent, const std::string& text, const char* fontName, CGFloat size, UIFontWeight weight, const UIColor& color)
{
    const auto label = make<UILabel>();
    label->setFont(UIFont::named(fontName, size).value_or(UIFont::systemFont(size, weight)));
    label->setTextColor(color);
    label->setText(text);
    parent.addSubview(label);
    return label;
}

std::shared_ptr<UIImageView> makePicture(UIView& parent, const CGRect& frame, CGFloat radius, const std::string& file)
{
    const auto view = make<UIImageView>(frame);
    view->setContentMode(UIViewContentMode::scaleAspectFill);
    view->setClipsToBounds(true);
    view->setBackgroundColor(UIColor::white(0.8));
    view->layer()->setCornerRadius(radius);
    if (!file.empty())
        sd_setImage(*view, URL::fileURL(file));
    parent.addSubview(view);
    return view;
}

class ProductCard final : public UIView {
public:
    ProductCard(const CGRect& frame, const Product& product)
        : UIView(frame)
    {
        setBackgroundColor(UIColor::white());
        layer()->setCornerRadius(12);
        makePicture(*this, { 12, 12, 80, 80 }, 8, product.thumbnail);
        const auto title
            = makeLabel(*this, product.title, "Inter-SemiBold", 14, UIFontWeight::semibold, UIColor { 0.067, 0.067, 0.067, 1 });
        title->setNumberOfLines(2);
        title->setFrame({ 104, 14, 104, title->sizeThatFits({ 104, 36 }).height });
        const auto price
            = makeLabel(*this, product.price, "Inter-Regular", 14, UIFontWeight::regular, UIColor { 0.235, 0.235, 0.263, 1 });
        price->setFrame({ 104, frame.height - 14 - 18, 104, 18 });
    }
};

class ShowScreen final : public UIView {
public:
    ShowScreen(const CGRect& frame, const std::string& assets)
        : UIView(frame)
    {
        setAutoresizingMask(flexibleWidth | flexibleHeight);
        backdrop->setContentMode(UIViewContentMode::scaleAspectFill);
        backdrop->setClipsToBounds(true);
        backdrop->setBackgroundColor(UIColor::white(0.2));
        if (const auto bytes = assets.empty() ? std::nullopt : FileSystem::real().read(assets + "/backdrop.jpg"))
            backdrop->setImage(UIImage::fromData(*bytes, 3, assets + "/backdrop.jpg"));
        addSubview(backdrop);
        disc = makePicture(
            *this, { side, headerTop + (headerHeight - discSize) / 2, discSize, discSize }, discSize / 2, banner(assets, 0));
        title = makeLabel(*this, "Evening studio live", "Inter-SemiBold", 16, UIFontWeight::semibold, UIColor::white());
        watching = makeLabel(*this, "1,204 watching", "Inter-Regular", 13, UIFontWeight::regular, UIColor::white());
        pill = makeLabel(*this, "LIVE", "Inter-SemiBold", 13, UIFontWeight::semibold, UIColor::white());
        pill->setBackgroundColor(UIColor { 1, 0.176, 0.333, 1 });
        pill->layer()->setCornerRadius(pillSize.height / 2);
        pill->setClipsToBounds(true);
        pill->setTextAlignment(NSTextAlignment::center);
        chat = make<ChatView>(chatFrame(), assets, heldMessages);
        addSubview(chat);
        strip->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
        strip->setShowsHorizontalScrollIndicator(false);
        CGFloat x = side;
        for (const Product& product : readProducts(assets)) {
            strip->addSubview(make<ProductCard>(CGRect { x, 0, cardSize.width, cardSize.height }, product));
            x += cardSize.width + cardGap;
        }
        strip->setContentSize({ x - cardGap + side, cardSize.height });
        addSubview(strip);
    }

protected:
    void layoutSubviews() override
    {
        UIView::layoutSubviews();
        const CGSize size = bounds().size();
        const CGFloat textX = side + discSize + headerGap, pillX = size.width - side - pillSize.width;
        backdrop->setFrame(bounds());
        title->setFrame({ textX, headerTop + 4, pillX - headerGap - textX, 20 });
        watching->setFrame({ textX, headerTop + 24, pillX - headerGap - textX, 16 });
        pill->setFrame({ pillX, headerTop + (headerHeight - pillSize.height) / 2, pillSize.width, pillSize.height });
        chat->setFrame(chatFrame());
        strip->setFrame({ 0, size.height - stripBottom - cardSize.height, size.width, cardSize.height });
    }

private:
    CGRect chatFrame() const
    {
        const CGSize size = bounds().size();
        const CGFloat height = size.height * chatShare;
        return { side, size.height - chatBottom - height, size.width - 2 * side, height };
    }

    std::shared_ptr<UIImageView> backdrop = make<UIImageView>(), disc;
    std::shared_ptr<UILabel> title, watching, pill;
    std::shared_ptr<ChatView> chat;
    std::shared_ptr<UIScrollView> strip = make<UIScrollView>();
};

} // namespace

FrameFigures measureRotation(int turns, const std::string& assets, const std::string& picture)
{
    HostDevice phone = HostDevice::phone();
    phone.portraitSafeArea = phone.landscapeSafeArea = {};
    HeadlessHost host(phone);
    UIApplication::shared().setSupportedInterfaceOrientations(UIInterfaceOrientationMask::all);
    registerWorkloadFonts();
    const auto window = make<UIWindow>();
    window->addSubview(make<ShowScreen>(window->bounds(), assets));
    window->makeKeyAndVisible();
    host.advance(1); // until the pictures are there
    const auto figures = measureFrames(turns, warmUp, [&](int turn) {
        host.device().rotate(turn % 2 ? UIDeviceOrientation::portrait : UIDeviceOrientation::landscapeLeft, 0);
        host.advance(0);
    });
    if (!picture.empty())
        host.writePicture(picture);
    return figures;
}

} // namespace bench
