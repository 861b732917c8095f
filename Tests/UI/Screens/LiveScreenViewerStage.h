#pragma once

#include "Platform/UIKit/UITextField.h"
#include "Tests/UI/Screens/LiveScreenStage.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVGuestUserNameInputViewController.h"
#include "UI/Screens/Broadcast Screen/Controllers/ReactionsPopOverController.h"

namespace mv {

// A live show whose viewer takes part, and whose service answers that as the test says.
class LiveScreenViewerStage : public LiveScreenStage {
protected:
    const MVApiError refusal { "E7", "not now", 429 };

    void answerComment(std::size_t index, const std::shared_ptr<const MVMessage>& message, std::optional<MVApiError> error = {})
    {
        const auto answer = show->comments.at(index);
        answer(message, std::move(error));
        host.advance(0.5);
    }
    void answerGuest(std::optional<MVApiError> error = {})
    {
        const auto answer = service->guests.back();
        answer(error ? std::nullopt : std::optional(MVUser { "g", "Ana" }), error);
        host.advance(0.5);
    }
    std::shared_ptr<UITextField> field() const { return find<UITextField>(screen->view(), "commentTextField"); }
    void write(const std::string& text)
    {
        press("commentTextField");
        host.type(text);
    }
    void comment(const std::string& text)
    {
        write(text);
        press("sendCommentButton");
    }
    template <typename Dialog> std::shared_ptr<Dialog> standing() const
    {
        return std::dynamic_pointer_cast<Dialog>(window->topmostController());
    }
    std::shared_ptr<MVGuestUserNameInputViewController> prompt() const { return standing<MVGuestUserNameInputViewController>(); }
    std::shared_ptr<ReactionsPopOverController> picker() const { return standing<ReactionsPopOverController>(); }
    void pressInPrompt(const std::string& name)
    {
        ASSERT_TRUE(prompt());
        host.tap(middle(*find(prompt()->view(), name)));
        host.advance(0.5);
    }
    void join(const std::string& name)
    {
        host.type(name);
        pressInPrompt("joinButton");
    }
    std::string barButtons() const
    {
        return std::string(part("sendCommentButton")->isHidden() ? "" : "send ")
            + (part("sendReactionButton")->isHidden() ? "" : "react");
    }
};

} // namespace mv
