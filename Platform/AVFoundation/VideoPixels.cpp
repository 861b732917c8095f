#include "Platform/AVFoundation/VideoPixels.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace platform {

namespace {

// Nearest to `ideal`, and even or odd as `around` is.
int fittedSide(double ideal, int around)
{
    const int half = int(std::lround((around - ideal) / 2));
    return std::clamp(around - 2 * half, std::min(2 - around % 2, around), around);
}

} // namespace

// Half the size, in memory of its own.
struct VideoPixels::HalvedPlanes {
    VideoPlanes planes;
    std::vector<std::uint8_t> y, u, v;

    explicit HalvedPlanes(const VideoPlanes& from)
        : planes(from)
    {
        planes.width = from.width / 2 & ~1;
        planes.height = from.height / 2 & ~1;
        const int colorWidth = planes.width / 2, colorHeight = planes.height / 2;
        halve(y, from.y, from.yStride, planes.width, planes.height);
        halve(u, from.u, from.uStride, colorWidth, colorHeight);
        halve(v, from.v, from.vStride, colorWidth, colorHeight);
        planes.y = y.data();
        planes.u = u.data();
        planes.v = v.data();
        planes.yStride = planes.width;
        planes.uStride = planes.vStride = colorWidth;
    }

private:
    static void halve(std::vector<std::uint8_t>& to, const std::uint8_t* from, int stride, int width, int height)
    {
        to.resize(std::size_t(width) * std::size_t(height));
        for (int row = 0; row < height; ++row) {
            const auto* upper = from + std::ptrdiff_t(2 * row) * stride;
            videoKernels::halve(to.data() + std::ptrdiff_t(row) * width, upper, upper + stride, width);
        }
    }
};

class VideoPixels::RowsReader final : public Reader {
public:
    RowsReader(const VideoPlanes& planes, const VideoPart& part, int width, int height, Counter counter)
        : rows(planes, part, width, height)
        , pixelsRead(std::move(counter))
    {
    }
    ~RowsReader() override
    {
        if (pixelsRead)
            *pixelsRead += count;
    }
    void read(std::uint32_t* to, int x, int y, int pixels) override
    {
        rows.draw(to, x, y, pixels);
        count += pixels;
    }

private:
    VideoRows rows;
    const Counter pixelsRead;
    long count = 0;
};

VideoPixels::VideoPixels(
    std::shared_ptr<const VideoFrame> shown, const VideoPart& ofFrame, int width, int height, Counter counter)
    : LazyPixels(width, height)
    , frame(std::move(shown))
    , pixelsRead(std::move(counter))
    , part(ofFrame)
{
}

VideoPixels::~VideoPixels() = default;

std::shared_ptr<const VideoPixels> VideoPixels::fitted(
    std::shared_ptr<const VideoFrame> frame, const VideoTarget& target, Counter pixelsRead)
{
    const VideoPlanes& planes = frame->planes();
    VideoPart part { 0, 0, double(planes.width), double(planes.height) };
    int width = target.width, height = target.height;
    if (width <= 0 || height <= 0 || planes.width <= 0 || planes.height <= 0)
        return nullptr;
    // Target pixels for each of the video's, across and down.
    const double across = width / (planes.width * frame->pixelAspect()), down = double(height) / planes.height;
    if (target.gravity == AVLayerVideoGravity::resizeAspect) {
        const double scale = std::min(across, down);
        width = fittedSide(planes.width * frame->pixelAspect() * scale, width);
        height = fittedSide(planes.height * scale, height);
    } else if (target.gravity == AVLayerVideoGravity::resizeAspectFill) {
        const double scale = std::max(across, down);
        part.width *= across / scale;
        part.height *= down / scale;
        part.x = (planes.width - part.width) / 2;
        part.y = (planes.height - part.height) / 2;
    }
    return std::make_shared<VideoPixels>(std::move(frame), part, width, height, std::move(pixelsRead));
}

std::unique_ptr<LazyPixels::Reader> VideoPixels::reader() const
{
    std::call_once(isHalved, [this] { halve(); });
    return std::make_unique<RowsReader>(halved ? halved->planes : frame->planes(), part, width(), height(), pixelsRead);
}

void VideoPixels::halve() const
{
    for (;;) {
        const VideoPlanes& planes = halved ? halved->planes : frame->planes();
        if (planes.width < 4 || planes.height < 4 || part.width < 2.0 * width() || part.height < 2.0 * height())
            return;
        halved = std::make_unique<HalvedPlanes>(planes);
        part = { part.x / 2, part.y / 2, part.width / 2, part.height / 2 };
    }
}

} // namespace platform
