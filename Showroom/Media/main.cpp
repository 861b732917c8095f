// Paints the sample shop's pictures: showroom_media PICTURES.json OBJECTS-FOLDER OUTPUT-FOLDER. The file lists what to paint;
// the folder holds the objects as SVG. Equal input gives equal pictures.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "Showroom/Media/Backdrops.h"
#include "Showroom/Media/Objects.h"

namespace {

using nlohmann::json;
using namespace showroom::media;

constexpr int productSide = 512; // pixels
constexpr int hostSide = 256;
constexpr int bannerWidth = 1280;
constexpr int bannerHeight = 720;

struct Painter {
    const json& pictures;
    std::string objects; // folder
    std::string output; // folder

    void paintAll() const
    {
        for (const json& product : pictures.at("products"))
            paintProduct(product);
        for (const json& host : pictures.at("hosts"))
            paintHost(host);
        for (const json& banner : pictures.at("banners"))
            paintBanner(banner);
    }

    void paintProduct(const json& product) const
    {
        const Picture picture(productSide, productSide);
        drawStudio(picture, colorOf(product, 0), colorOf(product, 1));
        draw(picture, product.at("object"),
            { productSide / 2.0, 432, 352, product.value("turn", 0.0), product.value("hue", 0.0), false });
        save(picture, product);
    }

    void paintHost(const json& host) const
    {
        const Picture picture(hostSide, hostSide);
        drawStudio(picture, colorOf(host, 0), colorOf(host, 1));
        drawBust(picture, host, { hostSide / 2.0, hostSide, 236, 0, 0, true });
        save(picture, host);
    }

    void paintBanner(const json& banner) const
    {
        const Picture picture(bannerWidth, bannerHeight);
        const Palette palette { colorOf(banner, 0), colorOf(banner, 1), colorOf(banner, 2), colorOf(banner, 3),
            colorOf(banner, 4) };
        const double floor = banner.at("floor");
        drawBackdrop(picture, banner.at("backdrop"), palette, floor);
        if (banner.contains("host"))
            drawBust(picture, hostNamed(banner.at("host").at("name")), placementOf(banner.at("host")));
        for (const json& object : banner.at("objects"))
            draw(picture, object.at("object"), placementOf(object));
        save(picture, banner);
    }

    const json& hostNamed(const std::string& name) const
    {
        for (const json& host : pictures.at("hosts")) {
            if (host.at("name") == name)
                return host;
        }
        throw std::runtime_error("no host is called " + name);
    }

    // Head over shoulders; some heads are drawn with theirs.
    void drawBust(const Picture& picture, const json& host, const Placement& at) const
    {
        if (host.value("bust", false))
            return draw(picture, host.at("head"), { at.x, at.y, at.size, 0, 0, true });
        drawShoulders(picture, at, Color::fromHex(host.at("skin")), Color::fromHex(host.at("shirt")));
        draw(picture, host.at("head"), { at.x, at.y - at.size * 0.30, at.size * 0.72, 0, 0, true });
    }

    void draw(const Picture& picture, const std::string& object, const Placement& placement) const
    {
        drawObject(picture, objects + "/" + object + ".svg", placement);
    }

    static Placement placementOf(const json& object)
    {
        const json& at = object.at("at");
        return { at.at(0), at.at(1), at.at(2), object.value("turn", 0.0), object.value("hue", 0.0),
            object.value("floats", false) };
    }

    static Color colorOf(const json& picture, std::size_t index) { return Color::fromHex(picture.at("colors").at(index)); }

    void save(const Picture& picture, const json& described) const
    {
        picture.writeJpeg(output + "/" + described.at("name").get<std::string>() + ".jpg");
    }
};

} // namespace

int main(int count, char** arguments)
{
    if (count != 4) {
        std::cerr << "usage: showroom_media PICTURES.json OBJECTS-FOLDER OUTPUT-FOLDER\n";
        return 2;
    }
    try {
        const json pictures = json::parse(std::ifstream(arguments[1]));
        std::filesystem::create_directories(arguments[3]);
        Painter { pictures, arguments[2], arguments[3] }.paintAll();
    } catch (const std::exception& error) {
        std::cerr << "showroom_media: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
