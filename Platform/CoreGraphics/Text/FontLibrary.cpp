#include "Platform/CoreGraphics/Text/FontLibrary.h"

#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/NSLog.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace platform {
FontLibrary& FontLibrary::shared()
{
    static auto& library = *new FontLibrary; // never destroyed: fonts in statics outlive it otherwise
    return library;
}

bool FontLibrary::add(const FacePointer& face) { return face && faces.emplace(face->postScriptName, face).second; }

FontLibrary::FacePointer FontLibrary::registered(const std::string& postScriptName) const
{
    const auto found = faces.find(postScriptName);
    return found == faces.end() ? nullptr : found->second;
}

FontLibrary::FacePointer FontLibrary::system(int weight)
{
    readIndex();
    if (auto* family = systemFamily()) {
        if (auto face = family->nearest(weight))
            return face;
    }
    FacePointer best;
    for (const auto& [name, face] : faces) {
        if (!best || std::abs(face->weight - weight) < std::abs(best->weight - weight))
            best = face;
    }
    return best ? best : CTFont::Face::boxes();
}

FontLibrary::FacePointer FontLibrary::substitute(std::u32string_view cluster, int weight, bool preferEmoji)
{
    readIndex();
    const auto ask = [&](Family& family) -> FacePointer {
        if (!family.mayHold(cluster.front()))
            return nullptr;
        auto face = family.nearest(weight);
        return face && face->coversAll(cluster) ? face : nullptr;
    };
    // A coloured emoji first where it is wanted, then the system family, then the lines in their order.
    for (auto& family : families) {
        if (preferEmoji && family.role == Role::emoji) {
            auto face = family.nearest(weight); // its ranges leave out the digits of keycaps
            if (face && face->coversAll(cluster))
                return face;
        }
    }
    if (auto* family = systemFamily()) {
        if (auto face = ask(*family))
            return face;
    }
    for (auto& family : families) {
        if (family.role != Role::system) {
            if (auto face = ask(family))
                return face;
        }
    }
    for (const auto& [name, face] : faces) {
        if (face->coversAll(cluster))
            return face;
    }
    // Better the letter without its accent than neither.
    return cluster.size() > 1 ? substitute(cluster.substr(0, 1), weight, preferEmoji) : nullptr;
}

void FontLibrary::setFolder(const std::string& path)
{
    folder = path;
    families.clear();
    indexRead = false;
}

bool FontLibrary::Family::mayHold(char32_t character) const
{
    const auto holds = [&](const Range& range) { return character >= range.first && character <= range.last; };
    return ranges.empty() || std::any_of(ranges.begin(), ranges.end(), holds);
}

FontLibrary::FacePointer FontLibrary::Family::nearest(int weight)
{
    File* best = nullptr;
    for (auto& file : files) {
        if ((!file.tried || file.face) && (!best || std::abs(file.weight - weight) < std::abs(best->weight - weight)))
            best = &file;
    }
    if (!best)
        return nullptr;
    if (!best->tried) {
        best->tried = true;
        best->face = CTFont::Face::fromFile(best->path);
        if (!best->face) {
            NSLog("font \"" + best->path + "\" not used: it cannot be read as a font");
            return nearest(weight);
        }
    }
    return best->face;
}

void FontLibrary::readIndex()
{
    if (indexRead)
        return;
    indexRead = true;
    if (folder.empty())
        folder = Folders::executable() + "/SystemFonts";
    std::ifstream index(folder + "/fonts.txt");
    for (std::string line; std::getline(index, line);)
        addLine(line);
    if (!systemFamily())
        NSLog("no system fonts: \"" + folder + "/fonts.txt\" names none; the registered fonts stand in");
}

// ROLE WEIGHT RANGES FILE, as Resources/README.md describes them. A role that this version does not know is left out.
void FontLibrary::addLine(const std::string& line)
{
    std::istringstream columns(line);
    std::string roleText, weightText, rangesText, file;
    if (!(columns >> roleText >> weightText >> rangesText >> file) || roleText[0] == '#')
        return;
    Family family { Role::fallback, rangesText, {}, {} };
    if (roleText == "system")
        family.role = Role::system;
    else if (roleText == "emoji")
        family.role = Role::emoji;
    else if (roleText != "fallback")
        return;
    std::istringstream ranges(rangesText);
    for (std::string text; rangesText != "-" && std::getline(ranges, text, ',');) {
        const auto dash = text.find('-');
        const auto first = char32_t(std::strtoul(text.c_str(), nullptr, 16));
        const auto last = dash == std::string::npos ? first : char32_t(std::strtoul(text.c_str() + dash + 1, nullptr, 16));
        family.ranges.push_back({ first, last });
    }
    auto same = std::find_if(families.begin(), families.end(),
        [&](const Family& other) { return other.role == family.role && other.rangesText == rangesText; });
    if (same == families.end())
        same = families.insert(families.end(), std::move(family));
    same->files.push_back({ weightText == "-" ? 400 : std::atoi(weightText.c_str()), folder + "/" + file, false, nullptr });
}

FontLibrary::Family* FontLibrary::systemFamily()
{
    const auto found = std::find_if(families.begin(), families.end(), [](const Family& f) { return f.role == Role::system; });
    return found == families.end() ? nullptr : &*found;
}

} // namespace platform
