// Opacity of a point (colormode 32): a level from 0 (opaque) to 15 (fully
// transparent) for every pixel, in the `opacity` plane, and for every
// colour, in its colour line's " alpha=". The plane is what the tools
// change; the colour lines are what the file keeps, so a colour whose
// pixels ended up at several levels is split into entries of one level
// each when the picture is written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

// The highest level: fully transparent.
constexpr int k_max_level = 15;

// In opacity mode the slots of the horizontal flip and of the turn hold
// the two pink opacity tools.
constexpr int t_opacity_fill = t_flip_h;
constexpr int t_opacity_pencil = t_rotate;
bool opacity_tool(const EditorSession& e, int tool);

// moplev: a level of the chooser, cut to 0..15.
int moplev(int level);

// A press of a tool in opacity mode on a palette with equal colours is
// dropped with "Palette contains identical colours!" and "Cannot continue.",
// and chk1col offers the repair. True when the press may go on.
bool opacity_press_allowed(EditorSession& e, platform::Prompt& ui);

// opaval, the opacity tick. On (points only): chk1col (palette_edit.h)
// must pass; pixels of
// the transparent colour get level 15, the others 0, and so do the colours;
// colormode 32; "With Opacity (colormode 32) only 'pink opacity tools' can
// be used.". Off: "This will clear your opacity levels. Are you sure?"; the
// levels go, a colour of level 15 becomes the transparent one if there is
// none, the chooser returns to 15. False when refused or declined.
bool opaval(EditorSession& e, bool on, platform::Prompt& ui);

// A right click on a colour cell: the colour and all its pixels take the
// level (cut to 15). False outside opacity mode or the palette.
bool set_colour_level(EditorSession& e, int entry, int level);

// Tool 9 in opacity mode: every pixel of the colour under the pointer (and
// the colour) takes the chooser's level. Tool 11: the pixel under the
// pointer takes it. False when nothing changed.
bool opacity_fill(EditorSession& e, int x, int y);
bool opacity_plot(EditorSession& e, int x, int y);
// The press of the current opacity tool.
bool opacity_press(EditorSession& e, int x, int y);

// The rubber in opacity mode: it cannot draw, "Set one colour's opacity to
// 15 (right click on color)" is shown and the pencil is taken instead.
// True when the rubber was turned away.
bool opacity_rubber(EditorSession& e, platform::Prompt& ui);

// The levels of the plane folded into the colours: a colour keeps the
// level of its pixels; pixels at another level get an entry of their own,
// the colour moved by one step (as fixcols does) so that all colours still
// differ. With no room left (254 colours) the pixels keep their colour's
// level.
void fold_opacity(PointPicture& p, uint32_t marker);

// addalpha: a text of colour lines with alpha fields. A text that holds
// "alpha" is left as it is. Otherwise each colour line gets " alpha=" and
// its level (levels[i] for the i-th colour line, 0 when missing); a "none"
// line becomes "#000000" with " alpha=15".
std::string addalpha(const std::string& text, const std::vector<int>& levels);

}  // namespace korvex::editor
