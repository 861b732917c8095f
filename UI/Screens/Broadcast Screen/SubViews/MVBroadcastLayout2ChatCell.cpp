#include "UI/Screens/Broadcast Screen/SubViews/MVBroadcastLayout2ChatCell.h"

#include "UI/Common/Models/ChatMessage.h"
#include "UI/Common/SubViews/MVLinkTextView.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"

namespace mv {

MVBroadcastLayout2ChatCell::MVBroadcastLayout2ChatCell(std::string reuseIdentifier)
    : UITableViewCell(std::move(reuseIdentifier))
    , containerView(make<UIView>())
    , messageTextView(make<MVLinkTextView>())
{
    setBackgroundColor(UIColor::clear());
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
}

void MVBroadcastLayout2ChatCell::assignMessage(const ChatMessage& message)
{
    const NSShadow shadow { UIColor::black(), 1, {} };
    const auto part = [&](std::string text, const UIFont& font, const UIColor& color) {
        NSAttributes attributes;
        attributes.font = font;
        attributes.foregroundColor = color;
        attributes.shadow = shadow;
        return NSAttributedString(std::move(text), std::move(attributes));
    };
    NSAttributedString line = part(message.owner.value_or("") + ": ", MVFonts::boldFont(16),
        message.isHostOwner ? MVColor::accentColor() : UIColor::white());
    line.append(part(message.commentText.value_or(""), MVFont::mediumSizeRegularFont(), UIColor::white()));
    messageTextView->setAttributedText(std::move(line));
}

void MVBroadcastLayout2ChatCell::configureSubViewsProperties()
{
    containerView | mv::setBackgroundColor(UIColor::black().withAlphaComponent(0)) | mv::setLayerCornerRadius(0);
    containerView->setClipsToBounds(true);
    messageTextView | mv::setBackgroundColor(UIColor::clear()) | mv::setTintColor(MVColor::accentColor());
    messageTextView->setTextContainerInset({});
    messageTextView->setLineFragmentPadding(0);
    messageTextView->setScrollEnabled(false);
    messageTextView->setSelectable(true); // or no link could be tapped
    messageTextView->setContentInset({});
    messageTextView->setDataDetectorTypes(UIDataDetectorTypes::link);
}

void MVBroadcastLayout2ChatCell::setUpViews()
{
    containerView->setAccessibilityIdentifier("containerView");
    messageTextView->setAccessibilityIdentifier("messageTextView");
    containerView->setTranslatesAutoresizingMaskIntoConstraints(false);
    messageTextView->setTranslatesAutoresizingMaskIntoConstraints(false);
    contentView()->addSubview(containerView);
    containerView->addSubview(messageTextView);
}

void MVBroadcastLayout2ChatCell::setUpViewsConstraints()
{
    activate({
        containerView->leadingAnchor().equalTo(contentView()->leadingAnchor(), 10),
        containerView->topAnchor().equalTo(contentView()->topAnchor(), 5),
        containerView->bottomAnchor().equalTo(contentView()->bottomAnchor(), -5),
        containerView->trailingAnchor().lessThanOrEqualTo(contentView()->trailingAnchor(), -10),
        messageTextView->leadingAnchor().equalTo(containerView->leadingAnchor(), 5),
        messageTextView->topAnchor().equalTo(containerView->topAnchor(), 3),
        messageTextView->trailingAnchor().equalTo(containerView->trailingAnchor(), -5),
        messageTextView->bottomAnchor().equalTo(containerView->bottomAnchor(), -3),
    });
}

} // namespace mv
