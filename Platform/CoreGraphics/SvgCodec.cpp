#include "Platform/CoreGraphics/ImageCodecs.h"
#include "Platform/CoreGraphics/SvgModule.h"
#include "Platform/Foundation/ModuleLoader.h"

#include <mutex>
#include <string_view>

namespace platform {
namespace {
struct SharedDrawing {
    std::unique_ptr<SvgDrawing> drawing;
    std::mutex mutex;
};
}

bool codecs::looksLikeSVG(Bytes bytes)
{
    const std::string_view head(reinterpret_cast<const char*>(bytes.data), std::min<std::size_t>(bytes.count, 4096));
    const auto first = head.find_first_not_of(" \t\r\n\xef\xbb\xbf");
    return first != std::string_view::npos && head[first] == '<' && head.find("<svg") != std::string_view::npos;
}

std::shared_ptr<const CGImage> codecs::readSVG(Bytes bytes, std::string& reason)
{
    auto* module = loadModule<SvgModule>("svg");
    if (!module) {
        reason = "the SVG module is not there";
        return nullptr;
    }
    auto shared = std::make_shared<SharedDrawing>();
    shared->drawing = module->parse(bytes.data, bytes.count, reason);
    if (!shared->drawing)
        return nullptr;
    const auto render = [shared](int width, int height) -> std::shared_ptr<const Bitmap> {
        const auto bitmap = Bitmap::make(width, height, PixelFormat::argb, true);
        const std::lock_guard lock(shared->mutex);
        return bitmap && shared->drawing->render(bitmap->data(), width, height, bitmap->stride()) ? bitmap : nullptr;
    };
    return CGImage::fromDrawing(shared->drawing->width(), shared->drawing->height(), render);
}

} // namespace platform
