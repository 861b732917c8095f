#include "Platform/UIKit/UITableView.h"

#include "Platform/Foundation/NSLog.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr int searchReach = 200; // rows around its former place in which a row is looked for after a reload

} // namespace

UITableView::UITableView(const CGRect& frame)
    : UIScrollView(frame)
{
    setAlwaysBounceVertical(true);
}

void UITableView::setDataSource(std::weak_ptr<UITableViewDataSource> source)
{
    dataSource = std::move(source);
    reloadData();
}

void UITableView::setDelegate(const std::weak_ptr<UITableViewDelegate>& delegate)
{
    tableDelegate = delegate;
    UIScrollView::setDelegate(delegate);
}

void UITableView::setEstimatedRowHeight(double height)
{
    heights.setEstimate(std::isfinite(height) ? std::max(height, 1.0) : 1);
    setNeedsLayout();
}

std::shared_ptr<UITableViewCell> UITableView::dequeueReusableCell(const std::string& identifier)
{
    return std::static_pointer_cast<UITableViewCell>(pool.dequeue(identifier));
}

void UITableView::reloadData()
{
    reloadPending = true;
    setNeedsLayout();
}

CGRect UITableView::rectForRow(int row) const
{
    if (row < 0 || row >= heights.count())
        return {};
    return { 0, heights.offset(row), bounds().width, heights.height(row) };
}

std::shared_ptr<UITableViewCell> UITableView::cellForRow(int row) const
{
    for (const Row& each : rows)
        if (each.index == row)
            return each.cell;
    return nullptr;
}

std::vector<int> UITableView::indicesForVisibleRows() const
{
    std::vector<int> indices;
    for (const Row& row : rows)
        indices.push_back(row.index);
    return indices;
}

void UITableView::scrollToRow(int row, bool animated)
{
    if (row < 0 || row >= heights.count())
        return;
    const double top = heights.offset(row) + minimumContentOffset().y;
    setContentOffset({ contentOffset().x, std::clamp(top, minimumContentOffset().y, maximumContentOffset().y) }, animated);
}

void UITableView::layoutSubviews()
{
    const auto keep = weak(this).lock();
    // Not the scroll view's: constraints inside do not give the content's size here, the rows do.
    UIView::layoutSubviews(); // NOLINT(bugprone-parent-virtual-call)
    if (std::exchange(reloadPending, false)) {
        reloadNow();
    } else {
        const bool wasFilling = std::exchange(filling, true); // moving the content asks for no rows yet
        remeasure();
        filling = wasFilling;
    }
    fill();
}

void UITableView::contentOffsetDidChange()
{
    standsAtTop = isAtTop();
    if (!reloadPending)
        fill();
}

void UITableView::boundsDidChange(const CGRect& previous)
{
    UIScrollView::boundsDidChange(previous);
    if (bounds().size() != previous.size())
        setNeedsLayout();
}

void UITableView::safeAreaInsetsDidChange()
{
    const bool stays = standsAtTop;
    UIScrollView::safeAreaInsetsDidChange();
    if (stays && !isDragging() && !isDecelerating())
        setContentOffset({ contentOffset().x, minimumContentOffset().y });
    setNeedsLayout();
}

void UITableView::reloadNow()
{
    const auto source = dataSource.lock();
    int count = source ? source->numberOfRows(*this) : 0;
    if (count < 0) {
        NSLog("table " + layoutName() + " shows no rows: its source counts " + std::to_string(count));
        count = 0;
    }
    const bool wasFilling = std::exchange(filling, true);
    remeasure();
    const int anchor = reanchor(count);
    filling = wasFilling;
    if (bounds().isEmpty())
        return;
    // The rows that stay in the bounds keep their cells, which are filled again where the content differs.
    for (const Row& row : std::exchange(rows, {}))
        pool.keep(row.identity, row.content, row.cell);
    fill(anchor);
    pool.recycleKept();
}

// Carries heights and the reading position over to the new count of rows: the first visible row that is still there stays where
// it is. Returns its index; -1 when there is none, or the table stands at its top.
int UITableView::reanchor(int count)
{
    const auto source = dataSource.lock();
    const bool atTop = isAtTop();
    const Row* anchor = nullptr;
    int found = -1;
    for (const Row& row : rows) {
        if (!source || row.top + row.height <= contentOffset().y)
            continue;
        found = findRow(*source, row.identity, row.index, count);
        anchor = &row;
        if (found >= 0)
            break;
    }
    if (found < 0) {
        heights.setCount(count);
        return -1;
    }
    const double before = heights.offset(anchor->index);
    if (const int by = found - anchor->index; by != 0)
        heights.shift(by);
    heights.setCount(count);
    const double way = heights.offset(found) - before;
    updateContentSize();
    if (atTop)
        return -1;
    if (way != 0)
        move(way);
    return found;
}

// Looks where the row was, then ever further around it: shows come and go one by one.
int UITableView::findRow(UITableViewDataSource& source, const std::string& identity, int near, int count)
{
    for (int distance = 0; distance <= searchReach; ++distance)
        for (const int row : { near + distance, near - distance })
            if (row >= 0 && row < count && source.identityForRow(*this, row) == identity)
                return row;
    return -1;
}

