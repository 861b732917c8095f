#pragma once

#include "Platform/UIKit/UITableView.h"

#include <memory>
#include <string>

namespace bench {

// The list of W1: cards as a host would build them, in a table. `assets` is a folder with banner00..11.jpg, calendar.png and
// cards.json, or empty for texts of its own without pictures.
class CardTable final : public platform::UITableView {
public:
    CardTable(const platform::CGRect& frame, const std::string& assets);

private:
    std::shared_ptr<platform::UITableViewDataSource> source;
};

} // namespace bench
