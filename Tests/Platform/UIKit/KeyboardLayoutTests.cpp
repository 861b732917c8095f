#include "Platform/UIKit/Keyboard/KeyboardLayout.h"

#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/Keyboard/KeyboardPainter.h"
#include "Platform/UIKit/Keyboard/KeyboardTyping.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

#include <algorithm>
#include <set>

namespace platform {
namespace {

struct Device {
    const char* name;
    CGSize screen;
    UIEdgeInsets safeArea;
    UIUserInterfaceIdiom idiom;
    bool floats;
    CGFloat height;
};

const Device devices[] = {
    { "phone", { 393, 852 }, { 59, 0, 34, 0 }, UIUserInterfaceIdiom::phone, false, 325 },
    { "phone, lying", { 852, 393 }, { 0, 59, 21, 59 }, UIUserInterfaceIdiom::phone, false, 209 },
    { "small phone", { 320, 568 }, { 20, 0, 0, 0 }, UIUserInterfaceIdiom::phone, false, 260 },
    { "small phone, lying", { 568, 320 }, {}, UIUserInterfaceIdiom::phone, false, 180 },
    { "tablet", { 820, 1180 }, { 24, 0, 20, 0 }, UIUserInterfaceIdiom::pad, false, 320 },
    { "tablet, lying", { 1180, 820 }, { 24, 0, 20, 0 }, UIUserInterfaceIdiom::pad, false, 400 },
    { "panel on a tablet", { 820, 1180 }, { 24, 0, 20, 0 }, UIUserInterfaceIdiom::pad, true, 260 },
    { "a window drawn flat", { 700, 200 }, {}, UIUserInterfaceIdiom::phone, false, 120 },
};

std::vector<KeyboardPlane> planes()
{
    std::vector<KeyboardPlane> list;
    for (const auto script : { KeyboardScript::latin, KeyboardScript::arabic })
        for (const auto page : { KeyboardPage::letters, KeyboardPage::numbers, KeyboardPage::symbols })
            for (const auto shift : { KeyboardShift::off, KeyboardShift::once })
                list.push_back({ script, page, shift });
    return list;
}

bool overlap(const CGRect& one, const CGRect& other)
{
    const CGRect common = one.intersection(other);
    return common.width > 1e-6 && common.height > 1e-6;
}

KeyboardMetrics metricsOf(const Device& device)
{
    return KeyboardMetrics::of(device.screen, device.safeArea, device.idiom, device.floats);
}

TEST(KeyboardLayout, givesEveryDeviceItsHeightAndEveryFingerOneKey)
{
    for (const auto& device : devices) {
        const auto metrics = metricsOf(device);
        SCOPED_TRACE(device.name);
        EXPECT_NEAR(metrics.size.height, device.height, 1e-6);
        const UIEdgeInsets sides { 0, metrics.safeArea.left, metrics.safeArea.bottom, metrics.safeArea.right };
        const CGRect room = sides.inset({ 0, 0, metrics.size.width, metrics.size.height }).insetBy(-0.01, -0.01);
        for (const auto& plane : planes()) {
            const auto keys = keyboardKeys(metrics, plane, false, 2);
            for (std::size_t i = 0; i < keys.size(); ++i) {
                SCOPED_TRACE(keys[i].text);
                EXPECT_TRUE(keys[i].reach.contains(keys[i].cap.center()));
                EXPECT_TRUE(keys[i].bare || room.contains(keys[i].cap)) << "under a camera or the home indicator";
                EXPECT_GT(keys[i].reach.width, 20) << "a finger misses it";
                for (std::size_t j = i + 1; j < keys.size(); ++j) {
                    EXPECT_FALSE(overlap(keys[i].reach, keys[j].reach)) << keys[j].text;
                    EXPECT_FALSE(!keys[i].bare && !keys[j].bare && overlap(keys[i].cap, keys[j].cap)) << keys[j].text;
                }
            }
            // Between and beside the keys of the four rows no finger falls into a hole.
            for (CGFloat y = metrics.strip + 1; y < metrics.strip + 4 * metrics.rowPitch - metrics.gap; y += 7)
                for (CGFloat x = 0.5; x < metrics.size.width; x += 3)
                    EXPECT_TRUE(std::ranges::any_of(keys,
                        [&](auto& key) {
                            return key.reach.contains(CGPoint { x, y });
                        }))
                        << x << ", " << y;
        }
    }
}

// The drawing of the phone: rows of 54 points with caps of 43 and a point of shadow, gaps of 6, rows from 48 below the edge.
TEST(KeyboardLayout, standsAsThePhonesIsDrawn)
{
    const auto keys = keyboardKeys(metricsOf(devices[0]), {}, false, 3);
    const auto cap = [&](const std::string& text) {
        const auto key = std::ranges::find(keys, text, &KeyboardKey::text);
        return key == keys.end() ? CGRect {} : key->cap;
    };
    const auto expectNear = [](const CGRect& one, const CGRect& other) {
        EXPECT_NEAR(one.x, other.x, 0.4);
        EXPECT_NEAR(one.y, other.y, 0.4);
        EXPECT_NEAR(one.width, other.width, 0.7);
        EXPECT_NEAR(one.height, other.height, 0.4);
    };
    expectNear(cap("q"), { 3, 48, 33, 43 });
    expectNear(cap("p"), { 357, 48, 33, 43 });
    expectNear(cap("a"), { 23, 102, 33, 43 });
    expectNear(cap("shift"), { 3, 156, 45, 43 });
    expectNear(cap("z"), { 62, 156, 33, 43 });
    expectNear(cap("delete"), { 345, 156, 45, 43 });
    expectNear(cap("123"), { 3, 210, 88, 43 });
    expectNear(cap("space"), { 97, 210, 199, 43 });
    expectNear(cap("return"), { 302, 210, 88, 43 });
}

TEST(KeyboardLayout, hasTheWholeAlphabets)
{
    const std::string letters
        = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?!'\"-/:;()$&@#%*+=_€£¥[]{}<>~|\\^"
          "ابتثجحخدذرزسشصضطظعغفقكلمنهويىةءأإآؤئ،؛؟";
    for (const auto& device : devices) {
        std::set<std::string> there;
        for (const auto& plane : planes())
            for (const auto& key : keyboardKeys(metricsOf(device), plane, false, 2))
                there.insert(key.text);
        for (const auto character : Characters(letters))
            EXPECT_TRUE(there.contains(std::string(character))) << character << " on a " << device.name;
    }
}

TEST(KeyboardLayout, tellsWhereItsKeysLeadAndWhatTheyDo)
{
    using enum KeyboardPage;
    const auto pressed
        = [](const KeyboardKeys& keys, KeyboardRole role) { return *std::ranges::find(keys, role, &KeyboardKey::role); };
    for (const auto& device : devices) {
        SCOPED_TRACE(device.name);
        const auto metrics = metricsOf(device);
        for (const auto& [page, leadsTo] : { std::pair { letters, std::set { numbers } },
                 std::pair { numbers, std::set { letters, symbols } }, std::pair { symbols, std::set { letters, numbers } } }) {
            std::set<KeyboardPage> found;
            for (const auto& key : keyboardKeys(metrics, { .page = page }, false, 2))
                if (key.role == KeyboardRole::page)
                    found.insert(key.page);
            EXPECT_EQ(found, leadsTo) << int(page);
        }
        for (const auto shift : { KeyboardShift::off, KeyboardShift::once, KeyboardShift::locked }) {
            const auto key = pressed(keyboardKeys(metrics, { .shift = shift }, false, 2), KeyboardRole::shift);
            EXPECT_EQ(key.selected, shift != KeyboardShift::off);
            EXPECT_EQ(key.locked, shift == KeyboardShift::locked);
        }
        using enum UIReturnKeyType;
        for (const auto type : { normal, go, next, done, send, join }) {
            const auto key = pressed(keyboardKeys(metrics, { .returnKey = type }, false, 2), KeyboardRole::enter);
            EXPECT_EQ(key.prominent, type != normal && type != next) << key.text;
        }
    }
}

TEST(KeyboardPainter, raisesPressedLettersAboveTheFingerAndNeverOverTheApplication)
{
    for (const auto& device : devices) {
        const auto metrics = metricsOf(device);
        const CGRect keyboard { 0, 0, metrics.size.width, metrics.size.height };
        const KeyboardPainter painter(metrics, false, 1);
        for (const auto& key : keyboardKeys(metrics, {}, false, 1)) {
            SCOPED_TRACE(key.text + " on a " + device.name);
            const auto press = painter.press(key);
            EXPECT_TRUE(keyboard.contains(press.frame)) << press.frame.x << ", " << press.frame.y;
            const bool rises = key.role == KeyboardRole::character && metrics.form != KeyboardForm::tablet;
            EXPECT_EQ(bool(press.shadow), rises);
            if (!rises)
                continue;
            EXPECT_GE(key.cap.y - press.frame.y, metrics.strip * 0.9) << "a balloon of a useful height";
            EXPECT_LE(press.frame.x, key.cap.x);
            EXPECT_GE(press.frame.maxX(), key.cap.maxX());
            EXPECT_GE(press.frame.width, key.cap.width + 20);
        }
    }
}

TEST(KeyboardLayout, turnsTheStripRoundAndNothingElse)
{
    const auto metrics = metricsOf(devices[0]);
    const auto plain = keyboardKeys(metrics, {}, false, 2), mirrored = keyboardKeys(metrics, {}, true, 2);
    ASSERT_EQ(plain.size(), mirrored.size());
    for (std::size_t i = 0; i < plain.size(); ++i) {
        SCOPED_TRACE(plain[i].text);
        if (plain[i].cap.y < metrics.strip)
            EXPECT_NEAR(mirrored[i].cap.midX(), 393 - plain[i].cap.midX(), 0.5);
        else
            EXPECT_EQ(mirrored[i].cap, plain[i].cap);
    }
}

TEST(KeyboardTyping, beginsSentencesAndWordsWithCapitals)
{
    using enum UITextAutocapitalizationType;
    struct Case {
        const char* before;
        UITextAutocapitalizationType type;
        bool capital;
    };
    const Case cases[] = {
        { "", sentences, true },
        { "", none, false },
        { "", words, true },
        { "Well", sentences, false },
        { "Well.", sentences, false },
        { "Well. ", sentences, true },
        { "Well.  ", sentences, true },
        { "Really?! ", sentences, true },
        { "\"Fine.\" ", sentences, true },
        { "e.g. this, ", sentences, false },
        { "one\n", sentences, true },
        { "one ", sentences, false },
        { "one ", words, true },
        { "one-", words, false },
        { "Done. ", none, false },
        { "   ", sentences, true },
    };
    for (const auto& each : cases)
        EXPECT_EQ(beginsWithCapital(each.before, each.type), each.capital) << "after \"" << each.before << "\"";
}

} // namespace
} // namespace platform
