#include "Platform/UIKit/UIPasteboard.h"

#include "Platform/Foundation/NSLog.h"

#include <gtest/gtest.h>

#include <vector>

namespace platform {
namespace {

// A desktop's clipboard, which may be held by somebody who does not answer.
class Desktop final : public UIPasteboardHost {
public:
    Desktop() { UIPasteboard::general().setHost(this); }
    ~Desktop() override { UIPasteboard::general().setHost(nullptr); }
    std::string pasteboardText() override { return text; }
    bool mayHavePasteboardText() override { return !text.empty(); }
    bool setPasteboardText(const std::string& newText) override
    {
        if (takes)
            text = newText;
        return takes;
    }

    std::string text = "from a letter";
    bool takes = true;
};

TEST(UIPasteboard, losesNothingWhenTheDesktopDoesNotTakeIt)
{
    const LogCapture console;
    auto& pasteboard = UIPasteboard::general();
    {
        Desktop desktop;
        EXPECT_EQ(pasteboard.string(), "from a letter");
        pasteboard.setString("from here");
        EXPECT_EQ(desktop.text, "from here");
        EXPECT_EQ(console.lines(), std::vector<std::string> {});

        desktop.takes = false;
        pasteboard.setString("Grüße");
        const std::vector<std::string> said { "text of 7 bytes not copied for other applications: the desktop does not take it" };
        EXPECT_EQ(console.lines(), said);
        EXPECT_EQ(desktop.text, "from here");
        EXPECT_EQ(pasteboard.string(), "Grüße");
        desktop.text = "copied elsewhere since";
        EXPECT_EQ(pasteboard.string(), "copied elsewhere since");

        desktop.takes = true;
        pasteboard.setString("again");
        EXPECT_EQ(desktop.text, "again");
        desktop.text = "and elsewhere";
        EXPECT_EQ(pasteboard.string(), "and elsewhere");
        EXPECT_TRUE(pasteboard.hasStrings());
        desktop.text.clear();
        EXPECT_FALSE(pasteboard.hasStrings());
        desktop.takes = false;
        pasteboard.setString("at its end");
        EXPECT_TRUE(pasteboard.hasStrings());
        EXPECT_EQ(console.lines().size(), 2u);
    }
    EXPECT_FALSE(pasteboard.hasStrings()) << "the desktop has ended";
    pasteboard.setString("inside");
    EXPECT_EQ(pasteboard.string(), "inside");
    const Desktop next;
    EXPECT_EQ(pasteboard.string(), "from a letter");
}

} // namespace
} // namespace platform
