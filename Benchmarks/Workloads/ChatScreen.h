#pragma once

#include "Platform/UIKit/UITableView.h"
#include "Platform/UIKit/UIView.h"

#include <memory>
#include <string>
#include <vector>

namespace bench {

// What W2, W5 and W6 say: lines of `name: text`, the newest at the bottom edge, fading in over the uppermost quarter. The table
// is upside down, so that its first row is the newest line.
class ChatView final : public platform::UIView {
public:
    // `assets` is a folder with chat.json, or empty for lines of its own. Holds the first `count` of them.
    ChatView(const platform::CGRect& frame, const std::string& assets, std::size_t count);

    void addMessage(); // the next one
    std::size_t count() const;

protected:
    void layoutSubviews() override;

private:
    class Source;

    std::shared_ptr<Source> source;
    std::shared_ptr<platform::UITableView> table;
};

// Both fonts that the workloads are set in, where the machine has them.
void registerWorkloadFonts();
// The picture that fills the screen; a plain dark view without assets.
std::shared_ptr<platform::UIView> makeBackdrop(const platform::CGRect& frame, const std::string& assets);

} // namespace bench
