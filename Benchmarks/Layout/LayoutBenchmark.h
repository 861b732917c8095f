#pragma once

namespace bench {

enum class RowShape {
    fixed, // all five constraints required: leading, trailing, top, height, least width
    fitting // the height is a soft wish of two sides instead, as a text's is
};

// Milliseconds of processor time, medians over repetitions.
struct LayoutFigures {
    double build = 0; // an empty engine to the solved list
    double resize = 0; // the list's width changes
    double changeHeight = 0; // the first row's height changes, all others move
    bool isCorrect = true; // positions after each of the three were as they should be
};

// One engine with a list of that many rows of five constraints each.
LayoutFigures measureLayout(int rows, RowShape shape = RowShape::fixed);

} // namespace bench
