#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace platform {

// A parsed SVG. One thread at a time.
class SvgDrawing {
public:
    virtual ~SvgDrawing() = default;
    virtual double width() const = 0; // CSS pixels: its own size, or its view box's
    virtual double height() const = 0;
    // Fills premultiplied pixels, which must be clear, with the drawing stretched to that size. False when it cannot.
    virtual bool render(std::uint8_t* pixels, int pixelWidth, int pixelHeight, int stride) = 0;
};

// The SVG library, loaded at the first SVG.
class SvgModule {
public:
    static constexpr const char* moduleInterface = "svg 1"; // count up with every change above or below
    virtual ~SvgModule() = default;
    // Null, with the reason, for what is no SVG or breaks off. Any thread.
    virtual std::unique_ptr<SvgDrawing> parse(const std::uint8_t* bytes, std::size_t count, std::string& reason) = 0;
};

} // namespace platform
