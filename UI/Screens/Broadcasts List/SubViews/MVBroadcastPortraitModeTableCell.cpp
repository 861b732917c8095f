#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastPortraitModeTableCell.h"

namespace mv {

MVBroadcastPortraitModeTableCell::MVBroadcastPortraitModeTableCell(std::string reuseIdentifier)
    : MVBroadcastBaseTableCell(std::move(reuseIdentifier))
{
    setUpViewsConstraints();
}

void MVBroadcastPortraitModeTableCell::setUpViewsConstraints()
{
    const auto& content = contentView();
    NSLayoutConstraints geometry = dateTimeConstraints();
    for (const auto& constraint : {
             containerView->leadingAnchor().equalTo(content->leadingAnchor(), 20),
             containerView->trailingAnchor().equalTo(content->trailingAnchor(), -20),
             containerView->topAnchor().equalTo(content->topAnchor(), 15),
             containerView->bottomAnchor().equalTo(content->bottomAnchor(), -15),
             broadcastImageView->leadingAnchor().equalTo(containerView->leadingAnchor()),
             broadcastImageView->trailingAnchor().equalTo(containerView->trailingAnchor()),
             broadcastImageView->topAnchor().equalTo(containerView->topAnchor()),
             broadcastImageView->heightAnchor().equalToConstant(200),
             broadcastNameLabel->topAnchor().equalTo(broadcastImageView->bottomAnchor(), 15),
             broadcastNameLabel->leadingAnchor().equalTo(containerView->leadingAnchor(), 15),
             broadcastNameLabel->trailingAnchor().equalTo(containerView->trailingAnchor(), -15),
             buttonsStackView->bottomAnchor().equalTo(containerView->bottomAnchor(), -20),
         })
        geometry.push_back(constraint);
    replaceConstraints(std::move(geometry));
}

} // namespace mv
