#include "Platform/Foundation/FileSystem.h"
#include "Tests/Support/TemporaryFolder.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Extensions/MVUserDefaults.h"
#include "UI/Screens/Broadcast Screen/Data Models/MVCalendarEvent.h"

#include <gtest/gtest.h>

namespace mv {
namespace {

TEST(MVSetters, configureAndHandOnTheVeryView)
{
    const auto label = make<UILabel>();
    const auto same = label | mv::setText("Live") | mv::setBackgroundColor(UIColor::gray()) | mv::setTintColor(UIColor::black())
        | mv::setLayerMaskToBound(true) | mv::setLayerCornerRadius(4) | mv::setBorderLayerWidth(2)
        | mv::setBorderLayerColor(UIColor::white());
    static_assert(std::is_same_v<decltype(same), const std::shared_ptr<UILabel>>);
    EXPECT_EQ(same, label);
    EXPECT_EQ(label->text(), "Live");
    EXPECT_EQ(label->backgroundColor(), UIColor::gray());
    EXPECT_EQ(label->tintColor(), UIColor::black());
    EXPECT_TRUE(label->layer()->masksToBounds());
    EXPECT_EQ(label->layer()->cornerRadius(), 4);
    EXPECT_EQ(label->layer()->borderWidth(), 2);
    EXPECT_EQ(label->layer()->borderColor(), UIColor::white().cgColor());
    label | mv::setText(std::nullopt);
    EXPECT_EQ(label->text(), "");
}

TEST(MVSetters, configureButtonsByState)
{
    const auto image = std::make_shared<const UIImage>();
    const auto button = make<UIButton>() | mv::setFont(UIFont::systemFont(13)) | mv::updateTitle("Join")
        | mv::updateTitle("Joined", UIControlState::selected) | mv::updateTitleColor(UIColor::red(), UIControlState::highlighted)
        | mv::updateImage(image, UIControlState::disabled) | mv::setImageEdgeInsets({ 1, 2, 3, 4 })
        | mv::setContentEdgeInsets({ 5, 6, 7, 8 }) | mv::setTitleEdgeInsets({ 9, 10, 11, 12 });
    EXPECT_EQ(button->titleLabel()->font(), UIFont::systemFont(13));
    EXPECT_EQ(button->title(UIControlState::normal), "Join");
    EXPECT_EQ(button->title(UIControlState::selected), "Joined");
    EXPECT_EQ(button->titleColor(UIControlState::highlighted), UIColor::red());
    EXPECT_EQ(button->image(UIControlState::disabled), image);
    EXPECT_FALSE(button->image(UIControlState::normal));
    EXPECT_EQ(button->imageEdgeInsets(), (UIEdgeInsets { 1, 2, 3, 4 }));
    EXPECT_EQ(button->contentEdgeInsets(), (UIEdgeInsets { 5, 6, 7, 8 }));
    EXPECT_EQ(button->titleEdgeInsets(), (UIEdgeInsets { 9, 10, 11, 12 }));
}

TEST(MVBorders, keepTheirEdgeAndWidthWhenTheViewGrows)
{
    const auto view = make<UIView>(CGRect { 10, 10, 320, 44 }) | mv::addTopBorder(UIColor::red(), 2)
        | mv::addBottomBorder(UIColor::red(), 1) | mv::addLeftBorder(std::nullopt, 3) | mv::addRightBorder(UIColor::red(), 4);
    const auto strip = [&](BordersViewTag side) { return view->viewWithTag(int(side)); };
    EXPECT_EQ(view->subviews().back()->tag(), 55769030);
    EXPECT_EQ(strip(BordersViewTag::bottom)->frame(), (CGRect { 0, 43, 320, 1 }));
    EXPECT_FALSE(strip(BordersViewTag::left)->backgroundColor());

    view->setFrame({ 0, 0, 400, 60 });
    EXPECT_EQ(strip(BordersViewTag::top)->frame(), (CGRect { 0, 0, 400, 2 }));
    EXPECT_EQ(strip(BordersViewTag::bottom)->frame(), (CGRect { 0, 59, 400, 1 }));
    EXPECT_EQ(strip(BordersViewTag::left)->frame(), (CGRect { 0, 0, 3, 60 }));
    EXPECT_EQ(strip(BordersViewTag::right)->frame(), (CGRect { 396, 0, 4, 60 }));
}

TEST(MVBorders, addUpAndAreRemovedBySide)
{
    const auto other = make<UIView>();
    const auto view = make<UIView>(CGRect { 0, 0, 50, 50 });
    view->addSubview(other);
    view | mv::addTopBorder(UIColor::red(), 1) | mv::addBottomBorder(UIColor::red(), 1) | mv::addTopBorder(UIColor::black(), 1);
    EXPECT_EQ(view->subviews().size(), 4u);
    view | mv::removeTopBorder();
    EXPECT_EQ(view->subviews().size(), 2u);
    EXPECT_TRUE(view->viewWithTag(55769033));
    view | mv::removeTopBorder() | mv::removeBottomBorder() | mv::removeLeftBorder() | mv::removeRightBorder();
    EXPECT_EQ(view->subviews(), std::vector<std::shared_ptr<UIView>> { other });
    EXPECT_EQ(bordersViewTag(55769032), BordersViewTag::top);
    EXPECT_FALSE(bordersViewTag(55769034));
}

TEST(MVBorders, roundsAViewByHalfItsHeight)
{
    const auto circle = make<UIView>(CGRect { 0, 0, 40, 40 }), pill = make<UIView>(CGRect { 0, 0, 100, 30 });
    setViewCircular(*circle);
    setViewCircular(*pill);
    EXPECT_EQ(circle->layer()->cornerRadius(), 20);
    EXPECT_EQ(pill->layer()->cornerRadius(), 15);
    EXPECT_TRUE(pill->layer()->masksToBounds());
}

class CalendarEntryTest : public testing::Test {
protected:
    UserDefaults reopened() const { return { folder / "defaults.json", FileSystem::real() }; }
    const test::TemporaryFolder folder;
};

TEST_F(CalendarEntryTest, outlivesTheProcessAndIsReplaced)
{
    {
        auto defaults = reopened();
        mv::set(defaults, MVCalendarEvent { "entry 1", "show" }, "show");
        mv::set(defaults, MVCalendarEvent { "entry 2", "show" }, "show");
    }
    const auto stored = mv::get<MVCalendarEvent>(reopened(), "show");
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->identifier, "entry 2");
    EXPECT_EQ(stored->broadcastId, "show");
    EXPECT_EQ(textView(*reopened().data("show")), R"({"identifier":"entry 2","broadcastId":"show"})");
    EXPECT_FALSE(mv::get<MVCalendarEvent>(reopened(), "another show"));
}

TEST_F(CalendarEntryTest, isAbsentForWhatIsNoEntry)
{
    auto defaults = reopened();
    defaults.set("text", R"({"identifier":"a","broadcastId":"b"})");
    defaults.set("other", UserDefaults::Value(dataFromText(R"({"identifier":"a"})")));
    defaults.set("broken", UserDefaults::Value(dataFromText("{")));
    for (const char* key : { "text", "other", "broken" })
        EXPECT_FALSE(mv::get<MVCalendarEvent>(defaults, key)) << key;
}

TEST_F(CalendarEntryTest, storesNothingThatCannotBeEncoded)
{
    auto defaults = reopened();
    mv::set(defaults, std::vector<double> { 1, std::numeric_limits<double>::infinity() }, "numbers");
    EXPECT_FALSE(defaults.object("numbers"));
}

} // namespace
} // namespace mv
