#include "Platform/QuartzCore/LayerCommitter.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/QuartzCore/AnimationTimeline.h"
#include "Platform/QuartzCore/CADisplayLink.h"
#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/CATransaction.h"
#include "Platform/QuartzCore/FrameRequest.h"
#include "Platform/QuartzCore/LayerFlattener.h"
#include "Platform/QuartzCore/LayerPresentation.h"
#include "Platform/QuartzCore/RenderList.h"

#include <algorithm>
#include <limits>

namespace platform {

namespace {

// What the last commit was made of, and what it found.
struct LastCommit {
    std::weak_ptr<const RenderList> list; // its pictures are not kept for it
    std::vector<std::uint64_t> roots; // identities
    std::uint64_t changeCount = 0;
    double time = 0;
    double scale = 0;
    PixelRect screen;
    double nextEventTime = std::numeric_limits<double>::infinity();
    std::size_t visited = 0;
    bool sawRunning = false;
};

LastCommit& last()
{
    static LastCommit commit;
    return commit;
}

std::vector<std::uint64_t> identitiesOf(const std::vector<std::shared_ptr<CALayer>>& layers)
{
    std::vector<std::uint64_t> identities;
    for (const auto& layer : layers)
        identities.push_back(layer ? layer->id() : 0);
    return identities;
}

} // namespace

void LayerCommitter::setOnNeedsFrame(std::function<void()> callback) { FrameRequest::setCallback(std::move(callback)); }

bool LayerCommitter::needsFrame() { return FrameRequest::isMade(); }

void LayerCommitter::finishAnimations(double time)
{
    AnimationTimeline::shared().finish(time);
    CADisplayLink::runAll(time);
}

void LayerCommitter::layout(const std::vector<std::shared_ptr<CALayer>>& roots)
{
    for (const auto& root : roots) {
        if (root)
            root->layoutUntilSettled();
    }
}

void LayerCommitter::display(const std::vector<std::shared_ptr<CALayer>>& roots, double scale)
{
    for (const auto& root : roots) {
        if (root && root->displayPending())
            displaySubtree(*root, CGAffineTransform {}, root->frame(), scale);
    }
}

// Leaves the mark on what is out of sight; the commit displays what an animation brings into sight in this very frame.
void LayerCommitter::displaySubtree(CALayer& layer, const CGAffineTransform& outside, const CGRect& clip, double scale)
{
    if (layer.hidden_)
        return;
    std::optional<LayerPresentation> moment;
    if (layer.hasAnimations())
        moment.emplace(layer.animations_->presentation(layer, AnimationTimeline::shared().now()));
    const LayerValues& values = moment ? moment->layer : layer.values_;
    if (values.opacity <= 0)
        return;
    const CGAffineTransform toRoot = values.toSuperlayer().then(outside);
    const CGRect seen = toRoot.apply(values.bounds).intersection(clip);
    if (layer.needsDisplay_ && !seen.isEmpty())
        layer.displayIfNeeded(scale);
    if (!layer.subtreeNeedsDisplay_ || (layer.masksToBounds_ && seen.isEmpty()))
        return;
    layer.subtreeNeedsDisplay_ = false;
    const CGAffineTransform below = values.sublayersToBounds().then(toRoot);
    const auto visit = [&](const std::shared_ptr<CALayer>& sublayer, const CGAffineTransform& transform) {
        if (sublayer->displayPending())
            displaySubtree(*sublayer, transform, layer.masksToBounds_ ? seen : clip, scale);
        if (sublayer->displayPending())
            layer.subtreeNeedsDisplay_ = true;
    };
    for (const auto& sublayer : layer.sublayers_)
        visit(sublayer, below);
    if (layer.mask_)
        visit(layer.mask_, toRoot);
}

std::shared_ptr<const RenderList> LayerCommitter::commit(
    const std::vector<std::shared_ptr<CALayer>>& roots, double time, double scale, PixelRect screen)
{
    return take(roots, time, scale, screen, true);
}

void LayerCommitter::pass(const std::vector<std::shared_ptr<CALayer>>& roots, double time, double scale, PixelRect screen)
{
    take(roots, time, scale, screen, false);
}

std::shared_ptr<const RenderList> LayerCommitter::take(
    const std::vector<std::shared_ptr<CALayer>>& roots, double time, double scale, PixelRect screen, bool isPainted)
{
    FrameRequest::clear();
    CATransaction::endImplicit();
    AnimationTimeline& timeline = AnimationTimeline::shared();
    timeline.start(roots, time);
    LastCommit& before = last();
    auto list = before.list.lock();
    const auto identities = identitiesOf(roots);
    const bool isUnchanged = list && !before.sawRunning && before.changeCount == FrameRequest::changeCount()
        && before.roots == identities && before.scale == scale && before.screen == screen && time >= before.time
        && time < before.nextEventTime;
    if (!isUnchanged) {
        const auto changeCount = FrameRequest::changeCount();
        LayerFlattener flattener(time, scale, screen, isPainted);
        list = flattener.flatten(roots);
        before = { isPainted ? list : nullptr, identities, changeCount, time, scale, screen, timeline.nextEventTime(),
            flattener.visitedLayerCount(), flattener.sawRunningAnimation() };
    }
    if (timeline.hasCallbacks())
        FrameRequest::make();
    return list;
}

bool LayerCommitter::hasRunningAnimations() { return last().sawRunning || CADisplayLink::anyRuns(); }

double LayerCommitter::nextEventTime() { return AnimationTimeline::shared().nextEventTime(); }

std::size_t LayerCommitter::visitedLayerCount() { return last().visited; }

} // namespace platform
