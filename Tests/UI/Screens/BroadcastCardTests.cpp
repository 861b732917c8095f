#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/Locale.h"
#include "Platform/Host/ViewTree.h"
#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UITableView.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/UI/Stage.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastLandscapeModeTableCell.h"
#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastPortraitModeTableCell.h"
#include "UI/Screens/Broadcasts List/SubViews/MVNoBroadcastView.h"

namespace mv {
namespace {

// Shows the shows that it is given, in cards of one design.
struct Cards final : UITableViewDataSource {
    std::vector<std::shared_ptr<MVBroadcast>> shows;
    const char* design = MVBroadcastPortraitModeTableCell::identifier;
    MVBroadcastBaseTableCell::BroadcastAction onPress;

    int numberOfRows(UITableView&) override { return int(shows.size()); }
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, int row) override
    {
        const auto cell = std::dynamic_pointer_cast<MVBroadcastBaseTableCell>(table.dequeueReusableCell(design));
        cell->setBroadcast(shows[std::size_t(row)]);
        cell->onPressActionButton = onPress;
        return cell;
    }
    std::string identityForRow(UITableView&, int row) override { return shows[std::size_t(row)]->id.value_or(""); }
};

class BroadcastCardTest : public Stage {
protected:
    BroadcastCardTest()
    {
        TimeZone::setCurrent(TimeZone { "America/New_York" });
        table->registerCell<MVBroadcastPortraitModeTableCell>(MVBroadcastPortraitModeTableCell::identifier);
        table->registerCell<MVBroadcastLandscapeModeTableCell>(MVBroadcastLandscapeModeTableCell::identifier);
        table->setEstimatedRowHeight(250);
        table->setAutoresizingMask(flexibleWidth | flexibleHeight);
        table->setDataSource(cards);
        window->addSubview(table);
    }
    ~BroadcastCardTest() override { TimeZone::setCurrent(std::nullopt); }

    std::shared_ptr<MVBroadcast> addShow(std::optional<MVBroadcastStatus> status)
    {
        auto show = make<MVBroadcast>();
        show->id = std::to_string(cards->shows.size());
        show->title = "Ceramic Hour";
        show->description = "Noor unpacks the kiln.";
        show->status = status;
        show->startTime = Date { 1'741'221'000 }; // 6 March 2025, 0:30 UTC
        cards->shows.push_back(show);
        return show;
    }
    void present()
    {
        table->reloadData();
        host.advance(0);
    }
    CGRect place(const char* name, int row = 0) { return onScreen(*find(table->cellForRow(row), name)); }
    std::string title(const char* name, int row = 0) { return find<UIButton>(table->cellForRow(row), name)->currentTitle(); }

    const std::shared_ptr<Cards> cards = std::make_shared<Cards>();
    const std::shared_ptr<UITableView> table = make<UITableView>(CGRect { 0, 0, 393, 852 });
};

TEST_F(BroadcastCardTest, aLiveShowHasNoDateRow)
{
    table->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
    addShow(MVBroadcastStatus::live);
    present();
    EXPECT_EQ(place("containerView").x, 20);
    EXPECT_EQ(place("containerView").width, 353);
    EXPECT_EQ(place("containerView").y, 15);
    EXPECT_EQ(place("broadcastImageView"), (CGRect { 20, 15, 353, 200 }));
    const CGRect name = place("broadcastNameLabel"), description = place("descriptionLabel");
    EXPECT_EQ(name.x, 35);
    EXPECT_EQ(name.y, 230);
    EXPECT_EQ(name.width, 323);
    EXPECT_EQ(description.y, name.maxY() + 10);
    EXPECT_EQ(place("dateTimeStackView").height, 0);
    EXPECT_NEAR(place("buttonsStackView").y, description.maxY() + 2.5 + 12.5, 0.34);
    EXPECT_EQ(place("containerView").maxY(), place("buttonsStackView").maxY() + 20);
    EXPECT_EQ(table->contentSize().height, place("containerView").maxY() + 15);
    EXPECT_FALSE(find(table->cellForRow(0), "dateTimeView"));
    EXPECT_EQ(title("actionButton"), "mvJoinNow");
}

TEST_F(BroadcastCardTest, othersShowTheirStartInTheDevicesZoneAndTheirOwnButton)
{
    addShow(MVBroadcastStatus::upcoming);
    addShow(MVBroadcastStatus::completed)->startTime.reset();
    present();
    EXPECT_EQ(title("dateTimeView"), "Mar 5, 7:30 PM");
    EXPECT_EQ(title("actionButton"), "mvPreview");
    EXPECT_EQ(title("actionButton", 1), "mvPlayNow");
    EXPECT_EQ(title("dateTimeView", 1), "Mar 14, 8:00 AM") << "the host's now, where the show does not say";
    EXPECT_EQ(place("dateTimeStackView").height, 30);
    EXPECT_NEAR(place("dateTimeStackView").y, place("descriptionLabel").maxY() + 12.5, 0.34);
    EXPECT_EQ(place("dateTimeView").x, place("broadcastNameLabel").x);
}

TEST_F(BroadcastCardTest, aCardIsFilledAnewForItsNextShow)
{
    const auto show = addShow(MVBroadcastStatus::live);
    present();
    show->status = MVBroadcastStatus::completed;
    show->title.reset();
    present();
    EXPECT_EQ(title("actionButton"), "mvPlayNow");
    EXPECT_EQ(title("dateTimeView"), "Mar 5, 7:30 PM") << "the date view is back";
    EXPECT_EQ(place("dateTimeView").x, place("descriptionLabel").x);
    EXPECT_EQ(find<UILabel>(table->cellForRow(0), "broadcastNameLabel")->text(), "");
    show->status.reset();
    present();
    EXPECT_EQ(title("actionButton"), "mvPlayNow") << "unchanged for a show without status";
}

// Shows with banners of one colour, as files.
class CardBannerTest : public BroadcastCardTest {
protected:
    CardBannerTest() { Folders::setCache(folder / "cache"); }

