#include "UI/Common/Models/BroadcastProduct.h"

namespace mv {

std::vector<std::shared_ptr<BroadcastProduct>> makeBroadcastProducts(const std::vector<std::shared_ptr<MVProduct>>& products)
{
    std::vector<std::shared_ptr<BroadcastProduct>> wrapped;
    wrapped.reserve(products.size());
    for (const auto& product : products) {
        if (product)
            wrapped.push_back(std::make_shared<BroadcastProduct>(product, product->isFeatured.value_or(false)));
    }
    return wrapped;
}

} // namespace mv
