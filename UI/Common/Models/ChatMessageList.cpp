#include "UI/Common/Models/ChatMessageList.h"

#include <algorithm>

namespace mv {

namespace {

constexpr std::size_t longestChunk = 128; // messages; a change copies one chunk and the table of chunks

bool isNewer(const std::shared_ptr<const ChatMessage>& one, const std::shared_ptr<const ChatMessage>& other)
{
    return one->createdAt > other->createdAt;
}

} // namespace

ChatMessageList::ChatMessageList(std::vector<ChatMessage> newestFirst)
{
    Chunk messages;
    messages.reserve(newestFirst.size());
    for (auto& message : newestFirst)
        messages.push_back(std::make_shared<const ChatMessage>(std::move(message)));
    take(cut(messages), std::ranges::is_sorted(messages, isNewer));
}

std::shared_ptr<const ChatMessage> ChatMessageList::at(std::size_t index) const
{
    const auto after = std::ranges::upper_bound(table->starts, index);
    const auto chunk = std::size_t(after - table->starts.begin()) - 1;
    return (*table->chunks[chunk])[index - table->starts[chunk]];
}

void ChatMessageList::insertAtFront(ChatMessage message)
{
    const auto added = std::make_shared<const ChatMessage>(std::move(message));
    const bool isSorted = isEmpty() || (table->isSorted && !isNewer(at(0), added));
    auto chunks = table ? table->chunks : std::vector<std::shared_ptr<const Chunk>>();
    Chunk first { added };
    if (!chunks.empty() && chunks.front()->size() < longestChunk) {
        first.insert(first.end(), chunks.front()->begin(), chunks.front()->end());
        chunks.front() = std::make_shared<const Chunk>(std::move(first));
    } else {
        chunks.insert(chunks.begin(), std::make_shared<const Chunk>(std::move(first)));
    }
    take(std::move(chunks), isSorted);
}

bool ChatMessageList::erase(const std::string& id)
{
    const auto hasId = [&](const auto& message) { return message->id == id; };
    bool found = false;
    std::vector<std::shared_ptr<const Chunk>> chunks;
    for (std::size_t i = 0; table && i < table->chunks.size(); ++i) {
        const auto& chunk = table->chunks[i];
        if (std::ranges::none_of(*chunk, hasId)) {
            chunks.push_back(chunk);
            continue;
        }
        found = true;
        Chunk left = *chunk;
        std::erase_if(left, hasId);
        if (!left.empty())
            chunks.push_back(std::make_shared<const Chunk>(std::move(left)));
    }
    if (found)
        take(std::move(chunks), table->isSorted);
    return found;
}

void ChatMessageList::sortByDate()
{
    if (isEmpty() || table->isSorted)
        return;
    Chunk messages;
    messages.reserve(size());
    for (const auto& chunk : table->chunks)
        messages.insert(messages.end(), chunk->begin(), chunk->end());
    std::ranges::stable_sort(messages, isNewer);
    take(cut(messages), true);
}

void ChatMessageList::take(std::vector<std::shared_ptr<const Chunk>> chunks, bool isSorted)
{
    const auto next = std::make_shared<Table>();
    next->isSorted = isSorted;
    next->starts.reserve(chunks.size());
    for (const auto& chunk : chunks) {
        next->starts.push_back(next->size);
        next->size += chunk->size();
    }
    next->chunks = std::move(chunks);
    table = next->size > 0 ? next : nullptr;
}

std::vector<std::shared_ptr<const ChatMessageList::Chunk>> ChatMessageList::cut(const Chunk& messages)
{
    std::vector<std::shared_ptr<const Chunk>> chunks;
    for (std::size_t start = 0; start < messages.size(); start += longestChunk) {
        const auto first = messages.begin() + std::ptrdiff_t(start);
        const auto last = messages.begin() + std::ptrdiff_t(std::min(start + longestChunk, messages.size()));
        chunks.push_back(std::make_shared<const Chunk>(first, last));
    }
    return chunks;
}

} // namespace mv
