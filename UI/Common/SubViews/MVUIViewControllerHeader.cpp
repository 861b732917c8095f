#include "UI/Common/SubViews/MVUIViewControllerHeader.h"

#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"

namespace mv {

namespace {

std::shared_ptr<UIStackView> makeButtonRow(const char* name)
{
    const auto row = make<UIStackView>() | mv::setAxis(NSLayoutConstraintAxis::horizontal)
        | mv::setDistributionMode(UIStackViewDistribution::fill) | mv::setAlignmentMode(UIStackViewAlignment::fill)
        | mv::setSpacing(5) | mv::setBackgroundColor(UIColor::clear());
    row->setAccessibilityIdentifier(name);
    row->setTranslatesAutoresizingMaskIntoConstraints(false);
    return row;
}

void replaceButtons(UIStackView& row, const std::vector<std::shared_ptr<UIButton>>& buttons)
{
    const auto former = row.arrangedSubviews();
    for (const auto& button : former)
        button->removeFromSuperview();
    for (const auto& button : buttons)
        row.addArrangedSubview(button);
}

} // namespace

MVUIViewControllerHeader::MVUIViewControllerHeader(const CGRect& frame)
    : UIView(frame)
    , leftButtonsStackView(makeButtonRow("leftButtonsStackView"))
    , rightButtonStackView(makeButtonRow("rightButtonStackView"))
    , titleLabel(make<UILabel>() | mv::setBackgroundColor(UIColor::clear()) | mv::setFont(MVFont::normalSizeSemiBoldFont())
          | mv::setTitleColor(MVColor::primaryTextColor()) | mv::setTextAlignMent(NSTextAlignment::center)
          | mv::setNumberOfLine(2))
{
    setBackgroundColor(MVColor::backgroundColor());
    titleLabel->setAccessibilityIdentifier("titleLabel");
    titleLabel->setTranslatesAutoresizingMaskIntoConstraints(false);
    addSubview(leftButtonsStackView);
    addSubview(titleLabel);
    addSubview(rightButtonStackView);
    addBorder(*this, BordersViewTag::bottom, MVColor::seperatorColor(), 1);

    const auto sides = safeAreaLayoutGuide();
    activate({
        titleLabel->centerXAnchor().equalTo(centerXAnchor()),
        titleLabel->centerYAnchor().equalTo(centerYAnchor()),
        leftButtonsStackView->leadingAnchor().equalTo(sides->leadingAnchor()),
        leftButtonsStackView->topAnchor().equalTo(topAnchor(), 2.5),
        leftButtonsStackView->bottomAnchor().equalTo(bottomAnchor(), -2.5),
        leftButtonsStackView->trailingAnchor().equalTo(titleLabel->leadingAnchor(), -10),
        rightButtonStackView->leadingAnchor().equalTo(titleLabel->trailingAnchor()),
        rightButtonStackView->topAnchor().equalTo(topAnchor(), 2.5),
        rightButtonStackView->bottomAnchor().equalTo(bottomAnchor(), -2.5),
        rightButtonStackView->trailingAnchor().equalTo(sides->trailingAnchor(), -10),
    });
}

void MVUIViewControllerHeader::setTitle(const std::string& title) { titleLabel->setText(title); }

void MVUIViewControllerHeader::setLeftNavButtons(const std::vector<std::shared_ptr<UIButton>>& buttons)
{
    replaceButtons(*leftButtonsStackView, buttons);
}

void MVUIViewControllerHeader::setRightNavButtons(const std::vector<std::shared_ptr<UIButton>>& buttons)
{
    replaceButtons(*rightButtonStackView, buttons);
}

} // namespace mv
