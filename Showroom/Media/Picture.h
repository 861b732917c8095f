#pragma once

#include <cstdint>
#include <memory>
#include <string>

typedef struct _cairo cairo_t;

namespace showroom::media {

// A "#rrggbb" colour as parts from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;

    static Color fromHex(const std::string& text);
    Color mixedWith(const Color& other, double share) const; // share of `other`, 0 to 1
};

// A canvas that is painted on and then written to a file, or put on others.
class Picture {
public:
    enum class Ground { opaque, clear };

    Picture(int width, int height, Ground ground = Ground::opaque); // pixels
    ~Picture();

    int width() const;
    int height() const;
    cairo_t* context() const;
    // Rows of 0xAARRGGBB words (0xXXRRGGBB of an opaque one), as painted so far.
    const std::uint32_t* row(int y) const;
    // Throws std::runtime_error when the file cannot be written.
    void writeJpeg(const std::string& path) const;

private:
    struct Impl; // the drawing library's surface and context
    std::unique_ptr<Impl> impl;
};

} // namespace showroom::media
