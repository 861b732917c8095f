#include "Platform/CoreGraphics/CGPath.h"

#include <numbers>
#include <optional>

namespace platform {
namespace {
constexpr double tolerance = 0.02; // points: how far a chord may lie from its curve; a sixteenth of a pixel at 3x
constexpr double quarterCircle = 0.5522847498307936; // 4/3 (sqrt 2 - 1): control distance of a quarter circle of radius 1

CGPoint between(CGPoint a, CGPoint b, double t) { return { a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t }; }
double distance(CGPoint a, CGPoint b) { return std::hypot(b.x - a.x, b.y - a.y); }

struct Cubic {
    CGPoint p0, p1, p2, p3;

    CGPoint at(double t) const
    {
        const double u = 1 - t, a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
        return { a * p0.x + b * p1.x + c * p2.x + d * p3.x, a * p0.y + b * p1.y + c * p2.y + d * p3.y };
    }
    // Chords that stay within the tolerance: the second differences bound the deviation (n^2 = d / (8 tolerance) * 6).
    int chords() const
    {
        const auto second = [](CGPoint a, CGPoint b, CGPoint c) { return std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y); };
        const double deviation = std::max(second(p0, p1, p2), second(p1, p2, p3));
        const double wanted = std::sqrt(deviation * 0.75 / tolerance);
        return std::isfinite(wanted) ? std::clamp(int(std::ceil(wanted)), 1, 200) : 1;
    }
    // The piece from t0 to t1, by de Casteljau's cuts.
    Cubic piece(double t0, double t1) const
    {
        const Cubic head = upTo(t1);
        return t1 > 0 ? head.from(t0 / t1) : Cubic { p0, p0, p0, p0 };
    }
    Cubic upTo(double t) const
    {
        const CGPoint a = between(p0, p1, t), b = between(p1, p2, t), c = between(p2, p3, t);
        const CGPoint d = between(a, b, t), e = between(b, c, t);
        return { p0, a, d, between(d, e, t) };
    }
    Cubic from(double t) const
    {
        const Cubic back = Cubic { p3, p2, p1, p0 }.upTo(1 - t);
        return { back.p3, back.p2, back.p1, back.p0 };
    }
};

// One element that has a length. Walking gives every one of them, closing lines included.
struct Segment {
    CGPath::Verb verb; // line or curve
    Cubic curve; // a line uses p0 and p3
    bool beginsSubpath;
    std::vector<double> chordEnds; // a curve's travelled length after each chord

    double length() const { return verb == CGPath::Verb::curve ? chordEnds.back() : distance(curve.p0, curve.p3); }
    // The curve's parameter after that many points of way.
    double parameterAt(double way) const
    {
        if (verb == CGPath::Verb::line)
            return length() > 0 ? std::clamp(way / length(), 0.0, 1.0) : 0;
        const auto end = std::lower_bound(chordEnds.begin(), chordEnds.end(), way);
        if (end == chordEnds.end())
            return 1;
        const double before = end == chordEnds.begin() ? 0 : *(end - 1);
        const double part = *end > before ? (way - before) / (*end - before) : 0;
        return (double(end - chordEnds.begin()) + part) / double(chordEnds.size());
    }
    CGPoint at(double t) const { return verb == CGPath::Verb::line ? between(curve.p0, curve.p3, t) : curve.at(t); }
};

Segment lineSegment(CGPoint from, CGPoint to, bool begins) { return { CGPath::Verb::line, { from, from, to, to }, begins, {} }; }

Segment curveSegment(const Cubic& curve, bool begins)
{
    Segment segment { CGPath::Verb::curve, curve, begins, {} };
    const int chords = curve.chords();
    CGPoint last = curve.p0;
    double way = 0;
    for (int i = 1; i <= chords; ++i) {
        const CGPoint next = curve.at(double(i) / chords);
        way += distance(last, next);
        segment.chordEnds.push_back(way);
        last = next;
    }
    return segment;
}

std::vector<Segment> segmentsOf(const std::vector<CGPath::Element>& elements)
{
    std::vector<Segment> segments;
    CGPoint start, current;
    bool begins = true;
    for (const auto& element : elements) {
        const CGPoint end = element.verb == CGPath::Verb::close ? start : element.points[2];
        switch (element.verb) {
        case CGPath::Verb::move:
            start = end;
            break;
        case CGPath::Verb::line:
        case CGPath::Verb::close:
            segments.push_back(lineSegment(current, end, begins));
            break;
        case CGPath::Verb::curve:
            segments.push_back(curveSegment({ current, element.points[0], element.points[1], end }, begins));
            break;
        }
        begins = element.verb == CGPath::Verb::move || element.verb == CGPath::Verb::close;
        current = end;
    }
    return segments;
}

double lengthOf(const std::vector<Segment>& segments)
{
    double sum = 0;
    for (const auto& segment : segments)
        sum += segment.length();
    return sum;
}

// How often the line from a to b winds around the point: +1, -1 or 0 (half-open in y, so that corners count once).
int winding(CGPoint a, CGPoint b, CGPoint p)
{
    const double side = (b.x - a.x) * (p.y - a.y) - (p.x - a.x) * (b.y - a.y);
    if (a.y <= p.y)
        return b.y > p.y && side > 0 ? 1 : 0;
    return b.y <= p.y && side < 0 ? -1 : 0;
}
}

