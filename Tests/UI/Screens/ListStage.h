#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UITableView.h"
#include "Tests/UI/Screens/ShopStage.h"
#include "UI/Screens/Broadcasts List/Controllers/MVBroadcastsViewController.h"

#include <functional>
#include <utility>

namespace mv {

// A show that writes down what is asked of its events.
class ListedShow final : public MVBroadcast {
public:
    explicit ListedShow(std::shared_ptr<std::vector<std::string>> log)
        : calls(std::move(log))
    {
    }
    std::function<void()> onSubscribe;

    void subscribeEvents() override
    {
        calls->push_back("subscribe " + id.value_or("-"));
        if (onSubscribe)
            onSubscribe();
    }
    void unSubscribeEvents() override { calls->push_back("unsubscribe " + id.value_or("-")); }

private:
    const std::shared_ptr<std::vector<std::string>> calls;
};

// A service of which the test says when and what it answers.
class ListService final : public EventfulService {
public:
    std::vector<BroadcastsCompletion> asked; // all of them
    std::function<BroadcastList(MVBroadcastStatus)> atOnce; // answers within the call
    const std::shared_ptr<std::vector<std::string>> calls = std::make_shared<std::vector<std::string>>();

    std::vector<std::string> takeCalls() { return std::exchange(*calls, {}); }
    void answer(const std::optional<BroadcastList>& list)
    {
        BroadcastsCompletion(asked.at(asked.size() - 1))(list, std::nullopt);
    }
    void fail(const MVApiError& error) { BroadcastsCompletion(asked.at(asked.size() - 1))(std::nullopt, error); }

protected:
    void performGetBroadcasts(const MVBroadCastsListQueryBuilder& query, BroadcastsCompletion completion) override
    {
        constexpr const char* statuses[] = { "live", "upcoming", "completed" };
        constexpr const char* sorts[] = { "ASC", "DESC" };
        calls->push_back(std::string(query.status ? statuses[int(*query.status)] : "any") + " " + std::to_string(query.limit)
            + " " + std::to_string(query.skip) + " " + (query.sort ? sorts[int(*query.sort)] : "unsorted")
            + (delegateCount() ? " heard" : ""));
        asked.push_back(completion);
        if (atOnce)
            completion(atOnce(*query.status), std::nullopt);
    }
};

// A shop whose stack of controllers has the list of shows on top.
class ListStage : public ShopStage {
protected:
    using List = Mivora::BroadcastList;

    ListStage()
    {
        Mivora::install(service);
        host.advance(0);
    }
    ~ListStage() override { service->asked.clear(); }

    // So high that several cards of a page are seen at once.
    void useTallDevice()
    {
        host.device().setModel(HostDevice::window({ 393, 3000 }, 1));
        host.advance(1);
    }
    MVBroadcastsViewController& openList()
    {
        const auto list = make<MVBroadcastsViewController>();
        navigation->pushViewController(list, false);
        host.advance(0.1);
        return *list;
    }
    // With these answers to its first three requests.
    MVBroadcastsViewController& openList(const List& live, const List& upcoming, const List& past)
    {
        auto& list = openList();
        answerAll(live, upcoming, past);
        service->takeCalls();
        return list;
    }
    void answerAll(const List& live, const List& upcoming, const List& past)
    {
        for (const auto& each : { live, upcoming, past })
            service->answer(each);
        host.advance(0.1);
    }

    // That every page shows: it ends in an hour and has a recording.
    std::shared_ptr<ListedShow> makeShow(std::optional<std::string> id, Status status = Status::live) const
    {
        auto show = make<ListedShow>(service->calls);
        show->id = std::move(id);
        show->title = show->id ? "Show " + *show->id : "Show without identifier";
        show->description = "Noor unpacks the kiln.";
        show->status = status;
        show->startTime = Date { 1'741'221'000 };
        show->endTime = Date::now() + 3600;
        show->recordingUrl = URL::parse("https://shop.example/show.mp4");
        return show;
    }
    List makeShows(const std::vector<std::string>& ids, Status status = Status::live) const
    {
        List shows;
        for (const auto& id : ids)
            shows.push_back(makeShow(id, status));
        return shows;
    }

    const std::shared_ptr<UIView>& root() const { return navigation->topViewController()->view(); }
    std::shared_ptr<UIView> page(int index) const
    {
        constexpr const char* names[]
            = { "mivorasViewController", "upcomingBroadcastsViewController", "pastBroadcastsViewController" };
        return find(root(), names[index]);
    }
    std::shared_ptr<UITableView> table(int index) const { return find<UITableView>(page(index), "broadcastsTableView"); }
    std::shared_ptr<UIScrollView> pager() const { return find<UIScrollView>(root(), "containerScrollView"); }
    // Of the rows of a page that are in its bounds, whether the page is in view or not.
    Lines titles(int index) const { return texts(index, "broadcastNameLabel"); }
    Lines actions(int index) const { return texts(index, "actionButton"); }
    // What a page shows in place of cards; empty when it shows cards, or nothing yet.
    std::string message(int index) const
    {
        const auto view = find(page(index), "noBroadcastsView");
        return view->isHidden() ? "" : find<UILabel>(view, "noBroadcastLabel")->text();
    }
    bool showsTable(int index) const { return !table(index)->isHidden(); }
    // Loader or pages, and whether the list can be refreshed.
    std::string state() const
    {
        std::string text;
        if (!find(root(), "loaderView")->isHidden())
            text += "loader ";
        if (!pager()->isHidden())
            text += "pages ";
        return text + (find<UIButton>(root(), "refreshButton")->isEnabled() ? "refreshable" : "busy");
    }

    void press(const std::string& name)
    {
        host.tap(middle(*find(root(), name)));
        host.advance(0);
    }
    void pressTab(int index)
    {
        const auto tab = find(root(), "buttonsTabView")->viewWithTag(3000 + index);
        ASSERT_TRUE(tab);
        host.tap(middle(*tab));
    }
    void pressAction(int pageIndex, int row = 0)
    {
        const auto cell = table(pageIndex)->cellForRow(row);
        ASSERT_TRUE(cell) << row;
        host.tap(middle(*find(cell, "actionButton")));
        host.advance(1);
    }
    const std::shared_ptr<ListService> service = std::make_shared<ListService>();

private:
    Lines texts(int index, const std::string& name) const
    {
        Lines lines;
        const auto rows = table(index);
        for (const int row : rows->indicesForVisibleRows()) {
            const auto view = find(rows->cellForRow(row), name);
            const auto button = std::dynamic_pointer_cast<UIButton>(view);
            lines.push_back(button ? button->currentTitle() : std::static_pointer_cast<UILabel>(view)->text());
        }
        return lines;
    }
};

} // namespace mv
