#include "Platform/AVFoundation/MediaModule.h"

#include "Platform/AVFoundation/Modules/Media/AssetProbe.h"
#include "Platform/AVFoundation/Modules/Media/MediaWorker.h"
#include "Platform/AVFoundation/Modules/Media/PlaybinHandle.h"
#include "Platform/Foundation/ModuleExport.h"

#include <utility>

namespace platform {

namespace {

class Media final : public MediaModule {
public:
    void examine(const std::string& address, std::function<void(const MediaFacts& facts)> done) override
    {
        MediaWorker::shared().post([address, done = std::move(done)] { probeAsset(address, done); });
    }

    std::unique_ptr<MediaPipeline> open(
        const std::string& address, MediaPace pace, std::shared_ptr<MediaListener> listener) override
    {
        return openPlaybin(address, pace, std::move(listener));
    }
};

} // namespace

} // namespace platform

MIVORA_EXPORT_MODULE(platform::MediaModule, platform::Media);
