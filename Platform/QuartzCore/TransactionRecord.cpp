#include "Platform/QuartzCore/TransactionRecord.h"

#include "Platform/QuartzCore/AnimationTimeline.h"

#include <utility>

namespace platform {

TransactionRecord::TransactionRecord(std::function<void()> block, std::shared_ptr<TransactionRecord> outerRecord)
    : completion(std::move(block))
    , outer_(std::move(outerRecord))
{
    if (outer_)
        outer_->addOne();
}

void TransactionRecord::endOne()
{
    --pending;
    settle();
}

void TransactionRecord::close()
{
    closed = true;
    settle();
}

void TransactionRecord::settle()
{
    if (!closed || pending > 0)
        return;
    if (completion)
        AnimationTimeline::shared().callLater(std::exchange(completion, nullptr));
    if (const auto record = std::exchange(outer_, nullptr))
        record->endOne();
}

} // namespace platform
