#include "Tests/Platform/QuartzCore/LayerTestSupport.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace platform {

namespace {

constexpr double near = 1e-9;
constexpr double pi = std::numbers::pi;
constexpr double forEver = std::numeric_limits<double>::infinity();

class CAAnimationTest : public LayerScreen {
protected:
    // Adds the animation and lets the first frame, at 10 seconds, see it: times in the tests count from there.
    void run(const std::shared_ptr<CAAnimation>& animation, const std::string& key = "test")
    {
        layer->addAnimation(animation, key);
        frame(10);
    }
    double at(double time, const std::string& keyPath = "opacity") const { return number(*layer, keyPath, 10 + time); }

    const std::shared_ptr<CALayer> layer = addBox({ 0, 0, 10, 10 });
};

// The definition itself, solved by halving.
double bezier(double x1, double y1, double x2, double y2, double x)
{
    const auto cubic
        = [](double a, double b, double s) { return 3 * a * s * (1 - s) * (1 - s) + 3 * b * s * s * (1 - s) + s * s * s; };
    double low = 0, high = 1;
    for (int i = 0; i < 80; ++i) {
        const double middle = (low + high) / 2;
        (cubic(x1, x2, middle) < x ? low : high) = middle;
    }
    return cubic(y1, y2, low);
}

std::shared_ptr<CAKeyframeAnimation> keyframes(std::string keyPath, std::vector<CAValue> values, std::vector<double> times = {})
{
    auto animation = CAKeyframeAnimation::withKeyPath(std::move(keyPath));
    animation->values = std::move(values);
    animation->keyTimes = std::move(times);
    animation->duration = 1;
    return animation;
}

// Shows its end for good.
template <typename Animation> std::shared_ptr<Animation> kept(std::shared_ptr<Animation> animation)
{
    animation->fillMode = CAMediaTimingFillMode::forwards;
    animation->removedOnCompletion = false;
    return animation;
}

testing::AssertionResult isNear(const CGAffineTransform& shown, const CGAffineTransform& expected)
{
    const auto off = [&](auto part) { return std::abs(shown.*part - expected.*part); };
    using T = CGAffineTransform;
    return std::max({ off(&T::a), off(&T::b), off(&T::c), off(&T::d), off(&T::tx), off(&T::ty) }) < near
        ? testing::AssertionSuccess()
        : testing::AssertionFailure() << testing::PrintToString(
              std::array { shown.a, shown.b, shown.c, shown.d, shown.tx, shown.ty });
}

std::shared_ptr<const CAMediaTimingFunction> curve(const CAMediaTimingFunction& function)
{
    return std::make_shared<CAMediaTimingFunction>(function);
}

} // namespace

TEST(CAMediaTimingFunction, followsItsCurve)
{
    const CAMediaTimingFunction curves[]
        = { CAMediaTimingFunction::easeIn(), CAMediaTimingFunction::easeOut(), CAMediaTimingFunction::easeInEaseOut(),
              CAMediaTimingFunction::defaultCurve(), { 0, 1, 0, 1 }, { 1, 0, 1, 0 }, { 1, 0, 0, 1 }, { 0.3, -0.5, 0.6, 1.6 } };
    for (const auto& c : curves) {
        for (double x = 0; x <= 1; x += 1.0 / 64)
            EXPECT_NEAR(c.evaluate(x), bezier(c.x1, c.y1, c.x2, c.y2, x), 2e-5) // two of them stand upright somewhere
                << c.x1 << ' ' << c.x2 << " at " << x;
    }
    EXPECT_EQ(CAMediaTimingFunction::linear().evaluate(0.3), 0.3);
    EXPECT_EQ(CAMediaTimingFunction::easeIn().evaluate(-1), 0);
    EXPECT_EQ(CAMediaTimingFunction::easeIn().evaluate(2), 1);
}

