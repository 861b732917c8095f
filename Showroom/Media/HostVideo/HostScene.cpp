#include "Showroom/Media/HostVideo/HostScene.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "Showroom/Media/Backdrops.h"
#include "Showroom/Media/FrameCode.h"
#include "Showroom/Media/Objects.h"

namespace showroom::media {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double length = double(HostScene::frameCount) / HostScene::framesPerSecond; // seconds

constexpr double tableTop = 800; // pixels, as all lengths here
constexpr double hostX = 452, hostSize = 560;
constexpr double headSize = hostSize * 0.72;

// Poses of the head, from leaning left to leaning right.
constexpr int poseCount = 9, middlePose = poseCount / 2;
constexpr double degreesAPose = 1.2;

struct Product {
    const char* object;
    double size;
    double hue;
};
constexpr std::array products { Product { "teapot", 250, 0 }, Product { "potted-plant", 270, 0 }, Product { "handbag", 240, 0 },
    Product { "candle", 240, 0 }, Product { "hot-beverage", 220, 200 }, Product { "headphone", 240, 0 } };
constexpr double secondsAProduct = length / double(products.size());
constexpr double productX = 236, productY = 900;

// A screen in portrait shows at least x from 66 to 654, the left half of one in landscape at least y from 308 to 972. The badges
// on top of the picture end above 394, the chat begins below 571.
constexpr int codeX = 72, codeY = 408, codeHeight = 16;
constexpr int cellWidth = 8; // on whole blocks of the encoder, so that it stays sharp

// From 0 to 1 and gently at both ends.
double eased(double t)
{
    t = std::clamp(t, 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

struct Sprite {
    std::unique_ptr<Picture> picture;
    double footX = 0; // what stands at the place it is put
    double footY = 0;

    // On whole pixels: no filter then softens it, or takes its time.
    void put(cairo_t* context, double x, double y, double alpha = 1) const
    {
        cairo_set_source_surface(context, cairo_get_target(picture->context()), std::round(x - footX), std::round(y - footY));
        cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
        if (alpha >= 1)
            cairo_paint(context);
        else if (alpha > 0)
            cairo_paint_with_alpha(context, alpha);
    }
};

void drawTable(const Picture& picture)
{
    cairo_t* context = picture.context();
    const std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)> wood(
        cairo_pattern_create_linear(0, tableTop, 0, HostScene::height), cairo_pattern_destroy);
    const auto stop = [&](double at, const char* hex) {
        const Color color = Color::fromHex(hex);
        cairo_pattern_add_color_stop_rgb(wood.get(), at, color.red, color.green, color.blue);
    };
    stop(0, "#e9c9a4");
    stop(0.34, "#d8ab7d");
    stop(0.36, "#a9764c");
    stop(1, "#7f5436");
    cairo_set_source(context, wood.get());
    cairo_rectangle(context, 0, tableTop, HostScene::width, HostScene::height - tableTop);
    cairo_fill(context);
}

} // namespace

double talkAt(double seconds)
{
    // Phrases of some three seconds with a pause between them, syllables inside.
    const double phrase = std::sin(2 * pi * 18 * seconds / length) + 0.35 * std::sin(2 * pi * 7 * seconds / length);
    const double syllable = 0.5 - 0.5 * std::cos(2 * pi * 264 * seconds / length);
    return eased(phrase * 1.5 + 0.8) * (0.25 + 0.75 * syllable);
}

struct HostScene::Impl {
    Picture frame { width, height };
    Picture room { width, height };
    std::array<Sprite, poseCount> heads;
    Sprite shoulders, flower, honey, sparkles;
    std::vector<Sprite> shown;

