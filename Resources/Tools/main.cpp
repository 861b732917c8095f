// Draws an SVG file at so many pixels a unit: render_drawing DRAWING.svg PIXELS-A-UNIT PICTURE.png. For drawings whose filters
// take too long to draw while somebody waits.

#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/FileSystem.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

int main(int count, char** words)
{
    const double scale = count == 4 ? std::atof(words[2]) : 0;
    if (scale <= 0) {
        std::fputs("usage: render_drawing DRAWING.svg PIXELS-A-UNIT PICTURE.png\n", stderr);
        return 2;
    }
    const auto content = platform::FileSystem::real().read(words[1]);
    const auto drawing = content ? platform::CGImage::decode(*content, words[1]) : nullptr;
    const auto pixels = drawing
        ? drawing->rendered(int(std::lround(drawing->width() * scale)), int(std::lround(drawing->height() * scale)))
        : nullptr;
    if (!pixels) {
        std::fprintf(stderr, "render_drawing: \"%s\" cannot be drawn\n", words[1]);
        return 1;
    }
    return platform::writePNG(*pixels, words[3]) ? 0 : 1;
}
