#include "Showroom/Media/Objects.h"

#include <librsvg/rsvg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <stdexcept>
#include <vector>

namespace showroom::media {
namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Pattern = std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)>;

Surface makeSurface(int width, int height)
{
    return { cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height), cairo_surface_destroy };
}

struct Pixels {
    std::uint32_t* data;
    int width;
    int height;

    explicit Pixels(cairo_surface_t* surface)
        : data(reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface)))
        , width(cairo_image_surface_get_width(surface))
        , height(cairo_image_surface_get_height(surface))
    {
    }
};

// The drawing in a square that holds it however it is turned. Drawn upright at twice the size, then turned and scaled down: the
// filters inside these drawings have hard edges and do not work turned.
Surface renderSvg(const std::string& file, double size, double turn)
{
    const std::unique_ptr<RsvgHandle, decltype(&g_object_unref)> handle(
        rsvg_handle_new_from_file(file.c_str(), nullptr), g_object_unref);
    if (!handle)
        throw std::runtime_error("cannot read " + file);
    const double largeSize = std::ceil(2 * size);
    auto large = makeSurface(int(largeSize), int(largeSize));
    std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(large.get()), cairo_destroy);
    const RsvgRectangle viewport { 0, 0, largeSize, largeSize };
    if (!rsvg_handle_render_document(handle.get(), context.get(), &viewport, nullptr))
        throw std::runtime_error("cannot draw " + file);

    const int side = int(std::ceil(turn == 0 ? size : size * std::numbers::sqrt2));
    auto result = makeSurface(side, side);
    context.reset(cairo_create(result.get()));
    cairo_translate(context.get(), side / 2.0, side / 2.0);
    cairo_rotate(context.get(), turn * std::numbers::pi / 180);
    cairo_scale(context.get(), size / largeSize, size / largeSize);
    cairo_set_source_surface(context.get(), large.get(), -largeSize / 2, -largeSize / 2);
    cairo_pattern_set_filter(cairo_get_source(context.get()), CAIRO_FILTER_GOOD);
    cairo_paint(context.get());
    context.reset();
    cairo_surface_flush(result.get());
    return result;
}

// Turns the hue, keeping the lightness; the matrix is that of the hueRotate filter of SVG. Premultiplied pixels stay valid,
// since it is linear.
void turnHue(cairo_surface_t* surface, double degrees)
{
    const double c = std::cos(degrees * std::numbers::pi / 180);
    const double s = std::sin(degrees * std::numbers::pi / 180);
    const std::array<double, 9> m { 0.213 + c * 0.787 - s * 0.213, 0.715 - c * 0.715 - s * 0.715, 0.072 - c * 0.072 + s * 0.928,
        0.213 - c * 0.213 + s * 0.143, 0.715 + c * 0.285 + s * 0.140, 0.072 - c * 0.072 - s * 0.283,
        0.213 - c * 0.213 - s * 0.787, 0.715 - c * 0.715 + s * 0.715, 0.072 + c * 0.928 + s * 0.072 };
    const Pixels pixels(surface);
    for (int i = 0; i < pixels.width * pixels.height; ++i) {
        const std::uint32_t p = pixels.data[i];
        const std::uint32_t alpha = p >> 24;
        const double rgb[] = { double(p >> 16 & 255), double(p >> 8 & 255), double(p & 255) };
        std::uint32_t turned = alpha << 24;
        for (int row = 0; row < 3; ++row) {
            const double value
                = m[std::size_t(3 * row)] * rgb[0] + m[std::size_t(3 * row + 1)] * rgb[1] + m[std::size_t(3 * row + 2)] * rgb[2];
            turned |= std::uint32_t(std::clamp(value, 0.0, double(alpha))) << (16 - 8 * row);
        }
        pixels.data[i] = turned;
    }
    cairo_surface_mark_dirty(surface);
}

// The mean of each value and its neighbours within `radius`, along one line whose values lie `step` apart.
void blurLine(std::uint8_t* line, int count, int step, int radius, std::vector<std::uint8_t>& copy)
{
    for (int i = 0; i < count; ++i)
        copy[std::size_t(i)] = line[i * step];
    int sum = 0;
    for (int i = -radius; i < count + radius; ++i) {
        sum += i + radius < count ? copy[std::size_t(std::max(i + radius, 0))] * (i + radius >= 0) : 0;
        sum -= i - radius - 1 >= 0 && i - radius - 1 < count ? copy[std::size_t(i - radius - 1)] : 0;
        if (i >= 0 && i < count)
            line[i * step] = std::uint8_t(sum / (2 * radius + 1));
    }
}

