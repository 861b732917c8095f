#include "Platform/QuartzCore/ObjectTrack.h"

#include "Platform/QuartzCore/LayerPresentation.h"

#include <algorithm>

namespace platform {

namespace {

using PathPointer = std::shared_ptr<const CGPath>;
using ImagePointer = std::shared_ptr<const CGImage>;

template <typename T> T orShown(const CAValue& value, const T& shown)
{
    const T* given = std::get_if<T>(&value);
    return given ? *given : shown;
}

} // namespace

std::shared_ptr<const CGPath> pathBetween(const PathPointer& from, const PathPointer& to, double part)
{
    if (!from || !to || part == 1
        || !std::ranges::equal(from->elements(), to->elements(), {}, &CGPath::Element::verb, &CGPath::Element::verb))
        return to;
    auto path = std::make_shared<CGPath>();
    for (std::size_t i = 0; i < to->elements().size(); ++i) {
        const auto& a = from->elements()[i];
        const auto& b = to->elements()[i];
        const auto point = [&](int n) -> CGPoint {
            return { a.points[n].x + (b.points[n].x - a.points[n].x) * part,
                a.points[n].y + (b.points[n].y - a.points[n].y) * part };
        };
        switch (b.verb) {
        case CGPath::Verb::move:
            path->moveTo(point(2));
            break;
        case CGPath::Verb::line:
            path->lineTo(point(2));
            break;
        case CGPath::Verb::curve:
            path->curveTo(point(0), point(1), point(2));
            break;
        case CGPath::Verb::close:
            path->close();
            break;
        }
    }
    return path;
}

std::unique_ptr<AnimationTrack> ObjectTrack::make(const CABasicAnimation& animation, AnimationKeyPath keyPath)
{
    auto track = std::make_unique<ObjectTrack>(keyPath);
    if (!track->addKey(animation.fromValue) || !track->addKey(animation.toValue))
        return nullptr;
    track->times = KeyTimes::fromStartToEnd();
    return track;
}

std::unique_ptr<AnimationTrack> ObjectTrack::make(const CAKeyframeAnimation& animation, AnimationKeyPath keyPath)
{
    auto track = std::make_unique<ObjectTrack>(keyPath);
    for (const CAValue& value : animation.values) {
        if (!track->addKey(value))
            return nullptr;
    }
    if (track->keys.empty())
        return nullptr;
    track->times = KeyTimes::of(animation, track->keys.size());
    return track;
}

void ObjectTrack::apply(double progress, LayerPresentation& presentation) const
{
    const KeyTimes::Place place = times.at(progress);
    if (target.isContents())
        applyContents(place, presentation);
    else
        applyPath(place, target.property == LayerProperty::path ? presentation.shape.path : presentation.layer.shadowPath);
}

bool ObjectTrack::addKey(const CAValue& value)
{
    keys.push_back(value);
    return std::holds_alternative<std::monostate>(value)
        || (target.isContents() ? std::holds_alternative<ImagePointer>(value) : std::holds_alternative<PathPointer>(value));
}

void ObjectTrack::applyContents(const KeyTimes::Place& place, LayerPresentation& presentation) const
{
    const ImagePointer shown = presentation.layer.contents;
    presentation.oldContents = orShown(keys[place.from], shown);
    presentation.layer.contents = orShown(keys[place.to], shown);
    presentation.contentsMix = place.from == place.to ? 1 : std::clamp(place.part, 0.0, 1.0);
}

void ObjectTrack::applyPath(const KeyTimes::Place& place, PathPointer& shown) const
{
    const PathPointer from = orShown(keys[place.from], shown);
    shown = place.from == place.to ? from : pathBetween(from, orShown(keys[place.to], shown), place.part);
}

} // namespace platform
