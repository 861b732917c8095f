#include "Platform/UIKit/Layout/LayoutBasis.h"

#include <cmath>

namespace platform {

namespace {

constexpr double negligible = 1e-11;

// Working memory of one call; weights and flags are all zero between calls.
struct Scratch {
    std::vector<double> weights; // by root
    std::vector<bool> isSeen; // by column
    std::vector<std::uint32_t> seen;
    std::vector<LayoutBasis::Entry> rates;
    std::vector<LayoutBasis::Entry> sum;
};
thread_local Scratch scratch;

} // namespace

void LayoutBasis::addRoot()
{
    const std::uint32_t root = size();
    columns.emplace_back().push_back({ root, 1 });
    columnsOfRoot.emplace_back().push_back(root);
}

void LayoutBasis::append(const LayoutBasis& other)
{
    const std::uint32_t offset = size();
    for (auto column : other.columns) {
        for (Entry& entry : column)
            entry.index += offset;
        columns.push_back(std::move(column));
    }
    for (auto list : other.columnsOfRoot) {
        for (std::uint32_t& column : list)
            column += offset;
        columnsOfRoot.push_back(std::move(list));
    }
    replacements += other.replacements;
}

void LayoutBasis::reset()
{
    for (std::uint32_t root = 0; root < size(); ++root) {
        columns[root].assign(1, { root, 1 });
        columnsOfRoot[root].assign(1, root);
    }
    replacements = 0;
}

const std::vector<LayoutBasis::Entry>& LayoutBasis::ratesOf(std::span<const Entry> sum) const
{
    if (scratch.weights.size() < columns.size()) {
        scratch.weights.resize(columns.size());
        scratch.isSeen.resize(columns.size());
    }
    scratch.rates.clear();
    scratch.seen.clear();
    for (const Entry& entry : sum)
        scratch.weights[entry.index] = entry.value;
    for (const Entry& entry : sum) {
        for (const std::uint32_t index : columnsOfRoot[entry.index]) {
            if (scratch.isSeen[index])
                continue;
            scratch.isSeen[index] = true;
            scratch.seen.push_back(index);
            double rate = 0;
            for (const Entry& root : columns[index])
                rate += root.value * scratch.weights[root.index];
            if (std::abs(rate) > negligible)
                scratch.rates.push_back({ index, rate });
        }
    }
    for (const std::uint32_t index : scratch.seen)
        scratch.isSeen[index] = false;
    for (const Entry& entry : sum)
        scratch.weights[entry.index] = 0;
    return scratch.rates;
}

void LayoutBasis::replace(std::uint32_t column, std::span<const Entry> sum)
{
    const std::vector<Entry>& rates = ratesOf(sum);
    double own = 0;
    for (const Entry& rate : rates)
        if (rate.index == column)
            own = rate.value;
    for (Entry& root : columns[column])
        root.value /= own;
    for (const Entry& rate : rates)
        if (rate.index != column)
            addColumn(rate.index, -rate.value, column);
    ++replacements;
}

// target += factor * source
void LayoutBasis::addColumn(std::uint32_t target, double factor, std::uint32_t source)
{
    auto& sum = scratch.sum;
    sum.clear();
    const auto& from = columns[source];
    auto& to = columns[target];
    auto next = to.begin();
    for (const Entry& entry : from) {
        while (next != to.end() && next->index < entry.index)
            sum.push_back(*next++);
        Entry total { entry.index, factor * entry.value };
        if (next != to.end() && next->index == entry.index)
            total.value += next++->value;
        else
            columnsOfRoot[entry.index].push_back(target);
        if (std::abs(total.value) > negligible)
            sum.push_back(total);
    }
    sum.insert(sum.end(), next, to.end());
    to.assign(sum.begin(), sum.end());
}

} // namespace platform