void CGPath::moveTo(CGPoint p) { elements_.push_back({ Verb::move, { {}, {}, p } }); }

void CGPath::lineTo(CGPoint p) { elements_.push_back({ isEmpty() ? Verb::move : Verb::line, { {}, {}, p } }); }

void CGPath::quadTo(CGPoint control, CGPoint end)
{
    if (isEmpty())
        moveTo(control);
    const CGPoint from = currentPoint();
    curveTo(between(from, control, 2.0 / 3), between(end, control, 2.0 / 3), end);
}

void CGPath::curveTo(CGPoint control1, CGPoint control2, CGPoint end)
{
    if (isEmpty())
        moveTo(control1);
    elements_.push_back({ Verb::curve, { control1, control2, end } });
}

void CGPath::close()
{
    if (!isEmpty() && elements_.back().verb != Verb::close)
        elements_.push_back({ Verb::close, {} });
}

void CGPath::addRect(const CGRect& rect)
{
    moveTo(rect.origin());
    lineTo({ rect.maxX(), rect.y });
    lineTo({ rect.maxX(), rect.maxY() });
    lineTo({ rect.x, rect.maxY() });
    close();
}

void CGPath::addEllipse(const CGRect& box) { addCorners(box, box.width / 2, box.height / 2); }

void CGPath::addRoundedRect(const CGRect& rect, CGFloat radius)
{
    const CGFloat cut = std::min({ radius, rect.width / 2, rect.height / 2 });
    if (cut > 0)
        addCorners(rect, cut, cut);
    else
        addRect(rect);
}

void CGPath::addCorners(const CGRect& r, CGFloat rx, CGFloat ry)
{
    const CGFloat kx = rx * (1 - quarterCircle), ky = ry * (1 - quarterCircle); // from the corner to the control point
    moveTo({ r.x + rx, r.y });
    lineTo({ r.maxX() - rx, r.y });
    curveTo({ r.maxX() - kx, r.y }, { r.maxX(), r.y + ky }, { r.maxX(), r.y + ry });
    lineTo({ r.maxX(), r.maxY() - ry });
    curveTo({ r.maxX(), r.maxY() - ky }, { r.maxX() - kx, r.maxY() }, { r.maxX() - rx, r.maxY() });
    lineTo({ r.x + rx, r.maxY() });
    curveTo({ r.x + kx, r.maxY() }, { r.x, r.maxY() - ky }, { r.x, r.maxY() - ry });
    lineTo({ r.x, r.y + ry });
    curveTo({ r.x, r.y + ky }, { r.x + kx, r.y }, { r.x + rx, r.y });
    close();
}

void CGPath::addArc(CGPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise)
{
    constexpr double turn = 2 * std::numbers::pi;
    double sweep = endAngle - startAngle;
    if (!std::isfinite(sweep))
        return;
    // A whole turn or more in the asked direction is one circle; anything else ends at the end angle by the asked way round.
    if (std::abs(sweep) >= turn && (sweep > 0) == clockwise)
        sweep = clockwise ? turn : -turn;
    else if (clockwise && sweep < 0)
        sweep = std::fmod(sweep, turn) + turn;
    else if (!clockwise && sweep > 0)
        sweep = std::fmod(sweep, turn) - turn;

    const auto on = [&](double angle) {
        return CGPoint { center.x + radius * std::cos(angle), center.y + radius * std::sin(angle) };
    };
    isEmpty() ? moveTo(on(startAngle)) : lineTo(on(startAngle));
    const int pieces = std::max(int(std::ceil(std::abs(sweep) / (std::numbers::pi / 2) - 1e-9)), 1);
    const double step = sweep / pieces, reach = 4.0 / 3 * std::tan(step / 4) * radius;
    for (int i = 0; i < pieces; ++i) {
        const double a = startAngle + step * i, b = a + step;
        const CGPoint from = on(a), to = on(b);
        curveTo({ from.x - reach * std::sin(a), from.y + reach * std::cos(a) },
            { to.x + reach * std::sin(b), to.y - reach * std::cos(b) }, to);
    }
}