TEST_F(CAAnimationTest, beginsAtTheFrameThatFirstSeesIt)
{
    layer->addAnimation(basic("opacity", 0.0, 1.0), "fade");
    EXPECT_EQ(number(*layer, "opacity", 3), 0) << "what it will show is shown before the first frame too";
    frame(10);
    EXPECT_EQ(at(0), 0);
    EXPECT_NEAR(at(0.25), 0.25, near);
    EXPECT_EQ(at(1), 1) << "the model's";
}

TEST_F(CAAnimationTest, waitsWhileItsLayerIsInNoTree)
{
    const auto loose = make<CALayer>();
    loose->addAnimation(basic("opacity", 0.0, 1.0), "fade");
    frame(10);
    frame(50);
    EXPECT_EQ(LayerCommitter::nextEventTime(), forEver);
    root->addSublayer(loose);
    frame(60);
    EXPECT_NEAR(number(*loose, "opacity", 60.5), 0.5, near);
}

TEST_F(CAAnimationTest, takesAbsentEndsFromTheLayer)
{
    struct Case {
        const char* why;
        CAValue from, to, by;
        double start, middle, end;
    };
    const CAValue none;
    const Case cases[] = {
        { "from and to", 0.2, 0.6, none, 0.2, 0.4, 0.6 },
        { "from and by", 0.2, none, 0.4, 0.2, 0.4, 0.6 },
        { "by and to", none, 0.6, 0.4, 0.2, 0.4, 0.6 },
        { "from", 0.2, none, none, 0.2, 0.5, 0.8 },
        { "to", none, 0.2, none, 0.8, 0.5, 0.2 },
        { "by", none, none, 0.1, 0.8, 0.85, 0.9 },
        { "nothing", none, none, none, 0.8, 0.8, 0.8 },
    };
    layer->setOpacity(0.8);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        auto animation = basic("opacity", c.from, c.to);
        animation->byValue = c.by;
        animation->fillMode = CAMediaTimingFillMode::both;
        animation->removedOnCompletion = false;
        run(animation);
        EXPECT_NEAR(at(0), c.start, near);
        EXPECT_NEAR(at(0.5), c.middle, near);
        EXPECT_NEAR(at(1), c.end, near);
    }
}

TEST_F(CAAnimationTest, fillsBeforeAndAfterAsItsModeSays)
{
    struct Case {
        CAMediaTimingFillMode mode;
        double before, after;
    };
    const Case cases[] = {
        { CAMediaTimingFillMode::removed, 1, 1 },
        { CAMediaTimingFillMode::forwards, 1, 0.75 },
        { CAMediaTimingFillMode::backwards, 0.25, 1 },
        { CAMediaTimingFillMode::both, 0.25, 0.75 },
    };
    for (const Case& c : cases) {
        auto animation = basic("opacity", 0.25, 0.75);
        animation->beginTime = 12; // absolute: 2 seconds after the frame
        animation->fillMode = c.mode;
        animation->removedOnCompletion = false;
        run(animation);
        EXPECT_EQ(at(1.9), c.before);
        EXPECT_NEAR(at(2.5), 0.5, near);
        EXPECT_EQ(at(3.5), c.after);
    }
}

