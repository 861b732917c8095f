#pragma once

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Images/ImageLoader.h"
#include "Platform/Images/UIImageViewLoading.h"
#include "Platform/UIKit/UIWindow.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace platform {

// A phone with a window, a folder for files, and pictures to put into it. A console line that no test took fails it.
class ImagesTest : public ::testing::Test {
protected:
    ImagesTest()
        : window(make<UIWindow>())
    {
        Folders::setCache(files / "cache");
        window->setBackgroundColor(UIColor::white());
        window->makeKeyAndVisible();
        host.advance(0);
    }
    ~ImagesTest() override
    {
        window = nullptr;
        host.advance(0);
        EXPECT_EQ(console.lines(), std::vector<std::string> {});
    }

    // A PNG file's bytes: red left of the middle, blue right of it, a green line of a tenth along the top.
    Data picture(int width, int height)
    {
        const auto bitmap = Bitmap::make(width, height, PixelFormat::xrgb);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                bitmap->row(y)[x] = y < height / 10 ? 0xff00ff00 : x < width / 2 ? 0xffff0000 : 0xff0000ff;
        EXPECT_TRUE(writePNG(*bitmap, files / "made.png"));
        return dataFromText(test::contentOf(files / "made.png"));
    }
    static std::string text(const Data& bytes) { return { bytes.begin(), bytes.end() }; }
    URL write(const std::string& name, const Data& bytes)
    {
        std::ofstream(folder + "/" + name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
        return URL::fileURL(folder + "/" + name);
    }
    URL pictureFile(const std::string& name, int width, int height) { return write(name, picture(width, height)); }

    std::shared_ptr<UIImageView> addImageView(const CGRect& frame, UIViewContentMode mode = UIViewContentMode::scaleAspectFill)
    {
        auto view = make<UIImageView>(frame);
        view->setContentMode(mode);
        view->setClipsToBounds(true);
        view->setBackgroundColor(UIColor::gray());
        window->addSubview(view);
        return view;
    }
    // The colour on the screen, in points.
    std::uint32_t pixel(double x, double y) { return host.pixels().row(int(y * 3))[int(x * 3)] & 0xffffff; }

    std::vector<std::string> takeLines()
    {
        auto lines = console.lines();
        console.clear();
        return lines;
    }

    LogCapture console;
    const test::TemporaryFolder files;
    const std::string& folder = files.path();
    HeadlessHost host;
    std::shared_ptr<UIWindow> window;
};

} // namespace platform
