#include "Platform/CoreGraphics/CGPath.h"

#include <gtest/gtest.h>
#include <numbers>

namespace platform {
namespace {
constexpr double pi = std::numbers::pi;

CGPath circle(double radius)
{
    CGPath path;
    path.addEllipse({ -radius, -radius, 2 * radius, 2 * radius });
    return path;
}
}

TEST(CGPath, measuresLinesCurvesAndClosingLines)
{
    CGPath triangle;
    triangle.moveTo({ 0, 0 });
    triangle.lineTo({ 30, 0 });
    triangle.lineTo({ 30, 40 });
    EXPECT_DOUBLE_EQ(triangle.length(), 70);
    triangle.close();
    EXPECT_DOUBLE_EQ(triangle.length(), 120);
    EXPECT_NEAR(circle(50).length(), 100 * pi, 0.1);
    EXPECT_NEAR(CGPath::roundedRect({ 0, 0, 100, 60 }, 10)->length(), 2 * 80 + 2 * 40 + 20 * pi, 0.05);
    EXPECT_EQ(CGPath().length(), 0);
}

TEST(CGPath, trimmingCutsTheAskedShareOfTheLength)
{
    CGPath two; // two subpaths: a line of 60 and a circle
    two.moveTo({ 200, 0 });
    two.lineTo({ 260, 0 });
    two.addPath(circle(20));
    const CGPath paths[] = { circle(20), *CGPath::roundedRect({ 0, 0, 100, 60 }, 30), *CGPath::rect({ 5, 5, 10, 90 }), two };
    for (const auto& path : paths) {
        for (const auto& [from, to] :
            { std::pair { 0.0, 0.5 }, { 0.25, 0.75 }, { 0.9, 1.0 }, { 0.0, 0.001 }, { 0.3, 0.3 }, { 0.0, 1.0 } }) {
            const auto piece = path.trimmed(from, to);
            EXPECT_NEAR(piece.length(), path.length() * (to - from), 0.02) << from << " to " << to;
            if (to > from) {
                EXPECT_NEAR(piece.pointAt(0).x, path.pointAt(from).x, 0.05) << from << " to " << to;
                EXPECT_NEAR(piece.pointAt(1).y, path.pointAt(to).y, 0.05) << from << " to " << to;
            }
        }
    }
    EXPECT_TRUE(circle(20).trimmed(0.7, 0.2).isEmpty());
    EXPECT_EQ(circle(20).trimmed(-1, 2), circle(20));
    EXPECT_TRUE(circle(20).trimmed(NAN, NAN).isEmpty());
}

TEST(CGPath, findsPointsByTravelledDistance)
{
    CGPath path; // a slow curve: its parameter is far from its length
    path.moveTo({ 0, 0 });
    path.curveTo({ 0, 0 }, { 0, 0 }, { 90, 0 });
    for (const double part : { 0.0, 0.1, 0.5, 0.9, 1.0 })
        EXPECT_NEAR(path.pointAt(part).x, 90 * part, 0.2) << part;
    EXPECT_NEAR(CGPath::rect({ 0, 0, 10, 10 })->pointAt(0.625).x, 5, 1e-9);
    EXPECT_EQ(CGPath().pointAt(0.5), CGPoint {});
}

TEST(CGPath, knowsWhatLiesInside)
{
    const auto round = circle(50);
    EXPECT_TRUE(round.contains({ 34, 34 })); // 48.1 from the centre
    EXPECT_FALSE(round.contains({ 36, 36 })); // 50.9
    CGPath open; // counts as closed
    open.moveTo({ 0, 0 });
    open.lineTo({ 10, 0 });
    open.lineTo({ 10, 10 });
    open.addRect({ 20, 0, 10, 10 });
    EXPECT_TRUE(open.contains({ 8, 4 }));
    EXPECT_FALSE(open.contains({ 2, 4 }));
    EXPECT_TRUE(open.contains({ 25, 5 }));
    EXPECT_FALSE(open.contains({ 15, 5 }));
    CGPath ring; // the inner circle runs the other way
    ring.addEllipse({ -50, -50, 100, 100 });
    ring.addPath(circle(20), CGAffineTransform::scale(-1, 1));
    EXPECT_FALSE(ring.contains({ 0, 0 }));
    EXPECT_TRUE(ring.contains({ 0, 30 }));
}

TEST(CGPath, arcsGoTheAskedWayRound)
{
    struct Case {
        double start, end;
        bool clockwise;
        double sweep;
    };
    const Case cases[]
        = { { 0, pi / 2, true, pi / 2 }, { 0, pi / 2, false, 3 * pi / 2 }, { pi, 0, true, pi }, { 0, 2 * pi, true, 2 * pi },
              { -pi / 2, 1.5 * pi, true, 2 * pi }, { 0, 7 * pi, true, 2 * pi }, { pi / 2, 0, false, pi / 2 } };
    for (const auto& c : cases) {
        CGPath path;
        path.addArc({ 100, 100 }, 40, c.start, c.end, c.clockwise);
        EXPECT_NEAR(path.length(), 40 * c.sweep, 0.1) << c.start << " to " << c.end;
        EXPECT_NEAR(path.pointAt(0).x, 100 + 40 * std::cos(c.start), 1e-9);
        EXPECT_NEAR(path.pointAt(1).y, 100 + 40 * std::sin(c.end), 1e-6);
    }
    CGPath down; // a quarter clockwise from the right passes below: y grows downwards
    down.addArc({ 0, 0 }, 10, 0, pi / 2, true);
    EXPECT_GT(down.pointAt(0.5).y, 5);
}

TEST(CGPath, cutsRadiiToTheRectangle)
{
    EXPECT_EQ(*CGPath::roundedRect({ 0, 0, 40, 20 }, 500), *CGPath::roundedRect({ 0, 0, 40, 20 }, 10));
    EXPECT_EQ(*CGPath::roundedRect({ 0, 0, 40, 20 }, -3), *CGPath::rect({ 0, 0, 40, 20 }));
    EXPECT_EQ(CGPath::roundedRect({ 3, 4, 40, 20 }, 10)->boundingBox(), (CGRect { 3, 4, 40, 20 }));
    EXPECT_EQ(CGPath().boundingBox(), CGRect {});
}

} // namespace platform
