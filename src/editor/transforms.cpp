#include "editor/transforms.h"

#include "editor/canvas.h"

namespace korvex::editor {

namespace {

// The plane turned a quarter clockwise: (x, y) goes to (h - 1 - y, x).
template <class Plane>
Plane turned(const Plane& in) {
    Plane out(in.height(), in.width());
    for (int y = 0; y < in.height(); ++y)
        for (int x = 0; x < in.width(); ++x) out.set(in.height() - 1 - y, x, in.at(x, y));
    return out;
}

template <class Plane>
Plane mirrored(const Plane& in, int axis) {
    Plane out(in.width(), in.height());
    for (int y = 0; y < in.height(); ++y)
        for (int x = 0; x < in.width(); ++x)
            out.set(x, y, axis == 0 ? in.at(in.width() - 1 - x, y) : in.at(x, in.height() - 1 - y));
    return out;
}

}  // namespace

bool rotate(EditorSession& e, bool selection_active, platform::Prompt& ui) {
    if (e.fn013() || e.is_group()) {
        ui.message("Rotation not permitted.");
        return false;
    }
    if (selection_active) {
        ui.message("Cannot apply to selections.");
        return false;
    }
    if (e.width <= 0 || e.height <= 0) return false;
    const bool square = e.width == e.height;
    if (e.truecolour) {
        e.surface = turned(e.surface);
    } else {
        e.pixels = turned(e.pixels);
        painticon(e);
    }
    if (!e.opacity.empty()) e.opacity = turned(e.opacity);
    // A point's other picture (its night, or its day) turns with it: both
    // keep one size.
    if (!e.other.pixels.empty()) e.other.pixels = turned(e.other.pixels);
    if (!e.other.opacity.empty()) e.other.opacity = turned(e.other.opacity);
    if (!e.other.surface.empty()) e.other.surface = turned(e.other.surface);
    std::swap(e.width, e.height);
    std::swap(e.width_box, e.height_box);
    if (square) {
        translate(e);
    } else {
        start_history(e);
        e.changes1 |= ch_dimensions;
    }
    e.eddirty = true;
    return true;
}

bool flip(EditorSession& e, int axis, bool selection_active, platform::Prompt& ui) {
    if (selection_active) {
        ui.message("Invert selection first.");
        return false;
    }
    if (e.width <= 0 || e.height <= 0) return false;
    if (e.truecolour) {
        e.surface = mirrored(e.surface, axis);
    } else {
        e.pixels = mirrored(e.pixels, axis);
        painticon(e);
    }
    if (!e.opacity.empty()) e.opacity = mirrored(e.opacity, axis);
    translate(e);
    e.eddirty = true;
    return true;
}

}  // namespace korvex::editor
