#include "Platform/Host/ViewTree.h"

#include "Platform/Host/HeadlessHost.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UITextField.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"

#include <gtest/gtest.h>

#include <cmath>

namespace platform {
namespace {

class NamedController final : public UIViewController { };

TEST(ViewTree, describesWhatIsOnTheScreen)
{
    HeadlessHost host;
    const auto window = make<UIWindow>();
    window->makeKeyAndVisible();
    const auto controller = make<NamedController>();
    window->setRootViewController(controller);
    const auto& root = controller->view();
    const auto label = make<UILabel>(CGRect { 10, 20, 100, 30 });
    label->setAccessibilityIdentifier("titleLabel");
    label->setText("Live");
    label->setTextAlignment(NSTextAlignment::center);
    label->setNumberOfLines(2);
    const auto button = make<UIButton>(CGRect { 10, 60, 100, 30 });
    button->setTitle("Join");
    button->setEnabled(false);
    button->layer()->setCornerRadius(15);
    const auto hidden = make<UIView>(CGRect { 0, 100, 50, 50 });
    hidden->setHidden(true);
    const auto turned = make<UIView>(CGRect { 0, 0, 20, 10 });
    turned->setTransform(CGAffineTransform::rotation(std::acos(-1.0) / 2));
    hidden->addSubview(turned);
    const auto faded = make<UIView>(CGRect { 0, 0, 9, 9 }, make<CAGradientLayer>());
    faded->setAlpha(0.5);
    static_cast<CAGradientLayer&>(*faded->layer()).setColors({ { 1, 0, 0, 1 }, { 0, 0, 0, 0 } });
    faded->layer()->setShadowOpacity(0.25);
    const auto scroller = make<UIScrollView>(CGRect { 0, 200, 100, 100 });
    scroller->setContentSize({ 100, 500 });
    scroller->setContentInset({ 5, 0, 0, 0 });
    scroller->setContentOffset({ 0, 40 });
    const auto field = make<UITextField>(CGRect { 10, 320, 200, 40 });
    field->setPlaceholder("Name");
    field->setTextAlignment(NSTextAlignment::right);
    const auto filled = make<UITextField>(CGRect { 10, 370, 200, 40 });
    filled->setText("Grüße");
    filled->setTintColor(UIColor::red());
    filled->setTextColor(UIColor::white(1, 0.5));
    filled->setEnabled(false);
    for (const auto& view : std::vector<std::shared_ptr<UIView>> { label, button, hidden, faded, scroller, field, filled })
        root->addSubview(view);
    host.advance(0);

    const auto tree = viewTree(host.device());
    EXPECT_EQ(tree["device"].text(), "phone");
    EXPECT_EQ(tree["safeArea"].print(), "[59,0,34,0]");
    EXPECT_EQ(tree["size"].print(), "[393,852]");
    EXPECT_EQ(tree["root"]["class"].text(), "UIWindow");
    const auto& page = tree["root"]["children"][0];
    EXPECT_EQ(page["controller"].text(), "NamedController");
    const auto& children = page["children"];
    EXPECT_EQ(children[0].print(),
        R"({"class":"UILabel","name":"titleLabel","frame":[10,20,100,30],"text":"Live","font":"Inter-Regular 17",)"
        R"("color":"#000000ff","numberOfLines":2,"textAlignment":"center"})");
    EXPECT_EQ(children[1]["text"].text(), "Join");
    EXPECT_EQ(children[1]["enabled"].boolean(), false);
    EXPECT_EQ(children[1]["cornerRadius"].number(), 15);
    EXPECT_EQ(children[2]["hidden"].boolean(), true);
    EXPECT_EQ(children[2]["children"][0]["visible"].boolean(), false);
    EXPECT_EQ(children[2]["children"][0]["hidden"], JSONValue());
    const auto& rect = children[2]["children"][0]["frame"];
    EXPECT_NEAR(*rect[2].number(), 10, 1e-9);
    EXPECT_NEAR(*rect[3].number(), 20, 1e-9);
    EXPECT_EQ(children[3]["alpha"].number(), 0.5);
    EXPECT_EQ(children[3]["gradient"].print(), R"([{"color":"#ff0000ff","at":0},{"color":"#00000000","at":1}])");
    EXPECT_EQ(children[3]["shadow"]["opacity"].number(), 0.25);
    EXPECT_EQ(children[4].print(),
        R"({"class":"UIScrollView","frame":[0,200,100,100],"contentOffset":[0,40],"contentSize":[100,500],)"
        R"("contentInset":[5,0,0,0]})");
    EXPECT_EQ(children[5].print(),
        R"({"class":"UITextField","frame":[10,320,200,40],"placeholder":"Name","font":"Inter-Regular 17",)"
        R"("color":"#000000ff","tint":"#007affff","textAlignment":"right"})");
    EXPECT_EQ(children[6].print(),
        R"({"class":"UITextField","frame":[10,370,200,40],"enabled":false,"text":"Grüße","font":"Inter-Regular 17",)"
        R"("color":"#ffffff80","tint":"#ff0000ff"})");
}

} // namespace
} // namespace platform
