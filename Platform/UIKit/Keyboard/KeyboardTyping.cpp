#include "Platform/UIKit/Keyboard/KeyboardTyping.h"

#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/UIApplication.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr double doubleTap = 0.35; // seconds between two strikes that belong together

bool isBlank(std::string_view character)
{
    return character == " " || character == "\n" || character == "\t" || character == "\u00A0";
}

bool isOneOf(std::string_view character, std::initializer_list<std::string_view> list)
{
    return std::ranges::find(list, character) != list.end();
}

std::string_view takeLast(std::string_view& text)
{
    const auto start = previousCharacterBoundary(text, text.size());
    const auto last = text.substr(start);
    text = text.substr(0, start);
    return last;
}

} // namespace

bool beginsWithCapital(const std::string& textBefore, UITextAutocapitalizationType type)
{
    if (type == UITextAutocapitalizationType::none)
        return false;
    std::string_view text = textBefore;
    if (text.empty())
        return true;
    auto last = takeLast(text);
    if (!isBlank(last))
        return false;
    if (type == UITextAutocapitalizationType::words)
        return true;
    while (isBlank(last) && last != "\n" && !text.empty())
        last = takeLast(text);
    while (isOneOf(last, { "\"", "'", ")", "]", "”", "’", "»" }) && !text.empty())
        last = takeLast(text);
    return isBlank(last) || isOneOf(last, { ".", "!", "?", "…", "؟" });
}

void KeyboardTyping::begin(UITextInput& input, bool rightToLeft)
{
    plane_.page = KeyboardPage::letters;
    plane_.shift = KeyboardShift::off;
    if (!scriptChosen)
        plane_.script = rightToLeft ? KeyboardScript::arabic : KeyboardScript::latin;
    shiftTime = spaceTime = never;
    before = input.textBeforeCaret();
    capitalize(input);
}

void KeyboardTyping::follow(UITextInput& input)
{
    plane_.returnKey = input.inputTraits().returnKeyType;
    auto text = input.textBeforeCaret();
    if (text == before)
        return; // a shift that was struck by hand holds
    before = std::move(text);
    capitalize(input);
}

void KeyboardTyping::strike(const KeyboardKey& key, double time)
{
    if (key.role != KeyboardRole::shift)
        shiftTime = never;
    if (key.role != KeyboardRole::space)
        spaceTime = never;
    auto& application = UIApplication::shared();
    switch (key.role) {
    case KeyboardRole::character:
    case KeyboardRole::emoji:
        return application.sendText(key.text);
    case KeyboardRole::space:
        return strikeSpace(time);
    case KeyboardRole::shift:
        return strikeShift(time);
    case KeyboardRole::erase:
        return application.sendDeleteBackward();
    case KeyboardRole::enter:
        plane_.page = KeyboardPage::letters;
        return application.sendKey(UIKey::enter);
    case KeyboardRole::page:
        plane_.page = key.page;
        return;
    case KeyboardRole::globe:
        plane_.script = plane_.script == KeyboardScript::latin ? KeyboardScript::arabic : KeyboardScript::latin;
        plane_.page = KeyboardPage::letters;
        scriptChosen = true;
        if (const auto responder = application.firstResponder(); responder && responder->textInput())
            capitalize(*responder->textInput());
        return;
    case KeyboardRole::hide:
        if (const auto responder = application.firstResponder())
            responder->resignFirstResponder();
        return;
    case KeyboardRole::dock:
        if (const auto callback = onDock)
            callback();
        return;
    case KeyboardRole::edit:
        if (const auto responder = application.firstResponder(); responder && responder->textInput())
            responder->textInput()->perform(key.action);
        return;
    case KeyboardRole::grip:
        return;
    }
}

// Two in a row after a word end the sentence.
void KeyboardTyping::strikeSpace(double time)
{
    plane_.page = KeyboardPage::letters;
    std::string_view text = before;
    const bool inRow = time - std::exchange(spaceTime, time) < doubleTap;
    const bool afterWord = inRow && takeLast(text) == " " && !text.empty()
        && !isOneOf(takeLast(text), { " ", "\n", ".", ",", ";", ":", "!", "?", "…", "،", "؛", "؟" });
    if (!afterWord)
        return UIApplication::shared().sendText(" ");
    UIApplication::shared().sendDeleteBackward();
    UIApplication::shared().sendText(". ");
}

void KeyboardTyping::strikeShift(double time)
{
    const bool inRow = time - std::exchange(shiftTime, time) < doubleTap;
    if (plane_.shift == KeyboardShift::locked)
        plane_.shift = KeyboardShift::off;
    else if (inRow)
        plane_.shift = KeyboardShift::locked;
    else
        plane_.shift = plane_.shift == KeyboardShift::off ? KeyboardShift::once : KeyboardShift::off;
}

// What shift was struck for has been typed. Arabic has no capitals: its shift is struck by hand only.
void KeyboardTyping::capitalize(UITextInput& input)
{
    const auto traits = input.inputTraits();
    plane_.returnKey = traits.returnKeyType;
    if (plane_.shift == KeyboardShift::locked)
        return;
    const bool capital = plane_.script == KeyboardScript::latin && beginsWithCapital(before, traits.autocapitalization);
    plane_.shift = capital ? KeyboardShift::once : KeyboardShift::off;
}

} // namespace platform
