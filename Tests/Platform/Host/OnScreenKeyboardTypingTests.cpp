#include "Platform/Host/ViewTree.h"
#include "Tests/Platform/Host/OnScreenKeyboardTest.h"

#include <sstream>

namespace platform {
namespace {

TEST_F(OnScreenKeyboard, typesByItsKeysOnEveryDevice)
{
    const std::string all = "Hi there 2! [ok] €5.50 ❤️ مرحبا؟ أنا PS";
    for (const auto& model : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() })
        for (const auto posture : { UIDeviceOrientation::portrait, UIDeviceOrientation::landscapeRight }) {
            host.device().setModel(model);
            host.rotate(posture);
            beginWriting();
            EXPECT_TRUE(host.tapKeys(all));
            EXPECT_EQ(written(), all) << model.name;
            EXPECT_TRUE(host.tapKeys("ab\bc\n"));
            EXPECT_EQ(written(), "ac⏎") << model.name;
        }
    host.type("Typed beside it");
    EXPECT_EQ(written(), "Typed beside it");
    EXPECT_FALSE(host.tapKeys("中"));
    paper->resignFirstResponder();
    EXPECT_FALSE(host.tapKeys("a"));
    const std::vector<std::string> said { "\"中\" of \"中\" not tapped: no key types it",
        "\"a\" of \"a\" not tapped: no keyboard is on the screen" };
    EXPECT_EQ(console.lines(), said);
    console.clear();
}

// Keys by what they show or are called, "~" and seconds between two of them, "=" and what is typed elsewhere. A key takes 0.05 s.
TEST_F(OnScreenKeyboard, typesWhatItsKeysSay)
{
    using enum UITextAutocapitalizationType;
    struct Case {
        const char* why;
        UITextAutocapitalizationType capitals;
        const char* keys;
        const char* text;
    };
    const Case cases[] = {
        { "shift holds for one letter", none, "shift A b", "Ab" },
        { "and is taken back", none, "shift ~0.4 shift a", "a" },
        { "struck twice it holds on, on other pages too", none, "shift ~0.25 shift A B 123 1 ABC C", "AB1C" },
        { "until it is struck again", none, "shift shift A shift b", "Ab" },
        { "a letter between is no double strike", none, "shift A shift B c", "ABc" },
        { "a capital at the beginning, by itself", sentences, "A b", "Ab" },
        { "and again when the text is taken back", sentences, "A delete B", "B" },
        { "and behind a sentence", sentences, "A 123 ? space B 123 , space c", "A? B, c" },
        { "two spaces end a sentence", sentences, "A space space B", "A. B" },
        { "slow ones do not", sentences, "A space ~0.4 space b", "A  b" },
        { "nor without a word", none, "123 ? space space a", "?  a" },
        { "nor with a letter between", none, "a space b delete space c", "a  c" },
        { "nor with a word from another keyboard", none, "a space =be space c", "a be c" },
        { "nor does a third one", none, "a space space space", "a.  " },
        { "another page stays", none, "123 1 2 #+= [ ] 123 3 ABC a", "12[]3a" },
        { "space leads back to the letters", none, "123 #+= [ space a", "[ a" },
        { "and return does", sentences, "A 123 1 return b", "A1⏎b" },
        { "the globe does, and knows no capitals there", sentences, "123 globeKey ا globeKey b", "اb" },
        { "but on its way back", sentences, "globeKey globeKey A", "A" },
        { "the other letters' shift holds for one as well", none, "globeKey shift أ ا globeKey", "أا" },
        { "emoji stand on every page", none, "123 ❤️ 1", "❤️1" },
    };
    beginWriting();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        paper = add();
        paper->traits.autocapitalization = c.capitals;
        paper->becomeFirstResponder();
        host.advance(0);
        std::istringstream keys(c.keys);
        for (std::string each; keys >> each;) {
            if (each[0] == '~')
                host.advance(std::stod(each.substr(1)));
            else if (each[0] == '=')
                host.type(each.substr(1));
            else
                tap(each);
        }
        EXPECT_EQ(written(), c.text);
    }
}

// What was struck in one text is forgotten in the next one, but for the script that the viewer has chosen.
TEST_F(OnScreenKeyboard, beginsEveryTextAnew)
{
    const auto other = add();
    const auto goOn = [&](const std::shared_ptr<Paper>& to) {
        to->becomeFirstResponder();
        host.advance(0);
    };
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    beginWriting();
    EXPECT_FALSE(key("ا").isEmpty()) << "the interface's";
    host.setDirection(UIUserInterfaceLayoutDirection::leftToRight);
    other->traits.returnKeyType = UIReturnKeyType::send;
    goOn(other);
    EXPECT_FALSE(key("send").isEmpty());
    for (const char* each : { "shift", "shift", "123", "#+=" }) // locked
        tap(each);
    goOn(paper);
    EXPECT_TRUE(key("send").isEmpty());
    tap("A");
    tap("b");
    EXPECT_EQ(std::exchange(paper->text, "Well"), "Ab") << "letters, and nothing is locked";
    goOn(other);
    tap("shift");
    goOn(paper);
    tap("shift");
    tap("X");
    tap("y");
    EXPECT_EQ(paper->text, "WellXy") << "in the middle of a text, and two strikes in two texts are no lock";
    paper->traits.returnKeyType = UIReturnKeyType::go;
    UIApplication::shared().textInputDidChange();
    EXPECT_FALSE(key("go").isEmpty());
    paper->text.clear();
    UIApplication::shared().textInputDidChange();
    EXPECT_FALSE(key("Q").isEmpty()) << "the text was emptied by its owner";
    tap("globeKey");
    goOn(other);
    EXPECT_FALSE(key("ا").isEmpty());
    tap("globeKey");
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    goOn(paper);
    EXPECT_FALSE(key("Q").isEmpty());
}

