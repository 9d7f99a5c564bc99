// The drawing tools on the canvas, driven by presses, moves and releases in
// pixel coordinates of the picture. The tools paint on the working copy's
// surface; each finished action is translated into pixels and becomes one
// undo level. Line, rectangle and ellipse show a preview until they are
// drawn; the selection keeps a frame and a floating layer.
#pragma once

#include <string>

#include "editor/editor_session.h"
#include "editor/selection.h"
#include "platform/prompt.h"
#include "platform/text_raster.h"

namespace korvex::editor {

class ToolEngine {
public:
    ToolEngine(EditorSession& e, platform::Prompt& ui) : e_(e), ui_(ui) {}

    // A tool button. False (tool unchanged) when the tool is refused.
    bool set_tool(int tool);
    int tool() const { return e_.tool; }

    // right: the right button, which draws with the second colour.
    void press(int x, int y, bool right);
    void move(int x, int y);
    void release(int x, int y);
    void double_click(int x, int y);
    // Esc: drops a figure in progress, a floating layer, the frame; the
    // crop state goes back to the crop selection. False when nothing was
    // going on.
    bool escape();

    // Ctrl+A: a frame around the whole picture.
    void select_all();
    // Ctrl+C: lifts the framed part into a floating layer; Ctrl+X (cut)
    // leaves the background of the class behind: the transparent entry if
    // the palette has one, else the current colour. False without a frame.
    bool copy_selection(bool cut = false);
    // A pasted picture floats at (layer.x, layer.y) until it is stamped.
    void float_layer(FloatingLayer layer);
    // Delete: the framed part takes the second colour. False without a frame.
    bool clear_selection();
    // Stamps a floating layer where it lies.
    void commit_layer();

    // A colour adjustment panel is open: the canvas waits for its Apply or
    // Cancel, and a press only says so.
    bool panel_open = false;

    // Pen width of the line and outline tools, 1 to 10.
    int pen = 1;
    // The text stamp's rendered text; it follows the pointer and a double
    // click stamps it in the current colour.
    void set_text_mask(platform::TextMask mask) { text_ = std::move(mask); }
    // The settings of Repeat Fill: a stroke of the pencil or rubber is
    // repeated every step_x, step_y pixels across the picture.
    bool repeat = false;
    int step_x = 0, step_y = 0;
    // The "Repeat Fill" tick: refused with "Select Pencil or Rubber." for
    // another tool and "Please select value > 0" for a step below 1.
    bool set_repeat(bool on, int sx, int sy);

    bool has_frame() const { return !frame_.empty(); }
    const Rect& frame() const { return frame_; }
    const FloatingLayer& layer() const { return layer_; }
    bool anchored() const { return anchor_x_ >= 0; }
    // What the canvas shows: the surface, or the surface with the figure in
    // progress, with a floating layer on top.
    Raster view() const;
    // The caption of the crop button in the crop state.
    std::string hint() const;

private:
    bool colour_of(bool right, uint32_t& colour) const;
    bool refuse_press();
    void finish();
    void draw_figure(Raster& r, int x, int y) const;
    void reset_states();

    EditorSession& e_;
    platform::Prompt& ui_;
    bool drawing_ = false;     // pencil or rubber held
    bool opacity_stroke_ = false;  // the opacity pencil held
    bool right_ = false;
    int last_x_ = -1, last_y_ = -1;
    int anchor_x_ = -1, anchor_y_ = -1;  // line, ellipse, rectangle
    int cur_x_ = -1, cur_y_ = -1;
    bool dragged_ = false;
    uint32_t figure_colour_ = 0;
    Rect frame_;
    bool framing_ = false;
    FloatingLayer layer_;
    platform::TextMask text_;
    int hover_x_ = -1, hover_y_ = -1;
    void plot(int x, int y, uint32_t colour);
    bool moving_layer_ = false;
    int grab_dx_ = 0, grab_dy_ = 0;
};

}  // namespace korvex::editor
