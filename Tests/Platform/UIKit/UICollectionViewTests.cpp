#include "Platform/UIKit/UICollectionView.h"

#include "Tests/Platform/UIKit/ScreenTest.h"

namespace platform {
namespace {

class NamedCell final : public UICollectionViewCell {
public:
    using UICollectionViewCell::UICollectionViewCell;
    int shown = -1;
    int reuses = 0;

protected:
    void prepareForReuse() override { ++reuses; }
};

struct Items final : UICollectionViewDataSource, UICollectionViewDelegateFlowLayout {
    int count = 0;
    int first = 0; // the identity of item 0
    std::function<CGSize(int id)> size = [](int) { return CGSize { 100, 80 }; };
    std::function<std::string(int id)> content = [](int id) { return std::to_string(id); };
    std::function<void(int)> onSelect = [](int) {};
    const char* kind = "item";
    int asked = 0, sizes = 0;
    std::vector<int> selected;

    int numberOfItems(UICollectionView&) override { return count; }
    std::shared_ptr<UICollectionViewCell> cellForItem(UICollectionView& collection, int item) override
    {
        ++asked;
        const auto cell = std::static_pointer_cast<NamedCell>(collection.dequeueReusableCell(kind));
        if (cell)
            cell->shown = first + item;
        return cell;
    }
    std::string identityForItem(UICollectionView&, int item) override { return "#" + std::to_string(first + item); }
    std::string contentForItem(UICollectionView&, int item) override { return content(first + item); }
    CGSize sizeForItem(UICollectionView&, int item) override
    {
        ++sizes;
        return size(first + item);
    }
    void didSelectItem(UICollectionView&, int item) override
    {
        selected.push_back(item);
        onSelect(item);
    }
};

// 320 x 80 points with 5 points of room at both ends.
class UICollectionViewTest : public ScreenTest {
protected:
    UICollectionViewTest()
    {
        layout->setMinimumLineSpacing(0);
        collection->registerCell<NamedCell>("item");
        collection->setContentInset({ 0, 5, 0, 5 });
        collection->setDataSource(items);
        collection->setDelegate(items);
        window->addSubview(collection);
    }

    void show(int count)
    {
        items->count = count;
        collection->reloadData();
        makeFrame();
    }
    void scrollTo(double x)
    {
        collection->setContentOffset({ x, 0 });
        makeFrame();
    }
    void turn(UIUserInterfaceLayoutDirection direction)
    {
        setDirection(direction);
        makeFrame();
    }
    std::shared_ptr<NamedCell> cellOf(int id) const
    {
        for (const int item : collection->indicesForVisibleItems()) {
            const auto cell = std::static_pointer_cast<NamedCell>(collection->cellForItem(item));
            if (cell->shown == id)
                return cell;
        }
        return nullptr;
    }
    // Where the item of that identity is on the screen; nothing when it has no cell.
    std::optional<CGRect> place(int id) const
    {
        const auto cell = cellOf(id);
        return cell ? std::optional(onScreen(*cell)) : std::nullopt;
    }

