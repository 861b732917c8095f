#include "Benchmarks/Workloads/ListScroll.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/CoreGraphics/Text/CTFont.h"
#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/JSON.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/NSLayoutAnchor.h"
#include "Platform/UIKit/NSLayoutConstraint.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIWindow.h"

#include <cstdio>
#include <deque>
#include <unistd.h>

namespace bench {

using namespace platform;

namespace {

constexpr int cardCount = 90;
constexpr CGFloat cardWidth = 353, side = 20, gap = 30; // points
constexpr CGFloat pixelsAFrame = 12, scale = 3;

struct CardRecord {
    std::string banner; // a file, or empty
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
            records.push_back({ {}, "An evening of cups, bowls and one very large jug",
                "Forty pieces from one kiln, each shown from all sides and wrapped while you watch", "05.01.2026, 17:40" });
            continue;
        }
        const auto& entry = (*json)[std::size_t(i)];
        const auto text = [&](const char* key) { return std::string(entry[key].text().value_or("")); };
        char banner[16];
        std::snprintf(banner, sizeof banner, "/banner%02d.jpg", int(entry["banner"].integer().value_or(0)) % 12);
        records.push_back({ assets + banner, text("title"), text("description"), text("date") });
    }
    return records;
}

// One card, as tall as its texts want.
class Card final : public UIView {
public:
    explicit Card(const std::string& assets)
    {
        setLayoutRoot(true);
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
        if (!assets.empty())
            calendar->setImage(load(assets + "/calendar.png"));
        for (const std::shared_ptr<UIView>& view :
            std::initializer_list<std::shared_ptr<UIView>> { banner, title, text, calendar, date, button, watch }) {
            view->setTranslatesAutoresizingMaskIntoConstraints(false);
            addSubview(view);
        }
        constrain();
    }

    // The card's height for that record, points.
    CGFloat show(const CardRecord& record)
    {
        banner->setImage(record.banner.empty() ? nullptr : load(record.banner));
        title->setText(record.title);
        text->setText(record.text);
        date->setText(record.date);
        const CGFloat height = systemLayoutSizeFitting({ cardWidth, 0 }, LayoutPriority::required).height;
        layer()->setShadowPath(CGPath::roundedRect({ 0, 0, cardWidth, height }, 20));
        return height;
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

// Shows the cards around an offset that only grows; those that left at the top come back at the bottom.
class CardList final : public UIView {
public:
    CardList(const CGRect& frame, const std::string& folder)
        : UIView(frame)
        , assets(folder)
        , records(cards(folder))
    {
        setClipsToBounds(true);
    }

    void scrollTo(CGFloat offset)
    {
        setBounds({ 0, offset, bounds().width, bounds().height });
        while (bottom < offset + bounds().height) {
            const bool isFree = !shown.empty() && shown.front()->frame().maxY() + gap < offset;
            auto card = isFree ? shown.front() : make<Card>(assets);
            if (isFree)
                shown.pop_front();
            else
                addSubview(card);
            const CGFloat height = card->show(records[next++ % records.size()]);
            card->setFrame({ side, bottom, cardWidth, height });
            bottom += height + gap;
            shown.push_back(card);
        }
    }

private:
    std::string assets;
    std::vector<CardRecord> records;
    std::deque<std::shared_ptr<Card>> shown;
    std::size_t next = 0;
    CGFloat bottom = 20; // where the next card goes
};

} // namespace

namespace {

// A phone that shows the list from its top.
struct ListScreen {
    explicit ListScreen(const std::string& assets)
    {
        for (const char* file : { "Inter-Regular", "Inter-SemiBold" }) {
            const auto path = std::string("/usr/share/fonts/opentype/inter/") + file + ".otf";
            if (!CTFontManager::isRegistered(file) && FileSystem::real().exists(path))
                CTFontManager::registerGraphicsFont(CTFontManager::graphicsFontOfFile(path));
        }
        window = make<UIWindow>();
        window->setBackgroundColor(UIColor { 0.949, 0.949, 0.969, 1 });
        list = make<CardList>(window->bounds(), assets);
        window->addSubview(list);
        window->makeKeyAndVisible();
    }

    void show(int frame)
    {
        list->scrollTo(frame * pixelsAFrame / scale);
        host.advance(1.0 / 60);
    }

    HeadlessHost host;
    std::shared_ptr<UIWindow> window;
    std::shared_ptr<CardList> list;
};

} // namespace

FrameFigures measureListScroll(int frames, const std::string& assets, const std::string& picture)
{
    ListScreen screen(assets);
    const auto figures = measureFrames(frames, 5, [&](int frame) { screen.show(frame); });
    if (!picture.empty())
        screen.host.writePicture(picture);
    return figures;
}

ListStarts measureListStarts(int runs, const std::string& assets)
{
    ListStarts starts;
    for (int run = 0; run < runs; ++run) {
        char command[4400];
        std::snprintf(command, sizeof command, "exec /proc/%d/exe --assets '%s' --first-list %.3f", int(getpid()), assets.c_str(),
            wallMilliseconds());
        const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command, "r"), pclose);
        double elapsed = 0, memory = 0;
        if (output && std::fscanf(output.get(), "%lf %lf", &elapsed, &memory) == 2) {
            starts.milliseconds.push_back(elapsed);
            starts.memory.push_back(memory);
        }
    }
    return starts;
}

int showFirstList(double startedAt, const std::string& assets)
{
    ListScreen screen(assets);
    screen.show(0);
    const double elapsed = wallMilliseconds() - startedAt;
    std::printf("%.3f %.2f\n", elapsed, peakMemoryMiB());
    std::fflush(stdout);
    return 0;
}

} // namespace bench
