#pragma once

#include <functional>
#include <memory>

namespace platform {

// What a transaction's completion waits for: the animations added inside it, and the completions of transactions inside it.
class TransactionRecord {
public:
    TransactionRecord(std::function<void()> completion, std::shared_ptr<TransactionRecord> outer);

    void addOne() { ++pending; }
    void endOne();
    void close(); // nothing more is added
    const std::shared_ptr<TransactionRecord>& outer() const { return outer_; }

private:
    void settle();

    std::function<void()> completion;
    std::shared_ptr<TransactionRecord> outer_;
    int pending = 0;
    bool closed = false;
};

} // namespace platform
