#include "Platform/UIKit/UICollectionView.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UITapGestureRecognizer.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double sameOffset = 0.5; // points; offsets lie on pixels, and widths need not

constexpr int searchReach = 200; // items around its former place in which an item is looked for after a reload
constexpr double narrowest = 1; // points of an item, so that no end of them finds room in the bounds

} // namespace

UICollectionView::UICollectionView(const CGRect& frame, std::shared_ptr<UICollectionViewFlowLayout> flowLayout)
    : UIScrollView(frame)
    , layout(std::move(flowLayout))
{
    setAlwaysBounceHorizontal(true);
    addGestureRecognizer(make<UITapGestureRecognizer>([self = weak(this)](UIGestureRecognizer& tap) {
        if (const auto collection = self.lock())
            collection->tapped(tap.location(collection.get()));
    }));
}

void UICollectionView::setDataSource(std::weak_ptr<UICollectionViewDataSource> source)
{
    dataSource = std::move(source);
    reloadData();
}

void UICollectionView::setDelegate(const std::weak_ptr<UICollectionViewDelegateFlowLayout>& delegate)
{
    flowDelegate = delegate;
    UIScrollView::setDelegate(delegate);
    reloadData();
}

std::shared_ptr<UICollectionViewCell> UICollectionView::dequeueReusableCell(const std::string& identifier)
{
    return std::static_pointer_cast<UICollectionViewCell>(pool.dequeue(identifier));
}

void UICollectionView::reloadData()
{
    reloadPending = true;
    setNeedsLayout();
}

std::shared_ptr<UICollectionViewCell> UICollectionView::cellForItem(int index) const
{
    const auto found = std::ranges::find(items, index, &Item::index);
    return found == items.end() ? nullptr : found->cell;
}

std::vector<int> UICollectionView::indicesForVisibleItems() const
{
    std::vector<int> indices;
    for (const Item& item : items)
        indices.push_back(item.index);
    return indices;
}

void UICollectionView::layoutSubviews()
{
    const auto keep = weak(this).lock();
    // Not the scroll view's: constraints inside do not give the content's size here, the items do.
    UIView::layoutSubviews(); // NOLINT(bugprone-parent-virtual-call)
    if (!bounds().isEmpty() && (reloadPending || !isLaidOut()))
        relayout();
    fill();
}

void UICollectionView::boundsDidChange(const CGRect& previous)
{
    UIScrollView::boundsDidChange(previous);
    if (bounds().size() != previous.size())
        setNeedsLayout();
}

void UICollectionView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIScrollView::traitCollectionDidChange(previous);
    setNeedsLayout();
}

void UICollectionView::contentOffsetDidChange()
{
    if (filling || !isLaidOut())
        return;
    offset = offsetFromStart();
    if (!reloadPending)
        fill();
}

// Carries cells and the reading position over to what the source and the delegate say now.
void UICollectionView::relayout()
{
    const auto source = dataSource.lock();
    reloadPending = false;
    int count = source ? source->numberOfItems(*this) : 0;
    if (count < 0) {
        NSLog("collection " + layoutName() + " shows no items: its source counts " + std::to_string(count));
        count = 0;
    }
    const bool atStart = offset <= smallestOffset() + sameOffset;
    int anchor = -1; // the first item in sight that is still there keeps its distance from the edge
    double distance = 0;
    for (const Item& item : items) {
        distance = layout->start(item.index) - offset;
        if (!source || distance + item.size.width <= 0)
            continue;
        anchor = findItem(*source, item.identity, item.index, count);
        if (anchor < 0)
            continue;
        layout->shift(anchor - item.index);
        break;
    }
    if (!isLaidOut())
        layout->forgetWidths();
    laidOutSize = bounds().size();
    mirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    layout->setCount(count);
    if (count > 0)
        layout->setEstimatedWidth(measure(0).width);
    if (atStart)
        offset = smallestOffset();
    else if (anchor >= 0)
        offset = layout->start(anchor) - distance;
    for (const Item& item : std::exchange(items, {}))
        pool.keep(item.identity, item.content, item.cell);
    filling = true;
    setContentSize({ contentWidth(), bounds().height });
    if (anchor >= 0 && !atStart)
        items.push_back(makeItem(anchor));
    if (!isDragging() && !isDecelerating())
        offset = std::clamp(offset, smallestOffset(), largestOffset());
    filling = false;
    fill();
    pool.recycleKept();
}

// Looks where the item was, then ever further around it.
int UICollectionView::findItem(UICollectionViewDataSource& source, const std::string& identity, int near, int count)
{
    for (int way = 0; way <= searchReach; ++way)
        for (const int item : { near + way, near - way })
            if (item >= 0 && item < count && source.identityForItem(*this, item) == identity)
                return item;
    return -1;
}

