#pragma once

#include "Platform/CoreGraphics/Text/CTFont.h"

#include <functional>

struct hb_font_t;
struct FT_FaceRec_;

namespace platform {

// One font file, of any size. Its parts are opened when they are first needed: the tables for shaping at once, the outlines at
// the first drawn glyph. Main thread.
struct CTFont::Face {
    // Null for bytes that are no font with characters in it.
    static std::shared_ptr<const Face> fromBytes(std::vector<std::uint8_t> bytes);
    static std::shared_ptr<const Face> fromFile(const std::string& path); // maps it, so that unused parts cost nothing
    // Draws a box for every character. Where no font at all can be found.
    static std::shared_ptr<const Face> boxes();
    ~Face();

    bool isBoxes() const { return !shaper; }
    bool isColored() const { return colored; } // emoji
    bool covers(char32_t character) const;
    // All of a cluster but for what needs no picture of its own (joiners, variation selectors, tags).
    bool coversAll(std::u32string_view cluster) const;

    std::uint32_t id = 0; // never reused in a process
    std::string postScriptName;
    int weight = 400;
    // Parts of the size.
    double unitsPerEm = 1000;
    double ascent = 0.95, descent = 0.25, gap = 0, capHeight = 0.7, xHeight = 0.5; // of the boxes' face
    double underlineTop = 0.1, underlineThickness = 0.05; // below the baseline

    hb_font_t* shaper = nullptr; // in font units
    FT_FaceRec_* outlines() const; // null when they cannot be read

private:
    struct Bytes;
    Face() = default;
    static std::shared_ptr<const Face> open(std::unique_ptr<Bytes> bytes);
    void readMetrics();

    std::unique_ptr<Bytes> bytes;
    bool colored = false;
    mutable FT_FaceRec_* outlines_ = nullptr;
    mutable bool triedOutlines = false;
};

} // namespace platform
