#include "Platform/Images/UIImageViewLoading.h"

#include "Platform/Images/ImageLoader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr const char* fading = "imageTransition"; // the animation's key
constexpr double longestSide = 8192; // pixels; larger than any screen

ImageFit fitOf(UIViewContentMode mode)
{
    switch (mode) {
    case UIViewContentMode::scaleAspectFill:
        return ImageFit::fill;
    case UIViewContentMode::scaleAspectFit:
        return ImageFit::fit;
    case UIViewContentMode::scaleToFill:
    case UIViewContentMode::redraw:
        return ImageFit::stretch;
    default:
        return ImageFit::natural;
    }
}

// Nothing while the view has no size.
std::optional<ImageTarget> targetOf(const UIImageView& view)
{
    const auto fit = fitOf(view.contentMode());
    if (fit == ImageFit::natural)
        return ImageTarget { 0, 0, fit };
    const double scale = view.traitCollection().displayScale;
    const auto pixels = [scale](double points) { return int(std::lround(std::min(points * scale, longestSide))); };
    const ImageTarget target { pixels(view.bounds().width), pixels(view.bounds().height), fit };
    return target.width > 0 && target.height > 0 ? std::optional(target) : std::nullopt;
}

// One view's load.
class WebImageSource final : public UIImageViewSource {
public:
    explicit WebImageSource(UIImageView& view)
        : view(view)
    {
    }

    static WebImageSource& of(UIImageView& view)
    {
        if (auto* known = dynamic_cast<WebImageSource*>(view.source()))
            return *known;
        auto source = std::make_unique<WebImageSource>(view);
        auto& made = *source;
        view.setSource(std::move(source));
        return made;
    }

    void load(const std::optional<URL>& wanted, SDExternalCompletionBlock whenDone)
    {
        const auto keep = weak(&view).lock();
        const bool isUnderWay = request || waitsForSize;
        if (wanted && wanted == address && (isUnderWay || isShown())) {
            completion = std::move(whenDone);
            if (!isUnderWay)
                finish();
            return;
        }
        cancel();
        shown = nullptr;
        view.layer()->removeAnimation(fading);
        view.setImage(nullptr);
        address = wanted;
        completion = std::move(whenDone);
        address ? begin() : finish();
    }

    void cancel()
    {
        request = nullptr;
        completion = nullptr;
        waitsForSize = false;
        hideIndicator();
        if (!isShown())
            address.reset();
    }

    // UIImageViewSource
    void imageViewDidChange(UIImageView&) override
    {
        centerIndicator();
        const auto target = targetOf(view);
        if (target && target != wantedTarget && address && (isShown() || request || waitsForSize))
            begin();
    }

    std::optional<SDWebImageActivityIndicator> indicatorStyle;
    std::optional<SDWebImageTransition> transition;

private:
    bool isShown() const { return shown && view.image() == shown; }

    // Shows what memory has and asks for what it has not.
    void begin()
    {
        auto& loader = ImageLoader::shared();
        wantedTarget = targetOf(view);
        const auto known = loader.findAnySize(*address);
        waitsForSize = !wantedTarget && known;
        if (waitsForSize)
            return;
        if (const auto picture = wantedTarget ? loader.find(*address, *wantedTarget) : nullptr) {
            request = nullptr;
            return show(picture, false);
        }
        if (known && !isShown())
            putUp(known); // stands in until it is there in this size
        if (request)
            return request->setTarget(*wantedTarget);
        if (!loader.mayLoad(*address))
            return finish();
        if (!isShown())
            showIndicator();
        request = loader.load(*address, wantedTarget, [this](const auto& picture) { didLoad(picture); });
    }

    // The view may end in what the owner does then.
    void didLoad(const std::shared_ptr<const CGImage>& picture)
    {
        const auto keep = weak(&view).lock();
        request = nullptr;
        if (picture)
            return show(picture, !isShown());
        finish();
    }

    void show(const std::shared_ptr<const CGImage>& picture, bool comesNew)
    {
        putUp(picture);
        if (comesNew && transition && transition->duration > 0) {
            auto fade = CABasicAnimation::withKeyPath("contents");
            fade->fromValue = std::shared_ptr<const CGImage>(); // the background alone
            fade->duration = transition->duration;
            fade->timingFunction = std::make_shared<const CAMediaTimingFunction>(CAMediaTimingFunction::easeInEaseOut());
            view.layer()->addAnimation(fade, fading);
        }
        finish();
    }

    void putUp(const std::shared_ptr<const CGImage>& picture)
    {
        const bool isNatural = wantedTarget && wantedTarget->fit == ImageFit::natural;
        const double scale = isNatural ? 1 : view.traitCollection().displayScale;
        shown = std::make_shared<UIImage>(picture, scale, address->absoluteString());
        view.setImage(shown);
    }

    void finish()
    {
        hideIndicator();
        if (const auto call = std::exchange(completion, nullptr))
            call(isShown() ? shown : nullptr);
    }

    void showIndicator()
    {
        if (!indicatorStyle || (indicator && indicator->style() == indicatorStyle->style))
            return;
        hideIndicator();
        indicator = make<UIActivityIndicatorView>(indicatorStyle->style);
        indicator->setAccessibilityIdentifier("imageIndicator");
        view.addSubview(indicator);
        centerIndicator();
        indicator->startAnimating();
    }

    void hideIndicator()
    {
        if (const auto former = std::exchange(indicator, nullptr))
            former->removeFromSuperview();
    }

    void centerIndicator()
    {
        if (indicator)
            indicator->setCenter({ view.bounds().midX(), view.bounds().midY() });
    }

    UIImageView& view; // which holds this
    std::optional<URL> address; // shown or under way
    std::optional<ImageTarget> wantedTarget; // that was asked for last
    std::shared_ptr<const UIImage> shown; // that this source put up last
    std::shared_ptr<UIActivityIndicatorView> indicator; // while it turns
    SDExternalCompletionBlock completion;
    std::unique_ptr<ImageLoader::Request> request; // while one is under way
    bool waitsForSize = false; // with the picture in memory
};

} // namespace

void sd_setImageIndicator(UIImageView& view, std::optional<SDWebImageActivityIndicator> indicator)
{
    WebImageSource::of(view).indicatorStyle = indicator;
}

void sd_setImageTransition(UIImageView& view, std::optional<SDWebImageTransition> transition)
{
    WebImageSource::of(view).transition = transition;
}

void sd_setImage(UIImageView& view, const std::optional<URL>& address, SDExternalCompletionBlock completion)
{
    WebImageSource::of(view).load(address, std::move(completion));
}

void sd_cancelCurrentImageLoad(UIImageView& view) { WebImageSource::of(view).cancel(); }

} // namespace platform
