#include "Platform/UIKit/UITableView.h"

#include "Tests/Platform/UIKit/ScreenTest.h"

#include <algorithm>

namespace platform {
namespace {

// A row as high as it is told, in a content that wraps like a text of that area when it has one.
class HighCell : public UITableViewCell {
public:
    explicit HighCell(const std::string& identifier)
        : UITableViewCell(identifier)
        , content(make<Content>(CGSize { UIView::noIntrinsicMetric, 10 }))
    {
        contentView()->addSubview(content);
        platform::fill(*content, *contentView());
    }
    void show(int id, double height)
    {
        shown = id;
        if (height != content->intrinsicContentSize().height)
            content->setSize({ UIView::noIntrinsicMetric, height });
    }
    const std::shared_ptr<Content> content;
    int shown = -1;
    int reuses = 0;

protected:
    void prepareForReuse() override { ++reuses; }
};

struct Rows final : UITableViewDataSource {
    int count = 0;
    int first = 0; // the identity of row 0
    std::vector<int> dropped; // identities that are gone, ascending
    std::function<double(int id)> height = [](int id) { return 50.0 + id % 3 * 10; };
    std::function<std::string(int id)> identity = [](int id) { return "#" + std::to_string(id); };
    std::function<std::string(int id)> content = [](int) { return ""; };
    const char* kind = "row";
    int asked = 0, identities = 0;

    int numberOfRows(UITableView&) override { return count; }
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, int row) override
    {
        ++asked;
        const auto cell = std::dynamic_pointer_cast<HighCell>(table.dequeueReusableCell(kind));
        if (cell)
            cell->show(idOf(row), height(idOf(row)));
        return cell;
    }
    std::string identityForRow(UITableView&, int row) override
    {
        ++identities;
        return identity(idOf(row));
    }
    std::string contentForRow(UITableView&, int row) override { return content(idOf(row)); }
    int idOf(int row) const
    {
        int id = first + row;
        for (const int each : dropped)
            id += each <= id;
        return id;
    }
};

class UITableViewTest : public ScreenTest {
protected:
    UITableViewTest()
    {
        table->registerCell<HighCell>("row");
        table->registerCell<HighCell>("other");
        table->setEstimatedRowHeight(40);
        table->setDataSource(source);
        window->addSubview(table);
    }
    void show(int count)
    {
        source->count = count;
        table->reloadData();
        makeFrame();
    }
    void scrollTo(double y)
    {
        table->setContentOffset({ 0, y });
        makeFrame();
    }
    void scrollToEnd()
    {
        for (int i = 0; i < 10; ++i)
            scrollTo(table->maximumContentOffset().y); // which moves as the last rows are measured
    }
    // Where the row of that identity is on the screen; nothing when it has no cell.
    std::optional<double> screenY(int id) const
    {
        for (const int row : table->indicesForVisibleRows())
            if (const auto cell = std::dynamic_pointer_cast<HighCell>(table->cellForRow(row)); cell && cell->shown == id)
                return cell->convertTo(CGPoint {}, nullptr).y;
        return {};
    }
    // Rows follow one another without a gap and cover the bounds.
    void expectCovered()
    {
        const auto rows = table->indicesForVisibleRows();
        ASSERT_FALSE(rows.empty());
        double next = table->cellForRow(rows.front())->frame().y;
        EXPECT_LE(next, std::max(0.0, table->bounds().minY()));
        for (const int row : rows) {
            const CGRect frame = table->cellForRow(row)->frame();
            EXPECT_NEAR(frame.y, next, 1e-6) << row;
            EXPECT_NEAR(frame.y, table->rectForRow(row).y, 1e-6) << row;
            EXPECT_EQ(frame.height, source->height(source->idOf(row))) << row;
            next = frame.maxY();
        }
        EXPECT_GE(next, std::min(table->bounds().maxY(), table->contentSize().height));
    }

