#include "Platform/UIKit/UINavigationController.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ClassName.h"
#include "Platform/UIKit/UINavigationBar.h"
#include "Platform/UIKit/UIScreenEdgePanGestureRecognizer.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double slideDuration = 0.35; // seconds
constexpr double parallax = 0.3; // of the width, that the lower page gives way
constexpr double dimming = 0.1; // alpha of the black over the lower page when the upper one covers it
constexpr double commitProgress = 0.5; // of the way out at which a dragged page leaves when let go
constexpr double flingVelocity = 300; // points a second outwards at which it leaves anyhow

} // namespace

// Keeps pages clear of the bar.
class UINavigationController::PagesView final : public UIView {
public:
    void setBarHeight(CGFloat height)
    {
        if (std::exchange(barHeight, height) != height)
            updateSafeAreaOfSubviews();
    }

protected:
    UIEdgeInsets safeAreaInsetsForSubviews() const override
    {
        UIEdgeInsets insets = safeAreaInsets();
        insets.top += barHeight;
        return insets;
    }

private:
    CGFloat barHeight = 0; // points
};

// One page over the other, from the upper one's being out (0) to its being in (1).
struct UINavigationController::Transition {
    std::shared_ptr<UIViewController> upper, lower;
    std::shared_ptr<UIView> upperPage, lowerPage, shade;
    bool pushing = false; // where it goes
    bool told = false; // the controllers, that they come and go: a dragged page's are told when it is let go to leave
    bool animated = false;
};

UINavigationController::UINavigationController(std::shared_ptr<UIViewController> rootViewController)
    : pagesView(make<PagesView>())
    , navigationBar_(make<UINavigationBar>())
{
    if (rootViewController)
        pushViewController(rootViewController, false);
}

UINavigationController::~UINavigationController() = default;

std::shared_ptr<UIViewController> UINavigationController::topViewController() const
{
    return children().empty() ? nullptr : children().back();
}

void UINavigationController::pushViewController(const std::shared_ptr<UIViewController>& controller, bool animated)
{
    if (!controller)
        return;
    if (controller->navigationController() == this || controller.get() == this) {
        NSLog(className(*controller) + " not pushed: it is in the stack already");
        return;
    }
    const auto keep = weak(this).lock();
    finishTransition();
    const auto lower = topViewController();
    addChild(controller);
    if (!isViewLoaded())
        return;
    transition = std::make_shared<Transition>();
    transition->upper = controller;
    transition->lower = lower;
    transition->upperPage = makePage(*controller);
    transition->lowerPage = lower ? pageOf(*lower) : nullptr;
    start(true, animated && lower && view()->window());
}

std::shared_ptr<UIViewController> UINavigationController::popViewController(bool animated)
{
    const auto keep = weak(this).lock();
    finishTransition();
    if (children().size() < 2)
        return nullptr;
    const auto leaving = children().back();
    if (!isViewLoaded()) {
        leaving->willMoveToParent(nullptr);
        leaving->removeFromParent();
        return leaving;
    }
    transition = std::make_shared<Transition>();
    transition->upper = leaving;
    transition->lower = children()[children().size() - 2];
    transition->upperPage = pageOf(*transition->upper);
    transition->lowerPage = pageOf(*transition->lower);
    start(false, animated && view()->window());
    return leaving;
}

void UINavigationController::setNavigationBarHidden(bool hidden, bool animated)
{
    if (barHidden == hidden)
        return;
    barHidden = hidden;
    if (!isViewLoaded())
        return;
    UIView::animate(animated ? 0.2 : 0, [this] { viewDidLayoutSubviews(); });
}

