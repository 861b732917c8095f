#include "Platform/UIKit/UITextView.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/URL.h"
#include "Platform/UIKit/UILongPressGestureRecognizer.h"
#include "Platform/UIKit/UITapGestureRecognizer.h"
#include "Tests/Platform/UIKit/KitResources.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

namespace platform {
namespace {

constexpr const char* sentence = "The quick brown fox jumps over the lazy dog, then rests in the shade of an old tree.";

// Opens what it is asked to.
struct Browser final : UIApplicationHost {
    Browser() { UIApplication::shared().setHost(this); }
    ~Browser() override { UIApplication::shared().setHost(nullptr); }
    bool open(const URL& url) override
    {
        opened.push_back(url.absoluteString());
        return true;
    }
    void setIdleTimerDisabled(bool) override { }
    std::vector<std::string> opened;
};

class UITextViewTest : public ScreenTest {
protected:
    UITextViewTest()
    {
        text->setFont(kitFont("Regular", 16));
        text->setTextContainerInset({});
        text->setLineFragmentPadding(0);
        text->setScrollEnabled(false);
        text->setDataDetectorTypes(UIDataDetectorTypes::link);
        window->addSubview(text);
    }

    void show(const std::string& content, double width = 300)
    {
        text->setText(content);
        text->setFrame({ 10, 100, width, text->sizeThatFits({ width, 0 }).height });
        makeFrame();
    }
    double lineHeight()
    {
        const auto one = make<UITextView>();
        one->setFont(text->font());
        one->setTextContainerInset({});
        one->setText("x");
        return one->sizeThatFits({}).height;
    }
    // Every point of the view, some apart, at which a finger is on a link.
    std::vector<CGPoint> pointsOn(const std::string& link) const
    {
        std::vector<CGPoint> points;
        for (double y = 2; y < text->bounds().height; y += 4)
            for (double x = 0.5; x < text->bounds().width; x += 2)
                if (text->linkAt({ x, y }) == link)
                    points.push_back(text->convertTo(CGPoint { x, y }, nullptr));
        return points;
    }

