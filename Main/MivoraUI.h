#pragma once

#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/UIImage.h"
#include "UI/Utils/MVEntry.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mv {

// Reaction types and their images, in the order in which the picker shows them.
class MVReactionTable {
public:
    using Entry = std::pair<std::string, std::shared_ptr<const UIImage>>;

    // Takes the place of the type's image, or adds the type at the end.
    void set(const std::string& reactionType, std::shared_ptr<const UIImage> image);
    void remove(const std::string& reactionType);
    std::shared_ptr<const UIImage> image(const std::string& reactionType) const; // null for a type that is not in the table

    std::size_t size() const { return entries.size(); }
    std::vector<Entry>::const_iterator begin() const { return entries.begin(); }
    std::vector<Entry>::const_iterator end() const { return entries.end(); }

private:
    std::vector<Entry> entries;
};

// What a host sees of the kit besides its screens. Both entries may be replaced; later look-ups see the replacement.
class MivoraUI final : public NSObject {
public:
    static MVEntry<std::shared_ptr<MivoraUI>> instance;
    // "wow", "heart", "like", "laugh" and "angry"; an image that is missing from the kit's bundle is an empty one.
    static MVEntry<MVReactionTable> reactions;
};

} // namespace mv
