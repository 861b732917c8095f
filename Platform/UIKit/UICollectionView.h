#pragma once

#include "Platform/UIKit/CellPool.h"
#include "Platform/UIKit/UICollectionViewCell.h"
#include "Platform/UIKit/UICollectionViewFlowLayout.h"
#include "Platform/UIKit/UIScrollView.h"

#include <deque>
#include <limits>

namespace platform {

class UICollectionView;

// Asked for the items that can be seen, and for no others. Held weakly by the collection.
class UICollectionViewDataSource {
public:
    virtual ~UICollectionViewDataSource() = default;
    virtual int numberOfItems(UICollectionView& collectionView) = 0;
    // A dequeued cell, filled with the item. One that was shown before the reload gets the very cell back that showed it.
    virtual std::shared_ptr<UICollectionViewCell> cellForItem(UICollectionView& collectionView, int item) = 0;
    // What stays the same for an item when others come and go before it.
    virtual std::string identityForItem(UICollectionView& /*collectionView*/, int item) { return std::to_string(item); }
    // Tells apart what the item may show: a reload asks for its cell again only when this differs. Empty: asks at every reload.
    virtual std::string contentForItem(UICollectionView& /*collectionView*/, int /*item*/) { return {}; }
};

// Held weakly by the collection.
class UICollectionViewDelegateFlowLayout : public UIScrollViewDelegate {
public:
    // Of the first item, of those that can be seen, and anew when the collection gets another size. 50 x 50 unless overridden.
    virtual CGSize sizeForItem(UICollectionView& /*collectionView*/, int /*item*/) { return { 50, 50 }; }
    virtual void didSelectItem(UICollectionView& /*collectionView*/, int /*item*/) { } // tapped; may end the collection
};

// A line of items that scrolls sideways, from right to left where the interface does. Work follows the visible items, however
// many there are. Points; main thread.
class UICollectionView : public UIScrollView {
public:
    explicit UICollectionView(
        const CGRect& frame = {}, std::shared_ptr<UICollectionViewFlowLayout> layout = make<UICollectionViewFlowLayout>());

    const std::shared_ptr<UICollectionViewFlowLayout>& collectionViewLayout() const { return layout; }
    void setDataSource(std::weak_ptr<UICollectionViewDataSource> source);
    void setDelegate(const std::weak_ptr<UICollectionViewDelegateFlowLayout>& delegate);

    // What dequeueReusableCell makes under that identifier.
    template <typename Cell> void registerCell(const std::string& identifier)
    {
        pool.registerFactory(
            identifier, [identifier]() -> std::shared_ptr<UICollectionViewCell> { return make<Cell>(identifier); });
    }
    // Null, after a console line, for an identifier that nothing is registered under.
    std::shared_ptr<UICollectionViewCell> dequeueReusableCell(const std::string& identifier);

    // Asks the source again at the next layout. By the items' identities cells and the reading position are kept, unless the
    // collection stands at its beginning.
    void reloadData();
    int numberOfItems() const { return layout->count(); } // as of the last layout
    std::shared_ptr<UICollectionViewCell> cellForItem(int item) const; // null when it is not in the bounds
    std::vector<int> indicesForVisibleItems() const; // in their order

protected:
    // UIView
    void layoutSubviews() override;
    void boundsDidChange(const CGRect& previous) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    // UIScrollView
    void contentOffsetDidChange() override;

private:
    struct Item {
        int index = 0;
        std::string identity, content;
        CGSize size;
        std::shared_ptr<UICollectionViewCell> cell;
        bool isNew = true; // not placed yet
    };
    void relayout();
    int findItem(UICollectionViewDataSource& source, const std::string& identity, int near, int count);
    void fill();
    void cover();
    Item makeItem(int index);
    CGSize measure(int index);
    void place(Item& item);
    void tapped(CGPoint point); // in the content

    // Points from the content's leading end to the leading edge of the bounds.
    double offsetFromStart() const;
    void setOffsetFromStart(double offset);
    double smallestOffset() const;
    double largestOffset() const;
    double contentWidth() const;
    bool isLaidOut() const; // for the present size and direction

    const std::shared_ptr<UICollectionViewFlowLayout> layout;
    std::weak_ptr<UICollectionViewDataSource> dataSource;
    std::weak_ptr<UICollectionViewDelegateFlowLayout> flowDelegate;
    CellPool pool;
    std::deque<Item> items; // in sight, without gaps
    double offset = -std::numeric_limits<double>::infinity(); // from the start, as last laid out
    CGSize laidOutSize; // of the bounds
    bool mirrored = false; // from right to left, as last laid out
    bool reloadPending = false;
    bool filling = false;
};

} // namespace platform