// Another width asks for other heights; what is read stays in its place.
void UITableView::remeasure()
{
    const auto [left, right] = sides();
    const double width = std::max(0.0, bounds().width - left - right);
    if (rows.empty() || bounds().isEmpty())
        return;
    const bool resized = width != std::exchange(measuredWidth, width);
    const double top = rows.front().top;
    if (resized)
        heights.forgetAll();
    bool changed = resized;
    for (Row& row : rows) {
        const double before = row.height;
        row.height = measure(row);
        changed = changed || row.height != before;
    }
    if (!changed)
        return;
    double next = heights.offset(rows.front().index);
    for (Row& row : rows)
        row.top = std::exchange(next, next + row.height);
    updateContentSize();
    const bool atTop = isAtTop();
    const double way = rows.front().top - top;
    if (way != 0 && !atTop)
        shiftContentOffset({ 0, way });
    for (const Row& row : rows)
        place(row);
}

// Gives every row within the bounds a cell, and takes away those of the others. When none has one yet it begins with `first`,
// which those before make room for; with the row at the upper edge where that is negative.
void UITableView::fill(int first)
{
    if (filling || bounds().isEmpty())
        return;
    const auto keep = weak(this).lock();
    filling = true;
    const auto [left, right] = sides();
    measuredWidth = std::max(0.0, bounds().width - left - right);
    const auto isOut = [this](const Row& row) { return row.top + row.height <= bounds().minY() || row.top >= bounds().maxY(); };
    while (!rows.empty() && (isOut(rows.front()) || rows.front().index >= heights.count())) {
        pool.recycle(rows.front().cell);
        rows.pop_front();
    }
    while (!rows.empty() && (isOut(rows.back()) || rows.back().index >= heights.count())) {
        pool.recycle(rows.back().cell);
        rows.pop_back();
    }
    updateContentSize();
    if (rows.empty()) {
        if (first < 0)
            first = heights.rowAt(std::max(0.0, bounds().minY()));
        if (first >= 0)
            addRow(first, false);
    }
    while (
        !rows.empty() && rows.front().index > 0 && rows.front().top > bounds().minY() && addRow(rows.front().index - 1, true)) { }
    while (!rows.empty() && rows.back().index + 1 < heights.count() && rows.back().top + rows.back().height < bounds().maxY()
        && addRow(rows.back().index + 1, false)) { }
    updateContentSize();
    filling = false;
    tellOfDisplayedRows();
}

void UITableView::tellOfDisplayedRows()
{
    for (const int row : std::exchange(displayed, {}))
        if (const auto delegate = tableDelegate.lock()) // which each call may end
            delegate->willDisplayRow(*this, row);
}

bool UITableView::addRow(int index, bool above)
{
    const auto source = dataSource.lock();
    if (!source)
        return false;
    Row row;
    row.index = index;
    displayed.push_back(index);
    row.identity = source->identityForRow(*this, index);
    row.content = source->contentForRow(*this, index);
    row.cell = makeCell(row);
    const bool appears = row.cell->superview() != this || row.cell->isHidden();
    if (row.cell->superview() != this)
        addSubview(row.cell);
    row.cell->setHidden(false);
    const double expected = heights.height(index);
    row.height = measure(row);
    if (above) {
        row.top = rows.front().top - expected;
        rows.push_front(row);
        if (row.height != expected)
            move(row.height - expected);
        // It reaches upwards: what was below has made room for it.
        rows.front().top = heights.offset(index);
    } else {
        row.top = rows.empty() ? heights.offset(index) : rows.back().top + rows.back().height;
        rows.push_back(row);
    }
    const Row placed = above ? rows.front() : rows.back();
    if (!appears) {
        place(placed);
        return true;
    }
    // One that comes in an animated change is there at once: where its cell was before says nothing.
    performWithoutAnimation([&] {
        place(placed);
        placed.cell->layer()->layoutUntilSettled();
    });
    return true;
}

double UITableView::measure(Row& row)
{
    UITableViewCell& cell = *row.cell;
    if (cell.measuredWidth == measuredWidth && !cell.contentView()->layer()->needsLayout() && row.height > 0)
        return row.height;
    if (cell.measuredWidth == measuredWidth && !cell.contentView()->layer()->needsLayout() && cell.frame().height > 0) {
        heights.set(row.index, cell.frame().height);
        return cell.frame().height;
    }
    double height = cell.fittingHeight(measuredWidth);
    if (!(height > 0)) {
        NSLog("row " + std::to_string(row.index) + " of " + layoutName()
            + " has the estimated height: its cell's constraints give none");
        height = heights.estimate();
    }
    heights.set(row.index, height);
    return height;
}

std::shared_ptr<UITableViewCell> UITableView::makeCell(const Row& row)
{
    const auto source = dataSource.lock();
    auto cell = std::static_pointer_cast<UITableViewCell>(
        pool.cellFor(row.identity, row.content, [&] { return source ? source->cellForRow(*this, row.index) : nullptr; }));
    if (!cell) {
        NSLog("row " + std::to_string(row.index) + " of " + layoutName() + " stays empty: its source has no cell for it");
        cell = make<UITableViewCell>();
    }
    return cell;
}

void UITableView::place(const Row& row)
{
    const auto [left, right] = sides();
    row.cell->place({ 0, row.top, bounds().width, row.height }, left, right);
}

void UITableView::move(double distance)
{
    for (Row& row : rows)
        row.top += distance;
    updateContentSize();
    const bool wasFilling = std::exchange(filling, true);
    for (const Row& row : rows)
        if (row.cell)
            row.cell->setFrame({ 0, row.top, bounds().width, row.height });
    shiftContentOffset({ 0, distance });
    filling = wasFilling;
}

bool UITableView::isAtTop() const { return contentOffset().y <= minimumContentOffset().y; }

void UITableView::updateContentSize() { setContentSize({ bounds().width, heights.total() }); }

UITableView::Sides UITableView::sides() const { return { safeAreaInsets().left, safeAreaInsets().right }; }

} // namespace platform
