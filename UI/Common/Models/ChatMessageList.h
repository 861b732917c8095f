#pragma once

#include "UI/Common/Models/ChatMessage.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace mv {

// A chat, newest first: a value that a screen hands to its panel whole, however long it is. A copy shares everything with the
// original, and a change to either leaves the other as it was and costs a few dozen pointers.
class ChatMessageList {
public:
    ChatMessageList() = default;
    explicit ChatMessageList(std::vector<ChatMessage> newestFirst);

    std::size_t size() const { return table ? table->size : 0; }
    bool isEmpty() const { return size() == 0; }
    const ChatMessage& operator[](std::size_t index) const { return *at(index); } // below size
    std::shared_ptr<const ChatMessage> at(std::size_t index) const;

    void insertAtFront(ChatMessage message);
    bool erase(const std::string& id); // every message of that id; false when there is none
    // Newest first by their dates; two of the same moment stay as they were.
    void sortByDate();

private:
    using Chunk = std::vector<std::shared_ptr<const ChatMessage>>;
    struct Table {
        std::vector<std::shared_ptr<const Chunk>> chunks; // none empty
        std::vector<std::size_t> starts; // index of each chunk's first message
        std::size_t size = 0;
        bool isSorted = true;
    };

    void take(std::vector<std::shared_ptr<const Chunk>> chunks, bool isSorted);
    static std::vector<std::shared_ptr<const Chunk>> cut(const Chunk& messages);

    std::shared_ptr<const Table> table; // null for an empty list
};

} // namespace mv
