#include "Benchmarks/Workloads/ChatScreen.h"

#include "Platform/CoreGraphics/Text/CTFont.h"
#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/JSON.h"
#include "Platform/Images/UIImageViewLoading.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/UIKit/NSLayoutAnchor.h"
#include "Platform/UIKit/UILabel.h"

#include <utility>

namespace bench {

using namespace platform;

namespace {

constexpr CGFloat lineGap = 6; // points above each line
constexpr CGFloat fadeShare = 0.25; // of the height, from the top

UIFont font(const char* name, UIFontWeight weight) { return UIFont::named(name, 16).value_or(UIFont::systemFont(16, weight)); }

std::vector<std::pair<std::string, std::string>> chatLines(const std::string& assets)
{
    std::vector<std::pair<std::string, std::string>> lines;
    const auto bytes = assets.empty() ? std::nullopt : FileSystem::real().read(assets + "/chat.json");
    const auto json = bytes ? JSONValue::parse(textView(*bytes)) : std::nullopt;
    if (const auto* entries = json ? json->array() : nullptr) {
        for (const auto& entry : *entries)
            lines.emplace_back(entry[0].text().value_or(""), entry[1].text().value_or(""));
        return lines;
    }
    static const char* texts[] = { "Does the glaze survive a dishwasher?", "Yes please!",
        "I bought the small one last year and use it every single morning, it has not lost any of its colour" };
    for (int i = 0; i < 10'300; ++i)
        lines.emplace_back("viewer " + std::to_string(i % 97), texts[i % 3]);
    return lines;
}

class ChatCell final : public UITableViewCell {
public:
    explicit ChatCell(const std::string& identifier)
        : UITableViewCell(identifier)
    {
        line->setNumberOfLines(0);
        line->setTranslatesAutoresizingMaskIntoConstraints(false);
        contentView()->addSubview(line);
        activate({
            line->leadingAnchor().equalTo(contentView()->leadingAnchor()),
            line->trailingAnchor().equalTo(contentView()->trailingAnchor()),
            line->topAnchor().equalTo(contentView()->topAnchor(), lineGap),
            line->bottomAnchor().equalTo(contentView()->bottomAnchor()),
        });
    }

    void show(const std::string& name, const std::string& text)
    {
        NSAttributes bold;
        bold.font = font("Inter-Bold", UIFontWeight::bold);
        bold.foregroundColor = UIColor::white();
        bold.shadow = NSShadow { .color = UIColor::black(), .blurRadius = 1, .offset = {} };
        NSAttributes plain = bold;
        plain.font = font("Inter-Regular", UIFontWeight::regular);
        NSAttributedString whole(name, bold);
        whole.append(NSAttributedString(": " + text, plain));
        line->setAttributedText(whole);
    }

private:
    std::shared_ptr<UILabel> line = make<UILabel>();
};

} // namespace

class ChatView::Source final : public UITableViewDataSource {
public:
    Source(const std::string& assets, std::size_t held)
        : lines(chatLines(assets))
        , held(std::min(held, lines.size()))
    {
    }
    int numberOfRows(UITableView&) override { return int(held); }
    std::string identityForRow(UITableView&, int row) override { return std::to_string(held - std::size_t(row)); }
    std::string contentForRow(UITableView&, int) override { return "said once"; }
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& asking, int row) override
    {
        const auto cell = asking.dequeueReusableCell("line");
        const auto& [name, text] = lines[(held - 1 - std::size_t(row)) % lines.size()];
        static_cast<ChatCell&>(*cell).show(name, text);
        cell->setTransform(CGAffineTransform::scale(1, -1));
        return cell;
    }

    const std::vector<std::pair<std::string, std::string>> lines;
    std::size_t held;
};

ChatView::ChatView(const CGRect& frame, const std::string& assets, std::size_t count)
    : UIView(frame)
    , source(std::make_shared<Source>(assets, count))
    , table(make<UITableView>(bounds()))
{
    table->setAutoresizingMask(flexibleWidth | flexibleHeight);
    table->setTransform(CGAffineTransform::scale(1, -1));
    table->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
    table->registerCell<ChatCell>("line");
    table->setEstimatedRowHeight(45);
    table->setDataSource(source);
    addSubview(table);
    const auto fade = make<CAGradientLayer>();
    fade->setColors({ CGColor { 1, 1, 1, 0 }, CGColor { 1, 1, 1, 1 }, CGColor { 1, 1, 1, 1 } });
    fade->setLocations({ 0, fadeShare, 1 });
    layer()->setMask(fade);
}

void ChatView::addMessage()
{
    ++source->held;
    table->reloadData();
}

std::size_t ChatView::count() const { return source->held; }

void ChatView::layoutSubviews()
{
    UIView::layoutSubviews();
    layer()->mask()->setFrame(bounds());
}

void registerWorkloadFonts()
{
    for (const char* file : { "Inter-Regular", "Inter-SemiBold", "Inter-Bold" }) {
        const auto path = std::string("/usr/share/fonts/opentype/inter/") + file + ".otf";
        if (!CTFontManager::isRegistered(file) && FileSystem::real().exists(path))
            CTFontManager::registerGraphicsFont(CTFontManager::graphicsFontOfFile(path));
    }
}

std::shared_ptr<UIView> makeBackdrop(const CGRect& frame, const std::string& assets)
{
    const auto backdrop = make<UIImageView>(frame);
    backdrop->setContentMode(UIViewContentMode::scaleAspectFill);
    backdrop->setClipsToBounds(true);
    backdrop->setAutoresizingMask(flexibleWidth | flexibleHeight);
    backdrop->setBackgroundColor(UIColor::white(0.2));
    if (!assets.empty())
        sd_setImage(*backdrop, URL::fileURL(assets + "/backdrop.jpg"));
    return backdrop;
}

} // namespace bench
