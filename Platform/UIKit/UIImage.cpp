#include "Platform/UIKit/UIImage.h"

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/Foundation/Bundle.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace platform {

namespace {
using TemplateNames = std::set<std::string, std::less<>>;

// The names that a bundle's images.txt ("KIND NAME" a line) calls templates. Read once for each bundle.
const TemplateNames& templateNames(const Bundle& bundle)
{
    static std::map<std::string, TemplateNames> known;
    const auto [entry, isNew] = known.try_emplace(bundle.bundlePath());
    if (!isNew)
        return entry->second;
    const Data index = bundle.contentsOfResource("images", "txt").value_or(Data());
    std::string_view rest = textView(index);
    while (!rest.empty()) {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        constexpr std::string_view kind = "template ";
        if (line.starts_with(kind))
            entry->second.emplace(line.substr(kind.size(), line.find_last_not_of(" \r") + 1 - kind.size()));
    }
    return entry->second;
}

struct FoundFile {
    Data content;
    std::string fileName;
    CGFloat scale = 1;
};

std::optional<FoundFile> findFile(const std::string& name, const Bundle& bundle)
{
    if (name.find('.') != std::string::npos) {
        if (auto content = bundle.contentsOfResource(name, ""))
            return FoundFile { std::move(*content), name };
    }
    struct Candidate {
        const char* suffix;
        const char* type;
        CGFloat scale;
    };
    constexpr Candidate candidates[]
        = { { "", "svg", 1 }, { "@3x", "png", 3 }, { "@2x", "png", 2 }, { "", "png", 1 }, { "", "jpg", 1 } };
    for (const Candidate& candidate : candidates) {
        if (auto content = bundle.contentsOfResource(name + candidate.suffix, candidate.type))
            return FoundFile { std::move(*content), name + candidate.suffix + "." + candidate.type, candidate.scale };
    }
    return std::nullopt;
}

std::shared_ptr<const Bitmap> mirroredPixels(const Bitmap& source)
{
    auto result = Bitmap::make(source.width(), source.height(), source.format());
    if (!result)
        return nullptr;
    for (int y = 0; y < source.height(); ++y) {
        if (source.format() == PixelFormat::alpha)
            std::reverse_copy(source.alphaRow(y), source.alphaRow(y) + source.width(), result->alphaRow(y));
        else
            std::reverse_copy(source.row(y), source.row(y) + source.width(), result->row(y));
    }
    return result;
}

std::shared_ptr<const CGImage> mirroredPicture(const std::shared_ptr<const CGImage>& source)
{
    if (source->pixels()) {
        auto pixels = mirroredPixels(*source->pixels());
        return pixels ? CGImage::fromBitmap(std::move(pixels)) : source;
    }
    return CGImage::fromDrawing(source->width(), source->height(), [source](int width, int height) {
        const auto pixels = source->rendered(width, height);
        return pixels ? mirroredPixels(*pixels) : nullptr;
    });
}
}

UIImage::UIImage(std::shared_ptr<const CGImage> shown, CGFloat scale, std::string name)
    : picture(std::move(shown))
    , scale_(scale > 0 ? scale : 1)
    , name_(std::move(name))
{
}

std::shared_ptr<const UIImage> UIImage::named(const std::string& name, const Bundle& bundle)
{
    static std::map<std::pair<std::string, std::string>, std::weak_ptr<const UIImage>> known;
    if (name.empty())
        return nullptr;
    const std::pair key(bundle.bundlePath(), name);
    if (const auto entry = known.find(key); entry != known.end()) {
        if (auto image = entry->second.lock())
            return image;
    }
    const auto file = findFile(name, bundle);
    if (!file)
        return nullptr;
    auto picture = CGImage::decode(file->content, file->fileName);
    if (!picture)
        return nullptr;
    auto image = std::make_shared<UIImage>(std::move(picture), file->scale, name);
    image->bundleSaysTemplate = templateNames(bundle).contains(name);
    std::erase_if(known, [](const auto& entry) { return entry.second.expired(); });
    known[key] = image;
    return image;
}

std::shared_ptr<const UIImage> UIImage::fromData(const Data& data, CGFloat scale, const std::string& name)
{
    auto picture = CGImage::decode(data, name);
    return picture ? std::make_shared<UIImage>(std::move(picture), scale, name) : nullptr;
}

CGSize UIImage::size() const { return picture ? CGSize { picture->width() / scale_, picture->height() / scale_ } : CGSize {}; }

bool UIImage::isTemplate() const
{
    return renderingMode_ == UIImageRenderingMode::alwaysTemplate
        || (renderingMode_ == UIImageRenderingMode::automatic && bundleSaysTemplate);
}

std::shared_ptr<const UIImage> UIImage::withRenderingMode(UIImageRenderingMode mode) const
{
    auto copy = std::make_shared<UIImage>(*this);
    copy->renderingMode_ = mode;
    return copy;
}

std::shared_ptr<const UIImage> UIImage::imageFlippedForRightToLeftLayoutDirection() const
{
    auto copy = std::make_shared<UIImage>(*this);
    copy->flips = true;
    return copy;
}

const std::shared_ptr<const CGImage>& UIImage::cgImage(bool rightToLeft) const
{
    if (!rightToLeft || !flips || !picture)
        return picture;
    if (!mirrored)
        mirrored = mirroredPicture(picture);
    return mirrored;
}

} // namespace platform
