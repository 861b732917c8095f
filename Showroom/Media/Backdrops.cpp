#include "Showroom/Media/Backdrops.h"

#include <cairo.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

namespace showroom::media {
namespace {

constexpr double fullTurn = 2 * std::numbers::pi;
constexpr Color white { 1, 1, 1 };

// A few words on top of the drawing library, so that the scenes below read as scenes.
class Brush {
public:
    explicit Brush(const Picture& picture)
        : context(picture.context())
        , width(picture.width())
        , height(picture.height())
    {
    }

    void fill(const Color& color, double alpha = 1)
    {
        cairo_set_source_rgba(context, color.red, color.green, color.blue, alpha);
        cairo_fill(context);
    }
    // Fills the path with a run of colour from one point to the other.
    void fill(
        const Color& from, const Color& to, double x0, double y0, double x1, double y1, double fromAlpha = 1, double toAlpha = 1)
    {
        fillWith(cairo_pattern_create_linear(x0, y0, x1, y1), from, to, fromAlpha, toAlpha);
    }
    void wholePicture(const Color& from, const Color& to)
    {
        cairo_rectangle(context, 0, 0, width, height);
        fill(from, to, 0, 0, width * 0.8, height);
    }
    void rectangle(double x, double y, double w, double h) { cairo_rectangle(context, x, y, w, h); }
    void circle(double x, double y, double radius)
    {
        cairo_new_sub_path(context);
        cairo_arc(context, x, y, radius, 0, fullTurn);
    }
    void ellipse(double x, double y, double rx, double ry)
    {
        cairo_save(context);
        cairo_translate(context, x, y);
        cairo_scale(context, rx, ry);
        circle(0, 0, 1);
        cairo_restore(context);
    }
    void roundedRectangle(double x, double y, double w, double h, double r)
    {
        cairo_new_sub_path(context);
        cairo_arc(context, x + w - r, y + r, r, -fullTurn / 4, 0);
        cairo_arc(context, x + w - r, y + h - r, r, 0, fullTurn / 4);
        cairo_arc(context, x + r, y + h - r, r, fullTurn / 4, fullTurn / 2);
        cairo_arc(context, x + r, y + r, r, fullTurn / 2, fullTurn * 3 / 4);
        cairo_close_path(context);
    }
    void polygon(std::initializer_list<std::pair<double, double>> points)
    {
        for (const auto& [x, y] : points)
            cairo_line_to(context, x, y);
        cairo_close_path(context);
    }
    // A round glow that fades to nothing.
    void glow(double x, double y, double radius, const Color& color, double alpha)
    {
        circle(x, y, radius);
        fillWith(cairo_pattern_create_radial(x, y, 0, x, y, radius), color, color, alpha, 0);
    }
    // The ground below a rolling line.
    void ground(double left, double middle, double right, const Color& from, const Color& to, double alpha = 1)
    {
        cairo_move_to(context, 0, left);
        cairo_curve_to(context, width * 0.3, middle, width * 0.55, middle + 24, width, right);
        cairo_line_to(context, width, height);
        cairo_line_to(context, 0, height);
        cairo_close_path(context);
        fill(from, to, 0, std::min(left, right), 0, height, alpha, alpha);
    }
    // A table's top edge and front, or a floor's.
    void table(double y, const Palette& palette)
    {
        const Color edge = palette.floor.mixedWith(white, 0.45);
        rectangle(0, y, width, height - y);
        fill(palette.floor, palette.floorEnd, 0, y, 0, height);
        rectangle(0, y, width, 10);
        fill(edge);
        rectangle(0, y - 26, width, 26); // where wall and table meet it is a little darker
        fill(palette.floorEnd, palette.floorEnd, 0, y - 26, 0, y, 0, 0.16);
    }

