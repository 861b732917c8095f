#include "Showroom/Scenes/TextFieldsViewController.h"

#include "Showroom/Common/ShopViews.h"
#include "Showroom/Scenes/GalleryPieces.h"
#include "UI/Common/SubViews/MVTextField.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace showroom {

using namespace mv;

namespace {

constexpr CGFloat margin = 20; // points between the content and the safe area
constexpr CGFloat rowSpacing = 14;
constexpr CGFloat fieldHeight = 38;
constexpr CGFloat widestColumns = 900; // points

template <typename Field = UITextField> std::shared_ptr<Field> makeField(UITextBorderStyle border, const std::string& text)
{
    const auto field
        = make<Field>() | mv::setFont(MVFont::mediumSizeRegularFont()) | mv::setTextColor(MVColor::primaryTextColor());
    field->setBorderStyle(border);
    field->setText(text);
    field->heightAnchor().equalToConstant(fieldHeight)->setActive(true);
    return field;
}

std::shared_ptr<UIView> makeRow(const std::string& captionKey, const std::shared_ptr<UITextField>& field)
{
    field->setAccessibilityIdentifier(captionKey);
    const auto caption = make<UILabel>() | mv::setText(galleryText(captionKey)) | mv::setFont(MVFonts::semiBoldFont(13))
        | mv::setTitleColor(MVColor::secondaryTextColor());
    return makeStack(NSLayoutConstraintAxis::vertical, 3, { caption, field });
}

} // namespace

void TextFieldsViewController::viewDidLoad()
{
    using enum UITextBorderStyle;
    view()->setAccessibilityIdentifier("textFields");
    view() | mv::setBackgroundColor(MVColor::backgroundColor());
    const auto empty = makeField(roundedRect, "");
    empty->setPlaceholder(MVLocalized("mvTypeMessage"));
    const auto ofTheKit = makeField<MVTextField>(none, "Noor Valen") | mv::setBackgroundColor(MVColor::systemGray5())
        | mv::setLayerCornerRadius(10);
    const auto centred = makeField(line, galleryText("subtitle"));
    centred->setTextAlignment(NSTextAlignment::center);
    const auto scripts = makeField(bezel, "Grüße · مرحبا · नमस्ते · 你好 · 👋🏽👩🏽‍🍳");
    const auto tooLong = makeField(roundedRect, galleryText("typeBody"));
    const auto otherWay = makeField(roundedRect, "مرحبا بكم في المتجر");
    otherWay->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    const auto column = [](std::vector<std::shared_ptr<UIView>> rows) {
        return makeStack(NSLayoutConstraintAxis::vertical, rowSpacing, std::move(rows));
    };
    columns = makeStack(NSLayoutConstraintAxis::vertical, rowSpacing,
        { column({ makeRow("fieldRounded", empty), makeRow("fieldKit", ofTheKit), makeRow("fieldCentred", centred) }),
            column({ makeRow("fieldScripts", scripts), makeRow("fieldLong", tooLong), makeRow("fieldOtherWay", otherWay) }) });
    columns | mv::setDistributionMode(UIStackViewDistribution::fillEqually);
    addConstrained(*view(), columns);
    const auto safe = view()->safeAreaLayoutGuide();
    const auto wide = columns->widthAnchor().equalTo(safe->widthAnchor(), -2 * margin);
    wide->setPriority(999); // above what any content asks for, below the widest columns
    activate({
        columns->topAnchor().equalTo(safe->topAnchor(), rowSpacing),
        columns->centerXAnchor().equalTo(safe->centerXAnchor()),
        columns->widthAnchor().lessThanOrEqualToConstant(widestColumns),
        wide,
    });
}

void TextFieldsViewController::viewWillLayoutSubviews()
{
    const CGSize size = view()->bounds().size();
    const bool sideways = size.width > size.height;
    columns | mv::setAxis(sideways ? NSLayoutConstraintAxis::horizontal : NSLayoutConstraintAxis::vertical)
        | mv::setSpacing(sideways ? margin : rowSpacing);
}

} // namespace showroom