void CGPath::addPath(const CGPath& other, const CGAffineTransform& transform)
{
    for (Element element : std::vector<Element>(other.elements_)) {
        for (auto& point : element.points)
            point = transform.apply(point);
        elements_.push_back(element);
    }
}

std::shared_ptr<const CGPath> CGPath::rect(const CGRect& rect)
{
    auto path = std::make_shared<CGPath>();
    path->addRect(rect);
    return path;
}

std::shared_ptr<const CGPath> CGPath::roundedRect(const CGRect& rect, CGFloat radius)
{
    auto path = std::make_shared<CGPath>();
    path->addRoundedRect(rect, radius);
    return path;
}

CGRect CGPath::boundingBox() const
{
    std::optional<CGPoint> low, high;
    for (const auto& element : elements_) {
        if (element.verb == Verb::close)
            continue;
        for (int i = element.verb == Verb::curve ? 0 : 2; i < 3; ++i) {
            const CGPoint p = element.points[i];
            low = low ? CGPoint { std::min(low->x, p.x), std::min(low->y, p.y) } : p;
            high = high ? CGPoint { std::max(high->x, p.x), std::max(high->y, p.y) } : p;
        }
    }
    return low ? CGRect { low->x, low->y, high->x - low->x, high->y - low->y } : CGRect {};
}

bool CGPath::contains(CGPoint p) const
{
    int count = 0;
    CGPoint start, last;
    for (const auto& segment : segmentsOf(elements_)) {
        if (segment.beginsSubpath) {
            count += winding(last, start, p); // an open shape counts as closed
            start = segment.curve.p0;
        }
        CGPoint from = segment.curve.p0;
        const auto chords = std::max(segment.chordEnds.size(), std::size_t(1));
        for (std::size_t i = 1; i <= chords; ++i) {
            const CGPoint to = i == chords ? segment.curve.p3 : segment.at(double(i) / double(chords));
            count += winding(from, to, p);
            from = to;
        }
        last = segment.curve.p3;
    }
    return count + winding(last, start, p) != 0;
}

CGFloat CGPath::length() const { return lengthOf(segmentsOf(elements_)); }

CGPath CGPath::trimmed(CGFloat from, CGFloat to) const
{
    const auto unit = [](CGFloat v) { return v > 0 ? std::min(v, 1.0) : 0.0; };
    if (unit(from) <= 0 && unit(to) >= 1)
        return *this;
    const auto segments = segmentsOf(elements_);
    const double whole = lengthOf(segments), begin = unit(from) * whole, end = unit(to) * whole;
    CGPath result;
    double way = 0;
    bool connected = false; // the last piece reaches the next segment's start
    for (const auto& segment : segments) {
        const double length = segment.length(), next = way + length;
        connected = connected && !segment.beginsSubpath;
        if (length > 0 && next > begin && way < end) {
            const double t0 = segment.parameterAt(begin - way), t1 = next <= end ? 1 : segment.parameterAt(end - way);
            const double start = begin > way ? t0 : 0;
            if (!connected)
                result.moveTo(segment.at(start));
            const Cubic piece = segment.curve.piece(start, t1);
            if (segment.verb == Verb::curve)
                result.curveTo(piece.p1, piece.p2, piece.p3);
            else
                result.lineTo(segment.at(t1));
            connected = true;
        }
        way = next;
    }
    return result;
}

CGPoint CGPath::pointAt(CGFloat fraction) const
{
    const auto segments = segmentsOf(elements_);
    if (segments.empty())
        return isEmpty() ? CGPoint {} : elements_.back().points[2];
    double rest = std::clamp(fraction, 0.0, 1.0) * lengthOf(segments);
    for (const auto& segment : segments) {
        if (rest <= segment.length())
            return segment.at(segment.parameterAt(rest));
        rest -= segment.length();
    }
    return segments.back().curve.p3;
}

CGPoint CGPath::currentPoint() const
{
    if (elements_.back().verb != Verb::close)
        return elements_.back().points[2];
    const auto start = std::find_if(elements_.rbegin(), elements_.rend(), [](const Element& e) { return e.verb == Verb::move; });
    return start->points[2];
}

} // namespace platform
