#pragma once

#include "Platform/UIKit/UIViewController.h"

#include <memory>
#include <vector>

namespace platform {

class UINavigationBar;
class UIScreenEdgePanGestureRecognizer;

// A stack of controllers of which the topmost is shown. The next one slides in over the former from the trailing side, and out
// again; a finger from the leading edge of the screen drags it out. What lies below stays in the tree, hidden, and follows the
// screen's changes. Main thread.
class UINavigationController : public UIViewController {
public:
    explicit UINavigationController(std::shared_ptr<UIViewController> rootViewController = nullptr);
    ~UINavigationController() override;

    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return children(); } // lowest first
    std::shared_ptr<UIViewController> topViewController() const; // null for none
    // A controller that is in the stack already is not pushed again (one console line). A transition under way is completed
    // first.
    void pushViewController(const std::shared_ptr<UIViewController>& controller, bool animated);
    // The one that leaves; null, and nothing happens, when only the lowest is left.
    std::shared_ptr<UIViewController> popViewController(bool animated);
    bool isTransitioning() const { return transition != nullptr; }
    // The bar with the topmost controller's title and the way back. Shown at first; what it covers counts as unsafe area.
    const std::shared_ptr<UINavigationBar>& navigationBar() const { return navigationBar_; }
    bool isNavigationBarHidden() const { return barHidden; }
    void setNavigationBarHidden(bool hidden, bool animated);

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    bool showsChild(const UIViewController& child) const override;

private:
    class PagesView;
    struct Transition;

    std::shared_ptr<UIView> makePage(UIViewController& controller);
    std::shared_ptr<UIView> pageOf(const UIViewController& controller) const;
    void start(bool pushing, bool animated);
    void place(double progress);
    void finishTransition();
    void didPanFromEdge(UIScreenEdgePanGestureRecognizer& recognizer);
    double trailingSign() const;

    void titleDidChange(UIViewController& controller) override;
    void showTitles();

    std::shared_ptr<PagesView> pagesView;
    std::shared_ptr<UINavigationBar> navigationBar_;
    std::shared_ptr<UIScreenEdgePanGestureRecognizer> edgePan;
    std::shared_ptr<Transition> transition; // under way
    bool barHidden = false;
    bool makingPage = false; // of a controller that is told later that it appears
};

} // namespace platform
