#include "Main/MivoraUINotification.h"

#include "Platform/Foundation/NotificationCenter.h"

namespace mv {

const char* rawValue(MivoraUINotification) { return "mv_product_tapped_for_description"; }

std::optional<MivoraUINotification> notificationFromRawValue(std::string_view name)
{
    if (name == rawValue(MivoraUINotification::mv_product_tapped))
        return MivoraUINotification::mv_product_tapped;
    return std::nullopt;
}

void postProductTapped(const MVProduct& product)
{
    NotificationCenter::defaultCenter().post(rawValue(MivoraUINotification::mv_product_tapped), nullptr,
        { { "productId", product.id.value_or("") },
            { "productUrl", product.productUrl ? product.productUrl->absoluteString() : std::string() } });
}

} // namespace mv
