#pragma once

#include "ScreenTest.h"

#include <algorithm>
#include <string>
#include <vector>

namespace platform {

// A screen that writes down what it hears, all screens of a test into one list.
class NamedScreen : public UIViewController {
public:
    NamedScreen(std::string screenName, std::shared_ptr<std::vector<std::string>> heardByAll)
        : name(std::move(screenName))
        , heard(std::move(heardByAll))
    {
    }
    std::string name;

    void willMoveToParent(UIViewController* parent) override { say(parent ? "will join" : "will leave"); }
    void didMoveToParent(UIViewController* parent) override { say(parent ? "joined" : "left"); }

protected:
    void viewWillAppear(bool) override { say("will appear" + why()); }
    void viewDidAppear(bool) override { say("appeared" + why()); }
    void viewWillDisappear(bool) override { say("will disappear" + why()); }
    void viewDidDisappear(bool) override { say("disappeared" + why()); }

private:
    void say(const std::string& what) { heard->push_back(name + " " + what); }
    std::string why() const
    {
        return isBeingPresented()  ? ", presented"
            : isBeingDismissed()   ? ", dismissed"
            : isMovingToParent()   ? ", moved in"
            : isMovingFromParent() ? ", moved out"
                                   : "";
    }

    std::shared_ptr<std::vector<std::string>> heard; // outlives the test, as the window may
};

class ScreensTest : public ScreenTest {
protected:
    using Heard = std::vector<std::string>;

    std::shared_ptr<NamedScreen> screen(const std::string& name) { return make<NamedScreen>(name, heard); }
    Heard taken() { return std::exchange(*heard, {}); }
    void advanceFar()
    {
        for (int frame = 0; frame < 40; ++frame)
            advance(1.0 / 60);
    }
    CGRect shownFrame(const UIView& view) const // of an animation under way, in the window
    {
        CGRect frame = view.bounds();
        for (const UIView* each = &view; each && each != window.get(); each = each->superview()) {
            const CGRect place = each->layer()->presentationFrame(clock.now());
            frame.x += place.x;
            frame.y += place.y;
        }
        return frame;
    }

    std::shared_ptr<Heard> heard = std::make_shared<Heard>();
};

} // namespace platform
