#include "Platform/UIKit/UIPasteboard.h"

#include "Platform/Foundation/NSLog.h"

namespace platform {

UIPasteboard& UIPasteboard::general()
{
    static auto& pasteboard = *new UIPasteboard; // never destroyed
    return pasteboard;
}

std::string UIPasteboard::string() const
{
    const auto present = host ? host->pasteboardText() : std::string();
    return isOwn && present == outside ? text : present;
}

bool UIPasteboard::hasStrings() const { return !text.empty() || (host && host->mayHavePasteboardText()); }

void UIPasteboard::setString(const std::string& newText)
{
    isOwn = !host || !host->setPasteboardText(newText);
    if (isOwn && host)
        NSLog("text of " + std::to_string(newText.size())
            + " bytes not copied for other applications: the desktop does not take it");
    text = isOwn ? newText : std::string();
    outside = isOwn && host ? host->pasteboardText() : std::string();
}

void UIPasteboard::setHost(UIPasteboardHost* newHost)
{
    host = newHost;
    isOwn = !host;
    text.clear();
}

} // namespace platform