    const std::shared_ptr<Rows> source = std::make_shared<Rows>();
    const std::shared_ptr<UITableView> table = make<UITableView>(CGRect { 0, 0, 320, 480 });
};

TEST_F(UITableViewTest, rowsAreAsHighAsTheirContent)
{
    show(3);
    EXPECT_EQ(table->cellForRow(2)->frame(), (CGRect { 0, 110, 320, 70 }));
    EXPECT_EQ(table->contentSize(), (CGSize { 320, 180 }));
    EXPECT_EQ(table->cellForRow(2)->contentView()->subviews().front()->frame().height, 70);
    show(0);
    EXPECT_TRUE(table->indicesForVisibleRows().empty());
    EXPECT_EQ(table->contentSize().height, 0);
}

TEST_F(UITableViewTest, aHundredThousandRowsCostWhatAHundredDo)
{
    int asked[2], identities[2];
    for (const int big : { 0, 1 }) {
        source->asked = source->identities = 0;
        show(big ? 100'000 : 100);
        for (int i = 0; i < 40; ++i)
            scrollTo(table->contentOffset().y + 50);
        show(source->count);
        asked[big] = source->asked;
        identities[big] = source->identities;
        expectCovered();
        scrollTo(0);
    }
    EXPECT_EQ(asked[0], asked[1]);
    EXPECT_NEAR(identities[0], identities[1], 5);
    scrollTo(2'000'000);
    expectCovered();
    EXPECT_NEAR(table->indicesForVisibleRows().front(), 2'000'000 / 40, 40) << "far rows count with the estimate";
    EXPECT_LT(table->subviews().size(), 20u) << "cells are used again";
    scrollToEnd();
    expectCovered();
    EXPECT_EQ(table->indicesForVisibleRows().back(), 99'999);
}

TEST_F(UITableViewTest, aWrongEstimateMovesNothingThatIsSeen)
{
    show(1000);
    scrollTo(20'000);
    for (int i = 0; i < 200; ++i) {
        const int anchor = table->indicesForVisibleRows().back();
        const double before = *screenY(anchor);
        table->setContentOffset({ 0, table->contentOffset().y - 7 });
        makeFrame();
        if (const auto now = screenY(anchor)) {
            ASSERT_NEAR(*now, before + 7, 1e-6) << i;
        }
        expectCovered();
    }
    scrollTo(0);
    EXPECT_EQ(table->indicesForVisibleRows().front(), 0);
    expectCovered();
}

TEST_F(UITableViewTest, aNewFirstRowDoesNotPushAwayWhatIsRead)
{
    source->first = 100;
    show(50);
    scrollTo(500);
    const int read = table->indicesForVisibleRows()[2] + source->first;
    const double before = *screenY(read);
    const auto cell = table->cellForRow(read - source->first);
    const int reuses = std::static_pointer_cast<HighCell>(cell)->reuses;
    source->first = 97;
    show(53);
    EXPECT_EQ(*screenY(read), before);
    EXPECT_EQ(table->cellForRow(read - source->first), cell) << "in the very cell";
    EXPECT_EQ(std::static_pointer_cast<HighCell>(cell)->reuses, reuses);
    source->first = 99; // two are gone
    show(51);
    EXPECT_EQ(*screenY(read), before);
    expectCovered();

    scrollTo(0);
    source->first = 98;
    show(52);
    EXPECT_EQ(screenY(98), 0) << "at the top the new one is seen";
    expectCovered();
}

TEST_F(UITableViewTest, rowsThatGoLeaveWhatIsReadInItsPlace)
{
    struct Case {
        const char* why;
        std::vector<int> gone; // from the first visible row
        int read;
    };
    const Case cases[] = {
        { "far above", { -8, -7 }, 1 },
        { "the one above, of another height", { -1 }, 0 },
        { "the first in sight", { 0 }, 1 },
        { "the first two in sight", { 0, 1 }, 2 },
        { "in sight, below what is read", { 2 }, 1 },
        { "far below", { 14 }, 1 },
    };
    source->height = [](int id) { return 50.0 + id % 5 * 17; };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        source->dropped.clear();
        show(0);
        show(200);
        for (int i = 0; i < 20; ++i)
            scrollTo(table->contentOffset().y + 50);
        const int first = table->indicesForVisibleRows().front();
        const double before = *screenY(first + c.read);
        std::vector<int> gone;
        for (const int each : c.gone)
            gone.push_back(first + each);
        source->dropped = gone;
        show(200 - int(gone.size()));
        EXPECT_EQ(screenY(first + c.read), before);
        expectCovered();
        scrollTo(0);
        EXPECT_EQ(table->indicesForVisibleRows().front(), 0);
        expectCovered();
    }
}

struct Displays final : UITableViewDelegate {
    std::vector<int> rows;
    std::function<void()> then = [] {};
    void willDisplayRow(UITableView&, int row) override
    {
        rows.push_back(row);
        then();
    }
};

TEST_F(UITableViewTest, saysWhichRowsTheNextFrameShows)
{
    const auto displays = std::make_shared<Displays>();
    table->setDelegate(displays);
    const auto taken = [&] { return std::exchange(displays->rows, {}); };
    source->height = [](int) { return 100.0; };
    source->content = [](int id) { return std::to_string(id); };
    show(10);
    EXPECT_EQ(taken(), (std::vector { 0, 1, 2, 3, 4 }));
    scrollTo(15);
    EXPECT_EQ(taken(), std::vector<int> {}) << "nothing new";
    scrollTo(150);
    EXPECT_EQ(taken(), (std::vector { 5, 6 }));
    scrollTo(90);
    EXPECT_EQ(taken(), (std::vector { 0 }));
    const int asked = source->asked;
    show(10);
    EXPECT_EQ(taken(), (std::vector { 0, 1, 2, 3, 4, 5 })) << "all of them after a reload";
    EXPECT_EQ(source->asked, asked) << "though in the cells that they had";
    displays->then = [&] {
        table->reloadData();
        if (displays->rows.size() == 1)
            source->count = 3;
        else
            displays->then = [] {};
    };
    show(10);
    EXPECT_EQ(table->numberOfRows(), 3) << "what is told may reload";
    taken();
    displays->then = [&] { table->setDelegate(std::weak_ptr<UITableViewDelegate>()); };
    show(5);
    EXPECT_EQ(taken(), (std::vector { 0 })) << "who leaves hears no more";
    table->setDelegate(displays);
    displays->then = [&] {
        table->removeFromSuperview();
        displays->then = [] {};
    };
    show(2);
    EXPECT_FALSE(table->superview());
}

// Upside down, each cell turned back, as a list whose newest row is at its lower edge.
class FlippedTableTest : public UITableViewTest {
protected:
    FlippedTableTest()
    {
        table->setTransform(CGAffineTransform::scale(1, -1));
        source->height = [](int) { return 60.0; };
        source->content = [](int id) { return std::to_string(id); };
        show(100);
        turnCells();
    }
    void turnCells()
    {
        for (const int row : table->indicesForVisibleRows())
            table->cellForRow(row)->setTransform(CGAffineTransform::scale(1, -1));
        makeFrame();
    }
    CGRect place(int row) { return onScreen(*table->cellForRow(row)); }
};

TEST_F(FlippedTableTest, fingerAndWheelMoveItTheRightWayRound)
{
    touch(UITouchPhase::began, { 100, 200 });
    for (int y = 210; y <= 300; y += 10) {
        advance(1.0 / 60);
        touch(UITouchPhase::moved, { 100, double(y) });
    }
    EXPECT_EQ(table->contentOffset().y, 90) << "older ones come down from above, after ten points of slop";
    EXPECT_NEAR(place(2).y, 390, 0.01) << "with the finger";
    touch(UITouchPhase::ended, { 100, 300 });
    const double thrown = table->contentOffset().y;
    for (int i = 0; i < 120; ++i)
        advance(1.0 / 60);
    EXPECT_GT(table->contentOffset().y, thrown + 20) << "glides on the same way";

    table->setContentOffset({ 0, 0 });
    UIApplication::shared().sendScroll({ 100, 200 }, 0, -45); // up
    EXPECT_EQ(table->contentOffset().y, 45);
    UIApplication::shared().sendScroll({ 100, 200 }, 0, 30);
    EXPECT_EQ(table->contentOffset().y, 15);
    UIApplication::shared().sendScroll({ 100, 200 }, 0, 1000);
    EXPECT_EQ(table->contentOffset().y, 0);
}

TEST_F(FlippedTableTest, keepsItsFirstRowClearOfTheHomeIndicator)
{
    UIScreen::main().setGeometry({ 320, 480 }, { 50, 0, 34, 0 });
    makeFrame();
    turnCells();
    EXPECT_EQ(place(0).maxY(), 446);
    scrollToEnd();
    EXPECT_EQ(place(99).y, 50);
    UIScreen::main().setGeometry({ 320, 480 }, { 0, 0, 20, 0 });
    makeFrame();
    EXPECT_EQ(place(99).y, 0);
}

TEST_F(UITableViewTest, aReloadThatChangesNothingLaysNothingOut)
{
    show(100);
    scrollTo(300);
    const auto rows = table->indicesForVisibleRows();
    const int asked = source->asked;
    show(100);
    EXPECT_EQ(source->asked - asked, int(rows.size())) << "each visible row once";
    EXPECT_EQ(table->indicesForVisibleRows(), rows);
    expectCovered();
    makeFrame();
    EXPECT_FALSE(LayerCommitter::needsFrame());
}

TEST_F(UITableViewTest, aReloadAsksAgainOnlyForRowsOfOtherContent)
{
    std::map<int, std::string> texts;
    source->content = [&](int id) { return "text " + texts[id]; };
    source->first = 100;
    show(50);
    scrollTo(300);
    const int visible = int(table->indicesForVisibleRows().size()), row = table->indicesForVisibleRows()[1];
    const auto cell = table->cellForRow(row);
    int asked = source->asked;
    show(50);
    EXPECT_EQ(source->asked, asked);
    EXPECT_EQ(int(table->indicesForVisibleRows().size()), visible);

    texts[source->first + row] = "changed";
    source->height = [&](int id) { return texts[id] == "changed" ? 90.0 : 50.0 + id % 3 * 10; };
    show(50);
    EXPECT_EQ(source->asked, ++asked);
    EXPECT_EQ(table->cellForRow(row), cell) << "filled again, in its own cell";
    expectCovered();

    source->first = 99; // a new one before all of them moves the others' places, not their content
    show(51);
    EXPECT_EQ(source->asked, asked);
    EXPECT_EQ(table->cellForRow(row + 1), cell);
    expectCovered();
}

TEST_F(UITableViewTest, rowsThatComeInAnAnimationAreThereAtOnce)
{
    show(4);
    const auto shown = table->cellForRow(0);
    UIView::animate(1, [&] {
        source->count = 6;
        source->first = -1;
        table->reloadData();
        table->layoutIfNeeded();
    });
    EXPECT_EQ(table->cellForRow(1), shown);
    EXPECT_FALSE(shown->layer()->animationKeys().empty()) << "makes room";
    for (const int row : { 0, 5 }) {
        const auto cell = std::static_pointer_cast<HighCell>(table->cellForRow(row));
        EXPECT_TRUE(cell->layer()->animationKeys().empty()) << row;
        EXPECT_TRUE(cell->content->layer()->animationKeys().empty()) << row;
        EXPECT_EQ(cell->content->frame().height, cell->frame().height) << row;
    }
}

TEST_F(UITableViewTest, rowsOfOneIdentityKeepACellEach)
{
    source->content = [](int id) { return std::to_string(id); };
    source->identity = [](int) { return "the same"; };
    show(4);
    const auto shown = [&] {
        return std::ranges::count_if(
            table->subviews(), [](const auto& view) { return dynamic_cast<UITableViewCell*>(view.get()) && !view->isHidden(); });
    };
    EXPECT_EQ(shown(), 4);
    show(4);
    EXPECT_EQ(shown(), 4);
    show(1);
    EXPECT_EQ(shown(), 1) << "none is left behind";
    expectCovered();
}

TEST_F(UITableViewTest, anotherKindOfCellAndAnotherWidthAreMeasuredAnew)
{
    source->height = [this](int) { return source->kind == std::string("row") ? 60.0 : 90.0; };
    show(100);
    scrollTo(600);
    source->kind = "other";
    show(100);
    EXPECT_EQ(table->cellForRow(table->indicesForVisibleRows().front())->reuseIdentifier(), "other");
    expectCovered();

    const int read = table->indicesForVisibleRows()[1];
    const double before = *screenY(read);
    for (const int row : table->indicesForVisibleRows())
        std::static_pointer_cast<HighCell>(table->cellForRow(row))->content->area = 90 * 160;
    table->setFrame({ 0, 0, 160, 480 });
    makeFrame();
    EXPECT_NEAR(*screenY(read), before, 90) << "about where it was";
    EXPECT_EQ(table->cellForRow(read)->contentView()->frame().width, 160);
}

TEST_F(UITableViewTest, keepsContentInsideTheSafeAreaSideways)
{
    UIScreen::main().setGeometry({ 480, 320 }, { 0, 59, 21, 59 });
    table->setFrame({ 0, 0, 480, 320 });
    show(100);
    EXPECT_EQ(table->cellForRow(0)->frame().width, 480);
    EXPECT_EQ(table->cellForRow(0)->contentView()->frame(), (CGRect { 59, 0, 362, 50 }));
    scrollToEnd();
    ASSERT_TRUE(table->cellForRow(99));
    EXPECT_EQ(table->cellForRow(99)->convertTo(CGPoint { 0, 50 }, nullptr).y, 299) << "clear of the home indicator";
}

TEST_F(UITableViewTest, standsASourceThatLies)
{
    show(50);
    scrollTo(1500);
    show(2);
    EXPECT_EQ(table->contentOffset().y, 0);
    expectCovered();
    show(-5);
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_TRUE(table->indicesForVisibleRows().empty());

    source->kind = "never registered";
    show(1);
    EXPECT_EQ(takeLines().size(), 3u) << "no such kind, no cell, no height";
    source->kind = "row";
    show(1);
    source->height = [](int) { return 0.0; };
    show(0);
    show(1);
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_EQ(table->cellForRow(0)->frame().height, 40);

    auto passing = std::make_shared<Rows>();
    passing->count = 3;
    table->setDataSource(passing);
    makeFrame();
    passing = nullptr;
    table->reloadData();
    makeFrame();
    EXPECT_TRUE(table->indicesForVisibleRows().empty());
}

TEST(RowHeightsTest, addUpToTheirOffsets)
{
    RowHeights heights;
    heights.setCount(1000);
    heights.setEstimate(40);
    std::vector<double> plain(1000, 40.0);
    srand48(7);
    const auto measure = [&] {
        for (int i = 0; i < 100; ++i) {
            const int row = int(drand48() * double(plain.size()));
            heights.set(row, plain[std::size_t(row)] = 10 + drand48() * 100);
        }
    };
    measure();
    for (const int by : { 3, -8, 1, 20, -40 }) {
        heights.shift(by);
        if (by > 0)
            plain.insert(plain.begin(), std::size_t(by), 40.0);
        else
            plain.erase(plain.begin(), plain.begin() - by);
        heights.setCount(int(plain.size()));
        measure();
    }
    plain.resize(900);
    heights.setCount(900);
    double sum = 0;
    for (int row = 0; row < 900; ++row) {
        ASSERT_EQ(heights.height(row), plain[std::size_t(row)]);
        ASSERT_NEAR(heights.offset(row), sum, 1e-6);
        ASSERT_EQ(heights.rowAt(sum + heights.height(row) / 2), row);
        sum += heights.height(row);
    }
    EXPECT_NEAR(heights.total(), sum, 1e-6);
    EXPECT_EQ(heights.rowAt(-5), 0);
    EXPECT_EQ(heights.rowAt(1e9), 899);
}

} // namespace
} // namespace platform
