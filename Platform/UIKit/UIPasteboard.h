#pragma once

#include <string>

namespace platform {

// Where a pasteboard's text lies outside of the application.
class UIPasteboardHost {
public:
    virtual ~UIPasteboardHost() = default;
    virtual std::string pasteboardText() = 0; // UTF-8; empty for none; another application may have to be asked for it
    virtual bool mayHavePasteboardText() = 0; // without asking for it: false is certain
    virtual bool setPasteboardText(const std::string& text) = 0; // false when it was not taken
};

// What was cut or copied, here or in another application. Main thread.
class UIPasteboard {
public:
    static UIPasteboard& general();

    std::string string() const; // UTF-8; empty when it holds no text
    bool hasStrings() const; // cheap; what another application holds may turn out to be no text
    // One console line when the outside does not take it; it can be pasted here all the same, until somebody copies outside.
    void setString(const std::string& text);

    // Host side. Without a host texts stay inside the application.
    void setHost(UIPasteboardHost* newHost); // which clears it at its end

private:
    UIPasteboard() = default;
    UIPasteboardHost* host = nullptr;
    std::string text; // what the host has not taken
    std::string outside; // what the host had then
    bool isOwn = true; // the text counts, while the host still has that
};

} // namespace platform
