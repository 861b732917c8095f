#pragma once

#include "Platform/UIKit/Layout/LayoutBasis.h"
#include "Platform/UIKit/Layout/LayoutEquation.h"

namespace platform {

// The rows of a simplex: sums of roots whose residuals cost something when they are not 0, or on one side of 0 only.
class LayoutRows {
public:
    using Entry = LayoutBasis::Entry; // of a root, if nothing else is said
    static constexpr std::uint32_t none = 0xffffffff;

    struct Row {
        double residual = 0; // points
        double rank = 0; // orders the levels, the highest first
        std::uint32_t source = none; // the caller's name
        std::uint32_t firstEntry = 0;
        std::uint32_t entryCount = 0;
        std::uint32_t level = 0;
        std::uint32_t column = none; // where it is tight
        LayoutRelation relation = LayoutRelation::equal;
        std::int8_t side = 1; // the sign of the residual, as far as the cost is concerned
        bool isStay = false;

        // What the cost gains with each point of the residual, on a side of 0.
        double slope(int onSide) const;
        double slope() const { return slope(side); }
    };

    std::uint32_t size() const { return static_cast<std::uint32_t>(rows.size()); }
    Row& operator[](std::uint32_t index) { return rows[index]; }
    const Row& operator[](std::uint32_t index) const { return rows[index]; }
    auto begin() { return rows.begin(); }
    auto end() { return rows.end(); }
    auto begin() const { return rows.begin(); }
    auto end() const { return rows.end(); }

    std::span<const Entry> entriesOf(const Row& row) const { return { entries.data() + row.firstEntry, row.entryCount }; }
    // The rows that a root moves, indexed by row.
    const std::vector<Entry>& usesOf(std::uint32_t root) const { return uses[root]; }
    const std::vector<double>& levels() const { return ranks; } // their ranks, descending

    void addRoot() { uses.emplace_back(); }
    Row& add(std::uint32_t source, LayoutRelation relation, double rank, std::span<const Entry> sum);
    void append(const LayoutRows& other); // rows, roots and columns count on behind its own
    void removeStays();
    void rankLevels(); // after adding

private:
    std::vector<Row> rows;
    std::vector<Entry> entries; // of all rows
    std::vector<std::vector<Entry>> uses; // by root
    std::vector<double> ranks;
};

} // namespace platform
