#include "Tests/UI/Screens/RouterStage.h"

namespace mv {
namespace {

class RouterLoadingTest : public RouterStage { };

TEST_F(RouterLoadingTest, asksForItsBroadcastAndShowsNothingMeanwhile)
{
    const auto router = makeRouter("autumn");
    EXPECT_TRUE(service->asked.empty()) << "not before it is shown";
    EXPECT_TRUE(hasLeft());
    navigation->pushViewController(router, true);
    host.advance(1);
    EXPECT_EQ(service->asked, Lines { "autumn" });
    EXPECT_EQ(shown(*router), "");
    EXPECT_TRUE(isThere());
}

TEST_F(RouterLoadingTest, stacksTheVariantsOverTheWholeScreen)
{
    const auto router = pushRouter();
    ASSERT_EQ(router->children().size(), 3u);
    EXPECT_EQ(router->children()[0], child<MVBroadcastPreviewScreenController>(*router));
    EXPECT_EQ(router->children()[1], child<MVPastBroadcastViewController>(*router));
    EXPECT_EQ(router->children()[2], child<MVMivoraScreenViewController>(*router));
    const auto cover = [&] {
        for (std::size_t i = 0; i < 3; ++i) {
            const auto& view = router->children()[i]->view();
            EXPECT_EQ(router->view()->subviews()[i], view);
            EXPECT_EQ(onScreen(*view), window->bounds());
        }
    };
    cover();
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(1);
    EXPECT_GT(window->bounds().width, window->bounds().height);
    cover();
}

TEST_F(RouterLoadingTest, showsTheVariantOfTheStatus)
{
    const std::pair<std::optional<Status>, std::string> cases[] { { Status::upcoming, "preview" }, { Status::live, "live" },
        { Status::completed, "past" }, { std::nullopt, "" }, { static_cast<Status>(7), "" } };
    for (const auto& [status, variant] : cases) {
        const auto router = open(status);
        EXPECT_EQ(shown(*router), variant);
        EXPECT_EQ(broadcast->subscriptions, 1) << variant;
        EXPECT_EQ(child<MVBroadcastPreviewScreenController>(*router)->broadcast() == broadcast, variant == "preview");
        EXPECT_EQ(child<MVMivoraScreenViewController>(*router)->broadcast() == broadcast, variant == "live");
        EXPECT_EQ(child<MVPastBroadcastViewController>(*router)->broadcast() == broadcast, variant == "past");
        navigation->popViewController(true);
        host.advance(1);
    }
}

TEST_F(RouterLoadingTest, staysBlankWithoutABroadcast)
{
    const auto router = pushRouter();
    service->answer(nullptr);
    service->start({});
    service->complete({});
    EXPECT_EQ(shown(*router), "");
    EXPECT_FALSE(alert()) << "no broadcast has begun or ended";
    EXPECT_TRUE(isThere());
}

TEST_F(RouterLoadingTest, tellsTheConsoleOfAnErrorAndStaysBlank)
{
    const auto router = pushRouter();
    service->fail({ .errorCode = "E7", .errorMessage = "No such show", .statusCode = 404 });
    EXPECT_EQ(takeLines(), (Lines { "E7", "404", "No such show" }));
    EXPECT_EQ(shown(*router), "");
    EXPECT_TRUE(isThere()) << "until it leaves";
    navigation->popViewController(true);
    host.advance(1);
    EXPECT_TRUE(hasLeft());
    const auto other = pushRouter();
    service->completions.back()(makeBroadcast(Status::live), MVApiError {});
    EXPECT_EQ(takeLines().size(), 3u) << "a line for each, absent ones too";
    EXPECT_EQ(shown(*other), "") << "an error counts more than a broadcast";
}

TEST_F(RouterLoadingTest, saysThatThereIsNoService)
{
    Mivora::install(nullptr);
    const auto router = pushRouter();
    const auto lines = takeLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines.back(), "No broadcast service is installed.");
    EXPECT_EQ(shown(*router), "");
    navigation->popViewController(false);
    EXPECT_FALSE(isAwake());
}

TEST_F(RouterLoadingTest, takesTheFirstAnswerOnly)
{
    const auto router = pushRouter();
    const auto first = answer(Status::upcoming);
    const auto second = answer(Status::live);
    EXPECT_EQ(takeLines().size(), 1u) << "about the second answer";
    EXPECT_EQ(shown(*router), "preview");
    EXPECT_EQ(second->subscriptions, 0);
}

TEST_F(RouterLoadingTest, ignoresAnAnswerWhenItIsOnItsWayOut)
{
    for (const double later : { 0.1, 1.0 }) {
        const auto router = pushRouter();
        navigation->popViewController(true);
        host.advance(later);
        const auto broadcast = answer(Status::live);
        EXPECT_EQ(broadcast->subscriptions, 0) << "nobody would end them";
        EXPECT_EQ(shown(*router), "");
        host.advance(1);
        const auto kept = presentRouter();
        shop->dismiss(true);
        host.advance(later);
        service->fail({});
        EXPECT_EQ(takeLines(), Lines {});
        host.advance(1);
    }
}

} // namespace
} // namespace mv
