#pragma once

#include "Service/MVRecords.h"

#include <vector>

namespace mv {

// A product of the broadcast and whether the host features it now. Shared, so that flipping the flag is seen by every holder.
class BroadcastProduct {
public:
    BroadcastProduct(std::shared_ptr<MVProduct> product, bool isFeatured)
        : product(std::move(product))
        , isFeatured(isFeatured)
    {
    }

    std::shared_ptr<MVProduct> product; // never null
    bool isFeatured;
};

// In the same order; absent products are left out, an absent flag counts as not featured.
std::vector<std::shared_ptr<BroadcastProduct>> makeBroadcastProducts(const std::vector<std::shared_ptr<MVProduct>>& products);

} // namespace mv
