#include "Benchmarks/Workloads/PlayingVideo.h"

#include "Platform/AVFoundation/AVPlayer.h"
#include "Platform/AVFoundation/AVPlayerLayer.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/UIKit/UIView.h"

namespace bench {

using namespace platform;

PlayingVideo::PlayingVideo(UIView* view)
    : player(make<AVPlayer>(make<AVPlayerItem>(URL::fileURL(Folders::executable() + "/Showroom.bundle/Videos/host.mp4"))))
    , layer(make<AVPlayerLayer>())
{
    if (view) {
        layer->setVideoGravity(AVLayerVideoGravity::resizeAspectFill);
        layer->setFrame(view->bounds());
        view->layer()->addSublayer(layer);
        layer->setPlayer(player);
    }
    player->play();
}

PlayingVideo::~PlayingVideo()
{
    layer->setPlayer(nullptr);
    layer->removeFromSuperlayer();
}

} // namespace bench
