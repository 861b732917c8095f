#include "UI/Screens/Broadcast Screen/SubViews/MVBroadcastLayout2ChatCell.h"

#include "Platform/Host/ViewTree.h"
#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UILongPressGestureRecognizer.h"
#include "Platform/UIKit/UITableView.h"
#include "Platform/UIKit/UITapGestureRecognizer.h"
#include "Tests/UI/Stage.h"
#include "UI/Common/Models/ChatMessage.h"
#include "UI/Common/SubViews/MVLinkTextView.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVStrings.h"

#include <map>
#include <set>

namespace mv {
namespace {

// The chat as the panel shows it: a table that stands on its head, newest line first.
struct Lines final : UITableViewDataSource {
    std::vector<ChatMessage> messages;
    int filled = 0;

    int numberOfRows(UITableView&) override { return int(messages.size()); }
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, int row) override
    {
        const auto cell = std::dynamic_pointer_cast<MVBroadcastLayout2ChatCell>(
            table.dequeueReusableCell(MVBroadcastLayout2ChatCell::identifier));
        cell->assignMessage(messages[std::size_t(row)]);
        cell->setTransform(CGAffineTransform::scale(1, -1));
        ++filled;
        return cell;
    }
    std::string identityForRow(UITableView&, int row) override { return messages[std::size_t(row)].id.value_or(""); }
};

class ChatCellTest : public Stage {
protected:
    ChatCellTest()
    {
        window->setBackgroundColor(UIColor::white(0.5));
        table->setTransform(CGAffineTransform::scale(1, -1));
        table->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
        table->registerCell<MVBroadcastLayout2ChatCell>(MVBroadcastLayout2ChatCell::identifier);
        table->setEstimatedRowHeight(45);
        table->setDataSource(lines);
        window->addSubview(table);
    }
    ~ChatCellTest() override { UIDevice::current().setSystemVersion("17.0"); }

    static ChatMessage message(std::optional<std::string> owner, std::optional<std::string> comment, bool isHost = false)
    {
        ChatMessage line;
        line.owner = std::move(owner);
        line.commentText = std::move(comment);
        line.isHostOwner = isHost;
        return line;
    }
    // As the newest line.
    void say(ChatMessage line)
    {
        line.id = std::to_string(lines->messages.size());
        lines->messages.insert(lines->messages.begin(), std::move(line));
        table->reloadData();
        host.advance(0);
    }
    std::shared_ptr<MVLinkTextView> textOf(int row = 0)
    {
        return find<MVLinkTextView>(table->cellForRow(row), "messageTextView");
    }
    std::vector<NSAttributedString::Run> runs(int row = 0) { return textOf(row)->displayedText().runs(); }
    // A point of the screen on that row's link.
    CGPoint pointOn(const std::string& link, int row = 0)
    {
        const auto text = textOf(row);
        for (double y = 5; y < text->bounds().height; y += 5)
            for (double x = 1; x < text->bounds().width; x += 2)
                if (text->linkAt({ x, y }) == link)
                    return text->convertTo(CGPoint { x, y }, nullptr);
        ADD_FAILURE() << "no " << link;
        return {};
    }
    std::vector<std::string> opened() const
    {
        std::vector<std::string> addresses;
        for (const auto& url : host.openedURLs())
            addresses.push_back(url.absoluteString());
        return addresses;
    }
    // The pixels inside that have about this colour.
    int pixelsLike(const CGRect& area, const CGColor& color)
    {
        const double scale = host.device().model().scale;
        const auto near = [](std::uint32_t shown, double wanted) { return std::abs(double(shown & 255) - wanted * 255) < 8; };
        int count = 0;
        for (int y = int(area.minY() * scale); y < int(area.maxY() * scale); ++y)
            for (int x = int(area.minX() * scale); x < int(area.maxX() * scale); ++x) {
                const auto pixel = host.pixels().row(y)[x];
                count += near(pixel >> 16, color.red) && near(pixel >> 8, color.green) && near(pixel, color.blue);
            }
        return count;
    }

