#include "Platform/UIKit/Layout/LayoutRows.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace platform {

double LayoutRows::Row::slope(int onSide) const
{
    if (relation == LayoutRelation::equal)
        return onSide;
    if (relation == LayoutRelation::greaterOrEqual)
        return onSide < 0 ? -1 : 0;
    return onSide > 0 ? 1 : 0;
}

LayoutRows::Row& LayoutRows::add(std::uint32_t source, LayoutRelation relation, double rank, std::span<const Entry> sum)
{
    for (const Entry& entry : sum)
        uses[entry.index].push_back({ size(), entry.value });
    Row& row = rows.emplace_back();
    row.source = source;
    row.relation = relation;
    row.rank = rank;
    row.firstEntry = static_cast<std::uint32_t>(entries.size());
    row.entryCount = static_cast<std::uint32_t>(sum.size());
    entries.insert(entries.end(), sum.begin(), sum.end());
    return row;
}

void LayoutRows::append(const LayoutRows& other)
{
    const auto rootOffset = static_cast<std::uint32_t>(uses.size());
    const std::uint32_t rowOffset = size();
    const auto entryOffset = static_cast<std::uint32_t>(entries.size());
    for (const Entry& entry : other.entries)
        entries.push_back({ entry.index + rootOffset, entry.value });
    for (Row row : other.rows) {
        row.firstEntry += entryOffset;
        row.column += row.column == none ? 0 : rootOffset;
        rows.push_back(row);
    }
    for (auto list : other.uses) {
        for (Entry& entry : list)
            entry.index += rowOffset;
        uses.push_back(std::move(list));
    }
    rankLevels();
}

void LayoutRows::removeStays()
{
    const std::vector<Row> oldRows = std::exchange(rows, {});
    const std::vector<Entry> oldEntries = std::exchange(entries, {});
    for (auto& list : uses)
        list.clear();
    for (const Row& old : oldRows) {
        if (old.isStay)
            continue;
        Row& row = add(old.source, old.relation, old.rank, { oldEntries.data() + old.firstEntry, old.entryCount });
        row.residual = old.residual;
        row.column = old.column;
        row.side = old.side;
    }
    rankLevels();
}

void LayoutRows::rankLevels()
{
    ranks.clear();
    for (const Row& row : rows)
        ranks.push_back(row.rank);
    std::sort(ranks.begin(), ranks.end(), std::greater<>());
    ranks.erase(std::unique(ranks.begin(), ranks.end()), ranks.end());
    for (Row& row : rows) {
        const auto level = std::lower_bound(ranks.begin(), ranks.end(), row.rank, std::greater<>());
        row.level = static_cast<std::uint32_t>(level - ranks.begin());
    }
}

} // namespace platform
