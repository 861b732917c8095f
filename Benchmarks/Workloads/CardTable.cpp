#include "Benchmarks/Workloads/CardTable.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/JSON.h"
#include "Platform/Images/UIImageViewLoading.h"
#include "Platform/UIKit/NSLayoutAnchor.h"
#include "Platform/UIKit/NSLayoutConstraint.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"

#include <cstdio>

namespace bench {

using namespace platform;

namespace {

constexpr int cardCount = 90;
constexpr CGFloat side = 20, gap = 30; // points
constexpr CGFloat scale = 3;

struct CardRecord {
    std::string banner, calendar; // files, or empty
    std::string title, text, date;
};

UIColor gray(double white, double alpha = 1) { return UIColor { white, white, white, alpha }; }

UIFont font(const char* name, CGFloat size, UIFontWeight weight)
{
    return UIFont::named(name, size).value_or(UIFont::systemFont(size, weight));
}

std::shared_ptr<const UIImage> load(const std::string& path)
{
    const auto bytes = FileSystem::real().read(path);
    return bytes ? UIImage::fromData(*bytes, scale, path) : nullptr;
}

std::vector<CardRecord> cards(const std::string& assets)
{
    std::vector<CardRecord> records;
    const auto bytes = assets.empty() ? std::nullopt : FileSystem::real().read(assets + "/cards.json");
    const auto json = bytes ? JSONValue::parse(textView(*bytes)) : std::nullopt;
    for (int i = 0; i < cardCount; ++i) {
        if (!json) {
            records.push_back({ {}, {}, "An evening of cups, bowls and one very large jug",
                "Forty pieces from one kiln, each shown from all sides and wrapped while you watch", "05.01.2026, 17:40" });
            continue;
        }
        const auto& entry = (*json)[std::size_t(i)];
        const auto text = [&](const char* key) { return std::string(entry[key].text().value_or("")); };
        char banner[16];
        std::snprintf(banner, sizeof banner, "/banner%02d.jpg", int(entry["banner"].integer().value_or(0)) % 12);
        records.push_back({ assets + banner, assets + "/calendar.png", text("title"), text("description"), text("date") });
    }
    return records;
}

// One card, as tall as its texts want.
class Card final : public UIView {
public:
    Card()
    {
        setBackgroundColor(UIColor { 1, 1, 1, 1 });
        layer()->setCornerRadius(20);
        layer()->setBorderWidth(0.5);
        layer()->setBorderColor(CGColor { 0, 0, 0, 0.12 });
        layer()->setShadowColor(CGColor { 0, 0, 0, 1 });
        layer()->setShadowOpacity(0.18);
        layer()->setShadowRadius(2.5); // half of a blur of 5
        layer()->setShadowOffset({ 0, 2 });
        banner->setContentMode(UIViewContentMode::scaleAspectFill);
        banner->setClipsToBounds(true);
        banner->layer()->setCornerRadius(20);
        banner->layer()->setMaskedCorners(minXMinY | maxXMinY);
        banner->setBackgroundColor(gray(0.8));
        style(*title, font("Inter-SemiBold", 18, UIFontWeight::semibold), gray(0.07), 2);
        style(*text, font("Inter-Regular", 16, UIFontWeight::regular), UIColor { 0.235, 0.235, 0.263, 1 }, 2);
        style(*date, font("Inter-Regular", 14, UIFontWeight::regular), UIColor { 0.557, 0.557, 0.576, 1 }, 1);
        style(*watch, font("Inter-SemiBold", 16, UIFontWeight::semibold), gray(1), 1);
        watch->setText("Watch now");
        watch->setTextAlignment(NSTextAlignment::center);
        button->setBackgroundColor(UIColor { 1, 0.176, 0.333, 1 });
        button->layer()->setCornerRadius(15);
        for (const std::shared_ptr<UIView>& view :
            std::initializer_list<std::shared_ptr<UIView>> { banner, title, text, calendar, date, button, watch }) {
            view->setTranslatesAutoresizingMaskIntoConstraints(false);
            addSubview(view);
        }
        constrain();
    }

