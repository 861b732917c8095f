#include "Platform/QuartzCore/CATransaction.h"

#include "Platform/Foundation/NSLog.h"
#include "Tests/Platform/QuartzCore/LayerTestSupport.h"

#include <limits>

namespace platform {

namespace {

// How animations end, and who is told.
class AnimationEnds : public LayerScreen {
protected:
    // What still runs is told while `told` is there.
    ~AnimationEnds() override
    {
        layer->removeAllAnimations();
        other->removeAllAnimations();
        frame(1000);
    }
    // Notes its end in `told`, as "name+" when it finished and "name-" when not.
    std::shared_ptr<CABasicAnimation> noted(const std::string& name, double duration = 1)
    {
        auto animation = basic("opacity", 0.0, 1.0, duration);
        animation->onStop = [this, name](bool finished) { told += name + (finished ? "+ " : "- "); };
        return animation;
    }
    void transaction(const std::string& name, const std::function<void()>& changes)
    {
        CATransaction::begin();
        CATransaction::setCompletionBlock([this, name] { told += name + ". "; });
        changes();
        CATransaction::commit();
    }
    std::string toldAt(double time)
    {
        told.clear();
        frame(time);
        return told;
    }

    const std::shared_ptr<CALayer> layer = addBox({ 0, 0, 10, 10 });
    const std::shared_ptr<CALayer> other = addBox({ 20, 0, 10, 10 });
    std::string told;
};

} // namespace

TEST_F(AnimationEnds, areToldOnceInTheOrderOfTheirTimes)
{
    layer->addAnimation(noted("late", 2), "late");
    layer->addAnimation(noted("early", 1), "early");
    other->addAnimation(noted("too", 1), "too");
    frame(10);
    EXPECT_EQ(toldAt(10.99), "");
    EXPECT_EQ(toldAt(12), "early+ too+ late+ ") << "also when one step brings them all";
    EXPECT_EQ(toldAt(13), "");
    EXPECT_FALSE(layer->hasAnimations());
}

TEST_F(AnimationEnds, areUnfinishedWhenRemovedReplacedOrDestroyed)
{
    layer->addAnimation(noted("removed"), "a");
    layer->addAnimation(noted("replaced"), "b");
    layer->addAnimation(noted("keyless"));
    other->addAnimation(noted("destroyed"), "c");
    frame(10);
    layer->removeAnimation("a");
    layer->addAnimation(noted("successor", 0.5), "b");
    EXPECT_EQ(told, "") << "never from inside the call";
    EXPECT_EQ(toldAt(10.2), "removed- replaced- ");
    layer->removeAllAnimations();
    EXPECT_EQ(toldAt(10.3), "keyless- successor- ");
    auto shortLived = addBox({ 0, 0, 1, 1 });
    shortLived->addAnimation(noted("gone"), "d");
    frame(10.4);
    shortLived->removeFromSuperlayer();
    shortLived = nullptr;
    EXPECT_EQ(toldAt(10.5), "gone- ");
    EXPECT_EQ(toldAt(20), "destroyed+ ");
}

TEST_F(AnimationEnds, comeWhenALayerLeavesItsTreeButNotWhenItMoves)
{
    auto stays = noted("stays");
    stays->removedOnCompletion = false;
    layer->addAnimation(noted("leaves"), "leaves");
    layer->addAnimation(stays, "stays");
    other->addAnimation(noted("moves"), "moves");
    frame(10);
    layer->removeFromSuperlayer();
    other->removeFromSuperlayer();
    root->insertSublayer(other, 0);
    frame(10.1);
    EXPECT_TRUE(LayerCommitter::needsFrame()) << "somebody is to be told";
    EXPECT_EQ(toldAt(10.2), "leaves- ");
    EXPECT_EQ(layer->animationKeys(), std::vector<std::string> { "stays" });
    EXPECT_EQ(toldAt(11), "stays+ moves+ ");
}

TEST_F(AnimationEnds, comeForWhatNeverBeganBecauseItsLayerHasLeft)
{
    layer->addAnimation(noted("left at once"), "a");
    layer->removeFromSuperlayer();
    const auto unseen = make<CALayer>();
    unseen->addAnimation(noted("waits"), "b");
    frame(10);
    EXPECT_EQ(toldAt(10.1), "left at once- ");
    layer->addAnimation(noted("was away"), "c");
    frame(10.2);
    EXPECT_EQ(toldAt(10.3), "was away- ");
    root->addSublayer(unseen);
    frame(10.4);
    EXPECT_EQ(toldAt(11.4), "waits+ ") << "its layer had yet to come";
}

TEST_F(AnimationEnds, leaveAKeptAnimationShowingButStill)
{
    auto kept = noted("kept");
    kept->fillMode = CAMediaTimingFillMode::forwards;
    kept->toValue = 0.5;
    kept->removedOnCompletion = false;
    layer->addAnimation(kept, "kept");
    frame(10);
    EXPECT_TRUE(LayerCommitter::hasRunningAnimations());
    EXPECT_EQ(LayerCommitter::nextEventTime(), 11);
    EXPECT_EQ(toldAt(11), "kept+ ");
    EXPECT_FALSE(LayerCommitter::hasRunningAnimations());
    EXPECT_EQ(LayerCommitter::nextEventTime(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(number(*layer, "opacity", 11), 0.5);
    const auto still = list;
    frame(12);
    EXPECT_EQ(list, still) << "nothing to make anew";
    layer->removeAnimation("kept");
    EXPECT_EQ(toldAt(13), "") << "it was told already";
}

TEST_F(AnimationEnds, completeATransactionAfterItsLastAnimation)
{
    transaction("both", [&] {
        layer->addAnimation(noted("a", 1), "a");
        other->addAnimation(noted("b", 2), "b");
    });
    transaction("empty", [] {});
    EXPECT_EQ(told, "");
    EXPECT_EQ(toldAt(10), "empty. ");
    EXPECT_EQ(toldAt(11), "a+ ");
    EXPECT_EQ(toldAt(12), "b+ both. ");
    EXPECT_EQ(toldAt(13), "");
}

TEST_F(AnimationEnds, completeATransactionWhoseAnimationsWereRemoved)
{
    transaction("one", [&] { layer->addAnimation(noted("a"), "a"); });
    transaction("two", [&] { layer->addAnimation(noted("b"), "a"); });
    frame(10);
    EXPECT_EQ(told, "a- one. ");
    layer->removeAllAnimations();
    EXPECT_EQ(toldAt(10.1), "b- two. ");
}

TEST_F(AnimationEnds, completeNestedTransactionsFromTheInnermost)
{
    transaction("outer", [&] {
        transaction("inner", [&] { layer->addAnimation(noted("a"), "a"); });
        CATransaction::begin(); // without a completion of its own
        other->addAnimation(noted("b", 2), "b");
        CATransaction::commit();
    });
    frame(10);
    EXPECT_EQ(toldAt(11), "a+ inner. ");
    EXPECT_EQ(toldAt(12), "b+ outer. ");
}

TEST_F(AnimationEnds, completeABlockForWhatWasAddedAfterIt)
{
    CATransaction::begin();
    layer->addAnimation(noted("before", 3), "before");
    CATransaction::setCompletionBlock([this] { told += "first. "; });
    layer->addAnimation(noted("a", 1), "a");
    CATransaction::setCompletionBlock([this] { told += "second. "; });
    layer->addAnimation(noted("b", 2), "b");
    CATransaction::commit();
    frame(10);
    EXPECT_EQ(toldAt(11), "a+ first. ");
    EXPECT_EQ(toldAt(12), "b+ second. ");
}

TEST_F(AnimationEnds, mayDestroyAndStartWhateverTheyLike)
{
    auto victim = addBox({ 0, 0, 5, 5 });
    const auto first = noted("first");
    first->onStop = [&](bool) {
        told += "first ";
        victim->removeFromSuperlayer();
        victim = nullptr;
        layer->removeAllAnimations();
        layer->addAnimation(noted("next", 1), "next");
        transaction("chained", [] {});
    };
    victim->addAnimation(first, "first");
    victim->addAnimation(noted("sibling", 5), "sibling");
    layer->addAnimation(noted("cleared", 5), "cleared");
    transaction("waits", [&] { victim->addAnimation(noted("same", 1), "same"); });
    frame(10);
    EXPECT_EQ(toldAt(11), "first same+ waits. ") << "what it brings about waits for the next step";
    EXPECT_EQ(victim, nullptr);
    EXPECT_EQ(toldAt(11.1), "sibling- cleared- chained. ");
    EXPECT_EQ(toldAt(12), "next+ ") << "begun in the frame of its addition";
}

TEST_F(AnimationEnds, doNotHoldUpAFrameByChaining)
{
    int rounds = 0;
    std::function<void()> again = [&] {
        ++rounds;
        CATransaction::begin();
        CATransaction::setCompletionBlock(again);
        CATransaction::commit();
    };
    again();
    frame(10);
    EXPECT_EQ(rounds, 2);
    EXPECT_TRUE(LayerCommitter::needsFrame());
    frame(10.1);
    EXPECT_EQ(rounds, 3);
    again = [] {};
    frame(10.2); // the one that waits still refers to this test
}

TEST_F(AnimationEnds, followTheTransactionsDurationAndCurve)
{
    CATransaction::begin();
    CATransaction::setAnimationDuration(2);
    CATransaction::setAnimationTimingFunction(std::make_shared<CAMediaTimingFunction>(CAMediaTimingFunction { 0, 0, 0, 1 }));
    layer->addAnimation(noted("a", 0), "a");
    CATransaction::begin();
    EXPECT_EQ(CATransaction::animationDuration(), 2) << "passed on inwards";
    CATransaction::setAnimationDuration(7);
    CATransaction::commit();
    EXPECT_EQ(CATransaction::animationDuration(), 2);
    CATransaction::commit();
    other->addAnimation(noted("b", 0), "b");
    frame(10);
    EXPECT_GT(number(*layer, "opacity", 11), 0.8);
    EXPECT_EQ(toldAt(10.25), "b+ ") << "a quarter of a second outside";
    EXPECT_EQ(toldAt(12), "a+ ");
}

TEST_F(AnimationEnds, countForTheImplicitTransactionUpToTheFrame)
{
    CATransaction::setCompletionBlock([this] { told += "turn. "; });
    CATransaction::setDisableActions(true);
    layer->addAnimation(noted("a"), "a");
    frame(10);
    EXPECT_FALSE(CATransaction::disableActions());
    other->addAnimation(noted("b", 2), "b");
    EXPECT_EQ(toldAt(11), "a+ turn. ");
}

TEST_F(AnimationEnds, ignoreOneCommitTooMany)
{
    LogCapture log;
    CATransaction::commit();
    EXPECT_EQ(log.lines().size(), 1u);
    CATransaction::begin();
    CATransaction::commit();
    EXPECT_EQ(log.lines().size(), 1u);
}

} // namespace platform
