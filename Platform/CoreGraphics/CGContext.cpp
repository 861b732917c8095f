#include "Platform/CoreGraphics/CGContext.h"

#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/CoreGraphics/Ramp.h"
#include "Platform/CoreGraphics/Text/TextDrawing.h"

#include <array>
#include <cairo.h>
#include <cstring>

namespace platform {
namespace {
struct Destroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};
using Surface = std::unique_ptr<cairo_surface_t, Destroy>;
using Context = std::unique_ptr<cairo_t, Destroy>;
using Pattern = std::unique_ptr<cairo_pattern_t, Destroy>;

cairo_format_t formatOf(const Bitmap& bitmap)
{
    switch (bitmap.format()) {
    case PixelFormat::argb:
        return CAIRO_FORMAT_ARGB32;
    case PixelFormat::xrgb:
        return CAIRO_FORMAT_RGB24;
    case PixelFormat::alpha:
        return CAIRO_FORMAT_A8;
    }
    return CAIRO_FORMAT_INVALID;
}

// Cairo reads a source only, but wants it writable.
Surface surfaceOf(const Bitmap& bitmap)
{
    return Surface(cairo_image_surface_create_for_data(
        const_cast<std::uint8_t*>(bitmap.data()), formatOf(bitmap), bitmap.width(), bitmap.height(), bitmap.stride()));
}

cairo_matrix_t matrixOf(const CGAffineTransform& t) { return { t.a, t.b, t.c, t.d, t.tx, t.ty }; }

void addPath(cairo_t* context, const CGPath& path)
{
    cairo_new_path(context);
    for (const auto& [verb, p] : path.elements()) {
        switch (verb) {
        case CGPath::Verb::move:
            cairo_move_to(context, p[2].x, p[2].y);
            break;
        case CGPath::Verb::line:
            cairo_line_to(context, p[2].x, p[2].y);
            break;
        case CGPath::Verb::curve:
            cairo_curve_to(context, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
            break;
        case CGPath::Verb::close:
            cairo_close_path(context);
            break;
        }
    }
}

// Edges on the nearest whole pixels, at least one pixel each way.
PixelRect snapped(const CGRect& pixels)
{
    const auto whole = [](double v) { return int(std::lround(std::clamp(v, -1e6, 1e6))); };
    const int left = whole(pixels.x), top = whole(pixels.y);
    return { left, top, std::max(whole(pixels.maxX()) - left, 1), std::max(whole(pixels.maxY()) - top, 1) };
}

bool isWhole(double v) { return std::abs(v - std::round(v)) < 1.0 / 64; }
bool isFinite(const CGRect& r) { return std::isfinite(r.x + r.y + r.width + r.height); }

// A picture's whole pixels, divided by its points, may give two scales that differ in their last digits.
bool isUprightEnlargement(const CGAffineTransform& m) { return m.isUpright() && m.a > 0 && std::abs(m.a - m.d) <= 1e-9 * m.a; }
}

struct CGContext::Impl {
    struct State {
        PixelRect clip; // pixels that may change; inside it a further clip may hold
        bool clipIsRect; // none does
        double alpha;
    };

    explicit Impl(Bitmap& bitmap)
        : target(bitmap)
        , surface(surfaceOf(bitmap))
        , context(cairo_create(surface.get()))
    {
    }

    State& state() { return states.back(); }
    bool isColored() const { return target.format() != PixelFormat::alpha; }

    void setColor(const CGColor& color)
    {
        cairo_set_source_rgba(context.get(), color.red, color.green, color.blue, color.alpha * state().alpha);
    }

