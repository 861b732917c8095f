#include "ScreenTest.h"

#include <random>

namespace platform {
namespace {

using LayoutRootTest = ScreenTest;

TEST_F(LayoutRootTest, roundsEdgesNotSizesToPixels)
{
    // Three thirds of 320 at 2x: 106.667 each, without a gap or an overlap.
    std::shared_ptr<UIView> before;
    for (int i = 0; i < 3; ++i) {
        const auto part = addConstrained("part");
        activate({ part->leadingAnchor().equalTo(before ? before->trailingAnchor() : window->leadingAnchor()),
            part->widthAnchor().equalToMultiple(window->widthAnchor(), 1.0 / 3), part->heightAnchor().equalToConstant(10) });
        const auto inner = addConstrained("inner", part);
        fill(*inner, *part);
        before = part;
    }
    makeFrame();
    const double left[] = { 0, 106.5, 213.5 }, right[] = { 106.5, 213.5, 320 };
    for (int i = 0; i < 3; ++i) {
        const auto& part = window->subviews()[std::size_t(i)];
        EXPECT_EQ(part->frame(), (CGRect { left[i], 0, right[i] - left[i], 10 })) << i;
        EXPECT_EQ(part->subviews()[0]->frame(), part->bounds()) << "a pinned child fills its rounded parent: " << i;
    }
}

TEST_F(LayoutRootTest, sizesWhatIsPlacedByItsMaskInTheSameSolve)
{
    // Without the mask's equation the inner view would be solved against a parent of no size, and say so.
    const auto outer = addConstrained("outer");
    const auto middle = add({}, outer);
    middle->setAutoresizingMask(flexibleWidth | flexibleHeight);
    const auto inner = addConstrained("inner", middle);
    fill(*outer, *window, 10);
    fill(*inner, *middle, 15);
    makeFrame();
    EXPECT_EQ(middle->frame(), (CGRect { 0, 0, 300, 460 }));
    EXPECT_EQ(inner->frame(), (CGRect { 15, 15, 270, 430 }));
    middle->setFrame({ 5, 5, 100, 100 });
    makeFrame();
    EXPECT_EQ(inner->frame(), (CGRect { 15, 15, 70, 70 }));
}

TEST_F(LayoutRootTest, reachesAcrossDeepBranches)
{
    // Each level adds its origin to the sum: far more terms than one equation of the solver holds.
    const auto branch = [&](double step) {
        std::shared_ptr<UIView> view = addConstrained("top");
        for (int i = 0; i < 6; ++i) {
            const auto next = addConstrained("level", view);
            next->leadingAnchor().equalTo(view->leadingAnchor(), step)->setActive(true);
            view = next;
        }
        return view;
    };
    const auto a = branch(10), b = branch(3);
    const auto top = window->subviews()[0];
    const auto across = b->leadingAnchor().equalTo(a->trailingAnchor(), 5);
    activate({ top->leadingAnchor().equalTo(window->leadingAnchor(), 1), a->widthAnchor().equalToConstant(40), across });
    makeFrame();
    EXPECT_EQ(b->convertTo(CGPoint {}, nullptr).x, 1 + 60 + 40 + 5);
    across->setConstant(15);
    makeFrame();
    EXPECT_EQ(b->convertTo(CGPoint {}, nullptr).x, 1 + 60 + 40 + 15);
}

TEST_F(LayoutRootTest, measuresHeightsAtTheSolvedWidth)
{
    const auto text = make<Content>(CGSize { 1000, 10 });
    text->area = 10000;
    window->addSubview(text);
    const auto below = addConstrained("below");
    const auto trailing = text->trailingAnchor().equalTo(window->trailingAnchor());
    activate({ text->leadingAnchor().equalTo(window->leadingAnchor()), trailing,
        below->topAnchor().equalTo(text->bottomAnchor(), 4) });
    makeFrame();
    EXPECT_EQ(text->frame().height, 32); // 10000 / 320, rounded up
    EXPECT_EQ(below->frame().y, 36);
    trailing->setConstant(-220);
    makeFrame();
    EXPECT_EQ(text->frame().height, 100);
    EXPECT_EQ(below->frame().y, 104);
}

TEST_F(LayoutRootTest, letsHeightFeedWidthOnce)
{
    // A square beside a flowing text takes the text's height, and so leaves the text less room.
    const auto square = addConstrained("square");
    const auto text = make<Content>(CGSize { 1000, 10 });
    text->area = 6000;
    window->addSubview(text);
    activate({ square->leadingAnchor().equalTo(window->leadingAnchor()), square->topAnchor().equalTo(text->topAnchor()),
        square->bottomAnchor().equalTo(text->bottomAnchor()), square->widthAnchor().equalTo(square->heightAnchor()),
        text->leadingAnchor().equalTo(square->trailingAnchor()), text->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(square->frame().width, square->frame().height);
    EXPECT_EQ(text->frame().maxX(), 320);
    EXPECT_EQ(square->frame().maxX(), text->frame().minX());
    const double settled = text->frame().height;
    makeFrame();
    EXPECT_EQ(text->frame().height, settled) << "the next frame does not start the circle again";
}

TEST_F(LayoutRootTest, excludesASubtree)
{
    const auto row = addConstrained("row");
    const auto inside = addConstrained("inside", row);
    fill(*inside, *row, 15);
    const auto height = row->heightAnchor().equalToConstant(30);
    const auto below = addConstrained("below");
    const auto gone = below->topAnchor().equalTo(window->topAnchor(), 2);
    gone->setPriority(1);
    activate({ row->topAnchor().equalTo(window->topAnchor()), height, below->topAnchor().equalTo(row->bottomAnchor(), 5), gone });
    makeFrame();
    EXPECT_EQ(below->frame().y, 35);
    row->setExcludedFromLayout(true);
    makeFrame();
    EXPECT_EQ(below->frame().y, 2);
    EXPECT_TRUE(height->isActive());
    row->setExcludedFromLayout(false);
    makeFrame();
    EXPECT_EQ(below->frame().y, 35);
}

TEST_F(LayoutRootTest, findsAFittingSizeWithoutMovingAnything)
{
    const auto card = addConstrained("card");
    const auto text = make<Content>(CGSize { 1000, 10 });
    text->area = 10000;
    card->addSubview(text);
    fill(*text, *card, 10);
    activate({ card->leadingAnchor().equalTo(window->leadingAnchor()), card->topAnchor().equalTo(window->topAnchor()) });
    makeFrame();
    const CGRect before = card->frame();
    EXPECT_EQ(card->systemLayoutSizeFitting({ 120, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel),
        (CGSize { 120, 120 }));
    EXPECT_EQ(card->systemLayoutSizeFitting({ 0, 0 }), (CGSize { 1020, 30 }));
    makeFrame();
    EXPECT_EQ(card->frame(), before);

    const auto cell = make<UIView>(CGRect { 0, 0, 50, 50 });
    cell->setLayoutRoot(true);
    window->addSubview(cell);
    cell->addSubview(text);
    fill(*text, *cell, 10);
    EXPECT_EQ(cell->systemLayoutSizeFitting({ 220, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel),
        (CGSize { 220, 70 }));
    makeFrame();
    EXPECT_EQ(text->frame(), (CGRect { 10, 10, 30, 30 }));
}

TEST_F(LayoutRootTest, laysOutOnlyWhatMoved)
{
    class Counting : public UIView {
    public:
        int passes = 0;

    protected:
        void layoutSubviews() override
        {
            UIView::layoutSubviews();
            ++passes;
        }
    };
    const auto still = make<Counting>(), moving = make<Counting>();
    for (const auto& view : { still, moving }) {
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        window->addSubview(view);
        const auto inner = addConstrained("inner", view);
        fill(*inner, *view);
        view->heightAnchor().equalToConstant(10)->setActive(true);
    }
    const auto width = moving->widthAnchor().equalToConstant(10);
    const auto left = still->leadingAnchor().equalTo(window->leadingAnchor());
    activate({ width, left });
    makeFrame();
    still->passes = moving->passes = 0;
    width->setConstant(20);
    makeFrame();
    EXPECT_EQ(still->passes, 0);
    EXPECT_EQ(moving->passes, 1);
    left->setConstant(40);
    makeFrame();
    EXPECT_EQ(still->frame().x, 40);
    EXPECT_EQ(still->passes, 0) << "it moved, nothing inside it did";
}

TEST_F(LayoutRootTest, settlesWhatALayoutPassChanges)
{
    class SelfSizing : public UIView {
    public:
        std::shared_ptr<NSLayoutConstraint> height;

    protected:
        void layoutSubviews() override
        {
            UIView::layoutSubviews();
            height->setConstant(bounds().width / 2);
        }
    };
    const auto view = make<SelfSizing>();
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    view->height = view->heightAnchor().equalToConstant(1);
    window->addSubview(view);
    activate({ view->height, view->leadingAnchor().equalTo(window->leadingAnchor()),
        view->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(view->frame(), (CGRect { 0, 0, 320, 160 }));
    UIScreen::main().setGeometry({ 480, 320 }, {});
    EXPECT_EQ(view->frame(), (CGRect { 0, 0, 480, 240 }));
}

// Views, guides and constraints come, go, move, end and are excluded in any order; what is left is always placed as it says.
TEST_F(LayoutRootTest, survivesAnySurgery)
{
    struct Node {
        std::shared_ptr<UIView> view;
        std::shared_ptr<NSLayoutConstraint> x, width;
        NSLayoutConstraints cross; // that can always hold, to views anywhere
    };
    std::mt19937 random(7);
    const auto pick = [&](std::size_t count) { return std::size_t(random() % count); };
    std::vector<Node> nodes;
    const auto anchor = [&](Node& node, UIView& parent) {
        node.x = node.view->leadingAnchor().equalTo(parent.leadingAnchor(), double(pick(50)));
        activate({ node.x, node.view->topAnchor().equalTo(parent.topAnchor(), 3) });
    };
    for (int step = 0; step < 4000; ++step) {
        const auto parentOf = [&](const UIView* child) {
            auto parent = nodes.empty() || pick(3) == 0 ? std::shared_ptr<UIView>(window) : nodes[pick(nodes.size())].view;
            return !parent->isDescendant(*window) || (child && parent->isDescendant(*child)) ? window : parent;
        };
        Node* node = nodes.empty() ? nullptr : &nodes[pick(nodes.size())];
        switch (nodes.size() < 10 ? 0 : pick(8)) {
        case 0: {
            Node added { addConstrained("view", parentOf(nullptr)), {}, {}, {} };
            added.width = added.view->widthAnchor().equalToConstant(double(pick(90)));
            activate({ added.width, added.view->heightAnchor().equalToConstant(5) });
            anchor(added, *added.view->superview());
            nodes.push_back(added);
            break;
        }
        case 1: {
            const auto parent = parentOf(node->view.get());
            node->view->removeFromSuperview();
            parent->addSubview(node->view);
            anchor(*node, *parent);
            break;
        }
        case 2:
            node->view->removeFromSuperview();
            break;
        case 3: {
            auto& other = *nodes[pick(nodes.size())].view;
            node->cross.push_back(node->view->leftAnchor().lessThanOrEqualTo(other.rightAnchor(), 100000));
            if (node->view->isDescendant(*window) && other.isDescendant(*window))
                node->cross.back()->setActive(true);
            break;
        }
        case 4:
            NSLayoutConstraint::deactivate(node->cross);
            node->view->setExcludedFromLayout(!node->view->isExcludedFromLayout());
            break;
        case 5:
            node->width->setConstant(double(pick(90)));
            break;
        case 6: // ends, if nothing else holds it
            node->view->removeFromSuperview();
            nodes.erase(nodes.begin() + (node - nodes.data()));
            break;
        default:
            makeFrame();
            break;
        }
    }
    for (const Node& node : nodes)
        node.view->setExcludedFromLayout(false);
    makeFrame();
    std::size_t shown = 0;
    for (const Node& node : nodes) {
        if (!node.view->window() || !node.x->isActive())
            continue;
        ++shown;
        EXPECT_EQ(node.view->frame(), (CGRect { node.x->constant(), 3, node.width->constant(), 5 }));
    }
    EXPECT_GT(shown, 5u);
}

// On the way to the new size the strip's safe area still belongs to its former frame, and then the sides are not even.
TEST_F(LayoutRootTest, saysNothingOfConflictsThatPass)
{
    const auto screen = make<UIViewController>();
    window->setRootViewController(screen);
    const auto strip = addConstrained("strip", screen->view()), left = addConstrained("left", strip),
               middle = addConstrained("middle", strip), right = addConstrained("right", strip);
    const auto safe = strip->safeAreaLayoutGuide();
    activate({
        strip->leadingAnchor().equalTo(screen->view()->leadingAnchor()),
        strip->trailingAnchor().equalTo(screen->view()->trailingAnchor()),
        left->leadingAnchor().equalTo(safe->leadingAnchor()),
        left->widthAnchor().equalToConstant(30),
        middle->leadingAnchor().equalTo(left->trailingAnchor()),
        middle->centerXAnchor().equalTo(strip->centerXAnchor()),
        right->leadingAnchor().equalTo(middle->trailingAnchor()),
        right->widthAnchor().equalToConstant(30),
        right->trailingAnchor().equalTo(safe->trailingAnchor()),
    });
    makeFrame();
    UIScreen::main().setGeometry({ 480, 320 }, { 0, 44, 0, 44 }, 0.25);
    makeFrame();
    EXPECT_EQ(takeLines(), std::vector<std::string> {});
    EXPECT_EQ(right->frame().x, 480 - 44 - 30);
    EXPECT_EQ(middle->frame().width, 480 - 2 * 74);
}

} // namespace
} // namespace platform