TEST_F(CAAnimationTest, repeatsReversesAndShifts)
{
    struct Case {
        const char* why;
        double repeatCount;
        bool autoreverses;
        double speed, timeOffset, time, value;
    };
    const Case cases[] = {
        { "second round", 3, false, 1, 0, 1.25, 0.25 },
        { "a boundary starts the next round", 3, false, 1, 0, 2, 0 },
        { "the end is the end of the last round", 3, false, 1, 0, 3.5, 1 },
        { "half a round at the end", 1.5, false, 1, 0, 9, 0.5 },
        { "for ever", forEver, false, 1, 0, 1000.75, 0.75 },
        { "way back", 1, true, 1, 0, 1.25, 0.75 },
        { "back at the start", 1, true, 1, 0, 2.5, 0 },
        { "way back of the second round", 2, true, 1, 0, 3.75, 0.25 },
        { "twice as fast", 1, false, 2, 0, 0.25, 0.5 },
        { "twice as fast, ended", 1, false, 2, 0, 0.6, 1 },
        { "starts within", 1, false, 1, 0.25, 0.5, 0.75 },
        { "what was cut off follows", 1, false, 1, 0.25, 0.875, 0.125 },
        { "stands still", 1, false, 0, 0.25, 77, 0.25 },
        { "stands at its end", 1, false, 0, 1, 77, 1 },
        { "plays from the end", 1, false, -1, 0, 0.25, 0.75 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        auto animation = kept(basic("opacity", 0.0, 1.0));
        animation->repeatCount = c.repeatCount;
        animation->autoreverses = c.autoreverses;
        animation->speed = c.speed;
        animation->timeOffset = c.timeOffset;
        run(animation);
        EXPECT_NEAR(at(c.time), c.value, near);
    }
}

TEST_F(CAAnimationTest, easesItsWayBackAsAMirror)
{
    auto animation = basic("opacity", 0.0, 1.0);
    animation->autoreverses = true;
    animation->timingFunction = curve(CAMediaTimingFunction::easeIn());
    run(animation);
    EXPECT_NEAR(at(0.25), bezier(0.42, 0, 1, 1, 0.25), 1e-6);
    EXPECT_NEAR(at(1.75), at(0.25), near);
}

TEST_F(CAAnimationTest, keepsKeyframesBeforeAndBetweenTheirTimes)
{
    run(keyframes("opacity", { 1.0, 0.7, 0.0 }, { 0.4, 0.8, 5 }));
    EXPECT_EQ(at(0), 1);
    EXPECT_NEAR(at(0.4), 1, near) << "the first value holds up to its time";
    EXPECT_NEAR(at(0.6), 0.85, near);
    EXPECT_NEAR(at(0.8), 0.7, near);
    EXPECT_NEAR(at(0.999999999), 0.7 * (1 - 0.2 / 4.2), 1e-6) << "a time beyond the end is never reached";
}

TEST_F(CAAnimationTest, stepsThroughKeyframesByItsMode)
{
    struct Case {
        const char* why;
        CAAnimationCalculationMode mode;
        std::vector<double> times;
        double time, value;
    };
    using Mode = CAAnimationCalculationMode;
    const Case cases[] = {
        { "even", Mode::linear, {}, 0.25, 0.05 },
        { "even, second way", Mode::linear, {}, 0.75, 0.55 },
        { "discrete keeps each value a third", Mode::discrete, {}, 0.34, 0.1 },
        { "discrete, the last third", Mode::discrete, {}, 0.99, 1 },
        { "discrete with times and an end", Mode::discrete, { 0, 0.5, 0.9, 1 }, 0.6, 0.1 },
        { "discrete with times", Mode::discrete, { 0, 0.5, 0.9 }, 0.95, 1 },
        { "paced goes evenly", Mode::paced, { 0, 0.9, 1 }, 0.5, 0.5 },
        { "a spline passes through its keys", Mode::cubic, {}, 0.5, 0.1 },
        { "a spline swings", Mode::cubic, {}, 0.25, 0.1 * 9 / 16 - 1.0 / 16 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        auto animation = keyframes("opacity", { 0.0, 0.1, 1.0 }, c.times);
        animation->calculationMode = c.mode;
        run(animation);
        EXPECT_NEAR(at(c.time), c.value, near);
    }
}

TEST_F(CAAnimationTest, easesEachWayBetweenKeysByItsOwnCurve)
{
    auto animation = keyframes("position.x", { 0.0, 100.0, 200.0 });
    animation->timingFunctions = { CAMediaTimingFunction::easeIn(), CAMediaTimingFunction::easeOut() };
    run(animation);
    EXPECT_NEAR(at(0.25, "position.x"), 100 * bezier(0.42, 0, 1, 1, 0.5), 1e-4);
    EXPECT_NEAR(at(0.75, "position.x"), 100 + 100 * bezier(0, 0, 0.58, 1, 0.5), 1e-4);
}

TEST_F(CAAnimationTest, saysOnceWhyKeyTimesAreOfNoUse)
{
    const std::vector<double> unusable[] = { { 0, 1 }, { 0, 0.9, 0.5 }, { 0, std::nan(""), 1 } };
    for (const auto& times : unusable) {
        LogCapture log;
        run(keyframes("opacity", { 0.0, 0.5, 1.0 }, times));
        EXPECT_NEAR(at(0.25), 0.25, near) << "even steps";
        EXPECT_EQ(log.lines().size(), 1u);
    }
}

TEST_F(CAAnimationTest, sharesAPathOutByItsEndsOrItsLength)
{
    auto path = std::make_shared<CGPath>();
    path->moveTo({ 0, 0 });
    path->lineTo({ 10, 0 });
    path->lineTo({ 10, 90 });
    path->close(); // back to the start, hypot(10, 90) long
    auto animation = CAKeyframeAnimation::withKeyPath("position");
    animation->path = path;
    animation->duration = 3;
    run(animation);
    EXPECT_NEAR(point(*layer, "position", 10.5).x, 5, near);
    EXPECT_NEAR(point(*layer, "position", 11.5).y, 45, near);
    EXPECT_NEAR(point(*layer, "position", 12.5).y, 45, near);
    animation->keyTimes = { 0, 0.5, 0.5, 1 };
    run(animation);
    EXPECT_NEAR(point(*layer, "position", 10.75).x, 5, near);
    EXPECT_EQ(point(*layer, "position", 11.5), (CGPoint { 10, 90 }));
    animation->calculationMode = CAAnimationCalculationMode::paced;
    run(animation);
    const double whole = 100 + std::hypot(10, 90);
    EXPECT_NEAR(point(*layer, "position", 10 + 3 * 5 / whole).x, 5, near);
    EXPECT_NEAR(point(*layer, "position", 10 + 3 * 55 / whole).y, 45, near);
}

TEST_F(CAAnimationTest, pacesACurveEvenly)
{
    auto path = std::make_shared<CGPath>();
    path->moveTo({ 0, 0 });
    path->curveTo({ 0, 0 }, { 0, 0 }, { 100, 0 }); // slow at first by its parameter
    auto animation = CAKeyframeAnimation::withKeyPath("position");
    animation->path = path;
    animation->duration = 1;
    animation->calculationMode = CAAnimationCalculationMode::paced;
    run(animation);
    for (const double time : { 0.1, 0.5, 0.9 })
        EXPECT_NEAR(point(*layer, "position", 10 + time).x, 100 * time, 0.2);
}

TEST_F(CAAnimationTest, clipsAndEasesMembersByTheGroup)
{
    auto held = basic("position.x", 0.0, 100.0, 2);
    held->fillMode = CAMediaTimingFillMode::forwards;
    const auto cutOff = basic("position.y", 0.0, 100.0, 6);
    const auto shrinking = basic("transform.scale", 1.0, 0.0, 3);
    auto group = make<CAAnimationGroup>();
    group->animations = { held, cutOff, shrinking };
    group->duration = 3;
    group->timingFunction = curve(CAMediaTimingFunction::easeOut());
    run(group);
    const double eased = 3 * bezier(0, 0, 0.58, 1, 0.25);
    EXPECT_NEAR(at(0.75, "position.x"), 100 * eased / 2, 1e-4);
    EXPECT_NEAR(at(0.75, "transform.scale"), 1 - eased / 3, 1e-6);
    EXPECT_EQ(at(2.9, "position.x"), 100) << "held to the group's end";
    EXPECT_NEAR(at(2.999999999, "position.y"), 50, 1e-4);
    EXPECT_EQ(at(3.1, "position.x"), 5) << "the group's end ends all";
}

TEST_F(CAAnimationTest, showsAGroupsLastMomentWhenItFills)
{
    auto group = kept(make<CAAnimationGroup>());
    group->animations = { basic("opacity", 0.0, 0.5, 0) }; // without a duration: the group's
    group->duration = 2;
    run(group);
    EXPECT_NEAR(at(1), 0.25, near);
    frame(20);
    EXPECT_NEAR(at(10), 0.5, near);
}

TEST_F(CAAnimationTest, composesInTheOrderAdded)
{
    layer->setPosition({ 10, 20 });
    layer->addAnimation(basic("position", CGPoint { 100, 100 }, CGPoint { 200, 200 }), "whole");
    layer->addAnimation(basic("position.y", 0.0, 10.0), "part");
    auto shake = basic("position.x", -4.0, 4.0);
    shake->additive = true;
    layer->addAnimation(shake, "added");
    frame(10);
    EXPECT_EQ(point(*layer, "position", 10.75), (CGPoint { 177, 7.5 }));
    EXPECT_EQ(layer->presentationFrame(10.75), (CGRect { 172, 2.5, 10, 10 }));
    EXPECT_EQ(layer->animationKeys(), (std::vector<std::string> { "whole", "part", "added" }));
}

TEST_F(CAAnimationTest, replacesPartsOfATransform)
{
    layer->setTransform(CGAffineTransform::scale(2, 3).then(CGAffineTransform::translation(5, 6)));
    run(basic("transform.rotation", 0.0, pi), "turn");
    auto shown = std::get<CGAffineTransform>(layer->presentationValue("transform", 10.5));
    EXPECT_TRUE(isNear(shown, { 0, 2, -3, 0, 5, 6 }));
    run(basic("transform.scale", 0.0, 1.0), "grow");
    shown = std::get<CGAffineTransform>(layer->presentationValue("transform", 10));
    EXPECT_EQ(shown.determinant(), 0);
    EXPECT_EQ(shown.ty, 6);
    run(basic("transform.translation.x", 0.0, 50.0), "turn"); // in place of the rotation
    shown = std::get<CGAffineTransform>(layer->presentationValue("transform", 10.5));
    EXPECT_EQ(shown, (CGAffineTransform { 0.5, 0, 0, 0.5, 25, 6 }));
}

TEST_F(CAAnimationTest, interpolatesTransformsByTheirParts)
{
    struct Case {
        const char* why;
        CGAffineTransform from, to, half;
    };
    const Case cases[] = {
        { "a turn keeps its size", CGAffineTransform {}, CGAffineTransform::rotation(pi / 2),
            CGAffineTransform::rotation(pi / 4) },
        { "the short way round", CGAffineTransform::rotation(0.9 * pi), CGAffineTransform::rotation(-0.9 * pi),
            CGAffineTransform::rotation(pi) },
        { "a mirroring does not turn", CGAffineTransform::scale(-1, 1), CGAffineTransform {}, CGAffineTransform::scale(0, 1) },
        { "all at once", CGAffineTransform {}, CGAffineTransform::scale(3, 3).then(CGAffineTransform::translation(10, 20)),
            CGAffineTransform::scale(2, 2).then(CGAffineTransform::translation(5, 10)) },
        { "a skew", CGAffineTransform {}, { 1, 0, 2, 1, 0, 0 }, { 1, 0, 1, 1, 0, 0 } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        run(basic("transform", c.from, c.to));
        const auto shown = std::get<CGAffineTransform>(layer->presentationValue("transform", 10.5));
        EXPECT_TRUE(isNear(shown, c.half));
    }
}

TEST_F(CAAnimationTest, fadesColours)
{
    layer->setBackgroundColor(std::nullopt);
    run(basic("backgroundColor", {}, CGColor { 1, 0.5, 0, 1 }));
    EXPECT_EQ(std::get<CGColor>(layer->presentationValue("backgroundColor", 10.5)), (CGColor { 1, 0.5, 0, 0.5 }))
        << "a colour that is not there is the clear one of the same shade";
    run(basic("backgroundColor", CGColor { 0, 0, 0, 1 }, CGColor { 1, 1, 1, 0 }));
    EXPECT_EQ(std::get<CGColor>(layer->presentationValue("backgroundColor", 10.25)), (CGColor { 0.25, 0.25, 0.25, 0.75 }));
}

TEST_F(CAAnimationTest, keepsAGradientsNewColoursUntilReplaced)
{
    const CGColor black { 0, 0, 0, 1 }, white { 1, 1, 1, 1 }, gray { 0.5, 0.5, 0.5, 1 };
    const auto gradient = add<CAGradientLayer>({ 0, 0, 10, 10 });
    gradient->setColors({ black, black });
    const auto change = [&](std::vector<CGColor> colors) {
        gradient->addAnimation(kept(basic("colors", {}, std::move(colors), 0.25)), "colorChange");
    };
    const auto shown = [&](double time) { return std::get<std::vector<CGColor>>(gradient->presentationValue("colors", time)); };
    change({ white, white });
    frame(10);
    EXPECT_EQ(shown(10.125), (std::vector { gray, gray }));
    frame(100);
    EXPECT_EQ(shown(100), (std::vector { white, white })) << "stays though it has ended";
    EXPECT_EQ(gradient->colors(), (std::vector { black, black })) << "the model's are left alone";
    change({ white, black, white });
    frame(101);
    EXPECT_EQ(shown(101.1), (std::vector { white, black, white })) << "two colours cannot become three: at once";
}

TEST_F(CAAnimationTest, bendsPathsThatAreBuiltAlike)
{
    const auto shape = add<CAShapeLayer>({ 0, 0, 10, 10 });
    const auto small = CGPath::rect({ 0, 0, 10, 10 }), large = CGPath::rect({ 0, 0, 30, 10 }),
               round = CGPath::roundedRect({ 0, 0, 30, 10 }, 4);
    const auto shown
        = [&](double time) { return std::get<std::shared_ptr<const CGPath>>(shape->presentationValue("path", time)); };
    shape->addAnimation(basic("path", small, large), "path");
    frame(10);
    EXPECT_EQ(*shown(10.5), *CGPath::rect({ 0, 0, 20, 10 }));
    shape->addAnimation(basic("path", small, round), "path");
    frame(11);
    EXPECT_EQ(shown(11.5), round);
}

TEST_F(CAAnimationTest, runsWithoutEffectWhatItCannotUnderstand)
{
    const std::shared_ptr<CAAnimation> cases[] = {
        basic("opacty", 0.0, 1.0),
        basic("opacity", CGPoint { 0, 0 }, CGPoint { 1, 1 }),
        basic("bounds", CGColor { 0, 0, 0, 0 }, CGColor { 1, 1, 1, 1 }),
        basic("opacity", std::nan(""), 1.0),
        basic("contents", 0.0, 1.0),
        keyframes("opacity", {}),
    };
    for (const auto& animation : cases) {
        LogCapture log;
        bool ended = false;
        animation->onStop = [&](bool) { ended = true; };
        run(animation);
        EXPECT_EQ(at(0.5), 1);
        frame(11);
        EXPECT_TRUE(ended);
        EXPECT_EQ(log.lines().size(), 1u);
    }
}

TEST_F(CAAnimationTest, copiesWhatIsAdded)
{
    const auto animation = basic("opacity", 0.0, 1.0, 2);
    run(animation);
    animation->toValue = 0.0;
    animation->duration = 9;
    EXPECT_NEAR(at(1), 0.5, near);
    EXPECT_EQ(layer->animation("test")->duration, 2);
    EXPECT_EQ(layer->animation("other"), nullptr);
}

} // namespace platform
