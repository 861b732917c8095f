#include "Platform/UIKit/Keyboard/KeyboardLayout.h"

#include "Platform/UIKit/Keyboard/KeyboardPages.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// Widths of keys, in columns, gap included.
constexpr double sideKey = 1.3; // shift and delete on a phone
constexpr double wideKey = 2.4; // the page key and return under ten letters
constexpr double narrowKey = 1.25; // where globe and hide key share that row

constexpr CGFloat signSize = 44; // points: a finger's, of keys without a cap

KeyboardKey key(KeyboardRole role, std::string text = {})
{
    KeyboardKey made;
    made.role = role;
    made.text = std::move(text);
    return made;
}

// Fills a keyboard from its top to its bottom.
class Builder {
public:
    Builder(const KeyboardMetrics& metrics, const KeyboardPlane& plane, bool mirrored, CGFloat scale)
        : metrics(metrics)
        , plane(plane)
        , mirrored(mirrored)
        , scale(scale)
        , left(metrics.safeArea.left)
        , width(metrics.size.width - metrics.safeArea.horizontal())
        , rows(keyboardRows(plane, metrics.form))
    {
    }

    KeyboardKeys build()
    {
        addStrip();
        if (metrics.form == KeyboardForm::tablet)
            addTabletRows();
        else
            addPhoneRows();
        return std::move(keys);
    }

private:
    // A line of keys side by side.
    void beginRow(int index, double columnCount)
    {
        row = index;
        columns = columnCount;
        column = 0;
        rowStart = keys.size();
    }
    void skip(double count) { column += count; }
    void add(KeyboardKey made, double span)
    {
        const CGFloat pitch = (width - 2 * margin() + metrics.gap) / columns;
        const CGFloat start = left + margin() + column * pitch, top = metrics.strip + row * metrics.rowPitch;
        made.cap = onPixels({ start, top, span * pitch - metrics.gap, metrics.capHeight });
        made.reach = { start - metrics.gap / 2, top - spaceAbove() / 2, span * pitch, metrics.rowPitch };
        column += span;
        keys.push_back(std::move(made));
    }
    // A finger at the end of a row, or beside a row that is shorter than the others, meets its outermost key.
    void endRow()
    {
        auto& first = keys[rowStart].reach;
        auto& last = keys.back().reach;
        first = { 0, first.y, first.maxX(), first.height };
        last.width = metrics.size.width - last.x;
        for (std::size_t i = rowStart; i + 1 < keys.size(); ++i) {
            const CGFloat middle = (keys[i].reach.maxX() + keys[i + 1].reach.x) / 2;
            keys[i].reach.width = middle - keys[i].reach.x;
            keys[i + 1].reach.width = keys[i + 1].reach.maxX() - middle;
            keys[i + 1].reach.x = middle;
        }
    }
    void addTexts(const std::vector<std::string>& texts, double span = 1)
    {
        for (const auto& text : texts)
            add(key(KeyboardRole::character, text), span);
    }

    void addPhoneRows()
    {
        const bool letters = plane.page == KeyboardPage::letters;
        const double count = double(rows[0].size());
        beginRow(0, count);
        addTexts(rows[0]);
        endRow();

        beginRow(1, count);
        skip((count - double(rows[1].size())) / 2);
        addTexts(rows[1]);
        endRow();

        // Five signs take the place of seven letters.
        const double room = letters ? double(rows[2].size()) : 7;
        const double beside = (count - room) / 2, side = std::min(sideKey, beside);
        beginRow(2, count);
        add(letters ? shiftKey() : pageKey(otherSigns()), side);
        skip(beside - side);
        addTexts(rows[2], room / double(rows[2].size()));
        skip(beside - side);
        add(key(KeyboardRole::erase, "delete"), side);
        endRow();

        beginRow(3, 10);
        const auto turn = pageKey(letters ? KeyboardPage::numbers : KeyboardPage::letters);
        if (metrics.hasRowBelow) {
            add(turn, wideKey);
            add(spaceKey(), 10 - 2 * wideKey);
            add(returnKey(), wideKey);
        } else {
            add(turn, narrowKey);
            add(globeKey(), narrowKey);
            add(spaceKey(), 10 - 3 * narrowKey - 2);
            add(hideKey(), narrowKey);
            add(returnKey(), 2);
        }
        endRow();
        if (metrics.hasRowBelow)
            addRowBelow();
    }

    void addTabletRows()
    {
        const bool letters = plane.page == KeyboardPage::letters;
        const double count = double(rows[0].size()) + 1;
        beginRow(0, count);
        addTexts(rows[0]);
        add(key(KeyboardRole::erase, "delete"), 1);
        endRow();

        const double shift = (count - double(rows[1].size()) - 1) / 2; // letters stand between those above
        beginRow(1, count);
        skip(shift);
        addTexts(rows[1]);
        add(returnKey(), 1 + shift);
        endRow();

        beginRow(2, count);
        const auto side = letters ? shiftKey() : pageKey(otherSigns());
        add(side, 1);
        addTexts(rows[2]);
        if (letters)
            addTexts(besideLetters(plane.script));
        if (column < count)
            add(side, count - column);
        endRow();

        beginRow(3, 11);
        const auto turn = pageKey(letters ? KeyboardPage::numbers : KeyboardPage::letters);
        add(turn, 1);
        add(globeKey(), 1);
        add(spaceKey(), 6);
        add(turn, 1);
        add(dockKey(), 1);
        add(hideKey(), 1);
        endRow();
    }

