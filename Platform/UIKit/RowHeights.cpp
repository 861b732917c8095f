#include "Platform/UIKit/RowHeights.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// Of a list that is read for hours only the last part is remembered.
constexpr std::size_t mostMeasured = 4096;

} // namespace

void RowHeights::setCount(int count)
{
    count_ = std::max(count, 0);
    while (!measured.empty() && rowOf(*measured.rbegin()) >= count_)
        erase(std::prev(measured.end()));
}

void RowHeights::setEstimate(double height)
{
    estimate_ = height;
    excess = 0;
    for (const auto& [row, each] : measured)
        excess += each - estimate_;
}

void RowHeights::forgetAll()
{
    measured.clear();
    shifted = 0;
    excess = 0;
}

void RowHeights::erase(std::map<int, double>::iterator row)
{
    excess -= row->second - estimate_;
    measured.erase(row);
}

double RowHeights::height(int row) const
{
    const auto found = measured.find(row - shifted);
    return found == measured.end() ? estimate_ : found->second;
}

void RowHeights::set(int row, double height)
{
    const auto [entry, isNew] = measured.try_emplace(row - shifted, estimate_);
    excess += height - entry->second;
    entry->second = height;
    if (measured.size() <= mostMeasured)
        return;
    const bool firstIsFarther = row - rowOf(*measured.begin()) > rowOf(*measured.rbegin()) - row;
    erase(firstIsFarther ? measured.begin() : std::prev(measured.end()));
}

void RowHeights::shift(int by)
{
    shifted += by;
    while (!measured.empty() && rowOf(*measured.begin()) < 0)
        erase(measured.begin());
}

double RowHeights::offset(int row) const
{
    if (row >= count_)
        return total();
    double sum = row * estimate_;
    for (auto each = measured.begin(); each != measured.end() && rowOf(*each) < row; ++each)
        sum += each->second - estimate_;
    return sum;
}

int RowHeights::rowAt(double offset) const
{
    if (count_ == 0)
        return -1;
    double top = 0; // of `next`
    int next = 0;
    for (const auto& each : measured) {
        const int row = rowOf(each);
        const double height = each.second;
        const double reached = top + (row - next) * estimate_;
        if (offset < reached)
            break;
        if (offset < reached + height)
            return row;
        top = reached + height;
        next = row + 1;
    }
    const double rest = std::clamp((offset - top) / estimate_, 0.0, double(count_));
    return std::clamp(next + int(std::floor(rest)), 0, count_ - 1);
}

} // namespace platform
