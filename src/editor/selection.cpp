#include "editor/selection.h"

#include <algorithm>

namespace korvex::editor {

Rect frame_between(int ax, int ay, int bx, int by, int width, int height) {
    Rect f;
    if (width <= 0 || height <= 0) return f;
    int x0 = std::min(ax, bx), x1 = std::max(ax, bx);
    int y0 = std::min(ay, by), y1 = std::max(ay, by);
    x0 = std::clamp(x0, 0, width - 1);
    y0 = std::clamp(y0, 0, height - 1);
    x1 = std::clamp(x1, x0, width - 1);
    y1 = std::clamp(y1, y0, height - 1);
    return {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
}

Raster cut_out(const Raster& surface, const Rect& frame) {
    Raster out(frame.w, frame.h);
    for (int y = 0; y < frame.h; ++y)
        for (int x = 0; x < frame.w; ++x) out.set(x, y, surface.at(frame.x + x, frame.y + y));
    return out;
}

FloatingLayer lift(const Raster& surface, const Rect& frame) { return {cut_out(surface, frame), frame.x, frame.y}; }

void stamp(Raster& surface, const FloatingLayer& layer) {
    for (int y = 0; y < layer.picture.height(); ++y)
        for (int x = 0; x < layer.picture.width(); ++x) surface.set(layer.x + x, layer.y + y, layer.picture.at(x, y));
}

void fill_rect(Raster& surface, const Rect& frame, uint32_t colour) {
    for (int y = frame.y; y < frame.y + frame.h; ++y)
        for (int x = frame.x; x < frame.x + frame.w; ++x) surface.set(x, y, colour);
}

}  // namespace korvex::editor