// Gives every item within the bounds a cell, and takes away those of the others. What is seen stays where it is when an item
// before it turns out to be of another width than was thought.
void UICollectionView::fill()
{
    if (filling || reloadPending || !isLaidOut())
        return;
    const auto keep = weak(this).lock();
    filling = true;
    const auto end = [this](int item) { return layout->start(item) + layout->width(item); };
    const double width = bounds().width;
    const auto isOut = [&](const Item& item) { return end(item.index) <= offset || layout->start(item.index) >= offset + width; };
    while (!items.empty() && isOut(items.front())) {
        pool.recycle(items.front().cell);
        items.pop_front();
    }
    while (!items.empty() && isOut(items.back())) {
        pool.recycle(items.back().cell);
        items.pop_back();
    }
    cover();
    if (contentWidth() != contentSize().width && !isDragging() && !isDecelerating()) {
        offset = std::clamp(offset, smallestOffset(), largestOffset());
        cover();
    }
    setContentSize({ contentWidth(), bounds().height });
    setOffsetFromStart(offset);
    for (Item& item : items)
        place(item);
    filling = false;
}

void UICollectionView::cover()
{
    const auto end = [this](int item) { return layout->start(item) + layout->width(item); };
    if (items.empty() && layout->count() > 0)
        items.push_back(makeItem(layout->itemAt(std::max(0.0, offset))));
    while (!items.empty() && items.front().index > 0 && end(items.front().index - 1) > offset) {
        const int before = items.front().index - 1;
        const double expected = layout->width(before);
        items.push_front(makeItem(before));
        offset += layout->width(before) - expected;
    }
    while (!items.empty() && items.back().index + 1 < layout->count()
        && layout->start(items.back().index + 1) < offset + bounds().width)
        items.push_back(makeItem(items.back().index + 1));
}

UICollectionView::Item UICollectionView::makeItem(int index)
{
    Item item;
    item.index = index;
    item.size = measure(index);
    layout->setWidth(index, item.size.width);
    const auto source = dataSource.lock();
    if (source) {
        item.identity = source->identityForItem(*this, index);
        item.content = source->contentForItem(*this, index);
    }
    item.cell = std::static_pointer_cast<UICollectionViewCell>(
        pool.cellFor(item.identity, item.content, [&] { return source ? source->cellForItem(*this, index) : nullptr; }));
    if (!item.cell) {
        NSLog("item " + std::to_string(index) + " of " + layoutName() + " stays empty: its source has no cell for it");
        item.cell = make<UICollectionViewCell>();
    }
    item.isNew = item.cell->superview() != this || item.cell->isHidden();
    if (item.cell->superview() != this)
        addSubview(item.cell);
    item.cell->setHidden(false);
    return item;
}

CGSize UICollectionView::measure(int index)
{
    const auto delegate = flowDelegate.lock();
    const CGSize size
        = delegate ? delegate->sizeForItem(*this, index) : UICollectionViewDelegateFlowLayout().sizeForItem(*this, index);
    if (size.width >= narrowest && size.height >= 0 && std::isfinite(size.width) && std::isfinite(size.height))
        return size;
    NSLog("item " + std::to_string(index) + " of " + layoutName() + " is " + std::to_string(int(narrowest))
        + " point wide: its size is too small or not a number");
    return { narrowest, bounds().height };
}

void UICollectionView::place(Item& item)
{
    const double start = layout->start(item.index), width = item.size.width;
    const double pixels = std::max(1.0, double(traitCollection().displayScale));
    const auto snapped = [pixels](double value) { return std::round(value * pixels) / pixels; }; // texts in it stay sharp
    const CGRect frame { snapped(mirrored ? contentWidth() - start - width : start),
        snapped((bounds().height - item.size.height) / 2), width, item.size.height };
    if (!std::exchange(item.isNew, false))
        return item.cell->place(frame);
    // One that comes in an animated change is there at once: where its cell was before says nothing.
    performWithoutAnimation([&] {
        item.cell->place(frame);
        item.cell->layer()->layoutUntilSettled();
    });
}

void UICollectionView::tapped(CGPoint point)
{
    const auto found = std::ranges::find_if(items, [&](const Item& item) { return item.cell->frame().contains(point); });
    const auto delegate = flowDelegate.lock();
    if (found != items.end() && delegate && !reloadPending)
        delegate->didSelectItem(*this, found->index);
}

double UICollectionView::offsetFromStart() const
{
    return mirrored ? contentSize().width - bounds().width - contentOffset().x : contentOffset().x;
}

void UICollectionView::setOffsetFromStart(double newOffset)
{
    const double x = mirrored ? contentWidth() - bounds().width - newOffset : newOffset;
    shiftContentOffset({ x - contentOffset().x, 0 });
    offset = offsetFromStart();
}

double UICollectionView::smallestOffset() const
{
    const UIEdgeInsets inset = adjustedContentInset();
    return -(mirrored ? inset.right : inset.left);
}

double UICollectionView::largestOffset() const
{
    const UIEdgeInsets inset = adjustedContentInset();
    return std::max(smallestOffset(), contentWidth() + (mirrored ? inset.left : inset.right) - bounds().width);
}

// From right to left items that do not fill the bounds lie at their right edge.
double UICollectionView::contentWidth() const
{
    const UIEdgeInsets inset = adjustedContentInset();
    return mirrored ? std::max(layout->contentWidth(), bounds().width - inset.left - inset.right) : layout->contentWidth();
}

bool UICollectionView::isLaidOut() const
{
    return laidOutSize == bounds().size() && !bounds().isEmpty()
        && mirrored == (effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft);
}

} // namespace platform