void UINavigationController::viewDidLoad()
{
    pagesView->setFrame(view()->bounds());
    pagesView->setAutoresizingMask(flexibleWidth | flexibleHeight);
    view()->addSubview(pagesView);
    view()->addSubview(navigationBar_);
    navigationBar_->onPressBack = [self = weak(this)] {
        if (const auto navigation = self.lock())
            navigation->popViewController(true);
    };
    edgePan = make<UIScreenEdgePanGestureRecognizer>([self = weak(this)](UIGestureRecognizer& recognizer) {
        if (const auto navigation = self.lock())
            navigation->didPanFromEdge(static_cast<UIScreenEdgePanGestureRecognizer&>(recognizer));
    });
    edgePan->setName("interactivePop");
    view()->addGestureRecognizer(edgePan);
    const auto pages = children();
    for (const auto& controller : pages) {
        makePage(*controller)->setHidden(controller != pages.back());
        controller->didMoveToParent(this);
    }
    showTitles();
}

void UINavigationController::viewDidLayoutSubviews()
{
    const CGFloat barHeight = view()->safeAreaInsets().top + UINavigationBar::height;
    navigationBar_->setHidden(barHidden);
    navigationBar_->setFrame({ 0, 0, view()->bounds().width, barHeight });
    pagesView->setBarHeight(barHidden ? 0 : UINavigationBar::height);
    edgePan->setEdge(trailingSign() > 0 ? UIRectEdge::left : UIRectEdge::right);
}

void UINavigationController::traitCollectionDidChange(const UITraitCollection& /*previous*/)
{
    if (isViewLoaded()) {
        view()->setNeedsLayout();
        showTitles();
    }
}

bool UINavigationController::showsChild(const UIViewController& child) const
{
    return !makingPage && &child == topViewController().get();
}

void UINavigationController::titleDidChange(UIViewController& /*child*/) { showTitles(); }

// While one page makes way, the bar already speaks of the other.
void UINavigationController::showTitles()
{
    const bool popping = transition && transition->told && !transition->pushing;
    const auto shown = popping ? transition->lower : topViewController();
    const std::size_t count = children().size() - (popping ? 1 : 0);
    navigationBar_->setTitle(shown ? shown->title() : "", count > 1);
}

// A page carries a controller's view about, so that its own geometry and hiding stay the controller's business.
std::shared_ptr<UIView> UINavigationController::makePage(UIViewController& controller)
{
    makingPage = true;
    const auto page = make<UIView>(pagesView->bounds());
    page->setAccessibilityIdentifier("page");
    page->setAutoresizingMask(flexibleWidth | flexibleHeight);
    UIView::performWithoutAnimation([&] {
        const auto& content = controller.view();
        content->setFrame(page->bounds());
        content->setAutoresizingMask(flexibleWidth | flexibleHeight);
        page->addSubview(content);
        page->setHidden(true);
        pagesView->addSubview(page);
    });
    makingPage = false;
    return page;
}

std::shared_ptr<UIView> UINavigationController::pageOf(const UIViewController& controller) const
{
    for (const auto& page : pagesView->subviews())
        if (page->subviews().front() == const_cast<UIViewController&>(controller).view())
            return page;
    return nullptr;
}

double UINavigationController::trailingSign() const
{
    return pagesView->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft ? -1 : 1;
}

// Tells both controllers and moves the pages, at once or on their way. A drag has placed them already.
void UINavigationController::start(bool pushing, bool animated)
{
    const auto current = transition;
    const auto [coming, going] = pushing ? std::pair(current->upper, current->lower) : std::pair(current->lower, current->upper);
    current->pushing = pushing;
    current->told = true;
    current->animated = animated;
    showTitles();
    if (!pushing)
        current->upper->willMoveToParent(nullptr);
    if (going) {
        setPassage(*going, pushing ? Passage::none : Passage::movedOut);
        going->beginAppearanceTransition(false, animated);
    }
    if (transition != current)
        return;
    if (isShown()) {
        setPassage(*coming, pushing ? Passage::movedIn : Passage::none);
        coming->beginAppearanceTransition(true, animated);
    }
    if (transition != current)
        return;
    if (!animated) {
        finishTransition();
        return;
    }
    const bool dragged = current->shade != nullptr;
    view()->setUserInteractionEnabled(false);
    UIView::performWithoutAnimation([&] {
        if (!dragged)
            place(pushing ? 0 : 1);
        pagesView->layoutIfNeeded();
    });
    UIView::animate(
        slideDuration, 0, UIViewAnimationCurve::easeOut, [&] { place(pushing ? 1 : 0); },
        [self = weak(this), current](bool) {
            const auto navigation = self.lock();
            if (navigation && navigation->transition == current)
                navigation->finishTransition();
        });
}