    void show(const CardRecord& record)
    {
        sd_setImage(*banner, record.banner.empty() ? std::nullopt : std::optional(URL::fileURL(record.banner)));
        title->setText(record.title);
        text->setText(record.text);
        date->setText(record.date);
        if (!record.calendar.empty() && !calendar->image())
            calendar->setImage(load(record.calendar));
    }

protected:
    void boundsDidChange(const CGRect& previous) override
    {
        UIView::boundsDidChange(previous);
        layer()->setShadowPath(CGPath::roundedRect(bounds(), 20));
    }

private:
    static void style(UILabel& label, const UIFont& font, const UIColor& color, int lines)
    {
        label.setFont(font);
        label.setTextColor(color);
        label.setNumberOfLines(lines);
    }

    void constrain()
    {
        std::vector<std::shared_ptr<NSLayoutConstraint>> rules {
            banner->leadingAnchor().equalTo(leadingAnchor()),
            banner->trailingAnchor().equalTo(trailingAnchor()),
            banner->topAnchor().equalTo(topAnchor()),
            banner->heightAnchor().equalToConstant(200),
            title->topAnchor().equalTo(banner->bottomAnchor(), 12),
            text->topAnchor().equalTo(title->bottomAnchor(), 6),
            calendar->topAnchor().equalTo(text->bottomAnchor(), 9),
            calendar->leadingAnchor().equalTo(leadingAnchor(), 16),
            calendar->widthAnchor().equalToConstant(16),
            calendar->heightAnchor().equalToConstant(16),
            date->leadingAnchor().equalTo(calendar->trailingAnchor(), 6),
            date->centerYAnchor().equalTo(calendar->centerYAnchor()),
            button->topAnchor().equalTo(calendar->bottomAnchor(), 13),
            button->heightAnchor().equalToConstant(44),
            button->bottomAnchor().equalTo(bottomAnchor(), -16),
            watch->centerXAnchor().equalTo(button->centerXAnchor()),
            watch->centerYAnchor().equalTo(button->centerYAnchor()),
        };
        for (const std::shared_ptr<UIView>& view : std::initializer_list<std::shared_ptr<UIView>> { title, text, button }) {
            rules.push_back(view->leadingAnchor().equalTo(leadingAnchor(), 16));
            rules.push_back(view->trailingAnchor().equalTo(trailingAnchor(), -16));
        }
        for (const auto& rule : rules)
            rule->setActive(true);
    }

    std::shared_ptr<UIImageView> banner = make<UIImageView>(), calendar = make<UIImageView>();
    std::shared_ptr<UILabel> title = make<UILabel>(), text = make<UILabel>(), date = make<UILabel>(), watch = make<UILabel>();
    std::shared_ptr<UIView> button = make<UIView>();
};

// A card with its share of the room between cards.
class CardCell final : public UITableViewCell {
public:
    explicit CardCell(const std::string& identifier)
        : UITableViewCell(identifier)
    {
        card->setTranslatesAutoresizingMaskIntoConstraints(false);
        contentView()->addSubview(card);
        activate({
            card->leadingAnchor().equalTo(contentView()->leadingAnchor(), side),
            card->trailingAnchor().equalTo(contentView()->trailingAnchor(), -side),
            card->topAnchor().equalTo(contentView()->topAnchor(), gap / 2),
            card->bottomAnchor().equalTo(contentView()->bottomAnchor(), -gap / 2),
        });
    }

    void show(const CardRecord& record) { card->show(record); }

private:
    std::shared_ptr<Card> card = make<Card>();
};

class CardSource final : public UITableViewDataSource {
public:
    explicit CardSource(const std::string& assets)
        : records(cards(assets))
    {
    }
    int numberOfRows(UITableView&) override { return 100 * int(records.size()); } // the same ones again and again
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, int row) override
    {
        const auto cell = table.dequeueReusableCell("card");
        static_cast<CardCell&>(*cell).show(records[std::size_t(row) % records.size()]);
        return cell;
    }

private:
    std::vector<CardRecord> records;
};

} // namespace

CardTable::CardTable(const CGRect& frame, const std::string& assets)
    : UITableView(frame)
    , source(std::make_shared<CardSource>(assets))
{
    registerCell<CardCell>("card");
    setEstimatedRowHeight(420);
    setContentInset({ side - gap / 2, 0, 0, 0 });
    setDataSource(source);
}

} // namespace bench
