#include "Benchmarks/Workloads/Reactions.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/JSON.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UIWindow.h"

#include <array>
#include <cmath>
#include <limits>

namespace bench {

using namespace platform;

namespace {

constexpr int iconCount = 100;
constexpr double flight = 2; // seconds
constexpr CGRect iconFrame { 0, 0, 35, 35 }; // points

struct Reaction {
    int icon = 0;
    std::array<CGPoint, 4> curve;
};

std::shared_ptr<const UIImage> load(const std::string& path)
{
    const auto bytes = FileSystem::real().read(path);
    return bytes ? UIImage::fromData(*bytes, 3, path) : nullptr;
}

// A picture of its own, drawn at three pixels a point.
std::shared_ptr<const UIImage> drawn(CGSize size, const std::function<void(CGContext&)>& draw)
{
    auto pixels = Bitmap::make(int(size.width * 3), int(size.height * 3), PixelFormat::argb, true);
    {
        CGContext context(*pixels, CGAffineTransform::scale(3, 3));
        draw(context);
    }
    return std::make_shared<const UIImage>(CGImage::fromBitmap(std::move(pixels)), 3);
}

std::shared_ptr<const UIImage> ownBackdrop(CGSize size)
{
    auto pixels = Bitmap::make(int(size.width * 3), int(size.height * 3), PixelFormat::xrgb, true);
    {
        CGContext context(*pixels, CGAffineTransform::scale(3, 3));
        context.fillLinearGradient(
            { 0, 0, size.width, size.height }, { { 0.9, 0.6, 0.5, 1 }, { 0.2, 0.2, 0.4, 1 } }, { 0, 1 }, { 0, 0 }, { 1, 1 });
    }
    return std::make_shared<const UIImage>(CGImage::fromBitmap(std::move(pixels)), 3);
}

std::shared_ptr<const UIImage> ownIcon(int number)
{
    return drawn({ 35, 35 }, [number](CGContext& context) {
        CGPath disc;
        disc.addEllipse({ 1, 1, 33, 33 });
        context.fill(disc, { 1, 0.25 * number, 0.4, 1 });
    });
}

std::vector<Reaction> ownReactions()
{
    std::vector<Reaction> reactions;
    for (int i = 0; i < iconCount; ++i) {
        const double x = 40 + (i * 37) % 313, bend = i % 2 ? 70 : -70;
        reactions.push_back({ i % 4, { { { x, 852 }, { x + bend, 640 }, { x - bend, 215 }, { x, 20 } } } });
    }
    return reactions;
}

std::vector<Reaction> readReactions(const std::string& path)
{
    std::vector<Reaction> reactions;
    const auto bytes = FileSystem::real().read(path);
    const auto json = bytes ? JSONValue::parse(textView(*bytes)) : std::nullopt;
    for (int i = 0; json && i < iconCount; ++i) {
        const auto& entry = (*json)[std::size_t(i)];
        Reaction reaction { int(entry["icon"].integer().value_or(0)) & 3, {} };
        for (std::size_t point = 0; point < 4; ++point)
            reaction.curve[point] = { entry["p"][point][0].number().value_or(0), entry["p"][point][1].number().value_or(0) };
        reactions.push_back(reaction);
    }
    return reactions;
}

std::shared_ptr<CABasicAnimation> fromOneToNothing(const char* keyPath)
{
    const auto animation = CABasicAnimation::withKeyPath(keyPath);
    animation->fromValue = 1.0;
    animation->toValue = 0.0;
    animation->duration = flight;
    return animation;
}

void fly(UIView& icon, const Reaction& reaction, int number)
{
    const auto path = std::make_shared<CGPath>();
    path->moveTo(reaction.curve[0]);
    path->curveTo(reaction.curve[1], reaction.curve[2], reaction.curve[3]);
    const auto position = CAKeyframeAnimation::withKeyPath("position");
    position->path = path;
    position->duration = flight;
    const auto group = make<CAAnimationGroup>();
    group->animations = { position, fromOneToNothing("transform.scale"), fromOneToNothing("opacity") };
    group->duration = flight;
    group->repeatCount = std::numeric_limits<double>::infinity();
    group->timeOffset = flight * number / iconCount;
    icon.layer()->addAnimation(group);
}

} // namespace

FrameFigures measureReactions(int frames, const std::string& assets, const std::string& picture)
{
    HeadlessHost host;
    const auto window = make<UIWindow>();
    const auto size = window->bounds().size();
    std::vector<std::shared_ptr<const UIImage>> icons;
    for (int i = 0; i < 4; ++i)
        icons.push_back(assets.empty() ? ownIcon(i) : load(assets + "/icon" + std::to_string(i) + ".png"));
    window->addSubview(make<UIImageView>(assets.empty() ? ownBackdrop(size) : load(assets + "/backdrop.jpg")));
    window->subviews().front()->setFrame(window->bounds());
    const auto reactions = assets.empty() ? ownReactions() : readReactions(assets + "/reactions.json");
    for (std::size_t i = 0; i < reactions.size(); ++i) {
        const auto icon = make<UIImageView>(iconFrame);
        icon->setImage(icons[std::size_t(reactions[i].icon)]);
        fly(*icon, reactions[i], int(i));
        window->addSubview(icon);
    }
    window->makeKeyAndVisible();
    const auto figures = measureFrames(frames, 5, [&](int) { host.advance(1.0 / 60); });
    if (!picture.empty())
        host.writePicture(picture);
    return figures;
}

} // namespace bench