void UINavigationController::place(double progress)
{
    Transition& current = *transition;
    const double width = pagesView->bounds().width * trailingSign();
    const double scale = view()->traitCollection().displayScale;
    const auto onPixels = [scale](double x) { return std::round(x * scale) / scale; };
    if (!current.shade) {
        current.shade = make<UIView>(pagesView->bounds());
        current.shade->setAutoresizingMask(flexibleWidth | flexibleHeight);
        current.shade->setBackgroundColor(UIColor::black());
        UIView::performWithoutAnimation([&] {
            current.shade->setAlpha(0);
            current.lowerPage->addSubview(current.shade);
        });
    }
    current.upperPage->setHidden(false);
    current.lowerPage->setHidden(false);
    current.upperPage->setTransform(CGAffineTransform::translation(onPixels((1 - progress) * width), 0));
    current.lowerPage->setTransform(CGAffineTransform::translation(onPixels(-progress * parallax * width), 0));
    current.shade->setAlpha(progress * dimming);
}

// Puts things to rest where the transition was going.
void UINavigationController::finishTransition()
{
    const auto current = std::exchange(transition, nullptr);
    if (!current)
        return;
    const auto keep = weak(this).lock();
    const auto& [upper, lower] = std::pair(current->upper, current->lower);
    view()->setUserInteractionEnabled(true);
    UIView::performWithoutAnimation([&] {
        if (current->shade)
            current->shade->removeFromSuperview();
        for (const auto& page : { current->upperPage, current->lowerPage })
            if (page)
                page->setTransform({});
        current->upperPage->setHidden(!current->pushing);
        if (current->lowerPage)
            current->lowerPage->setHidden(current->pushing);
    });
    if (!current->told)
        return;
    if (current->pushing) {
        if (lower)
            lower->endAppearanceTransition();
        upper->endAppearanceTransition();
        upper->didMoveToParent(this);
    } else {
        upper->view()->removeFromSuperview();
        current->upperPage->removeFromSuperview();
        upper->endAppearanceTransition();
        upper->removeFromParent();
        lower->endAppearanceTransition();
    }
    showTitles();
}

// The controllers hear nothing of a drag until it is clear that the page leaves: one that comes back never went.
void UINavigationController::didPanFromEdge(UIScreenEdgePanGestureRecognizer& recognizer)
{
    const double width = std::max(pagesView->bounds().width, 1.0);
    const double out = std::clamp(recognizer.translation(nullptr).x * trailingSign() / width, 0.0, 1.0);
    switch (recognizer.state()) {
    case UIGestureRecognizerState::began:
        if (transition || children().size() < 2)
            return;
        transition = std::make_shared<Transition>();
        transition->pushing = true; // where a drag that is given up goes
        transition->upper = children().back();
        transition->lower = children()[children().size() - 2];
        transition->upperPage = pageOf(*transition->upper);
        transition->lowerPage = pageOf(*transition->lower);
        place(1);
        break;
    case UIGestureRecognizerState::changed:
        if (transition && !transition->told)
            place(1 - out);
        break;
    case UIGestureRecognizerState::ended: {
        if (!transition || transition->told)
            return;
        const double velocity = recognizer.velocity(nullptr).x * trailingSign();
        if (velocity > flingVelocity || (out > commitProgress && velocity > -flingVelocity)) {
            start(false, true);
            break;
        }
        [[fallthrough]];
    }
    case UIGestureRecognizerState::cancelled: {
        if (!transition || transition->told)
            return;
        const auto current = transition;
        UIView::animate(
            slideDuration, 0, UIViewAnimationCurve::easeOut, [this] { place(1); },
            [self = weak(this), current](bool) {
                const auto navigation = self.lock();
                if (navigation && navigation->transition == current && !current->told)
                    navigation->finishTransition();
            });
        break;
    }
    default:
        break;
    }
}

} // namespace platform