// The object's outline, blurred: three box blurs come close to a Gaussian.
Surface makeShadow(cairo_surface_t* object, int radius)
{
    const int margin = 3 * radius;
    const Pixels source(object);
    Surface mask(cairo_image_surface_create(CAIRO_FORMAT_A8, source.width + 2 * margin, source.height + 2 * margin),
        cairo_surface_destroy);
    std::uint8_t* data = cairo_image_surface_get_data(mask.get());
    const int stride = cairo_image_surface_get_stride(mask.get());
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x)
            data[(y + margin) * stride + x + margin] = std::uint8_t(source.data[y * source.width + x] >> 24);
    }
    const int width = source.width + 2 * margin;
    const int height = source.height + 2 * margin;
    std::vector<std::uint8_t> copy(std::size_t(std::max(width, height)));
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < height; ++y)
            blurLine(data + y * stride, width, 1, radius, copy);
        for (int x = 0; x < width; ++x)
            blurLine(data + x, height, stride, radius, copy);
    }
    cairo_surface_mark_dirty(mask.get());
    return mask;
}

struct Extent {
    int left;
    int right;
    int bottom;
};

Extent visibleExtent(cairo_surface_t* surface)
{
    const Pixels pixels(surface);
    Extent extent { pixels.width, 0, 0 };
    for (int y = 0; y < pixels.height; ++y) {
        for (int x = 0; x < pixels.width; ++x) {
            if (pixels.data[y * pixels.width + x] >> 24 > 40) {
                extent.left = std::min(extent.left, x);
                extent.right = std::max(extent.right, x + 1);
                extent.bottom = y + 1;
            }
        }
    }
    return extent;
}

void drawFloorShadow(cairo_t* context, double x, double y, double halfWidth)
{
    const Pattern shade(cairo_pattern_create_radial(0, 0, 0, 0, 0, 1), cairo_pattern_destroy);
    cairo_pattern_add_color_stop_rgba(shade.get(), 0, 0.10, 0.06, 0.10, 0.42);
    cairo_pattern_add_color_stop_rgba(shade.get(), 0.55, 0.10, 0.06, 0.10, 0.20);
    cairo_pattern_add_color_stop_rgba(shade.get(), 1, 0.10, 0.06, 0.10, 0);
    cairo_save(context);
    cairo_translate(context, x, y);
    cairo_scale(context, halfWidth * 1.2, halfWidth * 0.16);
    cairo_set_source(context, shade.get());
    cairo_arc(context, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_fill(context);
    cairo_restore(context);
}

} // namespace

void drawObject(const Picture& picture, const std::string& svgFile, const Placement& placement)
{
    const auto object = renderSvg(svgFile, placement.size, placement.turn);
    if (placement.hue != 0)
        turnHue(object.get(), placement.hue);
    const Extent extent = visibleExtent(object.get());
    const int radius = std::max(2, int(placement.size / 26));
    const auto shadow = makeShadow(object.get(), radius);

    cairo_t* context = picture.context();
    if (!placement.floats)
        drawFloorShadow(context, placement.x, placement.y - placement.size * 0.01, (extent.right - extent.left) / 2.0);
    const double left = std::round(placement.x - (extent.left + extent.right) / 2.0);
    const double top = std::round(placement.y - extent.bottom);
    cairo_set_source_rgba(context, 0.14, 0.08, 0.14, 0.30);
    cairo_mask_surface(context, shadow.get(), left - 3 * radius, top - 3 * radius + placement.size * 0.035);
    cairo_set_source_surface(context, object.get(), left, top);
    cairo_paint(context);
}

void drawShoulders(const Picture& picture, const Placement& placement, const Color& skin, const Color& shirt)
{
    cairo_t* context = picture.context();
    cairo_save(context);
    cairo_translate(context, placement.x, placement.y);
    cairo_scale(context, placement.size, placement.size);

    // The shirt: a dome from shoulder to shoulder, lighter on the left, where the light comes from.
    const Pattern cloth(cairo_pattern_create_linear(-0.5, -0.4, 0.4, 0), cairo_pattern_destroy);
    const Color light = shirt.mixedWith({ 1, 1, 1 }, 0.18);
    const Color dark = shirt.mixedWith({ 0.1, 0.05, 0.2 }, 0.25);
    cairo_pattern_add_color_stop_rgb(cloth.get(), 0, light.red, light.green, light.blue);
    cairo_pattern_add_color_stop_rgb(cloth.get(), 0.45, shirt.red, shirt.green, shirt.blue);
    cairo_pattern_add_color_stop_rgb(cloth.get(), 1, dark.red, dark.green, dark.blue);
    cairo_move_to(context, -0.5, 0);
    cairo_curve_to(context, -0.5, -0.24, -0.34, -0.34, -0.12, -0.37);
    cairo_line_to(context, 0.12, -0.37);
    cairo_curve_to(context, 0.34, -0.34, 0.5, -0.24, 0.5, 0);
    cairo_close_path(context);
    cairo_set_source(context, cloth.get());
    cairo_fill(context);

    // The neck, in the head's shadow.
    const Color shaded = skin.mixedWith({ 0.15, 0.05, 0.1 }, 0.22);
    cairo_set_source_rgb(context, shaded.red, shaded.green, shaded.blue);
    cairo_move_to(context, -0.12, -0.5);
    cairo_line_to(context, -0.13, -0.365);
    cairo_curve_to(context, -0.09, -0.25, 0.09, -0.25, 0.13, -0.365);
    cairo_line_to(context, 0.12, -0.5);
    cairo_close_path(context);
    cairo_fill(context);
    cairo_restore(context);
}

} // namespace showroom::media
