#include "Platform/AVFoundation/AVURLAsset.h"

#include "Platform/AVFoundation/MediaModule.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/ModuleLoader.h"

#include <utility>

namespace platform {

AVURLAsset::AVURLAsset(URL url)
    : url_(std::move(url))
{
}

void AVURLAsset::loadValuesAsynchronously(const std::vector<std::string>& /*keys*/, std::function<void()> completion)
{
    if (status == AVKeyValueStatus::loaded || status == AVKeyValueStatus::failed)
        return MainQueue::shared().async(std::move(completion));
    completions.push_back(std::move(completion));
    if (std::exchange(status, AVKeyValueStatus::loading) == AVKeyValueStatus::loading)
        return;
    const auto tell = [weakSelf = weak(this), job = CountedJob()](const MediaFacts& facts) {
        MainQueue::shared().async([weakSelf, job, facts] {
            if (const auto self = weakSelf.lock())
                self->didLoad(facts);
        });
    };
    if (auto* module = loadModule<MediaModule>("media"))
        return module->examine(url_.absoluteString(), tell);
    MediaFacts none;
    none.problem = "the media module is missing";
    tell(none);
}

AVKeyValueStatus AVURLAsset::statusOfValue(const std::string& /*key*/, std::string* error) const
{
    if (error && status == AVKeyValueStatus::failed)
        *error = problem;
    return status;
}

void AVURLAsset::didLoad(const MediaFacts& facts)
{
    status = facts.problem.empty() ? AVKeyValueStatus::loaded : AVKeyValueStatus::failed;
    problem = facts.problem;
    isProtected = facts.isProtected;
    playable = facts.problem.empty() && facts.unplayable.empty();
    duration_ = playable ? facts.duration : 0;
    size = { double(facts.width), double(facts.height) };
    for (const auto& completion : std::exchange(completions, {}))
        completion();
}

} // namespace platform