    cairo_t* context;
    double width;
    double height;

private:
    void fillWith(cairo_pattern_t* pattern, const Color& from, const Color& to, double fromAlpha, double toAlpha)
    {
        cairo_pattern_add_color_stop_rgba(pattern, 0, from.red, from.green, from.blue, fromAlpha);
        cairo_pattern_add_color_stop_rgba(pattern, 1, to.red, to.green, to.blue, toAlpha);
        cairo_set_source(context, pattern);
        cairo_fill(context);
        cairo_pattern_destroy(pattern);
    }
};

void arch(Brush& brush, double x, double top, double halfWidth, double bottom)
{
    cairo_new_sub_path(brush.context);
    cairo_arc(brush.context, x, top + halfWidth, halfWidth, fullTurn / 2, fullTurn);
    cairo_line_to(brush.context, x + halfWidth, bottom);
    cairo_line_to(brush.context, x - halfWidth, bottom);
    cairo_close_path(brush.context);
}

void drawArches(Brush& brush, const Palette& palette, double floor)
{
    brush.wholePicture(palette.wall, palette.wallEnd);
    arch(brush, 290, floor - 310, 124, floor);
    brush.fill(palette.accent, palette.wallEnd, 166, floor - 310, 414, floor, 0.75, 0.75);
    arch(brush, 1014, floor - 350, 132, floor);
    brush.fill(palette.accent, palette.wallEnd, 1146, floor - 350, 882, floor, 0.9, 0.7);
    arch(brush, 640, floor - 438, 170, floor);
    brush.fill(white, white, 640, floor - 438, 640, floor, 0.62, 0.42);
    brush.table(floor, palette);
}

void drawHills(Brush& brush, const Palette& palette, double floor)
{
    brush.wholePicture(palette.wall, palette.wallEnd);
    brush.glow(180, 100, 360, white, 0.45);
    brush.circle(176, 116, 92);
    brush.fill(white, 0.22);
    brush.circle(640, 330, 274);
    brush.fill(palette.accent, palette.accent, 640, 56, 640, 604, 0.85, 0.5);
    brush.ground(floor + 20, floor - 28, floor - 24, palette.floor.mixedWith(palette.accent, 0.25), palette.floor, 0.82);
    brush.ground(floor + 96, floor + 66, floor + 58, palette.floor, palette.floorEnd, 0.88);
    brush.circle(1190, 620, 196);
    brush.fill(palette.floorEnd, 0.35);
}

void drawMountains(Brush& brush, const Palette& palette, double floor)
{
    brush.rectangle(0, 0, brush.width, brush.height);
    brush.fill(palette.wall, palette.wallEnd, 0, 0, 0, floor);
    const Color sun { 1, 0.95, 0.74 };
    brush.glow(1086, 128, 250, sun, 0.9);
    brush.circle(1086, 128, 74);
    brush.fill(sun);
    const struct {
        double x, top, half;
        bool snow;
    } peaks[] = { { 220, 190, 330, false }, { 610, 96, 420, true }, { 1010, 250, 330, false } };
    for (const auto& peak : peaks) {
        brush.polygon({ { peak.x - peak.half, floor + 20 }, { peak.x, peak.top }, { peak.x + peak.half, floor + 20 } });
        brush.fill(palette.accent.mixedWith(white, 0.12), palette.accent.mixedWith(white, 0.45), 0, peak.top, 0, floor);
        brush.polygon({ { peak.x, peak.top }, { peak.x + peak.half, floor + 20 }, { peak.x + peak.half * 0.2, floor + 20 } });
        brush.fill(palette.accent.mixedWith({ 0.1, 0.2, 0.35 }, 0.25), 0.35);
        if (peak.snow) {
            const double slope = peak.half / (floor + 20 - peak.top);
            const double y = peak.top + 104;
            brush.polygon({ { peak.x, peak.top }, { peak.x + (y - peak.top) * slope, y }, { peak.x + 34, y - 34 },
                { peak.x - 2, y + 10 }, { peak.x - 40, y - 30 }, { peak.x - (y - peak.top) * slope, y } });
            brush.fill(white);
        }
    }
    brush.ground(floor - 30, floor - 96, floor - 10, palette.floor.mixedWith(white, 0.12), palette.floor);
    brush.ground(floor + 30, floor - 20, floor + 44, palette.floor, palette.floorEnd);
}

void podium(Brush& brush, const Palette& palette, double x, double top, double halfWidth, double bottom)
{
    const double depth = halfWidth * 0.2;
    const Color side = palette.accent.mixedWith(palette.floorEnd, 0.35);
    brush.ellipse(x, bottom + 4, halfWidth * 1.16, depth * 1.5);
    brush.fill(palette.floorEnd.mixedWith({ 0, 0, 0 }, 0.5), 0.20);
    brush.rectangle(x - halfWidth, top, 2 * halfWidth, bottom - top);
    brush.ellipse(x, bottom, halfWidth, depth);
    brush.fill(palette.accent, side, x - halfWidth, 0, x + halfWidth, 0);
    brush.ellipse(x, top, halfWidth, depth);
    brush.fill(palette.accent.mixedWith(white, 0.35), palette.accent, x - halfWidth, 0, x + halfWidth, 0);
}

void drawPodiums(Brush& brush, const Palette& palette, double floor)
{
    brush.wholePicture(palette.wall, palette.wallEnd);
    brush.glow(640, 250, 520, palette.accent.mixedWith(white, 0.3), 0.6);
    brush.circle(640, 270, 232);
    brush.fill(palette.accent.mixedWith(white, 0.25), palette.wallEnd, 640, 38, 640, 520, 0.85, 0.7);
    brush.rectangle(0, floor - 20, brush.width, brush.height - floor + 20);
    brush.fill(palette.floor, palette.floorEnd, 0, floor - 20, 0, brush.height);
    podium(brush, palette, 640, floor - 134, 166, floor + 60);
    podium(brush, palette, 330, floor - 52, 140, floor + 82);
    podium(brush, palette, 950, floor - 52, 140, floor + 82);
}

void drawRays(Brush& brush, const Palette& palette, double floor)
{
    brush.wholePicture(palette.wall, palette.wallEnd);
    constexpr int rays = 18;
    for (int i = 0; i < rays; i += 2) {
        const double from = fullTurn / 2 + i * fullTurn / 2 / rays;
        const double to = from + fullTurn / 2 / rays;
        constexpr double reach = 1200;
        brush.polygon({ { 640, floor }, { 640 + reach * std::cos(from), floor + reach * std::sin(from) },
            { 640 + reach * std::cos(to), floor + reach * std::sin(to) } });
        brush.fill(palette.accent, 0.55);
    }
    brush.glow(640, floor, 560, white, 0.75);
    brush.rectangle(0, floor - 30, brush.width, brush.height - floor + 30);
    brush.fill(palette.floor, palette.floorEnd, 0, floor - 30, 0, brush.height);
    for (const double lane : { -1.9, -0.66, 0.66, 1.9 }) { // a running track, seen from its start
        const double near = 640 + lane * 520;
        const double far = 640 + lane * 300;
        brush.polygon(
            { { far - 3, floor - 30 }, { far + 3, floor - 30 }, { near + 9, brush.height }, { near - 9, brush.height } });
        brush.fill(white, 0.5);
    }
}

void drawRings(Brush& brush, const Palette& palette, double floor)
{
    brush.wholePicture(palette.wall, palette.wallEnd);
    brush.glow(740, 330, 560, palette.accent, 0.55);
    for (int i = 1; i <= 6; ++i) {
        brush.circle(740, 330, 70.0 + 78 * i);
        cairo_set_source_rgba(brush.context, palette.accent.red, palette.accent.green, palette.accent.blue, 0.50 - i * 0.065);
        cairo_set_line_width(brush.context, 3);
        cairo_stroke(brush.context);
    }
    brush.rectangle(0, floor - 40, brush.width, brush.height - floor + 40);
    brush.fill(palette.floor, palette.floorEnd, 0, floor - 40, 0, brush.height);
    brush.rectangle(0, floor - 40, brush.width, 3);
    brush.fill(palette.accent, 0.7);
    brush.ellipse(740, floor + 10, 380, 44); // the light that the rings throw on the floor
    brush.fill(palette.accent, 0.16);
}

void drawWindow(Brush& brush, const Palette& palette, double floor)
{
    brush.wholePicture(palette.wall, palette.wallEnd);
    constexpr double left = 420, top = 50, width = 440;
    const double height = floor - top - 60;
    const Color frame = palette.floor.mixedWith(white, 0.55);
    brush.roundedRectangle(left - 18, top - 18, width + 36, height + 36, 12);
    brush.fill(frame);
    brush.rectangle(left, top, width, height);
    brush.fill(palette.accent, white, 0, top, 0, top + height);
    brush.glow(left + 330, top + 90, 190, { 1, 0.97, 0.78 }, 0.95);
    brush.rectangle(left + width / 2 - 8, top, 16, height);
    brush.rectangle(left, top + height * 0.45, width, 16);
    brush.fill(frame);
    // Sunlight falls through the panes onto the wall and the table.
    brush.polygon({ { left + width + 30, top + 40 }, { left + width + 330, top + 160 }, { left + width + 330, floor - 30 },
        { left + width + 30, floor - 110 } });
    brush.fill(white, 0.22);
    brush.table(floor, palette);
    brush.polygon({ { 560, floor + 10 }, { 980, floor + 10 }, { 1180, brush.height }, { 700, brush.height } });
    brush.fill(white, 0.13);
}

void drawTiles(Brush& brush, const Palette& palette, double floor)
{
    brush.wholePicture(palette.wall.mixedWith(palette.wallEnd, 0.5), palette.wallEnd);
    constexpr double width = 128, height = 64, gap = 5;
    int row = 0;
    for (double y = floor - height; y > -height; y -= height, ++row) {
        for (double x = row % 2 ? -width / 2 : 0; x < brush.width; x += width) {
            brush.roundedRectangle(x + gap / 2, y + gap / 2, width - gap, height - gap, 7);
            const double shade = 0.30 + 0.10 * ((row * 7 + int(x / width) * 5) % 4) / 3; // no two neighbours fired alike
            brush.fill(palette.accent, palette.accent, x, y, x, y + height, shade + 0.25, shade);
        }
    }
    brush.glow(420, 200, 520, white, 0.5);
    brush.table(floor, palette);
}

void drawClouds(Brush& brush, const Palette& palette, double floor)
{
    brush.rectangle(0, 0, brush.width, brush.height);
    brush.fill(palette.wall, palette.wallEnd, 0, 0, 0, floor);
    const Color bow[] = { { 1, 0.62, 0.60 }, { 1, 0.80, 0.55 }, { 1, 0.93, 0.62 }, { 0.70, 0.90, 0.70 }, { 0.62, 0.80, 0.98 } };
    double radius = 420;
    for (const Color& color : bow) {
        cairo_new_sub_path(brush.context);
        cairo_arc(brush.context, 640, floor - 20, radius, fullTurn / 2, fullTurn);
        cairo_set_line_width(brush.context, 30);
        cairo_set_source_rgba(brush.context, color.red, color.green, color.blue, 0.75);
        cairo_stroke(brush.context);
        radius -= 29;
    }
    const struct {
        double x, y, size;
    } clouds[] = { { 250, floor - 30, 1.25 }, { 1030, floor - 30, 1.25 }, { 380, 120, 0.6 }, { 910, 90, 0.5 } };
    for (const auto& cloud : clouds) {
        brush.circle(cloud.x - 74 * cloud.size, cloud.y + 8 * cloud.size, 54 * cloud.size);
        brush.circle(cloud.x, cloud.y - 26 * cloud.size, 78 * cloud.size);
        brush.circle(cloud.x + 80 * cloud.size, cloud.y + 4 * cloud.size, 60 * cloud.size);
        brush.fill(palette.accent, 0.95);
    }
    brush.ground(floor + 4, floor - 44, floor - 6, palette.floor, palette.floorEnd);
}

} // namespace

void drawBackdrop(const Picture& picture, const std::string& style, const Palette& palette, double floor)
{
    const struct {
        const char* name;
        void (*draw)(Brush&, const Palette&, double);
    } styles[] = { { "arches", drawArches }, { "hills", drawHills }, { "mountains", drawMountains }, { "podiums", drawPodiums },
        { "rays", drawRays }, { "rings", drawRings }, { "window", drawWindow }, { "tiles", drawTiles },
        { "clouds", drawClouds } };
    Brush brush(picture);
    for (const auto& entry : styles) {
        if (style == entry.name)
            return entry.draw(brush, palette, floor);
    }
    throw std::runtime_error("no backdrop is called " + style);
}

void drawStudio(const Picture& picture, const Color& wall, const Color& tint)
{
    Brush brush(picture);
    const double size = brush.width;
    brush.rectangle(0, 0, size, brush.height);
    brush.fill(wall, tint, 0, 0, 0, brush.height);
    brush.glow(size * 0.5, size * 0.42, size * 0.46, white, 0.75);
}

} // namespace showroom::media
