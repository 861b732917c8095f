#include "Platform/UIKit/UILabel.h"

#include "Tests/Platform/UIKit/KitResources.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

namespace platform {
namespace {

using UILabelOnScreen = ScreenTest;

constexpr const char* sentence = "The quick brown fox jumps over the lazy dog, then rests in the shade of an old tree.";

std::shared_ptr<UILabel> label(const std::string& text, CGFloat width = 0, CGFloat height = 0, int lines = 1)
{
    const auto result = make<UILabel>(CGRect { 0, 0, width, height });
    result->setFont(kitFont("Regular", 16));
    result->setNumberOfLines(lines);
    result->setText(text);
    return result;
}

CGFloat lineHeight() { return label("x")->intrinsicContentSize().height; }

const CALayer* textLayer(const UILabel& label)
{
    return label.layer()->sublayers().empty() ? nullptr : label.layer()->sublayers()[0].get();
}

TEST(UILabel, isAsLargeAsItsText)
{
    const auto one = label("Live Shows");
    const CGSize size = one->intrinsicContentSize();
    const CGFloat scale = UIScreen::main().scale();
    EXPECT_NEAR(size.height, std::ceil(16 * 1.257 * scale) / scale, 1e-9);
    EXPECT_NEAR(size.width * scale, std::round(size.width * scale), 1e-9) << "whole pixels";
    EXPECT_GT(label("Live Shows today")->intrinsicContentSize().width, size.width);
    EXPECT_EQ(label("")->intrinsicContentSize(), CGSize {});
}

TEST(UILabel, breaksLinesOnlyWhereItMay)
{
    const CGFloat natural = label(sentence)->intrinsicContentSize().width;
    ASSERT_GT(natural, 400);
    EXPECT_EQ(label(sentence, 0, 0, 1)->sizeThatFits({ 200, 0 }).height, lineHeight());
    EXPECT_NEAR(label(sentence, 0, 0, 2)->sizeThatFits({ 200, 0 }).height, 2 * lineHeight(), 1);
    const CGSize free = label(sentence, 0, 0, 0)->sizeThatFits({ 200, 0 });
    EXPECT_GT(free.height, 3 * lineHeight() - 2);
    EXPECT_LE(free.width, 200.01);
    EXPECT_EQ(label("one\ntwo\nthree", 0, 0, 0)->displayedLayout(), nullptr) << "no room, no text";
    EXPECT_GT(label("one\ntwo\nthree", 0, 0, 0)->intrinsicContentSize().height, 3 * lineHeight() - 2);
}

TEST(UILabel, breaksAtItsPreferredWidth)
{
    const auto text = label(sentence, 0, 0, 0);
    text->setPreferredMaxLayoutWidth(150);
    EXPECT_LE(text->intrinsicContentSize().width, 150.01);
    EXPECT_GT(text->intrinsicContentSize().height, 4 * lineHeight() - 4);
}

TEST(UILabel, cutsWhatFindsNoRoom)
{
    EXPECT_FALSE(label("short", 200, 30)->displayedLayout()->isTruncated());
    EXPECT_TRUE(label(sentence, 200, 30)->displayedLayout()->isTruncated());
    const auto two = label(sentence, 200, 100, 2)->displayedLayout();
    EXPECT_EQ(two->lines().size(), 2u);
    EXPECT_TRUE(two->isTruncated());
    const auto low = label(sentence, 200, lineHeight() + 5, 0)->displayedLayout();
    EXPECT_EQ(low->lines().size(), 1u) << "a second line would hang out";
    EXPECT_TRUE(low->isTruncated());
}

TEST(UILabel, showsItsTextWholeInTheSizeItAskedFor)
{
    for (const char* text : { "Live Shows", "Upcoming", "W", "£1,234.50", "fi ffi" }) {
        const auto asking = label(text);
        const CGSize size = asking->intrinsicContentSize();
        asking->setFrame({ 10.4, 0, size.width, size.height });
        EXPECT_FALSE(asking->displayedLayout()->isTruncated()) << text;
        const auto lines = label(sentence, 0, 0, 0);
        const CGSize fitting = lines->sizeThatFits({ 170, 0 });
        lines->setFrame({ 0, 0, fitting.width, fitting.height });
        EXPECT_FALSE(lines->displayedLayout()->isTruncated());
    }
}

TEST(UILabel, becomesSmallerBeforeItCuts)
{
    const CGFloat natural = label("A fine ceramic teapot")->intrinsicContentSize().width;
    const auto shrinking = label("A fine ceramic teapot", natural * 0.95, 30);
    shrinking->setAdjustsFontSizeToFitWidth(true);
    shrinking->setMinimumScaleFactor(0.9);
    EXPECT_FALSE(shrinking->displayedLayout()->isTruncated());
    EXPECT_GT(shrinking->textRect().width, natural * 0.92) << "no smaller than it must";
    shrinking->setFrame({ 0, 0, natural * 0.8, 30 });
    EXPECT_TRUE(shrinking->displayedLayout()->isTruncated()) << "below nine tenths it is cut";
    shrinking->setFrame({ 0, 0, natural, 30 });
    EXPECT_NEAR(shrinking->textRect().width, natural, 1e-6);
}

TEST(UILabel, becomesSmallerInTwoLinesToo)
{
    const std::string title = "Hand-thrown stoneware breakfast bowl set";
    const auto fits = [&](CGFloat width, bool shrinks) {
        const auto card = label(title, width, 60, 2);
        card->setAdjustsFontSizeToFitWidth(shrinks);
        card->setMinimumScaleFactor(0.9);
        return !card->displayedLayout()->isTruncated();
    };
    CGFloat width = 300;
    while (fits(width - 1, false))
        --width;
    EXPECT_FALSE(fits(width - 4, false));
    EXPECT_TRUE(fits(width - 4, true));
}

TEST(UILabel, centresItsTextUpright)
{
    const auto tall = label("text", 200, 100);
    const CGRect left = tall->textRect();
    EXPECT_EQ(left.x, 0);
    EXPECT_NEAR(left.midY(), 50, 0.5);
    tall->setTextAlignment(NSTextAlignment::center);
    EXPECT_NEAR(tall->textRect().midX(), 100, 0.5);
    tall->setTextAlignment(NSTextAlignment::right);
    EXPECT_NEAR(tall->textRect().maxX(), 200, 0.5);
}

TEST_F(UILabelOnScreen, followsTheInterfacesDirection)
{
    setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    for (const char* text : { "مرحبا", "Hello" }) {
        const auto greeting = label(text, 200, 30);
        for (const auto alignment : { NSTextAlignment::natural, NSTextAlignment::left }) {
            greeting->setTextAlignment(alignment);
            EXPECT_NEAR(greeting->textRect().maxX(), 200, 0.5) << text;
        }
        greeting->setSemanticContentAttribute(UISemanticContentAttribute::forceLeftToRight);
        EXPECT_NEAR(greeting->textRect().x, 0, 0.5) << text;
    }
    EXPECT_NEAR(label(sentence, 200, 200, 0)->textRect().maxX(), 200, 1) << "broken lines too";
}

TEST(UILabel, changesItsColorWithoutDrawingAgain)
{
    const auto word = label("Live", 100, 30);
    word->layoutIfNeeded();
    const CALayer* shown = textLayer(*word);
    ASSERT_TRUE(shown);
    const auto picture = shown->contents();
    ASSERT_TRUE(picture);
    EXPECT_EQ(shown->contentsTint(), UIColor::black().cgColor());
    word->setTextColor(UIColor::red());
    word->layoutIfNeeded();
    EXPECT_EQ(shown->contentsTint(), UIColor::red().cgColor());
    EXPECT_EQ(shown->contents(), picture);
}

TEST(UILabel, sharesThePictureOfEqualTexts)
{
    const auto first = label("LIVE", 100, 30), second = label("LIVE", 140, 50);
    second->setTextColor(UIColor::white());
    first->layoutIfNeeded();
    second->layoutIfNeeded();
    EXPECT_EQ(textLayer(*first)->contents(), textLayer(*second)->contents());
}

TEST(UILabel, showsNoMorePixelsThanItsTextNeeds)
{
    const auto wide = label("LIVE", 390, 200);
    wide->layoutIfNeeded();
    const CGRect frame = textLayer(*wide)->frame();
    EXPECT_TRUE(frame.contains(wide->textRect()));
    EXPECT_LT(frame.width, wide->textRect().width + 10);
    EXPECT_LT(frame.height, 40);
}

TEST(UILabel, costsNothingWhenSetToWhatItShows)
{
    const auto word = label("Live", 100, 30);
    word->layoutIfNeeded();
    const auto before = textLayer(*word)->changeCount();
    word->setText("Live");
    word->setFont(kitFont("Regular", 16));
    word->setTextColor(UIColor::label());
    word->setNumberOfLines(1);
    EXPECT_FALSE(word->layer()->needsLayout());
    word->setNeedsLayout();
    word->layoutIfNeeded();
    EXPECT_EQ(textLayer(*word)->changeCount(), before) << "a layout pass alone changes no pixel";
}

TEST_F(UILabelOnScreen, resolvesItsColorsAnewInTheDark)
{
    const auto word = label("Live", 100, 30);
    NSAttributes blue;
    blue.foregroundColor = UIColor::systemBlue();
    const auto runs = label("", 100, 30);
    runs->setAttributedText(NSAttributedString("Live", blue));
    window->addSubview(word);
    window->addSubview(runs);
    window->layoutIfNeeded();
    EXPECT_EQ(textLayer(*word)->contentsTint(), UIColor::black().cgColor());
    const auto lightPicture = textLayer(*runs)->contents();
    setDark(true);
    window->layoutIfNeeded();
    EXPECT_EQ(textLayer(*word)->contentsTint(), UIColor::white().cgColor());
    EXPECT_NE(textLayer(*runs)->contents(), lightPicture);
}

TEST(UILabel, keepsTheColorsOfEmojiAndRuns)
{
    const auto party = label("party 🎉", 100, 30);
    party->layoutIfNeeded();
    EXPECT_FALSE(textLayer(*party)->contentsTint());
    NSAttributes red;
    red.foregroundColor = UIColor::red();
    const auto text = make<UILabel>(CGRect { 0, 0, 200, 30 });
    NSAttributedString whole("Ada: ", red);
    whole.append(NSAttributedString("hello"));
    text->setAttributedText(whole);
    text->layoutIfNeeded();
    EXPECT_FALSE(textLayer(*text)->contentsTint());
    EXPECT_EQ(text->text(), "Ada: hello");
    text->setText("Ada: hello");
    text->layoutIfNeeded();
    EXPECT_TRUE(textLayer(*text)->contentsTint()) << "a plain text takes the place of runs, equal letters or not";
    EXPECT_FALSE(text->attributedText());
}

TEST(UILabel, showsNothingAfterItsTextIsTakenAway)
{
    const auto word = label("Live", 100, 30);
    word->layoutIfNeeded();
    word->setText(std::nullopt);
    word->layoutIfNeeded();
    EXPECT_FALSE(textLayer(*word)->contents());
    EXPECT_EQ(word->textRect(), CGRect {});
}

// In constraints: a column of the given width with a label over a box.
class UILabelInColumn : public ::testing::Test {
protected:
    void lay(CGFloat width)
    {
        column->setFrame({ 0, 0, width, 600 });
        column->layoutIfNeeded();
    }
    void SetUp() override
    {
        for (const std::shared_ptr<UIView>& view : { std::shared_ptr<UIView>(text), box }) {
            view->setTranslatesAutoresizingMaskIntoConstraints(false);
            column->addSubview(view);
        }
        activate({
            text->topAnchor().equalTo(column->topAnchor(), 10),
            text->leadingAnchor().equalTo(column->leadingAnchor(), 15),
            text->trailingAnchor().equalTo(column->trailingAnchor(), -15),
            box->topAnchor().equalTo(text->bottomAnchor(), 5),
            box->leadingAnchor().equalTo(column->leadingAnchor()),
            box->widthAnchor().equalToConstant(50),
            box->heightAnchor().equalToConstant(50),
        });
    }