TEST_F(OnScreenKeyboard, takesFastAndWanderingFingers)
{
    beginWriting();
    tap("shift");
    const auto at = [this](const char* text) { return key(text).center(); };
    host.touchDown(at("h"), 0);
    host.touchDown(at("i"), 1);
    EXPECT_EQ(paper->text, "h") << "the second finger strikes what the first is on";
    host.touchUp(at("h"), 0);
    host.touchUp(at("i"), 1);
    EXPECT_EQ(written(), "hi");
    host.touchDown(at("q"));
    host.touchMove(at("w"));
    host.touchMove(at("e"));
    host.touchUp(at("e"));
    host.touchDown(at("t"));
    host.touchMove({ 200, 300 });
    host.touchUp({ 200, 300 }); // above the keyboard
    host.touchDown(at("space"));
    host.touchCancel();
    for (const auto& [from, to] : { std::pair { "return", "m" }, { "m", "return" }, { "m", "space" } }) {
        host.touchDown(at(from));
        host.touchMove(at(to));
        host.touchUp(at(to));
    }
    EXPECT_EQ(written(), "e ") << "from one that types to another only";
    host.touchDown(at("q"));
    host.device().setModel(HostDevice::smallPhone());
    host.touchUp(at("q"));
    EXPECT_EQ(written(), "") << "the keys have gone from under the finger";

    paper->text = "0123456789";
    tap("delete");
    host.advance(0.2);
    host.touchDown(at("delete"));
    host.advance(0.45);
    EXPECT_EQ(paper->text, "01234567") << "one for each press";
    host.advance(0.3);
    EXPECT_EQ(paper->text, "01234");
    host.touchMove({ 200, 300 });
    host.advance(1);
    EXPECT_EQ(paper->text, "01234") << "the finger has left the key";
    host.touchUp({ 200, 300 });
}

TEST_F(OnScreenKeyboard, showsAtOnceWhatItsKeysHaveBecome)
{
    beginWriting();
    const auto look = [this](const CGRect& place) {
        host.advance(0);
        std::vector<std::uint32_t> pixels;
        for (int y = int(place.y * 3); y < int(place.maxY() * 3); ++y) {
            const auto* row = host.pixels().row(y);
            pixels.insert(pixels.end(), row + int(place.x * 3), row + int(place.maxX() * 3));
        }
        return pixels;
    };
    const CGRect letter = key("Q"), shift = key("shift"), all = key("Select All");
    const auto capital = look(letter);
    host.touchDown(shift.center());
    const auto held = look(shift), plain = look(letter);
    EXPECT_NE(plain, capital) << "before the finger is lifted";
    host.touchUp(shift.center());
    EXPECT_EQ(look(shift), held) << "nothing lay over it";
    const auto faint = look(all);
    host.touchDown(letter.center());
    EXPECT_NE(look(letter), plain) << "the balloon";
    host.touchUp(letter.center());
    EXPECT_EQ(look(letter), plain);
    const auto usable = look(all);
    EXPECT_NE(usable, faint) << "there is something to select";
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    EXPECT_NE(look(all), usable) << "it is at the other end";
    host.touchDown(key("pageKey").center());
    EXPECT_FALSE(key("1").isEmpty());
    host.touchCancel();
}

TEST_F(OnScreenKeyboard, editsAsFarAsTheTextAllows)
{
    beginWriting();
    tap("selectAllKey");
    EXPECT_EQ(paper->done, "");
    host.type("word");
    tap("Select All");
    tap("Paste");
    EXPECT_EQ(paper->done, "all");
    host.advance(0);
    const auto tree = viewTree(host.device());
    const auto& keyboard = tree["root"]["children"][1]["children"][0];
    EXPECT_EQ(keyboard["name"].text(), "keyboard");
    std::string shown, off;
    for (const auto& each : *keyboard["children"].array()) {
        const auto text = each["text"].text().value();
        EXPECT_GE(each["frame"][1].number(), 527);
        if (each["name"].text() == "shiftKey" || text.size() == 1)
            shown += text;
        if (!each["enabled"].boolean().value_or(true))
            off += text + " ";
    }
    EXPECT_EQ(shown, "qwertyuiopasdfghjklshiftzxcvbnm");
    EXPECT_EQ(off, "Cut Copy Paste ");
    EXPECT_EQ(tree["keyboardHeight"].number(), 325);
}

} // namespace
} // namespace platform