    // Puts a finished picture of device pixels under the present clip. The pixels are the picture's.
    void paint(const Bitmap& picture, int x, int y, double alpha)
    {
        if (state().clipIsRect && isColored()) {
            cairo_surface_flush(surface.get());
            pixels::blendPixels(target, state().clip, picture, x, y, unsigned(std::lround(alpha * 255)));
            cairo_surface_mark_dirty(surface.get());
            return;
        }
        const auto source = surfaceOf(picture);
        cairo_save(context.get());
        cairo_identity_matrix(context.get());
        cairo_set_source_surface(context.get(), source.get(), x, y);
        cairo_pattern_set_filter(cairo_get_source(context.get()), CAIRO_FILTER_NEAREST);
        cairo_paint_with_alpha(context.get(), alpha);
        cairo_restore(context.get());
    }

    // The picture stretched to a rectangle by the transform, whatever that is; with a color, its alpha in that color.
    void stretch(const Bitmap& picture, const CGRect& rect, const std::optional<CGColor>& tint, double alpha)
    {
        const auto source = surfaceOf(picture);
        cairo_t* c = context.get();
        cairo_save(c);
        cairo_rectangle(c, rect.x, rect.y, rect.width, rect.height);
        cairo_clip(c);
        cairo_translate(c, rect.x, rect.y);
        cairo_scale(c, rect.width / picture.width(), rect.height / picture.height());
        const Pattern pattern(cairo_pattern_create_for_surface(source.get()));
        cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_BILINEAR);
        cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
        if (tint) {
            cairo_set_source_rgba(c, tint->red, tint->green, tint->blue, tint->alpha * alpha);
            cairo_mask(c, pattern.get());
        } else {
            cairo_set_source(c, pattern.get());
            cairo_paint_with_alpha(c, alpha);
        }
        cairo_restore(c);
    }

    CGAffineTransform transform() const
    {
        cairo_matrix_t m;
        cairo_get_matrix(context.get(), &m);
        return { m.xx, m.yx, m.xy, m.yy, m.x0, m.y0 };
    }

    Bitmap& target;
    Surface surface;
    Context context;
    std::vector<State> states;
};

CGContext::CGContext(Bitmap& target, const CGAffineTransform& toPixels)
    : impl(std::make_unique<Impl>(target))
{
    impl->states.push_back({ target.bounds(), true, 1 });
    concat(toPixels);
}

CGContext::~CGContext() { cairo_surface_flush(impl->surface.get()); }

void CGContext::save()
{
    cairo_save(impl->context.get());
    impl->states.push_back(impl->state());
}

void CGContext::restore()
{
    if (impl->states.size() < 2)
        return;
    cairo_restore(impl->context.get());
    impl->states.pop_back();
}

void CGContext::concat(const CGAffineTransform& transform)
{
    // Cairo refuses to go on after a transform without a way back; nothing shows under one, so an empty clip says the same.
    const double determinant = transform.determinant();
    if (determinant == 0 || !std::isfinite(determinant + transform.tx + transform.ty)) {
        cairo_new_path(impl->context.get());
        cairo_clip(impl->context.get());
        impl->state().clip = {};
        return;
    }
    const auto matrix = matrixOf(transform);
    cairo_transform(impl->context.get(), &matrix);
}

CGAffineTransform CGContext::transform() const { return impl->transform(); }

void CGContext::clip(const CGRect& rect)
{
    if (!transform().isUpright() || !isFinite(rect)) {
        clip(*CGPath::rect(rect));
        return;
    }
    auto area = rect.isEmpty() ? PixelRect {} : snapped(transform().apply(rect));
    area = area.intersection(impl->state().clip);
    impl->state().clip = area;
    cairo_t* c = impl->context.get();
    cairo_matrix_t matrix;
    cairo_get_matrix(c, &matrix);
    cairo_identity_matrix(c);
    cairo_new_path(c);
    cairo_rectangle(c, area.x, area.y, area.width, area.height);
    cairo_clip(c);
    cairo_set_matrix(c, &matrix);
}

void CGContext::clip(const CGPath& path)
{
    const auto bounds = PixelRect::around(transform().apply(path.boundingBox()));
    addPath(impl->context.get(), path);
    cairo_clip(impl->context.get());
    impl->state().clip = impl->state().clip.intersection(bounds);
    impl->state().clipIsRect = false;
}

