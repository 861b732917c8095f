#pragma once

#include <cstddef>
#include <string>

namespace bench {

// K5: a message comes into the kit's own panel, which holds so many, over a still picture; the whole list is handed over, and the
// frame is drawn. Milliseconds of processor time, medians.
struct ChatPanelFigures {
    double handOver = 0; // without layout and drawing
    double frame = 0; // all of it
};
ChatPanelFigures measureChatPanel(std::size_t held, int frames, const std::string& picture);

} // namespace bench
