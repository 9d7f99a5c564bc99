#include "editor/tools.h"

#include <algorithm>

#include "editor/canvas.h"
#include "editor/flood_fill.h"
#include "editor/opacity.h"
#include "editor/point_size.h"
#include "editor/shapes.h"
#include "editor/text_stamp.h"
#include "editor/transforms.h"

namespace korvex::editor {

namespace {

bool figure_tool(int t) {
    return t == t_line || t == t_ellipse || t == t_rectangle || t == t_filled_ellipse || t == t_filled_rectangle;
}
bool frame_tool(int t) { return t == t_select || t == t_crop_select || t == t_crop_pending; }
bool size_tool(int t) { return t == t_flip_h || t == t_flip_v || t == t_rotate || t == t_crop_select; }

}  // namespace

void ToolEngine::reset_states() {
    drawing_ = false;
    anchor_x_ = anchor_y_ = -1;
    dragged_ = false;
    framing_ = false;
    moving_layer_ = false;
}

bool ToolEngine::set_tool(int tool) {
    if (opacity_tool(e_, tool)) {
        if (!layer_.empty()) commit_layer();
        reset_states();
        frame_ = {};
        e_.tool = static_cast<int16_t>(tool);
        return true;
    }
    if (tool == t_rubber && opacity_rubber(e_, ui_)) return false;
    // Rotation says why it is refused; the other size tools are simply off.
    if (e_.fn013() && tool == t_rotate) return rotate(e_, has_frame(), ui_);
    if (e_.fn013() && size_tool(tool)) return false;
    // Flips and the turn are applied at once; the tool stays.
    if (tool == t_flip_h || tool == t_flip_v) return flip(e_, tool == t_flip_h ? 0 : 1, has_frame(), ui_);
    if (tool == t_rotate) return rotate(e_, has_frame(), ui_);
    if (tool == t_text && !can_add_text(e_, ui_)) return false;
    if (repeat && (tool == t_pencil || tool == t_rubber) && (step_x <= 0 || step_y <= 0)) {
        ui_.message("Please select value > 0");
        return false;
    }
    if (tool == t_rubber && !e_.truecolour) {
        if (!e_.palette.transparent(e_.curcol, e_.transparentcolour)) {
            const int t = e_.palette.first_transparent(e_.transparentcolour);
            if (t == 0) {
                ui_.message("Add 1 transparent colour");
                return false;
            }
            e_.curcol = t;
        }
    }
    if (layer_.empty() == false) commit_layer();
    reset_states();
    if (!frame_tool(tool)) frame_ = {};
    e_.tool = static_cast<int16_t>(tool);
    // A palette change can no longer be taken back by Ctrl+Z.
    e_.lastpalok = false;
    return true;
}

bool ToolEngine::colour_of(bool right, uint32_t& colour) const {
    if (e_.truecolour) {
        colour = right ? e_.pen_colour2 : e_.pen_colour;
        return true;
    }
    int entry = right ? e_.curcol2 : e_.curcol;
    if (e_.tool == t_rubber && !right) entry = e_.palette.first_transparent(e_.transparentcolour);
    if (!e_.palette.valid(entry)) return false;
    colour = e_.palette.colour(entry);
    return true;
}

bool ToolEngine::refuse_press() {
    // Night colours of a line are set in the colour boxes, never drawn.
    const int entry = right_ ? e_.curcol2 : e_.curcol;
    if ((e_.store_class() == 1 || e_.store_class() == 3) && entry > 2 && e_.tool != t_picker) {
        ui_.message("Night colours can not be used for editing (see manual) .");
        return true;
    }
    return false;
}

void ToolEngine::press(int x, int y, bool right) {
    if (panel_open) {
        ui_.message("Click Apply or Cancel.");
        return;
    }
    if (e_.width <= 0 || e_.height <= 0) return;
    right_ = right;
    const int t = e_.tool;
    if (e_.alpha) {
        if (!opacity_press_allowed(e_, ui_)) return;
        if (opacity_tool(e_, t)) {
            opacity_stroke_ = t == t_opacity_pencil;
            opacity_press(e_, x, y);
            return;
        }
    }
    if (frame_tool(t)) {
        if (!layer_.empty()) {
            if (layer_.picture.inside(x - layer_.x, y - layer_.y)) {
                moving_layer_ = true;
                grab_dx_ = x - layer_.x;
                grab_dy_ = y - layer_.y;
                return;
            }
            commit_layer();
        }
        if (t == t_crop_pending) return;
        frame_ = frame_between(x, y, x, y, e_.width, e_.height);
        anchor_x_ = x;
        anchor_y_ = y;
        framing_ = true;
        return;
    }
    if (refuse_press()) return;
    if (t == t_picker) {
        if (!e_.surface.inside(x, y)) return;
        const uint32_t c = e_.surface.at(x, y);
        if (e_.truecolour) {
            (right ? e_.pen_colour2 : e_.pen_colour) = c;
            return;
        }
        const int entry = e_.palette.first_of(c);
        if (entry > 0) (right ? e_.curcol2 : e_.curcol) = entry;
        return;
    }
    uint32_t colour = 0;
    if (!colour_of(right, colour)) return;
    if (t == t_pencil || t == t_rubber) {
        drawing_ = true;
        last_x_ = x;
        last_y_ = y;
        figure_colour_ = colour;
        plot(x, y, colour);
        return;
    }
    if (t == t_fill) {
        flood_fill(e_.surface, x, y, colour);
        finish();
        return;
    }
    if (figure_tool(t)) {
        if (anchored()) {
            // The second press draws.
            cur_x_ = x;
            cur_y_ = y;
            draw_figure(e_.surface, x, y);
            anchor_x_ = anchor_y_ = -1;
            finish();
            return;
        }
        anchor_x_ = cur_x_ = x;
        anchor_y_ = cur_y_ = y;
        dragged_ = false;
        figure_colour_ = colour;
    }
}

void ToolEngine::move(int x, int y) {
    hover_x_ = x;
    hover_y_ = y;
    if (opacity_stroke_) {
        opacity_plot(e_, x, y);
        return;
    }
    if (drawing_) {
        if (x == last_x_ && y == last_y_) return;
        // A fast pointer skips pixels: the stroke joins them.
        if (repeat) {
            Raster stroke(e_.width, e_.height, 0);
            draw_line(stroke, last_x_, last_y_, x, y, 1, 1);
            for (int py = 0; py < e_.height; ++py)
                for (int px = 0; px < e_.width; ++px)
                    if (stroke.at(px, py)) plot(px, py, figure_colour_);
        } else {
            draw_line(e_.surface, last_x_, last_y_, x, y, figure_colour_, 1);
        }
        last_x_ = x;
        last_y_ = y;
        return;
    }
    if (moving_layer_) {
        layer_.x = x - grab_dx_;
        layer_.y = y - grab_dy_;
        return;
    }
    if (framing_) {
        frame_ = frame_between(anchor_x_, anchor_y_, x, y, e_.width, e_.height);
        return;
    }
    if (anchored()) {
        if (x != anchor_x_ || y != anchor_y_) dragged_ = true;
        cur_x_ = x;
        cur_y_ = y;
    }
}

void ToolEngine::release(int x, int y) {
    if (opacity_stroke_) {
        opacity_plot(e_, x, y);
        opacity_stroke_ = false;
        return;
    }
    if (drawing_) {
        move(x, y);
        drawing_ = false;
        finish();
        return;
    }
    if (moving_layer_) {
        move(x, y);
        moving_layer_ = false;
        return;
    }
    if (framing_) {
        frame_ = frame_between(anchor_x_, anchor_y_, x, y, e_.width, e_.height);
        framing_ = false;
        anchor_x_ = anchor_y_ = -1;
        if (e_.tool == t_crop_select) e_.tool = t_crop_pending;
        return;
    }
    if (anchored()) {
        // A drag draws on release; a click waits for the second press.
        if (x != anchor_x_ || y != anchor_y_) dragged_ = true;
        if (!dragged_) return;
        cur_x_ = x;
        cur_y_ = y;
        draw_figure(e_.surface, x, y);
        anchor_x_ = anchor_y_ = -1;
        finish();
    }
}

bool ToolEngine::set_repeat(bool on, int sx, int sy) {
    if (on && e_.tool != t_pencil && e_.tool != t_rubber) {
        ui_.message("Select Pencil or Rubber.");
        return false;
    }
    if (on && (sx <= 0 || sy <= 0)) {
        ui_.message("Please select value > 0");
        return false;
    }
    repeat = on;
    step_x = sx;
    step_y = sy;
    return true;
}

void ToolEngine::plot(int x, int y, uint32_t colour) {
    if (!repeat || step_x <= 0 || step_y <= 0) {
        e_.surface.set(x, y, colour);
        return;
    }
    // The same pixel in every step of the pattern.
    const int x0 = ((x % step_x) + step_x) % step_x, y0 = ((y % step_y) + step_y) % step_y;
    for (int py = y0; py < e_.height; py += step_y)
        for (int px = x0; px < e_.width; px += step_x) e_.surface.set(px, py, colour);
}

void ToolEngine::double_click(int x, int y) {
    if (panel_open) return;
    if (e_.tool == t_text) {
        uint32_t colour = 0;
        if (text_.width > 0 && colour_of(false, colour)) {
            draw_text(e_.surface, text_, x, y, colour);
            finish();
        }
        return;
    }
    if (!layer_.empty()) {
        commit_layer();
        return;
    }
    if (e_.tool == t_crop_pending && frame_.contains(x, y)) {
        if (!crop(e_, ui_, frame_, e_.alpha)) return;
        frame_ = {};
        e_.tool = t_crop_select;
    }
}

bool ToolEngine::escape() {
    bool any = anchored() || has_frame() || !layer_.empty() || drawing_;
    if (drawing_) {
        // The stroke so far is taken back: the surface returns to the data.
        drawing_ = false;
        show_undo_level(e_);
    }
    reset_states();
    layer_ = {};
    frame_ = {};
    if (e_.tool == t_crop_pending) {
        e_.tool = t_crop_select;
        any = true;
    }
    if (e_.tool == t_text) {
        // Esc closes the text panel.
        e_.tool = t_pencil;
        text_ = {};
        any = true;
    }
    return any;
}

void ToolEngine::select_all() {
    if (layer_.empty() == false) commit_layer();
    if (!frame_tool(e_.tool)) e_.tool = t_select;
    frame_ = {0, 0, e_.width, e_.height};
}

bool ToolEngine::copy_selection(bool cut) {
    if (frame_.empty()) return false;
    if (!layer_.empty()) commit_layer();
    layer_ = lift(e_.surface, frame_);
    if (cut) {
        uint32_t background = e_.transparentcolour;
        if (!e_.truecolour && e_.palette.first_transparent(e_.transparentcolour) == 0)
            background = e_.palette.colour(e_.palette.valid(e_.curcol) ? e_.curcol : 1);
        fill_rect(e_.surface, frame_, background);
        finish();
    }
    return true;
}

void ToolEngine::float_layer(FloatingLayer layer) {
    if (!layer_.empty()) commit_layer();
    reset_states();
    if (!frame_tool(e_.tool)) e_.tool = t_select;
    frame_ = {layer.x, layer.y, layer.picture.width(), layer.picture.height()};
    layer_ = std::move(layer);
}

bool ToolEngine::clear_selection() {
    if (frame_.empty()) return false;
    uint32_t colour = 0;
    if (!colour_of(true, colour)) return false;
    fill_rect(e_.surface, frame_, colour);
    finish();
    return true;
}

void ToolEngine::commit_layer() {
    if (layer_.empty()) return;
    stamp(e_.surface, layer_);
    frame_ = {layer_.x, layer_.y, layer_.picture.width(), layer_.picture.height()};
    frame_ = frame_between(frame_.x, frame_.y, frame_.x + frame_.w - 1, frame_.y + frame_.h - 1, e_.width, e_.height);
    layer_ = {};
    finish();
}

void ToolEngine::draw_figure(Raster& r, int x, int y) const {
    const uint32_t c = figure_colour_;
    switch (e_.tool) {
    case t_line: draw_line(r, anchor_x_, anchor_y_, x, y, c, pen); break;
    case t_rectangle: draw_rectangle(r, anchor_x_, anchor_y_, x, y, c, false, pen); break;
    case t_filled_rectangle: draw_rectangle(r, anchor_x_, anchor_y_, x, y, c, true, pen); break;
    case t_ellipse: draw_ellipse(r, anchor_x_, anchor_y_, x, y, c, false); break;
    case t_filled_ellipse: draw_ellipse(r, anchor_x_, anchor_y_, x, y, c, true); break;
    default: break;
    }
}

void ToolEngine::finish() {
    translate(e_);
    e_.eddirty = true;
}

Raster ToolEngine::view() const {
    Raster v = e_.surface;
    if (anchored() && figure_tool(e_.tool)) draw_figure(v, cur_x_, cur_y_);
    if (!layer_.empty()) stamp(v, layer_);
    if (e_.tool == t_text && hover_x_ >= 0) {
        uint32_t colour = 0;
        if (colour_of(false, colour)) draw_text(v, text_, hover_x_, hover_y_, colour);
    }
    return v;
}

std::string ToolEngine::hint() const {
    if (e_.tool == t_crop_pending) return "Double click to crop or ESC to exit ";
    if (e_.tool == t_text) return "Double Click to Stamp/Esc to Close";
    return {};
}

}  // namespace korvex::editor
