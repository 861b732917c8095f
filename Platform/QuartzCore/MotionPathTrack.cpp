#include "Platform/QuartzCore/MotionPathTrack.h"

#include "Platform/QuartzCore/LayerPresentation.h"

#include <algorithm>
#include <cmath>

namespace platform {

std::unique_ptr<AnimationTrack> MotionPathTrack::make(const CAKeyframeAnimation& animation, AnimationKeyPath keyPath)
{
    if (keyPath.numberCount() != 2 || animation.path->isEmpty())
        return nullptr;
    auto track = std::make_unique<MotionPathTrack>(keyPath);
    track->additive = animation.additive;
    track->paced = animation.calculationMode == CAAnimationCalculationMode::paced;
    track->addSegments(*animation.path);
    if (!track->paced) {
        track->times = KeyTimes::of(animation, track->segments.size() + 1);
        return track;
    }
    std::vector<double> lengths;
    for (Segment& segment : track->segments)
        lengths.push_back(segment.measure());
    track->times = KeyTimes::paced(lengths);
    return track;
}

void MotionPathTrack::apply(double progress, LayerPresentation& presentation) const
{
    static std::vector<double> numbers; // kept from call to call; main thread only
    const KeyTimes::Place place = times.at(progress);
    CGPoint point = start;
    if (place.from < place.to) {
        const Segment& segment = segments[place.from];
        point = segment.at(paced ? segment.parameterAt(place.part) : place.part);
    } else if (place.from > 0) {
        point = segments[place.from - 1].end;
    }
    if (additive) {
        toNumbers(presentation.value(target), numbers);
        point = { point.x + numbers[0], point.y + numbers[1] };
    }
    numbers = { point.x, point.y };
    presentation.setNumbers(target, numbers);
}

// A move inside the path is a jump: the next segment starts elsewhere.
void MotionPathTrack::addSegments(const CGPath& path)
{
    CGPoint current = path.elements().front().points[2], subpathStart = current;
    start = current;
    for (const CGPath::Element& element : path.elements()) {
        const CGPoint* p = element.points;
        switch (element.verb) {
        case CGPath::Verb::move:
            current = subpathStart = p[2];
            break;
        case CGPath::Verb::line:
            segments.push_back({ current, current, p[2], p[2], true });
            current = p[2];
            break;
        case CGPath::Verb::curve:
            segments.push_back({ current, p[0], p[1], p[2], false });
            current = p[2];
            break;
        case CGPath::Verb::close:
            if (current != subpathStart)
                segments.push_back({ current, current, subpathStart, subpathStart, true });
            current = subpathStart;
            break;
        }
    }
}

CGPoint MotionPathTrack::Segment::at(double t) const
{
    const double s = 1 - t;
    if (straight)
        return { start.x * s + end.x * t, start.y * s + end.y * t };
    const double a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
    return { a * start.x + b * control1.x + c * control2.x + d * end.x,
        a * start.y + b * control1.y + c * control2.y + d * end.y };
}

double MotionPathTrack::Segment::measure()
{
    CGPoint before = start;
    for (std::size_t i = 1; i <= chordCount; ++i) {
        const CGPoint now = at(double(i) / chordCount);
        lengths[i] = lengths[i - 1] + std::hypot(now.x - before.x, now.y - before.y);
        before = now;
    }
    return lengths.back();
}

double MotionPathTrack::Segment::parameterAt(double lengthPart) const
{
    const double wanted = lengthPart * lengths.back();
    const std::size_t chord
        = std::clamp<std::size_t>(std::size_t(std::ranges::upper_bound(lengths, wanted) - lengths.begin()), 1, chordCount);
    const double length = lengths[chord] - lengths[chord - 1];
    return (double(chord - 1) + (length > 0 ? (wanted - lengths[chord - 1]) / length : 0)) / chordCount;
}

} // namespace platform