    const std::shared_ptr<Lines> lines = std::make_shared<Lines>();
    const std::shared_ptr<UITableView> table = make<UITableView>(CGRect { 0, 400, 393, 400 });
};

TEST_F(ChatCellTest, aLineIsTheBoldAuthorAndTheComment)
{
    say(message("Mia", "Is it oven-safe?"));
    ASSERT_EQ(runs().size(), 2u);
    EXPECT_EQ(runs()[0].text, "Mia: ");
    EXPECT_EQ(runs()[1].text, "Is it oven-safe?");
    EXPECT_EQ(runs()[0].attributes.font, UIFont::named("SourceSansPro-Bold", 16));
    EXPECT_EQ(runs()[1].attributes.font, UIFont::named("SourceSansPro-Regular", 16));
    for (const auto& run : runs()) {
        EXPECT_EQ(run.attributes.foregroundColor, UIColor::white());
        EXPECT_EQ(run.attributes.shadow, (NSShadow { UIColor::black(), 1, {} }));
    }
    say(message("Noor", "Yes!", true));
    EXPECT_EQ(runs()[0].attributes.foregroundColor, MVColor::accentColor());
    EXPECT_EQ(runs()[1].attributes.foregroundColor, UIColor::white());
}

TEST_F(ChatCellTest, whatIsAbsentIsLeftOut)
{
    const std::pair<ChatMessage, const char*> cases[] = {
        { message({}, {}), ": " },
        { message("Mia", {}), "Mia: " },
        { message({}, "hello"), ": hello" },
        { message("", ""), ": " },
    };
    for (const auto& [line, text] : cases) {
        say(line);
        EXPECT_EQ(textOf()->text(), text);
    }
}

TEST_F(ChatCellTest, theBubbleHugsItsTextAndStaysInside)
{
    say(message("Mia", "Hi"));
    const auto cell = table->cellForRow(0);
    CGRect bubble = onScreen(*find(cell, "containerView"));
    EXPECT_TRUE(isNear({ bubble.x, bubble.maxY(), 0, 0 }, { 10, 800 - 5, 0, 0 })) << "at the foot of the table";
    EXPECT_LT(bubble.width, 80);
    EXPECT_TRUE(isNear(onScreen(*textOf()), { 15, bubble.y + 3, bubble.width - 10, bubble.height - 6 }));
    EXPECT_NEAR(cell->frame().height, 16 * 1.257 + 16, 1);
    const double one = textOf()->bounds().height;

    say(message(
        "Mia", "I bought the small one last year and use it every single morning, and it has not lost any of its colour yet."));
    bubble = onScreen(*find(table->cellForRow(0), "containerView"));
    EXPECT_NEAR(bubble.maxX(), 383, 1.0 / 3);
    EXPECT_NEAR(textOf()->bounds().height, 2 * one, 1);
    EXPECT_NEAR(table->cellForRow(0)->frame().height, textOf()->bounds().height + 16, 1e-6);
    EXPECT_NEAR(onScreen(*table->cellForRow(1)).maxY(), bubble.minY() - 5, 1e-6) << "older lines are above";
}

TEST_F(ChatCellTest, aCellThatIsUsedAgainKeepsNothing)
{
    say(message("Noor", "all of it is at a.com and this is a line that needs more than one line to be told", true));
    const auto cell = table->cellForRow(0);
    const auto shown = textOf();
    const double tall = cell->frame().height;
    lines->messages[0].commentText = "Hi";
    lines->messages[0].owner = "Mia";
    lines->messages[0].isHostOwner = false;
    table->reloadData();
    host.advance(0);
    ASSERT_EQ(table->cellForRow(0), cell);
    EXPECT_EQ(shown->text(), "Mia: Hi");
    EXPECT_EQ(shown->displayedText().runs()[0].attributes.foregroundColor, UIColor::white());
    for (double x = 0; x < shown->bounds().width; x += 2)
        EXPECT_EQ(shown->linkAt({ x, 5 }), std::nullopt);
    EXPECT_LT(cell->frame().height, tall);
    EXPECT_EQ(pixelsLike({ 0, 400, 393, 400 }, MVColor::accentColor().cgColor()), 0);
    EXPECT_EQ(shown->layer()->sublayers().size(), 1u);
}

TEST_F(ChatCellTest, aLinkIsOpenedByATapAndByNothingElse)
{
    say(message("Mia", "the glaze is at example.com/glaze, \U0001f525 and the clay at https://clay.example/?kind=stoneware&x=1"));
    say(message("visit b.com", "\u05e8\u05d0\u05d5 a.com", true));
    host.tap(pointOn("http://example.com/glaze", 1));
    host.tap(pointOn("https://clay.example/?kind=stoneware&x=1", 1));
    host.tap(pointOn("http://b.com"));
    host.tap(pointOn("http://a.com"));
    const std::vector<std::string> all
        = { "http://example.com/glaze", "https://clay.example/?kind=stoneware&x=1", "http://b.com", "http://a.com" };
    EXPECT_EQ(opened(), all);
    const CGPoint link = pointOn("http://example.com/glaze", 1);
    host.tap({ onScreen(*textOf(1)).x + 5, link.y });
    host.tap({ link.x, onScreen(*textOf(1)).minY() - 4 });
    host.drag(link, { link.x, link.y + 60 }, 0.2);
    EXPECT_EQ(opened(), all);
}

TEST_F(ChatCellTest, offersNoSelectionNoMenuAndNoKeyboard)
{
    say(message("Mia", "Hi"));
    const auto text = textOf();
    EXPECT_FALSE(text->canBecomeFirstResponder());
    EXPECT_FALSE(text->becomeFirstResponder());
    EXPECT_FALSE(text->isFirstResponder());
    EXPECT_FALSE(text->canPerformAction("copy:", nullptr));
    text->setSelectedRange({ 1, 2 });
    EXPECT_EQ(text->selectedRange(), NSRange {});
    const CGRect before = onScreen(*text);
    UIScrollView& scroller = *text;
    scroller.setContentOffset({ 20, 30 });
    scroller.setContentOffset({ 20, 30 }, true);
    scroller.scrollRectToVisible({ 0, 500, 10, 10 }, true);
    host.advance(1);
    EXPECT_EQ(scroller.contentOffset(), CGPoint {});
    EXPECT_TRUE(isNear(text->convertTo(CGRect { 0, 0, before.width, before.height }, nullptr), before));
    EXPECT_TRUE(textOf()->subviews().empty());
}

class SelectionPress final : public UILongPressGestureRecognizer { };

TEST_F(ChatCellTest, reportsTheRecognisersThatThePlatformsVersionAllows)
{
    const auto text = make<MVLinkTextView>();
    std::map<std::string, std::shared_ptr<UIGestureRecognizer>> all;
    const auto add = [&](const char* key, const std::shared_ptr<UIGestureRecognizer>& recognizer, const char* name = "") {
        recognizer->setName(name);
        all[key] = recognizer;
    };
    add("force", make<UITapGestureRecognizer>(), "_UIKeyboardTextSelectionGestureForcePress");
    add("loupe", make<UILongPressGestureRecognizer>(), "UITextInteractionNameLoupe");
    add("link", make<UITapGestureRecognizer>(), "UITextInteractionNameLinkTap");
    add("press", make<UILongPressGestureRecognizer>());
    add("hasty", make<UILongPressGestureRecognizer>());
    add("derived", make<SelectionPress>());
    add("tap", make<UITapGestureRecognizer>());
    add("broken", make<UITapGestureRecognizer>(), "\xff");
    all["hasty"]->setDelaysTouchesEnded(false);
    std::vector<std::shared_ptr<UIGestureRecognizer>> list;
    for (const auto& [key, recognizer] : all)
        list.push_back(recognizer);
    text->setGestureRecognizers(list);

    const auto reported = [&](const char* version) {
        UIDevice::current().setSystemVersion(version);
        std::set<std::string> keys;
        for (const auto& recognizer : text->gestureRecognizers())
            for (const auto& [key, each] : all)
                if (each == recognizer)
                    keys.insert(key);
        EXPECT_EQ(keys.size(), text->gestureRecognizers().size());
        return keys;
    };
    using Keys = std::set<std::string>;
    const Keys modern { "link", "press", "hasty", "derived", "tap", "broken" };
    EXPECT_EQ(reported("17.0"), modern);
    EXPECT_EQ(reported("13.0"), modern);
    // The loupe's is a plain long press here, which these versions go by.
    EXPECT_EQ(reported("12.4"), (Keys { "link", "press", "loupe" }));
    EXPECT_EQ(reported("11.0"), (Keys { "link", "press", "loupe" }));
    EXPECT_EQ(reported("10.3"), (Keys { "press", "loupe" }));
    EXPECT_EQ(reported(""), (Keys { "press", "loupe" }));
}

TEST_F(ChatCellTest, linksCanBeTappedOnEveryVersionAndTheLoupeOnNone)
{
    say(message("Mia", "a.com"));
    int magnified = 0;
    const auto loupe = make<UITapGestureRecognizer>([&](UIGestureRecognizer&) { ++magnified; });
    loupe->setName("UITextInteractionNameLoupe");
    textOf()->addGestureRecognizer(loupe);
    std::size_t taps = 0;
    for (const char* const version : { "17.0", "13.1", "12.0", "10.0" }) {
        UIDevice::current().setSystemVersion(version);
        host.tap(pointOn("http://a.com"));
        EXPECT_EQ(opened().size(), ++taps) << version;
        host.tap({ onScreen(*textOf()).x + 2, onScreen(*textOf()).midY() });
        host.advance(1);
    }
    EXPECT_EQ(magnified, 0) << "it hears of no touch";
}

TEST_F(ChatCellTest, theAccentIsSeenOnLinksAndHosts)
{
    say(message("Mia", "hello a.com"));
    CGRect link = onScreen(*textOf());
    link.x = pointOn("http://a.com").x;
    link.width = onScreen(*textOf()).maxX() - link.x;
    const CGRect before { 15, link.y, link.x - 20, link.height };
    const CGColor accent = MVColor::accentColor().cgColor(), white { 1, 1, 1, 1 };
    EXPECT_GT(pixelsLike(link, accent), 30);
    EXPECT_EQ(pixelsLike(link, white), 0);
    EXPECT_GT(pixelsLike(before, white), 30);
    EXPECT_EQ(pixelsLike(before, accent), 0);
    EXPECT_GT(pixelsLike(before, { 0.3, 0.3, 0.3, 1 }), 10) << "a shadow around the letters";

    // Bold letters are wider strokes than the same letters in the comment.
    lines->messages.clear();
    say(message("HHHHHHHH", "HHHHHHHH", true));
    const CGRect whole = onScreen(*textOf());
    const int bold = pixelsLike(whole, accent), regular = pixelsLike(whole, white);
    EXPECT_GT(bold, regular * 5 / 4);
    EXPECT_GT(regular, 100);
}

TEST_F(ChatCellTest, theTreeTellsTheRuns)
{
    say(message("Mia", "see a.com", true));
    const auto tree = viewTree(host.device()).print();
    EXPECT_NE(tree.find(R"("class":"MVLinkTextView","name":"messageTextView")"), std::string::npos) << tree;
    EXPECT_NE(tree.find(R"("text":"Mia: see a.com")"), std::string::npos);
    EXPECT_NE(
        tree.find(
            R"("runs":[{"text":"Mia: ","font":"SourceSansPro-Bold 16","color":"#007affff"},{"text":"see ","font":"SourceSansPro-Regular 16","color":"#ffffffff"},{"text":"a.com","font":"SourceSansPro-Regular 16","color":"#007affff","link":"http://a.com"}])"),
        std::string::npos);
    EXPECT_NE(tree.find(R"("tint":"#007affff")"), std::string::npos);
}

TEST_F(ChatCellTest, hugeAndBrokenLinesAreShown)
{
    std::string huge;
    while (huge.size() < 100'000)
        huge += "glaze a.com \U0001f525 ";
    say(message("\xff\xfeMia", huge));
    EXPECT_GT(table->cellForRow(0)->frame().height, 10'000);
    say(message("Mia", "\xc3\x28 broken https://example.com/\xff"));
    host.tap(pointOn("https://example.com/"));
    EXPECT_EQ(opened(), std::vector<std::string> { "https://example.com/" });
}

TEST(MVStrings, base64KeepsToTheStandard)
{
    EXPECT_EQ(
        base64String("_UIKeyboardTextSelectionGestureForcePress"), "X1VJS2V5Ym9hcmRUZXh0U2VsZWN0aW9uR2VzdHVyZUZvcmNlUHJlc3M=");
    EXPECT_EQ(base64String(""), "");
    EXPECT_EQ(base64String("a"), "YQ==");
    EXPECT_EQ(base64String(std::string(60, '?'))->size(), 80u) << "in one line";
    EXPECT_EQ(base64String("\xff"), std::nullopt);
}

} // namespace
} // namespace mv
