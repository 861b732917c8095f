#include "Platform/QuartzCore/NumberTrack.h"

#include "Platform/QuartzCore/LayerPresentation.h"

#include <cmath>
#include <numbers>

namespace platform {

namespace {

using Numbers = std::vector<double>;

constexpr std::size_t rotation = 2, scaleX = 3, scaleY = 4; // places in TransformParts

// b on top of a, or taken off it. Scales multiply, all else adds up.
void combine(Numbers& a, const Numbers& b, bool takeOff, bool isTransform)
{
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        if (!isTransform || (i != scaleX && i != scaleY))
            a[i] += takeOff ? -b[i] : b[i];
        else if (!takeOff)
            a[i] *= b[i];
        else if (b[i] != 0)
            a[i] /= b[i];
    }
}

// A colour that is not there fades as the other one without its alpha.
const Numbers& orClear(const Numbers& color, const Numbers& other, Numbers& scratch)
{
    if (!color.empty() || other.size() != 4)
        return color;
    scratch = { other[0], other[1], other[2], 0 };
    return scratch;
}

} // namespace

std::unique_ptr<AnimationTrack> NumberTrack::make(const CABasicAnimation& animation, AnimationKeyPath keyPath)
{
    const auto has = [](const CAValue& value) { return !std::holds_alternative<std::monostate>(value); };
    auto track = std::make_unique<NumberTrack>(keyPath);
    Key from, to, by;
    if (!read(animation.fromValue, keyPath, from) || !read(animation.toValue, keyPath, to)
        || !read(animation.byValue, keyPath, by))
        return nullptr;
    const bool isTransform = keyPath.isWholeTransform();
    if (!has(animation.toValue) && has(animation.byValue)) {
        to = has(animation.fromValue) ? from : by;
        if (has(animation.fromValue))
            combine(to.numbers, by.numbers, false, isTransform);
        else
            to.onShown = true;
    } else if (!has(animation.fromValue) && has(animation.toValue) && has(animation.byValue)) {
        from = to;
        combine(from.numbers, by.numbers, true, isTransform);
    }
    track->keys = { from, to };
    track->times = KeyTimes::fromStartToEnd();
    track->additive = animation.additive;
    track->readsShown = animation.additive || from.onShown || to.onShown;
    return track;
}

std::unique_ptr<AnimationTrack> NumberTrack::make(const CAKeyframeAnimation& animation, AnimationKeyPath keyPath)
{
    auto track = std::make_unique<NumberTrack>(keyPath);
    track->additive = animation.additive;
    track->readsShown = animation.additive;
    track->cubic = animation.calculationMode == CAAnimationCalculationMode::cubic;
    for (const CAValue& value : animation.values) {
        Key key;
        if (!read(value, keyPath, key))
            return nullptr;
        track->readsShown |= key.onShown;
        track->keys.push_back(std::move(key));
    }
    if (track->keys.empty())
        return nullptr;
    if (animation.calculationMode != CAAnimationCalculationMode::paced || track->keys.size() < 2) {
        track->times = KeyTimes::of(animation, track->keys.size());
        return track;
    }
    std::vector<double> distances;
    for (std::size_t i = 1; i < track->keys.size(); ++i)
        distances.push_back(track->distance(track->keys[i - 1].numbers, track->keys[i].numbers));
    track->times = KeyTimes::paced(distances);
    return track;
}

void NumberTrack::apply(double progress, LayerPresentation& presentation) const
{
    // Kept from call to call, so that a frame allocates nothing; main thread only.
    static Numbers shown, fromScratch, toScratch, result;
    if (readsShown)
        toNumbers(presentation.value(target), shown);
    const KeyTimes::Place place = times.at(progress);
    const Numbers& from = resolved(keys[place.from], shown, fromScratch);
    const Numbers& to = place.from == place.to ? from : resolved(keys[place.to], shown, toScratch);
    if (cubic)
        smooth(place, result);
    else
        mix(from, to, place.part, result);
    if (additive)
        combine(result, shown, false, target.isWholeTransform());
    if (!result.empty())
        presentation.setNumbers(target, result);
}

bool NumberTrack::read(const CAValue& value, AnimationKeyPath keyPath, Key& key)
{
    toNumbers(value, key.numbers);
    key.onShown = std::holds_alternative<std::monostate>(value);
    if (key.onShown)
        return true;
    const std::size_t wanted = keyPath.numberCount();
    if (wanted == 0) {
        return keyPath.property == LayerProperty::colors ? std::holds_alternative<std::vector<CGColor>>(value)
                                                         : std::holds_alternative<std::vector<double>>(value);
    }
    for (const double number : key.numbers) {
        if (!std::isfinite(number))
            return false;
    }
    return key.numbers.size() == wanted && (wanted != 4 || keyPath.isColor() == std::holds_alternative<CGColor>(value));
}

const Numbers& NumberTrack::resolved(const Key& key, const Numbers& shown, Numbers& scratch) const
{
    if (!key.onShown)
        return key.numbers;
    if (key.numbers.empty())
        return shown;
    scratch = shown;
    combine(scratch, key.numbers, false, target.isWholeTransform());
    return scratch;
}

// Lists of unlike length (three colours to two) cannot be mixed: the later one shows at once.
void NumberTrack::mix(const Numbers& givenFrom, const Numbers& givenTo, double part, Numbers& result) const
{
    static Numbers clearFrom, clearTo;
    const Numbers& from = target.isColor() ? orClear(givenFrom, givenTo, clearFrom) : givenFrom;
    const Numbers& to = target.isColor() ? orClear(givenTo, givenFrom, clearTo) : givenTo;
    if (from.size() != to.size()) {
        result = to;
        return;
    }
    result.resize(from.size());
    for (std::size_t i = 0; i < from.size(); ++i)
        result[i] = part == 1 ? to[i] : from[i] + (to[i] - from[i]) * part;
    if (target.isWholeTransform() && result.size() > rotation) { // the short way round
        const double turn = std::remainder(to[rotation] - from[rotation], 2 * std::numbers::pi);
        result[rotation] = from[rotation] + turn * part;
    }
}

// A Catmull-Rom spline through the keys; the ends stand twice.
void NumberTrack::smooth(const KeyTimes::Place& place, Numbers& result) const
{
    const Numbers& b = keys[place.from].numbers;
    const Numbers& c = keys[place.to].numbers;
    const Numbers& a = keys[place.from == 0 ? 0 : place.from - 1].numbers;
    const Numbers& d = keys[std::min(place.to + 1, keys.size() - 1)].numbers;
    if (place.from == place.to || a.size() != b.size() || b.size() != c.size() || c.size() != d.size()) {
        mix(b, c, place.part, result);
        return;
    }
    const double t = place.part;
    result.resize(b.size());
    for (std::size_t i = 0; i < b.size(); ++i) {
        result[i] = b[i]
            + 0.5 * t * (c[i] - a[i] + t * (2 * a[i] - 5 * b[i] + 4 * c[i] - d[i] + t * (3 * (b[i] - c[i]) + d[i] - a[i])));
    }
}

double NumberTrack::distance(const Numbers& from, const Numbers& to) const
{
    double squares = 0;
    for (std::size_t i = 0; i < std::min(from.size(), to.size()); ++i)
        squares += (to[i] - from[i]) * (to[i] - from[i]);
    return std::sqrt(squares);
}

} // namespace platform