    URL banner(const std::string& name, std::uint32_t color)
    {
        const auto bitmap = Bitmap::make(1200, 800, PixelFormat::xrgb);
        for (int y = 0; y < 800; ++y)
            std::fill_n(bitmap->row(y), 1200, color);
        EXPECT_TRUE(writePNG(*bitmap, folder / name));
        return URL::fileURL(folder / name);
    }
    std::shared_ptr<UIImageView> bannerView() { return find<UIImageView>(table->cellForRow(0), "broadcastImageView"); }
    std::uint32_t shown() { return pixel(middle(*bannerView())); }

    const test::TemporaryFolder folder;
    const std::uint32_t gray = 0xe5e5ea;
};

TEST_F(CardBannerTest, fadesInOverTheGrayBackgroundOnce)
{
    const auto show = addShow(MVBroadcastStatus::live);
    show->bannerImageUrl = banner("green.png", 0x00ff00);
    present();
    EXPECT_EQ(shown(), gray);
    host.advance(0.5);
    EXPECT_NE(shown(), gray);
    EXPECT_NE(shown(), 0x00ff00u);
    host.advance(0.6);
    EXPECT_EQ(shown(), 0x00ff00u);
    EXPECT_EQ(bannerView()->image()->cgImage()->width(), 353 * 3);
    EXPECT_EQ(bannerView()->image()->cgImage()->height(), 200 * 3);
    EXPECT_NE(
        viewTree(host.device()).print().find("\"image\":\"" + show->bannerImageUrl->absoluteString() + "\""), std::string::npos);
    present();
    EXPECT_EQ(shown(), 0x00ff00u) << "a reload does not fade again";
    show->bannerImageUrl = banner("blue.png", 0x0000ff);
    present();
    EXPECT_EQ(shown(), gray) << "a reused card does not show the former one's";
    host.advance(1.1);
    EXPECT_EQ(shown(), 0x0000ffu);
    show->bannerImageUrl.reset();
    present();
    EXPECT_EQ(shown(), gray);
}

TEST_F(CardBannerTest, anIndicatorTurnsWhileTheBannerLoads)
{
    for (const auto& [version, style] :
        { std::pair("12.4", UIActivityIndicatorViewStyle::gray), std::pair("13.0", UIActivityIndicatorViewStyle::medium) }) {
        UIDevice::current().setSystemVersion(version);
        const auto cell = make<MVBroadcastPortraitModeTableCell>();
        const auto show = addShow(MVBroadcastStatus::live);
        show->bannerImageUrl = banner(version + std::string(".png"), 0xff0000);
        cell->setBroadcast(show);
        const auto turning = find<UIActivityIndicatorView>(cell, "imageIndicator");
        ASSERT_TRUE(turning);
        EXPECT_TRUE(turning->isAnimating());
        EXPECT_EQ(turning->style(), style);
    }
    UIDevice::current().setSystemVersion("17.0");
}

TEST_F(BroadcastCardTest, longTextsTakeTwoLines)
{
    const auto show = addShow(MVBroadcastStatus::live);
    present();
    const double title = place("broadcastNameLabel").height, text = place("descriptionLabel").height;
    show->title = std::string(5000, 'x') + " \xff\xfe " + std::string(5000, 'y');
    show->description = std::string(100'000, 'w');
    present();
    EXPECT_NEAR(place("broadcastNameLabel").height, 2 * title, 1);
    EXPECT_NEAR(place("descriptionLabel").height, 2 * text, 1);
}

TEST_F(BroadcastCardTest, castsAShadowThatIsNotClipped)
{
    window->setBackgroundColor(UIColor::white());
    addShow(MVBroadcastStatus::live);
    present();
    const CGRect card = place("containerView");
    const auto tone = [&](double x, double y) { return int(pixel({ x, y }) & 0xff); };
    const double middle = card.midY();
    EXPECT_LT(tone(card.x - 2, middle), tone(card.x - 12, middle)) << "darker beside the card";
    EXPECT_EQ(tone(card.x - 19, middle), 255) << "and gone before the edge";
    EXPECT_EQ(tone(card.midX(), card.maxY() - 8), 255) << "the card itself is clean";
    const auto shadow = find(table->cellForRow(0), "backShadowView")->layer()->sublayers().front();
    const auto light = shadow->shadowColor();
    host.setAppearance(UIUserInterfaceStyle::dark);
    host.advance(0);
    EXPECT_EQ(shadow->shadowColor(), MVColor::shadowColor().cgColor());
    EXPECT_NE(light, shadow->shadowColor());
}

TEST_F(BroadcastCardTest, landscapeCardsFollowTheScreensHeight)
{
    addShow(MVBroadcastStatus::upcoming);
    cards->design = MVBroadcastLandscapeModeTableCell::identifier;
    turn(UIDeviceOrientation::landscapeLeft);
    present();
    const CGRect card = place("containerView");
    EXPECT_EQ(card.x, 79);
    EXPECT_EQ(card.width, 852 - 2 * 79);
    EXPECT_NEAR(card.height, 393 * 0.75, 0.34);
    const CGRect picture = place("broadcastImageView");
    EXPECT_EQ(picture.x, card.x + 15);
    EXPECT_NEAR(picture.height, card.height - 30, 1e-6);
    EXPECT_NEAR(picture.width, picture.height, 0.34);
    EXPECT_NEAR(place("broadcastNameLabel").x, picture.maxX() + 15, 0.34);
    EXPECT_EQ(place("broadcastNameLabel").y, card.y + 15);

    host.device().setModel(HostDevice::tablet());
    host.advance(1);
    cards->shows.front()->id = "another";
    present();
    EXPECT_EQ(place("containerView").height, host.device().size().height / 2);
}

TEST_F(BroadcastCardTest, mirrorsAndTellsItsPageOfThePress)
{
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    std::vector<std::shared_ptr<MVBroadcast>> pressed;
    cards->onPress = [&](const auto& show) { pressed.push_back(show); };
    const auto show = addShow(MVBroadcastStatus::upcoming);
    present();
    EXPECT_EQ(place("dateTimeView").maxX(), place("broadcastNameLabel").maxX());
    host.tap(middle(*find(table->cellForRow(0), "actionButton")));
    EXPECT_EQ(pressed, (std::vector { show }));
    EXPECT_FALSE(find(table->cellForRow(0), "shareButton")) << "not in the row";
    const auto alone = make<MVBroadcastPortraitModeTableCell>();
    alone->onPressActionButton = cards->onPress;
    find<UIButton>(alone, "actionButton")->sendActions(UIControlEvent::touchUpInside);
    EXPECT_EQ(pressed.size(), 1u) << "a card without a show has nothing to tell";
}

class MVNoBroadcastViewTest : public Stage { };

TEST_F(MVNoBroadcastViewTest, standsInTheMiddle)
{
    const auto view = make<MVNoBroadcastView>(CGRect { 0, 100, 393, 700 });
    window->addSubview(view);
    host.advance(0);
    const CGRect box = onScreen(*find(view, "containerView")), picture = onScreen(*find(view, "noEventImageView"));
    EXPECT_NEAR(box.midY(), 450, 0.34);
    EXPECT_EQ(picture.size(), (CGSize { 250, 200 }));
    EXPECT_NEAR(picture.midX(), 196.5, 0.34);
    EXPECT_EQ(picture.y, box.y);
    const CGRect text = onScreen(*find(view, "noBroadcastLabel"));
    EXPECT_EQ(text.x, 15);
    EXPECT_EQ(text.y, picture.maxY() + 10);
    EXPECT_TRUE(find<UIImageView>(view, "noEventImageView")->image());
    view->updateMessage("There are currently no Recorded Shows.");
    host.advance(0);
    EXPECT_LT(onScreen(*find(view, "noBroadcastLabel")).height, text.height) << "one line instead of two";
}

} // namespace
} // namespace mv