void CGContext::setAlpha(double alpha) { impl->state().alpha = alpha > 0 ? std::min(alpha, 1.0) : 0; }

void CGContext::clear(const CGRect& rect)
{
    cairo_t* c = impl->context.get();
    cairo_set_operator(c, CAIRO_OPERATOR_CLEAR);
    cairo_new_path(c);
    cairo_rectangle(c, rect.x, rect.y, rect.width, rect.height);
    cairo_fill(c);
    cairo_set_operator(c, CAIRO_OPERATOR_OVER);
}

void CGContext::fill(const CGRect& rect, const CGColor& color)
{
    if (rect.isEmpty())
        return;
    impl->setColor(color);
    cairo_new_path(impl->context.get());
    cairo_rectangle(impl->context.get(), rect.x, rect.y, rect.width, rect.height);
    cairo_fill(impl->context.get());
}

void CGContext::fill(const CGPath& path, const CGColor& color, bool evenOdd)
{
    cairo_t* c = impl->context.get();
    impl->setColor(color);
    addPath(c, path);
    cairo_set_fill_rule(c, evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    cairo_fill(c);
    cairo_set_fill_rule(c, CAIRO_FILL_RULE_WINDING);
}

void CGContext::stroke(const CGPath& path, const CGColor& color, CGFloat width, CGLineCap cap, CGLineJoin join,
    const std::vector<CGFloat>& dashes, CGFloat dashPhase)
{
    if (!(width > 0))
        return;
    constexpr cairo_line_cap_t caps[] = { CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_ROUND, CAIRO_LINE_CAP_SQUARE };
    constexpr cairo_line_join_t joins[] = { CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_ROUND, CAIRO_LINE_JOIN_BEVEL };
    // Cairo stops for good at a dash below 0 or at dashes that are all 0.
    bool dashed = false;
    for (const CGFloat dash : dashes)
        dashed = dashed || dash > 0;
    for (const CGFloat dash : dashes)
        dashed = dashed && dash >= 0 && std::isfinite(dash);

    cairo_t* c = impl->context.get();
    impl->setColor(color);
    addPath(c, path);
    cairo_set_line_width(c, width);
    cairo_set_line_cap(c, caps[std::size_t(cap)]);
    cairo_set_line_join(c, joins[std::size_t(join)]);
    cairo_set_dash(c, dashes.data(), dashed ? int(dashes.size()) : 0, dashPhase);
    cairo_stroke(c);
}

void CGContext::drawImage(const CGImage& image, const CGRect& rect, const std::optional<CGColor>& tint)
{
    if (rect.isEmpty() || !isFinite(rect) || impl->state().clip.isEmpty())
        return;
    const auto m = transform();
    const double opacity = impl->state().alpha;
    if (!m.isUpright() || m.a < 0 || m.d < 0) {
        const double width = rect.width * std::hypot(m.a, m.b), height = rect.height * std::hypot(m.c, m.d);
        const auto side = [](double v) { return int(std::clamp(std::ceil(v), 1.0, 8192.0)); };
        if (const auto picture = image.rendered(side(width), side(height)))
            impl->stretch(*picture, rect, tint, opacity);
        return;
    }
    const auto area = snapped(m.apply(rect));
    if (!area.intersects(impl->state().clip))
        return;
    const auto picture = image.rendered(area.width, area.height);
    if (!picture)
        return;
    if (!tint) {
        impl->paint(*picture, area.x, area.y, opacity);
        return;
    }
    const auto source = surfaceOf(*picture);
    cairo_save(impl->context.get());
    cairo_identity_matrix(impl->context.get());
    impl->setColor(*tint);
    cairo_mask_surface(impl->context.get(), source.get(), area.x, area.y);
    cairo_restore(impl->context.get());
}

void CGContext::fillLinearGradient(
    const CGRect& rect, const std::vector<CGColor>& colors, const std::vector<CGFloat>& locations, CGPoint start, CGPoint end)
{
    const auto m = transform();
    const auto box = m.apply(rect);
    const auto area = PixelRect::around(box).intersection(impl->state().clip);
    if (colors.empty() || area.isEmpty())
        return;
    const pixels::Ramp ramp(colors, locations);

    // The position on the ramp is linear in the device pixel, so two steps describe it.
    const auto back = m.inverted();
    const double dx = end.x - start.x, dy = end.y - start.y, squared = dx * dx + dy * dy;
    const auto positionAt = [&](double x, double y) {
        const CGPoint p = back.apply(CGPoint { x, y });
        return squared > 0 ? ((p.x - start.x) * dx + (p.y - start.y) * dy) / squared : 1;
    };
    const double origin = positionAt(area.x + 0.5, area.y + 0.5);
    const double stepX = positionAt(area.x + 1.5, area.y + 0.5) - origin, stepY = positionAt(area.x + 0.5, area.y + 1.5) - origin;

    const bool exact = m.isUpright() && isWhole(box.x) && isWhole(box.y) && isWhole(box.maxX()) && isWhole(box.maxY());
    const bool direct = exact && impl->state().clipIsRect && impl->isColored() && ramp.isOpaque() && impl->state().alpha >= 1;
    const auto own
        = direct ? nullptr : Bitmap::make(area.width, area.height, ramp.isOpaque() ? PixelFormat::xrgb : PixelFormat::argb);
    if (!direct && !own)
        return;
    for (int y = 0; y < area.height; ++y) {
        auto* row = direct ? impl->target.row(area.y + y) + area.x : own->row(y);
        const auto* above = direct ? impl->target.row(area.y + std::max(y - 1, 0)) + area.x : own->row(std::max(y - 1, 0));
        if (y > 0 && stepY == 0)
            std::memcpy(row, above, std::size_t(area.width) * 4);
        else
            ramp.fillRow(row, area.width, origin + y * stepY, stepX);
    }
    if (direct) {
        cairo_surface_mark_dirty(impl->surface.get());
        return;
    }
    if (exact) {
        impl->paint(*own, area.x, area.y, impl->state().alpha);
        return;
    }
    save();
    clip(*CGPath::rect(rect));
    impl->paint(*own, area.x, area.y, impl->state().alpha);
    restore();
}

void CGContext::drawText(const TextLayout& text, CGPoint origin)
{
    auto& state = impl->state();
    if (state.clip.isEmpty() || state.alpha <= 0)
        return;
    const auto m = transform();
    if (isUprightEnlargement(m)) {
        const TextPlacement place { m.apply(origin), m.a, state.alpha };
        if (state.clipIsRect && impl->isColored()) {
            cairo_surface_flush(impl->surface.get());
            platform::drawText(impl->target, state.clip, text, place);
            cairo_surface_mark_dirty(impl->surface.get());
            return;
        }
        const auto bounds = textBounds(text, place).intersection(state.clip);
        const auto layer = Bitmap::make(bounds.width, bounds.height, PixelFormat::argb, true);
        if (!layer)
            return;
        const TextPlacement inLayer { { place.origin.x - bounds.x, place.origin.y - bounds.y }, place.scale, 1 };
        platform::drawText(*layer, layer->bounds(), text, inLayer);
        impl->paint(*layer, bounds.x, bounds.y, state.alpha);
        return;
    }
    // Turned, skewed or mirrored: drawn upright at the same density, then transformed as a picture.
    const double scale = std::sqrt(std::abs(m.determinant()));
    const auto bounds = textBounds(text, { {}, scale, 1 });
    const auto layer = Bitmap::make(bounds.width, bounds.height, PixelFormat::argb, true);
    if (!layer)
        return;
    platform::drawText(*layer, layer->bounds(), text, { { double(-bounds.x), double(-bounds.y) }, scale, 1 });
    const CGRect rect { origin.x + bounds.x / scale, origin.y + bounds.y / scale, bounds.width / scale, bounds.height / scale };
    impl->stretch(*layer, rect, {}, state.alpha);
}

} // namespace platform
