#include "Platform/QuartzCore/CATransaction.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/QuartzCore/TransactionRecord.h"

#include <cmath>
#include <vector>

namespace platform {

namespace {

constexpr double defaultDuration = 0.25; // seconds, the platform's

struct Transaction {
    double duration = defaultDuration;
    std::shared_ptr<const CAMediaTimingFunction> timingFunction;
    bool disableActions = false;
    std::shared_ptr<TransactionRecord> record; // its own, else the one around it; null for none
    bool ownsRecord = false;

    void close()
    {
        if (ownsRecord)
            record->close();
    }
};

// The lowest one is implicit: it is open at all times, and the frame's commit ends it.
std::vector<Transaction>& open()
{
    static auto& transactions = *new std::vector<Transaction>(1); // never destroyed, as layers of static objects may use it
    return transactions;
}

} // namespace

void CATransaction::begin()
{
    Transaction inner = open().back();
    inner.ownsRecord = false;
    open().push_back(std::move(inner));
}

void CATransaction::commit()
{
    if (open().size() == 1) {
        NSLog("CATransaction commit ignored: no transaction is open");
        return;
    }
    Transaction ended = std::move(open().back());
    open().pop_back();
    ended.close();
}

void CATransaction::setCompletionBlock(std::function<void()> completion)
{
    // A block set before counts for what was added up to here.
    Transaction& current = open().back();
    const auto outer = open().size() > 1 ? open()[open().size() - 2].record : nullptr;
    current.close();
    current.ownsRecord = bool(completion);
    current.record = completion ? std::make_shared<TransactionRecord>(std::move(completion), outer) : outer;
}

void CATransaction::setAnimationDuration(double seconds)
{
    open().back().duration = std::isfinite(seconds) && seconds > 0 ? seconds : defaultDuration;
}

double CATransaction::animationDuration() { return open().back().duration; }

void CATransaction::setAnimationTimingFunction(std::shared_ptr<const CAMediaTimingFunction> function)
{
    open().back().timingFunction = std::move(function);
}

const std::shared_ptr<const CAMediaTimingFunction>& CATransaction::animationTimingFunction()
{
    return open().back().timingFunction;
}

void CATransaction::setDisableActions(bool disabled) { open().back().disableActions = disabled; }

bool CATransaction::disableActions() { return open().back().disableActions; }

const std::shared_ptr<TransactionRecord>& CATransaction::currentRecord() { return open().back().record; }

void CATransaction::endImplicit()
{
    if (open().size() > 1)
        return;
    Transaction ended = std::move(open().front());
    open().front() = {};
    ended.close();
}

} // namespace platform
