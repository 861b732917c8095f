#pragma once

#include "Platform/QuartzCore/CAAnimation.h"
#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/LayerCommitter.h"
#include "Platform/QuartzCore/RenderList.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

namespace platform {

inline void PrintTo(const PixelRect& r, std::ostream* out) { *out << r.x << ' ' << r.y << ' ' << r.width << ' ' << r.height; }
inline void PrintTo(const CGRect& r, std::ostream* out) { *out << r.x << ' ' << r.y << ' ' << r.width << ' ' << r.height; }
inline void PrintTo(const CGPoint& p, std::ostream* out) { *out << p.x << ' ' << p.y; }

// A screen of 100 by 200 points at 2 pixels a point, whose frames are made by hand.
class LayerScreen : public ::testing::Test {
protected:
    static constexpr double scale = 2;
    static constexpr PixelRect pixels { 0, 0, 200, 400 };

    LayerScreen()
    {
        root->setFrame({ 0, 0, 100, 200 });
        frame(0); // nothing of the test before is pending
    }
    ~LayerScreen() override { LayerCommitter::setOnNeedsFrame(nullptr); }

    // One frame's steps; the result is kept in `list`.
    const RenderList& frame(double time)
    {
        LayerCommitter::finishAnimations(time);
        LayerCommitter::layout({ root });
        LayerCommitter::display({ root }, scale);
        list = LayerCommitter::commit({ root }, time, scale, pixels);
        return *list;
    }

    template <typename Layer = CALayer>
    std::shared_ptr<Layer> add(const CGRect& frame, const std::shared_ptr<CALayer>& parent = nullptr)
    {
        auto layer = make<Layer>();
        layer->setFrame(frame);
        (parent ? parent : root)->addSublayer(layer);
        return layer;
    }
    std::shared_ptr<CALayer> addBox(const CGRect& frame, const std::shared_ptr<CALayer>& parent = nullptr)
    {
        auto layer = add(frame, parent);
        layer->setBackgroundColor(CGColor { 1, 0, 0, 1 });
        return layer;
    }

    const std::shared_ptr<CALayer> root = make<CALayer>();
    std::shared_ptr<const RenderList> list;
};

inline std::shared_ptr<CABasicAnimation> basic(const std::string& keyPath, CAValue from, CAValue to, double duration = 1)
{
    auto animation = CABasicAnimation::withKeyPath(keyPath);
    animation->fromValue = std::move(from);
    animation->toValue = std::move(to);
    animation->duration = duration;
    return animation;
}

// The number, or a coordinate of the point, under a key path at that time.
inline double number(const CALayer& layer, const std::string& keyPath, double time)
{
    return std::get<double>(layer.presentationValue(keyPath, time));
}

inline CGPoint point(const CALayer& layer, const std::string& keyPath, double time)
{
    return std::get<CGPoint>(layer.presentationValue(keyPath, time));
}

// What an item shows, as one letter; for texts of whole lists such as "BI".
inline std::string kindsOf(const RenderList& list)
{
    std::string kinds;
    for (const RenderItem& item : list.items)
        kinds += "BIGSHKC"[item.content.index()]; // box, image, gradient, shape, shadow, backdrop, composed group
    return kinds;
}

} // namespace platform
