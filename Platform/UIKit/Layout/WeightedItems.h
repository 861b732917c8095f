#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

namespace platform {

// Items with weights, to be taken in their order from either end.
class WeightedItems {
public:
    void reserve(std::size_t itemCount)
    {
        weights.resize(std::max(weights.size(), itemCount), 0);
        marks.resize((weights.size() + 63) / 64, 0);
    }

    bool isEmpty() const { return count == 0; }
    double& weight(std::uint32_t item) { return weights[item]; } // 0 unless added, and kept when taken

    void add(std::uint32_t item, double weight)
    {
        const std::uint32_t word = item / 64;
        const std::uint64_t bit = std::uint64_t { 1 } << (item % 64);
        first = count == 0 ? word : std::min(first, word);
        last = count == 0 ? word : std::max(last, word);
        count += (marks[word] & bit) == 0;
        marks[word] |= bit;
        weights[item] += weight;
    }

    std::uint32_t takeFirst()
    {
        while (marks[first] == 0)
            ++first;
        return take(first, static_cast<std::uint32_t>(std::countr_zero(marks[first])));
    }

    std::uint32_t takeLast()
    {
        while (marks[last] == 0)
            --last;
        return take(last, 63 - static_cast<std::uint32_t>(std::countl_zero(marks[last])));
    }

private:
    std::uint32_t take(std::uint32_t word, std::uint32_t bit)
    {
        marks[word] &= ~(std::uint64_t { 1 } << bit);
        --count;
        return word * 64 + bit;
    }

    std::vector<double> weights; // by item
    std::vector<std::uint64_t> marks; // a bit an item
    std::uint32_t count = 0;
    std::uint32_t first = 0; // no marked word is before
    std::uint32_t last = 0; // or behind
};

} // namespace platform
