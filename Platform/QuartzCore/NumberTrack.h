#pragma once

#include "Platform/QuartzCore/AnimationTrack.h"
#include "Platform/QuartzCore/KeyTimes.h"

#include <vector>

namespace platform {

// Values that are lists of numbers: lengths, points, rectangles, colours, transforms.
class NumberTrack final : public AnimationTrack {
public:
    // Null when a value does not fit the key path.
    static std::unique_ptr<AnimationTrack> make(const CABasicAnimation& animation, AnimationKeyPath keyPath);
    static std::unique_ptr<AnimationTrack> make(const CAKeyframeAnimation& animation, AnimationKeyPath keyPath);
    using AnimationTrack::AnimationTrack;

    void apply(double progress, LayerPresentation& presentation) const override;

private:
    struct Key {
        std::vector<double> numbers;
        bool onShown = false; // the numbers come on top of what the layer shows; none: just what it shows
    };

    static bool read(const CAValue& value, AnimationKeyPath keyPath, Key& key);
    const std::vector<double>& resolved(const Key& key, const std::vector<double>& shown, std::vector<double>& scratch) const;
    void mix(const std::vector<double>& from, const std::vector<double>& to, double part, std::vector<double>& result) const;
    void smooth(const KeyTimes::Place& place, std::vector<double>& result) const;
    double distance(const std::vector<double>& from, const std::vector<double>& to) const;

    std::vector<Key> keys;
    KeyTimes times;
    bool additive = false;
    bool cubic = false;
    bool readsShown = false;
};

} // namespace platform
