#include "Platform/AVFoundation/AVPlayerItem.h"

#include "Platform/AVFoundation/MediaModule.h"

#include <utility>

namespace platform {

AVPlayerItem::AVPlayerItem(std::shared_ptr<AVURLAsset> asset)
    : asset_(std::move(asset))
{
}

AVPlayerItem::AVPlayerItem(URL url)
    : AVPlayerItem(make<AVURLAsset>(std::move(url)))
{
}

void AVPlayerItem::becomeReady(const MediaFacts& facts)
{
    duration_ = facts.duration;
    size = { double(facts.width), double(facts.height) };
    setStatus(AVPlayerItemStatus::readyToPlay);
}

void AVPlayerItem::fail(const std::string& problem)
{
    error_ = problem;
    setStatus(AVPlayerItemStatus::failed);
}

void AVPlayerItem::setStatus(AVPlayerItemStatus status)
{
    if (std::exchange(status_, status) == status)
        return;
    if (const auto call = onStatusChange)
        call(status);
}

} // namespace platform
