#pragma once

#include "Platform/UIKit/CellPool.h"
#include "Platform/UIKit/RowHeights.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UITableViewCell.h"

#include <deque>

namespace platform {

class UITableView;

// Asked for the rows that can be seen, and for no others. Held weakly by the table.
class UITableViewDataSource {
public:
    virtual ~UITableViewDataSource() = default;
    virtual int numberOfRows(UITableView& tableView) = 0;
    // A dequeued cell, filled with the row. A row that was shown before the reload gets the very cell back that showed it.
    virtual std::shared_ptr<UITableViewCell> cellForRow(UITableView& tableView, int row) = 0;
    // What stays the same for a row when others come and go before it.
    virtual std::string identityForRow(UITableView& /*tableView*/, int row) { return std::to_string(row); }
    // Tells apart what the row may show: a reload asks for its cell again only when this differs. Empty: asks at every reload.
    virtual std::string contentForRow(UITableView& /*tableView*/, int /*row*/) { return {}; }
};

// Told what a table does. Held weakly by it; every call may end it.
class UITableViewDelegate : public UIScrollViewDelegate {
public:
    // A row has got its cell, and the next frame shows it: after it came into the bounds, and for every row there after a reload.
    virtual void willDisplayRow(UITableView& /*tableView*/, int /*row*/) { }
};

// A column of rows as high as their cells' constraints ask for. Only the rows in its bounds have cells and measured heights; the
// others count with the estimate until they are seen, and what is seen does not move when an estimate was wrong. Work follows
// the visible rows, however many there are. Points; main thread.
class UITableView : public UIScrollView {
public:
    explicit UITableView(const CGRect& frame = {});

    void setDataSource(std::weak_ptr<UITableViewDataSource> source);
    void setDelegate(const std::weak_ptr<UITableViewDelegate>& delegate);
    double estimatedRowHeight() const { return heights.estimate(); }
    void setEstimatedRowHeight(double height); // at least 1

    // What dequeueReusableCell makes under that identifier.
    template <typename Cell> void registerCell(const std::string& identifier)
    {
        pool.registerFactory(identifier, [identifier]() -> std::shared_ptr<UITableViewCell> { return make<Cell>(identifier); });
    }
    // Null, after a console line, for an identifier that nothing is registered under.
    std::shared_ptr<UITableViewCell> dequeueReusableCell(const std::string& identifier);

    // Asks the source again at the next layout. By the rows' identities heights, cells and the reading position are kept: rows
    // that come or go above what is read do not move it, unless the table stands at its top. When nothing has changed nothing is
    // laid out.
    void reloadData();
    int numberOfRows() const { return heights.count(); } // as of the last layout
    CGRect rectForRow(int row) const; // in the content; an estimate for what was not seen; empty for none
    std::shared_ptr<UITableViewCell> cellForRow(int row) const; // null when it is not in the bounds
    std::vector<int> indicesForVisibleRows() const; // from the top
    void scrollToRow(int row, bool animated); // to the upper edge, as far as the content reaches

protected:
    void layoutSubviews() override;
    void contentOffsetDidChange() override;
    void boundsDidChange(const CGRect& previous) override;
    void safeAreaInsetsDidChange() override;

private:
    struct Row {
        int index = 0;
        std::string identity, content;
        double top = 0; // in the content
        double height = 0;
        std::shared_ptr<UITableViewCell> cell;
    };
    struct Sides {
        double left = 0, right = 0;
    };

    void reloadNow();
    int reanchor(int count);
    int findRow(UITableViewDataSource& source, const std::string& identity, int near, int count);
    void fill(int first = -1);
    void tellOfDisplayedRows();
    void remeasure();
    bool addRow(int index, bool above);
    double measure(Row& row);
    std::shared_ptr<UITableViewCell> makeCell(const Row& row);
    void place(const Row& row);
    void move(double distance); // everything that is shown, and the offset with it
    bool isAtTop() const;
    void updateContentSize();
    Sides sides() const;

    std::weak_ptr<UITableViewDataSource> dataSource;
    std::weak_ptr<UITableViewDelegate> tableDelegate;
    CellPool pool;
    RowHeights heights;
    std::deque<Row> rows; // without gaps
    std::vector<int> displayed; // rows that the delegate has yet to hear of
    double measuredWidth = -1; // that the heights belong to
    bool standsAtTop = true; // before the safe area changed
    bool reloadPending = false;
    bool filling = false;
};

} // namespace platform
