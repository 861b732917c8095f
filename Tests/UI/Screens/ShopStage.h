#pragma once

#include "Platform/UIKit/UIAlertController.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Service/Mivora.h"
#include "Tests/UI/Stage.h"

namespace mv {

// A service whose viewer and events the test makes up.
class EventfulService : public Mivora {
public:
    MVCurrentUserType role = MVCurrentUserType::user;

    void start(const MVBroadcastLiveUpdate& update)
    {
        publish("started", [update](MivoraDelegate& d) { d.didBroadcastStarted(update); });
    }
    void complete(const MVBroadcastCompletedUpdate& update)
    {
        publish("completed", [update](MivoraDelegate& d) { d.didBroadcastCompleted(update); });
    }

protected:
    MVCurrentUserType currentUserRole() override { return role; }
};

// A shop's stack of controllers in a window.
class ShopStage : public Stage {
protected:
    using Status = MVBroadcastStatus;
    using Role = MVCurrentUserType;
    using Lines = std::vector<std::string>;

    ShopStage() { window->setRootViewController(navigation); }
    ~ShopStage() override
    {
        window = nullptr; // whose screens take leave of the service
        host.advance(0);
        Mivora::install(nullptr);
    }

    std::shared_ptr<UIAlertController> alert() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(window->topmostController());
    }
    // Title, message and actions of the alert that stands; empty without one.
    Lines alertTexts() const
    {
        const auto standing = alert();
        if (!standing)
            return {};
        Lines texts { standing->title(), standing->message() };
        for (const auto& action : standing->actions())
            texts.push_back(action.title);
        return texts;
    }
    void tapOk()
    {
        ASSERT_TRUE(alert());
        host.tap(middle(*find(alert()->view(), "actionButton")));
        host.advance(1);
    }

    const std::shared_ptr<UIViewController> shop = make<UIViewController>();
    const std::shared_ptr<UINavigationController> navigation = make<UINavigationController>(shop);
};

} // namespace mv
