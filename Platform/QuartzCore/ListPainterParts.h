#pragma once

#include "Platform/QuartzCore/ListPainter.h"

// The painter's own records, shared by its two source files.
namespace platform {

struct ListPainter::Level {
    const RenderList& list;
    std::size_t count; // items painted; those from here on lie in front
    const Level* outer; // what lies behind the list; null for the root
    std::uint64_t path;
};

struct ListPainter::Layer {
    std::unique_ptr<PixelSource> source;
    std::vector<Coverage> shape; // its own
    std::vector<Coverage> cuts; // its own and the item's clips
};

struct ListPainter::Prepared {
    bool isReady = false;
    bool knowsOpaquePart = false;
    PixelRect opaquePart;
    unsigned opacity = 255;
    std::vector<Layer> layers; // back to front; of a group only its shadow
    std::vector<Coverage> clips; // of a group also its mask, when that is a plain fade
    bool hasPictureMask = false;
};

} // namespace platform
