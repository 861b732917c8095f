#pragma once

#include "Platform/CoreGraphics/Text/FontFace.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Every font that the process may use: the registered ones, the system family and, opened at the first character that needs them,
// the fallback fonts. The machine's own fonts are never asked, so that text looks the same everywhere.
class FontLibrary {
public:
    using FacePointer = std::shared_ptr<const CTFont::Face>;

    static FontLibrary& shared();

    bool add(const FacePointer& face); // false when its name is taken
    FacePointer registered(const std::string& postScriptName) const; // null when there is none
    // The system family in its nearest weight; without one any registered font, without those the boxes. Never null.
    FacePointer system(int weight);
    // The font for a character (the code points of one grapheme cluster) that the wanted font lacks, or that wants to be a
    // coloured emoji. Null when no font has it.
    FacePointer substitute(std::u32string_view cluster, int weight, bool preferEmoji);
    void setFolder(const std::string& path);

private:
    enum class Role : unsigned char { system, emoji, fallback };
    struct File {
        int weight;
        std::string path;
        bool tried = false;
        FacePointer face; // once tried; null when it cannot be read
    };
    struct Range {
        char32_t first, last;
    };
    // The files of equal role and ranges, which differ in weight.
    struct Family {
        Role role;
        std::string rangesText;
        std::vector<Range> ranges;
        std::vector<File> files;

        bool mayHold(char32_t character) const;
        FacePointer nearest(int weight);
    };

    void readIndex(); // at the first question
    void addLine(const std::string& line);
    Family* systemFamily();

    std::map<std::string, FacePointer> faces; // registered
    std::string folder;
    bool indexRead = false;
    std::vector<Family> families; // in the index's order
};

} // namespace platform
