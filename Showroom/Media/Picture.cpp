#include "Showroom/Media/Picture.h"

#include <cairo.h>

#include <cstdio>
#include <jpeglib.h> // needs <cstdio> before it
#include <stdexcept>
#include <vector>

namespace showroom::media {

Color Color::fromHex(const std::string& text)
{
    const auto part = [&text](std::size_t at) { return std::stoi(text.substr(at, 2), nullptr, 16) / 255.0; };
    return { part(1), part(3), part(5) };
}

Color Color::mixedWith(const Color& other, double share) const
{
    const auto mix = [share](double a, double b) { return a + (b - a) * share; };
    return { mix(red, other.red), mix(green, other.green), mix(blue, other.blue) };
}

struct Picture::Impl {
    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface { nullptr, cairo_surface_destroy };
    std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context { nullptr, cairo_destroy };
};

Picture::Picture(int width, int height, Ground ground)
    : impl(std::make_unique<Impl>())
{
    impl->surface.reset(
        cairo_image_surface_create(ground == Ground::opaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32, width, height));
    impl->context.reset(cairo_create(impl->surface.get()));
}

Picture::~Picture() = default;

int Picture::width() const { return cairo_image_surface_get_width(impl->surface.get()); }

int Picture::height() const { return cairo_image_surface_get_height(impl->surface.get()); }

cairo_t* Picture::context() const { return impl->context.get(); }

const std::uint32_t* Picture::row(int y) const
{
    cairo_surface_flush(impl->surface.get());
    const unsigned char* pixels = cairo_image_surface_get_data(impl->surface.get());
    return reinterpret_cast<const std::uint32_t*>(
        pixels + std::ptrdiff_t(y) * cairo_image_surface_get_stride(impl->surface.get()));
}

void Picture::writeJpeg(const std::string& path) const
{
    constexpr int quality = 91; // of 100; below 88 the flat backdrops begin to show bands
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"), std::fclose);
    if (!file)
        throw std::runtime_error("cannot write " + path);

    jpeg_compress_struct encoder {};
    jpeg_error_mgr errors {};
    encoder.err = jpeg_std_error(&errors); // ends the program with a message
    jpeg_create_compress(&encoder);
    jpeg_stdio_dest(&encoder, file.get());
    encoder.image_width = static_cast<JDIMENSION>(width());
    encoder.image_height = static_cast<JDIMENSION>(height());
    encoder.input_components = 3;
    encoder.in_color_space = JCS_RGB;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, quality, TRUE);
    encoder.comp_info[0].h_samp_factor = encoder.comp_info[0].v_samp_factor = 1; // colour at full size: reds keep their edges
    jpeg_start_compress(&encoder, TRUE);

    cairo_surface_flush(impl->surface.get());
    const unsigned char* pixels = cairo_image_surface_get_data(impl->surface.get());
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(impl->surface.get()));
    std::vector<JSAMPLE> row(static_cast<std::size_t>(width()) * 3);
    while (encoder.next_scanline < encoder.image_height) {
        const auto* source = reinterpret_cast<const unsigned*>(pixels + encoder.next_scanline * stride);
        for (std::size_t x = 0; x < encoder.image_width; ++x) {
            row[3 * x] = static_cast<JSAMPLE>(source[x] >> 16);
            row[3 * x + 1] = static_cast<JSAMPLE>(source[x] >> 8);
            row[3 * x + 2] = static_cast<JSAMPLE>(source[x]);
        }
        JSAMPROW line = row.data();
        jpeg_write_scanlines(&encoder, &line, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
}

} // namespace showroom::media
