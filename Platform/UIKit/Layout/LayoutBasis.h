#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace platform {

// The inverse of a simplex's matrix, by sparse columns. A column tells how the roots move when one coordinate moves and
// the others rest; at first the coordinates are the roots themselves.
class LayoutBasis {
public:
    struct Entry {
        std::uint32_t index; // of a root, if nothing else is said
        double value;
    };

    std::uint32_t size() const { return static_cast<std::uint32_t>(columns.size()); }
    void addRoot();
    void append(const LayoutBasis& other); // its roots and columns come behind
    void reset();

    const std::vector<Entry>& column(std::uint32_t index) const { return columns[index]; }
    // How a sum of roots moves with the coordinates, indexed by column. Holds until the next call on any basis.
    const std::vector<Entry>& ratesOf(std::span<const Entry> sum) const;
    // Makes the sum the coordinate of a column, which must move it.
    void replace(std::uint32_t column, std::span<const Entry> sum);
    // How often that was done since the roots were the coordinates; rounding errors grow with it.
    std::uint32_t replacementCount() const { return replacements; }

private:
    void addColumn(std::uint32_t target, double factor, std::uint32_t source);

    std::vector<std::vector<Entry>> columns; // each ordered by root
    std::vector<std::vector<std::uint32_t>> columnsOfRoot; // and some that the root has left
    std::uint32_t replacements = 0;
};

} // namespace platform
