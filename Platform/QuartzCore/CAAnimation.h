#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/CoreGraphics/CGPath.h"
#include "Platform/Foundation/NSObject.h"

#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace platform {

class CGImage;

// What an animation can carry. monostate is "absent": the layer's own value at that moment stands in.
using CAValue = std::variant<std::monostate, double, CGPoint, CGSize, CGRect, CGAffineTransform, CGColor, std::vector<CGColor>,
    std::vector<double>, std::shared_ptr<const CGPath>, std::shared_ptr<const CGImage>>;

// A cubic from (0,0) to (1,1) that maps elapsed to eased time.
struct CAMediaTimingFunction {
    double x1 = 0, y1 = 0, x2 = 1, y2 = 1; // linear
    static CAMediaTimingFunction linear() { return {}; }
    static CAMediaTimingFunction easeIn() { return { 0.42, 0, 1, 1 }; }
    static CAMediaTimingFunction easeOut() { return { 0, 0, 0.58, 1 }; }
    static CAMediaTimingFunction easeInEaseOut() { return { 0.42, 0, 0.58, 1 }; }
    static CAMediaTimingFunction defaultCurve() { return { 0.25, 0.1, 0.25, 1 }; }
    double evaluate(double t) const; // t clamped to 0..1
    bool operator==(const CAMediaTimingFunction&) const = default;
};

enum class CAMediaTimingFillMode : unsigned char { removed, forwards, backwards, both };
enum class CAAnimationCalculationMode : unsigned char { linear, discrete, paced, cubic };

// Described once, copied when it is added to a layer: later changes to the description change nothing that runs.
class CAAnimation : public NSObject {
public:
    double beginTime = 0; // seconds; in a group relative to the group's start. On a layer 0 means: at the commit of the frame
                          // that first sees it; otherwise absolute host time
    double duration = 0; // seconds; 0 takes the transaction's duration (0.25), in a group the group's
    double speed = 1; // 0 stands still at the time offset, negative plays from the end
    double timeOffset = 0; // seconds of its own time; what is cut off at the start follows at the end
    double repeatCount = 0; // 0 counts as 1; infinity repeats for ever
    bool autoreverses = false;
    CAMediaTimingFillMode fillMode = CAMediaTimingFillMode::removed;
    std::shared_ptr<const CAMediaTimingFunction> timingFunction; // null: linear
    bool removedOnCompletion = true;
    std::function<void(bool finished)> onStop; // once; false when removed before its end

    virtual std::shared_ptr<CAAnimation> copy() const = 0;

protected:
    void assign(const CAAnimation& other);
};

class CAPropertyAnimation : public CAAnimation {
public:
    // "opacity", "position", "position.x", "bounds.size", "transform.rotation", "transform.scale", "colors", "strokeEnd", ...;
    // one that the layer does not have runs without effect.
    std::string keyPath;
    bool additive = false; // the values are added to what the layer shows without this animation

protected:
    void assign(const CAPropertyAnimation& other);
};

class CABasicAnimation final : public CAPropertyAnimation {
public:
    static std::shared_ptr<CABasicAnimation> withKeyPath(std::string keyPath);
    CAValue fromValue, toValue, byValue; // absent ends take the layer's current value, as on the platform
    std::shared_ptr<CAAnimation> copy() const override;
    void assign(const CABasicAnimation& other);
};

class CAKeyframeAnimation final : public CAPropertyAnimation {
public:
    static std::shared_ptr<CAKeyframeAnimation> withKeyPath(std::string keyPath);
    std::vector<CAValue> values; // or a path, for points
    std::shared_ptr<const CGPath> path; // its line and curve ends are the keys; between them moves the curve's own parameter
    // 0 to 1, rising, as many as values (discrete: one more is the end); absent or unusable: even steps. Paced takes none.
    std::vector<double> keyTimes;
    std::vector<CAMediaTimingFunction> timingFunctions; // one fewer than the values; absent: linear
    CAAnimationCalculationMode calculationMode = CAAnimationCalculationMode::linear;
    std::shared_ptr<CAAnimation> copy() const override;
    void assign(const CAKeyframeAnimation& other);
};

class CAAnimationGroup final : public CAAnimation {
public:
    std::vector<std::shared_ptr<CAAnimation>> animations; // clipped to the group's duration
    std::shared_ptr<CAAnimation> copy() const override;
    void assign(const CAAnimationGroup& other);
};

} // namespace platform
