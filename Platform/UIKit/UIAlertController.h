#pragma once

#include "Platform/UIKit/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class UIButton;
class UIStackView;

enum class UIAlertActionStyle : unsigned char { normal, cancel, destructive };

// One way out of an alert.
struct UIAlertAction {
    std::string title;
    UIAlertActionStyle style = UIAlertActionStyle::normal;
    std::function<void()> handler; // runs when the alert has left the screen
};

// A question in the middle of the screen that takes all touches until one of its actions is chosen, which takes it away and then
// runs its handler. On a keyboard Tab goes through the actions, Return chooses the marked, the preferred or the last one, Escape
// the one that cancels, or the only one. Main thread.
class UIAlertController final : public UIViewController {
public:
    UIAlertController(std::string title, std::string message);
    ~UIAlertController() override;

    const std::string& message() const { return message_; }
    void addAction(UIAlertAction action); // before it is presented; two that fit lie side by side
    const std::vector<UIAlertAction>& actions() const { return actions_; }
    void setPreferredAction(std::size_t index); // one of its actions, shown bold

    // UIResponder
    bool pressKey(UIKey key, UIKeyModifiers modifiers) override;

protected:
    // UIViewController
    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    std::shared_ptr<UIPresentationController> makePresentationController(UIViewController& presenter) override;

private:
    class ActionButton;

    std::shared_ptr<UIStackView> makeTextStack() const;
    void makeButtons();
    bool buttonsFitSideBySide() const;
    void moveFocus(bool forwards);
    std::optional<std::size_t> defaultIndex() const;
    std::optional<std::size_t> cancelIndex() const;
    void choose(std::size_t index);

    std::string message_;
    std::vector<UIAlertAction> actions_;
    std::vector<std::shared_ptr<ActionButton>> buttons; // in the order of the actions
    std::optional<std::size_t> preferred;
    std::optional<std::size_t> focused;
    bool chosen = false;
};

} // namespace platform