    Browser browser;
    const std::shared_ptr<UITextView> text = make<UITextView>();
};

TEST_F(UITextViewTest, asksForTheSizeOfItsTextWhileItDoesNotScroll)
{
    text->setText(sentence);
    const CGSize natural = text->intrinsicContentSize();
    EXPECT_GT(natural.width, 400);
    EXPECT_EQ(natural.height, lineHeight());
    const CGSize fitting = text->sizeThatFits({ 200, 0 });
    EXPECT_LE(fitting.width, 200);
    EXPECT_NEAR(fitting.height, 3 * lineHeight(), 1.5);
    text->setTextContainerInset({ 1, 2, 3, 4 });
    text->setLineFragmentPadding(5);
    EXPECT_EQ(text->intrinsicContentSize(), (CGSize { natural.width + 16, natural.height + 4 }));
    text->setText("");
    EXPECT_EQ(text->intrinsicContentSize().height, lineHeight() + 4) << "room for a line";
    text->setText(sentence);
    text->setScrollEnabled(true);
    EXPECT_EQ(text->intrinsicContentSize(), (CGSize { UIView::noIntrinsicMetric, UIView::noIntrinsicMetric }));
    text->setFrame({ 0, 0, 100, 50 });
    makeFrame();
    EXPECT_EQ(text->contentSize().height, text->sizeThatFits({ 100, 0 }).height) << "and scrolls over it";
}

TEST_F(UITextViewTest, growsInConstraintsWithTheLinesThatItNeeds)
{
    text->setTranslatesAutoresizingMaskIntoConstraints(false);
    activate({
        text->leadingAnchor().equalTo(window->leadingAnchor(), 10),
        text->topAnchor().equalTo(window->topAnchor(), 10),
        text->trailingAnchor().lessThanOrEqualTo(window->trailingAnchor(), -10),
    });
    text->setText("short");
    makeFrame();
    EXPECT_LT(text->frame().width, 60) << "hugs its text";
    EXPECT_EQ(text->frame().height, lineHeight());
    text->setText(sentence);
    makeFrame();
    EXPECT_EQ(text->frame().width, 300);
    EXPECT_NEAR(text->frame().height, 2 * lineHeight(), 1);
    text->setText(std::string("a\nb\nc"));
    makeFrame();
    EXPECT_NEAR(text->frame().height, 3 * lineHeight(), 1.5);
}

TEST_F(UITextViewTest, aTapOnALinkOpensExactlyThat)
{
    show("one a.com two b.com three");
    for (const char* const link : { "http://a.com", "http://b.com" }) {
        const auto points = pointsOn(link);
        ASSERT_GT(points.size(), 20u);
        browser.opened.clear();
        tap(points.front());
        tap(points.back());
        EXPECT_EQ(browser.opened, (std::vector<std::string> { link, link }));
    }
    browser.opened.clear();
    const auto first = pointsOn("http://a.com").front(), last = pointsOn("http://a.com").back();
    tap({ first.x - 4, first.y });
    tap({ last.x + 4, first.y });
    tap({ first.x, 100 + lineHeight() + 3 });
    tap({ text->frame().maxX() - 1, first.y });
    EXPECT_EQ(browser.opened, std::vector<std::string> {});
}

TEST_F(UITextViewTest, aLinkAnswersOnEveryLineThatItTakes)
{
    show("Look at https://example.com/a/very/long/path/that/needs/more/than/one/line?of=this&narrow=view now", 150);
    const auto points = pointsOn("https://example.com/a/very/long/path/that/needs/more/than/one/line?of=this&narrow=view");
    ASSERT_FALSE(points.empty());
    EXPECT_GT(points.back().y - points.front().y, 2 * lineHeight());
    tap(points.front());
    tap(points.back());
    touch(UITouchPhase::began, points.front());
    touch(UITouchPhase::ended, { points.front().x + 5, points.front().y });
    EXPECT_EQ(browser.opened.size(), 3u);
    touch(UITouchPhase::began, points.front());
    touch(UITouchPhase::ended, { points.front().x, 95 });
    EXPECT_EQ(browser.opened.size(), 3u) << "let go beside it";
}

TEST_F(UITextViewTest, linksLieWhereTheyAreSeen)
{
    // Right to left the later part of the text lies on the left.
    show("\u05e8\u05d0\u05d5 a.com \u05d5\u05d2\u05dd b.com");
    const auto a = pointsOn("http://a.com"), b = pointsOn("http://b.com");
    ASSERT_FALSE(a.empty());
    ASSERT_FALSE(b.empty());
    EXPECT_LT(b.back().x, a.front().x);
    tap(b.front());
    EXPECT_EQ(browser.opened, std::vector<std::string> { "http://b.com" });

    browser.opened.clear();
    show("\U0001f469\u200d\U0001f4bb\U0001f525 \U0001f1e9\U0001f1ea a.com");
    const auto behind = pointsOn("http://a.com");
    ASSERT_FALSE(behind.empty());
    EXPECT_GT(behind.front().x, 10 + 3 * 16) << "behind three emoji";
    tap(behind.front());
    EXPECT_EQ(browser.opened, std::vector<std::string> { "http://a.com" });
}

TEST_F(UITextViewTest, onAMirroredScreenTextBeginsOnTheRight)
{
    setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    show("a.com");
    const auto points = pointsOn("http://a.com");
    ASSERT_FALSE(points.empty());
    EXPECT_GT(points.front().x, 200);
    EXPECT_GT(points.back().x, 306);
}

TEST_F(UITextViewTest, onlyAddressesOfTheWebAreOpened)
{
    for (const char* const target :
        { "javascript:alert(1)", "file:///etc/passwd", "tel:123", "mailto:a@b.c", "", "a b", "//x.com" }) {
        NSAttributedString line("x ");
        NSAttributes attributes;
        attributes.link = target;
        line.append(NSAttributedString("leads elsewhere", attributes));
        text->setAttributedText(line);
        text->setFrame({ 10, 100, 300, 30 });
        makeFrame();
        ASSERT_EQ(pointsOn(target).empty(), false);
        tap(pointsOn(target).front());
        EXPECT_EQ(takeLines(),
            std::vector<std::string> { std::string("link \"") + target + "\" not opened: it is no address of the web" });
    }
    EXPECT_EQ(browser.opened, std::vector<std::string> {});
}

struct Reader final : UITextViewDelegate {
    bool textViewShouldInteractWith(UITextView& view, const std::string& link, NSRange range, UITextItemInteraction) override
    {
        seen.push_back(link + "|" + view.text().substr(range.location, range.length));
        if (onLink)
            onLink();
        return opens;
    }
    std::vector<std::string> seen;
    std::function<void()> onLink;
    bool opens = false;
};

TEST_F(UITextViewTest, theDelegateDecidesWhetherALinkIsOpened)
{
    const auto reader = std::make_shared<Reader>();
    text->setDelegate(reader);
    NSAttributes bold, more;
    bold.font = kitFont("Bold", 16);
    more.link = "";
    NSAttributedString line("see a.c");
    line.append(NSAttributedString("om/x", bold));
    line.append(NSAttributedString(" ... ", {}));
    line.append(NSAttributedString("Read more", more));
    text->setAttributedText(line);
    text->setFrame({ 10, 100, 300, 30 });
    makeFrame();
    tap(pointsOn("http://a.com/x").back());
    tap(pointsOn("").front());
    EXPECT_EQ(reader->seen, (std::vector<std::string> { "http://a.com/x|a.com/x", "|Read more" }));
    EXPECT_EQ(browser.opened, std::vector<std::string> {});
    reader->opens = true;
    tap(pointsOn("http://a.com/x").front());
    EXPECT_EQ(browser.opened, std::vector<std::string> { "http://a.com/x" });

    // As the preview of a show does: another text, or no view any more, from within.
    reader->opens = false;
    reader->onLink = [&] {
        text->setText("all of it");
        text->removeFromSuperview();
        makeFrame();
    };
    tap(pointsOn("").front());
    EXPECT_EQ(text->text(), "all of it");
}

TEST_F(UITextViewTest, linksThatAreGivenWinOverThoseFound)
{
    NSAttributes given;
    given.link = "https://example.org";
    text->setAttributedText(NSAttributedString("a.com", given));
    text->setFrame({ 10, 100, 300, 30 });
    EXPECT_EQ(text->linkAt({ 5, 5 }), "https://example.org");
    text->setDataDetectorTypes(UIDataDetectorTypes::none);
    EXPECT_EQ(text->linkAt({ 5, 5 }), "https://example.org");
    text->setText("a.com");
    EXPECT_EQ(text->linkAt({ 5, 5 }), std::nullopt);
    text->setDataDetectorTypes(UIDataDetectorTypes::link);
    EXPECT_EQ(text->linkAt({ 5, 5 }), "http://a.com");
    text->setSelectable(false);
    makeFrame();
    tap({ 15, 105 });
    EXPECT_EQ(browser.opened, std::vector<std::string> {}) << "links want a selectable text";
}

TEST_F(UITextViewTest, linksFollowTheTint)
{
    show("hello a.com");
    const auto linkColor = [&] { return *text->displayedText().runs().at(1).attributes.foregroundColor; };
    EXPECT_EQ(text->displayedText().runs().at(0).attributes.foregroundColor, std::nullopt);
    text->setTintColor(UIColor::red());
    EXPECT_EQ(linkColor(), UIColor::red());
    text->setTintColor(std::nullopt);
    window->setTintColor(UIColor::black());
    EXPECT_EQ(linkColor(), UIColor::black());
    EXPECT_EQ(text->displayedText().string(), "hello a.com");
}

TEST_F(UITextViewTest, tapsOnLinksAreNobodyElses)
{
    int taps = 0;
    window->addGestureRecognizer(make<UITapGestureRecognizer>([&](UIGestureRecognizer&) { ++taps; }));
    show("hello a.com");
    tap(pointsOn("http://a.com").front());
    EXPECT_EQ(taps, 0);
    tap({ 15, 105 });
    EXPECT_EQ(taps, 1) << "beside the link it is the window's";
    tap(pointsOn("http://a.com").front());
    touch(UITouchPhase::began, pointsOn("http://a.com").front());
    touch(UITouchPhase::cancelled, pointsOn("http://a.com").front());
    EXPECT_EQ(browser.opened.size(), 2u);
}

TEST_F(UITextViewTest, aDragFromALinkScrollsWhatIsAround)
{
    const auto scroller = make<UIScrollView>(CGRect { 0, 0, 320, 480 });
    scroller->setContentSize({ 320, 2000 });
    window->addSubview(scroller);
    scroller->addSubview(text);
    show("hello a.com");
    const CGPoint link = pointsOn("http://a.com").front();
    touch(UITouchPhase::began, link);
    for (int i = 1; i <= 5; ++i) {
        clock.advance(1.0 / 60);
        touch(UITouchPhase::moved, { link.x, link.y - 12 * i });
    }
    EXPECT_GT(scroller->contentOffset().y, 20);
    clock.advance(1.0 / 60);
    touch(UITouchPhase::ended, { link.x, link.y - 80 });
    ASSERT_TRUE(scroller->isDecelerating());
    advance(0.05);
    tap(text->convertTo(CGPoint { link.x - 10, link.y - 100 }, nullptr));
    EXPECT_FALSE(scroller->isDecelerating()) << "stopped";
    EXPECT_EQ(browser.opened, std::vector<std::string> {});
    tap(text->convertTo(CGPoint { link.x - 10, link.y - 100 }, nullptr));
    EXPECT_EQ(browser.opened, std::vector<std::string> { "http://a.com" });
}

TEST_F(UITextViewTest, aHugeTextIsShownInPieces)
{
    std::string huge;
    while (huge.size() < 100'000)
        huge += "Does the glaze survive a.com and the dishwasher? ";
    show(huge);
    EXPECT_GT(text->frame().height, 10'000);
    EXPECT_GT(text->layer()->sublayers().size(), 5u);
    double covered = 0;
    for (const auto& piece : text->layer()->sublayers()) {
        EXPECT_LE(piece->bounds().height, 512) << "what is shown of it must fit a bitmap";
        covered += piece->bounds().height;
    }
    EXPECT_GE(covered, text->frame().height);
    EXPECT_EQ(text->linkAt({ 250, text->frame().height - 5 }).value_or("http://a.com"), "http://a.com");
    show("short");
    EXPECT_EQ(text->layer()->sublayers().size(), 1u);
}

TEST_F(UITextViewTest, takesWhatEverItIsGiven)
{
    show("\xff\xfe broken a.com \xf0\x9f", 300);
    ASSERT_FALSE(pointsOn("http://a.com").empty());
    tap(pointsOn("http://a.com").front());
    EXPECT_EQ(browser.opened.size(), 1u);
    for (const double width : { 0.0, -5.0, 0.3, 1.0 }) {
        text->setFrame({ 10, 100, width, 20 });
        makeFrame();
        EXPECT_GE(text->sizeThatFits({ width, 0 }).height, lineHeight());
    }
    text->setFrame({});
    EXPECT_EQ(text->linkAt({ 0, 0 }), std::nullopt);
    text->setText("");
    makeFrame();
    EXPECT_EQ(text->linkAt({ 0, 0 }), std::nullopt);
    text->setTextContainerInset({ 0, 500, 0, 500 });
    show("a.com");
    EXPECT_EQ(text->linkAt({ 5, 5 }), std::nullopt) << "no room at all";
}

TEST_F(UITextViewTest, settingWhatItShowsCostsNothing)
{
    show("hello a.com");
    text->setText("hello a.com");
    text->setTextColor(text->textColor());
    text->setFont(text->font());
    text->setLineFragmentPadding(0);
    EXPECT_FALSE(text->layer()->needsLayout());
    const auto* picture = text->layer()->sublayers().at(0)->contents().get();
    show("something else");
    show("hello a.com");
    EXPECT_EQ(text->layer()->sublayers().at(0)->contents().get(), picture) << "drawn once for both times";
}

using LongPressTest = ScreenTest;

TEST_F(LongPressTest, beginsAfterAWhileAtRestAndFollowsTheFinger)
{
    using State = UIGestureRecognizerState;
    std::vector<State> states;
    add({ 0, 0, 100, 100 })->addGestureRecognizer(make<UILongPressGestureRecognizer>([&](UIGestureRecognizer& r) {
        states.push_back(r.state());
    }));
    const auto wait = [&](double seconds) { MainQueue::shared().advance(clock, seconds); };
    tap({ 50, 50 });
    touch(UITouchPhase::began, { 50, 50 });
    wait(0.3);
    touch(UITouchPhase::moved, { 50, 70 }); // a drag
    wait(0.3);
    touch(UITouchPhase::ended, { 50, 70 });
    touch(UITouchPhase::began, { 50, 50 });
    wait(0.3);
    touch(UITouchPhase::ended, { 50, 50 });
    touch(UITouchPhase::began, { 50, 50 });
    wait(0.4);
    EXPECT_TRUE(states.empty()) << "the wait of one press does not count for the next";
    wait(0.2);
    touch(UITouchPhase::moved, { 50, 90 });
    touch(UITouchPhase::ended, { 50, 90 });
    EXPECT_EQ(states, (std::vector<State> { State::began, State::changed, State::ended }));
}

} // namespace
} // namespace platform
