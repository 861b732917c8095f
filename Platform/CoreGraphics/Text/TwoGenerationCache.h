#pragma once

#include <cstddef>
#include <unordered_map>

namespace platform {

// A bounded cache in two halves: when the young one is full it becomes the old one, and what was not asked for in the meantime is
// gone. That keeps what is in use without a list to reorder at every hit.
template <typename Key, typename Value, typename Hash = std::hash<Key>> class TwoGenerationCache {
public:
    explicit TwoGenerationCache(std::size_t bound)
        : half(bound / 2)
    {
    }

    // Null when absent. Valid until the next insertion.
    Value* find(const Key& key)
    {
        if (const auto found = young.find(key); found != young.end())
            return &found->second.value;
        auto node = old.extract(key);
        if (node.empty())
            return nullptr;
        oldCost -= node.mapped().cost;
        return add(std::move(node));
    }

    // Replaces what had the key.
    Value* insert(const Key& key, Value value, std::size_t cost)
    {
        if (const auto found = young.find(key); found != young.end()) {
            youngCost -= found->second.cost;
            young.erase(found);
        }
        std::unordered_map<Key, Entry, Hash> single;
        single.emplace(key, Entry { std::move(value), cost });
        return add(single.extract(single.begin()));
    }

    std::size_t cost() const { return youngCost + oldCost; }

private:
    struct Entry {
        Value value;
        std::size_t cost;
    };
    using Map = std::unordered_map<Key, Entry, Hash>;

    Value* add(typename Map::node_type node)
    {
        if (youngCost + node.mapped().cost > half && !young.empty()) {
            old.swap(young);
            oldCost = youngCost;
            young.clear();
            youngCost = 0;
        }
        youngCost += node.mapped().cost;
        return &young.insert(std::move(node)).position->second.value;
    }

    std::size_t half;
    Map young, old;
    std::size_t youngCost = 0, oldCost = 0;
};

} // namespace platform