    const std::shared_ptr<Items> items = std::make_shared<Items>();
    const std::shared_ptr<UICollectionViewFlowLayout> layout = make<UICollectionViewFlowLayout>();
    const std::shared_ptr<UICollectionView> collection = make<UICollectionView>(CGRect { 0, 0, 320, 80 }, layout);
};

TEST_F(UICollectionViewTest, itemsFollowOneAnotherFromTheLeadingSide)
{
    layout->setMinimumLineSpacing(10);
    items->size = [](int id) { return CGSize { 100, id == 1 ? 40.0 : 80.0 }; };
    show(9);
    EXPECT_EQ(place(0), (CGRect { 5, 0, 100, 80 })) << "behind the inset";
    EXPECT_EQ(place(1), (CGRect { 115, 20, 100, 40 })) << "a lower one lies in the middle";
    EXPECT_EQ(place(2), (CGRect { 225, 0, 100, 80 }));
    EXPECT_EQ(collection->cellForItem(1)->contentView()->frame(), (CGRect { 0, 0, 100, 40 }));
    EXPECT_EQ(collection->contentSize(), (CGSize { 980, 80 })) << "no space after the last";
    scrollTo(collection->maximumContentOffset().x);
    EXPECT_EQ(place(8)->maxX(), 315);
}

TEST_F(UICollectionViewTest, aHundredThousandItemsCostWhatAHundredDo)
{
    int asked[2], sizes[2];
    for (const int big : { 0, 1 }) {
        show(0);
        items->asked = items->sizes = 0;
        show(big ? 100'000 : 100);
        for (int i = 0; i < 40; ++i)
            scrollTo(collection->contentOffset().x + 70);
        show(items->count);
        asked[big] = items->asked;
        sizes[big] = items->sizes;
        scrollTo(-5);
        EXPECT_LE(collection->subviews().size(), 8u);
    }
    EXPECT_EQ(asked[0], asked[1]);
    EXPECT_EQ(sizes[0], sizes[1]);
    EXPECT_LT(sizes[1], 100);
    scrollTo(collection->maximumContentOffset().x);
    EXPECT_EQ(place(99'999)->maxX(), 315);
}

TEST_F(UICollectionViewTest, aReloadKeepsCellsAndWhatIsSeen)
{
    items->first = 50;
    show(30);
    scrollTo(240);
    const auto read = cellOf(53);
    const CGRect before = *place(53);
    const int asked = items->asked;
    items->first = 47; // three more in front
    show(33);
    EXPECT_EQ(place(53), before);
    EXPECT_EQ(cellOf(53), read);
    EXPECT_EQ(read->reuses, 0);
    EXPECT_EQ(items->asked, asked) << "nothing that is seen has changed";
    items->content = [](int id) { return id == 53 ? "other" : std::to_string(id); };
    show(33);
    EXPECT_EQ(items->asked, asked + 1);
    EXPECT_EQ(cellOf(53), read) << "filled anew in its own cell";

    scrollTo(-5);
    items->first = 46;
    show(34);
    EXPECT_EQ(place(46)->x, 5) << "at the beginning the new one is seen";

    scrollTo(2000);
    show(2);
    EXPECT_EQ(place(46)->x, 5) << "never beyond the end";
    EXPECT_EQ(place(47)->x, 105);
    show(0);
    EXPECT_TRUE(collection->indicesForVisibleItems().empty());
    show(1);
    EXPECT_EQ(place(46)->x, 5);
}

TEST_F(UICollectionViewTest, anotherSizeKeepsTheFirstItemInSight)
{
    items->size = [&](int) { return CGSize { collection->bounds().width * 0.8, collection->bounds().height }; };
    show(20);
    EXPECT_EQ(place(0), (CGRect { 5, 0, 256, 80 }));
    scrollTo(3 * 256 - 20);
    EXPECT_EQ(place(2)->maxX(), 20);
    collection->setFrame({ 0, 0, 480, 60 });
    makeFrame();
    EXPECT_EQ(place(2)->x, 20 - 256);
    EXPECT_EQ(place(2)->width, 384);
    EXPECT_EQ(place(3)->height, 60);
    EXPECT_EQ(collection->contentSize(), (CGSize { 20 * 384, 60 }));
    scrollTo(-5);
    collection->setFrame({ 0, 0, 320, 80 });
    makeFrame();
    EXPECT_EQ(place(0), (CGRect { 5, 0, 256, 80 }));
}

TEST_F(UICollectionViewTest, whatIsSeenStaysWhileUnknownWidthsAreMet)
{
    items->size = [](int id) { return CGSize { 60.0 + id * 37 % 90, 80 }; };
    for (const auto direction : { UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft }) {
        show(0);
        turn(direction);
        show(300);
        const bool mirrored = direction == UIUserInterfaceLayoutDirection::rightToLeft;
        const double towardsStart = mirrored ? 7 : -7;
        scrollTo((collection->minimumContentOffset().x + collection->maximumContentOffset().x) / 2);
        for (int i = 0; i < 400; ++i) {
            const int seen = collection->indicesForVisibleItems()[1];
            const double before = place(seen)->x;
            collection->setContentOffset({ collection->contentOffset().x + towardsStart, 0 });
            makeFrame();
            ASSERT_NEAR(place(seen)->x, before - towardsStart, 1e-6) << i;
            double covered = 0;
            for (const int item : collection->indicesForVisibleItems())
                covered += place(item)->width;
            ASSERT_GE(covered, 320);
        }
        for (int i = 0; i < 5; ++i)
            scrollTo(mirrored ? collection->minimumContentOffset().x : collection->maximumContentOffset().x);
        ASSERT_TRUE(place(299));
        EXPECT_NEAR(mirrored ? place(299)->x : 320 - place(299)->maxX(), 5, 1e-6);
    }
}

TEST_F(UICollectionViewTest, runsFromTheRightWhereTheInterfaceDoes)
{
    turn(UIUserInterfaceLayoutDirection::rightToLeft);
    show(10);
    EXPECT_EQ(place(0), (CGRect { 215, 0, 100, 80 }));
    EXPECT_EQ(place(2), (CGRect { 15, 0, 100, 80 }));
    UIApplication::shared().sendScroll({ 100, 40 }, -100, 0);
    makeFrame();
    EXPECT_EQ(place(1)->maxX(), 315);
    items->first = -2; // in front of what is seen
    show(12);
    EXPECT_EQ(place(1)->maxX(), 315);
    scrollTo(collection->minimumContentOffset().x);
    EXPECT_EQ(place(9)->x, 5);
    scrollTo(1e6);
    scrollTo(collection->maximumContentOffset().x);
    EXPECT_EQ(place(-2)->maxX(), 315);
    show(1);
    EXPECT_EQ(place(-2), (CGRect { 215, 0, 100, 80 })) << "a single one lies at the right";
    turn(UIUserInterfaceLayoutDirection::leftToRight);
    EXPECT_EQ(place(-2), (CGRect { 5, 0, 100, 80 }));
    turn(UIUserInterfaceLayoutDirection::rightToLeft);

    const double width = 393; // four fifths of which lie between two pixels
    collection->setFrame({ 0, 0, width, 80 });
    items->size = [width](int) { return CGSize { width * 0.8, 80 }; };
    show(0);
    show(5);
    items->first = -3;
    show(5);
    EXPECT_NEAR(place(-3)->maxX(), width - 5, 0.5) << "at the beginning the new one is seen";
}

TEST_F(UICollectionViewTest, aTapChoosesTheItemUnderIt)
{
    show(30);
    tap({ 150, 40 });
    EXPECT_EQ(items->selected, (std::vector { 1 }));
    scrollTo(245);
    tap({ 150, 40 });
    EXPECT_EQ(items->selected, (std::vector { 1, 3 }));
    tap({ 150, 100 }); // below it
    touch(UITouchPhase::began, { 200, 40 });
    for (int x = 190; x >= 120; x -= 10) {
        advance(1.0 / 60);
        touch(UITouchPhase::moved, { double(x), 40 });
    }
    touch(UITouchPhase::ended, { 120, 40 });
    EXPECT_EQ(items->selected.size(), 2u) << "a drag chooses nothing";
    advance(1.0 / 60);
    tap({ 150, 40 });
    EXPECT_EQ(items->selected.size(), 2u) << "a touch that stops the glide neither";
    show(2);
    tap({ 280, 40 });
    EXPECT_EQ(items->selected.size(), 2u) << "no item there";
    items->count = 1;
    collection->reloadData();
    tap({ 150, 40 });
    EXPECT_EQ(items->selected.size(), 2u) << "what is gone is not chosen, laid out or not";

    show(3);
    items->onSelect = [&](int) {
        collection->removeFromSuperview();
        items->count = 0;
        collection->reloadData();
    };
    tap({ 150, 40 });
    EXPECT_EQ(items->selected, (std::vector { 1, 3, 1 }));
}

TEST_F(UICollectionViewTest, itemsThatComeInAnAnimationAreThereAtOnce)
{
    show(1);
    const auto shown = collection->cellForItem(0);
    UIView::animate(1, [&] {
        items->first = -1;
        show(3);
    });
    EXPECT_FALSE(shown->layer()->animationKeys().empty()) << "makes room";
    EXPECT_TRUE(collection->cellForItem(0)->layer()->animationKeys().empty());
    EXPECT_TRUE(collection->cellForItem(2)->layer()->animationKeys().empty());
}

TEST_F(UICollectionViewTest, standsASourceThatLies)
{
    show(-4);
    EXPECT_EQ(takeLines().size(), 1u);
    items->kind = "never registered";
    show(1);
    EXPECT_EQ(takeLines().size(), 2u) << "no such kind, no cell";
    items->kind = "item";
    items->size = [](int) { return CGSize { std::nan(""), 80 }; };
    show(2);
    EXPECT_FALSE(takeLines().empty());
    EXPECT_EQ(collection->indicesForVisibleItems().size(), 2u);
    items->size = [](int) { return CGSize { 0, 80 }; };
    show(100'000);
    EXPECT_LE(collection->indicesForVisibleItems().size(), 320u) << "as many as find room";
    takeLines();
    items->size = [](int) { return CGSize { 100, 80 }; };
    auto passing = std::make_shared<Items>();
    passing->count = 3;
    collection->setDataSource(passing);
    collection->setDelegate(passing);
    makeFrame();
    passing = nullptr;
    collection->reloadData();
    makeFrame();
    EXPECT_TRUE(collection->indicesForVisibleItems().empty());
}

} // namespace
} // namespace platform
