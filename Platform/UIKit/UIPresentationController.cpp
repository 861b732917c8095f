#include "Platform/UIKit/UIPresentationController.h"

#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIView.h"
#include "Platform/UIKit/UIWindow.h"

namespace platform {

namespace {

constexpr double coverDuration = 0.4; // seconds
constexpr double dissolveDuration = 0.3;

} // namespace

UIPresentationController::UIPresentationController(UIViewController& presentingController, std::shared_ptr<UIViewController> next)
{
    connect(presentingController, std::move(next));
}

UIPresentationController::~UIPresentationController()
{
    if (presented && presented->ownPresentation == this)
        presented->ownPresentation = nullptr;
    if (containerView_)
        containerView_->removeFromSuperview();
}

UIModalPresentationStyle UIPresentationController::styleToPresentIn() const { return presented->modalPresentationStyle(); }

std::shared_ptr<UIView> UIPresentationController::makeContainerView() { return make<UIView>(); }

double UIPresentationController::transitionDuration(bool /*presenting*/) const
{
    return presented->modalTransitionStyle() == UIModalTransitionStyle::coverVertical ? coverDuration : dissolveDuration;
}

void UIPresentationController::placePresentedView()
{
    const auto& view = presented->view();
    view->setFrame(containerView_->bounds());
    view->setAutoresizingMask(flexibleWidth | flexibleHeight);
    containerView_->addSubview(view);
}

void UIPresentationController::showAway(bool /*leaving*/)
{
    const auto& view = presented->view();
    if (presented->modalTransitionStyle() == UIModalTransitionStyle::coverVertical)
        view->setTransform(CGAffineTransform::translation(0, containerView_->bounds().height));
    else
        view->setAlpha(0);
}

void UIPresentationController::showHere()
{
    presented->view()->setTransform({});
    presented->view()->setAlpha(1);
}

bool UIPresentationController::coversPresenter() const { return style == UIModalPresentationStyle::fullScreen; }

void UIPresentationController::connect(UIViewController& presentingController, std::shared_ptr<UIViewController> next)
{
    presenting = &presentingController;
    presented = std::move(next);
}

void UIPresentationController::present(bool animated, std::function<void()> completion)
{
    const auto keep = weak(this).lock();
    if (completion)
        completions.push_back(std::move(completion));
    presented->ownPresentation = this;
    style = styleToPresentIn();
    UIView& around = presenting->parent() ? *presenting->view() : *presenting->view()->window();
    containerView_ = makeContainerView();
    containerView_->setFrame(around.bounds());
    containerView_->setAccessibilityIdentifier("presentation");
    containerView_->setAutoresizingMask(flexibleWidth | flexibleHeight);
    containerView_->setOverrideUserInterfaceStyle(presented->overrideUserInterfaceStyle());
    UIApplication::shared().addLayoutFollower(*this);

    UIView::performWithoutAnimation([this, &around] {
        around.addSubview(containerView_);
        placePresentedView();
        containerView_->layoutIfNeeded();
    });
    if (coversPresenter())
        presenting->beginAppearanceTransition(false, animated);
    presented->passage = UIViewController::Passage::presented;
    presented->beginAppearanceTransition(true, animated);
    if (phase != Phase::coming) // it thought better of it
        return;
    if (!animated) {
        finishPresenting();
        return;
    }
    UIView::performWithoutAnimation([this] { showAway(false); });
    UIView::animate(
        transitionDuration(true), 0, UIViewAnimationCurve::easeOut, [this] { showHere(); },
        [self = weak(this)](bool) {
            if (const auto strong = self.lock(); strong && strong->phase == Phase::coming)
                strong->finishPresenting();
        });
}

void UIPresentationController::finishPresenting()
{
    const auto keep = weak(this).lock();
    phase = Phase::there;
    presented->endAppearanceTransition();
    if (presenting && coversPresenter()) {
        presenting->view()->setHidden(true);
        presenting->endAppearanceTransition();
    }
    runCompletions();
}

void UIPresentationController::dismiss(bool animated, std::function<void()> completion)
{
    const auto keep = weak(this).lock();
    if (completion)
        completions.push_back(std::move(completion));
    if (phase == Phase::leaving)
        return;
    // What lies above goes with it, at once.
    if (presented->presentation)
        presented->presentation->dismiss(false, {});
    if (phase == Phase::coming) {
        presented->endAppearanceTransition();
        if (presenting && coversPresenter())
            presenting->endAppearanceTransition();
    }
    phase = Phase::leaving;
    const bool covers = coversPresenter();
    if (presenting)
        presenting->view()->setHidden(false);
    presented->passage = UIViewController::Passage::dismissed;
    presented->beginAppearanceTransition(false, animated);
    if (covers && presenting)
        presenting->beginAppearanceTransition(true, animated);
    presented->view()->setUserInteractionEnabled(false);
    if (!animated) {
        finishDismissing();
        return;
    }
    UIView::animate(
        transitionDuration(false), 0, UIViewAnimationCurve::easeInOut, [this] { showAway(true); },
        [self = weak(this)](bool) {
            if (const auto strong = self.lock(); strong && strong->phase == Phase::leaving)
                strong->finishDismissing();
        });
}

void UIPresentationController::finishDismissing()
{
    const auto keep = weak(this).lock();
    phase = Phase::gone;
    const auto& view = presented->view();
    UIView::performWithoutAnimation([this, &view] {
        view->removeFromSuperview();
        containerView_->removeFromSuperview();
        showHere();
        view->setUserInteractionEnabled(true);
    });
    presented->endAppearanceTransition();
    presented->ownPresentation = nullptr;
    const auto presenter = presenting ? weak(presenting).lock() : nullptr;
    if (presenter) {
        if (coversPresenter())
            presenter->endAppearanceTransition();
        if (presenter->presentation.get() == this)
            presenter->presentation.reset();
    }
    runCompletions();
    if (presenter && waiting)
        presenter->present(waiting->controller, waiting->animated, std::move(waiting->completion));
}

void UIPresentationController::runCompletions()
{
    const auto list = std::exchange(completions, {});
    for (const auto& completion : list)
        completion();
}

} // namespace platform
