#include "Platform/UIKit/Keyboard/KeyboardPages.h"

#include "Platform/Foundation/Text.h"

#include <array>
#include <utility>

namespace platform {

namespace {

using Rows = std::array<std::string_view, 3>;

constexpr Rows latinLetters { "qwertyuiop", "asdfghjkl", "zxcvbnm" };
constexpr Rows latinCapitals { "QWERTYUIOP", "ASDFGHJKL", "ZXCVBNM" };
constexpr Rows arabicLetters { "ضصثقفغعهخحج", "شسيبلاتنمكط", "ذءرىةوزظد" };

constexpr Rows latinNumbers { "1234567890", "-/:;()$&@\"", ".,?!'" };
constexpr Rows latinSymbols { "[]{}#%^*+=", "_\\|~<>€£¥•", ".,?!'" };
constexpr Rows arabicNumbers { "1234567890", "-/:؛()$&@\"", ".،؟!'" };
constexpr Rows arabicSymbols { "[]{}#%^*+=", "_\\|~<>€£¥•", ".،؟!'" };
constexpr Rows latinTabletNumbers { "1234567890", "@#$&*()'\"", "-+/:;,.?!" };
constexpr Rows arabicTabletNumbers { "1234567890", "@#$&*()'\"", "-+/:؛،.؟!" };
constexpr Rows tabletSymbols { "1234567890", "€£¥_^[]{}", "%=|~\\<>•°" };

// With shift: letters that carry a hamza or madda on their bearer's key, and the vowel signs along the first row.
constexpr std::pair<std::string_view, std::string_view> arabicShifted[] = {
    { "ا", "أ" },
    { "ء", "إ" },
    { "ى", "آ" },
    { "و", "ؤ" },
    { "ي", "ئ" },
    { "ل", "لا" },
    { "ض", "\u064E" },
    { "ص", "\u064B" },
    { "ث", "\u064F" },
    { "ق", "\u064C" },
    { "ف", "\u0650" },
    { "غ", "\u064D" },
    { "ع", "\u0651" },
    { "ه", "\u0652" },
    { "خ", "\u0640" },
};

const Rows& rowsOf(const KeyboardPlane& plane, KeyboardForm form)
{
    const bool arabic = plane.script == KeyboardScript::arabic;
    if (plane.page == KeyboardPage::letters)
        return arabic ? arabicLetters : plane.shift == KeyboardShift::off ? latinLetters : latinCapitals;
    const bool numbers = plane.page == KeyboardPage::numbers;
    if (form == KeyboardForm::tablet)
        return !numbers ? tabletSymbols : arabic ? arabicTabletNumbers : latinTabletNumbers;
    return numbers ? (arabic ? arabicNumbers : latinNumbers) : arabic ? arabicSymbols : latinSymbols;
}

std::string shifted(std::string_view letter)
{
    for (const auto& [plain, other] : arabicShifted)
        if (plain == letter)
            return std::string(other);
    return std::string(letter);
}

} // namespace

KeyboardRows keyboardRows(const KeyboardPlane& plane, KeyboardForm form)
{
    const bool shiftedArabic
        = plane.script == KeyboardScript::arabic && plane.page == KeyboardPage::letters && plane.shift != KeyboardShift::off;
    KeyboardRows rows;
    for (const auto row : rowsOf(plane, form)) {
        auto& texts = rows.emplace_back();
        for (const auto character : Characters(row))
            texts.push_back(shiftedArabic ? shifted(character) : std::string(character));
    }
    return rows;
}

std::string returnKeyTitle(UIReturnKeyType type, KeyboardScript script)
{
    static constexpr const char* latin[] = { "return", "go", "next", "done", "send", "join" };
    static constexpr const char* arabic[] = { "إدخال", "ذهاب", "التالي", "تم", "إرسال", "انضمام" };
    return (script == KeyboardScript::arabic ? arabic : latin)[std::size_t(type)];
}

std::string spaceKeyTitle(KeyboardScript script) { return script == KeyboardScript::arabic ? "مسافة" : "space"; }

std::string pageKeyTitle(KeyboardPage page, KeyboardScript script)
{
    switch (page) {
    case KeyboardPage::numbers:
        return "123";
    case KeyboardPage::symbols:
        return "#+=";
    case KeyboardPage::letters:
        break;
    }
    return script == KeyboardScript::arabic ? "أبج" : "ABC";
}

std::vector<std::string> besideLetters(KeyboardScript script) { return { script == KeyboardScript::arabic ? "،" : ",", "." }; }

const std::vector<std::string>& keyboardEmoji()
{
    static const std::vector<std::string> emoji { "❤️", "😍", "👍", "😂", "🔥", "👏", "🎉", "🙏", "😮", "💯" };
    return emoji;
}

} // namespace platform
