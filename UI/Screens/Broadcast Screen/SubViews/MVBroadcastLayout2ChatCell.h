#pragma once

#include "Platform/UIKit/UITableViewCell.h"
#include "Service/MVPlatform.h"

namespace mv {

class MVLinkTextView;
struct ChatMessage;

// A line of the chat over the video: who writes, in bold, and what, with a soft shadow. As high as its text; the links in it can
// be tapped.
class MVBroadcastLayout2ChatCell final : public UITableViewCell {
public:
    static constexpr const char* identifier = "MV_Broadcast_Chat_Cell";

    explicit MVBroadcastLayout2ChatCell(std::string reuseIdentifier = identifier);

    void assignMessage(const ChatMessage& message);

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();

    std::shared_ptr<UIView> containerView;
    std::shared_ptr<MVLinkTextView> messageTextView;
};

} // namespace mv