    std::shared_ptr<UIView> column = make<UIView>();
    std::shared_ptr<UIView> box = make<UIView>();
    std::shared_ptr<UILabel> text = label(sentence, 0, 0, 0);
};

TEST_F(UILabelInColumn, takesTheHeightThatItsWidthAsksFor)
{
    lay(230);
    EXPECT_NEAR(text->frame().width, 200, 0.01);
    EXPECT_NEAR(text->frame().height, text->sizeThatFits({ 200, 0 }).height, 0.5);
    EXPECT_NEAR(box->frame().y, text->frame().maxY() + 5, 0.5);
    EXPECT_FALSE(text->displayedLayout()->isTruncated());
    lay(630);
    EXPECT_NEAR(text->frame().height, lineHeight(), 0.5) << "one line in a wide column";
    lay(130.7);
    EXPECT_GT(text->frame().height, 5 * lineHeight());
    EXPECT_FALSE(text->displayedLayout()->isTruncated());
}

TEST_F(UILabelInColumn, growsWithItsText)
{
    text->setText("short");
    lay(230);
    EXPECT_NEAR(text->frame().height, lineHeight(), 0.5);
    text->setText(sentence);
    column->layoutIfNeeded();
    EXPECT_GT(text->frame().height, 2 * lineHeight());
    text->setNumberOfLines(2);
    column->layoutIfNeeded();
    EXPECT_NEAR(text->frame().height, 2 * lineHeight(), 1);
    text->setFont(kitFont("Bold", 32));
    column->layoutIfNeeded();
    EXPECT_NEAR(text->frame().height, 4 * lineHeight(), 1.5);
    text->setFont(kitFont("Regular", 16));
    text->setText("two words");
    lay(80); // becomes narrow in the same turn
    EXPECT_NEAR(text->frame().height, 2 * lineHeight(), 1);
}

} // namespace
} // namespace platform
