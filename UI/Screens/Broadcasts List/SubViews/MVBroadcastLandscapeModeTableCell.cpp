#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastLandscapeModeTableCell.h"

#include "Platform/UIKit/UIScreen.h"

namespace mv {

namespace {

bool isTablet() { return UIScreen::main().traitCollection().userInterfaceIdiom == UIUserInterfaceIdiom::pad; }

CGFloat cardHeight() { return UIScreen::main().bounds().height * (isTablet() ? 0.5 : 0.75); }

} // namespace

MVBroadcastLandscapeModeTableCell::MVBroadcastLandscapeModeTableCell(std::string reuseIdentifier)
    : MVBroadcastBaseTableCell(std::move(reuseIdentifier))
{
    setUpViewsConstraints();
}

void MVBroadcastLandscapeModeTableCell::setUpViewsConstraints()
{
    const auto& content = contentView();
    const auto safeArea = content->safeAreaLayoutGuide();
    heightConstraint = containerView->heightAnchor().equalToConstant(cardHeight());
    if (!isTablet())
        heightConstraint->setPriority(999);
    NSLayoutConstraints geometry = dateTimeConstraints();
    for (const auto& constraint : {
             containerView->leadingAnchor().equalTo(safeArea->leadingAnchor(), 20),
             containerView->trailingAnchor().equalTo(safeArea->trailingAnchor(), -20),
             containerView->topAnchor().equalTo(content->topAnchor(), 15),
             containerView->bottomAnchor().equalTo(content->bottomAnchor(), -15),
             heightConstraint,
             broadcastImageView->leadingAnchor().equalTo(containerView->leadingAnchor(), 15),
             broadcastImageView->topAnchor().equalTo(containerView->topAnchor(), 15),
             broadcastImageView->bottomAnchor().equalTo(containerView->bottomAnchor(), -15),
             broadcastImageView->widthAnchor().equalTo(broadcastImageView->heightAnchor()),
             broadcastNameLabel->topAnchor().equalTo(containerView->topAnchor(), 15),
             broadcastNameLabel->leadingAnchor().equalTo(broadcastImageView->trailingAnchor(), 15),
             broadcastNameLabel->trailingAnchor().equalTo(containerView->trailingAnchor(), -15),
         })
        geometry.push_back(constraint);
    replaceConstraints(std::move(geometry));
}

// Not when it is laid out: the row has been measured by then, and a cell that waits for its next use is laid out as well.
void MVBroadcastLandscapeModeTableCell::followScreen() { heightConstraint->setConstant(cardHeight()); }

} // namespace mv
