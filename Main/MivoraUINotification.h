#pragma once

#include "Service/MVRecords.h"

#include <optional>
#include <string_view>

namespace mv {

// What the kit tells its host, on the default notification centre.
enum class MivoraUINotification {
    // The viewer tapped a product. No sender; the user information has two texts, "productId" and "productUrl", each "" when
    // absent.
    mv_product_tapped,
};

const char* rawValue(MivoraUINotification notification); // its name: "mv_product_tapped_for_description"
std::optional<MivoraUINotification> notificationFromRawValue(std::string_view name);

void postProductTapped(const MVProduct& product);

} // namespace mv
