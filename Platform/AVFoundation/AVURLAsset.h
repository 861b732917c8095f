#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/URL.h"

#include <functional>
#include <string>
#include <vector>

namespace platform {

struct MediaFacts;

enum class AVKeyValueStatus : unsigned char { unknown, loading, loaded, failed };

// A medium at an address, and what a look at it told. Main thread.
class AVURLAsset final : public NSObject {
public:
    explicit AVURLAsset(URL url);

    const URL& url() const { return url_; }
    // Looks at the medium, unless that is done or under way, and then calls back on the main thread. Keys: "playable",
    // "hasProtectedContent", "duration", "tracks"; a look tells all of them.
    void loadValuesAsynchronously(const std::vector<std::string>& keys, std::function<void()> completion);
    // Failed when nothing could be read; `error` then says why. Something that is no medium is loaded, and not playable.
    AVKeyValueStatus statusOfValue(const std::string& key, std::string* error = nullptr) const;

    // Until loaded: false, 0 and empty.
    bool isPlayable() const { return playable; }
    bool hasProtectedContent() const { return isProtected; }
    double duration() const { return duration_; } // seconds; infinity when it has no known end
    CGSize naturalSize() const { return size; } // pixels of the picture as shown; empty without one

private:
    void didLoad(const MediaFacts& facts);

    const URL url_;
    AVKeyValueStatus status = AVKeyValueStatus::unknown;
    std::string problem;
    std::vector<std::function<void()>> completions;
    bool playable = false;
    bool isProtected = false;
    double duration_ = 0;
    CGSize size;
};

} // namespace platform
