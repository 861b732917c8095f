#include "Benchmarks/Workloads/ChatPanel.h"

#include "Benchmarks/Measure.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UIWindow.h"
#include "UI/Screens/Broadcast Screen/SubViews/MVProductChatContainerView.h"

#include <cmath>

namespace bench {

using namespace platform;

namespace {

constexpr CGRect panelFrame { 0, 392, 393, 376 }; // points; as the live screen places it

mv::ChatMessage message(std::size_t number)
{
    static const char* texts[] = { "Does the glaze survive a dishwasher?", "Yes please!",
        "I bought the small one last year and use it every single morning, it has not lost any of its colour" };
    mv::ChatMessage line;
    line.id = "message " + std::to_string(number);
    line.owner = "viewer " + std::to_string(number % 97);
    line.commentText = texts[number % 3];
    line.createdAt = Date { double(number) };
    return line;
}

std::shared_ptr<UIImageView> makeStill(const CGRect& frame)
{
    const auto bitmap = Bitmap::make(int(frame.width * 3), int(frame.height * 3), PixelFormat::xrgb);
    for (int y = 0; y < bitmap->height(); ++y)
        for (int x = 0; x < bitmap->width(); ++x)
            bitmap->row(y)[x] = unsigned(128 + 100 * std::sin(x * 0.01)) << 16 | unsigned(128 + 100 * std::sin(y * 0.013)) << 8;
    auto still = make<UIImageView>(frame);
    still->setImage(std::make_shared<const UIImage>(CGImage::fromBitmap(bitmap), 3));
    return still;
}

} // namespace

ChatPanelFigures measureChatPanel(std::size_t held, int frames, const std::string& picture)
{
    HeadlessHost host;
    const auto window = make<UIWindow>();
    window->addSubview(makeStill(window->bounds()));
    const auto panel = make<mv::MVProductChatContainerView>(panelFrame);
    window->addSubview(panel);
    window->makeKeyAndVisible();
    std::vector<mv::ChatMessage> newestFirst;
    for (std::size_t i = held; i-- > 0;)
        newestFirst.push_back(message(i));
    mv::ChatMessageList chat(std::move(newestFirst));
    panel->isLoadingMoreMessageAllowed = false;
    panel->setChatMessages(chat);
    panel->showHideChatTable(true);
    host.advance(1);

    std::vector<double> handOvers, wholes;
    for (int i = 0; i < frames; ++i) {
        const double start = cpuMilliseconds();
        chat.insertAtFront(message(held + std::size_t(i)));
        panel->setChatMessages(chat);
        handOvers.push_back(cpuMilliseconds() - start);
        host.advance(1.0 / 60);
        wholes.push_back(cpuMilliseconds() - start);
    }
    if (!picture.empty())
        host.writePicture(picture);
    return { median(handOvers), median(wholes) };
}

} // namespace bench
