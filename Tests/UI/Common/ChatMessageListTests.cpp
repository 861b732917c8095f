#include "UI/Common/Models/ChatMessageList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace mv {
namespace {

ChatMessage message(int id, double date)
{
    ChatMessage result;
    result.id = std::to_string(id);
    result.createdAt = Date { date };
    return result;
}

std::vector<std::string> ids(const ChatMessageList& list)
{
    std::vector<std::string> result;
    for (std::size_t i = 0; i < list.size(); ++i)
        result.push_back(*list[i].id);
    return result;
}

TEST(ChatMessageList, doesWhatAPlainListDoes)
{
    std::mt19937 random(7);
    std::vector<ChatMessage> plain;
    for (int i = 0; i < 300; ++i)
        plain.insert(plain.begin(), message(i, i));
    ChatMessageList list(plain);
    for (int step = 0; step < 2000; ++step) {
        const int id = int(random() % 700);
        switch (random() % 4) {
        case 0: {
            const auto wanted = std::to_string(id);
            const auto count = std::erase_if(plain, [&](const auto& each) { return each.id == wanted; });
            EXPECT_EQ(list.erase(wanted), count > 0);
            break;
        }
        case 1:
            if (step % 50 == 0) {
                std::ranges::stable_sort(plain, [](const auto& a, const auto& b) { return a.createdAt > b.createdAt; });
                list.sortByDate();
            }
            break;
        default:
            plain.insert(plain.begin(), message(id, double(random() % 1000)));
            list.insertAtFront(plain.front());
            break;
        }
        ASSERT_EQ(list.size(), plain.size());
        const auto index = random() % plain.size();
        ASSERT_EQ(list[index], plain[index]);
    }
    EXPECT_EQ(ids(list), ids(ChatMessageList(plain)));
}

TEST(ChatMessageList, aCopyStaysAsItWas)
{
    ChatMessageList list({ message(3, 30), message(2, 20), message(1, 10) });
    const ChatMessageList before = list;
    list.insertAtFront(message(4, 5)); // older than the rest
    list.erase("2");
    EXPECT_EQ(ids(before), (std::vector<std::string> { "3", "2", "1" }));
    EXPECT_EQ(ids(list), (std::vector<std::string> { "4", "3", "1" }));
    list.sortByDate();
    EXPECT_EQ(ids(list), (std::vector<std::string> { "3", "1", "4" }));
    EXPECT_EQ(list.at(0), before.at(0)) << "the record is shared";
    for (const char* id : { "1", "3", "4" })
        list.erase(id);
    EXPECT_TRUE(list.isEmpty());
    EXPECT_FALSE(list.erase("1"));
    list.insertAtFront(message(9, 1));
    EXPECT_EQ(list.size(), 1u);
}

} // namespace
} // namespace mv
