#pragma once

#include <map>

namespace platform {

// The heights of a column of rows of which only a few were measured. Cost and memory follow those, not the number of rows.
// Points.
class RowHeights {
public:
    int count() const { return count_; }
    void setCount(int count); // forgets what lies beyond
    double estimate() const { return estimate_; }
    void setEstimate(double height);

    double height(int row) const;
    void set(int row, double height); // as measured
    void forgetAll();
    // Rows have come (or gone, when negative) before all that were measured.
    void shift(int by);
    double total() const { return count_ * estimate_ + excess; }
    double offset(int row) const; // of the row's upper edge
    int rowAt(double offset) const; // the row that covers it; the first or last one outside; -1 when there is none

private:
    int rowOf(const std::pair<const int, double>& entry) const { return entry.first + shifted; }
    void erase(std::map<int, double>::iterator row);

    std::map<int, double> measured; // by the row less `shifted`, so that a shift touches none of them
    int shifted = 0;
    double excess = 0; // of what was measured over the estimate
    double estimate_ = 44;
    int count_ = 0;
};

} // namespace platform
