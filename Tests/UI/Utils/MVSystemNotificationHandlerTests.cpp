#include "UI/Utils/MVSystemNotificationHandler.h"

#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Tests/UI/Stage.h"

namespace mv {
namespace {

struct Listener final : MVSystemNotificationHandlerDelegate {
    void didDeviceOrientationChanged(UIDeviceOrientation newOrientation) override { orientations.push_back(newOrientation); }
    void didKeyboardFrameChanged(CGFloat newHeight, double animationDuration) override
    {
        keyboards.emplace_back(newHeight, animationDuration);
    }
    void didAppBecomesInactive() override { states += "inactive "; }
    void didAppBecomesActive() override { states += "active "; }

    std::vector<UIDeviceOrientation> orientations;
    std::vector<std::pair<double, double>> keyboards;
    std::string states;
};

class MVSystemNotificationHandlerTest : public Stage {
protected:
    MVSystemNotificationHandlerTest() { handler.addDelegate("test", listener); }
    ~MVSystemNotificationHandlerTest() override
    {
        handler.removeDelegate("test");
        UIApplication::shared().setSupportedInterfaceOrientations(UIInterfaceOrientationMask::all);
    }

    using Orientations = std::vector<UIDeviceOrientation>;
    MVSystemNotificationHandler& handler = MVSystemNotificationHandler::instance();
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
};

TEST_F(MVSystemNotificationHandlerTest, hearsOfEveryTurnButLyingFlat)
{
    for (const auto orientation : { UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::faceUp,
             UIDeviceOrientation::faceDown, UIDeviceOrientation::portraitUpsideDown, UIDeviceOrientation::unknown })
        host.rotate(orientation);
    EXPECT_EQ(listener->orientations,
        (Orientations {
            UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::portraitUpsideDown, UIDeviceOrientation::unknown }));
}

TEST_F(MVSystemNotificationHandlerTest, isAlwaysUprightWhereTheApplicationIs)
{
    UIApplication::shared().setSupportedInterfaceOrientations(UIInterfaceOrientationMask::portrait);
    host.rotate(UIDeviceOrientation::landscapeRight);
    host.rotate(UIDeviceOrientation::faceUp);
    EXPECT_EQ(listener->orientations, (Orientations { UIDeviceOrientation::portrait, UIDeviceOrientation::portrait }));
}

TEST_F(MVSystemNotificationHandlerTest, measuresTheKeyboardFromTheScreensBottom)
{
    host.setKeyboardHeight(336, 0.25);
    host.setKeyboardHeight(0, 0.2);
    NotificationCenter::defaultCenter().post(
        UIKeyboard::willChangeFrameNotification, nullptr, { { UIKeyboard::frameEndUserInfoKey, CGRect { 0, 752, 393, 100 } } });
    NotificationCenter::defaultCenter().post(UIKeyboard::willChangeFrameNotification);
    EXPECT_EQ(listener->keyboards,
        (std::vector<std::pair<double, double>> { { 336, 0.25 }, { 0, 0.2 }, { 100, 0.33 }, { 852, 0.33 } }));
}

TEST_F(MVSystemNotificationHandlerTest, keepsOneDelegateAnIdentifierAndHoldsNone)
{
    const auto second = std::make_shared<Listener>();
    handler.addDelegate("test", second);
    handler.addDelegate("silent", std::make_shared<Listener>()); // gone at once
    UIApplication::shared().enterBackground();
    handler.removeDelegate("nobody");
    UIApplication::shared().becomeActive();
    EXPECT_EQ(listener->states, "");
    EXPECT_EQ(second->states, "inactive active ");
    handler.removeDelegate("test");
    UIApplication::shared().enterBackground();
    EXPECT_EQ(second->states, "inactive active ");
    EXPECT_EQ(handler.delegateCount(), 0u);
}

} // namespace
} // namespace mv
