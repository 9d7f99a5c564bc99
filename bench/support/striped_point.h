// A 128 x 128 palette point of 200 colours in diagonal stripes: the large
// picture the editor benchmarks draw on, resize and filter.
#pragma once

#include <cstdint>

#include "editor/canvas.h"
#include "editor/editor_session.h"

namespace korvex::samples {

inline editor::EditorSession striped_point() {
    editor::EditorSession e;
    e.curclass = 2;
    for (uint32_t i = 0; i < 200; ++i) e.palette.colours.push_back(editor::rgb(i, 255 - i, (i * 7) & 255));
    editor::resize_picture(e, 128, 128);
    for (int y = 0; y < 128; ++y)
        for (int x = 0; x < 128; ++x) e.pixels.set(x, y, static_cast<uint8_t>((x / 4 + y) % 200));
    editor::painticon(e);
    return e;
}

}  // namespace korvex::samples
