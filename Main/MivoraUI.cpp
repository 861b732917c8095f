#include "Main/MivoraUI.h"

#include "UI/Utils/MVUtilities.h"

#include <algorithm>

namespace mv {

namespace {

MVReactionTable defaultReactions()
{
    MVReactionTable table;
    for (const std::string type : { "wow", "heart", "like", "laugh", "angry" }) {
        auto image = getImage(type + "Reaction");
        table.set(type, image ? std::move(image) : std::make_shared<const UIImage>());
    }
    return table;
}

} // namespace

MVEntry<std::shared_ptr<MivoraUI>> MivoraUI::instance { [] { return make<MivoraUI>(); } };
MVEntry<MVReactionTable> MivoraUI::reactions { defaultReactions };

void MVReactionTable::set(const std::string& reactionType, std::shared_ptr<const UIImage> image)
{
    const auto found
        = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.first == reactionType; });
    if (found != entries.end())
        found->second = std::move(image);
    else
        entries.emplace_back(reactionType, std::move(image));
}

void MVReactionTable::remove(const std::string& reactionType)
{
    std::erase_if(entries, [&](const Entry& entry) { return entry.first == reactionType; });
}

std::shared_ptr<const UIImage> MVReactionTable::image(const std::string& reactionType) const
{
    const auto found
        = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.first == reactionType; });
    return found != entries.end() ? found->second : nullptr;
}

} // namespace mv
