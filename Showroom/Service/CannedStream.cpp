#include "Showroom/Service/CannedStream.h"

#include "Platform/AVFoundation/AVPlayerItem.h"
#include "Platform/AVFoundation/AVPlayerLayer.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/UIKit/UIView.h"

namespace showroom {

using namespace platform;

CannedStream::CannedStream(const URL& film, const mv::MVVideoStreamConfig& config, std::function<void()> onPicture,
    std::function<void(const std::string&)> onFailure)
{
    const auto item = make<AVPlayerItem>(film);
    item->onStatusChange
        = [weakItem = weak(item), onPicture = std::move(onPicture), onFailure = std::move(onFailure)](AVPlayerItemStatus status) {
              const auto changed = weakItem.lock();
              if (status == AVPlayerItemStatus::readyToPlay)
                  onPicture();
              else if (status == AVPlayerItemStatus::failed && changed)
                  onFailure(changed->error());
          };
    player_ = make<AVPlayer>(item);
    player_->setActionAtItemEnd(AVPlayerActionAtItemEnd::none);
    endObserver = NotificationCenter::defaultCenter().addObserver(
        AVPlayerItem::didPlayToEndTimeNotification, item, [weakPlayer = weak(player_)](const Notification&) {
            if (const auto player = weakPlayer.lock())
                player->seek(0);
        });
    if (config.streamContainerView) {
        const auto layer = make<AVPlayerLayer>();
        layer->setPlayer(player_);
        layer->setVideoGravity(config.streamRenderMode == mv::MVVideoStreamRenderMode::scaleAspectFill
                ? AVLayerVideoGravity::resizeAspectFill
                : AVLayerVideoGravity::resizeAspect);
        screen = make<UIView>(config.streamContainerView->bounds(), layer);
        screen->setAccessibilityIdentifier("hostVideo");
        screen->setAutoresizingMask(flexibleWidth | flexibleHeight);
        config.streamContainerView->addSubview(screen);
    }
    player_->play();
}

CannedStream::~CannedStream()
{
    player_->pause();
    if (screen)
        screen->removeFromSuperview();
}

void CannedStream::drop()
{
    player_->pause();
    if (screen)
        screen->setHidden(true);
}

void CannedStream::resume()
{
    if (screen)
        screen->setHidden(false);
    player_->play();
}

} // namespace showroom
