#pragma once

#include "Platform/AVFoundation/AVPlayer.h"
#include "Platform/AVFoundation/AVPlayerLayer.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIWindow.h"
#include "Showroom/Media/FrameCode.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Tests/Support/TestVideo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace platform {

// Films for all tests of the process, each made at its first use.
class TestFilms {
public:
    static TestFilms& shared()
    {
        static TestFilms films;
        return films;
    }
    std::string path(const std::string& name) const { return folder / name; }
    URL film(const std::string& name, const test::TestVideo& video = {}) const
    {
        if (!std::filesystem::exists(path(name)))
            test::writeTestVideo(path(name), video);
        return URL::fileURL(path(name));
    }
    // Two seconds of 640 x 480 at 30 frames a second, with a tone.
    URL plain() const { return film("plain.mp4"); }
    URL file(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return URL::fileURL(path(name));
    }
    static std::string bytes(const URL& url) { return test::contentOf(url.filePath()); }

private:
    TestFilms() = default;
    test::TemporaryFolder folder;
};

// A phone with a video over its whole window. A console line that no test took fails it.
class MediaTest : public ::testing::Test {
protected:
    MediaTest()
    {
        window->setBackgroundColor(UIColor::white());
        window->makeKeyAndVisible();
        layer->setFrame({ 0, 0, 393, 852 });
        window->layer()->addSublayer(layer);
        host.advance(0);
    }
    ~MediaTest() override
    {
        layer->setPlayer(nullptr);
        layer->removeFromSuperlayer();
        player = nullptr;
        window = nullptr;
        host.advance(0);
        EXPECT_EQ(console.lines(), std::vector<std::string> {});
    }

    std::shared_ptr<AVPlayer> open(const URL& url)
    {
        player = make<AVPlayer>(make<AVPlayerItem>(url));
        layer->setPlayer(player);
        return player;
    }
    // The number of the frame on the screen.
    std::optional<int> shownFrame()
    {
        const Bitmap& screen = host.pixels();
        return showroom::media::frameCode::read(screen.row(0), screen.stride() / 4, screen.width(), screen.height());
    }

    HeadlessHost host;
    LogCapture console;
    const TestFilms& films = TestFilms::shared();
    std::shared_ptr<UIWindow> window = make<UIWindow>();
    std::shared_ptr<AVPlayerLayer> layer = make<AVPlayerLayer>();
    std::shared_ptr<AVPlayer> player;
};

} // namespace platform