    explicit Impl(const std::string& objects)
    {
        const auto sprite = [&](const std::string& object, double size, double turn, double hue, bool floats) {
            const int margin = int(size / 2); // for its shadow
            const int side = int(size) + 2 * margin;
            Sprite made { std::make_unique<Picture>(side, side, Picture::Ground::clear), side / 2.0, margin + size };
            drawObject(*made.picture, objects + "/" + object + ".svg", { made.footX, made.footY, size, turn, hue, floats });
            return made;
        };
        const Palette palette { Color::fromHex("#f3ece0"), Color::fromHex("#dcd3ea"), Color::fromHex("#bfe3f2"),
            Color::fromHex("#c59a6d"), Color::fromHex("#9c744c") };
        drawBackdrop(room, "window", palette, tableTop + 40);
        drawTable(room);
        for (int pose = 0; pose < poseCount; ++pose)
            heads[std::size_t(pose)] = sprite("woman-curly-hair-dark", headSize, (pose - middlePose) * degreesAPose, 0, true);
        shoulders
            = { std::make_unique<Picture>(int(hostSize) + 2, int(hostSize), Picture::Ground::clear), hostSize / 2 + 1, hostSize };
        drawShoulders(*shoulders.picture, { shoulders.footX, shoulders.footY, hostSize, 0, 0, true }, Color::fromHex("#3f2c2e"),
            Color::fromHex("#4f9a72"));
        for (const Product& product : products)
            shown.push_back(sprite(product.object, product.size, 0, product.hue, false));
        sparkles = sprite("sparkles", 96, 0, 0, true);
        flower = sprite("hibiscus", 110, 0, 0, false);
        honey = sprite("honey-pot", 130, 0, 0, false);
    }

    void drawHost(cairo_t* context, double time)
    {
        const double talk = talkAt(time);
        const double sway = std::sin(2 * pi * 9 * time / length) + 0.5 * std::sin(2 * pi * 23 * time / length);
        const double breath = 3 * std::sin(2 * pi * 15 * time / length);
        const double x = hostX + 9 * sway;
        const int pose = std::clamp(int(std::lround(middlePose + 2.4 * sway + 0.8 * talk)), 0, poseCount - 1);
        shoulders.put(context, x, tableTop + 8 + breath);
        heads[std::size_t(pose)].put(context, x + 4 * sway, tableTop - hostSize * 0.30 + breath - 9 * talk);
    }

    // The table again, over the host's lower edge, and what stands on it.
    void drawTableFront(cairo_t* context)
    {
        cairo_save(context);
        cairo_rectangle(context, 0, tableTop, width, 28);
        cairo_clip(context);
        cairo_set_source_surface(context, cairo_get_target(room.context()), 0, 0);
        cairo_paint(context);
        cairo_restore(context);
        flower.put(context, 76, tableTop + 70);
        honey.put(context, 600, tableTop + 96);
    }

    // Up from below, a while on show, and away to the side.
    void drawProduct(cairo_t* context, double time)
    {
        const auto index = std::min(std::size_t(time / secondsAProduct), products.size() - 1);
        const double since = time - double(index) * secondsAProduct, left = secondsAProduct - since;
        const double come = eased(since / 0.9), go = eased(1 - left / 0.7);
        const double hop = 14 * std::abs(std::sin(pi * since)) * eased((since - 1) / 0.5) * eased((left - 1) / 0.5);
        shown[index].put(context, productX - 620 * go, productY + 480 * (1 - come) - hop);
        const double glitter = eased((since - 0.8) / 0.4) * (1 - eased((since - 2.6) / 0.8));
        sparkles.put(context, productX + 120, productY - 190 - 10 * std::sin(6 * since), glitter);
    }

    void drawCode(cairo_t* context, int number)
    {
        const auto cells = frameCode::cells(number);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const double light = cells[i] ? 0.92 : 0.4; // the wall's tone, and one that does not draw the eye
            cairo_set_source_rgb(context, light + 0.03, light, light - 0.03);
            cairo_rectangle(context, codeX + int(i) * cellWidth, codeY, cellWidth, codeHeight);
            cairo_fill(context);
        }
    }
};

HostScene::HostScene(const std::string& objects)
    : impl(std::make_unique<Impl>(objects))
{
}

HostScene::~HostScene() = default;

const Picture& HostScene::draw(int number)
{
    const double time = double(number % frameCount) / framesPerSecond;
    cairo_t* context = impl->frame.context();
    cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
    cairo_set_source_surface(context, cairo_get_target(impl->room.context()), 0, 0);
    cairo_paint(context);
    cairo_set_operator(context, CAIRO_OPERATOR_OVER);
    impl->drawHost(context, time);
    impl->drawTableFront(context);
    impl->drawProduct(context, time);
    impl->drawCode(context, number);
    return impl->frame;
}

} // namespace showroom::media