    // Globe and hide key stand free at the corners, the floating panel's grip and its way back between them.
    void addRowBelow()
    {
        const CGFloat top = metrics.strip + 4 * metrics.rowPitch;
        const CGFloat middle
            = metrics.form == KeyboardForm::floating ? top + (metrics.size.height - top) / 2 - 2 : top + signSize / 2 - 6;
        const auto addSign = [&](KeyboardKey made, CGFloat x, CGFloat reachLeft, CGFloat reachRight) {
            made.bare = true;
            made.cap = onPixels({ x - signSize / 2, middle - signSize / 2, signSize, signSize });
            const CGFloat edge = top - spaceAbove() / 2;
            made.reach = { reachLeft, edge, reachRight - reachLeft, metrics.size.height - edge };
            keys.push_back(std::move(made));
        };
        const CGFloat end = metrics.size.width;
        if (metrics.form == KeyboardForm::floating) {
            addSign(globeKey(), 26, 0, 52);
            addSign(key(KeyboardRole::grip, "move keyboard"), end / 2, 52, end - 104);
            addSign(dockKey(), end - 78, end - 104, end - 52);
            addSign(hideKey(), end - 26, end - 52, end);
            return;
        }
        addSign(globeKey(), 39, 0, 78); // under the middle of the page key, near enough
        addSign(hideKey(), end - 39, end - 78, end);
    }

    void addStrip()
    {
        const bool tablet = metrics.form == KeyboardForm::tablet;
        const CGFloat editWidth = tablet ? 52 : width < 340 ? 34 : width > 500 ? 48 : 38;
        const CGFloat emojiWidth = tablet ? 56 : width > 500 ? 44 : 36;
        constexpr CGFloat edge = 4, divider = 9;
        CGFloat x = edge;
        const auto addSign = [&](KeyboardKey made, CGFloat span) {
            made.bare = true;
            const CGFloat start = left + (mirrored ? width - x - span : x);
            made.cap = onPixels({ start, 0, span, metrics.strip });
            made.reach = { start, 0, span, metrics.strip - spaceAbove() / 2 };
            keys.push_back(std::move(made));
            x += span;
        };
        static constexpr std::pair<UIEditAction, const char*> actions[] = { { UIEditAction::selectAll, "Select All" },
            { UIEditAction::cut, "Cut" }, { UIEditAction::copy, "Copy" }, { UIEditAction::paste, "Paste" } };
        for (const auto& [action, name] : actions) {
            auto made = key(KeyboardRole::edit, name);
            made.action = action;
            addSign(std::move(made), editWidth);
        }
        x += divider;
        const auto& emoji = keyboardEmoji();
        const CGFloat room = width - x - edge;
        const auto count = std::clamp(std::size_t(std::max(room / emojiWidth, 1.0)), std::size_t(1), emoji.size());
        // A phone's spread over the room there is, a tablet's stay together at the far end.
        const CGFloat span = room / double(count) < 1.4 * emojiWidth ? room / double(count) : emojiWidth;
        x = width - edge - span * double(count);
        for (std::size_t i = 0; i < count; ++i)
            addSign(key(KeyboardRole::emoji, emoji[i]), span);
    }

    KeyboardKey shiftKey() const
    {
        auto made = key(KeyboardRole::shift, "shift");
        made.selected = plane.shift != KeyboardShift::off;
        made.locked = plane.shift == KeyboardShift::locked;
        return made;
    }
    KeyboardKey pageKey(KeyboardPage page) const
    {
        auto made = key(KeyboardRole::page, pageKeyTitle(page, plane.script));
        made.page = page;
        return made;
    }
    KeyboardKey returnKey() const
    {
        auto made = key(KeyboardRole::enter, returnKeyTitle(plane.returnKey, plane.script));
        made.prominent = plane.returnKey != UIReturnKeyType::normal && plane.returnKey != UIReturnKeyType::next;
        return made;
    }
    KeyboardKey spaceKey() const { return key(KeyboardRole::space, spaceKeyTitle(plane.script)); }
    static KeyboardKey globeKey() { return key(KeyboardRole::globe, "next keyboard"); }
    static KeyboardKey hideKey() { return key(KeyboardRole::hide, "hide keyboard"); }
    KeyboardKey dockKey() const
    {
        return key(KeyboardRole::dock, metrics.form == KeyboardForm::floating ? "dock keyboard" : "float keyboard");
    }
    KeyboardPage otherSigns() const
    {
        return plane.page == KeyboardPage::numbers ? KeyboardPage::symbols : KeyboardPage::numbers;
    }

    CGFloat margin() const { return metrics.gap / 2; } // so that gaps and edges share one rhythm
    CGFloat spaceAbove() const { return metrics.rowPitch - metrics.capHeight; }
    CGRect onPixels(const CGRect& r) const
    {
        const auto snap = [this](CGFloat v) { return std::round(v * scale) / scale; };
        const CGFloat x = snap(r.x), y = snap(r.y);
        return { x, y, snap(r.maxX()) - x, snap(r.maxY()) - y };
    }

    const KeyboardMetrics& metrics;
    const KeyboardPlane& plane;
    const bool mirrored;
    const CGFloat scale;
    const CGFloat left, width; // what the safe area leaves
    const KeyboardRows rows;
    KeyboardKeys keys;
    int row = 0;
    double columns = 10, column = 0;
    std::size_t rowStart = 0;
};

} // namespace

KeyboardKeys keyboardKeys(const KeyboardMetrics& metrics, const KeyboardPlane& plane, bool mirrored, CGFloat scale)
{
    return Builder(metrics, plane, mirrored, scale).build();
}

} // namespace platform
