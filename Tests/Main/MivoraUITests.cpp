#include "Main/MivoraUI.h"
#include "Main/MivoraUINotification.h"

#include "Platform/Foundation/NotificationCenter.h"
#include "UI/Utils/MVUtilities.h"

#include <gtest/gtest.h>

namespace mv {
namespace {

std::vector<std::string> keys(const MVReactionTable& table)
{
    std::vector<std::string> found;
    for (const auto& [type, image] : table)
        found.push_back(type);
    return found;
}

TEST(MivoraUI, hasFiveReactionsInTheirOrder)
{
    const auto table = MivoraUI::reactions();
    EXPECT_EQ(keys(table), (std::vector<std::string> { "wow", "heart", "like", "laugh", "angry" }));
    EXPECT_EQ(table.image("heart")->name(), "heartReaction");
    EXPECT_GT(table.image("angry")->size().width, 0);
    EXPECT_FALSE(table.image("clap"));
}

TEST(MivoraUI, keepsItsReactionsWithEmptyImagesWhenThereAreNoFiles)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto story = [] {
        setKitBundlePath("no such bundle");
        const auto table = MivoraUI::reactions();
        bool allEmpty = table.size() == 5;
        for (const auto& [type, image] : table)
            allEmpty = allEmpty && image && image->size() == CGSize {};
        return allEmpty;
    };
    EXPECT_EXIT(std::_Exit(story() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(MivoraUI, showsWhatTheHostPutsInItsPlace)
{
    const auto before = MivoraUI::reactions();
    auto table = before;
    const auto image = std::make_shared<const UIImage>();
    table.set("clap", image);
    table.set("wow", image);
    table.remove("like");
    MivoraUI::reactions = table;
    EXPECT_EQ(keys(MivoraUI::reactions()), (std::vector<std::string> { "wow", "heart", "laugh", "angry", "clap" }));
    EXPECT_EQ(MivoraUI::reactions().image("wow"), image);
    MivoraUI::reactions = before;

    const auto facade = MivoraUI::instance();
    EXPECT_EQ(MivoraUI::instance(), facade);
    const auto another = make<MivoraUI>();
    MivoraUI::instance = another;
    EXPECT_EQ(MivoraUI::instance(), another);
}

TEST(MivoraUINotification, tellsTheHostWhichProductWasTapped)
{
    std::vector<Notification> heard;
    const auto token = NotificationCenter::defaultCenter().addObserver(
        "mv_product_tapped_for_description", [&](const Notification& notification) { heard.push_back(notification); });
    MVProduct product;
    postProductTapped(product);
    product.id = "lamp";
    product.productUrl = URL::parse("https://shop.example/lamp?x=1");
    postProductTapped(product);
    ASSERT_EQ(heard.size(), 2u);
    for (const auto& notification : heard) {
        EXPECT_FALSE(notification.object);
        EXPECT_EQ(notification.userInfo.size(), 2u);
    }
    EXPECT_EQ(*heard[0].value<std::string>("productId"), "");
    EXPECT_EQ(*heard[0].value<std::string>("productUrl"), "");
    EXPECT_EQ(*heard[1].value<std::string>("productId"), "lamp");
    EXPECT_EQ(*heard[1].value<std::string>("productUrl"), "https://shop.example/lamp?x=1");
}

TEST(MivoraUINotification, convertsFromItsNameOnly)
{
    EXPECT_EQ(notificationFromRawValue("mv_product_tapped_for_description"), MivoraUINotification::mv_product_tapped);
    EXPECT_FALSE(notificationFromRawValue("mv_product_tapped"));
    EXPECT_FALSE(notificationFromRawValue(""));
}

} // namespace
} // namespace mv
